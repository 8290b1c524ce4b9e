// A path and its model, which do the same and are compared after each step.
#pragma once

#include <string>

#include "CUtilsPath.h"
#include "path_model.h"

class PathTwin {
public:
    PathTwin();

    void SetPath(std::string const &text, std::string const &base);
    void AddToPath(std::string const &text);
    void ClimbOn();
    void ClimbBack();
    void CloseParentSearch();
    void MoveToParent();
    void DivideName(std::string const &text, bool firstDot);

    // The first difference that was seen, with the step behind which it showed, or an empty text.
    std::string const &Difference() const { return m_difference; }

private:
    struct Open : UTILS::CUtilsPath {
        using UTILS::CUtilsPath::parentLevel;
        using UTILS::CUtilsPath::SetPath;
        using UTILS::CUtilsPath::uncFlag;
    };

    void Expect(std::string const &wanted, std::string const &got, char const *what);
    void Expect(unsigned long wanted, unsigned long got, char const *what);
    void Climbed(std::optional<std::string> const &wanted, int result,
                 UTILS::UtilsString const &got);
    void CompareState();

    PathModel m_model;
    Open m_path;
    std::string m_step;
    std::string m_difference;
};

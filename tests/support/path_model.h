// A path on plain strings: what CUtilsPath is compared with.
#pragma once

#include <optional>
#include <string>
#include <utility>

struct PathModel {
    std::string host;    // the machine's name
    std::string current; // the process's current directory

    std::string path;
    std::string pathUNC;
    bool regFlag = false;
    bool uncFlag = false;
    unsigned long parentLevel = 0;

    // False for an empty text, and nothing changes.
    bool SetPath(std::string const &input, std::string const &base);
    bool AddToPath(std::string const &text);

    // The ancestor, or the one component, at the present level.
    std::optional<std::string> Parent() const;
    std::optional<std::string> Folder() const;
    std::optional<std::string> NextParent();
    std::optional<std::string> PreviousParent();
    bool MoveToParent();

    std::string Drive() const;
    static bool IsRegistry(std::string const &text);
    // Name and extension; two empty texts if nothing divides them.
    static std::pair<std::string, std::string> NameParts(std::string const &fullPath,
                                                         bool firstDot);

private:
    std::optional<std::string> Upper(bool keepFront) const;
    void Complete(std::string const &base);
    void Join(std::string const &folder);
    void WalkUp(std::string const &folder);
    void NameForNetwork();
};

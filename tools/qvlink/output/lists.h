// Answers about the texts of protected lists.
#pragma once

#include "list_text.h"
#include "output/json.h"
#include "output/screen.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace qvlink {

struct CheckedList {
    std::string name;
    std::optional<lists::Kind> kind;
    std::optional<std::uint32_t> id; // in a library
    std::size_t lines = 0;
    std::vector<lists::Finding> findings;

    bool IsSound() const;
};
void PrintListCheck(Screen &screen, CheckedList const &list, bool verbose);
Json JsonOfListChecks(std::vector<CheckedList> const &lists);

struct ComparedList {
    std::optional<lists::Kind> kind;
    std::optional<std::uint32_t> id; // in both libraries
    lists::Difference difference;

    bool IsAlike() const {
        return difference.onlyInFirst.empty() && difference.onlyInSecond.empty();
    }
};
// The entries in the order of lists, those of the first with a minus in front.
void PrintListDifference(Screen &screen, ComparedList const &list);
Json JsonOfListDifferences(std::vector<ComparedList> const &lists);

} // namespace qvlink

#include "wildcard.h"

#include "fold.h"

namespace {

// When a mismatch comes up only the last star needs to take more: an earlier one that
// took more would leave less for what already matched behind it.
template <class Equal>
bool Match(std::string_view pattern, std::string_view text, Equal const &equal) {
    std::size_t p = 0, t = 0;
    std::size_t afterStar = pattern.npos, resume = 0;
    while (t < text.size()) {
        if (p < pattern.size() && pattern[p] == '*') {
            afterStar = ++p;
            resume = t;
        } else if (p < pattern.size() && (pattern[p] == '?' || equal(pattern[p], text[t]))) {
            ++p;
            ++t;
        } else if (afterStar != pattern.npos) {
            p = afterStar;
            t = ++resume;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == '*')
        ++p;
    return p == pattern.size();
}

} // namespace

bool WildcardMatch(std::string_view pattern, std::string_view text) {
    return Match(pattern, text, [](char p, char t) { return p == t; });
}

bool NameMatchesPattern(std::string_view pattern, std::string_view name) {
    if (pattern == "*.*")
        pattern = "*";
    return Match(pattern, name, [](char p, char t) { return FoldCase(p) == FoldCase(t); });
}

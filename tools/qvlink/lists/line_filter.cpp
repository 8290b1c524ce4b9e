#include "lists/line_filter.h"

#include "answer/place.h"
#include "list_text.h"

#include <algorithm>

namespace qvlink {
namespace {

// Goes back to the last star only: an earlier one can't do better.
bool Fits(std::string_view pattern, std::string_view text) {
    std::size_t at = 0;
    std::size_t star = std::string_view::npos;
    std::size_t retry = 0;
    for (std::size_t i = 0; i < text.size();) {
        if (at < pattern.size() && pattern[at] == '*') {
            star = at++;
            retry = i;
        } else if (at < pattern.size() && (pattern[at] == '?' || pattern[at] == text[i])) {
            ++at;
            ++i;
        } else if (star != std::string_view::npos) {
            at = star + 1;
            i = ++retry;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', at) == std::string_view::npos;
}

} // namespace

LineFilter::LineFilter(std::vector<std::string> const &patterns) {
    for (std::string const &pattern : patterns) {
        m_patterns.push_back(FoldName(pattern));
    }
}

bool LineFilter::Matches(std::string_view line) const {
    std::string const folded = FoldName(line);
    return std::any_of(m_patterns.begin(), m_patterns.end(),
                       [&](std::string const &pattern) { return Fits(pattern, folded); });
}

const char *NameProblem(std::string_view name) {
    if (name.empty()) {
        return "it has no name";
    }
    if (name.find('\\') != std::string_view::npos) {
        return "its name has a backslash, which separates names";
    }
    bool const isPlain =
        std::none_of(name.begin(), name.end(), [](char c) { return c >= 0 && c < ' '; });
    return isPlain ? nullptr : "its name has a control character";
}

bool EndsBlank(std::string_view name) { return !name.empty() && name.back() == ' '; }

bool IsTooLong(std::string_view line) { return line.size() >= lists::lineRoom; }

const char *const tooLong = "longer than the 259 characters of a line";

} // namespace qvlink

// Lines that are to be left out of a list.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace qvlink {

class LineFilter {
public:
    // * stands for any text, ? for one character.
    explicit LineFilter(std::vector<std::string> const &patterns);
    // Whether a whole line fits one of the patterns, the case of ASCII letters aside.
    bool Matches(std::string_view line) const;

private:
    std::vector<std::string> m_patterns; // folded
};

// Why no line of a list may hold this name; null if one may.
const char *NameProblem(std::string_view name);
// Whether the library would take something off the end of a line that ends so.
bool EndsBlank(std::string_view name);
// Whether a line is too long for the library.
bool IsTooLong(std::string_view line);
extern const char *const tooLong;

} // namespace qvlink

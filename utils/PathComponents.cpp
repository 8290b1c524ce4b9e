#include "PathComponents.h"

#include <algorithm>

namespace UTILS {

UtilsString Selected(UtilsString const &text) {
    UtilsString copy;
    copy.Append(text);
    return copy;
}

// A split of the string's own would keep the second of two separators in a row.
std::vector<std::string> Components(std::string_view text) {
    std::vector<std::string> parts;
    for (std::size_t begin = 0; begin < text.size();) {
        std::size_t const end = std::min(text.find('\\', begin), text.size());
        if (end != begin)
            parts.emplace_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    if (parts.empty())
        parts.emplace_back(text);
    return parts;
}

} // namespace UTILS

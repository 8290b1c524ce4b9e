#include "PathComponents.h"

#include <algorithm>
#include <string>

namespace UTILS {

UtilsString Selected(UtilsString const &text) {
    UtilsString copy;
    copy.Append(text);
    return copy;
}

// A split of the string's own would keep the second of two separators in a row.
UtilsString Components(UtilsString const &text, char separator) {
    std::string const whole(text.Retrieve(), text.size());
    UtilsString parts;
    bool isFirst = true;
    for (std::size_t begin = 0; begin < whole.size();) {
        std::size_t const end = std::min(whole.find(separator, begin), whole.size());
        if (end != begin) {
            std::string const part = whole.substr(begin, end - begin);
            isFirst ? parts = part : parts.AddString(part);
            isFirst = false;
        }
        begin = end + 1;
    }
    if (isFirst)
        parts = whole;
    return parts;
}

} // namespace UTILS

// Path texts in components, for the path and the registry class.
#pragma once

#include "UtilsString.h"

#include <string>
#include <string_view>
#include <vector>

namespace UTILS {

// The text of the selected string.
inline std::string_view ViewOf(UtilsString const &text) { return {text.Retrieve(), text.size()}; }
// The selected string alone, without cursors, and with default settings.
UtilsString Selected(UtilsString const &text);
// What lies between backslashes; empty components don't count. A text without any is its own
// component, so there is always one.
std::vector<std::string> Components(std::string_view text);

} // namespace UTILS

// Path texts in components, for the path and the registry class.
#pragma once

#include "UtilsString.h"

namespace UTILS {

// The selected string alone, without cursors, and with default settings.
UtilsString Selected(UtilsString const &text);
// Its components as strings of their own, the first one selected; empty ones don't count. A
// text without any is its own component.
UtilsString Components(UtilsString const &text, char separator = '\\');

} // namespace UTILS

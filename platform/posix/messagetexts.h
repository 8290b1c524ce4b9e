// What error numbers mean.
#pragma once

#include "platform/wintypes.h"

namespace platform {

// The text for an error number, without a line break; null for a number that isn't known.
const char *ErrorText(DWORD code);

} // namespace platform

// The attributes of files and folders.
#pragma once

#include "platform/wintypes.h"

namespace platform {

// By the mode that stat tells: a folder, and what the owner may not write.
DWORD AttributesOf(unsigned mode);

} // namespace platform

// String resources, by way of the module beside the library that reads them.
#pragma once

#include "platform/wintypes.h"

namespace UTILS {

// Loads a string resource into a buffer of `capacity` bytes: its length, or 0 where there is
// none, and where the module isn't there.
int LoadResourceString(HINSTANCE instance, unsigned int id, char *buffer, int capacity);

} // namespace UTILS

// Where the system keeps strings: a file of its own for each system.
#pragma once

#include "platform/wintypes.h"

namespace ZK {

// As LoadStringA; there is a buffer of at least one byte.
int CopyString(HINSTANCE instance, unsigned id, char *buffer, int capacity);

} // namespace ZK

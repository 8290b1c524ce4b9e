// The module ZKCommon: string resources of loaded modules.
//
// Programs give themselves such strings with the build's qvlinkdb_string_table.
#pragma once

#include "linkdb_export.h"
#include "platform/wintypes.h"

namespace ZK {

// Copies a string of the module that the instance stands for, null for the program, and
// returns its length: at most the capacity less one, and a terminator goes behind it. 0 if
// there is no such string or no buffer. Any thread.
QVLINKDB_API int LoadStringA(HINSTANCE instance, unsigned id, char *buffer, int capacity);

} // namespace ZK

// The same by a name that is alike on all systems, for those who look it up.
extern "C" QVLINKDB_API int ZKLoadStringA(HINSTANCE instance, unsigned id, char *buffer,
                                          int capacity);

// The process-wide state of the library.
#pragma once

#include "linkdb.h"
#include "platform/wintypes.h"

extern HINSTANCE g_hModule;               // this library's own, while it is attached
extern CQVUDatabase *g_pDatabase;         // the instance or null
extern DBObjectSearch *g_pObjectSearches; // open object searches, newest first

// Whether the system is of the NT family. Asked of the system once.
bool IsWindowsNT();

// The process-wide state of the link database.
#pragma once

#include "linkdb.h"

extern CQVUDatabase *g_pDatabase;         // the instance or null
extern DBObjectSearch *g_pObjectSearches; // open object searches, newest first

// Whether the system is of the NT family. Asked of the system once.
bool IsWindowsNT();

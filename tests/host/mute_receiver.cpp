// A module QVDebug.dll without the entry that the library asks for.
#include "linkdb_export.h"

extern "C" QVLINKDB_API int OutputW() { return 0; }

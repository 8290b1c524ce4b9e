// A module to be loaded by tests.
#include "linkdb_export.h"

extern "C" QVLINKDB_API int Answer() { return 42; }

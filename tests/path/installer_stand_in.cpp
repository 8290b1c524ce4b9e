// A module with the installer's entries, for paths to find.
#include "linkdb_export.h"

extern "C" {
QVLINKDB_API int MsiDecomposeDescriptorA() { return 1; }
QVLINKDB_API int MsiOpenDatabaseA() { return 2; }
QVLINKDB_API int MsiDatabaseOpenViewA() { return 3; }
QVLINKDB_API int MsiViewExecute() { return 4; }
QVLINKDB_API int MsiViewFetch() { return 5; }
QVLINKDB_API int MsiRecordGetStringA() { return 6; }
QVLINKDB_API int MsiGetComponentPathA() { return 7; }
QVLINKDB_API int MsiGetProductInfoA() { return 8; }
QVLINKDB_API int MsiGetShortcutTargetA() { return 9; }
QVLINKDB_API int MsiCloseHandle() { return 10; }
}

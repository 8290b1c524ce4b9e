// The question that clients ask.
#include "linkdb.h"

#include "protect_load.h"

int IsProtectedPath(const char *path) {
    return path && ProtectFind(ProtectedFileTree, path, nullptr) ? 1 : 0;
}

// Strings are where Windows has them.
#include "modules/ZKCommon/Strings.h"

namespace ZK {

int CopyString(HINSTANCE instance, unsigned id, char *buffer, int capacity) {
    return ::LoadStringA(instance, id, buffer, capacity);
}

} // namespace ZK

#include "modules/ZKCommon/ZKCommon.h"

#include "modules/ZKCommon/Strings.h"

namespace ZK {

int LoadStringA(HINSTANCE instance, unsigned id, char *buffer, int capacity) {
    return buffer && capacity > 0 ? CopyString(instance, id, buffer, capacity) : 0;
}

} // namespace ZK

int ZKLoadStringA(HINSTANCE instance, unsigned id, char *buffer, int capacity) {
    return ZK::LoadStringA(instance, id, buffer, capacity);
}

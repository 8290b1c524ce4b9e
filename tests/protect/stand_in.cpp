// A module in the place of the decompressor, that knows no compression: it looks at what it is
// given, writes a list of its own and answers with STAND_IN_RESULT.
#include "linkdb_export.h"
#include "platform/wintypes.h"

#include <cstring>

namespace {

constexpr char list[] = "%WindowsDir%\\stand-in.txt\r\n";
constexpr int wrongCall = -99;

// The length that the list tells stands before the stream.
DWORD ToldLength(const unsigned char *stream) {
    return DWORD{stream[-4]} | DWORD{stream[-3]} << 8 | DWORD{stream[-2]} << 16 |
           DWORD{stream[-1]} << 24;
}

} // namespace

extern "C" QVLINKDB_API int STAND_IN_NAME(const void *input, DWORD size, void *output,
                                          DWORD capacity) {
    auto *const room = static_cast<char *>(output);
    if (size == 0 || capacity != ToldLength(static_cast<const unsigned char *>(input)) + 10 ||
        capacity < sizeof list)
        return wrongCall;
    for (DWORD i = 0; i < capacity; ++i)
        if (room[i] != 0)
            return wrongCall;
    std::memcpy(room, list, sizeof list);
    return STAND_IN_RESULT;
}

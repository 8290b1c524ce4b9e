// Times as Windows counts them: 100 ns since 1601.
#pragma once

#include <cstdint>

#include "platform/wintypes.h"

namespace platform {

constexpr std::uint64_t fileTimeUnitsASecond = 10000000;

inline FILETIME FileTime(std::uint64_t units) {
    return {static_cast<DWORD>(units & 0xffffffff), static_cast<DWORD>(units >> 32)};
}

// Of a time since 1970.
inline FILETIME FileTime(std::int64_t seconds, std::uint32_t nanoseconds) {
    constexpr std::int64_t secondsTo1970 = 11644473600;
    if (seconds < -secondsTo1970)
        return {};
    return FileTime(static_cast<std::uint64_t>(seconds + secondsTo1970) * fileTimeUnitsASecond +
                    nanoseconds / 100);
}

} // namespace platform

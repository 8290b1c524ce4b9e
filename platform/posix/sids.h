// Security identifiers.
#pragma once

#include <cstddef>

#include "platform/winapi.h"

namespace platform {

// As Windows lays it out; as many sub-authorities as are counted.
struct Sid {
    BYTE revision;
    BYTE count;
    SID_IDENTIFIER_AUTHORITY authority;
    DWORD subAuthorities[8];
};
constexpr BYTE sidRevision = 1;
constexpr BYTE mostSubAuthorities = 8;

constexpr std::size_t SizeOf(Sid const &sid) {
    return offsetof(Sid, subAuthorities) + sid.count * sizeof(DWORD);
}

} // namespace platform

#include "platform/posix/sids.h"

#include "platform/posix/errors.h"

#include <algorithm>
#include <cstring>

namespace win::host {

BOOL AllocateAndInitializeSid(SID_IDENTIFIER_AUTHORITY *authority, BYTE count, DWORD first,
                              DWORD second, DWORD third, DWORD fourth, DWORD fifth, DWORD sixth,
                              DWORD seventh, DWORD eighth, PSID *sid) {
    using namespace platform;
    if (count > mostSubAuthorities)
        return Fail(ERROR_INVALID_SID);
    DWORD const all[] = {first, second, third, fourth, fifth, sixth, seventh, eighth};
    auto *const made = new (std::nothrow) Sid{sidRevision, count, *authority, {}};
    if (!made)
        return Fail(ERROR_NOT_ENOUGH_MEMORY);
    std::copy_n(all, count, made->subAuthorities);
    *sid = made;
    return TRUE;
}

PSID FreeSid(PSID sid) {
    delete static_cast<platform::Sid *>(sid);
    return nullptr;
}

BOOL EqualSid(PSID left, PSID right) {
    auto const *const one = static_cast<platform::Sid const *>(left);
    auto const *const other = static_cast<platform::Sid const *>(right);
    return one->revision == other->revision && one->count == other->count &&
           std::memcmp(one, other, platform::SizeOf(*one)) == 0;
}

} // namespace win::host

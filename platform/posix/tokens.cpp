// Tokens: what a process may do, told by the groups that it is in.
#include "platform/winapi.h"

#include "platform/posix/errors.h"
#include "platform/posix/handles.h"
#include "platform/posix/sids.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <grp.h>
#include <iterator>
#include <string>
#include <unistd.h>
#include <vector>

namespace platform {
namespace {

constexpr DWORD always = SE_GROUP_MANDATORY | SE_GROUP_ENABLED_BY_DEFAULT | SE_GROUP_ENABLED;

constexpr Sid everyone{sidRevision, 1, {{0, 0, 0, 0, 0, 1}}, {0}};
constexpr Sid administrators{
    sidRevision, 2, {{0, 0, 0, 0, 0, 5}}, {SECURITY_BUILTIN_DOMAIN_RID, DOMAIN_ALIAS_RID_ADMINS}};

// The groups whose members administer a machine, by the names that systems give them.
constexpr const char *administering[] = {"sudo", "wheel", "admin"};

std::vector<gid_t> GroupsOfProcess() {
    int const count = getgroups(0, nullptr);
    std::vector<gid_t> groups(count > 0 ? static_cast<std::size_t>(count) : 0);
    int const got = getgroups(static_cast<int>(groups.size()), groups.data());
    groups.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
    groups.push_back(getegid());
    return groups;
}

// The number of a group; false if there is none of that name.
bool NumberOf(const char *name, gid_t &number) {
    group record{};
    group *found = nullptr;
    std::vector<char> buffer(1024);
    int error = ERANGE;
    while ((error = getgrnam_r(name, &record, buffer.data(), buffer.size(), &found)) == ERANGE)
        buffer.resize(buffer.size() * 2);
    if (error != 0 || !found)
        return false;
    number = found->gr_gid;
    return true;
}

bool IsAdministrator() {
    if (geteuid() == 0)
        return true;
    std::vector<gid_t> const groups = GroupsOfProcess();
    return std::any_of(std::begin(administering), std::end(administering),
                       [&groups](const char *name) {
                           gid_t number = 0;
                           return NumberOf(name, number) &&
                                  std::find(groups.begin(), groups.end(), number) != groups.end();
                       });
}

bool IsToken(Slot const *slot, HANDLE handle) {
    return slot && (slot->state.load(std::memory_order_acquire) & identityMask) ==
                       Identity(Kind::Token, GenerationOf(handle));
}

// The record, with the SIDs behind it.
BOOL WriteGroups(std::vector<Sid> const &sids, void *buffer, DWORD size, DWORD &needed) {
    std::size_t const record =
        offsetof(TOKEN_GROUPS, Groups) + sids.size() * sizeof(SID_AND_ATTRIBUTES);
    std::size_t whole = record;
    for (Sid const &sid : sids)
        whole += SizeOf(sid);
    needed = static_cast<DWORD>(whole);
    if (!buffer || size < whole)
        return Fail(ERROR_INSUFFICIENT_BUFFER);
    auto *const groups = static_cast<TOKEN_GROUPS *>(buffer);
    auto *place = static_cast<BYTE *>(buffer) + record;
    groups->GroupCount = static_cast<DWORD>(sids.size());
    SID_AND_ATTRIBUTES *entry = groups->Groups;
    for (Sid const &sid : sids) {
        *entry++ = {place, always};
        std::memcpy(place, &sid, SizeOf(sid));
        place += SizeOf(sid);
    }
    return TRUE;
}

} // namespace

bool CloseToken(Slot *slot, std::uint64_t generation) {
    std::uint64_t identity = Identity(Kind::Token, generation);
    if (!slot->state.compare_exchange_strong(identity, Identity(Kind::Free, generation + 1),
                                             std::memory_order_acq_rel))
        return false;
    GiveBack(slot);
    return true;
}

} // namespace platform

namespace win::host {

HANDLE GetCurrentThread() { return reinterpret_cast<HANDLE>(std::intptr_t{-2}); }

BOOL OpenThreadToken(HANDLE thread, DWORD access, BOOL, HANDLE *token) {
    if (thread != GetCurrentThread())
        return platform::Fail(ERROR_INVALID_HANDLE);
    if (!token)
        return platform::Fail(ERROR_NOACCESS);
    return platform::Fail(access == TOKEN_QUERY ? ERROR_NO_TOKEN : ERROR_NOT_SUPPORTED);
}

BOOL OpenProcessToken(HANDLE process, DWORD access, HANDLE *token) {
    if (process != GetCurrentProcess())
        return platform::Fail(ERROR_INVALID_HANDLE);
    if (!token)
        return platform::Fail(ERROR_NOACCESS);
    if (access != TOKEN_QUERY)
        return platform::Fail(ERROR_NOT_SUPPORTED);
    platform::Slot *const slot = platform::TakeSlot();
    if (!slot)
        return platform::Fail(ERROR_NOT_ENOUGH_MEMORY);
    *token = platform::Publish(slot, platform::Kind::Token, 0);
    return TRUE;
}

BOOL GetTokenInformation(HANDLE token, TOKEN_INFORMATION_CLASS kind, LPVOID buffer, DWORD size,
                         DWORD *needed) {
    using namespace platform;
    return OutOfMemoryAs(FALSE, [=] {
        if (kind != TokenGroups)
            return Fail(ERROR_INVALID_PARAMETER);
        if (!IsToken(FindSlot(token), token))
            return Fail(ERROR_INVALID_HANDLE);
        if (!needed || (!buffer && size != 0))
            return Fail(ERROR_NOACCESS);
        std::vector<Sid> sids{everyone};
        if (IsAdministrator())
            sids.push_back(administrators);
        return WriteGroups(sids, buffer, size, *needed);
    });
}

} // namespace win::host

#include "CNTAdminObject.h"

#include "UtilsAllocator.h"

#include "platform/winapi.h"

namespace {

constexpr int firstStatic = 101; // the first priority that isn't the compiler's own

ostype Windows9xFamily(DWORD minor, ostype otherwise) {
    switch (minor) {
    case 0:
        return OS_WIN95;
    case 10:
        return OS_WIN98;
    case 90:
        return OS_WINME;
    default:
        return otherwise;
    }
}

ostype WindowsNtFamily(DWORD major, DWORD minor) {
    if (major == 3)
        return OS_NT3;
    if (major == 4)
        return OS_NT4;
    return major == 5 && minor == 0 ? OS_WIN2000 : OS_NT_LATER;
}

// The thread's own token if it impersonates someone, else that of the process; null for none.
HANDLE OpenToken() {
    HANDLE token = nullptr;
    if (win::OpenThreadToken(win::GetCurrentThread(), TOKEN_QUERY, FALSE, &token))
        return token;
    if (win::GetLastError() == ERROR_NO_TOKEN &&
        win::OpenProcessToken(win::GetCurrentProcess(), TOKEN_QUERY, &token))
        return token;
    return nullptr;
}

unsigned long ElementsFor(DWORD bytes) {
    return static_cast<unsigned long>((bytes + sizeof(_TOKEN_GROUPS) - 1) / sizeof(_TOKEN_GROUPS));
}

bool Holds(_TOKEN_GROUPS const &groups, PSID sought) {
    for (DWORD i = 0; i < groups.GroupCount; ++i)
        if (win::EqualSid(groups.Groups[i].Sid, sought))
            return true;
    return false;
}

} // namespace

// The library's entry may ask it, so it comes first, also where the linker orders the sources.
__attribute__((init_priority(firstStatic))) CNTAdminObject g_NTAdminObject;

CNTAdminObject::CNTAdminObject() {
    Init();
    DetermineOS();
}

CNTAdminObject::CNTAdminObject(const CNTAdminObject &other) { Copy(other); }

CNTAdminObject &CNTAdminObject::operator=(const CNTAdminObject &other) {
    if (this != &other)
        Copy(other);
    return *this;
}

CNTAdminObject::~CNTAdminObject() = default;

void CNTAdminObject::Init() {
    sid = nullptr;
    os = OS_UNKNOWN;
}

void CNTAdminObject::Copy(const CNTAdminObject &other) {
    sid = other.sid;
    os = other.os;
}

void CNTAdminObject::DetermineOS() {
    OSVERSIONINFOA version = {}; // a call that fails tells version 0 of platform 0
    version.dwOSVersionInfoSize = sizeof version;
    win::GetVersionExA(&version);
    if (version.dwPlatformId == VER_PLATFORM_WIN32_WINDOWS)
        os = Windows9xFamily(version.dwMinorVersion, os);
    else if (version.dwPlatformId == VER_PLATFORM_WIN32_NT)
        os = WindowsNtFamily(version.dwMajorVersion, version.dwMinorVersion);
}

ostype CNTAdminObject::GetOS() const { return os; }

int CNTAdminObject::IsNT() const { return os >= OS_NT3; }

int CNTAdminObject::IsAdmin() { return RunningAsAdministrator(); }

int CNTAdminObject::RunningAsAdministrator() {
    if (!IsNT())
        return 0;
    HANDLE const token = OpenToken();
    DWORD bytes = 0;
    if (!token || win::GetTokenInformation(token, TokenGroups, nullptr, 0, &bytes) ||
        win::GetLastError() != ERROR_INSUFFICIENT_BUFFER)
        return 0;
    // The token stays open: every call leaves one handle behind, and that is kept.
    UTILS::UtilsAllocator<_TOKEN_GROUPS> buffer(ElementsFor(bytes));
    _TOKEN_GROUPS *const groups = buffer;
    if (!win::GetTokenInformation(token, TokenGroups, groups, bytes, &bytes))
        return 0;
    SID_IDENTIFIER_AUTHORITY authority = {{0, 0, 0, 0, 0, 5}}; // the system's own groups
    if (!win::AllocateAndInitializeSid(&authority, 2, SECURITY_BUILTIN_DOMAIN_RID,
                                       DOMAIN_ALIAS_RID_ADMINS, 0, 0, 0, 0, 0, 0, &sid))
        return 0;
    // Whether a group only denies isn't looked at.
    int const result = groups && Holds(*groups, sid);
    win::FreeSid(sid);
    return result;
}

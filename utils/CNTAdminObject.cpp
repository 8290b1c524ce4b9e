#include "CNTAdminObject.h"

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

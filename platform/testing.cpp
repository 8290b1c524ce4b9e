#include "platform/winapi.h"

#include "platform/testing.h"

#include <atomic>
#include <cstring>

namespace testing_hooks {
namespace {

std::atomic<Hook> installedHook{nullptr};
std::atomic<void *> hookContext{nullptr};
std::atomic<DWORD> toldPlatform{0};
std::atomic<DWORD> toldMajor{0};
std::atomic<DWORD> toldMinor{0};
std::atomic<TOKEN_GROUPS const *> threadGroups{nullptr};
std::atomic<TOKEN_GROUPS const *> processGroups{nullptr};
Resource const *toldResources = nullptr;
std::size_t toldResourceCount = 0;
std::atomic<HANDLE> threadToken{nullptr}; // the last that was opened
std::atomic<HANDLE> processToken{nullptr};

} // namespace

void SetHook(Hook hook, void *context) {
    installedHook = nullptr;
    hookContext = context;
    installedHook = hook;
}

bool Ask(Call const &call) {
    Hook const hook = installedHook.load(std::memory_order_acquire);
    return hook && hook(call, hookContext);
}

void SetVersion(DWORD platformId, DWORD major, DWORD minor) {
    toldPlatform = platformId;
    toldMajor = major;
    toldMinor = minor;
}

bool ToldVersion(OSVERSIONINFOA *record) {
    if (toldPlatform == 0 && toldMajor == 0 && toldMinor == 0)
        return false;
    record->dwPlatformId = toldPlatform;
    record->dwMajorVersion = toldMajor;
    record->dwMinorVersion = toldMinor;
    return true;
}

void SetThreadGroups(TOKEN_GROUPS const *groups) { threadGroups = groups; }

void SetProcessGroups(TOKEN_GROUPS const *groups) { processGroups = groups; }

bool ToldThread() { return threadGroups != nullptr; }

void NoteToken(HANDLE token, bool ofThread) {
    // A handle's value may have been the other's before it was closed.
    (ofThread ? threadToken : processToken) = token;
    HANDLE stale = token;
    (ofThread ? processToken : threadToken).compare_exchange_strong(stale, nullptr);
}

TOKEN_GROUPS const *ToldGroups(HANDLE token) {
    if (token && token == threadToken)
        return threadGroups;
    return token && token == processToken ? processGroups.load() : nullptr;
}

BOOL TellGroups(TOKEN_GROUPS const &groups, LPVOID buffer, DWORD size, DWORD *needed) {
    std::size_t const whole =
        offsetof(TOKEN_GROUPS, Groups) + groups.GroupCount * sizeof(SID_AND_ATTRIBUTES);
    *needed = static_cast<DWORD>(whole);
    if (size < whole) {
        win::host::SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return FALSE;
    }
    std::memcpy(buffer, &groups, whole);
    return TRUE;
}

void SetResources(Resource const *resources, std::size_t count) {
    toldResources = resources;
    toldResourceCount = resources ? count : 0;
}

HRSRC ToldResource(const char *name, const char *type) {
    for (std::size_t i = 0; i < toldResourceCount; ++i)
        if (name == MAKEINTRESOURCEA(toldResources[i].id) &&
            win::host::_stricmp(type, toldResources[i].type) == 0)
            return reinterpret_cast<HRSRC>(const_cast<Resource *>(&toldResources[i]));
    return nullptr;
}

bool ToldBytes(HRSRC resource, const void *&bytes, DWORD &size) {
    for (std::size_t i = 0; i < toldResourceCount; ++i)
        if (resource == reinterpret_cast<HRSRC>(const_cast<Resource *>(&toldResources[i]))) {
            bytes = toldResources[i].bytes;
            size = toldResources[i].size;
            return true;
        }
    return false;
}

} // namespace testing_hooks

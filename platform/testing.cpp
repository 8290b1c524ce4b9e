#include "platform/winapi.h"

#include "platform/testing.h"

#include <atomic>

namespace testing_hooks {
namespace {

std::atomic<Hook> installedHook{nullptr};
std::atomic<void *> hookContext{nullptr};
std::atomic<DWORD> toldPlatform{0};
std::atomic<DWORD> toldMajor{0};
std::atomic<DWORD> toldMinor{0};

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

} // namespace testing_hooks

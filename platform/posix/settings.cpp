#include "platform/posix/settings.h"

#include "platform/posix/prefix.h"

#include <atomic>
#include <mutex>

namespace platform {
namespace {

std::mutex settingsMutex;
// By a plain pointer, so that the library's last work, at the end of the process, still
// has them.
std::shared_ptr<Settings const> *heldSettings = nullptr;
bool areApplied = false;
std::atomic<unsigned> lastCodePage{0}; // 0: none was known yet

void Hold(Settings settings) {
    auto held = std::make_unique<std::shared_ptr<Settings const>>(
        std::make_shared<Settings const>(std::move(settings)));
    delete heldSettings;
    heldSettings = held.release();
    lastCodePage = (*heldSettings)->codePage;
}

void Drop() {
    delete heldSettings;
    heldSettings = nullptr;
}

bool IsUpperLetter(char c) { return c >= 'A' && c <= 'Z'; }

} // namespace

std::shared_ptr<Settings const> SettingsNow() {
    std::lock_guard<std::mutex> const lock(settingsMutex);
    if (!heldSettings)
        Hold(ReadPrefix(PrefixDirectory()));
    return *heldSettings;
}

unsigned LastCodePage() {
    unsigned const known = lastCodePage.load(std::memory_order_relaxed);
    return known != 0 ? known : SettingsNow()->codePage;
}

Settings CurrentSettings() { return *SettingsNow(); }

void ApplySettings(Settings const &settings) {
    Settings applied = settings;
    for (auto drive = applied.drives.begin(); drive != applied.drives.end();) {
        std::string &directory = drive->second;
        while (directory.size() > 1 && directory.back() == '/')
            directory.pop_back();
        drive = IsUpperLetter(drive->first) ? std::next(drive) : applied.drives.erase(drive);
    }
    std::lock_guard<std::mutex> const lock(settingsMutex);
    Hold(std::move(applied));
    areApplied = true;
}

void ForgetPrefix() {
    std::lock_guard<std::mutex> const lock(settingsMutex);
    if (!areApplied)
        Drop();
}

void ReleaseSettings() {
    std::lock_guard<std::mutex> const lock(settingsMutex);
    Drop();
}

} // namespace platform

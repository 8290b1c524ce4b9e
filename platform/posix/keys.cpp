#include "platform/posix/keys.h"

#include "platform/posix/errors.h"
#include "platform/posix/settings.h"

#include <mutex>

namespace platform {
namespace {

// The registry that the settings tell of.
struct Current {
    std::shared_ptr<Settings const> settings;
    std::shared_ptr<registry::Tree> tree;
};

std::mutex currentMutex;
// By a plain pointer: it is used until the end of the process.
Current *current = nullptr;

std::shared_ptr<registry::Tree> TreeNow() {
    std::shared_ptr<Settings const> settings = SettingsNow();
    std::lock_guard<std::mutex> const lock(currentMutex);
    if (!current)
        current = new Current;
    bool const same =
        current->settings && current->settings->registryDirectory == settings->registryDirectory;
    if (!same)
        current->tree = registry::OpenTree(*settings);
    current->settings = std::move(settings);
    return current->tree;
}

} // namespace

std::optional<registry::Root> RootOf(HKEY key) {
    auto const value = reinterpret_cast<std::intptr_t>(key);
    auto const number = static_cast<std::uint32_t>(static_cast<std::uintptr_t>(value));
    if (value != static_cast<std::int32_t>(number) || value >= 0)
        return std::nullopt;
    if (number > 0x80000003 && number != 0x80000005)
        return std::nullopt;
    return static_cast<registry::Root>(number);
}

KeyUse::KeyUse(HKEY key, REGSAM access) : m_use(key, Kind::Key) {
    if (std::optional<registry::Root> const root = RootOf(key)) {
        m_tree = TreeNow();
        m_key = m_tree->RootKey(*root);
    } else if (HeldKey const *const held = m_use ? m_use.Get()->key : nullptr) {
        m_tree = held->tree;
        m_key = held->key;
        m_failure = (held->access & access) == access ? ERROR_SUCCESS : ERROR_ACCESS_DENIED;
    } else {
        m_failure = ERROR_INVALID_HANDLE;
    }
}

LSTATUS KeyUse::Publish(registry::OpenKey key, REGSAM access, HKEY *handle) const {
    auto held = std::make_unique<HeldKey>(HeldKey{m_tree, std::move(key), access});
    Slot *const slot = TakeSlot();
    if (!slot)
        return ERROR_NOT_ENOUGH_MEMORY;
    slot->key = held.release();
    *handle = static_cast<HKEY>(platform::Publish(slot, Kind::Key, 0));
    return ERROR_SUCCESS;
}

void DropKey(Slot &slot) {
    delete slot.key;
    slot.key = nullptr;
}

void ReleaseRegistry() {
    std::lock_guard<std::mutex> const lock(currentMutex);
    delete current;
    current = nullptr;
}

} // namespace platform

namespace win::host {

LSTATUS RegCloseKey(HKEY key) {
    if (platform::RootOf(key))
        return ERROR_SUCCESS;
    platform::Slot *const slot = platform::FindSlot(key);
    bool const closed = slot && platform::CloseKey(slot, platform::GenerationOf(key));
    return static_cast<LSTATUS>(closed ? ERROR_SUCCESS : ERROR_INVALID_HANDLE);
}

BOOL DuplicateHandle(HANDLE fromProcess, HANDLE handle, HANDLE toProcess, HANDLE *duplicate, DWORD,
                     BOOL, DWORD options) {
    using namespace platform;
    return OutOfMemoryAs(FALSE, [=] {
        if (fromProcess != GetCurrentProcess() || toProcess != GetCurrentProcess())
            return Fail(ERROR_INVALID_HANDLE);
        if (!duplicate)
            return Fail(ERROR_INVALID_PARAMETER);
        if (options != DUPLICATE_SAME_ACCESS)
            return Fail(ERROR_NOT_SUPPORTED);
        SlotUse const use(handle, Kind::Key);
        if (!use)
            return Fail(IsOpen(handle) ? ERROR_NOT_SUPPORTED : ERROR_INVALID_HANDLE);
        auto held = std::make_unique<HeldKey>(*use.Get()->key);
        // Each has its own place in an enumeration.
        registry::Code const code = held->tree->Duplicate(*held->key, held->key);
        Slot *const slot = code == ERROR_SUCCESS ? TakeSlot() : nullptr;
        if (!slot)
            return Fail(code == ERROR_SUCCESS ? ERROR_NOT_ENOUGH_MEMORY : code);
        slot->key = held.release();
        *duplicate = platform::Publish(slot, Kind::Key, 0);
        return TRUE;
    });
}

} // namespace win::host

// Registry keys by their handles.
#pragma once

#include "platform/posix/handles.h"
#include "platform/posix/registry/codes.h"
#include "platform/winapi.h"

#include <optional>

namespace platform {

// What the handle of a key names; the roots' are no handles and have all rights.
struct HeldKey {
    std::shared_ptr<registry::Tree> tree;
    registry::OpenKey key;
    REGSAM access = 0;
};

constexpr REGSAM queryValue = 1;
constexpr REGSAM enumerateSubkeys = 8;
constexpr REGSAM allAccess = KEY_READ | KEY_SET_VALUE | KEY_CREATE_SUB_KEY;

std::optional<registry::Root> RootOf(HKEY key);

// Keeps a key, and its tree, for the length of one call.
class KeyUse {
public:
    // Fails with 6, or with 5 if the handle hasn't all that access.
    KeyUse(HKEY key, REGSAM access);

    LSTATUS Failure() const { return static_cast<LSTATUS>(m_failure); }
    explicit operator bool() const { return m_failure == ERROR_SUCCESS; }
    registry::Tree &Tree() const { return *m_tree; }
    registry::Key &Key() const { return *m_key; }
    // Gives out a handle for a key of the same tree.
    LSTATUS Publish(registry::OpenKey key, REGSAM access, HKEY *handle) const;

private:
    SlotUse m_use;
    std::shared_ptr<registry::Tree> m_tree;
    registry::OpenKey m_key;
    DWORD m_failure = ERROR_SUCCESS;
};

// Gives back the registry in use, before the library is unloaded.
void ReleaseRegistry();

} // namespace platform

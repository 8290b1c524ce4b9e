// A key of a test's own below HKCU\Software, and short forms of the registry's calls.
#pragma once

#include "services.h"

#include "temp_folder.h"

#include <optional>
#include <vector>

#include "platform/process.h"
#include "platform/registry.h"

constexpr REGSAM usualAccess = 131103;

// An open key that is closed at the end of the scope.
class ScopedKey {
public:
    ScopedKey() = default;
    ~ScopedKey() { Close(); }
    ScopedKey(ScopedKey const &) = delete;
    ScopedKey &operator=(ScopedKey const &) = delete;

    // NOLINTNEXTLINE(google-explicit-constructor): it stands for the key
    operator HKEY() const { return m_key; }
    HKEY *Place() {
        Close();
        return &m_key;
    }
    void Close() {
        if (m_key)
            win::RegCloseKey(m_key);
        m_key = nullptr;
    }

private:
    HKEY m_key = nullptr;
};

inline LSTATUS OpenKey(HKEY above, std::string const &path, ScopedKey &key,
                       REGSAM access = usualAccess) {
    return win::RegOpenKeyExA(above, path.c_str(), 0, access, key.Place());
}

inline LSTATUS MakeKey(HKEY above, std::string const &path, ScopedKey &key,
                       DWORD *disposition = nullptr) {
    return win::RegCreateKeyExA(above, path.c_str(), 0, nullptr, 0, usualAccess, nullptr,
                                key.Place(), disposition);
}

inline LSTATUS MakeKey(HKEY above, std::string const &path) {
    ScopedKey key;
    return MakeKey(above, path, key);
}

inline LSTATUS SetBytes(HKEY key, const char *name, DWORD type, std::string const &data) {
    return win::RegSetValueExA(key, name, 0, type, reinterpret_cast<const BYTE *>(data.data()),
                               static_cast<DWORD>(data.size()));
}

struct Answer {
    LSTATUS status;
    DWORD type;
    std::string data;

    bool operator==(Answer const &other) const {
        return status == other.status && type == other.type && data == other.data;
    }
};

inline Answer Query(HKEY key, const char *name) {
    std::vector<BYTE> data(70000);
    auto size = static_cast<DWORD>(data.size());
    DWORD type = 77;
    LSTATUS const status = win::RegQueryValueExA(key, name, nullptr, &type, data.data(), &size);
    if (status != 0)
        return {status, 0, {}};
    return {status, type, std::string(reinterpret_cast<char *>(data.data()), size)};
}

// A subkey's name by index; nothing behind the last.
inline std::optional<std::string> SubkeyAt(HKEY key, DWORD index) {
    char name[1000];
    DWORD size = sizeof name;
    LSTATUS const status =
        win::RegEnumKeyExA(key, index, name, &size, nullptr, nullptr, nullptr, nullptr);
    if (status != 0) {
        EXPECT_EQ(259, status);
        return std::nullopt;
    }
    EXPECT_EQ('\0', name[size]);
    return std::string(name, size);
}

inline std::vector<std::string> Subkeys(HKEY key) {
    std::vector<std::string> names;
    while (auto name = SubkeyAt(key, static_cast<DWORD>(names.size())))
        names.push_back(*name);
    return names;
}

inline std::vector<std::string> ValueNames(HKEY key) {
    std::vector<std::string> names;
    char name[20000];
    for (DWORD size = sizeof name;
         win::RegEnumValueA(key, static_cast<DWORD>(names.size()), name, &size, nullptr, nullptr,
                            nullptr, nullptr) == 0;
         size = sizeof name)
        names.emplace_back(name, size);
    return names;
}

inline void RemoveKeys(HKEY above, std::string const &path) {
    ScopedKey key;
    if (OpenKey(above, path, key) != 0)
        return;
    for (auto name = SubkeyAt(key, 0); name; name = SubkeyAt(key, 0))
        RemoveKeys(key, *name);
    key.Close();
    ASSERT_EQ(0, win::RegDeleteKeyA(above, path.c_str())) << path;
}

class RegistryCalls : public ::testing::Test {
protected:
    RegistryCalls() : m_path("Software\\QVLinkDB tests " + std::to_string(CurrentProcessId())) {
        TellRegistryDirectory(m_folder.Directory());
        RemoveKeys(HKEY_CURRENT_USER, m_path);
        EXPECT_EQ(0, MakeKey(HKEY_CURRENT_USER, m_path, key));
    }
    ~RegistryCalls() override {
        key.Close();
        RemoveKeys(HKEY_CURRENT_USER, m_path);
    }

    std::string const &Path() const { return m_path; }

    ScopedKey key;

private:
    TempFolder m_folder;
    std::string m_path;
};

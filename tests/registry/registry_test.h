// A key of a test's own, below which it does as it likes, and the class laid open.
#pragma once

#include "platform/winapi.h"
#include "temp_folder.h"
#include "UtilsRegistry.h"

#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/process.h"
#include "platform/registry.h"

// With every field and the protected operations in reach.
class OpenRegistry : public UTILS::UtilsRegistry {
public:
    using UtilsRegistry::currentKey;
    using UtilsRegistry::disposition;
    using UtilsRegistry::lastError;
    using UtilsRegistry::lastWrite;
    using UtilsRegistry::longForm;
    using UtilsRegistry::nameSize;
    using UtilsRegistry::ParseOutPath;
    using UtilsRegistry::path;
    using UtilsRegistry::rootKey;
    using UtilsRegistry::UtilsRegistry;
    using UtilsRegistry::valueSize;
    using UtilsRegistry::valueType;
};

// What lies in the registry by the system's own calls, past the class that is tested.
class RegistryTest : public ::testing::Test {
protected:
    RegistryTest();
    ~RegistryTest() override;

    // "Software\NAME" and what is below it; with the root's name in front: "HKCU\Software\...".
    std::string Below(std::string const &path = "") const;
    std::string Full(std::string const &path = "") const { return "HKCU\\" + Below(path); }

    void MakeKey(std::string const &path) const;
    void WriteValue(std::string const &path, std::string const &name, DWORD type,
                    std::string const &bytes) const;
    void WriteNumber(std::string const &path, std::string const &name, DWORD number) const;
    bool IsKey(std::string const &path) const;
    // The bytes of a value; nothing if there is none.
    std::optional<std::string> ValueOf(std::string const &path, std::string const &name,
                                       DWORD *type = nullptr) const;

private:
    TempFolder m_folder;
    std::string m_name;
};

inline void RemoveKey(HKEY above, std::string const &path) {
    HKEY key = nullptr;
    if (win::RegOpenKeyExA(above, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS)
        return;
    std::vector<char> name(2000);
    for (DWORD size = 2000; win::RegEnumKeyExA(key, 0, name.data(), &size, nullptr, nullptr,
                                               nullptr, nullptr) == ERROR_SUCCESS;
         size = 2000) {
        RemoveKey(key, name.data());
    }
    win::RegCloseKey(key);
    ASSERT_EQ(win::RegDeleteKeyA(above, path.c_str()), ERROR_SUCCESS) << path;
}

inline RegistryTest::RegistryTest()
    : m_name("Software\\QVLinkDB test " + std::to_string(CurrentProcessId())) {
    TellRegistryDirectory(m_folder.Directory());
    RemoveKey(HKEY_CURRENT_USER, m_name);
    MakeKey("");
}

inline RegistryTest::~RegistryTest() { RemoveKey(HKEY_CURRENT_USER, m_name); }

inline std::string RegistryTest::Below(std::string const &path) const {
    return path.empty() ? m_name : m_name + "\\" + path;
}

inline void RegistryTest::MakeKey(std::string const &path) const {
    HKEY key = nullptr;
    ASSERT_EQ(win::RegCreateKeyExA(HKEY_CURRENT_USER, Below(path).c_str(), 0, nullptr, 0,
                                   KEY_READ | KEY_SET_VALUE | KEY_CREATE_SUB_KEY, nullptr, &key,
                                   nullptr),
              ERROR_SUCCESS)
        << path;
    win::RegCloseKey(key);
}

inline void RegistryTest::WriteValue(std::string const &path, std::string const &name, DWORD type,
                                     std::string const &bytes) const {
    HKEY key = nullptr;
    ASSERT_EQ(win::RegOpenKeyExA(HKEY_CURRENT_USER, Below(path).c_str(), 0,
                                 KEY_READ | KEY_SET_VALUE | KEY_CREATE_SUB_KEY, &key),
              ERROR_SUCCESS);
    EXPECT_EQ(win::RegSetValueExA(key, name.c_str(), 0, type,
                                  reinterpret_cast<BYTE const *>(bytes.data()),
                                  static_cast<DWORD>(bytes.size())),
              ERROR_SUCCESS);
    win::RegCloseKey(key);
}

inline void RegistryTest::WriteNumber(std::string const &path, std::string const &name,
                                      DWORD number) const {
    WriteValue(path, name, REG_DWORD, std::string(reinterpret_cast<char *>(&number), 4));
}

inline bool RegistryTest::IsKey(std::string const &path) const {
    HKEY key = nullptr;
    if (win::RegOpenKeyExA(HKEY_CURRENT_USER, Below(path).c_str(), 0, KEY_READ, &key) !=
        ERROR_SUCCESS)
        return false;
    win::RegCloseKey(key);
    return true;
}

inline std::optional<std::string>
RegistryTest::ValueOf(std::string const &path, std::string const &name, DWORD *type) const {
    HKEY key = nullptr;
    if (win::RegOpenKeyExA(HKEY_CURRENT_USER, Below(path).c_str(), 0, KEY_READ, &key) !=
        ERROR_SUCCESS)
        return std::nullopt;
    std::string bytes(4000, '#');
    auto size = static_cast<DWORD>(bytes.size());
    DWORD found = 0;
    LSTATUS const status = win::RegQueryValueExA(key, name.c_str(), nullptr, &found,
                                                 reinterpret_cast<BYTE *>(bytes.data()), &size);
    win::RegCloseKey(key);
    if (status != ERROR_SUCCESS)
        return std::nullopt;
    if (type)
        *type = found;
    bytes.resize(size);
    return bytes;
}

inline std::string Text(UTILS::UtilsString const &text) { return text.GetSTLString(); }

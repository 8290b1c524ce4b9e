#include "platform/system_registry.h"

#include <windows.h>

#include <algorithm>

namespace qvlink {
namespace {

constexpr DWORD firstRoom = 256; // in characters or bytes; grows as needed

struct KeyClose {
    using pointer = HKEY;
    void operator()(HKEY key) const { ::RegCloseKey(key); }
};
using OpenKey = std::unique_ptr<HKEY, KeyClose>;

std::wstring WideOf(std::string_view utf8) {
    int const size = static_cast<int>(utf8.size());
    std::wstring wide(utf8.size(), L'\0');
    int const units = ::MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, wide.data(), size);
    wide.resize(static_cast<std::size_t>(units));
    return wide;
}

std::string Utf8Of(std::wstring_view wide) {
    std::string utf8(wide.size() * 3, '\0');
    int const size =
        ::WideCharToMultiByte(CP_UTF8, 0, wide.data(), static_cast<int>(wide.size()), utf8.data(),
                              static_cast<int>(utf8.size()), nullptr, nullptr);
    utf8.resize(static_cast<std::size_t>(size));
    return utf8;
}

struct Place {
    HKEY root = nullptr; // null if the path begins with no root
    std::wstring path;
};

Place PlaceOf(std::string_view path) {
    struct Root {
        const char *name;
        HKEY key;
    };
    Root const roots[] = {{"HKLM", HKEY_LOCAL_MACHINE},
                          {"HKCU", HKEY_CURRENT_USER},
                          {"HKCR", HKEY_CLASSES_ROOT},
                          {"HKU", HKEY_USERS},
                          {"HKCC", HKEY_CURRENT_CONFIG}};
    std::string const name(path.substr(0, path.find('\\')));
    for (Root const &root : roots) {
        if (::lstrcmpiA(name.c_str(), root.name) == 0) {
            return {root.key, WideOf(path.substr(std::min(path.size(), name.size() + 1)))};
        }
    }
    return {};
}

class SystemRegistry : public Registry {
public:
    std::uint32_t ReadKeys(std::string_view path, std::vector<std::string> &names) override;
    std::uint32_t ReadValues(std::string_view path, std::vector<RegistryValue> &values) override;
    std::uint32_t Create(std::string_view path) override;
    std::uint32_t SetValue(std::string_view path, RegistryValue const &value) override;
    std::uint32_t DeleteValue(std::string_view path, std::string_view name) override;
    std::uint32_t DeleteTree(std::string_view path) override;
    // The system has transactions for some of its keys only.
    std::uint32_t Begin() override { return ERROR_SUCCESS; }
    std::uint32_t Commit() override { return ERROR_SUCCESS; }

private:
    static LSTATUS Open(std::string_view path, REGSAM rights, OpenKey &key);
    LSTATUS OpenForWriting(std::string_view path);

    // Values come key by key, so the last one is kept open.
    std::string m_lastPath;
    OpenKey m_last;
};

LSTATUS SystemRegistry::Open(std::string_view path, REGSAM rights, OpenKey &key) {
    Place const place = PlaceOf(path);
    if (!place.root) {
        return ERROR_INVALID_PARAMETER;
    }
    HKEY opened = nullptr;
    LSTATUS const status =
        ::RegOpenKeyExW(place.root, place.path.c_str(), 0, rights | KEY_WOW64_64KEY, &opened);
    key.reset(status == ERROR_SUCCESS ? opened : nullptr);
    return status;
}

LSTATUS SystemRegistry::OpenForWriting(std::string_view path) {
    if (m_last && path == m_lastPath) {
        return ERROR_SUCCESS;
    }
    m_lastPath = path;
    return Open(path, KEY_SET_VALUE, m_last);
}

std::uint32_t SystemRegistry::ReadKeys(std::string_view path, std::vector<std::string> &names) {
    names.clear();
    OpenKey key;
    LSTATUS status = Open(path, KEY_READ, key);
    for (DWORD index = 0; status == ERROR_SUCCESS; ++index) {
        wchar_t name[firstRoom]; // the longest name has 255 characters
        DWORD length = firstRoom;
        status =
            ::RegEnumKeyExW(key.get(), index, name, &length, nullptr, nullptr, nullptr, nullptr);
        if (status == ERROR_SUCCESS) {
            names.push_back(Utf8Of({name, length}));
        }
    }
    if (status == ERROR_NO_MORE_ITEMS) {
        return ERROR_SUCCESS;
    }
    names.clear();
    return static_cast<std::uint32_t>(status);
}

LSTATUS ReadValue(HKEY key, DWORD index, RegistryValue &value) {
    std::wstring name(firstRoom, L'\0');
    std::string data(firstRoom, '\0');
    while (true) {
        auto length = static_cast<DWORD>(name.size());
        auto size = static_cast<DWORD>(data.size());
        DWORD type = 0;
        LSTATUS const status = ::RegEnumValueW(key, index, name.data(), &length, nullptr, &type,
                                               reinterpret_cast<BYTE *>(data.data()), &size);
        if (status == ERROR_MORE_DATA) {
            // Which of the two was too small isn't told.
            name.resize(std::min<std::size_t>(name.size() * 8, 16384));
            data.resize(std::max<std::size_t>(data.size() * 2, size));
            continue;
        }
        if (status == ERROR_SUCCESS) {
            data.resize(size);
            value = {Utf8Of({name.data(), length}), type, std::move(data)};
        }
        return status;
    }
}

std::uint32_t SystemRegistry::ReadValues(std::string_view path,
                                         std::vector<RegistryValue> &values) {
    values.clear();
    OpenKey key;
    LSTATUS status = Open(path, KEY_READ, key);
    RegistryValue value;
    for (DWORD index = 0; status == ERROR_SUCCESS; ++index) {
        status = ReadValue(key.get(), index, value);
        if (status == ERROR_SUCCESS) {
            values.push_back(std::move(value));
        }
    }
    if (status == ERROR_NO_MORE_ITEMS) {
        return ERROR_SUCCESS;
    }
    values.clear();
    return static_cast<std::uint32_t>(status);
}

std::uint32_t SystemRegistry::Create(std::string_view path) {
    Place const place = PlaceOf(path);
    if (!place.root) {
        return ERROR_INVALID_PARAMETER;
    }
    HKEY made = nullptr;
    LSTATUS const status =
        ::RegCreateKeyExW(place.root, place.path.c_str(), 0, nullptr, 0,
                          KEY_SET_VALUE | KEY_WOW64_64KEY, nullptr, &made, nullptr);
    m_last.reset(status == ERROR_SUCCESS ? made : nullptr);
    m_lastPath = path;
    return static_cast<std::uint32_t>(status);
}

std::uint32_t SystemRegistry::SetValue(std::string_view path, RegistryValue const &value) {
    LSTATUS status = OpenForWriting(path);
    if (status == ERROR_SUCCESS) {
        // The system looks behind a text for its NUL, and takes one that it finds there.
        std::string const data = value.data + "\xff\xff";
        status = ::RegSetValueExW(m_last.get(), WideOf(value.name).c_str(), 0, value.type,
                                  reinterpret_cast<BYTE const *>(data.data()),
                                  static_cast<DWORD>(value.data.size()));
    }
    return static_cast<std::uint32_t>(status);
}

std::uint32_t SystemRegistry::DeleteValue(std::string_view path, std::string_view name) {
    LSTATUS status = OpenForWriting(path);
    if (status == ERROR_SUCCESS) {
        status = ::RegDeleteValueW(m_last.get(), WideOf(name).c_str());
    }
    return static_cast<std::uint32_t>(status);
}

std::uint32_t SystemRegistry::DeleteTree(std::string_view path) {
    std::size_t const last = path.rfind('\\');
    if (last == std::string_view::npos) {
        return ERROR_INVALID_PARAMETER;
    }
    m_last.reset();
    OpenKey above;
    LSTATUS status = Open(path.substr(0, last), KEY_READ | KEY_WRITE | DELETE, above);
    if (status == ERROR_SUCCESS) {
        status = ::RegDeleteTreeW(above.get(), WideOf(path.substr(last + 1)).c_str());
    }
    return static_cast<std::uint32_t>(status);
}

} // namespace

std::unique_ptr<Registry> OpenRegistry() { return std::make_unique<SystemRegistry>(); }

} // namespace qvlink

// The registry's calls: texts in the settings' code page over the tree of keys.
#include "platform/posix/keys.h"

#include "platform/posix/registrytext.h"

#include <cstring>
#include <new>

namespace platform {
namespace {

using registry::Value;

// Does the work of a call. None throws: without memory it fails with 8.
template <class Work> LSTATUS Status(Work work) {
    try {
        return static_cast<LSTATUS>(work());
    } catch (std::bad_alloc const &) {
        return ERROR_NOT_ENOUGH_MEMORY;
    } catch (UnknownPage const &) {
        return ERROR_INVALID_PARAMETER;
    }
}

bool IsText(DWORD type) { return type == REG_SZ || type == REG_EXPAND_SZ || type == REG_MULTI_SZ; }

// A key's path as the tree takes it. Classes may have a backslash in front.
std::u16string PathOf(HKEY key, const char *path) {
    if (!path)
        return {};
    if (key == HKEY_CLASSES_ROOT && *path == '\\')
        ++path;
    return FromPage(path, std::strlen(path));
}

std::u16string NameOf(const char *name) {
    return name ? FromPage(name, std::strlen(name)) : std::u16string();
}

// A value's data as a caller gets them.
std::string DataOf(Value &value) {
    return IsText(value.type) ? ToPage(FromBytes(value.data)) : std::move(value.data);
}

// Puts data into a caller's buffer if there is one and it has room for them.
DWORD Put(std::string const &data, DWORD type, BYTE *buffer, DWORD *size) {
    DWORD const capacity = size ? *size : 0;
    if (size)
        *size = static_cast<DWORD>(data.size());
    if (!buffer)
        return ERROR_SUCCESS;
    if (capacity < data.size())
        return ERROR_MORE_DATA;
    std::memcpy(buffer, data.data(), data.size());
    // A text that was stored without its terminator gets one where there is room.
    if (IsText(type) && capacity > data.size() && (data.empty() || data.back() != '\0'))
        buffer[data.size()] = 0;
    return ERROR_SUCCESS;
}

// Whether a name and its terminator have room.
bool Fits(std::string const &name, DWORD size) { return name.size() < size; }

void PutName(std::string const &name, char *buffer, DWORD *size) {
    std::memcpy(buffer, name.c_str(), name.size() + 1);
    *size = static_cast<DWORD>(name.size());
}

} // namespace
} // namespace platform

namespace win::host {

using namespace platform;

LSTATUS RegOpenKeyExA(HKEY key, const char *path, DWORD options, REGSAM access, HKEY *opened) {
    return Status([&]() -> LSTATUS {
        if (!opened)
            return ERROR_INVALID_PARAMETER;
        if (options != 0 || (access & ~allAccess) != 0)
            return ERROR_NOT_SUPPORTED;
        KeyUse const use(key, 0);
        if (!use)
            return use.Failure();
        if (RootOf(key) && (!path || !*path)) {
            *opened = key;
            return ERROR_SUCCESS;
        }
        registry::OpenKey reached;
        registry::Code const code = use.Tree().Open(use.Key(), PathOf(key, path), reached);
        return code == ERROR_SUCCESS ? use.Publish(std::move(reached), access, opened)
                                     : static_cast<LSTATUS>(code);
    });
}

LSTATUS RegCreateKeyExA(HKEY key, const char *path, DWORD reserved, char *classText, DWORD options,
                        REGSAM access, SECURITY_ATTRIBUTES *security, HKEY *created,
                        DWORD *disposition) {
    return Status([&]() -> LSTATUS {
        if (!created || !path || reserved != 0)
            return ERROR_INVALID_PARAMETER;
        if (classText || options != 0 || security || (access & ~allAccess) != 0)
            return ERROR_NOT_SUPPORTED;
        KeyUse const use(key, 0);
        if (!use)
            return use.Failure();
        registry::OpenKey reached;
        bool made = false;
        registry::Code const code = use.Tree().Create(use.Key(), PathOf(key, path), reached, made);
        if (code != ERROR_SUCCESS)
            return static_cast<LSTATUS>(code);
        LSTATUS const published = use.Publish(std::move(reached), access, created);
        if (published == ERROR_SUCCESS && disposition)
            *disposition = made ? REG_CREATED_NEW_KEY : REG_OPENED_EXISTING_KEY;
        return published;
    });
}

LSTATUS RegQueryValueExA(HKEY key, const char *name, DWORD *reserved, DWORD *type, BYTE *data,
                         DWORD *size) {
    return Status([&]() -> DWORD {
        if (reserved || (data && !size))
            return ERROR_INVALID_PARAMETER;
        KeyUse const use(key, queryValue);
        if (!use)
            return static_cast<DWORD>(use.Failure());
        Value value;
        registry::Code const code = use.Tree().ReadValue(use.Key(), NameOf(name), value);
        if (code != ERROR_SUCCESS)
            return code;
        std::string const bytes = DataOf(value);
        if (type)
            *type = value.type;
        return Put(bytes, value.type, data, size);
    });
}

LSTATUS RegSetValueExA(HKEY key, const char *name, DWORD reserved, DWORD type, const BYTE *data,
                       DWORD size) {
    return Status([&]() -> DWORD {
        if (reserved != 0)
            return ERROR_INVALID_PARAMETER;
        if (!data && size != 0)
            return ERROR_NOACCESS;
        KeyUse const use(key, KEY_SET_VALUE);
        if (!use)
            return static_cast<DWORD>(use.Failure());
        auto const *const bytes = reinterpret_cast<const char *>(data);
        Value value{NameOf(name), type, {}};
        if (IsText(type))
            value.data = ToBytes(FromPage(bytes, size));
        else if (size != 0)
            value.data.assign(bytes, size);
        return use.Tree().SetValue(use.Key(), value);
    });
}

LSTATUS RegDeleteValueA(HKEY key, const char *name) {
    return Status([&]() -> DWORD {
        KeyUse const use(key, KEY_SET_VALUE);
        return use ? use.Tree().DeleteValue(use.Key(), NameOf(name))
                   : static_cast<DWORD>(use.Failure());
    });
}

LSTATUS RegDeleteKeyA(HKEY key, const char *path) {
    return Status([&]() -> DWORD {
        if (!path)
            return ERROR_INVALID_PARAMETER;
        KeyUse const use(key, 0);
        if (!use)
            return static_cast<DWORD>(use.Failure());
        std::u16string const wide = PathOf(key, path);
        if (RootOf(key) && wide.empty())
            return ERROR_ACCESS_DENIED;
        return use.Tree().Delete(use.Key(), wide);
    });
}

LSTATUS RegEnumKeyExA(HKEY key, DWORD index, char *name, DWORD *nameSize, DWORD *reserved,
                      char *classText, DWORD *classSize, FILETIME *lastWrite) {
    return Status([&]() -> DWORD {
        if (!name || !nameSize || reserved)
            return ERROR_INVALID_PARAMETER;
        if (classText || classSize || lastWrite)
            return ERROR_NOT_SUPPORTED;
        KeyUse const use(key, enumerateSubkeys);
        if (!use)
            return static_cast<DWORD>(use.Failure());
        std::u16string wide;
        registry::Code const code = use.Tree().EnumerateKey(use.Key(), index, wide);
        if (code != ERROR_SUCCESS)
            return code;
        std::string const bytes = ToPage(wide);
        if (!Fits(bytes, *nameSize)) {
            *nameSize = static_cast<DWORD>(bytes.size() + 1);
            return ERROR_MORE_DATA;
        }
        PutName(bytes, name, nameSize);
        return ERROR_SUCCESS;
    });
}

LSTATUS RegEnumValueA(HKEY key, DWORD index, char *name, DWORD *nameSize, DWORD *reserved,
                      DWORD *type, BYTE *data, DWORD *size) {
    return Status([&]() -> DWORD {
        if (!name || !nameSize || reserved || (data && !size))
            return ERROR_INVALID_PARAMETER;
        KeyUse const use(key, queryValue);
        if (!use)
            return static_cast<DWORD>(use.Failure());
        Value value;
        registry::Code const code = use.Tree().EnumerateValue(use.Key(), index, value);
        if (code != ERROR_SUCCESS)
            return code;
        std::string const bytes = ToPage(value.name);
        bool const fits = Fits(bytes, *nameSize);
        DWORD const put = Put(DataOf(value), value.type, fits ? data : nullptr, size);
        if (type)
            *type = value.type;
        if (!fits)
            *nameSize = static_cast<DWORD>(bytes.size() + 1);
        else if (put == ERROR_SUCCESS)
            PutName(bytes, name, nameSize);
        return fits ? put : ERROR_MORE_DATA;
    });
}

} // namespace win::host

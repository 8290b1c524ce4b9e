// Values of the current key, and what it holds by index.
#include "UtilsRegistry.h"

#include "PathComponents.h"

#include "platform/winapi.h"

#include <algorithm>
#include <vector>

namespace UTILS {
namespace {

constexpr DWORD textRoom = 255;        // for a value's text
constexpr DWORD enumerationRoom = 256; // for a name or a value of an enumeration
constexpr DWORD longestName = 4 * 255; // bytes of a key's name in any code page

// Bytes for the system to fill, with a NUL behind them that it doesn't know of.
class Buffer {
public:
    explicit Buffer(DWORD room) : m_room(room) {}
    void Grow(DWORD room) {
        m_room = std::max(m_room, room);
        m_grown.resize(m_room + 1);
    }
    DWORD Room() const { return m_room; }
    char *Text() { return m_grown.empty() ? m_first : m_grown.data(); }
    BYTE *Bytes() { return reinterpret_cast<BYTE *>(Text()); }

private:
    DWORD m_room;
    char m_first[enumerationRoom + 1] = "";
    std::vector<char> m_grown; // once more is asked for
};

// Numbers and bytes are told by their first byte alone, whatever follows it.
void TakeText(UtilsString &value, Buffer &data, DWORD type) {
    if (type != REG_DWORD && type != REG_BINARY && type != REG_DWORD_BIG_ENDIAN) {
        value = static_cast<const char *>(data.Text());
        return;
    }
    value.Erase();
    value.Append(static_cast<unsigned long>(*data.Bytes()));
}

// A number as the system fills it: bytes that it doesn't write stay.
DWORD LowPart(unsigned long value) { return static_cast<DWORD>(value & 0xffffffff); }

} // namespace

// What a call told of a value; true if it gave it.
bool UtilsRegistry::Note(unsigned long size, unsigned long type) {
    nameSize = size;
    valueType = type;
    return lastError == ERROR_SUCCESS;
}

int UtilsRegistry::RegQueryValueA(const UtilsString &name, unsigned long &value) {
    if (!CanUse(name))
        return 0;
    DWORD number = LowPart(value);
    DWORD type = 0;
    DWORD size = sizeof number;
    lastError = win::RegQueryValueExA(currentKey, name, nullptr, &type,
                                      reinterpret_cast<BYTE *>(&number), &size);
    if (!Note(size, type))
        return 0;
    value = number;
    return 1;
}

int UtilsRegistry::RegQueryValueA(const UtilsString &name, UtilsString &value) {
    if (!CanUse(name))
        return 0;
    Buffer data(textRoom);
    DWORD type = 0;
    DWORD size = data.Room();
    lastError = win::RegQueryValueExA(currentKey, name, nullptr, &type, data.Bytes(), &size);
    if (lastError == ERROR_MORE_DATA) {
        // What the second call reads isn't used: a longer value can't be had as text.
        data.Grow(size);
        size = data.Room();
        lastError = win::RegQueryValueExA(currentKey, name, nullptr, &type, data.Bytes(), &size);
        Note(size, type);
        return 0;
    }
    if (!Note(size, type))
        return 0;
    TakeText(value, data, type);
    return 1;
}

int UtilsRegistry::RegSetValueA(const UtilsString &name, unsigned long value) {
    if (!CanUse(name))
        return 0;
    DWORD const number = LowPart(value);
    valueSize = sizeof number;
    lastError = win::RegSetValueExA(currentKey, name, 0, REG_DWORD,
                                    reinterpret_cast<const BYTE *>(&number), sizeof number);
    return lastError == ERROR_SUCCESS;
}

int UtilsRegistry::RegSetValueA(const UtilsString &name, const UtilsString &value) {
    if (!CanUse(name))
        return 0;
    valueSize = value.size() + 1;
    lastError = win::RegSetValueExA(currentKey, name, 0, REG_SZ,
                                    reinterpret_cast<const BYTE *>(value.Retrieve()),
                                    static_cast<DWORD>(valueSize));
    return lastError == ERROR_SUCCESS;
}

int UtilsRegistry::RegDeleteValueA(const UtilsString &name) {
    if (!CanUse(name))
        return 0;
    lastError = win::RegDeleteValueA(currentKey, name);
    return lastError == ERROR_SUCCESS;
}

void UtilsRegistry::TakeName(UtilsString &name, const char *found, unsigned long form) const {
    if (form == 0)
        name = found;
    else
        name = std::string(ViewOf(GetRegistryPath(form == 1 ? 0 : 1))) + found;
}

int UtilsRegistry::RegEnumKeyA(unsigned long index, UtilsString &name, unsigned long form) {
    if (!currentKey)
        return 0;
    Buffer found(enumerationRoom);
    auto const number = static_cast<DWORD>(index);
    DWORD size = enumerationRoom;
    lastError = win::RegEnumKeyExA(currentKey, number, found.Text(), &size, nullptr, nullptr,
                                   nullptr, lastWrite);
    if (lastError == ERROR_MORE_DATA) {
        // The name isn't delivered, and that is kept.
        found.Grow(std::max(size, longestName));
        size = found.Room();
        lastError = win::RegEnumKeyExA(currentKey, number, found.Text(), &size, nullptr, nullptr,
                                       nullptr, lastWrite);
        nameSize = size;
        return 0;
    }
    nameSize = size;
    if (lastError != ERROR_SUCCESS)
        return 0;
    TakeName(name, found.Text(), form);
    return 1;
}

int UtilsRegistry::RegEnumValueA(unsigned long index, UtilsString &name, UtilsString &value,
                                 unsigned long form) {
    if (!currentKey)
        return 0;
    Buffer found(enumerationRoom);
    Buffer data(enumerationRoom);
    auto const number = static_cast<DWORD>(index);
    DWORD type = 0;
    DWORD size = found.Room();
    DWORD dataSize = data.Room();
    lastError = win::RegEnumValueA(currentKey, number, found.Text(), &size, nullptr, &type,
                                   data.Bytes(), &dataSize);
    if (lastError == ERROR_MORE_DATA) {
        found.Grow(size + dataSize);
        data.Grow(size + dataSize);
        size = found.Room();
        dataSize = data.Room();
        lastError = win::RegEnumValueA(currentKey, number, found.Text(), &size, nullptr, &type,
                                       data.Bytes(), &dataSize);
        Note(size, type);
        return 0;
    }
    if (!Note(size, type))
        return 0;
    TakeName(name, found.Text(), form);
    TakeText(value, data, type);
    return 1;
}

int UtilsRegistry::RegEnumValueA(unsigned long index, UtilsString &name, unsigned long &value,
                                 unsigned long form) {
    if (!currentKey)
        return 0;
    Buffer found(enumerationRoom);
    auto const at = static_cast<DWORD>(index);
    DWORD number = LowPart(value);
    auto *const bytes = reinterpret_cast<BYTE *>(&number);
    DWORD type = 0;
    DWORD size = found.Room();
    DWORD dataSize = sizeof number;
    lastError =
        win::RegEnumValueA(currentKey, at, found.Text(), &size, nullptr, &type, bytes, &dataSize);
    bool const repeated = lastError == ERROR_MORE_DATA;
    if (repeated) {
        found.Grow(size + dataSize);
        size = found.Room();
        dataSize = sizeof number;
        lastError = win::RegEnumValueA(currentKey, at, found.Text(), &size, nullptr, &type, bytes,
                                       &dataSize);
    }
    if (!Note(size, type) || repeated)
        return 0;
    TakeName(name, found.Text(), form);
    value = number;
    return 1;
}

} // namespace UTILS

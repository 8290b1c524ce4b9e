#include "platform/posix/registrytext.h"

#include "platform/winapi.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <new>

namespace platform {
namespace {

// A character of a code page takes no more bytes.
constexpr std::size_t longestCharacter = 4;

template <class Text> bool IsAscii(Text const &text) {
    return std::all_of(text.begin(), text.end(), [](auto c) { return c >= 0 && c < 0x80; });
}

// What a conversion gives; it leaves the last error alone.
template <class Text, class Convert> Text Converted(std::size_t capacity, Convert convert) {
    Text text(capacity, 0);
    DWORD const before = win::host::GetLastError();
    int const size = capacity > INT_MAX ? 0 : convert(text.data(), static_cast<int>(capacity));
    DWORD const after = win::host::GetLastError();
    win::host::SetLastError(before);
    if (size == 0 && (capacity > INT_MAX || after == ERROR_NOT_ENOUGH_MEMORY))
        throw std::bad_alloc();
    if (size == 0)
        throw UnknownPage();
    text.resize(static_cast<std::size_t>(size));
    return text;
}

} // namespace

// All pages have ASCII in them.
std::u16string FromPage(const char *bytes, std::size_t size) {
    std::string_view const text(bytes, size);
    if (IsAscii(text))
        return std::u16string(text.begin(), text.end());
    return Converted<std::u16string>(size, [text](char16_t *to, int capacity) {
        return win::host::MultiByteToWideChar(CP_ACP, 0, text.data(), static_cast<int>(text.size()),
                                              reinterpret_cast<unsigned short *>(to), capacity);
    });
}

std::string ToPage(std::u16string const &wide) {
    if (IsAscii(wide)) {
        std::string text(wide.size(), '\0');
        std::transform(wide.begin(), wide.end(), text.begin(),
                       [](char16_t unit) { return static_cast<char>(unit); });
        return text;
    }
    return Converted<std::string>(wide.size() * longestCharacter, [&wide](char *to, int capacity) {
        return win::host::WideCharToMultiByte(
            CP_ACP, 0, reinterpret_cast<const unsigned short *>(wide.data()),
            static_cast<int>(wide.size()), to, capacity, nullptr, nullptr);
    });
}

std::u16string FromBytes(std::string const &data) {
    std::u16string wide(data.size() / 2, u'\0');
    std::memcpy(wide.data(), data.data(), wide.size() * 2);
    return wide;
}

std::string ToBytes(std::u16string const &wide) {
    return std::string(reinterpret_cast<const char *>(wide.data()), wide.size() * 2);
}

} // namespace platform

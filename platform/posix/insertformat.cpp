#include "platform/posix/insertformat.h"

#include "platform/winapi.h"

#include <cstdio>
#include <cstring>

namespace platform {
namespace {

constexpr std::string_view sizes[] = {"I64", "I32", "I", "ll", "l", "h", "w"};
constexpr std::string_view kinds = "diuxXopcCsS";

std::string_view TakeAll(std::string_view &text, std::string_view of) {
    std::size_t const end = text.find_first_not_of(of);
    std::string_view const taken = text.substr(0, end);
    text.remove_prefix(taken.size());
    return taken;
}

// Digits or a star.
std::string_view TakeNumber(std::string_view &text) {
    bool const star = !text.empty() && text.front() == '*';
    if (!star)
        return TakeAll(text, "0123456789");
    std::string_view const taken = text.substr(0, 1);
    text.remove_prefix(1);
    return taken;
}

std::string_view TakeSize(std::string_view &text) {
    for (std::string_view const size : sizes) {
        if (text.substr(0, size.size()) != size)
            continue;
        text.remove_prefix(size.size());
        return size;
    }
    return {};
}

template <class Value> std::string Print(std::string const &format, Value value) {
    int const size = std::snprintf(nullptr, 0, format.c_str(), value);
    if (size <= 0)
        return {};
    std::string text(static_cast<std::size_t>(size) + 1, '\0');
    std::snprintf(text.data(), text.size(), format.c_str(), value);
    text.pop_back();
    return text;
}

std::intmax_t Signed(std::string const &size, std::uintptr_t value) {
    if (size == "h")
        return static_cast<short>(value);
    if (size == "l")
        return static_cast<long>(value);
    if (size == "ll" || size == "I64" || size == "I")
        return static_cast<std::int64_t>(value);
    return static_cast<std::int32_t>(value);
}

std::uintmax_t Unsigned(std::string const &size, std::uintptr_t value) {
    if (size == "h")
        return static_cast<unsigned short>(value);
    if (size == "l")
        return static_cast<unsigned long>(value);
    if (size == "ll" || size == "I64" || size == "I")
        return static_cast<std::uint64_t>(value);
    return static_cast<std::uint32_t>(value);
}

// In the system's code page, with the flags that all pages know.
std::string Narrow(const unsigned short *wide, int length) {
    UINT const page = win::host::GetACP();
    int const size =
        win::host::WideCharToMultiByte(page, 0, wide, length, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(size), '\0');
    win::host::WideCharToMultiByte(page, 0, wide, length, bytes.data(), size, nullptr, nullptr);
    bytes.resize(std::strlen(bytes.c_str())); // up to the terminator
    return bytes;
}

bool IsWide(InsertFormat const &format) {
    bool const capital = format.kind == 'S' || format.kind == 'C';
    return format.size == "l" || format.size == "w" || (capital && format.size != "h");
}

std::string Text(InsertFormat const &format, std::uintptr_t value) {
    if (format.kind == 'c' || format.kind == 'C') {
        auto const unit = static_cast<unsigned short>(value);
        return IsWide(format) ? Narrow(&unit, 1) : std::string(1, static_cast<char>(value));
    }
    if (value == 0)
        return "(null)";
    return IsWide(format) ? Narrow(reinterpret_cast<const unsigned short *>(value), -1)
                          : std::string(reinterpret_cast<const char *>(value));
}

} // namespace

bool ParseInsertFormat(std::string_view text, InsertFormat &format) {
    format.flags = TakeAll(text, "-+ #0");
    format.width = TakeNumber(text);
    if (!text.empty() && text.front() == '.') {
        text.remove_prefix(1);
        format.precision = "." + std::string(TakeNumber(text));
    }
    format.size = TakeSize(text);
    if (text.size() != 1 || kinds.find(text.front()) == std::string_view::npos)
        return false;
    format.kind = text.front();
    return true;
}

std::string RenderInsert(InsertFormat const &format, std::uintptr_t value) {
    std::string const start = "%" + format.flags + format.width;
    switch (format.kind) {
    case 'd':
    case 'i':
        return Print(start + format.precision + "jd", Signed(format.size, value));
    case 'p': // all digits of an address, as Windows prints it
        return Print(start + ".16jX", static_cast<std::uintmax_t>(value));
    case 'u':
    case 'x':
    case 'X':
    case 'o':
        return Print(start + format.precision + "j" + format.kind, Unsigned(format.size, value));
    default:
        return Print(start + format.precision + "s", Text(format, value).c_str());
    }
}

} // namespace platform

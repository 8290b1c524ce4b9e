// Wide text and bytes, resources and formatted messages.
#include <cstdarg>
#include <cstdio>
#include <memory>

#include "UtilsString.h"

#include "platform/winapi.h"
#include "utils/string_resources.h"

namespace UTILS {
namespace {

constexpr DWORD toBytesFlags = 0x0220;    // WC_COMPOSITECHECK, WC_SEPCHARS
constexpr DWORD toWideFlags = 0x0009;     // MB_PRECOMPOSED, MB_ERR_INVALID_CHARS
constexpr DWORD fromStringFlags = 0x0500; // allocate the buffer; the format is given
constexpr DWORD fromSystemFlags = 0x1100; // allocate the buffer; the text is the system's
constexpr DWORD language = 0x0400;

constexpr UINT utf8 = 65001;
constexpr DWORD utf8Flags = 0x0008; // MB_ERR_INVALID_CHARS

// UTF-8 has no use for the flags of other code pages, and a call with them fails.
DWORD FlagsFor(UINT codePage, DWORD flags) { return codePage == utf8 ? flags & utf8Flags : flags; }

// A text that the system allocated.
class SystemText {
public:
    SystemText() = default;
    SystemText(SystemText const &) = delete;
    SystemText &operator=(SystemText const &) = delete;
    ~SystemText() {
        if (m_text) {
            win::LocalFree(m_text);
        }
    }
    // What FormatMessageA takes as its buffer when it is to allocate one.
    char *Slot() { return reinterpret_cast<char *>(&m_text); }
    char const *Text() const { return m_text; }

private:
    char *m_text = nullptr;
};

} // namespace

void UtilsString::ConvertFromWideChar(unsigned short const *text, int append) {
    UINT const codePage = win::GetACP();
    DWORD const flags = FlagsFor(codePage, toBytesFlags);
    int const needed =
        win::WideCharToMultiByte(codePage, flags, text, -1, nullptr, 0, nullptr, nullptr);
    if (needed <= 0) {
        return;
    }
    std::unique_ptr<char[]> const bytes(new char[static_cast<std::size_t>(needed) + 1]());
    if (win::WideCharToMultiByte(codePage, flags, text, -1, bytes.get(), needed, nullptr,
                                 nullptr)) {
        if (!append) {
            Erase();
        }
        Append(bytes.get());
    }
}

UtilsString UtilsString::ReturnStringFromWideString(unsigned short const *text) {
    UtilsString result;
    result.ConvertFromWideChar(text, 0);
    return result;
}

UtilsString UtilsString::ReturnStringFromWideString(WideString const &text) {
    return ReturnStringFromWideString(text.c_str());
}

// One buffer for all objects, as large as any text so far has needed. Made for an empty text
// it has no room for ever: a conversion without room succeeds by telling a size.
unsigned short *UtilsString::ReturnWideChar() const {
    static UtilsAllocator<unsigned short> buffer(2 * size());
    UINT const codePage = win::GetACP();
    int const length = static_cast<int>(size() + 1);
    auto const convert = [&](unsigned long capacity) {
        return win::MultiByteToWideChar(codePage, FlagsFor(codePage, toWideFlags), Retrieve(),
                                        length, buffer.GetMemoryBlock(),
                                        static_cast<int>(capacity));
    };
    if (!convert(buffer.GetLength()) && win::GetLastError() == ERROR_INSUFFICIENT_BUFFER) {
        buffer.ReAllocateMemory(static_cast<unsigned long>(convert(0)));
        convert(buffer.GetLength());
    }
    return buffer.GetMemoryBlock();
}

unsigned char *UtilsString::ReturnByteStr() const {
    static UtilsAllocator<unsigned char> buffer(size());
    char const *const text = Retrieve();
    for (unsigned long i = 0; i < size(); ++i) {
        buffer[i] = static_cast<unsigned char>(text[i] - 128);
    }
    return buffer.GetMemoryBlock();
}

WideString UtilsString::GetSTLWString() const {
    unsigned short const *const wide = ReturnWideChar();
    return wide ? WideString(wide) : WideString();
}

unsigned long UtilsString::LoadStringA(HINSTANCE instance, unsigned int id, unsigned long maximum) {
    std::unique_ptr<char[]> const text(new char[std::size_t{maximum} + 1]());
    if (!instance) {
        instance = win::GetModuleHandleA(nullptr);
    }
    int const length = LoadResourceString(instance, id, text.get(), static_cast<int>(maximum));
    if (length == 0) {
        return 0;
    }
    Append(text.get());
    return static_cast<unsigned long>(length);
}

unsigned long UtilsString::FormatInto(char const *format, ...) {
    SystemText text;
    std::va_list arguments;
    va_start(arguments, format);
    DWORD const length =
        win::FormatMessageA(fromStringFlags, format, 0, language, text.Slot(), 0, &arguments);
    va_end(arguments);
    if (length != 0) {
        Append(text.Text());
    }
    return length;
}

unsigned long UtilsString::SetErrorMsg(unsigned long code, int withNumber) {
    SystemText text;
    DWORD const length = win::FormatMessageA(fromSystemFlags, nullptr, static_cast<DWORD>(code),
                                             language, text.Slot(), 0, nullptr);
    if (length == 0) {
        return 0;
    }
    if (withNumber) {
        Append("Error Number:  ").Append(code).Append(" - ");
    }
    Append(text.Text());
    return length;
}

} // namespace UTILS

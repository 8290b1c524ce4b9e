#include "platform/windows/text.h"

#include <windows.h>

namespace qvlink {

std::string FromWide(std::wstring const &text, bool &lossless) {
    bool const utf8 = ::GetACP() == CP_UTF8;
    DWORD const flags = utf8 ? WC_ERR_INVALID_CHARS : WC_NO_BEST_FIT_CHARS;
    BOOL replaced = FALSE;
    int const units = static_cast<int>(text.size());
    std::string result(text.size() * 4, '\0');
    int const size =
        ::WideCharToMultiByte(CP_ACP, flags, text.data(), units, result.data(),
                              static_cast<int>(result.size()), nullptr, utf8 ? nullptr : &replaced);
    result.resize(static_cast<std::size_t>(size));
    lossless = (size > 0 || text.empty()) && !replaced;
    return result;
}

std::wstring ToWide(std::string const &text) {
    int const size = static_cast<int>(text.size());
    std::wstring wide(text.size(), L'\0');
    int const units = ::MultiByteToWideChar(CP_ACP, 0, text.data(), size, wide.data(), size);
    wide.resize(static_cast<std::size_t>(units));
    return wide;
}

std::wstring LongPath(std::string const &path) {
    std::wstring const wide = ToWide(path);
    DWORD const size = ::GetFullPathNameW(wide.c_str(), 0, nullptr, nullptr);
    std::wstring whole(size, L'\0');
    whole.resize(::GetFullPathNameW(wide.c_str(), size, whole.data(), nullptr));
    bool const local = whole.size() > 2 && whole[1] == L':';
    return local ? L"\\\\?\\" + whole : whole;
}

std::string LastErrorText() {
    DWORD const error = ::GetLastError();
    char text[512];
    DWORD size = ::FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
                                  nullptr, error, 0, text, sizeof text, nullptr);
    while (size > 0 &&
           (text[size - 1] == '\n' || text[size - 1] == '\r' || text[size - 1] == '.')) {
        --size;
    }
    ::SetLastError(error);
    return size > 0 ? std::string(text, size) : "error " + std::to_string(error);
}

} // namespace qvlink

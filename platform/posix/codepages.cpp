// Text in code pages and in UTF-16.
#include "platform/winapi.h"

#include "platform/posix/compositions.h"
#include "platform/posix/errors.h"
#include "platform/posix/iconvpage.h"
#include "platform/posix/settings.h"
#include "platform/posix/utf8.h"

#include <algorithm>
#include <climits>
#include <string>

namespace platform {
namespace {

struct Flags {
    DWORD toBytes, toWide;
};

Flags Allowed(UINT page) {
    if (page == CP_UTF8)
        return {WC_ERR_INVALID_CHARS, MB_ERR_INVALID_CHARS};
    return {WC_COMPOSITECHECK | WC_SEPCHARS | WC_NO_BEST_FIT_CHARS,
            MB_PRECOMPOSED | MB_ERR_INVALID_CHARS};
}

UINT PageOf(UINT page) { return page == CP_ACP ? win::GetACP() : page; }

// What is common to the arguments of both directions.
template <class From, class To>
bool Usable(const From *from, int length, const To *to, int capacity) {
    return from && length != 0 && length >= -1 && capacity >= 0 && (to || capacity == 0) &&
           static_cast<const void *>(from) != static_cast<const void *>(to);
}

// The text that a call is given; with its terminator where that tells its length.
template <class Text, class Unit> Text TextOf(const Unit *text, int length) {
    const Unit *end = text;
    if (length < 0)
        while (*end++ != 0) {
        }
    else
        end += length;
    return Text(text, end);
}

template <class Text, class Unit> int Answer(Text const &text, Unit *buffer, int capacity) {
    if (text.size() > static_cast<std::size_t>(capacity == 0 ? INT_MAX : capacity))
        return Fail(ERROR_INSUFFICIENT_BUFFER);
    if (capacity != 0)
        std::copy(text.begin(), text.end(), buffer);
    return static_cast<int>(text.size());
}

// Takes a letter and its mark from the front of a text as one character, if the page has it.
bool EncodeComposed(IconvPage const &page, std::u16string_view &wide, std::string &bytes) {
    char16_t const whole = wide.size() > 1 ? Composed(wide[0], wide[1]) : u'\0';
    if (!whole || !page.Encode(std::u16string_view(&whole, 1), bytes))
        return false;
    wide.remove_prefix(2);
    return true;
}

// True if there was something that the page hasn't, and the substitute stands for it.
bool EncodeByPage(IconvPage const &page, DWORD flags, std::u16string_view wide, char substitute,
                  std::string &bytes) {
    bool substituted = false;
    while (!wide.empty()) {
        if (flags & WC_COMPOSITECHECK && EncodeComposed(page, wide, bytes))
            continue;
        bool const pair = wide.size() > 1 && (wide[0] & 0xfc00) == 0xd800;
        std::size_t units = pair && page.Encode(wide.substr(0, 2), bytes) ? 2 : 1;
        if (units == 1 && !page.Encode(wide.substr(0, 1), bytes)) {
            bytes.push_back(substitute);
            substituted = true;
        }
        wide.remove_prefix(units);
    }
    return substituted;
}

// False if there was something that is no text; U+FFFD stands for each byte of it.
bool DecodeByPage(IconvPage const &page, std::string_view bytes, std::u16string &wide) {
    bool good = true;
    while (!bytes.empty()) {
        std::size_t const taken = page.Decode(bytes, wide);
        if (taken == 0) {
            wide.push_back(replacement);
            good = false;
        }
        bytes.remove_prefix(taken == 0 ? 1 : taken);
    }
    return good;
}

int WideToUtf8(DWORD flags, std::u16string const &wide, char *buffer, int capacity) {
    std::string bytes;
    if (!EncodeUtf8(wide, bytes) && flags & WC_ERR_INVALID_CHARS)
        return Fail(ERROR_NO_UNICODE_TRANSLATION);
    return Answer(bytes, buffer, capacity);
}

} // namespace
} // namespace platform

namespace win::host {

UINT GetACP() {
    return platform::OutOfMemoryAs(UINT{CP_UTF8},
                                   [] { return UINT{platform::SettingsNow()->codePage}; });
}

int WideCharToMultiByte(UINT codePage, DWORD flags, const unsigned short *wide, int length,
                        char *buffer, int capacity, const char *substitute, BOOL *substituted) {
    using namespace platform;
    return OutOfMemoryAs(0, [=] {
        UINT const number = PageOf(codePage);
        bool const utf8 = number == CP_UTF8;
        if (!Usable(wide, length, buffer, capacity) || (utf8 && (substitute || substituted)))
            return Fail(ERROR_INVALID_PARAMETER);
        if (flags & ~Allowed(number).toBytes)
            return Fail(ERROR_INVALID_FLAGS);
        auto const text = TextOf<std::u16string>(wide, length);
        if (utf8)
            return WideToUtf8(flags, text, buffer, capacity);
        IconvPage const page(number);
        if (!page.Known())
            return Fail(ERROR_INVALID_PARAMETER);
        std::string bytes;
        bool const used = EncodeByPage(page, flags, text, substitute ? *substitute : '?', bytes);
        if (substituted)
            *substituted = used;
        return Answer(bytes, buffer, capacity);
    });
}

int MultiByteToWideChar(UINT codePage, DWORD flags, const char *bytes, int length,
                        unsigned short *buffer, int capacity) {
    using namespace platform;
    return OutOfMemoryAs(0, [=] {
        UINT const number = PageOf(codePage);
        if (!Usable(bytes, length, buffer, capacity))
            return Fail(ERROR_INVALID_PARAMETER);
        if (flags & ~Allowed(number).toWide)
            return Fail(ERROR_INVALID_FLAGS);
        auto const text = TextOf<std::string>(bytes, length);
        std::u16string wide;
        bool good = true;
        if (number == CP_UTF8) {
            good = DecodeUtf8(text, wide);
        } else {
            IconvPage const page(number);
            if (!page.Known())
                return Fail(ERROR_INVALID_PARAMETER);
            good = DecodeByPage(page, text, wide);
        }
        if (!good && flags & MB_ERR_INVALID_CHARS)
            return Fail(ERROR_NO_UNICODE_TRANSLATION);
        return Answer(wide, buffer, capacity);
    });
}

} // namespace win::host

#include "registry/scanning.h"

namespace qvlink {
namespace {

int DigitOf(char16_t c) {
    if (c >= u'0' && c <= u'9') {
        return c - u'0';
    }
    if (c >= u'a' && c <= u'f') {
        return c - u'a' + 10;
    }
    return c >= u'A' && c <= u'F' ? c - u'A' + 10 : -1;
}

// A number of at most so many digits of a base that is a power of two.
std::optional<std::uint32_t> TakeNumber(std::u16string_view &text, unsigned bits,
                                        std::size_t most) {
    std::uint32_t value = 0;
    std::size_t count = 0;
    for (; count < most && count < text.size(); ++count) {
        int const digit = DigitOf(text[count]);
        if (digit < 0 || digit >= 1 << bits) {
            break;
        }
        value = value << bits | static_cast<std::uint32_t>(digit);
    }
    text.remove_prefix(count);
    return count > 0 ? std::optional(value) : std::nullopt;
}

char16_t Lower(char16_t c) {
    return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c - u'A' + u'a') : c;
}

} // namespace

bool TakeWord(std::u16string_view &text, std::string_view word) {
    if (text.size() < word.size()) {
        return false;
    }
    for (std::size_t i = 0; i < word.size(); ++i) {
        if (Lower(text[i]) != Lower(static_cast<unsigned char>(word[i]))) {
            return false;
        }
    }
    text.remove_prefix(word.size());
    return true;
}

std::optional<std::uint32_t> TakeHex(std::u16string_view &text, std::size_t most) {
    return TakeNumber(text, 4, most);
}

void SkipBlanks(std::u16string_view &text) {
    std::size_t const start = text.find_first_not_of(u" \t");
    text.remove_prefix(start == std::u16string_view::npos ? text.size() : start);
}

std::optional<char16_t> TakePrefixEscape(std::u16string_view &text) {
    char16_t const kind = text.front();
    if (kind >= u'0' && kind <= u'7') {
        return static_cast<char16_t>(*TakeNumber(text, 3, 3));
    }
    text.remove_prefix(1);
    if (kind == u'x') {
        return static_cast<char16_t>(TakeHex(text, 4).value_or(u'x'));
    }
    constexpr std::u16string_view names = u"abefnrtv";
    constexpr std::u16string_view meanings = u"\a\b\x1b\f\n\r\t\v";
    std::size_t const at = names.find(kind);
    return at == std::u16string_view::npos ? kind : meanings[at];
}

std::optional<char16_t> TakeExchangeEscape(std::u16string_view &text) {
    constexpr std::u16string_view names = u"\\\"nr";
    constexpr std::u16string_view meanings = u"\\\"\n\r";
    std::size_t const at = names.find(text.front());
    if (at == std::u16string_view::npos) {
        return std::nullopt;
    }
    text.remove_prefix(1);
    return meanings[at];
}

Taken TakeEscaped(std::u16string_view &text, char16_t mark, TakeEscape escape,
                  std::u16string &units) {
    while (!text.empty() && text.front() != mark) {
        char16_t c = text.front();
        text.remove_prefix(1);
        if (c == u'\\' && !text.empty()) {
            auto const meant = escape(text);
            if (!meant) {
                return Taken::badEscape;
            }
            c = *meant;
        }
        units += c;
    }
    if (text.empty()) {
        return Taken::open;
    }
    text.remove_prefix(1);
    return Taken::all;
}

bool TakeByteList(std::u16string_view text, std::string &bytes) {
    for (SkipBlanks(text); !text.empty() && text.front() != u';'; SkipBlanks(text)) {
        auto const byte = TakeHex(text, 2);
        if (!byte) {
            return false;
        }
        bytes += static_cast<char>(*byte);
        SkipBlanks(text);
        if (!text.empty() && text.front() == u',') {
            text.remove_prefix(1);
        } else {
            return text.empty() || text.front() == u';';
        }
    }
    return true;
}

} // namespace qvlink

#include "output/utf8.h"

#include <algorithm>

namespace qvlink {
namespace {

bool IsContinuation(unsigned char byte) { return (byte & 0xc0) == 0x80; }

// The least and the greatest second byte: they rule out overlong forms, surrogates and
// what lies beyond U+10FFFF.
bool IsSecond(unsigned char first, unsigned char second) {
    switch (first) {
    case 0xe0:
        return second >= 0xa0 && second <= 0xbf;
    case 0xed:
        return second >= 0x80 && second <= 0x9f;
    case 0xf0:
        return second >= 0x90 && second <= 0xbf;
    case 0xf4:
        return second >= 0x80 && second <= 0x8f;
    default:
        return IsContinuation(second);
    }
}

std::size_t LengthByFirst(unsigned char first) {
    if (first < 0x80) {
        return 1;
    }
    if (first >= 0xc2 && first <= 0xdf) {
        return 2;
    }
    if (first >= 0xe0 && first <= 0xef) {
        return 3;
    }
    return first >= 0xf0 && first <= 0xf4 ? 4 : 0;
}

} // namespace

std::size_t Utf8Length(std::string_view text) {
    if (text.empty()) {
        return 0;
    }
    auto const byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    std::size_t const length = LengthByFirst(byte(0));
    if (length == 0 || length > text.size() || (length > 1 && !IsSecond(byte(0), byte(1)))) {
        return 0;
    }
    for (std::size_t i = 2; i < length; ++i) {
        if (!IsContinuation(byte(i))) {
            return 0;
        }
    }
    return length;
}

bool IsUtf8(std::string_view text) {
    while (!text.empty()) {
        std::size_t const length = Utf8Length(text);
        if (length == 0) {
            return false;
        }
        text.remove_prefix(length);
    }
    return true;
}

std::string ReplaceNonUtf8(std::string_view text) {
    std::string replaced;
    while (!text.empty()) {
        std::size_t const length = Utf8Length(text);
        replaced += length ? text.substr(0, length) : std::string_view("\xef\xbf\xbd");
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return replaced;
}

} // namespace qvlink

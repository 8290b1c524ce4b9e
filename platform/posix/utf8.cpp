#include "platform/posix/utf8.h"

namespace platform {
namespace {

constexpr bool IsHigh(char16_t unit) { return unit >= 0xd800 && unit < 0xdc00; }
constexpr bool IsLow(char16_t unit) { return unit >= 0xdc00 && unit < 0xe000; }

void AppendUtf8(char32_t character, std::string &bytes) {
    if (character < 0x80) {
        bytes.push_back(static_cast<char>(character));
        return;
    }
    unsigned const following = character < 0x800 ? 1 : character < 0x10000 ? 2 : 3;
    unsigned const mark = 0xff00u >> (following + 1) & 0xff;
    bytes.push_back(static_cast<char>(mark | character >> (6 * following)));
    for (unsigned left = following; left-- > 0;)
        bytes.push_back(static_cast<char>(0x80 | (character >> (6 * left) & 0x3f)));
}

void AppendUtf16(char32_t character, std::u16string &wide) {
    if (character >= 0x10000) {
        wide.push_back(static_cast<char16_t>(0xd800 + ((character - 0x10000) >> 10)));
        character = 0xdc00 + (character & 0x3ff);
    }
    wide.push_back(static_cast<char16_t>(character));
}

unsigned LengthBy(unsigned char lead) {
    if (lead < 0x80)
        return 1;
    if (lead < 0xc2 || lead > 0xf4) // overlong, beyond Unicode, or no lead
        return 0;
    return lead < 0xe0 ? 2 : lead < 0xf0 ? 3 : 4;
}

// Whether a byte may be the second behind its lead: overlong forms, halves of pairs and
// what lies beyond Unicode show there.
bool MayFollow(unsigned char lead, unsigned char second) {
    unsigned char const least = lead == 0xe0 ? 0xa0 : lead == 0xf0 ? 0x90 : 0x80;
    unsigned char const most = lead == 0xed ? 0x9f : lead == 0xf4 ? 0x8f : 0xbf;
    return second >= least && second <= most;
}

struct Read {
    std::size_t size;
    char32_t character;
    bool good;
};

Read ReadUtf8(std::string_view bytes) {
    auto const at = [bytes](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
    unsigned char const lead = at(0);
    unsigned const length = LengthBy(lead);
    if (length == 0)
        return {1, replacement, false};
    char32_t character = length == 1 ? lead : lead & (0x7fu >> length);
    for (std::size_t i = 1; i < length; ++i) {
        bool const good =
            i < bytes.size() && (i == 1 ? MayFollow(lead, at(i)) : (at(i) & 0xc0) == 0x80);
        if (!good)
            return {i, replacement, false};
        character = character << 6 | (at(i) & 0x3f);
    }
    return {length, character, true};
}

} // namespace

bool EncodeUtf8(std::u16string_view wide, std::string &bytes) {
    bool good = true;
    for (std::size_t i = 0; i < wide.size(); ++i) {
        char32_t character = wide[i];
        if (IsHigh(wide[i]) && i + 1 < wide.size() && IsLow(wide[i + 1])) {
            character = 0x10000 + ((character & 0x3ff) << 10) + (wide[i + 1] & 0x3ff);
            ++i;
        } else if (IsHigh(wide[i]) || IsLow(wide[i])) {
            character = replacement;
            good = false;
        }
        AppendUtf8(character, bytes);
    }
    return good;
}

bool DecodeUtf8(std::string_view bytes, std::u16string &wide) {
    bool good = true;
    while (!bytes.empty()) {
        Read const read = ReadUtf8(bytes);
        AppendUtf16(read.character, wide);
        good = good && read.good;
        bytes.remove_prefix(read.size);
    }
    return good;
}

} // namespace platform

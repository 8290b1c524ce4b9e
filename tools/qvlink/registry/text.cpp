#include "registry/text.h"

#include <cstdint>

namespace qvlink {
namespace {

constexpr bool IsHigh(char32_t unit) { return (unit & 0xfffffc00) == 0xd800; }
constexpr bool IsLow(char32_t unit) { return (unit & 0xfffffc00) == 0xdc00; }

void AppendUtf8(std::string &text, std::uint32_t character) {
    auto const put = [&](std::uint32_t bits) { text += static_cast<char>(bits); };
    if (character < 0x80) {
        put(character);
        return;
    }
    if (character < 0x800) {
        put(0xc0 | character >> 6);
    } else {
        if (character < 0x10000) {
            put(0xe0 | character >> 12);
        } else {
            put(0xf0 | character >> 18);
            put(0x80 | (character >> 12 & 0x3f));
        }
        put(0x80 | (character >> 6 & 0x3f));
    }
    put(0x80 | (character & 0x3f));
}

void AppendUnits(std::u16string &units, std::uint32_t character) {
    if (character >= 0x10000) {
        units += static_cast<char16_t>(0xd800 | (character - 0x10000) >> 10);
        character = 0xdc00 | ((character - 0x10000) & 0x3ff);
    }
    units += static_cast<char16_t>(character);
}

// How many bytes follow the first one of a character, 4 if it is none.
std::size_t FollowersOf(unsigned char first) {
    if (first < 0x80) {
        return 0;
    }
    if (first < 0xc0) {
        return 4;
    }
    return first < 0xe0 ? 1 : first < 0xf0 ? 2 : first < 0xf8 ? 3 : 4;
}

// Takes a character off the front of a text; nothing if there is none.
std::optional<std::uint32_t> TakeCharacter(std::string_view &utf8) {
    constexpr std::uint32_t least[] = {0, 0x80, 0x800, 0x10000};
    auto const first = static_cast<unsigned char>(utf8.front());
    std::size_t const followers = FollowersOf(first);
    if (followers >= utf8.size() || followers > 3) {
        return std::nullopt;
    }
    std::uint32_t character = followers == 0 ? first : first & (0x3fu >> followers);
    for (std::size_t i = 1; i <= followers; ++i) {
        auto const byte = static_cast<unsigned char>(utf8[i]);
        if ((byte & 0xc0) != 0x80) {
            return std::nullopt;
        }
        character = character << 6 | (byte & 0x3fu);
    }
    utf8.remove_prefix(followers + 1);
    bool const isOne = character >= least[followers] && character <= 0x10ffff &&
                       !IsHigh(character) && !IsLow(character);
    return isOne ? std::optional(character) : std::nullopt;
}

} // namespace

std::optional<std::string> Utf8Of(std::u16string_view units) {
    std::string text;
    for (std::size_t i = 0; i < units.size(); ++i) {
        std::uint32_t character = units[i];
        if (IsHigh(character) || IsLow(character)) {
            if (IsLow(character) || i + 1 == units.size() || !IsLow(units[i + 1])) {
                return std::nullopt;
            }
            character = 0x10000 + ((character & 0x3ff) << 10) + (units[++i] & 0x3ffu);
        }
        AppendUtf8(text, character);
    }
    return text;
}

std::optional<std::u16string> UnitsOf(std::string_view utf8) {
    std::u16string units;
    while (!utf8.empty()) {
        auto const character = TakeCharacter(utf8);
        if (!character) {
            return std::nullopt;
        }
        AppendUnits(units, *character);
    }
    return units;
}

std::string StoredUnits(std::u16string_view units) {
    std::string bytes;
    bytes.reserve(units.size() * 2);
    for (char16_t const unit : units) {
        bytes += static_cast<char>(unit & 0xff);
        bytes += static_cast<char>(unit >> 8);
    }
    return bytes;
}

std::u16string UnitsOfStored(std::string_view bytes) {
    std::u16string units((bytes.size() + 1) / 2, u'\0');
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        auto const byte = static_cast<unsigned char>(bytes[i]);
        char16_t &unit = units[i / 2];
        unit = static_cast<char16_t>(unit | byte << (i % 2 * 8));
    }
    return units;
}

bool IsBlank(std::u16string_view text) {
    return text.find_first_not_of(u" \t") == std::u16string_view::npos;
}

} // namespace qvlink

#include "platform/posix/wide.h"

#include "platform/winapi.h"

#include <algorithm>
#include <atomic>
#include <clocale>
#include <cwctype>
#include <iterator>

namespace platform {
namespace {

constexpr unsigned upperMask = 1;
constexpr unsigned lowerMask = 2;
constexpr std::uint16_t noCharacter = 0xffff;

std::atomic<locale_t> heldUnicode{nullptr};

// Unicode's letters, made by the first who asks; null without memory.
locale_t Unicode() {
    locale_t held = heldUnicode.load(std::memory_order_acquire);
    if (held)
        return held;
    locale_t const made = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    if (!made || heldUnicode.compare_exchange_strong(held, made))
        return made;
    freelocale(made);
    return held;
}

struct Range {
    std::uint16_t first, last;
};

// What has a case by Unicode and none on Windows: signs and numbers made of letters,
// letters that only modify others.
constexpr Range caseless[] = {
    {0xaa, 0xaa},     {0xb5, 0xb5},     {0xba, 0xba},     {0x2b0, 0x2b8},   {0x2c0, 0x2c1},
    {0x2e0, 0x2e4},   {0x345, 0x345},   {0x37a, 0x37a},   {0x1d2c, 0x1d6a}, {0x1d78, 0x1d78},
    {0x1d9b, 0x1dbf}, {0x2090, 0x209c}, {0x2160, 0x217f}, {0x24b6, 0x24e9}, {0x2c7c, 0x2c7d},
    {0xa69c, 0xa69d}, {0xa770, 0xa770}, {0xa7f8, 0xa7f9}, {0xab5c, 0xab5f}};
// Capitals with a small iota beside them: both cases at once on Windows.
constexpr Range twofold[] = {{0x1f88, 0x1f8f}, {0x1f98, 0x1f9f}, {0x1fa8, 0x1faf},
                             {0x1fbc, 0x1fbc}, {0x1fcc, 0x1fcc}, {0x1ffc, 0x1ffc}};

template <std::size_t size> bool IsIn(Range const (&ranges)[size], std::uint16_t character) {
    return std::any_of(std::begin(ranges), std::end(ranges), [character](Range const &range) {
        return character >= range.first && character <= range.last;
    });
}

unsigned AsciiCase(std::uint16_t character) {
    return (character >= 'A' && character <= 'Z' ? upperMask : 0) |
           (character >= 'a' && character <= 'z' ? lowerMask : 0);
}

unsigned CaseOf(std::uint16_t character) {
    locale_t const unicode = character > 0x7f ? Unicode() : nullptr;
    if (!unicode)
        return AsciiCase(character);
    if (IsIn(caseless, character))
        return 0;
    if (IsIn(twofold, character))
        return upperMask | lowerMask;
    return (iswupper_l(character, unicode) ? upperMask : 0) |
           (iswlower_l(character, unicode) ? lowerMask : 0);
}

} // namespace

void ReleaseWide() {
    if (locale_t const held = heldUnicode.exchange(nullptr))
        freelocale(held);
}

} // namespace platform

namespace win::host {

int iswctype(std::uint16_t character, std::uint16_t mask) {
    constexpr unsigned known = platform::upperMask | platform::lowerMask;
    if (character == platform::noCharacter || !(mask & known))
        return 0;
    return static_cast<int>(platform::CaseOf(character) & mask);
}

} // namespace win::host

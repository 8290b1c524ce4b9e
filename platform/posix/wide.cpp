#include "platform/posix/wide.h"

#include "platform/winapi.h"

#include <atomic>
#include <locale.h>
#include <wctype.h>

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

unsigned CaseOf(std::uint16_t character) {
    if (locale_t const unicode = character > 0x7f ? Unicode() : nullptr)
        return (iswupper_l(character, unicode) ? upperMask : 0) |
               (iswlower_l(character, unicode) ? lowerMask : 0);
    return (character >= 'A' && character <= 'Z' ? upperMask : 0) |
           (character >= 'a' && character <= 'z' ? lowerMask : 0);
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

#include "platform/posix/registry/names.h"

#include <clocale>
#include <cwctype>
#include <mutex>

namespace platform::registry {
namespace {

char16_t upper[0x10000];
std::once_flag upperMade;

// A letter has an upper case if that has it as its lower case, as on Windows: so neither a
// dotless i nor a long s is an ASCII letter. Without the C library's table of Unicode, ASCII
// letters alone have a case.
void MakeUpper() {
    locale_t const unicode = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    for (wint_t letter = 0; letter < 0x10000; ++letter) {
        bool const ascii = letter < 0x80;
        wint_t capital = ascii && letter >= 'a' && letter <= 'z' ? letter - 'a' + 'A' : letter;
        if (unicode && !ascii)
            capital = towupper_l(letter, unicode);
        bool const both =
            ascii || (capital < 0x10000 && unicode && towlower_l(capital, unicode) == letter);
        upper[letter] = static_cast<char16_t>(both ? capital : letter);
    }
    if (unicode)
        freelocale(unicode);
}

} // namespace

std::string Folded(std::u16string_view name) {
    std::call_once(upperMade, MakeUpper);
    std::string folded(2 * name.size(), '\0');
    char *to = folded.data();
    for (char16_t const unit : name) {
        char16_t const capital = upper[unit];
        *to++ = static_cast<char>(capital >> 8);
        *to++ = static_cast<char>(capital & 0xff);
    }
    return folded;
}

std::u16string_view TakeName(std::u16string_view &path) {
    std::u16string_view const name = path.substr(0, path.find(u'\\'));
    path.remove_prefix(name.size());
    path.remove_prefix(std::min(path.find_first_not_of(u'\\'), path.size()));
    return name;
}

} // namespace platform::registry

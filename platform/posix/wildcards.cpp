#include "platform/posix/wildcards.h"

#include "platform/winapi.h"

#include <algorithm>
#include <new>
#include <vector>

namespace platform {
namespace {

// The signs that file systems compare with. The first stands in masks as it is; the others
// come of masks as people write them, and may be written too.
constexpr char16_t anyText = u'*';
constexpr char16_t anyStem = u'<'; // any text up to the last dot of the name
constexpr char16_t anyOne = u'>';  // any character but a dot, or nothing before one or the end
constexpr char16_t anyDot = u'"';  // a dot, or nothing at the end

char16_t Upper(char16_t c) {
    return c >= u'a' && c <= u'z' ? static_cast<char16_t>(c - (u'a' - u'A')) : c;
}

// Names are of characters of the settings' code page.
std::u16string Wide(std::string const &text) {
    std::u16string wide(text.size(), u'\0');
    if (text.empty())
        return wide;
    int const length = win::host::MultiByteToWideChar(
        CP_ACP, 0, text.data(), static_cast<int>(text.size()),
        reinterpret_cast<unsigned short *>(wide.data()), static_cast<int>(wide.size()));
    if (length == 0 && win::host::GetLastError() == ERROR_NOT_ENOUGH_MEMORY)
        throw std::bad_alloc();
    if (length == 0) // a code page that nobody knows
        std::transform(text.begin(), text.end(), wide.begin(),
                       [](char c) { return static_cast<unsigned char>(c); });
    else
        wide.resize(static_cast<std::size_t>(length));
    std::transform(wide.begin(), wide.end(), wide.begin(), Upper);
    return wide;
}

bool IsWild(char16_t c) { return c == anyText || c == u'?'; }

} // namespace

bool NameMask::HasWildcards(std::string const &mask) {
    return mask.find_first_of("*?<>\"") != std::string::npos;
}

NameMask::NameMask(std::string const &mask) : m_signs(mask == "*.*" ? u"*" : Wide(mask)) {
    std::size_t const stem = m_signs.find_last_not_of(u'.') + 1;
    bool const cut = stem != m_signs.size();
    m_signs.resize(stem);
    std::u16string const written = m_signs + (cut ? u"." : u"");
    for (std::size_t i = 0; i < stem; ++i) {
        char16_t const next = i + 1 < written.size() ? written[i + 1] : u'\0';
        if (written[i] == u'?')
            m_signs[i] = anyOne;
        else if (written[i] == u'.' && IsWild(next))
            m_signs[i] = anyDot;
        else if (written[i] == u'*' && next == u'.')
            m_signs[i] = anyStem;
    }
}

bool NameMask::Matches(std::string const &text) const {
    std::u16string const name = Wide(text);
    std::size_t const lastDot = name.rfind(u'.');
    // The dots of "." and ".." part nothing.
    bool const parts = name.find_first_not_of(u'.') != std::u16string::npos;
    // at[p]: what was read of the name matches the first p signs.
    std::vector<bool> at(m_signs.size() + 1);
    at[0] = true;
    for (std::size_t i = 0;; ++i) {
        bool const ends = i == name.size();
        bool const dot = !ends && name[i] == u'.';
        for (std::size_t p = 0; p < m_signs.size(); ++p) {
            char16_t const sign = m_signs[p];
            bool const nothing = sign == anyText || sign == anyStem ||
                                 (sign == anyOne && (ends || (dot && parts))) ||
                                 (sign == anyDot && ends);
            at[p + 1] = at[p + 1] || (at[p] && nothing);
        }
        if (ends)
            return at.back();
        std::vector<bool> next(at.size());
        for (std::size_t p = 0; p < m_signs.size(); ++p) {
            char16_t const sign = m_signs[p];
            bool const stays = sign == anyText || (sign == anyStem && !(parts && i == lastDot));
            bool const goes =
                sign == name[i] || (sign == anyOne && !(dot && parts)) || (sign == anyDot && dot);
            next[p] = next[p] || (at[p] && stays);
            next[p + 1] = at[p] && goes;
        }
        at.swap(next);
    }
}

} // namespace platform

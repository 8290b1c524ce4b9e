// Texts in code pages that have double-byte characters.
#include "platform/posix/settings.h"
#include "platform/winapi.h"

#include <climits>

namespace win::host {
namespace {

constexpr unsigned char Lower(unsigned char c) {
    return static_cast<unsigned char>(c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c);
}

bool BeginsPair(unsigned codePage, unsigned char c) {
    switch (codePage) {
    case 932:
        return (c >= 0x81 && c <= 0x9f) || (c >= 0xe0 && c <= 0xfc);
    case 936:
    case 949:
    case 950:
        return c >= 0x81 && c <= 0xfe;
    case 1361:
        return (c >= 0x84 && c <= 0xd3) || (c >= 0xd8 && c <= 0xde) || (c >= 0xe0 && c <= 0xf9);
    default:
        return false;
    }
}

// Full-width letters have case too: the first capital and the first small letter.
struct WideLetters {
    unsigned codePage, capital, small;
};
constexpr WideLetters wideLetters[] = {
    {932, 0x8260, 0x8281}, {936, 0xa3c1, 0xa3e1}, {949, 0xa3c1, 0xa3e1}, {1361, 0xda41, 0xda61}};

unsigned LowerPair(unsigned codePage, unsigned pair) {
    for (WideLetters const &letters : wideLetters)
        if (letters.codePage == codePage && pair >= letters.capital && pair < letters.capital + 26)
            return pair - letters.capital + letters.small;
    return pair;
}

// Goes through a text by characters. The code page is asked for when a byte has need of it.
class Reader {
public:
    explicit Reader(const unsigned char *text) : m_at(text) {}

    // The next character as it stands, 0 at the end. Half a pair at the end is one byte.
    unsigned Next() {
        unsigned const first = *m_at;
        if (first == 0)
            return 0;
        ++m_at;
        if (first < 0x80 || *m_at == 0 ||
            !BeginsPair(CodePage(), static_cast<unsigned char>(first)))
            return first;
        return first << 8 | *m_at++;
    }

    unsigned NextLower() {
        unsigned const character = Next();
        return character < 0x100 ? Lower(static_cast<unsigned char>(character))
                                 : LowerPair(m_codePage, character);
    }

    const unsigned char *At() const { return m_at; }

private:
    unsigned CodePage() {
        if (m_codePage == 0)
            m_codePage = GetACP();
        return m_codePage;
    }

    const unsigned char *m_at;
    unsigned m_codePage = 0;
};

bool IsAmong(const unsigned char *characters, unsigned sought) {
    Reader reader(characters);
    for (unsigned each = reader.Next(); each != 0; each = reader.Next())
        if (each == sought)
            return true;
    return false;
}

thread_local unsigned char *tokensLeft = nullptr;

} // namespace

unsigned char *_mbschr(const unsigned char *text, unsigned character) {
    Reader reader(text);
    for (;;) {
        const unsigned char *const at = reader.At();
        unsigned const each = reader.Next();
        if (each == character)
            return const_cast<unsigned char *>(at);
        if (each == 0)
            return nullptr;
    }
}

int _mbsicmp(const unsigned char *left, const unsigned char *right) {
    if (!left || !right)
        return INT_MAX;
    Reader a(left);
    Reader b(right);
    for (;;) {
        unsigned const one = a.NextLower();
        unsigned const other = b.NextLower();
        if (one != other)
            return one < other ? -1 : 1;
        if (one == 0)
            return 0;
    }
}

unsigned char *_mbstok(unsigned char *text, const unsigned char *delimiters) {
    const unsigned char *start = text ? text : tokensLeft;
    if (!start)
        return nullptr;
    Reader reader(start);
    unsigned each = reader.Next();
    while (each != 0 && IsAmong(delimiters, each)) {
        start = reader.At();
        each = reader.Next();
    }
    tokensLeft = nullptr;
    if (each == 0)
        return nullptr;
    const unsigned char *end = start;
    while (each != 0 && !IsAmong(delimiters, each)) {
        end = reader.At();
        each = reader.Next();
    }
    if (each != 0) {
        *const_cast<unsigned char *>(end) = 0;
        tokensLeft = const_cast<unsigned char *>(reader.At());
    }
    return const_cast<unsigned char *>(start);
}

} // namespace win::host

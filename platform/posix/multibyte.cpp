// Texts in code pages that have double-byte characters.
#include "platform/posix/settings.h"
#include "platform/winapi.h"

#include <climits>
#include <cstring>

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

// Full-width letters have case too; where a page parts the alphabet, it has two rows.
struct WideLetters {
    unsigned codePage, first, last, small;
};
constexpr WideLetters wideLetters[] = {
    {932, 0x8260, 0x8279, 0x8281}, {936, 0xa3c1, 0xa3da, 0xa3e1}, {949, 0xa3c1, 0xa3da, 0xa3e1},
    {950, 0xa2cf, 0xa2e4, 0xa2e9}, {950, 0xa2e5, 0xa2e8, 0xa340}, {1361, 0xda51, 0xda5e, 0xda71},
    {1361, 0xda5f, 0xda6a, 0xda91}};

unsigned LowerPair(unsigned codePage, unsigned pair) {
    for (WideLetters const &letters : wideLetters)
        if (letters.codePage == codePage && pair >= letters.first && pair <= letters.last)
            return pair - letters.first + letters.small;
    return pair;
}

bool HasPairs(unsigned codePage) { return BeginsPair(codePage, 0x90); }

// Goes through a text by characters.
class Reader {
public:
    Reader(const unsigned char *text, unsigned codePage) : m_at(text), m_codePage(codePage) {}

    // The next character as it stands, 0 at the end. Half a pair at the end is one byte.
    unsigned Next() {
        unsigned char const first = *m_at;
        if (first == 0)
            return 0;
        ++m_at;
        if (*m_at == 0 || !BeginsPair(m_codePage, first))
            return first;
        return static_cast<unsigned>(first << 8 | *m_at++);
    }

    unsigned NextLower() {
        unsigned const character = Next();
        return character < 0x100 ? Lower(static_cast<unsigned char>(character))
                                 : LowerPair(m_codePage, character);
    }

    const unsigned char *At() const { return m_at; }

private:
    const unsigned char *m_at;
    unsigned m_codePage;
};

bool IsAmong(const unsigned char *characters, unsigned codePage, unsigned sought) {
    Reader reader(characters, codePage);
    for (unsigned each = reader.Next(); each != 0; each = reader.Next())
        if (each == sought)
            return true;
    return false;
}

thread_local char *tokensLeft = nullptr;

// As strtok_r does it.
unsigned char *NextToken(unsigned char *start, const unsigned char *delimiters, unsigned codePage) {
    Reader reader(start, codePage);
    auto const isDelimiter = [=](unsigned c) { return IsAmong(delimiters, codePage, c); };
    unsigned each = reader.Next();
    while (each != 0 && isDelimiter(each)) {
        start += reader.At() - start;
        each = reader.Next();
    }
    unsigned char *end = start;
    while (each != 0 && !isDelimiter(each)) {
        end += reader.At() - end;
        each = reader.Next();
    }
    tokensLeft = reinterpret_cast<char *>(end + (reader.At() - end));
    *end = 0;
    return end == start ? nullptr : start;
}

// The same for bytes and one delimiter, which most have.
char *NextByteToken(char *start, char delimiter) {
    while (*start == delimiter)
        ++start;
    char *const end = strchrnul(start, delimiter);
    tokensLeft = *end != 0 ? end + 1 : end;
    *end = 0;
    return end == start ? nullptr : start;
}

char *Chars(unsigned char *text) { return reinterpret_cast<char *>(text); }
const char *Chars(const unsigned char *text) { return reinterpret_cast<const char *>(text); }

} // namespace

unsigned char *_mbschr(const unsigned char *text, unsigned character) {
    unsigned const codePage = platform::LastCodePage();
    Reader reader(text, codePage);
    if (!HasPairs(codePage)) {
        bool const isByte = character <= UCHAR_MAX;
        const char *const at =
            isByte ? std::strchr(Chars(text), static_cast<int>(character)) : nullptr;
        return const_cast<unsigned char *>(reinterpret_cast<const unsigned char *>(at));
    }
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
    unsigned const codePage = platform::LastCodePage();
    if (!left || !right || !HasPairs(codePage))
        return _stricmp(Chars(left), Chars(right));
    Reader a(left, codePage);
    Reader b(right, codePage);
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
    auto *const start = text ? text : reinterpret_cast<unsigned char *>(tokensLeft);
    if (!start)
        return nullptr;
    unsigned const codePage = platform::LastCodePage();
    if (HasPairs(codePage))
        return NextToken(start, delimiters, codePage);
    return reinterpret_cast<unsigned char *>(
        delimiters[0] != 0 && delimiters[1] == 0
            ? NextByteToken(Chars(start), Chars(delimiters)[0])
            : strtok_r(Chars(start), Chars(delimiters), &tokensLeft));
}

} // namespace win::host

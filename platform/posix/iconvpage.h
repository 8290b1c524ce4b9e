// A code page that the C library knows, in both directions, a character at a time: so no
// state of its converters goes from one character to the next, as none does on Windows.
#pragma once

#include <iconv.h>
#include <string>
#include <string_view>

namespace platform {

class IconvPage {
public:
    // Throws std::bad_alloc without memory.
    explicit IconvPage(unsigned number);
    ~IconvPage();
    IconvPage(IconvPage const &) = delete;
    IconvPage &operator=(IconvPage const &) = delete;

    // Whether there is such a page, and ASCII is a part of it.
    bool Known() const { return m_known; }

    // Appends the bytes of a character of one or two UTF-16 units; false if it has none.
    bool Encode(std::u16string_view character, std::string &bytes) const;
    // Appends the character that the bytes begin with and returns how many of them it
    // takes; 0 if they begin with none.
    std::size_t Decode(std::string_view bytes, std::u16string &wide) const;

private:
    bool IsHole(unsigned char byte) const;
    bool IsAsciiPage() const;

    unsigned m_number;
    iconv_t m_encoder;
    iconv_t m_decoder;
    bool m_known = false;
};

} // namespace platform

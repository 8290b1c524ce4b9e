// The lines of a registration file, in whatever way it is written.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "registry/code_page.h"

namespace qvlink {

enum class Encoding {
    bytes, // each byte is a unit
    page,  // of a code page
    utf8,
    utf16, // little-endian
};

struct Line {
    std::size_t number = 0; // from 1
    std::u16string units;   // without its end
    std::u16string_view end;
    bool isText = true; // false: its bytes mean nothing, and each came as a unit
};

class Lines {
public:
    Lines(std::string_view bytes, Encoding encoding, CodePage const &page)
        : m_bytes(bytes), m_encoding(encoding), m_page(page) {}

    bool Take(Line &line);

    struct Place {
        std::size_t offset = 0;
        std::size_t number = 0;
    };
    // Where the next line begins, to go on from there again.
    Place Here() const { return m_place; }
    void Return(Place place) { m_place = place; }

private:
    std::string_view TakeBytes();
    void Decode(std::string_view bytes, Line &line) const;

    std::string_view m_bytes;
    Encoding m_encoding;
    CodePage const &m_page;
    Place m_place;
};

} // namespace qvlink

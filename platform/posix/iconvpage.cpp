#include "platform/posix/iconvpage.h"

#include <cerrno>
#include <new>

namespace platform {
namespace {

constexpr std::size_t failed = static_cast<std::size_t>(-1);
constexpr std::size_t longestCharacter = 4; // of a code page, in bytes
constexpr std::size_t ampleSize = 32;       // for one character and a return to the first state

iconv_t NoConverter() { return reinterpret_cast<iconv_t>(std::intptr_t{-1}); }

iconv_t Open(const char *to, const char *from) {
    iconv_t const converter = iconv_open(to, from);
    if (converter == NoConverter() && errno == ENOMEM)
        throw std::bad_alloc();
    return converter;
}

void Close(iconv_t converter) {
    if (converter != NoConverter())
        iconv_close(converter);
}

// Converts a whole character and nothing else, from the first state of the converter to
// its last; the bytes written, 0 if it can't.
std::size_t ConvertOne(iconv_t converter, const char *from, std::size_t size, char *to) {
    char *in = const_cast<char *>(from);
    char *out = to;
    std::size_t space = ampleSize;
    iconv(converter, nullptr, nullptr, nullptr, nullptr);
    if (iconv(converter, &in, &size, &out, &space) == failed || size != 0 ||
        iconv(converter, nullptr, nullptr, &out, &space) == failed)
        return 0;
    return static_cast<std::size_t>(out - to);
}

bool IsControl(char16_t character) { return character >= 0x80 && character <= 0x9f; }

} // namespace

IconvPage::IconvPage(unsigned number)
    : m_number(number), m_encoder(Open(("CP" + std::to_string(number)).c_str(), "UTF-16LE")),
      m_decoder(NoConverter()) {
    try {
        m_decoder = Open("UTF-16LE", ("CP" + std::to_string(number)).c_str());
        m_known = m_encoder != NoConverter() && m_decoder != NoConverter() && IsAsciiPage();
    } catch (std::bad_alloc const &) {
        Close(m_encoder);
        throw;
    }
}

IconvPage::~IconvPage() {
    Close(m_encoder);
    Close(m_decoder);
}

bool IconvPage::IsAsciiPage() const {
    std::string bytes;
    return Encode(u"A", bytes) && bytes == "A";
}

// In the ANSI pages of one byte a character, what has no letter is a control character to
// Windows, and nothing to the C library.
bool IconvPage::IsHole(unsigned char byte) const {
    bool const ansi = (m_number >= 1250 && m_number <= 1258) || m_number == 874;
    auto const asChar = static_cast<char>(byte);
    char buffer[ampleSize];
    return ansi && IsControl(byte) && ConvertOne(m_decoder, &asChar, 1, buffer) == 0;
}

bool IconvPage::Encode(std::u16string_view character, std::string &bytes) const {
    char buffer[ampleSize];
    std::size_t const size = ConvertOne(m_encoder, reinterpret_cast<const char *>(character.data()),
                                        character.size() * sizeof(char16_t), buffer);
    if (size != 0) {
        bytes.append(buffer, size);
        return true;
    }
    auto const low = static_cast<unsigned char>(character.front());
    if (!IsControl(character.front()) || !IsHole(low))
        return false;
    bytes.push_back(static_cast<char>(low));
    return true;
}

std::size_t IconvPage::Decode(std::string_view bytes, std::u16string &wide) const {
    alignas(char16_t) char buffer[ampleSize];
    for (std::size_t count = 1; count <= longestCharacter && count <= bytes.size(); ++count) {
        std::size_t const size = ConvertOne(m_decoder, bytes.data(), count, buffer);
        if (size != 0) {
            wide.append(reinterpret_cast<const char16_t *>(buffer), size / sizeof(char16_t));
            return count;
        }
    }
    auto const first = static_cast<unsigned char>(bytes.front());
    if (!IsHole(first))
        return 0;
    wide.push_back(first);
    return 1;
}

} // namespace platform

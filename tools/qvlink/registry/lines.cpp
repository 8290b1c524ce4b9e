#include "registry/lines.h"

#include "registry/text.h"

#include <algorithm>
#include <iterator>

namespace qvlink {
namespace {

std::u16string Widened(std::string_view bytes) {
    std::u16string units;
    units.reserve(bytes.size());
    for (char const byte : bytes) {
        units += static_cast<unsigned char>(byte);
    }
    return units;
}

bool EndsWith(std::u16string_view text, std::u16string_view end) {
    return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

} // namespace

// The bytes of a line with its end.
std::string_view Lines::TakeBytes() {
    std::string_view const rest = m_bytes.substr(m_place.offset);
    std::size_t end = rest.find('\n');
    if (m_encoding == Encoding::utf16) {
        // The low byte of a unit whose high one is 0.
        while (end != std::string_view::npos &&
               (end % 2 != 0 || end + 1 >= rest.size() || rest[end + 1] != '\0')) {
            end = rest.find('\n', end + 1);
        }
        end += end == std::string_view::npos ? 0 : 1;
    }
    std::string_view const line = rest.substr(0, end == std::string_view::npos ? end : end + 1);
    m_place.offset += line.size();
    ++m_place.number;
    return line;
}

void Lines::Decode(std::string_view bytes, Line &line) const {
    std::optional<std::u16string> units;
    switch (m_encoding) {
    case Encoding::bytes:
        units = Widened(bytes);
        break;
    case Encoding::page:
        units = m_page.Units(bytes);
        break;
    case Encoding::utf8:
        units = UnitsOf(bytes);
        break;
    case Encoding::utf16:
        if (bytes.size() % 2 == 0) {
            units = UnitsOfStored(bytes);
        }
        break;
    }
    line.isText = units.has_value();
    line.units = units ? std::move(*units) : Widened(bytes);
}

bool Lines::Take(Line &line) {
    if (m_place.offset >= m_bytes.size()) {
        return false;
    }
    Decode(TakeBytes(), line);
    line.number = m_place.number;
    constexpr std::u16string_view ends[] = {u"\r\n", u"\n", u"\r", u""};
    line.end = *std::find_if(std::begin(ends), std::end(ends),
                             [&](std::u16string_view end) { return EndsWith(line.units, end); });
    line.units.resize(line.units.size() - line.end.size());
    return true;
}

} // namespace qvlink

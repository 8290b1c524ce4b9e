#include "output/screen.h"

#include "output/utf8.h"
#include "platform/host.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <ostream>

namespace qvlink {
namespace {

const char *Sequence(Colour colour) {
    switch (colour) {
    case Colour::strong:
        return "\x1b[1m";
    case Colour::dim:
        return "\x1b[2m";
    case Colour::good:
        return "\x1b[32m";
    case Colour::bad:
        return "\x1b[31m";
    case Colour::none:
        break;
    }
    return "";
}

std::string EscapedByte(unsigned char byte) {
    switch (byte) {
    case '\n':
        return "\\n";
    case '\r':
        return "\\r";
    case '\t':
        return "\\t";
    default:
        char text[8];
        std::snprintf(text, sizeof text, "\\x%02x", byte);
        return text;
    }
}

// C0, DEL, and the C1 controls that UTF-8 spells with two bytes.
bool IsControl(std::string_view character) {
    auto const first = static_cast<unsigned char>(character[0]);
    return first < 0x20 || first == 0x7f ||
           (first == 0xc2 && static_cast<unsigned char>(character[1]) < 0xa0);
}

} // namespace

std::string Escape(std::string_view text) {
    std::string escaped;
    while (!text.empty()) {
        std::size_t const size = Utf8Length(text);
        std::string_view const character = text.substr(0, std::max<std::size_t>(size, 1));
        if (size != 0 && !IsControl(character)) {
            escaped += character;
        } else {
            for (char const byte : character) {
                escaped += EscapedByte(static_cast<unsigned char>(byte));
            }
        }
        text.remove_prefix(character.size());
    }
    return escaped;
}

std::size_t CharactersIn(std::string_view utf8) {
    return static_cast<std::size_t>(std::count_if(utf8.begin(), utf8.end(), [](char c) {
        return (static_cast<unsigned char>(c) & 0xc0) != 0x80;
    }));
}

std::string Screen::Safe(std::string_view text) const {
    return m_terminal ? Escape(ToUtf8(text)) : std::string(text);
}

std::string Screen::SafeLines(std::string_view text) const {
    std::string lines;
    for (std::size_t end = text.find('\n'); end != std::string_view::npos; end = text.find('\n')) {
        lines += Safe(text.substr(0, end)) + '\n';
        text.remove_prefix(end + 1);
    }
    return lines + Safe(text);
}

std::string Screen::Painted(std::string const &text, Colour colour) const {
    return m_colour && colour != Colour::none ? Sequence(colour) + text + "\x1b[0m" : text;
}

void Screen::Line(std::string const &text) { m_out << text << '\n'; }

void Table::Row(std::vector<Cell> cells) {
    for (Cell &cell : cells) {
        cell.text = m_screen.Safe(cell.text);
    }
    m_rows.push_back(std::move(cells));
}

void Table::Print(std::size_t indent) {
    bool const aligned = m_screen.IsForTerminal();
    std::vector<std::size_t> widths;
    for (auto const &row : m_rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], CharactersIn(row[i].text));
        }
    }
    for (auto const &row : m_rows) {
        std::string line(aligned ? indent : 0, ' ');
        for (std::size_t i = 0; i < row.size(); ++i) {
            std::string const padding(aligned ? widths[i] - CharactersIn(row[i].text) : 0, ' ');
            std::string const text = m_screen.Painted(row[i].text, row[i].colour);
            bool const isLast = i + 1 == row.size();
            line += row[i].right ? padding + text : isLast ? text : text + padding;
            line += isLast ? "" : aligned ? "  " : "\t";
        }
        m_screen.Line(line);
    }
}

std::string ReadableSize(std::uint64_t bytes) {
    const char *const units[] = {"bytes", "KiB", "MiB", "GiB", "TiB", "PiB", "EiB"};
    auto size = static_cast<double>(bytes);
    std::size_t unit = 0;
    for (; size >= 1024 && unit < 6; ++unit) {
        size /= 1024;
    }
    char text[40];
    std::snprintf(text, sizeof text, unit == 0 ? "%.0f %s" : "%.1f %s", size, units[unit]);
    return text;
}

std::string ReadableCount(std::uint64_t number) {
    std::string text = std::to_string(number);
    for (std::size_t place = text.size(); place > 3;) {
        place -= 3;
        text.insert(place, ",");
    }
    return text;
}

} // namespace qvlink

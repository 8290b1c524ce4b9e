#include "lists/prefix_file.h"

#include <cstdint>

namespace qvlink {
namespace {

constexpr std::string_view firstLine = "WINE REGISTRY Version 2";
constexpr std::string_view rootLine = ";; All keys relative to ";
constexpr std::string_view rootName = "REGISTRY\\";
constexpr std::string_view linkMark = "#link";
constexpr std::string_view linkValue = "\"SymbolicLinkValue\"=hex(6):";

bool StartsWith(std::string_view text, std::string_view start) {
    return text.substr(0, start.size()) == start;
}

int DigitOf(char c, int base) {
    int digit = base;
    if (c >= '0' && c <= '9') {
        digit = c - '0';
    } else if (c >= 'a' && c <= 'f') {
        digit = c - 'a' + 10;
    } else if (c >= 'A' && c <= 'F') {
        digit = c - 'A' + 10;
    }
    return digit < base ? digit : -1;
}

// Takes a number of at most `most` digits off the front of a text; nothing without one.
std::optional<unsigned> TakeNumber(std::string_view &text, int base, std::size_t most) {
    unsigned value = 0;
    std::size_t count = 0;
    while (count < most && count < text.size() && DigitOf(text[count], base) >= 0) {
        value = value * static_cast<unsigned>(base) +
                static_cast<unsigned>(DigitOf(text[count++], base));
    }
    text.remove_prefix(count);
    return count > 0 ? std::optional<unsigned>(value) : std::nullopt;
}

// Takes what stands behind a backslash off the front of a text, as one unit of UTF-16.
char16_t TakeEscape(std::string_view &text) {
    char const kind = text.front();
    if (DigitOf(kind, 8) >= 0) {
        return static_cast<char16_t>(*TakeNumber(text, 8, 3));
    }
    text.remove_prefix(1);
    if (kind == 'x') {
        return static_cast<char16_t>(TakeNumber(text, 16, 4).value_or('x'));
    }
    constexpr std::string_view names = "abefnrtv";
    constexpr std::string_view meanings = "\a\b\x1b\f\n\r\t\v";
    std::size_t const at = names.find(kind);
    return static_cast<unsigned char>(at == std::string_view::npos ? kind : meanings[at]);
}

// Takes a text up to an unescaped mark, and the mark, off the front of a line. Nothing if
// the mark isn't there.
std::optional<std::u16string> TakeEscaped(std::string_view &line, char mark) {
    std::u16string units;
    while (!line.empty() && line.front() != mark) {
        char const c = line.front();
        line.remove_prefix(1);
        if (c == '\\' && !line.empty()) {
            units += TakeEscape(line);
        } else {
            units += static_cast<unsigned char>(c);
        }
    }
    if (line.empty()) {
        return std::nullopt;
    }
    line.remove_prefix(1);
    return units;
}

void AppendUtf8(std::string &text, std::uint32_t character) {
    auto const put = [&](std::uint32_t bits) { text += static_cast<char>(bits); };
    if (character < 0x80) {
        put(character);
        return;
    }
    if (character < 0x800) {
        put(0xc0 | character >> 6);
    } else {
        if (character < 0x10000) {
            put(0xe0 | character >> 12);
        } else {
            put(0xf0 | character >> 18);
            put(0x80 | (character >> 12 & 0x3f));
        }
        put(0x80 | (character >> 6 & 0x3f));
    }
    put(0x80 | (character & 0x3f));
}

// Bytes as hexadecimal numbers between commas, taken as UTF-16.
std::u16string UnitsOf(std::string_view hex) {
    std::u16string units;
    bool isHigh = false;
    for (auto byte = TakeNumber(hex, 16, 2); byte; byte = TakeNumber(hex, 16, 2)) {
        if (isHigh) {
            units.back() = static_cast<char16_t>(units.back() | *byte << 8);
        } else {
            units += static_cast<char16_t>(*byte);
        }
        isHigh = !isHigh;
        if (hex.empty() || hex.front() != ',') {
            break;
        }
        hex.remove_prefix(1);
    }
    return units;
}

class Reader {
public:
    explicit Reader(std::string_view text) : m_text(text) {}

    PrefixFile Read() {
        std::string line;
        m_file.isOne = TakeLine(line) && StartsWith(line, firstLine);
        while (m_file.isOne && TakeLine(line)) {
            Take(line);
        }
        return std::move(m_file);
    }

private:
    // A line with those that go on with it.
    bool TakeLine(std::string &line);
    std::string_view TakeRawLine();
    void Take(std::string_view line);
    void TakeKey(std::string_view line);
    void Fault(std::string message) { m_file.faults.push_back({m_first, std::move(message)}); }

    std::string_view m_text;
    PrefixFile m_file;
    std::size_t m_line = 0;
    std::size_t m_first = 0; // of a line that others go on with
    bool m_inKey = false;
    bool m_isLink = false;
};

std::string_view Reader::TakeRawLine() {
    std::size_t const end = m_text.find('\n');
    std::string_view line = m_text.substr(0, end);
    m_text.remove_prefix(end == std::string_view::npos ? m_text.size() : end + 1);
    ++m_line;
    if (!line.empty() && line.back() == '\r') {
        line.remove_suffix(1);
    }
    return line;
}

bool Reader::TakeLine(std::string &line) {
    if (m_text.empty()) {
        return false;
    }
    line = TakeRawLine();
    m_first = m_line;
    bool const isValue = !line.empty() && (line.front() == '"' || line.front() == '@');
    while (isValue && line.back() == '\\' && !m_text.empty()) {
        line.pop_back();
        std::string_view const more = TakeRawLine();
        std::size_t const start = more.find_first_not_of(' ');
        line += start == std::string_view::npos ? std::string_view() : more.substr(start);
    }
    return true;
}

void Reader::Take(std::string_view line) {
    if (StartsWith(line, "[")) {
        TakeKey(line.substr(1));
    } else if (StartsWith(line, rootLine) && m_file.root.empty()) {
        line.remove_prefix(rootLine.size());
        std::string escaped = std::string(line) + ']';
        std::string_view rest = escaped;
        auto const units = TakeEscaped(rest, ']');
        std::string const root = units ? Utf8Of(*units).value_or("") : "";
        m_file.root = StartsWith(root, rootName) ? root.substr(rootName.size()) : "";
    } else if (line == linkMark) {
        m_isLink = m_inKey;
    } else if (m_isLink && StartsWith(line, linkValue)) {
        auto const target = Utf8Of(UnitsOf(line.substr(linkValue.size())));
        m_file.keys.back().target = target.value_or("");
    }
}

void Reader::TakeKey(std::string_view line) {
    m_isLink = false;
    auto const units = TakeEscaped(line, ']');
    auto path = units ? Utf8Of(*units) : std::nullopt;
    m_inKey = path.has_value();
    if (!units) {
        Fault("a key without a closing bracket");
    } else if (!path) {
        Fault("a key whose name is no text");
    } else {
        m_file.keys.push_back({std::move(*path), {}});
    }
}

} // namespace

std::optional<std::string> Utf8Of(std::u16string const &units) {
    std::string text;
    for (std::size_t i = 0; i < units.size(); ++i) {
        std::uint32_t character = units[i];
        if ((character & 0xf800) == 0xd800) {
            bool const isPair =
                character < 0xdc00 && i + 1 < units.size() && (units[i + 1] & 0xfc00) == 0xdc00;
            if (!isPair) {
                return std::nullopt;
            }
            character = 0x10000 + ((character & 0x3ff) << 10) + (units[++i] & 0x3ffu);
        }
        AppendUtf8(text, character);
    }
    return text;
}

PrefixFile ReadPrefixFile(std::string_view text) { return Reader(text).Read(); }

} // namespace qvlink

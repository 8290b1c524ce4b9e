#include "registry/registration.h"

#include "registry/key_path.h"
#include "registry/text.h"

namespace qvlink {
namespace {

using Kind = RegistrationEntry::Kind;
using Text = std::u16string_view;

constexpr std::string_view prefixLine = "WINE REGISTRY Version 2";
constexpr std::string_view ansiLine = "REGEDIT4";
constexpr std::string_view unicodeLine = "Windows Registry Editor Version 5.00";
constexpr std::string_view rootLine = ";; All keys relative to ";
constexpr std::string_view rootName = "REGISTRY\\";
constexpr std::string_view linkValue = "SymbolicLinkValue";

constexpr std::uint32_t typeText = 1, typeExpanded = 2, typeBinary = 3, typeNumber = 4,
                        typeLink = 6, typeTexts = 7;

bool StartsWith(std::string_view text, std::string_view start) {
    return text.substr(0, start.size()) == start;
}

bool IsWhole(Text text, std::string_view word) { return TakeWord(text, word) && IsBlank(text); }

bool IsEnd(Text text) {
    SkipBlanks(text);
    return text.empty() || text.front() == u';';
}

bool BeginsValue(Text text) {
    return !text.empty() && (text.front() == u'"' || text.front() == u'@');
}

// Takes a piece of data without its comment; whether the next line goes on with it.
bool AppendPiece(Text piece, std::u16string &joined) {
    piece = piece.substr(0, piece.find(u';'));
    piece = piece.substr(0, piece.find_last_not_of(u" \t") + 1);
    bool const goesOn = !piece.empty() && piece.back() == u'\\';
    joined += piece.substr(0, piece.size() - (goesOn ? 1 : 0));
    return goesOn;
}

} // namespace

RegistrationReader::Head RegistrationReader::HeadOf(std::string_view bytes, CodePage const &page) {
    Head head;
    if (StartsWith(bytes, prefixLine)) {
        head.form = RegistrationForm::prefix;
        return head;
    }
    if (StartsWith(bytes, "\xff\xfe")) {
        head = {RegistrationForm::none, Encoding::utf16, 2};
    } else if (StartsWith(bytes, "\xef\xbb\xbf")) {
        head = {RegistrationForm::none, Encoding::utf8, 3};
    }
    Line line;
    Lines(bytes.substr(head.start), head.encoding, page).Take(line);
    if (IsWhole(line.units, ansiLine)) {
        head.form = RegistrationForm::ansi;
    } else if (IsWhole(line.units, unicodeLine)) {
        head.form = RegistrationForm::unicode;
    }
    if (head.encoding == Encoding::bytes) {
        bool const isUtf8 = head.form == RegistrationForm::unicode && UnitsOf(bytes);
        head.encoding = isUtf8 ? Encoding::utf8 : Encoding::page;
    }
    return head;
}

RegistrationReader::RegistrationReader(std::string_view bytes, CodePage const &page)
    : m_page(page), m_head(HeadOf(bytes, page)),
      m_lines(bytes.substr(m_head.start), m_head.encoding, page) {
    m_lines.Take(m_line);
}

bool RegistrationReader::Next(RegistrationEntry &entry) {
    while (Form() != RegistrationForm::none && m_lines.Take(m_line)) {
        entry = {};
        entry.line = m_line.number;
        if (Read(entry)) {
            return true;
        }
    }
    return false;
}

bool RegistrationReader::Read(RegistrationEntry &entry) {
    Text text = m_line.units;
    SkipBlanks(text);
    if (!text.empty() && text.front() == u'[') {
        ReadKey(text.substr(1), entry);
        return true;
    }
    if (m_state == State::passing) {
        return false;
    }
    if (BeginsValue(text)) {
        m_isFaulty = false;
        return ReadValue(text, entry);
    }
    return ReadOther(text, entry);
}

bool RegistrationReader::ReadOther(Text text, RegistrationEntry &entry) {
    if (text.empty() || text.front() == u';') {
        ReadRoot(text);
        return false;
    }
    if (IsPrefix() && text.front() == u'#') {
        m_isLink = m_isLink || (m_state == State::inKey && IsWhole(text, "#link"));
        return false;
    }
    if (m_isFaulty) {
        return false;
    }
    m_isFaulty = true;
    entry.text = "neither a key nor a value";
    return true;
}

void RegistrationReader::ReadRoot(Text text) {
    if (!IsPrefix() || !m_root.empty() || !TakeWord(text, rootLine)) {
        return;
    }
    std::u16string units;
    TakeEscaped(text, u'\n', TakePrefixEscape, units);
    std::string const root = Utf8Of(units).value_or("");
    m_root = StartsWith(root, rootName) ? root.substr(rootName.size()) : "";
}

void RegistrationReader::ReadKey(Text text, RegistrationEntry &entry) {
    m_state = State::passing;
    m_isLink = false;
    m_isFaulty = false;
    entry.kind = Kind::faultyKey;
    std::u16string units;
    bool isRemoved = false;
    bool isClosed = false;
    if (IsPrefix()) {
        isClosed = TakeEscaped(text, u']', TakePrefixEscape, units) == Taken::all;
    } else {
        // A name may have brackets as well.
        std::size_t const end = text.rfind(u']');
        isClosed = end != Text::npos;
        isRemoved = text.substr(0, 1) == u"-";
        units = isClosed ? text.substr(isRemoved, end - isRemoved) : Text();
    }
    auto const name = m_line.isText ? Utf8Of(units) : std::nullopt;
    auto const path = !name || IsPrefix() ? name : WithShortRoot(*name);
    if (!isClosed) {
        entry.text = "a key without a closing bracket";
    } else if (!name) {
        entry.text = "a key whose name is no text";
    } else if (!path) {
        entry.text = "a key that is below no root of the registry";
    } else {
        entry.kind = isRemoved ? Kind::removedKey : Kind::key;
        entry.key = *path;
        m_state = isRemoved ? State::inRemoved : State::inKey;
    }
}

bool RegistrationReader::ReadValue(Text text, RegistrationEntry &entry) {
    if (m_state != State::inKey) {
        entry.text = m_state == State::ahead ? "a value ahead of all keys"
                                             : "a value below a key that is removed";
        m_state = State::passing;
        return true;
    }
    entry.kind = Kind::value;
    std::string why = ReadName(text, entry.value.name);
    if (why.empty()) {
        why = ReadData(text, entry);
    }
    if (m_isLink && entry.value.name == linkValue && entry.value.type == typeLink) {
        entry.kind = Kind::link;
        entry.text = Utf8Of(UnitsOfStored(entry.value.data)).value_or("");
        return true;
    }
    if (!why.empty()) {
        entry.kind = Kind::fault;
        entry.text = std::move(why);
        m_isFaulty = true;
    }
    return true;
}

std::string RegistrationReader::ReadName(Text &text, std::string &name) {
    bool const isQuoted = text.front() == u'"';
    text.remove_prefix(1);
    std::u16string units;
    Taken const taken = isQuoted ? TakeEscaped(text, u'"', Escape(), units) : Taken::all;
    if (taken != Taken::all) {
        return taken == Taken::open ? "a name without a closing quote"
                                    : "a backslash in a name that stands for nothing";
    }
    auto utf8 = m_line.isText ? Utf8Of(units) : std::nullopt;
    if (!utf8) {
        return "a value whose name is no text";
    }
    name = std::move(*utf8);
    SkipBlanks(text);
    if (text.empty() || text.front() != u'=') {
        return "a name without an equals sign";
    }
    text.remove_prefix(1);
    SkipBlanks(text);
    return {};
}

std::string RegistrationReader::ReadData(Text text, RegistrationEntry &entry) {
    RegistryValue &value = entry.value;
    if (text.substr(0, 1) == u"-" && IsEnd(text.substr(1))) {
        entry.kind = Kind::removedValue;
        return {};
    }
    bool const isHex = TakeWord(text, "hex");
    bool const isString = !isHex && IsPrefix() && TakeWord(text, "str");
    value.type = isHex ? typeBinary : typeText;
    if (!isHex && !isString) {
        value.type = TakeWord(text, "dword:") ? typeNumber : typeText;
        return value.type == typeNumber ? ReadNumber(text, value.data)
                                        : ReadString(text, value.data);
    }
    if (TakeWord(text, "(")) {
        auto const type = TakeHex(text, 8);
        if (!type || !TakeWord(text, ")")) {
            return "a type that is no number";
        }
        value.type = *type;
    }
    if (!TakeWord(text, ":")) {
        return "a value of no known form";
    }
    return isHex ? ReadBytes(text, value) : ReadString(text, value.data);
}

std::string RegistrationReader::ReadString(Text text, std::string &data) {
    if (!TakeWord(text, "\"")) {
        return "a value of no known form";
    }
    std::u16string units;
    Taken const taken = TakeEscaped(text, u'"', Escape(), units);
    if (taken == Taken::badEscape) {
        return "a backslash in a text that stands for nothing";
    }
    std::string why;
    if (taken == Taken::open) {
        why = ReadFurtherLines(units);
    } else if (!IsEnd(text)) {
        why = "more behind the closing quote";
    }
    if (!m_line.isText) {
        why = "bytes that are no text";
    }
    data = StoredUnits(units) + std::string(2, '\0');
    return why;
}

// A text may have line ends in it as they are. The next quote that isn't escaped closes it,
// unless it opens another value: then the text was never closed.
std::string RegistrationReader::ReadFurtherLines(std::u16string &units) {
    Lines::Place const start = m_lines.Here();
    units += m_line.end;
    Line line;
    while (!IsPrefix() && m_lines.Take(line) && line.isText) {
        Text text = line.units;
        Taken const taken = TakeEscaped(text, u'"', Escape(), units);
        if (taken == Taken::all && IsEnd(text)) {
            return {};
        }
        if (taken != Taken::open) {
            break;
        }
        units += line.end;
    }
    m_lines.Return(start);
    return "a text without a closing quote";
}

std::string RegistrationReader::ReadNumber(Text text, std::string &data) {
    SkipBlanks(text);
    auto const number = TakeHex(text, 8);
    if (!number || !IsEnd(text)) {
        return "a number that isn't one of up to eight hexadecimal digits";
    }
    for (unsigned shift = 0; shift < 32; shift += 8) {
        data += static_cast<char>(*number >> shift & 0xff);
    }
    return {};
}

std::string RegistrationReader::ReadBytes(Text text, RegistryValue &value) {
    std::u16string joined;
    std::string const why = JoinLines(text, joined);
    if (!TakeByteList(joined, value.data) && why.empty()) {
        return "data that is no list of bytes";
    }
    return why.empty() ? FromPage(value) : why;
}

std::string RegistrationReader::JoinLines(Text text, std::u16string &joined) {
    Line line;
    while (AppendPiece(text, joined)) {
        Lines::Place place;
        do {
            place = m_lines.Here();
            if (!m_lines.Take(line)) {
                return "data that breaks off";
            }
            text = line.units;
            SkipBlanks(text);
        } while (!IsPrefix() && IsEnd(text));
        // A prefix's file goes on whatever the next line looks like.
        if (!IsPrefix() && (BeginsValue(text) || text.front() == u'[')) {
            m_lines.Return(place);
            return "data that breaks off";
        }
    }
    return {};
}

// The older form has texts as the page's bytes.
std::string RegistrationReader::FromPage(RegistryValue &value) const {
    bool const isText =
        value.type == typeText || value.type == typeExpanded || value.type == typeTexts;
    if (Form() != RegistrationForm::ansi || !isText) {
        return {};
    }
    auto const units = m_page.Units(value.data);
    if (!units) {
        return "bytes that the code page doesn't know";
    }
    value.data = StoredUnits(*units);
    return {};
}

} // namespace qvlink

#include "registry/registration_writer.h"

#include "registry/key_path.h"
#include "registry/text.h"

namespace qvlink {
namespace {

constexpr std::uint32_t typeText = 1, typeExpanded = 2, typeBinary = 3, typeNumber = 4,
                        typeTexts = 7;
constexpr std::size_t longestLine = 80;
constexpr char noCharacters[] = "it has characters that the code page doesn't know";

bool IsText(std::uint32_t type) {
    return type == typeText || type == typeExpanded || type == typeTexts;
}

void AppendHex(std::u16string &line, std::uint32_t number, unsigned digits) {
    for (unsigned left = digits; left > 0; --left) {
        line += static_cast<unsigned char>("0123456789abcdef"[number >> (left - 1) * 4 & 15]);
    }
}

void AppendShortHex(std::u16string &line, std::uint32_t number) {
    unsigned digits = 1;
    while (digits < 8 && number >> digits * 4 != 0) {
        ++digits;
    }
    AppendHex(line, number, digits);
}

std::u16string Quoted(std::u16string_view text) {
    std::u16string quoted = u"\"";
    for (char16_t const c : text) {
        if (c == u'\n' || c == u'\r') {
            quoted += c == u'\n' ? u"\\n" : u"\\r";
            continue;
        }
        if (c == u'"' || c == u'\\') {
            quoted += u'\\';
        }
        quoted += c;
    }
    return quoted + u'"';
}

// Bytes on lines of the usual length, the first of which has `line` in front already.
std::u16string HexLines(std::u16string line, std::string_view data) {
    std::size_t start = 0;
    for (std::size_t i = 0; i < data.size(); ++i) {
        AppendHex(line, static_cast<unsigned char>(data[i]), 2);
        if (i + 1 == data.size()) {
            break;
        }
        line += u',';
        // Room for another byte, its comma and the backslash.
        if (line.size() - start + 4 > longestLine) {
            line += u"\\\r\n";
            start = line.size();
            line += u"  ";
        }
    }
    return line;
}

} // namespace

RegistrationWriter::RegistrationWriter(RegistrationForm form, CodePage const &page)
    : m_form(form), m_page(page) {
    if (IsAnsi()) {
        m_bytes = "REGEDIT4\r\n";
    } else {
        m_bytes = "\xff\xfe" + StoredUnits(u"Windows Registry Editor Version 5.00\r\n");
    }
}

bool RegistrationWriter::Write(std::u16string_view text) {
    auto const bytes = IsAnsi() ? m_page.Bytes(text) : StoredUnits(text);
    m_bytes += bytes.value_or("");
    return bytes.has_value();
}

std::string RegistrationWriter::Key(std::string_view path) {
    auto const units = UnitsOf(WithLongRoot(path));
    if (!units) {
        return "its name is no text";
    }
    if (units->find_first_of(u"\r\n") != std::u16string::npos) {
        return "its name has a line end in it";
    }
    return Write(u"\r\n[" + *units + u"]\r\n") ? "" : noCharacters;
}

// What the quoted form gives back as it was: a text that ends at its first NUL and has no
// line ends.
bool RegistrationWriter::IsPlainText(RegistryValue const &value) const {
    if (value.type != typeText || value.data.size() < 2 || value.data.size() % 2 != 0) {
        return false;
    }
    std::u16string const units = UnitsOfStored(value.data);
    std::size_t const odd = units.find_first_of(std::u16string_view(u"\0\r\n", 3));
    return odd + 1 == units.size() && units.back() == u'\0' && Utf8Of(units);
}

bool RegistrationWriter::Convert(RegistryValue const &value, std::string &data) const {
    if (!IsAnsi() || !IsText(value.type)) {
        data = value.data;
        return true;
    }
    auto const bytes =
        value.data.size() % 2 == 0 ? m_page.Bytes(UnitsOfStored(value.data)) : std::nullopt;
    data = bytes.value_or("");
    return bytes.has_value();
}

std::u16string RegistrationWriter::HeadOf(RegistryValue const &value) const {
    auto const name = UnitsOf(value.name);
    return (value.name.empty() ? u"@" : Quoted(name.value_or(u""))) + u'=';
}

std::string RegistrationWriter::Value(RegistryValue const &value) {
    if (!UnitsOf(value.name)) {
        return "its name is no text";
    }
    std::u16string line = HeadOf(value);
    std::string data;
    if (IsPlainText(value)) {
        std::u16string units = UnitsOfStored(value.data);
        units.pop_back();
        line += Quoted(units);
    } else if (value.type == typeNumber && value.data.size() == 4) {
        line += u"dword:";
        for (std::size_t i = 4; i > 0; --i) {
            AppendHex(line, static_cast<unsigned char>(value.data[i - 1]), 2);
        }
    } else if (Convert(value, data)) {
        line += u"hex";
        if (value.type != typeBinary) {
            line += u'(';
            AppendShortHex(line, value.type);
            line += u')';
        }
        line = HexLines(line + u':', data);
    } else {
        return noCharacters;
    }
    return Write(line + u"\r\n") ? "" : noCharacters;
}

} // namespace qvlink

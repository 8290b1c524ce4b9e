#include "registration_text.h"

using namespace qvlink;

std::optional<std::u16string> TestPage::Units(std::string_view bytes) const {
    std::u16string units;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        auto const byte = static_cast<unsigned char>(bytes[i]);
        bool const isLead = byte == 0x82;
        if (byte == 0x81 || (isLead && i + 1 == bytes.size())) {
            return std::nullopt;
        }
        units += isLead ? static_cast<char16_t>(0x3000 + static_cast<unsigned char>(bytes[++i]))
                        : static_cast<char16_t>(byte);
    }
    return units;
}

std::optional<std::string> TestPage::Bytes(std::u16string_view units) const {
    std::string bytes;
    for (char16_t const unit : units) {
        bool const isPair = unit >= 0x3000 && unit < 0x3100;
        if ((unit > 0xff && !isPair) || unit == 0x81 || unit == 0x82) {
            return std::nullopt;
        }
        bytes += isPair ? "\x82" : "";
        bytes += static_cast<char>(unit & 0xff);
    }
    return bytes;
}

std::string Wide(std::string_view ascii) {
    std::string bytes;
    for (char const c : ascii) {
        bytes += c;
        bytes += '\0';
    }
    return bytes;
}

std::string Text(std::string_view ascii) { return Wide(std::string(ascii) + '\0'); }

std::string Hex(std::string_view bytes) {
    std::string hex;
    for (char const c : bytes) {
        auto const byte = static_cast<unsigned char>(c);
        hex += "0123456789abcdef"[byte >> 4];
        hex += "0123456789abcdef"[byte & 15];
    }
    return hex;
}

std::string Narrow(std::string const &lines) {
    return "Windows Registry Editor Version 5.00\r\n" + lines;
}
std::string Unicode(std::string const &lines) { return "\xff\xfe" + Wide(Narrow(lines)); }
std::string Ansi(std::string const &lines) { return "REGEDIT4\r\n" + lines; }
std::string OfPrefix(std::string const &lines) { return "WINE REGISTRY Version 2\n" + lines; }

namespace {

std::string Short(RegistrationEntry const &entry) {
    using Kind = RegistrationEntry::Kind;
    RegistryValue const &value = entry.value;
    switch (entry.kind) {
    case Kind::key:
        return '[' + entry.key + ']';
    case Kind::removedKey:
        return "-[" + entry.key + ']';
    case Kind::link:
        return "-> " + entry.text;
    case Kind::value:
        return value.name + '=' + std::to_string(value.type) + ':' + Hex(value.data);
    case Kind::removedValue:
        return '-' + value.name;
    case Kind::fault:
        return "! " + entry.text;
    case Kind::faultyKey:
        return "[! " + entry.text;
    }
    return "?";
}

} // namespace

Told Read(std::string const &file) {
    TestPage const page;
    RegistrationReader reader(file, page);
    RegistrationEntry entry;
    Told told;
    while (reader.Next(entry)) {
        told.push_back(std::to_string(entry.line) + ' ' + Short(entry));
    }
    return told;
}

Told ReadBelow(std::string const &lines) {
    Told told = Read(Unicode("[HKEY_CURRENT_USER\\A]\r\n" + lines));
    if (!told.empty() && told.front() == "2 [HKCU\\A]") {
        told.erase(told.begin());
    }
    return told;
}

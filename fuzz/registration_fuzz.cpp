// Any bytes as a registration file. The first byte says which: 0 takes the rest as it is, others
// put the first line of a form in front. What is read is written in both forms of exchange, and
// must be read as the same again.
#include "registry/key_path.h"
#include "registry/registration_writer.h"

#include <cstdint>
#include <cstdlib>
#include <vector>

namespace {

using namespace qvlink;
using Kind = RegistrationEntry::Kind;

// A page where each byte is the character of its number, but for one that is none.
class BytePage : public CodePage {
public:
    std::optional<std::u16string> Units(std::string_view bytes) const override {
        std::u16string units;
        for (char const byte : bytes) {
            units += static_cast<unsigned char>(byte);
        }
        return units.find(hole) == std::u16string::npos ? std::optional(units) : std::nullopt;
    }
    std::optional<std::string> Bytes(std::u16string_view units) const override {
        std::string bytes;
        for (char16_t const unit : units) {
            if (unit > 0xff || unit == hole) {
                return std::nullopt;
            }
            bytes += static_cast<char>(unit);
        }
        return bytes;
    }

private:
    static constexpr char16_t hole = 0x81;
};

void Check(bool holds) {
    if (!holds) {
        std::abort();
    }
}

std::string FileOf(std::uint8_t kind, std::string const &rest) {
    switch (kind % 6) {
    case 1:
        return "REGEDIT4\n" + rest;
    case 2:
        return "Windows Registry Editor Version 5.00\n" + rest;
    case 3:
        return "WINE REGISTRY Version 2\n" + rest;
    case 4:
    case 5: {
        std::string file = "\xff\xfe";
        for (char const c : FileOf(kind % 6 == 4 ? 1 : 2, rest)) {
            file += {c, '\0'};
        }
        return file;
    }
    default:
        return rest;
    }
}

std::vector<RegistrationEntry> Read(std::string const &file, CodePage const &page) {
    RegistrationReader reader(file, page);
    std::vector<RegistrationEntry> entries;
    std::size_t line = 1;
    for (RegistrationEntry entry; reader.Next(entry); line = entries.back().line) {
        Check(entry.line > line && entry.line <= file.size() + 1);
        Check(entry.text.empty() || (entry.kind != Kind::key && entry.kind != Kind::value));
        entries.push_back(entry);
    }
    return entries;
}

// The entries that the form could hold.
std::vector<RegistrationEntry> Write(std::vector<RegistrationEntry> const &entries, bool isPrefix,
                                     RegistrationWriter &writer) {
    std::vector<RegistrationEntry> written;
    bool isBelowKey = false;
    for (RegistrationEntry entry : entries) {
        if (entry.kind == Kind::key) {
            entry.key = isPrefix ? "HKLM\\" + entry.key : entry.key;
            isBelowKey = WhyNoKey(entry.key).empty() && writer.Key(entry.key).empty();
        } else if (entry.kind != Kind::value || !isBelowKey || !writer.Value(entry.value).empty()) {
            continue;
        }
        if (isBelowKey) {
            written.push_back(std::move(entry));
        }
    }
    return written;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    BytePage const page;
    std::string const file =
        FileOf(data[0], std::string(reinterpret_cast<const char *>(data + 1), size - 1));
    auto const entries = Read(file, page);
    bool const isPrefix = RegistrationReader(file, page).Form() == RegistrationForm::prefix;
    for (RegistrationForm const form : {RegistrationForm::unicode, RegistrationForm::ansi}) {
        RegistrationWriter writer(form, page);
        auto const written = Write(entries, isPrefix, writer);
        auto const again = Read(writer.Bytes(), page);
        Check(again.size() == written.size());
        for (std::size_t i = 0; i < again.size(); ++i) {
            Check(again[i].kind == written[i].kind && again[i].key == written[i].key &&
                  again[i].value.name == written[i].value.name &&
                  again[i].value.type == written[i].value.type &&
                  again[i].value.data == written[i].value.data);
        }
    }
    return 0;
}

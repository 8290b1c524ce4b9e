#include "lists/prefix_file.h"

#include "registry/registration.h"

namespace qvlink {
namespace {

// These files have no texts of a code page.
class NoPage : public CodePage {
public:
    std::optional<std::u16string> Units(std::string_view) const override { return std::nullopt; }
    std::optional<std::string> Bytes(std::u16string_view) const override { return std::nullopt; }
};

} // namespace

PrefixFile ReadPrefixFile(std::string_view text) {
    NoPage const page;
    RegistrationReader reader(text, page);
    PrefixFile file;
    file.isOne = reader.Form() == RegistrationForm::prefix;
    RegistrationEntry entry;
    while (file.isOne && reader.Next(entry)) {
        switch (entry.kind) {
        case RegistrationEntry::Kind::key:
            file.keys.push_back({std::move(entry.key), {}});
            break;
        case RegistrationEntry::Kind::link:
            file.keys.back().target = std::move(entry.text);
            break;
        case RegistrationEntry::Kind::faultyKey:
            file.faults.push_back({entry.line, std::move(entry.text)});
            break;
        default:
            break;
        }
    }
    file.root = reader.Root();
    return file;
}

} // namespace qvlink

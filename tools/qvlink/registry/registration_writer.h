// Writing registration files in the two forms in which registries are exchanged.
#pragma once

#include <string>
#include <string_view>

#include "registry/registration.h"

namespace qvlink {

class RegistrationWriter {
public:
    // `form` is ansi or unicode. The page is for the older form, and must outlive the writer.
    RegistrationWriter(RegistrationForm form, CodePage const &page);

    // The key, with the short name of its root, that the values behind it belong to; a value of
    // the key ahead. Why the form can't hold it; empty if it was written.
    std::string Key(std::string_view path);
    std::string Value(RegistryValue const &value);

    // The file as it stands.
    std::string const &Bytes() const { return m_bytes; }

private:
    bool IsAnsi() const { return m_form == RegistrationForm::ansi; }
    // False, and nothing is written, if the page hasn't the characters.
    bool Write(std::u16string_view text);
    std::u16string HeadOf(RegistryValue const &value) const;
    bool IsPlainText(RegistryValue const &value) const;
    // The data as the form's bytes have them; false if the page hasn't the characters.
    bool Convert(RegistryValue const &value, std::string &data) const;

    RegistrationForm m_form;
    CodePage const &m_page;
    std::string m_bytes;
};

} // namespace qvlink

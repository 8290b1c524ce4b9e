// Registration files: the text forms in which registries are exchanged, and the one in which
// a Wine prefix keeps its own.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/system_registry.h"
#include "registry/code_page.h"
#include "registry/lines.h"
#include "registry/scanning.h"

namespace qvlink {

enum class RegistrationForm {
    none,    // the text is no registration file
    ansi,    // REGEDIT4: texts of a code page
    unicode, // Windows Registry Editor Version 5.00: texts of 16-bit units
    prefix,  // WINE REGISTRY Version 2
};

// What a line, with those that go on with it, says. Values belong to the key ahead of them.
struct RegistrationEntry {
    enum class Kind {
        key,
        removedKey,
        link, // the key ahead is a link; what it is to lead to is in `text`, empty if unknown
        value,
        removedValue,
        fault,    // of a value or of another line that was passed over
        faultyKey // with all that is below it
    };
    Kind kind = Kind::fault;
    std::size_t line = 0; // from 1
    std::string key;      // in a prefix's file below its root, else with the short name of its root
    RegistryValue value;
    std::string text; // of a fault: what is wrong
};

// Any bytes will do.
class RegistrationReader {
public:
    // Both must outlive the reader.
    RegistrationReader(std::string_view bytes, CodePage const &page);

    RegistrationForm Form() const { return m_head.form; }
    // Of a prefix's file: what its keys are relative to, such as Machine; known behind the
    // line that says it.
    std::string const &Root() const { return m_root; }
    bool Next(RegistrationEntry &entry);

private:
    struct Head {
        RegistrationForm form = RegistrationForm::none;
        Encoding encoding = Encoding::bytes;
        std::size_t start = 0; // of the text, behind its mark
    };
    static Head HeadOf(std::string_view bytes, CodePage const &page);

    using Text = std::u16string_view;
    bool IsPrefix() const { return m_head.form == RegistrationForm::prefix; }
    TakeEscape Escape() const { return IsPrefix() ? TakePrefixEscape : TakeExchangeEscape; }
    // False if the line says nothing.
    bool Read(RegistrationEntry &entry);
    bool ReadOther(Text text, RegistrationEntry &entry);
    void ReadRoot(Text text);
    void ReadKey(Text text, RegistrationEntry &entry);
    bool ReadValue(Text text, RegistrationEntry &entry);
    // Why not; empty if they could be read.
    std::string ReadName(Text &text, std::string &name);
    std::string ReadData(Text text, RegistrationEntry &entry);
    std::string ReadString(Text text, std::string &data);
    std::string ReadFurtherLines(std::u16string &units);
    std::string ReadNumber(Text text, std::string &data);
    std::string ReadBytes(Text text, RegistryValue &value);
    std::string JoinLines(Text text, std::u16string &joined);
    std::string FromPage(RegistryValue &value) const;

    CodePage const &m_page;
    Head m_head;
    Lines m_lines;
    Line m_line;
    std::string m_root;
    enum class State { ahead, inKey, inRemoved, passing } m_state = State::ahead;
    bool m_isLink = false;
    bool m_isFaulty = false; // what goes on with a faulty line is part of it
};

} // namespace qvlink

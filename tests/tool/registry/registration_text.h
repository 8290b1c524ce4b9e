// Registration files as tests write them, and what is read from them in short.
#pragma once

#include "registry/registration.h"

#include <string>
#include <string_view>
#include <vector>

// A page where each byte is the character of its number, but 0x81 is none, and 0x82 begins one
// of two bytes, which may look like a backslash: U+3000 and the second byte's number.
class TestPage : public qvlink::CodePage {
public:
    std::optional<std::u16string> Units(std::string_view bytes) const override;
    std::optional<std::string> Bytes(std::u16string_view units) const override;
};

// ASCII as 16-bit units, little-endian: as the registry stores it, or as a file may be written.
std::string Wide(std::string_view ascii);
// The same with a NUL behind it: a text's data.
std::string Text(std::string_view ascii);
std::string Hex(std::string_view bytes);

// A file of a form with these lines behind its first one.
std::string Unicode(std::string const &lines);  // version 5.00 in 16-bit units
std::string Narrow(std::string const &lines);   // version 5.00 in UTF-8
std::string Ansi(std::string const &lines);     // REGEDIT4
std::string OfPrefix(std::string const &lines); // of a Wine prefix

// A line for each entry: its number and what it says, as in
//   2 [HKCU\A]       2 -[HKCU\A]       2 -> \Registry\A
//   3 name=1:6100    3 -name           3 ! why     2 [! why
using Told = std::vector<std::string>;
Told Read(std::string const &file);
// The lines behind "[HKEY_CURRENT_USER\A]" of a file of version 5.00: without the key's own.
Told ReadBelow(std::string const &lines);

// Taking the pieces of registration files off the front of a text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace qvlink {

// A word of ASCII in any case.
bool TakeWord(std::u16string_view &text, std::string_view word);
// A hexadecimal number of at most so many digits; nothing without one.
std::optional<std::uint32_t> TakeHex(std::u16string_view &text, std::size_t most);
void SkipBlanks(std::u16string_view &text);

// What is behind a backslash: in the files of a prefix any character can be written so.
// Nothing where it stands for none.
using TakeEscape = std::optional<char16_t> (*)(std::u16string_view &text);
std::optional<char16_t> TakePrefixEscape(std::u16string_view &text);
std::optional<char16_t> TakeExchangeEscape(std::u16string_view &text);

enum class Taken { all, open, badEscape };
// A text up to a mark that isn't escaped, and the mark. `open`: the mark isn't there, and
// all of the text was taken.
Taken TakeEscaped(std::u16string_view &text, char16_t mark, TakeEscape escape,
                  std::u16string &units);

// Bytes as hexadecimal numbers between commas, up to the end or a comment. False if there is
// anything else, the bytes ahead of it having been taken.
bool TakeByteList(std::u16string_view text, std::string &bytes);

} // namespace qvlink

// Lines of a list as the library takes them.
#pragma once

#include <string>
#include <string_view>

namespace lists {

inline bool IsBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
// ASCII only: the lists' code page isn't known here.
inline char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

std::string_view Trim(std::string_view line);
// Takes the next line, without its line feed, from the front of a text.
std::string_view TakeLine(std::string_view &text);
bool StartsWith(std::string_view line, std::string_view start);

// A text in which the spellings of one entry are alike and that sorts as entries do: its
// components in lower case, each but the last with a zero byte behind it.
std::string Folded(std::string_view entry);

} // namespace lists

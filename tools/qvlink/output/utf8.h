// UTF-8, byte by byte.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace qvlink {

// Bytes of the character that the text begins with; 0 if it begins with none.
std::size_t Utf8Length(std::string_view text);
bool IsUtf8(std::string_view text);
// Each byte that belongs to no character as U+FFFD.
std::string ReplaceNonUtf8(std::string_view text);

} // namespace qvlink

// UTF-8, as the code page 65001 has it.
#pragma once

#include <string>
#include <string_view>

namespace platform {

// What stands for a character that can't be told.
constexpr char16_t replacement = 0xfffd;

// Both append; what is no text becomes U+FFFD, and then the result is false. Half a pair of
// UTF-16 is none; of UTF-8 it is each longest piece that could have begun a character.
bool EncodeUtf8(std::u16string_view wide, std::string &bytes);
bool DecodeUtf8(std::string_view bytes, std::u16string &wide);

} // namespace platform

// Between the system's wide texts and the 8-bit ones of its code page.
#pragma once

#include <string>

namespace qvlink {

// `lossless` becomes false if the code page can't hold the text.
std::string FromWide(std::wstring const &text, bool &lossless);
std::wstring ToWide(std::string const &text);
// The absolute path in the form that isn't held to 259 characters.
std::wstring LongPath(std::string const &path);
// What the last error of this thread means; the error stays.
std::string LastErrorText();

} // namespace qvlink

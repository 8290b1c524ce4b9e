// Files that are read and written whole.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace qvlink {

// Nothing, and `why` says what was wrong, for what can't be read or is no file.
std::optional<std::string> ReadWholeFile(std::string const &path, std::string &why);
// The bytes get into a file beside it, which then takes its place: there is the old file or
// the new one, and never a part. What is no regular file, such as a pipe, is written to as it
// is. False, and `why` says what was wrong.
bool WriteWholeFile(std::string const &path, std::string_view bytes, std::string &why);

} // namespace qvlink

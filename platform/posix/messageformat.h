// Message texts and their inserts, as FormatMessageA has them.
#pragma once

#include <cstdarg>
#include <string>
#include <string_view>

namespace platform {

// Appends a text with its inserts filled in. False if an insert isn't well formed, is of a
// kind that isn't known, or has no arguments to come from.
bool ExpandMessage(std::string_view text, va_list *arguments, std::string &message);

} // namespace platform

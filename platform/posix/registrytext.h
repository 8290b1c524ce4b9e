// Texts of the registry: in the settings' code page to callers, in UTF-16 below. What a code
// page can't tell becomes what its conversion makes of it.
#pragma once

#include <string>
#include <string_view>

namespace platform {

// Thrown for a text that isn't ASCII if the settings' code page isn't known.
struct UnknownPage {};

std::u16string FromPage(const char *bytes, std::size_t size);
std::string ToPage(std::u16string const &wide);

// A value's data as UTF-16, without half a unit at their end, and the way back.
std::u16string FromBytes(std::string const &data);
std::string ToBytes(std::u16string const &wide);

} // namespace platform

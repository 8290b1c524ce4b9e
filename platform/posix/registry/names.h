// Names of keys and values: compared by their letters' upper case.
#pragma once

#include "platform/posix/registry/codes.h"

#include <string>
#include <string_view>

namespace platform::registry {

constexpr std::size_t longestKeyName = 255;
constexpr std::size_t longestValueName = 16383;
constexpr unsigned deepestKey = 512;

// The name in upper case, as UTF-16BE: so a comparison of bytes gives the system's order.
std::string Folded(std::u16string_view name);

// Takes the first name, and the backslashes behind it, from the front of a path.
std::u16string_view TakeName(std::u16string_view &path);

} // namespace platform::registry

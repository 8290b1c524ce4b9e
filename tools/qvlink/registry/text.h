// Texts between the registry's 16-bit units and UTF-8.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace qvlink {

// Nothing if half of a pair stands alone.
std::optional<std::string> Utf8Of(std::u16string_view units);
// Nothing if the bytes are no UTF-8.
std::optional<std::u16string> UnitsOf(std::string_view utf8);

// Units as the registry stores them, and back; half a unit at the end counts as its low byte.
std::string StoredUnits(std::u16string_view units);
std::u16string UnitsOfStored(std::string_view bytes);

bool IsBlank(std::u16string_view text);

} // namespace qvlink

// Registry values for people.
#pragma once

#include "answer/value_data.h"

#include <string>
#include <vector>

namespace qvlink {

std::string ValueTypeText(std::uint32_t type); // "REG_SZ", or the number
// The data line by line: texts, a number, or the first bytes. In the system's code page.
std::vector<std::string> LinesOf(ValueData const &value);

} // namespace qvlink

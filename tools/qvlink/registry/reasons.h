// What the registry's codes mean.
#pragma once

#include <cstdint>
#include <string>

namespace qvlink {

std::string ReasonOf(std::uint32_t code);

} // namespace qvlink

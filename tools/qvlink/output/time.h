// Times of the graph as texts.
#pragma once

#include <cstdint>
#include <string>

namespace qvlink {

// 100 ns since 1601 (UTC) as 2026-11-21T03:36:15.1234567Z.
std::string TimeText(std::uint64_t fileTime);

} // namespace qvlink

// How many of the random courses of a test are run.
#pragma once

#include <cstdint>

// All of them, or an eighth where taking a lock may be a call to another process.
std::uint32_t Courses(std::uint32_t all);

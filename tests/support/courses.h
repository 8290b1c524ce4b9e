// How many of the random courses of a test are run.
#pragma once

#include <cstdint>

// All of them; or an eighth where taking a lock may be a call to another process, and under
// the thread sanitizer, which has nothing to see in a test of one thread.
std::uint32_t Courses(std::uint32_t all);

// The codes that operations on the registry answer, by Windows' numbers.
#pragma once

#include "platform/posix/registry/tree.h"

namespace platform::registry {

constexpr Code success = 0;
constexpr Code notFound = 2;
constexpr Code accessDenied = 5;
constexpr Code noMemory = 8;
constexpr Code invalidParameter = 87;
constexpr Code diskFull = 112;
constexpr Code badPath = 161;
constexpr Code busy = 170; // another process writes for longer than one waits
constexpr Code noMoreItems = 259;
constexpr Code cantOpen = 1011;
constexpr Code corrupt = 1015;
constexpr Code inputOutput = 1016;
constexpr Code keyDeleted = 1018;

} // namespace platform::registry

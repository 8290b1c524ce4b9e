// The prefix: a directory that tells what Windows itself would know.
#pragma once

#include <string>

#include "platform/posix/inifile.h"
#include "platform/settings.h"

namespace platform {

// What a prefix says, with what holds where it says nothing; it needn't exist.
Settings ReadPrefix(std::string const &prefix);

} // namespace platform

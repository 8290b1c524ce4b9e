// The prefix: a directory that tells what Windows itself would know.
#pragma once

#include <string>

#include "platform/settings.h"

namespace platform {

// The directory that QVPREFIX names, else `qvlinkdb` in the user's data directory.
std::string PrefixDirectory();

// What a prefix says, with what holds where it says nothing; it needn't exist.
Settings ReadPrefix(std::string const &prefix);

} // namespace platform

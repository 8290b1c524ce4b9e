// The prefix and its platform.ini, as text.
#pragma once

#include <map>
#include <string>

namespace platform {

using Fields = std::map<std::string, std::string>;

// The directory that QVPREFIX names, else `qvlinkdb` in the user's data directory.
std::string PrefixDirectory();

// A path without links; itself, if it leads nowhere.
std::string Resolved(std::string const &path);

// The lines `field=value` of a prefix's platform.ini; none if there is no such file.
Fields ReadFields(std::string const &prefix);

} // namespace platform

// A registry of the tests' own.
#pragma once

#include <string>

// Has the library keep what it writes in this directory from now on, where the registry isn't
// the system's own.
void TellRegistryDirectory(std::string const &directory);

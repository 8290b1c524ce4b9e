// The two folders of the system that names are resolved in.
#pragma once

#include <string>

struct SystemFolders {
    std::string system;
    std::string windows;
};

SystemFolders CurrentSystemFolders();
// Has the library told these from now on. False, and nothing done, where the system itself
// decides about its folders.
bool TellSystemFolders(SystemFolders const &folders);

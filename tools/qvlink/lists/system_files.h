// Windows folders on the host, and what is in them.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "lists/line_filter.h"

namespace qvlink {

struct SystemFolders {
    std::string windows;
    std::string system;
};

// A folder or file by names below a folder, the case of ASCII letters aside, with all
// links followed. Nothing if there is none.
std::optional<std::string> FindBelow(std::string const &folder,
                                     std::vector<std::string> const &names);

// The Windows folder below the top of a disk.
std::optional<std::string> FindWindows(std::string const &disk);
// The system folder in a Windows folder.
std::optional<std::string> FindSystem(std::string const &windows);

// Lines for all files below both folders, in order.
std::vector<std::string> LinesOf(SystemFolders const &folders, LineFilter const &filter,
                                 std::vector<std::string> &skipped);

} // namespace qvlink

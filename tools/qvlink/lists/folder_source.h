// A folder of the host that a list is captured from: a Wine prefix, the top of a Windows
// disk, or a Windows folder.
#pragma once

#include <string>
#include <vector>

#include "lists/key_tree.h"
#include "lists/system_files.h"

namespace qvlink {

// Both throw std::runtime_error, which says what is wrong and what to do.
SystemFolders SystemFoldersIn(std::string const &folder);
void ReadKeysIn(std::string const &folder, KeyTree &tree, std::vector<std::string> &skipped);

} // namespace qvlink

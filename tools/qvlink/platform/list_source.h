// What a list is captured from, as this system has it.
#pragma once

#include <string>
#include <vector>

#include "lists/key_tree.h"
#include "lists/system_files.h"

namespace qvlink {

// The system's own folders: this machine's on Windows, elsewhere those of the prefix in
// use. Throws std::runtime_error, which says what to do, if there are none.
SystemFolders SystemFoldersInUse();
// The keys that go with them; throws likewise.
void ReadKeysInUse(KeyTree &tree, std::vector<std::string> &skipped);

// The keys of a Windows that doesn't run, from the files in its folder. One that can't be
// read is told. Throws std::runtime_error, which says what to do, if none can be.
void ReadKeyFiles(std::string const &windows, KeyTree &tree, std::vector<std::string> &skipped);

} // namespace qvlink

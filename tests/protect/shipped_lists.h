// The lists that are shipped, as texts, and questions about all that stands in them.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "system_folders.h"

// The numbers of a family's lists, 0 for none.
struct FamilyLists {
    int files, keys;
};
FamilyLists ListsOfFamily(int family);

// The text of a list; fails the running test if it can't be read.
std::string ReadListText(int id);

// Lines with their line end taken off; what follows the last line end isn't one.
std::vector<std::string> ListLines(std::string const &text);
// What follows the last line end.
std::string ListRest(std::string const &text);

// The path that a line of a file list stands for.
std::string FilePath(std::string const &line, SystemFolders const &folders);
std::vector<std::string> FilePaths(std::string const &text, SystemFolders const &folders);

using Question = std::function<bool(std::string const &path)>;

// Asks for each listed path, for its neighbours and for the folders above it, each as often as
// the answer may change. What was answered wrongly, as a text for people; empty if nothing was.
std::string AskForAll(std::vector<std::string> const &listed, Question const &ask);

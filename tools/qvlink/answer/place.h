// Places in the graph's file tree, and the texts that name them.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qvlink {

// A drive and the names below it, outermost first. Without names: the drive itself.
struct Place {
    std::string drive; // "C:", the letter in upper case
    std::vector<std::string> names;
};
bool operator==(Place const &a, Place const &b);

// The letter of a drive and the host's directory that stands for it.
using Drives = std::map<char, std::string>;

// The database's own form, C:\folder\file. Both slashes separate; empty components and
// "." are dropped and ".." takes one name off. Nothing if the text doesn't begin with a
// letter and a colon.
std::optional<Place> ParseDatabasePath(std::string_view text);
std::string DatabasePath(Place const &place);

// The form of hosts with one root, /folder/file. A relative `path` starts at `current`.
// Of several drives whose directory holds the path the longest directory wins. Nothing
// if no drive holds it.
std::optional<Place> ParseRootedPath(std::string_view path, std::string_view current,
                                     Drives const &drives);
// Nothing if the drive has no directory.
std::optional<std::string> RootedPath(Place const &place, Drives const &drives);

// An absolute path without empty components, "." and "..", and without a slash at its end.
std::string NormaliseRootedPath(std::string_view path, std::string_view current);

// Equal without regard to the case of ASCII letters.
bool EqualNames(std::string_view a, std::string_view b);
// Upper-case ASCII letters made lower.
std::string FoldName(std::string_view name);

} // namespace qvlink

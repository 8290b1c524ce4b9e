// Places in the graph's two trees, and the texts that name them.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qvlink {

// A drive or hive and the names below it, outermost first. Without names: the root itself.
struct Place {
    std::string drive; // "C:", the letter in upper case; a hive by its short name, "HKLM"
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

// A place in the registry's tree.
bool IsKeyPlace(Place const &place);
// A text whose first component is one of the ten names of roots, short or long; the place has
// the short one. Only the backslash separates, and empty components are dropped. Questions
// know the roots in upper case alone, so that "hklm" may be a file.
enum class RootCase { upper, any };
std::optional<Place> ParseKeyPath(std::string_view text, RootCase rootCase = RootCase::upper);

// The form of hosts with one root, /folder/file. A relative `path` starts at `current`.
// Of several drives whose directory holds the path the longest directory wins. Nothing
// if no drive holds it.
std::optional<Place> ParseRootedPath(std::string_view path, std::string_view current,
                                     Drives const &drives);
// Nothing if the drive has no directory, or isn't one.
std::optional<std::string> RootedPath(Place const &place, Drives const &drives);

// An absolute path without empty components, "." and "..", and without a slash at its end.
std::string NormaliseRootedPath(std::string_view path, std::string_view current);

// Equal without regard to the case of ASCII letters.
bool EqualNames(std::string_view a, std::string_view b);
// Upper-case ASCII letters made lower.
std::string FoldName(std::string_view name);

} // namespace qvlink

// The lists of files and of keys that answer on this system, read as texts: they tell which line
// names a path, and what lies below a folder or key, without asking the library.
#pragma once

#include "list_text.h"
#include "platform/host.h"

#include "CNTAdminObject.h"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace qvlink {

// The lists of a family of Windows, by their ids as resources of the library.
struct FamilyLists {
    ostype family;
    const char *name;
    std::uint32_t files;
    std::uint32_t keys;
};
// Null for a family without lists.
FamilyLists const *ListsOf(ostype family);

class ProtectedFiles {
public:
    ProtectedFiles() = default;
    // The text of a list of files, taken as the library takes it.
    ProtectedFiles(std::string_view text, SystemDirectories const &folders);
    // The text of a list of keys likewise.
    static ProtectedFiles OfKeys(std::string_view text);

    // The line that names a path of the database's form, or null.
    std::string const *LineOf(std::string_view path) const;
    // How many of the files or keys that are named lie below it.
    std::size_t CountBelow(std::string_view path) const;

private:
    void Add(std::string_view line, SystemDirectories const &folders);

    std::map<std::string, std::string> m_lines; // by PathKey of the paths they name
};

// The list that the library has for this system.
struct OwnList {
    std::string library;                 // the library's file, as the host writes it
    FamilyLists const *family = nullptr; // null: no list is for this system
    ProtectedFiles files;
    std::string problem; // why the list couldn't be read; empty if it could
    lists::Kind kind = lists::Kind::files;

    std::uint32_t Id() const; // as a resource of the library; 0 if there is none
};
OwnList ReadOwnList(lists::Kind kind = lists::Kind::files);

} // namespace qvlink

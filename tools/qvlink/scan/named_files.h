// From the texts of registry values to the files of the graph that they name.
#pragma once

#include "linkdb.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "answer/place.h"
#include "platform/host.h"
#include "platform/system_registry.h"

namespace qvlink {

// What stands for a text between percent signs, in UTF-8: names in lower case.
using Variables = std::unordered_map<std::string, std::string>;

// The variables that all users of a system share: its folders, those that the registry tells for
// programs, and the environment of the system.
Variables ReadVariables(Registry &registry, SystemDirectories const &folders);

class NamedFiles {
public:
    NamedFiles(CQVUDatabase &database, Variables variables);

    // The files that a value's texts name, each once. A text names one file at most: the whole
    // of it, what stands in quotes at its beginning, or what stands before a blank or comma, the
    // shortest first. Folders don't count.
    std::vector<CQVUObject *> Of(RegistryValue const &value);

private:
    using Children = std::unordered_map<std::string, std::vector<CQVUObject *>>;

    CQVUObject *FileOf(std::string const &text, bool isDriver);
    CQVUObject *FileAt(std::string_view path);
    CQVUObject *ChildOf(CQVUObject &folder, std::string const &name);
    std::string Expand(std::string text) const;
    std::string ExpandOnce(std::string_view text) const;

    CQVUDatabase &m_database;
    Variables m_variables;
    std::unordered_map<std::uint32_t, Children> m_children; // by folder, names in lower case
};

} // namespace qvlink

// How objects are named to the user, and what the user names.
#pragma once

#include "answer/graph.h"
#include "answer/needs.h"

#include <optional>
#include <string>

namespace qvlink {

class Names {
public:
    // `databasePaths`: paths in the database's own form instead of the host's.
    Names(CQVUDatabase &database, bool databasePaths)
        : m_database(database), m_databasePaths(databasePaths) {}

    // The object's path, or its bare name if it has none.
    std::string Of(CQVUObject &object) const;
    std::optional<std::string> PathOf(CQVUObject &object) const;
    std::string FolderPathOf(CQVUObject &object) const; // empty without a place
    // The object that a path or a bare name on the command line means, or null.
    CQVUObject *Find(std::string const &text) const;
    // Up to `most` paths of files, or keys and values, that bear the last name of `text`.
    std::vector<std::string> Alike(std::string const &text, std::size_t most) const;

    CQVUDatabase &Database() const { return m_database; }

private:
    std::string Write(Place const &place) const;
    CQVUObject *FindPath(std::string const &text) const;

    CQVUDatabase &m_database;
    bool m_databasePaths;
};

// Words for what the graph holds; the short ones are those of the JSON answers.
const char *TypeWord(std::uint32_t objectType);        // "file"; "other" without a name
std::string LinkWord(std::uint32_t linkType);          // "needs"; "0x..." without a name
const char *KindWord(CQVUObject &object);              // "folder", "symlink", or its type
const char *RuleWord(Rule rule);                       // "cache"
std::string RuleText(Need const &need);                // "in the loader's cache"
std::uint32_t TypeMaskOf(std::string const &typeWord); // 0 for an unknown one

} // namespace qvlink

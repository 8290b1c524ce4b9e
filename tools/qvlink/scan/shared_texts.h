// Objects that stand for a text: names of libraries (OBJ_VFILE) and run paths
// (OBJ_RUNPATH). One object for each text.
#pragma once

#include <string>
#include <unordered_map>

#include "scan/tree.h"

namespace qvlink {

class SharedTexts {
public:
    // Takes those of the type that are there already.
    SharedTexts(CQVUDatabase &database, Tree &tree, std::uint32_t type);

    // The object of this text, made if there is none; null for a text that can't be held:
    // an empty one, or of a name that is longer than 250 bytes.
    CQVUObject *Of(std::string const &text);
    // Deletes those that nothing links to any more.
    void RemoveOrphans();

private:
    CQVUDatabase &m_database;
    Tree &m_tree;
    std::uint32_t m_type;
    std::unordered_map<std::string, CQVUObject *> m_objects;
};

// The text that such an object stands for.
std::string TextOf(CQVUObject &object);

} // namespace qvlink

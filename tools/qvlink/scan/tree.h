// The file tree in the graph, and changes to it. Names are told apart as the host does:
// by case too, or not.
#pragma once

#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

#include "answer/graph.h"
#include "linkdb.h"

namespace qvlink {

class Tree {
public:
    // `onRemove` is called with each object before it goes, while its links still stand.
    Tree(CQVUDatabase &database, std::function<void(CQVUObject &)> onRemove);

    // The drive of this name ("C:"), or null if it isn't there and not to be made.
    CQVUObject *Drive(std::string const &name, bool make);
    // The files and folders in a folder or drive, in order of names. Good until the next
    // change there.
    std::vector<CQVUObject *> const &Children(CQVUObject &folder);
    CQVUObject *Child(CQVUObject &folder, std::string const &name);
    // The object at a place, or null.
    CQVUObject *Find(Place const &place);

    // The new object. Throws std::bad_alloc without memory.
    CQVUObject &Add(CQVUObject &folder, std::string const &name, FileData const &data);
    // Stores name and data where they differ from the object's; whether they did.
    bool Update(CQVUObject &object, std::string name, FileData data);
    // Stores the flags word likewise.
    void SetFlags(CQVUObject &object, std::uint32_t flags);
    // Takes children of a folder and all below them out of the graph; returns how many
    // objects that were.
    std::size_t Remove(CQVUObject &folder, std::vector<CQVUObject *> const &gone);

    // Whether anything in the graph was changed; NoteChange is for changes made elsewhere.
    bool Changed() const { return m_changed; }
    void NoteChange() { m_changed = true; }

private:
    std::vector<CQVUObject *> &Load(CQVUObject &folder);
    std::vector<CQVUObject *> Below(std::vector<CQVUObject *> const &tops) const;

    CQVUDatabase &m_database;
    std::function<void(CQVUObject &)> m_onRemove;
    std::unordered_map<std::uint32_t, std::vector<CQVUObject *>> m_children;
    bool m_changed = false;
};

} // namespace qvlink

// Paths: from an object to its path, and from a path to its object.
#include "linkdb.h"

#include "fold.h"
#include "full_path.h"
#include "graph_index.h"
#include "linkdb_state.h"
#include "mutex_guard.h"
#include "name_map.h"
#include "parent_chain.h"
#include "path_text.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <string>

namespace {

std::uint32_t TypeOf(DBObject const &object) { return object.dwType & ~PERSISTENT_BIT; }

bool FitsBuffer(char const *path) { return strnlen(path, PathBufferSize) < PathBufferSize; }

// The names of a path from the root down, for a text in which every reading of the path
// agrees on them: single backslashes between names that hold no other separator.
struct PlainPath {
    std::string_view names[MostPathNames];
    std::size_t count = 0;

    bool Parse(std::string_view path) {
        if (path.find('/') != path.npos)
            return false;
        for (std::size_t at = 0; at <= path.size();) {
            std::size_t const end = std::min(path.find('\\', at), path.size());
            if (end == at || count == MostPathNames)
                return false;
            names[count++] = path.substr(at, end - at);
            at = end + 1;
        }
        // A parent text of fewer than four characters counts as the name of a root.
        return count == 2 || (count > 2 && names[0].size() + names[1].size() >= 3);
    }
};

// One question for the object with a path.
class PathSearch {
public:
    PathSearch(ObjectMap const &objects, LinkMap const &links, NameMap &names, GraphIndex &index)
        : m_objects(objects), m_links(links), m_names(names), m_index(index) {}

    CQVUObject *Find(std::string_view path) const {
        bool known = false;
        CQVUObject *const found = Descend(path, known);
        return known ? found : Climb(path);
    }

private:
    CQVUObject *Descend(std::string_view text, bool &known) const;
    CQVUObject *Climb(std::string_view text) const;
    bool HasParents(DBObject &object, std::string &parentPath) const {
        return ParentChain(m_objects, m_links).Leads(object, parentPath);
    }

    ObjectMap const &m_objects;
    LinkMap const &m_links;
    NameMap &m_names;
    GraphIndex &m_index;
};

// Goes down from the root, name by name. `known` tells whether that settles the answer:
// it does where the names lead to one object at most and every object has one parent,
// since then the search from the leaf up can't come to another result.
CQVUObject *PathSearch::Descend(std::string_view text, bool &known) const {
    PlainPath plain;
    bool const file = text.size() > 2 && text[1] == ':';
    if (!plain.Parse(text) || (file && plain.names[0].size() != 2) || (!file && text.size() < 5) ||
        !m_index.tree.Ready(m_objects, m_links))
        return nullptr;
    ObjectNode *nodes[MostPathNames];
    std::fill_n(nodes, plain.count, nullptr);
    known = m_index.tree.Descend(m_objects, plain.names, plain.count, nodes);
    // Straight below a hive of a long name only keys and hives are told by its name.
    if (nodes[1] && !file && plain.names[0].size() >= 4 && TypeOf(*nodes[1]) != OBJ_KEY &&
        TypeOf(*nodes[1]) != OBJ_HIVE)
        known = false;
    ObjectNode *const node = nodes[plain.count - 1];
    if (!known || !node)
        return nullptr;
    std::uint32_t const type = TypeOf(*node);
    bool const typeFits =
        file ? type == OBJ_FILE || type == OBJ_PINNED : type == OBJ_KEY || type == OBJ_VALUE;
    // A renamed object is found only if it is still filed where the name leads.
    return typeFits && node->filed && !node->strayed
               ? static_cast<CQVUObject *>(static_cast<DBObject *>(node))
               : nullptr;
}

// Goes through the objects that bear the last name, in the order of indexing, and tests
// their chains of parents.
CQVUObject *PathSearch::Climb(std::string_view text) const {
    bool const isFile = text.size() > 2 && text[1] == ':';
    bool const isRoot = text.size() < 3 || (!isFile && text.size() <= 4);
    std::uint32_t const rootType = text.size() < 3 ? OBJ_DRIVE : OBJ_HIVE;
    std::uint32_t const otherType = isFile ? OBJ_PINNED : OBJ_VALUE;
    std::uint32_t const type = isRoot ? rootType : isFile ? OBJ_FILE : OBJ_KEY;

    std::string_view leaf = text, above;
    if (isFile) {
        PathParts const parts(text);
        leaf = parts.leaf;
        above = parts.parent;
    } else if (!isRoot) {
        std::size_t const cut = std::min(text.rfind('\\'), text.size());
        leaf = cut < text.size() ? text.substr(cut + 1) : std::string_view{};
        above = text.substr(0, cut);
    }
    try {
        std::string const name(leaf);
        std::string parent(above);
        ObjectNode *const head = m_names.First(name.c_str(), type, m_objects, m_index.retired);
        ObjectNode *node = head;
        for (; node; node = node->nameNext == head ? nullptr : node->nameNext) {
            if ((TypeOf(*node) != type && (isRoot || TypeOf(*node) != otherType)) ||
                !EqualNoCase(node->pszName, name.c_str()))
                continue;
            // For files the parent text is made anew each time. The candidates of a key
            // share one, and each takes a trailing backslash off it.
            if (isFile)
                parent.assign(above);
            StripOneBackslash(parent);
            if (isRoot || HasParents(*node, parent))
                return static_cast<CQVUObject *>(static_cast<DBObject *>(node));
        }
    } catch (std::bad_alloc const &) {
    }
    return nullptr;
}

} // namespace

int CQVUDatabase::SafeGetFullPath(DBObject *object, char *buffer, int depth) {
    if (!object || !buffer)
        return 0;
    return FullPathWriter(*m_idmap, *m_linkmap, buffer).Write(*object, depth);
}

int CQVUDatabase::GetFullPath(DBObject *object, char *buffer) {
    MutexGuard const guard(m_hMutex);
    return SafeGetFullPath(object, buffer, 0);
}

int CQVUObject::GetFullPath(char *buffer) {
    return this && g_pDatabase ? g_pDatabase->GetFullPath(this, buffer) : 0;
}

CQVUObject *CQVUDatabase::GetObjectByPath(const char *path) {
    if (!path || !FitsBuffer(path))
        return nullptr;
    MutexGuard const guard(m_hMutex);
    return PathSearch(*m_idmap, *m_linkmap, *m_namemap, *m_index).Find(path);
}

int CQVUDatabase::DoesObjectHaveCorrectPath(DBObject *object, char *parentPath) {
    if (!object || !parentPath || !FitsBuffer(parentPath))
        return 0;
    try {
        std::string text(parentPath);
        int const result = ParentChain(*m_idmap, *m_linkmap).Leads(*object, text);
        parentPath[text.size()] = '\0'; // a trailing backslash may be gone
        return result;
    } catch (std::bad_alloc const &) {
        return 0;
    }
}

CQVUObject *CQVUDatabase::LookupVFILE(char *name) {
    if (!name)
        return nullptr;
    ObjectNode *const head = m_namemap->First(name, OBJ_VFILE, *m_idmap, m_index->retired);
    ObjectNode *node = head;
    for (; node; node = node->nameNext == head ? nullptr : node->nameNext)
        if (TypeOf(*node) == OBJ_VFILE && EqualNoCase(node->pszName, name))
            return static_cast<CQVUObject *>(static_cast<DBObject *>(node));
    return nullptr;
}

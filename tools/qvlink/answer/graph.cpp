#include "answer/graph.h"

#include "model.h"

#include <algorithm>
#include <unordered_set>

namespace qvlink {
namespace {

// As deep as the library follows parents, and as many links as hosts follow.
constexpr std::size_t DeepestPath = 260;
constexpr int LongestLinkChain = 40;

CQVUObject *View(DBObject *record) { return static_cast<CQVUObject *>(record); }
CQVULink *View(DBLink *record) { return static_cast<CQVULink *>(record); }

bool IsRootOfPaths(CQVUObject const &object) {
    return TypeOf(object) == OBJ_DRIVE || TypeOf(object) == OBJ_HIVE;
}

bool HasPath(CQVUObject const &object) {
    return (TypeOf(object) & OBJ_NAMED_MASK & ~OBJ_VFILE) != 0;
}

// Climbs to a drive and gathers the names on the way, innermost first. An object that
// was tried in vain isn't tried again, so that a tangle of parents costs no more than
// its size.
class Climb {
public:
    explicit Climb(CQVUDatabase &database) : m_database(database) {}

    bool From(CQVUObject &object) {
        if (m_names.size() >= DeepestPath || !HasPath(object) ||
            !m_tried.insert(object.dwID).second) {
            return false;
        }
        if (IsRootOfPaths(object)) {
            m_names.emplace_back(NameOf(object));
            return true;
        }
        m_names.emplace_back(NameOf(object));
        for (Edge const &edge : LinksTo(m_database, object, LINK_PARENT)) {
            if (From(*edge.other)) {
                return true;
            }
        }
        m_names.pop_back();
        return false;
    }

    Place Result() {
        Place place{m_names.back(), {m_names.rbegin() + 1, m_names.rend()}};
        return place;
    }

private:
    CQVUDatabase &m_database;
    std::vector<std::string> m_names;
    std::unordered_set<std::uint32_t> m_tried;
};

// A key may hold a key and a value of one name: the key comes first.
CQVUObject *ChildNamed(CQVUDatabase &database, CQVUObject const &folder, std::string const &name) {
    CQVUObject *best = nullptr;
    int bestRank = 0;
    for (Edge const &edge : LinksFrom(database, folder, LINK_PARENT)) {
        bool const isExact = NameOf(*edge.other) == name;
        if (!isExact && !EqualNames(NameOf(*edge.other), name)) {
            continue;
        }
        int const rank = (TypeOf(*edge.other) == OBJ_VALUE ? 1 : 3) + (isExact ? 1 : 0);
        if (rank > bestRank) {
            best = edge.other;
            bestRank = rank;
        }
    }
    return best;
}

CQVUObject *WalkDown(CQVUDatabase &database, Place const &place) {
    CQVUObject *object = database.GetObjectByPath(place.drive.c_str());
    for (std::size_t i = 0; object && i < place.names.size(); ++i) {
        CQVUObject *const folder = FollowLinks(database, object);
        object = folder ? ChildNamed(database, *folder, place.names[i]) : nullptr;
    }
    return object;
}

} // namespace

std::vector<Edge> LinksFrom(CQVUDatabase &database, CQVUObject const &object, std::uint32_t mask) {
    std::vector<Edge> edges;
    std::uint32_t const count = object.pdwLinksFrom ? object.dwLinksFrom & LINK_ENTRY_ID_MASK : 0;
    for (std::uint32_t i = 0; i < count; ++i) {
        CQVULink *const link =
            View(database.LookupLink(object.pdwLinksFrom[i] & LINK_ENTRY_ID_MASK));
        if (link && link->dwSource == object.dwID && (link->dwType & mask & ~PERSISTENT_BIT)) {
            if (CQVUObject *const target = View(database.LookupObject(link->dwTarget))) {
                edges.push_back({link, target});
            }
        }
    }
    return edges;
}

std::vector<Edge> LinksTo(CQVUDatabase &database, CQVUObject const &object, std::uint32_t mask) {
    std::vector<Edge> edges;
    std::uint32_t const count = object.pdwLinksTo ? object.dwLinksTo & LINK_ENTRY_ID_MASK : 0;
    for (std::uint32_t i = 0; i < count; ++i) {
        CQVULink *const link = View(database.LookupLink(object.pdwLinksTo[i] & LINK_ENTRY_ID_MASK));
        if (link && link->dwTarget == object.dwID && (link->dwType & mask & ~PERSISTENT_BIT)) {
            if (CQVUObject *const source = View(database.LookupObject(link->dwSource))) {
                edges.push_back({link, source});
            }
        }
    }
    return edges;
}

std::vector<CQVUObject *> FindObjects(CQVUDatabase &database, std::string pattern,
                                      std::uint32_t typeMask) {
    std::vector<CQVUObject *> objects;
    CQVUObject *object = nullptr;
    SearchHandle const handle = database.FindFirstObject(pattern.data(), typeMask, &object);
    for (int found = handle != 0; found; found = database.FindNextObject(handle, &object)) {
        objects.push_back(object);
    }
    database.FindCloseObject(handle);
    return objects;
}

std::string_view NameOf(CQVUObject const &object) { return object.pszName ? object.pszName : ""; }

std::uint32_t TypeOf(CQVUObject const &object) { return object.dwType & ~PERSISTENT_BIT; }
std::uint32_t TypeOf(CQVULink const &link) { return link.dwType & ~PERSISTENT_BIT; }

std::optional<FileData> FileDataOf(CQVUObject &object) {
    FileData data{};
    return object.GetFileData(&data) ? std::optional<FileData>(data) : std::nullopt;
}

bool IsFolder(CQVUObject &object) {
    return TypeOf(object) == OBJ_DRIVE || KindOf(&object) == FileKind::folder;
}

bool IsInRegistry(CQVUObject const &object) {
    return (TypeOf(object) & (OBJ_HIVE | OBJ_KEY | OBJ_VALUE)) != 0;
}

std::optional<Place> PlaceOf(CQVUDatabase &database, CQVUObject &object) {
    Climb climb(database);
    return climb.From(object) ? std::optional<Place>(climb.Result()) : std::nullopt;
}

std::string FolderOf(CQVUDatabase &database, CQVUObject &object) {
    std::optional<Place> place = PlaceOf(database, object);
    if (!place) {
        return "";
    }
    if (!place->names.empty()) {
        place->names.pop_back();
    }
    return DatabasePath(*place);
}

CQVUObject *FindAt(CQVUDatabase &database, Place const &place) {
    CQVUObject *const object = database.GetObjectByPath(DatabasePath(place).c_str());
    bool const isIt = object && TypeOf(*object) != OBJ_VALUE && PlaceOf(database, *object) == place;
    return isIt ? object : WalkDown(database, place);
}

CQVUObject *FollowLinks(CQVUDatabase &database, CQVUObject *object) {
    for (int i = 0; i < LongestLinkChain; ++i) {
        std::vector<Edge> const links = LinksFrom(database, *object, LINK_SYMLINK);
        if (links.empty()) {
            return object;
        }
        object = links.front().other;
    }
    return nullptr;
}

} // namespace qvlink

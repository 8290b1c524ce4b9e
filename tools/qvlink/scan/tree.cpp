#include "scan/tree.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <unordered_set>

#include "model.h"
#include "platform/walk.h"

namespace qvlink {
namespace {

const char *Text(CQVUObject const *object) { return object->pszName ? object->pszName : ""; }

bool Before(CQVUObject const *a, CQVUObject const *b) { return CompareNames(Text(a), Text(b)) < 0; }

bool BeforeName(CQVUObject const *object, std::string const &name) {
    return CompareNames(Text(object), name.c_str()) < 0;
}

} // namespace

Tree::Tree(CQVUDatabase &database, std::function<void(CQVUObject &)> onRemove)
    : m_database(database), m_onRemove(std::move(onRemove)) {}

CQVUObject *Tree::Drive(std::string const &name, bool make) {
    CQVUObject *drive = m_database.GetObjectByPath(name.c_str());
    CQVUObject *const root = m_database.GetRootObject();
    if (drive || !make) {
        return drive;
    }
    drive = m_database.AddObject(name.c_str(), OBJ_DRIVE, 0, 0, nullptr, 1);
    if (!drive || !root || !root->LinkTo(drive, LINK_PARENT)) {
        throw std::bad_alloc();
    }
    m_changed = true;
    return drive;
}

std::vector<CQVUObject *> const &Tree::Children(CQVUObject &folder) { return Load(folder); }

std::vector<CQVUObject *> &Tree::Load(CQVUObject &folder) {
    auto const [known, isNew] = m_children.try_emplace(folder.dwID);
    std::vector<CQVUObject *> &children = known->second;
    if (isNew) {
        for (Edge const &edge : LinksFrom(m_database, folder, LINK_PARENT)) {
            if (TypeOf(*edge.other) & (OBJ_FILE | OBJ_PINNED)) {
                children.push_back(edge.other);
            }
        }
        std::sort(children.begin(), children.end(), Before);
    }
    return children;
}

CQVUObject *Tree::Child(CQVUObject &folder, std::string const &name) {
    auto const &children = Children(folder);
    auto const at = std::lower_bound(children.begin(), children.end(), name, BeforeName);
    return at != children.end() && CompareNames(Text(*at), name.c_str()) == 0 ? *at : nullptr;
}

CQVUObject *Tree::Find(Place const &place) {
    CQVUObject *object = Drive(place.drive, false);
    for (std::size_t i = 0; object && i < place.names.size(); ++i) {
        object = Child(*object, place.names[i]);
    }
    return object;
}

CQVUObject &Tree::Add(CQVUObject &folder, std::string const &name, FileData const &data) {
    std::vector<CQVUObject *> &children = Load(folder);
    FileData copy = data;
    CQVUObject *const object =
        m_database.AddObject(name.c_str(), OBJ_FILE, 0, sizeof copy, &copy, 1);
    if (!object || !folder.LinkTo(object, LINK_PARENT)) {
        throw std::bad_alloc();
    }
    // Names mostly come in order.
    auto const at = children.empty() || BeforeName(children.back(), name)
                        ? children.end()
                        : std::lower_bound(children.begin(), children.end(), name, BeforeName);
    children.insert(at, object);
    m_children.try_emplace(object->dwID);
    m_changed = true;
    return *object;
}

bool Tree::Update(CQVUObject &object, std::string name, FileData data) {
    FileData known{};
    bool const sameData =
        object.GetFileData(&known) && std::memcmp(&known, &data, sizeof data) == 0;
    if (!sameData && !object.SetData(sizeof data, reinterpret_cast<unsigned char *>(&data))) {
        throw std::bad_alloc();
    }
    bool const sameName = name == Text(&object);
    if (!sameName) {
        // Only the case differs, so the object stays where names are looked up.
        object.SetName(name.data());
    }
    m_changed = m_changed || !sameData || !sameName;
    return !sameData || !sameName;
}

void Tree::SetFlags(CQVUObject &object, std::uint32_t flags) {
    if (object.GetFlags() != flags) {
        object.SetFlags(flags);
        m_changed = true;
    }
}

// The objects and all below them, folders before what is in them, each once.
std::vector<CQVUObject *> Tree::Below(std::vector<CQVUObject *> const &tops) const {
    std::vector<CQVUObject *> all;
    std::unordered_set<CQVUObject *> known;
    auto const take = [&](CQVUObject *object) {
        if (known.insert(object).second) {
            all.push_back(object);
        }
    };
    std::for_each(tops.begin(), tops.end(), take);
    std::size_t done = 0;
    while (done < all.size()) {
        for (Edge const &edge : LinksFrom(m_database, *all[done++], LINK_PARENT)) {
            take(edge.other);
        }
    }
    return all;
}

std::size_t Tree::Remove(CQVUObject &folder, std::vector<CQVUObject *> const &gone) {
    if (gone.empty()) {
        return 0;
    }
    std::vector<CQVUObject *> const all = Below(gone);
    for (CQVUObject *const object : all) {
        m_onRemove(*object);
    }
    std::unordered_set<CQVUObject *> const tops(gone.begin(), gone.end());
    auto &siblings = Load(folder);
    siblings.erase(std::remove_if(siblings.begin(), siblings.end(),
                                  [&](CQVUObject *sibling) { return tops.count(sibling) != 0; }),
                   siblings.end());
    for (CQVUObject *const object : all) {
        m_children.erase(object->dwID);
        object->Delete();
    }
    m_changed = true;
    return all.size();
}

} // namespace qvlink

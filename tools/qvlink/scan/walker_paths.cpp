// The walker's way from the host's paths to objects.
#include <algorithm>

#include "model.h"
#include "platform/host.h"
#include "scan/walker.h"

namespace qvlink {
namespace {

FileData WayFolder() {
    FileData data{};
    data.dwAttributes = ATTRIBUTE_DIRECTORY;
    return data;
}

} // namespace

Walker::Level Walker::LevelOf(CQVUObject &object, std::string const &path,
                              Place const &place) const {
    return {object.dwID, path, DatabasePath(place).size(), place.names.size()};
}

// The drive whose directory this is, if it is one's.
std::optional<Walker::Level> Walker::DriveAt(std::string const &path) {
    auto const found = m_drives.find(path);
    if (found == m_drives.end()) {
        return std::nullopt;
    }
    return LevelOf(*m_session.tree.Drive(found->second, true), path, {found->second, {}});
}

// A folder by its canonical path; the objects on the way are made where they are missing.
std::optional<Walker::Level> Walker::Descend(std::string const &path) {
    auto const place = PlaceOfHostPath(path);
    if (!place) {
        return std::nullopt;
    }
    CQVUObject *object = m_session.tree.Drive(place->drive, true);
    Place here{place->drive, {}};
    for (std::string const &name : place->names) {
        Level const level = LevelOf(*object, HostPath(here), here);
        CQVUObject *next = m_session.tree.Child(*object, name);
        if (!next) {
            Entry const entry{name, WayFolder()};
            if (!CanHold(level, entry)) {
                return std::nullopt;
            }
            next = &m_session.tree.Add(*object, name, entry.data);
            ++m_session.summary.added;
        }
        object = next;
        here.names.push_back(name);
    }
    return LevelOf(*object, path, here);
}

bool Walker::Forget(std::string const &path) {
    auto const place = PlaceOfHostPath(path);
    if (!place || place->names.empty()) {
        return false;
    }
    CQVUObject *const object = m_session.tree.Find(*place);
    CQVUObject *const folder =
        m_session.tree.Find({place->drive, {place->names.begin(), place->names.end() - 1}});
    if (!object || !folder) {
        return false;
    }
    m_session.summary.removed += m_session.tree.Remove(*folder, {object});
    return true;
}

std::optional<std::string> Walker::CanonicalFolder(std::string const &path) {
    auto const [known, isNew] = m_canonical.try_emplace(path);
    if (isNew) {
        Presence presence{};
        known->second = CanonicalPath(path, presence);
    }
    return known->second;
}

CQVUObject *Walker::Visit(Level const &level, std::string const &name) {
    auto &parent = *static_cast<CQVUObject *>(m_session.database.LookupObject(level.id));
    CQVUObject *const known = m_session.tree.Child(parent, name);
    if (known && Visited(*known)) {
        return known;
    }
    std::string why;
    auto const folder = Folder::Open(level.path, why);
    Entry entry;
    if (!folder || folder->Look(name, entry) != Presence::present || !CanHold(level, entry)) {
        return nullptr;
    }
    IsOwn(level, entry);
    return &Take(level, *folder, known, entry);
}

CQVUObject *Walker::Locate(std::string const &path) {
    auto const known = m_located.find(path);
    if (known != m_located.end()) {
        return known->second;
    }
    m_located.emplace(path, nullptr); // a circle of symbolic links ends here
    SplitPath const parts = SplitLastName(path);
    auto const folder = CanonicalFolder(parts.folder);
    auto const level = folder ? Descend(*folder) : std::nullopt;
    std::size_t const symlinks = m_symlinks.size();
    m_locating = true;
    CQVUObject *const object = level ? Visit(*level, parts.name) : nullptr;
    if (m_symlinks.size() > symlinks) {
        // A link outside the paths that are scanned: what it leads to is needed as well.
        Symlink const link = m_symlinks.back();
        Locate(TargetPath(link));
    }
    m_locating = false;
    m_located[path] = object;
    return object;
}

// Where a link leads, one step. The folder is canonical, the last name is left as it is,
// but for a text that ends in no name.
std::string Walker::TargetPath(Symlink const &link) {
    if (link.text.empty()) {
        return {};
    }
    std::string const path =
        IsAbsolutePath(link.text) ? link.text : JoinPath(link.folder, link.text);
    SplitPath const parts = SplitLastName(path);
    bool const isName = !parts.name.empty() && parts.name != "." && parts.name != "..";
    auto const folder = CanonicalFolder(isName ? parts.folder : path);
    if (!folder) {
        return {};
    }
    return isName ? JoinPath(*folder, parts.name) : *folder;
}

void Walker::LinkSymlinks(std::vector<std::uint32_t> &lost) {
    for (Symlink const &link : m_symlinks) {
        auto *const object = static_cast<CQVUObject *>(m_session.database.LookupObject(link.id));
        if (!object) {
            continue;
        }
        std::string const path = TargetPath(link);
        auto const place = path.empty() ? std::nullopt : PlaceOfHostPath(path);
        CQVUObject *const target = place ? m_session.tree.Find(*place) : nullptr;
        bool stands = false;
        for (Edge const &edge : LinksFrom(m_session.database, *object, LINK_SYMLINK)) {
            if (edge.other == target) {
                stands = true;
                continue;
            }
            lost.push_back(edge.other->dwID);
            edge.link->Delete();
            m_session.tree.NoteChange();
        }
        if (target && !stands) {
            object->LinkTo(target, LINK_SYMLINK);
            m_session.tree.NoteChange();
        }
    }
}

bool Walker::IsGone(std::string const &path) const {
    SplitPath const parts = SplitLastName(path);
    Presence presence{};
    if (!CanonicalPath(parts.folder, presence)) {
        return presence == Presence::absent;
    }
    std::string why;
    Entry entry;
    auto const folder = Folder::Open(parts.folder, why);
    return folder && folder->Look(parts.name, entry) == Presence::absent;
}

void Walker::RemoveLost(std::vector<std::uint32_t> &lost) {
    while (!lost.empty()) {
        auto *const object =
            static_cast<CQVUObject *>(m_session.database.LookupObject(lost.back()));
        lost.pop_back();
        if (!object || TypeOf(*object) != OBJ_FILE || Visited(*object) ||
            !LinksTo(m_session.database, *object, AnyLink & ~(LINK_PARENT | LINK_REFERS)).empty() ||
            !IsGone(HostPathOf(m_session.database, *object))) {
            continue;
        }
        for (Edge const &edge : LinksFrom(m_session.database, *object, AnyLink & ~LINK_PARENT)) {
            lost.push_back(edge.other->dwID);
        }
        auto const parents = LinksTo(m_session.database, *object, LINK_PARENT);
        if (!parents.empty()) {
            m_session.summary.removed += m_session.tree.Remove(*parents[0].other, {object});
        }
    }
}

} // namespace qvlink

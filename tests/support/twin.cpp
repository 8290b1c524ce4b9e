#include "twin.h"

#include "mirror_paths.h"
#include "system_folders.h"

#include <algorithm>

#include <gtest/gtest.h>

namespace {

constexpr std::uint32_t types[] = {
    OBJ_DRIVE,          OBJ_FILE, OBJ_FILE, OBJ_FILE,  OBJ_PINNED,
    OBJ_HIVE,           OBJ_KEY,  OBJ_KEY,  OBJ_VALUE, OBJ_VFILE,
    OBJ_VFILE,          OBJ_ROOT, 64,       6,         OBJ_FILE | 0x80000000,
    OBJ_KEY | OBJ_VALUE};

constexpr std::uint32_t linkTypes[] = {LINK_PARENT,
                                       LINK_PARENT,
                                       LINK_PARENT,
                                       LINK_PARENT,
                                       LINK_PARENT,
                                       LINK_PARENT,
                                       2,
                                       4,
                                       3,
                                       0,
                                       LINK_PARENT | 0x80000000};

// Names that are roots, that differ in case, that hold dots, separators and whole paths,
// that share a hash (the 16 last characters decide it; one here has the hash of no text).
std::vector<std::string> AllNames() {
    return {"C:",
            "c:",
            "D:",
            "HKLM",
            "hklm",
            "HKCU",
            "R",
            "a",
            "A",
            "b",
            "c",
            "d",
            "a.b",
            "x.dll",
            "X.DLL",
            "y.exe",
            ".b",
            "a.",
            "..",
            "a b",
            "C:\\a",
            "C:\\a\\b",
            "C:\\",
            "\\",
            "a\\b",
            "HKLM\\a",
            "a/b",
            "/",
            "b/",
            "windows",
            "System32",
            "SYSTEM",
            "\x10@",
            "\x10@\x10@",
            "one-common-tail-of-sixteen",
            "two-common-tail-of-sixteen",
            "\xc4\xe4",
            "\xe4\xc4",
            std::string(251, 'n'),
            "*",
            "?"};
}

bool SameObject(CQVUObject *object, mirror::Object const &told) {
    auto const list = [](std::uint32_t const *entries, std::uint32_t count) {
        return std::vector<std::uint32_t>(entries, entries + (count & LINK_ENTRY_ID_MASK));
    };
    std::optional<std::string> name;
    if (object->pszName)
        name = object->pszName;
    return object->dwID == told.id && object->dwFlags == told.flags &&
           object->dwType == told.type && name == told.name &&
           list(object->pdwLinksFrom, object->dwLinksFrom) == told.from &&
           list(object->pdwLinksTo, object->dwLinksTo) == told.to;
}

bool SameLink(DBLink const *link, mirror::Link const &told) {
    return link->dwID == told.id && link->dwSource == told.source &&
           link->dwTarget == told.target && link->dwType == told.type;
}

} // namespace

// Few names a wild course, so that they meet often.
Twin::Twin(std::uint32_t seed, Course course) : m_course(course), m_dice(seed) {
    std::vector<std::string> const all = AllNames();
    m_names = {"C:", "HKLM"};
    for (int i = 0; i < 7; ++i)
        m_names.push_back(m_dice.Pick(all));
    for (int i = 0; course == Course::Tidy && i < 30; ++i)
        m_names.push_back((i % 2 ? "Name." : "name ") + std::to_string(i / 3));
    AddNamed("C:", OBJ_DRIVE, 0);
    AddNamed("HKLM", OBJ_HIVE, 0);
}

std::string Twin::AnyName() { return m_dice.Pick(m_names); }

// A few objects are favourites, and come to have many links.
mirror::Id Twin::LiveId() {
    if (m_mirror.objects.empty())
        return 0;
    std::size_t const count = m_mirror.objects.size();
    bool const favourite = m_dice.OneIn(4);
    auto place = m_mirror.objects.begin();
    std::advance(place, m_dice.Below(favourite ? std::min<std::size_t>(count, 4) : count));
    return place->first;
}

mirror::Id Twin::AnyVFile() {
    std::vector<mirror::Id> ids;
    for (auto const &[id, object] : m_mirror.objects)
        if (object.Type() == OBJ_VFILE)
            ids.push_back(id);
    return ids.empty() || m_dice.OneIn(10) ? LiveId() : m_dice.Pick(ids);
}

mirror::Id Twin::AnyId() {
    return m_dice.OneIn(20) ? m_dice.Below(m_mirror.lastObject + 3) : LiveId();
}

void Twin::Change() {
    std::uint32_t const which = m_dice.Below(1000);
    m_course == Course::Wild ? ChangeWildly(which) : ChangeTidily(which);
}

void Twin::ChangeInPlace() { ChangeWildly(m_dice.Below(989)); }

void Twin::ChangeWildly(std::uint32_t which) {
    if (which < 400)
        Add();
    else if (which < 780)
        Link();
    else if (which < 800)
        LooseLink();
    else if (which < 840)
        RemoveObject();
    else if (which < 880)
        RemoveLink();
    else if (which < 930)
        Rename();
    else if (which < 970)
        Persist();
    else if (which < 989)
        Flag();
    else
        Reload(which < 991);
}

void Twin::ChangeTidily(std::uint32_t which) {
    if (which < 800)
        Grow();
    else if (which < 815)
        Link();
    else if (which < 816)
        LooseLink();
    else if (which < 920)
        RemoveObject();
    else if (which < 926)
        RemoveLink();
    else if (which < 960)
        Rename();
    else if (which < 970)
        Persist();
    else if (which < 980)
        Add();
    else if (which < 992)
        Flag();
    else
        Reload(which < 996);
}

void Twin::Add() {
    std::optional<std::string> name;
    if (!m_dice.OneIn(20))
        name = m_dice.OneIn(20) ? "" : AnyName();
    AddNamed(name, m_dice.Pick(types), m_dice.OneIn(3) ? 0 : LiveId());
}

void Twin::AddNamed(std::optional<std::string> const &name, std::uint32_t type, mirror::Id parent) {
    std::uint32_t const flags = m_dice.OneIn(10) ? m_dice.Below(4) << 30 : 0;
    bool const persistent = !m_dice.OneIn(m_course == Course::Wild ? 3 : 30);
    CQVUObject *const object =
        Database()->AddObject(name ? name->c_str() : nullptr, type, flags, 0, nullptr, persistent);
    mirror::Id const id = m_mirror.AddObject(name, type, flags, persistent);
    EXPECT_EQ(object->GetUniqueID(), id);
    if (parent) {
        EXPECT_EQ(Object(parent)->LinkTo(object, LINK_PARENT), 1);
        m_mirror.LinkTo(parent, id, LINK_PARENT);
    }
}

bool Twin::IsTaken(mirror::Id parent, std::string const &name) const {
    for (std::uint32_t const entry : m_mirror.Find(parent)->from) {
        mirror::Link const *const link = m_mirror.LinkOf(entry);
        mirror::Object const *const child = link ? m_mirror.Find(link->target) : nullptr;
        if (child && child->name && mirror::SameText(*child->name, name))
            return true;
    }
    return false;
}

// A child of a name that its folder doesn't hold yet.
void Twin::Grow() {
    mirror::Id const parent = LiveId();
    if (!parent || parent == 1)
        return;
    std::string const name = AnyName();
    if (IsTaken(parent, name) || name.find('\\') != std::string::npos)
        return;
    std::uint32_t const above = m_mirror.Find(parent)->Type();
    bool const inFiles = above == OBJ_DRIVE || above == OBJ_FILE || above == OBJ_PINNED;
    std::uint32_t const kind = inFiles ? OBJ_FILE : OBJ_KEY;
    std::uint32_t const rare = inFiles ? OBJ_PINNED : OBJ_VALUE;
    AddNamed(name, m_dice.OneIn(8) ? rare : kind, parent);
}

void Twin::Link() {
    mirror::Id const source = LiveId(), target = LiveId();
    if (!source)
        return;
    std::uint32_t const type = m_dice.Pick(linkTypes);
    EXPECT_EQ(Object(source)->LinkTo(Object(target), type), 1);
    m_mirror.LinkTo(source, target, type);
}

// A link record that stands in no list, or names objects that don't exist: a stale entry
// comes to name it.
void Twin::LooseLink() {
    mirror::Id const source = AnyId(), target = AnyId();
    std::uint32_t const type = m_dice.Pick(linkTypes);
    bool const persistent = m_dice.OneIn(2);
    EXPECT_EQ(Database()->MakeNewLink(source, target, type, persistent)->dwID,
              m_mirror.MakeNewLink(source, target, type, persistent));
}

void Twin::RemoveObject() {
    mirror::Id const id = AnyId();
    mirror::Object const *const told = m_mirror.Find(id);
    bool const dear = id == 1 || (m_course == Course::Tidy && told && !told->from.empty());
    if (dear && !m_dice.OneIn(m_course == Course::Tidy ? 40 : 10))
        return;
    CQVUObject *const object = Object(id);
    bool const removed = m_mirror.DeleteObject(id);
    if (object && m_dice.OneIn(2))
        EXPECT_EQ(object->Delete(), 1);
    else
        EXPECT_EQ(Database()->DeleteObject(id), removed ? 1 : 0);
}

// Entries that are left behind in a list are stale.
void Twin::RemoveLink() {
    mirror::Id const id = m_dice.Below(m_mirror.lastLink + 2);
    int const fromSource = !m_dice.OneIn(4), fromTarget = !m_dice.OneIn(4);
    EXPECT_EQ(Database()->DeleteLink(id, fromSource, fromTarget),
              m_mirror.DeleteLink(id, fromSource != 0, fromTarget != 0) ? 1 : 0);
}

void Twin::Rename() {
    mirror::Id const id = LiveId();
    if (!id)
        return;
    std::string const name = m_dice.OneIn(8) ? "" : AnyName();
    ::Rename(Object(id), name);
    m_mirror.SetName(id, name);
}

void Twin::Persist() {
    if (mirror::Id const id = LiveId()) {
        EXPECT_EQ(Object(id)->MakePersistent(), 1);
        m_mirror.MakePersistent(id);
    }
}

void Twin::Flag() {
    if (mirror::Id const id = LiveId()) {
        std::uint32_t const flags = m_dice.OneIn(2) ? OBJ_FLAG_VISITED | 5 : 0x80000003;
        EXPECT_EQ(Object(id)->SetFlags(flags), 1);
        m_mirror.Find(id)->flags = flags;
    }
}

void Twin::Reload(bool sameProcess) {
    m_attached.Reload(sameProcess);
    m_mirror.Reload(sameProcess);
    ExpectEqual();
}

std::string Twin::Composed() {
    std::string path = m_dice.OneIn(6) ? CurrentSystemFolders().system : AnyName();
    for (std::uint32_t count = m_dice.Below(4); count > 0; --count)
        path += (m_dice.OneIn(25) ? "/" : "\\") + AnyName();
    return path;
}

std::string Twin::FolderOf(mirror::Id id) {
    std::string const path = mirror::Paths(m_mirror).FullPath(id).value_or(Composed());
    return path.substr(0, path.rfind('\\'));
}

std::string Twin::FolderWith(mirror::Id id) {
    std::vector<mirror::Id> namesakes;
    for (auto const &[other, object] : m_mirror.objects)
        if (other != id && object.name && mirror::SameText(*object.name, NameOf(id)))
            namesakes.push_back(other);
    return namesakes.empty() ? AnyPath() : FolderOf(m_dice.Pick(namesakes));
}

std::string Twin::NameOf(mirror::Id id) { return m_mirror.Find(id)->name.value_or(""); }

std::string Twin::AnyPath() {
    std::string path = Composed();
    mirror::Id const id = m_dice.OneIn(2) ? LiveId() : 0;
    if (id)
        path = mirror::Paths(m_mirror).FullPath(id).value_or(path);
    if (!path.empty() && m_dice.OneIn(8))
        path.erase(m_dice.Below(path.size()), 1);
    if (m_dice.OneIn(12))
        path += m_dice.OneIn(3) ? "\\\\" : "\\";
    if (!path.empty() && m_dice.OneIn(4)) {
        char &character = path[m_dice.Below(path.size())];
        bool const letter = (character | 0x20) >= 'a' && (character | 0x20) <= 'z';
        character = letter ? static_cast<char>(character ^ 0x20) : character;
    }
    return path;
}

void Twin::ExpectEqual() {
    for (mirror::Id id = 0; id <= m_mirror.lastObject + 2; ++id) {
        mirror::Object const *const told = m_mirror.Find(id);
        CQVUObject *const object = Object(id);
        ASSERT_EQ(object != nullptr, told != nullptr) << "object " << id;
        if (told) {
            ASSERT_TRUE(SameObject(object, *told)) << "object " << id;
        }
    }
    for (mirror::Id id = 0; id <= m_mirror.lastLink + 2; ++id) {
        DBLink const *const link = Database()->LookupLink(id);
        auto const told = m_mirror.links.find(id);
        ASSERT_EQ(link != nullptr, told != m_mirror.links.end()) << "link " << id;
        if (link) {
            ASSERT_TRUE(SameLink(link, told->second)) << "link " << id;
        }
    }
}

#include "scan/key_walker.h"

#include <algorithm>
#include <new>
#include <set>
#include <utility>

#include "answer/value_data.h"
#include "model.h"
#include "platform/host.h"

namespace qvlink {
namespace {

constexpr std::size_t LONGEST_NAME = 250;
constexpr std::size_t LONGEST_PATH = 999;
constexpr std::size_t DEEPEST_PATH = 259; // names below a hive that a path may have

// Codes of the registry.
constexpr std::uint32_t NO_SUCH_KEY = 2;
constexpr std::uint32_t ACCESS_DENIED = 5;
constexpr std::uint32_t KEY_DELETED = 1018;

std::string RegistryPath(Place const &place) { return ToUtf8(DatabasePath(place)); }

std::string DatabaseText(std::string_view utf8) {
    bool lossless = true;
    return FromUtf8(utf8, lossless);
}

std::string ReasonOf(std::uint32_t code) {
    switch (code) {
    case NO_SUCH_KEY:
    case KEY_DELETED:
        return "it went while it was read";
    case ACCESS_DENIED:
        return "access is denied";
    default:
        return "error " + std::to_string(code);
    }
}

bool IsBelowOrSame(Place const &place, Place const &top) {
    return place.drive == top.drive && place.names.size() >= top.names.size() &&
           std::equal(top.names.begin(), top.names.end(), place.names.begin(), EqualNames);
}

// None of them twice or below another.
std::vector<Place> RootsOf(std::vector<std::string> const &paths) {
    std::vector<Place> roots;
    for (std::string const &path : paths) {
        auto const place = ParseKeyPath(path, RootCase::any);
        if (!place) {
            throw ScanError(path + " is no path of a key; one begins with HKLM, HKCU, HKCR, HKU or "
                                   "HKCC");
        }
        auto const holds = [&](Place const &root) { return IsBelowOrSame(*place, root); };
        if (std::none_of(roots.begin(), roots.end(), holds)) {
            roots.erase(
                std::remove_if(roots.begin(), roots.end(),
                               [&](Place const &root) { return IsBelowOrSame(root, *place); }),
                roots.end());
            roots.push_back(*place);
        }
    }
    return roots;
}

} // namespace

KeyWalker::KeyWalker(Session &session, Registry &registry)
    : m_session(session), m_registry(registry),
      m_files(session.database, ReadVariables(registry, FindSystemDirectories())) {}

void KeyWalker::Find(std::vector<std::string> const &paths) {
    for (Place const &root : RootsOf(paths)) {
        (IsThere(root) ? m_present : m_absent).push_back(root);
    }
}

void KeyWalker::Scan() {
    for (Place const &place : m_absent) {
        Forget(place);
    }
    for (Place const &place : m_present) {
        ScanBelow(place);
    }
}

bool KeyWalker::IsThere(Place const &place) {
    std::vector<std::string> names;
    std::uint32_t const code = m_registry.ReadKeys(RegistryPath(place), names);
    if (code != 0 && code != NO_SUCH_KEY) {
        throw ScanError("cannot read " + DatabasePath(place) + ": " + ReasonOf(code));
    }
    if (code != 0 && !FindAt(m_session.database, place)) {
        throw ScanError("there is no " + DatabasePath(place) +
                        ", neither in the registry nor in the database");
    }
    return code == 0;
}

void KeyWalker::Forget(Place const &place) {
    CQVUObject *const object = FindAt(m_session.database, place);
    auto const parents = LinksTo(m_session.database, *object, LINK_PARENT);
    if (!parents.empty()) {
        m_session.summary.removed += m_session.tree.Remove(*parents.front().other, {object});
    }
}

void KeyWalker::ScanBelow(Place const &root) {
    Level top;
    if (!Descend(root, top)) {
        return;
    }
    ++m_session.summary.keys;
    std::vector<Level> pending{std::move(top)};
    while (!pending.empty()) {
        Level const level = std::move(pending.back());
        pending.pop_back();
        std::vector<Level> next;
        ScanKey(level, next);
        std::move(next.rbegin(), next.rend(), std::back_inserter(pending));
    }
}

// The objects of the key and of those above it are made where they are missing.
bool KeyWalker::Descend(Place const &root, Level &level) {
    CQVUDatabase &database = m_session.database;
    CQVUObject *object = database.GetObjectByPath(root.drive.c_str());
    if (!object) {
        CQVUObject *const top = database.GetRootObject();
        object = database.AddObject(root.drive.c_str(), OBJ_HIVE, 0, 0, nullptr, 1);
        if (!object || !top || !top->LinkTo(object, LINK_PARENT)) {
            throw std::bad_alloc();
        }
        ++m_session.summary.added;
        m_session.tree.NoteChange();
    }
    level = {object->dwID, root.drive, root.drive.size(), 0};
    for (std::string const &given : root.names) {
        std::string const name = Spelled(level, ToUtf8(given));
        Children known = ChildrenOf(level, OBJ_KEY);
        object = TakeKey(level, known, name);
        if (!object) {
            return false;
        }
        level = {object->dwID, level.path + '\\' + name, level.length + 1 + NameOf(*object).size(),
                 level.depth + 1};
    }
    return true;
}

// The name of a key below as the registry has it.
std::string KeyWalker::Spelled(Level const &level, std::string const &name) {
    std::vector<std::string> names;
    m_registry.ReadKeys(level.path, names);
    auto const found = std::find_if(names.begin(), names.end(), [&](std::string const &other) {
        return EqualNames(other, name);
    });
    return found == names.end() ? name : *found;
}

void KeyWalker::ScanKey(Level const &level, std::vector<Level> &next) {
    Session::StopIfAsked();
    std::vector<CQVUObject *> gone;
    // Keys first: where a value has the name of a key, paths lead to what was made first.
    std::uint32_t const keysCode = TakeKeys(level, next, gone);
    std::uint32_t const valuesCode = TakeValues(level, gone);
    if (std::uint32_t const code = keysCode ? keysCode : valuesCode) {
        m_session.Problem(ScanProblem::unreadable, DatabaseText(level.path), ReasonOf(code));
    }
    m_session.summary.removed += m_session.tree.Remove(ObjectOf(level), gone);
    m_session.observer.Progress(DatabaseText(level.path), m_session.summary);
}

std::uint32_t KeyWalker::TakeKeys(Level const &level, std::vector<Level> &next,
                                  std::vector<CQVUObject *> &gone) {
    std::vector<std::string> names;
    if (std::uint32_t const code = m_registry.ReadKeys(level.path, names)) {
        return code;
    }
    Children known = ChildrenOf(level, OBJ_KEY);
    for (std::string const &name : names) {
        if (CQVUObject const *const key = TakeKey(level, known, name)) {
            ++m_session.summary.keys;
            next.push_back({key->dwID, level.path + '\\' + name,
                            level.length + 1 + NameOf(*key).size(), level.depth + 1});
        }
    }
    for (auto const &[name, object] : known) {
        if (object) {
            gone.push_back(object);
        }
    }
    return 0;
}

std::uint32_t KeyWalker::TakeValues(Level const &level, std::vector<CQVUObject *> &gone) {
    std::vector<RegistryValue> values;
    if (std::uint32_t const code = m_registry.ReadValues(level.path, values)) {
        return code;
    }
    Children known = ChildrenOf(level, OBJ_VALUE);
    for (RegistryValue const &value : values) {
        Session::StopIfAsked();
        TakeValue(level, known, value);
    }
    for (auto const &[name, object] : known) {
        if (object) {
            gone.push_back(object);
        }
    }
    return 0;
}

CQVUObject *KeyWalker::TakeKey(Level const &level, Children &known, std::string const &name) {
    std::string const held = Hold(level, name, known, false);
    if (held.empty()) {
        return nullptr;
    }
    CQVUObject *const taken = std::exchange(known[FoldName(held)], nullptr);
    if (!taken) {
        return &Add(level, held, OBJ_KEY, {});
    }
    ++(Update(*taken, held, {}) ? m_session.summary.changed : m_session.summary.unchanged);
    return taken;
}

void KeyWalker::TakeValue(Level const &level, Children &known, RegistryValue const &value) {
    std::string const held = Hold(level, value.name, known, true);
    if (held.empty()) {
        return;
    }
    ++m_session.summary.values;
    std::string block = BlockOf(value.type, value.data);
    CQVUObject *taken = std::exchange(known[FoldName(held)], nullptr);
    if (!taken) {
        taken = &Add(level, held, OBJ_VALUE, std::move(block));
    } else {
        bool const isChanged = Update(*taken, held, std::move(block));
        ++(isChanged ? m_session.summary.changed : m_session.summary.unchanged);
    }
    LinkFiles(*taken, value);
}

CQVUObject &KeyWalker::Add(Level const &level, std::string const &name, std::uint32_t type,
                           std::string block) {
    CQVUObject *const object = m_session.database.AddObject(
        name.c_str(), type, 0, static_cast<unsigned long>(block.size()), block.data(), 1);
    if (!object || !ObjectOf(level).LinkTo(object, LINK_PARENT)) {
        throw std::bad_alloc();
    }
    ++m_session.summary.added;
    m_session.tree.NoteChange();
    return *object;
}

// Stores name and block where they differ from the object's; whether they did.
bool KeyWalker::Update(CQVUObject &object, std::string name, std::string block) {
    std::string const before =
        object.pData ? std::string(reinterpret_cast<char *>(object.pData), object.dwDataSize)
                     : std::string();
    bool const sameName = NameOf(object) == name;
    if (before == block && sameName) {
        return false;
    }
    if (!sameName) {
        // Only the case differs, so the object stays where names are looked up.
        object.SetName(name.data());
    }
    if (before != block && !object.SetData(static_cast<unsigned long>(block.size()),
                                           reinterpret_cast<unsigned char *>(block.data()))) {
        throw std::bad_alloc();
    }
    m_session.tree.NoteChange();
    return true;
}

void KeyWalker::LinkFiles(CQVUObject &object, RegistryValue const &value) {
    std::vector<CQVUObject *> const files = m_files.Of(value);
    m_session.summary.references += files.size();
    std::set<CQVUObject *> wanted(files.begin(), files.end());
    for (Edge const &edge : LinksFrom(m_session.database, object, LINK_REFERS)) {
        if (wanted.erase(edge.other) == 0) {
            edge.link->Delete();
            m_session.tree.NoteChange();
        }
    }
    for (CQVUObject *const file : files) {
        if (wanted.count(file) != 0) {
            if (!object.LinkTo(file, LINK_REFERS)) {
                throw std::bad_alloc();
            }
            m_session.tree.NoteChange();
        }
    }
}

CQVUObject &KeyWalker::ObjectOf(Level const &level) {
    return *static_cast<CQVUObject *>(m_session.database.LookupObject(level.id));
}

KeyWalker::Children KeyWalker::ChildrenOf(Level const &level, std::uint32_t type) {
    Children children;
    for (Edge const &edge : LinksFrom(m_session.database, ObjectOf(level), LINK_PARENT)) {
        if (TypeOf(*edge.other) == type) {
            children.emplace(FoldName(NameOf(*edge.other)), edge.other);
        }
    }
    return children;
}

std::string KeyWalker::Hold(Level const &level, std::string const &name, Children const &known,
                            bool isValue) {
    bool lossless = true;
    bool const isOwn = isValue && name.empty();
    std::string held = isOwn ? OWN_VALUE : FromUtf8(name, lossless);
    auto const twin = known.find(FoldName(held));
    const char *why = nullptr;
    if (!lossless) {
        why = "the name has characters that the database's texts don't know";
    } else if (held.size() > LONGEST_NAME) {
        why = "the name is longer than 250 bytes";
    } else if (held.find('\\') != std::string::npos) {
        why = "the name has a backslash, which separates names in the database";
    } else if (held.empty() || held.find('\0') != std::string::npos) {
        why = "the name is empty or has a zero in it";
    } else if (isValue && name == OWN_VALUE) {
        why = "the name is the one that the key's own value has in the database";
    } else if (isValue && level.depth == 0) {
        why = "the database has no place for values right below a hive";
    } else if (level.length + 1 + held.size() > LONGEST_PATH || level.depth + 1 > DEEPEST_PATH) {
        why = "the path is longer or deeper than the database can tell";
    } else if (twin != known.end() && !twin->second) {
        why = "the key has another of this name";
    }
    if (why) {
        std::string const path = DatabaseText(level.path) + '\\' + held;
        m_session.Problem(ScanProblem::unrepresentable, path, why);
        held.clear();
    }
    return held;
}

} // namespace qvlink

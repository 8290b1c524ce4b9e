#include "mirror_paths.h"

namespace mirror {
namespace {

constexpr std::uint32_t drive = 1, pinned = 2, file = 4, hive = 8, key = 16, value = 32;
constexpr std::uint32_t vfile = 4096;
constexpr std::uint32_t parentLink = 1;
constexpr std::size_t pathBuffer = 1000;
constexpr int depthLimit = 260;
constexpr int endless = 3000;

std::string Join(std::string folder, std::string const &name) {
    if (folder.empty() || folder.back() != '\\')
        folder += '\\';
    return folder + name;
}

} // namespace

PathParts::PathParts(std::string const &path) {
    std::size_t const afterDrive = path.size() >= 2 && path[1] == ':' ? 2 : 0;
    drive = path.substr(0, afterDrive);
    std::size_t const separator = path.find_last_of("\\/");
    bool const hasDirectory = separator != std::string::npos && separator >= afterDrive;
    std::size_t const afterDirectory = hasDirectory ? separator + 1 : afterDrive;
    directory = path.substr(afterDrive, afterDirectory - afterDrive);
    leaf = path.substr(afterDirectory);
}

Object const *Paths::ParentOf(std::uint32_t entry) const {
    Link const *const link = graph.LinkOf(entry);
    return link && link->Type() == parentLink ? graph.Find(link->source) : nullptr;
}

std::optional<std::string> Paths::FullPath(Id id) const {
    Known known;
    std::optional<std::string> path = Climb(*graph.Find(id), 0, known);
    if (path && path->size() >= pathBuffer)
        path.reset();
    return path;
}

// The result of each object at each depth is kept, since graphs with cycles would ask for
// it again and again.
std::optional<std::string> Paths::Climb(Object const &object, int depth, Known &known) const {
    if (depth >= depthLimit)
        return std::nullopt;
    if (object.Type() == drive || object.Type() == hive)
        return object.name.value_or("");
    if (object.Type() != pinned && object.Type() != file && object.Type() != key &&
        object.Type() != value)
        return std::nullopt;
    auto const place = known.find({object.id, depth});
    if (place != known.end())
        return place->second;
    std::optional<std::string> path = ClimbParents(object, depth, known);
    known[{object.id, depth}] = path;
    return path;
}

std::optional<std::string> Paths::ClimbParents(Object const &object, int depth,
                                               Known &known) const {
    for (std::uint32_t const entry : object.to)
        if (Object const *const parent = ParentOf(entry))
            if (std::optional<std::string> const path = Climb(*parent, depth + 1, known))
                return *path + '\\' + object.name.value_or("");
    return std::nullopt;
}

Id Paths::RootByName(std::string const &name, std::uint32_t type) const {
    for (Object const *const object : graph.Under(name))
        if (object->Type() == type && object->name && SameText(*object->name, name))
            return object->id;
    return 0;
}

Id Paths::FileByPath(std::string const &path) const {
    PathParts const parts(path);
    for (Object const *const object : graph.Under(parts.leaf)) {
        if (object->Type() != file && object->Type() != pinned)
            continue;
        if (!object->name || !SameText(*object->name, parts.leaf))
            continue;
        std::string parent = parts.drive + parts.directory;
        StripBackslash(parent);
        if (Chain(*object, parent, 0))
            return object->id;
    }
    return 0;
}

Id Paths::KeyByPath(std::string path) const {
    std::string leaf;
    std::size_t const separator = path.rfind('\\');
    if (separator != std::string::npos) {
        leaf = path.substr(separator + 1);
        path.resize(separator);
    }
    for (Object const *const object : graph.Under(leaf)) {
        if (object->Type() != key && object->Type() != value)
            continue;
        if (!object->name || !SameText(*object->name, leaf))
            continue;
        StripBackslash(path);
        if (Chain(*object, path, 0))
            return object->id;
    }
    return 0;
}

Id Paths::ByPath(std::string path) const {
    if (path.size() >= pathBuffer)
        return 0;
    if (path.size() < 3)
        return RootByName(path, drive);
    if (path[1] == ':')
        return FileByPath(path);
    if (path.size() <= 4)
        return RootByName(path, hive);
    return KeyByPath(path);
}

bool Paths::HasCorrectPath(Id id, std::string &parentPath) const {
    return Chain(*graph.Find(id), parentPath, 0);
}

bool Paths::IsBelowRoot(Object const &object, std::string const &rootName) const {
    for (std::uint32_t const entry : object.to) {
        Object const *const parent = ParentOf(entry);
        if (parent && (parent->Type() == drive || parent->Type() == hive) && parent->name &&
            SameText(*parent->name, rootName))
            return true;
    }
    return false;
}

bool Paths::Chain(Object const &object, std::string &parentPath, int depth) const {
    if (depth > endless)
        throw Endless();
    bool const isKey = object.Type() == key || object.Type() == hive;
    if (parentPath.size() < 4 || (isKey && parentPath.find('\\') == std::string::npos)) {
        StripBackslash(parentPath);
        return IsBelowRoot(object, parentPath);
    }
    PathParts const parts(parentPath);
    std::string buffer = parts.leaf;
    for (std::uint32_t const entry : object.to) {
        Object const *const parent = ParentOf(entry);
        if (!parent || !parent->name || !SameText(*parent->name, buffer))
            continue;
        // The parent text lands in the leaf's buffer, and later parents are compared with it.
        buffer = parts.drive + parts.directory;
        StripBackslash(buffer);
        if (Chain(*parent, buffer, depth + 1))
            return true;
    }
    return false;
}

Id Paths::VFile(std::string const &name) const { return RootByName(name, vfile); }

Id Paths::Resolve(Id id, std::optional<std::string> const &basePath, System const &system) const {
    Object const *const object = graph.Find(id);
    if (!object || object->Type() != vfile || !object->name)
        return 0;
    std::string const name = object->name->substr(0, pathBuffer - 1);
    if (basePath)
        if (Id const found = ByPath(Join(*basePath, name)))
            return found;
    if (Id const found = ByPath(Join(system.systemDirectory, name)))
        return found;
    if (system.isNT)
        if (Id const found = ByPath(Join(system.windowsDirectory, "SYSTEM\\" + name)))
            return found;
    return ByPath(Join(system.windowsDirectory, name));
}

} // namespace mirror

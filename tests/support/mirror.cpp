#include "mirror.h"

#include <algorithm>

namespace mirror {
namespace {

constexpr std::uint32_t entryId = 0x3fffffff;
constexpr std::uint32_t transientEntry = 0x40000000;
constexpr std::uint32_t topBits = 0xc0000000;
constexpr std::uint32_t persistentBit = 0x80000000;
constexpr std::uint32_t namedTypes = 0x103f;
constexpr std::uint32_t pinned = 2;
constexpr std::size_t nameLimit = 250;

int Upper(char character) {
    int const value = static_cast<signed char>(character);
    return value >= 'a' && value <= 'z' ? value - 32 : value;
}

void RemoveEntries(std::vector<std::uint32_t> &list, Id id) {
    list.erase(std::remove_if(list.begin(), list.end(),
                              [id](std::uint32_t entry) { return (entry & entryId) == id; }),
               list.end());
}

void ClearTopBits(std::vector<std::uint32_t> &list, Id id) {
    for (std::uint32_t &entry : list)
        if ((entry & entryId) == id)
            entry &= entryId;
}

bool HasPersistentLink(Object const &object) {
    auto const persistent = [](std::uint32_t entry) { return (entry & topBits) == 0; };
    return std::any_of(object.from.begin(), object.from.end(), persistent) ||
           std::any_of(object.to.begin(), object.to.end(), persistent);
}

} // namespace

bool SameText(std::string_view one, std::string_view other) {
    return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                      [](char a, char b) { return Upper(a) == Upper(b); });
}

std::uint32_t NameHash(std::string_view name) {
    std::uint32_t hash = 0;
    for (char const character : name)
        hash = (hash << 2) ^ static_cast<std::uint32_t>(Upper(character));
    return hash;
}

void StripBackslash(std::string &text) {
    if (!text.empty() && text.back() == '\\')
        text.pop_back();
}

Graph::Graph() {
    Object root;
    root.id = 1;
    root.type = persistentBit;
    objects[1] = root;
}

Object *Graph::Find(Id id) {
    auto const place = objects.find(id);
    return place == objects.end() ? nullptr : &place->second;
}

Object const *Graph::Find(Id id) const {
    auto const place = objects.find(id);
    return place == objects.end() ? nullptr : &place->second;
}

Link const *Graph::LinkOf(std::uint32_t entry) const {
    auto const place = links.find(entry & entryId);
    return place == links.end() ? nullptr : &place->second;
}

std::vector<Object const *> Graph::Under(std::string_view name) const {
    std::vector<Object const *> found;
    auto const place = names.find(NameHash(name));
    if (place != names.end())
        for (Id const id : place->second)
            found.push_back(Find(id));
    return found;
}

void Graph::Index(Object const &object) {
    if (object.name && !object.name->empty() && (object.type & namedTypes))
        names[NameHash(*object.name)].push_back(object.id);
}

Id Graph::AddObject(std::optional<std::string> const &name, std::uint32_t type, std::uint32_t flags,
                    bool persistent) {
    Object object;
    object.id = ++lastObject;
    object.flags = flags;
    object.type = type & ~persistentBit;
    if (persistent || type == pinned)
        object.type |= persistentBit;
    if (name && !name->empty())
        object.name = name->substr(0, nameLimit);
    objects[object.id] = object;
    Index(object);
    return object.id;
}

void Graph::SetName(Id id, std::string const &name) {
    Object &object = *Find(id);
    std::size_t const limit = std::min(name.size(), nameLimit);
    bool const reused = object.name && object.name->size() >= limit;
    object.name = reused ? name : name.substr(0, limit);
}

Id Graph::MakeNewLink(Id source, Id target, std::uint32_t type, bool persistent) {
    Link link{++lastLink, source, target, type & ~persistentBit};
    if (persistent)
        link.type |= persistentBit;
    links[link.id] = link;
    return link.id;
}

void Graph::LinkTo(Id sourceId, Id targetId, std::uint32_t type) {
    Object &source = *Find(sourceId);
    Object &target = *Find(targetId);
    bool const persistent = source.IsPersistent() && target.IsPersistent();
    if (persistent)
        for (std::uint32_t const entry : target.to) {
            Link const *const link = LinkOf(entry);
            if (link && link->Type() == (type & ~persistentBit) && link->source == sourceId)
                return;
        }
    Id const id = MakeNewLink(sourceId, targetId, type, persistent);
    std::uint32_t const entry = persistent ? id : id | transientEntry;
    source.from.push_back(entry);
    target.to.push_back(entry);
}

void Graph::MakePersistent(Id id) {
    Object &object = *Find(id);
    if (object.IsPersistent())
        return;
    object.type |= persistentBit;
    auto const settle = [this](std::uint32_t &entry, bool outgoing) {
        auto const place = links.find(entry & entryId);
        if (place == links.end())
            return;
        Link &link = place->second;
        Object *const other = Find(outgoing ? link.target : link.source);
        if (!other || !other->IsPersistent())
            return;
        ClearTopBits(outgoing ? other->to : other->from, link.id);
        entry &= entryId;
        link.type |= persistentBit;
    };
    for (std::uint32_t &entry : object.from)
        settle(entry, true);
    for (std::uint32_t &entry : object.to)
        settle(entry, false);
}

bool Graph::DeleteLink(Id id, bool fromSource, bool fromTarget) {
    auto const place = links.find(id);
    if (place == links.end())
        return false;
    Link const link = place->second;
    links.erase(place);
    if (Object *const source = fromSource ? Find(link.source) : nullptr)
        RemoveEntries(source->from, id);
    if (Object *const target = fromTarget ? Find(link.target) : nullptr)
        RemoveEntries(target->to, id);
    return true;
}

bool Graph::DeleteObject(Id id) {
    auto const place = objects.find(id);
    if (place == objects.end())
        return false;
    Object const object = place->second;
    objects.erase(place);
    for (auto list = names.begin(); list != names.end();) {
        auto &ids = list->second;
        ids.erase(std::remove(ids.begin(), ids.end(), id), ids.end());
        list = ids.empty() ? names.erase(list) : std::next(list);
    }
    for (std::uint32_t const entry : object.from)
        DeleteLink(entry & entryId, false, true);
    for (std::uint32_t const entry : object.to)
        DeleteLink(entry & entryId, true, false);
    return true;
}

bool Graph::IsBareRoot() const {
    if (objects.empty())
        return true;
    Object const &first = objects.begin()->second;
    return objects.size() == 1 && first.id == 1 && first.from.empty() && first.to.empty();
}

void Graph::KeepForOthers() {
    for (auto place = objects.begin(); place != objects.end();) {
        Object &object = place->second;
        RemoveEntries(object.from, 0);
        RemoveEntries(object.to, 0);
        bool const kept = object.IsPersistent() && HasPersistentLink(object);
        place = kept ? std::next(place) : objects.erase(place);
    }
    for (auto place = links.begin(); place != links.end();)
        place = place->second.type & persistentBit ? std::next(place) : links.erase(place);
}

void Graph::Reload(bool sameProcess) {
    if (IsBareRoot()) {
        *this = Graph();
        return;
    }
    if (!sameProcess)
        KeepForOthers();
    names.clear();
    for (auto &[id, object] : objects) {
        object.flags &= 0x3fffffff;
        if (object.name && object.name->empty())
            object.name.reset();
        Index(object);
    }
    if (!Find(1))
        objects[1] = Graph().objects[1];
    lastObject = objects.rbegin()->first;
    lastLink = links.empty() ? 0 : links.rbegin()->first;
}

} // namespace mirror

#include "graph_model.h"

#include <algorithm>
#include <cctype>

namespace model {

namespace {

constexpr std::uint32_t persistentBit = 0x80000000, idMask = 0x3fffffff, transientBit = 0x40000000,
                        blockedBit = 0x40000000, namedMask = 0x103f;
constexpr std::uint32_t pinned = 2, virtualFile = 4096;
constexpr std::size_t nameLimit = 250;

std::uint32_t TypeWord(std::uint32_t type, bool persistent) {
    return (type & ~persistentBit) | (persistent ? persistentBit : 0);
}

} // namespace

std::uint32_t List::Word() const {
    return static_cast<std::uint32_t>(entries.size()) | (blocked ? blockedBit : 0);
}

void List::Append(std::uint32_t entry) {
    blocked = blocked || entries.size() >= 2;
    entries.push_back(entry);
}

void List::Remove(std::uint32_t link) {
    entries.erase(std::remove_if(entries.begin(), entries.end(),
                                 [link](std::uint32_t entry) { return (entry & idMask) == link; }),
                  entries.end());
}

void List::ClearBits(std::uint32_t link) {
    for (std::uint32_t &entry : entries)
        if ((entry & idMask) == link)
            entry &= idMask;
}

std::uint32_t NameHash(std::string const &name) {
    std::uint32_t hash = 0;
    for (char const character : name) {
        auto value = static_cast<std::int32_t>(static_cast<signed char>(character));
        if (value >= 'a' && value <= 'z')
            value -= 32;
        hash = (hash << 2) ^ static_cast<std::uint32_t>(value);
    }
    return hash;
}

bool SameName(std::string const &a, std::string const &b) {
    auto const lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [lower](char x, char y) { return lower(x) == lower(y); });
}

Graph::Graph() { MakeRootIfMissing(); }

void Graph::MakeRootIfMissing() {
    if (Find(1))
        return;
    auto const root = std::make_shared<Object>();
    root->id = 1;
    root->type = persistentBit;
    lastObject = std::max(lastObject, 1u);
    Index(root);
}

Object *Graph::Find(std::uint32_t id) const {
    auto const found = objects.find(id);
    return found == objects.end() ? nullptr : found->second.get();
}

void Graph::Index(ObjectPointer const &object) {
    objects[object->id] = object;
    if (object->name.value_or("").empty() || !(object->type & namedMask))
        return;
    object->filedUnder = NameHash(*object->name);
    m_names[object->filedUnder].push_back(object);
}

void Graph::Unfile(ObjectPointer const &object) {
    auto &list = m_names[object->filedUnder];
    list.erase(std::remove(list.begin(), list.end(), object), list.end());
}

std::optional<Bytes> Graph::Flush(image::Stamp writer) const {
    if (objects.empty() || (objects.size() == 1 && Find(1) && Find(1)->from.entries.empty() &&
                            Find(1)->to.entries.empty()))
        return std::nullopt;
    image::File file;
    file.stamp = writer;
    for (auto const &[id, object] : objects) {
        image::Object record;
        record.id = id;
        record.flags = object->flags;
        record.type = object->type;
        record.name = object->name.value_or("");
        record.name = record.name.substr(0, record.name.find('\0'));
        record.from = object->from.entries;
        record.to = object->to.entries;
        record.fromBits = object->from.Word() & blockedBit;
        record.toBits = object->to.Word() & blockedBit;
        record.data = object->data;
        file.objects.push_back(record);
    }
    for (auto const &[id, link] : links)
        file.links.push_back({id, link.source, link.target, link.type});
    Bytes bytes = image::Write(file);
    if (lastObject == 0)
        image::SetWord(bytes, image::objectCountAt, 0);
    if (lastLink == 0)
        image::SetWord(bytes, image::linkCountAt, 0);
    return bytes;
}

std::uint32_t Graph::AddObject(std::string const &name, std::uint32_t type, std::uint32_t flags,
                               Bytes const &data, bool persistent) {
    persistent = persistent || type == pinned;
    dirty = dirty || persistent;
    if (lastObject == 0xffffffff)
        return 0;
    auto const object = std::make_shared<Object>();
    object->id = ++lastObject;
    object->type = TypeWord(type, persistent);
    object->flags = flags;
    object->data = data;
    if (!name.empty())
        object->name = name.substr(0, nameLimit);
    Index(object);
    return object->id;
}

std::uint32_t Graph::MakeNewLink(std::uint32_t source, std::uint32_t target, std::uint32_t type,
                                 bool persistent) {
    if (lastLink >= idMask)
        return 0;
    dirty = dirty || persistent;
    links[++lastLink] = {source, target, TypeWord(type, persistent)};
    return lastLink;
}

bool Graph::LinkTo(std::uint32_t source, std::uint32_t target, std::uint32_t type) {
    Object *const from = Find(source);
    Object *const to = Find(target);
    bool const persistent = from->Persistent() && to->Persistent();
    if (persistent)
        for (std::uint32_t const entry : to->to.entries) {
            auto const link = links.find(entry & idMask);
            if (link != links.end() && link->second.source == source &&
                (link->second.type & ~persistentBit) == (type & ~persistentBit))
                return true;
        }
    std::uint32_t const id = MakeNewLink(source, target, type, persistent);
    if (id == 0)
        return false;
    std::uint32_t const entry = id | (persistent ? 0 : transientBit);
    from->from.Append(entry);
    to->to.Append(entry);
    return true;
}

void Graph::MakePersistent(std::uint32_t id) {
    Object *const object = Find(id);
    if (object->Persistent())
        return;
    object->type |= persistentBit;
    dirty = true;
    auto const settle = [this](std::uint32_t &entry, std::uint32_t Link::*end, List Object::*list) {
        auto const link = links.find(entry & idMask);
        Object *const other = link == links.end() ? nullptr : Find(link->second.*end);
        if (!other || !other->Persistent())
            return;
        (other->*list).ClearBits(entry & idMask);
        entry &= idMask;
        link->second.type |= persistentBit;
    };
    for (std::uint32_t &entry : object->from.entries)
        settle(entry, &Link::target, &Object::to);
    for (std::uint32_t &entry : object->to.entries)
        settle(entry, &Link::source, &Object::from);
}

bool Graph::DeleteLink(std::uint32_t id, bool fromSource, bool fromTarget) {
    auto const found = links.find(id);
    if (found == links.end())
        return false;
    Link const link = found->second;
    links.erase(found);
    if (Object *const source = fromSource ? Find(link.source) : nullptr)
        source->from.Remove(id);
    if (Object *const target = fromTarget ? Find(link.target) : nullptr)
        target->to.Remove(id);
    dirty = dirty || link.type & persistentBit;
    return true;
}

bool Graph::DeleteObject(std::uint32_t id) {
    auto const found = objects.find(id);
    if (found == objects.end())
        return false;
    ObjectPointer const object = found->second;
    objects.erase(found);
    Unfile(object);
    for (std::uint32_t const entry : object->from.entries)
        DeleteLink(entry & idMask, false, true);
    for (std::uint32_t const entry : object->to.entries)
        DeleteLink(entry & idMask, true, false);
    dirty = dirty || object->Persistent();
    return true;
}

void Graph::SetName(std::uint32_t id, std::string const &name) {
    Object *const object = Find(id);
    std::size_t const limit = std::min(name.size(), nameLimit);
    bool const reused = object->name && object->name->size() >= limit;
    object->name = reused ? name : name.substr(0, limit);
}

void Graph::SetData(std::uint32_t id, Bytes const &data) { Find(id)->data = data; }

Object const *Graph::LookupVFILE(std::string const &name) const {
    auto const list = m_names.find(NameHash(name));
    if (list != m_names.end())
        for (ObjectPointer const &object : list->second)
            if ((object->type & ~persistentBit) == virtualFile && object->name &&
                SameName(*object->name, name))
                return object.get();
    return nullptr;
}

} // namespace model

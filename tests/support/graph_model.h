// A plain model of the link database, to compare the real one with: maps and vectors,
// no index, no speed.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "linkdb_image.h"

namespace model {

// One of an object's two lists: the entries and the count word that goes with them.
struct List {
    std::vector<std::uint32_t> entries;
    bool blocked = false;

    std::uint32_t Word() const;
    void Append(std::uint32_t entry);
    void Remove(std::uint32_t link);
    void ClearBits(std::uint32_t link);
};

struct Object {
    std::uint32_t id = 0, flags = 0, type = 0;
    std::optional<std::string> name;
    Bytes data;
    List from, to;
    std::uint32_t filedUnder = 0; // hash that the name index has it under

    bool Persistent() const { return type >> 31; }
};

struct Link {
    std::uint32_t source = 0, target = 0, type = 0;
};

std::uint32_t NameHash(std::string const &name);
bool SameName(std::string const &a, std::string const &b); // without regard to case

class Graph {
public:
    using ObjectPointer = std::shared_ptr<Object>;

    std::map<std::uint32_t, ObjectPointer> objects;
    std::map<std::uint32_t, Link> links;
    std::uint32_t lastObject = 1, lastLink = 0;
    bool dirty = false;

    Graph();
    // What a process with the stamp `reader` makes of a file of these bytes; no bytes
    // stand for no file.
    static Graph Load(Bytes const &bytes, image::Stamp reader);
    // What Flush writes, or nothing if it writes nothing.
    std::optional<Bytes> Flush(image::Stamp writer) const;

    // The operations by the names that the database gives them. Ids stand for records;
    // 0 for null.
    std::uint32_t AddObject(std::string const &name, std::uint32_t type, std::uint32_t flags,
                            Bytes const &data, bool persistent);
    std::uint32_t MakeNewLink(std::uint32_t source, std::uint32_t target, std::uint32_t type,
                              bool persistent);
    bool LinkTo(std::uint32_t source, std::uint32_t target, std::uint32_t type);
    void MakePersistent(std::uint32_t id);
    bool DeleteLink(std::uint32_t id, bool fromSource, bool fromTarget);
    bool DeleteObject(std::uint32_t id);
    void SetName(std::uint32_t id, std::string const &name);
    void SetData(std::uint32_t id, Bytes const &data);
    Object const *LookupVFILE(std::string const &name) const;

    Object *Find(std::uint32_t id) const; // null if there is none

private:
    friend class Loader;
    std::map<std::uint32_t, std::vector<ObjectPointer>> m_names;

    void Index(ObjectPointer const &object);
    void Unfile(ObjectPointer const &object);
    void MakeRootIfMissing();
};

} // namespace model

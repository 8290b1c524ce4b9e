#include "faults_fixture.h"

#include "graph_compare.h"

using testing::AssertionFailure;
using testing::AssertionResult;
using testing::AssertionSuccess;

namespace {

constexpr std::uint32_t idLimit = 100; // the graphs here are small

image::Object Object(std::uint32_t id, std::uint32_t type, char const *name) {
    image::Object object;
    object.id = id;
    object.type = type;
    object.name = name;
    return object;
}

void Link(image::File &file, std::uint32_t source, std::uint32_t target, std::uint32_t type) {
    auto const id = static_cast<std::uint32_t>(file.links.size() + 1);
    image::Object &from = file.objects.at(source - 1), &to = file.objects.at(target - 1);
    bool const keep = from.type & to.type & PERSISTENT_BIT;
    std::uint32_t const entry = id | (keep ? 0 : LINK_ENTRY_TRANSIENT);
    from.from.push_back(entry);
    to.to.push_back(entry);
    file.links.push_back({id, source, target, type | (keep ? PERSISTENT_BIT : 0)});
}

AssertionResult ListIsSound(CQVUDatabase *database, DBObject const *object, bool outgoing) {
    std::uint32_t const word = outgoing ? object->dwLinksFrom : object->dwLinksTo;
    std::uint32_t const *const entries = outgoing ? object->pdwLinksFrom : object->pdwLinksTo;
    if ((word & LINK_ENTRY_ID_MASK) > 0 && !entries)
        return AssertionFailure() << "object " << object->dwID << ": a count without a list";
    for (std::uint32_t i = 0; i < (word & LINK_ENTRY_ID_MASK); ++i) {
        DBLink const *const link = database->LookupLink(entries[i] & LINK_ENTRY_ID_MASK);
        if (!link)
            continue;
        bool const marked = entries[i] & LINK_ENTRY_TRANSIENT;
        if ((outgoing ? link->dwSource : link->dwTarget) != object->dwID ||
            marked == ((link->dwType & PERSISTENT_BIT) != 0))
            return AssertionFailure() << "object " << object->dwID << ": entry " << i
                                      << " doesn't agree with link " << link->dwID;
    }
    return AssertionSuccess();
}

} // namespace

Bytes SmallGraph() {
    image::File file;
    file.stamp = OwnStamp();
    file.objects = {Object(1, PERSISTENT_BIT, ""),
                    Object(2, OBJ_DRIVE | PERSISTENT_BIT, "C:"),
                    Object(3, OBJ_FILE | PERSISTENT_BIT, "a.exe"),
                    Object(4, OBJ_VFILE, "b.dll"),
                    Object(5, OBJ_FILE | PERSISTENT_BIT, "b.dll"),
                    Object(6, OBJ_FILE, "hub with a name that is longer than a short string")};
    file.objects[5].data = Bytes(24, 0xda);
    Link(file, 2, 3, LINK_PARENT);
    Link(file, 3, 4, 8);
    Link(file, 2, 5, LINK_PARENT);
    for (std::uint32_t i = 0; i < 9; ++i)
        Link(file, 6, i % 2 ? 3 : 5, 8);
    return image::Write(file);
}

AssertionResult IsSound(CQVUDatabase *database) {
    for (std::uint32_t id = 0; id < idLimit; ++id) {
        DBObject const *const object = database->LookupObject(id);
        if (!object)
            continue;
        if (object->dwID != id || object->dwFlags & OBJ_FLAG_VISITED)
            return AssertionFailure() << "object " << id << ": wrong id, or a mark left";
        for (bool const outgoing : {true, false})
            if (AssertionResult const sound = ListIsSound(database, object, outgoing); !sound)
                return sound;
    }
    for (std::uint32_t id = 0; id < idLimit; ++id) {
        DBLink const *const link = database->LookupLink(id);
        if (!link)
            continue;
        DBObject const *const source = database->LookupObject(link->dwSource);
        DBObject const *const target = database->LookupObject(link->dwTarget);
        bool const keep = source && target && source->dwType & target->dwType & PERSISTENT_BIT;
        if (!source || !target || keep != ((link->dwType & PERSISTENT_BIT) != 0))
            return AssertionFailure() << "link " << id << " doesn't agree with its ends";
    }
    return AssertionSuccess();
}

AssertionResult WorksOn(CQVUDatabase *database, TempFolder const &folder) {
    CQVUObject *const object = database->AddObject("after.dll", OBJ_VFILE, 0, 3, nullptr, 1);
    if (!object || object->LinkTo(object, 8) != 1 || object->dwLinksFrom != 1)
        return AssertionFailure() << "no object or link can be made";
    database->Flush();
    Bytes const bytes = ReadBytes(folder.DatabaseFile());
    if (!image::Read(bytes))
        return AssertionFailure() << "the file isn't well-formed";
    model::Graph const graph = model::Graph::Load(bytes, OwnStamp());
    for (std::uint32_t id = 1; id < idLimit; ++id) {
        if (!graph.Find(id) != !database->LookupObject(id))
            return AssertionFailure()
                   << "object " << id
                   << (graph.Find(id) ? " is in the file only" : " isn't in the file");
        if (graph.links.count(id) != (database->LookupLink(id) ? 1u : 0u))
            return AssertionFailure()
                   << "link " << id
                   << (database->LookupLink(id) ? " isn't in the file" : " is in the file only");
    }
    for (auto const &entry : graph.objects)
        if (database->DeleteObject(entry.first) != 1)
            return AssertionFailure() << "object " << entry.first << " can't be deleted";
    return AssertionSuccess();
}

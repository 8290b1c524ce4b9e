#include "LinkDbStore.h"

#include <stdexcept>

namespace bench {
namespace {

[[noreturn]] void Fail(char const *what) {
    throw std::runtime_error(std::string("QVLinkDB: ") + what);
}

} // namespace

LinkDbStore::LinkDbStore(std::string const &directory)
    : m_database(AttachDatabase(directory.c_str())) {
    if (m_database == nullptr)
        Fail("can't attach");
    m_database->SetSaveFlag(0);
}

LinkDbStore::~LinkDbStore() { m_database->Release(); }

void LinkDbStore::Add(Graph const &graph) {
    std::vector<CQVUObject *> objects(graph.HighestId() + 1);
    objects[ROOT_ID] = m_database->GetRootObject();
    std::uint32_t id = DRIVE_ID;
    for (Object const &object : graph.objects) {
        FileData data = object.data;
        CQVUObject *added =
            m_database->AddObject(object.name.c_str(), object.type, 0, sizeof data, &data, 1);
        if (added == nullptr || added->GetUniqueID() != id ||
            objects[object.parent]->LinkTo(added, LINK_PARENT) == 0)
            Fail("can't add an object");
        objects[id++] = added;
    }
    for (Link const &link : graph.needs)
        if (objects[link.source]->LinkTo(objects[link.target], link.type) == 0)
            Fail("can't add a link");
}

void LinkDbStore::Save() { m_database->Flush(); }

CQVUObject *LinkDbStore::Find(std::uint32_t id) {
    return static_cast<CQVUObject *>(m_database->LookupObject(id));
}

std::uint32_t LinkDbStore::Locate(std::string const &path) {
    CQVUObject *object = m_database->GetObjectByPath(path.c_str());
    return static_cast<std::uint32_t>(object == nullptr ? 0 : object->GetUniqueID());
}

Answer LinkDbStore::Closure(std::uint32_t start) {
    Answer answer;
    CQVUObject *from = Find(start);
    CQVUObject *found = nullptr;
    SearchHandle const handle = from->FindFirstDependentObject(&found, nullptr);
    if (handle == 0)
        return answer;
    do {
        answer.Add(found->GetUniqueID());
    } while (from->FindNextDependentObject(handle, &found, nullptr) != 0);
    from->FindCloseDependentObject(handle);
    return answer;
}

Answer LinkDbStore::Links(std::uint32_t object) {
    constexpr std::uint32_t ALL = 0xffffffff;
    Answer answer;
    CQVUObject *from = Find(object);
    CQVULink *link = nullptr;
    if (SearchHandle const handle = from->FindFirstLinkFrom(ALL, &link); handle != 0) {
        do {
            answer.Add(LinkDigest(link->dwTarget, link->GetType(), false));
        } while (from->FindNextLinkFrom(handle, &link) != 0);
        from->FindCloseLinkFrom(handle);
    }
    if (SearchHandle const handle = from->FindFirstLinkTo(ALL, &link); handle != 0) {
        do {
            answer.Add(LinkDigest(link->dwSource, link->GetType(), true));
        } while (from->FindNextLinkTo(handle, &link) != 0);
        from->FindCloseLinkTo(handle);
    }
    return answer;
}

} // namespace bench

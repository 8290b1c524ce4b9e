#include "attached.h"

#include <gtest/gtest.h>

Attached::Attached() { Attach(); }

Attached::Attached(image::File const &file) {
    WriteBytes(m_folder.DatabaseFile(), image::Write(file));
    Attach();
}

Attached::~Attached() { EXPECT_EQ(m_database->Release(), 0u); }

void Attached::Attach() {
    m_database = AttachDatabase(m_folder.Directory().c_str());
    m_database->SetSaveFlag(0);
}

void Attached::Reload(bool sameProcess) {
    std::error_code ignored;
    std::filesystem::remove(m_folder.DatabaseFile(), ignored);
    m_database->Flush();
    EXPECT_EQ(m_database->Release(), 0u);
    Bytes bytes = ReadBytes(m_folder.DatabaseFile());
    if (!sameProcess && !bytes.empty()) {
        image::SetStamp(bytes, image::Foreign(image::StampOf(bytes)));
        WriteBytes(m_folder.DatabaseFile(), bytes);
    }
    Attach();
}

CQVUObject *Attached::Add(char const *name, unsigned long type, bool persistent) {
    return m_database->AddObject(name, type, 0, 0, nullptr, persistent);
}

CQVUObject *Attached::AddBelow(CQVUObject *parent, char const *name, unsigned long type) {
    CQVUObject *const object = Add(name, type);
    EXPECT_EQ(parent->LinkTo(object, LINK_PARENT), 1);
    return object;
}

CQVUObject *Attached::AddChain(CQVUObject *root, std::vector<std::string> const &names) {
    CQVUObject *last = root;
    for (std::string const &name : names)
        last = AddBelow(last, name.c_str(), OBJ_FILE);
    return last;
}

CQVUObject *Attached::Folder(std::string const &path) {
    if (CQVUObject *const present = m_database->GetObjectByPath(path.c_str()))
        return present;
    std::size_t const separator = path.rfind('\\');
    if (separator == std::string::npos)
        return Add(path.c_str(), OBJ_DRIVE);
    return AddBelow(Folder(path.substr(0, separator)), path.substr(separator + 1).c_str(),
                    OBJ_FILE);
}

CQVUObject *Attached::Object(unsigned long id) const {
    return static_cast<CQVUObject *>(m_database->LookupObject(id));
}

std::optional<std::string> PathOf(CQVUObject *object) {
    std::vector<char> buffer(1000);
    if (!object->GetFullPath(buffer.data()))
        return std::nullopt;
    return std::string(buffer.data());
}

void Rename(CQVUObject *object, std::string name) { EXPECT_EQ(object->SetName(name.data()), 1); }

DBObject *Protected::Step(CQVUDatabase *database, SearchHandle handle) {
    auto const member = &Protected::FindSupport;
    return (database->*member)(handle);
}

int Protected::HasCorrectPath(CQVUDatabase *database, DBObject *object, char *parentPath) {
    auto const member = &Protected::DoesObjectHaveCorrectPath;
    return (database->*member)(object, parentPath);
}

void Protected::Index(CQVUDatabase *database, DBObject *object) {
    auto const member = &Protected::IndexObject;
    (database->*member)(object);
}

#include "session.h"

#include <gtest/gtest.h>

Session::Session(std::string const &directory) : m_database(nullptr) {
    OwnStamp(); // takes an attachment of its own, the first time
    m_database = AttachDatabase(directory.c_str());
    EXPECT_NE(m_database, nullptr);
}

Session::~Session() { Release(); }

unsigned long Session::Release() {
    CQVUDatabase *const database = m_database;
    m_database = nullptr;
    return database ? database->Release() : 0;
}

CQVUObject *Session::Add(char const *name, unsigned long type, int persistence) {
    return m_database->AddObject(name, type, 0, 0, nullptr, persistence);
}

CQVUObject *Session::Object(unsigned long id) const {
    return static_cast<CQVUObject *>(m_database->LookupObject(id));
}

std::string NameOf(CQVUObject *object) {
    std::vector<char> buffer(65537);
    return object->GetName(buffer.data(), static_cast<unsigned long>(buffer.size()))
               ? std::string(buffer.data())
               : std::string();
}

Bytes DataOf(CQVUObject *object) {
    Bytes data(object->GetDataSize());
    int const copied = object->GetData(static_cast<unsigned long>(data.size()), data.data());
    EXPECT_EQ(copied, data.empty() ? 0 : 1);
    return data;
}

std::vector<std::uint32_t> LinksFrom(DBObject const *object) {
    return {object->pdwLinksFrom,
            object->pdwLinksFrom + (object->dwLinksFrom & LINK_ENTRY_ID_MASK)};
}

std::vector<std::uint32_t> LinksTo(DBObject const *object) {
    return {object->pdwLinksTo, object->pdwLinksTo + (object->dwLinksTo & LINK_ENTRY_ID_MASK)};
}

image::File FileIn(TempFolder const &folder) {
    std::optional<image::File> const file = image::Read(ReadBytes(folder.DatabaseFile()));
    EXPECT_TRUE(file.has_value()) << "no well-formed linkdb.dat";
    return file.value_or(image::File());
}

image::Stamp OwnStamp() {
    static image::Stamp const stamp = [] {
        TempFolder folder;
        CQVUDatabase *const database = AttachDatabase(folder.Directory().c_str());
        database->AddObject("any", OBJ_FILE, 0, 0, nullptr, transient);
        database->Flush();
        database->Release();
        return FileIn(folder).stamp;
    }();
    return stamp;
}

void GiveAway(TempFolder const &folder) {
    Bytes bytes = ReadBytes(folder.DatabaseFile());
    image::SetStamp(bytes, image::Foreign(image::StampOf(bytes)));
    WriteBytes(folder.DatabaseFile(), bytes);
}

namespace {
std::string const marker = "marker";
}

void PlaceMarker(TempFolder const &folder) { WriteBytes(folder.DatabaseFile(), BytesOf(marker)); }

bool MarkerStands(TempFolder const &folder) {
    return ReadBytes(folder.DatabaseFile()) == BytesOf(marker);
}

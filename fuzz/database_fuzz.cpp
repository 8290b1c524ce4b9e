// Any bytes as linkdb.dat. The first byte says how the rest is taken: bit 0 makes the
// length word true, bit 1 gives the file this process's stamp, and bit 2 loads it twice.
// Whatever loads is walked, changed, written and loaded again.
#include "linkdb.h"

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

using Bytes = std::vector<char>;

constexpr std::uint32_t anyType = 0xffffffff;
constexpr std::size_t lengthAt = 0, stampAt = 4, stampSize = 12, magicAt = 16;
constexpr int patience = 64; // results looked at of each walk

class Folder {
public:
    Folder() {
        unsigned number = 0;
        do
            m_path = std::filesystem::temp_directory_path() /
                     ("qvlinkdb-fuzz-" + std::to_string(number++));
        while (!std::filesystem::create_directory(m_path));
    }
    ~Folder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    std::string Directory() const { return m_path.string(); }
    Bytes Read() const {
        std::ifstream stream(m_path / "linkdb.dat", std::ios::binary);
        return Bytes(std::istreambuf_iterator<char>(stream), {});
    }
    void Write(Bytes const &bytes) const {
        std::ofstream stream(m_path / "linkdb.dat", std::ios::binary | std::ios::trunc);
        stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    }

private:
    std::filesystem::path m_path;
};

Folder const &TheFolder() {
    static Folder const folder;
    return folder;
}

CQVUDatabase *Attach() {
    CQVUDatabase *const database = AttachDatabase(TheFolder().Directory().c_str());
    if (!database)
        std::abort();
    return database;
}

// The header's stamp words as this process writes them.
Bytes const &OwnStamp() {
    static Bytes const stamp = [] {
        TheFolder().Write({});
        CQVUDatabase *const database = Attach();
        database->AddObject("any", OBJ_FILE, 0, 0, nullptr, 0);
        database->Flush();
        database->Release();
        Bytes const bytes = TheFolder().Read();
        return Bytes(bytes.begin() + stampAt, bytes.begin() + stampAt + stampSize);
    }();
    return stamp;
}

std::vector<CQVUObject *> Objects(CQVUDatabase *database) {
    std::vector<CQVUObject *> objects;
    char star[] = "*";
    CQVUObject *object = nullptr;
    SearchHandle const handle = database->FindFirstObject(star, anyType, &object);
    if (!handle)
        return objects;
    do
        objects.push_back(object);
    while (objects.size() < patience && database->FindNextObject(handle, &object));
    database->FindCloseObject(handle);
    return objects;
}

void WalkLinks(CQVUObject *object) {
    CQVULink *link = nullptr;
    int left = patience;
    SearchHandle handle = object->FindFirstLinkFrom(anyType, &link);
    while (handle && --left && object->FindNextLinkFrom(handle, &link))
        link->GetTarget();
    object->FindCloseLinkFrom(handle);
    handle = object->FindFirstLinkTo(anyType, &link);
    while (handle && --left && object->FindNextLinkTo(handle, &link))
        link->GetSource();
    object->FindCloseLinkTo(handle);
}

void WalkExpansion(CQVUObject *object, bool backwards) {
    CQVUObject *out = nullptr;
    SearchHandle const handle = backwards ? object->FindFirstReferencingApp(&out, nullptr)
                                          : object->FindFirstDependentObject(&out, nullptr);
    if (!handle)
        return;
    for (int left = patience; left && object->FindNextDependentObject(handle, &out, nullptr);)
        --left;
    object->FindCloseDependentObject(handle);
}

void Walk(CQVUDatabase *database, std::vector<CQVUObject *> const &objects) {
    char path[1000], base[] = "C:\\windows";
    for (CQVUObject *const object : objects) {
        object->GetName(path, sizeof path);
        object->DoesObjectLinkTo(path, anyType);
        database->LookupVFILE(path);
        if (object->GetFullPath(path))
            database->GetObjectByPath(path);
        object->Resolve(base);
        WalkLinks(object);
        WalkExpansion(object, false);
        WalkExpansion(object, true);
        if (object->GetFlags() & OBJ_FLAG_VISITED)
            std::abort();
    }
}

void Change(CQVUDatabase *database, std::vector<CQVUObject *> const &objects) {
    char name[] = "a new name of some length", data[] = "data";
    CQVUObject *const added = database->AddObject("added", OBJ_FILE, 0, sizeof data, data, 1);
    for (std::size_t i = 0; i + 1 < objects.size(); ++i) {
        objects[i]->LinkTo(objects[i + 1], LINK_PARENT);
        objects[i + 1]->LinkTo(objects[i], 2);
        if (added)
            added->LinkTo(objects[i], 2);
        objects[i]->SetName(name);
        objects[i]->SetData(3, reinterpret_cast<unsigned char *>(data));
        objects[i]->MakePersistent();
    }
    Walk(database, objects);
    for (std::size_t i = 0; i < objects.size(); i += 2)
        database->DeleteObject(objects[i]->GetUniqueID());
}

// Loads the file, writes it anew and gives its bytes.
Bytes Rewritten() {
    CQVUDatabase *const database = Attach();
    database->Flush();
    database->SetSaveFlag(0);
    database->Release();
    return TheFolder().Read();
}

// A file that was written loads, and is written again just the same. Two rounds before
// let the bits settle that a load gives anew.
void Reload() {
    Rewritten();
    Bytes const settled = Rewritten();
    if (Rewritten() != settled)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    if (size == 0)
        return 0;
    Bytes const &stamp = OwnStamp();
    Bytes bytes(data + 1, data + size);
    auto const length = static_cast<std::uint32_t>(bytes.size());
    if (data[0] & 1 && length >= sizeof length)
        std::memcpy(bytes.data() + lengthAt, &length, sizeof length);
    if (data[0] & 2 && length >= magicAt)
        std::memcpy(bytes.data() + stampAt, stamp.data(), stampSize);
    TheFolder().Write(bytes);
    CQVUDatabase *const database = Attach();
    if (data[0] & 4)
        database->Initialize(TheFolder().Directory().c_str());
    std::vector<CQVUObject *> const objects = Objects(database);
    Walk(database, objects);
    Change(database, objects);
    database->Flush();
    database->SetSaveFlag(0);
    database->Release();
    Reload();
    return 0;
}

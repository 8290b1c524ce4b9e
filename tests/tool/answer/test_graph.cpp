#include "test_graph.h"

#include "answer/graph.h"

using namespace qvlink;

TestGraph::TestGraph() : m_database(AttachDatabase(m_folder.Directory().c_str())) {
    m_database->SetSaveFlag(0);
}

TestGraph::~TestGraph() { m_database->Release(); }

CQVUObject *TestGraph::Below(CQVUObject *parent, std::string const &name, std::uint32_t attributes,
                             std::uint32_t flags, std::uint32_t size) {
    FileData data{size, 0, 0, 0x01d00000, attributes, 0};
    CQVUObject *const object =
        m_database->AddObject(name.c_str(), OBJ_FILE, flags, sizeof data, &data, 1);
    parent->LinkTo(object, LINK_PARENT);
    return object;
}

CQVUObject *TestGraph::Folder(std::string const &path) {
    if (CQVUObject *const there = m_database->GetObjectByPath(path.c_str())) {
        return there;
    }
    std::size_t const slash = path.rfind('\\');
    if (slash == std::string::npos) {
        CQVUObject *const drive = m_database->AddObject(path.c_str(), OBJ_DRIVE, 0, 0, nullptr, 1);
        m_database->GetRootObject()->LinkTo(drive, LINK_PARENT);
        return drive;
    }
    return Below(Folder(path.substr(0, slash)), path.substr(slash + 1), ATTRIBUTE_DIRECTORY, 0, 0);
}

CQVUObject *TestGraph::Make(std::string const &path, std::uint32_t attributes, std::uint32_t flags,
                            std::uint32_t size) {
    std::size_t const slash = path.rfind('\\');
    return Below(Folder(path.substr(0, slash)), path.substr(slash + 1), attributes, flags, size);
}

CQVUObject *TestGraph::File(std::string const &path, std::uint32_t flags, std::uint32_t size) {
    return Make(path, ATTRIBUTE_NORMAL, flags, size);
}

CQVUObject *TestGraph::Program(std::string const &path) {
    return File(path, FLAG_ELF | FLAG_64BIT);
}

CQVUObject *TestGraph::Windows(std::string const &path) { return File(path, FLAG_PE); }

CQVUObject *TestGraph::Symlink(std::string const &path, CQVUObject *target) {
    CQVUObject *const link = Make(path, ATTRIBUTE_REPARSE_POINT, 0, 0);
    if (target) {
        link->LinkTo(target, LINK_SYMLINK);
    }
    return link;
}

CQVUObject *TestGraph::Name(std::string const &name) {
    std::string text = name;
    CQVUObject *const there = m_database->LookupVFILE(text.data());
    return there ? there : m_database->AddObject(name.c_str(), OBJ_VFILE, 0, 0, nullptr, 1);
}

void TestGraph::Found(CQVUObject *program, CQVUObject *library, std::uint32_t rule) {
    program->LinkTo(library, LINK_NEEDS);
    program->LinkTo(library, rule);
}

void TestGraph::Asks(CQVUObject *program, std::string const &name, std::uint32_t type) {
    program->LinkTo(Name(name), type);
}

std::string PathOf(CQVUDatabase &database, CQVUObject *object) {
    std::optional<Place> const place = PlaceOf(database, *object);
    return place ? DatabasePath(*place) : std::string(NameOf(*object));
}

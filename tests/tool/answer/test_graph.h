// A small graph of files for a test, made through the library's public interface.
#pragma once

#include "linkdb.h"
#include "model.h"
#include "temp_folder.h"

#include <string>
#include <vector>

class TestGraph {
public:
    TestGraph();
    ~TestGraph();
    TestGraph(TestGraph const &) = delete;
    TestGraph &operator=(TestGraph const &) = delete;

    CQVUDatabase &Database() { return *m_database; }
    std::string Directory() const { return m_folder.Directory(); }
    std::filesystem::path DatabaseFile() const { return m_folder.DatabaseFile(); }

    // Objects by their path in the database's form, with all folders above them.
    CQVUObject *Folder(std::string const &path);
    CQVUObject *File(std::string const &path, std::uint32_t flags = 0, std::uint32_t size = 0);
    CQVUObject *Program(std::string const &path); // an ELF file
    CQVUObject *Windows(std::string const &path); // a PE file
    CQVUObject *Symlink(std::string const &path, CQVUObject *target);
    CQVUObject *Name(std::string const &name); // an OBJ_VFILE, one for each name

    // An ELF need that was found by a rule, one of LINK_FOUND_*.
    void Found(CQVUObject *program, CQVUObject *library,
               std::uint32_t rule = qvlink::LINK_FOUND_CACHE);
    // A PE need of a bare name.
    void Asks(CQVUObject *program, std::string const &name,
              std::uint32_t type = qvlink::LINK_NEEDS);

    void Flush() { m_database->Flush(); }

private:
    CQVUObject *Below(CQVUObject *parent, std::string const &name, std::uint32_t attributes,
                      std::uint32_t flags, std::uint32_t size);
    CQVUObject *Make(std::string const &path, std::uint32_t attributes, std::uint32_t flags,
                     std::uint32_t size);

    TempFolder m_folder;
    CQVUDatabase *m_database;
};

// The paths (or names) of objects in the database's form.
std::string PathOf(CQVUDatabase &database, CQVUObject *object);
using Texts = std::vector<std::string>;

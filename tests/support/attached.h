// A database for a test: attached to a folder of its own and written only when told.
#pragma once

#include "linkdb.h"
#include "linkdb_image.h"
#include "temp_folder.h"

#include <optional>
#include <string>
#include <vector>

class Attached {
public:
    Attached();                                 // a fresh database
    explicit Attached(image::File const &file); // one that was loaded
    ~Attached();
    Attached(Attached const &) = delete;
    Attached &operator=(Attached const &) = delete;

    CQVUDatabase *operator->() const { return m_database; }
    CQVUDatabase *Get() const { return m_database; }

    CQVUObject *Add(char const *name, unsigned long type, bool persistent = true);
    // With a parent link.
    CQVUObject *AddBelow(CQVUObject *parent, char const *name, unsigned long type);
    // Objects of type OBJ_FILE one below the other, under a root; the last one.
    CQVUObject *AddChain(CQVUObject *root, std::vector<std::string> const &names);
    // The folder of this path, made with all above it as far as it doesn't exist.
    CQVUObject *Folder(std::string const &path);
    CQVUObject *Object(unsigned long id) const; // or null

    // Writes the file, releases the database and attaches it again, as the process that
    // wrote the file or as some other. All pointers to objects and links are void then.
    void Reload(bool sameProcess);

private:
    void Attach();

    TempFolder m_folder;
    CQVUDatabase *m_database = nullptr;
};

// The object's path, or nothing.
std::optional<std::string> PathOf(CQVUObject *object);
void Rename(CQVUObject *object, std::string name);

// Texts for arguments that aren't const.
class Text {
public:
    explicit Text(std::string const &text) : m_text(text.c_str(), text.c_str() + text.size() + 1) {}
    operator char *() { return m_text.data(); }

private:
    std::vector<char> m_text;
};

// The operations that are called with the mutex held, for tests that are alone.
struct Protected : CQVUDatabase {
    static DBObject *Step(CQVUDatabase *database, SearchHandle handle);
    static int HasCorrectPath(CQVUDatabase *database, DBObject *object, char *parentPath);
    static void Index(CQVUDatabase *database, DBObject *object);
};

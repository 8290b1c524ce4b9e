// An attachment to the database for the length of a test, and helpers around it.
#pragma once

#include <string>
#include <vector>

#include "linkdb.h"
#include "linkdb_image.h"
#include "temp_folder.h"

// Null views: many operations tolerate one.
inline CQVUObject *const noObject = nullptr;
inline CQVULink *const noLink = nullptr;

class Session {
public:
    explicit Session(TempFolder const &folder) : Session(folder.Directory()) {}
    explicit Session(std::string const &directory);
    ~Session();
    Session(Session const &) = delete;
    Session &operator=(Session const &) = delete;

    CQVUDatabase *operator->() const { return m_database; }
    CQVUDatabase *Get() const { return m_database; }
    unsigned long Release(); // early
    // Makes an object without data, transient or persistent.
    CQVUObject *Add(char const *name, unsigned long type, int persistence);
    CQVUObject *Object(unsigned long id) const; // null if there is none

private:
    CQVUDatabase *m_database;
};

constexpr int transient = 0, persistent = 1;

std::string NameOf(CQVUObject *object); // at most 65536 characters; empty without a name
Bytes DataOf(CQVUObject *object);       // what GetData gives for the whole block
std::vector<std::uint32_t> LinksFrom(DBObject const *object); // entries with their bits
std::vector<std::uint32_t> LinksTo(DBObject const *object);

// The file that a database in a folder has, well-formed; fails the test if it hasn't.
image::File FileIn(TempFolder const &folder);
// The stamp that files of this process bear, as read from one that it wrote.
image::Stamp OwnStamp();
// Makes the file in the folder look like another process's.
void GiveAway(TempFolder const &folder);

// A text in the place of the database's file shows whether anything is written.
void PlaceMarker(TempFolder const &folder);
bool MarkerStands(TempFolder const &folder);

// Steps that several operations of the database share. They are no members of it, since
// a member of an exported class is exported too. All but Mutex are called with it held.
#pragma once

#include "linkdb.h"

class DatabaseSteps {
public:
    static void *Mutex(); // of the database of the process, or null

    static void MakeRootObject(CQVUDatabase &database);
    // IndexObject, or free the record without memory.
    static bool IndexOrFree(CQVUDatabase &database, DBObject *object);
    static void FreeObject(CQVUDatabase &database, DBObject *object); // that isn't in m_idmap
    // Into m_linkmap, in place of a link that has its id; null without memory.
    static DBLink *EnterLink(CQVUDatabase &database, DBLink const &record);
    static void DropLinks(CQVUDatabase &database, DBObject &object);
};

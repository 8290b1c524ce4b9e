// Expansion: one walk of the graph from an object, gathering what it reaches.
//
// The walk goes depth first along the lists, as deep as the graph is, on a stack of its
// own. The mutex isn't held as a whole: it is let go every few steps, and what the stack
// names is looked up again, since objects may go meanwhile.
#pragma once

#include "linkdb.h"

#include <vector>

class Expansion {
public:
    // New results go to the head of `results`.
    Expansion(CQVUDatabase &database, char *basePath, FFDepObjResult *&results)
        : m_database(database), m_basePath(basePath), m_results(results) {}

    void Forward(CQVUObject &object);  // along the outgoing links, all the way
    void Backward(CQVUObject &object); // one step along the incoming links, then forward

    // Clears the marks that an expansion left in the objects of its results.
    static void ClearMarks(CQVUDatabase &database, FFDepObjResult *results);
    // The first object at or behind the cursor that still exists, and moves the cursor
    // past it; null at the end, the cursor then being left where it is.
    static CQVUObject *Next(CQVUDatabase &database, FFDepObjSearch &search);

private:
    struct Level {
        DBObject *object;
        std::uint32_t id;
        std::uint32_t next; // index of the entry to follow next
    };

    void Walk();
    void Step();
    DBLink *NextLink(Level &level) const;
    void Follow(DBLink const &link);
    CQVUObject *Referrer(CQVUObject &object, DBLink const &link, std::uint32_t &type);
    bool Gather(DBObject &object);
    void Enter(DBObject &object);

    CQVUDatabase &m_database;
    char *m_basePath;
    FFDepObjResult *&m_results;
    DBObject *m_start = nullptr; // the caller holds it, whatever the maps say
    std::vector<Level> m_levels;
};

// FullPathWriter: the path of an object, along its parent links up to a root.
#pragma once

#include "graph_maps.h"
#include "linkdb.h"

#include <cstddef>
#include <unordered_map>

class FullPathWriter {
public:
    // The buffer has PathBufferSize bytes; nothing is written past them.
    FullPathWriter(ObjectMap const &objects, LinkMap const &links, char *buffer)
        : m_objects(objects), m_links(links), m_buffer(buffer) {}

    // `depth` is the number of levels climbed before. False: no path, or one that doesn't
    // fit; the buffer may hold leftovers.
    bool Write(DBObject &object, int depth) { return Climb(object, depth) == Outcome::Found; }

private:
    enum class Outcome { Found, None, TooLong };

    Outcome Climb(DBObject &object, int depth);
    Outcome ClimbToParent(DBObject &object, int depth);
    Outcome Append(char const *separator, char const *name);
    bool KnownToFail(DBObject &object, int depth) const;
    void NoteFailure(DBObject &object, int depth);

    ObjectMap const &m_objects;
    LinkMap const &m_links;
    char *const m_buffer;
    std::size_t m_length = 0;
    std::size_t m_steps = 0;
    // Lowest depth at which an object led nowhere: it leads nowhere further up either.
    // Kept once a climb turns out to be long, so that many-parented cycles end.
    std::unordered_map<DBObject *, int> m_failures;
};

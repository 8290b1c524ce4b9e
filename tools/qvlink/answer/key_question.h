// What the library says of keys that need not be in any graph.
#pragma once

#include "answer/place.h"

#include "linkdb.h"

#include <memory>
#include <string>

namespace qvlink {

// Asks about keys through objects of an empty database of its own: the process must have no
// database attached as long as one exists.
class KeyQuestion {
public:
    // `file` is any file that there is: a database in it, as in a folder, there can't be.
    explicit KeyQuestion(std::string const &file);

    // Names of a place have at most 250 characters, and its path less than 260. Throws
    // std::bad_alloc.
    bool operator()(Place const &key);

private:
    struct Releaser {
        void operator()(CQVUDatabase *database) const;
    };

    std::unique_ptr<CQVUDatabase, Releaser> m_database;
};

} // namespace qvlink

// An empty database for each test of the store.
#pragma once

#include <gtest/gtest.h>

#include "session.h"

class Store : public testing::Test {
protected:
    using Entries = std::vector<std::uint32_t>;

    TempFolder folder;
    Session session{folder};

    CQVUObject *File(char const *name, int persistence) {
        return session.Add(name, OBJ_FILE, persistence);
    }
    CQVULink *Link(unsigned long id) { return static_cast<CQVULink *>(session->LookupLink(id)); }
};

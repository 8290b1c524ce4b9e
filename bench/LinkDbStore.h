// QVLinkDB, through its public interface only.
#pragma once

#include "Graph.h"
#include "Store.h"

namespace bench {

// The process's database, attached for the life of this object. Letting go never saves.
class LinkDbStore : public Store {
public:
    explicit LinkDbStore(std::string const &directory);
    ~LinkDbStore() override;

    // Into a database that holds nothing yet, as a scanner would: each object with its
    // parent link, then the needs. Saves nothing.
    void Add(Graph const &graph);
    void Save();

    std::uint32_t Locate(std::string const &path) override;
    Answer Closure(std::uint32_t start) override;
    Answer Links(std::uint32_t object) override;

private:
    CQVUObject *Find(std::uint32_t id);

    CQVUDatabase *m_database;
};

} // namespace bench

// LMDB: nodes by id, names by parent and name, and links in one of two forms.
#pragma once

#include <lmdb.h>

#include "Graph.h"
#include "Store.h"

namespace bench {

class LmdbStore : public Store {
public:
    // Packed: an array a node and direction. The fastest form to ask and to fill, if the
    // application gathers the whole graph first, groups and sorts it, and drops duplicates.
    // Sorted: a duplicate a link, put as it comes, LMDB dropping those that are there.
    enum class LinksAs { Packed, Sorted };

    explicit LmdbStore(std::string const &directory);
    ~LmdbStore() override;

    void Build(Graph const &graph, LinksAs form); // in one transaction; durable when it returns
    // Questions are for packed links.
    void BeginReading(std::uint32_t highestId);

    std::uint32_t Locate(std::string const &path) override;
    Answer Closure(std::uint32_t start) override;
    Answer Links(std::uint32_t object) override;

private:
    void Begin(unsigned transactionFlags, unsigned tableFlags, unsigned linkFlags);
    void Put(MDB_dbi table, MDB_val key, MDB_val value, unsigned flags);
    bool Get(MDB_dbi table, MDB_val key, MDB_val &value);
    void PutNodes(Graph const &graph);
    void PutPackedLinks(Graph const &graph);
    void PutSortedLinks(Graph const &graph);
    void PutName(std::uint32_t id, Object const &object, unsigned flags);
    void PutSortedNames(Graph const &graph);

    MDB_env *m_environment = nullptr;
    MDB_txn *m_transaction = nullptr;
    MDB_dbi m_nodes = 0;
    MDB_dbi m_out = 0;
    MDB_dbi m_in = 0;
    MDB_dbi m_names = 0;
    VisitedSet m_visited{0};
    std::vector<std::uint32_t> m_open;
};

} // namespace bench

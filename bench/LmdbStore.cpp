#include "LmdbStore.h"

#include <algorithm>
#include <cstring>
#include <numeric>
#include <stdexcept>

#include "Model.h"

namespace bench {
namespace {

constexpr std::size_t MAP_SIZE = std::size_t{8} << 30;

struct NodeHead {
    std::uint32_t parent;
    std::uint32_t type;
    std::uint32_t flags;
    FileData data;
};

void Check(int result) {
    if (result != MDB_SUCCESS)
        throw std::runtime_error(std::string("LMDB: ") + mdb_strerror(result));
}

MDB_val Bytes(void const *data, std::size_t size) { return {size, const_cast<void *>(data)}; }
MDB_val IdKey(std::uint32_t const &id) { return Bytes(&id, sizeof id); }

// Values lie at even addresses only, hence the copy.
template <class Use> void ForEachEntry(MDB_val const &value, Use use) {
    Adjacency::Entry entry;
    auto const *bytes = static_cast<char const *>(value.mv_data);
    for (std::size_t at = 0; at < value.mv_size; at += sizeof entry) {
        std::memcpy(&entry, bytes + at, sizeof entry);
        use(entry);
    }
}

// The parent's id with its high byte first, so that keys sort by parent, then the name.
void MakeNameKey(std::string &key, std::uint32_t parent, char const *name, std::size_t size) {
    key.clear();
    for (int shift = 24; shift >= 0; shift -= 8)
        key.push_back(static_cast<char>(parent >> shift));
    key.append(name, size);
}

} // namespace

LmdbStore::LmdbStore(std::string const &directory) {
    Check(mdb_env_create(&m_environment));
    Check(mdb_env_set_mapsize(m_environment, MAP_SIZE));
    Check(mdb_env_set_maxdbs(m_environment, 4));
    Check(mdb_env_open(m_environment, directory.c_str(), MDB_NOMEMINIT | MDB_WRITEMAP, 0644));
}

LmdbStore::~LmdbStore() {
    if (m_transaction != nullptr)
        mdb_txn_abort(m_transaction);
    mdb_env_close(m_environment);
}

void LmdbStore::Put(MDB_dbi table, MDB_val key, MDB_val value, unsigned flags) {
    int const result = mdb_put(m_transaction, table, &key, &value, flags);
    if (result != MDB_KEYEXIST || (flags & MDB_NODUPDATA) == 0)
        Check(result);
}

bool LmdbStore::Get(MDB_dbi table, MDB_val key, MDB_val &value) {
    int const result = mdb_get(m_transaction, table, &key, &value);
    if (result != MDB_NOTFOUND)
        Check(result);
    return result == MDB_SUCCESS;
}

void LmdbStore::Begin(unsigned transactionFlags, unsigned tableFlags, unsigned linkFlags) {
    unsigned const byId = tableFlags | MDB_INTEGERKEY;
    Check(mdb_txn_begin(m_environment, nullptr, transactionFlags, &m_transaction));
    Check(mdb_dbi_open(m_transaction, "nodes", byId, &m_nodes));
    Check(mdb_dbi_open(m_transaction, "out", byId | linkFlags, &m_out));
    Check(mdb_dbi_open(m_transaction, "in", byId | linkFlags, &m_in));
    Check(mdb_dbi_open(m_transaction, "names", tableFlags, &m_names));
}

void LmdbStore::Build(Graph const &graph, LinksAs form) {
    if (form == LinksAs::Packed) {
        Begin(0, MDB_CREATE, 0);
        PutNodes(graph);
        PutPackedLinks(graph);
        PutSortedNames(graph);
    } else {
        Begin(0, MDB_CREATE, MDB_DUPSORT | MDB_DUPFIXED | MDB_INTEGERDUP);
        PutNodes(graph);
        PutSortedLinks(graph);
    }
    Check(mdb_txn_commit(m_transaction));
    m_transaction = nullptr;
}

void LmdbStore::PutNodes(Graph const &graph) {
    std::uint32_t id = DRIVE_ID;
    std::string value;
    for (Object const &object : graph.objects) {
        NodeHead const head{object.parent, object.type, 0, object.data};
        value.assign(reinterpret_cast<char const *>(&head), sizeof head);
        value += object.name;
        Put(m_nodes, IdKey(id), Bytes(value.data(), value.size()), MDB_APPEND);
        ++id;
    }
}

void LmdbStore::PutPackedLinks(Graph const &graph) {
    auto before = [](Adjacency::Entry const &a, Adjacency::Entry const &b) {
        return a.other != b.other ? a.other < b.other : a.type < b.type;
    };
    auto same = [](Adjacency::Entry const &a, Adjacency::Entry const &b) {
        return a.other == b.other && a.type == b.type;
    };
    for (auto const &[table, by] :
         {std::pair(m_out, Adjacency::By::Source), std::pair(m_in, Adjacency::By::Target)}) {
        Adjacency const links(graph, by);
        std::vector<Adjacency::Entry> entries;
        for (std::uint32_t id = ROOT_ID; id <= graph.HighestId(); ++id) {
            if (links.Count(id) == 0)
                continue;
            entries.assign(links.Begin(id), links.End(id));
            std::sort(entries.begin(), entries.end(), before);
            entries.erase(std::unique(entries.begin(), entries.end(), same), entries.end());
            Put(table, IdKey(id), Bytes(entries.data(), entries.size() * sizeof entries[0]),
                MDB_APPEND);
        }
    }
}

void LmdbStore::PutSortedLinks(Graph const &graph) {
    auto put = [&](std::uint32_t source, std::uint32_t target, std::uint32_t type) {
        std::uint64_t const out = std::uint64_t{target} << 32 | type;
        std::uint64_t const in = std::uint64_t{source} << 32 | type;
        Put(m_out, IdKey(source), Bytes(&out, sizeof out), MDB_NODUPDATA);
        Put(m_in, IdKey(target), Bytes(&in, sizeof in), MDB_NODUPDATA);
    };
    std::uint32_t id = DRIVE_ID;
    for (Object const &object : graph.objects) {
        PutName(id, object, 0);
        put(object.parent, id++, LINK_PARENT);
    }
    for (Link const &link : graph.needs)
        put(link.source, link.target, link.type);
}

void LmdbStore::PutName(std::uint32_t id, Object const &object, unsigned flags) {
    std::string key;
    MakeNameKey(key, object.parent, object.name.data(), object.name.size());
    Put(m_names, Bytes(key.data(), key.size()), IdKey(id), flags);
}

void LmdbStore::PutSortedNames(Graph const &graph) {
    std::vector<std::uint32_t> order(graph.objects.size());
    std::iota(order.begin(), order.end(), DRIVE_ID);
    std::sort(order.begin(), order.end(), [&](std::uint32_t left, std::uint32_t right) {
        Object const &a = graph.ById(left);
        Object const &b = graph.ById(right);
        return a.parent != b.parent ? a.parent < b.parent : a.name < b.name;
    });
    for (std::uint32_t const id : order)
        PutName(id, graph.ById(id), MDB_APPEND);
}

void LmdbStore::BeginReading(std::uint32_t highestId) {
    Begin(MDB_RDONLY, 0, 0);
    m_visited = VisitedSet(highestId);
}

std::uint32_t LmdbStore::Locate(std::string const &path) {
    std::uint32_t id = ROOT_ID;
    std::string key;
    bool const found = ForEachPart(path, [&](char const *part, std::size_t size) {
        MDB_val value;
        MakeNameKey(key, id, part, size);
        if (!Get(m_names, Bytes(key.data(), key.size()), value))
            return false;
        std::memcpy(&id, value.mv_data, sizeof id);
        return true;
    });
    return found ? id : 0;
}

Answer LmdbStore::Closure(std::uint32_t start) {
    return WalkClosure(start, m_visited, m_open, [&](std::uint32_t id, auto found) {
        MDB_val value;
        if (Get(m_out, IdKey(id), value))
            ForEachEntry(value, [&](Adjacency::Entry const &entry) { found(entry.other); });
    });
}

Answer LmdbStore::Links(std::uint32_t object) {
    Answer answer;
    for (bool const incoming : {false, true}) {
        MDB_val value;
        if (Get(incoming ? m_in : m_out, IdKey(object), value))
            ForEachEntry(value, [&](Adjacency::Entry const &entry) {
                answer.Add(LinkDigest(entry.other, entry.type, incoming));
            });
    }
    return answer;
}

} // namespace bench

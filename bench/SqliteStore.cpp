#include "SqliteStore.h"

#include <stdexcept>

#include <sqlite3.h>

namespace bench {
namespace {

// A page of 8 KiB, a cache for all of it and helper threads for sorting the indexes are
// each faster here than the defaults. FULL makes the commit durable in WAL mode.
constexpr char const *SETTINGS = "PRAGMA page_size=8192;"
                                 "PRAGMA journal_mode=WAL;"
                                 "PRAGMA synchronous=FULL;"
                                 "PRAGMA wal_autocheckpoint=0;"
                                 "PRAGMA locking_mode=EXCLUSIVE;"
                                 "PRAGMA cache_size=-2000000;"
                                 "PRAGMA mmap_size=4000000000;"
                                 "PRAGMA temp_store=MEMORY;"
                                 "PRAGMA threads=2;";

std::uint32_t Number(sqlite3_stmt *statement, int column) {
    return static_cast<std::uint32_t>(sqlite3_column_int64(statement, column));
}

} // namespace

void SqliteStore::Finalizer::operator()(sqlite3_stmt *statement) const {
    sqlite3_finalize(statement);
}

SqliteStore::SqliteStore(std::string const &file) {
    if (sqlite3_open(file.c_str(), &m_database) != SQLITE_OK)
        throw std::runtime_error("SQLite: can't open " + file);
    Run(SETTINGS);
}

SqliteStore::~SqliteStore() {
    for (Statement *statement : {&m_byPath, &m_byName, &m_out, &m_in, &m_closure})
        statement->reset();
    sqlite3_close(m_database);
}

void SqliteStore::Run(char const *sql) {
    if (sqlite3_exec(m_database, sql, nullptr, nullptr, nullptr) != SQLITE_OK)
        throw std::runtime_error(std::string("SQLite: ") + sqlite3_errmsg(m_database));
}

SqliteStore::Statement SqliteStore::Prepare(char const *sql) {
    sqlite3_stmt *statement = nullptr;
    if (sqlite3_prepare_v3(m_database, sql, -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr) !=
        SQLITE_OK)
        throw std::runtime_error(std::string("SQLite: ") + sqlite3_errmsg(m_database));
    return Statement(statement);
}

// True while there is a row; resets the statement at the end.
bool SqliteStore::Step(Statement const &statement) {
    int const result = sqlite3_step(statement.get());
    if (result == SQLITE_ROW)
        return true;
    sqlite3_reset(statement.get());
    if (result != SQLITE_DONE)
        throw std::runtime_error(std::string("SQLite: ") + sqlite3_errmsg(m_database));
    return false;
}

void SqliteStore::Build(Graph const &graph, bool pathColumn) {
    Run("BEGIN;"
        "CREATE TABLE nodes(id INTEGER PRIMARY KEY, parent INTEGER, name TEXT, type INTEGER,"
        " flags INTEGER, data BLOB, path TEXT);"
        "CREATE TABLE edges(src INTEGER, dst INTEGER, type INTEGER);");
    InsertNodes(graph, pathColumn);
    InsertEdges(graph);
    Run("CREATE UNIQUE INDEX edges_out ON edges(src, dst, type);"
        "CREATE INDEX edges_in ON edges(dst, src, type);"
        "CREATE INDEX nodes_name ON nodes(parent, name);");
    if (pathColumn)
        Run("CREATE INDEX nodes_path ON nodes(path);");
    Run("COMMIT;");
}

void SqliteStore::Checkpoint() { Run("PRAGMA wal_checkpoint(TRUNCATE);"); }

void SqliteStore::InsertNodes(Graph const &graph, bool pathColumn) {
    Statement const insert = Prepare("INSERT INTO nodes VALUES(?,?,?,?,0,?,?)");
    sqlite3_stmt *const row = insert.get();
    std::uint32_t id = DRIVE_ID;
    for (Object const &object : graph.objects) {
        std::string path;
        sqlite3_bind_int64(row, 1, id);
        sqlite3_bind_int64(row, 2, object.parent);
        sqlite3_bind_text(row, 3, object.name.data(), static_cast<int>(object.name.size()),
                          SQLITE_STATIC);
        sqlite3_bind_int64(row, 4, object.type);
        sqlite3_bind_blob(row, 5, &object.data, sizeof object.data, SQLITE_STATIC);
        if (pathColumn) {
            path = graph.PathOf(id);
            sqlite3_bind_text(row, 6, path.data(), static_cast<int>(path.size()), SQLITE_STATIC);
        }
        Step(insert);
        ++id;
    }
}

void SqliteStore::InsertEdges(Graph const &graph) {
    Statement const insert = Prepare("INSERT INTO edges VALUES(?,?,?)");
    auto add = [&](Link const &link) {
        sqlite3_bind_int64(insert.get(), 1, link.source);
        sqlite3_bind_int64(insert.get(), 2, link.target);
        sqlite3_bind_int64(insert.get(), 3, link.type);
        Step(insert);
    };
    std::uint32_t id = DRIVE_ID;
    for (Object const &object : graph.objects)
        add({object.parent, id++, LINK_PARENT});
    for (Link const &link : graph.needs)
        add(link);
}

void SqliteStore::BeginReading(std::uint32_t highestId) {
    m_byPath = Prepare("SELECT id FROM nodes WHERE path=?");
    m_byName = Prepare("SELECT id FROM nodes WHERE parent=? AND name=?");
    m_out = Prepare("SELECT dst, type FROM edges WHERE src=?");
    m_in = Prepare("SELECT src, type FROM edges WHERE dst=?");
    m_closure = Prepare("WITH RECURSIVE reached(id) AS (SELECT dst FROM edges WHERE src=?"
                        " UNION SELECT dst FROM reached JOIN edges ON src=reached.id)"
                        " SELECT id FROM reached");
    m_visited = std::make_unique<VisitedSet>(highestId);
    Run("BEGIN");
}

std::uint32_t SqliteStore::Locate(std::string const &path) {
    if (m_pathBy == PathBy::Steps)
        return LocateBySteps(path);
    sqlite3_bind_text(m_byPath.get(), 1, path.data(), static_cast<int>(path.size()), SQLITE_STATIC);
    std::uint32_t const id = Step(m_byPath) ? Number(m_byPath.get(), 0) : 0;
    sqlite3_reset(m_byPath.get());
    return id;
}

std::uint32_t SqliteStore::LocateBySteps(std::string const &path) {
    std::uint32_t id = ROOT_ID;
    bool const found = ForEachPart(path, [&](char const *part, std::size_t size) {
        sqlite3_bind_int64(m_byName.get(), 1, id);
        sqlite3_bind_text(m_byName.get(), 2, part, static_cast<int>(size), SQLITE_STATIC);
        bool const exists = Step(m_byName);
        if (exists)
            id = Number(m_byName.get(), 0);
        sqlite3_reset(m_byName.get());
        return exists;
    });
    return found ? id : 0;
}

Answer SqliteStore::Closure(std::uint32_t start) {
    return m_closureBy == ClosureBy::Recursion ? Recurse(start) : Walk(start);
}

Answer SqliteStore::Recurse(std::uint32_t start) {
    Answer answer;
    sqlite3_bind_int64(m_closure.get(), 1, start);
    while (Step(m_closure))
        answer.Add(Number(m_closure.get(), 0));
    return answer;
}

Answer SqliteStore::Walk(std::uint32_t start) {
    return WalkClosure(start, *m_visited, m_open, [&](std::uint32_t id, auto found) {
        sqlite3_bind_int64(m_out.get(), 1, id);
        while (Step(m_out))
            found(Number(m_out.get(), 0));
    });
}

Answer SqliteStore::Links(std::uint32_t object) {
    Answer answer;
    sqlite3_bind_int64(m_out.get(), 1, object);
    while (Step(m_out))
        answer.Add(LinkDigest(Number(m_out.get(), 0), Number(m_out.get(), 1), false));
    sqlite3_bind_int64(m_in.get(), 1, object);
    while (Step(m_in))
        answer.Add(LinkDigest(Number(m_in.get(), 0), Number(m_in.get(), 1), true));
    return answer;
}

} // namespace bench

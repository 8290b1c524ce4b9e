// SQLite: a table of nodes, a table of edges, and for each question the form in which
// SQLite answers it fastest.
#pragma once

#include <memory>

#include "Graph.h"
#include "Store.h"

struct sqlite3;
struct sqlite3_stmt;

namespace bench {

class SqliteStore : public Store {
public:
    enum class PathBy { Steps, Column };      // part by part, or by an indexed whole path
    enum class ClosureBy { Recursion, Walk }; // one recursive query, or a query a node

    // `file` names the database file, or is ":memory:".
    explicit SqliteStore(std::string const &file);
    ~SqliteStore() override;

    // Creates and fills the tables in one transaction, indexes last, and commits it
    // durably; a file's commit stays in its WAL. The path column is made only if asked.
    void Build(Graph const &graph, bool pathColumn);
    void Checkpoint(); // moves the WAL into the file

    void Use(PathBy by) { m_pathBy = by; }
    void Use(ClosureBy by) { m_closureBy = by; }
    // Prepares the statements and opens the one read transaction that they run in.
    void BeginReading(std::uint32_t highestId);

    std::uint32_t Locate(std::string const &path) override;
    Answer Closure(std::uint32_t start) override;
    Answer Links(std::uint32_t object) override;

private:
    struct Finalizer {
        void operator()(sqlite3_stmt *statement) const;
    };
    using Statement = std::unique_ptr<sqlite3_stmt, Finalizer>;

    void Run(char const *sql);
    Statement Prepare(char const *sql);
    bool Step(Statement const &statement);
    void InsertNodes(Graph const &graph, bool pathColumn);
    void InsertEdges(Graph const &graph);
    std::uint32_t LocateBySteps(std::string const &path);
    Answer Recurse(std::uint32_t start);
    Answer Walk(std::uint32_t start);

    sqlite3 *m_database = nullptr;
    PathBy m_pathBy = PathBy::Steps;
    ClosureBy m_closureBy = ClosureBy::Recursion;
    Statement m_byPath;
    Statement m_byName;
    Statement m_out;
    Statement m_in;
    Statement m_closure;
    std::unique_ptr<VisitedSet> m_visited;
    std::vector<std::uint32_t> m_open;
};

} // namespace bench

// Keys and values by the registry class, and by what it stands on, used directly. Every call
// is a transaction of its own on both sides.
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <platform/settings.h>
#include <sqlite3.h>
#include <UtilsRegistry.h>

#include "Contest.h"
#include "System.h"

namespace bench {
namespace {

using UTILS::UtilsRegistry;
using UTILS::UtilsString;
using Names = std::vector<std::string>;

constexpr char const *DIRECT = "SQLite";
constexpr double MOST = 2;
constexpr char const *ABOVE = "Software\\Benchmark";

// Names in an order that isn't the registry's.
Names KeyNames(std::uint32_t count) {
    Names names;
    for (std::uint32_t i = 0; i < count; ++i)
        names.push_back("Key " + std::to_string(i * 2654435761U));
    return names;
}

std::string Temporary() { return std::filesystem::temp_directory_path().string(); }

// The registry in a store of its own.
class OwnRegistry {
public:
    explicit OwnRegistry(Names const &names) : m_names(names) {
        platform::Settings settings = platform::CurrentSettings();
        settings.registryDirectory = m_folder.Path() + "/registry";
        platform::ApplySettings(settings);
        Expect(m_registry.RegCreateKeyA(("HKCU\\" + std::string(ABOVE)).c_str(), 0), "create");
    }

    void Create() {
        for (std::string const &name : m_names)
            Expect(m_registry.RegCreateSubKey(name.c_str(), 0), "create");
    }
    void Set() {
        for (std::string const &name : m_names) {
            Open(name);
            Expect(m_registry.RegSetValueA("Value", name.c_str()), "set");
        }
    }
    std::size_t Read() {
        std::size_t size = 0;
        UtilsString value;
        for (std::string const &name : m_names) {
            Open(name);
            Expect(m_registry.RegQueryValueA("Value", value), "read");
            size += value.size();
        }
        return size;
    }
    std::size_t Enumerate() {
        std::size_t size = 0;
        UtilsString name;
        Expect(m_registry.RegOpenKeyA(ABOVE), "open");
        for (unsigned long i = 0; m_registry.RegEnumKeyA(i, name, 0); ++i)
            size += name.size();
        return size;
    }
    void Delete() {
        for (std::string const &name : m_names) {
            Open(name);
            Expect(m_registry.RegDeleteKeyA(0), "delete");
        }
    }

private:
    void Open(std::string const &name) {
        Expect(m_registry.RegOpenKeyA((std::string(ABOVE) + "\\" + name).c_str()), "open");
    }

    TemporaryFolder m_folder{Temporary()};
    Names const &m_names;
    UtilsRegistry m_registry{"HKCU", 0, 0};
};

class Statement {
public:
    Statement(sqlite3 *database, char const *sql) {
        Expect(sqlite3_prepare_v2(database, sql, -1, &m_statement, nullptr) == SQLITE_OK, sql);
    }
    ~Statement() { sqlite3_finalize(m_statement); }
    Statement(Statement const &) = delete;
    Statement &operator=(Statement const &) = delete;

    void Bind(int place, std::int64_t number) { sqlite3_bind_int64(m_statement, place, number); }
    void Bind(int place, std::string const &text) {
        sqlite3_bind_text(m_statement, place, text.c_str(), static_cast<int>(text.size()),
                          SQLITE_STATIC);
    }
    bool Step() { return sqlite3_step(m_statement) == SQLITE_ROW; }
    std::int64_t Number() const { return sqlite3_column_int64(m_statement, 0); }
    std::string Text() const {
        return reinterpret_cast<char const *>(sqlite3_column_text(m_statement, 0));
    }
    void Reset() { sqlite3_reset(m_statement); }

private:
    sqlite3_stmt *m_statement = nullptr;
};

// The same keys and values in two tables, by the statements that one would write for them.
class Tables {
public:
    explicit Tables(Names const &names) : m_names(names) {}

    void Create() {
        for (std::string const &name : m_names) {
            m_insertKey.Bind(1, name);
            m_insertKey.Step();
            m_insertKey.Reset();
        }
    }
    void Set() {
        for (std::string const &name : m_names) {
            m_insertValue.Bind(1, Find(name));
            m_insertValue.Bind(2, name);
            m_insertValue.Step();
            m_insertValue.Reset();
        }
    }
    std::size_t Read() {
        std::size_t size = 0;
        for (std::string const &name : m_names) {
            m_readValue.Bind(1, Find(name));
            Expect(m_readValue.Step(), "read");
            size += m_readValue.Text().size();
            m_readValue.Reset();
        }
        return size;
    }
    std::size_t Enumerate() {
        std::size_t size = 0;
        for (std::string name;; size += name.size()) {
            m_next.Bind(1, name);
            bool const found = m_next.Step();
            std::string const next = found ? m_next.Text() : "";
            m_next.Reset();
            if (!found)
                return size;
            name = next;
        }
    }
    void Delete() {
        for (std::string const &name : m_names) {
            std::int64_t const id = Find(name);
            Run(m_begin);
            m_deleteValues.Bind(1, id);
            Run(m_deleteValues);
            m_deleteKey.Bind(1, id);
            Run(m_deleteKey);
            Run(m_commit);
        }
    }

private:
    struct Close {
        void operator()(sqlite3 *database) const { sqlite3_close(database); }
    };
    using Database = std::unique_ptr<sqlite3, Close>;

    static Database Open(std::string const &file) {
        sqlite3 *database = nullptr;
        Expect(sqlite3_open(file.c_str(), &database) == SQLITE_OK, "a database");
        Expect(sqlite3_exec(database,
                            "PRAGMA journal_mode=WAL; PRAGMA synchronous=NORMAL;"
                            "CREATE TABLE keys(id INTEGER PRIMARY KEY, parent INTEGER NOT NULL, "
                            "name TEXT NOT NULL COLLATE NOCASE, UNIQUE(parent, name));"
                            "CREATE TABLE vals(key INTEGER NOT NULL, name TEXT NOT NULL COLLATE "
                            "NOCASE, type INTEGER NOT NULL, data BLOB NOT NULL, "
                            "PRIMARY KEY(key, name)) WITHOUT ROWID;"
                            "INSERT INTO keys VALUES(1, 0, 'HKCU'), (2, 1, 'Software'), "
                            "(3, 2, 'Benchmark');",
                            nullptr, nullptr, nullptr) == SQLITE_OK,
               "tables");
        return Database(database);
    }
    static void Run(Statement &statement) {
        statement.Step();
        statement.Reset();
    }
    std::int64_t FindBelow(std::int64_t parent, std::string const &name) {
        m_find.Bind(1, parent);
        m_find.Bind(2, name);
        Expect(m_find.Step(), "find");
        std::int64_t const id = m_find.Number();
        m_find.Reset();
        return id;
    }
    // By the whole path from the user's root, as the registry is asked.
    std::int64_t Find(std::string const &name) {
        return FindBelow(FindBelow(FindBelow(1, "Software"), "Benchmark"), name);
    }

    TemporaryFolder m_folder{Temporary()};
    Names const &m_names;
    Database m_database = Open(m_folder.Path() + "/tables.db");
    Statement m_begin{m_database.get(), "BEGIN IMMEDIATE"};
    Statement m_commit{m_database.get(), "COMMIT"};
    Statement m_find{m_database.get(), "SELECT id FROM keys WHERE parent=?1 AND name=?2"};
    Statement m_insertKey{m_database.get(), "INSERT INTO keys(parent, name) VALUES(3, ?1)"};
    Statement m_insertValue{m_database.get(),
                            "INSERT OR REPLACE INTO vals VALUES(?1, 'Value', 1, ?2)"};
    Statement m_readValue{m_database.get(), "SELECT data FROM vals WHERE key=?1 AND name='Value'"};
    Statement m_next{m_database.get(), "SELECT name FROM keys WHERE parent=3 AND name>?1 "
                                       "ORDER BY name LIMIT 1"};
    Statement m_deleteValues{m_database.get(), "DELETE FROM vals WHERE key=?1"};
    Statement m_deleteKey{m_database.get(), "DELETE FROM keys WHERE id=?1"};
};

// Work on a registry in the state that it is to begin with.
template <class Subject, class Ready, class Work>
Contender On(std::string const &name, std::shared_ptr<Names const> const &names, Ready ready,
             Work work, double target) {
    auto const make = [=] {
        auto subject = std::make_shared<Subject>(*names);
        ready(*subject);
        return subject;
    };
    return {name, RepeatedOn(make, work), Against::Limit, target};
}

template <class Ready, class Work> Contest Between(std::string const &workload,
                                                   std::shared_ptr<Names const> const &names,
                                                   Ready ready, Work work) {
    Contest contest{workload, static_cast<std::uint32_t>(names->size()), {}};
    contest.contenders.push_back(On<OwnRegistry>("", names, ready, work, 0));
    contest.contenders.push_back(On<Tables>(DIRECT, names, ready, work, MOST));
    return contest;
}

} // namespace

std::vector<Contest> RegistryContests(std::uint32_t keys) {
    auto const names = std::make_shared<Names const>(KeyNames(keys));
    std::size_t all = 0;
    for (std::string const &name : *names)
        all += name.size();
    auto const none = [](auto &) {};
    auto const made = [](auto &registry) { registry.Create(); };
    auto const filled = [](auto &registry) {
        registry.Create();
        registry.Set();
    };
    return {
        Between("Create keys", names, none, [](auto &registry) { registry.Create(); }),
        Between("Set a value of each", names, made, [](auto &registry) { registry.Set(); }),
        Between("Read them", names, filled,
                [all](auto &registry) { Expect(registry.Read() == all, "values"); }),
        Between("Enumerate the keys", names, made,
                [all](auto &registry) { Expect(registry.Enumerate() == all, "names"); }),
        Between("Delete them", names, filled, [](auto &registry) { registry.Delete(); }),
    };
}

} // namespace bench

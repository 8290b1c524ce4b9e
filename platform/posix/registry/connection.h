// One connection to the store's file: its opening, its making, its statements.
#pragma once

#include "platform/posix/registry/codes.h"

#include <sqlite3.h>
#include <string>
#include <string_view>

namespace platform::registry {

enum class Sql {
    Begin,
    BeginReading,
    Commit,
    Rollback,
    FindKey,
    KeyState,
    ReserveIds,
    AddKey,
    NoteChange,
    AnySubkey,
    DeleteKey,
    DeleteValues,
    NextKey,
    NextValue,
    ReadValue,
    SetValue,
    DeleteValue,
    Count
};

class Connection {
public:
    explicit Connection(std::string directory);
    ~Connection();
    Connection(Connection const &) = delete;
    Connection &operator=(Connection const &) = delete;

    // Without a store the first is noStore, and the second makes one.
    Code OpenToRead();
    Code OpenToWrite();

    sqlite3_stmt *Prepare(Sql sql, Code &code);
    // The code for what a call to SQLite answered.
    Code CodeOf(int result) const;
    bool IsOpen() const { return m_database != nullptr; }
    bool InTransaction() const { return m_database && !sqlite3_get_autocommit(m_database); }
    int Changes() const { return sqlite3_changes(m_database); }
    std::uint64_t Steps() const { return m_steps; }
    void CountStep() { ++m_steps; }

    static constexpr Code noStore = 0xffffffff;

private:
    std::string File() const { return m_directory + "/store.db"; }
    Code Connect();
    Code ConnectTo(std::string const &name, int flags);
    Code Check();
    Code MakeStore();
    Code Fill(std::string const &file);
    void Close();

    std::string m_directory;
    sqlite3 *m_database = nullptr;
    bool m_readOnly = false;
    sqlite3_stmt *m_statements[static_cast<std::size_t>(Sql::Count)] = {};
    std::uint64_t m_steps = 0;
};

// One use of a statement: afterwards it is as new.
class Statement {
public:
    Statement(Connection &connection, Sql sql)
        : m_connection(connection), m_statement(connection.Prepare(sql, m_code)) {}
    ~Statement();
    Statement(Statement const &) = delete;
    Statement &operator=(Statement const &) = delete;

    // By position, from 1. What is bound has to stay until the statement goes.
    Statement &Bind(int place, std::int64_t number);
    Statement &Bind(int place, std::string_view bytes);
    Statement &Bind(int place, std::u16string_view text);

    // True for a row; otherwise Result tells whether it ended or failed.
    bool Step();
    Code Result() const { return m_code; }

    std::int64_t Number(int column) const { return sqlite3_column_int64(m_statement, column); }
    std::string_view Bytes(int column) const;
    std::u16string_view Text(int column) const;

private:
    void Note(int result) {
        if (m_code == success && result != SQLITE_OK)
            m_code = m_connection.CodeOf(result);
    }

    Connection &m_connection;
    Code m_code = success;
    sqlite3_stmt *m_statement;
};

} // namespace platform::registry

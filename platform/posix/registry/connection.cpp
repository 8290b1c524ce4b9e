#include "platform/posix/registry/connection.h"

#include "platform/posix/registry/sql.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <iterator>
#include <sys/stat.h>
#include <unistd.h>

namespace platform::registry {
namespace {

constexpr int waitMilliseconds = 60000;

bool Exists(std::string const &path) {
    struct stat entry {};
    return stat(path.c_str(), &entry) == 0 || errno != ENOENT;
}

// Makes a directory and those above it; 0 or errno.
int MakeDirectories(std::string const &directory) {
    for (std::size_t end = 0; end < directory.size();) {
        end = std::min(directory.find('/', end + 1), directory.size());
        if (mkdir(directory.substr(0, end).c_str(), 0777) != 0 && errno != EEXIST)
            return errno;
    }
    return 0;
}

Code CodeOfHost(int error) {
    switch (error) {
    case EACCES:
    case EPERM:
    case EROFS:
        return accessDenied;
    case ENOMEM:
        return noMemory;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
        return diskFull;
    case EIO:
        return inputOutput;
    default:
        return cantOpen;
    }
}

// A file's name for SQLite, which reads it as it stands from a disk that nobody writes to.
std::string AsUnchanging(std::string const &file) {
    constexpr const char *digits = "0123456789ABCDEF";
    std::string name = "file:";
    for (char const c : file) {
        auto const byte = static_cast<unsigned char>(c);
        name += {'%', digits[byte >> 4], digits[byte & 15]};
    }
    return name + "?immutable=1";
}

} // namespace

Connection::Connection(std::string directory) : m_directory(std::move(directory)) {}

Connection::~Connection() { Close(); }

void Connection::Close() {
    for (auto &statement : m_statements) {
        sqlite3_finalize(statement);
        statement = nullptr;
    }
    sqlite3_close(m_database);
    m_database = nullptr;
}

Code Connection::OpenToRead() {
    if (m_database)
        return success;
    return !m_directory.empty() && Exists(File()) ? Connect() : noStore;
}

Code Connection::OpenToWrite() {
    if (m_directory.empty())
        return cantOpen;
    if (!m_database && !Exists(File())) {
        Code const code = MakeStore();
        if (code != success)
            return code;
    }
    Code const code = OpenToRead();
    return code == success && m_readOnly ? accessDenied : code;
}

Code Connection::Connect() {
    std::string const file = File();
    struct stat entry {};
    if (stat(file.c_str(), &entry) != 0)
        return CodeOfHost(errno);
    if (!S_ISREG(entry.st_mode))
        return corrupt;
    Code code = ConnectTo(file, SQLITE_OPEN_READWRITE);
    // There may be no right to make what beside the file belongs to it.
    if (code == cantOpen || code == accessDenied)
        code = ConnectTo(AsUnchanging(file), SQLITE_OPEN_READONLY | SQLITE_OPEN_URI);
    return code;
}

Code Connection::ConnectTo(std::string const &name, int flags) {
    int const result =
        sqlite3_open_v2(name.c_str(), &m_database, flags | SQLITE_OPEN_NOMUTEX, nullptr);
    Code code = CodeOf(result);
    if (code == success) {
        sqlite3_extended_result_codes(m_database, 1);
        sqlite3_busy_timeout(m_database, waitMilliseconds);
        sqlite3_db_config(m_database, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
        sqlite3_db_config(m_database, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
        m_readOnly = sqlite3_db_readonly(m_database, "main") == 1;
        code = Check();
    }
    if (code != success)
        Close();
    return code;
}

namespace {

// The first column of the first row; false if there is none, and the code tells why.
bool Ask(sqlite3 *database, const char *sql, std::int64_t &number, int &result) {
    sqlite3_stmt *statement = nullptr;
    result = sqlite3_prepare_v2(database, sql, -1, &statement, nullptr);
    if (result == SQLITE_OK && (result = sqlite3_step(statement)) == SQLITE_ROW)
        number = sqlite3_column_int64(statement, 0);
    sqlite3_finalize(statement);
    return result == SQLITE_ROW;
}

// Whether the file's tables are those of a store and there is nothing else in it.
bool HasSchema(sqlite3 *database, int &result) {
    sqlite3_stmt *statement = nullptr;
    result = sqlite3_prepare_v2(
        database, "SELECT sql FROM sqlite_schema WHERE sql IS NOT NULL ORDER BY rowid", -1,
        &statement, nullptr);
    bool same = true;
    std::size_t count = 0;
    while (result == SQLITE_OK && same && (result = sqlite3_step(statement)) == SQLITE_ROW) {
        auto const *const text = reinterpret_cast<const char *>(sqlite3_column_text(statement, 0));
        same = count < std::size(schema) && text && std::string_view(text) == schema[count];
        ++count;
        result = SQLITE_OK;
    }
    sqlite3_finalize(statement);
    return same && count == std::size(schema);
}

} // namespace

Code Connection::Check() {
    int result = SQLITE_OK;
    std::int64_t id = 0;
    std::int64_t version = 0;
    if (!Ask(m_database, "PRAGMA application_id", id, result) ||
        !Ask(m_database, "PRAGMA user_version", version, result))
        return result == SQLITE_DONE ? corrupt : CodeOf(result);
    if (id != applicationId || version != storeVersion)
        return corrupt;
    bool const same = HasSchema(m_database, result);
    if (result != SQLITE_OK && result != SQLITE_DONE)
        return CodeOf(result);
    if (!same)
        return corrupt;
    return CodeOf(sqlite3_exec(m_database, "PRAGMA synchronous=NORMAL; PRAGMA cell_size_check=ON",
                               nullptr, nullptr, nullptr));
}

// The store comes into its place whole, and the first who makes it wins.
Code Connection::MakeStore() {
    if (int const error = MakeDirectories(m_directory))
        return CodeOfHost(error);
    std::string name;
    int file = -1;
    for (unsigned number = 0; file < 0; ++number) {
        name = m_directory + "/new." + std::to_string(getpid()) + '.' + std::to_string(number);
        file = open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (file < 0 && errno != EEXIST)
            return CodeOfHost(errno);
    }
    Code code = Fill(name);
    if (code == success && fsync(file) != 0)
        code = CodeOfHost(errno);
    close(file);
    if (code == success && link(name.c_str(), File().c_str()) != 0 && errno != EEXIST)
        code = rename(name.c_str(), File().c_str()) == 0 ? success : CodeOfHost(errno);
    unlink(name.c_str());
    for (const char *const behind : {"-journal", "-wal", "-shm"})
        unlink((name + behind).c_str());
    return code;
}

Code Connection::Fill(std::string const &file) {
    sqlite3 *database = nullptr;
    int result = sqlite3_open_v2(file.c_str(), &database, SQLITE_OPEN_READWRITE, nullptr);
    auto const run = [&](const char *sql) {
        if (result == SQLITE_OK)
            result = sqlite3_exec(database, sql, nullptr, nullptr, nullptr);
    };
    for (const char *const sql : beginnings)
        run(sql);
    for (const char *const sql : schema)
        run(sql);
    for (const char *const sql : endings)
        run(sql);
    std::swap(m_database, database);
    Code code = CodeOf(result);
    std::swap(m_database, database);
    int const closed = sqlite3_close(database);
    return code == success ? CodeOf(closed) : code;
}

sqlite3_stmt *Connection::Prepare(Sql sql, Code &code) {
    auto const number = static_cast<std::size_t>(sql);
    if (!m_statements[number])
        code = CodeOf(sqlite3_prepare_v3(m_database, texts[number], -1, SQLITE_PREPARE_PERSISTENT,
                                         &m_statements[number], nullptr));
    return m_statements[number];
}

namespace {

// Whether the last that failed on the store's file or its log was for want of room.
bool FailedForRoom(sqlite3 *database) {
    if (!database)
        return false;
    for (int const which : {SQLITE_FCNTL_FILE_POINTER, SQLITE_FCNTL_JOURNAL_POINTER}) {
        sqlite3_file *file = nullptr;
        int error = 0;
        if (sqlite3_file_control(database, "main", which, &file) == SQLITE_OK && file &&
            file->pMethods &&
            file->pMethods->xFileControl(file, SQLITE_FCNTL_LAST_ERRNO, &error) == SQLITE_OK &&
            CodeOfHost(error) == diskFull)
            return true;
    }
    return false;
}

} // namespace

Code Connection::CodeOf(int result) const {
    switch (result & 0xff) {
    case SQLITE_OK:
        return success;
    case SQLITE_NOMEM:
    case SQLITE_TOOBIG:
        return noMemory;
    case SQLITE_PERM:
    case SQLITE_AUTH:
    case SQLITE_READONLY:
        return accessDenied;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return busy;
    case SQLITE_FULL:
        return diskFull;
    case SQLITE_CANTOPEN:
        return cantOpen;
    case SQLITE_IOERR:
        return result == SQLITE_IOERR_NOMEM                                ? noMemory
               : result == SQLITE_IOERR_WRITE && FailedForRoom(m_database) ? diskFull
                                                                           : inputOutput;
    default:
        return corrupt;
    }
}

Statement::~Statement() {
    if (!m_statement)
        return;
    sqlite3_reset(m_statement);
    sqlite3_clear_bindings(m_statement);
}

Statement &Statement::Bind(int place, std::int64_t number) {
    if (m_statement)
        Note(sqlite3_bind_int64(m_statement, place, number));
    return *this;
}

Statement &Statement::Bind(int place, std::string_view bytes) {
    // A null address would be no bytes at all.
    if (m_statement)
        Note(sqlite3_bind_blob64(m_statement, place, bytes.empty() ? "" : bytes.data(),
                                 bytes.size(), SQLITE_STATIC));
    return *this;
}

Statement &Statement::Bind(int place, std::u16string_view text) {
    if (m_statement)
        Note(sqlite3_bind_text64(m_statement, place,
                                 text.empty() ? "" : reinterpret_cast<const char *>(text.data()),
                                 text.size() * 2, SQLITE_STATIC, SQLITE_UTF16));
    return *this;
}

bool Statement::Step() {
    if (m_code != success || !m_statement)
        return false;
    m_connection.CountStep();
    int const result = sqlite3_step(m_statement);
    if (result != SQLITE_ROW && result != SQLITE_DONE)
        Note(result);
    return result == SQLITE_ROW;
}

std::string_view Statement::Bytes(int column) const {
    auto const *const bytes = static_cast<const char *>(sqlite3_column_blob(m_statement, column));
    auto const size = static_cast<std::size_t>(sqlite3_column_bytes(m_statement, column));
    return bytes ? std::string_view(bytes, size) : std::string_view();
}

std::u16string_view Statement::Text(int column) const {
    auto const *const text =
        static_cast<const char16_t *>(sqlite3_column_text16(m_statement, column));
    auto const size = static_cast<std::size_t>(sqlite3_column_bytes16(m_statement, column)) / 2;
    return text ? std::u16string_view(text, size) : std::u16string_view();
}

} // namespace platform::registry

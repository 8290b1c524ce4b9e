// The folder of a database: one writer at a time, and whether a file is another one now.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace qvlink {

struct LockFailure {
    bool held = false;        // another process has it; false: the file can't be made or locked
    unsigned long holder = 0; // the id of that process, 0 if it can't be told
    std::string why;          // what the system says
};

// The right to write the database in a folder, held until this goes or the process ends.
// Stands on a lock of the file "linkdb.lock" there, which stays.
class WriterLock {
public:
    // Null if it can't be had, as `failure` then says.
    static std::unique_ptr<WriterLock> Take(std::string const &folder, LockFailure &failure);
    ~WriterLock();
    WriterLock(WriterLock const &) = delete;
    WriterLock &operator=(WriterLock const &) = delete;

private:
    struct State;
    explicit WriterLock(std::unique_ptr<State> state);
    std::unique_ptr<State> m_state;
};

// Makes a folder and those above it where they are missing. False, and `why` says what
// was wrong.
bool MakeFolders(std::string const &path, std::string &why);

// What tells a file from one that took its place, or from itself before a change.
struct FileIdentity {
    std::uint64_t volume = 0;
    std::uint64_t number = 0;
    std::uint64_t size = 0;
    std::uint64_t time = 0;
};
inline bool operator==(FileIdentity const &a, FileIdentity const &b) {
    return a.volume == b.volume && a.number == b.number && a.size == b.size && a.time == b.time;
}
// Nothing if there is no such file.
std::optional<FileIdentity> IdentityOf(std::string const &path);

} // namespace qvlink

// What an open file's share mode of 0 means to others: whoever has a file so, has it for
// himself. It holds between processes, and rests on flock: an exclusive lock for a share
// mode of 0, a shared one for all others.
#pragma once

#include <string>

namespace platform {

// Locks an open file, without waiting; false if someone has it in a way that forbids it.
// A file system that has no locks forbids nothing.
bool LockFile(int descriptor, bool exclusive);

// True if the path still leads to the open file, and not to one that took its place
// between opening and locking.
bool StillNames(std::string const &hostPath, int descriptor);

// Keeps a file from being opened exclusively while its name is changed. If the file can't
// be opened for that, it is left as it is.
class NameChange {
public:
    explicit NameChange(std::string const &hostPath);
    ~NameChange();
    NameChange(NameChange const &) = delete;
    NameChange &operator=(NameChange const &) = delete;

    // False if someone has the file for himself.
    bool Allowed() const { return m_allowed; }

private:
    int m_descriptor = -1;
    bool m_allowed = true;
};

} // namespace platform

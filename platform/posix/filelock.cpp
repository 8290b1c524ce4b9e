#include "platform/posix/filelock.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace platform {

bool LockFile(int descriptor, bool exclusive) {
    return flock(descriptor, (exclusive ? LOCK_EX : LOCK_SH) | LOCK_NB) == 0 ||
           errno != EWOULDBLOCK;
}

bool StillNames(std::string const &hostPath, int descriptor) {
    struct stat named {};
    struct stat opened {};
    return fstat(descriptor, &opened) == 0 && stat(hostPath.c_str(), &named) == 0 &&
           named.st_dev == opened.st_dev && named.st_ino == opened.st_ino;
}

NameChange::NameChange(std::string const &hostPath) {
    constexpr int patience = 100;
    for (int tries = 0; tries < patience; ++tries) {
        m_descriptor =
            open(hostPath.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK | O_NOFOLLOW);
        if (m_descriptor < 0)
            return;
        m_allowed = LockFile(m_descriptor, false);
        if (!m_allowed || StillNames(hostPath, m_descriptor))
            return;
        close(std::exchange(m_descriptor, -1));
    }
}

NameChange::~NameChange() {
    if (m_descriptor >= 0)
        close(m_descriptor);
}

} // namespace platform

#include "platform/posix/attributes.h"
#include "platform/posix/errors.h"
#include "platform/posix/filelock.h"
#include "platform/posix/paths.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

DWORD AttributesOf(unsigned mode) {
    DWORD const attributes = (S_ISDIR(mode) ? FILE_ATTRIBUTE_DIRECTORY : 0) |
                             ((mode & S_IWUSR) == 0 ? FILE_ATTRIBUTE_READONLY : 0);
    return attributes ? attributes : FILE_ATTRIBUTE_NORMAL;
}

namespace {

// The attributes behind a path, in a form that a missing entry has too: 0.
DWORD AttributesAt(std::string const &hostPath) {
    struct stat entry {};
    return stat(hostPath.c_str(), &entry) == 0 ? AttributesOf(entry.st_mode) : 0;
}

// The names in a folder reach the disk. A file system that can't sync a folder has
// nothing to wait for.
bool SyncFolder(std::string const &folder) {
    int const descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return false;
    bool const synced = fsync(descriptor) == 0 || errno == EINVAL || errno == ENOTSUP;
    int const error = errno;
    close(descriptor);
    errno = error;
    return synced;
}

// Renames where nothing may be replaced. Not every file system can refuse by itself.
int RenameToFree(std::string const &from, std::string const &to) {
    int const result = renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE);
    struct stat target {};
    if (result == 0 || (errno != EINVAL && errno != ENOSYS) || lstat(to.c_str(), &target) == 0)
        return result;
    return rename(from.c_str(), to.c_str());
}

// What can't give way to another file: a folder, a read-only file, and anything to a folder.
bool CanBeReplaced(DWORD source, DWORD target) {
    constexpr DWORD keeping = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY;
    return target == 0 || ((source & FILE_ATTRIBUTE_DIRECTORY) == 0 && (target & keeping) == 0);
}

BOOL MoveName(std::string const &from, std::string const &to, bool replace) {
    DWORD const source = AttributesAt(from);
    if (replace && from != to && !CanBeReplaced(source, AttributesAt(to)))
        return Fail(ERROR_ACCESS_DENIED);
    NameChange const leaving(from);
    if (!leaving.Allowed())
        return Fail(ERROR_SHARING_VIOLATION);
    NameChange const replaced(to);
    if (replace && !replaced.Allowed())
        return Fail(ERROR_ACCESS_DENIED);
    if ((replace ? rename(from.c_str(), to.c_str()) : RenameToFree(from, to)) == 0)
        return TRUE;
    return Fail(FailedOn(source ? to : from, errno, Operation::Move));
}

BOOL MoveFile(std::string const &from, std::string const &to, DWORD flags) {
    if (!MoveName(from, to, (flags & MOVEFILE_REPLACE_EXISTING) != 0))
        return FALSE;
    if ((flags & MOVEFILE_WRITE_THROUGH) == 0)
        return TRUE;
    std::string const source = ParentOf(from);
    std::string const target = ParentOf(to);
    if (!SyncFolder(target) || (source != target && !SyncFolder(source)))
        return Fail(CodeOf(errno, Operation::Move));
    return TRUE;
}

BOOL SetAttributes(std::string const &hostPath, DWORD attributes) {
    constexpr DWORD known =
        FILE_ATTRIBUTE_NORMAL | FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY;
    struct stat entry {};
    if (stat(hostPath.c_str(), &entry) != 0)
        return Fail(FailedOn(hostPath, errno, Operation::Attributes));
    if ((attributes & ~known) != 0)
        return Fail(ERROR_NOT_SUPPORTED);
    if (attributes & FILE_ATTRIBUTE_DIRECTORY && !S_ISDIR(entry.st_mode))
        return Fail(ERROR_INVALID_PARAMETER);
    constexpr mode_t allWrites = S_IWUSR | S_IWGRP | S_IWOTH;
    mode_t const rights = entry.st_mode & 07777;
    bool const readOnly = (attributes & FILE_ATTRIBUTE_READONLY) != 0;
    if (readOnly == ((rights & S_IWUSR) == 0))
        return TRUE;
    if (chmod(hostPath.c_str(), readOnly ? rights & ~allWrites : rights | S_IWUSR) != 0)
        return Fail(FailedOn(hostPath, errno, Operation::Attributes));
    return TRUE;
}

BOOL Delete(std::string const &hostPath) {
    struct stat entry {};
    if (lstat(hostPath.c_str(), &entry) != 0)
        return Fail(FailedOn(hostPath, errno, Operation::Delete));
    bool const isLink = S_ISLNK(entry.st_mode);
    if (!isLink && AttributesOf(entry.st_mode) != FILE_ATTRIBUTE_NORMAL)
        return Fail(ERROR_ACCESS_DENIED);
    NameChange const change(hostPath);
    if (!change.Allowed())
        return Fail(ERROR_SHARING_VIOLATION);
    if (unlink(hostPath.c_str()) != 0)
        return Fail(FailedOn(hostPath, errno, Operation::Delete));
    return TRUE;
}

} // namespace
} // namespace platform

namespace win::host {

DWORD GetFileAttributesA(const char *path) {
    return platform::OutOfMemoryAs(DWORD{INVALID_FILE_ATTRIBUTES}, [=] {
        std::string hostPath;
        struct stat entry {};
        if (!platform::HostPath(path, hostPath))
            return INVALID_FILE_ATTRIBUTES;
        if (stat(hostPath.c_str(), &entry) == 0)
            return platform::AttributesOf(entry.st_mode);
        platform::Fail(platform::FailedOn(hostPath, errno, platform::Operation::Attributes));
        return INVALID_FILE_ATTRIBUTES;
    });
}

BOOL SetFileAttributesA(const char *path, DWORD attributes) {
    return platform::OutOfMemoryAs(FALSE, [=] {
        std::string hostPath;
        return platform::HostPath(path, hostPath) ? platform::SetAttributes(hostPath, attributes)
                                                  : FALSE;
    });
}

BOOL DeleteFileA(const char *path) {
    return platform::OutOfMemoryAs(FALSE, [=] {
        std::string hostPath;
        return platform::HostPath(path, hostPath) ? platform::Delete(hostPath) : FALSE;
    });
}

BOOL MoveFileExA(const char *from, const char *to, DWORD flags) {
    return platform::OutOfMemoryAs(FALSE, [=] {
        constexpr DWORD known = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
        if ((flags & ~known) != 0)
            return platform::Fail(ERROR_NOT_SUPPORTED);
        std::string hostFrom;
        std::string hostTo;
        return platform::HostPath(from, hostFrom) && platform::HostPath(to, hostTo)
                   ? platform::MoveFile(hostFrom, hostTo, flags)
                   : FALSE;
    });
}

} // namespace win::host

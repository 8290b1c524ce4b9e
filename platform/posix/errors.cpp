#include "platform/posix/errors.h"

#include "platform/posix/paths.h"

#include <cerrno>
#include <sys/stat.h>

namespace platform {
namespace {

thread_local DWORD lastError = 0;

struct Row {
    int hostError;
    DWORD code;
};

// What holds for every operation, unless the operation's own table says otherwise.
constexpr Row commonRows[] = {
    {ENOENT, ERROR_FILE_NOT_FOUND},
    {ENOTDIR, ERROR_PATH_NOT_FOUND},
    {EACCES, ERROR_ACCESS_DENIED},
    {EPERM, ERROR_ACCESS_DENIED},
    {EISDIR, ERROR_ACCESS_DENIED},
    {EROFS, ERROR_WRITE_PROTECT},
    {EEXIST, ERROR_ALREADY_EXISTS},
    {ENOTEMPTY, ERROR_DIR_NOT_EMPTY},
    {ENAMETOOLONG, ERROR_FILENAME_EXCED_RANGE},
    {EILSEQ, ERROR_INVALID_NAME},
    {ELOOP, ERROR_CANT_RESOLVE_FILENAME},
    {EXDEV, ERROR_NOT_SAME_DEVICE},
    {EBUSY, ERROR_SHARING_VIOLATION},
    {ETXTBSY, ERROR_SHARING_VIOLATION},
    {EWOULDBLOCK, ERROR_SHARING_VIOLATION},
    {ENOSPC, ERROR_DISK_FULL},
    {EDQUOT, ERROR_DISK_FULL},
    {EFBIG, ERROR_FILE_TOO_LARGE},
    {EMFILE, ERROR_TOO_MANY_OPEN_FILES},
    {ENFILE, ERROR_TOO_MANY_OPEN_FILES},
    {ENOMEM, ERROR_NOT_ENOUGH_MEMORY},
    {EBADF, ERROR_INVALID_HANDLE},
    {EINVAL, ERROR_INVALID_PARAMETER},
    {EFAULT, ERROR_NOACCESS},
    {EIO, ERROR_IO_DEVICE},
};
constexpr Row openRows[] = {{EEXIST, ERROR_FILE_EXISTS}};
constexpr Row seekRows[] = {{EINVAL, ERROR_NEGATIVE_SEEK}, {ESPIPE, ERROR_SEEK_ON_DEVICE}};

template <std::size_t count> DWORD Find(Row const (&rows)[count], int hostError) {
    for (Row const &row : rows)
        if (row.hostError == hostError)
            return row.code;
    return ERROR_SUCCESS;
}

} // namespace

DWORD CodeOf(int hostError, Operation operation) {
    DWORD own = ERROR_SUCCESS;
    if (operation == Operation::Open)
        own = Find(openRows, hostError);
    else if (operation == Operation::Seek)
        own = Find(seekRows, hostError);
    if (own != ERROR_SUCCESS)
        return own;
    DWORD const common = Find(commonRows, hostError);
    return common != ERROR_SUCCESS ? common : ERROR_GEN_FAILURE;
}

DWORD FailedOn(std::string const &hostPath, int hostError, Operation operation) {
    struct stat parent {};
    if (hostError == ENOENT && stat(ParentOf(hostPath).c_str(), &parent) != 0)
        return ERROR_PATH_NOT_FOUND;
    return CodeOf(hostError, operation);
}

BOOL Fail(DWORD code) {
    win::SetLastError(code);
    return FALSE;
}

} // namespace platform

namespace win::host {

DWORD GetLastError() { return platform::lastError; }

void SetLastError(DWORD code) { platform::lastError = code; }

} // namespace win::host

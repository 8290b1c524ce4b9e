#include "platform/posix/errors.h"
#include "platform/posix/filelock.h"
#include "platform/posix/handles.h"
#include "platform/posix/paths.h"
#include "platform/winapi.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace platform {
namespace {

constexpr DWORD knownAccess = GENERIC_READ | GENERIC_WRITE;
constexpr DWORD knownFlags =
    FILE_ATTRIBUTE_NORMAL | FILE_ATTRIBUTE_READONLY | FILE_FLAG_SEQUENTIAL_SCAN;

struct OpenRequest {
    DWORD access;
    DWORD share;
    DWORD disposition;
    DWORD flags;
};

BOOL CanServe(OpenRequest const &request, SECURITY_ATTRIBUTES *security, HANDLE pattern) {
    bool const access = request.access != 0 && (request.access & ~knownAccess) == 0;
    bool const disposition = request.disposition == CREATE_NEW ||
                             request.disposition == CREATE_ALWAYS ||
                             request.disposition == OPEN_EXISTING;
    if (access && disposition && (request.flags & ~knownFlags) == 0 && !security && !pattern)
        return TRUE;
    return Fail(ERROR_NOT_SUPPORTED);
}

int OpenMode(DWORD access) {
    int const direction = access == knownAccess    ? O_RDWR
                          : access == GENERIC_READ ? O_RDONLY
                                                   : O_WRONLY;
    // Without O_NONBLOCK a pipe that lies where a file is looked for would hold us up.
    return direction | O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
}

// An open and locked file of the host; it closes what isn't given to a handle.
class HostFile {
public:
    HostFile(std::string const &path, OpenRequest const &request)
        : m_path(path), m_request(request) {
        // What lost its name to another file while it was being opened isn't what was
        // asked for, and must not be written to.
        constexpr int patience = 100;
        for (int tries = 0; tries < patience && m_descriptor < 0 && m_code == ERROR_SUCCESS;
             ++tries)
            Try();
        if (m_descriptor < 0 && m_code == ERROR_SUCCESS)
            m_code = ERROR_SHARING_VIOLATION;
    }
    ~HostFile() { Close(); }
    HostFile(HostFile const &) = delete;
    HostFile &operator=(HostFile const &) = delete;

    int Descriptor() const { return m_descriptor; }
    DWORD Code() const { return m_code; } // why there is no descriptor
    bool Created() const { return m_created; }
    int Give() { return std::exchange(m_descriptor, -1); }

private:
    void Close() {
        if (m_descriptor >= 0)
            close(std::exchange(m_descriptor, -1));
    }

    void Refuse(DWORD code) {
        m_code = code;
        Close();
    }

    void Open() {
        int const mode = OpenMode(m_request.access);
        mode_t const rights = m_request.flags & FILE_ATTRIBUTE_READONLY ? 0444 : 0666;
        if (m_request.disposition == OPEN_EXISTING) {
            m_descriptor = open(m_path.c_str(), mode);
            return;
        }
        m_descriptor = open(m_path.c_str(), mode | O_CREAT | O_EXCL, rights);
        m_created = m_descriptor >= 0;
        if (!m_created && errno == EEXIST && m_request.disposition == CREATE_ALWAYS)
            m_descriptor = open(m_path.c_str(), mode | O_CREAT, rights);
    }

    void Try() {
        Open();
        struct stat opened {};
        bool const writes = (m_request.access & GENERIC_WRITE) != 0;
        if (m_descriptor < 0 || fstat(m_descriptor, &opened) != 0)
            return Refuse(FailedOn(m_path, errno, Operation::Open));
        bool const readOnly = !m_created && (opened.st_mode & S_IWUSR) == 0;
        if (S_ISDIR(opened.st_mode) || (readOnly && writes))
            return Refuse(ERROR_ACCESS_DENIED);
        if (!LockFile(m_descriptor, m_request.share == 0))
            return Refuse(ERROR_SHARING_VIOLATION);
        if (writes && !StillNames(m_path, m_descriptor))
            Close();
    }

    std::string const &m_path;
    OpenRequest const &m_request;
    int m_descriptor = -1;
    bool m_created = false;
    DWORD m_code = ERROR_SUCCESS;
};

HANDLE OpenFile(std::string const &path, OpenRequest const &request) {
    HostFile file(path, request);
    bool const replaced = request.disposition == CREATE_ALWAYS && !file.Created();
    DWORD code = file.Code();
    // Emptied only under its lock, so that a file that someone else is writing isn't. A
    // pipe or device has nothing to empty.
    if (code == ERROR_SUCCESS && replaced && ftruncate(file.Descriptor(), 0) != 0 &&
        errno != EINVAL)
        code = CodeOf(errno, Operation::Open);
    Slot *const slot = code == ERROR_SUCCESS ? TakeSlot() : nullptr;
    if (!slot) {
        Fail(code == ERROR_SUCCESS ? ERROR_NOT_ENOUGH_MEMORY : code);
        return INVALID_HANDLE_VALUE;
    }
    if (request.flags & FILE_FLAG_SEQUENTIAL_SCAN)
        posix_fadvise(file.Descriptor(), 0, 0, POSIX_FADV_SEQUENTIAL);
    slot->descriptor = file.Give();
    slot->access = request.access;
    win::SetLastError(replaced ? ERROR_ALREADY_EXISTS : ERROR_SUCCESS);
    return Publish(slot, Kind::File, 0);
}

// Reads or writes until all is done, nothing more comes, or it fails.
template <class Step> BOOL Transfer(DWORD size, DWORD *done, Step step) {
    *done = 0;
    while (*done < size) {
        ssize_t const moved = step(*done, size - *done);
        if (moved < 0 && errno == EINTR)
            continue;
        if (moved < 0)
            return Fail(CodeOf(errno, Operation::Transfer));
        if (moved == 0)
            break;
        *done += static_cast<DWORD>(moved);
    }
    return TRUE;
}

BOOL CanTransfer(DWORD const *done, OVERLAPPED const *overlapped) {
    if (done && !overlapped)
        return TRUE;
    return Fail(overlapped ? ERROR_NOT_SUPPORTED : ERROR_INVALID_PARAMETER);
}

} // namespace
} // namespace platform

namespace win::host {

HANDLE CreateFileA(const char *path, DWORD access, DWORD share, SECURITY_ATTRIBUTES *security,
                   DWORD disposition, DWORD flagsAndAttributes, HANDLE patternFile) {
    platform::OpenRequest const request{access, share, disposition, flagsAndAttributes};
    return platform::OutOfMemoryAs(HANDLE{INVALID_HANDLE_VALUE}, [&] {
        std::string hostPath;
        if (!platform::CanServe(request, security, patternFile) ||
            !platform::HostPath(path, hostPath))
            return HANDLE{INVALID_HANDLE_VALUE};
        return platform::OpenFile(hostPath, request);
    });
}

BOOL ReadFile(HANDLE file, void *buffer, DWORD size, DWORD *read, OVERLAPPED *overlapped) {
    if (!platform::CanTransfer(read, overlapped))
        return FALSE;
    platform::FileUse const use(file, GENERIC_READ);
    return use && platform::Transfer(size, read, [&](DWORD done, DWORD left) {
               return ::read(use.Descriptor(), static_cast<char *>(buffer) + done, left);
           });
}

BOOL WriteFile(HANDLE file, const void *buffer, DWORD size, DWORD *written,
               OVERLAPPED *overlapped) {
    if (!platform::CanTransfer(written, overlapped))
        return FALSE;
    platform::FileUse const use(file, GENERIC_WRITE);
    return use && platform::Transfer(size, written, [&](DWORD done, DWORD left) {
               return ::write(use.Descriptor(), static_cast<const char *>(buffer) + done, left);
           });
}

BOOL SetFilePointerEx(HANDLE file, LARGE_INTEGER distance, LARGE_INTEGER *position, DWORD origin) {
    platform::FileUse const use(file, 0);
    if (!use)
        return FALSE;
    if (origin > FILE_END)
        return platform::Fail(ERROR_INVALID_PARAMETER);
    static_assert(FILE_BEGIN == SEEK_SET && FILE_CURRENT == SEEK_CUR && FILE_END == SEEK_END);
    off_t const reached = lseek(use.Descriptor(), distance.QuadPart, static_cast<int>(origin));
    if (reached < 0)
        return platform::Fail(platform::CodeOf(errno, platform::Operation::Seek));
    if (position)
        position->QuadPart = reached;
    return TRUE;
}

BOOL GetFileSizeEx(HANDLE file, LARGE_INTEGER *size) {
    platform::FileUse const use(file, 0);
    struct stat opened {};
    if (!use)
        return FALSE;
    if (fstat(use.Descriptor(), &opened) != 0)
        return platform::Fail(platform::CodeOf(errno, platform::Operation::Attributes));
    size->QuadPart = opened.st_size;
    return TRUE;
}

BOOL FlushFileBuffers(HANDLE file) {
    platform::FileUse const use(file, GENERIC_WRITE);
    if (!use)
        return FALSE;
    if (fsync(use.Descriptor()) != 0)
        return platform::Fail(platform::CodeOf(errno, platform::Operation::Transfer));
    return TRUE;
}

} // namespace win::host

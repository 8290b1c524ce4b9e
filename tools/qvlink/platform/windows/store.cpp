#include "platform/store.h"

#include <windows.h>

#include "platform/windows/text.h"

namespace qvlink {
namespace {

// A lock bars others from the bytes it covers, so it covers one behind the holder's id.
constexpr DWORD LOCKED_BYTE = 0x40000000;

struct HandleClose {
    using pointer = HANDLE;
    void operator()(HANDLE handle) const { ::CloseHandle(handle); }
};
using FileHandle = std::unique_ptr<void, HandleClose>;

FileHandle Open(std::string const &path, DWORD access, DWORD disposition) {
    HANDLE const file = ::CreateFileW(LongPath(path).c_str(), access,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                      nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
    return FileHandle(file == INVALID_HANDLE_VALUE ? nullptr : file);
}

bool Lock(HANDLE file) {
    OVERLAPPED place{};
    place.Offset = LOCKED_BYTE;
    return ::LockFileEx(file, LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &place);
}

} // namespace

struct WriterLock::State {
    FileHandle file;
};

WriterLock::WriterLock(std::unique_ptr<State> state) : m_state(std::move(state)) {}
WriterLock::~WriterLock() = default;

std::unique_ptr<WriterLock> WriterLock::Take(std::string const &folder, LockFailure &failure) {
    FileHandle file = Open(folder + "\\linkdb.lock", GENERIC_READ | GENERIC_WRITE, OPEN_ALWAYS);
    if (!file) {
        failure = {false, 0, LastErrorText()};
        return nullptr;
    }
    DWORD id = 0;
    DWORD size = 0;
    if (!Lock(file.get())) {
        failure = {::GetLastError() == ERROR_LOCK_VIOLATION || ::GetLastError() == ERROR_IO_PENDING,
                   0, LastErrorText()};
        if (::ReadFile(file.get(), &id, sizeof id, &size, nullptr) && size == sizeof id) {
            failure.holder = id;
        }
        return nullptr;
    }
    id = ::GetCurrentProcessId();
    ::WriteFile(file.get(), &id, sizeof id, &size, nullptr);
    return std::unique_ptr<WriterLock>(
        new WriterLock(std::make_unique<State>(State{std::move(file)})));
}

bool MakeFolders(std::string const &path, std::string &why) {
    for (std::size_t end = path.find_first_of("\\/"); end != std::string::npos;) {
        end = path.find_first_of("\\/", end + 1);
        std::wstring const folder = LongPath(path.substr(0, end));
        DWORD const attributes = ::GetFileAttributesW(folder.c_str());
        bool const stands =
            attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
        if (!stands && !::CreateDirectoryW(folder.c_str(), nullptr)) {
            why = LastErrorText();
            return false;
        }
    }
    return true;
}

std::optional<FileIdentity> IdentityOf(std::string const &path) {
    FileHandle const file = Open(path, FILE_READ_ATTRIBUTES, OPEN_EXISTING);
    BY_HANDLE_FILE_INFORMATION info;
    if (!file || !::GetFileInformationByHandle(file.get(), &info)) {
        return std::nullopt;
    }
    auto const join = [](DWORD high, DWORD low) { return std::uint64_t{high} << 32 | low; };
    return FileIdentity{
        info.dwVolumeSerialNumber, join(info.nFileIndexHigh, info.nFileIndexLow),
        join(info.nFileSizeHigh, info.nFileSizeLow),
        join(info.ftLastWriteTime.dwHighDateTime, info.ftLastWriteTime.dwLowDateTime)};
}

} // namespace qvlink

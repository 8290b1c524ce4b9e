// Searches for files.
#include "platform/posix/attributes.h"
#include "platform/posix/errors.h"
#include "platform/posix/filetime.h"
#include "platform/posix/handles.h"
#include "platform/posix/paths.h"
#include "platform/posix/wildcards.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <utility>
#include <vector>

namespace platform {

// What a search still has to tell: names of a folder in the order in which they come. An
// entry is looked at only when it is told.
struct Search {
    std::string folder;
    std::vector<std::string> names;
    std::size_t next = 0;
};

namespace {

struct MaskText {
    std::string folder; // with its separator; "C:" for a drive's current directory
    std::string name;
};

MaskText Split(std::string const &mask) {
    std::size_t start = mask.find_last_of("\\/") + 1;
    if (start == 0 && mask.size() > 1 && IsLetter(mask[0]) && mask[1] == ':')
        start = 2;
    return {mask.substr(0, start), mask.substr(start)};
}

bool IsDots(std::string const &name) { return name == "." || name == ".."; }

// The root of a drive, or of the host.
bool IsRoot(std::string const &folder) {
    std::string const resolved = RealPath(folder);
    std::string const told = DrivePath(resolved);
    return resolved == "/" || (told.size() == 3 && told[1] == ':');
}

// Why a folder can't be searched, or ERROR_SUCCESS.
DWORD FolderCode(std::string const &folder) {
    struct stat entry {};
    if (stat(folder.c_str(), &entry) == 0)
        return S_ISDIR(entry.st_mode) ? ERROR_SUCCESS : ERROR_DIRECTORY;
    return errno == ENOENT ? ERROR_PATH_NOT_FOUND : CodeOf(errno, Operation::Attributes);
}

// Names come as a Windows disk keeps them, in the order of their capitals; the folder
// itself and its parent go first.
bool ComesBefore(std::string const &left, std::string const &right) {
    if (IsDots(left) != IsDots(right))
        return IsDots(left);
    auto const upper = [](char c) {
        return static_cast<unsigned char>(c >= 'a' && c <= 'z' ? c - ('a' - 'A') : c);
    };
    auto const [one, other] =
        std::mismatch(left.begin(), left.end(), right.begin(), right.end(),
                      [upper](char a, char b) { return upper(a) == upper(b); });
    if (one == left.end() && other == right.end())
        return left < right;
    return one == left.end() || (other != right.end() && upper(*one) < upper(*other));
}

DWORD ReadNames(NameMask const &mask, Search &search) {
    std::unique_ptr<DIR, int (*)(DIR *)> const directory(opendir(search.folder.c_str()), closedir);
    if (!directory)
        return CodeOf(errno, Operation::Attributes);
    bool const isRoot = IsRoot(search.folder);
    errno = 0;
    while (dirent const *entry = readdir(directory.get())) {
        std::string name = entry->d_name;
        if (!(isRoot && IsDots(name)) && mask.Matches(name))
            search.names.push_back(std::move(name));
        errno = 0;
    }
    if (errno != 0)
        return CodeOf(errno, Operation::Transfer);
    std::sort(search.names.begin(), search.names.end(), ComesBefore);
    return ERROR_SUCCESS;
}

// "." and ".." are told by the name that the folder has where it is; a root has none.
DWORD FindDots(std::string const &path, Search &search) {
    std::string const resolved = RealPath(path);
    if (resolved.empty())
        return CodeOf(errno, Operation::Attributes);
    if (IsRoot(resolved))
        return ERROR_FILE_NOT_FOUND;
    search.folder = ParentOf(resolved);
    search.names = {resolved.substr(resolved.rfind('/') + 1)};
    return ERROR_SUCCESS;
}

FILETIME TimeOf(statx_timestamp const &time) { return FileTime(time.tv_sec, time.tv_nsec); }

DWORD Tell(std::string const &hostPath, std::string const &name, WIN32_FIND_DATAA &data) {
    constexpr unsigned wanted = STATX_BASIC_STATS | STATX_BTIME;
    struct statx entry {};
    // There is no room for it, and a part of a name would be another file's.
    if (name.size() >= sizeof data.cFileName)
        return ERROR_FILENAME_EXCED_RANGE;
    if (statx(AT_FDCWD, hostPath.c_str(), 0, wanted, &entry) != 0)
        return FailedOn(hostPath, errno, Operation::Attributes);
    data = {};
    data.dwFileAttributes = AttributesOf(entry.stx_mode);
    data.ftLastAccessTime = TimeOf(entry.stx_atime);
    data.ftLastWriteTime = TimeOf(entry.stx_mtime);
    // Not every file system knows when it made a file.
    data.ftCreationTime = TimeOf(entry.stx_mask & STATX_BTIME ? entry.stx_btime : entry.stx_mtime);
    if (!S_ISDIR(entry.stx_mode)) {
        data.nFileSizeLow = static_cast<DWORD>(entry.stx_size & 0xffffffff);
        data.nFileSizeHigh = static_cast<DWORD>(entry.stx_size >> 32);
    }
    std::memcpy(data.cFileName, name.c_str(), name.size() + 1);
    return ERROR_SUCCESS;
}

// Tells the next entry that can be told. One that went meanwhile, and a link that leads
// nowhere, are passed over; the code of the last of them is the answer when none is left.
DWORD TellNext(Search &search, WIN32_FIND_DATAA &data) {
    DWORD code = ERROR_FILE_NOT_FOUND;
    while (search.next < search.names.size()) {
        std::string const &name = search.names[search.next++];
        code = Tell(Joined(search.folder, name), name, data);
        if (code == ERROR_SUCCESS)
            break;
    }
    return code;
}

// Nothing is asked that a name that is there doesn't need.
DWORD FindName(std::string const &folder, std::string const &name, bool asItStands,
               Search &search) {
    std::string const path = asItStands ? Joined(folder, name) : FindEntry(folder, name);
    search.folder = folder;
    search.names = {path.substr(path.rfind('/') + 1)};
    return ERROR_SUCCESS;
}

// No name has these, and no mask either; on the host they may be anywhere.
bool IsForbidden(std::string const &name) {
    return std::any_of(name.begin(), name.end(), [](char c) {
        return static_cast<unsigned char>(c) < ' ' || c == ':' || c == '|';
    });
}

DWORD FillSearch(MaskText const &mask, Search &search) {
    bool const ofHost = mask.folder[0] == '/';
    std::string folder;
    if (!HostPath(mask.folder.empty() ? "." : mask.folder.c_str(), folder))
        return win::GetLastError();
    bool const wild = NameMask::HasWildcards(mask.name);
    if (!wild && !IsDots(mask.name) && (ofHost || !IsForbidden(mask.name)))
        return FindName(folder, mask.name, ofHost, search);
    if (DWORD const code = FolderCode(folder))
        return code;
    if (!ofHost && IsForbidden(mask.name))
        return ERROR_INVALID_NAME;
    // The search goes on where it began, whatever becomes of the current directory.
    search.folder = RealPath(folder);
    if (search.folder.empty())
        return CodeOf(errno, Operation::Attributes);
    return wild ? ReadNames(NameMask(mask.name), search)
                : FindDots(Joined(search.folder, mask.name), search);
}

DWORD Begin(const char *text, Search &search, WIN32_FIND_DATAA &data) {
    if (!text || !*text)
        return ERROR_PATH_NOT_FOUND;
    MaskText const mask = Split(text);
    if (mask.name.empty())
        return ERROR_FILE_NOT_FOUND;
    if (DWORD const code = FillSearch(mask, search))
        return code;
    DWORD const code = TellNext(search, data);
    DWORD const ofFolder = code == ERROR_SUCCESS ? code : FolderCode(search.folder);
    return ofFolder == ERROR_SUCCESS ? code : ofFolder;
}

} // namespace

void DropSearch(Slot &slot) { delete std::exchange(slot.search, nullptr); }

bool CloseSearch(Slot *slot, std::uint64_t generation) {
    std::uint64_t identity = Identity(Kind::Search, generation);
    if (!slot->state.compare_exchange_strong(identity, Identity(Kind::Free, generation + 1),
                                             std::memory_order_acq_rel))
        return false;
    DropSearch(*slot);
    GiveBack(slot);
    return true;
}

} // namespace platform

namespace win::host {

HANDLE FindFirstFileA(const char *mask, WIN32_FIND_DATAA *data) {
    return platform::OutOfMemoryAs(HANDLE{INVALID_HANDLE_VALUE}, [=] {
        auto search = std::make_unique<platform::Search>();
        DWORD const code = platform::Begin(mask, *search, *data);
        platform::Slot *const slot = code == ERROR_SUCCESS ? platform::TakeSlot() : nullptr;
        if (!slot) {
            platform::Fail(code == ERROR_SUCCESS ? ERROR_NOT_ENOUGH_MEMORY : code);
            return HANDLE{INVALID_HANDLE_VALUE};
        }
        slot->search = search.release();
        return platform::Publish(slot, platform::Kind::Search, 0);
    });
}

BOOL FindClose(HANDLE search) {
    platform::Slot *const slot = platform::FindSlot(search);
    if (slot && platform::CloseSearch(slot, platform::GenerationOf(search)))
        return TRUE;
    return platform::Fail(ERROR_INVALID_HANDLE);
}

} // namespace win::host

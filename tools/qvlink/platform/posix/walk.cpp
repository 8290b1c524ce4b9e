#include "platform/walk.h"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include "model.h"
#include "platform/posix/file.h"
#include "readers/elf_reader.h"
#include "readers/pe_reader.h"

namespace qvlink {
namespace {

constexpr std::int64_t TICKS_PER_SECOND = 10000000;
constexpr std::int64_t SECONDS_1601_TO_1970 = 11644473600;
constexpr off_t SHORTEST_PROGRAM = 4;

std::uint64_t FileTime(timespec const &time) {
    std::int64_t const seconds = time.tv_sec + SECONDS_1601_TO_1970;
    return seconds < 0
               ? 0
               : static_cast<std::uint64_t>(seconds * TICKS_PER_SECOND + time.tv_nsec / 100);
}

std::uint32_t Attributes(mode_t mode) {
    std::uint32_t attributes = mode & (S_IWUSR | S_IWGRP | S_IWOTH) ? 0 : ATTRIBUTE_READONLY;
    if (S_ISDIR(mode)) {
        attributes |= ATTRIBUTE_DIRECTORY;
    } else if (S_ISLNK(mode)) {
        attributes |= ATTRIBUTE_REPARSE_POINT;
    } else if (!S_ISREG(mode)) {
        attributes |= ATTRIBUTE_DEVICE;
    }
    return attributes ? attributes : ATTRIBUTE_NORMAL;
}

FileData Describe(struct stat const &status) {
    FileData data{};
    std::uint64_t const size = S_ISREG(status.st_mode) || S_ISLNK(status.st_mode)
                                   ? static_cast<std::uint64_t>(status.st_size)
                                   : 0;
    std::uint64_t const time = FileTime(status.st_mtim);
    data.dwSizeLow = static_cast<std::uint32_t>(size);
    data.dwSizeHigh = static_cast<std::uint32_t>(size >> 32);
    data.dwTimeLow = static_cast<std::uint32_t>(time);
    data.dwTimeHigh = static_cast<std::uint32_t>(time >> 32);
    data.dwAttributes = Attributes(status.st_mode);
    return data;
}

// Whether the kernel makes up the files of this file system as they are asked for.
bool IsKernelsOwn(int descriptor) {
    struct statfs status {};
    if (::fstatfs(descriptor, &status) != 0) {
        return false;
    }
    switch (static_cast<std::uint32_t>(status.f_type)) {
    case PROC_SUPER_MAGIC:
    case SYSFS_MAGIC:
    case DEVPTS_SUPER_MAGIC:
    case CGROUP_SUPER_MAGIC:
    case CGROUP2_SUPER_MAGIC:
    case DEBUGFS_MAGIC:
    case TRACEFS_MAGIC:
    case SECURITYFS_MAGIC:
    case BPF_FS_MAGIC:
    case PSTOREFS_MAGIC:
        return true;
    default:
        return false;
    }
}

} // namespace

struct Folder::State {
    std::unique_ptr<DIR, int (*)(DIR *)> stream;
    int Descriptor() const { return ::dirfd(stream.get()); }
};

Folder::Folder(std::unique_ptr<State> state) : m_state(std::move(state)) {}
Folder::~Folder() = default;

std::unique_ptr<Folder> Folder::Open(std::string const &path, std::string &why) {
    int const descriptor = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    DIR *const stream = descriptor < 0 ? nullptr : ::fdopendir(descriptor);
    if (!stream) {
        why = std::strerror(errno);
        if (descriptor >= 0) {
            ::close(descriptor);
        }
        return nullptr;
    }
    return std::unique_ptr<Folder>(
        new Folder(std::make_unique<State>(State{{stream, ::closedir}})));
}

bool Folder::List(std::vector<Entry> &entries, std::string &why) const {
    if (IsKernelsOwn(m_state->Descriptor())) {
        return true;
    }
    ::rewinddir(m_state->stream.get());
    for (;;) {
        errno = 0;
        const dirent *const found = ::readdir(m_state->stream.get());
        if (!found) {
            why = std::strerror(errno);
            return errno == 0;
        }
        std::string const name = found->d_name;
        if (name == "." || name == "..") {
            continue;
        }
        Entry entry;
        Presence const presence = Look(name, entry);
        if (presence == Presence::present) {
            entries.push_back(std::move(entry));
        } else if (presence == Presence::unknown) {
            why = std::strerror(errno);
            return false;
        }
    }
}

Presence Folder::Look(std::string const &name, Entry &entry) const {
    struct stat status {};
    if (::fstatat(m_state->Descriptor(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
        return errno == ENOENT ? Presence::absent : Presence::unknown;
    }
    entry.name = name;
    entry.data = Describe(status);
    return Presence::present;
}

bool Folder::ReadProgram(std::string const &name, Program &program, std::string &why) const {
    // Not to wait for a writer, should the file have become a pipe meanwhile.
    DescriptorGuard const file(::openat(m_state->Descriptor(), name.c_str(),
                                        O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!file) {
        why = std::strerror(errno);
        return false;
    }
    char start[SHORTEST_PROGRAM];
    ssize_t const count = ::pread(file.Get(), start, sizeof start, 0);
    if (count < 0) {
        why = std::strerror(errno);
        return false;
    }
    if (count == SHORTEST_PROGRAM && start[0] == '\x7f' && start[1] == 'E') {
        program = ReadElfFile(file.Get());
    } else if (count == SHORTEST_PROGRAM && start[0] == 'M' && start[1] == 'Z') {
        FileSource source(file.Get());
        program = ReadPe(source);
    } else {
        program = {};
    }
    return true;
}

std::optional<std::string> Folder::ReadLink(std::string const &name) const {
    char text[PATH_MAX];
    ssize_t const size = ::readlinkat(m_state->Descriptor(), name.c_str(), text, sizeof text);
    if (size <= 0 || size == sizeof text) {
        return std::nullopt;
    }
    return std::string(text, static_cast<std::size_t>(size));
}

int CompareNames(const char *a, const char *b) { return std::strcmp(a, b); }

std::optional<std::string> CanonicalPath(std::string const &path, Presence &presence) {
    std::unique_ptr<char, void (*)(void *)> const text(::realpath(path.c_str(), nullptr),
                                                       std::free);
    if (!text) {
        presence = errno == ENOENT || errno == ENOTDIR ? Presence::absent : Presence::unknown;
        return std::nullopt;
    }
    presence = Presence::present;
    return text.get();
}

SplitPath SplitLastName(std::string const &path) {
    std::size_t const slash = path.rfind('/');
    if (slash == std::string::npos) {
        return {".", path};
    }
    return {slash == 0 ? "/" : path.substr(0, slash), path.substr(slash + 1)};
}

std::string JoinPath(std::string const &folder, std::string const &name) {
    return (folder == "/" ? folder : folder + '/') + name;
}

bool IsAbsolutePath(std::string const &path) { return !path.empty() && path.front() == '/'; }

} // namespace qvlink

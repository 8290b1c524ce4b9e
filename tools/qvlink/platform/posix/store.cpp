#include "platform/store.h"

#include <cerrno>
#include <charconv>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>

#include "platform/posix/file.h"

namespace qvlink {
namespace {

// Who holds the lock wrote its id into the file.
unsigned long ReadHolder(int descriptor) {
    char text[32];
    ssize_t const size = ::pread(descriptor, text, sizeof text, 0);
    unsigned long holder = 0;
    if (size > 0) {
        std::from_chars(text, text + size, holder);
    }
    return holder;
}

void WriteHolder(int descriptor) {
    std::string const text = std::to_string(::getpid()) + '\n';
    if (::ftruncate(descriptor, 0) == 0) {
        // Only a message suffers if this fails.
        [[maybe_unused]] ssize_t const written = ::pwrite(descriptor, text.data(), text.size(), 0);
    }
}

} // namespace

struct WriterLock::State {
    DescriptorGuard descriptor;
};

WriterLock::WriterLock(std::unique_ptr<State> state) : m_state(std::move(state)) {}
WriterLock::~WriterLock() = default;

std::unique_ptr<WriterLock> WriterLock::Take(std::string const &folder, LockFailure &failure) {
    std::string const path = folder + "/linkdb.lock";
    DescriptorGuard descriptor(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644));
    if (!descriptor) {
        failure = {false, 0, std::strerror(errno)};
        return nullptr;
    }
    if (::flock(descriptor.Get(), LOCK_EX | LOCK_NB) != 0) {
        failure = {errno == EWOULDBLOCK, ReadHolder(descriptor.Get()), std::strerror(errno)};
        return nullptr;
    }
    WriteHolder(descriptor.Get());
    return std::unique_ptr<WriterLock>(
        new WriterLock(std::make_unique<State>(State{std::move(descriptor)})));
}

bool MakeFolders(std::string const &path, std::string &why) {
    for (std::size_t end = 0; end != std::string::npos;) {
        end = path.find('/', end + 1);
        std::string const folder = path.substr(0, end);
        struct stat status {};
        bool const stands = ::stat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
        if (!stands && ::mkdir(folder.c_str(), 0777) != 0 && errno != EEXIST) {
            why = std::strerror(errno);
            return false;
        }
    }
    return true;
}

std::optional<FileIdentity> IdentityOf(std::string const &path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) {
        return std::nullopt;
    }
    return FileIdentity{status.st_dev, status.st_ino, static_cast<std::uint64_t>(status.st_size),
                        static_cast<std::uint64_t>(status.st_mtim.tv_sec) * 1000000000u +
                            static_cast<std::uint64_t>(status.st_mtim.tv_nsec)};
}

} // namespace qvlink

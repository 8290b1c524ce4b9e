#include "platform/whole_file.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <memory>

#include "platform/posix/file.h"

namespace qvlink {
namespace {

constexpr std::size_t MOST_AT_ONCE = std::size_t{1} << 30;

bool WriteAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        ssize_t const count =
            ::write(descriptor, bytes.data(), std::min(bytes.size(), MOST_AT_ONCE));
        if (count < 0 && errno != EINTR) {
            return false;
        }
        bytes.remove_prefix(count > 0 ? static_cast<std::size_t>(count) : 0);
    }
    return true;
}

// The file that a path leads to, through links; the path itself if there is none yet.
std::string TargetOf(std::string const &path) {
    std::unique_ptr<char, void (*)(void *)> const target(::realpath(path.c_str(), nullptr),
                                                         std::free);
    return target ? target.get() : path;
}

bool WriteInPlace(std::string const &path, std::string_view bytes) {
    DescriptorGuard const file(::open(path.c_str(), O_WRONLY | O_CLOEXEC));
    return file && WriteAll(file.Get(), bytes);
}

bool WriteBeside(std::string const &path, mode_t mode, std::string_view bytes) {
    std::string const beside = path + '.' + std::to_string(::getpid()) + ".tmp";
    DescriptorGuard const file(
        ::open(beside.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode));
    if (!file) {
        return false;
    }
    if (WriteAll(file.Get(), bytes) && ::fsync(file.Get()) == 0 &&
        ::rename(beside.c_str(), path.c_str()) == 0) {
        return true;
    }
    int const error = errno;
    ::unlink(beside.c_str());
    errno = error;
    return false;
}

} // namespace

std::optional<std::string> ReadWholeFile(std::string const &path, std::string &why) {
    DescriptorGuard const file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    std::string bytes;
    char piece[65536];
    ssize_t count = file ? 1 : -1;
    while (count > 0) {
        count = ::read(file.Get(), piece, sizeof piece);
        bytes.append(piece, count > 0 ? static_cast<std::size_t>(count) : 0);
    }
    if (count < 0) {
        why = std::strerror(errno);
        return std::nullopt;
    }
    return bytes;
}

bool WriteWholeFile(std::string const &path, std::string_view bytes, std::string &why) {
    struct stat status {};
    bool const stands = ::stat(path.c_str(), &status) == 0;
    bool const done =
        stands && !S_ISREG(status.st_mode)
            ? WriteInPlace(path, bytes)
            : WriteBeside(TargetOf(path), stands ? status.st_mode & 0777 : 0666, bytes);
    if (!done) {
        why = std::strerror(errno);
    }
    return done;
}

} // namespace qvlink

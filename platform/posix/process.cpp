#include "platform/posix/errors.h"
#include "platform/posix/filetime.h"
#include "platform/winapi.h"

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace win::host {
namespace {

using platform::FileTime;

constexpr std::uint64_t unitsASecond = platform::fileTimeUnitsASecond;

std::string ReadSmallFile(const char *path) {
    char text[4096];
    int const file = open(path, O_RDONLY | O_CLOEXEC);
    ssize_t const got = file >= 0 ? read(file, text, sizeof text) : 0;
    if (file >= 0)
        close(file);
    return std::string(text, got > 0 ? static_cast<std::size_t>(got) : 0);
}

// FNV-1a, 64 bits.
std::uint64_t HashText(std::string const &text) {
    std::uint64_t hash = 14695981039346656037u;
    for (char const c : text)
        hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211u;
    return hash;
}

// Clock ticks from boot to the start of the process; false without /proc.
bool StartInTicks(std::uint64_t &ticks) {
    std::string const text = ReadSmallFile("/proc/self/stat");
    // The second field is the program's name in parentheses, which may hold anything; the
    // start is the twentieth field behind it.
    std::size_t at = text.rfind(')');
    for (int field = 0; field < 20 && at != std::string::npos; ++field)
        at = text.find(' ', at + 1);
    unsigned long long value = 0;
    if (at == std::string::npos || std::sscanf(text.c_str() + at, "%llu", &value) != 1)
        return false;
    ticks = value;
    return true;
}

// The start of the process as a FILETIME's count. The wall clock has no part in it, since
// it may be set while the process runs: time runs from a day that the boot's own id
// chooses, between 2000 and 2020. What is below a clock tick tells process namespaces
// apart, in which ids are given out independently.
bool CreationTime(std::uint64_t &time) {
    constexpr std::uint64_t secondsTo2000 = 12591158400;
    constexpr std::uint64_t twentyYears = 631152000;
    std::uint64_t ticks = 0;
    if (!StartInTicks(ticks))
        return false;
    auto const unitsATick = unitsASecond / static_cast<std::uint64_t>(sysconf(_SC_CLK_TCK));
    struct stat processes {};
    std::uint64_t const space =
        stat("/proc/self/ns/pid", &processes) == 0 ? processes.st_ino * 2654435761u : 0;
    std::uint64_t const boot = HashText(ReadSmallFile("/proc/sys/kernel/random/boot_id"));
    time = secondsTo2000 * unitsASecond + boot % (twentyYears * unitsASecond) + ticks * unitsATick +
           space % unitsATick;
    return true;
}

FILETIME Duration(timeval const &time) {
    return FileTime(static_cast<std::uint64_t>(time.tv_sec) * unitsASecond +
                    static_cast<std::uint64_t>(time.tv_usec) * 10);
}

} // namespace

DWORD GetCurrentProcessId() { return static_cast<DWORD>(getpid()); }

HANDLE GetCurrentProcess() { return INVALID_HANDLE_VALUE; }

BOOL GetProcessTimes(HANDLE process, FILETIME *creation, FILETIME *exit, FILETIME *kernel,
                     FILETIME *user) {
    return platform::OutOfMemoryAs(FALSE, [&] {
        rusage usage{};
        std::uint64_t created = 0;
        if (process != GetCurrentProcess())
            return platform::Fail(ERROR_INVALID_HANDLE);
        if (!creation || !exit || !kernel || !user)
            return platform::Fail(ERROR_NOACCESS);
        if (!CreationTime(created) || getrusage(RUSAGE_SELF, &usage) != 0)
            return platform::Fail(ERROR_GEN_FAILURE);
        *creation = FileTime(created);
        *exit = FileTime(std::uint64_t{0});
        *kernel = Duration(usage.ru_stime);
        *user = Duration(usage.ru_utime);
        return TRUE;
    });
}

} // namespace win::host

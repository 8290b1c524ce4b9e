#include "System.h"

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <thread>

#include <fcntl.h>
#include <lmdb.h>
#include <malloc.h>
#include <sqlite3.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/utsname.h>
#include <unistd.h>

namespace bench {
namespace {

[[noreturn]] void Fail(std::string const &what) { throw std::runtime_error(what); }

std::string FindLine(char const *file, std::string const &key) {
    std::ifstream in(file);
    for (std::string line; std::getline(in, line);)
        if (line.compare(0, key.size(), key) == 0)
            return line.substr(line.find_first_not_of(" \t:", key.size()));
    return "unknown";
}

// The type of the mounted file system with the longest mount point above `folder`.
std::string FileSystemOf(std::string const &folder) {
    std::ifstream in("/proc/self/mounts");
    std::string best;
    std::string type = "unknown";
    for (std::string line; std::getline(in, line);) {
        std::istringstream fields(line);
        std::string device;
        std::string point;
        std::string name;
        fields >> device >> point >> name;
        std::string const below = point == "/" ? point : point + "/";
        if ((folder + "/").compare(0, below.size(), below) == 0 && point.size() >= best.size()) {
            best = point;
            type = name;
        }
    }
    return type;
}

void WriteAll(int file, unsigned char const *bytes, std::size_t size) {
    while (size != 0) {
        ssize_t const written = write(file, bytes, size);
        if (written <= 0)
            Fail("can't write");
        bytes += written;
        size -= static_cast<std::size_t>(written);
    }
}

} // namespace

bool CountsProcessorTime() {
    char const *const clock = std::getenv("QVLINKDB_BENCH_CLOCK");
    return clock != nullptr && std::string(clock) == "cpu";
}

double Now() {
    static clockid_t const clock =
        CountsProcessorTime() ? CLOCK_PROCESS_CPUTIME_ID : CLOCK_MONOTONIC;
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

TemporaryFolder::TemporaryFolder(std::string const &parent) : m_path(parent + "/qvbench-XXXXXX") {
    if (mkdtemp(m_path.data()) == nullptr)
        Fail("can't make a folder in " + parent);
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

std::string TemporaryFolder::MakeEmpty(std::string const &name) const {
    std::string path = m_path + "/" + name;
    std::filesystem::remove_all(path);
    std::filesystem::create_directory(path);
    return path;
}

void SettleDisk() { sync(); }

std::vector<unsigned char> ReadWhole(std::string const &path) {
    std::vector<unsigned char> bytes(FileSize(path));
    std::ifstream in(path, std::ios::binary);
    in.read(reinterpret_cast<char *>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return bytes;
}

double SecondsToRead(std::string const &path) {
    std::size_t const size = FileSize(path);
    char *bytes = nullptr;
    double const seconds = Seconds([&] {
        int const file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
        void *const memory =
            mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (file < 0 || memory == MAP_FAILED)
            Fail("can't read " + path);
        bytes = static_cast<char *>(memory);
        for (std::size_t have = 0; have < size;) {
            ssize_t const got = read(file, bytes + have, size - have);
            if (got <= 0)
                Fail("can't read " + path);
            have += static_cast<std::size_t>(got);
        }
        close(file);
    });
    munmap(bytes, size);
    return seconds;
}

void ReplaceDurably(std::string const &path, std::vector<unsigned char> const &bytes) {
    std::string const temporary = path + ".tmp";
    int const file = open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (file < 0)
        Fail("can't create " + temporary);
    WriteAll(file, bytes.data(), bytes.size());
    if (fsync(file) != 0 || close(file) != 0 || rename(temporary.c_str(), path.c_str()) != 0)
        Fail("can't replace " + path);
    std::string const parent = std::filesystem::path(path).parent_path();
    int const folder = open(parent.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0 || fsync(folder) != 0 || close(folder) != 0)
        Fail("can't sync " + parent);
}

std::size_t FileSize(std::string const &path) { return std::filesystem::file_size(path); }

void ForgetPeak() {
    malloc_trim(0);
    std::ofstream("/proc/self/clear_refs") << 5;
}

Memory ProcessMemory() {
    malloc_trim(0);
    auto kilobytes = [](char const *key) {
        return std::strtoull(FindLine("/proc/self/status", key).c_str(), nullptr, 10) * 1024;
    };
    return {kilobytes("VmRSS"), kilobytes("VmHWM")};
}

std::size_t HeapBytes() {
    auto const heap = mallinfo2();
    return heap.uordblks + heap.hblkhd;
}

std::vector<double> RunSelf(std::vector<std::string> const &arguments) {
    std::string command = "'" + std::filesystem::read_symlink("/proc/self/exe").string() + "'";
    for (std::string const &argument : arguments)
        command += " '" + argument + "'";
    FILE *const pipe = popen(command.c_str(), "r");
    if (pipe == nullptr)
        Fail("can't run " + command);
    std::vector<double> numbers;
    for (double number = 0; std::fscanf(pipe, "%lf", &number) == 1;)
        numbers.push_back(number);
    if (pclose(pipe) != 0)
        Fail("failed: " + command);
    return numbers;
}

std::vector<std::string> Describe(std::string const &folder) {
    int major = 0;
    int minor = 0;
    int patch = 0;
    mdb_version(&major, &minor, &patch);
    utsname host{};
    uname(&host);
    double load = 0;
    getloadavg(&load, 1);
    std::string const fileSystem = FileSystemOf(std::filesystem::canonical(folder));
    std::ostringstream text;
    text << "QVLinkDB " QVLINKDB_VERSION ", " QVLINKDB_BUILD_TYPE ", g++ " __VERSION__
         << "\nSQLite " << sqlite3_libversion() << ", LMDB " << major << '.' << minor << '.'
         << patch << "\nCPU: " << FindLine("/proc/cpuinfo", "model name") << ", "
         << std::thread::hardware_concurrency() << " cores, "
         << FindLine("/proc/meminfo", "MemTotal") << "\nSystem: " << host.sysname << ' '
         << host.release << ", file system " << fileSystem << ", load at the start " << load;
#ifndef __OPTIMIZE__
    text << "\nWARNING: not an optimised build, the figures mean nothing";
#endif
    if (CountsProcessorTime())
        text << "\nWARNING: processor time, not elapsed time: waiting for the disk isn't counted";
    if (fileSystem == "tmpfs")
        text << "\nWARNING: nothing is durable on tmpfs, the figures for saving mean nothing";
    if (load > 0.7)
        text << "\nWARNING: the machine was busy at the start, expect noise";
    std::vector<std::string> lines;
    std::istringstream in(text.str());
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    return lines;
}

} // namespace bench

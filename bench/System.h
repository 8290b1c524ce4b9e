// What the benchmarks need of the system: time, folders, plain files, memory, processes.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace bench {

// Whether QVLINKDB_BENCH_CLOCK is "cpu".
bool CountsProcessorTime();
// Elapsed time, or then the processor time of this process.
double Now();

template <class Work> double Seconds(Work work) {
    double const begin = Now();
    work();
    return Now() - begin;
}

// A folder of its own below `parent`, which goes with all its contents.
class TemporaryFolder {
public:
    explicit TemporaryFolder(std::string const &parent);
    ~TemporaryFolder();
    TemporaryFolder(TemporaryFolder const &) = delete;
    TemporaryFolder &operator=(TemporaryFolder const &) = delete;

    std::string const &Path() const { return m_path; }
    std::string MakeEmpty(std::string const &name) const; // a folder in it, made anew

private:
    std::string m_path;
};

// Waits until nothing is left to be written, so that one measurement doesn't pay for
// what the one before it left behind.
void SettleDisk();

// The least that a program can do: the whole file into fresh memory by one reading pass;
// one buffer into a new file, synced, renamed over the old one, folder synced.
std::vector<unsigned char> ReadWhole(std::string const &path);
double SecondsToRead(std::string const &path);
void ReplaceDurably(std::string const &path, std::vector<unsigned char> const &bytes);
std::size_t FileSize(std::string const &path);

struct Memory {
    std::size_t resident; // bytes now
    std::size_t peak;     // bytes at most since the last ForgetPeak
};
void ForgetPeak();
Memory ProcessMemory();
// Bytes of the heap that are in use, with what the heap itself adds to each block.
std::size_t HeapBytes();

// Runs this program again with these arguments and returns the numbers that it prints.
std::vector<double> RunSelf(std::vector<std::string> const &arguments);

// Lines that say on what and with what was measured, with warnings where it won't do.
std::vector<std::string> Describe(std::string const &folder);

} // namespace bench

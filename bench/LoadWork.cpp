// What loading the library adds to a program that does nothing.
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Contest.h"
#include "System.h"

namespace bench {
namespace {

namespace fs = std::filesystem;

double Seconds(timeval const &time) {
    return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
}

double SecondsToRun(fs::path const &program) {
    std::string name = program.string();
    char *const arguments[] = {name.data(), nullptr};
    double const begin = Now();
    pid_t child = 0;
    int status = 1;
    rusage used{};
    Expect(posix_spawn(&child, name.c_str(), nullptr, nullptr, arguments, environ) == 0 &&
               wait4(child, &status, 0, &used) == child && status == 0,
           "can't run " + name);
    return CountsProcessorTime() ? Seconds(used.ru_utime) + Seconds(used.ru_stime) : Now() - begin;
}

struct Program {
    fs::path path;
    std::vector<double> seconds;
};

// Turn by turn, so that all meet the same machine.
void RunAll(std::vector<Program> &programs, int runs) {
    for (int run = 0; run < runs; ++run)
        for (Program &program : programs)
            program.seconds.push_back(SecondsToRun(program.path));
}

} // namespace

std::vector<Row> LoadTimes(int runs) {
    fs::path const folder = fs::read_symlink("/proc/self/exe").parent_path();
    TemporaryFolder const temporary(fs::temp_directory_path());
    fs::path const bare(temporary.MakeEmpty("bare"));
    for (auto const *name : {"qvlinkdb_idle_with_library", "libQVLinkDB.so"})
        fs::copy(folder / name, bare / name);
    std::vector<Program> programs{{folder / "qvlinkdb_idle", {}},
                                  {bare / "qvlinkdb_idle_with_library", {}},
                                  {folder / "qvlinkdb_idle_with_library", {}}};
    RunAll(programs, runs);
    double const idle = Median(programs[0].seconds);
    double const bareTime = Median(programs[1].seconds);
    double const whole = Median(programs[2].seconds);
    auto const count = static_cast<std::uint32_t>(runs);
    return {{count, "A program that loads the library", Unit::Seconds, whole, Against::Limit,
             "one without the library", idle, 0},
            {count, "A program that loads the library", Unit::Seconds, whole, Against::Limit,
             "the library without lists", bareTime, 0},
            {count, "Time that the library adds", Unit::Seconds, whole - idle, Against::Limit,
             "the library without lists", bareTime - idle, 0}};
}

} // namespace bench

// How the stamp of a process is made here: in clock ticks since boot, the wall clock apart.
#include "../services.h"

#include "roles.h"
#include "temp_folder.h"

#include <fstream>
#include <sstream>

#include "platform/process.h"
#include <unistd.h>

namespace {

using CreationCall = unsigned long long (*)();

unsigned long long Creation() {
    FILETIME creation{}, exit{}, kernel{}, user{};
    EXPECT_TRUE(win::GetProcessTimes(win::GetCurrentProcess(), &creation, &exit, &kernel, &user));
    return static_cast<unsigned long long>(creation.dwHighDateTime) << 32 | creation.dwLowDateTime;
}

// The 22nd field of this process's line, by another reading than the library's: the name
// of this program has neither blanks nor parentheses.
unsigned long long StartTicks() {
    std::ifstream stat("/proc/self/stat");
    std::string field;
    for (int i = 0; i < 22; ++i)
        stat >> field;
    return std::stoull(field);
}

int WriteTicks(Arguments const &arguments) {
    std::ofstream(arguments.at(0)) << StartTicks() << ' ' << Creation();
    return 0;
}

Role const writeTicks("write-ticks", WriteTicks);

} // namespace

TEST(ProcessHere, two_processes_are_as_far_apart_as_their_clock_ticks) {
    TempFolder const folder;
    std::string const file = (folder.Path() / "ticks").string();
    usleep(50000);
    ASSERT_EQ(0, RunRole("write-ticks", {file}));
    unsigned long long ticks = 0;
    unsigned long long creation = 0;
    std::ifstream(file) >> ticks >> creation;
    auto const unitsATick = 10000000ull / static_cast<unsigned long long>(sysconf(_SC_CLK_TCK));
    EXPECT_GT(ticks, StartTicks());
    EXPECT_EQ((ticks - StartTicks()) * unitsATick, creation - Creation());
}

TEST(ProcessHere, creation_time_is_a_date_of_this_age) {
    constexpr unsigned long long year = 365ull * 24 * 3600 * 10000000;
    EXPECT_GT(Creation(), 390 * year); // 1601 and 390 years
    EXPECT_LT(Creation(), 430 * year);
}

TEST(ProcessHere, two_copies_of_the_library_agree) {
    TempFolder const folder;
    std::filesystem::path const module =
        std::filesystem::path(ProgramPath()).replace_filename("platform_probe.so");
    for (const char *name : {"first.so", "second.so"}) {
        std::filesystem::copy_file(module, folder.Path() / name);
        void *const copy = LoadModule((folder.Path() / name).string());
        ASSERT_NE(nullptr, copy);
        auto const creation = reinterpret_cast<CreationCall>(FindSymbol(copy, "ProbeCreation"));
        ASSERT_NE(nullptr, creation);
        EXPECT_NE(&Creation, creation);
        EXPECT_EQ(Creation(), creation());
        UnloadModule(copy);
    }
}

TEST(ProcessHere, null_places_are_998) {
    FILETIME time;
    HANDLE const process = win::GetCurrentProcess();
    EXPECT_FAILS_WITH(998, win::GetProcessTimes(process, nullptr, &time, &time, &time));
    EXPECT_FAILS_WITH(998, win::GetProcessTimes(process, &time, &time, &time, nullptr));
}

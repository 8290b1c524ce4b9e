// The library comes and goes: its entry is called, and nothing stays behind.
#include "../services.h"

#include "temp_folder.h"

#include <iterator>
#include <thread>

#include "platform/process.h"

namespace {

std::string ProbePath() {
    return std::filesystem::path(ProgramPath()).replace_filename("platform_probe.so").string();
}

template <class Function> Function Find(void *module, const char *name) {
    return reinterpret_cast<Function>(FindSymbol(module, name));
}

std::ptrdiff_t OpenDescriptors() {
    std::filesystem::directory_iterator const all("/proc/self/fd");
    return std::distance(begin(all), end(all));
}

} // namespace

TEST(Unloading, closes_what_was_left_open) {
    std::ptrdiff_t const before = OpenDescriptors();
    for (int i = 0; i < 5; ++i) {
        void *const probe = LoadModule(ProbePath());
        ASSERT_NE(nullptr, probe);
        EXPECT_TRUE(Find<int (*)(const char *)>(probe, "ProbeLeave")("/dev/null"));
        UnloadModule(probe);
        EXPECT_FALSE(IsModuleLoaded(ProbePath()));
    }
    EXPECT_EQ(before, OpenDescriptors());
}

TEST(Unloading, closes_keys_and_the_registrys_store) {
    TempFolder const folder;
    std::ptrdiff_t const before = OpenDescriptors();
    for (int i = 0; i < 3; ++i) {
        void *const probe = LoadModule(ProbePath());
        ASSERT_NE(nullptr, probe);
        EXPECT_TRUE(
            Find<int (*)(const char *)>(probe, "ProbeLeaveKeys")(folder.Directory().c_str()));
        EXPECT_LT(before, OpenDescriptors());
        UnloadModule(probe);
        EXPECT_FALSE(IsModuleLoaded(ProbePath()));
        EXPECT_EQ(before, OpenDescriptors());
        EXPECT_FALSE(std::filesystem::exists(folder.Path() / "store.db-wal"));
    }
}

TEST(Unloading, writes_the_database_that_was_left_attached) {
    TempFolder const folder;
    void *const probe = LoadModule(ProbePath());
    ASSERT_NE(nullptr, probe);
    ASSERT_TRUE(Find<int (*)(const char *)>(probe, "ProbeAttach")(folder.Directory().c_str()));
    EXPECT_FALSE(std::filesystem::exists(folder.DatabaseFile()));
    UnloadModule(probe);
    EXPECT_FALSE(IsModuleLoaded(ProbePath()));
    EXPECT_TRUE(std::filesystem::exists(folder.DatabaseFile()));
}

TEST(Unloading, isnt_hindered_by_threads_that_took_mutexes_and_live_on) {
    void *probe = LoadModule(ProbePath());
    ASSERT_NE(nullptr, probe);
    std::thread([&] {
        EXPECT_TRUE(Find<int (*)(const char *)>(probe, "ProbeLeave")("/dev/null"));
        UnloadModule(probe);
        EXPECT_FALSE(IsModuleLoaded(ProbePath()));
    }).join();
}

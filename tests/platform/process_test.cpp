// The stamp of the process, on both systems.
#include "services.h"

#include "roles.h"
#include "temp_folder.h"

#include <chrono>
#include <cstring>
#include <thread>

#include "platform/process.h"

namespace {

std::uint64_t Count(FILETIME const &time) {
    return std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime;
}

struct Times {
    std::uint64_t creation, kernel, user;
};

Times TimesOfThis() {
    FILETIME creation{}, exit{}, kernel{}, user{};
    EXPECT_TRUE(win::GetProcessTimes(win::GetCurrentProcess(), &creation, &exit, &kernel, &user));
    return {Count(creation), Count(kernel), Count(user)};
}

// Writes its id and creation time into a file.
int WriteStamp(Arguments const &arguments) {
    std::string const text =
        std::to_string(win::GetCurrentProcessId()) + " " + std::to_string(TimesOfThis().creation);
    WriteBytes(arguments.at(0), BytesOf(text));
    return 0;
}

Role const writeStamp("write-stamp", WriteStamp);

std::string StampOfAnotherProcess(TempFolder const &folder) {
    auto const file = folder.Path() / "stamp";
    EXPECT_EQ(0, RunRole("write-stamp", {file.string()}));
    Bytes const bytes = ReadBytes(file);
    return std::string(bytes.begin(), bytes.end());
}

} // namespace

TEST(Process, id_is_the_systems) { EXPECT_EQ(CurrentProcessId(), win::GetCurrentProcessId()); }

TEST(Process, its_own_handle_is_minus_1_and_closing_it_does_nothing) {
    EXPECT_EQ(reinterpret_cast<HANDLE>(std::intptr_t{-1}), win::GetCurrentProcess());
    EXPECT_TRUE(win::CloseHandle(win::GetCurrentProcess()));
    EXPECT_NE(0u, TimesOfThis().creation);
}

TEST(Process, creation_time_stays_as_it_is) {
    std::uint64_t const creation = TimesOfThis().creation;
    EXPECT_NE(0u, creation);
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_EQ(creation, TimesOfThis().creation);
    std::thread([=] { EXPECT_EQ(creation, TimesOfThis().creation); }).join();
}

TEST(Process, stamps_of_two_processes_differ) {
    TempFolder const folder;
    std::string const own =
        std::to_string(win::GetCurrentProcessId()) + " " + std::to_string(TimesOfThis().creation);
    std::string const first = StampOfAnotherProcess(folder);
    std::string const second = StampOfAnotherProcess(folder);
    EXPECT_FALSE(first.empty());
    EXPECT_NE(own, first);
    EXPECT_NE(first, second);
}

TEST(Process, creation_times_of_later_processes_are_later) {
    TempFolder const folder;
    auto const creation = [&] {
        std::string const stamp = StampOfAnotherProcess(folder);
        return std::stoull(stamp.substr(stamp.find(' ') + 1));
    };
    auto const first = creation();
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    auto const second = creation();
    EXPECT_GT(first, TimesOfThis().creation);
    EXPECT_GE(second, first + 500000);
}

TEST(Process, work_is_told_in_its_times) {
    Times const before = TimesOfThis();
    Times now = before;
    auto const end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (now.user + now.kernel < before.user + before.kernel + 300000 &&
           std::chrono::steady_clock::now() < end)
        now = TimesOfThis();
    EXPECT_GE(now.user + now.kernel, before.user + before.kernel + 300000);
}

TEST(Process, times_of_no_process_are_6) {
    FILETIME time;
    EXPECT_FAILS_WITH(6, win::GetProcessTimes(nullptr, &time, &time, &time, &time));
}

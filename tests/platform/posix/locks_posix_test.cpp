// What our own mutexes and handles promise beyond the documented: closing under use, how
// far they count, and what they refuse.
#include "../services.h"

#include <atomic>
#include <chrono>
#include <set>
#include <thread>
#include <vector>

TEST(MutexHere, a_name_or_attributes_are_refused_with_50) {
    EXPECT_FAILS_WITH(50, win::CreateMutexA(nullptr, FALSE, "name"));
    int something = 0;
    auto *const attributes = reinterpret_cast<SECURITY_ATTRIBUTES *>(&something);
    EXPECT_FAILS_WITH(50, win::CreateMutexA(attributes, FALSE, nullptr));
}

TEST(MutexHere, closing_wakes_the_waiting_with_6) {
    HANDLE const mutex = win::CreateMutexA(nullptr, TRUE, nullptr);
    std::atomic<int> failures{0};
    auto const wait = [&] {
        EXPECT_EQ(0xffffffffu, win::WaitForSingleObject(mutex, INFINITE));
        failures += win::GetLastError() == 6;
    };
    std::thread waiters[] = {std::thread(wait), std::thread(wait), std::thread(wait)};
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    EXPECT_TRUE(win::CloseHandle(mutex));
    for (std::thread &waiter : waiters)
        waiter.join();
    EXPECT_EQ(3, failures);
}

TEST(MutexHere, more_takings_than_it_counts_fail_with_587) {
    ScopedHandle const mutex(win::CreateMutexA(nullptr, FALSE, nullptr));
    constexpr int most = (1 << 22) - 1;
    for (int i = 0; i < most; ++i)
        ASSERT_EQ(0u, win::WaitForSingleObject(mutex, 0));
    EXPECT_FAILS_WITH(587, win::WaitForSingleObject(mutex, 0) == 0);
    for (int i = 0; i < most; ++i)
        ASSERT_TRUE(win::ReleaseMutex(mutex));
    EXPECT_FAILS_WITH(288, win::ReleaseMutex(mutex));
}

TEST(HandleHere, no_value_comes_twice) {
    std::set<HANDLE> seen;
    for (int i = 0; i < 20000; ++i) {
        HANDLE const mutex = win::CreateMutexA(nullptr, FALSE, nullptr);
        EXPECT_TRUE(seen.insert(mutex).second);
        EXPECT_TRUE(win::CloseHandle(mutex));
    }
}

TEST(HandleHere, of_another_kind_is_refused_with_6) {
    ScopedHandle const mutex(win::CreateMutexA(nullptr, FALSE, nullptr));
    char byte = 0;
    DWORD count = 0;
    LARGE_INTEGER size;
    EXPECT_FAILS_WITH(6, win::ReadFile(mutex, &byte, 1, &count, nullptr));
    EXPECT_FAILS_WITH(6, win::WriteFile(mutex, &byte, 1, &count, nullptr));
    EXPECT_FAILS_WITH(6, win::FlushFileBuffers(mutex));
    EXPECT_FAILS_WITH(6, win::GetFileSizeEx(mutex, &size));
    EXPECT_FAILS_WITH(6, win::SetFilePointerEx(mutex, Offset(0), nullptr, FILE_BEGIN));
    ScopedHandle const file(OpenToRead("/dev/null"));
    ASSERT_TRUE(file.Valid());
    EXPECT_FAILS_WITH(6, win::ReleaseMutex(file));
    EXPECT_FAILS_WITH(6, win::WaitForSingleObject(file, 0) == 0);
}

TEST(HandleHere, any_bits_are_refused_without_harm) {
    std::uint64_t bits = 88172645463325252u;
    for (int i = 0; i < 200000; ++i) {
        bits ^= bits << 13;
        bits ^= bits >> 7;
        bits ^= bits << 17;
        auto const handle = reinterpret_cast<HANDLE>(bits >> (i % 64));
        EXPECT_EQ(handle == win::GetCurrentProcess(), win::CloseHandle(handle));
        EXPECT_EQ(0xffffffffu, win::WaitForSingleObject(handle, 0));
    }
}

// Threads take, release and close the same handles while others make new ones in their
// place: whoever gets a mutex has it alone.
TEST(HandleHere, closing_under_use_is_told_and_harms_nobody) {
    constexpr int places = 4;
    std::atomic<HANDLE> mutexes[places];
    for (auto &mutex : mutexes)
        mutex = win::CreateMutexA(nullptr, FALSE, nullptr);
    std::atomic<bool> stop{false};
    std::atomic<long> taken{0};
    auto const use = [&](unsigned seed) {
        while (!stop) {
            HANDLE const mutex = mutexes[seed++ % places];
            if (win::WaitForSingleObject(mutex, INFINITE) == 0) {
                ++taken;
                if (!win::ReleaseMutex(mutex)) {
                    EXPECT_EQ(6u, win::GetLastError());
                }
            } else {
                EXPECT_EQ(6u, win::GetLastError());
            }
        }
    };
    std::vector<std::thread> users;
    for (unsigned i = 0; i < 4; ++i)
        users.emplace_back(use, i);
    for (int i = 0; i < 2000 || taken < 1000; ++i) {
        HANDLE const old = mutexes[i % places].exchange(win::CreateMutexA(nullptr, FALSE, nullptr));
        EXPECT_TRUE(win::CloseHandle(old));
    }
    stop = true;
    for (std::thread &user : users)
        user.join();
    for (auto &mutex : mutexes)
        EXPECT_TRUE(win::CloseHandle(mutex));
}

TEST(HandleHere, a_file_closed_while_it_is_read_stays_open_for_that_call) {
    std::atomic<HANDLE> file{OpenToRead("/dev/zero")};
    std::atomic<bool> stop{false};
    auto const read = [&] {
        std::vector<char> buffer(4096);
        while (!stop) {
            DWORD count = 0;
            if (win::ReadFile(file, buffer.data(), 4096, &count, nullptr)) {
                EXPECT_EQ(4096u, count);
            } else {
                EXPECT_EQ(6u, win::GetLastError());
            }
        }
    };
    std::thread first(read);
    std::thread second(read);
    for (int i = 0; i < 2000; ++i)
        EXPECT_TRUE(win::CloseHandle(file.exchange(OpenToRead("/dev/zero"))));
    stop = true;
    first.join();
    second.join();
    EXPECT_TRUE(win::CloseHandle(file));
}

// Owners are told apart by numbers that ended threads leave to others.
TEST(MutexHere, a_new_thread_doesnt_inherit_an_ended_ones_mutexes) {
    ScopedHandle const mutex(win::CreateMutexA(nullptr, FALSE, nullptr));
    for (int i = 0; i < 50; ++i) {
        std::thread([&] { win::WaitForSingleObject(mutex, INFINITE); }).join();
        std::thread([&] { EXPECT_FAILS_WITH(288, win::ReleaseMutex(mutex)); }).join();
        std::thread([&] {
            EXPECT_EQ(128u, win::WaitForSingleObject(mutex, 0));
            EXPECT_TRUE(win::ReleaseMutex(mutex));
        }).join();
    }
}

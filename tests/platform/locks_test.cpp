// Mutexes, on both systems by the documented results and codes.
#include "services.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <thread>
#include <vector>

namespace {

HANDLE NewMutex(BOOL owned = FALSE) { return win::CreateMutexA(nullptr, owned, nullptr); }

void OnAnotherThread(std::function<void()> const &work) { std::thread(work).join(); }

DWORD WaitOnAnotherThread(HANDLE mutex, DWORD milliseconds) {
    DWORD result = 0;
    OnAnotherThread([&] {
        result = win::WaitForSingleObject(mutex, milliseconds);
        if (result == WAIT_OBJECT_0 || result == WAIT_ABANDONED)
            win::ReleaseMutex(mutex);
    });
    return result;
}

} // namespace

TEST(Mutex, a_free_one_is_taken_and_released) {
    ScopedHandle const mutex(NewMutex());
    ASSERT_TRUE(mutex.Valid());
    EXPECT_EQ(0u, win::WaitForSingleObject(mutex, INFINITE));
    EXPECT_TRUE(win::ReleaseMutex(mutex));
    EXPECT_EQ(0u, WaitOnAnotherThread(mutex, 0));
}

TEST(Mutex, made_owned_it_belongs_to_its_maker) {
    ScopedHandle const mutex(NewMutex(TRUE));
    EXPECT_EQ(258u, WaitOnAnotherThread(mutex, 0));
    EXPECT_TRUE(win::ReleaseMutex(mutex));
    EXPECT_EQ(0u, WaitOnAnotherThread(mutex, 0));
}

TEST(Mutex, the_owner_takes_it_again_and_releases_as_often) {
    ScopedHandle const mutex(NewMutex());
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(0u, win::WaitForSingleObject(mutex, 0));
    for (int i = 0; i < 2; ++i) {
        EXPECT_TRUE(win::ReleaseMutex(mutex));
        EXPECT_EQ(258u, WaitOnAnotherThread(mutex, 0));
    }
    EXPECT_TRUE(win::ReleaseMutex(mutex));
    EXPECT_EQ(0u, WaitOnAnotherThread(mutex, 0));
    EXPECT_FAILS_WITH(288, win::ReleaseMutex(mutex));
}

TEST(Mutex, release_by_another_than_the_owner_fails_with_288) {
    ScopedHandle const mutex(NewMutex(TRUE));
    OnAnotherThread([&] { EXPECT_FAILS_WITH(288, win::ReleaseMutex(mutex)); });
    EXPECT_EQ(258u, WaitOnAnotherThread(mutex, 0));
    EXPECT_TRUE(win::ReleaseMutex(mutex));
}

TEST(Mutex, a_wait_takes_the_time_that_it_may) {
    ScopedHandle const mutex(NewMutex(TRUE));
    auto const start = std::chrono::steady_clock::now();
    EXPECT_EQ(258u, WaitOnAnotherThread(mutex, 60));
    auto const waited = std::chrono::steady_clock::now() - start;
    EXPECT_GE(waited, std::chrono::milliseconds(50));
    EXPECT_LT(waited, std::chrono::seconds(30));
}

TEST(Mutex, a_release_wakes_the_thread_that_waits) {
    ScopedHandle const mutex(NewMutex(TRUE));
    std::atomic<DWORD> result{99};
    std::thread waiter([&] {
        result = win::WaitForSingleObject(mutex, INFINITE);
        win::ReleaseMutex(mutex);
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    EXPECT_EQ(99u, result);
    EXPECT_TRUE(win::ReleaseMutex(mutex));
    waiter.join();
    EXPECT_EQ(0u, result);
}

TEST(Mutex, of_an_ended_owner_comes_as_abandoned_once) {
    ScopedHandle const mutex(NewMutex());
    OnAnotherThread([&] { win::WaitForSingleObject(mutex, INFINITE); });
    EXPECT_EQ(128u, win::WaitForSingleObject(mutex, 5000));
    EXPECT_TRUE(win::ReleaseMutex(mutex));
    EXPECT_EQ(0u, win::WaitForSingleObject(mutex, 0));
    EXPECT_TRUE(win::ReleaseMutex(mutex));
}

TEST(Mutex, abandoned_while_a_thread_waits_goes_to_that_thread) {
    ScopedHandle const mutex(NewMutex());
    std::atomic<bool> taken{false};
    std::thread owner([&] {
        win::WaitForSingleObject(mutex, INFINITE);
        taken = true;
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    });
    while (!taken)
        std::this_thread::yield();
    EXPECT_EQ(128u, win::WaitForSingleObject(mutex, 30000));
    EXPECT_TRUE(win::ReleaseMutex(mutex));
    owner.join();
}

TEST(Mutex, keeps_threads_apart) {
    ScopedHandle const mutex(NewMutex());
    constexpr int rounds = 5000;
    long counter = 0;
    auto const work = [&] {
        for (int i = 0; i < rounds; ++i) {
            win::WaitForSingleObject(mutex, INFINITE);
            win::WaitForSingleObject(mutex, INFINITE);
            ++counter;
            win::ReleaseMutex(mutex);
            win::ReleaseMutex(mutex);
        }
    };
    std::thread threads[] = {std::thread(work), std::thread(work), std::thread(work),
                             std::thread(work)};
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(4L * rounds, counter);
}

TEST(Mutex, many_exist_side_by_side) {
    std::vector<HANDLE> mutexes(1000);
    for (std::size_t i = 0; i < mutexes.size(); ++i)
        mutexes[i] = NewMutex(i % 2 ? TRUE : FALSE);
    for (std::size_t i = 0; i < mutexes.size(); ++i)
        EXPECT_EQ(i % 2 ? 258u : 0u, WaitOnAnotherThread(mutexes[i], 0));
    for (HANDLE const mutex : mutexes)
        EXPECT_TRUE(win::CloseHandle(mutex));
}

TEST(Handle, a_closed_one_is_refused_with_6) {
    HANDLE const mutex = NewMutex();
    EXPECT_TRUE(win::CloseHandle(mutex));
    EXPECT_FAILS_WITH(6, win::CloseHandle(mutex));
    EXPECT_FAILS_WITH(6, win::ReleaseMutex(mutex));
    EXPECT_FAILS_WITH(6, win::WaitForSingleObject(mutex, 0) != 0xffffffff);
}

TEST(Handle, what_never_was_one_is_refused_with_6) {
    for (std::uintptr_t const value : {std::uintptr_t{0}, std::uintptr_t{0x7ffffff4}}) {
        auto const handle = reinterpret_cast<HANDLE>(value);
        EXPECT_FAILS_WITH(6, win::CloseHandle(handle));
        EXPECT_FAILS_WITH(6, win::ReleaseMutex(handle));
        EXPECT_FAILS_WITH(6, win::WaitForSingleObject(handle, 0) != 0xffffffff);
    }
}

TEST(LastError, belongs_to_its_thread) {
    std::atomic<int> step{0};
    auto const reach = [&](int next) {
        while (step != next)
            std::this_thread::yield();
    };
    std::thread other([&] {
        reach(1);
        win::SetLastError(4321);
        step = 2;
        reach(3);
        EXPECT_EQ(4321u, win::GetLastError());
    });
    win::SetLastError(1234);
    step = 1;
    reach(2);
    EXPECT_EQ(1234u, win::GetLastError());
    step = 3;
    other.join();
}

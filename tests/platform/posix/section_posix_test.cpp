// Where Windows leaves a critical section's state open: leaving one that isn't held.
#include "../services.h"

#include <atomic>
#include <thread>

#ifdef __SANITIZE_THREAD__
constexpr bool mistakesAreReported = true;
#else
constexpr bool mistakesAreReported = false;
#endif

TEST(CriticalSectionHere, leaving_one_that_isnt_held_changes_nothing) {
    if (mistakesAreReported)
        GTEST_SKIP() << "the thread sanitizer reports the mistake that this is about";
    CRITICAL_SECTION section;
    win::InitializeCriticalSection(&section);
    win::LeaveCriticalSection(&section);
    win::EnterCriticalSection(&section);
    std::thread([&] { win::LeaveCriticalSection(&section); }).join(); // another's
    std::atomic<bool> inside{false};
    std::thread other([&] {
        win::EnterCriticalSection(&section);
        inside = true;
        win::LeaveCriticalSection(&section);
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    EXPECT_FALSE(inside);
    win::LeaveCriticalSection(&section);
    other.join();
    EXPECT_TRUE(inside);
    win::DeleteCriticalSection(&section);
}

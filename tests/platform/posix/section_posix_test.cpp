// Where Windows leaves a critical section's state open: leaving one that isn't held.
#include "../services.h"

#include "visitor.h"

#include "platform/thread_sanitizer.h"

TEST(CriticalSectionHere, leaving_one_that_isnt_held_changes_nothing) {
    if (underThreadSanitizer)
        GTEST_SKIP() << "the thread sanitizer reports the mistake that this is about";
    CRITICAL_SECTION section;
    win::InitializeCriticalSection(&section);
    win::LeaveCriticalSection(&section);
    win::EnterCriticalSection(&section);
    std::thread([&] { win::LeaveCriticalSection(&section); }).join(); // another's
    {
        Visitor const visitor([&] { win::EnterCriticalSection(&section); },
                              [&] { win::LeaveCriticalSection(&section); });
        EXPECT_TRUE(visitor.KeptOut());
        win::LeaveCriticalSection(&section);
        EXPECT_TRUE(visitor.GetsIn());
    }
    win::DeleteCriticalSection(&section);
}

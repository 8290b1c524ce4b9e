// The lock of strings and containers: who gets in when, and what its states tell.
#include "open_sync.h"

#include <thread>
#include <type_traits>

#include <gtest/gtest.h>

#include "platform/thread_sanitizer.h"

using States = std::vector<int>;
using UTILS::CCriticalSection;

namespace {

// A lock whose own operations are called in place of the inherited ones.
class CountedLock : public CCriticalSection {
public:
    int Lock() override { return ++locks, CCriticalSection::Lock(); }
    int UnLock() override { return ++unlocks, CCriticalSection::UnLock(); }
    void Attach() override { ++attaches; }

    int locks = 0, unlocks = 0, attaches = 0;
};

// The number of states, as far as what is asked for it tells.
int CountStates(CCriticalSection const &lock) {
    int count = 1;
    while (lock.GetState(count) == 1)
        ++count;
    return count;
}

bool Becomes(CCriticalSection const &lock, int states) {
    auto const end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (CountStates(lock) != states && std::chrono::steady_clock::now() < end)
        std::this_thread::yield();
    return CountStates(lock) == states;
}

} // namespace

TEST(CriticalSectionObject, starts_without_a_name_and_with_one_state) {
    OpenSection const lock;
    EXPECT_EQ("", lock.GetObjName());
    EXPECT_EQ(States{0}, lock.states);
    EXPECT_EQ(0, lock.GetState(-1));
    EXPECT_EQ(0, lock.GetState(0));
    EXPECT_EQ(0, lock.IsObjectAttached());
    EXPECT_EQ(0, lock.released);
}

TEST(CriticalSectionObject, is_a_sync_object_with_the_section_and_its_mark_behind) {
    OpenSection const lock;
    auto const at = [&](void const *field) {
        return static_cast<char const *>(field) - reinterpret_cast<char const *>(&lock);
    };
    EXPECT_TRUE((std::is_base_of_v<UTILS::CSyncObject, CCriticalSection>));
    EXPECT_LT(at(&lock.attached), at(&lock.section));
    EXPECT_LT(at(&lock.section), at(&lock.released));
}

TEST(CriticalSectionObject, Lock_pushes_a_1_and_UnLock_pops_it) {
    OpenSection lock;
    EXPECT_EQ(1, lock.Lock());
    EXPECT_EQ(1, lock.GetState(-1));
    EXPECT_EQ(0, lock.GetState(0));
    EXPECT_EQ((States{0, 1}), lock.states);
    EXPECT_EQ(0, lock.released);
    EXPECT_EQ(1, lock.UnLock());
    EXPECT_EQ(States{0}, lock.states);
    EXPECT_EQ(1, lock.released);
    lock.Lock();
    EXPECT_EQ(1, lock.released);
    lock.UnLock();
}

TEST(CriticalSectionObject, UnLock_on_a_fresh_one_answers_1_and_does_nothing) {
    OpenSection lock;
    EXPECT_EQ(1, lock.UnLock());
    EXPECT_EQ(States{0}, lock.states);
    EXPECT_EQ(0, lock.released);
}

TEST(CriticalSectionObject, UnLock_too_often_leaves_a_lock_that_works) {
    CCriticalSection lock;
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(1, lock.UnLock());
    lock.Lock();
    LockVisitor const visitor(lock);
    EXPECT_TRUE(visitor.KeptOut());
    lock.UnLock();
    EXPECT_TRUE(visitor.GetsIn());
}

TEST(CriticalSectionObject, keeps_another_thread_out_between_Lock_and_UnLock) {
    CCriticalSection lock;
    lock.Lock();
    LockVisitor const visitor(lock);
    EXPECT_TRUE(visitor.KeptOut());
    lock.UnLock();
    EXPECT_TRUE(visitor.GetsIn());
}

TEST(CriticalSectionObject, nested_locks_need_as_many_unlocks) {
    CCriticalSection lock;
    for (int depth = 1; depth <= 3; ++depth) {
        lock.Lock();
        EXPECT_EQ(depth + 1, CountStates(lock));
    }
    LockVisitor const visitor(lock);
    for (int depth = 3; depth > 0; --depth) {
        EXPECT_TRUE(visitor.KeptOut());
        lock.UnLock();
    }
    EXPECT_TRUE(visitor.GetsIn());
}

TEST(CriticalSectionObject, Lock_pushes_its_state_before_it_waits) {
    CCriticalSection lock;
    lock.Lock();
    LockVisitor const visitor(lock);
    EXPECT_TRUE(Becomes(lock, 3));
    EXPECT_TRUE(visitor.KeptOut());
    lock.UnLock();
}

TEST(CriticalSectionObject, UnLock_pops_its_state_before_another_gets_in) {
    constexpr int rounds = 200;
    CCriticalSection lock;
    lock.Lock();
    for (int round = 0; round < rounds; ++round) {
        int statesInside = 0;
        {
            Visitor const visitor([&] { lock.Lock(); },
                                  [&] {
                                      statesInside = CountStates(lock);
                                      lock.UnLock();
                                  });
            EXPECT_TRUE(Becomes(lock, 3));
            lock.UnLock();
        }
        EXPECT_EQ(2, statesInside);
        lock.Lock();
    }
    lock.UnLock();
}

TEST(CriticalSectionObject, a_copy_of_a_locked_one_has_its_states_and_isnt_locked) {
    OpenSection lock;
    lock.Lock();
    lock.Lock();
    lock.UnLock();
    lock.Attach();
    OpenSection copy(lock);
    EXPECT_EQ((States{0, 1}), copy.states);
    EXPECT_EQ(1, copy.IsObjectAttached());
    EXPECT_EQ(0, copy.released);
    LockVisitor const visitor(copy);
    EXPECT_TRUE(visitor.GetsIn());
    lock.UnLock();
}

TEST(CriticalSectionObject, a_copy_is_a_lock_of_its_own) {
    CCriticalSection lock;
    CCriticalSection copy(lock);
    copy.Lock();
    {
        LockVisitor const visitor(lock);
        EXPECT_TRUE(visitor.GetsIn());
    }
    EXPECT_EQ(0, lock.GetState(-1));
    LockVisitor const visitor(copy);
    EXPECT_TRUE(visitor.KeptOut());
    copy.UnLock();
}

TEST(CriticalSectionObject, an_assignment_takes_the_states_and_leaves_the_lock_held) {
    OpenSection lock;
    OpenSection other;
    other.Lock();
    other.Lock();
    other.Attach();
    lock.Lock();
    lock = other;
    EXPECT_EQ((States{0, 1, 1}), lock.states);
    EXPECT_EQ(1, lock.IsObjectAttached());
    EXPECT_EQ(0, lock.released);
    {
        LockVisitor const visitor(lock);
        EXPECT_TRUE(visitor.KeptOut());
        lock.UnLock(); // entered once
        EXPECT_TRUE(visitor.GetsIn());
    }
    EXPECT_EQ(1, lock.released);
    other.UnLock();
    other.UnLock();
}

TEST(CriticalSectionObject, an_assignment_doesnt_take_the_mark_of_releases) {
    OpenSection lock;
    OpenSection other;
    other.Lock();
    other.UnLock();
    lock = other;
    EXPECT_EQ(0, lock.released);
    other = OpenSection();
    EXPECT_EQ(1, other.released);
}

TEST(CriticalSectionObject, an_assignment_to_itself_does_nothing) {
    OpenSection lock;
    lock.Lock();
    OpenSection const &same = lock;
    lock = same;
    EXPECT_EQ((States{0, 1}), lock.states);
    LockVisitor const visitor(lock);
    EXPECT_TRUE(visitor.KeptOut());
    lock.UnLock();
    EXPECT_TRUE(visitor.GetsIn());
}

TEST(CriticalSectionObject, can_go_whatever_the_depth_of_its_stack) {
    if (underThreadSanitizer)
        GTEST_SKIP() << "the thread sanitizer reports a lock that goes while it is held";
    for (int depth = 0; depth < 4; ++depth) {
        CCriticalSection lock;
        for (int i = 0; i < depth; ++i)
            lock.Lock();
        EXPECT_EQ(depth + 1, CountStates(lock));
    }
}

TEST(CriticalSectionObject, its_operations_are_virtual) {
    CountedLock counted;
    CCriticalSection &lock = counted;
    lock.Lock();
    lock.UnLock();
    lock.UnLock();
    lock.Attach();
    EXPECT_EQ(1, counted.locks);
    EXPECT_EQ(2, counted.unlocks);
    EXPECT_EQ(1, counted.attaches);
    EXPECT_EQ(0, lock.IsObjectAttached());
}

TEST(CriticalSectionObject, tells_the_class_it_really_is) {
    CCriticalSection const lock;
    OpenSection const derived;
    CCriticalSection const &base = derived;
    EXPECT_STREQ("class UTILS::CCriticalSection", lock.derived_class());
    EXPECT_STREQ("class OpenSection", base.derived_class());
}

TEST(CriticalSectionObject, serves_many_threads_and_ends_with_its_first_state) {
    constexpr int rounds = 3000;
    CCriticalSection lock;
    long counter = 0;
    std::vector<std::thread> threads(4);
    for (std::thread &thread : threads)
        thread = std::thread([&] {
            for (int i = 0; i < rounds; ++i) {
                lock.Lock();
                lock.Lock();
                ++counter;
                CCriticalSection const copy(lock); // others push meanwhile
                EXPECT_EQ(0, copy.GetState(0));
                lock.UnLock();
                lock.UnLock();
            }
        });
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(4L * rounds, counter);
    EXPECT_EQ(0, lock.GetState(-1));
    EXPECT_EQ(1, CountStates(lock));
}

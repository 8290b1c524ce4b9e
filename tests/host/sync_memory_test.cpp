// Locks and names of classes when memory fails.
#include "open_sync.h"

#include <cstring>
#include <memory>
#include <new>

#include <gtest/gtest.h>

#include "allocations.h"

using Fail = AllocationWatch::Fail;
using States = std::vector<int>;

namespace UTILS {
template <int> struct Numbered {};
} // namespace UTILS

namespace {

const char longName[] = "a name that doesn't fit into an object of the text's class itself";

// Runs the work with all allocations failing from the given one on. True if it threw.
template <class Work> bool Throws(std::uint64_t number, Work const &work) {
    AllocationWatch const watch(Fail::Onwards, number);
    try {
        work();
    } catch (std::bad_alloc const &) {
        return true;
    }
    return false;
}

// The number of allocations that can fail; `check` sees what each failure left.
template <class Work, class Check> std::uint64_t FailEach(Work const &work, Check const &check) {
    std::uint64_t number = 1;
    for (; Throws(number, work) && number < 100; ++number)
        check();
    return number - 1;
}

} // namespace

TEST(SyncMemory, a_first_lock_needs_none) {
    UTILS::CCriticalSection lock;
    AllocationWatch const watch;
    for (int i = 0; i < 10; ++i) {
        lock.Lock();
        lock.UnLock();
    }
    EXPECT_EQ(0u, watch.Count());
}

TEST(SyncMemory, a_first_lock_of_a_copy_needs_none) {
    UTILS::CCriticalSection lock;
    lock.Lock();
    lock.Lock();
    UTILS::CCriticalSection copy(lock);
    UTILS::CCriticalSection assigned;
    assigned = lock;
    {
        AllocationWatch const watch;
        copy.Lock();
        assigned.Lock();
        EXPECT_EQ(0u, watch.Count());
    }
    copy.UnLock();
    assigned.UnLock();
    lock.UnLock();
    lock.UnLock();
}

TEST(SyncMemory, a_lock_that_fails_for_it_hasnt_been_entered) {
    OpenSection lock;
    lock.Lock();
    EXPECT_TRUE(Throws(1, [&] { lock.Lock(); }));
    EXPECT_EQ((States{0, 1}), lock.states);
    lock.UnLock();
    LockVisitor const visitor(lock);
    EXPECT_TRUE(visitor.GetsIn());
}

TEST(SyncMemory, nested_locks_are_entered_as_often_as_they_succeed) {
    OpenSection lock;
    int depth = 0;
    int failures = 0;
    for (int i = 0; i < 200; ++i)
        if (Throws(1, [&] { lock.Lock(); })) {
            ++failures;
            lock.Lock();
            ++depth;
        } else {
            ++depth;
        }
    EXPECT_LT(0, failures);
    EXPECT_EQ(static_cast<std::size_t>(depth) + 1, lock.states.size());
    EXPECT_EQ(200, depth);
    LockVisitor const visitor(lock);
    for (int i = 1; i < depth; ++i)
        lock.UnLock();
    EXPECT_TRUE(visitor.KeptOut());
    lock.UnLock();
    EXPECT_TRUE(visitor.GetsIn());
}

TEST(SyncMemory, what_cant_be_made_leaves_nothing_behind) {
    OpenSync const object(longName);
    OpenSection lock;
    lock.Lock();
    std::size_t const live = AllocationWatch::LiveBlocks();
    auto const same = [&] { EXPECT_EQ(live, AllocationWatch::LiveBlocks()); };
    EXPECT_LT(1u, FailEach([] { auto const made = std::make_unique<OpenSync>(longName); }, same));
    EXPECT_LT(1u, FailEach([&] { auto const made = std::make_unique<OpenSync>(object); }, same));
    EXPECT_LT(1u, FailEach([] { auto const made = std::make_unique<OpenSection>(); }, same));
    EXPECT_LT(1u, FailEach([&] { auto const made = std::make_unique<OpenSection>(lock); }, same));
    same();
    lock.UnLock();
}

TEST(SyncMemory, an_assignment_that_fails_changes_nothing) {
    OpenSync object("old");
    OpenSync other(longName);
    object.states = {0, 3};
    other.states = {0, 1, 2, 3, 4};
    other.Attach();
    auto const unchanged = [&] {
        EXPECT_EQ("old", object.name);
        EXPECT_EQ((States{0, 3}), object.states);
        EXPECT_EQ(0, object.attached);
    };
    EXPECT_LT(0u, FailEach([&] { object = other; }, unchanged));
    EXPECT_EQ(longName, object.name);
    EXPECT_EQ(other.states, object.states);
    EXPECT_EQ(1, object.attached);
}

TEST(SyncMemory, an_assignment_to_itself_needs_none) {
    OpenSync object(longName);
    OpenSync const &same = object;
    EXPECT_FALSE(Throws(1, [&] { object = same; }));
    EXPECT_EQ(longName, object.name);
}

TEST(SyncMemory, a_class_that_cant_be_named_is_told_later) {
    std::uint64_t number = 1;
    bool failed = true;
    for (; failed && number < 100; ++number) {
        const char *name = nullptr;
        {
            AllocationWatch const watch(Fail::One, number);
            name = UTILS::ClassName(typeid(UTILS::Numbered<4711>));
            failed = watch.Failed();
        }
        EXPECT_STREQ(failed ? "class ?" : "class UTILS::Numbered<4711>", name);
    }
    EXPECT_LT(2u, number);
    EXPECT_STREQ("class UTILS::Numbered<4711>", UTILS::ClassName(typeid(UTILS::Numbered<4711>)));
}

TEST(SyncMemory, a_class_that_was_named_needs_none_to_be_told_again) {
    const char *const name = UTILS::ClassName(typeid(UTILS::Numbered<1>));
    AllocationWatch const watch(Fail::Onwards, 1);
    EXPECT_EQ(name, UTILS::ClassName(typeid(UTILS::Numbered<1>)));
    EXPECT_EQ(0u, watch.Count());
}

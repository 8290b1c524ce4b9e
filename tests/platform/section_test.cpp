// Critical sections, on both systems by the documented behaviour.
#include "services.h"

#include "visitor.h"

#include <thread>
#include <vector>

namespace {

class Section {
public:
    Section() { win::InitializeCriticalSection(&m_section); }
    ~Section() { win::DeleteCriticalSection(&m_section); }
    Section(Section const &) = delete;
    Section &operator=(Section const &) = delete;

    void Enter() { win::EnterCriticalSection(&m_section); }
    void Leave() { win::LeaveCriticalSection(&m_section); }

private:
    CRITICAL_SECTION m_section;
};

class SectionVisitor : public Visitor {
public:
    explicit SectionVisitor(Section &section)
        : Visitor([&section] { section.Enter(); }, [&section] { section.Leave(); }) {}
};

} // namespace

TEST(CriticalSection, a_free_one_lets_a_thread_in) {
    Section section;
    SectionVisitor const visitor(section);
    EXPECT_TRUE(visitor.GetsIn());
}

TEST(CriticalSection, keeps_others_out_until_its_thread_leaves) {
    Section section;
    section.Enter();
    SectionVisitor const visitor(section);
    EXPECT_TRUE(visitor.KeptOut());
    section.Leave();
    EXPECT_TRUE(visitor.GetsIn());
}

TEST(CriticalSection, is_left_as_often_as_it_was_entered) {
    Section section;
    for (int i = 0; i < 3; ++i)
        section.Enter();
    SectionVisitor const visitor(section);
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(visitor.KeptOut());
        section.Leave();
    }
    EXPECT_TRUE(visitor.GetsIn());
}

TEST(CriticalSection, each_is_a_lock_of_its_own) {
    Section held;
    Section free;
    held.Enter();
    SectionVisitor const visitor(free);
    EXPECT_TRUE(visitor.GetsIn());
    held.Leave();
}

TEST(CriticalSection, keeps_threads_apart) {
    Section section;
    constexpr int rounds = 20000;
    long counter = 0;
    std::vector<std::thread> threads(4);
    for (std::thread &thread : threads)
        thread = std::thread([&] {
            for (int i = 0; i < rounds; ++i) {
                section.Enter();
                section.Enter();
                ++counter;
                section.Leave();
                section.Leave();
            }
        });
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(4L * rounds, counter);
}

TEST(CriticalSection, of_a_place_used_before_starts_free) {
    CRITICAL_SECTION place;
    int entered = 0;
    for (int i = 0; i < 100; ++i) {
        win::InitializeCriticalSection(&place);
        std::thread([&] {
            win::EnterCriticalSection(&place);
            ++entered;
            win::LeaveCriticalSection(&place);
        }).join();
        win::DeleteCriticalSection(&place);
    }
    EXPECT_EQ(100, entered);
}

TEST(TokenGroups, hold_a_count_and_identifiers_with_attributes) {
    EXPECT_EQ(4u, sizeof(TOKEN_GROUPS::GroupCount));
    EXPECT_EQ(sizeof(PSID), offsetof(TOKEN_GROUPS, Groups));
    EXPECT_EQ(sizeof(PSID), offsetof(SID_AND_ATTRIBUTES, Attributes));
    EXPECT_EQ(4u, sizeof(SID_AND_ATTRIBUTES::Attributes));
    EXPECT_EQ(2 * sizeof(PSID), sizeof(SID_AND_ATTRIBUTES));
    EXPECT_EQ(3 * sizeof(PSID), sizeof(_TOKEN_GROUPS));
}

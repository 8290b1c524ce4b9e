// How much memory a load asks for, and a load without.
#include "load_lines.h"

#include "allocations.h"
#include "call_hook.h"

namespace {

constexpr std::size_t spare = 64; // what a work buffer may have beside its text

std::size_t calls = 0;
void CountLine(char *, unsigned long) { ++calls; }

struct Load {
    std::size_t largest;
    std::uint64_t allocations;
    std::size_t lines;
};

Load WatchedLoad(std::string const &stored, AllocationWatch::Fail fail, std::uint64_t number) {
    ToldLists told;
    told.Tell(listType, listId, stored);
    calls = 0;
    AllocationWatch const watch(fail, number);
    LoadListResource(listId, listType, CountLine);
    return {watch.Largest(), watch.Count(), calls};
}

Load WatchedLoad(std::string const &stored) {
    return WatchedLoad(stored, AllocationWatch::Fail::None, 0);
}

} // namespace

TEST(LoadMemory, Is_the_text_and_little_more) {
    std::string text;
    while (text.size() < 1000000)
        text += "HKLM\\Software\\Classes\r\n";
    Load const load = WatchedLoad(lists::Pack(text));
    EXPECT_EQ(text.size() / 23, load.lines);
    EXPECT_LE(text.size() + 10, load.largest);
    EXPECT_GE(text.size() + 10 + spare, load.largest);
}

TEST(LoadMemory, Isnt_taken_for_a_length_above_the_bound) {
    std::string const stored = lists::Pack("one\r\n");
    for (std::uint32_t const length : {tooLong, 0x80000000u, 0xfffffff6u, 0xffffffffu}) {
        Load const load = WatchedLoad(WithLength(stored, length));
        EXPECT_EQ(0u, load.lines) << length;
        EXPECT_GE(std::size_t{64} << 10, load.largest) << length;
    }
    EXPECT_GE(std::size_t{MaxListText} + 10 + spare,
              WatchedLoad(WithLength(stored, MaxListText)).largest);
}

TEST(LoadMemory, Is_given_back) {
    std::string const stored = lists::Pack("one\r\ntwo\r\n");
    std::string const damaged = WithLength(std::string(50, '\xff'), 100);
    WatchedLoad(stored);
    std::size_t const before = AllocationWatch::LiveBlocks();
    WatchedLoad(stored);
    WatchedLoad(damaged);
    EXPECT_EQ(before, AllocationWatch::LiveBlocks());
}

TEST(LoadMemory, Without_it_there_are_no_lines_and_all_else_is_given_back) {
    std::string const stored = lists::Pack("one\r\n");
    WatchedLoad(stored); // what is made once for the process
    std::uint64_t const needed = WatchedLoad(stored).allocations;
    ASSERT_LE(1u, needed);
    for (std::uint64_t number = 1; number <= needed; ++number) {
        std::size_t const before = AllocationWatch::LiveBlocks();
        EXPECT_EQ(0u, WatchedLoad(stored, AllocationWatch::Fail::Onwards, number).lines) << number;
        EXPECT_EQ(before, AllocationWatch::LiveBlocks()) << number;
    }
    EXPECT_EQ(1u, WatchedLoad(stored).lines);
}

TEST(LoadMemory, Without_a_work_buffer_what_was_acquired_is_given_back) {
    std::string const stored = lists::Pack("one\r\n");
    WatchedLoad(stored); // what is made once for the process
    std::uint64_t const last = WatchedLoad(stored).allocations;
    int held = 0, libraries = 0;
    CallHook const hook([&](CallHook::Call const &call) {
        bool const before = call.moment == CallHook::Moment::Before;
        held += before && std::strcmp(call.service, "LoadResource") == 0;
        held -= before && std::strcmp(call.service, "FreeResource") == 0;
        libraries += before && std::strcmp(call.service, "LoadLibraryA") == 0;
        libraries -= before && std::strcmp(call.service, "FreeLibrary") == 0;
        return false;
    });
    EXPECT_EQ(0u, WatchedLoad(stored, AllocationWatch::Fail::Onwards, last).lines);
    EXPECT_EQ(0, held);
    EXPECT_EQ(0, libraries);
}

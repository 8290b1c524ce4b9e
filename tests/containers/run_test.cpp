// Runs: how they begin, are filled, assigned and emptied.
#include "open_run.h"

#include <gtest/gtest.h>

#include "fault_text.h"
#include "run_element.h"

using UTILS::MemObject;

namespace {

// What a run of text says of itself, when all is as it has to be.
std::string Sound(TextRun const &run) {
    if (!run.IsExact())
        return "(inexact block)";
    return run.IsTerminated() ? run.Text() : "(no terminator)";
}

} // namespace

TEST(Run, begins_empty_with_one_zeroed_element) {
    TextRun const run;
    EXPECT_EQ(0u, run.RetrieveSize());
    EXPECT_EQ(1u, run.initialSize);
    EXPECT_EQ(1, run.growFlag);
    EXPECT_EQ(1u, run.BlockLength());
    EXPECT_STREQ("", run.Retrieve());
    EXPECT_EQ(1, run.storage->AllocationScheme());
}

TEST(Run, begins_with_the_room_asked_for_zeroed) {
    TextRun const run(5);
    EXPECT_EQ(5u, run.initialSize);
    EXPECT_EQ(5u, run.BlockLength());
    EXPECT_EQ(0u, run.RetrieveSize());
    EXPECT_EQ(std::string(5, '\0'), std::string(run.Retrieve(), 5));
    ByteRun const bytes(3);
    EXPECT_EQ(AsBytes(std::string(3, '\0')), std::basic_string<unsigned char>(bytes.Retrieve(), 3));
}

TEST(Run, of_no_room_has_room_for_one) {
    TextRun const run(0);
    EXPECT_EQ(1u, run.initialSize);
    EXPECT_EQ(1u, run.BlockLength());
}

TEST(Run, of_elements_of_class_types_begins_with_live_elements) {
    int const alive = Element::Alive();
    {
        MemObject<Element> run(3);
        EXPECT_EQ(alive + 3, Element::Alive());
        run.Retrieve()[2].text = "long enough to lie on the heap of its own";
        run.Zero(); // leaves them alone
        EXPECT_EQ("long enough to lie on the heap of its own", run.Retrieve()[2].text);
        run.Empty();
        EXPECT_EQ(0u, run.RetrieveSize());
        EXPECT_EQ(alive + 3, Element::Alive());
    }
    EXPECT_EQ(alive, Element::Alive());
}

TEST(Run, of_elements_of_class_types_is_filled_and_assigned) {
    int const alive = Element::Alive();
    {
        MemObject<Element> from(3);
        Element const items[] = {Element("one"), Element("two")};
        from.Append(items, 2);
        from.Append(items); // measures one, and there is no terminator
        EXPECT_EQ(3u, from.RetrieveSize());
        MemObject<Element> to;
        to = from;
        from.Retrieve()[0].text = "changed";
        EXPECT_EQ("one", to.Retrieve()[0].text);
        EXPECT_EQ("one", to.Retrieve()[2].text);
        to.Empty();
        EXPECT_EQ(alive + 2 + 3 + 3, Element::Alive()); // back to the room of the other
        MemObject<Element> const none(2);
        to = none;
        EXPECT_EQ(0u, to.RetrieveSize());
        EXPECT_EQ(alive + 2 + 3 + 2 + 2, Element::Alive());
    }
    EXPECT_EQ(alive, Element::Alive());
}

TEST(Run, converts_to_its_block) {
    TextRun run;
    run.Append("abc");
    char const *const converted = run;
    EXPECT_EQ(run.Retrieve(), converted);
    EXPECT_STREQ("abc", converted);
}

TEST(RunAppend, gives_a_block_of_exactly_the_size) {
    TextRun run;
    run.Append("abc");
    EXPECT_EQ(3u, run.RetrieveSize());
    EXPECT_EQ(4u, run.BlockLength());
    EXPECT_STREQ("abc", run.Retrieve());
    run.Append("de");
    EXPECT_EQ("abcde", Sound(run));
    TextRun roomy(10);
    roomy.Append("ab");
    EXPECT_EQ("ab", Sound(roomy));
}

TEST(RunAppend, takes_the_size_given) {
    TextRun run;
    run.Append("abc", 2);
    EXPECT_EQ("ab", Sound(run));
    run.Append("x\0y", 3);
    EXPECT_EQ(std::string("abx\0y", 5), Sound(run));
}

TEST(RunAppend, of_an_empty_text_adds_nothing_but_makes_the_block_exact) {
    TextRun run(8);
    run.Append("");
    EXPECT_EQ("", Sound(run));
    run.Append("a");
    run.Append("");
    EXPECT_EQ("a", Sound(run));
}

TEST(RunAppend, of_null_changes_nothing) {
    TextRun run(3);
    run.Append(nullptr);
    EXPECT_EQ(3u, run.BlockLength());
    run.Append("ab");
    run.Append(nullptr, 5);
    EXPECT_EQ("ab", Sound(run));
    ByteRun bytes;
    bytes.Append(nullptr);
    EXPECT_EQ(0u, bytes.RetrieveSize());
}

TEST(RunAppend, of_bytes_measures_one_and_ends_with_none) {
    ByteRun run;
    unsigned char const bytes[] = {1, 0, 3};
    run.Append(bytes, 3);
    EXPECT_EQ(3u, run.BlockLength());
    run.Append(bytes);
    EXPECT_EQ(AsBytes(std::string("\1\0\3\1", 4)), run.Text());
    EXPECT_EQ(4u, run.BlockLength());
}

TEST(RunAppend, takes_data_of_the_run_itself) {
    TextRun run(std::string("abc"));
    run.Append(run.Retrieve());
    EXPECT_EQ("abcabc", Sound(run));
    run.Append(run.Retrieve() + 4, 2);
    EXPECT_EQ("abcabcbc", Sound(run));
    run.Append(run.Retrieve() + 8);
    EXPECT_EQ("abcabcbc", Sound(run));
}

TEST(RunAppend, takes_data_of_the_run_with_its_terminator) {
    TextRun run(std::string("abc"));
    run.Append(run.Retrieve(), 4);
    EXPECT_EQ(std::string("abcabc\0", 7), Sound(run));
}

TEST(RunAppend, takes_data_of_the_room_behind_the_run) {
    TextRun run(16);
    run.Append(run.Retrieve() + 10, 3);
    EXPECT_EQ(std::string(3, '\0'), Sound(run));
    ByteRun bytes(16);
    bytes.Append(bytes.Retrieve() + 15);
    EXPECT_EQ(AsBytes(std::string(1, '\0')), bytes.Text());
}

TEST(RunAssignment, copies_the_data_and_the_room) {
    TextRun from(7);
    from.Append("abc");
    TextRun to(2);
    to.Append("something longer");
    EXPECT_EQ(&to, &(to = from));
    EXPECT_EQ("abc", Sound(to));
    EXPECT_EQ(7u, to.initialSize);
    from.Retrieve()[0] = 'x';
    EXPECT_STREQ("abc", to.Retrieve());
}

TEST(RunAssignment, of_an_empty_run_takes_its_first_room_zeroed) {
    TextRun from(7);
    TextRun to(2);
    to.Append("abcdefghij");
    to = from;
    EXPECT_EQ(0u, to.RetrieveSize());
    EXPECT_EQ(7u, to.initialSize);
    EXPECT_EQ(7u, to.BlockLength());
    EXPECT_EQ(std::string(7, '\0'), std::string(to.Retrieve(), 7));
}

TEST(RunAssignment, of_a_run_that_was_emptied_does_not_take_what_it_held) {
    TextRun from(std::string("abc"));
    from.Empty();
    TextRun to(std::string("xyz"));
    to = from;
    EXPECT_EQ(1u, to.BlockLength());
    EXPECT_STREQ("", to.Retrieve());
}

TEST(RunAssignment, to_itself_has_no_effect) {
    TextRun run(std::string("abc"));
    TextRun const &same = run;
    run = same;
    EXPECT_EQ("abc", Sound(run));
}

TEST(RunAssignment, copies_the_flag_and_the_state_of_the_base) {
    TextRun from(std::string("ab"));
    from.growFlag = 5;
    TextRun to;
    to = from;
    EXPECT_EQ(5, to.growFlag);
    EXPECT_EQ(1u, to.GetCharSize());
}

TEST(RunAssignment, of_bytes) {
    ByteRun from(AsBytes(std::string("\0\x80", 2)));
    ByteRun to(3);
    to = from;
    EXPECT_EQ(AsBytes(std::string("\0\x80", 2)), to.Text());
    EXPECT_EQ(2u, to.BlockLength());
}

TEST(RunEmpty, returns_to_the_first_room) {
    TextRun run(5);
    run.Append("abcdefgh");
    run.Empty();
    EXPECT_EQ(0u, run.RetrieveSize());
    EXPECT_EQ(5u, run.BlockLength());
    EXPECT_EQ(std::string(5, '\0'), std::string(run.Retrieve(), 5));
}

TEST(RunZero, fills_the_block_and_leaves_the_size) {
    TextRun run(std::string("abc"));
    run.Zero();
    EXPECT_EQ(3u, run.RetrieveSize());
    EXPECT_EQ(std::string(3, '\0'), Sound(run));
}

TEST(RunReverse, turns_the_run_around) {
    TextRun run(std::string("abcd"));
    run.Reverse();
    EXPECT_EQ("dcba", Sound(run));
    TextRun empty;
    empty.Reverse();
    EXPECT_STREQ("", empty.Retrieve());
    ByteRun bytes(AsBytes("abc"));
    bytes.Reverse();
    EXPECT_EQ(AsBytes("cba"), bytes.Text());
    EXPECT_EQ(3u, bytes.BlockLength());
}

TEST(RunReverse, of_no_bytes_is_a_fault_of_the_scratch_memory) {
    ByteRun bytes;
    EXPECT_TRUE(AllocatorRefuses([&] { bytes.Reverse(); }, invalidArgument, "0"));
    EXPECT_EQ(0u, bytes.RetrieveSize());
}

TEST(RunTerminator, is_written_behind_text_only) {
    TextRun run(std::string("abc"));
    run.dataSize = 1;
    run.NullTerminate();
    EXPECT_EQ(std::string("a\0c", 3), std::string(run.Retrieve(), 3));
    ByteRun bytes(AsBytes("abc"));
    bytes.dataSize = 1;
    bytes.NullTerminate();
    EXPECT_EQ('b', bytes.Retrieve()[1]);
}

TEST(RunHooks, know_the_letters_of_text) {
    TextRun const run;
    UTILS::UtilsBase<char> const &base = run;
    for (int value = -128; value < 128; ++value) {
        auto const c = static_cast<char>(value);
        EXPECT_EQ(value >= 65 && value <= 90, base.isupper(c) != 0) << value;
        EXPECT_EQ(value >= 97 && value <= 122, base.islower(c) != 0) << value;
        EXPECT_EQ(static_cast<char>(value - 32), base.utoupper(c)) << value;
        EXPECT_EQ(static_cast<char>(value + 32), base.utolower(c)) << value;
        EXPECT_EQ(0, base.iswupper(c));
        EXPECT_EQ(c, base.uwtoupper(c));
    }
    EXPECT_EQ(0, base.compare("abc", "ABC", 0, 0, 0, 0));
}

TEST(RunHooks, know_the_letters_of_wide_characters) {
    TextRun const text;
    ByteRun const bytes;
    for (unsigned short const value : {'A', 'Z', 'a', 'z', '0', '_'}) {
        bool const upper = value == 'A' || value == 'Z';
        bool const lower = value == 'a' || value == 'z';
        EXPECT_EQ(upper, text.isupper(value) != 0) << value;
        EXPECT_EQ(lower, text.islower(value) != 0) << value;
        EXPECT_EQ(upper, bytes.isupper(value) != 0) << value;
        EXPECT_EQ(lower, bytes.islower(value) != 0) << value;
        EXPECT_EQ(value - 32, text.utoupper(value)) << value;
        EXPECT_EQ(value + 32, bytes.utolower(value)) << value;
    }
    EXPECT_EQ(0xffff, bytes.utoupper(static_cast<unsigned short>(31)));
}

TEST(RunHooks, of_bytes_know_characters_but_leave_the_bytes_hooks_alone) {
    ByteRun const run;
    EXPECT_EQ(1, run.isupper('A'));
    EXPECT_EQ(0, run.isupper('a'));
    EXPECT_EQ(1, run.islower('a'));
    EXPECT_EQ('A', run.utoupper('a'));
    EXPECT_EQ('a', run.utolower('A'));
    UTILS::UtilsBase<unsigned char> const &base = run;
    unsigned char const letter = 'a';
    unsigned char const upper = 'A';
    EXPECT_EQ(0, base.isupper(upper));
    EXPECT_EQ(0, base.islower(letter));
    EXPECT_EQ('a', base.utoupper(letter));
    EXPECT_EQ('A', base.utolower(upper));
    EXPECT_EQ(1, base.datacmp(&letter, &upper, 1, 0));
}

TEST(RunName, is_that_of_the_class) {
    EXPECT_STREQ("class UTILS::MemObject<char>", MemObject<char>().derived_class());
    EXPECT_STREQ("class UTILS::MemObject<unsigned char>",
                 MemObject<unsigned char>().derived_class());
    MemObject<char> const run;
    UTILS::UtilsBase<char> const &base = run;
    EXPECT_STREQ("class UTILS::MemObject<char>", base.derived_class());
}

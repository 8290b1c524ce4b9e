// Runs: what is put in and cut out.
#include "open_run.h"

#include <gtest/gtest.h>

#include "fault_text.h"

namespace {

// What a run says of itself, when all is as it has to be.
template <class T> std::string Sound(OpenRun<T> const &run) {
    if (!run.IsExact())
        return "(inexact block)";
    auto const text = run.Text();
    return run.IsTerminated() ? std::string(text.begin(), text.end()) : "(no terminator)";
}

std::string Inserted(std::string const &run, std::string const &data, unsigned long position,
                     int overwrite, unsigned long size = 0) {
    TextRun text(run);
    text.Insert(data.c_str(), position, overwrite, size);
    return Sound(text);
}

std::string InsertedBytes(std::string const &run, std::string const &data, unsigned long position,
                          int overwrite) {
    ByteRun bytes(AsBytes(run));
    bytes.Insert(AsBytes(data).data(), position, overwrite,
                 static_cast<unsigned long>(data.size()));
    return Sound(bytes);
}

std::string Cut(std::string const &run, unsigned long n, unsigned long position) {
    TextRun text(run);
    text.TruncateAtPosition(n, position);
    ByteRun bytes(AsBytes(run));
    bytes.TruncateAtPosition(n, position);
    return Sound(bytes) == Sound(text) ? Sound(text) : "(not the same in bytes)";
}

constexpr unsigned long farAway = ~0ul;

} // namespace

TEST(RunInsert, puts_data_in_at_a_position) {
    EXPECT_EQ("axxbc", Inserted("abc", "xx", 1, 0));
    EXPECT_EQ("xxabc", Inserted("abc", "xx", 0, 0));
    EXPECT_EQ("abcxx", Inserted("abc", "xx", 3, 0));
    EXPECT_EQ("xx", Inserted("", "xx", 0, 0));
    EXPECT_EQ("axxbc", Inserted("abc", "xx", 1, -1)); // overwriting is above 0
    EXPECT_EQ("axxbc", InsertedBytes("abc", "xx", 1, 0));
    EXPECT_EQ("xx", InsertedBytes("", "xx", 0, 0));
}

TEST(RunInsert, takes_the_size_given) {
    EXPECT_EQ("axbc", Inserted("abc", "xyz", 1, 0, 1));
    EXPECT_EQ(std::string("ax\0bc", 5), Inserted("abc", std::string("x\0", 2), 1, 0, 2));
    EXPECT_EQ("axyc", Inserted("abbc", "xyz", 1, 1, 2));
}

TEST(RunInsert, of_an_empty_text_changes_nothing) {
    EXPECT_EQ("abc", Inserted("abc", "", 1, 0));
    EXPECT_EQ("abc", Inserted("abc", "", 1, 1));
    EXPECT_EQ("", Inserted("", "", 0, 1));
}

TEST(RunInsert, of_bytes_measures_one) {
    ByteRun run(AsBytes("abc"));
    run.Insert(AsBytes("xyz").data(), 1, 0);
    EXPECT_EQ("axbc", Sound(run));
}

TEST(RunInsert, overwrites_what_is_there_and_is_cut_at_the_end) {
    EXPECT_EQ("axx", Inserted("abc", "xx", 1, 1));
    EXPECT_EQ("xxc", Inserted("abc", "xx", 0, 1));
    EXPECT_EQ("abx", Inserted("abc", "xx", 2, 7));
    EXPECT_EQ("xyz", Inserted("abc", "xyzw", 0, 1));
    EXPECT_EQ("axx", InsertedBytes("abc", "xx", 1, 1));
}

TEST(RunInsert, overwriting_at_the_end_or_behind_it_changes_nothing) {
    EXPECT_EQ("abc", Inserted("abc", "xx", 3, 1));
    EXPECT_EQ("abc", Inserted("abc", "xx", 4, 1));
    EXPECT_EQ("abc", Inserted("abc", "xx", farAway, 1));
    EXPECT_EQ("", Inserted("", "xx", 0, 1));
    EXPECT_EQ("abc", InsertedBytes("abc", "xx", 5, 1));
}

TEST(RunInsert, overwriting_no_bytes_at_all_is_a_fault_of_the_allocator) {
    ByteRun run;
    unsigned char const byte = 'x';
    EXPECT_TRUE(AllocatorRefuses([&] { run.Insert(&byte, 0, 1); }, zeroSize, "0"));
    EXPECT_EQ(0u, run.RetrieveSize());
    EXPECT_EQ(1u, run.BlockLength());
}

TEST(RunInsert, behind_the_end_grows_by_zeros) {
    EXPECT_EQ(std::string("abc\0\0", 5), Inserted("abc", "xx", 4, 0));
    EXPECT_EQ(std::string("abc\0\0", 5), Inserted("abc", "xx", farAway, 0));
    EXPECT_EQ(std::string("abc\0\0", 5), InsertedBytes("abc", "xx", 9, 0));
    EXPECT_EQ(std::string("\0", 1), Inserted("", "x", 1, 0));
}

TEST(RunInsert, of_null_changes_nothing) {
    TextRun run(std::string("abc"));
    run.Insert(nullptr, 1, 0, 2);
    run.Insert(nullptr, 1, 1);
    EXPECT_EQ("abc", Sound(run));
}

TEST(RunInsert, takes_data_of_the_run_itself) {
    TextRun run(std::string("abc"));
    run.Insert(run.Retrieve(), 1, 0);
    EXPECT_EQ("aabcbc", Sound(run));
    run.Insert(run.Retrieve() + 3, 0, 1, 2);
    EXPECT_EQ("cbbcbc", Sound(run));
    run.Insert(run.Retrieve() + 4, 6, 0);
    EXPECT_EQ("cbbcbcbc", Sound(run));
}

TEST(RunTruncate, removes_the_last_elements) {
    TextRun run(std::string("abcde"));
    run.Truncate(2);
    EXPECT_EQ("abc", Sound(run));
    run.Truncate(1);
    EXPECT_EQ("ab", Sound(run));
    ByteRun bytes(AsBytes("abc"));
    bytes.Truncate(1);
    EXPECT_EQ("ab", Sound(bytes));
}

TEST(RunTruncate, of_nothing_changes_nothing) {
    TextRun run(std::string("abc"));
    char const *const before = run.Retrieve();
    run.Truncate(0);
    EXPECT_EQ("abc", Sound(run));
    EXPECT_EQ(before, run.Retrieve());
}

TEST(RunTruncate, of_all_acts_as_empty) {
    TextRun run(5);
    run.Append("abc");
    run.Truncate(3);
    EXPECT_EQ(0u, run.RetrieveSize());
    EXPECT_EQ(5u, run.BlockLength());
    EXPECT_EQ(std::string(5, '\0'), std::string(run.Retrieve(), 5));
    run.Truncate(0); // all that there is
    EXPECT_EQ(5u, run.BlockLength());
}

TEST(RunTruncate, of_more_than_there_is_throws_and_changes_nothing) {
    TextRun run(std::string("abc"));
    EXPECT_TRUE(IsOutOfRange([&] { run.Truncate(4); }, "4:3", "UtilsVector"));
    EXPECT_TRUE(IsOutOfRange([&] { run.TruncateAtPosition(5, 0); }, "5:3", "UtilsVector"));
    EXPECT_EQ("abc", Sound(run));
    TextRun empty;
    EXPECT_TRUE(IsOutOfRange([&] { empty.Truncate(1); }, "1:0", "UtilsVector"));
    EXPECT_TRUE(IsOutOfRange([&] { empty.TruncateAtPosition(1, 1); }, "1:0", "UtilsVector"));
    ByteRun bytes(AsBytes("ab"));
    EXPECT_TRUE(IsOutOfRange([&] { bytes.Truncate(3); }, "3:2", "UtilsVector"));
    EXPECT_EQ("ab", Sound(bytes));
}

TEST(RunTruncateAtPosition, removes_elements_from_a_position) {
    EXPECT_EQ("ac", Cut("abc", 1, 1));
    EXPECT_EQ("bc", Cut("abc", 1, 0));
    EXPECT_EQ("ab", Cut("abc", 1, 2));
    EXPECT_EQ("af", Cut("abcdef", 4, 1));
    EXPECT_EQ("abc", Cut("abc", 0, 1));
    EXPECT_EQ("abc", Cut("abc", 0, 9));
}

TEST(RunTruncateAtPosition, counts_what_lies_behind_the_end_as_removed) {
    EXPECT_EQ("a", Cut("abc", 2, 2));
    EXPECT_EQ("ab", Cut("abc", 1, 3));
    EXPECT_EQ("abc", Cut("abcdef", 3, 5));
    EXPECT_EQ("a", Cut("abc", 2, farAway));
    EXPECT_EQ("a", Cut("abc", 2, farAway - 1));
}

TEST(RunTruncateAtPosition, of_all_acts_as_empty) {
    TextRun run(4);
    run.Append("abcdef");
    run.TruncateAtPosition(6, 3);
    EXPECT_EQ(0u, run.RetrieveSize());
    EXPECT_EQ(4u, run.BlockLength());
    EXPECT_EQ(std::string(4, '\0'), std::string(run.Retrieve(), 4));
    run.TruncateAtPosition(0, 0);
    EXPECT_EQ(4u, run.BlockLength());
}

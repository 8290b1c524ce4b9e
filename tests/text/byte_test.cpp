// Runs of bytes: making them, their data, and changes of it.
#include "open_string.h"

#include <gtest/gtest.h>

#include "fault_text.h"

using UTILS::MemObject;
using UTILS::UtilsAllocator;
using UTILS::UtilsByte;

namespace {

using DataRun = MemObject<unsigned char>;

std::string const withNul("a\0b\0", 4);

void Fill(DataRun &run, std::string const &content) {
    if (!content.empty())
        run.Append(AsData(content), SizeOf(content));
}

UtilsByte Bytes(std::string const &content) {
    return content.empty() ? UtilsByte() : UtilsByte(AsData(content), SizeOf(content));
}

} // namespace

TEST(Bytes, Fresh_ones_are_none) {
    OpenByte const bytes;
    EXPECT_EQ(0u, bytes.size());
    EXPECT_EQ(1, !bytes);
    EXPECT_EQ(0u, bytes.findIndex);
    EXPECT_EQ(1u, bytes.stringCount);
    EXPECT_EQ(0, bytes.GetMatchStyle());
    EXPECT_EQ(1, bytes.GetCase());
}

TEST(Bytes, Are_made_from_data_with_a_size) {
    EXPECT_EQ(withNul, BytesOf(UtilsByte(AsData(withNul), 4)));
    EXPECT_EQ("a", BytesOf(UtilsByte(AsData("abc"), 1)));
    EXPECT_EQ("a", BytesOf(UtilsByte(AsData("abc"), 0))); // that counts as one
    EXPECT_EQ("", BytesOf(UtilsByte(nullptr, 7)));
    EXPECT_EQ("", BytesOf(UtilsByte(nullptr, 0)));
}

TEST(Bytes, Are_made_from_a_run) {
    DataRun run, empty;
    Fill(run, withNul);
    EXPECT_EQ(withNul, BytesOf(UtilsByte(run)));
    EXPECT_EQ("", BytesOf(UtilsByte(empty)));
}

TEST(Bytes, A_copy_has_all_but_the_last_replacement) {
    OpenByte bytes(AsData(withNul), 4);
    bytes.findIndex = 3;
    bytes.lastReplaceIndex = 5;
    bytes.SetCase(0);
    bytes.SetMatchStyle(1);
    OpenByte assigned;
    assigned.lastReplaceIndex = 9;
    EXPECT_EQ(&assigned, &(assigned = static_cast<UtilsByte const &>(bytes)));
    EXPECT_EQ(withNul, BytesOf(assigned));
    EXPECT_EQ(3u, assigned.findIndex);
    EXPECT_EQ(9u, assigned.lastReplaceIndex);
    EXPECT_EQ(0, assigned.GetCase());
    EXPECT_EQ(1, assigned.GetMatchStyle());
    UtilsByte copy(bytes);
    EXPECT_EQ(withNul, BytesOf(copy));
    EXPECT_EQ(0, copy.GetCase());
    copy[0] = 'x';
    EXPECT_EQ(withNul, BytesOf(bytes));
    UtilsByte const &same = assigned;
    assigned = same;
    EXPECT_EQ(withNul, BytesOf(assigned));
}

TEST(Bytes, A_run_or_block_assigned_replaces_the_data_only) {
    DataRun run, empty;
    Fill(run, "run");
    UtilsAllocator<unsigned char> block(3);
    block.CopyMem(AsData("xyz"), 3);
    OpenByte bytes(AsData("old"), 3);
    bytes.findIndex = 7;
    bytes.SetCase(0);
    bytes = run;
    EXPECT_EQ("run", BytesOf(bytes));
    bytes = block;
    EXPECT_EQ("xyz", BytesOf(bytes));
    bytes = empty;
    EXPECT_EQ("", BytesOf(bytes));
    EXPECT_EQ(7u, bytes.findIndex);
    EXPECT_EQ(0, bytes.GetCase());
}

TEST(Bytes, Have_their_data_under_many_names) {
    UtilsByte bytes = Bytes(withNul);
    UtilsByte const &fixed = bytes;
    unsigned char *const data = bytes.Retrieve();
    EXPECT_EQ(data, bytes.GetString());
    EXPECT_EQ(data, bytes.c_str());
    EXPECT_EQ(data, bytes.operator unsigned char *());
    EXPECT_EQ(data, fixed.operator unsigned char const *());
    EXPECT_EQ(data, &bytes[0]);
    EXPECT_EQ(data + 2, &fixed[2]);
    EXPECT_EQ(data + 3, &bytes.RetrieveByte(3));
    bytes[2] = 'c';
    EXPECT_EQ(std::string("a\0c\0", 4), BytesOf(bytes));
}

TEST(Bytes, Have_a_size_that_no_NUL_ends) {
    UtilsByte const bytes = Bytes(withNul);
    EXPECT_EQ(4u, bytes.size());
    EXPECT_EQ(4u, bytes.length());
    EXPECT_EQ(4u, bytes.strlen());
    EXPECT_EQ(0, !bytes);
}

TEST(Bytes, Keep_NULs_that_are_appended) {
    UtilsByte bytes;
    EXPECT_EQ(&bytes, &bytes.Append(AsData(withNul), 4));
    EXPECT_EQ(4u, bytes.size());
    EXPECT_EQ(withNul, BytesOf(bytes));
}

TEST(Bytes, Are_appended_in_each_form) {
    DataRun run;
    Fill(run, std::string("\0r", 2));
    UtilsByte bytes = Bytes("x");
    bytes.Append(run)
        .Append(Bytes("b"))
        .Append(static_cast<unsigned char>(0))
        .Append(AsData("pq"), 2);
    EXPECT_EQ(std::string("x\0rb\0pq", 7), BytesOf(bytes));
    UtilsByte added = Bytes("x");
    added += run;
    added += Bytes("b");
    added += static_cast<unsigned char>(255);
    EXPECT_EQ(std::string("x\0rb\xff", 5), BytesOf(added));
}

TEST(Bytes, A_pointer_added_is_one_byte) {
    UtilsByte bytes = Bytes("x");
    bytes += AsData("abc");
    EXPECT_EQ("xa", BytesOf(bytes));
    bytes.Append(AsData("bcd"), 0);
    EXPECT_EQ("xab", BytesOf(bytes));
}

TEST(Bytes, Nothing_appended_or_put_in_adds_nothing) {
    DataRun const empty;
    UtilsByte bytes = Bytes("x");
    bytes += empty;
    bytes += UtilsByte();
    bytes.Append(nullptr, 4);
    bytes.Insert(empty, 0);
    bytes.Insert(UtilsByte(), 0);
    bytes.Replace(empty, 0);
    bytes.Replace(UtilsByte(), 0);
    EXPECT_EQ("x", BytesOf(bytes));
}

TEST(Bytes, Their_own_data_can_be_appended) {
    UtilsByte bytes = Bytes("ab");
    bytes += bytes;
    bytes.Append(bytes.Retrieve() + 1, 2);
    EXPECT_EQ("ababba", BytesOf(bytes));
}

TEST(Bytes, Are_put_in_or_over_what_is_there) {
    DataRun run;
    Fill(run, std::string("\0r", 2));
    UtilsByte bytes = Bytes("1234");
    bytes.Insert(AsData(withNul), 3, 1);
    EXPECT_EQ(std::string("1a\0b234", 7), BytesOf(bytes));
    bytes.Insert(run, 0);
    EXPECT_EQ(std::string("\0r1a\0b234", 9), BytesOf(bytes));
    bytes.Insert(Bytes("!"), 9);
    EXPECT_EQ(std::string("\0r1a\0b234!", 10), BytesOf(bytes));
    bytes.Replace(AsData("xyz"), 3, 0);
    bytes.Replace(run, 3);
    bytes.Replace(Bytes("89012"), 8);
    EXPECT_EQ(std::string("xyz\0rb2389", 10), BytesOf(bytes));
    bytes.Insert(AsData("abc"), 0, 0); // one byte
    EXPECT_EQ(std::string("axyz\0rb2389", 11), BytesOf(bytes));
    bytes.Replace(AsData("bcd"), 0, 0);
    EXPECT_EQ(std::string("bxyz\0rb2389", 11), BytesOf(bytes));
}

TEST(Bytes, Put_in_behind_the_end_do_not_enter) {
    UtilsByte bytes = Bytes("12");
    bytes.Insert(AsData("ab"), 2, 3);
    EXPECT_EQ(std::string("12\0\0", 4), BytesOf(bytes));
}

TEST(Bytes, None_can_be_put_over_none) {
    UtilsByte bytes;
    auto const replace = [&] { bytes.Replace(AsData("a"), 1, 0); };
    EXPECT_TRUE(AllocatorRefuses(replace, zeroSize, "0"));
    EXPECT_EQ("", BytesOf(bytes));
    bytes.Insert(AsData("ab"), 2, 0);
    EXPECT_EQ("ab", BytesOf(bytes));
}

TEST(Bytes, Can_be_cut) {
    UtilsByte bytes = Bytes("abcdef");
    bytes.TruncateString(1);
    EXPECT_EQ("abcde", BytesOf(bytes));
    bytes.TruncateStringAtPosition(2, 1);
    EXPECT_EQ("ade", BytesOf(bytes));
    EXPECT_EQ(&bytes, &--bytes);
    EXPECT_EQ(&bytes, &bytes--);
    EXPECT_EQ("a", BytesOf(bytes));
    EXPECT_TRUE(IsOutOfRange([&] { bytes.TruncateString(2); }, "2:1", "UtilsVector"));
    EXPECT_TRUE(IsOutOfRange([&] { bytes.TruncateStringAtPosition(2, 0); }, "2:1", "UtilsVector"));
    --bytes;
    EXPECT_EQ(0u, bytes.size());
    EXPECT_TRUE(IsOutOfRange([&] { --bytes; }, "1:0", "UtilsVector"));
    EXPECT_TRUE(IsOutOfRange([&] { bytes--; }, "1:0", "UtilsVector"));
}

TEST(Bytes, Can_be_emptied) {
    UtilsByte bytes = Bytes("abc"), other = Bytes("abc");
    bytes.Erase();
    other.EraseData();
    EXPECT_EQ(0u, bytes.size());
    EXPECT_EQ(0u, other.size());
}

TEST(Bytes, Can_be_reversed) {
    UtilsByte bytes = Bytes(withNul);
    bytes.Reverse();
    EXPECT_EQ(std::string("\0b\0a", 4), BytesOf(bytes));
    UtilsByte none;
    EXPECT_TRUE(AllocatorRefuses([&] { none.Reverse(); }, invalidArgument, "0"));
}

TEST(Bytes, Are_sorted_by_unsigned_value) {
    UtilsByte bytes = Bytes(std::string("b\xff"
                                        "A\0\x80z",
                                        6));
    bytes.Sort();
    EXPECT_EQ(std::string("\0Abz\x80\xff", 6), BytesOf(bytes));
    UtilsByte none;
    none.Sort();
    EXPECT_EQ(0u, none.size());
}

TEST(Bytes, Scrambled_ones_come_back_by_the_same_key) {
    UtilsByte bytes = Bytes(withNul);
    bytes.XORData(255);
    EXPECT_EQ("\x9e\xff\x9d\xff", BytesOf(bytes));
    bytes.XORData(255);
    EXPECT_EQ(withNul, BytesOf(bytes));
    bytes.EncryptData(Bytes(std::string("\1\0\2", 3)));
    EXPECT_EQ(std::string("`\0`\1", 4), BytesOf(bytes));
    UtilsByte none;
    none.XORData(1);
    none.EncryptData(none);
    EXPECT_EQ(0u, none.size());
}

TEST(Bytes, Name_their_class) {
    EXPECT_STREQ("class UTILS::UtilsByte", UtilsByte().derived_class());
    EXPECT_STREQ("class OpenByte", OpenByte().derived_class());
}

TEST(Bytes, Have_case_hooks_of_their_own) {
    UtilsByte const bytes;
    for (int value = 0; value < 256; ++value) {
        auto const byte = static_cast<unsigned char>(value);
        EXPECT_EQ(value >= 65 && value <= 90, bytes.isupper(byte) != 0) << value;
        EXPECT_EQ(value >= 97 && value <= 122, bytes.islower(byte) != 0) << value;
        EXPECT_EQ(static_cast<unsigned char>(value - 32), bytes.utoupper(byte)) << value;
        EXPECT_EQ(static_cast<unsigned char>(value + 32), bytes.utolower(byte)) << value;
    }
}

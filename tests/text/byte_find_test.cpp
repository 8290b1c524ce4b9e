// Comparisons, finds, pieces and replacements of bytes.
#include "open_string.h"

#include <gtest/gtest.h>

#include "fault_text.h"

using UTILS::MemObject;
using UTILS::NOT_FOUND_INDEX;
using UTILS::UtilsByte;
using Texts = std::vector<std::string>;

namespace {

using DataRun = MemObject<unsigned char>;

std::string const nul(1, '\0');

UtilsByte Bytes(std::string const &content) {
    return content.empty() ? UtilsByte() : UtilsByte(AsData(content), SizeOf(content));
}

template <class X>
void ExpectOrder(UtilsByte const &bytes, X const &other, int order, int exchanged) {
    EXPECT_EQ(order, bytes.Compare(other));
    EXPECT_EQ(exchanged, bytes.FriendCompare(other));
    EXPECT_EQ(order == 0, bytes == other);
    EXPECT_EQ(order != 0, bytes != other);
    EXPECT_EQ(order < 0, bytes < other);
    EXPECT_EQ(order <= 0, bytes <= other);
    EXPECT_EQ(order > 0, bytes > other);
    EXPECT_EQ(order >= 0, bytes >= other);
}

void ExpectOrder(std::string const &a, std::string const &b, int order) {
    UtilsByte const bytes = Bytes(a);
    DataRun run;
    if (!b.empty())
        run.Append(AsData(b), SizeOf(b));
    ExpectOrder(bytes, Bytes(b), order, -order);
    ExpectOrder(bytes, run, order, -order);
    EXPECT_EQ(order, bytes.Compare(AsData(b), SizeOf(b)));
    EXPECT_EQ(-order, bytes.FriendCompare(AsData(b), SizeOf(b)));
}

Texts Pieces(std::string const &content, std::string const &separator) {
    Texts pieces;
    UtilsByte bytes = Bytes(content), piece;
    unsigned long const size = SizeOf(separator);
    for (int more = bytes.ParseFirstByteString(AsData(separator), size, piece);
         more && pieces.size() < 20;
         more = bytes.ParseNextByteString(AsData(separator), size, piece))
        pieces.push_back(BytesOf(piece));
    EXPECT_EQ(0u, piece.size());
    return pieces;
}

int Replace(UtilsByte &bytes, std::string const &find, std::string const &with,
            int (UtilsByte::*how)(unsigned char const *, unsigned long, unsigned char const *,
                                  unsigned long)) {
    return (bytes.*how)(AsData(find), SizeOf(find), AsData(with), SizeOf(with));
}

} // namespace

TEST(ByteCompare, Is_over_unsigned_values) {
    ExpectOrder("abc", "abc", 0);
    ExpectOrder("abc", "abd", -1);
    ExpectOrder("\x80", "\x7f", 1);
    ExpectOrder("\xff", "\x80", 1);
    ExpectOrder(nul + "b", nul + "a", 1);
}

TEST(ByteCompare, The_shorter_of_equal_ones_is_less) {
    ExpectOrder("ab", "abc", -1);
    ExpectOrder("ab", "ab" + nul, -1);
    ExpectOrder("abc", "ab", 1);
    ExpectOrder("b", "abc", 1);
}

TEST(ByteCompare, A_size_of_zero_counts_as_one) {
    EXPECT_EQ(0, Bytes("a").Compare(AsData("abc"), 0));
    EXPECT_EQ(-1, Bytes("a").Compare(AsData("bcd"), 0));
    EXPECT_EQ(0, Bytes("a").FriendCompare(AsData("abc"), 0));
}

TEST(ByteCompare, No_bytes_count_as_one_that_is_zero) {
    ExpectOrder("", "", 0);
    ExpectOrder("", nul, 0);
    ExpectOrder("", nul + nul, -1);
    ExpectOrder("a", "", 1);
}

TEST(ByteCompare, Can_be_blind_to_case) {
    UtilsByte bytes = Bytes("aBc_");
    EXPECT_NE(0, bytes.Compare(Bytes("AbC_")));
    bytes.SetCase(0);
    EXPECT_EQ(0, bytes.Compare(Bytes("AbC_")));
    EXPECT_EQ(-1, bytes.Compare(Bytes("AbCd"))); // "_" moves in front of the letters
    EXPECT_EQ(1, Bytes("_").Compare(Bytes("D")));
}

TEST(ByteCompare, With_the_match_style_one_that_holds_the_other_is_equal) {
    UtilsByte bytes = Bytes("x" + nul + "y");
    bytes.SetMatchStyle(1);
    EXPECT_TRUE(bytes == Bytes(nul + "y"));
    EXPECT_TRUE(bytes == Bytes("ax" + nul + "y"));
    EXPECT_FALSE(bytes < Bytes(nul + "y"));
    EXPECT_FALSE(bytes == Bytes("yy"));
    bytes.SetMatchStyle(0);
    EXPECT_FALSE(bytes == Bytes(nul + "y"));
}

TEST(ByteFind, Goes_from_occurrence_to_occurrence) {
    OpenByte bytes(AsData("a\0b\0c\0"), 6);
    unsigned long index = 9;
    EXPECT_EQ(1, bytes.FindFirst(AsData(nul), 1, index));
    EXPECT_EQ(1u, index);
    EXPECT_EQ(1, bytes.FindNext(AsData(nul), 1, index));
    EXPECT_EQ(3u, index);
    EXPECT_EQ(1, bytes.FindNext(AsData(nul), 1, index));
    EXPECT_EQ(5u, index);
    EXPECT_EQ(0, bytes.FindNext(AsData(nul), 1, index));
    EXPECT_EQ(NOT_FOUND_INDEX, index);
    EXPECT_EQ(3u, bytes.findIndex);
    EXPECT_EQ(1, bytes.Search(AsData("b\0"), 2, 0));
    EXPECT_EQ(0, bytes.Search(AsData("b\0"), 2, 1));
    EXPECT_EQ(3u, bytes.findIndex);
    EXPECT_EQ(1, bytes.FindAll(AsData(nul), 1));
    EXPECT_EQ(0u, bytes.findIndex);
    EXPECT_EQ(0, bytes.FindAll(AsData("z"), 1));
    EXPECT_EQ(0, bytes.FindFirst(AsData("a\0b\0c\0d"), 7, index));
    EXPECT_EQ(0u, index); // longer than the data
}

TEST(ByteFind, Ends_at_the_end_of_the_data) {
    UtilsByte bytes = Bytes("xab");
    unsigned long index = 0;
    EXPECT_EQ(0, bytes.FindFirst(AsData("abc"), 3, index));
    EXPECT_EQ(0, bytes.FindFirst(AsData("b\0"), 2, index)); // there is no terminator
    EXPECT_EQ(1, bytes.FindFirst(AsData("ab"), 2, index));
}

TEST(ByteFind, Is_blind_to_case_if_the_object_is) {
    UtilsByte bytes = Bytes("xABC");
    unsigned long index = 0;
    EXPECT_EQ(0, bytes.FindFirst(AsData("abc"), 3, index));
    bytes.SetCase(0);
    EXPECT_EQ(1, bytes.FindFirst(AsData("abc"), 3, index));
    EXPECT_EQ(1u, index);
}

TEST(ByteFind, A_size_of_zero_counts_as_one) {
    UtilsByte bytes = Bytes("xab");
    unsigned long index = 0;
    EXPECT_EQ(1, bytes.FindFirst(AsData("a?"), 0, index));
    EXPECT_EQ(1u, index);
}

TEST(ByteFind, Shares_its_cursor_with_the_pieces) {
    OpenByte bytes(AsData("a,b,c,"), 6);
    unsigned long index = 0;
    EXPECT_EQ(1, bytes.FindFirst(AsData(","), 1, index));
    EXPECT_EQ(1, bytes.FindNext(AsData(","), 1, index));
    EXPECT_EQ(1, bytes.FindNext(AsData(","), 1, index));
    EXPECT_EQ(5u, index);
    bytes.ParseReset();
    EXPECT_EQ(1, bytes.FindNext(AsData(","), 1, index));
    EXPECT_EQ(3u, index); // occurrence 1 again
    UtilsByte piece;
    EXPECT_EQ(1, bytes.ParseNextByteString(AsData(","), 1, piece));
    EXPECT_EQ("c", BytesOf(piece)); // number 2
    bytes.ParseFirstByteString(AsData(","), 1, piece);
    EXPECT_EQ(0u, bytes.findIndex);
    for (auto const reset : {&UtilsByte::FindReset, &UtilsByte::ReplaceReset}) {
        bytes.findIndex = 5;
        (bytes.*reset)();
        EXPECT_EQ(0u, bytes.findIndex);
    }
}

TEST(ByteParse, Gives_exactly_the_pieces) {
    EXPECT_EQ((Texts{"a" + nul, nul + "b", "c"}), Pieces("a" + nul + "," + nul + "b,c", ","));
    EXPECT_EQ((Texts{"ab", "c"}), Pieces("ab" + nul + "c", nul));
    EXPECT_EQ((Texts{"a", ",b"}), Pieces("a,,b", ","));
    EXPECT_EQ((Texts{"", ",b", "c"}), Pieces(",b,c", ","));
    EXPECT_EQ((Texts{"ab", ""}), Pieces("ab,", ","));
}

TEST(ByteParse, Finds_nothing_without_a_separator) {
    EXPECT_EQ(Texts{}, Pieces("abc", ","));
    EXPECT_EQ(Texts{}, Pieces("", ","));
}

TEST(ByteParse, Gives_a_piece_by_its_number) {
    UtilsByte const bytes = Bytes("a,b,c");
    UtilsByte piece = Bytes("old");
    EXPECT_EQ(1, bytes.ParseByteString(AsData(","), 1, piece, 2));
    EXPECT_EQ("c", BytesOf(piece));
    EXPECT_EQ(1, bytes.ParseByteString(AsData(",?"), 0, piece, 1)); // one byte
    EXPECT_EQ("b", BytesOf(piece));
    EXPECT_EQ(0, bytes.ParseByteString(AsData(","), 1, piece, 3));
    EXPECT_EQ("", BytesOf(piece));
}

TEST(ByteParse, Puts_no_terminator_into_a_buffer) {
    UtilsByte bytes = Bytes("ab,c");
    unsigned char out[] = "12345";
    EXPECT_EQ(1, bytes.ParseFirstByteString(AsData(","), 1, out));
    EXPECT_STREQ("ab345", reinterpret_cast<char *>(out));
    EXPECT_EQ(1, bytes.ParseNextByteString(AsData(","), 1, out));
    EXPECT_STREQ("cb345", reinterpret_cast<char *>(out));
    EXPECT_EQ(0, bytes.ParseNextByteString(AsData(","), 1, out));
    EXPECT_EQ(1, bytes.ParseByteString(AsData(","), 1, out, 0));
    EXPECT_STREQ("ab345", reinterpret_cast<char *>(out));
}

TEST(ByteParse, Is_exact_whatever_the_case_setting) {
    UtilsByte bytes = Bytes("1X2x3");
    bytes.SetCase(0);
    UtilsByte piece;
    EXPECT_EQ(1, bytes.ParseFirstByteString(AsData("x"), 1, piece));
    EXPECT_EQ("1X2", BytesOf(piece));
    EXPECT_EQ(1, bytes.ParseNextByteString(AsData("x"), 1, piece));
    EXPECT_EQ("3", BytesOf(piece));
    unsigned char out[] = "12345";
    EXPECT_EQ(1, bytes.ParseFirstByteString(AsData("x"), 1, out));
    EXPECT_STREQ("1X245", reinterpret_cast<char *>(out));
    bytes.SetCase(9); // not even one that is none
    EXPECT_EQ(1, bytes.ParseFirstByteString(AsData("x"), 1, piece));
}

TEST(ByteParse, May_have_the_object_itself_as_target) {
    UtilsByte bytes = Bytes("a,bc");
    EXPECT_EQ(1, bytes.ParseByteString(AsData(","), 1, bytes, 1));
    EXPECT_EQ("bc", BytesOf(bytes));
}

TEST(ByteReplace, The_first_is_replaced_by_data_of_any_size) {
    OpenByte bytes(AsData("a-b-c"), 5);
    EXPECT_EQ(1, Replace(bytes, "-", nul, &UtilsByte::ReplaceFirst));
    EXPECT_EQ("a" + nul + "b-c", BytesOf(bytes));
    EXPECT_EQ(1u, bytes.lastReplaceIndex);
    EXPECT_EQ(1, Replace(bytes, "-", nul + nul, &UtilsByte::ReplaceNext));
    EXPECT_EQ("a" + nul + "b" + nul + nul + "c", BytesOf(bytes));
    EXPECT_EQ(3u, bytes.lastReplaceIndex);
    EXPECT_EQ(0, Replace(bytes, "-", "x", &UtilsByte::ReplaceNext));
    EXPECT_EQ(0, Replace(bytes, "-", "x", &UtilsByte::ReplaceFirst));
}

TEST(ByteReplace, A_pattern_as_long_as_the_data_replaces_all_of_it) {
    UtilsByte bytes = Bytes("xyz");
    EXPECT_EQ(0, Replace(bytes, "abc", "q", &UtilsByte::ReplaceNext));
    EXPECT_EQ(1, Replace(bytes, "abc", "q" + nul, &UtilsByte::ReplaceFirst));
    EXPECT_EQ("q" + nul, BytesOf(bytes));
}

TEST(ByteReplace, All_are_replaced) {
    OpenByte bytes(AsData("a\0b\0c"), 5);
    bytes.findIndex = 4;
    EXPECT_EQ(1, Replace(bytes, nul, "--", &UtilsByte::ReplaceAll));
    EXPECT_EQ("a--b--c", BytesOf(bytes));
    EXPECT_EQ(0u, bytes.findIndex);
    EXPECT_EQ(0, Replace(bytes, nul, "--", &UtilsByte::ReplaceAll));
    bytes = Bytes("axa");
    EXPECT_EQ(1, Replace(bytes, "a", "aa", &UtilsByte::ReplaceAll));
    EXPECT_EQ("aaxa", BytesOf(bytes));
    bytes.SetCase(0);
    EXPECT_EQ(1, Replace(bytes, "X", "-", &UtilsByte::ReplaceAll));
    EXPECT_EQ("aa-a", BytesOf(bytes));
}

TEST(ByteReplace, A_size_of_zero_counts_as_one_byte) {
    for (auto const how : {&UtilsByte::ReplaceFirst, &UtilsByte::ReplaceAll}) {
        UtilsByte bytes = Bytes("a-b");
        EXPECT_EQ(1, (bytes.*how)(AsData("-?"), 0, AsData("+?"), 0));
        EXPECT_EQ("a+b", BytesOf(bytes));
        EXPECT_EQ(1, (bytes.*how)(AsData("a+b"), 3, AsData("q?"), 0));
        EXPECT_EQ("q", BytesOf(bytes));
    }
}

TEST(ByteReplace, Null_data_takes_what_is_found_away) {
    for (auto const how : {&UtilsByte::ReplaceFirst, &UtilsByte::ReplaceAll}) {
        UtilsByte bytes = Bytes("a-b");
        EXPECT_EQ(1, (bytes.*how)(AsData("-"), 1, nullptr, 0));
        EXPECT_EQ("ab", BytesOf(bytes));
        EXPECT_EQ(1, (bytes.*how)(AsData("ab"), 2, nullptr, 0));
        EXPECT_EQ("", BytesOf(bytes));
    }
}

TEST(ByteReplace, Takes_parts_of_the_data_itself) {
    UtilsByte bytes = Bytes("a-b");
    EXPECT_EQ(1, bytes.ReplaceAll(AsData("-"), 1, bytes.Retrieve() + 2, 1));
    EXPECT_EQ("abb", BytesOf(bytes));
    EXPECT_EQ(1, bytes.ReplaceAll(bytes.Retrieve() + 2, 1, AsData("xy"), 2));
    EXPECT_EQ("axyxy", BytesOf(bytes));
    EXPECT_EQ(1, bytes.ReplaceFirst(AsData("12345"), 5, bytes.Retrieve() + 3, 2));
    EXPECT_EQ("xy", BytesOf(bytes));
}

// Lists compared by their entries.
#include "list_text.h"

#include <gtest/gtest.h>

using lists::Compare;
using lists::EntryBefore;

namespace {

using Lines = std::vector<std::string>;

void ExpectAlike(std::string_view first, std::string_view second) {
    auto const difference = Compare(first, second);
    EXPECT_EQ(Lines{}, difference.onlyInFirst);
    EXPECT_EQ(Lines{}, difference.onlyInSecond);
}

} // namespace

TEST(ListCompare, Each_side_has_what_the_other_lacks) {
    auto const difference = Compare("%SystemDir%\\a\r\n%SystemDir%\\b\r\n%SystemDir%\\c\r\n",
                                    "%SystemDir%\\d\r\n%SystemDir%\\b\r\n");
    EXPECT_EQ((Lines{"%SystemDir%\\a", "%SystemDir%\\c"}), difference.onlyInFirst);
    EXPECT_EQ(Lines{"%SystemDir%\\d"}, difference.onlyInSecond);
}

TEST(ListCompare, Order_makes_no_difference) { ExpectAlike("a\r\nb\r\n", "b\r\na\r\n"); }
TEST(ListCompare, Case_makes_no_difference) { ExpectAlike("HKLM\\aB\r\n", "hklm\\Ab\r\n"); }
TEST(ListCompare, Duplicates_make_no_difference) { ExpectAlike("a\r\nA\r\n", "a\r\n"); }
TEST(ListCompare, Line_ends_make_no_difference) { ExpectAlike("a\r\nb\r\n", "a\nb"); }
TEST(ListCompare, Blanks_around_make_no_difference) { ExpectAlike(" a\t\r\n", "a\r\n"); }
TEST(ListCompare, Empty_lines_make_no_difference) { ExpectAlike("a\r\n\r\nb\r\n", "a\r\nb\r\n"); }
TEST(ListCompare, Empty_texts_are_alike) { ExpectAlike("", "\r\n"); }

TEST(ListCompare, Runs_of_backslashes_make_no_difference) {
    ExpectAlike("HKLM\\\\A\\\r\n\\HKLM\\B\r\n", "HKLM\\A\r\nHKLM\\B\r\n");
}

TEST(ListCompare, Case_beyond_ASCII_makes_one) {
    EXPECT_EQ(Lines{"\xC3\x84"}, Compare("\xC3\x84\r\n", "\xC3\xA4\r\n").onlyInFirst);
}

TEST(ListCompare, Entries_keep_their_spelling) {
    EXPECT_EQ((Lines{"%SystemDir%\\aB\\\\c", "%SYSTEMDIR%\\B"}),
              Compare("%SYSTEMDIR%\\B\r\n%SystemDir%\\aB\\\\c\r\n", "").onlyInFirst);
}

TEST(ListOrder, Components_come_before_longer_names) {
    EXPECT_TRUE(EntryBefore("HKLM\\a", "HKLM\\a\\b"));
    EXPECT_TRUE(EntryBefore("HKLM\\a\\z", "HKLM\\a b"));
    EXPECT_TRUE(EntryBefore("HKLM\\a\\z", "HKLM\\a!"));
    EXPECT_FALSE(EntryBefore("HKLM\\a b", "HKLM\\a\\z"));
}

TEST(ListOrder, Case_counts_for_nothing) {
    EXPECT_TRUE(EntryBefore("HKLM\\a", "HKLM\\B"));
    EXPECT_FALSE(EntryBefore("HKLM\\A", "hklm\\a"));
    EXPECT_FALSE(EntryBefore("hklm\\a", "HKLM\\A"));
}

TEST(ListOrder, Bytes_above_127_come_last) { EXPECT_TRUE(EntryBefore("z", "\xE9")); }

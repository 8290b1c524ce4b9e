// Searches, sorts, replacements and splits of lists of strings.
#include "open_string.h"

#include <gtest/gtest.h>

#include "fault_text.h"

using UTILS::NOT_FOUND_INDEX;
using UTILS::UtilsString;
using UTILS::UtilsStringList;
using Texts = std::vector<std::string>;

namespace {

// A list with these strings in this order.
UtilsStringList Of(Texts const &texts) {
    UtilsStringList list;
    for (auto text = texts.rbegin(); text != texts.rend(); ++text)
        list.AddString(*text);
    return list;
}

Texts Split(Texts const &before, char const *text, char const *separator, int append, int sorted,
            int caseSetting = 1) {
    UtilsStringList list = Of(before);
    list.SplitData(UtilsString(text), UtilsString(separator), append, sorted, caseSetting);
    return TextsOf(list);
}

} // namespace

TEST(StringListSearch, Of_an_empty_list_finds_nothing) {
    UtilsStringList list;
    EXPECT_EQ(NOT_FOUND_INDEX, list.SearchList("a", 0, 0));
    EXPECT_EQ(NOT_FOUND_INDEX, list.SearchList("a", 1, 0));
    EXPECT_EQ(0xEFFFFFFFul, list.SearchList("a", 1, 7));
}

TEST(StringListSearch, By_looking_at_each_finds_the_first_whatever_the_occurrence) {
    UtilsStringList list = Of({"c", "b", "a", "b"});
    EXPECT_EQ(1u, list.SearchList("b", 0, 0));
    EXPECT_EQ(1u, list.SearchList("b", 0, 5));
    EXPECT_EQ(2u, list.SearchList("a", 0, 0));
    EXPECT_EQ(NOT_FOUND_INDEX, list.SearchList("z", 0, 0));
    EXPECT_EQ((Texts{"c", "b", "a", "b"}), TextsOf(list));
}

TEST(StringListSearch, By_bisection_sorts_and_counts_occurrences) {
    UtilsStringList list = Of({"c", "b", "a", "b"});
    EXPECT_EQ(1u, list.SearchList("b", 1, 0));
    EXPECT_EQ((Texts{"a", "b", "b", "c"}), TextsOf(list));
    EXPECT_EQ(2u, list.SearchList("b", 1, 1));
    EXPECT_EQ(NOT_FOUND_INDEX, list.SearchList("b", 1, 2));
    EXPECT_EQ(0u, list.SearchList("a", 1, 0));
    EXPECT_EQ(NOT_FOUND_INDEX, list.SearchList("a", 1, 1));
    EXPECT_EQ(NOT_FOUND_INDEX, list.SearchList("0", 1, 0));
    EXPECT_EQ(NOT_FOUND_INDEX, list.SearchList("bb", 1, 0));
    EXPECT_EQ(NOT_FOUND_INDEX, list.SearchList("z", 1, 0));
    EXPECT_TRUE(IsOutOfRange([&] { list.SearchList("c", 1, 1); }, "4:4", "UtilsList"));
}

TEST(StringListSearch, By_another_method_finds_nothing) {
    UtilsStringList list = Of({"c", "b"});
    EXPECT_EQ(NOT_FOUND_INDEX, list.SearchList("b", 2, 0));
    EXPECT_EQ((Texts{"c", "b"}), TextsOf(list));
}

TEST(StringListSearch, With_a_match_style_looks_at_each_for_one_that_holds_it) {
    UtilsStringList list = Of({"see", "abc", "bcd"});
    list.SetMatchStyle(1);
    EXPECT_EQ(1u, list.SearchList("bc", 1, 0));
    EXPECT_EQ(1u, list.SearchList("bc", 2, 0)); // whatever the method
    EXPECT_EQ(1u, list.SearchList("bc", 0, 1));
    EXPECT_EQ(2u, list.SearchList("xbcdx", 1, 0)); // or is held by it
    EXPECT_EQ(NOT_FOUND_INDEX, list.SearchList("ac", 1, 0));
    EXPECT_EQ((Texts{"see", "abc", "bcd"}), TextsOf(list)); // not sorted
}

TEST(StringListSearch, Is_blind_to_case_if_the_list_is) {
    UtilsStringList list = Of({"b", "A"});
    EXPECT_EQ(NOT_FOUND_INDEX, list.SearchList("a", 0, 0));
    list.SetCase(0);
    EXPECT_EQ(1u, list.SearchList("a", 0, 0));
    EXPECT_EQ(1u, list.SearchList("B", 1, 0));
    EXPECT_EQ((Texts{"A", "b"}), TextsOf(list));
}

TEST(StringListSearch, Counts_from_the_other_end_if_told_to) {
    UtilsStringList list = Of({"b", "a", "c"});
    list.SetSearchDirection(0);
    EXPECT_EQ(2u, list.SearchList("b", 0, 0));
    EXPECT_EQ(0u, list.SearchList("c", 0, 0));
}

TEST(StringListSearch, Of_a_string_finds_the_pattern_so_many_times) {
    UtilsStringList list = Of({"aXaYa", "b"});
    EXPECT_EQ(1, list.SearchListItem("a", 0, 7));
    EXPECT_EQ(1, list.SearchListItem("a", 2, 0));
    EXPECT_EQ(0, list.SearchListItem("a", 3, -1));
    EXPECT_EQ(0, list.SearchListItem("b", 0, 0));
    EXPECT_EQ(1, list.SearchListItem(1, "b", 0, 0));
    EXPECT_EQ(1u, list.GetCurrentString());
    EXPECT_EQ(1, list.SearchListItem("b", 0, 0));
    EXPECT_EQ(0, list.SearchListItem("", 0, 0));
}

TEST(StringListSearch, Of_a_string_goes_by_that_strings_case) {
    UtilsStringList list = Of({"ABC", "ABC"});
    list.RetrieveString(1)->SetCase(0);
    EXPECT_EQ(1, list.SearchListItem(1, "b", 0, 0));
    EXPECT_EQ(0, list.SearchListItem(0, "b", 0, 0));
}

TEST(StringListSort, Orders_the_strings) {
    for (unsigned const algorithm : {0u, 1u, 3u, 4u}) {
        UtilsStringList list = Of({"b", "_", "a", "B", "ab", "\x80", "A"});
        list.Sort(algorithm);
        EXPECT_EQ((Texts{"\x80", "A", "B", "_", "a", "ab", "b"}), TextsOf(list)) << algorithm;
    }
}

TEST(StringListSort, Is_blind_to_case_if_the_strings_are) {
    UtilsStringList list = Of({"b", "_", "A", "a1"});
    list.SetCase(0);
    list.Sort(0);
    EXPECT_EQ((Texts{"_", "A", "a1", "b"}), TextsOf(list));
}

TEST(StringListSort, By_no_algorithm_only_marks_the_list) {
    UtilsStringList list = Of({"b", "a"});
    list.Sort(7);
    list.Sort(1);
    EXPECT_EQ((Texts{"b", "a"}), TextsOf(list));
    list.AddString("c");
    list.Sort(1);
    EXPECT_EQ((Texts{"a", "b", "c"}), TextsOf(list));
}

TEST(StringListReplace, All_in_the_selected_string) {
    UtilsStringList list = Of({"a-b-c", "a-b-c"});
    list.SetCurrentString(1);
    EXPECT_EQ(1, list.ReplaceAllInCurrentString("-", "+", 0));
    EXPECT_EQ((Texts{"a-b-c", "a+b+c"}), TextsOf(list));
    EXPECT_EQ(0, list.ReplaceAllInCurrentString("-", "+", 1));
    EXPECT_EQ(1u, list.GetCurrentString());
}

TEST(StringListReplace, All_in_every_string_leaves_the_last_selected) {
    UtilsStringList list = Of({"a-b-c", "none", "-1-"});
    EXPECT_EQ(1, list.ReplaceAllInList("-", "+", 7));
    EXPECT_EQ((Texts{"a+b+c", "none", "+1+"}), TextsOf(list));
    EXPECT_EQ(2u, list.GetCurrentString());
    EXPECT_EQ(0, list.ReplaceAllInList("-", "+", 0));
}

TEST(StringListReplace, One_of_the_length_of_a_string_replaces_all_of_it) {
    UtilsStringList list = Of({"ab", "x", "y-"});
    EXPECT_EQ(1, list.ReplaceAllInList("-", "+", 0));
    EXPECT_EQ((Texts{"ab", "+", "y+"}), TextsOf(list));
}

TEST(StringListSplit, Of_pieces_added_the_last_is_first) {
    EXPECT_EQ((Texts{"y", "x"}), Split({}, "x;y", ";", 0, 0));
    EXPECT_EQ((Texts{"x", "y"}), Split({}, "x;y", ";", 0, 1));
    EXPECT_EQ((Texts{"x", "y", "z"}), Split({}, "z;y;x", ";", 0, 1));
}

TEST(StringListSplit, Pieces_take_the_place_of_the_strings) {
    EXPECT_EQ((Texts{"x", "y"}), Split({"1", "2"}, "x;y", ";", 0, 0));
    EXPECT_EQ((Texts{"x", "y"}), Split({"1", "2", "3", "4"}, "x;y", ";", 0, 0));
    // The third is added, and so comes in front.
    EXPECT_EQ((Texts{"z", "x", "y"}), Split({"1", "2"}, "x;y;z", ";", 0, 0));
}

TEST(StringListSplit, Twice_overwrites_and_drops_what_is_left) {
    UtilsStringList list;
    list.SplitData("a;b;c", ";", 0, 0, 1);
    EXPECT_EQ((Texts{"c", "b", "a"}), TextsOf(list));
    list.SplitData("x;y", ";", 0, 0, 1);
    EXPECT_EQ((Texts{"x", "y"}), TextsOf(list));
    EXPECT_EQ(2u, list.GetCurrentString()); // where the string was that went
}

TEST(StringListSplit, Appended_pieces_leave_the_strings) {
    EXPECT_EQ((Texts{"y", "x", "1", "2"}), Split({"1", "2"}, "x;y", ";", 1, 0));
    EXPECT_EQ((Texts{"1", "a", "b", "c"}), Split({"c", "1"}, "b;a", ";", 1, 1));
}

TEST(StringListSplit, Empty_pieces_are_left_out) {
    EXPECT_EQ((Texts{"b", "a"}), Split({}, "a;;b", ";", 0, 0));
    EXPECT_EQ((Texts{"b", "a"}), Split({}, ";a;b", ";", 0, 0));
    EXPECT_EQ((Texts{"1", "2"}), Split({"1", "2"}, ";", ";", 0, 0));
}

TEST(StringListSplit, A_text_of_nothing_changes_nothing) {
    EXPECT_EQ((Texts{"1", "2"}), Split({"1", "2"}, "", ";", 0, 0));
    EXPECT_EQ((Texts{"1", "2"}), Split({"1", "2"}, "a;b", "", 0, 0));
    EXPECT_EQ((Texts{"1", "2"}), Split({"1", "2"}, "", ";", 1, 1));
}

TEST(StringListSplit, A_text_without_separator_is_a_piece) {
    EXPECT_EQ(Texts{"x"}, Split({}, "x", ";", 0, 0));
    EXPECT_EQ((Texts{"x"}), Split({"1", "2"}, "x", ";", 0, 0));
}

TEST(StringListSplit, Tails_of_a_long_last_piece_are_further_strings) {
    EXPECT_EQ((Texts{"c", "ccc", "b", "a"}), Split({}, "a;b;ccc", ";", 0, 0));
    EXPECT_EQ((Texts{"c", "bc", "abc"}), Split({}, "abc", ";", 0, 0));
}

TEST(StringListSplit, Has_a_case_setting_of_its_own) {
    EXPECT_EQ((Texts{"2", "1"}), Split({}, "1X2", "x", 0, 0, 0));
    EXPECT_NE((Texts{"2", "1"}), Split({}, "1X2", "x", 0, 0, 1));
}

TEST(StringListSplit, Gives_its_strings_the_settings_of_the_list) {
    UtilsStringList list = Of({"1"});
    list.SetCase(0);
    list.SetMatchStyle(1);
    list.SplitData("x;y", ";", 0, 0, 1);
    for (unsigned long i = 0; i < 2; ++i) {
        EXPECT_EQ(0, list.RetrieveString(i)->GetCase());
        EXPECT_EQ(1, list.RetrieveString(i)->GetMatchStyle());
    }
}

TEST(StringListSplit, Splits_the_selected_string_by_default) {
    UtilsStringList list = Of({"a;b", "c;d"});
    list.SetCurrentString(1);
    list.SplitData(";", 1, 0, 1);
    EXPECT_EQ((Texts{"d", "c", "a;b", "c;d"}), TextsOf(list));
    list.SetCurrentString(2);
    list.SplitData(";", 0, 0, 1);
    EXPECT_EQ((Texts{"a", "b"}), TextsOf(list));
}

TEST(StringListSplit, Leaves_the_source_alone) {
    OpenString source("a;b");
    source.SetCursors(7);
    UtilsStringList list;
    list.SplitData(source, ";", 0, 0, 0);
    EXPECT_STREQ("a;b", source.c_str());
    EXPECT_EQ(1, source.GetCase());
    EXPECT_EQ(std::vector<unsigned long>(5, 7), source.Cursors());
}

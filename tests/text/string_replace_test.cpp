// Replacements and splits.
#include "open_string.h"

#include <gtest/gtest.h>

using UTILS::MemObject;
using UTILS::UtilsString;
using UTILS::WideString;
using Texts = std::vector<std::string>;

namespace {

// The text after ReplaceAll, and the result behind it.
std::string AllReplaced(char const *text, char const *find, char const *with, int caseMode = 1) {
    UtilsString string(text);
    string.SetCase(caseMode);
    int const result = string.ReplaceAll(find, with);
    return TextOf(string) + (result ? " yes" : " no");
}

// The strings after a split of a text into an object that holds "1", "2" and so on.
Texts Split(char const *text, char const *separator, unsigned long count, int append = 0) {
    UtilsString string("1");
    for (unsigned long i = 2; i <= count; ++i)
        string.AddString(std::to_string(i));
    UtilsString source(text);
    string.SplitData(source, separator, append);
    EXPECT_STREQ(text, source.c_str());
    return TextsOf(string);
}

} // namespace

TEST(StringReplace, The_first_is_replaced_by_a_text_of_any_length) {
    auto const replaced = [](char const *with) {
        UtilsString string("a-b-c");
        EXPECT_EQ(1, string.ReplaceFirst("-", with));
        return TextOf(string);
    };
    EXPECT_EQ("a+b-c", replaced("+"));
    EXPECT_EQ("a<=>b-c", replaced("<=>"));
    EXPECT_EQ("ab-c", replaced(""));
}

TEST(StringReplace, What_isnt_there_is_not_replaced) {
    OpenString string("abc");
    string.lastReplaceIndex = 9;
    EXPECT_EQ(0, string.ReplaceFirst("x", "y"));
    EXPECT_EQ(0, string.ReplaceFirst("abcd", "y"));
    EXPECT_EQ(0, string.ReplaceFirst("", "y"));
    EXPECT_EQ(0, string.ReplaceNext("x", "y"));
    EXPECT_EQ(0, string.ReplaceAll("x", "y"));
    EXPECT_STREQ("abc", string.c_str());
    EXPECT_EQ(9u, string.lastReplaceIndex);
}

TEST(StringReplace, A_pattern_as_long_as_the_text_replaces_all_of_it) {
    OpenString string("xyz");
    string.lastReplaceIndex = 9;
    EXPECT_EQ(1, string.ReplaceFirst("abc", "x"));
    EXPECT_STREQ("x", string.c_str());
    EXPECT_EQ(9u, string.lastReplaceIndex);
    EXPECT_EQ(1, string.ReplaceFirst("q", ""));
    EXPECT_STREQ("", string.c_str());
    EXPECT_EQ(1, string.ReplaceFirst("", "new"));
    EXPECT_STREQ("new", string.c_str());
    EXPECT_EQ(0, string.ReplaceNext("abc", "x")); // only the first is
    EXPECT_STREQ("new", string.c_str());
}

TEST(StringReplace, The_index_is_remembered) {
    OpenString string("ab-c-");
    EXPECT_EQ(1, string.ReplaceFirst("-", "+"));
    EXPECT_EQ(2u, string.lastReplaceIndex);
    EXPECT_EQ(1, string.ReplaceNext("-", "<>"));
    EXPECT_EQ(4u, string.lastReplaceIndex);
    EXPECT_STREQ("ab+c<>", string.c_str());
    EXPECT_EQ(0, string.ReplaceNext("-", "+"));
}

TEST(StringReplace, The_next_one_is_sought_from_the_start) {
    OpenString string("c-a");
    EXPECT_EQ(1, string.ReplaceFirst("c", "cc"));
    EXPECT_EQ(1, string.ReplaceNext("a", "x"));
    EXPECT_EQ(4 - 1u, string.lastReplaceIndex);
    EXPECT_EQ(1, string.ReplaceNext("c", "b"));
    EXPECT_STREQ("bc-x", string.c_str());
    EXPECT_EQ(0u, string.lastReplaceIndex);
}

TEST(StringReplace, The_next_one_is_not_made_where_the_last_was) {
    OpenString string("a-b");
    string.lastReplaceIndex = 1;
    EXPECT_EQ(0, string.ReplaceNext("-", "+"));
    EXPECT_STREQ("a-b", string.c_str());
    OpenString fresh("-ab");
    EXPECT_EQ(0, fresh.ReplaceNext("-", "+")); // nothing was replaced at 0, but none can tell
}

TEST(StringReplace, All_are_replaced) {
    EXPECT_EQ("a+b+c yes", AllReplaced("a-b-c", "-", "+"));
    EXPECT_EQ("abc yes", AllReplaced("a-b-c", "-", ""));
    EXPECT_EQ("a/b/c yes", AllReplaced("a--b--c", "--", "/"));
    EXPECT_EQ("abc no", AllReplaced("abc", "-", "+"));
    EXPECT_EQ(" yes", AllReplaced("ab", "xy", ""));
}

TEST(StringReplace, One_that_begins_with_the_pattern_is_made_once) {
    EXPECT_EQ("aaxa yes", AllReplaced("axa", "a", "aa"));
    EXPECT_EQ("axa yes", AllReplaced("axa", "a", "a"));
}

TEST(StringReplace, One_that_is_found_where_the_last_was_made_ends_it) {
    EXPECT_EQ("xab yes", AllReplaced("xaabbab", "ab", "")); // at 2, at 1, and at 1 again
    EXPECT_EQ("-a yes", AllReplaced("--a", "-", ""));
}

TEST(StringReplace, A_text_that_has_become_as_long_as_the_pattern_ends_it) {
    EXPECT_EQ("ab yes", AllReplaced("aabbab", "ab", ""));
}

TEST(StringReplace, All_leaves_the_find_cursor_at_zero) {
    OpenString string("a-b");
    string.findIndex = 5;
    EXPECT_EQ(1, string.ReplaceAll("-", "+"));
    EXPECT_EQ(0u, string.findIndex);
}

TEST(StringReplace, A_partial_match_hides_the_one_behind_it) {
    EXPECT_EQ("aaab no", AllReplaced("aaab", "aab", "x"));
}

TEST(StringReplace, Is_blind_to_case_if_the_object_is) {
    EXPECT_EQ("1X2x3 no", AllReplaced("1X2x3", "y", "-"));
    EXPECT_EQ("1X2-3 yes", AllReplaced("1X2x3", "x", "-"));
    EXPECT_EQ("1-2-3 yes", AllReplaced("1X2x3", "x", "-", 0));
}

TEST(StringReplace, Takes_each_form_of_text) {
    WideString const wideFind = Wide("-"), wideWith = Wide("<>");
    MemObject<char> runFind, runWith;
    runFind.Append("-", 1);
    runWith.Append("<>", 2);
    auto const check = [](auto const &find, auto const &with) {
        UtilsString string("a-b-c-d-e");
        EXPECT_EQ(1, string.ReplaceFirst(find, with));
        EXPECT_STREQ("a<>b-c-d-e", string.c_str());
        EXPECT_EQ(1, string.ReplaceNext(find, with));
        EXPECT_STREQ("a<>b<>c-d-e", string.c_str());
        EXPECT_EQ(1, string.ReplaceAll(find, with));
        EXPECT_STREQ("a<>b<>c<>d<>e", string.c_str());
    };
    check("-", "<>");
    check(std::string("-"), std::string("<>"));
    check(UtilsString("-"), UtilsString("<>"));
    check(runFind, runWith);
    check(wideFind, wideWith);
    check(wideFind.c_str(), wideWith.c_str());
}

TEST(StringReplace, Changes_the_selected_string_only) {
    UtilsString string("a-b", 3);
    string.SetCurrentString(1);
    EXPECT_EQ(1, string.ReplaceAll("-", "+"));
    EXPECT_EQ((Texts{"a-b", "a+b", "a-b"}), TextsOf(string));
}

TEST(StringReplace, Takes_parts_of_the_text_itself) {
    UtilsString string("a-b");
    EXPECT_EQ(1, string.ReplaceAll("-", string.c_str() + 2));
    EXPECT_STREQ("abb", string.c_str());
    EXPECT_EQ(1, string.ReplaceAll(string.c_str() + 2, "xy")); // "b"
    EXPECT_STREQ("axyxy", string.c_str());
    EXPECT_EQ(1, string.ReplaceAll(string, "z"));
    EXPECT_STREQ("z", string.c_str());
    EXPECT_EQ(1, string.ReplaceFirst("q", string));
    EXPECT_STREQ("z", string.c_str());
    UtilsString twice("a-a");
    EXPECT_EQ(1, twice.ReplaceFirst("-", twice));
    EXPECT_STREQ("aa-aa", twice.c_str());
}

TEST(StringSplit, Pieces_take_the_place_of_the_strings) {
    EXPECT_EQ((Texts{"a", "b", "c"}), Split("a,b,c", ",", 3));
    EXPECT_EQ((Texts{"a", "b", "c"}), Split("a,b,c", ",", 1));
    EXPECT_EQ((Texts{"a", "b"}), Split("a--b", "--", 1));
}

TEST(StringSplit, Strings_that_are_left_over_go) {
    EXPECT_EQ((Texts{"a", "b"}), Split("a,b", ",", 5));
    EXPECT_EQ((Texts{"a", "b"}), Split("a,b", ",", 3));
}

TEST(StringSplit, Appended_pieces_come_behind_the_strings) {
    EXPECT_EQ((Texts{"1", "2", "3", "a", "b"}), Split("a,b", ",", 3, 1));
    EXPECT_EQ((Texts{"1", "a", "b"}), Split("a,b", ",", 1, -1));
}

TEST(StringSplit, Empty_pieces_are_left_out) {
    EXPECT_EQ((Texts{"ab"}), Split("ab,", ",", 1));
    EXPECT_EQ((Texts{",b", "c"}), Split(",b,c", ",", 1));
    EXPECT_EQ((Texts{"1", "ab"}), Split("ab,", ",", 1, 1));
}

TEST(StringSplit, Of_two_adjacent_separators_the_second_stays) {
    EXPECT_EQ((Texts{"a", ",b"}), Split("a,,b", ",", 1));
}

TEST(StringSplit, A_text_without_the_separator_changes_nothing) {
    EXPECT_EQ((Texts{"1", "2"}), Split("abc", ",", 2));
    EXPECT_EQ((Texts{"1", "2"}), Split("abc", ",", 2, 1));
    EXPECT_EQ((Texts{"1", "2"}), Split("", ",", 2));
    EXPECT_EQ((Texts{"1", "2"}), Split("a,b", "", 2));
}

TEST(StringSplit, With_only_empty_pieces_nothing_changes) {
    EXPECT_EQ((Texts{"1", "2"}), Split(",", ",", 2));
}

TEST(StringSplit, The_last_piece_stored_in_place_is_selected) {
    OpenString string("1");
    string.AddString("2").AddString("3").AddString("4");
    string.SetCurrentString(3);
    UtilsString source("a,b");
    string.SplitData(source, ",", 0);
    EXPECT_EQ(1u, string.currentString);
    EXPECT_EQ(2u, string.stringCount);
    UtilsString more("c,d,e,f");
    string.SplitData(more, ",", 0);
    EXPECT_EQ(1u, string.currentString); // added ones aren't
    EXPECT_EQ((Texts{"c", "d", "e", "f"}), TextsOf(string));
    string.SetCurrentString(0);
    string.SplitData(source, ",", 1);
    EXPECT_EQ(0u, string.currentString);
}

TEST(StringSplit, Splits_the_object_itself) {
    UtilsString string("a,b,c");
    string.SplitData(",", 0);
    EXPECT_EQ((Texts{"a", "b", "c"}), TextsOf(string));
    UtilsString appended("a,b");
    appended.SplitData(",", 1);
    EXPECT_EQ((Texts{"a,b", "a", "b"}), TextsOf(appended));
    UtilsString same("a,b");
    same.SplitData(same, ",", 0);
    EXPECT_EQ((Texts{"a", "b"}), TextsOf(same));
}

TEST(StringSplit, Splits_the_selected_string_of_the_source) {
    UtilsString source("a,b");
    source.AddString("c,d");
    source.SetCurrentString(1);
    UtilsString string;
    string.SplitData(source, ",", 0);
    EXPECT_EQ((Texts{"c", "d"}), TextsOf(string));
    UtilsString separator("x");
    separator.AddString(",");
    separator.SetCurrentString(1);
    string.SplitData(source, separator, 1);
    EXPECT_EQ((Texts{"c", "d", "c", "d"}), TextsOf(string));
}

TEST(StringSplit, Is_blind_to_case_if_the_source_is) {
    UtilsString source("1X2");
    UtilsString string;
    string.SetCase(0);
    string.SplitData(source, "x", 0);
    EXPECT_EQ(Texts{""}, TextsOf(string));
    string.SetCase(1);
    source.SetCase(0);
    string.SplitData(source, "x", 0);
    EXPECT_EQ((Texts{"1", "2"}), TextsOf(string));
}

TEST(StringSplit, Moves_no_cursor_of_source_or_target) {
    OpenString source("a,b"), string;
    source.SetCursors(7);
    string.SetCursors(8);
    string.SplitData(source, ",", 0);
    EXPECT_EQ(std::vector<unsigned long>(5, 7), source.Cursors());
    EXPECT_EQ(std::vector<unsigned long>(5, 8), string.Cursors());
}

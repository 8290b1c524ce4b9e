// Appending and comparing, with each form of operand.
#include "open_string.h"

#include <climits>

#include <gtest/gtest.h>

using UTILS::MemObject;
using UTILS::UtilsString;
using UTILS::WideString;
using Texts = std::vector<std::string>;

namespace {

std::string const withNul("a\0b", 3);

// Calls `check` with a text in each of the forms that operators take.
template <class Check> void ForEachForm(char const *text, Check const &check) {
    WideString const wide = Wide(text);
    MemObject<char> run;
    run.Append(text, 0);
    check(text);
    check(std::string(text));
    check(UtilsString(text));
    check(run);
    check(wide);
    check(wide.c_str());
}

template <class X>
void ExpectOrder(UtilsString const &string, X const &other, int order, int exchanged) {
    EXPECT_EQ(order, string.Compare(other));
    EXPECT_EQ(exchanged, string.FriendCompare(other));
    EXPECT_EQ(order == 0, string == other);
    EXPECT_EQ(order != 0, string != other);
    EXPECT_EQ(order < 0, string < other);
    EXPECT_EQ(order <= 0, string <= other);
    EXPECT_EQ(order > 0, string > other);
    EXPECT_EQ(order >= 0, string >= other);
}

int Compare(char const *a, char const *b, int caseMode = 1, int matchStyle = 0) {
    UtilsString string(a);
    string.SetCase(caseMode);
    string.SetMatchStyle(matchStyle);
    return string.Compare(b);
}

} // namespace

TEST(StringOperators, Append_takes_each_form_of_text) {
    ForEachForm("more", [](auto const &form) {
        UtilsString string("text", 3);
        string.SetCurrentString(1);
        EXPECT_EQ(&string, &string.Append(form));
        EXPECT_EQ(&string, &(string += form));
        EXPECT_EQ((Texts{"text", "textmoremore", "text"}), TextsOf(string));
    });
}

TEST(StringOperators, Append_of_nothing_adds_nothing) {
    ForEachForm("", [](auto const &form) {
        UtilsString string("text");
        string += form;
        EXPECT_STREQ("text", string.c_str());
        EXPECT_EQ(4u, string.size());
    });
}

TEST(StringOperators, Append_keeps_the_NULs_of_what_has_a_size) {
    UtilsString string("x");
    string += withNul;
    EXPECT_EQ(std::string("xa\0b", 4), TextOf(string));
    string += UtilsString(withNul);
    EXPECT_EQ(std::string("xa\0ba\0b", 7), TextOf(string));
}

TEST(StringOperators, Append_takes_the_text_itself) {
    UtilsString string("ab");
    string += string;
    EXPECT_STREQ("abab", string.c_str());
    string += string.c_str() + 2;
    EXPECT_STREQ("ababab", string.c_str());
    string.Append(string).Append(string.c_str());
    EXPECT_EQ(24u, string.size());
}

TEST(StringOperators, Append_takes_the_selected_text_of_another) {
    UtilsString other("one");
    other.AddString("two");
    other.SetCurrentString(1);
    UtilsString string;
    string += other;
    EXPECT_STREQ("two", string.c_str());
    UtilsString const copy(other);
    string = std::string(copy);
    EXPECT_STREQ("two", string.c_str());
}

TEST(StringOperators, Append_of_a_char_adds_the_character) {
    UtilsString string("a");
    string += 'b';
    string.Append('\xff');
    EXPECT_STREQ("ab\xff", string.c_str());
    string += '\0'; // an empty text
    EXPECT_EQ(3u, string.size());
}

TEST(StringOperators, Append_of_numbers_adds_their_decimals) {
    UtilsString string;
    string.Append(-12).Append(' ').Append(0).Append(' ').Append(INT_MIN);
    EXPECT_EQ("-12 0 " + std::to_string(INT_MIN), TextOf(string));
    string = "";
    string += ULONG_MAX;
    EXPECT_EQ(std::to_string(ULONG_MAX), TextOf(string));
    string.Append(7ul);
    EXPECT_EQ(std::to_string(ULONG_MAX) + "7", TextOf(string));
}

TEST(StringOperators, Append_of_a_double_has_fifteen_digits) {
    auto const text = [](double value) {
        UtilsString string;
        string += value;
        return TextOf(string);
    };
    EXPECT_EQ("0.1", text(0.1));
    EXPECT_EQ("-2.5", text(-2.5));
    EXPECT_EQ("0.333333333333333", text(1.0 / 3));
    EXPECT_EQ("123456789012345", text(123456789012345.0));
    EXPECT_EQ("1.23456789012346e+15", text(1234567890123456.0));
    EXPECT_EQ("1e-300", text(1e-300));
    EXPECT_EQ("3", text(3));
}

TEST(StringOperators, Assignment_takes_part_of_the_text_itself) {
    UtilsString string("text");
    string = string.c_str() + 1;
    EXPECT_STREQ("ext", string.c_str());
    string = static_cast<char const *>(string);
    EXPECT_STREQ("ext", string.c_str());
    string = string.c_str() + 3;
    EXPECT_STREQ("", string.c_str());
}

TEST(StringOperators, Comparisons_take_each_form_of_text) {
    UtilsString const string("b");
    ForEachForm("b", [&](auto const &form) { ExpectOrder(string, form, 0, 0); });
    ForEachForm("a", [&](auto const &form) { ExpectOrder(string, form, 1, -1); });
    ForEachForm("c", [&](auto const &form) { ExpectOrder(string, form, -1, 1); });
    ForEachForm("bb", [&](auto const &form) { ExpectOrder(string, form, -1, 1); });
    ForEachForm("", [&](auto const &form) { ExpectOrder(string, form, 1, -1); });
    ForEachForm("", [&](auto const &form) { ExpectOrder(UtilsString(), form, 0, 0); });
}

TEST(StringOperators, The_selected_texts_are_compared) {
    UtilsString one("a");
    one.AddString("x");
    UtilsString other("x");
    other.AddString("b");
    EXPECT_FALSE(one == other);
    EXPECT_TRUE(one[1] == other);
    EXPECT_TRUE(one[1] > other[1]);
}

TEST(StringOperators, Where_one_ends_its_terminator_is_compared) {
    EXPECT_EQ(-1, Compare("ab", "abc"));
    EXPECT_EQ(1, Compare("abc", "ab"));
    EXPECT_EQ(1, Compare("ab", "ab\x80")); // signed, and so below the terminator
    EXPECT_EQ(-1, Compare("ab\xff", "ab"));
}

TEST(StringOperators, Characters_are_signed) {
    EXPECT_EQ(-1, Compare("\x80", "\x01"));
    EXPECT_EQ(-1, Compare("\x80", "\xff"));
    EXPECT_EQ(1, Compare("\x7f", "\x80"));
}

TEST(StringOperators, Blind_to_case_the_cases_of_a_letter_are_equal) {
    EXPECT_EQ(1, Compare("abc", "ABC"));
    EXPECT_EQ(0, Compare("ABC", "abc", 0));
    EXPECT_EQ(0, Compare("aBc", "AbC", 0));
    EXPECT_EQ(-1, Compare("abc", "ABD", 0));
    EXPECT_NE(0, Compare("[", "{", 0));
    EXPECT_NE(0, Compare("@", "`", 0));
}

TEST(StringOperators, Blind_to_case_the_order_is_that_of_what_is_folded) {
    EXPECT_EQ(1, Compare("_", "A"));     // 95, 65
    EXPECT_EQ(-1, Compare("_", "A", 0)); // 63, 65
    EXPECT_EQ(-1, Compare("_", "a", 0));
    EXPECT_EQ(-1, Compare("{", "~", 0));
    EXPECT_EQ(1, Compare("0", "\x1f", 0)); // 16, -1
}

TEST(StringOperators, With_the_match_style_one_that_holds_the_other_is_equal) {
    EXPECT_EQ(0, Compare("Program Files", "Files", 1, 1));
    EXPECT_EQ(0, Compare("Files", "Program Files", 1, 1));
    EXPECT_NE(0, Compare("Program Files", "Files", 1, 0));
    UtilsString string("Program Files");
    string.SetMatchStyle(1);
    EXPECT_TRUE(string == "Files");
    EXPECT_FALSE(string < "Files");
    EXPECT_FALSE(string > "Files");
    EXPECT_NE(0, Compare("Program Files", "files", 1, 1));
    EXPECT_EQ(0, Compare("Program Files", "files", 0, 1));
    EXPECT_EQ(-1, Compare("Program Files", "Pzz", 1, 1));
    EXPECT_NE(0, Compare("Program Files", "Files", 1, 2)); // another style compares the whole
}

TEST(StringOperators, With_the_match_style_an_empty_text_is_in_none) {
    EXPECT_EQ(1, Compare("abc", "", 1, 1));
    EXPECT_EQ(-1, Compare("", "abc", 1, 1));
    EXPECT_EQ(0, Compare("", "", 1, 1));
}

TEST(StringOperators, Only_the_left_ones_settings_count) {
    UtilsString blind("ABC");
    blind.SetCase(0);
    UtilsString const exact("abc");
    EXPECT_TRUE(blind == exact);
    EXPECT_FALSE(exact == blind);
    EXPECT_EQ(0, blind.FriendCompare(exact));
    EXPECT_EQ(-1, exact.FriendCompare(blind)); // "ABC" below "abc"
}

TEST(StringOperators, A_text_with_a_size_is_compared_with_its_NULs) {
    UtilsString const string(withNul);
    EXPECT_TRUE(string == withNul);
    EXPECT_FALSE(string == std::string("a\0c", 3));
    EXPECT_TRUE(string < std::string("a\0c", 3));
    EXPECT_TRUE(string == UtilsString(withNul));
}

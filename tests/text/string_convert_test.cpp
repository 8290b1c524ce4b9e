// Wide text, strings of the standard library, messages of the system.
#include "open_string.h"

#include <gtest/gtest.h>

using UTILS::UtilsString;
using UTILS::WideString;
using Texts = std::vector<std::string>;

namespace {

constexpr unsigned long unknownError = 0x2FFFFFFF; // no system has a text for it

WideString WideOf(unsigned short const *text) { return text ? WideString(text) : WideString(); }

} // namespace

TEST(StringConversion, From_wide_text_replaces_or_appends) {
    UtilsString string("old", 2);
    string.ConvertFromWideChar(Wide("wide").c_str(), 1);
    EXPECT_STREQ("oldwide", string.c_str());
    string.ConvertFromWideChar(Wide("new").c_str(), 0);
    EXPECT_EQ((Texts{"new", "old"}), TextsOf(string));
    EXPECT_EQ(3u, string.size());
    string.ConvertFromWideChar(Wide("").c_str(), 1);
    EXPECT_STREQ("new", string.c_str());
    string.ConvertFromWideChar(Wide("").c_str(), 0);
    EXPECT_STREQ("", string.c_str());
}

TEST(StringConversion, From_no_wide_text_changes_nothing) {
    UtilsString string("old");
    string.ConvertFromWideChar(nullptr, 0);
    string.ConvertFromWideChar(nullptr, 1);
    EXPECT_STREQ("old", string.c_str());
}

TEST(StringConversion, From_wide_text_makes_a_string) {
    EXPECT_STREQ("wide", UtilsString::ReturnStringFromWideString(Wide("wide")).c_str());
    EXPECT_STREQ("wide", UtilsString::ReturnStringFromWideString(Wide("wide").c_str()).c_str());
    EXPECT_STREQ("", UtilsString::ReturnStringFromWideString(WideString()).c_str());
    WideString const withNul{'a', 0, 'b'};
    EXPECT_EQ(1u, UtilsString::ReturnStringFromWideString(withNul).size());
}

TEST(StringConversion, To_wide_text_has_many_names) {
    UtilsString string("some text");
    UtilsString const &fixed = string;
    WideString const wanted = Wide("some text");
    unsigned short *const text = fixed.ReturnWideChar();
    EXPECT_EQ(wanted, WideOf(text));
    EXPECT_EQ(wanted, WideOf(fixed.w_str()));
    EXPECT_EQ(wanted, WideOf(string.operator unsigned short *()));
    EXPECT_EQ(wanted, WideOf(fixed.operator unsigned short const *()));
    EXPECT_EQ(wanted, fixed.GetSTLWString());
    EXPECT_EQ(wanted, fixed.operator WideString());
}

TEST(StringConversion, To_wide_text_goes_into_one_buffer_that_grows) {
    UtilsString const one("one"), two("two");
    unsigned short const *const first = one.ReturnWideChar();
    ASSERT_EQ(first, two.ReturnWideChar());
    EXPECT_EQ(Wide("two"), WideOf(first));
    for (std::size_t const length : {10ul, 100ul, 10000ul, 5ul}) {
        std::string const text(length, 'x');
        EXPECT_EQ(Wide(text), WideOf(UtilsString(text).ReturnWideChar()));
    }
    EXPECT_EQ(WideString(), WideOf(UtilsString().ReturnWideChar()));
}

TEST(StringConversion, There_and_back_a_letter_stays) {
    WideString const wide{'a', 0x00e9, 0x00fc, 'z'};
    UtilsString const string(wide);
    EXPECT_LE(4u, string.size());
    EXPECT_EQ(wide, string.GetSTLWString());
}

TEST(StringConversion, To_a_string_object_ends_at_a_NUL) {
    UtilsString const string(std::string("a\0b", 3));
    EXPECT_EQ("a", string.GetSTLString());
    EXPECT_EQ("a", string.ConvertToSTL());
    EXPECT_EQ("a", string.operator std::string());
    EXPECT_EQ(Wide("a"), string.GetSTLWString());
    EXPECT_EQ("", UtilsString().GetSTLString());
}

TEST(StringMessage, Appends_a_format_with_its_inserts) {
    UtilsString string("Front: ");
    EXPECT_EQ(10u, string.FormatMessageA(UtilsString("%1 and %2!d!"), "text", 7));
    EXPECT_STREQ("Front: text and 7", string.c_str());
    EXPECT_EQ(5u, string.FormatMessageA(UtilsString("; 5%%.")));
    EXPECT_STREQ("Front: text and 7; 5%.", string.c_str());
}

TEST(StringMessage, Takes_the_selected_string_as_format_and_goes_into_the_selected_one) {
    UtilsString format("no");
    format.AddString("<%1>");
    format.SetCurrentString(1);
    UtilsString string("x", 2);
    string.SetCurrentString(1);
    EXPECT_EQ(6u, string.FormatMessageA(format, "text"));
    EXPECT_EQ((Texts{"x", "x<text>"}), TextsOf(string));
}

TEST(StringMessage, Formats_the_string_itself) {
    UtilsString string("%2, %1", 2);
    string.SetCurrentString(1);
    EXPECT_EQ(8u, string.FormatCurrentString("one", "two"));
    EXPECT_EQ((Texts{"%2, %1", "two, one"}), TextsOf(string));
}

TEST(StringMessage, Appends_the_systems_text_for_an_error) {
    UtilsString string("Front: ");
    unsigned long const length = string.SetErrorMsg(2, 0);
    EXPECT_LT(2u, length);
    EXPECT_EQ(7 + length, string.size());
    EXPECT_EQ("Front: ", TextOf(string).substr(0, 7));
    EXPECT_EQ("\r\n", TextOf(string).substr(string.size() - 2));
    UtilsString other;
    other.SetErrorMsg(5, 0);
    EXPECT_FALSE(other == string.c_str() + 7);
}

TEST(StringMessage, Puts_the_number_in_front_if_asked_for) {
    UtilsString text;
    unsigned long const length = text.SetErrorMsg(2, 0);
    UtilsString string("x");
    EXPECT_EQ(length, string.SetErrorMsg(2, 1));
    EXPECT_EQ("xError Number:  2 - " + TextOf(text), TextOf(string));
    EXPECT_EQ(length, string.SetErrorMsg(2, -1));
    EXPECT_EQ("xError Number:  2 - " + TextOf(text) + "Error Number:  2 - " + TextOf(text),
              TextOf(string));
}

TEST(StringMessage, For_an_error_without_a_text_leaves_the_string_as_it_is) {
    for (int const withNumber : {0, 1}) {
        UtilsString string("x");
        EXPECT_EQ(0u, string.SetErrorMsg(unknownError, withNumber));
        EXPECT_STREQ("x", string.c_str());
    }
}

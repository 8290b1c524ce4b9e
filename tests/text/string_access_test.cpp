// The selected text: pointers to it, its size, and changes of it.
#include "open_string.h"

#include <gtest/gtest.h>

#include "fault_text.h"

using UTILS::MemObject;
using UTILS::UtilsString;
using Texts = std::vector<std::string>;

namespace {

std::string const withNul("a\0b", 3);

} // namespace

TEST(StringAccess, All_pointers_are_to_the_same_text) {
    UtilsString string("text");
    UtilsString const &fixed = string;
    char *const data = string.Retrieve();
    EXPECT_STREQ("text", data);
    EXPECT_EQ(data, string.GetString());
    EXPECT_EQ(data, string.c_str());
    EXPECT_EQ(data, string.operator char *());
    EXPECT_EQ(data, fixed.operator char const *());
    EXPECT_EQ(static_cast<void *>(data), string.operator unsigned char *());
    EXPECT_EQ(static_cast<void const *>(data), fixed.operator unsigned char const *());
    data[0] = 'n';
    EXPECT_STREQ("next", string.c_str());
}

TEST(StringAccess, A_character_is_a_reference_into_the_text) {
    UtilsString const string("text");
    EXPECT_EQ('x', string.RetrieveChar(2));
    EXPECT_EQ('\0', string.RetrieveChar(4));
    string.RetrieveChar(2) = 's';
    EXPECT_STREQ("test", string.c_str());
}

TEST(StringAccess, The_size_has_three_names) {
    UtilsString const string(withNul);
    EXPECT_EQ(3u, string.size());
    EXPECT_EQ(3u, string.length());
    EXPECT_EQ(3u, string.strlen());
    EXPECT_EQ(0, !string);
    EXPECT_EQ(0, !UtilsString(std::string(1, '\0')));
}

TEST(StringAccess, It_can_be_emptied) {
    for (bool const longName : {false, true}) {
        UtilsString string("text", 2);
        string.SetCurrentString(1);
        longName ? string.EraseString() : string.Erase();
        EXPECT_EQ((Texts{"text", ""}), TextsOf(string));
        EXPECT_EQ(1, !string);
    }
}

TEST(StringAccess, Its_end_can_be_cut_off) {
    UtilsString string("text");
    string.TruncateString(0);
    EXPECT_STREQ("text", string.c_str());
    string.TruncateString(1);
    EXPECT_STREQ("tex", string.c_str());
    EXPECT_TRUE(IsOutOfRange([&] { string.TruncateString(4); }, "4:3", "UtilsVector"));
    EXPECT_STREQ("tex", string.c_str());
    string.TruncateString(3);
    EXPECT_STREQ("", string.c_str());
}

TEST(StringAccess, A_part_can_be_cut_out) {
    UtilsString string("abcdef");
    string.TruncateStringAtPosition(2, 1);
    EXPECT_STREQ("adef", string.c_str());
    string.TruncateStringAtPosition(1, 3);
    EXPECT_STREQ("ade", string.c_str());
    EXPECT_TRUE(IsOutOfRange([&] { string.TruncateStringAtPosition(4, 0); }, "4:3", "UtilsVector"));
    string.TruncateStringAtPosition(3, 0);
    EXPECT_STREQ("", string.c_str());
}

TEST(StringAccess, Its_last_character_is_taken_away_by_both_decrements) {
    UtilsString string("text");
    EXPECT_EQ(&string, &--string);
    EXPECT_STREQ("tex", string.c_str());
    EXPECT_EQ(&string, &string--);
    EXPECT_STREQ("te", string.c_str());
    UtilsString empty;
    EXPECT_TRUE(IsOutOfRange([&] { --empty; }, "1:0", "UtilsVector"));
    EXPECT_TRUE(IsOutOfRange([&] { empty--; }, "1:0", "UtilsVector"));
}

namespace {

// Puts "abc" in, in each of the forms that a text has.
template <class Put> void ExpectPut(char const *before, char const *after, Put const &put) {
    MemObject<char> run;
    run.Append("abc", 3);
    auto const check = [&](auto const &form) {
        UtilsString string(before);
        put(string, form);
        EXPECT_STREQ(after, string.c_str());
        EXPECT_EQ(std::string(after).size(), string.size());
    };
    check("abc");
    check(std::string("abc"));
    check(UtilsString("abc"));
    check(run);
}

} // namespace

TEST(StringAccess, Insert_shifts_what_is_there) {
    auto const at = [](unsigned long position) {
        return [=](UtilsString &string, auto const &form) { string.Insert(form, position); };
    };
    ExpectPut("1234", "abc1234", at(0));
    ExpectPut("1234", "12abc34", at(2));
    ExpectPut("1234", "1234abc", at(4));
    ExpectPut("", "abc", at(0));
}

TEST(StringAccess, Replace_overwrites_what_is_there_and_goes_no_further) {
    auto const at = [](unsigned long position) {
        return [=](UtilsString &string, auto const &form) { string.Replace(form, position); };
    };
    ExpectPut("12345", "abc45", at(0));
    ExpectPut("12345", "1abc5", at(1));
    ExpectPut("12345", "1234a", at(4));
    ExpectPut("12345", "12345", at(5));
    ExpectPut("", "", at(0));
}

TEST(StringAccess, Behind_the_end_nothing_enters_though_the_text_grows) {
    UtilsString string("12");
    string.Insert("abc", 3);
    EXPECT_EQ(std::string("12\0\0\0", 5), TextOf(string));
    string.Replace("abc", 6);
    EXPECT_EQ(std::string("12\0\0\0", 5), TextOf(string));
}

TEST(StringAccess, Texts_are_put_in_up_to_a_NUL) {
    UtilsString string("12");
    string.Insert(withNul, 1);
    EXPECT_EQ("1a2", TextOf(string));
    string.Replace(withNul, 0);
    EXPECT_EQ("aa2", TextOf(string));
    string.Insert(UtilsString(withNul), 0);
    EXPECT_EQ("aaa2", TextOf(string));
}

TEST(StringAccess, Its_own_text_can_be_put_in) {
    UtilsString string("1234");
    string.Insert(string, 2);
    EXPECT_STREQ("12123434", string.c_str());
    string.Replace(string.c_str() + 5, 0);
    EXPECT_STREQ("43423434", string.c_str());
}

TEST(StringAccess, It_can_be_reversed) {
    UtilsString string("abcd");
    string.Reverse();
    EXPECT_STREQ("dcba", string.c_str());
    UtilsString odd(withNul);
    odd.Reverse();
    EXPECT_EQ(std::string("b\0a", 3), TextOf(odd));
    UtilsString empty;
    empty.Reverse();
    EXPECT_STREQ("", empty.c_str());
}

TEST(StringAccess, Its_characters_can_be_sorted_by_signed_value) {
    UtilsString string("b_Z\x80\xffza");
    string.SetCase(0); // has no part in it
    string.Sort();
    EXPECT_STREQ("\x80\xffZ_abz", string.c_str());
    UtilsString empty;
    empty.Sort();
    EXPECT_STREQ("", empty.c_str());
}

TEST(StringAccess, Settings_and_cursors_are_written_and_read) {
    OpenString string;
    string.SetMatchStyle(1);
    string.SetCase(0);
    EXPECT_EQ(1, string.GetMatchStyle());
    EXPECT_EQ(0, string.GetCase());
    string.SetCursors(9);
    string.FindReset();
    EXPECT_EQ((std::vector<unsigned long>{0, 9, 9, 9, 9}), string.Cursors());
    string.SetCursors(9);
    string.ReplaceReset(); // of the find cursor, not of the last replacement
    EXPECT_EQ((std::vector<unsigned long>{0, 9, 9, 9, 9}), string.Cursors());
    string.ParseReset();
    EXPECT_EQ((std::vector<unsigned long>{0, 0, 9, 9, 9}), string.Cursors());
    string.ParseFastReset();
    EXPECT_EQ((std::vector<unsigned long>{0, 0, 0, 0, 9}), string.Cursors());
}

TEST(StringAccess, A_scrambled_text_comes_back_by_the_same_key) {
    UtilsString string("text");
    string.XORString(0x20);
    EXPECT_STREQ("TEXT", string.c_str());
    string.XORString('T'); // makes a NUL at both ends
    EXPECT_EQ(4u, string.size());
    EXPECT_EQ(std::string("\0\x11\x0c\0", 4), TextOf(string));
    string.XORString('T');
    EXPECT_STREQ("TEXT", string.c_str());
}

TEST(StringAccess, A_key_is_repeated_over_the_text) {
    UtilsString string("aabbc");
    string.EncryptString(UtilsString("\x01\x02"));
    EXPECT_STREQ("`cc`b", string.c_str());
    string.EncryptString(UTILS::UtilsByte(AsData("\x01\x02"), 2));
    EXPECT_STREQ("aabbc", string.c_str());
    string.EncryptString(string); // with itself
    EXPECT_EQ(std::string(5, '\0'), TextOf(string));
}

TEST(StringAccess, A_key_is_the_selected_string) {
    UtilsString key("\x7f");
    key.AddString("\x01");
    key.SetCurrentString(1);
    UtilsString string("a");
    string.EncryptString(key);
    EXPECT_STREQ("`", string.c_str());
}

TEST(StringAccess, An_empty_text_has_nothing_to_scramble) {
    UtilsString string;
    string.XORString(1);
    string.EncryptString(UtilsString("key"));
    string.EncryptString(UtilsString());
    string.EncryptString(UTILS::UtilsByte());
    EXPECT_STREQ("", string.c_str());
}

// The strings of one object: adding, selecting, removing.
#include "open_string.h"

#include <gtest/gtest.h>

#include "fault_text.h"

using UTILS::MemObject;
using UTILS::UtilsString;
using UTILS::WideString;
using Texts = std::vector<std::string>;

namespace {

class Strings : public testing::Test {
protected:
    OpenString string{"zero"};

    Strings() { string.AddString("one").AddString("two"); }

    // Whether a call is refused for this index, and nothing has changed.
    template <class Call> void ExpectRefused(Call const &call, std::string const &detail,
                                             std::string const &source = "UtilsString") {
        EXPECT_TRUE(IsOutOfRange(call, detail, source));
        EXPECT_EQ((Texts{"zero", "one", "two"}), TextsOf(string));
        EXPECT_EQ(0u, string.currentString);
        EXPECT_EQ(3u, string.stringCount);
    }
};

} // namespace

TEST_F(Strings, Added_ones_are_behind_the_others_and_the_selection_stays) {
    EXPECT_EQ((Texts{"zero", "one", "two"}), TextsOf(string));
    EXPECT_EQ(3u, string.GetNumberOfStrings());
    EXPECT_EQ(0u, string.GetCurrentString());
    EXPECT_STREQ("zero", string.c_str());
    EXPECT_EQ(&string, &string.AddString("three"));
}

TEST_F(Strings, Are_added_from_each_form_of_text) {
    UtilsString both("first");
    both.AddString("second");
    both.SetCurrentString(1);
    WideString const wide = Wide("wide");
    string.AddString(both).AddString(std::string("string")).AddString(wide).AddString(wide.c_str());
    string.AddString("");
    EXPECT_EQ((Texts{"zero", "one", "two", "second", "string", "wide", "wide", ""}),
              TextsOf(string));
}

TEST_F(Strings, May_be_added_from_the_object_itself) {
    string.AddString(string.c_str() + 2).AddString(string);
    EXPECT_EQ((Texts{"zero", "one", "two", "ro", "zero"}), TextsOf(string));
}

TEST_F(Strings, Are_added_up_to_a_NUL) {
    string.AddString(std::string("a\0b", 3));
    EXPECT_EQ(1u, string[3].size());
}

TEST_F(Strings, Are_selected_one_at_a_time) {
    string.SetCurrentString(2);
    EXPECT_EQ(2u, string.GetCurrentString());
    EXPECT_STREQ("two", string.c_str());
    string += "!";
    EXPECT_EQ((Texts{"zero", "one", "two!"}), TextsOf(string));
    EXPECT_EQ(4u, string.size());
}

TEST_F(Strings, Are_selected_by_brackets_of_each_integer_type) {
    EXPECT_EQ(&string, &string[1]);
    EXPECT_TRUE(string[1] == "one");
    EXPECT_EQ(1u, string.GetCurrentString()); // the selection remains
    EXPECT_STREQ("two", string[2u].c_str());
    EXPECT_STREQ("one", string[1l].c_str());
    EXPECT_STREQ("zero", string[0ul].c_str());
}

TEST_F(Strings, Refuse_an_index_that_is_too_high) {
    ExpectRefused([this] { string.SetCurrentString(3); }, "3:3");
    ExpectRefused([this] { string.SetCurrentString(99); }, "99:3");
    ExpectRefused([this] { string[3]; }, "3:3");
    ExpectRefused([this] { string[3u]; }, "3:3");
    ExpectRefused([this] { string[3l]; }, "3:3");
    ExpectRefused([this] { string[3ul]; }, "3:3");
    ExpectRefused([this] { string[-1]; }, std::to_string(~0ul) + ":3");
    ExpectRefused([this] { string.RemoveString(3); }, "3:3");
}

TEST_F(Strings, Are_read_by_number_without_being_selected) {
    EXPECT_STREQ("two", string.GetStringNumber(2));
    EXPECT_EQ(0u, string.GetCurrentString());
    ExpectRefused([this] { string.GetStringNumber(4); }, "4:3");
    // The count itself is the vector's to refuse.
    ExpectRefused([this] { string.GetStringNumber(3); }, "3:3", "UtilsAllocator");
}

TEST_F(Strings, Removed_below_the_selection_take_it_along) {
    string.SetCurrentString(2);
    string.RemoveString(0);
    EXPECT_EQ((Texts{"one", "two"}), TextsOf(string));
    EXPECT_EQ(2u, string.stringCount);
    EXPECT_EQ(1u, string.currentString);
    EXPECT_STREQ("two", string.c_str());
}

TEST_F(Strings, Removed_at_or_above_the_selection_leave_it) {
    string.SetCurrentString(1);
    string.RemoveString(2);
    EXPECT_EQ(1u, string.currentString);
    string.SetCurrentString(0);
    string.RemoveString(0);
    EXPECT_EQ(0u, string.currentString);
    EXPECT_EQ(Texts{"one"}, TextsOf(string));
}

TEST_F(Strings, Removed_last_while_selected_give_the_one_before) {
    string.SetCurrentString(2);
    string.RemoveString(2);
    EXPECT_EQ(1u, string.currentString);
    EXPECT_STREQ("one", string.c_str());
}

TEST_F(Strings, Remove_the_selected_one_by_default) {
    string.SetCurrentString(1);
    string.RemoveString();
    EXPECT_EQ((Texts{"zero", "two"}), TextsOf(string));
    EXPECT_EQ(1u, string.currentString); // the next one
    string.RemoveString();
    EXPECT_EQ(0u, string.currentString); // there was no next one
    EXPECT_EQ(Texts{"zero"}, TextsOf(string));
    EXPECT_EQ(1u, string.stringCount);
}

TEST_F(Strings, Keep_an_empty_one_when_the_only_one_is_removed) {
    for (bool const byIndex : {false, true}) {
        OpenString only("only");
        auto const remove = [&] { byIndex ? only.RemoveString(0) : only.RemoveString(); };
        EXPECT_TRUE(AllocatorRefuses(remove, zeroSize, "0"));
        EXPECT_EQ(Texts{""}, TextsOf(only));
        EXPECT_EQ(1u, only.stringCount);
        EXPECT_EQ(0u, only.currentString);
        only += "usable";
        EXPECT_STREQ("usable", only.c_str());
    }
}

TEST_F(Strings, Share_the_cursors) {
    string.AddString("a,b,c");
    string.SetCurrentString(3);
    UtilsString piece;
    EXPECT_EQ(1, string.ParseFirstString(",", piece));
    EXPECT_STREQ("a", piece.c_str());
    string.AddString("x,y,z");
    string.SetCurrentString(4);
    EXPECT_EQ(1, string.ParseNextString(",", piece));
    EXPECT_STREQ("y", piece.c_str());
}

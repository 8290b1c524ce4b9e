// Lists of strings: adding, removing, selecting, looking at what is there.
#include "open_string.h"

#include <gtest/gtest.h>

#include "fault_text.h"

using UTILS::UtilsString;
using UTILS::UtilsStringList;
using Texts = std::vector<std::string>;

namespace {

class List : public testing::Test {
protected:
    OpenStringList list;

    List() { // c, b, a
        for (char const *const text : {"a", "b", "c"})
            list.AddString(text);
    }
};

} // namespace

TEST(StringList, A_new_one_has_no_strings) {
    OpenStringList list;
    EXPECT_EQ(0u, list.GetNumberOfStrings());
    EXPECT_EQ(1, !list);
    EXPECT_EQ(0u, list.currentString);
    EXPECT_EQ(0u, list.reserved);
    EXPECT_EQ(1, list.GetCase());
    EXPECT_EQ(0, list.GetMatchStyle());
}

TEST(StringList, Of_one_with_no_strings_none_can_be_used) {
    UtilsStringList list;
    EXPECT_TRUE(IsOutOfRange([&] { list.Retrieve(); }, "0:0", "UtilsList"));
    EXPECT_TRUE(IsOutOfRange([&] { list.RetrieveString(); }, "0:0", "UtilsList"));
    EXPECT_TRUE(IsOutOfRange([&] { list.RetrieveUString(); }, "0:0", "UtilsList"));
    EXPECT_TRUE(IsOutOfRange([&] { list.length(0); }, "0:0", "UtilsList"));
    EXPECT_TRUE(IsOutOfRange([&] { list += "x"; }, "0:0", "UtilsList"));
    EXPECT_TRUE(IsOutOfRange([&] { list = UtilsString("x"); }, "0:0", "UtilsList"));
    EXPECT_THROW(list.RemoveString(), std::out_of_range);
}

TEST(StringList, Is_made_with_a_text_unless_that_is_empty) {
    EXPECT_EQ(Texts{"x"}, TextsOf(UtilsStringList(UtilsString("x"))));
    EXPECT_EQ(Texts{}, TextsOf(UtilsStringList(UtilsString())));
}

TEST(StringList, Names_its_class) {
    EXPECT_STREQ("class UTILS::UtilsStringList", UtilsStringList().derived_class());
    EXPECT_STREQ("class OpenStringList", OpenStringList().derived_class());
}

TEST_F(List, Has_the_newest_string_first) {
    EXPECT_STREQ("c", list.Retrieve(0));
    EXPECT_STREQ("b", list.Retrieve(1));
    EXPECT_STREQ("a", list.Retrieve(2));
    EXPECT_EQ(3u, list.GetNumberOfStrings());
    EXPECT_EQ(0, !list);
}

TEST_F(List, Takes_copies_with_its_own_settings) {
    list.SetCase(0);
    list.SetMatchStyle(1);
    UtilsString text("text");
    list.AddString(text);
    list.AddStringSorted(text);
    text = "changed";
    EXPECT_EQ(1, text.GetCase());
    for (unsigned long i = 0; i < list.GetNumberOfStrings(); ++i) {
        EXPECT_EQ(0, list.RetrieveString(i)->GetCase()) << i;
        EXPECT_EQ(1, list.RetrieveString(i)->GetMatchStyle()) << i;
        EXPECT_STRNE("changed", list.Retrieve(i));
    }
}

TEST_F(List, Takes_strings_with_all_that_they_hold) {
    UtilsString two("one");
    two.AddString("two");
    two.SetCurrentString(1);
    list.AddString(two);
    EXPECT_STREQ("two", list.Retrieve(0));
    EXPECT_EQ(2u, list.RetrieveString(0)->GetNumberOfStrings());
}

TEST_F(List, Adds_strings_in_their_order) {
    for (char const *const text : {"bb", "0", "z", "b", "c"})
        list.AddStringSorted(text);
    EXPECT_EQ((Texts{"0", "a", "b", "b", "bb", "c", "c", "z"}), TextsOf(list));
    UtilsStringList fresh;
    for (char const *const text : {"m", "z", "a"})
        fresh.AddStringSorted(text);
    EXPECT_EQ((Texts{"a", "m", "z"}), TextsOf(fresh));
}

TEST_F(List, Removes_the_selected_string) {
    list.SetCurrentString(1);
    list.RemoveString();
    EXPECT_EQ((Texts{"c", "a"}), TextsOf(list));
    EXPECT_EQ(1u, list.GetCurrentString());
    EXPECT_STREQ("a", list.Retrieve());
}

TEST_F(List, Removes_a_string_by_its_number_and_leaves_that_selected) {
    list.RemoveString(0);
    EXPECT_EQ((Texts{"b", "a"}), TextsOf(list));
    EXPECT_EQ(0u, list.currentString);
    list.RemoveString(1);
    EXPECT_EQ(Texts{"b"}, TextsOf(list));
    EXPECT_EQ(1u, list.currentString);
    list.RemoveString(); // behind the end, and so falls by one
    EXPECT_EQ(Texts{}, TextsOf(list));
    EXPECT_EQ(0u, list.currentString);
}

TEST_F(List, Falls_by_one_only_to_remove_a_string) {
    list.RemoveString(3);
    EXPECT_EQ((Texts{"c", "b"}), TextsOf(list));
    EXPECT_EQ(2u, list.currentString);
    EXPECT_TRUE(IsOutOfRange([&] { list.RemoveString(4); }, "3:2", "UtilsList"));
    EXPECT_EQ((Texts{"c", "b"}), TextsOf(list));
}

TEST_F(List, Keeps_its_selection_when_all_strings_go) {
    list.SetCurrentString(2);
    list.RemoveAllStrings();
    EXPECT_EQ(1, !list);
    EXPECT_EQ(2u, list.GetCurrentString());
}

TEST_F(List, Selects_any_number_and_fails_when_that_is_used) {
    list.SetCurrentString(7);
    EXPECT_EQ(7u, list.GetCurrentString());
    EXPECT_TRUE(IsOutOfRange([&] { list.Retrieve(); }, "7:3", "UtilsList"));
    EXPECT_TRUE(IsOutOfRange([&] { list.Retrieve(3); }, "3:3", "UtilsList"));
    EXPECT_EQ(3u, list.currentString);
    EXPECT_EQ(&list, &list[9]);
    EXPECT_TRUE(IsOutOfRange([&] { list.length(4); }, "4:3", "UtilsList"));
}

TEST_F(List, Selects_by_brackets_of_each_integer_type) {
    EXPECT_EQ(&list, &list[1]);
    EXPECT_EQ(1u, list.currentString);
    EXPECT_STREQ("a", list[2u].Retrieve());
    EXPECT_STREQ("b", list[1l].Retrieve());
    EXPECT_STREQ("c", list[0ul].Retrieve());
    EXPECT_EQ(0u, list.currentString);
}

TEST_F(List, Tells_the_length_of_a_string_and_selects_it) {
    list.AddString("four");
    EXPECT_EQ(4u, list.length(0));
    EXPECT_EQ(1u, list.length(3));
    EXPECT_EQ(3u, list.currentString);
}

TEST_F(List, Gives_strings_in_many_forms) {
    list.SetCurrentString(1);
    OpenStringList const &fixed = list;
    UtilsString *const string = fixed.RetrieveString();
    EXPECT_STREQ("b", string->c_str());
    EXPECT_EQ(string->c_str(), fixed.Retrieve());
    EXPECT_EQ(string->c_str(), fixed.operator char const *());
    EXPECT_STREQ("b", fixed.RetrieveUString().c_str());
    EXPECT_STREQ("b", fixed.operator UtilsString().c_str());
    EXPECT_STREQ("a", list.RetrieveUString(2).c_str());
    EXPECT_EQ(2u, list.currentString);
    EXPECT_STREQ("c", list.RetrieveString(0)->c_str());
    EXPECT_EQ(0u, list.currentString);
    *list.RetrieveString(1) += "!"; // of the list itself
    list.RetrieveUString(1) += "?"; // of a copy
    EXPECT_STREQ("b!", list.Retrieve(1));
}

TEST_F(List, Gives_a_setting_to_every_string_and_selects_the_last) {
    list.SetMatchStyle(1);
    EXPECT_EQ(2u, list.GetCurrentString());
    list.SetCurrentString(0);
    list.SetCase(0);
    EXPECT_EQ(2u, list.GetCurrentString());
    EXPECT_EQ(0, list.GetCase());
    EXPECT_EQ(1, list.GetMatchStyle());
    for (unsigned long i = 0; i < 3; ++i) {
        EXPECT_EQ(0, list.RetrieveString(i)->GetCase());
        EXPECT_EQ(1, list.RetrieveString(i)->GetMatchStyle());
    }
}

TEST(StringList, Without_strings_a_setting_moves_no_selection) {
    UtilsStringList list;
    list.SetCurrentString(4);
    list.SetCase(0);
    list.SetMatchStyle(1);
    EXPECT_EQ(4u, list.GetCurrentString());
}

TEST_F(List, Counts_from_the_other_end_if_told_to) {
    list.SetSearchDirection(0);
    EXPECT_STREQ("a", list.Retrieve(0));
    EXPECT_STREQ("c", list.Retrieve(2));
    list.RemoveString(0);
    EXPECT_STREQ("b", list.Retrieve(0));
    list.SetSearchDirection(1);
    EXPECT_STREQ("c", list.Retrieve(0));
}

TEST_F(List, A_copy_has_strings_and_settings_and_is_its_own) {
    list.SetCase(0);
    list.SetMatchStyle(1);
    list.SetCurrentString(1);
    OpenStringList assigned;
    assigned.AddString("old");
    EXPECT_EQ(&assigned, &(assigned = static_cast<UtilsStringList const &>(list)));
    UtilsStringList copy(list);
    EXPECT_EQ((Texts{"c", "b", "a"}), TextsOf(copy));
    EXPECT_EQ((Texts{"c", "b", "a"}), TextsOf(assigned));
    for (UtilsStringList const *const one : {&copy, static_cast<UtilsStringList *>(&assigned)}) {
        EXPECT_EQ(1u, one->GetCurrentString());
        EXPECT_EQ(0, one->GetCase());
        EXPECT_EQ(1, one->GetMatchStyle());
        EXPECT_EQ(0, one->RetrieveString()->GetCase());
    }
    copy += "!";
    assigned.AddString("new");
    EXPECT_EQ((Texts{"c", "b", "a"}), TextsOf(list));
    UtilsStringList const &same = list;
    list = same;
    EXPECT_EQ((Texts{"c", "b", "a"}), TextsOf(list));
}

// Changes of the selected string of a list, and comparisons with it, in each form of operand.
#include "open_string.h"

#include <list>

#include <gtest/gtest.h>

using UTILS::MemObject;
using UTILS::UtilsString;
using UTILS::UtilsStringList;
using UTILS::WideString;
using Texts = std::vector<std::string>;

namespace {

UtilsStringList Holding(char const *text) {
    UtilsStringList list;
    list.AddString("last");
    list.AddString(text);
    list.AddString("first");
    list.SetCurrentString(1);
    return list;
}

// Calls `check` with a text in the forms that lists take; not all take a run or wide text.
template <class Check> void ForEachForm(char const *text, Check const &check) {
    check(text);
    check(std::string(text));
    check(UtilsString(text));
    check(Holding(text));
}

template <class X> void ExpectOrder(UtilsStringList const &list, X const &other, int order) {
    EXPECT_EQ(order, list.Compare(other));
    EXPECT_EQ(order == 0, list == other);
    EXPECT_EQ(order != 0, list != other);
    EXPECT_EQ(order < 0, list < other);
    EXPECT_EQ(order <= 0, list <= other);
    EXPECT_EQ(order > 0, list > other);
    EXPECT_EQ(order >= 0, list >= other);
}

int Compared(UtilsStringList const &list, char const *text) {
    ExpectOrder(list, Wide(text), list.Compare(text));
    ForEachForm(text, [&](auto const &form) { ExpectOrder(list, form, list.Compare(text)); });
    return list.Compare(text);
}

} // namespace

TEST(StringListChange, Append_adds_to_the_selected_string) {
    auto const check = [](auto const &form) {
        UtilsStringList list = Holding("text");
        EXPECT_EQ(&list, &list.Append(form));
        EXPECT_EQ(&list, &(list += form));
        EXPECT_EQ((Texts{"first", "textmoremore", "last"}), TextsOf(list));
    };
    ForEachForm("more", check);
    check(Wide("more"));
}

TEST(StringListChange, Append_adds_numbers) {
    UtilsStringList list = Holding("");
    list.Append(7ul).Append(0.5);
    list += 8ul;
    list += -1.5;
    EXPECT_STREQ("70.58-1.5", list.Retrieve());
}

TEST(StringListChange, Append_with_a_number_in_front_selects_that_string) {
    auto const check = [](auto const &form) {
        UtilsStringList list = Holding("text");
        EXPECT_EQ(&list, &list.Append(2, form));
        EXPECT_EQ((Texts{"first", "text", "lastmore"}), TextsOf(list));
        EXPECT_EQ(2u, list.GetCurrentString());
    };
    ForEachForm("more", check);
    check(Wide("more"));
    UtilsStringList list = Holding("text");
    list.Append(0, 7ul).Append(2, 0.5);
    EXPECT_EQ((Texts{"first7", "text", "last0.5"}), TextsOf(list));
}

TEST(StringListChange, A_list_is_appended_by_its_selected_string_and_to_itself) {
    UtilsStringList list = Holding("text");
    list += list;
    EXPECT_STREQ("texttext", list.Retrieve());
}

TEST(StringListChange, Insert_and_Replace_work_on_the_selected_string) {
    MemObject<char> run;
    run.Append("abc", 3);
    auto const check = [](auto const &form) {
        UtilsStringList list = Holding("12345");
        list.Insert(form, 1);
        EXPECT_EQ((Texts{"first", "1abc2345", "last"}), TextsOf(list));
        list.Replace(form, 3);
        EXPECT_EQ((Texts{"first", "1ababc45", "last"}), TextsOf(list));
        EXPECT_EQ(1u, Holding("x").GetCurrentString());
    };
    ForEachForm("abc", check);
    check(run);
}

TEST(StringListChange, Insert_and_Replace_with_a_number_in_front_select_that_string) {
    MemObject<char> run;
    run.Append("abc", 3);
    auto const check = [](auto const &form) {
        UtilsStringList list = Holding("12345");
        list.Insert(0, form, 5);
        EXPECT_EQ(0u, list.GetCurrentString());
        list.Replace(2, form, 1);
        EXPECT_EQ(2u, list.GetCurrentString());
        EXPECT_EQ((Texts{"firstabc", "12345", "labc"}), TextsOf(list));
    };
    ForEachForm("abc", check);
    check(run);
}

TEST(StringListChange, A_string_assigned_replaces_the_selected_one) {
    UtilsStringList list = Holding("text");
    UtilsString text("new");
    text.SetCase(0);
    EXPECT_EQ(&list, &(list = text));
    EXPECT_EQ((Texts{"first", "new", "last"}), TextsOf(list));
    EXPECT_EQ(0, list.RetrieveString()->GetCase()); // it takes all of it
    EXPECT_EQ(1, list.GetCase());
}

TEST(StringListChange, A_list_of_texts_comes_in_reverse) {
    auto const check = [](auto const &texts) {
        UtilsStringList list = Holding("text");
        list.SetCase(0);
        list.SetCurrentString(7);
        EXPECT_EQ(&list, &(list = texts));
        EXPECT_EQ((Texts{"c", "b", "a"}), TextsOf(list));
        EXPECT_EQ(7u, list.GetCurrentString());
        EXPECT_EQ(0, list.GetCase());
    };
    char a[] = "a", b[] = "b", c[] = "c";
    check(std::list<char *>{a, b, c});
    check(std::list<std::string>{"a", "b", "c"});
    check(std::list<WideString>{Wide("a"), Wide("b"), Wide("c")});
    check(std::list<UtilsString>{"a", "b", "c"});
    UtilsStringList added;
    for (char const *const text : {"a", "b", "c"})
        added.AddString(text);
    EXPECT_EQ((Texts{"c", "b", "a"}), TextsOf(added)); // the same order
}

TEST(StringListChange, An_empty_list_of_texts_empties_it) {
    UtilsStringList list = Holding("text");
    list = std::list<std::string>{};
    EXPECT_EQ(1, !list);
    list = Holding("text");
    list = std::list<char *>{list.Retrieve(2), list.Retrieve(0)}; // its own texts
    EXPECT_EQ((Texts{"first", "last"}), TextsOf(list));
}

TEST(StringListCompare, Is_of_the_selected_string) {
    UtilsStringList const list = Holding("b");
    EXPECT_EQ(0, Compared(list, "b"));
    EXPECT_EQ(1, Compared(list, "a"));
    EXPECT_EQ(-1, Compared(list, "c"));
    EXPECT_EQ(-1, Compared(list, "bb"));
    EXPECT_EQ(1, Compared(list, ""));
}

TEST(StringListCompare, Has_the_settings_of_the_list) {
    UtilsStringList list = Holding("Program Files");
    EXPECT_NE(0, Compared(list, "program files"));
    list.SetCase(0);
    list.SetCurrentString(1);
    EXPECT_EQ(0, Compared(list, "program files"));
    EXPECT_NE(0, Compared(list, "files"));
    list.SetMatchStyle(1);
    list.SetCurrentString(1);
    EXPECT_EQ(0, Compared(list, "files"));
    EXPECT_EQ(0, Compared(list, "the program files"));
    EXPECT_NE(0, Compared(list, "file x"));
}

TEST(StringListCompare, Has_the_settings_of_the_string_itself) {
    UtilsStringList list = Holding("TEXT");
    list.RetrieveString()->SetCase(0);
    EXPECT_EQ(0, Compared(list, "text")); // though the list is exact
}

// Copies of lists, from lists and from standard lists.
#include "list_elements.h"

#include <list>
#include <type_traits>

using UTILS::ListObject;

TEST(ListCopy, Assigned_lists_have_copies_of_the_nodes) {
    OpenList<Word> source, copy;
    Fill(source, {"a", "b", "c"});
    Fill(copy, {"x"});
    ListObject<Word> &target = copy;
    EXPECT_EQ(&(target = source), &target);
    EXPECT_EQ(Text(copy), "a b c");
    EXPECT_EQ(copy.Anchor(), 1);
    source.Retrieve(0)->text = "changed";
    source.RemoveAll();
    EXPECT_EQ(Text(copy), "a b c");
}

TEST(ListCopy, Settings_are_not_copied) {
    OpenList<Word> source(1, 0), copy(1, 1);
    Fill(source, {"a"});
    source.searchDirection = 2;
    source.matchStyle = 1;
    source.smartThreshold = 9;
    source.listAllocationScheme = 0;
    static_cast<ListObject<Word> &>(copy) = source;
    EXPECT_EQ(copy.searchDirection, 1);
    EXPECT_EQ(copy.matchStyle, 0);
    EXPECT_EQ(copy.smartThreshold, 50u);
    EXPECT_EQ(copy.listAllocationScheme, 1);
    EXPECT_EQ(copy.caseMode, 1);
}

TEST(ListCopy, The_scheme_of_the_left_list_says_who_owns_the_copies) {
    Word word("a");
    OpenList<Word> borrowing(0, 1), owning(1, 1), again(0, 1);
    borrowing.AddToTail(&word, 0);
    static_cast<ListObject<Word> &>(owning) = borrowing;
    EXPECT_NE(owning.Retrieve(0), &word);
    static_cast<ListObject<Word> &>(again) = owning;
    EXPECT_EQ(again.Retrieve(0), owning.Retrieve(0));
}

TEST(ListCopy, The_mark_of_order_is_taken) {
    OpenList<Word> source, copy;
    Fill(source, {"b", "a"});
    source.Sort(1);
    Fill(copy, {"z"});
    copy.CopyList(source);
    EXPECT_EQ(Text(copy), "z a b");
    EXPECT_EQ(copy.isSorted, 1);
    OpenList<Word> unsorted;
    copy.CopyList(unsorted);
    EXPECT_EQ(copy.isSorted, 0);
}

TEST(ListCopy, Sizes_and_null_data_are_kept) {
    Word words[] = {"a", "b"};
    OpenList<Word> source, copy;
    source.AddToTail(words, 2);
    source.AddToTail(nullptr, 0);
    static_cast<ListObject<Word> &>(copy) = source;
    ASSERT_EQ(copy.ListSize(), 2u);
    EXPECT_EQ(copy.RetrieveNode(0)->GetSizeOfData(), 2u);
    EXPECT_EQ(copy.Retrieve(0)[1].text, "b");
    EXPECT_EQ(copy.Retrieve(1), nullptr);
    EXPECT_EQ(copy.RetrieveNode(1)->GetSizeOfData(), 0u);
}

TEST(ListCopy, Into_itself_an_assignment_changes_nothing) {
    OpenList<Word> list;
    Fill(list, {"a", "b"});
    list.isSorted = 1;
    auto const nodes = list.Nodes();
    ListObject<Word> const &same = list;
    static_cast<ListObject<Word> &>(list) = same;
    EXPECT_EQ(list.Nodes(), nodes);
    EXPECT_EQ(list.isSorted, 1);
}

TEST(ListCopy, Behind_itself_a_list_is_added_once) {
    OpenList<Word> list;
    Fill(list, {"a", "b", "c"});
    list.CopyList(list);
    EXPECT_EQ(Text(list), "a b c a b c");
    EXPECT_EQ(list.Anchor(), 3);
}

TEST(ListCopy, Standard_lists_are_assigned_in_reverse) {
    std::list<Word> source{"a", "b", "c"};
    OpenList<Word> list;
    Fill(list, {"x", "y"});
    ListObject<Word> &target = list;
    EXPECT_EQ(&(target = source), &target);
    EXPECT_EQ(Text(list), "c b a");
    EXPECT_EQ(list.Anchor(), 1);
    source.front().text = "changed";
    EXPECT_EQ(Text(list), "c b a");
}

TEST(ListCopy, Standard_lists_are_copied_before_what_is_there_in_reverse) {
    std::list<Word> source{"a", "b"};
    OpenList<Word> list;
    Fill(list, {"x", "y"});
    list.isSorted = 1;
    list.CopyList(source);
    EXPECT_EQ(Text(list), "b a x y");
    EXPECT_EQ(list.isSorted, 0);
}

TEST(ListCopy, A_borrowing_list_borrows_the_elements_of_a_standard_list) {
    std::list<Word> source{"a", "b"};
    OpenList<Word> list(0, 1);
    static_cast<ListObject<Word> &>(list) = source;
    EXPECT_EQ(list.Retrieve(1), &source.front());
}

TEST(ListCopy, An_empty_list_empties_by_assignment) {
    std::list<Word> none;
    OpenList<Word> list, empty;
    Fill(list, {"a"});
    static_cast<ListObject<Word> &>(list) = empty;
    EXPECT_EQ(list.IsEmpty(), 1);
    Fill(list, {"a"});
    static_cast<ListObject<Word> &>(list) = none;
    EXPECT_EQ(list.IsEmpty(), 1);
}

TEST(ListCopy, Lists_of_text_and_bytes_are_copied) {
    char text[] = "abc";
    unsigned char bytes[] = {0, 1, 2};
    OpenList<char> texts, textCopy;
    texts.AddToTail(text, 0);
    texts.AddToTail(text, 1);
    static_cast<ListObject<char> &>(textCopy) = texts;
    textCopy.CopyList(texts);
    ASSERT_EQ(textCopy.listSize, 4u);
    EXPECT_STREQ(textCopy.listHead->Retrieve(), "abc");
    EXPECT_STREQ(textCopy.listTail->Retrieve(), "a");
    EXPECT_EQ(textCopy.Anchor(), 2);
    OpenList<unsigned char> runs, runCopy;
    runs.AddToTail(bytes, 3);
    static_cast<ListObject<unsigned char> &>(runCopy) = runs;
    EXPECT_EQ(runCopy.listHead->GetSizeOfData(), 3u);
    EXPECT_EQ(runCopy.listHead->Retrieve()[2], 2);
    runCopy.RemoveFromHead();
    EXPECT_EQ(runCopy.IsEmpty(), 1);
}

TEST(ListCopy, Is_made_by_assignment_only) {
    EXPECT_FALSE(std::is_copy_constructible_v<ListObject<Word>>);
    EXPECT_FALSE(std::is_copy_constructible_v<ListObject<char>>);
}

// Nodes: what they take, own and borrow, and how their data is replaced.
#include "list_elements.h"

#include <cstring>
#include <type_traits>

using UTILS::Node;
using UTILS::UtilsBase;

namespace {

using Bytes = std::vector<unsigned char>;

char const wrongCall[] = "The Function Call Is Incorrect Or Cannot Be Called As Such - Cannot "
                         "Allocate Memory Internally Without Constructor Initialization; File:  "
                         "UtilsAllocator; Line:  ";

} // namespace

TEST(Node, Scheme_1_owns_a_copy_with_its_terminator) {
    char text[] = "abc";
    OpenNode<char> const node(text);
    text[0] = 'X';
    EXPECT_STREQ(node.Retrieve(), "abc");
    EXPECT_EQ(node.GetSizeOfData(), 3u);
    EXPECT_EQ(node.storage->GetLength(), 4u);
    EXPECT_EQ(node.storage->AllocationScheme(), 1);
    EXPECT_EQ(node.nodeScheme, 1);
}

TEST(Node, A_size_takes_that_many_elements) {
    char text[] = "abc";
    OpenNode<char> const node(text, 1, 1, 2);
    EXPECT_STREQ(node.Retrieve(), "ab");
    EXPECT_EQ(node.GetSizeOfData(), 2u);
    EXPECT_EQ(node.storage->GetLength(), 3u);
}

TEST(Node, A_size_may_go_past_a_terminator) {
    char text[] = "a\0b";
    OpenNode<char> const node(text, 1, 1, 3);
    EXPECT_EQ(std::memcmp(node.Retrieve(), "a\0b", 4), 0);
    EXPECT_EQ(node.GetSizeOfData(), 3u);
}

TEST(Node, An_empty_text_is_a_terminator) {
    char text[] = "";
    OpenNode<char> const node(text);
    EXPECT_STREQ(node.Retrieve(), "");
    EXPECT_EQ(node.GetSizeOfData(), 0u);
    EXPECT_EQ(node.storage->GetLength(), 1u);
}

TEST(Node, Scheme_0_sees_later_changes_of_the_text_and_keeps_its_size) {
    char text[] = "abc\0defg";
    OpenNode<char> const node(text, 0);
    EXPECT_EQ(node.Retrieve(), text);
    text[1] = 'X';
    text[3] = 'Y';
    EXPECT_STREQ(node.Retrieve(), "aXcYdefg");
    EXPECT_EQ(node.GetSizeOfData(), 3u);
    EXPECT_EQ(node.nodeScheme, 0);
    EXPECT_EQ(node.storage->AllocationScheme(), 0);
}

TEST(Node, Scheme_0_with_a_size_writes_no_terminator) {
    char text[] = "abc";
    {
        OpenNode<char> const node(text, 0, 1, 2);
        EXPECT_EQ(node.GetSizeOfData(), 2u);
    }
    EXPECT_STREQ(text, "abc");
}

TEST(Node, Any_other_scheme_owns) {
    char text[] = "abc";
    OpenNode<char> const node(text, 7);
    EXPECT_NE(node.Retrieve(), text);
    EXPECT_EQ(node.nodeScheme, 1);
}

TEST(Node, Bytes_are_one_element_when_measured_and_have_no_terminator) {
    unsigned char bytes[] = {1, 2, 3};
    OpenNode<unsigned char> const measured(bytes);
    EXPECT_EQ(measured.GetSizeOfData(), 1u);
    EXPECT_EQ(measured.storage->GetLength(), 1u);
    OpenNode<unsigned char> const node(bytes, 1, 1, 3);
    EXPECT_EQ(Bytes(node.Retrieve(), node.Retrieve() + 3), (Bytes{1, 2, 3}));
    EXPECT_EQ(node.storage->GetLength(), 3u);
}

TEST(Node, An_object_is_one_element_when_measured) {
    Word words[] = {"ab", "cd"};
    OpenNode<Word> const measured(words);
    EXPECT_EQ(measured.GetSizeOfData(), 1u);
    OpenNode<Word> const node(words, 1, 1, 2);
    EXPECT_EQ(node.storage->GetLength(), 2u);
    words[1].text = "changed";
    EXPECT_EQ(node.Retrieve()[0].text, "ab");
    EXPECT_EQ(node.Retrieve()[1].text, "cd");
}

TEST(Node, Null_data_is_a_null_run_of_size_0_with_both_schemes) {
    for (int const scheme : {0, 1})
        for (unsigned long const size : {0UL, 3UL}) {
            OpenNode<char> const text(nullptr, scheme, 1, size);
            EXPECT_EQ(text.Retrieve(), nullptr);
            EXPECT_EQ(text.GetSizeOfData(), 0u);
            EXPECT_EQ(text.nodeScheme, scheme);
            OpenNode<Word> const word(nullptr, scheme, 1, size);
            EXPECT_EQ(word.Retrieve(), nullptr);
            EXPECT_EQ(word.GetSizeOfData(), 0u);
        }
}

TEST(Node, The_case_setting_counts_for_types_that_have_case) {
    char text[] = "a";
    unsigned char byte[] = {'a'};
    Word word("a");
    EXPECT_EQ(OpenNode<char>(text, 1, 0).nodeCase, 0);
    EXPECT_EQ(OpenNode<char>(text, 1, 1).nodeCase, 1);
    EXPECT_EQ(OpenNode<unsigned char>(byte, 1, 0).nodeCase, 0);
    EXPECT_EQ(OpenNode<Word>(&word, 1, 0).nodeCase, 1);
}

TEST(Node, Links_are_taken_and_the_operators_give_the_next_node) {
    Word word("a");
    OpenNode<Word> next(&word), previous(&word);
    OpenNode<Word> node(&word, 1, 1, &next, &previous, 0);
    EXPECT_EQ(node.nextNode, &next);
    EXPECT_EQ(node.prevNode, &previous);
    EXPECT_EQ(++node, &next);
    EXPECT_EQ(node++, &next);
    EXPECT_EQ(node.nextNode, &next);
    EXPECT_EQ(++next, nullptr);
}

TEST(Node, Building_again_replaces_all) {
    char text[] = "abc", other[] = "defgh";
    OpenNode<char> first(text);
    OpenNode<char> node(text, 1, 1, &first, &first, 0);
    node.BuildNodeData(other, 0, 0, nullptr, nullptr, 4);
    EXPECT_EQ(node.Retrieve(), other);
    EXPECT_EQ(node.GetSizeOfData(), 4u);
    EXPECT_EQ(node.nodeScheme, 0);
    EXPECT_EQ(node.nodeCase, 0);
    EXPECT_EQ(node.nextNode, nullptr);
    EXPECT_EQ(node.prevNode, nullptr);
    node.BuildNodeData(text, 1, 1, &first, nullptr, 0);
    EXPECT_STREQ(node.Retrieve(), "abc");
    EXPECT_EQ(node.nodeScheme, 1);
}

TEST(Node, Datacopy_overwrites_what_there_is_room_for_and_terminates) {
    char text[] = "abcd", longer[] = "1234567";
    OpenNode<char> node(text);
    node.datacopy("xy", 2);
    EXPECT_STREQ(node.Retrieve(), "xycd");
    node.datacopy(longer, 7);
    EXPECT_STREQ(node.Retrieve(), "1234");
    EXPECT_EQ(node.GetSizeOfData(), 4u);
    EXPECT_EQ(node.storage->GetLength(), 5u);
}

TEST(Node, Datacopy_into_borrowed_data_is_refused) {
    char text[] = "abcd";
    OpenNode<char> node(text, 0);
    ExpectThrown<std::bad_alloc>(wrongCall, [&] { node.datacopy("xy", 2); });
    EXPECT_STREQ(text, "abcd");
}

TEST(Node, Replaced_data_of_an_owning_node_is_a_copy_of_the_new_size) {
    Word words[] = {"a", "b", "c"};
    OpenNode<Word> node(words);
    node.external_datacopy(words, 3);
    EXPECT_EQ(node.GetSizeOfData(), 3u);
    EXPECT_EQ(node.storage->GetLength(), 3u);
    EXPECT_NE(node.Retrieve(), words);
    EXPECT_EQ(node.Retrieve()[2].text, "c");
    node.external_datacopy(words + 1, 1);
    EXPECT_EQ(node.GetSizeOfData(), 1u);
    EXPECT_EQ(node.storage->GetLength(), 1u);
    EXPECT_EQ(node.Retrieve()->text, "b");
}

TEST(Node, Replaced_data_may_be_a_part_of_its_own) {
    Word words[] = {"a", "b", "c"};
    OpenNode<Word> node(words, 1, 1, 3);
    node.external_datacopy(node.Retrieve() + 1, 2);
    EXPECT_EQ(node.GetSizeOfData(), 2u);
    EXPECT_EQ(node.Retrieve()[0].text, "b");
    EXPECT_EQ(node.Retrieve()[1].text, "c");
}

TEST(Node, Data_is_replaced_by_null_and_null_by_data) {
    Word word("a");
    OpenNode<Word> node(&word);
    node.external_datacopy(nullptr, 2);
    EXPECT_EQ(node.Retrieve(), nullptr);
    EXPECT_EQ(node.GetSizeOfData(), 0u);
    node.external_datacopy(&word, 1);
    EXPECT_NE(node.Retrieve(), &word);
    EXPECT_EQ(node.Retrieve()->text, "a");
}

TEST(Node, Replaced_data_of_a_borrowing_node_is_borrowed) {
    Word words[] = {"a", "b", "c"};
    OpenNode<Word> node(words, 0);
    node.external_datacopy(words + 1, 2);
    EXPECT_EQ(node.Retrieve(), words + 1);
    EXPECT_EQ(node.GetSizeOfData(), 2u);
    EXPECT_EQ(node.nodeScheme, 0);
}

TEST(Node, A_borrowing_node_whose_storage_owns_memory_refuses_other_data) {
    Word words[] = {"a", "b"};
    OpenNode<Word> node(words);
    node.nodeScheme = 0;
    ExpectThrown<std::bad_alloc>(wrongCall, [&] { node.external_datacopy(words + 1, 1); });
    EXPECT_EQ(node.Retrieve()->text, "a");
}

TEST(Node, A_copy_has_its_own_data_and_the_same_links) {
    Word words[] = {"a", "b"};
    OpenNode<Word> next(words), previous(words);
    OpenNode<Word> source(words, 1, 1, &next, &previous, 2);
    Node<Word> const &node = source;
    OpenNode<Word> const copy(source);
    EXPECT_NE(copy.Retrieve(), source.Retrieve());
    EXPECT_EQ(copy.Retrieve()[1].text, "b");
    EXPECT_EQ(copy.GetSizeOfData(), 2u);
    EXPECT_EQ(copy.nodeScheme, 1);
    EXPECT_EQ(copy.nextNode, &next);
    EXPECT_EQ(copy.prevNode, &previous);
    EXPECT_EQ(Node<Word>(node).Retrieve()[0].text, "a");
}

TEST(Node, A_copy_of_a_borrowing_node_borrows) {
    Word words[] = {"a", "b"};
    OpenNode<Word> source(words, 0, 1, 2);
    OpenNode<Word> const copy(source);
    EXPECT_EQ(copy.Retrieve(), words);
    EXPECT_EQ(copy.GetSizeOfData(), 2u);
    EXPECT_EQ(copy.nodeScheme, 0);
}

TEST(Node, An_assignment_replaces_what_there_was_whoever_owned_it) {
    Word words[] = {"a", "b", "c"};
    for (int const from : {0, 1})
        for (int const to : {0, 1}) {
            OpenNode<Word> source(words + 1, from, 1, 2);
            OpenNode<Word> node(words, to);
            node = source;
            EXPECT_EQ(node.GetSizeOfData(), 2u);
            EXPECT_EQ(node.nodeScheme, from);
            EXPECT_EQ(node.Retrieve() == words + 1, from == 0);
            EXPECT_EQ(node.Retrieve()[1].text, "c");
        }
}

TEST(Node, A_copy_of_null_data_is_null) {
    Word word("a");
    for (int const scheme : {0, 1}) {
        OpenNode<Word> const source(nullptr, scheme);
        OpenNode<Word> node(&word);
        node = source;
        EXPECT_EQ(node.Retrieve(), nullptr);
        EXPECT_EQ(node.GetSizeOfData(), 0u);
        EXPECT_EQ(node.nodeScheme, scheme);
    }
}

TEST(Node, An_assignment_to_itself_changes_nothing) {
    Word word("a");
    OpenNode<Word> node(&word);
    Word const *const data = node.Retrieve();
    OpenNode<Word> const &same = node;
    node = same;
    EXPECT_EQ(node.Retrieve(), data);
    EXPECT_EQ(data->text, "a");
}

TEST(Node, Nodes_of_text_and_bytes_are_not_copied) {
    EXPECT_FALSE(std::is_copy_constructible_v<Node<char>>);
    EXPECT_FALSE(std::is_copy_assignable_v<Node<char>>);
    EXPECT_FALSE(std::is_copy_constructible_v<Node<unsigned char>>);
    EXPECT_FALSE(std::is_copy_assignable_v<Node<unsigned char>>);
    EXPECT_TRUE(std::is_copy_constructible_v<Node<Word>>);
    EXPECT_TRUE(std::is_copy_assignable_v<Node<Word>>);
}

TEST(Node, Terminates_text_only) {
    char text[] = "abc";
    OpenNode<char> node(text);
    node.Retrieve()[3] = 'x';
    node.NullTerminate();
    EXPECT_STREQ(node.Retrieve(), "abc");
    unsigned char bytes[] = {1, 2};
    OpenNode<unsigned char> borrowing(bytes, 0);
    borrowing.NullTerminate();
    EXPECT_EQ(bytes[1], 2);
}

TEST(Node, Tells_its_class) {
    char text[] = "a";
    unsigned char byte[] = {1};
    Node<char> const node(text, 1, 1, nullptr, nullptr, 0);
    Node<unsigned char> const bytes(byte, 1, 1, nullptr, nullptr, 0);
    EXPECT_STREQ(node.derived_class(), "class UTILS::Node<char>");
    EXPECT_STREQ(bytes.derived_class(), "class UTILS::Node<unsigned char>");
    UtilsBase<char> const &base = node;
    EXPECT_STREQ(base.derived_class(), "class UTILS::Node<char>");
}

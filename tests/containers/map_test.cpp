// Maps and their nodes: pairs in the order of their addition.
#include "open_map.h"

using UTILS::MapNode;

TEST(MapNode, Owns_copies_of_key_and_value) {
    int key = 5;
    char value[] = "abc";
    OpenMapNode<char> const node(&key, value);
    key = 6;
    value[0] = 'X';
    EXPECT_EQ(*node.RetrieveKey(), 5);
    EXPECT_STREQ(node.RetrieveVal(), "abc");
    EXPECT_EQ(node.GetSizeOfKeyData(), 1u);
    EXPECT_EQ(node.GetSizeOfValData(), 3u);
    EXPECT_EQ(node.keyStorage->GetLength(), 1u);
    EXPECT_EQ(node.valStorage->GetLength(), 4u);
    EXPECT_EQ(node.nodeScheme, 1);
}

TEST(MapNode, Takes_sizes_as_told) {
    int keys[] = {1, 2, 3};
    char value[] = "abc";
    OpenMapNode<char> const node(keys, value, 1, 2, 1);
    EXPECT_EQ(node.GetSizeOfKeyData(), 2u);
    EXPECT_EQ(node.RetrieveKey()[1], 2);
    EXPECT_STREQ(node.RetrieveVal(), "a");
}

TEST(MapNode, Borrows_with_scheme_0) {
    int key = 5;
    char value[] = "abc";
    OpenMapNode<char> const node(&key, value, 0);
    EXPECT_EQ(node.RetrieveKey(), &key);
    EXPECT_EQ(node.RetrieveVal(), value);
    value[1] = 0;
    EXPECT_EQ(node.GetSizeOfValData(), 3u);
    EXPECT_EQ(node.nodeScheme, 0);
}

TEST(MapNode, Null_is_a_null_run_of_size_0) {
    for (int const scheme : {0, 1}) {
        OpenMapNode<char> const node(nullptr, nullptr, scheme, 2, 2);
        EXPECT_EQ(node.RetrieveKey(), nullptr);
        EXPECT_EQ(node.RetrieveVal(), nullptr);
        EXPECT_EQ(node.GetSizeOfKeyData(), 0u);
        EXPECT_EQ(node.GetSizeOfValData(), 0u);
    }
}

TEST(MapNode, Values_of_bytes_and_objects_are_one_element_when_measured) {
    int key = 1;
    unsigned char bytes[] = {7, 8};
    Word words[] = {"a", "b"};
    OpenMapNode<unsigned char> const measured(&key, bytes);
    EXPECT_EQ(measured.GetSizeOfValData(), 1u);
    EXPECT_EQ(measured.valStorage->GetLength(), 1u);
    OpenMapNode<Word> const node(&key, words, 1, 0, 2);
    EXPECT_EQ(node.GetSizeOfValData(), 2u);
    EXPECT_EQ(node.RetrieveVal()[1].text, "b");
    EXPECT_NE(node.RetrieveVal(), words);
}

TEST(MapNode, A_size_is_recorded_or_measured_from_what_is_given_or_held) {
    int keys[] = {1, 2};
    char value[] = "abc", other[] = "defgh";
    OpenMapNode<char> node(keys, value);
    node.ResetKeyDataSize(nullptr, 9);
    node.ResetValDataSize(nullptr, 9);
    EXPECT_EQ(node.GetSizeOfKeyData(), 9u);
    EXPECT_EQ(node.GetSizeOfValData(), 9u);
    node.ResetKeyDataSize(keys, 0);
    node.ResetValDataSize(other, 0);
    EXPECT_EQ(node.GetSizeOfKeyData(), 1u);
    EXPECT_EQ(node.GetSizeOfValData(), 5u);
    node.ResetKeyDataSize(nullptr, 0);
    node.ResetValDataSize(nullptr, 0);
    EXPECT_EQ(node.GetSizeOfKeyData(), 1u);
    EXPECT_EQ(node.GetSizeOfValData(), 3u);
    EXPECT_STREQ(node.RetrieveVal(), "abc");
}

TEST(MapNode, Copied_data_takes_what_there_is_room_for) {
    int keys[] = {1, 2, 3};
    char value[] = "abc";
    OpenMapNode<char> node(keys, value, 1, 2, 0);
    int const others[] = {7, 8, 9};
    node.datakeycopy(others, 3);
    node.datavalcopy("xyzuv", 5);
    EXPECT_EQ(node.RetrieveKey()[0], 7);
    EXPECT_EQ(node.RetrieveKey()[1], 8);
    EXPECT_STREQ(node.RetrieveVal(), "xyz");
    node.datavalcopy("1", 1);
    EXPECT_STREQ(node.RetrieveVal(), "1yz");
}

TEST(MapNode, Copied_data_into_borrowed_data_is_refused) {
    int key = 1;
    char value[] = "abc";
    OpenMapNode<char> node(&key, value, 0);
    int const other = 2;
    EXPECT_THROW(node.datakeycopy(&other, 1), std::bad_alloc);
    EXPECT_THROW(node.datavalcopy("x", 1), std::bad_alloc);
    EXPECT_EQ(key, 1);
    EXPECT_STREQ(value, "abc");
}

TEST(MapNode, Terminates_values_of_text) {
    int key = 1;
    char value[] = "abc";
    OpenMapNode<char> node(&key, value);
    node.RetrieveVal()[3] = 'x';
    node.NullTerminateVal();
    node.NullTerminateKey();
    EXPECT_STREQ(node.RetrieveVal(), "abc");
    EXPECT_EQ(*node.RetrieveKey(), 1);
}

TEST(MapNode, Building_again_replaces_all) {
    int key = 1, other = 2;
    char value[] = "abc", more[] = "defg";
    OpenMapNode<char> node(&key, value);
    OpenMapNode<char> next(&key, value);
    node.BuildMapNodeData(&other, more, 0, 0, &next, &next, 0, 0);
    EXPECT_EQ(node.RetrieveKey(), &other);
    EXPECT_EQ(node.RetrieveVal(), more);
    EXPECT_EQ(node.GetSizeOfValData(), 4u);
    EXPECT_EQ(node.nodeScheme, 0);
    EXPECT_EQ(node.nodeCase, 0);
    EXPECT_EQ(node.nextNode, &next);
    EXPECT_EQ(node.prevNode, &next);
}

TEST(MapNode, Has_the_hooks_in_two_forms) {
    int key = 1;
    char value[] = "a";
    OpenMapNode<char> const node(&key, value);
    for (int i = -128; i < 128; ++i) {
        char const letter = static_cast<char>(i);
        EXPECT_EQ(node.isupper(letter), i >= 65 && i <= 90);
        EXPECT_EQ(node.islower(letter), i >= 97 && i <= 122);
        EXPECT_EQ(node.utoupper(letter), static_cast<char>(i - 32));
        EXPECT_EQ(node.utolower(letter), static_cast<char>(i + 32));
    }
    auto const wide = [](int i) { return static_cast<unsigned short>(i); };
    EXPECT_NE(node.isupper(wide('A')), 0);
    EXPECT_EQ(node.isupper(wide('a')), 0);
    EXPECT_NE(node.islower(wide('a')), 0);
    EXPECT_EQ(node.islower(wide('1')), 0);
    EXPECT_EQ(node.utoupper(wide(0)), 0xffe0);
    EXPECT_EQ(node.utolower(wide(0xffff)), 31);
}

TEST(MapNode, Tells_its_class) {
    int key = 1;
    char value[] = "a";
    MapNode<int, char> const node(&key, value, 1, 1, nullptr, nullptr, 0, 0);
    EXPECT_STREQ(node.derived_class(), "class UTILS::MapNode<int, char>");
}

TEST(Map, A_new_map_has_its_initial_settings) {
    OpenMap<char> const map(0, 7);
    EXPECT_EQ(map.listSize, 0u);
    EXPECT_EQ(map.smartThreshold, 50u);
    EXPECT_EQ(map.listAllocationScheme, 0);
    EXPECT_EQ(map.searchDirection, 1);
    for (unsigned long const field : map.reserved)
        EXPECT_EQ(field, 0u);
    EXPECT_EQ(map.caseMode, 7);
    EXPECT_EQ(map.flag, 1);
    EXPECT_EQ(map.listHead, nullptr);
    EXPECT_EQ(map.listTail, nullptr);
    EXPECT_EQ(map.listMiddle, nullptr);
    EXPECT_EQ(map.IsEmpty(), 1);
}

TEST(Map, Keeps_pairs_in_the_order_of_their_addition_equal_keys_too) {
    OpenMap<char> map;
    Add(map, 2, "b");
    Add(map, 1, "a");
    Add(map, 2, "c");
    EXPECT_EQ(Contents(map), (Pairs{{2, "b"}, {1, "a"}, {2, "c"}}));
    EXPECT_EQ(map.IsEmpty(), 0);
}

TEST(Map, The_anchor_is_at_half_the_size_after_additions) {
    OpenMap<char> map;
    for (int size = 1; size <= 60; ++size) {
        Add(map, size, "x");
        EXPECT_EQ(map.Anchor(), size / 2);
    }
}

TEST(Map, Removal_from_the_head_moves_the_anchor_for_even_sizes_only) {
    OpenMap<char> map;
    Fill(map, 4);
    map.RemoveFromHead();
    EXPECT_EQ(map.Anchor(), 2);
    map.RemoveFromHead();
    EXPECT_EQ(map.Anchor(), 1);
    EXPECT_EQ(Contents(map), (Pairs{{2, "2"}, {3, "3"}}));
}

TEST(Map, Removal_from_an_empty_map_does_nothing) {
    OpenMap<char> map;
    map.RemoveFromHead();
    EXPECT_EQ(map.IsEmpty(), 1);
    Add(map, 1, "a");
    map.RemoveFromHead();
    map.RemoveFromHead();
    EXPECT_EQ(map.IsEmpty(), 1);
    EXPECT_EQ(map.listSize, 0u);
}

TEST(Map, All_pairs_go_and_others_may_come) {
    OpenMap<char> map;
    Fill(map, 9);
    map.RemoveAll();
    EXPECT_EQ(map.IsEmpty(), 1);
    EXPECT_EQ(map.listSize, 0u);
    Add(map, 1, "a");
    EXPECT_EQ(Contents(map), (Pairs{{1, "a"}}));
    EXPECT_EQ(map.Anchor(), 0);
}

TEST(Map, Set_to_null_forgets_the_nodes_and_frees_none) {
    OpenMap<char> map;
    Fill(map, 3);
    auto *const head = map.listHead, *const tail = map.listTail, *const middle = map.listMiddle;
    map.SetToNull();
    EXPECT_EQ(map.IsEmpty(), 1);
    EXPECT_EQ(map.listSize, 0u);
    EXPECT_STREQ(head->RetrieveVal(), "0");
    map.listHead = head;
    map.listTail = tail;
    map.listMiddle = middle;
    map.listSize = 3;
    EXPECT_EQ(Contents(map), (Pairs{{0, "0"}, {1, "1"}, {2, "2"}}));
}

TEST(Map, Is_empty_only_without_all_three_nodes) {
    OpenMap<char> map;
    Fill(map, 1);
    auto *const node = map.listHead;
    map.SetToNull();
    for (auto pointer :
         {&OpenMap<char>::listHead, &OpenMap<char>::listTail, &OpenMap<char>::listMiddle}) {
        map.*pointer = node;
        EXPECT_EQ(map.IsEmpty(), 0);
        map.*pointer = nullptr;
    }
    map.listHead = map.listTail = map.listMiddle = node;
    map.listSize = 1;
}

TEST(Map, Borrows_keys_and_values_with_scheme_0) {
    int key = 1;
    char value[] = "abc";
    OpenMap<char> map(0, 0);
    map.AddToTail(&key, value, 0, 2);
    EXPECT_EQ(map.listHead->RetrieveKey(), &key);
    EXPECT_EQ(map.listHead->RetrieveVal(), value);
    EXPECT_EQ(map.listHead->GetSizeOfValData(), 2u);
    EXPECT_EQ(OpenMapNode<char>::Case(map.listHead), 0);
}

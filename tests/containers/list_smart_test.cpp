// Retrieval and removal by index: walks from the ends and from the anchor.
#include "list_elements.h"

#include <stdexcept>

namespace {

int Plain(OpenList<Number> const &list, int index, int direction = 1) {
    return list.RetrieveItem(static_cast<unsigned long>(index), direction)->key;
}

int Smart(OpenList<Number> const &list, int index, int direction = 1) {
    return list.SmartRetrieveItem(static_cast<unsigned long>(index), direction)->key;
}

// Puts the anchor on the node with this index from the head.
void SetAnchor(OpenList<Number> &list, int index) {
    list.listMiddle = list.Nodes().at(static_cast<std::size_t>(index));
}

// The keys 0 to n - 1 without one.
std::vector<int> Without(int count, int key) {
    std::vector<int> keys;
    for (int i = 0; i < count; ++i)
        if (i != key)
            keys.push_back(i);
    return keys;
}

template <typename Call> void ExpectOutOfRange(char const *detail, Call const &call) {
    std::string const text =
        std::string("Out Of Range Error - ") + detail + "; File:  UtilsList; Line:  ";
    ExpectThrown<std::out_of_range>(text.c_str(), call);
}

} // namespace

TEST(ListRetrieve, Counts_from_the_end_that_the_direction_names) {
    OpenList<Number> list;
    Count(list, 60);
    for (int i = 0; i < 60; ++i) {
        EXPECT_EQ(Plain(list, i), i);
        EXPECT_EQ(Plain(list, i, 0), 59 - i);
        EXPECT_EQ(Plain(list, i, 2), 59 - i);
        EXPECT_EQ(list.RetrieveNodeItem(static_cast<unsigned long>(i), 1)->Retrieve()->key, i);
        EXPECT_EQ(list.RetrieveNodeItem(static_cast<unsigned long>(i), -1)->Retrieve()->key,
                  59 - i);
    }
}

TEST(ListRetrieve, The_lists_direction_is_the_default) {
    OpenList<Number> list;
    Count(list, 61);
    EXPECT_EQ(list.Retrieve(20)->key, 20);
    EXPECT_EQ(list.RetrieveNode(20)->Retrieve()->key, 20);
    EXPECT_EQ(list.SmartRetrieve(20)->key, 20);
    list.SetSearchDirection(0);
    EXPECT_EQ(list.Retrieve(20)->key, 40);
    EXPECT_EQ(list.RetrieveNode(20)->Retrieve()->key, 40);
    EXPECT_EQ(list.SmartRetrieve(20)->key, 40);
    list.SmartRemoveFromIndice(20);
    EXPECT_EQ(Keys(list), Without(61, 40));
}

TEST(ListRetrieve, An_index_from_the_size_on_is_out_of_range) {
    OpenList<Number> list;
    ExpectOutOfRange("0:0", [&] { list.RetrieveItem(0, 1); });
    ExpectOutOfRange("0:0", [&] { list.SmartRemoveFromIndiceItem(0, 1); });
    Count(list, 3);
    ExpectOutOfRange("3:3", [&] { list.Retrieve(3); });
    ExpectOutOfRange("4:3", [&] { list.RetrieveItem(4, 0); });
    ExpectOutOfRange("3:3", [&] { list.RetrieveNode(3); });
    ExpectOutOfRange("5:3", [&] { list.RetrieveNodeItem(5, 1); });
    ExpectOutOfRange("3:3", [&] { list.SmartRetrieve(3); });
    ExpectOutOfRange("3:3", [&] { list.SmartRetrieveItem(3, 0); });
    ExpectOutOfRange("3:3", [&] { list.SmartRemoveFromIndice(3); });
    ExpectOutOfRange("7:3", [&] { list.SmartRemoveFromIndiceItem(7, 0); });
    EXPECT_EQ(Keys(list), (std::vector<int>{0, 1, 2}));
}

TEST(ListSmart, Forward_it_finds_what_a_plain_walk_finds) {
    for (int count = 1; count <= 130; ++count) {
        OpenList<Number> list;
        Count(list, count);
        for (int i = 0; i < count; ++i)
            ASSERT_EQ(Smart(list, i), i) << count;
    }
}

TEST(ListSmart, Backward_an_odd_list_answers_as_a_plain_walk_does) {
    for (int count = 1; count <= 131; count += 2) {
        OpenList<Number> list;
        Count(list, count);
        for (int i = 0; i < count; ++i)
            ASSERT_EQ(Smart(list, i, 0), count - 1 - i) << count;
    }
}

TEST(ListSmart, Backward_an_even_list_lands_two_nodes_past_in_the_middle_band) {
    for (int count : {52, 54, 100, 102}) {
        OpenList<Number> list;
        Count(list, count);
        int const half = count / 2;
        for (int i = 0; i < count; ++i) {
            int const target = count - 1 - i;
            bool const middle = i > count / 4 && i < 3 * count / 4;
            // At one index the sum that is off by one falls on the other side of the anchor.
            int const off = !middle || i == half ? 0 : 2;
            ASSERT_EQ(Smart(list, i, 0), target + off) << count << ", index " << i;
        }
    }
}

TEST(ListSmart, Up_to_the_threshold_the_anchor_is_not_used) {
    for (int direction : {1, 0}) {
        OpenList<Number> list;
        Count(list, 50);
        SetAnchor(list, 0);
        for (int i = 0; i < 50; ++i)
            EXPECT_EQ(Smart(list, i, direction), direction ? i : 49 - i);
    }
}

TEST(ListSmart, The_threshold_may_be_another) {
    OpenList<Number> list;
    Count(list, 8);
    SetAnchor(list, 5);
    EXPECT_EQ(Smart(list, 4), 4);
    list.smartThreshold = 7;
    EXPECT_EQ(Smart(list, 4), 5);
    EXPECT_EQ(Smart(list, 3), 4);
    EXPECT_EQ(Smart(list, 2), 2); // up to a quarter from the head
    EXPECT_EQ(Smart(list, 6), 6); // from three quarters on from the tail
}

TEST(ListSmart, Of_51_nodes_the_anchor_serves_index_13_to_37) {
    OpenList<Number> list;
    Count(list, 51);
    SetAnchor(list, 26); // one node off
    for (int i = 0; i < 51; ++i) {
        bool const anchored = i >= 13 && i <= 37;
        EXPECT_EQ(Smart(list, i), anchored ? i + 1 : i) << i;
        EXPECT_EQ(Smart(list, i, 0), anchored ? 50 - i + 1 : 50 - i) << i;
    }
}

TEST(ListSmart, The_bands_end_at_a_quarter_and_at_three_quarters) {
    for (int count : {51, 52, 53, 54, 55, 99, 101}) {
        OpenList<Number> list;
        Count(list, count);
        SetAnchor(list, count / 2 + 1);
        for (int i = 0; i < count; ++i) {
            bool const anchored = i > count / 4 && i < (3 * count) >> 2;
            ASSERT_EQ(Smart(list, i), anchored ? i + 1 : i) << count << ", index " << i;
        }
    }
}

TEST(ListSmart, Walks_from_a_displaced_anchor_stop_at_the_ends) {
    OpenList<Number> list;
    Count(list, 60);
    SetAnchor(list, 59);
    EXPECT_EQ(Smart(list, 40), 59);
    EXPECT_EQ(Smart(list, 29), 58);
    EXPECT_EQ(Smart(list, 20, 0), 59);
    SetAnchor(list, 0);
    EXPECT_EQ(Smart(list, 20), 0);
    EXPECT_EQ(Smart(list, 31), 1);
    EXPECT_EQ(Smart(list, 40, 0), 0);
}

TEST(ListSmart, After_removals_from_the_head_the_walk_starts_where_the_anchor_stands) {
    OpenList<Number> list;
    Count(list, 60);
    list.RemoveFromHead(); // even before: the anchor goes from key 30 to 31, at index 30 of 59
    EXPECT_EQ(list.Anchor(), 30);
    EXPECT_EQ(Smart(list, 29), 31);
    EXPECT_EQ(Plain(list, 29), 30);
}

TEST(ListSmartRemove, Forward_it_removes_the_node_at_the_index_and_keeps_the_anchor) {
    for (int count : {1, 2, 3, 4, 5, 49, 50, 51, 52, 53, 54, 55, 80})
        for (int i = 0; i < count; ++i) {
            OpenList<Number> list;
            Count(list, count);
            list.SmartRemoveFromIndiceItem(static_cast<unsigned long>(i), 1);
            ASSERT_EQ(Keys(list), Without(count, i)) << count;
            ASSERT_EQ(list.Anchor(), count == 1 ? -1 : (count - 1) / 2) << count << ", index " << i;
        }
}

TEST(ListSmartRemove, Backward_it_removes_what_the_smart_retrieval_finds) {
    for (int count : {1, 2, 3, 4, 5, 50, 51, 52, 53, 80, 81})
        for (int i = 0; i < count; ++i) {
            OpenList<Number> list;
            Count(list, count);
            int const found = Smart(list, i, 0);
            list.SmartRemoveFromIndiceItem(static_cast<unsigned long>(i), 0);
            ASSERT_EQ(Keys(list), Without(count, found)) << count;
        }
}

TEST(ListSmartRemove, Backward_it_keeps_the_anchor_where_the_index_is_true) {
    for (int count : {2, 3, 4, 5, 49, 50, 51, 53, 81})
        for (int i = 0; i < count; ++i) {
            OpenList<Number> list;
            Count(list, count);
            list.SmartRemoveFromIndiceItem(static_cast<unsigned long>(i), 0);
            ASSERT_EQ(list.Anchor(), (count - 1) / 2) << count << ", index " << i;
        }
}

TEST(ListSmartRemove, Steps_of_the_anchor_by_parity_and_direction) {
    struct Case {
        int count, index, direction, keyUnderAnchor;
    };
    // Of 6 nodes the anchor is on key 3, of 7 as well.
    Case const cases[] = {
        {6, 2, 1, 3}, {6, 3, 1, 2}, {6, 4, 1, 2}, {6, 5, 1, 2}, {6, 0, 1, 3}, // even, forward
        {6, 2, 0, 2}, {6, 3, 0, 3}, {6, 0, 0, 2}, {6, 5, 0, 3},               // even, backward
        {7, 3, 1, 4}, {7, 4, 1, 3}, {7, 0, 1, 4}, {7, 6, 1, 3},               // odd, forward
        {7, 3, 0, 4}, {7, 2, 0, 3}, {7, 0, 0, 3}, {7, 6, 0, 4},               // odd, backward
    };
    for (Case const &one : cases) {
        OpenList<Number> list;
        Count(list, one.count);
        list.SmartRemoveFromIndiceItem(static_cast<unsigned long>(one.index), one.direction);
        EXPECT_EQ(list.listMiddle->Retrieve()->key, one.keyUnderAnchor)
            << one.count << ", " << one.index << ", " << one.direction;
    }
}

TEST(ListSmartRemove, An_anchor_that_the_step_left_on_the_victim_moves_again) {
    OpenList<Number> even;
    Count(even, 6);
    SetAnchor(even, 4); // the step takes it to 3, the victim; then to 2
    even.SmartRemoveFromIndiceItem(3, 1);
    EXPECT_EQ(even.listMiddle->Retrieve()->key, 2);
    OpenList<Number> odd;
    Count(odd, 7);
    SetAnchor(odd, 1); // the step takes it to 2, the victim; then to 3
    odd.SmartRemoveFromIndiceItem(2, 1);
    EXPECT_EQ(odd.listMiddle->Retrieve()->key, 3);
}

TEST(ListSmartRemove, An_anchor_on_an_end_that_goes_takes_the_neighbour) {
    OpenList<Number> list;
    Count(list, 6);
    SetAnchor(list, 0);
    list.SmartRemoveFromIndiceItem(0, 1);
    EXPECT_EQ(list.listMiddle->Retrieve()->key, 1);
    SetAnchor(list, 4);
    list.SmartRemoveFromIndiceItem(4, 1);
    EXPECT_EQ(list.listMiddle->Retrieve()->key, 4);
    EXPECT_EQ(list.listMiddle, list.listTail);
}

TEST(ListSmartRemove, A_single_node_leaves_nothing) {
    for (int direction : {1, 0}) {
        OpenList<Number> list;
        Count(list, 1);
        list.SmartRemoveFromIndiceItem(0, direction);
        EXPECT_EQ(list.IsEmpty(), 1);
        EXPECT_EQ(list.ListSize(), 0u);
    }
}

TEST(ListSmartRemove, Keeps_the_mark_of_order) {
    OpenList<Number> list;
    Count(list, 3);
    list.isSorted = 1;
    list.SmartRemoveFromIndice(1);
    EXPECT_EQ(list.isSorted, 1);
}

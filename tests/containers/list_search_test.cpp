// Searches: node after node, by bisection, and insertion into an ordered list.
#include "list_elements.h"

#include <stdexcept>

using UTILS::NOT_FOUND_INDEX;

namespace {

constexpr unsigned long NONE = NOT_FOUND_INDEX;

unsigned long Find(OpenList<Word> &list, Word const &item, int method,
                   unsigned long occurrence = 0) {
    return list.SearchList(&item, method, occurrence, 0);
}

unsigned long Find(OpenList<Number> &list, int key, int method, unsigned long occurrence = 0) {
    Number const item{key, 0};
    return list.SearchList(&item, method, occurrence, 0);
}

// Nodes of several words each.
void AddRun(OpenList<Word> &list, std::vector<Word> words) {
    list.AddToTail(words.data(), static_cast<unsigned long>(words.size()));
}

} // namespace

TEST(ListSearch, Nothing_is_found_in_an_empty_list_or_by_another_method) {
    OpenList<Word> list;
    EXPECT_EQ(Find(list, "a", 0), NONE);
    EXPECT_EQ(Find(list, "a", 1), NONE);
    Fill(list, {"b", "a"});
    EXPECT_EQ(Find(list, "a", 2), NONE);
    EXPECT_EQ(Find(list, "a", -1), NONE);
    EXPECT_EQ(list.isSorted, 0);
    EXPECT_EQ(Text(list), "b a");
}

TEST(ListSearch, Node_after_node_from_the_head_gives_the_index_from_the_head) {
    OpenList<Word> list;
    Fill(list, {"c", "a", "b", "a"});
    EXPECT_EQ(Find(list, "c", 0), 0u);
    EXPECT_EQ(Find(list, "a", 0), 1u);
    EXPECT_EQ(Find(list, "b", 0), 2u);
    EXPECT_EQ(Find(list, "d", 0), NONE);
    EXPECT_EQ(list.isSorted, 0);
}

TEST(ListSearch, Node_after_node_from_the_tail_gives_the_index_from_the_tail) {
    OpenList<Word> list;
    Fill(list, {"c", "a", "b", "a"});
    for (int const direction : {0, 2}) {
        list.SetSearchDirection(direction);
        EXPECT_EQ(Find(list, "c", 0), 3u);
        EXPECT_EQ(Find(list, "a", 0), 0u);
        EXPECT_EQ(Find(list, "b", 0), 1u);
        EXPECT_EQ(Find(list, "d", 0), NONE);
    }
}

TEST(ListSearch, The_first_equal_node_is_found_whatever_the_occurrence) {
    OpenList<Word> list;
    Fill(list, {"b", "a"});
    EXPECT_EQ(Find(list, "a", 0, 5), 1u);
    Fill(list, {"a"});
    EXPECT_EQ(Find(list, "a", 0, 1), 1u);
}

TEST(ListSearch, Of_nodes_that_hold_the_item_as_many_as_told_are_passed) {
    OpenList<Word> list;
    list.matchStyle = 1;
    AddRun(list, {"x", "a"});
    AddRun(list, {"b"});
    AddRun(list, {"a", "y"});
    AddRun(list, {"x", "a", "y"});
    EXPECT_EQ(Find(list, "a", 0, 0), 0u);
    EXPECT_EQ(Find(list, "a", 0, 1), 2u);
    EXPECT_EQ(Find(list, "a", 0, 2), 3u);
    EXPECT_EQ(Find(list, "a", 0, 3), NONE);
    list.SetSearchDirection(0);
    EXPECT_EQ(Find(list, "a", 0, 0), 0u);
    EXPECT_EQ(Find(list, "a", 0, 1), 1u);
    EXPECT_EQ(Find(list, "a", 0, 2), 3u);
}

TEST(ListSearch, A_run_is_contained_whole) {
    OpenList<Word> list;
    AddRun(list, {"a", "c"});
    AddRun(list, {"x", "a", "b"});
    Word const item[] = {"a", "b"};
    EXPECT_EQ(list.SearchList(item, 0, 0, 2), NONE);
    list.matchStyle = 1;
    EXPECT_EQ(list.SearchList(item, 0, 0, 2), 1u);
    list.matchStyle = 7;
    EXPECT_EQ(list.SearchList(item, 0, 0, 2), 1u);
}

TEST(ListSearch, With_containment_a_case_setting_that_is_none_is_an_invalid_argument) {
    OpenList<Word> list(1, 7);
    AddRun(list, {"a", "b"});
    EXPECT_EQ(Find(list, "a", 0), NONE); // two elements, and the item has one
    list.matchStyle = 1;
    EXPECT_THROW(Find(list, "a", 0), std::invalid_argument);
}

TEST(ListSearch, A_node_is_equal_by_its_own_elements) {
    OpenList<Word> list;
    AddRun(list, {"a", "b", "c"});
    AddRun(list, {"a", "b"});
    Word const item[] = {"a", "b", "d"};
    EXPECT_EQ(list.SearchList(item, 0, 0, 3), 1u); // two elements are compared
    EXPECT_EQ(list.SearchList(item, 0, 0, 2), 1u); // and the item isn't read past its size
}

TEST(ListSearch, The_nodes_element_says_whether_case_counts) {
    OpenList<Word> list;
    Fill(list, {"a", {"a", true}});
    EXPECT_EQ(Find(list, "A", 0), 1u);
    EXPECT_EQ(Find(list, {"A", true}, 0), 1u);
}

TEST(ListSearch, Null_is_found_where_data_is_null) {
    OpenList<Word> list;
    Fill(list, {"a"});
    EXPECT_EQ(list.SearchList(nullptr, 0, 0, 0), NONE);
    EXPECT_EQ(list.SearchList(nullptr, 1, 0, 0), NONE);
    list.AddToTail(nullptr, 0);
    EXPECT_EQ(list.SearchList(nullptr, 0, 0, 0), 1u);
    EXPECT_EQ(Find(list, "a", 0), 0u);
    EXPECT_EQ(list.SearchList(nullptr, 1, 0, 0), 0u); // null sorts before all else
    EXPECT_EQ(Find(list, "a", 1), 1u);
}

TEST(ListBisection, Sorts_a_list_that_is_not_marked) {
    OpenList<Word> list;
    Fill(list, {"c", "a", "b"});
    EXPECT_EQ(Find(list, "a", 1), 0u);
    EXPECT_EQ(Text(list), "a b c");
    EXPECT_EQ(list.isSorted, 1);
}

TEST(ListBisection, Leaves_a_marked_list_as_it_is) {
    OpenList<Word> list;
    Fill(list, {"c", "b", "a"});
    list.Sort(7);
    EXPECT_EQ(Find(list, "b", 1), 1u);
    EXPECT_EQ(Text(list), "c b a");
}

TEST(ListBisection, Finds_every_key_and_no_other_in_both_directions) {
    for (int const direction : {1, 0})
        for (int count = 1; count <= 130; ++count) {
            OpenList<Number> list;
            for (int key = 0; key < count; ++key) {
                Number number{2 * key, 0};
                list.AddToTail(&number, 0);
            }
            list.isSorted = 1;
            list.SetSearchDirection(direction);
            for (int key = 0; key < count; ++key) {
                auto const index = static_cast<unsigned long>(direction ? key : count - 1 - key);
                ASSERT_EQ(Find(list, 2 * key, 1), index) << count;
                ASSERT_EQ(Find(list, 2 * key + 1, 1), NONE) << count;
            }
            ASSERT_EQ(Find(list, -1, 1), NONE) << count;
        }
}

TEST(ListBisection, With_another_direction_steps_to_the_left_count_down) {
    OpenList<Word> list;
    Fill(list, {"a", "b", "c"});
    list.isSorted = 1;
    list.SetSearchDirection(2);
    EXPECT_EQ(Find(list, "b", 1), 1u);
    EXPECT_EQ(Find(list, "c", 1), 0u);
    EXPECT_EQ(Find(list, "a", 1), 0u); // from the tail it is 2
}

TEST(ListBisection, Gives_the_first_of_equal_nodes) {
    OpenList<Word> list;
    Fill(list, {"a", "b", "b", "b", "b", "c", "c"});
    list.isSorted = 1;
    EXPECT_EQ(Find(list, "a", 1), 0u);
    EXPECT_EQ(Find(list, "b", 1), 1u);
    EXPECT_EQ(Find(list, "c", 1), 5u);
    list.SetSearchDirection(0);
    EXPECT_EQ(Find(list, "c", 1), 0u);
    EXPECT_EQ(Find(list, "b", 1), 2u);
    EXPECT_EQ(Find(list, "a", 1), 6u);
    OpenList<Word> same;
    Fill(same, {"b", "b", "b", "b", "b"});
    EXPECT_EQ(Find(same, "b", 1), 0u);
}

TEST(ListBisection, An_occurrence_is_that_much_behind_the_first) {
    OpenList<Word> list;
    Fill(list, {"a", "b", "b", "c"});
    EXPECT_EQ(Find(list, "b", 1, 0), 1u);
    EXPECT_EQ(Find(list, "b", 1, 1), 2u);
    EXPECT_EQ(Find(list, "b", 1, 2), NONE);
    EXPECT_EQ(Find(list, "a", 1, 1), NONE);
}

TEST(ListBisection, An_occurrence_behind_the_end_is_out_of_range) {
    OpenList<Word> list;
    Fill(list, {"a", "b"});
    ExpectThrown<std::out_of_range>("Out Of Range Error - 2:2; File:  UtilsList; Line:  ",
                                    [&] { Find(list, "b", 1, 1); });
    EXPECT_THROW(Find(list, "a", 1, 2), std::out_of_range);
}

TEST(ListBisection, With_containment_a_node_that_holds_the_item_matches) {
    OpenList<Word> list;
    list.matchStyle = 1;
    AddRun(list, {"a"});
    AddRun(list, {"b", "z"});
    AddRun(list, {"c"});
    list.isSorted = 1;
    EXPECT_EQ(Find(list, "z", 1), 1u);
    EXPECT_EQ(Find(list, "c", 1), 2u);
    EXPECT_EQ(Find(list, "y", 1), NONE);
}

TEST(ListBisection, With_containment_the_first_and_the_occurrence_are_counted_by_it) {
    OpenList<Word> list;
    list.matchStyle = 1;
    AddRun(list, {"a", "z"});
    AddRun(list, {"b", "z"});
    AddRun(list, {"c", "z"});
    AddRun(list, {"d"});
    list.isSorted = 1;
    EXPECT_EQ(Find(list, "z", 1, 0), 0u);
    EXPECT_EQ(Find(list, "z", 1, 1), 1u);
    EXPECT_EQ(Find(list, "z", 1, 2), 2u);
    EXPECT_EQ(Find(list, "z", 1, 3), NONE);
    EXPECT_THROW(Find(list, "z", 1, 4), std::out_of_range);
}

TEST(ListBisection, An_item_of_several_elements_is_read_as_far_as_its_size) {
    OpenList<Word> list;
    AddRun(list, {"a", "b"});
    AddRun(list, {"a", "b", "c"});
    AddRun(list, {"a", "d"});
    list.isSorted = 1;
    Word const item[] = {"a", "b", "c"};
    EXPECT_EQ(list.SearchList(item, 1, 0, 3), 1u);
    EXPECT_EQ(list.SearchList(item, 1, 0, 2), 0u);
}

TEST(ListBisection, With_a_displaced_anchor_it_ends_and_stays_in_the_list) {
    for (int count = 2; count <= 70; ++count)
        for (int removed = 1; removed <= 6 && removed < count; ++removed)
            for (int const direction : {1, 0}) {
                OpenList<Number> list;
                Count(list, count);
                for (int i = 0; i < removed; ++i)
                    list.RemoveFromHead();
                list.isSorted = 1;
                list.SetSearchDirection(direction);
                for (int key = removed - 1; key <= count; ++key) {
                    unsigned long index = NONE;
                    ASSERT_NO_THROW(index = Find(list, key, 1)) << count << ", key " << key;
                    ASSERT_TRUE(index == NONE || index < list.ListSize());
                    bool const absent = key < removed || key == count;
                    ASSERT_TRUE(!absent || index == NONE);
                }
            }
}

TEST(ListSortedInsert, Into_an_empty_list_leaves_it_without_the_mark_of_order) {
    OpenList<Word> list;
    Word word("a");
    EXPECT_EQ(list.SortedInsert(&word, 0), 1);
    EXPECT_EQ(Text(list), "a");
    EXPECT_EQ(list.isSorted, 0);
    EXPECT_EQ(list.SortedInsert(&word, 0), 1);
    EXPECT_EQ(list.isSorted, 1);
}

TEST(ListSortedInsert, Sorts_a_list_that_is_not_marked) {
    OpenList<Word> list;
    Fill(list, {"d", "a", "c"});
    Word word("b");
    EXPECT_EQ(list.SortedInsert(&word, 0), 1);
    EXPECT_EQ(Text(list), "a b c d");
    EXPECT_EQ(list.isSorted, 1);
}

TEST(ListSortedInsert, At_the_ends_it_keeps_the_mark_of_order) {
    OpenList<Word> list;
    Fill(list, {"b", "c"});
    list.isSorted = 1;
    Word below("a"), above("d");
    list.SortedInsert(&below, 0);
    EXPECT_EQ(list.isSorted, 1);
    list.SortedInsert(&above, 0);
    EXPECT_EQ(list.isSorted, 1);
    EXPECT_EQ(Text(list), "a b c d");
    EXPECT_EQ(list.Anchor(), 2);
}

TEST(ListSortedInsert, Puts_every_key_in_its_place_and_keeps_the_anchor) {
    for (int const direction : {1, 0, 2})
        for (int count = 1; count <= 70; ++count)
            for (int key = -1; key <= 2 * count; ++key) {
                OpenList<Number> list;
                for (int i = 0; i < count; ++i) {
                    Number number{2 * i, 0};
                    list.AddToTail(&number, 0);
                }
                list.isSorted = 1;
                list.SetSearchDirection(direction);
                Number number{key, 1};
                list.SortedInsert(&number, 0);
                // Before the first that isn't less.
                auto const place = static_cast<unsigned long>((key + 1) / 2);
                ASSERT_EQ(*list.RetrieveItem(place, 1), number) << count << ", key " << key;
                ASSERT_EQ(list.Nodes().size(), static_cast<std::size_t>(count) + 1);
                ASSERT_EQ(list.Anchor(), (count + 1) / 2) << count << ", key " << key;
            }
}

TEST(ListSortedInsert, Of_equal_nodes_it_goes_before_the_first) {
    for (int count = 1; count <= 20; ++count) {
        OpenList<Number> list;
        for (int i = 0; i < count; ++i) {
            Number number{i < count / 3 ? 0 : 1, 0};
            list.AddToTail(&number, 0);
        }
        list.isSorted = 1;
        Number number{1, 7};
        list.SortedInsert(&number, 0);
        EXPECT_EQ(*list.Retrieve(static_cast<unsigned long>(count / 3)), number) << count;
    }
}

TEST(ListSortedInsert, Null_data_goes_to_the_front) {
    OpenList<Word> list;
    Fill(list, {"b", "a"});
    EXPECT_EQ(list.SortedInsert(nullptr, 0), 1);
    Word word("c");
    list.SortedInsert(&word, 0);
    list.SortedInsert(nullptr, 3);
    EXPECT_EQ(Text(list), "- - a b c");
}

TEST(ListSortedInsert, Borrows_with_scheme_0) {
    Word words[] = {"a", "b", "c"};
    OpenList<Word> list(0, 1);
    list.SortedInsert(words + 2, 0);
    list.SortedInsert(words, 0);
    list.SortedInsert(words + 1, 0);
    for (unsigned long i = 0; i < 3; ++i)
        EXPECT_EQ(list.Retrieve(i), words + i);
}

// Sorts: which is picked, what is exchanged, and what becomes of the list.
#include "list_elements.h"

#include "sort_model.h"

#include <algorithm>
#include <cstdint>
#include <random>
#include <set>

namespace {

void Fill(OpenList<Number> &list, Numbers numbers) {
    for (Number &number : numbers)
        list.AddToTail(&number, 0);
}

Numbers Contents(OpenList<Number> const &list) {
    Numbers numbers;
    for (auto const *const node : list.Nodes())
        numbers.push_back(*node->Retrieve());
    return numbers;
}

// Keys in a random order, each number marked with where it was.
Numbers Random(std::mt19937 &random, std::size_t count, unsigned keys) {
    Numbers numbers;
    for (std::size_t i = 0; i < count; ++i)
        numbers.push_back({static_cast<int>(random() % keys), static_cast<int>(i)});
    return numbers;
}

Numbers Sorted(Numbers const &numbers, unsigned algorithm) {
    OpenList<Number> list;
    Fill(list, numbers);
    list.Sort(algorithm);
    EXPECT_EQ(list.isSorted, 1);
    return Contents(list);
}

bool IsOrdered(Numbers const &numbers) {
    return std::is_sorted(numbers.begin(), numbers.end(),
                          [](Number const &a, Number const &b) { return a.key < b.key; });
}

// Numbers with many equal ones, for which the sorts differ in what becomes of the marks.
Numbers Telling(std::size_t count) {
    std::mt19937 random(5);
    return Random(random, count, 20);
}

void ExpectLike(Numbers (*model)(Numbers), unsigned algorithm, unsigned seed) {
    std::mt19937 random(seed);
    for (int round = 0; round < 4000; ++round) {
        std::size_t const count = 1 + random() % (round % 100 == 0 ? 200 : 40);
        unsigned const keys = 1 + static_cast<unsigned>(random() % (round % 2 ? 4 : 60));
        Numbers const numbers = Random(random, count, keys);
        ASSERT_EQ(Sorted(numbers, algorithm), model(numbers)) << "round " << round;
    }
}

std::vector<int> SortedKeys(std::vector<int> const &keys, unsigned algorithm) {
    OpenList<Number> list;
    for (int key : keys) {
        Number number{key, 0};
        list.AddToTail(&number, 0);
    }
    list.Sort(algorithm);
    return Keys(list);
}

} // namespace

TEST(ListSort, The_selection_sort_exchanges_at_every_find) { ExpectLike(SelectionSorted, 1, 11); }

TEST(ListSort, The_shell_sort_takes_its_steps_one_for_one) { ExpectLike(ShellSorted, 2, 12); }

TEST(ListSort, The_quick_sort_scans_as_told) { ExpectLike(QuickSorted, 3, 13); }

TEST(ListSort, The_fast_quick_sort_scans_as_told) { ExpectLike(QuickSorted, 4, 14); }

TEST(ListSort, The_models_tell_the_sorts_apart) {
    Numbers const numbers = Telling(200);
    EXPECT_NE(SelectionSorted(numbers), QuickSorted(numbers));
    EXPECT_NE(SelectionSorted(numbers), ShellSorted(numbers));
    EXPECT_TRUE(IsOrdered(SelectionSorted(numbers)));
    EXPECT_TRUE(IsOrdered(QuickSorted(numbers)));
}

TEST(ListSort, The_automatic_choice_goes_by_size) {
    for (std::size_t const count : {1, 2, 511, 512}) {
        Numbers const numbers = Telling(count);
        EXPECT_EQ(Sorted(numbers, 0), SelectionSorted(numbers)) << count;
    }
    for (std::size_t const count : {513, 1024, 1025, 3000}) {
        Numbers const numbers = Telling(count);
        EXPECT_EQ(Sorted(numbers, 0), QuickSorted(numbers)) << count;
    }
}

TEST(ListSort, Insertion_makes_the_same_choice) {
    for (std::size_t const count : {512, 513, 1024, 1025}) {
        Numbers const numbers = Telling(count);
        OpenList<Number> list;
        Fill(list, numbers);
        Number most{1000, 0};
        list.SortedInsert(&most, 0);
        Numbers expected = count <= 512 ? SelectionSorted(numbers) : QuickSorted(numbers);
        expected.push_back(most);
        EXPECT_EQ(Contents(list), expected) << count;
    }
}

TEST(ListSort, Another_algorithm_only_marks_the_list) {
    OpenList<Word> list;
    Fill(list, {"b", "a"});
    list.Sort(7);
    EXPECT_EQ(Text(list), "b a");
    EXPECT_EQ(list.isSorted, 1);
    list.Sort(1);
    EXPECT_EQ(Text(list), "b a");
}

TEST(ListSort, A_marked_list_is_left_alone_until_an_addition) {
    for (int const atHead : {0, 1}) {
        OpenList<Word> list;
        Fill(list, {"b", "a"});
        list.isSorted = 1;
        for (unsigned const algorithm : {0u, 1u, 2u, 3u, 4u})
            list.Sort(algorithm);
        EXPECT_EQ(Text(list), "b a");
        Word word("0");
        atHead ? list.AddToHead(&word, 0) : list.AddToTail(&word, 0);
        list.Sort(0);
        EXPECT_EQ(Text(list), "0 a b");
    }
}

TEST(ListSort, An_empty_list_is_not_marked) {
    OpenList<Word> list;
    for (unsigned const algorithm : {0u, 1u, 2u, 3u, 4u, 7u})
        list.Sort(algorithm);
    EXPECT_EQ(list.isSorted, 0);
    EXPECT_EQ(list.IsEmpty(), 1);
}

TEST(ListSort, One_node_stays_as_it_is) {
    for (unsigned const algorithm : {0u, 1u, 2u, 3u, 4u}) {
        OpenList<Word> list;
        Fill(list, {"a"});
        list.Sort(algorithm);
        EXPECT_EQ(Text(list), "a");
        EXPECT_EQ(list.isSorted, 1);
        EXPECT_EQ(list.Anchor(), 0);
    }
}

TEST(ListSort, The_shell_sort_does_not_order_every_list) {
    EXPECT_EQ(SortedKeys({3, 1, 2}, 2), (std::vector<int>{3, 1, 2}));
    EXPECT_EQ(SortedKeys({1, 2}, 2), (std::vector<int>{1, 2}));
}

TEST(ListSort, The_shell_sort_moves_the_last_node_to_the_head) {
    OpenList<Number> list;
    Count(list, 20);
    auto nodes = list.Nodes();
    auto *const anchor = list.listMiddle;
    list.Sort(2);
    std::rotate(nodes.begin(), nodes.end() - 1, nodes.end());
    EXPECT_EQ(list.Nodes(), nodes); // with all links
    EXPECT_EQ(list.listMiddle, anchor);
}

TEST(ListSort, The_others_leave_links_and_the_anchor_alone) {
    for (unsigned const algorithm : {0u, 1u, 3u, 4u}) {
        OpenList<Number> list;
        Fill(list, Telling(100));
        auto const nodes = list.Nodes();
        auto *const anchor = list.listMiddle;
        list.Sort(algorithm);
        EXPECT_EQ(list.Nodes(), nodes);
        EXPECT_EQ(list.listMiddle, anchor);
    }
}

TEST(ListSort, Blocks_go_over_from_node_to_node_and_none_is_copied) {
    for (unsigned const algorithm : {1u, 2u, 3u, 4u}) {
        OpenList<Number> list;
        Fill(list, Telling(60));
        std::set<Number const *> before, after;
        for (auto const *const node : list.Nodes())
            before.insert(node->Retrieve());
        list.Sort(algorithm);
        for (auto const *const node : list.Nodes())
            after.insert(node->Retrieve());
        EXPECT_EQ(before, after);
    }
}

TEST(ListSort, Owned_and_borrowed_data_are_exchanged_with_their_schemes) {
    Word a("a"), b("b"), c("c");
    for (unsigned const algorithm : {1u, 3u, 4u}) {
        OpenList<Word> list;
        list.AddToTail(&c, 0);
        list.SetListAllocationScheme(0);
        list.AddToTail(&a, 0);
        list.AddToTail(&b, 0);
        list.Sort(algorithm);
        EXPECT_EQ(Text(list), "a b c");
        EXPECT_EQ(list.Retrieve(0), &a);
        EXPECT_EQ(list.Retrieve(1), &b);
        list.RetrieveNode(0)->external_datacopy(&b, 1); // borrows
        list.RetrieveNode(2)->external_datacopy(&b, 1); // owns
        EXPECT_EQ(list.Retrieve(0), &b);
        EXPECT_NE(list.Retrieve(2), &b);
    }
}

TEST(ListSort, Null_data_comes_first_and_nulls_are_equal) {
    for (unsigned const algorithm : {1u, 3u, 4u}) {
        OpenList<Word> list;
        Word b("b"), a("a");
        for (Word *const word :
             {&b, static_cast<Word *>(nullptr), &a, static_cast<Word *>(nullptr)})
            list.AddToTail(word, 0);
        list.Sort(algorithm);
        EXPECT_EQ(Text(list), "- - a b");
    }
}

TEST(ListSort, The_selection_sort_takes_the_larger_size_and_the_shorter_run_is_less) {
    Word words[] = {"a", "b", "c"};
    OpenList<Word> list;
    for (unsigned long const size : {3UL, 1UL, 2UL})
        list.AddToTail(words, size);
    list.Sort(1);
    for (unsigned long i = 0; i < 3; ++i)
        EXPECT_EQ(list.RetrieveNode(i)->GetSizeOfData(), i + 1);
}

TEST(ListSort, The_quick_sorts_take_the_size_of_the_left_run) {
    // A run that begins like the pivot and is shorter is equal to it; a longer one is greater.
    Word words[] = {"a", "b", "c"};
    for (unsigned const algorithm : {3u, 4u}) {
        OpenList<Word> list;
        list.AddToTail(words, 1);
        list.AddToTail(words, 2);
        list.Sort(algorithm); // not less than the pivot: the two are exchanged
        EXPECT_EQ(list.RetrieveNode(0)->GetSizeOfData(), 2u);
        EXPECT_EQ(list.RetrieveNode(1)->GetSizeOfData(), 1u);
        OpenList<Word> longer;
        longer.AddToTail(words, 3);
        longer.AddToTail(words, 2);
        longer.Sort(algorithm);
        EXPECT_EQ(longer.RetrieveNode(0)->GetSizeOfData(), 2u);
        EXPECT_EQ(longer.RetrieveNode(1)->GetSizeOfData(), 3u);
    }
}

TEST(ListSort, The_left_elements_setting_counts) {
    OpenList<Word> blind, exact;
    Fill(blind, {{"b", true}, {"C", true}, {"a", true}});
    Fill(exact, {"b", "C", "a"});
    blind.Sort(1);
    exact.Sort(1);
    EXPECT_EQ(Text(blind), "a b C");
    EXPECT_EQ(Text(exact), "C a b");
}

namespace {

// Tells how far down the stack it is compared.
struct Diver {
    int Compare(Diver const &other) const {
        auto const here = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
        deepest = (std::min)(deepest, here);
        return key < other.key ? -1 : key > other.key ? 1 : 0;
    }
    int key = 0;
    static std::uintptr_t deepest;
};
std::uintptr_t Diver::deepest;

} // namespace

TEST(ListSort, No_order_of_the_data_costs_stack) {
    constexpr int count = 8000;
    for (bool const descending : {false, true}) {
        OpenList<Diver> list;
        for (int i = 0; i < count; ++i) {
            Diver diver{descending ? count - i : i};
            list.AddToTail(&diver, 0);
        }
        auto const here = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
        Diver::deepest = here;
        list.Sort(4);
        EXPECT_LT(Diver::deepest, here);
        EXPECT_LT(here - Diver::deepest, 16384u);
        int key = descending ? 1 : 0;
        for (auto const *const node : list.Nodes())
            ASSERT_EQ(node->Retrieve()->key, key++);
    }
}

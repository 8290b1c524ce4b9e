// Nodes, lists and maps when memory fails: nothing leaks, and what there is stays usable.
#include "open_map.h"

#include <functional>
#include <list>
#include <memory>
#include <new>

#include "allocations.h"

using UTILS::ListObject;
using UTILS::MapNode;
using UTILS::MapObject;
using UTILS::Node;

namespace {

using Fail = AllocationWatch::Fail;

// Makes a container, and fails each allocation of the work on it in turn, alone and from
// there on; `check` sees what each failure left. Returns how many allocations there were.
template <typename Container> class Faults {
public:
    using Work = std::function<void(Container &)>;

    Faults(Work make, Work work, Work check)
        : m_make(std::move(make)), m_work(std::move(work)), m_check(std::move(check)) {}

    std::uint64_t Run() const {
        std::uint64_t number = 0;
        for (Fail const fail : {Fail::One, Fail::Onwards}) {
            Once(fail, 1000000); // what is made once for all is made here
            std::size_t const live = AllocationWatch::LiveBlocks();
            number = 0;
            while (Once(fail, ++number)) {
                EXPECT_EQ(AllocationWatch::LiveBlocks(), live) << "a leak, allocation " << number;
                if (testing::Test::HasFailure())
                    break;
            }
        }
        return number - 1;
    }

private:
    bool Once(Fail fail, std::uint64_t number) const {
        SCOPED_TRACE(testing::Message() << "allocation " << number);
        std::unique_ptr<Container> container;
        {
            AllocationWatch const watch;
            container = std::make_unique<Container>();
            m_make(*container);
        }
        bool const failed = Under(fail, number, *container);
        if (failed)
            m_check(*container);
        return failed;
    }

    bool Under(Fail fail, std::uint64_t number, Container &container) const {
        bool threw = false;
        bool failed = false;
        {
            AllocationWatch const watch(fail, number);
            try {
                m_work(container);
            } catch (std::bad_alloc const &) {
                threw = true;
            }
            failed = watch.Failed();
        }
        EXPECT_EQ(threw, failed);
        return failed;
    }

    Work m_make, m_work, m_check;
};

using Words = OpenList<Word>;
// Longer than what a text keeps inside itself.
#define LONG "a word that doesn't fit into the text's object itself, "

void MakeWords(Words &list) { Fill(list, {LONG "d", LONG "b", LONG "c"}); }

// A list that still has its nodes, and takes more.
void ExpectAsMade(Words &list) {
    EXPECT_EQ(Text(list), LONG "d " LONG "b " LONG "c");
    EXPECT_EQ(list.Anchor(), 1);
    EXPECT_EQ(list.isSorted, 0);
    Fill(list, {"x"});
    EXPECT_EQ(list.ListSize(), 4u);
    EXPECT_EQ(list.Anchor(), 2);
}

// One that lost some or got a part.
void ExpectUsable(Words &list) {
    std::size_t const size = list.Nodes().size();
    EXPECT_EQ(list.Anchor() == -1, size == 0);
    Fill(list, {"b", "a"});
    list.isSorted = 0;
    list.Sort(1);
    EXPECT_EQ(list.Nodes().size(), size + 2);
    EXPECT_EQ(list.SmartRetrieve(0)->text, "a");
}

std::uint64_t FailList(Faults<Words>::Work const &work, Faults<Words>::Work const &check) {
    return Faults<Words>(MakeWords, work, check).Run();
}

// How much the work asks for on a list that is made.
template <typename Work> std::uint64_t Asked(int count, Work const &work) {
    OpenList<Number> list;
    for (int i = 0; i < count; ++i) {
        Number number{i * 37 % 101, i};
        list.AddToTail(&number, 0);
    }
    AllocationWatch const watch;
    work(list);
    return watch.Count();
}

} // namespace

TEST(ListFaults, A_failed_addition_leaves_the_list_as_it_was) {
    Word word(LONG);
    EXPECT_GE(FailList([&](Words &list) { list.AddToTail(&word, 0); }, ExpectAsMade), 3u);
    EXPECT_GE(FailList([&](Words &list) { list.AddToHead(&word, 0); }, ExpectAsMade), 3u);
    char text[] = "abc";
    Faults<OpenList<char>>([&](OpenList<char> &list) { list.AddToTail(text, 0); },
                           [&](OpenList<char> &list) { list.AddToTail(text, 0); },
                           [](OpenList<char> &list) { EXPECT_EQ(list.Nodes().size(), 1u); })
        .Run();
}

TEST(ListFaults, A_failed_first_addition_leaves_an_empty_list) {
    Word word(LONG);
    auto const add = [&](Words &list) { list.AddToTail(&word, 0); };
    auto const check = [](Words &list) { EXPECT_EQ(list.IsEmpty(), 1); };
    EXPECT_GE(Faults<Words>([](Words &) {}, add, check).Run(), 3u);
}

TEST(ListFaults, A_failed_insertion_leaves_an_ordered_list) {
    for (char const *const text : {LONG "a", LONG "c", LONG "z"}) {
        Word word(text);
        EXPECT_GE(FailList([&](Words &list) { list.SortedInsert(&word, 0); },
                           [](Words &list) {
                               EXPECT_EQ(Text(list), LONG "b " LONG "c " LONG "d");
                               EXPECT_EQ(list.isSorted, 1);
                               ExpectUsable(list);
                           }),
                  3u);
    }
}

TEST(ListFaults, A_failed_copy_leaves_a_usable_list) {
    Words source;
    Fill(source, {LONG "1", LONG "2", LONG "3", LONG "4"});
    auto const copy = [&](Words &list) { list.CopyList(source); };
    auto const assign = [&](Words &list) { static_cast<ListObject<Word> &>(list) = source; };
    auto const itself = [](Words &list) { list.CopyList(list); };
    EXPECT_GE(FailList(copy, ExpectUsable), 12u);
    EXPECT_GE(FailList(assign, ExpectUsable), 12u);
    EXPECT_GE(FailList(itself, ExpectUsable), 9u);
    EXPECT_EQ(source.Nodes().size(), 4u);
}

TEST(ListFaults, A_failed_copy_of_a_standard_list_leaves_a_usable_list) {
    std::list<Word> source{LONG "1", LONG "2"};
    auto const assign = [&](Words &list) { static_cast<ListObject<Word> &>(list) = source; };
    EXPECT_GE(FailList(assign, ExpectUsable), 6u);
}

TEST(ListFaults, Sorts_ask_for_no_memory) {
    for (unsigned const algorithm : {0u, 1u, 2u, 3u, 4u})
        EXPECT_EQ(Asked(700, [&](OpenList<Number> &list) { list.Sort(algorithm); }), 0u);
    EXPECT_EQ(Asked(1100, [](OpenList<Number> &list) { list.Sort(0); }), 0u);
}

TEST(ListFaults, Retrieval_searches_and_removal_ask_for_no_memory) {
    Number const item{5, 0};
    EXPECT_EQ(Asked(100,
                    [&](OpenList<Number> &list) {
                        list.SmartRetrieve(40);
                        list.RetrieveItem(40, 0);
                        list.SearchList(&item, 0, 0, 0);
                        list.SearchList(&item, 1, 0, 0);
                        list.SmartRemoveFromIndice(30);
                        list.RemoveFromHead();
                        list.RemoveAll();
                    }),
              0u);
}

TEST(ListFaults, A_failed_replacement_leaves_the_node_with_what_it_had) {
    Word words[] = {LONG "a", LONG "b"};
    auto const replace = [&](Words &list) { list.RetrieveNode(0)->external_datacopy(words, 2); };
    EXPECT_GE(FailList(replace,
                       [](Words &list) {
                           EXPECT_EQ(list.RetrieveNode(0)->GetSizeOfData(), 1u);
                           ExpectAsMade(list);
                       }),
              2u);
}

TEST(ListFaults, A_failed_copy_of_a_node_leaves_nothing_behind) {
    auto const construct = [](Words &list) { Node<Word> const copy(*list.RetrieveNode(0)); };
    EXPECT_GE(FailList(construct, ExpectAsMade), 3u);
}

TEST(ListFaults, A_failed_building_of_a_node_leaves_what_it_had) {
    struct Built {
        Word first{LONG "a"};
        OpenNode<Word> node{&first};
    };
    Word other(LONG "b");
    auto const build = [&](Built &built) {
        built.node.BuildNodeData(&other, 1, 1, &built.node, &built.node, 0);
    };
    auto const check = [](Built &built) {
        EXPECT_EQ(built.node.Retrieve()->text, LONG "a");
        EXPECT_EQ(built.node.nextNode, nullptr);
        EXPECT_EQ(built.node.prevNode, nullptr);
    };
    EXPECT_GE(Faults<Built>([](Built &) {}, build, check).Run(), 2u);
}

TEST(MapFaults, A_failed_addition_leaves_the_map_as_it_was) {
    auto const make = [](OpenMap<char> &map) { Fill(map, 3); };
    int key = 9;
    char value[] = "abc";
    auto const add = [&](OpenMap<char> &map) { map.AddToTail(&key, value, 0, 0); };
    auto const check = [](OpenMap<char> &map) {
        EXPECT_EQ(Contents(map), (Pairs{{0, "0"}, {1, "1"}, {2, "2"}}));
        EXPECT_EQ(map.Anchor(), 1);
        Fill(map, 1);
        EXPECT_EQ(map.Nodes().size(), 4u);
    };
    EXPECT_GE(Faults<OpenMap<char>>(make, add, check).Run(), 5u);
}

TEST(MapFaults, A_failed_copy_leaves_a_usable_map) {
    OpenMap<char> source;
    Fill(source, 4);
    auto const make = [](OpenMap<char> &map) { Fill(map, 2); };
    auto const copy = [&](OpenMap<char> &map) {
        static_cast<MapObject<int, char> &>(map) = source;
    };
    auto const check = [](OpenMap<char> &map) {
        std::size_t const size = map.Nodes().size();
        EXPECT_LT(size, 4u);
        Fill(map, 1);
        EXPECT_EQ(map.Nodes().size(), size + 1);
        map.RemoveAll();
        EXPECT_EQ(map.IsEmpty(), 1);
    };
    EXPECT_GE(Faults<OpenMap<char>>(make, copy, check).Run(), 20u);
}

TEST(MapFaults, A_failed_building_of_a_node_leaves_what_it_had) {
    auto const make = [](OpenMap<char> &map) { Fill(map, 1); };
    int key = 9;
    char value[] = "abc";
    auto const build = [&](OpenMap<char> &map) {
        map.listHead->BuildMapNodeData(&key, value, 1, 1, nullptr, nullptr, 0, 0);
    };
    auto const check = [](OpenMap<char> &map) { EXPECT_EQ(Contents(map), (Pairs{{0, "0"}})); };
    EXPECT_GE(Faults<OpenMap<char>>(make, build, check).Run(), 4u);
}

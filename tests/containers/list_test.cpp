// Lists: additions, the anchor, removal from the head, and what each kind of list has.
#include "list_elements.h"

#include <type_traits>

using UTILS::ListObject;
using UTILS::UtilsBase;

namespace {

using Size = unsigned long;

// Whether an operation is there to be called.
template <typename List, template <typename> class Call, typename = void> struct Has
    : std::false_type {};
template <typename List, template <typename> class Call>
struct Has<List, Call, std::void_t<Call<List>>> : std::true_type {};

template <typename> struct ElementOf;
template <typename T> struct ElementOf<ListObject<T>> { using Type = T; };
template <typename L> using Data = typename ElementOf<L>::Type *;
template <typename L> L &A();

template <typename L> using Assign = decltype(A<L>() = A<L const>());
template <typename L> using Copy = decltype(A<L>().CopyList(A<L const>()));
template <typename L> using AssignStandard =
    decltype(A<L>() = A<std::list<typename ElementOf<L>::Type>>());
template <typename L> using CopyStandard =
    decltype(A<L>().CopyList(A<std::list<typename ElementOf<L>::Type>>()));
template <typename L> using ToHead = decltype(A<L>().AddToHead(Data<L>(), Size()));
template <typename L> using ToTail = decltype(A<L>().AddToTail(Data<L>(), Size()));
template <typename L> using Insert = decltype(A<L>().SortedInsert(Data<L>(), Size()));
template <typename L> using FromHead = decltype(A<L>().RemoveFromHead());
template <typename L> using All = decltype(A<L>().RemoveAll());
template <typename L> using Empty = decltype(A<L>().IsEmpty());
template <typename L> using Null = decltype(A<L>().SetToNull());
template <typename L> using SizeOf = decltype(A<L>().ListSize());
template <typename L> using Scheme = decltype(A<L>().SetListAllocationScheme(1));
template <typename L> using Direction = decltype(A<L>().SetSearchDirection(1));
template <typename L> using Get = decltype(A<L>().Retrieve(0));
template <typename L> using GetItem = decltype(A<L>().RetrieveItem(0, 1));
template <typename L> using GetNode = decltype(A<L>().RetrieveNode(0));
template <typename L> using GetNodeItem = decltype(A<L>().RetrieveNodeItem(0, 1));
template <typename L> using Smart = decltype(A<L>().SmartRetrieve(0));
template <typename L> using SmartItem = decltype(A<L>().SmartRetrieveItem(0, 1));
template <typename L> using Remove = decltype(A<L>().SmartRemoveFromIndice(0));
template <typename L> using RemoveItem = decltype(A<L>().SmartRemoveFromIndiceItem(0, 1));
template <typename L> using Search = decltype(A<L>().SearchList(Data<L>(), 0, 0, 0));
template <typename L> using Sort = decltype(A<L>().Sort(0));

template <typename L, template <typename> class... Calls>
constexpr bool hasAll = (Has<L, Calls>::value && ...);
template <typename L, template <typename> class... Calls>
constexpr bool hasNone = (!Has<L, Calls>::value && ...);

} // namespace

TEST(List, Has_all_operations_for_class_types_only) {
    using Words = ListObject<Word>;
    EXPECT_TRUE((hasAll<Words, Assign, Copy, ToTail, FromHead, All, Empty, Null>));
    EXPECT_TRUE((
        hasAll<Words, AssignStandard, CopyStandard, ToHead, Insert, SizeOf, Scheme, Direction, Get,
               GetItem, GetNode, GetNodeItem, Smart, SmartItem, Remove, RemoveItem, Search, Sort>));
    using Texts = ListObject<char>;
    EXPECT_TRUE((hasAll<Texts, Assign, Copy, ToTail, FromHead, All, Empty, Null>));
    EXPECT_TRUE((hasNone<Texts, AssignStandard, CopyStandard, ToHead, Insert, SizeOf, Scheme,
                         Direction, Get, GetItem, GetNode, GetNodeItem, Smart, SmartItem, Remove,
                         RemoveItem, Search, Sort>));
    using Bytes = ListObject<unsigned char>;
    EXPECT_TRUE((hasAll<Bytes, Assign, Copy, ToTail, FromHead, All, Empty, Null>));
    EXPECT_TRUE((hasNone<Bytes, AssignStandard, CopyStandard, ToHead, Insert, SizeOf, Scheme,
                         Direction, Get, GetItem, GetNode, GetNodeItem, Smart, SmartItem, Remove,
                         RemoveItem, Search, Sort>));
}

TEST(List, Tells_its_class) {
    ListObject<char> const text;
    ListObject<unsigned char> const bytes;
    EXPECT_STREQ(text.derived_class(), "class UTILS::ListObject<char>");
    EXPECT_STREQ(bytes.derived_class(), "class UTILS::ListObject<unsigned char>");
    UtilsBase<char> const &base = text;
    EXPECT_STREQ(base.derived_class(), "class UTILS::ListObject<char>");
}

TEST(List, A_new_list_has_its_initial_settings) {
    OpenList<Word> const list(0, 7);
    EXPECT_EQ(list.listSize, 0u);
    EXPECT_EQ(list.smartThreshold, 50u);
    EXPECT_EQ(list.listAllocationScheme, 0);
    EXPECT_EQ(list.isSorted, 0);
    EXPECT_EQ(list.searchDirection, 1);
    EXPECT_EQ(list.matchStyle, 0);
    EXPECT_EQ(list.caseMode, 7);
    EXPECT_EQ(list.listHead, nullptr);
    EXPECT_EQ(list.listTail, nullptr);
    EXPECT_EQ(list.listMiddle, nullptr);
    EXPECT_EQ(list.IsEmpty(), 1);
    EXPECT_EQ(list.ListSize(), 0u);
}

TEST(List, Settings_are_set) {
    OpenList<Word> list;
    list.SetListAllocationScheme(0);
    list.SetSearchDirection(2);
    EXPECT_EQ(list.listAllocationScheme, 0);
    EXPECT_EQ(list.searchDirection, 2);
}

TEST(List, Adds_at_both_ends) {
    OpenList<Word> list;
    Word words[] = {"a", "b", "c"};
    EXPECT_EQ(list.AddToTail(words + 1, 0), 1);
    EXPECT_EQ(list.AddToHead(words, 0), 1);
    EXPECT_EQ(list.AddToTail(words + 2, 0), 1);
    EXPECT_EQ(Text(list), "a b c");
    EXPECT_EQ(list.ListSize(), 3u);
    EXPECT_EQ(list.IsEmpty(), 0);
}

TEST(List, The_anchor_is_at_half_the_size_after_additions_at_the_tail) {
    OpenList<Number> list;
    for (int size = 1; size <= 120; ++size) {
        Number number{size, 0};
        list.AddToTail(&number, 0);
        EXPECT_EQ(list.Anchor(), size / 2);
    }
}

TEST(List, The_anchor_is_at_half_the_size_after_additions_at_the_head) {
    OpenList<Number> list;
    for (int size = 1; size <= 120; ++size) {
        Number number{size, 0};
        list.AddToHead(&number, 0);
        EXPECT_EQ(list.Anchor(), size / 2);
    }
}

TEST(List, Five_additions_leave_the_anchor_at_index_2) {
    OpenList<Number> tail, head;
    for (int i = 0; i < 5; ++i) {
        Number number{i, 0};
        tail.AddToTail(&number, 0);
        head.AddToHead(&number, 0);
    }
    EXPECT_EQ(tail.Anchor(), 2);
    EXPECT_EQ(head.Anchor(), 2);
    EXPECT_EQ(tail.listMiddle->Retrieve()->key, 2);
    EXPECT_EQ(head.listMiddle->Retrieve()->key, 2);
}

TEST(List, Additions_at_the_ends_clear_the_mark_of_order) {
    OpenList<Number> list;
    Number number{1, 0};
    list.isSorted = 1;
    list.AddToTail(&number, 0);
    EXPECT_EQ(list.isSorted, 0);
    list.isSorted = 1;
    list.AddToHead(&number, 0);
    EXPECT_EQ(list.isSorted, 0);
}

TEST(List, Removal_from_head_of_four_leaves_the_anchor_on_the_last) {
    OpenList<Number> list;
    Count(list, 4);
    list.RemoveFromHead();
    EXPECT_EQ(Keys(list), (std::vector<int>{1, 2, 3}));
    EXPECT_EQ(list.listMiddle, list.listTail);
}

TEST(List, Removal_from_head_moves_the_anchor_for_even_sizes_only) {
    OpenList<Number> list;
    Count(list, 5);
    list.RemoveFromHead(); // odd: the node at 2 stays, and is at 1 now
    EXPECT_EQ(list.Anchor(), 1);
    list.RemoveFromHead(); // even: the next one
    EXPECT_EQ(list.Anchor(), 1);
    list.RemoveFromHead();
    EXPECT_EQ(list.Anchor(), 0);
    list.RemoveFromHead();
    EXPECT_EQ(list.Anchor(), 0);
}

TEST(List, The_anchor_goes_on_when_its_node_is_removed_from_the_head) {
    OpenList<Number> list;
    Count(list, 3);
    list.listMiddle = list.listHead;
    list.RemoveFromHead();
    EXPECT_EQ(list.Anchor(), 0);
    EXPECT_EQ(list.listMiddle->Retrieve()->key, 1);
}

TEST(List, The_anchor_stays_on_the_last_node_where_it_would_leave_the_list) {
    OpenList<Number> list;
    Count(list, 4);
    list.listMiddle = list.listTail;
    list.RemoveFromHead();
    EXPECT_EQ(list.listMiddle, list.listTail);
    list.isSorted = 0;
    list.listMiddle = list.listHead;
    list.RemoveFromHead();
    Number number{0, 0};
    list.listMiddle = list.listHead;
    list.AddToHead(&number, 0); // even before: the anchor goes to the new head
    EXPECT_EQ(list.Anchor(), 0);
    list.AddToTail(&number, 0);
    list.AddToHead(&number, 0); // even before
    EXPECT_EQ(list.Anchor(), 1);
}

TEST(List, Removal_from_head_keeps_the_mark_of_order) {
    OpenList<Number> list;
    Count(list, 2);
    list.isSorted = 1;
    list.RemoveFromHead();
    EXPECT_EQ(list.isSorted, 1);
}

TEST(List, The_last_node_removed_leaves_nothing) {
    OpenList<Number> list;
    list.RemoveFromHead();
    EXPECT_EQ(list.IsEmpty(), 1);
    Count(list, 1);
    list.RemoveFromHead();
    EXPECT_EQ(list.IsEmpty(), 1);
    EXPECT_EQ(list.listSize, 0u);
    list.RemoveFromHead();
    EXPECT_EQ(list.listSize, 0u);
}

TEST(List, All_nodes_go_and_others_may_come) {
    OpenList<Number> list;
    Count(list, 77);
    list.RemoveAll();
    EXPECT_EQ(list.IsEmpty(), 1);
    EXPECT_EQ(list.listSize, 0u);
    list.RemoveAll();
    Count(list, 2);
    EXPECT_EQ(Keys(list), (std::vector<int>{0, 1}));
    EXPECT_EQ(list.Anchor(), 1);
}

TEST(List, Set_to_null_forgets_the_nodes_and_frees_none) {
    OpenList<Number> list;
    Count(list, 3);
    auto *const head = list.listHead, *const tail = list.listTail, *const middle = list.listMiddle;
    list.SetToNull();
    EXPECT_EQ(list.IsEmpty(), 1);
    EXPECT_EQ(list.listSize, 0u);
    list.listHead = head;
    list.listTail = tail;
    list.listMiddle = middle;
    list.listSize = 3;
    EXPECT_EQ(Keys(list), (std::vector<int>{0, 1, 2}));
}

TEST(List, Is_empty_only_without_all_three_nodes) {
    OpenList<Number> list;
    Count(list, 1);
    auto *const node = list.listHead;
    list.SetToNull();
    for (auto pointer : {&OpenList<Number>::listHead, &OpenList<Number>::listTail,
                         &OpenList<Number>::listMiddle}) {
        list.*pointer = node;
        EXPECT_EQ(list.IsEmpty(), 0);
        list.*pointer = nullptr;
    }
    list.listHead = list.listTail = list.listMiddle = node;
    list.listSize = 1;
}

TEST(List, With_scheme_0_the_pointer_is_stored) {
    Word words[] = {"a", "b"};
    OpenList<Word> list(0, 1);
    list.AddToTail(words, 0);
    list.AddToHead(words + 1, 0);
    EXPECT_EQ(list.Retrieve(0), words + 1);
    EXPECT_EQ(list.Retrieve(1), words);
    words[0].text = "changed";
    EXPECT_EQ(Text(list), "b changed");
}

TEST(List, The_scheme_counts_from_when_it_is_set) {
    Word word("a");
    OpenList<Word> list;
    list.AddToTail(&word, 0);
    list.SetListAllocationScheme(0);
    list.AddToTail(&word, 0);
    EXPECT_NE(list.Retrieve(0), &word);
    EXPECT_EQ(list.Retrieve(1), &word);
}

TEST(List, A_size_of_0_is_measured) {
    Word words[] = {"a", "b"};
    OpenList<Word> list;
    list.AddToTail(words, 0);
    list.AddToTail(words, 2);
    EXPECT_EQ(list.RetrieveNode(0)->GetSizeOfData(), 1u);
    EXPECT_EQ(list.RetrieveNode(1)->GetSizeOfData(), 2u);
    EXPECT_EQ(list.Retrieve(1)[1].text, "b");
    char text[] = "abc";
    OpenList<char> texts;
    texts.AddToTail(text, 0);
    texts.AddToTail(text, 2);
    EXPECT_EQ(texts.listHead->GetSizeOfData(), 3u);
    EXPECT_STREQ(texts.listTail->Retrieve(), "ab");
}

TEST(List, Null_data_is_refused_nowhere) {
    for (int const scheme : {0, 1}) {
        OpenList<Word> list(scheme, 1);
        EXPECT_EQ(list.AddToTail(nullptr, 0), 1);
        EXPECT_EQ(list.AddToHead(nullptr, 5), 1);
        EXPECT_EQ(list.Retrieve(0), nullptr);
        EXPECT_EQ(list.SmartRetrieve(1), nullptr);
        EXPECT_EQ(list.RetrieveNode(0)->GetSizeOfData(), 0u);
    }
}

TEST(List, The_case_setting_goes_to_each_node) {
    char text[] = "abc";
    OpenList<char> blind(1, 0), exact(1, 1);
    blind.AddToTail(text, 0);
    exact.AddToTail(text, 0);
    EXPECT_EQ(*blind.listHead == "ABC", 1);
    EXPECT_EQ(*exact.listHead == "ABC", 0);
}

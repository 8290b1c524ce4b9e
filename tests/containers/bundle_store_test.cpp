// The bundle's copies, and its lists.
#include "UtilsVector.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "fault_text.h"
#include "run_element.h"

using UTILS::ListObject;
using UTILS::MapObject;
using UTILS::MemObject;
using UTILS::Utils;
using UTILS::UtilsAllocator;

namespace {

template <class T> struct Open : Utils<T, int> {
    using Base = Utils<T, int>;
    Open() = default;
    Open(Open const &other) : Base(other) {}
    using Base::ListCopy;
    using Base::listStore;
    using Base::MapCopy;
    using Base::mapStore;
    using Base::VectorCopy;
    using Base::vectorStore;
};

// Name the fields of their bases.
struct OpenList : ListObject<Element> {
    using ListObject<Element>::caseMode;
    using ListObject<Element>::listAllocationScheme;
    using ListObject<Element>::searchDirection;
    using ListObject<Element>::smartThreshold;
};
struct OpenTextList : ListObject<char> {
    using ListObject<char>::listSize;
};
struct OpenMap : MapObject<int, char> {
    using MapObject<int, char>::listHead;
    using MapObject<int, char>::listSize;
};

std::vector<std::string> TextsOf(ListObject<Element> &list) {
    std::vector<std::string> texts;
    for (unsigned long i = 0; i < list.ListSize(); ++i)
        texts.push_back(list.Retrieve(i)->text);
    return texts;
}

std::vector<std::string> TextsOf(UtilsAllocator<MemObject<char>> const &store) {
    std::vector<std::string> texts;
    for (unsigned long i = 0; i < store.GetLength(); ++i)
        texts.emplace_back(store[i].Retrieve(), store[i].RetrieveSize());
    return texts;
}

using Texts = std::vector<std::string>;

} // namespace

TEST(BundleCopy, copies_the_runs_deeply) {
    Open<char> from;
    from.AddVector("abc", 0);
    from.AddVector("de", 0);
    Open<char> const to(from);
    ASSERT_NE(nullptr, to.vectorStore);
    EXPECT_NE(from.vectorStore, to.vectorStore);
    from.RetrieveVectorItem(0).Append("x");
    EXPECT_EQ((Texts{"abc", "de"}), TextsOf(*to.vectorStore));
}

TEST(BundleCopy, of_a_bundle_without_stores_has_none) {
    Open<char> const from;
    Open<char> const to(from);
    EXPECT_EQ(nullptr, to.vectorStore);
    EXPECT_EQ(nullptr, to.listStore);
    EXPECT_EQ(nullptr, to.mapStore);
}

TEST(BundleCopy, copies_all_three_stores) {
    Open<char> from;
    from.AddVector("abc", 0);
    from.listStore = new UtilsAllocator<ListObject<char>>(2);
    char text[] = "item";
    (*from.listStore)[1ul].AddToTail(text, 0);
    from.mapStore = new UtilsAllocator<MapObject<int, char>>(1);
    int key = 5;
    (*from.mapStore)[0ul].AddToTail(&key, text, 0, 0);
    Open<char> const to(from);
    ASSERT_TRUE(to.vectorStore && to.listStore && to.mapStore);
    EXPECT_EQ((Texts{"abc"}), TextsOf(*to.vectorStore));
    EXPECT_EQ(2u, to.listStore->GetLength());
    EXPECT_EQ(0u, (*to.listStore)[0ul].*&OpenTextList::listSize);
    EXPECT_EQ(1u, (*to.listStore)[1ul].*&OpenTextList::listSize);
    MapObject<int, char> const &map = (*to.mapStore)[0ul];
    ASSERT_EQ(1u, map.*&OpenMap::listSize);
    UTILS::MapNode<int, char> const *const pair = map.*&OpenMap::listHead;
    EXPECT_EQ(5, *pair->RetrieveKey());
    EXPECT_STREQ("item", pair->RetrieveVal());
    EXPECT_NE(text, pair->RetrieveVal());
}

TEST(BundleCopy, of_a_vector_replaces_the_one_that_is_there) {
    Open<char> from;
    from.AddVector("abc", 0);
    Open<char> to;
    to.BuildVector(3, "x", 0);
    to.VectorCopy(from);
    EXPECT_EQ((Texts{"abc"}), TextsOf(*to.vectorStore));
    to.VectorCopy(to);
    EXPECT_EQ((Texts{"abc"}), TextsOf(*to.vectorStore));
    UtilsAllocator<MemObject<char>> plain(2);
    plain[1ul].Append("plain");
    to.VectorCopy(&plain);
    EXPECT_EQ((Texts{"", "plain"}), TextsOf(*to.vectorStore));
    to.VectorCopy(Open<char>());
    EXPECT_EQ(nullptr, to.vectorStore);
}

TEST(BundleCopy, of_lists_and_maps_replaces_those_that_are_there) {
    Open<char> to;
    UtilsAllocator<ListObject<char>> const lists(2);
    UtilsAllocator<MapObject<int, char>> const maps(3);
    to.ListCopy(&lists);
    to.MapCopy(&maps);
    EXPECT_EQ(2u, to.listStore->GetLength());
    EXPECT_EQ(3u, to.mapStore->GetLength());
    UtilsAllocator<ListObject<char>> const fewer(1);
    to.ListCopy(&fewer);
    EXPECT_EQ(1u, to.listStore->GetLength());
    to.ListCopy(nullptr);
    to.MapCopy(nullptr);
    EXPECT_EQ(nullptr, to.listStore);
    EXPECT_EQ(nullptr, to.mapStore);
}

TEST(BundleCopy, of_a_bundle_of_lists_copies_the_items) {
    Open<Element> from;
    from.BuildList(2, 1);
    Element item("item");
    from.RetrieveListItem(1).AddToTail(&item, 0);
    Open<Element> to;
    to.ListCopy(from);
    from.RemoveList();
    EXPECT_EQ(0u, to.RetrieveListSize(0));
    EXPECT_EQ((Texts{"item"}), TextsOf(to.RetrieveListItem(1)));
    Open<Element> const third(to);
    EXPECT_EQ((Texts{"item"}), TextsOf(third.RetrieveListItem(1)));
}

TEST(BundleLists, are_built_with_the_settings_of_new_lists_and_the_scheme_given) {
    for (int const scheme : {0, 1}) {
        Open<Element> bundle;
        bundle.BuildList(2, scheme);
        ASSERT_EQ(2u, bundle.listStore->GetLength());
        for (unsigned long i = 0; i < 2; ++i) {
            ListObject<Element> &list = bundle.RetrieveListItem(i);
            EXPECT_EQ(scheme, list.*&OpenList::listAllocationScheme);
            EXPECT_EQ(1, list.*&OpenList::caseMode);
            EXPECT_EQ(1, list.*&OpenList::searchDirection);
            EXPECT_EQ(50u, list.*&OpenList::smartThreshold);
            EXPECT_EQ(0u, bundle.RetrieveListSize(i));
        }
    }
}

TEST(BundleLists, copy_their_items_or_borrow_them_by_the_scheme) {
    int const alive = Element::Alive();
    {
        Open<Element> bundle;
        Element item("item");
        bundle.BuildList(1, 0);
        bundle.RetrieveListItem(0).AddToTail(&item, 0);
        EXPECT_EQ(&item, bundle.RetrieveListItem(0).Retrieve(0));
        bundle.BuildList(1, 1); // in the place of those
        EXPECT_EQ(0u, bundle.RetrieveListSize(0));
        bundle.RetrieveListItem(0).AddToTail(&item, 0);
        EXPECT_NE(&item, bundle.RetrieveListItem(0).Retrieve(0));
    }
    EXPECT_EQ(alive, Element::Alive());
}

TEST(BundleLists, are_sorted_one_by_one) {
    for (unsigned int const algorithm : {1u, 3u, 4u}) {
        Open<Element> bundle;
        bundle.BuildList(2, 1);
        for (char const *const text : {"b", "c", "a"}) {
            Element item(text);
            bundle.RetrieveListItem(0).AddToTail(&item, 0);
            bundle.RetrieveListItem(1).AddToTail(&item, 0);
        }
        bundle.SortList(1, algorithm);
        EXPECT_EQ((Texts{"b", "c", "a"}), TextsOf(bundle.RetrieveListItem(0))) << algorithm;
        EXPECT_EQ((Texts{"a", "b", "c"}), TextsOf(bundle.RetrieveListItem(1))) << algorithm;
    }
}

TEST(BundleLists, have_none_from_their_number_on) {
    Open<Element> bundle;
    auto const is = [](auto const &call, char const *detail) {
        return IsOutOfRange(call, detail, "UtilsAllocator");
    };
    EXPECT_TRUE(is([&] { bundle.RetrieveListItem(0); }, "0:0"));
    EXPECT_TRUE(is([&] { bundle.RetrieveListSize(1); }, "1:0"));
    EXPECT_TRUE(is([&] { bundle.SortList(2, 1); }, "2:0"));
    bundle.BuildList(2, 1);
    EXPECT_TRUE(is([&] { bundle.RetrieveListItem(2); }, "2:2"));
    EXPECT_TRUE(is([&] { bundle.RetrieveListSize(2); }, "2:2"));
    EXPECT_TRUE(is([&] { bundle.SortList(3, 1); }, "3:2"));
    bundle.BuildList(0, 1);
    EXPECT_TRUE(is([&] { bundle.RetrieveListItem(0); }, "0:0"));
}

// The bundle: a vector of runs, or lists, and how they are built, copied and removed.
#include "UtilsVector.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "fault_text.h"

using UTILS::MemObject;
using UTILS::Utils;

namespace {

template <class T> struct Open : Utils<T, int> {
    using Base = Utils<T, int>;
    using Base::listStore;
    using Base::mapStore;
    using Base::vectorStore;
};
using Bundle = Open<char>;
using Texts = std::vector<std::string>;

Texts TextsOf(Bundle const &bundle) {
    Texts texts;
    for (unsigned long i = 0; bundle.vectorStore && i < bundle.vectorStore->GetLength(); ++i) {
        MemObject<char> const &item = bundle.RetrieveVectorItem(i);
        EXPECT_EQ(item.RetrieveSize(), bundle.RetrieveVectorSize(i));
        EXPECT_EQ('\0', item.Retrieve()[item.RetrieveSize()]);
        texts.emplace_back(item.Retrieve(), item.RetrieveSize());
    }
    return texts;
}

Bundle &Fill(Bundle &bundle, Texts const &texts) {
    for (std::string const &text : texts)
        bundle.AddVector(text.c_str(), 0);
    return bundle;
}

template <class Call>
testing::AssertionResult HasNoItem(Call const &call, std::string const &detail) {
    return IsOutOfRange(call, detail, "UtilsAllocator");
}

} // namespace

TEST(Bundle, begins_without_stores) {
    Bundle const bundle;
    EXPECT_EQ(nullptr, bundle.vectorStore);
    EXPECT_EQ(nullptr, bundle.listStore);
    EXPECT_EQ(nullptr, bundle.mapStore);
    EXPECT_TRUE(HasNoItem([&] { bundle.RetrieveVectorItem(0); }, "0:0"));
    EXPECT_TRUE(HasNoItem([&] { bundle.RetrieveVectorSize(3); }, "3:0"));
}

TEST(Bundle, calls_nothing_upper_or_lower_case) {
    Utils<char, int> const bundle;
    EXPECT_EQ(0, bundle.isupper('A'));
    EXPECT_EQ(0, bundle.islower('a'));
    EXPECT_STREQ("class UTILS::Utils<char, int>", bundle.derived_class());
    EXPECT_STREQ("class UTILS::Utils<unsigned char, int>",
                 (Utils<unsigned char, int>().derived_class()));
}

TEST(BundleVector, is_built_of_equal_runs) {
    Bundle bundle;
    bundle.BuildVector(3, "x", 0);
    EXPECT_EQ((Texts{"x", "x", "x"}), TextsOf(bundle));
    bundle.BuildVector(2, "abc", 2);
    EXPECT_EQ((Texts{"ab", "ab"}), TextsOf(bundle));
}

TEST(BundleVector, built_without_data_has_empty_runs) {
    Bundle bundle;
    bundle.BuildVector(3, nullptr, 0);
    EXPECT_EQ((Texts{"", "", ""}), TextsOf(bundle));
    bundle.BuildVector(1, nullptr, 7);
    EXPECT_EQ((Texts{""}), TextsOf(bundle));
}

TEST(BundleVector, built_of_no_runs_has_none) {
    Bundle bundle;
    bundle.BuildVector(2, "x", 0);
    bundle.BuildVector(0, "x", 0);
    ASSERT_NE(nullptr, bundle.vectorStore);
    EXPECT_EQ(0, bundle.vectorStore->AllocationScheme());
    EXPECT_TRUE(HasNoItem([&] { bundle.RetrieveVectorItem(0); }, "0:0"));
}

TEST(BundleVector, is_built_of_a_text_of_its_own) {
    Bundle bundle;
    Fill(bundle, {"abc", "def"});
    bundle.BuildVector(2, bundle.RetrieveVectorItem(1).Retrieve(), 0);
    EXPECT_EQ((Texts{"def", "def"}), TextsOf(bundle));
}

TEST(BundleVector, of_bytes) {
    Open<unsigned char> bundle;
    unsigned char const bytes[] = {1, 0, 2};
    bundle.BuildVector(2, bytes, 3);
    EXPECT_EQ(3u, bundle.RetrieveVectorSize(1));
    EXPECT_EQ(2, bundle.RetrieveVectorItem(1).Retrieve()[2]);
    bundle.BuildVector(1, bytes, 0);
    EXPECT_EQ(1u, bundle.RetrieveVectorSize(0));
    EXPECT_TRUE(HasNoItem([&] { bundle.RetrieveVectorItem(1); }, "1:1"));
}

TEST(BundleVector, grows_by_a_run) {
    Bundle bundle;
    bundle.AddVector("abc", 0);
    bundle.AddVector("defg", 2);
    bundle.AddVector(nullptr, 0);
    bundle.AddVector(nullptr, 4);
    EXPECT_EQ((Texts{"abc", "de", "", ""}), TextsOf(bundle));
}

TEST(BundleVector, begins_with_an_empty_run_where_the_first_has_no_data) {
    Bundle bundle;
    bundle.AddVector(nullptr, 0);
    EXPECT_EQ((Texts{""}), TextsOf(bundle));
}

TEST(BundleVector, grows_by_a_text_of_its_own) {
    Bundle bundle;
    Fill(bundle, {"abc", "def"});
    bundle.AddVector(bundle.RetrieveVectorItem(0).Retrieve(), 0);
    bundle.AddVector(bundle.RetrieveVectorItem(1).Retrieve() + 1, 2);
    EXPECT_EQ((Texts{"abc", "def", "abc", "ef"}), TextsOf(bundle));
}

TEST(BundleVector, gives_runs_that_can_be_changed) {
    Bundle bundle;
    Fill(bundle, {"a", "b"});
    bundle.RetrieveVectorItem(1).Append("c");
    EXPECT_EQ((Texts{"a", "bc"}), TextsOf(bundle));
    EXPECT_EQ(2u, bundle.RetrieveVectorSize(1));
}

TEST(BundleVector, gives_no_run_from_its_length_on) {
    Bundle bundle;
    Fill(bundle, {"a", "b"});
    EXPECT_TRUE(HasNoItem([&] { bundle.RetrieveVectorItem(2); }, "2:2"));
    EXPECT_TRUE(HasNoItem([&] { bundle.RetrieveVectorSize(4294967295u); }, "4294967295:2"));
}

TEST(BundleVector, closes_up_over_a_run_that_is_removed) {
    Bundle bundle;
    Fill(bundle, {"a", "bb", "ccc", "dddd"});
    bundle.RemoveVectorItem(1);
    EXPECT_EQ((Texts{"a", "ccc", "dddd"}), TextsOf(bundle));
    bundle.RemoveVectorItem(2);
    EXPECT_EQ((Texts{"a", "ccc"}), TextsOf(bundle));
    bundle.RemoveVectorItem(0);
    EXPECT_EQ((Texts{"ccc"}), TextsOf(bundle));
}

TEST(BundleVector, empties_its_only_run_and_refuses_to_remove_it) {
    Bundle bundle;
    bundle.AddVector("abc", 0);
    EXPECT_TRUE(AllocatorRefuses([&] { bundle.RemoveVectorItem(0); }, zeroSize, "0"));
    EXPECT_EQ((Texts{""}), TextsOf(bundle));
}

TEST(BundleVector, loses_no_run_by_an_index_that_there_is_not) {
    Bundle bundle;
    EXPECT_TRUE(HasNoItem([&] { bundle.RemoveVectorItem(0); }, "0:0"));
    Fill(bundle, {"a", "b"});
    EXPECT_TRUE(HasNoItem([&] { bundle.RemoveVectorItem(2); }, "2:2"));
    EXPECT_TRUE(HasNoItem([&] { bundle.RemoveVectorItem(4294967295u); }, "4294967295:2"));
    EXPECT_EQ((Texts{"a", "b"}), TextsOf(bundle));
}

TEST(Bundle, removes_stores_that_are_there_and_those_that_are_not) {
    Bundle bundle;
    bundle.RemoveVector();
    bundle.RemoveList();
    bundle.RemoveMap();
    Fill(bundle, {"a"});
    bundle.listStore = new UTILS::UtilsAllocator<UTILS::ListObject<char>>(2);
    bundle.mapStore = new UTILS::UtilsAllocator<UTILS::MapObject<int, char>>(2);
    bundle.RemoveList();
    EXPECT_EQ(nullptr, bundle.listStore);
    EXPECT_NE(nullptr, bundle.mapStore);
    bundle.RemoveMap();
    EXPECT_EQ(nullptr, bundle.mapStore);
    EXPECT_NE(nullptr, bundle.vectorStore);
    bundle.RemoveVector();
    EXPECT_EQ(nullptr, bundle.vectorStore);
    bundle.AddVector("again", 0);
    EXPECT_EQ((Texts{"again"}), TextsOf(bundle));
}

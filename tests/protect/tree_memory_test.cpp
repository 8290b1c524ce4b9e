// Memory: what questions take of it, and what an add leaves when there is none.
#include "tree_nodes.h"

#include <new>

#include <gtest/gtest.h>

#include "allocations.h"

namespace {

constexpr char newPath[] = "C:\\windows\\a folder of a long name\\and another\\file.ext";

void FillTree(ProtectNode &tree) {
    ProtectAdd(tree, "C:\\windows\\win.ini", 1);
    ProtectAdd(tree, "HKLM\\Software", 1);
}

// Adds a path with one allocation failing; false if it never came to that.
bool AddWithout(ProtectNode &tree, const char *path, std::uint64_t number) {
    bool thrown = false;
    bool failed = false;
    {
        AllocationWatch const watch(AllocationWatch::Fail::One, number);
        try {
            ProtectAdd(tree, path, 2);
        } catch (std::bad_alloc const &) {
            thrown = true;
        }
        failed = watch.Failed();
    }
    EXPECT_EQ(failed, thrown) << number;
    return thrown;
}

// Nothing on the way to the new path is marked.
void ExpectNothingNewMarked(ProtectNode const &tree) {
    Names names;
    for (char const *const name :
         {"C:", "windows", "a folder of a long name", "and another", "file.ext"}) {
        names.emplace_back(name);
        ProtectNode const *const node = NodeAt(tree, names);
        EXPECT_TRUE(!node || node->marked == 0) << name;
        EXPECT_TRUE(!node || node->data == (names.size() < 3 ? 1u : 2u)) << name;
    }
}

} // namespace

TEST(ProtectMemory, A_question_takes_none) {
    ProtectNode tree;
    FillTree(tree);
    std::uint32_t data = 0;
    AllocationWatch const watch(AllocationWatch::Fail::Onwards, 1);
    for (char const *const path :
         {"C:\\windows\\win.ini", "c:\\WINDOWS", "C:\\missing\\x", "", "\\\\", "HKLM\\\xc4\xd6",
          "C:\\windows\\a name that is longer than any small text is kept without memory"}) {
        ProtectFind(tree, path, nullptr);
        ProtectFind(tree, path, &data);
    }
    EXPECT_EQ(0u, watch.Count());
}

TEST(ProtectMemory, An_add_of_what_is_there_takes_none) {
    ProtectNode tree;
    FillTree(tree);
    AllocationWatch const watch(AllocationWatch::Fail::Onwards, 1);
    EXPECT_EQ(183u, ProtectAdd(tree, "c:\\windows\\WIN.INI", 0));
    EXPECT_EQ(0u, ProtectAdd(tree, "C:\\windows", 0));
    EXPECT_EQ(0u, watch.Count());
}

TEST(ProtectMemory, An_add_without_it_throws_and_leaves_a_sound_tree) {
    std::uint64_t failures = 0;
    for (bool failed = true; failed; failures += failed) {
        std::size_t const before = AllocationWatch::LiveBlocks();
        {
            ProtectNode tree;
            FillTree(tree);
            failed = AddWithout(tree, newPath, failures + 1);
            if (failed) {
                ExpectNothingNewMarked(tree);
                EXPECT_EQ(0u, ProtectAdd(tree, newPath, 2));
            }
            EXPECT_TRUE(Ask(tree, newPath));
            EXPECT_TRUE(Ask(tree, "C:\\windows\\win.ini"));
            EXPECT_TRUE(Ask(tree, "HKLM\\Software"));
            EXPECT_EQ(8u, CountBelow(tree));
        }
        EXPECT_EQ(before, AllocationWatch::LiveBlocks());
    }
    EXPECT_LE(3u, failures); // at least one for each of the three new nodes
}

// What the next path has in common with one that failed is only what was made of that.
TEST(ProtectMemory, After_an_add_without_it_the_next_path_is_added_whole) {
    bool failed = true;
    for (std::uint64_t number = 1; failed; ++number) {
        ProtectNode tree;
        ProtectAdder adder(tree);
        adder.Add("C:\\a\\b", 0);
        failed = false;
        {
            AllocationWatch const watch(AllocationWatch::Fail::One, number);
            try {
                adder.Add("C:\\a\\c\\d\\e", 0);
            } catch (std::bad_alloc const &) {
                failed = true;
            }
        }
        EXPECT_EQ(0u, adder.Add("C:\\a\\c\\d\\f", 0)) << number;
        EXPECT_EQ(failed ? 0u : 183u, adder.Add("C:\\a\\c\\d\\e", 0)) << number;
        EXPECT_EQ(7u, CountBelow(tree)) << number;
        EXPECT_FALSE(Ask(tree, "C:\\a\\c\\d")) << number;
    }
}

// At each number of children another one may need more room, and that may not be there.
TEST(ProtectMemory, Among_many_children_a_failed_add_leaves_all_others) {
    constexpr int many = 1200;
    std::size_t const before = AllocationWatch::LiveBlocks();
    {
        ProtectNode tree;
        for (int i = 0; i < many; ++i) {
            std::string const name = "name " + std::to_string(i * 7919 % many);
            for (std::uint64_t number = 1; AddWithout(tree, name.c_str(), number);)
                ++number;
        }
        EXPECT_EQ(std::size_t{many}, tree.children.size());
        for (int i = 0; i < many; ++i)
            EXPECT_TRUE(Ask(tree, "NAME " + std::to_string(i))) << i;
    }
    EXPECT_EQ(before, AllocationWatch::LiveBlocks());
}

TEST(ProtectMemory, Clearing_gives_the_nodes_back_and_takes_none) {
    std::size_t const before = AllocationWatch::LiveBlocks();
    {
        ProtectNode tree;
        {
            AllocationWatch const watch;
            FillTree(tree);
            ProtectAdd(tree, newPath, 0);
        }
        std::size_t const full = AllocationWatch::LiveBlocks();
        std::uint64_t taken = 0;
        {
            AllocationWatch const watch(AllocationWatch::Fail::Onwards, 1);
            ProtectClear(tree);
            taken = watch.Count();
        }
        EXPECT_EQ(0u, taken);
        EXPECT_LE(8u, full - AllocationWatch::LiveBlocks()); // at least one for each node
    }
    EXPECT_EQ(before, AllocationWatch::LiveBlocks());
}

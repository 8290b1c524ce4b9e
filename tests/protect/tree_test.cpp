// The tree of components: what goes in, what is found, and what asking does to it.
#include "tree_nodes.h"

#include <gtest/gtest.h>

#include "platform/process.h"
#include "roles.h"

namespace {

constexpr int survived = 77;

// Adds or asks for a path of so many characters.
int UseLongPath(Arguments const &arguments) {
    ProtectNode tree;
    std::string const path(std::stoul(arguments.at(1)), 'x');
    if (arguments.at(0) == "add")
        ProtectAdd(tree, path.c_str(), 0);
    else
        ProtectFind(tree, path.c_str(), nullptr);
    return survived;
}

Role const useLongPath("use-long-path", UseLongPath);

bool Marked(ProtectNode const &root, Names const &names) {
    ProtectNode const *const node = NodeAt(root, names);
    return node && node->marked != 0;
}

} // namespace

TEST(ProtectAdd, Of_a_new_path_answers_0_and_of_a_listed_one_183) {
    ProtectNode tree;
    EXPECT_EQ(0u, ProtectAdd(tree, "C:\\windows\\system.ini", 0));
    EXPECT_EQ(183u, ProtectAdd(tree, "C:\\windows\\system.ini", 0));
    EXPECT_EQ(3u, CountBelow(tree));
}

TEST(ProtectAdd, Of_another_spelling_in_case_answers_183_and_makes_nothing) {
    ProtectNode tree;
    ProtectAdd(tree, "C:\\Windows\\Win.ini", 0);
    EXPECT_EQ(183u, ProtectAdd(tree, "c:\\WINDOWS\\wIN.INI", 0));
    EXPECT_EQ(3u, CountBelow(tree));
    EXPECT_NE(nullptr, NodeAt(tree, {"C:", "Windows", "Win.ini"}));
}

TEST(ProtectAdd, Marks_the_last_node_only) {
    ProtectNode tree;
    ProtectAdd(tree, "C:\\windows\\fonts\\arial.ttf", 0);
    EXPECT_FALSE(Marked(tree, {}));
    EXPECT_FALSE(Marked(tree, {"C:"}));
    EXPECT_FALSE(Marked(tree, {"C:", "windows", "fonts"}));
    EXPECT_TRUE(Marked(tree, {"C:", "windows", "fonts", "arial.ttf"}));
}

TEST(ProtectAdd, Of_the_interior_of_a_longer_path_marks_it_and_answers_0) {
    ProtectNode tree;
    ProtectAdd(tree, "HKLM\\SYSTEM\\Setup", 0);
    EXPECT_EQ(0u, ProtectAdd(tree, "HKLM\\SYSTEM", 0));
    EXPECT_TRUE(Marked(tree, {"HKLM", "SYSTEM"}));
    EXPECT_EQ(183u, ProtectAdd(tree, "HKLM\\SYSTEM", 0));
    EXPECT_EQ(3u, CountBelow(tree));
}

TEST(ProtectAdd, Of_what_a_question_marked_answers_183) {
    ProtectNode tree;
    ProtectAdd(tree, "C:\\a\\b", 0);
    EXPECT_FALSE(Ask(tree, "C:\\a"));
    EXPECT_EQ(183u, ProtectAdd(tree, "C:\\a", 0));
}

TEST(ProtectAdd, Of_the_empty_path_marks_the_given_node_once) {
    for (char const *const path : {"", "\\", "\\\\\\"}) {
        ProtectNode tree;
        EXPECT_EQ(0u, ProtectAdd(tree, path, 5)) << path;
        EXPECT_NE(0, tree.marked);
        EXPECT_EQ(0u, tree.data);
        EXPECT_EQ(183u, ProtectAdd(tree, "", 5));
        EXPECT_TRUE(tree.children.empty());
    }
}

TEST(ProtectAdd, Backslashes_in_runs_and_at_the_ends_make_no_component) {
    ProtectNode tree;
    EXPECT_EQ(0u, ProtectAdd(tree, "\\\\C:\\\\\\A\\\\", 0));
    EXPECT_EQ(183u, ProtectAdd(tree, "C:\\A", 0));
    EXPECT_EQ(183u, ProtectAdd(tree, "C:\\\\A\\", 0));
    EXPECT_EQ(2u, CountBelow(tree));
    EXPECT_TRUE(Marked(tree, {"C:", "A"}));
}

TEST(ProtectAdd, A_slash_and_a_blank_are_letters_like_others) {
    ProtectNode tree;
    ProtectAdd(tree, "C:\\a/b\\ c ", 0);
    EXPECT_TRUE(Marked(tree, {"C:", "a/b", " c "}));
    EXPECT_FALSE(Has(tree, "C:\\a"));
    EXPECT_FALSE(Has(tree, "C:\\a/b\\c"));
}

TEST(ProtectAdd, Gives_its_data_to_every_node_that_it_makes_and_to_no_other) {
    ProtectNode tree;
    ProtectAdd(tree, "C:\\a", 1);
    ProtectAdd(tree, "C:\\a\\b\\c", 0xffffffff);
    ProtectAdd(tree, "C:\\a\\b", 3);
    ProtectAdd(tree, "C:\\a", 4);
    EXPECT_EQ(0u, tree.data);
    EXPECT_EQ(1u, NodeAt(tree, {"C:"})->data);
    EXPECT_EQ(1u, NodeAt(tree, {"C:", "a"})->data);
    EXPECT_EQ(0xffffffffu, NodeAt(tree, {"C:", "a", "b"})->data);
    EXPECT_EQ(0xffffffffu, NodeAt(tree, {"C:", "a", "b", "c"})->data);
}

TEST(ProtectAdd, Begins_at_the_node_that_it_is_given) {
    ProtectNode tree;
    ProtectAdd(tree, "C:\\a", 0);
    ProtectNode &below = tree.children.begin()->second;
    EXPECT_EQ(183u, ProtectAdd(below, "a", 0));
    EXPECT_EQ(0u, ProtectAdd(below, "b\\c", 0));
    EXPECT_TRUE(Ask(tree, "C:\\b\\c"));
}

TEST(ProtectAdd, Keeps_no_pointer_to_the_path) {
    ProtectNode tree;
    std::string path = "C:\\windows";
    ProtectAdd(tree, path.c_str(), 0);
    path.assign(path.size(), '?');
    EXPECT_TRUE(Ask(tree, "C:\\windows"));
}

TEST(ProtectAdd, Takes_as_many_components_as_a_path_has_room_for) {
    ProtectNode tree;
    std::string path = "a";
    for (int i = 1; i < 130; ++i)
        path += "\\a";
    ASSERT_EQ(259u, path.size());
    EXPECT_EQ(0u, ProtectAdd(tree, path.c_str(), 0));
    EXPECT_EQ(130u, CountBelow(tree));
    EXPECT_TRUE(Ask(tree, path));
}

TEST(ProtectFind, With_a_result_tells_whether_a_path_is_there_and_its_data) {
    ProtectNode tree;
    ProtectAdd(tree, "C:\\a\\b", 7);
    std::uint32_t data = 99;
    EXPECT_TRUE(ProtectFind(tree, "C:\\a\\b", &data));
    EXPECT_EQ(7u, data);
    data = 99;
    EXPECT_TRUE(ProtectFind(tree, "C:\\a", &data)); // interior: there, if not marked
    EXPECT_EQ(7u, data);
    EXPECT_FALSE(ProtectFind(tree, "C:\\a\\x", &data));
    EXPECT_EQ(0u, data);
    data = 99;
    EXPECT_TRUE(ProtectFind(tree, "", &data));
    EXPECT_EQ(0u, data);
}

TEST(ProtectFind, With_a_result_never_marks) {
    ProtectNode tree;
    ProtectAdd(tree, "C:\\a\\b", 7);
    std::uint32_t data = 0;
    for (char const *const path : {"", "C:", "C:\\a"})
        for (int round = 0; round < 3; ++round)
            EXPECT_TRUE(ProtectFind(tree, path, &data)) << path;
    EXPECT_FALSE(Marked(tree, {}) || Marked(tree, {"C:"}) || Marked(tree, {"C:", "a"}));
    EXPECT_FALSE(Ask(tree, "C:\\a"));
}

TEST(ProtectFind, Of_an_interior_path_answers_false_then_true_for_ever) {
    ProtectNode tree;
    ProtectAdd(tree, "C:\\windows\\system32\\drivers\\etc\\hosts", 0);
    EXPECT_FALSE(Ask(tree, "C:\\windows\\system32\\drivers\\etc"));
    EXPECT_TRUE(Ask(tree, "C:\\windows\\system32\\drivers\\etc"));
    EXPECT_TRUE(Ask(tree, "c:\\WINDOWS\\system32\\\\drivers\\ETC\\"));
    // Of that node only: neither the one above nor the one below takes the mark.
    EXPECT_FALSE(Ask(tree, "C:\\windows\\system32\\drivers"));
    EXPECT_TRUE(Ask(tree, "C:\\windows\\system32\\drivers\\etc\\hosts"));
}

TEST(ProtectFind, Of_a_missing_path_answers_false_however_often_and_marks_nothing) {
    ProtectNode tree;
    ProtectAdd(tree, "C:\\a\\b", 0);
    for (int round = 0; round < 3; ++round) {
        EXPECT_FALSE(Ask(tree, "C:\\a\\c"));
        EXPECT_FALSE(Ask(tree, "C:\\x\\b"));
        EXPECT_FALSE(Ask(tree, "D:"));
    }
    EXPECT_EQ(3u, CountBelow(tree));
    EXPECT_FALSE(Marked(tree, {}) || Marked(tree, {"C:"}) || Marked(tree, {"C:", "a"}));
}

// The walk ends at the first component that isn't there: it doesn't go on from that node.
TEST(ProtectFind, Doesnt_pass_over_a_component_that_is_missing) {
    ProtectNode tree;
    ProtectAdd(tree, "a\\b", 0);
    EXPECT_FALSE(Ask(tree, "a\\x\\b"));
    EXPECT_FALSE(Ask(tree, "x\\a\\b"));
    EXPECT_FALSE(Ask(tree, "b"));
}

TEST(ProtectFind, Goes_neither_down_nor_up_from_a_listed_path) {
    ProtectNode tree;
    ProtectAdd(tree, "C:\\windows\\fonts", 0);
    EXPECT_FALSE(Ask(tree, "C:\\windows\\fonts\\arial.ttf"));
    EXPECT_FALSE(Ask(tree, "C:\\windows\\fonts\\arial.ttf"));
    EXPECT_FALSE(Ask(tree, "C:\\windows"));
    EXPECT_FALSE(Ask(tree, "C:"));
    EXPECT_TRUE(Ask(tree, "C:\\windows\\fonts"));
}

TEST(ProtectFind, Takes_whole_components_only) {
    ProtectNode tree;
    ProtectAdd(tree, "C:\\windows\\explorer.exe", 0);
    for (char const *const path :
         {"C:\\windows\\explorer.ex", "C:\\windows\\explorer.exe1", "C:\\window\\explorer.exe",
          "C:\\windows\\*", "C:\\windows\\?", "C:\\windows\\.\\explorer.exe"})
        EXPECT_FALSE(Ask(tree, path)) << path;
}

TEST(ProtectFind, Knows_no_wildcards_in_what_is_listed) {
    ProtectNode tree;
    ProtectAdd(tree, "HKLM\\Software\\Classes\\*", 0);
    EXPECT_TRUE(Ask(tree, "HKLM\\software\\classes\\*"));
    EXPECT_FALSE(Ask(tree, "HKLM\\software\\classes\\a"));
}

TEST(ProtectFind, Of_no_components_answers_for_the_given_node) {
    for (char const *const path : {"", "\\", "\\\\\\\\"}) {
        ProtectNode unmarked, marked;
        ProtectAdd(marked, "", 0);
        EXPECT_TRUE(Ask(marked, path)) << path;
        EXPECT_FALSE(Ask(unmarked, path)) << path;
        EXPECT_TRUE(Ask(unmarked, path)) << path;
    }
}

TEST(ProtectFind, Passes_over_runs_of_backslashes) {
    ProtectNode tree;
    ProtectAdd(tree, "C:\\A", 0);
    EXPECT_TRUE(Ask(tree, "C:\\\\A\\"));
    EXPECT_TRUE(Ask(tree, "\\C:\\A"));
    EXPECT_FALSE(Ask(tree, "C:A"));
    EXPECT_FALSE(Ask(tree, "C:/A"));
}

TEST(ProtectClear, Frees_all_below_a_node_and_leaves_the_node) {
    ProtectNode tree;
    ProtectAdd(tree, "", 0);
    ProtectAdd(tree, "a\\b\\c", 0);
    ProtectAdd(tree, "x", 0);
    ProtectClear(tree);
    EXPECT_TRUE(tree.children.empty());
    EXPECT_TRUE(Ask(tree, ""));
    EXPECT_FALSE(Has(tree, "a"));
    ProtectClear(tree);
    EXPECT_EQ(0u, ProtectAdd(tree, "a\\b\\c", 0));
    EXPECT_TRUE(Ask(tree, "a\\b\\c"));
}

TEST(ProtectClear, Of_a_node_within_leaves_the_rest) {
    ProtectNode tree;
    ProtectAdd(tree, "a\\b\\c", 0);
    ProtectAdd(tree, "x\\y", 0);
    ProtectClear(tree.children.begin()->second);
    EXPECT_FALSE(Has(tree, "a\\b"));
    EXPECT_TRUE(Has(tree, "a"));
    EXPECT_TRUE(Ask(tree, "x\\y"));
}

TEST(ProtectPath, Of_259_characters_is_as_good_as_any) {
    ProtectNode tree;
    std::string const path = "C:\\" + std::string(256, 'x');
    EXPECT_EQ(0u, ProtectAdd(tree, path.c_str(), 0));
    EXPECT_TRUE(Ask(tree, path));
    EXPECT_EQ(survived, RunRole("use-long-path", {"add", "259"}));
    EXPECT_EQ(survived, RunRole("use-long-path", {"find", "259"}));
}

TEST(ProtectPath, Of_260_characters_ends_the_process) {
    for (char const *const operation : {"add", "find"})
        for (char const *const length : {"260", "261", "5000"}) {
            long const code = RunRole("use-long-path", {operation, length});
            // 3 is what abort leaves on Windows.
            EXPECT_TRUE(code == 3 || code > 255 || code < -1) << operation << ' ' << code;
        }
}

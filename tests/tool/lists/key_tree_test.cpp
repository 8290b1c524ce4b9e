// Keys gathered in a tree, and their lines.
#include "lists/key_tree.h"

#include <gtest/gtest.h>

using namespace qvlink;

namespace {

using Lines = std::vector<std::string>;

class KeyTreeTest : public testing::Test {
protected:
    Lines List(Lines const &without = {}) {
        return LinesOf(m_tree, LineFilter(without), m_skipped);
    }
    Key &Machine(std::string_view path) { return *KeyTree::Make(m_tree.machine, path); }
    Key &User(std::string_view path) { return *KeyTree::Make(m_tree.user, path); }
    void ExpectSkipped(std::string const &words) {
        ASSERT_EQ(1u, m_skipped.size()) << testing::PrintToString(m_skipped);
        EXPECT_NE(std::string::npos, m_skipped[0].find(words)) << m_skipped[0];
    }

    KeyTree m_tree;
    Lines m_skipped;
};

} // namespace

TEST_F(KeyTreeTest, Both_blocks_come_in_order_with_an_empty_line_between) {
    User("B");
    Machine("b\\A");
    Machine("B\\a b");
    Machine("a");
    Machine("B\\a\\z");
    EXPECT_EQ(
        (Lines{"HKLM\\a", "HKLM\\b", "HKLM\\b\\A", "HKLM\\b\\A\\z", "HKLM\\b\\a b", "", "HKCU\\B"}),
        List());
    EXPECT_EQ(Lines{}, m_skipped);
}

TEST_F(KeyTreeTest, Without_keys_there_are_no_lines) { EXPECT_EQ(Lines{}, List()); }

TEST_F(KeyTreeTest, One_block_keeps_its_side_of_the_empty_line) {
    User("A");
    EXPECT_EQ((Lines{"", "HKCU\\A"}), List());
}

TEST_F(KeyTreeTest, What_a_pattern_fits_goes_with_all_below_it) {
    Machine("A\\B\\C");
    Machine("A\\BB");
    User("A\\B");
    EXPECT_EQ((Lines{"HKLM\\A", "HKLM\\A\\BB", "", "HKCU\\A", "HKCU\\A\\B"}), List({"hklm\\a\\b"}));
}

TEST_F(KeyTreeTest, A_line_of_260_characters_is_told) {
    std::string const fits(254, 'a'); // HKLM\ and 254 are 259
    Machine(fits);
    Machine(fits + "b\\below");
    User("A");
    EXPECT_EQ((Lines{"HKLM\\" + fits, "", "HKCU\\A"}), List());
    ExpectSkipped("longer than the 259 characters");
}

TEST_F(KeyTreeTest, A_name_that_ends_with_a_blank_is_told_and_those_below_are_listed) {
    Machine("A \\B");
    EXPECT_EQ((Lines{"HKLM\\A \\B", ""}), List());
    ExpectSkipped("HKLM\\A : ");
}

TEST_F(KeyTreeTest, A_name_with_a_control_character_is_told) {
    Machine("A\nB\\C");
    Machine("D");
    EXPECT_EQ((Lines{"HKLM\\D", ""}), List());
    ExpectSkipped("control character");
}

TEST_F(KeyTreeTest, A_path_deeper_than_512_keys_is_refused) {
    std::string path;
    for (int i = 0; i < 512; ++i) {
        path += "\\a";
    }
    EXPECT_NE(nullptr, KeyTree::Make(m_tree.machine, path));
    EXPECT_EQ(nullptr, KeyTree::Make(m_tree.machine, path + "\\a"));
}

TEST_F(KeyTreeTest, A_link_has_what_its_target_holds) {
    Machine("System\\ControlSet001\\Control");
    Machine("System\\CurrentControlSet").link = "HKLM\\SYSTEM\\ControlSet001";
    EXPECT_EQ((Lines{"HKLM\\System", "HKLM\\System\\ControlSet001",
                     "HKLM\\System\\ControlSet001\\Control", "HKLM\\System\\CurrentControlSet",
                     "HKLM\\System\\CurrentControlSet\\Control", ""}),
              List());
}

TEST_F(KeyTreeTest, A_link_may_lead_to_the_other_root_and_through_links) {
    Machine("A").link = "HKCU\\B\\C";
    User("B").link = "HKCU\\D";
    User("D\\C\\E");
    EXPECT_EQ((Lines{"HKLM\\A", "HKLM\\A\\E", "", "HKCU\\B", "HKCU\\B\\C", "HKCU\\B\\C\\E",
                     "HKCU\\D", "HKCU\\D\\C", "HKCU\\D\\C\\E"}),
              List());
}

TEST_F(KeyTreeTest, A_link_to_nothing_is_listed_and_told) {
    Machine("A").link = "HKLM\\B";
    EXPECT_EQ((Lines{"HKLM\\A", ""}), List());
    ExpectSkipped("HKLM\\A: a link to HKLM\\B, which isn't among the keys read");
}

TEST_F(KeyTreeTest, A_link_to_a_key_above_it_is_listed_once) {
    Machine("A\\B").link = "HKLM\\A";
    EXPECT_EQ((Lines{"HKLM\\A", "HKLM\\A\\B", ""}), List());
    ExpectSkipped("which it lies below");
}

TEST_F(KeyTreeTest, A_link_to_the_root_ends_too) {
    Machine("A\\B").link = "HKLM";
    EXPECT_EQ((Lines{"HKLM\\A", "HKLM\\A\\B", ""}), List());
}

TEST_F(KeyTreeTest, Links_that_lead_across_each_other_end) {
    Machine("A\\ToB").link = "HKLM\\B";
    Machine("B\\ToA").link = "HKLM\\A";
    EXPECT_EQ((Lines{"HKLM\\A", "HKLM\\A\\ToB", "HKLM\\A\\ToB\\ToA", "HKLM\\B", "HKLM\\B\\ToA",
                     "HKLM\\B\\ToA\\ToB", ""}),
              List());
    EXPECT_EQ(2u, m_skipped.size());
}

TEST_F(KeyTreeTest, Links_in_a_ring_lead_nowhere) {
    Machine("A").link = "HKLM\\B";
    Machine("B").link = "HKLM\\A";
    EXPECT_EQ((Lines{"HKLM\\A", "HKLM\\B", ""}), List());
    EXPECT_EQ(2u, m_skipped.size());
}

TEST_F(KeyTreeTest, A_link_that_is_left_out_is_not_followed) {
    Machine("A").link = "HKLM\\B";
    EXPECT_EQ(Lines{}, List({"HKLM\\A"}));
    EXPECT_EQ(Lines{}, m_skipped);
}

TEST(SystemPaths, The_machine_and_the_user_have_lines) {
    EXPECT_EQ("HKLM\\Software\\A", LineOfSystemPath("\\Registry\\Machine\\Software\\A", ""));
    EXPECT_EQ("HKLM\\A", LineOfSystemPath("\\REGISTRY\\MACHINE\\A", ""));
    EXPECT_EQ("HKLM", LineOfSystemPath("\\Registry\\Machine", ""));
    EXPECT_EQ("HKCU\\A", LineOfSystemPath("\\Registry\\User\\S-1-5\\A", "User\\S-1-5"));
}

TEST(SystemPaths, Others_have_none) {
    EXPECT_EQ(std::nullopt, LineOfSystemPath("\\Registry\\User\\S-1-6\\A", "User\\S-1-5"));
    EXPECT_EQ(std::nullopt, LineOfSystemPath("\\Registry\\User\\S-1-5_Classes\\A", "User\\S-1-5"));
    EXPECT_EQ(std::nullopt, LineOfSystemPath("\\Registry\\User\\S-1-5\\A", ""));
    EXPECT_EQ(std::nullopt, LineOfSystemPath("\\Registry\\A\\Key", ""));
    EXPECT_EQ(std::nullopt, LineOfSystemPath("\\Device\\A", ""));
    EXPECT_EQ(std::nullopt, LineOfSystemPath("", ""));
}

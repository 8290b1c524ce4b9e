// The climb from parent to parent.
#include "open_path.h"

#include <cstring>
#include <vector>

#include <gtest/gtest.h>

using UTILS::UtilsString;

namespace {

// The ancestors by GetParentDir and GetNextParentDir, until there is none.
std::vector<std::string> Ancestors(std::string const &text) {
    OpenPath path(text);
    std::vector<std::string> all;
    UtilsString parent;
    for (int found = path.GetParentDir(parent); found; found = path.GetNextParentDir(parent))
        all.emplace_back(parent.Retrieve());
    return all;
}

using Texts = std::vector<std::string>;

} // namespace

TEST(Parents, Are_the_path_without_its_last_components) {
    EXPECT_EQ((Texts{"C:\\a\\b", "C:\\a", "C:"}), Ancestors("C:\\a\\b\\c"));
    EXPECT_EQ((Texts{"C:"}), Ancestors("C:\\a"));
    EXPECT_EQ((Texts{}), Ancestors("C:"));
    EXPECT_EQ((Texts{"HKLM\\Software", "HKLM"}), Ancestors("HKLM\\Software\\x"));
    EXPECT_EQ((Texts{}), Ancestors("HKLM"));
    EXPECT_EQ((Texts{"C:\\a a"}), Texts{Ancestors("C:\\a a\\a a").front()});
}

TEST(Parents, Of_a_network_path_go_up_to_its_server) {
    Texts const all = Ancestors("\\\\server\\share\\x");
    ASSERT_LE(2u, all.size());
    EXPECT_EQ("\\\\server\\share", all[0]);
    EXPECT_EQ("\\\\server", all[1]);
}

TEST(Parents, Are_a_matter_of_text) {
    EXPECT_EQ((Texts{"C:\\a\\..", "C:\\a", "C:"}), Ancestors("C:\\a\\..\\b"));
    EXPECT_EQ((Texts{"C:\\*", "C:"}), Ancestors("C:\\*\\?"));
}

TEST(Parents, With_names_that_come_again_lose_the_last_one) {
    EXPECT_EQ((Texts{"C:\\ab\\b\\ab", "C:\\ab\\b", "C:\\ab", "C:"}),
              Ancestors("C:\\ab\\b\\ab\\ab"));
}

TEST(Parents, Leave_the_path_and_the_level_alone) {
    OpenPath path("C:\\a\\b\\c");
    UtilsString parent;
    EXPECT_EQ(1, path.GetParentDir(parent));
    EXPECT_EQ(1, path.GetParentDir(parent));
    EXPECT_STREQ("C:\\a\\b", parent);
    EXPECT_EQ("C:\\a\\b\\c", path.Text());
    EXPECT_EQ(0u, path.parentLevel);
}

TEST(Parents, Beyond_the_top_there_is_none_and_nothing_is_written) {
    OpenPath path("C:\\a");
    UtilsString parent("old");
    char text[10] = "old";
    OpenPath out("D:\\old");
    path.parentLevel = 1;
    EXPECT_EQ(0, path.GetParentDir(parent));
    EXPECT_EQ(0, path.GetParentDir(text));
    EXPECT_EQ(0, path.GetParentDir(out));
    EXPECT_STREQ("old", parent);
    EXPECT_STREQ("old", text);
    EXPECT_EQ("D:\\old", out.Text());
    EXPECT_EQ(1u, path.parentLevel);
}

TEST(Parents, Of_an_empty_path_are_none) {
    OpenPath path;
    UtilsString parent;
    EXPECT_EQ(0, path.GetParentDir(parent));
    EXPECT_EQ(0, path.GetNextParentDir(parent));
    EXPECT_EQ(1u, path.parentLevel);
    EXPECT_EQ(0, path.SetPathToSubDir());
}

TEST(Parents, Are_counted_by_failed_steps_too) {
    OpenPath path("C:\\a\\b");
    UtilsString parent("old");
    EXPECT_EQ(1, path.GetNextParentDir(parent));
    EXPECT_STREQ("C:", parent);
    EXPECT_EQ(0, path.GetNextParentDir(parent));
    EXPECT_EQ(0, path.GetNextParentDir(parent));
    EXPECT_EQ(3u, path.parentLevel);
    EXPECT_STREQ("C:", parent);
    EXPECT_EQ(0, path.GetPrevParentDir(parent)); // the one that failed
    EXPECT_EQ(1, path.GetPrevParentDir(parent));
    EXPECT_STREQ("C:", parent);
    EXPECT_EQ(1, path.GetPrevParentDir(parent));
    EXPECT_STREQ("C:\\a", parent);
    EXPECT_EQ(0u, path.parentLevel);
}

TEST(Parents, Before_the_first_there_is_none) {
    OpenPath path("C:\\a\\b");
    UtilsString parent("old");
    char text[20] = "old";
    OpenPath out("D:\\old");
    EXPECT_EQ(0, path.GetPrevParentDir(parent));
    EXPECT_EQ(0, path.GetPrevParentDir(text));
    EXPECT_EQ(0, path.GetPrevParentDir(out));
    EXPECT_STREQ("old", parent);
    EXPECT_STREQ("old", text);
    EXPECT_EQ("D:\\old", out.Text());
    EXPECT_EQ(0u, path.parentLevel);
}

TEST(Parents, Come_into_texts_and_paths_alike) {
    OpenPath path("C:\\a\\b\\c\\d");
    UtilsString parent;
    char text[20] = "";
    OpenPath out;
    EXPECT_EQ(1, path.GetParentDir(text));
    EXPECT_STREQ("C:\\a\\b\\c", text);
    EXPECT_EQ(1, path.GetParentDir(out));
    EXPECT_EQ("C:\\a\\b\\c", out.Text());
    EXPECT_EQ(1, path.GetNextParentDir(text));
    EXPECT_STREQ("C:\\a\\b", text);
    EXPECT_EQ(1, path.GetNextParentDir(out));
    EXPECT_EQ("C:\\a", out.Text());
    EXPECT_EQ(1, path.GetPrevParentDir(text));
    EXPECT_STREQ("C:\\a\\b", text);
    EXPECT_EQ(1, path.GetPrevParentDir(out));
    EXPECT_EQ("C:\\a\\b\\c", out.Text());
    EXPECT_EQ(0u, path.parentLevel);
}

TEST(Parents, Come_into_a_path_by_its_own_rules) {
    OpenPath path("HKLM\\a\\b");
    OpenPath out;
    EXPECT_EQ(1, path.GetParentDir(out));
    EXPECT_EQ(1, out.GetRegFlag());
    EXPECT_EQ("HKLM\\a", out.Text());
}

TEST(Parents, Come_into_the_path_itself) {
    OpenPath path("C:\\a\\b\\c");
    EXPECT_EQ(1, path.GetParentDir(path));
    EXPECT_EQ("C:\\a\\b", path.Text());
    EXPECT_EQ(1, path.GetNextParentDir(path));
    EXPECT_EQ("C:", path.Text());
    EXPECT_EQ(1, path.GetParentDir(path.path) + 1); // at level 1 there is none
}

TEST(Parents, Of_keys_stay_where_they_are) {
    OpenPath path("HKLM\\a\\b\\c");
    UtilsString parent;
    char text[20] = "";
    OpenPath out;
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(1, path.GetNextParentKey(parent));
        EXPECT_STREQ("HKLM\\a\\b", parent);
        EXPECT_EQ(1, path.GetNextParentKey(text));
        EXPECT_STREQ("HKLM\\a\\b", text);
        EXPECT_EQ(1, path.GetNextParentKey(out));
        EXPECT_EQ("HKLM\\a\\b", out.Text());
    }
    path.parentLevel = 1;
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(1, path.GetPrevParentKey(parent));
        EXPECT_STREQ("HKLM\\a", parent);
        EXPECT_EQ(1, path.GetPrevParentKey(text));
        EXPECT_STREQ("HKLM\\a", text);
        EXPECT_EQ(1, path.GetPrevParentKey(out));
        EXPECT_EQ("HKLM\\a", out.Text());
        EXPECT_EQ(1, path.GetParentKey(parent));
        EXPECT_STREQ("HKLM\\a", parent);
        EXPECT_EQ(1, path.GetParentKey(text));
        EXPECT_STREQ("HKLM\\a", text);
        EXPECT_EQ(1, path.GetParentKey(out));
        EXPECT_EQ("HKLM\\a", out.Text());
    }
    EXPECT_EQ(1u, path.parentLevel);
}

TEST(Parents, Begin_anew_when_the_search_is_closed) {
    OpenPath path("C:\\a\\b");
    path.parentLevel = 5;
    path.CloseParentSearch();
    EXPECT_EQ(0u, path.parentLevel);
    path.parentLevel = 5;
    path.ResetParentSearch();
    EXPECT_EQ(0u, path.parentLevel);
}

TEST(Parents, Under_way_carry_their_level_into_an_absolute_path) {
    OpenPath path("C:\\a\\b\\c");
    UtilsString parent;
    path.GetNextParentDir(parent);
    path.SetDir("D:\\x\\y\\z");
    EXPECT_EQ("D:\\x", ParentOf(path));
}

TEST(MovingUp, Makes_the_parent_the_path) {
    OpenPath path("C:\\a\\b\\module.dll");
    EXPECT_EQ(1, path.SetPathToSubDir());
    EXPECT_EQ("C:\\a\\b", path.Text());
    EXPECT_EQ(1, path.SetPathToSubKey());
    EXPECT_EQ("C:\\a", path.Text());
    EXPECT_EQ(1, path.SetPathToSubDir());
    EXPECT_EQ("C:", path.Text());
    EXPECT_EQ(0, path.SetPathToSubDir());
    EXPECT_EQ("C:", path.Text());
}

TEST(MovingUp, Takes_the_ancestor_at_the_present_level_and_keeps_that) {
    OpenPath path("C:\\a\\b\\c\\d");
    path.parentLevel = 1;
    EXPECT_EQ(1, path.SetPathToSubDir());
    EXPECT_EQ("C:\\a\\b", path.Text());
    EXPECT_EQ(1u, path.parentLevel);
}

TEST(MovingUp, In_the_registry_stays_in_it) {
    OpenPath path("HKCU\\a\\b");
    EXPECT_EQ(1, path.SetPathToSubKey());
    EXPECT_EQ("HKCU\\a", path.Text());
    EXPECT_EQ(1, path.GetRegFlag());
}

// Single components

TEST(Folders, Are_the_components_from_the_end) {
    OpenPath path("C:\\abc\\de\\f");
    char const *const folders[] = {"f", "de", "abc", "C:"};
    for (char const *folder : folders) {
        UtilsString text;
        char chars[10] = "";
        EXPECT_EQ(1, path.GetDirFolder(text));
        EXPECT_STREQ(folder, text);
        EXPECT_EQ(1, path.GetDirFolder(chars));
        EXPECT_STREQ(folder, chars);
        EXPECT_EQ(1, path.GetKeyFolder(text));
        EXPECT_STREQ(folder, text);
        EXPECT_EQ(1, path.GetKeyFolder(chars));
        EXPECT_STREQ(folder, chars);
        ++path.parentLevel;
    }
    EXPECT_EQ("C:\\abc\\de\\f", path.Text());
}

TEST(Folders, That_arent_there_leave_the_text_alone) {
    for (char const *text : {"C:", "HKLM"}) {
        OpenPath const path(text);
        UtilsString folder("old");
        char chars[10] = "old";
        EXPECT_EQ(0, path.GetDirFolder(folder));
        EXPECT_EQ(0, path.GetDirFolder(chars));
        EXPECT_EQ(0, path.GetKeyFolder(folder));
        EXPECT_EQ(0, path.GetKeyFolder(chars));
        EXPECT_STREQ("old", folder);
        EXPECT_STREQ("old", chars);
    }
}

TEST(Folders, Are_parsed_alone_or_with_all_behind_them) {
    OpenPath path("C:\\abc\\de\\f");
    UtilsString part;
    struct {
        unsigned long level;
        char const *alone;
        char const *tail;
    } const rows[] = {
        {0, "f", "f"}, {1, "de", "de\\f"}, {2, "abc", "abc\\de\\f"}, {3, "C:", "C:\\abc\\de\\f"}};
    for (auto const &row : rows) {
        path.parentLevel = row.level;
        EXPECT_EQ(1, path.UpperDirParse(part, 0));
        EXPECT_STREQ(row.alone, part);
        EXPECT_EQ(1, path.UpperDirParse(part, 1));
        EXPECT_STREQ(row.tail, part);
    }
    EXPECT_EQ(0, OpenPath("C:").UpperDirParse(part, 0));
    EXPECT_EQ(0, OpenPath("C:").UpperDirParse(part, 1));
}

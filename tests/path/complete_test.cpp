// How texts become full paths, rule by rule.
#include "open_path.h"

#include <ostream>

#include <gtest/gtest.h>

namespace {

struct Row {
    char const *text;
    char const *base;
    char const *path;
};

std::ostream &operator<<(std::ostream &out, Row const &row) {
    return out << '[' << row.text << "] on [" << row.base << ']';
}

class Completion : public testing::TestWithParam<Row> {};

} // namespace

TEST_P(Completion, Gives_one_path) {
    EXPECT_EQ(GetParam().path, Completed(GetParam().text, GetParam().base)) << GetParam();
}

INSTANTIATE_TEST_SUITE_P(OfAnAbsoluteText, Completion,
                         testing::Values(Row{"C:\\", "D:\\b", "C:"},
                                         Row{"C:\\dir\\", "D:\\b", "C:\\dir"},
                                         Row{"C:\\dir", "D:\\b", "C:\\dir"},
                                         Row{"  C:\\dir  ", "D:\\b", "C:\\dir"},
                                         Row{"C:", "D:\\b", "C:"}, Row{"C:x", "D:\\b", "C:x"},
                                         Row{"x:y", "D:\\b", "x:y"}, Row{"\\a:", "D:\\b", "\\a:"},
                                         Row{"..\\a:b", "D:\\b\\c", "..\\a:b"},
                                         Row{"C:\\a\\..\\b", "D:\\b", "C:\\a\\..\\b"},
                                         Row{"C:\\a.", "D:\\b", "C:\\a."}));

INSTANTIATE_TEST_SUITE_P(OfANetworksName, Completion,
                         testing::Values(Row{"\\\\server\\share", "C:\\b", "\\\\server\\share"},
                                         Row{"\\\\server\\share\\", "C:\\b", "\\\\server\\share"},
                                         Row{"\\\\a:\\..\\\\b", "C:\\b", "\\\\a:\\..\\\\b"},
                                         Row{" \\\\server", "C:\\b", "\\\\server"}));

INSTANTIATE_TEST_SUITE_P(WithDoubledSeparators, Completion,
                         testing::Values(Row{"C:\\\\x", "D:\\b", "D:\\b\\C:\\x"},
                                         Row{"a\\\\b", "D:\\b", "D:\\b\\a\\b"},
                                         Row{"a\\\\b\\\\c", "D:\\b", "D:\\b\\a\\b\\c"},
                                         Row{".\\\\x", "D:\\b", "D:\\b\\x"},
                                         Row{"..\\\\x", "D:\\b", "D:\\b\\x"},
                                         Row{"a\\..\\\\x", "D:\\b", "D:\\b\\a\\..\\x"}));

INSTANTIATE_TEST_SUITE_P(
    OfARelativeText, Completion,
    testing::Values(Row{"x", "C:\\d", "C:\\d\\x"}, Row{".\\x", "C:\\d", "C:\\d\\x"},
                    Row{"\\x", "C:\\d", "C:\\d\\x"}, Row{".x", "C:\\d", "C:\\d\\x"},
                    Row{".", "C:\\d", "C:\\d"}, Row{"\\", "C:\\d", "C:\\d"},
                    Row{"x.", "C:\\d", "C:\\d\\x."}, Row{"x\\.\\y", "C:\\d", "C:\\d\\x\\.\\y"},
                    Row{"x\\y\\", "C:\\d", "C:\\d\\x\\y"}, Row{"\tx", "C:\\d", "C:\\d\\\tx"},
                    Row{"x", "C:\\d\\", "C:\\d\\x"}, Row{"x", " C:\\d ", "C:\\d\\x"},
                    Row{"x", "C:", "C:\\x"}, Row{" x y ", "C:\\d", "C:\\d\\x y"},
                    Row{"x \\", "C:\\d", "C:\\d\\x"}, Row{"   ", "C:\\d", "C:\\d"}));

INSTANTIATE_TEST_SUITE_P(WithDotsBehindANameStaysAsItIs, Completion,
                         testing::Values(Row{"a\\..\\b", "C:\\d", "C:\\d\\a\\..\\b"},
                                         Row{"a..", "C:\\d", "C:\\d\\a.."},
                                         Row{".\\..\\x", "C:\\d\\e", "C:\\d\\e\\..\\x"},
                                         Row{"\\..\\x", "C:\\d\\e", "C:\\d\\e\\..\\x"}));

INSTANTIATE_TEST_SUITE_P(
    ClimbsWithLeadingDots, Completion,
    testing::Values(Row{"..", "C:\\a\\b", "C:\\a"}, Row{"..\\x", "C:\\a\\b", "C:\\a\\x"},
                    Row{"..\\..\\x", "C:\\a\\b", "C:\\x"},
                    Row{"..\\..\\..\\x", "C:\\a\\b", "C:\\x"}, Row{"..\\x", "C:", "\\x"},
                    Row{"..", "C:", ""}, Row{"..\\a\\..\\b", "C:\\x\\y\\z", "C:\\x\\a\\..\\b"},
                    Row{"..x", "C:\\a\\b", "C:\\a\\x"}, Row{"...\\x", "C:\\a\\b", "C:\\a\\x"},
                    Row{"..\\.x", "C:\\a\\b", "C:\\a\\x"}, Row{"..\\.\\x", "C:\\a\\b", "C:\\a\\x"},
                    Row{"..\\x", "C:\\a\\b\\", "C:\\a\\x"},
                    Row{"..\\x", "\\\\host\\a\\b", "\\\\host\\a\\x"}));

INSTANTIATE_TEST_SUITE_P(OfAKeyWithABase, Completion,
                         testing::Values(Row{"HKLM\\x", "C:\\d", "C:\\d\\HKLM\\x"},
                                         Row{"HKLM", "HKCU\\a", "HKCU\\a\\HKLM"}));

TEST(Setting, Takes_a_key_as_it_is_but_for_blanks_and_the_last_separator) {
    EXPECT_EQ("HKLM\\Software", Completed("HKLM\\Software", ""));
    EXPECT_EQ("HKLM\\Software", Completed("HKLM\\Software\\ ", ""));
    EXPECT_EQ("HKLM\\..\\a:", Completed("HKLM\\..\\a:", ""));
    EXPECT_EQ("HKLM\\\\a", Completed("HKLM\\\\a", ""));
}

TEST(Setting, Cuts_one_separator_at_the_end_only) {
    EXPECT_EQ("C:\\a\\", Completed("\\\\C:\\a\\\\", "").substr(2));
    EXPECT_EQ("C:\\d\\a", Completed("a\\\\\\", "C:\\d")); // the joined text loses another
}

TEST(Setting, Removes_blanks_and_no_tabs) {
    EXPECT_EQ("C:\\a\t", Completed(" C:\\a\t ", ""));
    EXPECT_EQ("\tC:\\a", Completed("\tC:\\a", ""));
    EXPECT_EQ("C:\\a \\b", Completed(" C:\\a \\b ", ""));
    EXPECT_EQ("C:\\a ", Completed("C:\\a \\", "")); // the blank was behind a separator
}

TEST(Setting, An_empty_text_changes_nothing) {
    OpenPath path("C:\\a\\b");
    path.parentLevel = 1;
    path.totalFiles = 7;
    EXPECT_EQ(0, path.SetDir(""));
    EXPECT_EQ(0, path.SetKey(""));
    EXPECT_EQ(0, path.SetPath("", "C:\\base"));
    EXPECT_EQ(0, path.AddToPath(""));
    EXPECT_EQ(0, path.AddDirToPath(""));
    EXPECT_EQ("C:\\a\\b", path.Text());
    EXPECT_EQ(1u, path.parentLevel);
    EXPECT_EQ(7u, path.totalFiles);
    path = UTILS::UtilsString("");
    path += UTILS::UtilsString("");
    EXPECT_EQ("C:\\a\\b", path.Text());
}

TEST(Setting, Another_path_forgets_searches_and_the_same_one_keeps_them) {
    OpenPath path("C:\\a");
    auto const fill = [&path] {
        path.dirSize = 1;
        path.totalFiles = 2;
        path.totalSubDirs = 3;
        path.filePosition = 4;
        path.dirPosition = 5;
        path.shellLink = reinterpret_cast<IShellLinkA *>(&path);
        path.shellLinkDataList = reinterpret_cast<IShellLinkDataList *>(&path);
        path.persistFile = reinterpret_cast<IPersistFile *>(&path);
        path.fileList.AddString("file");
        path.dirList.AddString("folder");
    };
    fill();
    EXPECT_EQ(1, path.SetDir("c:\\A")); // without regard to case
    EXPECT_EQ(1, path.dirSize);
    EXPECT_EQ(2u, path.totalFiles);
    EXPECT_EQ(5u, path.dirPosition);
    EXPECT_NE(nullptr, path.persistFile);
    EXPECT_EQ("c:\\A", path.Text());
    EXPECT_EQ(1, path.SetDir("C:\\b"));
    EXPECT_EQ(0, path.dirSize);
    EXPECT_EQ(0u, path.totalFiles);
    EXPECT_EQ(0u, path.totalSubDirs);
    EXPECT_EQ(0u, path.filePosition);
    EXPECT_EQ(0u, path.dirPosition);
    EXPECT_EQ(nullptr, path.shellLink);
    EXPECT_EQ(nullptr, path.shellLinkDataList);
    EXPECT_EQ(nullptr, path.persistFile);
    EXPECT_EQ(1u, path.fileList.GetNumberOfStrings());
    EXPECT_EQ(1u, path.dirList.GetNumberOfStrings());
}

TEST(Setting, What_is_compared_is_the_text_that_was_given) {
    OpenPath path("C:\\a");
    path.totalFiles = 2;
    path.SetDir("C:\\a\\"); // another text, though the same path comes of it
    EXPECT_EQ("C:\\a", path.Text());
    EXPECT_EQ(0u, path.totalFiles);
}

TEST(Setting, Makes_the_path_blind_to_case) {
    UTILS::UtilsString const text("C:\\a");
    ASSERT_EQ(1, text.GetCase());
    OpenPath path;
    path.SetDir(text);
    EXPECT_EQ(0, path.path.GetCase());
}

TEST(Setting, Completes_by_the_current_directory_without_a_base) {
    std::string const current = UTILS::CUtilsPath::UGetCurrentDir().Retrieve();
    ASSERT_LT(3u, current.size());
    EXPECT_EQ(current + "\\x", Completed("x", ""));
    EXPECT_EQ(current + "\\x", OpenPath("\\x").Text());
    EXPECT_EQ(current, Completed(".", ""));
    std::string const above = current.substr(0, current.rfind('\\'));
    EXPECT_EQ(above + "\\x", Completed("..\\x", ""));
    EXPECT_EQ(current, Completed("  ", ""));
}

TEST(Setting, By_each_name_is_the_same) {
    OpenPath path;
    EXPECT_EQ(1, path.SetDir("C:\\a"));
    EXPECT_EQ("C:\\a", path.Text());
    EXPECT_EQ(1, path.SetKey("HKLM\\b"));
    EXPECT_EQ("HKLM\\b", path.Text());
    EXPECT_EQ(&path, &(path = UTILS::UtilsString("C:\\c")));
    EXPECT_EQ("C:\\c", path.Text());
}

TEST(Setting, Takes_its_own_text_and_base) {
    OpenPath path("C:\\a\\b");
    EXPECT_EQ(1, path.SetDir(path.UGetDir()));
    EXPECT_EQ("C:\\a\\b", path.Text());
    EXPECT_EQ(1, path.SetPath("x", path.path));
    EXPECT_EQ("C:\\a\\b\\x", path.Text());
    EXPECT_EQ(1, path.SetPath(path.path, path.path));
    EXPECT_EQ("C:\\a\\b\\x", path.Text());
    path += path;
    EXPECT_EQ("C:\\a\\b\\x\\a\\b\\x", path.Text());
}

TEST(Setting, Paths_have_no_limit_of_their_own) {
    std::string text = "C:";
    for (int i = 0; i < 5000; ++i)
        text += "\\component";
    OpenPath path(text);
    EXPECT_EQ(text, path.Text());
    EXPECT_EQ(1, path.AddToPath("more"));
    EXPECT_EQ(text + "\\more", path.Text());
    EXPECT_EQ(text, ParentOf(path));
}

// The level of a parent search that was under way

TEST(ParentLevel, Is_reset_where_the_text_is_joined_and_kept_where_it_stays) {
    struct {
        char const *text;
        char const *base;
        unsigned long level;
    } const rows[] = {{"HKLM\\x", "", 2},     {"\\\\server\\x", "C:\\a", 2}, {"D:\\x", "C:\\a", 2},
                      {"a\\\\b", "C:\\a", 0}, {"a\\..\\b", "C:\\a", 0},      {"..\\b", "C:\\a", 0},
                      {"x", "C:\\a", 0},      {"HKLM\\x", "C:\\a", 0}};
    for (auto const &row : rows) {
        OpenPath path("C:\\1\\2\\3");
        path.parentLevel = 2;
        path.SetPath(row.text, row.base);
        EXPECT_EQ(row.level, path.parentLevel) << row.text;
    }
}

TEST(ParentLevel, Under_way_climbs_on_in_the_base) {
    OpenPath path("C:\\1");
    path.parentLevel = 1;
    path.SetPath("..\\x", "C:\\a\\b\\c");
    EXPECT_EQ("C:\\a\\x", path.Text());
}

// Going on below a path

TEST(Adding, Goes_on_below_the_path) {
    struct {
        char const *path;
        char const *text;
        char const *result;
    } const rows[] = {
        {"C:\\a", "b", "C:\\a\\b"},
        {"C:\\a", "\\b", "C:\\a\\b"},
        {"C:", "b", "C:\\b"},
        {"C:\\a", "D:\\x", "C:\\a\\x"},
        {"C:\\a", "D:x", "D:x"},
        {"C:\\a", "D:", "D:"},
        {"C:\\a\\b", "..", "C:\\a"},
        {"C:\\a\\b", "..\\x", "C:\\a\\x"},
        {"C:\\a\\b", "x\\..", "C:\\a\\b\\x\\.."},
        {"C:\\a", "D:\\..\\x", "D:\\..\\x"}, // with dots the drive stays
        {"C:\\a", "\\\\server\\x", "\\\\server\\x"},
        {"C:\\a", "HKLM\\x", "C:\\a\\HKLM\\x"},
        {"\\\\server\\x", "y", "\\\\server\\x\\y"},
        {"HKLM\\x", "y", "HKLM\\x\\y"},
    };
    for (auto const &row : rows) {
        OpenPath path(row.path);
        EXPECT_EQ(1, path.AddToPath(row.text)) << row.path << " + " << row.text;
        EXPECT_EQ(row.result, path.Text()) << row.path << " + " << row.text;
    }
}

TEST(Adding, To_an_empty_path_sets_it) {
    OpenPath path;
    EXPECT_EQ(1, path.AddToPath("C:\\a"));
    EXPECT_EQ("C:\\a", path.Text());
    OpenPath relative;
    relative.AddToPath("D:x\\..");
    EXPECT_EQ("D:x\\..", relative.Text());
}

TEST(Adding, A_drive_alone_succeeds_though_nothing_is_set) {
    OpenPath path("C:\\a");
    EXPECT_EQ(1, path.AddToPath("D:\\"));
    EXPECT_EQ("C:\\a", path.Text());
}

TEST(Adding, By_each_name_is_the_same) {
    OpenPath path("C:\\a");
    EXPECT_EQ(1, path.AddDirToPath("b"));
    EXPECT_EQ("C:\\a\\b", path.Text());
    EXPECT_EQ(&path, &(path += UTILS::UtilsString("c")));
    EXPECT_EQ("C:\\a\\b\\c", path.Text());
    OpenPath const other("D:\\x\\y");
    UTILS::CUtilsPath &result = path += other;
    EXPECT_EQ(&path, &result);
    EXPECT_EQ("C:\\a\\b\\c\\x\\y", path.Text());
}

TEST(Adding, To_a_key_leaves_it_no_key) {
    OpenPath path("HKLM\\x");
    ASSERT_EQ(1, path.GetRegFlag());
    path.AddToPath("y");
    EXPECT_EQ("HKLM\\x\\y", path.Text());
    EXPECT_EQ(0, path.GetRegFlag());
    path.SetKey(path.UGetDir());
    EXPECT_EQ(1, path.GetRegFlag());
}

// Keys

TEST(Keys, Are_known_by_the_name_of_their_root) {
    for (std::string const root :
         {"HKLM", "HKEY_LOCAL_MACHINE", "HKCU", "HKEY_CURRENT_USER", "HKCR", "HKEY_CLASSES_ROOT",
          "HKU", "HKEY_USERS", "HKCC", "HKEY_CURRENT_CONFIG"})
        for (std::string const &text : {root, root + "\\Software", root + "\\"}) {
            OpenPath const path(text);
            EXPECT_EQ(1, path.GetRegFlag()) << text;
            EXPECT_EQ(1, path.IsARegEntry()) << text;
        }
}

TEST(Keys, Have_exactly_such_a_name) {
    for (char const *text : {"hklm", "Hklm\\x", "hkey_local_machine\\x", "Software\\HKLM", "HKL",
                             "HKLMX\\x", "HKPD", "HKDD", "HKEY_PERFORMANCE_DATA", "HKLM:", "\\HKLM",
                             "C:\\HKLM", " HKLM", "HKLM \\x", "HKLM/x"}) {
        OpenPath const path(text);
        EXPECT_EQ(0, path.GetRegFlag()) << text;
        EXPECT_EQ(0, path.IsARegEntry()) << text;
    }
}

TEST(Keys, Are_known_without_regard_to_case_by_a_text_that_is_blind_to_it) {
    UTILS::UtilsString text("hklm\\x");
    text.SetCase(0);
    OpenPath path;
    path.SetKey(text);
    EXPECT_EQ(1, path.GetRegFlag());
    EXPECT_EQ("hklm\\x", path.Text());
}

TEST(Keys, Are_the_text_last_set) {
    OpenPath path("HKLM\\x");
    path.SetDir("C:\\x");
    EXPECT_EQ(0, path.GetRegFlag());
    path.SetKey("HKLM");
    EXPECT_EQ(1, path.GetRegFlag());
    path.SetDir("");
    EXPECT_EQ(1, path.GetRegFlag());
}

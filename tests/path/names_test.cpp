// First components, and names divided at their dots.
#include "open_path.h"

#include <string>

#include <gtest/gtest.h>

using UTILS::CUtilsPath;
using UTILS::UtilsString;

namespace {

struct Row {
    char const *path;
    char const *name;
    char const *ext;
    char const *firstName;
    char const *firstExt;
};

constexpr Row rows[] = {{"C:\\a\\b.tar.gz", "b.tar", "gz", "b", "tar.gz"},
                        {"C:\\a\\b.c", "b", "c", "b", "c"},
                        {"C:\\a\\b", "", "", "", ""},
                        {"C:\\a.b\\c", "", "", "", ""},
                        {"b.c", "b", "c", "b", "c"},
                        {"C:", "", "", "", ""},
                        {"", "", "", "", ""},
                        {"C:\\.b", "", "", "", ""},
                        {"C:\\b.", "", "", "", ""},
                        {"C:\\a.b.c.d.e", "a.b.c.d", "e", "a", "b.c.d.e"},
                        {"HKLM\\x.y", "x", "y", "x", "y"},
                        {"\\\\server\\share.x", "share", "x", "share", "x"},
                        {"a.b\\", "a", "b", "a", "b"}};

} // namespace

TEST(Names, Are_divided_at_the_last_dot_or_at_the_first) {
    for (Row const &row : rows) {
        for (int const firstDot : {0, 1, -1, 7}) {
            UtilsString name("old");
            UtilsString ext("old");
            int const wanted = *row.name ? 1 : 0;
            EXPECT_EQ(wanted,
                      CUtilsPath::GetFileNameFromPath(UtilsString(row.path), name, ext, firstDot));
            EXPECT_STREQ(firstDot ? row.firstName : row.name, name) << row.path;
            EXPECT_STREQ(firstDot ? row.firstExt : row.ext, ext) << row.path;
        }
    }
}

TEST(Names, Into_characters_are_divided_at_the_last_dot_whatever_is_asked_for) {
    for (Row const &row : rows) {
        for (int const firstDot : {0, 1}) {
            char name[30] = "old";
            char ext[30] = "old";
            CUtilsPath::GetFileNameFromPath(row.path, name, ext, firstDot);
            EXPECT_STREQ(row.name, name) << row.path;
            EXPECT_STREQ(row.ext, ext) << row.path;
        }
    }
}

TEST(Names, Leave_the_path_that_is_asked_alone) {
    OpenPath path("C:\\a\\b.c");
    UtilsString name;
    UtilsString ext;
    path.GetFileNameFromPath(UtilsString("D:\\x.y"), name, ext, 0);
    EXPECT_EQ("C:\\a\\b.c", path.Text());
    EXPECT_STREQ("x", name);
}

TEST(Names, Take_the_case_setting_of_the_path) {
    for (int const setting : {0, 1}) {
        UtilsString path("C:\\a\\b.c");
        UtilsString name;
        UtilsString ext;
        path.SetCase(setting);
        name.SetCase(1 - setting);
        ext.SetCase(1 - setting);
        CUtilsPath::GetFileNameFromPath(path, name, ext, 0);
        EXPECT_EQ(setting, name.GetCase());
        EXPECT_EQ(setting, ext.GetCase());
        CUtilsPath::GetFileNameFromPath(UtilsString("none"), name, ext, 0);
        EXPECT_EQ(1, name.GetCase());
    }
}

TEST(FirstComponents, Are_drives_servers_and_roots) {
    struct {
        char const *path;
        char const *first;
    } const all[] = {{"C:\\a", "C:"},     {"C:", "C:"},
                     {"HKLM\\x", "HKLM"}, {"HKEY_LOCAL_MACHINE\\x\\y", "HKEY_LOCAL_MACHINE"},
                     {"HKLM", "HKLM"},    {"\\\\server\\share", "server"},
                     {"D:x\\y", "D:x"}};
    for (auto const &row : all) {
        OpenPath path(row.path);
        EXPECT_STREQ(row.first, path.UGetDrive());
        EXPECT_STREQ(row.first, path.UGetRootKey());
        EXPECT_STREQ(row.first, path.GetDrive());
        EXPECT_STREQ(row.first, path.GetRootKey());
        EXPECT_STREQ(row.path, path.GetDir());
    }
}

TEST(FirstComponents, Of_an_empty_path_are_empty) {
    OpenPath path;
    EXPECT_STREQ("", path.UGetDrive());
    EXPECT_STREQ("", path.GetDrive());
}

TEST(FirstComponents, As_pointers_stay_good_until_the_next_is_asked_for) {
    OpenPath path("C:\\a\\b\\c");
    OpenPath other("HKEY_LOCAL_MACHINE\\x");
    char const *const drive = path.GetDrive();
    char const *const root = other.GetRootKey();
    path.SetDir("D:\\another\\path\\of\\some\\length");
    EXPECT_STREQ("C:", drive);
    EXPECT_STREQ("HKEY_LOCAL_MACHINE", root);
    EXPECT_STREQ("D:", path.GetDrive());
    EXPECT_STREQ("HKEY_LOCAL_MACHINE", root);
}

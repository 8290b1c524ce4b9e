#include "answer/place.h"

#include <gtest/gtest.h>

using namespace qvlink;

namespace {

std::string Database(std::string const &text) {
    std::optional<Place> const place = ParseDatabasePath(text);
    return place ? DatabasePath(*place) : "none";
}

std::string Rooted(std::string const &path, Drives const &drives,
                   std::string const &current = "/home/me") {
    std::optional<Place> const place = ParseRootedPath(path, current, drives);
    return place ? DatabasePath(*place) : "none";
}

Drives const OneDrive{{'Z', "/"}};
Drives const TwoDrives{{'C', "/home/me/prefix/drive_c/"}, {'D', "/home/me"}, {'Z', "/"}};

} // namespace

TEST(Place, A_database_path_is_read_and_written_back) {
    EXPECT_EQ(Database("C:\\windows\\system32"), "C:\\windows\\system32");
    EXPECT_EQ(Database("C:"), "C:");
}

TEST(Place, A_database_path_takes_both_slashes_and_a_small_letter) {
    EXPECT_EQ(Database("c:/windows\\System32/"), "C:\\windows\\System32");
}

TEST(Place, Dots_and_empty_names_of_a_database_path_are_taken_off) {
    EXPECT_EQ(Database("C:\\\\a\\.\\b\\..\\c\\"), "C:\\a\\c");
    EXPECT_EQ(Database("C:\\..\\..\\a"), "C:\\a");
}

TEST(Place, A_text_without_a_drive_is_no_database_path) {
    EXPECT_EQ(Database("\\windows"), "none");
    EXPECT_EQ(Database("C"), "none");
    EXPECT_EQ(Database(""), "none");
    EXPECT_EQ(Database("1:\\a"), "none");
}

TEST(Place, A_host_path_lies_on_the_drive_of_the_root) {
    EXPECT_EQ(Rooted("/usr/bin/bash", OneDrive), "Z:\\usr\\bin\\bash");
    EXPECT_EQ(Rooted("/", OneDrive), "Z:");
}

TEST(Place, A_relative_host_path_starts_at_the_current_directory) {
    EXPECT_EQ(Rooted("a/b", OneDrive), "Z:\\home\\me\\a\\b");
    EXPECT_EQ(Rooted(".", OneDrive), "Z:\\home\\me");
    EXPECT_EQ(Rooted("../you", OneDrive), "Z:\\home\\you");
}

TEST(Place, Dots_and_trailing_slashes_of_a_host_path_are_taken_off) {
    EXPECT_EQ(Rooted("//usr/./lib/../bin///", OneDrive), "Z:\\usr\\bin");
    EXPECT_EQ(Rooted("/../../usr", OneDrive), "Z:\\usr");
}

TEST(Place, The_longest_directory_that_holds_a_path_wins) {
    EXPECT_EQ(Rooted("/home/me/prefix/drive_c/windows", TwoDrives), "C:\\windows");
    EXPECT_EQ(Rooted("/home/me/prefix/drive_c", TwoDrives), "C:");
    EXPECT_EQ(Rooted("/home/me/prefix/drive_cd", TwoDrives), "D:\\prefix\\drive_cd");
    EXPECT_EQ(Rooted("/home/meander", TwoDrives), "Z:\\home\\meander");
}

TEST(Place, A_path_on_no_drive_has_no_place) {
    EXPECT_EQ(Rooted("/usr", {{'C', "/home/me"}}), "none");
}

TEST(Place, A_place_is_written_as_the_host_writes_it) {
    EXPECT_EQ(RootedPath({"Z:", {"usr", "bin"}}, OneDrive), "/usr/bin");
    EXPECT_EQ(RootedPath({"Z:", {}}, OneDrive), "/");
    EXPECT_EQ(RootedPath({"C:", {"windows"}}, TwoDrives), "/home/me/prefix/drive_c/windows");
    EXPECT_EQ(RootedPath({"Q:", {"a"}}, OneDrive), std::nullopt);
}

TEST(Place, A_backslash_in_a_host_name_stays_in_the_name) {
    std::optional<Place> const place = ParseRootedPath("/etc/a\\b", "/", OneDrive);
    ASSERT_TRUE(place);
    EXPECT_EQ(place->names, (std::vector<std::string>{"etc", "a\\b"}));
    EXPECT_EQ(RootedPath(*place, OneDrive), "/etc/a\\b");
}

TEST(Place, Names_are_compared_without_regard_to_the_case_of_ascii_letters) {
    EXPECT_TRUE(EqualNames("KERNEL32.dll", "kernel32.DLL"));
    EXPECT_FALSE(EqualNames("a", "ab"));
    EXPECT_FALSE(EqualNames("[", "{"));
    EXPECT_EQ(FoldName("AbC[1]"), "abc[1]");
}

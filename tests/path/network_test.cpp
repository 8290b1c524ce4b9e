// The form of a path that other machines know it by.
#include "open_path.h"

#include <gtest/gtest.h>

namespace {

// The machine's name between two backslashes and one.
std::string Machine() {
    std::string const name = OpenPath("C:\\name").Network();
    return name.substr(0, name.size() - 4);
}

std::string Network(std::string const &text) { return OpenPath(text).Network(); }

} // namespace

TEST(NetworkForm, Begins_with_the_machines_name) {
    std::string const machine = Machine();
    ASSERT_LT(3u, machine.size());
    EXPECT_EQ("\\\\", machine.substr(0, 2));
    EXPECT_EQ('\\', machine.back());
    EXPECT_EQ(machine.size() - 1, machine.find('\\', 2));
}

TEST(NetworkForm, Is_the_path_without_its_drive) {
    EXPECT_EQ(Machine() + "Windows", Network("C:\\Windows"));
    EXPECT_EQ(Machine() + "a\\b c", Network("D:\\a\\b c"));
    EXPECT_EQ(Machine(), Network("C:"));
    EXPECT_EQ(Machine(), Network("C:\\"));
}

TEST(NetworkForm, Loses_the_first_three_characters_wherever_they_are) {
    EXPECT_EQ(Machine() + "ax", Network("C:\\aC:\\x"));
    EXPECT_EQ(Machine() + "abx", Network("C:\\aC:\\bC:\\x"));
    EXPECT_EQ(Machine() + "C:", Network("C:\\C:"));
    EXPECT_EQ(Machine() + "c:\\x", Network("C:\\c:\\x")); // letter by letter
    EXPECT_EQ(Machine() + "", Network("a:b"));
    EXPECT_EQ(Machine() + "c", Network("a:bc"));
}

TEST(NetworkForm, Loses_the_first_of_two_drives_in_a_row_only) {
    EXPECT_EQ(Machine() + "C:\\x", Network("C:\\C:\\x"));
}

TEST(NetworkForm, Of_a_network_path_is_the_path) {
    OpenPath const path("\\\\server\\share\\x");
    EXPECT_EQ("\\\\server\\share\\x", path.Text());
    EXPECT_EQ("\\\\server\\share\\x", path.Network());
    EXPECT_EQ(1, path.uncFlag);
}

TEST(NetworkForm, Of_a_key_is_the_machine_and_the_whole_key) {
    EXPECT_EQ(Machine() + "HKLM\\Software", Network("HKLM\\Software"));
    EXPECT_EQ(Machine() + "HKLM", Network("HKLM"));
}

TEST(NetworkForm, Follows_each_change_of_the_path) {
    OpenPath path("\\\\server\\share");
    path.SetDir("C:\\x");
    EXPECT_EQ(0, path.uncFlag);
    EXPECT_EQ(Machine() + "x", path.Network());
    path.AddToPath("y");
    EXPECT_EQ(Machine() + "x\\y", path.Network());
    path.SetDir("\\\\other\\z");
    EXPECT_EQ(1, path.uncFlag);
    EXPECT_EQ("\\\\other\\z", path.Network());
    path.AddToPath("a");
    EXPECT_EQ(0, path.uncFlag); // what was added isn't in that form
    EXPECT_EQ("\\\\other\\z\\a", path.Text());
}

TEST(NetworkForm, Stays_the_path_itself_for_a_key_after_a_network_path) {
    OpenPath path("\\\\server\\share");
    path.SetKey("HKLM\\x");
    EXPECT_EQ(1, path.uncFlag);
    EXPECT_EQ("HKLM\\x", path.Network());
}

TEST(NetworkForm, Stays_the_path_itself_after_a_climb_from_a_network_path) {
    OpenPath path("\\\\server\\share\\x");
    path.AddToPath("..");
    EXPECT_EQ("\\\\server\\share", path.Text());
    EXPECT_EQ(1, path.uncFlag);
    EXPECT_EQ("\\\\server\\share", path.Network());
}

TEST(NetworkForm, Is_searched_from_its_start_afterwards) {
    OpenPath path("C:\\a\\b");
    unsigned long index = 0;
    for (int i = 0; i < 3; ++i)
        path.pathUNC.FindNext("\\", index);
    path.SetDir("C:\\c\\d");
    EXPECT_EQ(1, path.pathUNC.FindNext("\\", index)); // the first but one
    EXPECT_EQ(Machine().size() - 1, index);
}

TEST(NetworkForm, By_each_name_is_the_same) {
    OpenPath const path("C:\\x");
    EXPECT_EQ(path.GetDirUNC(), path.GetPathUNC());
    EXPECT_EQ(path.pathUNC.Retrieve(), path.GetDirUNC());
    EXPECT_EQ(&path.pathUNC, &path.UGetDirUNC());
    EXPECT_EQ(&path.pathUNC, &path.UGetPathUNC());
}

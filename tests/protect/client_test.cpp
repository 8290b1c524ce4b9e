// IsProtectedPath as a client of the shared library meets it, on the lists that are shipped.
#include "prefix.h"
#include "QVLinkDB.h"
#include "roles.h"
#include "shipped_lists.h"
#include "temp_folder.h"

#include <algorithm>
#include <fstream>
#include <iostream>

#include <gtest/gtest.h>

#include "platform/process.h"

namespace {

constexpr int survived = 77;

bool Ask(std::string const &path) { return IsProtectedPath(path.c_str()) == 1; }

// Asks for all that the family of this process has; the argument is the family expected, if any.
int AskShipped(Arguments const &arguments) {
    int const family = g_NTAdminObject.GetOS();
    if (!arguments.empty() && family != std::stoi(arguments[0]))
        return 2;
    int const id = ListsOfFamily(family).files;
    std::string const text = ReadListText(id);
    std::string const wrong = AskForAll(FilePaths(text, CurrentSystemFolders()), Ask);
    if (!wrong.empty())
        std::cerr << id << ": " << wrong << '\n';
    return wrong.empty() ? 0 : 1;
}
Role const askShipped("ask-shipped", AskShipped);

// Nothing is protected where no list is loaded.
Role const askUnknown("ask-unknown", [](Arguments const &) -> int {
    if (g_NTAdminObject.GetOS() != OS_UNKNOWN)
        return 2;
    int found = 0;
    for (std::string const &path : FilePaths(ReadListText(101), CurrentSystemFolders()))
        found += Ask(path) || Ask(path);
    return found == 0 ? 0 : 1;
});

// What is behind the last line end of the list for Windows Me.
Role const askDropped("ask-dropped", [](Arguments const &) -> int {
    std::string const path = FilePath(ListRest(ReadListText(105)), CurrentSystemFolders());
    return g_NTAdminObject.GetOS() == OS_WINME && !Ask(path) && !Ask(path) ? 0 : 1;
});

std::string Exchanged(std::string text, char from, char to) {
    std::replace(text.begin(), text.end(), from, to);
    return text;
}

// Asks twice for a path: 10 for the first answer and 1 for the second. A backslash at the end
// of an argument wouldn't arrive everywhere, so a bar stands for it.
Role const askTwice("ask-twice", [](Arguments const &arguments) -> int {
    std::string const path = Exchanged(arguments.at(0), '|', '\\');
    int const first = IsProtectedPath(path.c_str());
    return 10 * first + IsProtectedPath(path.c_str());
});

long AskTwice(std::string const &path) {
    return RunRole("ask-twice", {Exchanged(path, '\\', '|')});
}

Role const askLong("ask-long", [](Arguments const &arguments) -> int {
    IsProtectedPath(std::string(std::stoul(arguments.at(0)), 'x').c_str());
    return survived;
});

// Null, and what it leaves: the root isn't marked by it.
Role const askNull("ask-null", [](Arguments const &) -> int {
    return IsProtectedPath(nullptr) == 0 && IsProtectedPath(nullptr) == 0 &&
                   IsProtectedPath("") == 0
               ? 0
               : 1;
});

struct Version {
    char const *text;
    int family;
};

constexpr Version versions[] = {{"1.4.0", 1}, {"1.4.10", 2}, {"1.4.90", 3}, {"2.3.51", 4},
                                {"2.4.0", 5}, {"2.5.0", 6},  {"2.5.1", 7}};

constexpr char windowsXp[] = "version=2.5.1";

} // namespace

TEST(ShippedFiles, Of_the_running_system_are_protected_and_nothing_else_is) {
    Prefix const prefix(windowsXp);
    EXPECT_EQ(0, RunRole("ask-shipped", {}));
}

TEST(ShippedFiles, Of_each_family_are_protected_and_nothing_else_is) {
    if (!versionCanBeTold)
        GTEST_SKIP() << "Windows knows its own version";
    for (Version const &version : versions) {
        Prefix const prefix(std::string("version=") + version.text);
        EXPECT_EQ(0, RunRole("ask-shipped", {std::to_string(version.family)})) << version.text;
    }
}

TEST(ShippedFiles, Are_where_the_folders_of_the_system_are) {
    if (!versionCanBeTold)
        GTEST_SKIP() << "Windows knows its own folders";
    Prefix const prefix("version=2.4.0\nwindowsDirectory=D:\\WinNT 4\nsystemDirectory=E:\\sys\\32");
    EXPECT_EQ(0, RunRole("ask-shipped", {"5"}));
    Prefix const root("version=2.5.1\nwindowsDirectory=D:\\\nsystemDirectory=E:\\");
    EXPECT_EQ(0, RunRole("ask-shipped", {"7"}));
}

TEST(ShippedFiles, Are_none_for_an_unknown_family) {
    if (!versionCanBeTold)
        GTEST_SKIP() << "Windows knows its own version";
    Prefix const prefix("version=1.4.20");
    EXPECT_EQ(0, RunRole("ask-unknown", {}));
}

TEST(ShippedFiles, Of_Windows_Me_lack_the_last_line) {
    if (!versionCanBeTold)
        GTEST_SKIP() << "Windows knows its own version";
    Prefix const prefix("version=1.4.90");
    EXPECT_EQ(0, RunRole("ask-dropped", {}));
}

TEST(IsProtectedPath, Of_no_components_answers_0_and_then_1) {
    Prefix const prefix(windowsXp);
    for (char const *const path : {"", "\\", "\\\\\\"})
        EXPECT_EQ(1, AskTwice(path)) << path;
}

TEST(IsProtectedPath, Of_a_folder_with_protected_files_answers_0_and_then_1) {
    Prefix const prefix(windowsXp);
    SystemFolders const folders = CurrentSystemFolders();
    EXPECT_EQ(1, AskTwice(folders.windows));
    EXPECT_EQ(1, AskTwice(folders.system.substr(0, 2)));
}

TEST(IsProtectedPath, Of_a_registry_path_answers_0) {
    Prefix const prefix(windowsXp);
    for (char const *const path : {"HKLM", "HKLM\\SOFTWARE", "HKCU\\Software\\Microsoft",
                                   "HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft"})
        EXPECT_EQ(0, AskTwice(path)) << path;
}

TEST(IsProtectedPath, Of_another_spelling_of_the_folder_answers_0) {
    Prefix const prefix(windowsXp);
    std::string const path = FilePath(ListLines(ReadListText(101)).front(), CurrentSystemFolders());
    EXPECT_EQ(11, AskTwice(path));
    for (std::string const &other : {"X" + path.substr(1), path.substr(2), "\\\\?\\" + path,
                                     path.substr(0, 3) + ".\\" + path.substr(3)})
        EXPECT_EQ(0, AskTwice(other)) << other;
    EXPECT_EQ(0, AskTwice(Exchanged(path, '\\', '/')));
}

TEST(IsProtectedPath, Of_null_answers_0_and_marks_nothing) {
    Prefix const prefix(windowsXp);
    EXPECT_EQ(0, RunRole("ask-null", {}));
}

TEST(IsProtectedPath, Of_260_characters_ends_the_process) {
    Prefix const prefix(windowsXp);
    EXPECT_EQ(survived, RunRole("ask-long", {"259"}));
    long const code = RunRole("ask-long", {"260"});
    EXPECT_TRUE(code == 3 || code > 255 || code < -1) << code; // 3: what abort leaves on Windows
}

// What becomes of a line: a file behind its tag, a key as it stands.
#include "protect_load.h"
#include "system_folders.h"
#include "tree_nodes.h"

#include <cstring>

#include <gtest/gtest.h>

namespace {

class ListLine : public testing::Test {
protected:
    ListLine() {
        CaptureSystemDirs();
        SystemFolders const folders = CurrentSystemFolders();
        windows = folders.windows + "\\";
        system = folders.system + "\\";
    }
    ~ListLine() override {
        for (ProtectNode *const tree : {&ProtectedFileTree, &ProtectedRegTree}) {
            ProtectClear(*tree);
            tree->marked = 0;
        }
    }

    static void Take(void (*callback)(char *, unsigned long), std::string const &line) {
        // Nothing behind the line, so that a read too far shows.
        std::vector<char> buffer(line.c_str(), line.c_str() + line.size() + 1);
        callback(buffer.data(), static_cast<unsigned long>(line.size()));
    }
    static void File(std::string const &line) { Take(LoadFileListCallback, line); }
    static void Key(std::string const &line) { Take(LoadRegListCallback, line); }

    // Whether this is what the tree lists, and nothing else.
    static bool OnlyFile(std::string const &path) {
        std::size_t leaves = 0;
        Count(ProtectedFileTree, leaves);
        return leaves == 1 && Ask(ProtectedFileTree, path);
    }
    static bool NoFile() { return ProtectedFileTree.children.empty() && !ProtectedFileTree.marked; }

    std::string windows, system;

private:
    static void Count(ProtectNode const &node, std::size_t &leaves) {
        leaves += node.marked;
        for (auto const &[key, child] : node.children)
            Count(child, leaves);
    }
};

} // namespace

TEST_F(ListLine, Of_the_windows_folder_is_a_file_there) {
    File("%WindowsDir%\\IsUninst.exe");
    EXPECT_TRUE(OnlyFile(windows + "IsUninst.exe"));
}

TEST_F(ListLine, Of_the_system_folder_is_a_file_there) {
    File("%SystemDir%\\config\\TempKey.LOG");
    EXPECT_TRUE(OnlyFile(system + "config\\TempKey.LOG"));
}

TEST_F(ListLine, Has_its_tag_in_any_case) {
    File("%windowsdir%\\a.ini");
    EXPECT_TRUE(Ask(ProtectedFileTree, windows + "a.ini"));
    File("%WINDOWSDIR%\\b.ini");
    EXPECT_TRUE(Ask(ProtectedFileTree, windows + "b.ini"));
    File("%systemdir%\\c.ini");
    EXPECT_TRUE(Ask(ProtectedFileTree, system + "c.ini"));
    File("%SYSTEMDIR%\\d.ini");
    EXPECT_TRUE(Ask(ProtectedFileTree, system + "d.ini"));
}

TEST_F(ListLine, Of_a_file_is_found_in_the_folders_of_the_system_in_any_case) {
    File("%SystemDir%\\Shell32.DLL");
    std::string path = system + "shell32.dll";
    for (char &c : path)
        c = c >= 'a' && c <= 'z' ? static_cast<char>(c ^ 0x20) : c;
    EXPECT_TRUE(OnlyFile(path));
}

TEST_F(ListLine, Twice_makes_one_node) {
    File("%SystemDir%\\drivers\\x.sys");
    std::size_t const nodes = CountBelow(ProtectedFileTree);
    File("%SystemDir%\\drivers\\x.sys");
    File("%systemdir%\\DRIVERS\\X.SYS");
    EXPECT_EQ(nodes, CountBelow(ProtectedFileTree));
    EXPECT_TRUE(OnlyFile(system + "drivers\\x.sys"));
}

TEST_F(ListLine, Doesnt_keep_what_the_one_before_left_in_the_folder) {
    File("%SystemDir%\\a long name in the folder.dll");
    File("%SystemDir%\\b.dll");
    EXPECT_TRUE(Ask(ProtectedFileTree, system + "b.dll"));
    EXPECT_TRUE(Ask(ProtectedFileTree, system + "a long name in the folder.dll"));
}

TEST_F(ListLine, Without_a_percent_sign_is_no_file) {
    for (char const *const line :
         {"C:\\windows\\x", "WindowsDir%\\aaaaaaaaaaaaaaaaa", "x", "", "#%SystemDir%\\shell32.dll"})
        File(line);
    EXPECT_TRUE(NoFile());
}

// One letter decides, even if there is no tag: its length is taken off all the same.
TEST_F(ListLine, With_a_percent_sign_and_no_tag_is_of_the_system_folder) {
    File("%ProgramDir\\x.exe");
    EXPECT_TRUE(OnlyFile(system + std::string("%ProgramDir\\x.exe").substr(12)));
}

TEST_F(ListLine, With_a_percent_sign_and_a_w_is_of_the_windows_folder) {
    File("%wrongtag_12_x.exe");
    EXPECT_TRUE(Ask(ProtectedFileTree, windows + std::string("%wrongtag_12_x.exe").substr(13)));
    File("%Wrongtag_12_y.exe");
    EXPECT_TRUE(Ask(ProtectedFileTree, windows + std::string("%Wrongtag_12_y.exe").substr(13)));
}

TEST_F(ListLine, That_is_shorter_than_its_tag_is_passed_over) {
    for (char const *const line : {"%", "%S", "%w", "%%", "%SystemDir%", "%WindowsDir%", "%Windows",
                                   "%aaaaaaaaaa", "%waaaaaaaaaa"})
        File(line);
    EXPECT_TRUE(NoFile());
}

TEST_F(ListLine, Of_the_tag_alone_is_the_folder_itself) {
    File("%SystemDir%\\");
    EXPECT_TRUE(OnlyFile(system));
    File("%WindowsDir%\\");
    EXPECT_TRUE(Ask(ProtectedFileTree, windows));
}

TEST_F(ListLine, Of_a_path_with_259_characters_is_taken_and_a_longer_one_isnt) {
    std::string const fits(259 - system.size(), 's');
    File("%SystemDir%\\" + fits);
    EXPECT_TRUE(OnlyFile(system + fits));
    std::string const fitsToo(259 - windows.size(), 'w');
    File("%WindowsDir%\\" + fitsToo);
    EXPECT_TRUE(Ask(ProtectedFileTree, windows + fitsToo));
    std::size_t const nodes = CountBelow(ProtectedFileTree);
    File("%SystemDir%\\" + fits + "s");
    File("%WindowsDir%\\" + fitsToo + "w");
    File("%SystemDir%\\" + std::string(5000, 'x'));
    EXPECT_EQ(nodes, CountBelow(ProtectedFileTree));
    File("%SystemDir%\\after.dll");
    EXPECT_TRUE(Ask(ProtectedFileTree, system + "after.dll"));
}

TEST_F(ListLine, Of_a_key_is_taken_as_it_stands) {
    Key("HKLM\\SYSTEM\\Current Control Set\\*");
    EXPECT_NE(nullptr, NodeAt(ProtectedRegTree, {"HKLM", "SYSTEM", "Current Control Set", "*"}));
    EXPECT_TRUE(Ask(ProtectedRegTree, "hklm\\system\\current control set\\*"));
    EXPECT_TRUE(NoFile());
}

TEST_F(ListLine, Of_a_key_is_looked_at_for_nothing) {
    Key("%SystemDir%\\x");
    Key("no root");
    EXPECT_NE(nullptr, NodeAt(ProtectedRegTree, {"%SystemDir%", "x"}));
    EXPECT_NE(nullptr, NodeAt(ProtectedRegTree, {"no root"}));
}

TEST_F(ListLine, That_is_empty_marks_the_root_of_the_keys) {
    Key("HKLM\\Software");
    EXPECT_EQ(0, ProtectedRegTree.marked);
    Key("");
    EXPECT_EQ(1, ProtectedRegTree.marked);
    EXPECT_TRUE(Ask(ProtectedRegTree, ""));
    EXPECT_TRUE(Ask(ProtectedRegTree, "\\\\"));
    Key("");
    EXPECT_EQ(2u, CountBelow(ProtectedRegTree));
}

TEST_F(ListLine, Of_a_key_with_259_characters_is_taken_and_a_longer_one_isnt) {
    std::string const fits = "HKLM\\" + std::string(254, 'x');
    Key(fits);
    EXPECT_TRUE(Ask(ProtectedRegTree, fits));
    Key(fits + "x");
    Key(std::string(5000, 'y'));
    EXPECT_EQ(2u, CountBelow(ProtectedRegTree));
    Key("HKCU");
    EXPECT_TRUE(Ask(ProtectedRegTree, "HKCU"));
}

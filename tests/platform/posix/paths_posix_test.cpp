// Which file of the host a path text names, and what the host's path is called on a drive.
#include "../services.h"

#include "platform/posix/paths.h"
#include "settings_keeper.h"
#include "temp_folder.h"

namespace fs = std::filesystem;

namespace {

class Paths : public testing::Test {
protected:
    Paths() : m_start(fs::current_path()) {
        fs::create_directories(Root() / "drive" / "Folder" / "Sub");
        fs::create_directories(Root() / "inner");
        WriteBytes(Root() / "drive" / "Folder" / "File.Txt", {});
        platform::Settings settings = m_keeper.Copy();
        settings.drives = {{'C', (Root() / "drive").string()},
                           {'I', (Root() / "drive" / "Folder").string()},
                           {'Z', "/"}};
        platform::ApplySettings(settings);
    }
    ~Paths() override { fs::current_path(m_start); }

    fs::path Root() const { return m_folder.Path(); }

    // The host's path below the test's folder, or the code in the place of it.
    std::string Host(std::string const &path) const {
        std::string host;
        win::SetLastError(0);
        if (!platform::HostPath(path.c_str(), host))
            return std::to_string(win::GetLastError());
        std::string const root = Root().string();
        return host.compare(0, root.size(), root) == 0 ? host.substr(root.size()) : host;
    }

    SettingsKeeper m_keeper;
    TempFolder m_folder;
    fs::path m_start;
};

} // namespace

TEST_F(Paths, a_drive_is_its_directory) {
    EXPECT_EQ("/drive", Host("C:\\"));
    EXPECT_EQ("/drive", Host("c:/"));
    EXPECT_EQ("/drive/Folder", Host("I:\\"));
    EXPECT_EQ("/usr", Host("Z:\\usr"));
}

TEST_F(Paths, an_unknown_drive_is_3) {
    EXPECT_EQ("3", Host("Q:\\file"));
    EXPECT_EQ("3", Host("Q:"));
}

TEST_F(Paths, names_are_found_without_regard_to_case) {
    EXPECT_EQ("/drive/Folder/File.Txt", Host("C:\\FOLDER\\FILE.TXT"));
    EXPECT_EQ("/drive/Folder/File.Txt", Host("c:/folder\\file.txt"));
    EXPECT_EQ("/drive/Folder/Sub", Host("C:\\\\folder\\\\SUB\\"));
}

TEST_F(Paths, the_exact_spelling_goes_first_then_the_first_in_order) {
    for (const char *name : {"name", "NAME", "Name"})
        WriteBytes(Root() / "drive" / name, {});
    EXPECT_EQ("/drive/name", Host("C:\\name"));
    EXPECT_EQ("/drive/Name", Host("C:\\Name"));
    EXPECT_EQ("/drive/NAME", Host("C:\\nAmE"));
}

TEST_F(Paths, what_is_missing_keeps_its_spelling) {
    EXPECT_EQ("/drive/Folder/New.File", Host("C:\\folder\\New.File"));
    EXPECT_EQ("/drive/Missing/folder/x", Host("C:\\Missing\\folder\\x"));
}

TEST_F(Paths, dots_are_left_to_the_file_system) {
    EXPECT_EQ("/drive/Folder/../Folder/./File.Txt", Host("C:\\folder\\..\\folder\\.\\file.txt"));
    EXPECT_EQ("/drive/..", Host("C:\\.."));
}

TEST_F(Paths, behind_a_forward_slash_the_hosts_path_stands_as_it_is) {
    EXPECT_EQ("/drive/folder", Host(Root().string() + "/drive/folder"));
    EXPECT_EQ("/drive/Folder/File.Txt", Host(Root().string() + "/drive\\Folder\\File.Txt"));
    EXPECT_EQ("/drive/a*b:c", Host(Root().string() + "/drive/a*b:c"));
}

TEST_F(Paths, a_text_without_a_drive_starts_at_the_current_directory) {
    fs::current_path(Root() / "drive");
    EXPECT_EQ("./Folder/File.Txt", Host("folder\\file.txt"));
    EXPECT_EQ("./new", Host("new"));
}

TEST_F(Paths, a_leading_backslash_starts_at_the_current_drive) {
    fs::current_path(Root() / "drive" / "Folder" / "Sub");
    EXPECT_EQ("/drive/Folder/File.Txt", Host("\\file.txt")); // the longest match is I:
    fs::current_path(Root() / "drive");
    EXPECT_EQ("/drive/Folder", Host("\\folder"));
    fs::current_path(Root() / "inner");
    EXPECT_EQ("/usr", Host("\\usr"));
}

TEST_F(Paths, a_drive_without_a_backslash_starts_where_the_process_is_on_it) {
    fs::current_path(Root() / "drive" / "Folder");
    EXPECT_EQ("/drive/Folder/File.Txt", Host("I:file.txt"));
    EXPECT_EQ("/drive/Folder", Host("C:folder"));
    fs::current_path(Root() / "drive");
    EXPECT_EQ("/drive/Folder", Host("C:folder"));
}

TEST_F(Paths, names_that_windows_has_not_are_123) {
    for (const char *path :
         {"C:\\a*b", "C:\\a?b", "a<b", "a>b", "\\a|b", "C:\\a\"b", "C:\\a:b", "C:\\a\tb", "ab:c"})
        EXPECT_EQ("123", Host(path)) << path;
}

TEST_F(Paths, other_machines_are_53_and_nothing_is_3) {
    EXPECT_EQ("53", Host("\\\\server\\share\\file"));
    EXPECT_EQ("3", Host(""));
    std::string host;
    EXPECT_FALSE(platform::HostPath(nullptr, host));
}

TEST_F(Paths, go_back_to_the_drive_with_the_longest_match) {
    EXPECT_EQ("C:\\inside\\a", platform::DrivePath(Root().string() + "/drive/inside/a"));
    EXPECT_EQ("I:\\Sub", platform::DrivePath(Root().string() + "/drive/Folder/Sub"));
    EXPECT_EQ("I:\\", platform::DrivePath(Root().string() + "/drive/Folder"));
    EXPECT_EQ("C:\\FolderToo", platform::DrivePath(Root().string() + "/drive/FolderToo"));
    EXPECT_EQ("Z:\\usr\\bin", platform::DrivePath("/usr/bin"));
}

TEST_F(Paths, that_no_drive_holds_stay_the_hosts) {
    platform::Settings settings = platform::CurrentSettings();
    settings.drives = {{'C', "/usr"}};
    platform::ApplySettings(settings);
    EXPECT_EQ("/etc/passwd", platform::DrivePath("/etc/passwd"));
    EXPECT_EQ("C:\\bin", platform::DrivePath("/usr/bin"));
}

TEST_F(Paths, a_drive_known_by_a_link_is_found_by_its_real_path_too) {
    fs::create_symlink(Root() / "inner", Root() / "link");
    platform::Settings settings = platform::CurrentSettings();
    settings.drives['L'] = (Root() / "link").string();
    platform::ApplySettings(settings);
    EXPECT_EQ("L:\\x", platform::DrivePath(Root().string() + "/inner/x"));
    EXPECT_EQ("L:\\x", platform::DrivePath(Root().string() + "/link/x"));
}

TEST(ParentOf, is_the_folder_that_holds_a_path) {
    EXPECT_EQ("/a/b", platform::ParentOf("/a/b/c"));
    EXPECT_EQ("/a/b", platform::ParentOf("/a/b/c//"));
    EXPECT_EQ("/a/b", platform::ParentOf("/a/b//c"));
    EXPECT_EQ("/", platform::ParentOf("/a"));
    EXPECT_EQ("/", platform::ParentOf("/"));
    EXPECT_EQ(".", platform::ParentOf("a"));
    EXPECT_EQ("a", platform::ParentOf("a/b"));
    EXPECT_EQ(".", platform::ParentOf(""));
}

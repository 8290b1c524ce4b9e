// The current directory on the drives of the settings, and the computer's name there.
#include "../services.h"

#include "settings_keeper.h"
#include "temp_folder.h"

namespace fs = std::filesystem;

namespace {

class HostFolders : public testing::Test {
protected:
    HostFolders() : m_start(fs::current_path()) {
        fs::create_directories(m_folder.Path() / "drive" / "Folder" / "Sub");
        platform::Settings settings = m_keeper.Copy();
        settings.drives = {{'C', Path("drive")}, {'I', Path("drive/Folder")}};
        platform::ApplySettings(settings);
    }
    ~HostFolders() override { fs::current_path(m_start); }

    std::string Path(std::string const &below) const { return (m_folder.Path() / below).string(); }

    static std::string Current() {
        char buffer[300] = "";
        win::GetCurrentDirectoryA(sizeof buffer, buffer);
        return buffer;
    }

    SettingsKeeper m_keeper;
    TempFolder m_folder;
    fs::path m_start;
};

} // namespace

TEST_F(HostFolders, the_current_directory_is_on_the_drive_with_the_longest_match) {
    fs::current_path(Path("drive"));
    EXPECT_EQ("C:\\", Current());
    fs::current_path(Path("drive/Folder/Sub"));
    EXPECT_EQ("I:\\Sub", Current());
}

TEST_F(HostFolders, a_current_directory_that_no_drive_holds_is_the_hosts) {
    fs::current_path(m_folder.Path());
    EXPECT_EQ(m_folder.Directory(), Current());
}

TEST_F(HostFolders, a_current_directory_that_is_gone_is_2) {
    fs::current_path(Path("drive/Folder/Sub"));
    fs::remove(Path("drive/Folder/Sub"));
    char buffer[300];
    EXPECT_FAILS_WITH(2, win::GetCurrentDirectoryA(sizeof buffer, buffer));
}

TEST_F(HostFolders, the_current_directory_changes_by_names_without_regard_to_case) {
    EXPECT_TRUE(win::SetCurrentDirectoryA("c:\\FOLDER\\sub\\"));
    EXPECT_EQ(Path("drive/Folder/Sub"), fs::current_path().string());
    EXPECT_TRUE(win::SetCurrentDirectoryA("C:\\"));
    EXPECT_EQ("C:\\", Current());
    EXPECT_TRUE(win::SetCurrentDirectoryA(Path("drive/Folder").c_str()));
    EXPECT_EQ("I:\\", Current());
}

TEST_F(HostFolders, a_drive_alone_is_where_the_process_is_on_it_or_its_root) {
    EXPECT_TRUE(win::SetCurrentDirectoryA("I:"));
    EXPECT_EQ("I:\\", Current());
    EXPECT_TRUE(win::SetCurrentDirectoryA("Sub"));
    EXPECT_TRUE(win::SetCurrentDirectoryA("I:"));
    EXPECT_EQ("I:\\Sub", Current());
}

TEST_F(HostFolders, other_machines_are_53) {
    EXPECT_FAILS_WITH(53, win::SetCurrentDirectoryA("\\\\server\\share"));
}

TEST_F(HostFolders, the_computers_name_is_that_of_the_settings_cut_to_15) {
    char buffer[20];
    for (std::string const name : {"ONE", "FIFTEEN-SIGNS-1", "SIXTEEN-SIGNS-16", ""}) {
        platform::Settings settings = platform::CurrentSettings();
        settings.computerName = name;
        platform::ApplySettings(settings);
        DWORD size = sizeof buffer;
        EXPECT_TRUE(win::GetComputerNameA(buffer, &size));
        EXPECT_EQ(name.substr(0, 15), buffer);
        EXPECT_EQ(std::min<std::size_t>(15, name.size()), size);
    }
}

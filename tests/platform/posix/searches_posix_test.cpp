// Searches for files where they have to do with the host.
#include "../services.h"

#include "settings_keeper.h"
#include "temp_folder.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

class HostSearches : public testing::Test {
protected:
    HostSearches() : m_start(fs::current_path()) {
        fs::create_directories(Drive() / "Folder");
        platform::Settings settings = m_keeper.Copy();
        settings.drives = {{'C', Drive().string()}, {'Z', "/"}};
        settings.codePage = 65001;
        platform::ApplySettings(settings);
    }
    ~HostSearches() override { fs::current_path(m_start); }

    fs::path Drive() const { return m_folder.Path() / "drive"; }
    void Make(std::string const &name) const { WriteBytes(Drive() / name, {}); }

    static std::string First(std::string const &mask) {
        WIN32_FIND_DATAA data;
        win::SetLastError(0);
        HANDLE const search = win::FindFirstFileA(mask.c_str(), &data);
        if (search == INVALID_HANDLE_VALUE)
            return std::to_string(win::GetLastError());
        EXPECT_TRUE(win::FindClose(search));
        return data.cFileName;
    }

    SettingsKeeper m_keeper;
    TempFolder m_folder;
    fs::path m_start;
};

} // namespace

TEST_F(HostSearches, tell_the_exact_spelling_where_there_are_several) {
    for (const char *name : {"name", "NAME", "Name"})
        Make(name);
    EXPECT_EQ("name", First("C:\\name"));
    EXPECT_EQ("Name", First("C:\\Name"));
    EXPECT_EQ("NAME", First("C:\\nAmE"));
    EXPECT_EQ("NAME", First("C:\\n*"));
}

TEST_F(HostSearches, take_the_hosts_folder_as_it_stands_and_wildcards_in_the_name) {
    Make("Folder/File.Txt");
    fs::create_directory(Drive() / "a*b");
    Make("a*b/x:y");
    std::string const drive = Drive().string();
    EXPECT_EQ("File.Txt", First(drive + "/Folder/f*.txt"));
    EXPECT_EQ("File.Txt", First(drive + "/Folder/File.Txt"));
    EXPECT_EQ("2", First(drive + "/Folder/file.txt"));
    EXPECT_EQ("3", First(drive + "/folder/*"));
    EXPECT_EQ("x:y", First(drive + "/a*b/x:y"));
    EXPECT_EQ("x:y", First(drive + "\\a*b\\*:y"));
    EXPECT_EQ("usr", First("/usr"));
    EXPECT_EQ("2", First("/"));
}

TEST_F(HostSearches, know_every_root) {
    EXPECT_EQ("Folder", First("C:\\*"));
    EXPECT_EQ("Folder", First(Drive().string() + "/*"));
    EXPECT_EQ("2", First("C:\\."));
    EXPECT_EQ("2", First("C:\\Folder\\.."));
    EXPECT_EQ("2", First("/."));
    EXPECT_NE(".", First("/*"));
    EXPECT_NE(".", First("Z:\\*"));
    EXPECT_EQ(".", First("C:\\Folder\\*"));
    fs::remove(Drive() / "Folder");
    EXPECT_EQ("2", First("C:\\*"));
}

TEST_F(HostSearches, tell_dots_that_lead_out_of_a_drive_by_the_hosts_name) {
    EXPECT_EQ(m_folder.Path().filename().string(), First("C:\\.."));
}

TEST_F(HostSearches, on_a_drive_without_a_folder_begin_where_the_process_is) {
    Make("Folder/inside");
    fs::current_path(Drive() / "Folder");
    EXPECT_EQ("inside", First("C:inside"));
    EXPECT_EQ("inside", First("c:IN*"));
    EXPECT_EQ("Folder", First("\\f*"));
    fs::current_path("/");
    EXPECT_EQ("2", First("C:inside"));
    EXPECT_EQ("Folder", First("C:*"));
}

TEST_F(HostSearches, tell_other_machines_with_53) {
    EXPECT_EQ("53", First("\\\\server\\share\\*"));
    EXPECT_EQ("53", First("\\\\server"));
}

TEST_F(HostSearches, follow_links_and_pass_over_those_that_lead_nowhere) {
    Make("Folder/file");
    fs::create_symlink(Drive() / "Folder", Drive() / "link");
    fs::create_symlink(Drive() / "missing", Drive() / "aDangling");
    fs::create_symlink(Drive() / "loop", Drive() / "loop");
    WIN32_FIND_DATAA data;
    HANDLE const search = win::FindFirstFileA("C:\\link", &data);
    ASSERT_NE(INVALID_HANDLE_VALUE, search);
    win::FindClose(search);
    EXPECT_STREQ("link", data.cFileName);
    EXPECT_EQ(DWORD{FILE_ATTRIBUTE_DIRECTORY}, data.dwFileAttributes);
    EXPECT_EQ("file", First("C:\\link\\fi*"));
    EXPECT_EQ("2", First("C:\\aDangling"));
    EXPECT_EQ("2", First("C:\\aD*"));
    EXPECT_EQ("Folder", First("C:\\*"));
    EXPECT_EQ("1921", First("C:\\loop"));
}

TEST_F(HostSearches, compare_characters_of_the_code_page) {
    Make("\xc3\xa4"); // a letter of two bytes
    EXPECT_EQ("\xc3\xa4", First("C:\\?"));
    platform::Settings settings = platform::CurrentSettings();
    settings.codePage = 1252;
    platform::ApplySettings(settings);
    EXPECT_EQ("2", First("C:\\?"));
    EXPECT_EQ("\xc3\xa4", First("C:\\??"));
    settings.codePage = 12345; // nobody knows it, so a character is a byte
    platform::ApplySettings(settings);
    EXPECT_EQ("\xc3\xa4", First("C:\\??"));
}

TEST_F(HostSearches, know_the_signs_that_masks_are_made_of) {
    Make("b.c.d");
    Make("noext");
    EXPECT_EQ("b.c.d", First("C:\\b<.d")); // any text
    EXPECT_EQ("2", First("C:\\b<d"));      // but not over the last dot
    EXPECT_EQ("noext", First("C:\\no>>>>>"));
    EXPECT_EQ("noext", First("C:\\noext\"*"));
    EXPECT_EQ("b.c.d", First("C:\\b\"c\"d"));
}

TEST_F(HostSearches, dont_see_a_question_mark_in_a_dot) {
    Make("b.c.d");
    EXPECT_EQ("2", First("C:\\b?c?d"));
    EXPECT_EQ("b.c.d", First("C:\\b?.c?.d?"));
}

TEST_F(HostSearches, know_names_of_255_bytes_and_tell_longer_ones_with_206) {
    std::string const name(255, 'n');
    Make(name);
    EXPECT_EQ(name, First("C:\\" + name));
    EXPECT_EQ(name, First("C:\\n*n"));
    EXPECT_EQ("206", First("C:\\" + name + "n"));
    EXPECT_EQ("2", First("C:\\" + name + "n*"));
}

TEST_F(HostSearches, tell_a_folder_that_may_not_be_read_with_5) {
    if (geteuid() == 0)
        GTEST_SKIP() << "the superuser may read everything";
    fs::permissions(Drive() / "Folder", fs::perms::none);
    EXPECT_EQ("5", First("C:\\Folder\\*"));
    EXPECT_EQ("5", First("C:\\Folder\\x"));
    EXPECT_EQ("Folder", First("C:\\Folder"));
    fs::permissions(Drive() / "Folder", fs::perms::owner_all);
}

TEST_F(HostSearches, tell_the_end_of_handles_with_4) {
    rlimit kept{};
    getrlimit(RLIMIT_NOFILE, &kept);
    rlimit const none{0, kept.rlim_max};
    setrlimit(RLIMIT_NOFILE, &none);
    std::string const answer = First("C:\\*");
    setrlimit(RLIMIT_NOFILE, &kept);
    EXPECT_EQ("4", answer);
}

TEST_F(HostSearches, are_closed_once) {
    WIN32_FIND_DATAA data;
    HANDLE const search = win::FindFirstFileA("C:\\*", &data);
    EXPECT_TRUE(win::FindClose(search));
    EXPECT_FAILS_WITH(6, win::FindClose(search));
    ScopedHandle const mutex(win::CreateMutexA(nullptr, FALSE, nullptr));
    EXPECT_FAILS_WITH(6, win::FindClose(mutex));
}

TEST_F(HostSearches, tell_times_before_1970) {
    constexpr ULONGLONG unitsASecond = 10000000;
    constexpr ULONGLONG secondsTo1970 = 11644473600;
    Make("old");
    timespec const times[2] = {{-1, 300}, {-1, 300}};
    ASSERT_EQ(0, utimensat(AT_FDCWD, (Drive() / "old").c_str(), times, 0));
    WIN32_FIND_DATAA data;
    win::FindClose(win::FindFirstFileA("C:\\old", &data));
    EXPECT_EQ((secondsTo1970 - 1) * unitsASecond + 3,
              ULONGLONG{data.ftLastWriteTime.dwHighDateTime} << 32 |
                  data.ftLastWriteTime.dwLowDateTime);
}

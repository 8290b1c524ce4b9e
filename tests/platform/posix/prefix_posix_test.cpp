// Where the settings come from and what they say.
#include "../services.h"

#include "platform/posix/prefix.h"
#include "roles.h"
#include "settings_keeper.h"
#include "temp_folder.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

class Prefix : public testing::Test {
protected:
    platform::Settings Read() const { return platform::ReadPrefix(m_folder.Directory()); }

    void WriteIni(std::string const &text) const {
        WriteBytes(m_folder.Path() / "platform.ini", BytesOf(text));
    }

    void Link(std::string const &drive, fs::path const &target) const {
        fs::create_directories(m_folder.Path() / "dosdevices");
        fs::create_symlink(target, m_folder.Path() / "dosdevices" / drive);
    }

    std::ptrdiff_t Entries() const {
        fs::directory_iterator const all(m_folder.Path());
        return std::distance(begin(all), end(all));
    }

    TempFolder m_folder;
};

// Writes the settings that a process has from its environment.
int WriteSettings(Arguments const &arguments) {
    platform::Settings const settings = platform::CurrentSettings();
    std::ofstream(arguments.at(0)) << settings.registryDirectory << '\n' << settings.drives.at('C');
    return 0;
}

Role const writeSettings("write-settings", WriteSettings);

// Chooses the prefix itself: its path, then the file to write.
int ChoosePrefix(std::vector<std::string> const &arguments) {
    setenv("QVPREFIX", arguments[0].c_str(), 1);
    return WriteSettings({arguments[1]});
}

Role const choosePrefix("choose-prefix", ChoosePrefix);

class Environment {
public:
    Environment(const char *name, std::string const &value) : m_name(name) {
        const char *const old = std::getenv(name);
        m_had = old != nullptr;
        m_old = old ? old : "";
        setenv(name, value.c_str(), 1);
    }
    ~Environment() {
        if (m_had)
            setenv(m_name, m_old.c_str(), 1);
        else
            unsetenv(m_name);
    }
    Environment(Environment const &) = delete;
    Environment &operator=(Environment const &) = delete;

private:
    const char *m_name;
    bool m_had;
    std::string m_old;
};

} // namespace

TEST_F(Prefix, an_empty_one_gives_what_holds_without) {
    platform::Settings const settings = Read();
    std::map<char, std::string> const drives{{'C', m_folder.Directory() + "/drive_c"}, {'Z', "/"}};
    EXPECT_EQ(drives, settings.drives);
    EXPECT_EQ("C:\\windows", settings.windowsDirectory);
    EXPECT_EQ("C:\\windows\\system32", settings.systemDirectory);
    EXPECT_EQ("C:\\windows\\temp\\", settings.temporaryDirectory);
    EXPECT_EQ(m_folder.Directory() + "/registry", settings.registryDirectory);
    EXPECT_EQ(2u, settings.platformId);
    EXPECT_EQ(5u, settings.majorVersion);
    EXPECT_EQ(1u, settings.minorVersion);
    EXPECT_EQ(65001u, settings.codePage);
}

TEST_F(Prefix, reading_makes_nothing) {
    Read();
    EXPECT_EQ(0, Entries());
    platform::ReadPrefix(m_folder.Directory() + "/missing");
    EXPECT_EQ(0, Entries());
}

TEST_F(Prefix, the_computers_name_is_the_hosts_in_upper_case) {
    char name[256] = "";
    gethostname(name, sizeof name);
    std::string expected = name;
    for (char &c : expected)
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    EXPECT_EQ(expected, Read().computerName);
}

TEST_F(Prefix, links_tell_where_drives_are) {
    fs::create_directory(m_folder.Path() / "data");
    Link("c:", "../data");
    Link("d:", "/usr");
    Link("E:", "/tmp");
    auto const drives = Read().drives;
    EXPECT_EQ(m_folder.Directory() + "/data", drives.at('C'));
    EXPECT_EQ(fs::canonical("/usr").string(), drives.at('D'));
    EXPECT_EQ(fs::canonical("/tmp").string(), drives.at('E'));
    EXPECT_EQ("/", drives.at('Z'));
    EXPECT_EQ(4u, drives.size());
}

TEST_F(Prefix, drive_z_may_be_told_to_be_elsewhere) {
    Link("z:", "/usr");
    EXPECT_EQ(fs::canonical("/usr").string(), Read().drives.at('Z'));
}

TEST_F(Prefix, other_names_among_the_links_are_no_drives) {
    Link("c::", "/usr");
    Link("com1", "/dev/null");
    Link("1:", "/usr");
    EXPECT_EQ(2u, Read().drives.size());
}

TEST_F(Prefix, the_ini_overrides_fields) {
    WriteIni("windowsDirectory=C:\\WINNT\r\n"
             "systemDirectory = C:\\WINNT\\System32 \n"
             "temporaryDirectory=D:\\temp\\\n"
             "computerName=BOX\n"
             "registryDirectory=/var/registry\n"
             "version=1.4.10\n"
             "codePage=1252\n");
    platform::Settings const settings = Read();
    EXPECT_EQ("C:\\WINNT", settings.windowsDirectory);
    EXPECT_EQ("C:\\WINNT\\System32", settings.systemDirectory);
    EXPECT_EQ("D:\\temp\\", settings.temporaryDirectory);
    EXPECT_EQ("BOX", settings.computerName);
    EXPECT_EQ("/var/registry", settings.registryDirectory);
    EXPECT_EQ(1u, settings.platformId);
    EXPECT_EQ(4u, settings.majorVersion);
    EXPECT_EQ(10u, settings.minorVersion);
    EXPECT_EQ(1252u, settings.codePage);
}

TEST_F(Prefix, folders_that_the_ini_leaves_out_follow_the_windows_folder) {
    WriteIni("windowsDirectory=D:\\WINNT");
    EXPECT_EQ("D:\\WINNT\\system32", Read().systemDirectory);
    EXPECT_EQ("D:\\WINNT\\temp\\", Read().temporaryDirectory);
}

TEST_F(Prefix, what_the_ini_says_otherwise_is_passed_over) {
    WriteIni("a line without a field\n=\n\nunknown=1\nversion=2.x.1\ncodePage=many\n"
             "hive.HKLM\\SOFTWARE=/mnt/SOFTWARE\nversion.extra=9.9.9\nwindowsDirectory=\n");
    platform::Settings const settings = Read();
    EXPECT_EQ(5u, settings.majorVersion);
    EXPECT_EQ(65001u, settings.codePage);
    EXPECT_EQ("C:\\windows", settings.windowsDirectory);
}

TEST_F(Prefix, an_ini_that_is_no_file_is_passed_over) {
    ASSERT_EQ(0, mkfifo((m_folder.Path() / "platform.ini").c_str(), 0600));
    EXPECT_EQ("C:\\windows", Read().windowsDirectory);
}

TEST_F(Prefix, any_bytes_as_an_ini_do_no_harm) {
    std::string bytes;
    unsigned state = 1;
    for (int i = 0; i < 100000; ++i) {
        state = state * 1664525 + 1013904223;
        bytes += static_cast<char>(state >> 24);
    }
    WriteIni(bytes);
    EXPECT_EQ(2u, Read().drives.size());
}

TEST_F(Prefix, is_found_by_the_environment) {
    auto const settingsFile = (m_folder.Path() / "told").string();
    auto const told = [&] {
        EXPECT_EQ(0, RunRole("write-settings", {settingsFile}));
        std::ifstream file(settingsFile);
        std::string registry;
        std::getline(file, registry);
        return registry;
    };
    Environment const home("HOME", "/home/someone");
    Environment const data("XDG_DATA_HOME", "");
    {
        Environment const prefix("QVPREFIX", "");
        EXPECT_EQ("/home/someone/.local/share/qvlinkdb/registry", told());
        Environment const otherData("XDG_DATA_HOME", "/data");
        EXPECT_EQ("/data/qvlinkdb/registry", told());
    }
    Environment const prefix("QVPREFIX", m_folder.Directory());
    EXPECT_EQ(m_folder.Directory() + "/registry", told());
}

// The library itself has asked for the version by then.
TEST_F(Prefix, may_be_chosen_by_the_program_before_its_first_call) {
    auto const settingsFile = (m_folder.Path() / "told").string();
    ASSERT_EQ(0, RunRole("choose-prefix", {m_folder.Directory(), settingsFile}));
    std::ifstream file(settingsFile);
    std::string registry;
    std::getline(file, registry);
    EXPECT_EQ(m_folder.Directory() + "/registry", registry);
}

TEST(Settings, hold_for_the_calls_made_after_they_are_applied) {
    SettingsKeeper const keeper;
    platform::Settings settings = keeper.Copy();
    settings.windowsDirectory = "D:\\WIN";
    settings.systemDirectory = "D:\\WIN\\SYSTEM";
    settings.platformId = 1;
    settings.majorVersion = 4;
    settings.minorVersion = 90;
    platform::ApplySettings(settings);
    char folder[100];
    EXPECT_EQ(6u, win::GetWindowsDirectoryA(folder, sizeof folder));
    EXPECT_STREQ("D:\\WIN", folder);
    EXPECT_EQ(13u, win::GetSystemDirectoryA(folder, sizeof folder));
    EXPECT_STREQ("D:\\WIN\\SYSTEM", folder);
    OSVERSIONINFOA version{};
    version.dwOSVersionInfoSize = sizeof version;
    ASSERT_TRUE(win::GetVersionExA(&version));
    EXPECT_EQ(1u, version.dwPlatformId);
    EXPECT_EQ(4u, version.dwMajorVersion);
    EXPECT_EQ(90u, version.dwMinorVersion);
}

TEST(Settings, are_taken_with_drives_in_one_form) {
    SettingsKeeper const keeper;
    platform::Settings settings = keeper.Copy();
    settings.drives = {{'D', "/usr///"}, {'E', "/"}, {'d', "/var"}, {'1', "/var"}};
    platform::ApplySettings(settings);
    std::map<char, std::string> const expected{{'D', "/usr"}, {'E', "/"}};
    EXPECT_EQ(expected, platform::CurrentSettings().drives);
}

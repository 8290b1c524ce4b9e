// Keys of a mounted disk's hives and of a Wine prefix that was brought in.
#include "../../cli_graph.h"

#include "hive_image.h"

#include <gtest/gtest.h>

using nlohmann::json;

namespace {

class CliPrefixKeys : public testing::Test {
protected:
    void Write(std::string const &name, std::string const &text) {
        std::filesystem::create_directories((m_prefix.Path() / name).parent_path());
        WriteBytes(m_prefix.Path() / name, BytesOf(text));
    }
    Outcome Run(std::vector<std::string> arguments) {
        arguments.insert(arguments.end(), {"--db", m_database.Directory()});
        return RunTool(arguments, {{"QVPREFIX", m_prefix.Directory()}});
    }

    TempFolder m_prefix;
    TempFolder m_database;
};

} // namespace

TEST_F(CliPrefixKeys, The_hives_of_a_mounted_disk_are_scanned) {
    TempFolder disk;
    HiveFile software(disk.Path() / "SOFTWARE");
    software.Add("Microsoft\\Windows").Add("Vendor");
    software.SetNumber("Microsoft\\Windows", "Build", 2195).Write();
    HiveFile system(disk.Path() / "SYSTEM");
    system.Add("ControlSet001\\Control").Add("Select").SetNumber("Select", "Current", 1).Write();
    Write("platform.ini", "hive.HKLM\\SOFTWARE=" + (disk.Path() / "SOFTWARE").string() +
                              "\nhive.HKLM\\SYSTEM=" + (disk.Path() / "SYSTEM").string() + '\n');
    Outcome const scanned = Run({"scan", "--json", "--registry", "HKLM"});
    ASSERT_EQ(scanned.exitCode, 0) << scanned.err;
    json const summary = json::parse(scanned.out)["summary"];
    EXPECT_EQ(summary["problems"], json::array());
    EXPECT_EQ(Run({"find", "Build"}).out, "HKLM\\SOFTWARE\\Microsoft\\Windows\\Build\n");
    EXPECT_EQ(Run({"find", "Vendor", "--type", "key"}).out, "HKLM\\SOFTWARE\\Vendor\n");
    EXPECT_EQ(Run({"find", "Control"}).out,
              "HKLM\\SYSTEM\\ControlSet001\\Control\nHKLM\\SYSTEM\\CurrentControlSet\\Control\n");
    json const build =
        json::parse(Run({"show", "--json", "HKLM\\Software\\Microsoft\\Windows\\Build"}).out);
    EXPECT_EQ(build["object"]["value"]["number"], 2195);
    EXPECT_FALSE(
        json::parse(Run({"scan", "--json", "--registry", "HKLM"}).out)["summary"]["saved"]);
    EXPECT_FALSE(std::filesystem::exists(m_prefix.Path() / "registry")) << "reading makes nothing";
}

TEST_F(CliPrefixKeys, A_wine_prefix_is_brought_in_scanned_and_linked_to_its_files) {
    Write("drive_c/Program Files/App/app.exe", "x");
    Write("drive_c/windows/system32/drivers/d.sys", "x");
    Write("system.reg",
          "WINE REGISTRY Version 2\n;; All keys relative to REGISTRY\\\\Machine\n\n#arch=win64\n\n"
          "[Software\\\\App] 1700000000\n"
          "@=\"\\\"%ProgramFiles%\\\\App\\\\app.exe\\\" -q\"\n\n"
          "[Software\\\\Microsoft\\\\Windows\\\\CurrentVersion] 1700000000\n"
          "\"ProgramFilesDir\"=\"C:\\\\Program Files\"\n\n"
          "[System\\\\CurrentControlSet\\\\Services\\\\d] 1700000000\n"
          "\"ImagePath\"=str(2):\"system32\\\\drivers\\\\d.sys\"\n");
    Write("user.reg", "WINE REGISTRY Version 2\n;; All keys relative to "
                      "REGISTRY\\\\User\\\\S-1-5-21-0-0-0-1000\n\n#arch=win64\n\n"
                      "[Environment] 1700000000\n\"TEMP\"=\"C:\\\\windows\\\\temp\"\n");
    Outcome const imported = Run({"reg", "import", m_prefix.Directory()});
    ASSERT_EQ(imported.exitCode, 0) << imported.out << imported.err;
    std::string const tree = (m_prefix.Path() / "drive_c").string();
    ASSERT_EQ(Run({"scan", tree, "--registry", "HKLM", "HKCU"}).exitCode, 0);
    EXPECT_EQ(Run({"refs", tree + "/Program Files/App/app.exe"}).out, "HKLM\\Software\\App\\@\n");
    EXPECT_EQ(Run({"deps", "HKLM\\System"}).out, tree + "/windows/system32/drivers/d.sys\n");
    EXPECT_EQ(Run({"find", "TEMP", "--type", "value"}).out, "HKCU\\Environment\\TEMP\n");
    EXPECT_EQ(Run({"verify"}).exitCode, 0);
}

TEST_F(CliPrefixKeys, A_root_in_small_letters_is_a_file_to_questions) {
    Outcome const told = Run({"protected", "hklm\\system"});
    EXPECT_EQ(told.exitCode, 2) << "a name with a backslash";
    EXPECT_NE(told.err.find("a name in it holds a backslash"), std::string::npos) << told.err;
}

TEST_F(CliPrefixKeys, A_damaged_hive_is_told_and_the_rest_is_scanned) {
    TempFolder disk;
    WriteBytes(disk.Path() / "SOFTWARE", BytesOf("regf, but no hive"));
    HiveFile(disk.Path() / "SYSTEM").Add("Select").Write();
    Write("platform.ini", "hive.HKLM\\SOFTWARE=" + (disk.Path() / "SOFTWARE").string() +
                              "\nhive.HKLM\\SYSTEM=" + (disk.Path() / "SYSTEM").string() + '\n');
    Outcome const scanned = Run({"scan", "-v", "--registry", "HKLM"});
    EXPECT_EQ(scanned.exitCode, 0) << scanned.err;
    EXPECT_NE(scanned.out.find("1 unreadable"), std::string::npos) << scanned.out;
    EXPECT_EQ(Run({"find", "Select"}).out, "HKLM\\SYSTEM\\Select\n");
}

// Lists of the prefix in use, which stands for the machine itself here.
#include "prefix.h"

#include <gtest/gtest.h>

#include "platform/settings.h"

#include <cstdlib>

namespace {

class PrefixInUse : public testing::Test {
protected:
    PrefixInUse() : m_settings(platform::CurrentSettings()) {
        platform::Settings settings = m_settings;
        settings.drives = {{'C', m_disk.At("drive_c").string()}};
        settings.windowsDirectory = "C:\\windows";
        settings.systemDirectory = "C:\\windows\\system32";
        platform::ApplySettings(settings);
        ::setenv("QVPREFIX", m_disk.Root().c_str(), 1);
    }
    ~PrefixInUse() override {
        platform::ApplySettings(m_settings);
        ::unsetenv("QVPREFIX");
    }

    Disk m_disk;

private:
    platform::Settings m_settings;
};

} // namespace

TEST_F(PrefixInUse, Its_folders_are_those_of_the_settings_in_any_case) {
    m_disk.Put("drive_c/WINDOWS/System32/A.dll");
    m_disk.Put("drive_c/WINDOWS/b.exe");
    EXPECT_EQ(TextOf({"%SystemDir%\\A.dll", "%WindowsDir%\\b.exe"}), CaptureFiles("").text);
}

TEST_F(PrefixInUse, A_system_folder_elsewhere_is_listed_all_the_same) {
    m_disk.Put("drive_c/windows/a.exe");
    m_disk.Put("drive_c/other/b.dll");
    platform::Settings settings = platform::CurrentSettings();
    settings.systemDirectory = "C:\\other";
    platform::ApplySettings(settings);
    EXPECT_EQ(TextOf({"%SystemDir%\\b.dll", "%WindowsDir%\\a.exe"}), CaptureFiles("").text);
}

TEST_F(PrefixInUse, Without_a_Windows_folder_it_is_refused) {
    std::string const why = Refusal(lists::Kind::files, "");
    EXPECT_NE(std::string::npos, why.find("has no C:\\windows")) << why;
    EXPECT_NE(std::string::npos, why.find("name the folder")) << why;
}

TEST_F(PrefixInUse, Its_keys_are_those_of_its_files) {
    m_disk.Put("system.reg", PrefixText("Machine", {"Software\\\\A"}));
    m_disk.Put("user.reg", PrefixText("User\\\\S-1", {"B"}));
    EXPECT_EQ(TextOf({"HKLM\\Software", "HKLM\\Software\\A", "", "HKCU\\B"}), CaptureKeys("").text);
}

TEST_F(PrefixInUse, Without_these_files_its_keys_are_those_of_the_disk) {
    m_disk.Put("drive_c/windows/system32/a.dll");
    std::string const why = Refusal(lists::Kind::keys, "");
    EXPECT_NE(std::string::npos, why.find("isn't in system32/config")) << why;
}

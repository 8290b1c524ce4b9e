// Lists of keys captured from the disk of a Windows that doesn't run.
#include "hive_image.h"
#include "prefix.h"

#include <gtest/gtest.h>

namespace {

using Lines = std::vector<std::string>;

class DiskTest : public testing::Test {
protected:
    std::filesystem::path Config(const char *name) const {
        return m_disk.At(std::string("Windows/System32/config/") + name);
    }
    void PutSystem() {
        HiveFile(Config("SYSTEM"))
            .Add("ControlSet001\\Old")
            .Add("ControlSet002\\Control\\Nls")
            .SetNumber("Select", "Current", 2)
            .Write();
    }
    qvlink::Capture Take() { return CaptureKeys(m_disk.Root()); }

    Disk m_disk;
};

} // namespace

TEST_F(DiskTest, Each_hive_has_its_place) {
    HiveFile(Config("SAM")).Add("SAM\\Domains").Write();
    HiveFile(Config("SECURITY")).Add("Policy").Write();
    HiveFile(Config("SOFTWARE")).Add("Microsoft\\Windows NT").Add("classes").Write();
    PutSystem();
    HiveFile(m_disk.At("Users/Default/NTUSER.DAT")).Add("Control Panel\\Desktop").Write();
    auto const capture = Take();
    EXPECT_EQ(TextOf({"HKLM\\SAM",
                      "HKLM\\SAM\\SAM",
                      "HKLM\\SAM\\SAM\\Domains",
                      "HKLM\\SECURITY",
                      "HKLM\\SECURITY\\Policy",
                      "HKLM\\SOFTWARE",
                      "HKLM\\SOFTWARE\\classes",
                      "HKLM\\SOFTWARE\\Microsoft",
                      "HKLM\\SOFTWARE\\Microsoft\\Windows NT",
                      "HKLM\\SYSTEM",
                      "HKLM\\SYSTEM\\ControlSet001",
                      "HKLM\\SYSTEM\\ControlSet001\\Old",
                      "HKLM\\SYSTEM\\ControlSet002",
                      "HKLM\\SYSTEM\\ControlSet002\\Control",
                      "HKLM\\SYSTEM\\ControlSet002\\Control\\Nls",
                      "HKLM\\SYSTEM\\CurrentControlSet",
                      "HKLM\\SYSTEM\\CurrentControlSet\\Control",
                      "HKLM\\SYSTEM\\CurrentControlSet\\Control\\Nls",
                      "HKLM\\SYSTEM\\Select",
                      "",
                      "HKCU\\Control Panel",
                      "HKCU\\Control Panel\\Desktop"}),
              capture.text);
    EXPECT_EQ(Lines{}, capture.skipped);
    EXPECT_EQ(0u, lists::Check(capture.text, lists::Kind::keys).size());
}

TEST_F(DiskTest, Hives_that_are_missing_are_told) {
    HiveFile(Config("SOFTWARE")).Add("A").Write();
    auto const capture = Take();
    for (const char *const told : {"HKLM\\SAM: there is no SAM", "HKLM\\SECURITY: there is no",
                                   "HKLM\\SYSTEM: there is no", "HKCU: there is no DEFAULT"}) {
        EXPECT_TRUE(HasWords(capture.skipped, told)) << told;
    }
    EXPECT_EQ(4u, capture.skipped.size());
    EXPECT_TRUE(lists::Compare("HKLM\\SOFTWARE\\A\r\n", capture.text).onlyInFirst.empty());
}

TEST_F(DiskTest, The_default_user_is_looked_for_in_three_places) {
    HiveFile(Config("DEFAULT")).Add("InConfig").Write();
    EXPECT_NE(std::string::npos, Take().text.find("HKCU\\InConfig\r\n"));
    HiveFile(m_disk.At("Documents and Settings/Default User/ntuser.dat"))
        .Add("InDocuments")
        .Write();
    EXPECT_NE(std::string::npos, Take().text.find("HKCU\\InDocuments\r\n"));
    HiveFile(m_disk.At("users/default/NTUSER.DAT")).Add("InUsers").Write();
    EXPECT_NE(std::string::npos, Take().text.find("\r\n\r\nHKCU\\InUsers\r\n"));
}

TEST_F(DiskTest, A_damaged_hive_is_told_and_the_others_are_read) {
    PutSystem();
    HiveFile(Config("SOFTWARE")).Add("A").Write();
    Bytes bytes = ReadBytes(Config("SOFTWARE"));
    bytes.resize(2000);
    WriteBytes(Config("SOFTWARE"), bytes);
    auto const capture = Take();
    EXPECT_TRUE(HasWords(capture.skipped, "HKLM\\SOFTWARE: "));
    EXPECT_TRUE(HasWords(capture.skipped, "it is damaged, or no registry hive"));
    EXPECT_NE(std::string::npos, capture.text.find("HKLM\\SYSTEM\\CurrentControlSet\\Control\r\n"));
}

TEST_F(DiskTest, Damage_at_any_place_ends_in_a_list_or_a_refusal) {
    PutSystem();
    Bytes const whole = ReadBytes(Config("SYSTEM"));
    std::size_t lists = 0;
    for (std::size_t at = 4096; at < 4096 + 1200; at += 3) {
        for (unsigned const value : {0x00u, 0xffu}) {
            Bytes bytes = whole;
            bytes[at] = static_cast<std::uint8_t>(value);
            WriteBytes(Config("SYSTEM"), bytes);
            lists += Refusal(lists::Kind::keys, m_disk.Root()).empty() ? 1 : 0;
        }
    }
    EXPECT_GT(lists, 0u);
}

TEST_F(DiskTest, Without_the_number_of_the_current_set_there_is_no_current_one) {
    HiveFile(Config("SYSTEM")).Add("ControlSet001\\A").Write();
    auto const capture = Take();
    EXPECT_EQ(std::string::npos, capture.text.find("CurrentControlSet"));
    EXPECT_TRUE(HasWords(capture.skipped, "HKLM\\SYSTEM\\CurrentControlSet: "));
}

TEST_F(DiskTest, A_current_set_that_is_missing_is_told) {
    HiveFile(Config("SYSTEM")).Add("ControlSet001\\A").SetNumber("Select", "Current", 3).Write();
    auto const capture = Take();
    EXPECT_TRUE(HasWords(capture.skipped, "a link to HKLM\\SYSTEM\\ControlSet003"));
}

TEST_F(DiskTest, Links_inside_a_hive_are_followed) {
    HiveFile(Config("SOFTWARE"))
        .Add("Classes\\CLSID")
        .SetLink("Wow6432Node\\Classes", "\\REGISTRY\\MACHINE\\SOFTWARE\\Classes")
        .SetLink("Abroad", "\\Registry\\User\\S-1-5-18")
        .Write();
    auto const capture = Take();
    EXPECT_NE(std::string::npos,
              capture.text.find("HKLM\\SOFTWARE\\Wow6432Node\\Classes\\CLSID\r\n"));
    EXPECT_TRUE(HasWords(capture.skipped, "HKLM\\SOFTWARE\\Abroad: a link to \\Registry\\User"));
}

TEST_F(DiskTest, Without_any_hive_that_can_be_read_it_is_refused) {
    m_disk.Put("Windows/System32/config/SYSTEM", "junk");
    std::string const why = Refusal(lists::Kind::keys, m_disk.Root());
    EXPECT_NE(std::string::npos, why.find("none of the registry's files")) << why;
}

TEST_F(DiskTest, A_registry_of_an_older_form_is_refused) {
    m_disk.Put("Windows/system/kernel32.dll");
    m_disk.Put("Windows/SYSTEM.DAT");
    std::string const why = Refusal(lists::Kind::keys, m_disk.Root());
    EXPECT_NE(std::string::npos, why.find("on that Windows itself")) << why;
}

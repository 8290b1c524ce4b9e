// Lists of keys captured from a Wine prefix's files.
#include "prefix.h"

#include <gtest/gtest.h>

namespace {

using Lines = std::vector<std::string>;

class CaptureKeysTest : public testing::Test {
protected:
    void PutMachine(Lines const &keys) { m_disk.Put("system.reg", PrefixText("Machine", keys)); }
    void PutUser(Lines const &keys) {
        m_disk.Put("user.reg", PrefixText("User\\\\S-1-5-21-0-0-0-1000", keys));
    }
    qvlink::Capture Take(Lines const &without = {}) { return CaptureKeys(m_disk.Root(), without); }

    Disk m_disk;
};

} // namespace

TEST_F(CaptureKeysTest, Both_files_make_the_two_blocks) {
    PutMachine({"Software\\\\b", "Software\\\\A\\\\x y", "System\\\\Select"});
    PutUser({"Environment", "AppEvents\\\\Schemes"});
    auto const capture = Take();
    EXPECT_EQ(TextOf({"HKLM\\Software", "HKLM\\Software\\A", "HKLM\\Software\\A\\x y",
                      "HKLM\\Software\\b", "HKLM\\System", "HKLM\\System\\Select", "",
                      "HKCU\\AppEvents", "HKCU\\AppEvents\\Schemes", "HKCU\\Environment"}),
              capture.text);
    EXPECT_EQ(Lines{}, capture.skipped);
    EXPECT_EQ(0u, lists::Check(capture.text, lists::Kind::keys).size());
}

TEST_F(CaptureKeysTest, Keys_that_differ_by_case_are_one) {
    PutMachine({"Software\\\\A", "SOFTWARE\\\\a\\\\B"});
    PutUser({"A"});
    EXPECT_EQ(
        TextOf({"HKLM\\Software", "HKLM\\Software\\A", "HKLM\\Software\\A\\B", "", "HKCU\\A"}),
        Take().text);
}

TEST_F(CaptureKeysTest, Links_of_both_files_are_followed) {
    PutMachine(
        {"System\\\\ControlSet001\\\\Control",
         PrefixLink("System\\\\CurrentControlSet", "\\Registry\\Machine\\System\\ControlSet001")});
    PutUser({"A\\\\B", PrefixLink("C", "\\Registry\\User\\S-1-5-21-0-0-0-1000\\A"),
             PrefixLink("D", "\\Registry\\Machine\\System\\ControlSet001")});
    auto const capture = Take();
    EXPECT_EQ(TextOf({"HKLM\\System", "HKLM\\System\\ControlSet001",
                      "HKLM\\System\\ControlSet001\\Control", "HKLM\\System\\CurrentControlSet",
                      "HKLM\\System\\CurrentControlSet\\Control", "", "HKCU\\A", "HKCU\\A\\B",
                      "HKCU\\C", "HKCU\\C\\B", "HKCU\\D", "HKCU\\D\\Control"}),
              capture.text);
    EXPECT_EQ(Lines{}, capture.skipped);
}

TEST_F(CaptureKeysTest, A_link_to_another_user_is_told) {
    PutMachine({"A"});
    PutUser({PrefixLink("C", "\\Registry\\User\\S-1-5-18\\A")});
    auto const capture = Take();
    EXPECT_EQ(TextOf({"HKLM\\A", "", "HKCU\\C"}), capture.text);
    EXPECT_TRUE(HasWords(capture.skipped, "HKCU\\C: a link to \\Registry\\User\\S-1-5-18\\A"));
}

TEST_F(CaptureKeysTest, Patterns_take_out_keys_and_those_below) {
    PutMachine({"Hardware\\\\Map", "Software\\\\Wine\\\\Ports", "Software\\\\Winery"});
    PutUser({"Volatile Environment", "Software\\\\Wine"});
    EXPECT_EQ(TextOf({"HKLM\\Software", "HKLM\\Software\\Winery", "", "HKCU\\Software"}),
              Take({"HKLM\\HARDWARE", "HK??\\Software\\Wine", "hkcu\\volatile*"}).text);
}

TEST_F(CaptureKeysTest, A_missing_file_is_told_and_leaves_its_block_empty) {
    PutMachine({"A"});
    auto const capture = Take();
    EXPECT_EQ(TextOf({"HKLM\\A", ""}), capture.text);
    ASSERT_EQ(1u, capture.skipped.size());
    EXPECT_TRUE(HasWords(capture.skipped, "user.reg"));
}

TEST_F(CaptureKeysTest, A_file_of_another_form_is_told) {
    PutMachine({"A"});
    m_disk.Put("user.reg", "REGEDIT4\n\n[A]\n");
    auto const capture = Take();
    EXPECT_EQ(TextOf({"HKLM\\A", ""}), capture.text);
    EXPECT_TRUE(HasWords(capture.skipped, "user.reg: not a registry file"));
}

TEST_F(CaptureKeysTest, A_folder_in_place_of_a_file_is_told) {
    PutMachine({"A"});
    std::filesystem::create_directory(m_disk.At("user.reg"));
    auto const capture = Take();
    EXPECT_EQ(TextOf({"HKLM\\A", ""}), capture.text);
    ASSERT_EQ(1u, capture.skipped.size());
    EXPECT_TRUE(HasWords(capture.skipped, "user.reg: "));
}

TEST_F(CaptureKeysTest, Without_a_file_that_can_be_read_it_is_refused) {
    m_disk.Put("system.reg", "junk");
    std::string const why = Refusal(lists::Kind::keys, m_disk.Root());
    EXPECT_NE(std::string::npos, why.find("neither system.reg nor user.reg")) << why;
}

TEST_F(CaptureKeysTest, A_damaged_key_is_told_by_file_and_line) {
    m_disk.Put("system.reg", PrefixText("Machine", {"A"}) + "\n[B\n");
    PutUser({"A"});
    auto const capture = Take();
    EXPECT_EQ(TextOf({"HKLM\\A", "", "HKCU\\A"}), capture.text);
    ASSERT_EQ(1u, capture.skipped.size());
    EXPECT_TRUE(HasWords(capture.skipped, "system.reg:9: a key without a closing bracket"));
}

TEST_F(CaptureKeysTest, A_key_that_is_too_deep_is_told) {
    std::string deep;
    for (int i = 0; i < 513; ++i) {
        deep += "a\\\\";
    }
    PutMachine({deep, "B"});
    PutUser({"A"});
    auto const capture = Take();
    EXPECT_EQ(TextOf({"HKLM\\B", "", "HKCU\\A"}), capture.text);
    EXPECT_TRUE(HasWords(capture.skipped, "deeper"));
}

TEST_F(CaptureKeysTest, Prefix_files_without_keys_give_no_text) {
    PutMachine({});
    PutUser({});
    EXPECT_EQ("", Take().text);
}

TEST_F(CaptureKeysTest, Names_beyond_ASCII_are_UTF_8) {
    PutMachine({"\\xe4\\x20ac"});
    PutUser({"A"});
    EXPECT_EQ(TextOf({"HKLM\\\xC3\xA4\xE2\x82\xAC", "", "HKCU\\A"}), Take().text);
}

TEST(CaptureKeys, A_folder_of_another_kind_is_refused) {
    Disk disk;
    disk.Put("etc/passwd");
    std::string const why = Refusal(lists::Kind::keys, disk.Root());
    EXPECT_NE(std::string::npos, why.find("neither a Wine prefix nor")) << why;
}

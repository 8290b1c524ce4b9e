// Paths of keys.
#include "registry/key_path.h"

#include <gtest/gtest.h>

using namespace qvlink;

TEST(KeyPath, Roots_become_short_and_long) {
    struct {
        const char *shortName;
        const char *longName;
    } const roots[] = {{"HKLM", "HKEY_LOCAL_MACHINE"},
                       {"HKCU", "HKEY_CURRENT_USER"},
                       {"HKCR", "HKEY_CLASSES_ROOT"},
                       {"HKU", "HKEY_USERS"},
                       {"HKCC", "HKEY_CURRENT_CONFIG"}};
    for (auto const &root : roots) {
        std::string const brief = root.shortName;
        std::string const whole = root.longName;
        EXPECT_EQ(brief, WithShortRoot(brief));
        EXPECT_EQ(brief, WithShortRoot(whole));
        EXPECT_EQ(brief + "\\A\\b", WithShortRoot(whole + "\\A\\b"));
        EXPECT_EQ(brief + "\\A", WithShortRoot(brief + "\\A\\\\"));
        EXPECT_EQ(whole + "\\A", WithLongRoot(brief + "\\A"));
        EXPECT_EQ(whole, WithLongRoot(brief));
    }
    EXPECT_EQ("HKLM\\a", WithShortRoot("hklm\\a"));
    EXPECT_EQ("HKLM\\a", WithShortRoot("hkey_local_machine\\a"));
}

TEST(KeyPath, Other_beginnings_are_no_root) {
    for (const char *const path : {"", "\\", "A", "HKLMA", "HK", "HKEY_DYN_DATA\\A", "\\HKLM\\A"}) {
        EXPECT_FALSE(WithShortRoot(path)) << path;
    }
}

TEST(KeyPath, Files_of_a_prefix_say_their_root) {
    EXPECT_EQ("HKLM", RootOfPrefixFile("Machine"));
    EXPECT_EQ("HKLM\\A", RootOfPrefixFile("machine\\A"));
    EXPECT_EQ("HKCU", RootOfPrefixFile("User\\S-1-5-21-0-0-0-1000"));
    EXPECT_EQ("HKU\\.Default", RootOfPrefixFile("User\\.Default"));
    for (const char *const root : {"", "User", "User\\", "User\\S-1\\A", "Machinery", "Other"}) {
        EXPECT_FALSE(RootOfPrefixFile(root)) << root;
    }
}

TEST(KeyPath, A_link_leads_to_the_machine_or_to_the_files_own_user) {
    EXPECT_EQ("HKLM\\Software", KeyOfSystemPath("\\Registry\\Machine\\Software", ""));
    EXPECT_EQ("HKLM\\Software", KeyOfSystemPath("\\REGISTRY\\MACHINE\\Software", ""));
    EXPECT_EQ("HKCU\\A", KeyOfSystemPath("\\Registry\\User\\S-1\\A", "User\\S-1"));
    EXPECT_FALSE(KeyOfSystemPath("\\Registry\\User\\S-2\\A", "User\\S-1"));
    EXPECT_FALSE(KeyOfSystemPath("\\Registry\\User\\S-1\\A", ""));
    EXPECT_FALSE(KeyOfSystemPath("\\Device\\A", "User\\S-1"));
    EXPECT_FALSE(KeyOfSystemPath("", "User\\S-1"));
}

TEST(KeyPath, What_no_registry_holds_is_told) {
    std::string const longest(255, 'a');
    EXPECT_EQ("", WhyNoKey("HKLM"));
    EXPECT_EQ("", WhyNoKey("HKLM\\" + longest + "\\b"));
    EXPECT_NE("", WhyNoKey("HKLM\\a" + longest));
    EXPECT_NE("", WhyNoKey(""));
    EXPECT_NE("", WhyNoKey("HKLM\\\\a"));
    EXPECT_NE("", WhyNoKey("HKLM\\a\\"));
    EXPECT_NE("", WhyNoKey(std::string("HKLM\\a\0b", 8)));
    EXPECT_NE("", WhyNoKey("HKLM\\\xff"));
}

TEST(KeyPath, Lengths_count_units) {
    std::string wide, pairs;
    for (int i = 0; i < 255; ++i) {
        wide += "\xE2\x82\xAC";
    }
    for (int i = 0; i < 128; ++i) {
        pairs += "\xF0\x9F\x8C\x8D";
    }
    EXPECT_EQ("", WhyNoKey("HKLM\\" + wide));
    EXPECT_NE("", WhyNoKey("HKLM\\" + pairs));
}

TEST(KeyPath, Depth_is_bounded) {
    std::string path = "HKLM";
    for (int i = 1; i < 512; ++i) {
        path += "\\a";
    }
    EXPECT_EQ("", WhyNoKey(path));
    EXPECT_NE("", WhyNoKey(path + "\\a"));
}

TEST(KeyPath, Names_of_values_may_be_longer_and_empty) {
    EXPECT_EQ("", WhyNoValueName(""));
    EXPECT_EQ("", WhyNoValueName("a\\b"));
    EXPECT_EQ("", WhyNoValueName(std::string(16383, 'a')));
    EXPECT_NE("", WhyNoValueName(std::string(16384, 'a')));
    EXPECT_NE("", WhyNoValueName(std::string("a\0", 2)));
    EXPECT_NE("", WhyNoValueName("\xff"));
}

TEST(KeyPath, Below_is_told_name_by_name_in_any_case) {
    EXPECT_TRUE(IsAtOrBelow("HKLM\\a", "hklm\\A"));
    EXPECT_TRUE(IsAtOrBelow("HKLM\\a\\b", "HKLM\\A"));
    EXPECT_FALSE(IsAtOrBelow("HKLM\\ab", "HKLM\\a"));
    EXPECT_FALSE(IsAtOrBelow("HKLM", "HKLM\\a"));
}

// The text files of a Wine prefix.
#include "lists/prefix_file.h"

#include <gtest/gtest.h>

using qvlink::PrefixFile;
using qvlink::ReadPrefixFile;

namespace {

using Names = std::vector<std::string>;
const std::string head = "WINE REGISTRY Version 2\n";
const std::string target = "\"SymbolicLinkValue\"=hex(6):";

Names PathsIn(std::string const &lines) {
    Names paths;
    for (auto const &key : ReadPrefixFile(head + lines).keys) {
        paths.push_back(key.path);
    }
    return paths;
}

std::string TargetIn(std::string const &lines) {
    auto const keys = ReadPrefixFile(head + lines).keys;
    return keys.empty() ? "no key" : keys[0].target;
}

} // namespace

TEST(PrefixFile, Without_its_first_line_it_is_none) {
    EXPECT_FALSE(ReadPrefixFile("").isOne);
    EXPECT_FALSE(ReadPrefixFile("REGEDIT4\n[A]\n").isOne);
    EXPECT_FALSE(ReadPrefixFile("WINE REGISTRY Version 1\n[A]\n").isOne);
    EXPECT_TRUE(ReadPrefixFile("WINE REGISTRY Version 1\n[A]\n").keys.empty());
    EXPECT_TRUE(ReadPrefixFile(head).isOne);
    EXPECT_TRUE(ReadPrefixFile("WINE REGISTRY Version 2").isOne);
}

TEST(PrefixFile, Keys_have_their_whole_path) {
    EXPECT_EQ((Names{"Software\\Classes\\.txt", "System"}),
              PathsIn(";; a comment\n\n#arch=win64\n\n[Software\\\\Classes\\\\.txt] 1700000000\n"
                      "#time=1dd79f6478f078c\n@=\"x\"\n\n[System]\n"));
}

TEST(PrefixFile, Lines_may_end_with_a_carriage_return_or_not_at_all) {
    EXPECT_EQ((Names{"A", "B"}), PathsIn("[A] 1\r\n\r\n[B] 2"));
}

TEST(PrefixFile, The_root_is_told_by_its_comment) {
    EXPECT_EQ("Machine",
              ReadPrefixFile(head + ";; All keys relative to REGISTRY\\\\Machine\n").root);
    EXPECT_EQ(
        "User\\S-1-5-21-0-0-0-1000",
        ReadPrefixFile(head + ";; All keys relative to REGISTRY\\\\User\\\\S-1-5-21-0-0-0-1000\n")
            .root);
    EXPECT_EQ("", ReadPrefixFile(head + ";; All keys relative to nothing\n").root);
    EXPECT_EQ("", ReadPrefixFile(head).root);
}

TEST(PrefixFile, Escapes_of_names) {
    EXPECT_EQ(Names{"a[b]c"}, PathsIn("[a\\[b\\]c] 1\n"));
    EXPECT_EQ(Names{"a\"b"}, PathsIn("[a\\\"b] 1\n"));
    EXPECT_EQ(Names{"\a\b\x1b\f\n\r\t\v"}, PathsIn("[\\a\\b\\e\\f\\n\\r\\t\\v] 1\n"));
    EXPECT_EQ(Names{std::string("a\0b", 3)}, PathsIn("[a\\0b] 1\n"));
    EXPECT_EQ(Names{"S9"}, PathsIn("[\\1239] 1\n"));
    EXPECT_EQ(Names{"\xC3\xA4x"}, PathsIn("[\\xe4x] 1\n"));
    EXPECT_EQ(Names{"\xC3\xA4"
                    "1"},
              PathsIn("[\\x00e41] 1\n"));
    EXPECT_EQ(Names{"\xE2\x82\xAC"}, PathsIn("[\\x20ac] 1\n"));
    EXPECT_EQ(Names{"\xF0\x9F\x8C\x8D"}, PathsIn("[\\xd83c\\xdf0d] 1\n"));
    EXPECT_EQ(Names{"xg"}, PathsIn("[\\xg] 1\n"));
}

TEST(PrefixFile, A_byte_above_127_is_a_character_of_its_own) {
    EXPECT_EQ(Names{"\xC3\xA4"}, PathsIn("[\xE4] 1\n"));
}

TEST(PrefixFile, Half_of_a_pair_is_a_fault) {
    for (const char *const name : {"\\xd83c", "\\xdf0d", "\\xd83cx", "\\xdf0d\\xd83c"}) {
        PrefixFile const file = ReadPrefixFile(head + "\n[" + name + "] 1\n[B]\n");
        ASSERT_EQ(1u, file.keys.size()) << name;
        EXPECT_EQ("B", file.keys[0].path);
        ASSERT_EQ(1u, file.faults.size()) << name;
        EXPECT_EQ(3u, file.faults[0].line);
    }
}

TEST(PrefixFile, A_key_without_a_closing_bracket_is_a_fault) {
    for (const char *const line : {"[", "[A", "[A\\", "[A\\]", "[A\\x"}) {
        PrefixFile const file = ReadPrefixFile(head + line + "\n[B]\n");
        ASSERT_EQ(1u, file.keys.size()) << line;
        ASSERT_EQ(1u, file.faults.size()) << line;
        EXPECT_EQ(2u, file.faults[0].line);
    }
}

TEST(PrefixFile, A_bracket_in_a_value_is_no_key) {
    EXPECT_EQ((Names{"A", "C"}), PathsIn("[A] 1\n\"x\"=hex:00,\\\n[B] 1\n[C] 1\n"));
    EXPECT_EQ((Names{"A", "C"}), PathsIn("[A] 1\n@=hex:00,\\\n  01,\\\n[B] 1\n[C] 1\n"));
    EXPECT_EQ((Names{"A", "C"}), PathsIn("[A] 1\n\"[B]\"=\"[B]\"\n[C] 1\n"));
}

TEST(PrefixFile, A_link_has_its_target) {
    EXPECT_EQ("\\A", TargetIn("[K] 1\n#time=1\n#link\n" + target + "5c,00,41,00\n"));
}

TEST(PrefixFile, A_target_may_go_over_several_lines) {
    EXPECT_EQ("\\AB", TargetIn("[K] 1\n#link\n" + target + "5c,00,\\\n  41,00,\\\n  42,00\n"));
    EXPECT_EQ("\\AB", TargetIn("[K] 1\r\n#link\r\n" + target + "5c,00,4\\\r\n  1,00,42,00\r\n"));
}

TEST(PrefixFile, A_value_of_that_name_without_the_mark_is_no_link) {
    EXPECT_EQ("", TargetIn("[K] 1\n" + target + "5c,00,41,00\n"));
    EXPECT_EQ("", TargetIn("[J] 1\n[K] 1\n#link\n" + target + "5c,00,41,00\n"));
}

TEST(PrefixFile, The_mark_counts_for_its_key_only) {
    auto const file = ReadPrefixFile(head + "[J] 1\n#link\n[K] 1\n" + target + "5c,00,41,00\n");
    ASSERT_EQ(2u, file.keys.size());
    EXPECT_EQ("", file.keys[0].target);
    EXPECT_EQ("", file.keys[1].target);
}

TEST(PrefixFile, A_mark_ahead_of_all_keys_is_nothing) {
    EXPECT_EQ("no key", TargetIn("#link\n" + target + "5c,00\n"));
    EXPECT_EQ("no key", TargetIn("[K\n#link\n" + target + "5c,00\n"));
}

TEST(PrefixFile, A_damaged_target_is_taken_as_far_as_it_goes) {
    EXPECT_EQ("A", TargetIn("[K] 1\n#link\n" + target + "41,00,zz\n"));
    EXPECT_EQ("AB", TargetIn("[K] 1\n#link\n" + target + "41,00,42\n"));
    EXPECT_EQ("", TargetIn("[K] 1\n#link\n" + target + "\n"));
    EXPECT_EQ("", TargetIn("[K] 1\n#link\n" + target + "3c,d8\n"));
    EXPECT_EQ("A", TargetIn("[K] 1\n#link\n" + target + "41,00,\\"));
}

TEST(PrefixFile, Every_start_of_a_file_is_read_without_harm) {
    std::string const whole =
        head +
        ";; All keys relative to REGISTRY\\\\Machine\n\n[A\\\\\\xd83c\\xdf0d\\012] 1\n#link\n" +
        target + "5c,00,\\\n  41,00\n\"x\"=\"\\\\\"\n";
    for (std::size_t size = 0; size <= whole.size(); ++size) {
        PrefixFile const file = ReadPrefixFile(whole.substr(0, size));
        EXPECT_LE(file.keys.size(), 1u);
    }
}

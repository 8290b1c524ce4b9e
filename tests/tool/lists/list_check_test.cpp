// What is told of a list's text, rule by rule.
#include "list_text.h"

#include <gtest/gtest.h>

using lists::Check;
using lists::Kind;
using lists::KindOf;

namespace {

constexpr bool error = true;
constexpr bool note = false;

// One finding as "line error: words" or "line note: words".
std::vector<std::string> Told(std::string_view text, Kind kind) {
    std::vector<std::string> told;
    for (lists::Finding const &finding : Check(text, kind)) {
        told.push_back(std::to_string(finding.line) + (finding.isError ? " error: " : " note: ") +
                       finding.message);
    }
    return told;
}

// Passes if exactly one thing is told, of this line and weight, with these words in it.
testing::AssertionResult OnlyTells(std::string_view text, Kind kind, std::size_t line, bool isError,
                                   std::string_view words) {
    auto const findings = Check(text, kind);
    if (findings.size() == 1 && findings[0].line == line && findings[0].isError == isError &&
        findings[0].message.find(words) != std::string::npos) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << testing::PrintToString(Told(text, kind));
}

using Lines = std::vector<std::string>;

std::string Text(Lines const &lines) {
    std::string text;
    for (std::string const &line : lines) {
        text += line + "\r\n";
    }
    return text;
}

testing::AssertionResult Files(Lines const &lines, std::size_t line, bool isError,
                               std::string_view words) {
    return OnlyTells(Text(lines), Kind::files, line, isError, words);
}

testing::AssertionResult Keys(Lines const &lines, std::size_t line, bool isError,
                              std::string_view words) {
    return OnlyTells(Text(lines), Kind::keys, line, isError, words);
}

const Lines keys = {"HKLM\\A", "HKLM\\A\\B", "HKLM\\A\\B\\C", "HKLM\\D", "", "HKCU\\A"};

} // namespace

TEST(ListKind, A_list_of_files_begins_with_a_percent_sign) {
    EXPECT_EQ(Kind::files, KindOf("%SystemDir%\\a\r\n"));
    EXPECT_EQ(Kind::files, KindOf("\r\n \r\n  %x"));
}

TEST(ListKind, A_list_of_keys_begins_with_HK) {
    EXPECT_EQ(Kind::keys, KindOf("HKLM\\A\r\n"));
    EXPECT_EQ(Kind::keys, KindOf("\r\nhkcu\\A\r\n"));
}

TEST(ListKind, Other_texts_are_neither) {
    EXPECT_EQ(std::nullopt, KindOf(""));
    EXPECT_EQ(std::nullopt, KindOf("\r\n\r\n"));
    EXPECT_EQ(std::nullopt, KindOf("kernel32.dll\r\n%SystemDir%\\a\r\n"));
    EXPECT_EQ(std::nullopt, KindOf("\xEF\xBB\xBF%SystemDir%\\a\r\n"));
    EXPECT_EQ(std::nullopt, KindOf("H"));
}

TEST(ListCheck, Good_lists_have_nothing_told) {
    EXPECT_EQ(Lines{}, Told(Text({"%SystemDir%\\a.dll", "%SystemDir%\\b c\\d.dll",
                                  "%WindowsDir%\\a.exe", "%windowsdir%\\b.exe"}),
                            Kind::files));
    EXPECT_EQ(Lines{}, Told(Text(keys), Kind::keys));
    EXPECT_EQ(Lines{}, Told(Text({"hklm\\a b", "HKLM\\A B\\*?/", "", "hkcu\\x"}), Kind::keys));
}

TEST(ListCheck, A_text_without_entries_is_told) {
    EXPECT_TRUE(OnlyTells("", Kind::files, 1, note, "no entries"));
    EXPECT_TRUE(OnlyTells("", Kind::keys, 1, note, "no entries"));
}

TEST(ListCheck, A_last_line_without_an_end_is_a_note) {
    EXPECT_TRUE(OnlyTells("%SystemDir%\\a\r\n%SystemDir%\\b", Kind::files, 2, note, "never read"));
    EXPECT_EQ(std::string(lists::noLineEnd), Check("%SystemDir%\\a", Kind::files)[0].message);
}

TEST(ListCheck, A_line_feed_alone_is_a_note) {
    EXPECT_TRUE(OnlyTells("%SystemDir%\\a\n%SystemDir%\\b\r\n", Kind::files, 1, note,
                          "without a carriage return"));
}

TEST(ListCheck, A_zero_byte_is_an_error_and_ends_the_reading) {
    std::string text = Text({"%SystemDir%\\a", "%SystemDir%\\b", "junk"});
    text[text.find('b')] = '\0';
    EXPECT_TRUE(OnlyTells(text, Kind::files, 2, error, "zero byte"));
}

TEST(ListCheck, A_wide_text_shows_by_its_zero_bytes) {
    EXPECT_EQ(1u, Check(std::string_view("%\0S\0y\0\n\0", 8), Kind::files)[0].line);
    EXPECT_TRUE(Check(std::string_view("%\0S\0y\0\n\0", 8), Kind::files)[0].isError);
}

TEST(ListCheck, Blanks_around_an_entry_are_errors) {
    EXPECT_TRUE(Files({"%SystemDir%\\a "}, 1, error, "blanks"));
    EXPECT_TRUE(Files({"\t%SystemDir%\\a"}, 1, error, "blanks"));
    EXPECT_TRUE(Files({"%SystemDir%\\a\r"}, 1, error, "blanks"));
}

TEST(ListCheck, A_control_character_inside_is_an_error) {
    EXPECT_TRUE(Files({"%SystemDir%\\a\rb"}, 1, error, "control character"));
    EXPECT_TRUE(Keys({"HKLM\\A\tB", "", "HKCU\\A"}, 1, error, "control character"));
}

TEST(ListCheck, Bytes_above_127_are_characters) {
    EXPECT_EQ(Lines{}, Told(Text({"%SystemDir%\\\xE9\xA0\xFF"}), Kind::files));
}

TEST(ListCheck, A_line_of_260_characters_is_passed_over) {
    std::string const tag = "%WindowsDir%\\";
    EXPECT_EQ(Lines{}, Told(Text({tag + std::string(259 - tag.size(), 'a')}), Kind::files));
    EXPECT_TRUE(
        Files({tag + std::string(260 - tag.size(), 'a')}, 1, error, "the line has 260 characters"));
    EXPECT_EQ(Lines{}, Told(Text({"HKLM\\" + std::string(254, 'a'), "", "HKCU\\A"}), Kind::keys));
    EXPECT_TRUE(Keys({"HKLM\\" + std::string(255, 'a'), "", "HKCU\\A"}, 1, error, "260"));
}

// C:\WINDOWS\system32\ is 8 characters longer than its tag.
TEST(ListCheck, A_path_that_grows_to_260_characters_is_a_note) {
    std::string const tag = "%SystemDir%\\";
    EXPECT_EQ(Lines{}, Told(Text({tag + std::string(251 - tag.size(), 'a')}), Kind::files));
    EXPECT_TRUE(Files({tag + std::string(252 - tag.size(), 'a')}, 1, note, "260 characters"));
}

TEST(ListCheck, A_duplicate_is_a_note_whatever_its_case) {
    EXPECT_TRUE(
        Files({"%SystemDir%\\a", "%SystemDir%\\b", "%systemdir%\\A"}, 3, note, "on line 1"));
    EXPECT_TRUE(Keys({"HKLM\\A", "HKLM\\a", "", "HKCU\\A"}, 2, note, "on line 1"));
}

TEST(ListCheck, Backslashes_that_separate_nothing_are_a_note) {
    EXPECT_TRUE(Files({"%SystemDir%\\a\\\\b"}, 1, note, "backslashes"));
    EXPECT_TRUE(Files({"%SystemDir%\\a\\"}, 1, note, "backslashes"));
    EXPECT_TRUE(Keys({"\\HKLM\\A", "", "HKCU\\A"}, 1, note, "backslashes"));
}

TEST(ListCheckFiles, A_line_without_a_tag_is_passed_over) {
    EXPECT_TRUE(Files({"C:\\WINDOWS\\a"}, 1, error, "passes over"));
    EXPECT_TRUE(Files({"HKLM\\A"}, 1, error, "passes over"));
}

TEST(ListCheckFiles, A_line_with_another_tag_is_taken_for_another_file) {
    EXPECT_TRUE(Files({"%ProgramDir%\\a"}, 1, error, "another file"));
    EXPECT_TRUE(Files({"%Windows%\\a"}, 1, error, "another file"));
    EXPECT_TRUE(Files({"%SystemDir%"}, 1, error, "another file"));
}

TEST(ListCheckFiles, A_tag_alone_names_no_file) {
    EXPECT_TRUE(Files({"%SystemDir%\\"}, 1, error, "no file"));
    EXPECT_TRUE(Files({"%WindowsDir%\\"}, 1, error, "no file"));
}

TEST(ListCheckFiles, An_empty_line_is_an_error) {
    EXPECT_TRUE(Files({"%SystemDir%\\a", "", "%SystemDir%\\b"}, 2, error, "empty line"));
}

TEST(ListCheckFiles, Components_of_dots_are_errors) {
    EXPECT_TRUE(Files({"%SystemDir%\\..\\a"}, 1, error, "dots"));
    EXPECT_TRUE(Files({"%SystemDir%\\a\\."}, 1, error, "dots"));
    EXPECT_EQ(Lines{}, Told(Text({"%SystemDir%\\..a\\.b\\...c"}), Kind::files));
}

TEST(ListCheckFiles, Wildcards_are_a_note) {
    EXPECT_TRUE(Files({"%SystemDir%\\*.dll"}, 1, note, "no pattern"));
    EXPECT_TRUE(Files({"%SystemDir%\\a?"}, 1, note, "no pattern"));
    EXPECT_TRUE(Files({"%SystemDir%\\a/b"}, 1, note, "no pattern"));
}

TEST(ListCheckKeys, Other_roots_are_errors) {
    EXPECT_TRUE(Keys({"HKLM\\A", "HKCR\\A", "", "HKCU\\A"}, 2, error, "neither"));
    EXPECT_TRUE(Keys({"HKLM\\A", "HKEY_LOCAL_MACHINE\\B", "", "HKCU\\A"}, 2, error, "neither"));
}

TEST(ListCheckKeys, A_root_itself_is_a_note) {
    EXPECT_TRUE(Keys({"HKLM", "HKLM\\A", "", "HKCU\\A"}, 1, note, "root"));
}

TEST(ListCheckKeys, A_parent_behind_its_child_is_an_error) {
    EXPECT_TRUE(
        Keys({"HKLM\\A\\B", "HKLM\\A", "", "HKCU\\A"}, 1, error, "listed behind it, on line 2"));
}

TEST(ListCheckKeys, A_parent_that_is_missing_is_a_note) {
    EXPECT_TRUE(Keys({"HKLM\\A\\B", "HKLM\\A\\B\\C", "", "HKCU\\A"}, 1, note, "isn't listed"));
}

TEST(ListCheckKeys, The_empty_line_must_be_there) {
    EXPECT_TRUE(Keys({"HKLM\\A", "HKCU\\A"}, 2, error, "no empty line"));
}

TEST(ListCheckKeys, A_second_empty_line_is_an_error) {
    EXPECT_TRUE(Keys({"HKLM\\A", "", "", "HKCU\\A"}, 3, error, "second empty line"));
}

TEST(ListCheckKeys, Empty_lines_elsewhere_are_errors) {
    EXPECT_TRUE(Keys({"HKLM\\A", "", "HKLM\\B", "", "HKCU\\A"}, 2, error, "isn't between"));
    EXPECT_TRUE(Keys({"HKLM\\A", "", "HKCU\\A", "", "HKCU\\B"}, 4, error, "isn't between"));
    EXPECT_TRUE(Keys({"HKLM\\A", "", "HKCU\\A", ""}, 4, error, "isn't between"));
    EXPECT_TRUE(Keys({"", "HKLM\\A", "", "HKCU\\A"}, 1, error, "isn't between"));
}

TEST(ListCheckKeys, A_key_of_the_machine_behind_those_of_the_user_is_an_error) {
    EXPECT_TRUE(Keys({"HKLM\\A", "", "HKCU\\A", "HKLM\\B"}, 4, error, "behind those of HKCU"));
}

TEST(ListCheckKeys, A_block_that_is_missing_is_a_note) {
    EXPECT_TRUE(Keys({"HKLM\\A", ""}, 2, note, "no keys of HKCU"));
    EXPECT_TRUE(Keys({"", "HKCU\\A"}, 1, note, "no keys of HKLM"));
}

TEST(ListCheck, Findings_come_in_order_of_lines) {
    auto const findings =
        Check(Text({"HKLM\\A\\B", "HKLM\\A ", "HKXX\\A", "HKLM\\A", "HKCU\\A"}), Kind::keys);
    ASSERT_EQ(5u, findings.size());
    for (std::size_t i = 1; i < findings.size(); ++i) {
        EXPECT_LE(findings[i - 1].line, findings[i].line);
    }
}

// How strings are made, copied and assigned.
#include "open_string.h"

#include <gtest/gtest.h>

using UTILS::MemObject;
using UTILS::UtilsString;
using UTILS::WideString;
using Texts = std::vector<std::string>;
using Cursors = std::vector<unsigned long>;

namespace {

char const text[] = "text";
std::string const withNul("a\0b", 3);

struct TextRun : MemObject<char> {
    TextRun(std::string const &content) {
        if (!content.empty())
            Append(content.data(), SizeOf(content));
    }
};

} // namespace

TEST(StringConstruction, A_fresh_string_is_one_empty_text) {
    OpenString const string;
    EXPECT_EQ(1, !string);
    EXPECT_STREQ("", string.c_str());
    EXPECT_EQ('\0', *string.c_str());
    EXPECT_EQ(0u, string.size());
    EXPECT_EQ(1u, string.GetNumberOfStrings());
    EXPECT_EQ(0u, string.GetCurrentString());
    EXPECT_EQ((Cursors{0, 0, 0, 0, 0}), string.Cursors());
    EXPECT_EQ(0, string.GetMatchStyle());
    EXPECT_EQ(1, string.GetCase());
}

TEST(StringConstruction, A_count_makes_so_many_empty_texts) {
    EXPECT_EQ((Texts{"", "", ""}), TextsOf(UtilsString(3ul)));
    EXPECT_EQ(Texts{""}, TextsOf(UtilsString(0ul)));
}

TEST(StringConstruction, A_text_is_in_each_of_the_strings) {
    EXPECT_EQ(Texts{"text"}, TextsOf(UtilsString(text)));
    EXPECT_EQ((Texts{"x", "x", "x"}), TextsOf(UtilsString("x", 3)));
    EXPECT_EQ((Texts{"x", "x", "x"}), TextsOf(UtilsString(std::string("x"), 3)));
    EXPECT_EQ((Texts{"", ""}), TextsOf(UtilsString("", 2)));
    EXPECT_EQ((Texts{"", ""}), TextsOf(UtilsString(std::string(), 2)));
}

TEST(StringConstruction, A_run_or_wide_text_is_in_the_first_string_only) {
    EXPECT_EQ((Texts{"run", "", ""}), TextsOf(UtilsString(TextRun("run"), 3)));
    EXPECT_EQ((Texts{"wide", "", ""}), TextsOf(UtilsString(Wide("wide"), 3)));
    EXPECT_EQ((Texts{"wide", "", ""}), TextsOf(UtilsString(Wide("wide").c_str(), 3)));
    EXPECT_EQ(Texts{"run"}, TextsOf(UtilsString(TextRun("run"))));
    EXPECT_EQ(Texts{"wide"}, TextsOf(UtilsString(Wide("wide"))));
    EXPECT_EQ(Texts{""}, TextsOf(UtilsString(TextRun(""))));
    EXPECT_EQ(Texts{""}, TextsOf(UtilsString(WideString())));
}

TEST(StringConstruction, A_count_of_zero_is_read_as_one) {
    EXPECT_EQ(Texts{"x"}, TextsOf(UtilsString("x", 0)));
    EXPECT_EQ(Texts{"x"}, TextsOf(UtilsString(std::string("x"), 0)));
    EXPECT_EQ(Texts{"x"}, TextsOf(UtilsString(TextRun("x"), 0)));
    EXPECT_EQ(Texts{"x"}, TextsOf(UtilsString(Wide("x"), 0)));
    EXPECT_EQ(Texts{"x"}, TextsOf(UtilsString(Wide("x").c_str(), 0)));
}

TEST(StringConstruction, Every_way_starts_with_the_first_settings) {
    OpenString const strings[] = {OpenString("x", 2), OpenString(std::string("x"), 2),
                                  OpenString(TextRun("x"), 2), OpenString(Wide("x"), 2),
                                  OpenString(2ul)};
    for (OpenString const &string : strings) {
        EXPECT_EQ(2u, string.stringCount);
        EXPECT_EQ(0u, string.currentString);
        EXPECT_EQ((Cursors{0, 0, 0, 0, 0}), string.Cursors());
        EXPECT_EQ(0, string.matchStyle);
        EXPECT_EQ(1, string.caseMode);
    }
}

TEST(StringConstruction, The_characters_of_a_string_object_may_be_NUL) {
    UtilsString const string(withNul);
    EXPECT_EQ(3u, string.size());
    EXPECT_EQ(withNul, TextOf(string));
    EXPECT_EQ(withNul, TextOf(UtilsString(TextRun(withNul))));
}

TEST(StringConstruction, A_copy_has_all_strings_cursors_and_settings) {
    OpenString string("one");
    string.AddString("two").AddString("three");
    string.SetCurrentString(2);
    string.findIndex = 1;
    string.parseIndex = 2;
    string.fastParseFound = 3;
    string.fastParseStart = 4;
    string.lastReplaceIndex = 5;
    string.SetMatchStyle(1);
    string.SetCase(0);
    OpenString const copy(string);
    EXPECT_EQ((Texts{"one", "two", "three"}), TextsOf(copy));
    EXPECT_EQ(3u, copy.stringCount);
    EXPECT_EQ(2u, copy.currentString);
    EXPECT_EQ((Cursors{1, 2, 3, 4, 5}), copy.Cursors());
    EXPECT_EQ(1, copy.matchStyle);
    EXPECT_EQ(0, copy.caseMode);

    OpenString assigned("old", 5);
    assigned = static_cast<UtilsString const &>(string);
    EXPECT_EQ((Texts{"one", "two", "three"}), TextsOf(assigned));
    EXPECT_EQ(2u, assigned.currentString);
    EXPECT_EQ((Cursors{1, 2, 3, 4, 5}), assigned.Cursors());
    EXPECT_EQ(1, assigned.matchStyle);
    EXPECT_EQ(0, assigned.caseMode);
}

TEST(StringConstruction, A_copy_is_its_own) {
    UtilsString string("one");
    UtilsString copy(string);
    UtilsString assigned;
    assigned = string;
    copy += "!";
    assigned += "?";
    EXPECT_STREQ("one", string.c_str());
    EXPECT_STREQ("one!", copy.c_str());
    EXPECT_STREQ("one?", assigned.c_str());
}

TEST(StringConstruction, Assignment_to_itself_changes_nothing) {
    OpenString string("one", 2);
    string.SetCurrentString(1);
    string.SetCursors(7);
    UtilsString const &same = string;
    string = same;
    EXPECT_EQ((Texts{"one", "one"}), TextsOf(string));
    EXPECT_EQ(1u, string.currentString);
    EXPECT_EQ((Cursors{7, 7, 7, 7, 7}), string.Cursors());
}

TEST(StringConstruction, A_text_assigned_replaces_the_selected_string_only) {
    TextRun const run("run");
    auto const check = [](auto const &source, char const *wanted) {
        OpenString string("old", 3);
        string.SetCurrentString(1);
        string.SetCursors(7);
        string.SetCase(0);
        EXPECT_EQ(&string, &(string = source));
        EXPECT_EQ((Texts{"old", wanted, "old"}), TextsOf(string));
        EXPECT_EQ(1u, string.currentString);
        EXPECT_EQ((Cursors{7, 7, 7, 7, 7}), string.Cursors());
        EXPECT_EQ(0, string.GetCase());
    };
    WideString const wide = Wide("wide");
    char const *const pointer = text;
    check(pointer, "text");
    check(wide.c_str(), "wide");
    check(std::string("string"), "string");
    check(wide, "wide");
    check(static_cast<MemObject<char> const &>(run), "run");
    check(std::string(), "");
}

TEST(StringConstruction, A_vector_of_texts_becomes_the_strings) {
    auto const check = [](auto const &texts) {
        OpenString string("old", 5);
        string.SetCurrentString(4);
        string.SetCursors(7);
        string.SetCase(0);
        string.SetMatchStyle(1);
        EXPECT_EQ(&string, &(string = texts));
        EXPECT_EQ((Texts{"a", "bc", ""}), TextsOf(string));
        EXPECT_EQ(3u, string.stringCount);
        EXPECT_EQ(0u, string.currentString);
        EXPECT_EQ((Cursors{0, 0, 0, 0, 0}), string.Cursors());
        EXPECT_EQ(0, string.GetCase());
        EXPECT_EQ(1, string.GetMatchStyle());
    };
    char a[] = "a", bc[] = "bc", none[] = "";
    check(std::vector<char *>{a, bc, none});
    check(std::vector<std::string>{"a", "bc", ""});
    check(std::vector<WideString>{Wide("a"), Wide("bc"), {}});
    check(std::vector<UtilsString>{"a", "bc", ""});
}

TEST(StringConstruction, An_empty_vector_leaves_one_empty_string) {
    auto const check = [](auto const &texts) {
        OpenString string("old", 5);
        string.SetCurrentString(4);
        string = texts;
        EXPECT_EQ(Texts{""}, TextsOf(string));
        EXPECT_EQ(0u, string.currentString);
    };
    check(std::vector<char *>{});
    check(std::vector<std::string>{});
    check(std::vector<WideString>{});
    check(std::vector<UtilsString>{});
}

TEST(StringConstruction, A_vector_may_hold_texts_of_the_object_itself) {
    UtilsString string("first");
    string.AddString("second");
    string = std::vector<char *>{string.GetStringNumber(1), string.GetStringNumber(0)};
    EXPECT_EQ((Texts{"second", "first"}), TextsOf(string));
}

TEST(StringConstruction, From_a_string_of_a_vector_the_selected_text_is_taken) {
    UtilsString two("one");
    two.AddString("two");
    two.SetCurrentString(1);
    UtilsString string;
    string = std::vector<UtilsString>{two, two};
    EXPECT_EQ((Texts{"two", "two"}), TextsOf(string));
}

TEST(StringConstruction, The_class_names_itself) {
    EXPECT_STREQ("class UTILS::UtilsString", UtilsString().derived_class());
    EXPECT_STREQ("class OpenString", OpenString().derived_class());
}

TEST(StringConstruction, The_case_hooks_are_those_of_runs) {
    UtilsString const string;
    for (int value = -128; value < 128; ++value) {
        char const letter = static_cast<char>(value);
        EXPECT_EQ(value >= 'A' && value <= 'Z', string.isupper(letter) != 0) << value;
        EXPECT_EQ(value >= 'a' && value <= 'z', string.islower(letter) != 0) << value;
        EXPECT_EQ(static_cast<char>(value - 32), string.utoupper(letter)) << value;
        EXPECT_EQ(static_cast<char>(value + 32), string.utolower(letter)) << value;
    }
}

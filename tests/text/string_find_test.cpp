// Finds and pieces of the selected text, and the cursors that they move.
#include "open_string.h"

#include <gtest/gtest.h>

#include "fault_text.h"

using UTILS::MemObject;
using UTILS::NOT_FOUND_INDEX;
using UTILS::UtilsString;
using UTILS::WideString;
using Texts = std::vector<std::string>;
using Cursors = std::vector<unsigned long>;

namespace {

template <class Check> void ForEachForm(char const *text, Check const &check) {
    WideString const wide = Wide(text);
    MemObject<char> run;
    run.Append(text, 0);
    check(text);
    check(std::string(text));
    check(UtilsString(text));
    check(run);
    check(wide);
    check(wide.c_str());
}

// All plain pieces of a text.
Texts Pieces(char const *text, char const *separator) {
    Texts pieces;
    UtilsString string(text), piece;
    for (int more = string.ParseFirstString(separator, piece); more && pieces.size() < 20;
         more = string.ParseNextString(separator, piece))
        pieces.push_back(TextOf(piece));
    EXPECT_STREQ("", piece.c_str()); // what found nothing left nothing
    return pieces;
}

Texts FastPieces(char const *text, char const *separator) {
    Texts pieces;
    UtilsString string(text), piece;
    for (int more = string.ParseFirstStringFast(separator, piece); more && pieces.size() < 20;
         more = string.ParseNextStringFast(separator, piece))
        pieces.push_back(TextOf(piece));
    EXPECT_STREQ("", piece.c_str());
    return pieces;
}

} // namespace

TEST(StringFind, Goes_from_occurrence_to_occurrence) {
    OpenString string("aXaYa");
    unsigned long index = 9;
    EXPECT_EQ(1, string.FindFirst("a", index));
    EXPECT_EQ(0u, index);
    EXPECT_EQ(0u, string.findIndex);
    EXPECT_EQ(1, string.FindNext("a", index));
    EXPECT_EQ(2u, index);
    EXPECT_EQ(1, string.FindNext("a", index));
    EXPECT_EQ(4u, index);
    EXPECT_EQ(2u, string.findIndex);
    EXPECT_EQ(0, string.FindNext("a", index));
    EXPECT_EQ(NOT_FOUND_INDEX, index);
    EXPECT_EQ(3u, string.findIndex);
    string.FindReset();
    EXPECT_EQ(1, string.FindNext("a", index)); // number 1
    EXPECT_EQ(2u, index);
    EXPECT_EQ(1, string.FindFirst("a", index));
    EXPECT_EQ(0u, index);
}

TEST(StringFind, Takes_each_form_of_pattern) {
    ForEachForm("Ya", [](auto const &form) {
        UtilsString string("aXaYa");
        unsigned long index = 0;
        EXPECT_EQ(1, string.FindFirst(form, index));
        EXPECT_EQ(3u, index);
        EXPECT_EQ(0, string.FindNext(form, index));
        EXPECT_EQ(1, string.FindAll(form));
        EXPECT_EQ(1, string.Search(form, 0));
        EXPECT_EQ(0, string.Search(form, 1));
    });
}

TEST(StringFind, Of_a_pattern_longer_than_the_text_gives_index_zero) {
    UtilsString string("ab");
    unsigned long index = 9;
    EXPECT_EQ(0, string.FindFirst("abc", index));
    EXPECT_EQ(0u, index);
}

TEST(StringFind, Goes_on_at_the_character_that_differed) {
    UtilsString string("aaab");
    unsigned long index = 0;
    EXPECT_EQ(0, string.FindFirst("aab", index));
    EXPECT_EQ(NOT_FOUND_INDEX, index);
}

TEST(StringFind, Skips_the_character_after_a_match) {
    UtilsString string("aaa");
    unsigned long index = 0;
    EXPECT_EQ(1, string.FindFirst("a", index));
    EXPECT_EQ(1, string.FindNext("a", index));
    EXPECT_EQ(2u, index);
}

TEST(StringFind, Of_an_empty_pattern_fails) {
    UtilsString string("aaa");
    unsigned long index = 0;
    EXPECT_EQ(0, string.FindFirst("", index));
    EXPECT_EQ(0, string.FindAll(""));
    EXPECT_EQ(0, string.Search("", 0));
}

TEST(StringFind, All_leaves_the_cursor_at_zero) {
    OpenString string("aXaYa");
    string.findIndex = 7;
    EXPECT_EQ(1, string.FindAll("a"));
    EXPECT_EQ(0u, string.findIndex);
    EXPECT_EQ(0, string.FindAll("z"));
}

TEST(StringFind, A_search_touches_no_cursor) {
    OpenString string("aXaYa");
    string.SetCursors(7);
    EXPECT_EQ(1, string.Search("a", 0));
    EXPECT_EQ(1, string.Search("a", 2));
    EXPECT_EQ(0, string.Search("a", 3));
    EXPECT_EQ((Cursors{7, 7, 7, 7, 7}), string.Cursors());
}

TEST(StringFind, Is_blind_to_case_if_the_object_is) {
    UtilsString string("xABC");
    unsigned long index = 0;
    EXPECT_EQ(0, string.FindFirst("abc", index));
    string.SetCase(0);
    EXPECT_EQ(1, string.FindFirst("abc", index));
    EXPECT_EQ(1u, index);
    EXPECT_EQ(1, string.Search("Abc", 0));
    EXPECT_EQ(1, string.FindAll("aBC"));
}

TEST(StringFind, With_a_case_setting_that_is_none_throws) {
    UtilsString string("abc");
    string.SetCase(2);
    unsigned long index = 0;
    std::string const text =
        ThrownText<std::invalid_argument>([&] { string.FindFirst("a", index); });
    EXPECT_TRUE(Tells(text, invalidArgument, "2", "UtilsBase"));
}

TEST(StringFind, Looks_in_the_selected_string) {
    UtilsString string("abc");
    string.AddString("xa");
    string.SetCurrentString(1);
    unsigned long index = 0;
    EXPECT_EQ(1, string.FindFirst("a", index));
    EXPECT_EQ(1u, index);
}

TEST(StringParse, Gives_the_pieces_between_separators) {
    EXPECT_EQ((Texts{"a", "b", "c"}), Pieces("a,b,c", ","));
    EXPECT_EQ((Texts{"a", "b"}), Pieces("a--b", "--"));
    EXPECT_EQ((Texts{"ab", ""}), Pieces("ab,", ","));
}

TEST(StringParse, Does_not_see_the_second_of_two_adjacent_separators) {
    EXPECT_EQ((Texts{"a", ",b"}), Pieces("a,,b", ","));
}

TEST(StringParse, Takes_a_separator_at_the_front_for_none_before) {
    EXPECT_EQ((Texts{"", ",b", "c"}), Pieces(",b,c", ","));
}

TEST(StringParse, Finds_nothing_without_a_separator) {
    EXPECT_EQ(Texts{}, Pieces("abc", ","));
    EXPECT_EQ(Texts{}, Pieces("", ","));
    EXPECT_EQ(Texts{}, Pieces("abc", ""));
}

TEST(StringParse, Gives_a_piece_by_its_number) {
    OpenString string("a,b,c");
    string.SetCursors(7);
    UtilsString piece;
    EXPECT_EQ(1, string.ParseString(",", piece, 1));
    EXPECT_STREQ("b", piece.c_str());
    EXPECT_EQ(1, string.ParseString(",", piece, 2));
    EXPECT_STREQ("c", piece.c_str());
    EXPECT_EQ(0, string.ParseString(",", piece, 3));
    EXPECT_STREQ("", piece.c_str()); // the old text has gone
    EXPECT_EQ((Cursors{7, 7, 7, 7, 7}), string.Cursors());
}

TEST(StringParse, Keeps_the_front_if_told_to) {
    UtilsString string("a,b,c");
    UtilsString piece;
    EXPECT_EQ(1, string.ParseString(",", piece, 1, 1));
    EXPECT_STREQ("a,b", piece.c_str());
    EXPECT_EQ(1, string.ParseFirstString(",", piece));
    EXPECT_STREQ("a", piece.c_str());
    EXPECT_EQ(1, string.ParseNextString(",", piece, 1));
    EXPECT_STREQ("a,b", piece.c_str());
    EXPECT_EQ(1, string.ParseNextString(",", piece, 1));
    EXPECT_STREQ("a,b,c", piece.c_str());
}

TEST(StringParse, Into_a_buffer_leaves_it_alone_when_it_finds_nothing) {
    UtilsString string("ab,c");
    char out[8] = "old";
    EXPECT_EQ(1, string.ParseFirstString(",", out));
    EXPECT_STREQ("ab", out);
    EXPECT_EQ(1, string.ParseNextString(",", out));
    EXPECT_STREQ("c", out);
    EXPECT_EQ(0, string.ParseNextString(",", out));
    EXPECT_STREQ("c", out);
    EXPECT_EQ(1, string.ParseString(",", out, 1, 1));
    EXPECT_STREQ("ab,c", out);
}

TEST(StringParse, Counts_its_cursor_on) {
    OpenString string("a,b,c");
    UtilsString piece;
    string.parseIndex = 9;
    string.ParseFirstString(",", piece);
    EXPECT_EQ(0u, string.parseIndex);
    string.ParseNextString(",", piece);
    EXPECT_EQ(1u, string.parseIndex);
    string.ParseReset();
    EXPECT_EQ(1, string.ParseNextString(",", piece));
    EXPECT_STREQ("b", piece.c_str());
}

TEST(StringParse, Takes_each_form_of_separator) {
    ForEachForm("--", [](auto const &form) {
        UtilsString string("a--bc");
        UtilsString piece;
        char out[8];
        EXPECT_EQ(1, string.ParseString(form, piece, 1));
        EXPECT_STREQ("bc", piece.c_str());
        EXPECT_EQ(1, string.ParseFirstString(form, piece));
        EXPECT_STREQ("a", piece.c_str());
        EXPECT_EQ(1, string.ParseNextString(form, out));
        EXPECT_STREQ("bc", out);
        EXPECT_EQ(1, string.ParseFirstStringFast(form, out));
        EXPECT_STREQ("a", out);
        EXPECT_EQ(1, string.ParseNextStringFast(form, piece));
        EXPECT_STREQ("bc", piece.c_str());
    });
}

TEST(StringParse, Is_blind_to_case_if_the_object_is) {
    UtilsString string("1X2");
    UtilsString piece;
    EXPECT_EQ(0, string.ParseFirstString("x", piece));
    string.SetCase(0);
    EXPECT_EQ(1, string.ParseFirstString("x", piece));
    EXPECT_STREQ("1", piece.c_str());
}

TEST(StringParse, Puts_the_piece_into_the_selected_string_of_the_target) {
    UtilsString target("zero", 2);
    target.SetCurrentString(1);
    UtilsString const string("a,b");
    EXPECT_EQ(1, string.ParseString(",", target, 1));
    EXPECT_EQ((Texts{"zero", "b"}), TextsOf(target));
}

TEST(StringParse, May_have_the_object_itself_as_target_and_separator) {
    UtilsString string("a,b");
    EXPECT_EQ(1, string.ParseString(",", string, 1));
    EXPECT_STREQ("b", string.c_str());
    EXPECT_EQ(1, string.ParseString(string, string, 0)); // an empty piece before it
    EXPECT_STREQ("", string.c_str());
}

TEST(StringFastParse, Ends_with_what_has_no_separator) {
    EXPECT_EQ((Texts{"a", "b"}), FastPieces("a,b", ","));
    EXPECT_EQ((Texts{"abc", "de"}), FastPieces("abc,de", ","));
    EXPECT_EQ(Texts{"a"}, FastPieces("a", ","));
    EXPECT_EQ(Texts{}, FastPieces("", ","));
    EXPECT_EQ(Texts{}, FastPieces("abc", ""));
}

TEST(StringFastParse, Gives_tails_of_a_last_piece_that_is_longer_than_the_one_before) {
    EXPECT_EQ((Texts{"a", "b", "ccc", "c"}), FastPieces("a,b,ccc", ","));
    EXPECT_EQ((Texts{"abc", "bc", "c"}), FastPieces("abc", ","));
}

TEST(StringFastParse, Sees_each_of_two_adjacent_separators) {
    EXPECT_EQ((Texts{"a", "", "b"}), FastPieces("a,,b", ","));
}

TEST(StringFastParse, Moves_its_two_cursors) {
    OpenString string("ab,c");
    UtilsString piece("old");
    string.SetCursors(7);
    EXPECT_EQ(1, string.ParseFirstStringFast(",", piece));
    EXPECT_EQ((Cursors{7, 7, 2, 0, 7}), string.Cursors());
    EXPECT_EQ(1, string.ParseNextStringFast(",", piece));
    EXPECT_STREQ("c", piece.c_str());
    EXPECT_EQ((Cursors{7, 7, 2, 3, 7}), string.Cursors()); // found nothing new
    EXPECT_EQ(0, string.ParseNextStringFast(",", piece));
    EXPECT_STREQ("", piece.c_str());
    EXPECT_EQ((Cursors{7, 7, 2, 6, 7}), string.Cursors());
}

TEST(StringFastParse, Past_the_end_empties_the_target) {
    OpenString string("ab");
    string.fastParseStart = 3;
    UtilsString piece("old");
    char out[8] = "old";
    EXPECT_EQ(0, string.ParseStringFast(",", piece, 0));
    EXPECT_STREQ("", piece.c_str());
    EXPECT_EQ(0, string.ParseStringFast(",", out, 0));
    EXPECT_STREQ("", out);
    string.fastParseStart = 2; // at the end a parse finds nothing
    std::string("old").copy(out, 4);
    EXPECT_EQ(0, string.ParseStringFast(",", out, 0));
    EXPECT_STREQ("old", out);
}

TEST(StringFastParse, Counts_pieces_from_where_it_begins) {
    OpenString string("a,b,c,d");
    UtilsString piece;
    string.fastParseStart = 2;
    EXPECT_EQ(1, string.ParseStringFast(",", piece, 1));
    EXPECT_STREQ("c", piece.c_str());
    EXPECT_EQ(3u, string.fastParseFound);
    EXPECT_EQ(2u, string.fastParseStart);
}

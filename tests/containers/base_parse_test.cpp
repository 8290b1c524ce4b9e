// Pieces of ranges: what lies between separators, with what searches miss.
#include "open_base.h"

#include <gtest/gtest.h>

#include "fault_text.h"

using UTILS::UtilsBase;

namespace {

constexpr unsigned long untouched = 0xAAAA;

struct Options {
    int caseMode = 1;
    int keepFront = 0;
    int noWhole = 0;
    bool wantsOffset = false;
};

struct Piece {
    int result = -1;
    String text; // with the mark behind it that the room was filled with
    unsigned long offset = untouched;
};

// Parses into a room filled with '#'; the text is what came before the first of them.
Piece Parse(String const &text, String const &separator, unsigned long piece,
            Options const &options = {}) {
    FoldingBase const base;
    String room(text.size() + 2, '#');
    Piece told;
    told.result =
        base.parse(text.data(), text.data() + text.size(), room.data(), separator.data(),
                   separator.data() + separator.size(), piece, options.caseMode, options.keepFront,
                   options.wantsOffset ? &told.offset : nullptr, options.noWhole);
    told.text = room.substr(0, room.find('#'));
    return told;
}

// The piece with its terminator taken off, or a word on its absence.
String PieceOf(String const &text, String const &separator, unsigned long piece,
               Options const &options = {}) {
    Piece const told = Parse(text, separator, piece, options);
    if (told.result == 0)
        return told.text.empty() ? "(none)" : "(none, but written)";
    if (told.text.empty() || told.text.back() != '\0')
        return "(no terminator)";
    return told.text.substr(0, told.text.size() - 1);
}

Options const keepFront{1, 1, 0, false};
Options const fast{1, 0, 0, true};
Options const fastNoWhole{1, 0, 1, true};

} // namespace

TEST(Parse, gives_the_pieces_between_separators) {
    EXPECT_EQ("a", PieceOf("a,b", ",", 0));
    EXPECT_EQ("b", PieceOf("a,b", ",", 1));
    EXPECT_EQ("(none)", PieceOf("a,b", ",", 2));
    EXPECT_EQ("one", PieceOf("one, two, three", ", ", 0));
    EXPECT_EQ("two", PieceOf("one, two, three", ", ", 1));
    EXPECT_EQ("three", PieceOf("one, two, three", ", ", 2));
    EXPECT_EQ("(none)", PieceOf("one, two, three", ", ", 3));
}

TEST(Parse, of_an_empty_text_or_by_an_empty_separator_gives_nothing) {
    EXPECT_EQ("(none)", PieceOf("", ",", 0));
    EXPECT_EQ("(none)", PieceOf("", ",", 0, fast));
    EXPECT_EQ("(none)", PieceOf("a,b", "", 0));
    EXPECT_EQ("(none)", PieceOf("a,b", "", 0, fast));
    EXPECT_EQ("(none)", PieceOf("", "", 0, {7, 0, 0, true})); // nor looks at the case mode
}

TEST(Parse, with_the_front_kept_gives_all_up_to_the_separator) {
    EXPECT_EQ("a", PieceOf("a,b,c", ",", 0, keepFront));
    EXPECT_EQ("a,b", PieceOf("a,b,c", ",", 1, keepFront));
    EXPECT_EQ("a,b,c", PieceOf("a,b,c", ",", 2, keepFront)); // the last piece, from the front on
    EXPECT_EQ("(none)", PieceOf("a,b,c", ",", 3, keepFront));
}

TEST(Parse, tells_the_position_of_the_separator_behind_the_piece) {
    EXPECT_EQ(1u, Parse("a,bc,d", ",", 0, fast).offset);
    EXPECT_EQ(4u, Parse("a,bc,d", ",", 1, fast).offset);
    EXPECT_EQ(4u, Parse("a,bc,d", ",", 1, {1, 1, 0, true}).offset);
}

TEST(Parse, tells_no_position_for_the_last_piece) {
    Piece const last = Parse("a,bc,d", ",", 2, fast);
    EXPECT_EQ(1, last.result);
    EXPECT_EQ(untouched, last.offset);
    EXPECT_EQ("d", PieceOf("a,bc,d", ",", 2, fast));
}

TEST(Parse, of_a_text_without_separator_is_whole_only_where_asked_for) {
    EXPECT_EQ("abc", PieceOf("abc", ",", 0, fast));
    EXPECT_EQ(untouched, Parse("abc", ",", 0, fast).offset);
    EXPECT_EQ("abc", PieceOf("abc", ",", 5, fast)); // whatever the piece
    EXPECT_EQ("(none)", PieceOf("abc", ",", 0, fastNoWhole));
    EXPECT_EQ("(none)", PieceOf("abc", ",", 0));
    EXPECT_EQ("(none)", PieceOf("abc", ",", 0, keepFront));
    EXPECT_EQ("a", PieceOf("a", "long separator", 0, fast));
}

TEST(Parse, past_the_last_piece_is_whole_where_asked_for) {
    EXPECT_EQ("a,b", PieceOf("a,b", ",", 2, fast));
    EXPECT_EQ("(none)", PieceOf("a,b", ",", 2, fastNoWhole));
}

TEST(Parse, does_not_see_a_separator_at_the_front_as_one_before) {
    EXPECT_EQ("", PieceOf(",b,c", ",", 0));
    EXPECT_EQ(",b", PieceOf(",b,c", ",", 1));
    EXPECT_EQ("c", PieceOf(",b,c", ",", 2));
    EXPECT_EQ("(none)", PieceOf(",b", ",", 1));
    EXPECT_EQ(",b", PieceOf(",b", ",", 1, fast)); // read as a text without separator
}

TEST(Parse, does_not_see_the_second_of_two_adjacent_separators) {
    EXPECT_EQ("a", PieceOf("a,,b", ",", 0));
    EXPECT_EQ(",b", PieceOf("a,,b", ",", 1));
    EXPECT_EQ("(none)", PieceOf("a,,b", ",", 2));
}

TEST(Parse, gives_an_empty_piece_behind_a_separator_at_the_end) {
    EXPECT_EQ("", PieceOf("a,", ",", 1));
    EXPECT_EQ("a", PieceOf("a,", ",", 0));
}

TEST(Parse, takes_the_case_mode_for_its_separator) {
    EXPECT_EQ("1", PieceOf("1and2AND3", "AND", 0, {0, 0, 0, false}));
    EXPECT_EQ("2", PieceOf("1and2AND3", "AND", 1, {0, 0, 0, false}));
    EXPECT_EQ("1and2", PieceOf("1and2AND3", "AND", 0, {1, 0, 0, false}));
}

TEST(Parse, with_an_unknown_case_mode_throws) {
    String const text = ThrownText<std::invalid_argument>([] {
        Parse("a,b", ",", 0, {5, 0, 0, false});
    });
    EXPECT_TRUE(Tells(text, invalidArgument, "5", "UtilsBase"));
}

TEST(Parse, of_bytes_writes_no_terminator) {
    UtilsBase<unsigned char> const base;
    Bytes const text = ToBytes("ab,c");
    Bytes const separator = ToBytes(",");
    Bytes room = ToBytes("#####");
    EXPECT_EQ(1, base.parse(text.data(), text.data() + 4, room.data(), separator.data(),
                            separator.data() + 1, 0, 1, 0, nullptr, 0));
    EXPECT_EQ(ToBytes("ab###"), room);
    EXPECT_EQ(1, base.parse(text.data(), text.data() + 4, room.data(), separator.data(),
                            separator.data() + 1, 1, 1, 0, nullptr, 0));
    EXPECT_EQ(ToBytes("cb###"), room);
}

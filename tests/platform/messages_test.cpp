// Messages, on both systems by the documented results and codes.
#include "messages.h"

namespace {

unsigned short const wideText[] = {'w', 'x', 0};

} // namespace

TEST(Messages, a_text_without_inserts_stays_as_it_is) {
    EXPECT_EQ("plain text", Format("plain text").text);
    EXPECT_EQ("tab\there", Format("tab\there").text);
}

TEST(Messages, an_insert_is_a_text_unless_told_otherwise) {
    EXPECT_EQ("[one]", Format("[%1]", "one").text);
    EXPECT_EQ("one two", Format("%1 %2", "one", "two").text);
    EXPECT_EQ("one", Format("%1!s!", "one").text);
}

TEST(Messages, inserts_are_taken_by_number_in_any_order_and_often) {
    EXPECT_EQ("two one two", Format("%2 %1 %2", "one", "two").text);
    EXPECT_EQ("ten", Format("%10", "", "", "", "", "", "", "", "", "", "ten").text);
    EXPECT_EQ("third", Format("%3", "first", "second", "third").text);
}

TEST(Messages, a_number_of_an_insert_has_two_digits_at_most) {
    EXPECT_EQ("ten0", Format("%100", "", "", "", "", "", "", "", "", "", "ten").text);
}

TEST(Messages, numbers_are_printed_as_printf_would) {
    EXPECT_EQ("-5 4294967295 0000BEEF beef",
              Format("%1!d! %2!u! %3!08X! %3!x!", -5, -1, 0xbeef).text);
    EXPECT_EQ("3 10 +5 0xff", Format("%1!i! %2!o! %3!+d! %4!#x!", 3, 8, 5, 255).text);
    EXPECT_EQ("7    | 007", Format("%1!-5d!| %1!.3d!", 7).text);
    EXPECT_EQ("4464", Format("%1!hd!", 70000).text);
}

TEST(Messages, long_numbers_are_as_long_as_the_systems) {
    EXPECT_EQ("-7 4000000000", Format("%1!ld! %2!lu!", -7L, 4000000000UL).text);
    EXPECT_EQ("-2 1ffffffffff", Format("%1!I64d! %2!I64x!", -2LL, 0x1ffffffffffLL).text);
}

TEST(Messages, an_address_has_all_its_digits) {
    EXPECT_EQ("0000000000ABCDEF", Format("%1!p!", reinterpret_cast<void *>(0xabcdef)).text);
}

TEST(Messages, texts_are_filled_up_and_cut_as_printf_would) {
    EXPECT_EQ("ab   |   ab|", Format("%1!-5s!|%1!5s!|", "ab").text);
    EXPECT_EQ("cd|    f|", Format("%1!.2s!|%2!5.1s!|", "cde", "fgh").text);
}

TEST(Messages, a_star_takes_an_argument_before_the_value) {
    EXPECT_EQ("   42", Format("%1!*d!", 5, 42).text);
    EXPECT_EQ("42   |", Format("%1!-*d!|", 5, 42).text);
    EXPECT_EQ("  Bi", Format("%1!*.*s!", 4, 2, "Bill").text);
}

TEST(Messages, wide_texts_are_told_by_their_letters) {
    EXPECT_EQ(
        "a|wx|wx|wx|b",
        Format("%1!hs!|%2!S!|%3!ls!|%4!ws!|%5!hS!", "a", wideText, wideText, wideText, "b").text);
}

TEST(Messages, characters_are_single) {
    EXPECT_EQ("abcd", Format("%1!c!%2!C!%3!lc!%4!hc!", 'a', 'b', 'c', 'd').text);
    EXPECT_EQ("    x|", Format("%1!5c!|", 'x').text);
}

TEST(Messages, a_null_text_is_told_as_such) {
    EXPECT_EQ("(null) (null)", Format("%1 %2!S!", nullptr, nullptr).text);
}

TEST(Messages, what_an_argument_holds_isnt_read_as_a_message) {
    EXPECT_EQ("%1 \n%n", Format("%1", "%1 \n%n").text);
}

TEST(Messages, a_percent_sign_makes_the_next_sign_plain) {
    EXPECT_EQ("a%b", Format("a%%b").text);
    EXPECT_EQ(". ! q", Format("%. %! %q").text);
    EXPECT_EQ("[ ]", Format("[% ]").text);
}

TEST(Messages, some_letters_behind_a_percent_sign_are_blanks) {
    EXPECT_EQ("a\r\nb", Format("a%nb").text);
    EXPECT_EQ("a\rb", Format("a%rb").text);
    EXPECT_EQ("a\tb", Format("a%tb").text);
}

TEST(Messages, a_percent_sign_and_a_zero_end_the_text) {
    EXPECT_EQ("end", Format("end%0 of %1!", "x").text);
    EXPECT_EQ("one", Format("%1%0\r\n", "one").text);
}

TEST(Messages, line_breaks_are_carriage_return_and_line_feed) {
    EXPECT_EQ("a\r\nb\r\nc\r\nd", Format("a\nb\r\nc\rd").text);
    EXPECT_EQ("\r\n\r\n", Format("\n\n").text);
    EXPECT_EQ("q\r\n\r\nw", Format("q\n\rw").text);
}

TEST(Messages, exclamation_marks_behind_a_format_are_text) {
    EXPECT_EQ("5 more!", Format("%1!d! more!", 5).text);
    EXPECT_EQ("5!", Format("%1!d!!", 5).text);
}

TEST(Messages, that_arent_well_formed_are_87) {
    EXPECT_EQ(87u, Format("tail%").error);
    EXPECT_EQ(87u, Format("%1!d", 5).error);
    EXPECT_EQ(0u, Format("%1!d", 5).count);
}

TEST(Messages, without_a_character_are_235_and_no_block) {
    for (const char *const text : {"", "%0", "%1"}) {
        Message const message = Format(text, "");
        EXPECT_EQ(0u, message.count) << text;
        EXPECT_EQ(235u, message.error) << text;
        EXPECT_TRUE(message.null) << text;
    }
}

TEST(Messages, inserts_without_arguments_are_87) {
    EXPECT_EQ(87u, AskMessage(fromString, "%1", 0, nullptr).error);
    EXPECT_EQ("abc", AskMessage(fromString, "abc", 0, nullptr).text);
}

TEST(Messages, without_a_place_for_the_block_are_8) {
    EXPECT_FAILS_WITH(8,
                      win::FormatMessageA(fromString, "a", 0, usersLanguage, nullptr, 0, nullptr));
}

TEST(Messages, of_errors_end_in_a_line_break) {
    for (DWORD const code : {0u, 2u, 3u, 5u, 6u, 87u, 122u, 1008u}) {
        Message const message = AskMessage(fromSystem, nullptr, code, nullptr);
        ASSERT_GT(message.count, 2u) << code;
        EXPECT_EQ(message.count, message.text.size());
        EXPECT_EQ("\r\n", message.text.substr(message.text.size() - 2)) << code;
    }
}

TEST(Messages, of_errors_that_nobody_knows_are_317) {
    Message const message = AskMessage(fromSystem, nullptr, 987654, nullptr);
    EXPECT_EQ(0u, message.count);
    EXPECT_EQ(317u, message.error);
}

TEST(Messages, of_errors_that_ask_for_arguments_are_87_without_them) {
    EXPECT_EQ(87u, AskMessage(fromSystem, nullptr, 193, nullptr).error);
}

TEST(LocalMemory, that_is_null_needs_no_freeing) { EXPECT_EQ(nullptr, win::LocalFree(nullptr)); }

TEST(LocalMemory, that_is_anothers_is_given_back_with_6) {
    static char others[64];
    win::SetLastError(0);
    EXPECT_EQ(static_cast<void *>(others), win::LocalFree(others));
    EXPECT_EQ(6u, win::GetLastError());
}

TEST(LocalMemory, is_freed_in_any_order) {
    char *blocks[3] = {};
    for (char *&block : blocks)
        ASSERT_EQ(3u, win::FormatMessageA(fromString, "abc", 0, usersLanguage,
                                          reinterpret_cast<char *>(&block), 0, nullptr));
    for (int const i : {1, 0, 2}) {
        EXPECT_STREQ("abc", blocks[i]);
        EXPECT_EQ(nullptr, win::LocalFree(blocks[i]));
    }
}

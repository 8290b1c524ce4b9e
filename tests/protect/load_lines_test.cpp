// What the loader makes of a text: its lines.
#include "load_lines.h"

#include "platform/code_page.h"

TEST(ListLines, Are_what_ends_in_a_line_feed) {
    EXPECT_EQ((Lines{"one", "two", "three"}), LinesOf("one\r\ntwo\r\nthree\r\n"));
    EXPECT_EQ((Lines{"one", "two"}), LinesOf("one\ntwo\n"));
    EXPECT_EQ((Lines{"one", "two"}), LinesOf("one\r\r\r\ntwo\r\n"));
}

TEST(ListLines, The_last_without_a_line_feed_is_dropped) {
    EXPECT_EQ((Lines{"one"}), LinesOf("one\r\ntwo"));
    EXPECT_EQ((Lines{"one"}), LinesOf("one\r\ntwo\r"));
    EXPECT_EQ(Lines{}, LinesOf("one"));
    EXPECT_EQ(Lines{}, LinesOf("one\r"));
}

TEST(ListLines, Lose_the_white_space_around_them) {
    EXPECT_EQ((Lines{"one", "t w\to", "three", "four"}),
              LinesOf(" \t one\r\n\v\ft w\to \t\v\f\r\n\t \tthree\nfour \r \r\n"));
}

TEST(ListLines, A_carriage_return_within_stays) {
    EXPECT_EQ((Lines{"a\rb"}), LinesOf("\ra\rb\r\r\n"));
}

TEST(ListLines, Empty_ones_and_those_of_white_space_are_handed_out_too) {
    EXPECT_EQ((Lines{"", "", "a", "", "", "b", ""}), LinesOf("\n\r\na\r\n \t \r\n\r\nb\r\n \r \n"));
    EXPECT_EQ(Lines{""}, LinesOf("\r\n"));
}

TEST(ListLines, Bytes_above_127_are_no_white_space) {
    EXPECT_EQ((Lines{"\xa0x\x85", "\xc4\xff"}), LinesOf("\xa0x\x85\r\n\xc4\xff\r\n"));
}

TEST(ListLines, End_at_a_terminator_in_the_text) {
    EXPECT_EQ((Lines{"one"}), LinesOf(std::string("one\r\ntw\0o\r\nthree\r\n", 18)));
    EXPECT_EQ((Lines{"one"}), LinesOf(std::string("one\r\n\0\r\n", 8)));
    EXPECT_EQ(Lines{}, LinesOf(std::string("\0one\r\n", 6)));
}

TEST(ListLines, Can_be_of_any_length) {
    std::string const line(100000, 'x');
    EXPECT_EQ((Lines{line, "a"}), LinesOf(line + "\r\na\r\n"));
}

TEST(ListLines, Are_as_many_as_there_are) {
    std::string text;
    Lines expected;
    for (int i = 0; i < 40000; ++i) {
        expected.push_back("HKLM\\key " + std::to_string(i));
        text += expected.back() + "\r\n";
    }
    EXPECT_EQ(expected, LinesOf(text));
}

TEST(ListLines, Are_found_by_characters_where_the_page_has_double_bytes) {
    CodePageNow const now(932);
    if (!now.Set())
        GTEST_SKIP() << "page 932 isn't installed";
    EXPECT_EQ((Lines{"a\x83\nb", "c"}), LinesOf("a\x83\nb\nc\n"));
    EXPECT_EQ((Lines{"a\x83", "c"}), LinesOf("a\x83\r\nc\n"));
}

TEST(ListLines, Are_found_by_bytes_where_it_has_none) {
    CodePageNow const now(1252);
    ASSERT_TRUE(now.Set());
    EXPECT_EQ((Lines{"a\x83", "b", "c"}), LinesOf("a\x83\nb\nc\n"));
}

TEST(ListText, Of_no_length_has_no_lines) { EXPECT_EQ(Lines{}, LinesOf("")); }

TEST(ListText, That_is_shorter_than_told_is_taken) {
    EXPECT_EQ((Lines{"one", "two"}), LinesOfStored(WithLength(lists::Pack("one\r\ntwo\r\n"), 500)));
}

TEST(ListText, That_is_up_to_ten_bytes_longer_than_told_is_taken) {
    std::string const text = "first line\r\nlast line\r\n";
    auto const length = static_cast<std::uint32_t>(text.size());
    Lines const lines{"first line", "last line"};
    for (std::uint32_t less = 0; less <= 10; ++less)
        EXPECT_EQ(lines, LinesOfStored(WithLength(lists::Pack(text), length - less))) << less;
    EXPECT_EQ(Lines{}, LinesOfStored(WithLength(lists::Pack(text), length - 11)));
    EXPECT_EQ(Lines{}, LinesOfStored(WithLength(lists::Pack(text), 0)));
}

TEST(ListText, That_fills_its_room_without_an_end_is_read_no_further) {
    for (unsigned const page : {1252u, 932u}) {
        CodePageNow const now(page);
        std::string text = "one\r\n" + std::string(64, 'x');
        for (char const last : {'x', '\r', '\x83'}) {
            text.back() = last;
            auto const told = static_cast<std::uint32_t>(text.size() - 10);
            EXPECT_EQ(Lines{"one"}, LinesOfStored(WithLength(lists::Pack(text), told)));
        }
    }
}

TEST(ListText, That_is_told_longer_than_the_bound_isnt_read) {
    std::string const stored = lists::Pack("one\r\n");
    for (std::uint32_t const length :
         {tooLong, 0x7fffffffu, 0x80000000u, 0xfffffff5u, 0xfffffff6u, 0xfffffffeu, 0xffffffffu})
        EXPECT_EQ(Lines{}, LinesOfStored(WithLength(stored, length))) << length;
    EXPECT_EQ(Lines{"one"}, LinesOfStored(WithLength(stored, MaxListText)));
}

TEST(StoredList, That_is_cut_anywhere_has_no_lines) {
    std::string text;
    for (int i = 0; i < 200; ++i)
        text += "%SystemDir%\\file" + std::to_string(i * i) + ".dll\r\n";
    std::string const stored = lists::Pack(text);
    for (std::size_t size = 0; size < stored.size(); ++size)
        EXPECT_EQ(Lines{}, LinesOfStored(stored.substr(0, size))) << size;
    EXPECT_EQ(200u, LinesOfStored(stored).size());
}

TEST(StoredList, What_follows_its_stream_is_left_alone) {
    EXPECT_EQ((Lines{"one"}), LinesOfStored(lists::Pack("one\r\n") + "rubbish"));
}

TEST(StoredList, That_is_damaged_gives_no_more_than_its_room_holds) {
    std::string text;
    for (int i = 0; i < 50; ++i)
        text += "%SystemDir%\\file" + std::to_string(i) + ".dll\r\n";
    std::string const stored = lists::Pack(text);
    for (std::size_t at = 0; at < 8 * stored.size(); ++at) {
        std::string damaged = stored;
        damaged[at / 8] = static_cast<char>(damaged[at / 8] ^ 1 << at % 8);
        std::size_t bytes = 0;
        for (std::string const &line : LinesOfStored(damaged))
            bytes += line.size() + 1;
        EXPECT_GE(at < 32 ? ~std::size_t{0} : text.size() + 10, bytes) << at;
    }
}

TEST(StoredList, Of_rubbish_has_no_lines) {
    EXPECT_EQ(Lines{}, LinesOfStored(WithLength(std::string(100, '\xff'), 1000)));
    EXPECT_EQ(Lines{}, LinesOfStored(WithLength("    one\r\ntwo\r\n", 20)));
    // zlib's and gzip's wrappers are no part of it
    EXPECT_EQ(Lines{},
              LinesOfStored(WithLength("    \x78\x9c" + lists::Pack("one\r\n").substr(4), 5)));
}

TEST(StoredList, Is_sought_by_type_and_number) {
    ToldLists told;
    told.TellText("WIN_FILES", 101, "files\r\n");
    told.TellText("WIN_REGS", 101, "keys\r\n");
    told.TellText("WIN_FILES", 102, "others\r\n");
    EXPECT_EQ(Lines{"files"}, LinesTold());
    LinesSeen().clear();
    LoadListResource(101, "WIN_REGS", SeeLine);
    LoadListResource(102, "WIN_FILES", SeeLine);
    LoadListResource(102, "WIN_REGS", SeeLine);
    LoadListResource(103, "WIN_FILES", SeeLine);
    EXPECT_EQ((Lines{"keys", "others"}), LinesSeen());
}

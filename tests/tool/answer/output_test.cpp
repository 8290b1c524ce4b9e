#include "output/screen.h"
#include "output/time.h"
#include "output/utf8.h"

#include <gtest/gtest.h>

#include <sstream>

using namespace qvlink;

TEST(Utf8, Well_formed_text_is_told_from_other_bytes) {
    EXPECT_TRUE(IsUtf8(""));
    EXPECT_TRUE(IsUtf8("a\xc3\xa4\xe2\x82\xac\xf0\x9f\x98\x80"));
    for (const char *const text :
         {"\x80", "\xc3", "\xc0\x80", "\xe0\x80\x80", "\xed\xa0\x80", "\xf0\x80\x80\x80",
          "\xf4\x90\x80\x80", "\xff", "\xe2\x82", "\xf5\x80\x80\x80"}) {
        EXPECT_FALSE(IsUtf8(text)) << Escape(text);
    }
}

TEST(Utf8, Each_byte_of_no_character_is_replaced) {
    EXPECT_EQ(ReplaceNonUtf8("a\xff\xc3z"), "a\xef\xbf\xbd\xef\xbf\xbdz");
    EXPECT_EQ(ReplaceNonUtf8("\xc3\xa4"), "\xc3\xa4");
}

TEST(Escape, Control_characters_and_foreign_bytes_are_shown_as_such) {
    EXPECT_EQ(Escape("a\nb\tc\rd"), "a\\nb\\tc\\rd");
    EXPECT_EQ(Escape("\x1b[31m\x7f"), "\\x1b[31m\\x7f");
    EXPECT_EQ(Escape("\xc2\x9b"
                     "1m"),
              "\\xc2\\x9b1m");
    EXPECT_EQ(Escape("\xff"), "\\xff");
    EXPECT_EQ(Escape("gr\xc3\xbc\xc3\x9f"), "gr\xc3\xbc\xc3\x9f");
}

TEST(Time, A_file_time_is_written_as_date_and_time) {
    // Fixed points: the start of the count, of 1970 and a day in a leap year.
    EXPECT_EQ(TimeText(0), "1601-01-01T00:00:00.0000000Z");
    EXPECT_EQ(TimeText(116444736000000000ULL), "1970-01-01T00:00:00.0000000Z");
    EXPECT_EQ(TimeText(116444736000000000ULL + 951827696ULL * 10000000 + 1234567),
              "2000-02-29T12:34:56.1234567Z");
    EXPECT_EQ(TimeText(116444736000000000ULL + 1767225599ULL * 10000000),
              "2025-12-31T23:59:59.0000000Z");
}

TEST(Numbers, Sizes_and_counts_are_readable) {
    EXPECT_EQ(ReadableSize(0), "0 bytes");
    EXPECT_EQ(ReadableSize(1023), "1023 bytes");
    EXPECT_EQ(ReadableSize(1536), "1.5 KiB");
    EXPECT_EQ(ReadableSize(0xffffffffffffffffULL), "16.0 EiB");
    EXPECT_EQ(ReadableCount(999), "999");
    EXPECT_EQ(ReadableCount(1234567), "1,234,567");
}

TEST(Table, Columns_are_aligned_on_a_terminal_only) {
    for (bool const terminal : {false, true}) {
        std::ostringstream out;
        Screen screen(out, terminal, false);
        Table table(screen);
        table.Row({{"short"}, {"x"}});
        table.Row({{"longer"}, {"yy"}});
        table.Print();
        EXPECT_EQ(out.str(), terminal ? "short   x\nlonger  yy\n" : "short\tx\nlonger\tyy\n");
    }
}

TEST(Table, Characters_are_counted_and_not_bytes) {
    EXPECT_EQ(CharactersIn("gr\xc3\xbcn"), 4U);
    EXPECT_EQ(CharactersIn("\xe2\x82\xac\xf0\x9f\x98\x80"), 2U);
}

TEST(Table, Colour_comes_on_a_terminal_that_may_have_it) {
    for (bool const terminal : {false, true}) {
        for (bool const colour : {false, true}) {
            std::ostringstream out;
            Screen screen(out, terminal, colour);
            Table table(screen);
            table.Row({{"x", Colour::bad}});
            table.Print();
            EXPECT_EQ(out.str(), terminal && colour ? "\x1b[31mx\x1b[0m\n" : "x\n");
        }
    }
}

TEST(Table, Names_are_escaped_on_a_terminal_only) {
    for (bool const terminal : {false, true}) {
        std::ostringstream out;
        Screen screen(out, terminal, true);
        Table table(screen);
        table.Row({{"a\x1b[2Jb"}});
        table.Print();
        EXPECT_EQ(out.str(), terminal ? "a\\x1b[2Jb\n" : "a\x1b[2Jb\n");
    }
}

// Where the documented leaves texts by characters open: half characters and null texts.
#include "../services.h"

#include <climits>

#include "platform/code_page.h"

namespace {

const unsigned char *Bytes(const char *text) {
    return reinterpret_cast<const unsigned char *>(text);
}

unsigned char *Text(char *text) { return reinterpret_cast<unsigned char *>(text); }

} // namespace

TEST(MultiByteHere, half_a_character_at_the_end_is_one_of_one_byte) {
    CodePageNow const now(932);
    EXPECT_EQ(0, win::_mbsicmp(Bytes("a\x83"), Bytes("A\x83")));
    EXPECT_LT(win::_mbsicmp(Bytes("\x83"), Bytes("\x83\x41")), 0);
    char text[] = "a\x83";
    EXPECT_EQ(Text(text) + 1, win::_mbschr(Text(text), 0x83));
    EXPECT_EQ(nullptr, win::_mbschr(Text(text), '\n'));
    char tokens[] = "x\\a\x83\0\\y";
    EXPECT_STREQ("x", reinterpret_cast<char *>(win::_mbstok(Text(tokens), Bytes("\\"))));
    EXPECT_STREQ("a\x83", reinterpret_cast<char *>(win::_mbstok(nullptr, Bytes("\\"))));
    EXPECT_EQ(nullptr, win::_mbstok(nullptr, Bytes("\\")));
}

TEST(MultiByteHere, each_byte_is_a_character_in_other_pages) {
    for (unsigned const page : {65001u, 1252u, 1251u, 20932u}) {
        CodePageNow const now(page);
        char text[] = "\x83\\\xe3\x81\\";
        EXPECT_EQ(Text(text) + 1, win::_mbschr(Text(text), '\\')) << page;
        EXPECT_EQ(0, win::_mbsicmp(Bytes("\xe3\x41"), Bytes("\xe3\x61"))) << page;
        EXPECT_NE(0, win::_mbsicmp(Bytes("\xc4"), Bytes("\xe4"))) << page;
    }
}

TEST(MultiByteHere, follows_the_page_as_it_changes) {
    char text[] = "\x83\\";
    for (int round = 0; round < 3; ++round) {
        CodePageNow const first(932);
        EXPECT_EQ(nullptr, win::_mbschr(Text(text), '\\'));
        CodePageNow const second(1252);
        EXPECT_NE(nullptr, win::_mbschr(Text(text), '\\'));
    }
}

TEST(MultiByteHere, null_texts_are_told_by_the_largest_number) {
    EXPECT_EQ(INT_MAX, win::_mbsicmp(nullptr, Bytes("a")));
    EXPECT_EQ(INT_MAX, win::_mbsicmp(Bytes("a"), nullptr));
}

// Code pages: what the documented asks for and not every Windows does, and the settings' page.
#include "../services.h"

#include "settings_keeper.h"

namespace {

int Encode(UINT page, DWORD flags, int length, const char *substitute, BOOL *substituted) {
    unsigned short const text[] = {'a', 0xe8, 0};
    char buffer[10];
    return win::WideCharToMultiByte(page, flags, text, length, buffer, sizeof buffer, substitute,
                                    substituted);
}

} // namespace

TEST(CodePagesHere, the_systems_own_is_the_settings_one) {
    SettingsKeeper const keeper;
    platform::Settings settings = keeper.Copy();
    for (unsigned const page : {1252u, 1251u, 65001u}) {
        settings.codePage = page;
        platform::ApplySettings(settings);
        EXPECT_EQ(page, win::GetACP());
        unsigned short wide[3] = {};
        EXPECT_NE(0, win::MultiByteToWideChar(0, 0, "\xe6\x80", 2, wide, 3));
        EXPECT_EQ(page == 1252 ? 0xe6 : page == 1251 ? 0x436 : 0xfffd, wide[0]);
    }
}

TEST(CodePagesHere, utf8_takes_no_flags_but_to_refuse_what_is_no_text) {
    unsigned short wide[10];
    for (DWORD const flags : {0x200u, 0x20u, 544u, 0x400u, 0x280u})
        EXPECT_FAILS_WITH(1004, Encode(65001, flags, -1, nullptr, nullptr));
    for (DWORD const flags : {1u, 9u, 2u, 4u})
        EXPECT_FAILS_WITH(1004, win::MultiByteToWideChar(65001, flags, "a", -1, wide, 10));
}

TEST(CodePagesHere, other_pages_take_the_flags_that_are_used) {
    unsigned short wide[10];
    for (DWORD const flags : {0x10u, 0x40u, 0x80u})
        EXPECT_FAILS_WITH(1004, Encode(1252, flags, -1, nullptr, nullptr));
    for (DWORD const flags : {2u, 3u, 4u})
        EXPECT_FAILS_WITH(1004, win::MultiByteToWideChar(1252, flags, "a", -1, wide, 10));
    EXPECT_EQ(3, Encode(1252, 0x400, -1, nullptr, nullptr));
}

TEST(CodePagesHere, utf8_takes_no_substitute) {
    BOOL used = FALSE;
    EXPECT_FAILS_WITH(87, Encode(65001, 0, -1, "!", nullptr));
    EXPECT_FAILS_WITH(87, Encode(65001, 0, -1, nullptr, &used));
}

TEST(CodePagesHere, lengths_below_minus_one_and_one_buffer_for_both_are_87) {
    union {
        char bytes[10];
        unsigned short wide[5];
    } both{};
    unsigned short wide[10];
    EXPECT_FAILS_WITH(87, Encode(1252, 0, -2, nullptr, nullptr));
    EXPECT_FAILS_WITH(87, win::MultiByteToWideChar(1252, 0, "a", -2, wide, 10));
    EXPECT_FAILS_WITH(
        87, win::WideCharToMultiByte(1252, 0, both.wide, 1, both.bytes, 10, nullptr, nullptr));
    EXPECT_FAILS_WITH(87, win::MultiByteToWideChar(1252, 0, both.bytes, 1, both.wide, 5));
}

TEST(CodePagesHere, pages_without_ascii_are_unknown) {
    for (UINT const page : {37u, 500u, 1025u, 1047u}) // EBCDIC
        EXPECT_FAILS_WITH(87, Encode(page, 0, -1, nullptr, nullptr));
}

TEST(CodePagesHere, each_byte_of_no_text_is_the_replacement_character) {
    unsigned short wide[10] = {};
    EXPECT_EQ(2, win::MultiByteToWideChar(1253, 1, "\xaa\xc1", 2, wide, 10));
    EXPECT_EQ(0xfffd, wide[0]);
    EXPECT_EQ(0x391, wide[1]);
    EXPECT_EQ(2, win::MultiByteToWideChar(932, 1, "\x82\xa0\x82", 3, wide, 10));
    EXPECT_EQ(0x3042, wide[0]);
    EXPECT_EQ(0xfffd, wide[1]);
    EXPECT_EQ(3, win::MultiByteToWideChar(65001, 0, "\xed\xa0\x80", 3, wide, 10)); // half a pair
    EXPECT_EQ(0xfffd, wide[2]);
}

TEST(CodePagesHere, a_composition_that_a_page_hasnt_stays_two_characters) {
    unsigned short const text[] = {'r', 0x30c};
    char bytes[10] = "";
    EXPECT_EQ(2, win::WideCharToMultiByte(1252, 544, text, 2, bytes, 10, nullptr, nullptr));
    EXPECT_STREQ("r?", bytes);
}

TEST(CodePagesHere, nothing_is_written_to_a_short_buffer) {
    char bytes[3] = "xy";
    unsigned short const text[] = {'a', 'b', 'c'};
    EXPECT_FAILS_WITH(122, win::WideCharToMultiByte(65001, 0, text, 3, bytes, 2, nullptr, nullptr));
    EXPECT_STREQ("xy", bytes);
}

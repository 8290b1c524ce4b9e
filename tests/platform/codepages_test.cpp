// Text in code pages and wide text, on both systems by the documented results and codes.
#include "services.h"

#include <vector>

namespace {

using Wide = std::vector<unsigned short>;

constexpr DWORD composing = 544; // WC_COMPOSITECHECK and WC_SEPCHARS
constexpr DWORD demanding = 9;   // MB_PRECOMPOSED and MB_ERR_INVALID_CHARS
constexpr UINT western = 1252;

std::string ToBytes(UINT page, DWORD flags, Wide const &wide) {
    char buffer[100];
    int const size =
        win::WideCharToMultiByte(page, flags, wide.data(), static_cast<int>(wide.size()), buffer,
                                 sizeof buffer, nullptr, nullptr);
    return std::string(buffer, static_cast<std::size_t>(size));
}

Wide ToWide(UINT page, DWORD flags, std::string const &bytes) {
    unsigned short buffer[100];
    int const size = win::MultiByteToWideChar(page, flags, bytes.data(),
                                              static_cast<int>(bytes.size()), buffer, 100);
    return Wide(buffer, buffer + size);
}

struct Pair {
    UINT page;
    std::string bytes;
    Wide wide;
};

// Western, Central European, Cyrillic, Greek, Turkish, Hebrew, Thai; OEM; two bytes a letter
Pair const pairs[] = {
    {1252, "a\x80\xe8\xff", {'a', 0x20ac, 0xe8, 0xff}},
    {1250, "\x8a\xb9\xf8", {0x160, 0x105, 0x159}},
    {1251, "\xc6\xe6\xb8", {0x416, 0x436, 0x451}},
    {1253, "\xc1\xdc", {0x391, 0x3ac}},
    {1254, "\xd0\xfd", {0x11e, 0x131}},
    {1255, "\xe0\xc7", {0x5d0, 0x5b7}},
    {874, "\xa1\x85", {0xe01, 0x2026}},
    {437, "\x81\xe1", {0xfc, 0xdf}},
    {850, "\x9b", {0xf8}},
    {932, "a\x82\xa0\xb6", {'a', 0x3042, 0xff76}},
    {936, "\xd6\xd0", {0x4e2d}},
    {949, "\xb0\xa1", {0xac00}},
    {65001, "a\xc3\xa8\xe2\x82\xac\xf0\x9f\x98\x80", {'a', 0xe8, 0x20ac, 0xd83d, 0xde00}},
};

} // namespace

TEST(CodePages, lead_from_bytes_to_wide_text_and_back) {
    for (Pair const &pair : pairs) {
        EXPECT_EQ(pair.wide, ToWide(pair.page, 0, pair.bytes)) << pair.page;
        EXPECT_EQ(pair.bytes, ToBytes(pair.page, 0, pair.wide)) << pair.page;
    }
}

TEST(CodePages, each_byte_that_is_a_character_comes_back) {
    for (UINT const page : {1250u, 1251u, 1252u, 1253u, 1254u, 1255u, 1256u, 1257u, 1258u, 874u,
                            437u, 850u, 852u, 866u}) {
        for (int value = 0; value < 256; ++value) {
            std::string const single(1, static_cast<char>(value));
            Wide const wide = ToWide(page, demanding, single);
            if (value < 0x80) {
                EXPECT_EQ(Wide{static_cast<unsigned short>(value)}, wide) << page;
            }
            if (!wide.empty()) {
                EXPECT_EQ(single, ToBytes(page, 0, wide)) << page << ' ' << value;
            }
        }
    }
}

TEST(CodePages, the_systems_own_is_page_0_too) {
    UINT const page = win::GetACP();
    EXPECT_EQ(ToWide(page, 8, "abc"), ToWide(0, 8, "abc"));
    EXPECT_EQ("abc", ToBytes(0, 0, {'a', 'b', 'c'}));
    EXPECT_EQ("abc", ToBytes(page, 0, {'a', 'b', 'c'}));
}

TEST(CodePages, an_unknown_one_is_87) {
    unsigned short wide[2] = {'a', 0};
    char bytes[2] = "a";
    for (UINT const page : {12345u, 1200u, 1201u, 99u}) {
        EXPECT_FAILS_WITH(87,
                          win::WideCharToMultiByte(page, 0, wide, -1, bytes, 2, nullptr, nullptr));
        EXPECT_FAILS_WITH(87, win::MultiByteToWideChar(page, 0, bytes, -1, wide, 2));
    }
}

TEST(CodePages, without_a_letter_in_them_a_place_is_a_control_character) {
    EXPECT_EQ((Wide{0x81, 0x8d, 0x8f, 0x90, 0x9d}),
              ToWide(western, demanding, "\x81\x8d\x8f\x90\x9d"));
    EXPECT_EQ("\x81\x9d", ToBytes(western, composing, {0x81, 0x9d}));
}

TEST(WideToBytes, minus_one_is_the_length_of_a_terminated_text_with_its_terminator) {
    unsigned short const text[] = {'a', 0xe8, 0, 'x'};
    char buffer[10] = "!!!!!!!!!";
    EXPECT_EQ(3,
              win::WideCharToMultiByte(western, composing, text, -1, buffer, 10, nullptr, nullptr));
    EXPECT_EQ(std::string("a\xe8\0!", 4), std::string(buffer, 4));
}

TEST(WideToBytes, a_given_length_counts_whatever_the_text_holds) {
    EXPECT_EQ(std::string("a\0b", 3), ToBytes(western, composing, {'a', 0, 'b'}));
    EXPECT_EQ(std::string("a\0b", 3), ToBytes(65001, 0, {'a', 0, 'b'}));
}

TEST(WideToBytes, no_capacity_asks_for_the_size) {
    unsigned short const text[] = {'a', 0xe8, 0};
    EXPECT_EQ(3,
              win::WideCharToMultiByte(western, composing, text, -1, nullptr, 0, nullptr, nullptr));
    EXPECT_EQ(4, win::WideCharToMultiByte(65001, 0, text, -1, nullptr, 0, nullptr, nullptr));
}

TEST(WideToBytes, a_short_buffer_is_122) {
    unsigned short const text[] = {'a', 0xe8, 0};
    char buffer[4] = "";
    EXPECT_FAILS_WITH(
        122, win::WideCharToMultiByte(western, composing, text, -1, buffer, 2, nullptr, nullptr));
    EXPECT_FAILS_WITH(122,
                      win::WideCharToMultiByte(65001, 0, text, -1, buffer, 3, nullptr, nullptr));
    EXPECT_EQ(4, win::WideCharToMultiByte(65001, 0, text, -1, buffer, 4, nullptr, nullptr));
}

TEST(WideToBytes, arguments_that_make_no_sense_are_87) {
    unsigned short const text[] = {'a', 0};
    char buffer[4] = "";
    EXPECT_FAILS_WITH(
        87, win::WideCharToMultiByte(western, composing, nullptr, 1, buffer, 4, nullptr, nullptr));
    EXPECT_FAILS_WITH(
        87, win::WideCharToMultiByte(western, composing, text, 0, buffer, 4, nullptr, nullptr));
    EXPECT_FAILS_WITH(
        87, win::WideCharToMultiByte(western, composing, text, 1, nullptr, 4, nullptr, nullptr));
    EXPECT_FAILS_WITH(
        87, win::WideCharToMultiByte(western, composing, text, 1, buffer, -1, nullptr, nullptr));
}

TEST(WideToBytes, unknown_flags_are_1004) {
    unsigned short const text[] = {'a', 0};
    char buffer[4] = "";
    for (UINT const page : {western, 65001u})
        EXPECT_FAILS_WITH(
            1004, win::WideCharToMultiByte(page, 0x8000, text, 1, buffer, 4, nullptr, nullptr));
}

TEST(WideToBytes, a_letter_and_its_mark_become_one_character_where_asked_for) {
    EXPECT_EQ("\xe8z", ToBytes(western, composing, {'e', 0x300, 'z'}));
    EXPECT_EQ("\xe9", ToBytes(western, 0x200, {'e', 0x301}));
    EXPECT_EQ("\xc7\xf1\xe5", ToBytes(western, composing, {'C', 0x327, 'n', 0x303, 'a', 0x30a}));
    EXPECT_EQ("\xb9\xf8", ToBytes(1250, composing, {'a', 0x328, 'r', 0x30c}));
    EXPECT_EQ("\xdc", ToBytes(1253, composing, {0x3b1, 0x301}));
    EXPECT_EQ("\xe9", ToBytes(1251, composing, {0x438, 0x306}));
}

TEST(WideToBytes, a_letter_and_a_mark_stay_two_characters_where_not_asked_for) {
    EXPECT_EQ(3u, ToBytes(western, 0, {'e', 0x300, 'z'}).size());
    EXPECT_EQ("e\xcc\x80", ToBytes(65001, 0, {'e', 0x300}));
}

TEST(WideToBytes, a_question_mark_stands_for_what_a_page_hasnt) {
    EXPECT_EQ("a?b", ToBytes(western, composing, {'a', 0x416, 'b'}));
    EXPECT_EQ("???", ToBytes(western, 0, {0xd800, 0xd83d, 0xde00}));
    EXPECT_EQ("\x82\xa0?", ToBytes(932, 0, {0x3042, 0x5d0}));
}

TEST(WideToBytes, a_character_of_the_callers_stands_for_it_and_is_told) {
    unsigned short const text[] = {'a', 0x416, 'b'};
    char buffer[10] = "";
    BOOL used = 7;
    EXPECT_EQ(3, win::WideCharToMultiByte(western, 0, text, 3, buffer, 10, "!", &used));
    EXPECT_STREQ("a!b", buffer);
    EXPECT_EQ(TRUE, used);
    EXPECT_EQ(1, win::WideCharToMultiByte(western, 0, text, 1, buffer, 10, "!", &used));
    EXPECT_EQ(FALSE, used);
}

TEST(WideToBytes, in_utf8_half_a_pair_is_the_replacement_character) {
    EXPECT_EQ("\xef\xbf\xbd"
              "a\xef\xbf\xbd",
              ToBytes(65001, 0, {0xd800, 'a', 0xdc00}));
    EXPECT_EQ("\xef\xbf\xbd\xf0\x9f\x98\x80", ToBytes(65001, 0, {0xd83d, 0xd83d, 0xde00}));
}

TEST(WideToBytes, in_utf8_half_a_pair_is_1113_where_that_is_asked_for) {
    unsigned short const text[] = {'a', 0xdc00};
    char buffer[10];
    EXPECT_FAILS_WITH(1113,
                      win::WideCharToMultiByte(65001, 0x80, text, 2, buffer, 10, nullptr, nullptr));
    EXPECT_EQ("a", ToBytes(65001, 0x80, {'a'}));
}

TEST(WideToBytes, in_utf8_each_length_has_its_first_and_last_character) {
    EXPECT_EQ("\x7f\xc2\x80\xdf\xbf\xe0\xa0\x80\xef\xbf\xbf",
              ToBytes(65001, 0, {0x7f, 0x80, 0x7ff, 0x800, 0xffff}));
    EXPECT_EQ("\xf0\x90\x80\x80\xf4\x8f\xbf\xbf",
              ToBytes(65001, 0, {0xd800, 0xdc00, 0xdbff, 0xdfff}));
}

TEST(BytesToWide, minus_one_is_the_length_of_a_terminated_text_with_its_terminator) {
    unsigned short buffer[10] = {7, 7, 7, 7};
    EXPECT_EQ(3, win::MultiByteToWideChar(western, demanding, "a\xe8", -1, buffer, 10));
    EXPECT_EQ((Wide{'a', 0xe8, 0, 7}), Wide(buffer, buffer + 4));
}

TEST(BytesToWide, a_given_length_counts_whatever_the_text_holds) {
    EXPECT_EQ((Wide{'a', 0, 'b'}), ToWide(western, demanding, std::string("a\0b", 3)));
    EXPECT_EQ((Wide{'a', 0, 'b'}), ToWide(65001, 8, std::string("a\0b", 3)));
}

TEST(BytesToWide, no_capacity_asks_for_the_size) {
    EXPECT_EQ(4, win::MultiByteToWideChar(western, demanding, "a\xc3\xa8", -1, nullptr, 0));
    EXPECT_EQ(3, win::MultiByteToWideChar(65001, 8, "a\xc3\xa8", -1, nullptr, 0));
}

TEST(BytesToWide, a_short_buffer_is_122) {
    unsigned short buffer[4];
    EXPECT_FAILS_WITH(122, win::MultiByteToWideChar(western, demanding, "abc", -1, buffer, 3));
    EXPECT_FAILS_WITH(122, win::MultiByteToWideChar(65001, 8, "abc", -1, buffer, 3));
    EXPECT_EQ(4, win::MultiByteToWideChar(65001, 8, "abc", -1, buffer, 4));
}

TEST(BytesToWide, arguments_that_make_no_sense_are_87) {
    unsigned short buffer[4];
    EXPECT_FAILS_WITH(87, win::MultiByteToWideChar(western, demanding, nullptr, 1, buffer, 4));
    EXPECT_FAILS_WITH(87, win::MultiByteToWideChar(western, demanding, "a", 0, buffer, 4));
    EXPECT_FAILS_WITH(87, win::MultiByteToWideChar(western, demanding, "a", 1, nullptr, 4));
    EXPECT_FAILS_WITH(87, win::MultiByteToWideChar(western, demanding, "a", 1, buffer, -1));
}

TEST(BytesToWide, unknown_flags_are_1004) {
    unsigned short buffer[4];
    for (UINT const page : {western, 65001u})
        EXPECT_FAILS_WITH(1004, win::MultiByteToWideChar(page, 0x100, "a", 1, buffer, 4));
}

TEST(BytesToWide, what_is_no_text_is_1113_where_that_is_asked_for) {
    unsigned short buffer[10];
    EXPECT_FAILS_WITH(1113, win::MultiByteToWideChar(1253, demanding, "a\xaa", 2, buffer, 10));
    EXPECT_FAILS_WITH(1113,
                      win::MultiByteToWideChar(932, demanding, "\x82\xa0\x82", 3, buffer, 10));
    for (const char *const text : {"\xc3", "\x80", "\xc0\x80", "\xe0\x9f\xbf", "\xed\xa0\x80",
                                   "\xf0\x8f\xbf\xbf", "\xf4\x90\x80\x80", "\xf5", "\xff"})
        EXPECT_FAILS_WITH(1113, win::MultiByteToWideChar(65001, 8, text, -1, buffer, 10));
}

TEST(BytesToWide, in_utf8_the_replacement_character_stands_for_each_piece_of_no_text) {
    EXPECT_EQ((Wide{0xfffd, 'a', 0xfffd, 'b'}), ToWide(65001, 0,
                                                       "\xc3"
                                                       "a\xe2\x82"
                                                       "b"));
    EXPECT_EQ((Wide{0xfffd, 0xfffd}), ToWide(65001, 0, "\xc0\x80"));
    EXPECT_EQ((Wide{0xd83d, 0xde00, 0xfffd, 0xfffd}), ToWide(65001, 0, "\xf0\x9f\x98\x80\xf5\xff"));
    EXPECT_EQ((Wide{0xfffd}), ToWide(65001, 0, "\xf0\x9f\x98"));
}

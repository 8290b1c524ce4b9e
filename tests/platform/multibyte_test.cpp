// Texts by characters of one byte or two, on both systems by the documented results.
#include "services.h"

#include <thread>
#include <vector>

#include "platform/code_page.h"

namespace {

const unsigned char *Bytes(const char *text) {
    return reinterpret_cast<const unsigned char *>(text);
}

int Compare(const char *left, const char *right) {
    return win::_mbsicmp(Bytes(left), Bytes(right));
}

// Where a character is in a text, -1 if it isn't.
int Find(const char *text, unsigned character) {
    auto *const found = const_cast<const unsigned char *>(
        win::_mbschr(const_cast<unsigned char *>(Bytes(text)), character));
    return found ? static_cast<int>(found - Bytes(text)) : -1;
}

using Tokens = std::vector<std::string>;

Tokens Split(std::string text, const char *delimiters) {
    Tokens tokens;
    auto *next = reinterpret_cast<unsigned char *>(text.data());
    while ((next = win::_mbstok(next, Bytes(delimiters))) != nullptr) {
        tokens.emplace_back(reinterpret_cast<char *>(next));
        next = nullptr;
    }
    return tokens;
}

constexpr unsigned pages[] = {932, 936, 949, 950, 1361};

// Which bytes are the first of two, as documented for each page.
bool Leads(unsigned page, unsigned value) {
    switch (page) {
    case 932:
        return (value >= 0x81 && value <= 0x9f) || (value >= 0xe0 && value <= 0xfc);
    case 1361:
        return (value >= 0x84 && value <= 0xd3) || (value >= 0xd8 && value <= 0xde) ||
               (value >= 0xe0 && value <= 0xf9);
    default:
        return value >= 0x81 && value <= 0xfe;
    }
}

// The first and the last of a row of capitals, each with its small letter.
struct WideLetter {
    unsigned page;
    const char *capital, *small;
};

template <std::size_t count> void ExpectCase(WideLetter const (&letters)[count]) {
    for (WideLetter const &letter : letters) {
        CodePageNow const now(letter.page);
        if (now.Set()) {
            EXPECT_EQ(0, Compare(letter.capital, letter.small)) << letter.page;
        }
    }
}

} // namespace

TEST(MultiByteCompare, letters_are_the_same_in_both_cases) {
    EXPECT_EQ(0, Compare("Hello World", "hELLO wORLD"));
    EXPECT_EQ(0, Compare("", ""));
    EXPECT_NE(0, Compare("@[`{", "`{@["));
}

TEST(MultiByteCompare, letters_count_as_lower_case_ones) {
    EXPECT_LT(Compare("abc", "ABD"), 0);
    EXPECT_GT(Compare("ABD", "abc"), 0);
    EXPECT_LT(Compare("_", "A"), 0);
    EXPECT_LT(Compare("[", "Z"), 0);
    EXPECT_GT(Compare("A", "^"), 0);
}

TEST(MultiByteCompare, what_a_longer_text_begins_with_is_before_it) {
    EXPECT_LT(Compare("ab", "ABC"), 0);
    EXPECT_GT(Compare("ABC", "ab"), 0);
    EXPECT_LT(Compare("", "a"), 0);
}

TEST(MultiByteCompare, bytes_above_127_are_behind_ascii) {
    CodePageNow const now(1252);
    if (UnderWine())
        GTEST_SKIP() << "in pages of single bytes Wine takes them for negative numbers";
    EXPECT_GT(Compare("\xc4", "z"), 0);
    EXPECT_LT(Compare("z", "\x80"), 0);
    EXPECT_LT(Compare("\x80", "\xff"), 0);
}

TEST(MultiByteCompare, in_a_page_with_double_bytes_is_by_characters) {
    for (unsigned const page : pages) {
        CodePageNow const now(page);
        if (!now.Set())
            continue;
        SCOPED_TRACE(page);
        EXPECT_LT(Compare("z", "\x88\x41"), 0);
        EXPECT_NE(0, Compare("\x88\x41", "\x88\x61")); // a second byte has no case
        EXPECT_EQ(0, Compare("A\x88\x41z", "a\x88\x41Z"));
        EXPECT_LT(Compare("\x88\x61", "\x89\x41"), 0);
        EXPECT_LT(Compare("\x88", "\x88\x41"), 0);
    }
}

TEST(MultiByteCompare, a_character_of_two_bytes_is_behind_those_of_one) {
    CodePageNow const now(932);
    if (!now.Set())
        GTEST_SKIP() << "page 932 isn't installed";
    EXPECT_LT(Compare("\xb1", "\x81\x40"), 0); // a half-width letter
    EXPECT_LT(Compare("\xdf", "\x81\x40"), 0);
}

TEST(MultiByteCompare, wide_latin_letters_have_case) {
    ExpectCase({{932, "\x82\x60", "\x82\x81"},
                {932, "\x82\x79", "\x82\x9a"},
                {936, "\xa3\xc1", "\xa3\xe1"},
                {936, "\xa3\xda", "\xa3\xfa"},
                {949, "\xa3\xc1", "\xa3\xe1"},
                {949, "\xa3\xda", "\xa3\xfa"}});
}

// There the second bytes have a gap within the alphabet.
TEST(MultiByteCompare, wide_latin_letters_have_case_in_two_rows) {
    ExpectCase({{950, "\xa2\xcf", "\xa2\xe9"},
                {950, "\xa2\xe4", "\xa2\xfe"},
                {950, "\xa2\xe5", "\xa3\x40"},
                {950, "\xa2\xe8", "\xa3\x43"},
                {1361, "\xda\x51", "\xda\x71"},
                {1361, "\xda\x5e", "\xda\x7e"},
                {1361, "\xda\x5f", "\xda\x91"},
                {1361, "\xda\x6a", "\xda\x9c"}});
}

TEST(MultiByteCompare, wide_digits_are_no_letters) {
    CodePageNow const now(1361);
    if (!now.Set())
        GTEST_SKIP() << "page 1361 isn't installed";
    EXPECT_NE(0, Compare("\xda\x41", "\xda\x61")); // 1 and Q
}

TEST(MultiByteFind, gives_the_first_of_its_kind) {
    EXPECT_EQ(1, Find("a\\b\\c", '\\'));
    EXPECT_EQ(0, Find("\n\n", '\n'));
    EXPECT_EQ(-1, Find("abc", '\n'));
    EXPECT_EQ(-1, Find("", 'a'));
    EXPECT_EQ(-1, Find("abc\0d", 'd'));
    EXPECT_EQ(-1, Find("abc", 'B'));
}

TEST(MultiByteFind, finds_the_end) {
    EXPECT_EQ(3, Find("abc", 0));
    EXPECT_EQ(0, Find("", 0));
}

TEST(MultiByteFind, takes_the_byte_behind_a_first_one_for_no_character) {
    for (unsigned const page : pages) {
        CodePageNow const now(page);
        if (!now.Set())
            continue;
        for (unsigned value = 1; value < 256; ++value) {
            char const text[] = {static_cast<char>(value), 'A', 'A', '\0'};
            int const place = Leads(page, value) ? 2 : value == 'A' ? 0 : 1;
            EXPECT_EQ(place, Find(text, 'A')) << page << ' ' << value;
        }
    }
}

TEST(MultiByteFind, finds_a_character_of_two_bytes) {
    CodePageNow const now(932);
    if (!now.Set())
        GTEST_SKIP() << "page 932 isn't installed";
    EXPECT_EQ(2, Find("\x83\x83\x83\x5c", 0x835c));
    EXPECT_EQ(-1, Find("\x83\x5c", 0x5c));
}

TEST(MultiByteTokens, are_what_lies_between_delimiters) {
    EXPECT_EQ((Tokens{"C:", "a", "b"}), Split("C:\\a\\b", "\\"));
    EXPECT_EQ((Tokens{"C:", "a"}), Split("\\\\C:\\\\\\a\\", "\\"));
    EXPECT_EQ((Tokens{"a", "b", "c"}), Split("a;b,;c", ",;"));
    EXPECT_EQ((Tokens{"abc"}), Split("abc", "\\"));
    EXPECT_EQ((Tokens{"abc"}), Split("abc", ""));
    EXPECT_EQ(Tokens{}, Split("", "\\"));
    EXPECT_EQ(Tokens{}, Split("\\\\\\", "\\"));
}

TEST(MultiByteTokens, that_are_all_taken_stay_so) {
    unsigned char text[] = "a";
    EXPECT_NE(nullptr, win::_mbstok(text, Bytes("\\")));
    for (int round = 0; round < 3; ++round)
        EXPECT_EQ(nullptr, win::_mbstok(nullptr, Bytes("\\")));
}

TEST(MultiByteTokens, may_have_other_delimiters_each) {
    unsigned char text[] = "a\\b;c";
    EXPECT_STREQ("a", reinterpret_cast<char *>(win::_mbstok(text, Bytes("\\"))));
    EXPECT_STREQ("b", reinterpret_cast<char *>(win::_mbstok(nullptr, Bytes(";"))));
    EXPECT_STREQ("c", reinterpret_cast<char *>(win::_mbstok(nullptr, Bytes(";"))));
}

TEST(MultiByteTokens, belong_to_the_thread) {
    unsigned char text[] = "a\\b\\c";
    EXPECT_STREQ("a", reinterpret_cast<char *>(win::_mbstok(text, Bytes("\\"))));
    std::thread([] { EXPECT_EQ((Tokens{"x", "y", "z"}), Split("x\\y\\z", "\\")); }).join();
    EXPECT_STREQ("b", reinterpret_cast<char *>(win::_mbstok(nullptr, Bytes("\\"))));
}

TEST(MultiByteTokens, in_a_page_with_double_bytes_end_at_whole_characters) {
    CodePageNow const now(932);
    if (!now.Set())
        GTEST_SKIP() << "page 932 isn't installed";
    EXPECT_EQ((Tokens{"\x83\x5c", "b"}), Split("\x83\x5c\\b", "\\"));
    EXPECT_EQ((Tokens{"a\x83\x5c"
                      "b"}),
              Split("a\x83\x5c"
                    "b",
                    "\\"));
    // a delimiter of two bytes
    EXPECT_EQ((Tokens{"a", "b"}), Split("a\x81\x40\x81\x40"
                                        "b",
                                        "\x81\x40"));
    EXPECT_EQ((Tokens{"\x81\x41"}), Split("\x81\x41", "\x81\x40"));
}

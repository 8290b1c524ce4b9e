// Searches in ranges: one pass forward, with what that misses.
#include "open_base.h"

#include <gtest/gtest.h>

#include "fault_text.h"
#include "run_element.h"

using UTILS::NOT_FOUND_INDEX;
using UTILS::UtilsBase;

namespace {

constexpr unsigned long untouched = 0xAAAA;

struct Hit {
    int result;
    unsigned long index;
    unsigned long previous;
};
bool operator==(Hit const &a, Hit const &b) {
    return a.result == b.result && a.index == b.index && a.previous == b.previous;
}
std::ostream &operator<<(std::ostream &out, Hit const &hit) {
    return out << "{" << hit.result << ", " << hit.index << ", " << hit.previous << "}";
}

template <class T> Hit SearchWith(UtilsBase<T> const &base, std::basic_string<T> const &pattern,
                                  std::basic_string<T> const &text, unsigned long occurrence = 0,
                                  int caseMode = 1) {
    Hit hit{-1, untouched, untouched};
    hit.result =
        base.search(pattern.data(), pattern.data() + pattern.size(), text.data(),
                    text.data() + text.size(), hit.index, caseMode, occurrence, &hit.previous);
    return hit;
}

Hit Search(String const &pattern, String const &text, unsigned long occurrence = 0,
           int caseMode = 1) {
    return SearchWith<char>(FoldingBase(), pattern, text, occurrence, caseMode);
}

} // namespace

TEST(Search, finds_the_occurrence_with_this_number) {
    EXPECT_EQ((Hit{1, 0, untouched}), Search("a", "aXaYa", 0));
    EXPECT_EQ((Hit{1, 2, 0}), Search("a", "aXaYa", 1));
    EXPECT_EQ((Hit{1, 4, 2}), Search("a", "aXaYa", 2));
    EXPECT_EQ((Hit{1, 3, untouched}), Search("abc", "xyzabc"));
    EXPECT_EQ((Hit{1, 0, untouched}), Search("abc", "abc"));
}

TEST(Search, behind_the_last_occurrence_finds_nothing_and_tells_the_last) {
    EXPECT_EQ((Hit{0, NOT_FOUND_INDEX, 4}), Search("a", "aXaYa", 3));
    EXPECT_EQ(0xEFFFFFFFul, NOT_FOUND_INDEX);
}

TEST(Search, with_fewer_matches_still_tells_zero_for_the_last) {
    EXPECT_EQ((Hit{0, NOT_FOUND_INDEX, 0}), Search("a", "aXaYa", 4));
    EXPECT_EQ((Hit{0, NOT_FOUND_INDEX, 0}), Search("z", "aXaYa", 1));
}

TEST(Search, for_the_first_leaves_the_last_match_alone_when_there_is_none) {
    EXPECT_EQ((Hit{0, NOT_FOUND_INDEX, untouched}), Search("z", "aXaYa", 0));
}

TEST(Search, needs_nobody_who_wants_the_last_match) {
    FoldingBase const base;
    String const text = "aXaYa";
    unsigned long index = 1;
    char const pattern[] = "a";
    char const *const begin = text.data();
    EXPECT_EQ(1, base.search(pattern, pattern + 1, begin, begin + 5, index, 1, 2, nullptr));
    EXPECT_EQ(4u, index);
    EXPECT_EQ(0, base.search(pattern, pattern + 1, begin, begin + 5, index, 1, 4, nullptr));
    EXPECT_EQ(NOT_FOUND_INDEX, index);
}

TEST(Search, in_a_text_shorter_than_the_pattern_gives_index_zero) {
    EXPECT_EQ((Hit{0, 0, untouched}), Search("abc", "ab"));
    EXPECT_EQ((Hit{0, 0, untouched}), Search("a", ""));
    EXPECT_EQ((Hit{0, 0, untouched}), Search("abc", "ab", 3));
    EXPECT_EQ((Hit{0, 0, untouched}), Search("abc", "ab", 0, 7)); // its case mode isn't noticed
}

TEST(Search, with_an_unknown_case_mode_throws) {
    for (int const caseMode : {2, -1, 77}) {
        String const text =
            ThrownText<std::invalid_argument>([&] { Search("a", "a", 0, caseMode); });
        EXPECT_TRUE(Tells(text, invalidArgument, std::to_string(caseMode), "UtilsBase"));
    }
}

TEST(Search, goes_on_at_the_element_that_differed) {
    EXPECT_EQ((Hit{0, NOT_FOUND_INDEX, untouched}), Search("aab", "aaab"));
    EXPECT_EQ((Hit{1, 2, untouched}), Search("aab", "aXaab"));
    EXPECT_EQ((Hit{1, 2, untouched}), Search("ab", "aXab")); // 'X' differs, and is skipped over
    EXPECT_EQ((Hit{1, 1, untouched}), Search("ab", "aab"));  // the second 'a' differs and begins
    EXPECT_EQ((Hit{0, NOT_FOUND_INDEX, untouched}), Search("abac", "ababac"));
}

TEST(Search, skips_the_element_after_a_match) {
    EXPECT_EQ((Hit{1, 2, 0}), Search("a", "aaa", 1));
    EXPECT_EQ((Hit{0, NOT_FOUND_INDEX, 2}), Search("a", "aaa", 2));
    EXPECT_EQ((Hit{1, 5, 0}), Search("ab", "ababXab", 1));
    EXPECT_EQ((Hit{1, 3, 0}), Search("ab", "abXab", 1));
}

TEST(Search, for_an_empty_pattern_finds_nothing) {
    EXPECT_EQ((Hit{0, NOT_FOUND_INDEX, untouched}), Search("", "abc"));
    EXPECT_EQ((Hit{0, NOT_FOUND_INDEX, 0}), Search("", "abc", 1));
    EXPECT_EQ((Hit{0, NOT_FOUND_INDEX, untouched}), Search("", ""));
    EXPECT_EQ((Hit{0, NOT_FOUND_INDEX, untouched}), Search("", String("a\0b", 3)));
}

TEST(Search, blind_to_case_meets_the_two_cases_of_a_letter_only) {
    EXPECT_EQ((Hit{1, 1, untouched}), Search("files", "-FiLeS", 0, 0));
    EXPECT_EQ((Hit{0, NOT_FOUND_INDEX, untouched}), Search("files", "-FiLeS", 0, 1));
    for (char const *const pair : {"@`", "[{", "_?", "0P", "\x80`", "^~", " @"}) {
        String const one(1, pair[0]);
        String const other(1, pair[1]);
        EXPECT_EQ(0, Search(one, other, 0, 0).result) << pair;
        EXPECT_EQ(0, Search(other, one, 0, 0).result) << pair;
    }
}

TEST(Search, blind_to_case_finds_each_character_itself) {
    for (int value = 1; value < 256; ++value) {
        String const one(1, static_cast<char>(value));
        EXPECT_EQ(1, Search(one, one, 0, 0).result) << value;
    }
}

TEST(Search, of_the_plain_base_is_never_blind_to_case) {
    EXPECT_EQ(0, SearchWith<char>(UtilsBase<char>(), "a", "A", 0, 0).result);
    EXPECT_EQ(1, SearchWith<char>(UtilsBase<char>(), "a", "Aa", 0, 0).result);
    EXPECT_EQ(0, SearchWith(UtilsBase<unsigned char>(), ToBytes("a"), ToBytes("A"), 0, 0).result);
}

TEST(Search, may_end_a_match_of_text_behind_the_end_of_the_range) {
    FoldingBase const base;
    char const text[] = "xabc";
    char const pattern[] = "abc";
    unsigned long index = 0;
    EXPECT_EQ(1, base.search(pattern, pattern + 3, text, text + 3, index, 1, 0, nullptr));
    EXPECT_EQ(1u, index);
    EXPECT_EQ(1, base.search(pattern, pattern + 2, text, text + 2, index, 0, 0, nullptr));
    EXPECT_EQ(1u, index);
    EXPECT_EQ(0, base.search(pattern, pattern + 2, text + 2, text + 4, index, 1, 0, nullptr));
    EXPECT_EQ(0, base.search(pattern, pattern + 1, text, text + 1, index, 1, 0, nullptr)); // begins
}

TEST(Search, of_text_stops_at_the_terminator_behind_the_range) {
    FoldingBase const base;
    char const text[] = "xxxa\0bc";
    char const pattern[] = {'a', '\0', 'b', 'c'};
    unsigned long index = 0;
    EXPECT_EQ(0, base.search(pattern, pattern + 4, text, text + 4, index, 1, 0, nullptr));
    EXPECT_EQ(NOT_FOUND_INDEX, index);
    EXPECT_EQ(1, base.search(pattern, pattern + 2, text, text + 4, index, 1, 0, nullptr));
    EXPECT_EQ(3u, index);
}

TEST(Search, of_bytes_ends_with_the_range) {
    UtilsBase<unsigned char> const base;
    Bytes const text = ToBytes("xabc");
    Bytes const pattern = ToBytes("abc");
    unsigned long index = 0;
    EXPECT_EQ(0, base.search(pattern.data(), pattern.data() + 3, text.data(), text.data() + 3,
                             index, 1, 0, nullptr));
    EXPECT_EQ(NOT_FOUND_INDEX, index);
    EXPECT_EQ(1, base.search(pattern.data(), pattern.data() + 3, text.data(), text.data() + 4,
                             index, 1, 0, nullptr));
    EXPECT_EQ(1u, index);
}

TEST(Search, goes_through_terminators_within_the_range) {
    EXPECT_EQ((Hit{1, 2, untouched}), Search("b", String("a\0b", 3)));
    EXPECT_EQ((Hit{1, 1, untouched}), Search(String("\0b", 2), String("a\0b", 3)));
    EXPECT_EQ((Hit{1, 2, untouched}),
              SearchWith(UtilsBase<unsigned char>(), ToBytes("b"), ToBytes(String("\xff\0b", 3))));
}

TEST(Search, finds_in_long_texts_as_in_short_ones) {
    String const front(5000, '-');
    EXPECT_EQ((Hit{1, 5000, untouched}), Search("NEEDLE", front + "needle", 0, 0));
    EXPECT_EQ((Hit{1, 5000, untouched}), Search("needle", front + "needle", 0, 1));
    EXPECT_EQ((Hit{0, NOT_FOUND_INDEX, untouched}), Search("needle", front + "NEEDLE", 0, 1));
    EXPECT_EQ((Hit{0, NOT_FOUND_INDEX, untouched}), Search("\r", front, 0, 0)); // '-' less 32
    EXPECT_EQ((Hit{1, 5007, 5000}), Search("needle", front + "Needle_nEEdle", 1, 0));
}

TEST(Search, of_elements_of_class_types_asks_the_elements) {
    UtilsBase<Element> const base;
    Element const text[] = {Element("a"), Element("x"), Element("a"), Element("b")};
    Element const pattern[] = {Element("a"), Element("b")};
    unsigned long index = 0;
    EXPECT_EQ(1, base.search(pattern, pattern + 2, text, text + 4, index, 1, 0, nullptr));
    EXPECT_EQ(2u, index);
    EXPECT_EQ(0, base.search(pattern, pattern + 2, text, text + 3, index, 0, 0, nullptr));
    EXPECT_EQ(NOT_FOUND_INDEX, index);
    EXPECT_EQ(0, base.search(pattern, pattern + 2, text, text + 1, index, 0, 0, nullptr));
    EXPECT_EQ(0u, index);
    EXPECT_THROW(base.search(pattern, pattern + 2, text, text + 3, index, 2, 0, nullptr),
                 std::invalid_argument);
}

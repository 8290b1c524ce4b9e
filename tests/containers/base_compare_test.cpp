// Comparison of ranges, and the hooks and the state that it goes by.
#include "open_base.h"

#include <gtest/gtest.h>

#include "run_element.h"

using UTILS::UtilsBase;

namespace {

int Compare(char const *a, char const *b, int caseMode = 1, int matchStyle = 0,
            unsigned long sizeA = 0, unsigned long sizeB = 0) {
    return FoldingBase().compare(a, b, caseMode, matchStyle, sizeA, sizeB);
}

int CompareBytes(String const &a, String const &b, int matchStyle = 0) {
    Bytes const left = ToBytes(a);
    Bytes const right = ToBytes(b);
    return UtilsBase<unsigned char>().compare(left.data(), right.data(), 1, matchStyle,
                                              static_cast<unsigned long>(a.size()),
                                              static_cast<unsigned long>(b.size()));
}

int DataCompare(String const &a, String const &b, unsigned long count, int caseMode = 1) {
    return FoldingBase().datacmp(a.c_str(), b.c_str(), count, caseMode);
}

// Elements of two bytes with letters.
struct WideBase : OpenBase<unsigned short> {
    int isupper(unsigned short const &) const override { return 1; } // not asked
    int iswupper(unsigned short const &value) const override { return value >= 65 && value <= 90; }
    unsigned short uwtoupper(unsigned short const &value) const override {
        return static_cast<unsigned short>(value - 32);
    }
};

} // namespace

TEST(Compare, of_null_pointers) {
    EXPECT_EQ(0, Compare(nullptr, nullptr));
    EXPECT_EQ(-1, Compare(nullptr, "x"));
    EXPECT_EQ(1, Compare("x", nullptr));
    EXPECT_EQ(-1, Compare(nullptr, "x", 1, 1));
    EXPECT_EQ(1, Compare("x", nullptr, 0, 1));
    EXPECT_EQ(-1, Compare(nullptr, ""));
}

TEST(Compare, measures_texts_and_ends_with_the_terminator_of_the_shorter) {
    EXPECT_EQ(1, Compare("abc", "ab"));
    EXPECT_EQ(-1, Compare("ab", "abc"));
    EXPECT_EQ(0, Compare("abc", "abc"));
    EXPECT_EQ(-1, Compare("", "a"));
    EXPECT_EQ(0, Compare("", ""));
    EXPECT_EQ(-1, Compare("abc", "abd"));
    EXPECT_EQ(1, Compare("b", "abc"));
}

TEST(Compare, takes_the_case_mode) {
    EXPECT_EQ(0, Compare("abc", "ABC", 0));
    EXPECT_EQ(1, Compare("abc", "ABC", 1));
    EXPECT_EQ(-1, Compare("ABC", "abc", 1));
    EXPECT_EQ(-1, Compare("abc", "ABD", 0));
}

TEST(Compare, sorts_bytes_above_0x7f_below_the_terminator) {
    EXPECT_EQ(-1, Compare("a\x80", "a"));
    EXPECT_EQ(1, Compare("a", "a\xff"));
    EXPECT_EQ(-1, Compare("\x80", "\x81"));
}

TEST(Compare, folded_has_an_order_of_its_own) {
    EXPECT_EQ(-1, Compare("_", "A", 0)); // 95 becomes 63
    EXPECT_EQ(1, Compare("_", "A", 1));
    EXPECT_EQ(-1, Compare("_", "a", 0));
    EXPECT_EQ(-1, Compare("9", "A", 0));
    EXPECT_EQ(-1, Compare("", "!", 0));
    EXPECT_EQ(1, Compare("\x80", "A", 0)); // -128 less 32 is 96 in a byte
    EXPECT_EQ(-1, Compare("\xff", "", 0)); // -33 and -32
}

TEST(Compare, takes_sizes_that_are_given) {
    EXPECT_EQ(0, Compare("abX", "abY", 1, 0, 2, 2));
    EXPECT_EQ(-1, Compare("abX", "abY", 1, 0, 3, 2)); // over the larger of the two
    EXPECT_EQ(-1, Compare("abX", "abY", 1, 0, 2, 0));
    EXPECT_EQ(0, Compare("abc", "abc", 1, 0, 1, 3));
    EXPECT_EQ(-1, Compare("a\0b", "a\0c", 1, 0, 3, 3));
    EXPECT_EQ(0, Compare("a\0b", "a\0c", 1, 0, 0, 0));
}

TEST(Compare, of_texts_that_agree_to_the_terminator_goes_by_their_sizes) {
    EXPECT_EQ(-1, Compare("ab", "ab\0cd", 1, 0, 2, 5));
    EXPECT_EQ(1, Compare("ab\0cd", "ab", 1, 0, 5, 2));
}

TEST(Compare, with_containment_is_equal_where_the_longer_holds_the_shorter) {
    EXPECT_EQ(0, Compare("Files", "Program Files", 1, 1));
    EXPECT_EQ(0, Compare("Program Files", "Files", 1, 1));
    EXPECT_EQ(0, Compare("files", "Program Files", 0, 1));
    EXPECT_NE(0, Compare("files", "Program Files", 1, 1));
    EXPECT_EQ(0, Compare("abc", "abc", 1, 1));
    EXPECT_NE(0, Compare("Files", "Program Files", 1, 0));
    EXPECT_NE(0, Compare("Files", "Program Files", 1, 2)); // any other style is for the whole
}

TEST(Compare, with_containment_orders_texts_that_do_not_hold_each_other) {
    EXPECT_EQ(1, Compare("b", "aaa", 1, 1));
    EXPECT_EQ(-1, Compare("a", "bbb", 1, 1));
    EXPECT_EQ(-1, Compare("", "abc", 1, 1)); // an empty text is held by none
    EXPECT_EQ(0, Compare("", "", 1, 1));
    EXPECT_EQ(1, Compare("aab", "aaab", 1, 1)); // as searches miss it
}

TEST(Compare, with_containment_of_an_unknown_case_mode_throws) {
    EXPECT_THROW(Compare("a", "a", 3, 1), std::invalid_argument);
    EXPECT_EQ(0, Compare("a", "a", 3, 0));
}

TEST(Compare, of_bytes_goes_over_the_common_length_and_then_by_size) {
    EXPECT_EQ(0, CompareBytes("abc", "abc"));
    EXPECT_EQ(-1, CompareBytes("ab", "abc"));
    EXPECT_EQ(1, CompareBytes("abc", "ab"));
    EXPECT_EQ(-1, CompareBytes("ab", String("ab\0", 3)));
    EXPECT_EQ(1, CompareBytes("b", "abc"));
    EXPECT_EQ(1, CompareBytes("\x80", "\x7f")); // unsigned
    EXPECT_EQ(0, CompareBytes("bc", "abcd", 1));
}

TEST(Compare, of_bytes_measures_one_element) {
    unsigned char const a[] = {5, 1};
    unsigned char const b[] = {5, 2};
    EXPECT_EQ(0, UtilsBase<unsigned char>().compare(a, b, 1, 0, 0, 0));
    EXPECT_EQ(-1, UtilsBase<unsigned char>().compare(a, b, 1, 0, 2, 2));
}

TEST(Compare, of_elements_of_class_types_asks_the_elements) {
    UtilsBase<Element> const base;
    Element const a[] = {Element("a"), Element("b")};
    Element const b[] = {Element("a"), Element("c")};
    EXPECT_EQ(-1, base.compare(a, b, 0, 0, 2, 2));
    EXPECT_EQ(0, base.compare(a, b, 0, 0, 0, 0));
    EXPECT_EQ(-1, base.compare(a, b, 0, 0, 1, 2));
    EXPECT_EQ(0, base.compare(a + 1, a, 1, 1, 1, 2));
    EXPECT_EQ(1, base.datacmp(b, a, 2, 1));
    EXPECT_EQ(-1, base.datacmp(nullptr, a, 1, 1));
}

TEST(DataCompare, of_null_pointers_and_of_no_elements) {
    FoldingBase const base;
    EXPECT_EQ(0, base.datacmp(nullptr, nullptr, 3, 1));
    EXPECT_EQ(-1, base.datacmp(nullptr, "x", 0, 1));
    EXPECT_EQ(1, base.datacmp("x", nullptr, 0, 1));
    EXPECT_EQ(0, base.datacmp("a", "b", 0, 1));
}

TEST(DataCompare, finds_the_first_difference) {
    EXPECT_EQ(-1, DataCompare("abXz", "abYa", 4));
    EXPECT_EQ(1, DataCompare("abYa", "abXz", 4));
    EXPECT_EQ(0, DataCompare("abXz", "abYa", 2));
    EXPECT_EQ(-1, DataCompare("\x80", "\x01", 1));
    EXPECT_EQ(-1, DataCompare(String("\xff"), String(1, '\0'), 1));
    EXPECT_EQ(0, DataCompare("aBc", "AbC", 3, 0));
    EXPECT_EQ(0, DataCompare(String("a\0b", 3), String("a\0b", 3), 3)); // a NUL ends nothing
    EXPECT_EQ(-1, DataCompare(String("a\0b", 3), String("a\0c", 3), 3));
}

TEST(Fold, of_wide_elements_uses_the_wide_hooks) {
    WideBase const base;
    unsigned short const lower[] = {'a', 0x161, 0};
    unsigned short const upper[] = {'A', 0x161, 0};
    EXPECT_EQ(2u, base.GetCharSize());
    EXPECT_EQ(0, base.datacmp(lower, upper, 2, 0));
    EXPECT_EQ(1, base.datacmp(lower, upper, 2, 1));
    EXPECT_EQ(0, base.compare(lower, upper, 0, 0, 0, 0));
    EXPECT_EQ(2u, base.GetSizeOfData(lower, nullptr));
}

TEST(BaseHooks, know_no_letters) {
    UtilsBase<char> const base;
    for (char const c : {'a', 'A', '0'}) {
        EXPECT_EQ(0, base.isupper(c));
        EXPECT_EQ(0, base.islower(c));
        EXPECT_EQ(0, base.iswupper(c));
        EXPECT_EQ(0, base.iswlower(c));
        EXPECT_EQ(c, base.utoupper(c));
        EXPECT_EQ(c, base.utolower(c));
        EXPECT_EQ(c, base.uwtoupper(c));
        EXPECT_EQ(c, base.uwtolower(c));
    }
    EXPECT_EQ(0, base.datacmp("a", "a", 1, 0));
    EXPECT_EQ(1, base.datacmp("a", "A", 1, 0));
}

TEST(BaseState, tells_which_elements_have_case_and_terminator) {
    EXPECT_EQ(1u, OpenBase<char>().caseCapable);
    EXPECT_EQ(1u, OpenBase<char>().GetCharSize());
    EXPECT_EQ(1u, OpenBase<unsigned short>().caseCapable);
    EXPECT_EQ(2u, OpenBase<unsigned short>().GetCharSize());
    EXPECT_EQ(0u, OpenBase<unsigned char>().caseCapable);
    EXPECT_EQ(0u, OpenBase<unsigned char>().GetCharSize());
    EXPECT_EQ(0u, OpenBase<int>().caseCapable);
    EXPECT_EQ(0u, OpenBase<int>().GetCharSize());
    EXPECT_EQ(0u, OpenBase<Element>().caseCapable);
    EXPECT_EQ(0u, OpenBase<Element>().GetCharSize());
}

TEST(BaseState, tells_which_elements_can_be_compared_blind_to_case) {
    EXPECT_EQ(1, UtilsBase<char>().IsCaseType());
    EXPECT_EQ(1, UtilsBase<char>().IsTypeSafeForCase());
    EXPECT_EQ(1, UtilsBase<unsigned char>().IsCaseType());
    EXPECT_EQ(1, UtilsBase<unsigned short>().IsTypeSafeForCase());
    EXPECT_EQ(0, UtilsBase<int>().IsCaseType());
    EXPECT_EQ(0, UtilsBase<Element>().IsTypeSafeForCase());
}

TEST(BaseState, is_copied_with_the_scratch_memory) {
    OpenBase<char> from;
    OpenBase<char> to;
    char outside[] = "x";
    from.scratch.SetMemoryPointer(outside);
    from.caseCapable = 0;
    from.charSize = 7;
    to.UBaseCopy(from);
    EXPECT_EQ(outside, to.scratch.GetMemoryBlock());
    EXPECT_EQ(0u, to.caseCapable);
    EXPECT_EQ(7u, to.GetCharSize());
    to.UBaseCopy(to);
    EXPECT_EQ(outside, to.scratch.GetMemoryBlock());
    EXPECT_EQ(0, OpenBase<char>().scratch.AllocationScheme());
}

TEST(BaseName, is_that_of_the_class) {
    EXPECT_STREQ("class UTILS::UtilsBase<char>", UtilsBase<char>().derived_class());
    EXPECT_STREQ("class UTILS::UtilsBase<int>", UtilsBase<int>().derived_class());
    FoldingBase const derived;
    UtilsBase<char> const &base = derived;
    EXPECT_STREQ("class FoldingBase", base.derived_class());
}

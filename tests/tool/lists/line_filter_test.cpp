// Patterns of what is left out.
#include "lists/line_filter.h"

#include <gtest/gtest.h>

using qvlink::LineFilter;

namespace {

struct Case {
    const char *pattern;
    const char *line;
    bool fits;
};

} // namespace

TEST(LineFilter, Patterns) {
    Case const cases[] = {
        {"HKLM\\A", "HKLM\\A", true},
        {"HKLM\\A", "hklm\\a", true},
        {"HKLM\\A", "HKLM\\A\\B", false},
        {"HKLM\\A", "XHKLM\\A", false},
        {"HKLM\\*", "HKLM\\A\\B", true},
        {"*", "", true},
        {"*", "x", true},
        {"", "", true},
        {"", "x", false},
        {"?", "", false},
        {"?", "x", true},
        {"a?c", "abc", true},
        {"a?c", "ac", false},
        {"*.pnf", "a.pnf", true},
        {"*.pnf", "a.pnf.x", false},
        {"*.pnf", "a.pnf.PNF", true},
        {"a*b*c", "aXbXbc", true},
        {"a*b*c", "aXbXcb", false},
        {"a**c", "ac", true},
        {"*a?c*", "xxabbcxabcx", true},
        {"[a]", "a", false},
    };
    for (Case const &one : cases) {
        EXPECT_EQ(one.fits, LineFilter({one.pattern}).Matches(one.line))
            << one.pattern << " and " << one.line;
    }
}

TEST(LineFilter, Any_of_several_patterns_will_do) {
    LineFilter const filter({"a", "b"});
    EXPECT_TRUE(filter.Matches("a"));
    EXPECT_TRUE(filter.Matches("b"));
    EXPECT_FALSE(filter.Matches("c"));
    EXPECT_FALSE(LineFilter({}).Matches(""));
}

// Each star more would multiply the work of a search that tries them all.
TEST(LineFilter, Many_stars_are_no_harder_than_one) {
    std::string pattern;
    for (int i = 0; i < 100; ++i) {
        pattern += "*a";
    }
    EXPECT_FALSE(LineFilter({pattern + "b"}).Matches(std::string(5000, 'a')));
}

TEST(LineFilter, Names_that_no_line_may_hold) {
    EXPECT_EQ(nullptr, qvlink::NameProblem("a b*?\xE9"));
    EXPECT_NE(nullptr, qvlink::NameProblem(""));
    EXPECT_NE(nullptr, qvlink::NameProblem("a\\b"));
    EXPECT_NE(nullptr, qvlink::NameProblem("a\tb"));
    EXPECT_NE(nullptr, qvlink::NameProblem(std::string_view("a\0b", 3)));
}

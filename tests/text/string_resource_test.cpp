// Strings of the program's own, from strings.txt.
#include "open_string.h"

#include <gtest/gtest.h>

using UTILS::UtilsString;
using Texts = std::vector<std::string>;

namespace {

constexpr HINSTANCE program = nullptr;
constexpr unsigned hello = 100, format = 101, nothing = 102, missing = 999;

} // namespace

TEST(StringResource, Is_appended_to_the_selected_string) {
    UtilsString string("x", 2);
    string.SetCurrentString(1);
    EXPECT_EQ(5u, string.LoadStringA(program, hello, 100));
    EXPECT_EQ((Texts{"x", "xHello"}), TextsOf(string));
    EXPECT_EQ(5u, string.LoadStringA(program, hello, 6));
    EXPECT_STREQ("xHelloHello", string.c_str());
}

TEST(StringResource, Is_cut_to_the_capacity) {
    UtilsString string;
    EXPECT_EQ(3u, string.LoadStringA(program, hello, 4));
    EXPECT_STREQ("Hel", string.c_str());
    EXPECT_EQ(0u, string.LoadStringA(program, hello, 0));
    EXPECT_EQ(0u, string.LoadStringA(program, hello, 1));
    EXPECT_STREQ("Hel", string.c_str());
}

TEST(StringResource, That_is_empty_or_missing_leaves_the_string_as_it_is) {
    for (unsigned const id : {nothing, missing}) {
        UtilsString string("x");
        EXPECT_EQ(0u, string.LoadStringA(program, id, 100));
        EXPECT_EQ(0u, string.FormatMessageA(program, id, "text"));
        EXPECT_STREQ("x", string.c_str());
    }
}

TEST(StringResource, Can_be_a_format) {
    UtilsString string("x: ");
    EXPECT_EQ(9u, string.FormatMessageA(program, format, "one", "two"));
    EXPECT_STREQ("x: two, one.", string.c_str());
}

// Code pages as this system has them.
#include "registry/code_page.h"

#include <gtest/gtest.h>

using qvlink::OpenCodePage;

TEST(CodePages, Page_1252_has_the_euro) {
    auto const page = OpenCodePage(1252);
    ASSERT_TRUE(page);
    EXPECT_EQ(u"a\u20ac\u00e4", page->Units("a\x80\xe4"));
    EXPECT_EQ("a\x80\xe4", page->Bytes(u"a\u20ac\u00e4"));
    EXPECT_FALSE(page->Bytes(u"\u3042"));
    EXPECT_FALSE(page->Bytes(u"\u0101")) << "an a with a bar is no a";
}

TEST(CodePages, Page_932_has_two_bytes_the_second_of_which_may_be_a_backslash) {
    auto const page = OpenCodePage(932);
    ASSERT_TRUE(page);
    EXPECT_EQ(u"\u8868\\", page->Units("\x95\\\\"));
    EXPECT_EQ("\x95\\\\", page->Bytes(u"\u8868\\"));
    EXPECT_FALSE(page->Units("\x95"));
}

TEST(CodePages, Page_65001_is_UTF_8) {
    auto const page = OpenCodePage(65001);
    ASSERT_TRUE(page);
    EXPECT_EQ(u"\u20ac\U0001f30d", page->Units("\xE2\x82\xAC\xF0\x9F\x8C\x8D"));
    EXPECT_EQ("\xE2\x82\xAC\xF0\x9F\x8C\x8D", page->Bytes(u"\u20ac\U0001f30d"));
    EXPECT_FALSE(page->Units("\xE2\x82"));
    EXPECT_FALSE(page->Bytes(std::u16string(1, char16_t(0xd83c))));
}

TEST(CodePages, NULs_and_nothing_are_texts) {
    for (unsigned const number : {1252u, 932u, 65001u}) {
        auto const page = OpenCodePage(number);
        EXPECT_EQ(u"", page->Units(""));
        EXPECT_EQ("", page->Bytes(u""));
        EXPECT_EQ(std::u16string(2, u'\0'), page->Units(std::string(2, '\0')));
        EXPECT_EQ(std::string(2, '\0'), page->Bytes(std::u16string(2, u'\0')));
    }
}

TEST(CodePages, The_page_in_use_is_one_and_64999_is_none) {
    EXPECT_TRUE(OpenCodePage(0));
    EXPECT_FALSE(OpenCodePage(64999));
}

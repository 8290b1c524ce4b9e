// The order of components is that of _mbsicmp, in whatever code page.
#include "services.h"
#include "tree_nodes.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "dice.h"
#include "platform/code_page.h"

namespace {

constexpr unsigned doubleBytePages[] = {932, 936, 949, 950, 1361};

int Compare(std::string const &left, std::string const &right) {
    return win::_mbsicmp(reinterpret_cast<const unsigned char *>(left.c_str()),
                         reinterpret_cast<const unsigned char *>(right.c_str()));
}

bool Less(std::string const &left, std::string const &right) {
    ComponentText const one(left.c_str(), left.size());
    return one.Compare(ComponentText(right.c_str(), right.size())) < 0;
}

// A text that differs late from others, if at all.
std::string AnyText(Dice &dice) {
    static std::string const letters = "aAbBzZ_[^`{@0~.\x80\x81\x83\x84\x88\x8e\x9a\xa0\xa3\xc4"
                                       "\xd7\xe4\xf7\xfe\xff\x41\x61\xc1\xe1";
    std::string text = std::string("Abcdefghij").substr(0, dice.Below(11));
    if (dice.OneIn(2))
        for (char &c : text)
            if (dice.OneIn(3))
                c = static_cast<char>(c ^ 0x20);
    return text + dice.Text(letters, 6);
}

// No text is empty: a component never is.
std::vector<std::string> Texts(std::uint32_t seed, std::size_t count) {
    Dice dice(seed);
    std::vector<std::string> texts;
    while (texts.size() < count)
        if (std::string text = AnyText(dice); !text.empty())
            texts.push_back(std::move(text));
    return texts;
}

template <class Condition> void Drop(std::vector<std::string> &texts, Condition condition) {
    texts.erase(std::remove_if(texts.begin(), texts.end(), condition), texts.end());
}

bool HasHighByte(std::string const &text) {
    return std::any_of(text.begin(), text.end(), [](char c) { return (c & 0x80) != 0; });
}

// Where a page has single bytes only, Wine's comparison takes those above 127 for negative.
std::vector<std::string> InOneBytePage(std::vector<std::string> texts) {
    if (UnderWine())
        Drop(texts, HasHighByte);
    return texts;
}

// In one with double bytes, Wine's splitting reads on behind half a character at the end.
std::vector<std::string> InDoubleBytePage(std::vector<std::string> texts) {
    Drop(texts, [](std::string const &text) {
        return text.find('\\') != std::string::npos || (UnderWine() && (text.back() & 0x80));
    });
    return texts;
}

void ExpectSameOrder(std::vector<std::string> const &texts) {
    std::size_t wrong = 0;
    for (std::string const &left : texts)
        for (std::string const &right : texts)
            wrong += Less(left, right) != (Compare(left, right) < 0);
    EXPECT_EQ(0u, wrong);
}

void ExpectChildrenInOrder(std::vector<std::string> const &texts) {
    ProtectNode tree;
    std::size_t distinct = 0;
    for (std::string const &text : texts)
        distinct += ProtectAdd(tree, text.c_str(), 0) == 0;
    EXPECT_EQ(distinct, tree.children.size());
    const char *last = nullptr;
    for (auto const &[key, child] : tree.children) {
        EXPECT_TRUE(!last || Compare(last, key.Text()) < 0) << last << " | " << key.Text();
        last = key.Text();
    }
    for (std::string const &text : texts)
        EXPECT_TRUE(Ask(tree, text)) << text;
}

} // namespace

TEST(ComponentOrder, Is_that_of_the_systems_comparison) {
    ExpectSameOrder(InOneBytePage(Texts(1, 800)));
}

TEST(ComponentOrder, Is_that_of_the_systems_comparison_for_each_byte) {
    std::vector<std::string> texts;
    for (int c = 1; c < 256; ++c) {
        texts.emplace_back(1, static_cast<char>(c));
        texts.push_back("abcdefg" + texts.back());
        texts.push_back("ABCDEFGH" + texts.back().substr(7));
    }
    ExpectSameOrder(InOneBytePage(texts));
}

TEST(ComponentOrder, Is_that_of_the_children) {
    ExpectChildrenInOrder(InOneBytePage(Texts(2, 800)));
}

TEST(ComponentOrder, In_pages_with_double_bytes_is_by_characters) {
    for (unsigned const page : doubleBytePages) {
        SCOPED_TRACE(page);
        CodePageNow const now(page);
        if (now.Set())
            ExpectSameOrder(Texts(page, 500));
    }
}

TEST(ComponentOrder, In_pages_with_double_bytes_is_that_of_the_children) {
    for (unsigned const page : doubleBytePages) {
        SCOPED_TRACE(page);
        CodePageNow const now(page);
        if (now.Set())
            ExpectChildrenInOrder(InDoubleBytePage(Texts(page + 1, 500)));
    }
}

TEST(ComponentOrder, Puts_the_lower_case_letters_in_the_place_of_the_capitals) {
    EXPECT_TRUE(Less("_", "A"));
    EXPECT_TRUE(Less("[", "Z"));
    EXPECT_TRUE(Less("^abcdefgh", "Z"));
    EXPECT_FALSE(Less("A", "_"));
    EXPECT_FALSE(Less("a", "A") || Less("A", "a"));
    EXPECT_TRUE(Less("windows", "WINDOWSX"));
}

TEST(ComponentOrder, Holds_however_alike_the_beginnings_are) {
    std::vector<std::string> texts;
    for (std::size_t length = 1; length < 40; ++length)
        for (char const *const end : {"", "a", "A", "b", "[", "_", "z", "Z"}) {
            texts.push_back(std::string(length, 'm') + end);
            texts.push_back(std::string(length, 'M') + end);
        }
    ExpectSameOrder(texts);
    ExpectChildrenInOrder(texts);
}

// The second byte of a character may be a backslash, and none of those separates.
TEST(ComponentSplit, In_a_page_with_double_bytes_is_by_characters) {
    CodePageNow const now(932);
    if (!now.Set())
        GTEST_SKIP() << "page 932 isn't installed";
    ProtectNode tree;
    ProtectAdd(tree, "C:\\\x83\x5c\\x", 0);
    EXPECT_EQ(3u, CountBelow(tree));
    EXPECT_NE(nullptr, NodeAt(tree, {"C:", "\x83\x5c", "x"}));
    EXPECT_TRUE(Ask(tree, "c:\\\x83\x5c\\X"));
    EXPECT_FALSE(Ask(tree, "C:\\\x83\\x"));
}

TEST(ComponentSplit, In_a_page_with_double_bytes_leaves_the_second_byte_its_case) {
    CodePageNow const now(932);
    if (!now.Set())
        GTEST_SKIP() << "page 932 isn't installed";
    ProtectNode tree;
    ProtectAdd(tree, "C:\\\x83\x41", 0);
    EXPECT_FALSE(Ask(tree, "C:\\\x83\x61"));
    EXPECT_TRUE(Ask(tree, "c:\\\x83\x41"));
}

// Measuring, terminators, reversal and sorting of ranges.
#include "open_base.h"

#include <memory>

#include <gtest/gtest.h>

#include "fault_text.h"
#include "run_element.h"

using UTILS::UtilsBase;

namespace {

String Sorted(String text) {
    OpenBase<char> base;
    base.selection_sort(text.data(), text.data() + text.size());
    return text;
}

String Reversed(String text) {
    OpenBase<char> base;
    base.reverse(text.data(), text.data() + text.size());
    return text;
}

// Equal to others of its key, which are told apart by their tags.
struct Tagged {
    int key = 0;
    int tag = 0;
    int Compare(Tagged const &other) const { return key - other.key; }
    bool operator<(Tagged const &other) const { return key < other.key; }
};

} // namespace

TEST(Size, is_what_lies_between_two_pointers) {
    char const text[] = "a\0bc";
    EXPECT_EQ(4u, UtilsBase<char>().GetSizeOfData(text, text + 4));
    EXPECT_EQ(0u, UtilsBase<char>().GetSizeOfData(text, text));
    int const numbers[3] = {};
    EXPECT_EQ(3u, UtilsBase<int>().GetSizeOfData(numbers, numbers + 3));
    Element const elements[2];
    EXPECT_EQ(2u, UtilsBase<Element>().GetSizeOfData(elements, elements + 2));
}

TEST(Size, without_an_end_is_that_up_to_the_terminator_or_one) {
    EXPECT_EQ(3u, UtilsBase<char>().GetSizeOfData("abc", nullptr));
    EXPECT_EQ(0u, UtilsBase<char>().GetSizeOfData("", nullptr));
    EXPECT_EQ(1u, UtilsBase<char>().GetSizeOfData("a\0b", nullptr));
    unsigned char const bytes[] = {0, 0, 0};
    EXPECT_EQ(1u, UtilsBase<unsigned char>().GetSizeOfData(bytes, nullptr));
    int const number = 0;
    EXPECT_EQ(1u, UtilsBase<int>().GetSizeOfData(&number, nullptr));
    Element const element;
    EXPECT_EQ(1u, UtilsBase<Element>().GetSizeOfData(&element, nullptr));
}

TEST(Terminator, is_written_for_text_only) {
    char text[] = "abc";
    UtilsBase<char>().NullTerminate(text + 1);
    EXPECT_EQ(String("a\0c", 3), String(text, 3));
    unsigned short wide[] = {1, 0xffff, 0xffff};
    UtilsBase<unsigned short>().NullTerminate(wide + 1);
    EXPECT_EQ(0, wide[1]);
    EXPECT_EQ(0xffff, wide[2]);
    unsigned char byte = 5;
    UtilsBase<unsigned char>().NullTerminate(&byte);
    EXPECT_EQ(5, byte);
    int number = 5;
    UtilsBase<int>().NullTerminate(&number);
    EXPECT_EQ(5, number);
    Element element("x");
    UtilsBase<Element>().NullTerminate(&element);
    EXPECT_EQ("x", element.text);
}

TEST(Reverse, turns_a_range_around_in_place) {
    EXPECT_EQ("", Reversed(""));
    EXPECT_EQ("a", Reversed("a"));
    EXPECT_EQ("ba", Reversed("ab"));
    EXPECT_EQ("cba", Reversed("abc"));
    EXPECT_EQ(String("b\0a", 3), Reversed(String("a\0b", 3)));
}

TEST(Reverse, writes_a_terminator_at_the_end_of_text) {
    OpenBase<char> base;
    char text[] = "abcde";
    base.reverse(text, text + 3);
    EXPECT_EQ(String("cba\0e", 5), String(text, 5));
}

TEST(Reverse, measures_a_text_without_an_end) {
    OpenBase<char> base;
    char text[] = "abc";
    base.reverse(text, nullptr);
    EXPECT_STREQ("cba", text);
}

TEST(Reverse, of_bytes_writes_no_terminator) {
    OpenBase<unsigned char> base;
    unsigned char bytes[] = {1, 2, 3, 4};
    base.reverse(bytes, bytes + 3);
    EXPECT_EQ(3, bytes[0]);
    EXPECT_EQ(1, bytes[2]);
    EXPECT_EQ(4, bytes[3]);
    base.reverse(bytes, nullptr); // measures one element
    EXPECT_EQ(3, bytes[0]);
}

TEST(Reverse, of_no_bytes_is_a_fault_of_the_scratch_memory) {
    OpenBase<unsigned char> base;
    unsigned char bytes[] = {1};
    EXPECT_TRUE(AllocatorRefuses([&] { base.reverse(bytes, bytes); }, invalidArgument, "0"));
}

TEST(Reverse, frees_its_scratch_memory) {
    int const alive = Element::Alive();
    {
        OpenBase<Element> base;
        Element elements[] = {Element("a"), Element("b"), Element("c")};
        base.reverse(elements, elements + 3);
        EXPECT_EQ("c", elements[0].text);
        EXPECT_EQ("a", elements[2].text);
        EXPECT_EQ(alive + 3, Element::Alive());
    }
    EXPECT_EQ(alive, Element::Alive());
}

TEST(Sort, puts_a_range_in_order) {
    EXPECT_EQ("abc", Sorted("bca"));
    EXPECT_EQ("", Sorted(""));
    EXPECT_EQ("a", Sorted("a"));
    EXPECT_EQ("aabbc", Sorted("babca"));
    EXPECT_EQ("AZ_az", Sorted("z_aZA")); // it doesn't fold
}

TEST(Sort, puts_bytes_above_0x7f_first_in_text_and_last_in_bytes) {
    EXPECT_EQ("\x80"
              "a",
              Sorted("a\x80"));
    OpenBase<unsigned char> base;
    unsigned char bytes[] = {0x80, 'a'};
    base.selection_sort(bytes, bytes + 2);
    EXPECT_EQ('a', bytes[0]);
}

TEST(Sort, leaves_a_range_alone_that_ends_before_it_begins) {
    OpenBase<char> base;
    char text[] = "cba";
    base.selection_sort(text + 3, text);
    base.selection_sort(text + 1, text + 1);
    EXPECT_STREQ("cba", text);
}

TEST(Sort, exchanges_the_first_of_the_smallest_into_place) {
    UtilsBase<Tagged> base;
    Tagged items[] = {{3, 0}, {1, 1}, {1, 2}, {2, 3}};
    base.selection_sort(items, items + 4);
    int const tags[] = {1, 2, 3, 0};
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(tags[i], items[i].tag) << i;
    Tagged others[] = {{2, 0}, {2, 1}, {1, 2}};
    base.selection_sort(others, others + 3);
    EXPECT_EQ(1, others[1].tag); // not stable: the first 2 was exchanged behind the second
    EXPECT_EQ(0, others[2].tag);
}

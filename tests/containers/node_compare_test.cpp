// Comparisons of nodes, and the hooks by which they fold case.
#include "list_elements.h"

using UTILS::Node;
using UTILS::UtilsBase;

namespace {

template <typename T> std::string Results(Node<T> const &node, T const *item) {
    auto const digit = [](int result) { return result == 0 ? '0' : result == 1 ? '1' : '?'; };
    return {digit(node == item), digit(node < item), digit(node > item), digit(node >= item)};
}

// The results of ==, <, > and >= for data and item of the same type.
std::string Compared(char const *data, char const *item, int caseMode = 1) {
    std::string copy = data ? data : "";
    OpenNode<char> const node(data ? copy.data() : nullptr, 1, caseMode);
    return Results<char>(node, item);
}

constexpr char const *EQUAL = "1001";
constexpr char const *LESS = "0100";
constexpr char const *GREATER = "0011";

// A row of a table of hooks, for all values of a type.
template <typename T> class Hooks : public testing::Test {
protected:
    T data[2] = {'a', 0};
    OpenNode<T> const hooked{data};
};
using Plain = testing::Types<char, unsigned char>;
TYPED_TEST_SUITE(Hooks, Plain, );

} // namespace

TEST(NodeCompare, A_null_run_is_equal_to_null_and_below_all_else) {
    EXPECT_EQ(Compared(nullptr, nullptr), EQUAL);
    EXPECT_EQ(Compared(nullptr, ""), LESS);
    EXPECT_EQ(Compared(nullptr, "a"), LESS);
}

TEST(NodeCompare, A_run_is_above_a_null_item) {
    EXPECT_EQ(Compared("a", nullptr), GREATER);
    EXPECT_EQ(Compared("", nullptr), GREATER);
}

TEST(NodeCompare, A_run_of_size_0_is_equal_to_any_item) {
    EXPECT_EQ(Compared("", ""), EQUAL);
    EXPECT_EQ(Compared("", "abc"), EQUAL);
}

TEST(NodeCompare, The_first_difference_decides) {
    EXPECT_EQ(Compared("abz", "acb"), LESS);
    EXPECT_EQ(Compared("acb", "abz"), GREATER);
    EXPECT_EQ(Compared("acb", "acc"), LESS);
}

TEST(NodeCompare, Only_as_many_elements_as_the_node_has_are_compared) {
    EXPECT_EQ(Compared("ab", "abc"), EQUAL);
    EXPECT_EQ(Compared("ab", "ab"), EQUAL);
    EXPECT_EQ(Compared("abc", "ab"), GREATER);
}

TEST(NodeCompare, Text_compares_by_its_signed_values) {
    EXPECT_EQ(Compared("\x80", "\x01"), LESS);
    EXPECT_EQ(Compared("\x01", "\xff"), GREATER);
}

TEST(NodeCompare, Text_folds_its_case_when_told_to) {
    EXPECT_EQ(Compared("aBc", "AbC", 0), EQUAL);
    EXPECT_EQ(Compared("aBc", "AbC", 1), GREATER);
    EXPECT_EQ(Compared("aBc", "AbD", 0), LESS);
    EXPECT_EQ(Compared("b", "A", 0), GREATER);
}

TEST(NodeCompare, The_fold_moves_what_is_no_letter_too) {
    EXPECT_EQ(Compared("_", "A", 1), GREATER);
    EXPECT_EQ(Compared("_", "A", 0), LESS);
    EXPECT_EQ(Compared("_", "a", 0), LESS);
}

TEST(NodeCompare, Bytes_compare_unsigned_and_without_folding) {
    unsigned char high[] = {0x80}, low[] = {0x01}, upper[] = {'A'}, lower[] = {'a'};
    OpenNode<unsigned char> const node(high, 1, 1, 1);
    EXPECT_EQ(Results<unsigned char>(node, low), GREATER);
    OpenNode<unsigned char> const blind(upper, 1, 0, 1);
    EXPECT_EQ(Results<unsigned char>(blind, lower), LESS);
    EXPECT_EQ(Results<unsigned char>(blind, upper), EQUAL);
}

TEST(NodeCompare, Objects_compare_by_the_setting_of_the_nodes_element) {
    Word exact("ab"), blind("ab", true), upper("AB"), blindUpper("AB", true);
    EXPECT_EQ(Results<Word>(OpenNode<Word>(&blind), &upper), EQUAL);
    EXPECT_EQ(Results<Word>(OpenNode<Word>(&exact), &upper), GREATER);
    EXPECT_EQ(Results<Word>(OpenNode<Word>(&exact), &blindUpper), GREATER);
    EXPECT_EQ(Results<Word>(OpenNode<Word>(&upper), &exact), LESS);
    EXPECT_EQ(Results<Word>(OpenNode<Word>(&blind, 1, 0), &upper), EQUAL);
}

TEST(NodeCompare, Objects_compare_element_by_element) {
    Word data[] = {"a", "c"}, same[] = {"a", "c"}, above[] = {"b", "a"}, below[] = {"a", "b"};
    OpenNode<Word> const node(data, 1, 1, 2);
    EXPECT_EQ(Results<Word>(node, same), EQUAL);
    EXPECT_EQ(Results<Word>(node, above), LESS);
    EXPECT_EQ(Results<Word>(node, below), GREATER);
    EXPECT_EQ(Results<Word>(node, nullptr), GREATER);
    EXPECT_EQ(Results<Word>(OpenNode<Word>(nullptr), data), LESS);
    EXPECT_EQ(Results<Word>(OpenNode<Word>(nullptr), nullptr), EQUAL);
}

TEST(NodeCompare, A_node_is_less_than_another_by_its_elements_then_by_its_size) {
    Word words[] = {"a", "b", "c"};
    auto const less = [](OpenNode<Word> const &a, OpenNode<Word> const &b) {
        Node<Word> const &left = a;
        Node<Word> const &right = b;
        return left < right;
    };
    OpenNode<Word> const ab(words, 1, 1, 2), abc(words, 1, 1, 3), b(words + 1), null(nullptr);
    EXPECT_EQ(less(ab, b), 1);
    EXPECT_EQ(less(b, ab), 0);
    EXPECT_EQ(less(abc, b), 1);
    EXPECT_EQ(less(ab, abc), 1);
    EXPECT_EQ(less(abc, ab), 0);
    EXPECT_EQ(less(ab, ab), 0);
    EXPECT_EQ(less(null, ab), 1);
    EXPECT_EQ(less(ab, null), 0);
    EXPECT_EQ(less(null, null), 0);
}

TEST(NodeCompare, A_node_is_less_by_the_setting_of_the_left_element) {
    Word blind("b", true), upper("B");
    OpenNode<Word> const blindNode(&blind), upperNode(&upper);
    Node<Word> const &first = blindNode;
    Node<Word> const &second = upperNode;
    EXPECT_EQ(first < second, 0);
    EXPECT_EQ(second < first, 1);
}

TYPED_TEST(Hooks, Letters_of_ascii_are_upper_or_lower) {
    Node<TypeParam> const &node = this->hooked;
    for (int value = -128; value < 128; ++value) {
        char const letter = static_cast<char>(value);
        EXPECT_EQ(node.isupper(letter), value >= 65 && value <= 90) << value;
        EXPECT_EQ(node.islower(letter), value >= 97 && value <= 122) << value;
    }
}

TYPED_TEST(Hooks, Conversions_of_char_move_by_32_whatever_it_is) {
    Node<TypeParam> const &node = this->hooked;
    for (int value = -128; value < 128; ++value) {
        char const letter = static_cast<char>(value);
        EXPECT_EQ(node.utoupper(letter), static_cast<char>(value - 32)) << value;
        EXPECT_EQ(node.utolower(letter), static_cast<char>(value + 32)) << value;
    }
}

TYPED_TEST(Hooks, Conversions_of_wide_characters_move_by_32_whatever_it_is) {
    Node<TypeParam> const &node = this->hooked;
    for (int const value : {0, 31, 32, 65, 97, 0xe4, 0x4e00, 0xffff}) {
        auto const wide = static_cast<unsigned short>(value);
        EXPECT_EQ(node.utoupper(wide), static_cast<unsigned short>(value - 32)) << value;
        EXPECT_EQ(node.utolower(wide), static_cast<unsigned short>(value + 32)) << value;
    }
}

TYPED_TEST(Hooks, Wide_characters_have_the_systems_case) {
    Node<TypeParam> const &node = this->hooked;
    for (unsigned short wide = 0; wide < 128; ++wide) {
        EXPECT_EQ(node.isupper(wide) != 0, wide >= 'A' && wide <= 'Z') << wide;
        EXPECT_EQ(node.islower(wide) != 0, wide >= 'a' && wide <= 'z') << wide;
    }
}

TEST(NodeHooks, Those_of_a_node_of_text_are_called_through_the_base) {
    char text[] = "a";
    OpenNode<char> const node(text);
    UtilsBase<char> const &base = node;
    EXPECT_EQ(base.isupper('A'), 1);
    EXPECT_EQ(base.isupper('a'), 0);
    EXPECT_EQ(base.islower('a'), 1);
    EXPECT_EQ(base.utoupper('1'), static_cast<char>('1' - 32));
    EXPECT_EQ(base.utolower('A'), 'a');
    EXPECT_EQ(base.iswupper('A'), 0);
}

TEST(NodeHooks, Those_of_the_base_know_no_letters_in_a_node_of_bytes) {
    unsigned char bytes[] = {'a'};
    OpenNode<unsigned char> const node(bytes);
    UtilsBase<unsigned char> const &base = node;
    EXPECT_EQ(base.isupper('A'), 0);
    EXPECT_EQ(base.islower('a'), 0);
    EXPECT_EQ(base.utoupper('a'), 'a');
    EXPECT_EQ(base.utolower('A'), 'A');
}

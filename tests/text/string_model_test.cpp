// Random operations, searches, pieces and splits against plain models.
#include "string_program.h"

#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "open_string.h"
#include "string_model.h"

using UTILS::UtilsString;

namespace {

using Random = std::mt19937;

std::string Letters(Random &random, std::size_t limit) {
    static char const letters[] = {'a', 'b', 'A', ','};
    std::string text(random() % limit, ' ');
    for (char &letter : text)
        letter = letters[random() % sizeof letters];
    return text;
}

int Bool(Random &random) { return static_cast<int>(random() % 2); }

} // namespace

TEST(StringModel, Operations_in_any_order_do_what_plain_strings_do) {
    Random random(1);
    std::vector<std::uint8_t> program;
    for (int round = 0; round < 8000; ++round) {
        program.resize(random() % 300);
        for (std::uint8_t &byte : program)
            byte = static_cast<std::uint8_t>(random());
        ASSERT_EQ("", RunStringProgram(program.data(), program.size())) << "round " << round;
    }
}

TEST(StringModel, Finds_are_those_of_one_pass) {
    Random random(2);
    for (int round = 0; round < 60000; ++round) {
        std::string const text = Letters(random, 14);
        std::string const pattern = Letters(random, 4);
        UtilsString string(text);
        string.SetCase(Bool(random));
        unsigned long index = 0;
        for (unsigned long i = 0; i < 3; ++i) {
            int const found =
                i == 0 ? string.FindFirst(pattern, index) : string.FindNext(pattern, index);
            auto const hit =
                text_model::Search(text_model::Kind::Text, pattern, text, string.GetCase(), i);
            ASSERT_EQ(hit.found, found == 1) << pattern << " in " << text;
            ASSERT_EQ(hit.index, index) << pattern << " in " << text;
        }
    }
}

TEST(StringModel, Pieces_are_those_between_the_finds) {
    Random random(3);
    UtilsString piece;
    for (int round = 0; round < 60000; ++round) {
        std::string const text = Letters(random, 12);
        std::string const separator = Letters(random, 3);
        StringModel model;
        model.Text() = text;
        UtilsString const string(text);
        for (unsigned long i = 0; i < 3; ++i) {
            int const keepFront = Bool(random);
            auto const wanted = model.Parse(separator, i, keepFront == 1);
            ASSERT_EQ(wanted.has_value(), string.ParseString(separator, piece, i, keepFront) == 1);
            ASSERT_EQ(wanted.value_or(""), TextOf(piece)) << i << separator << " in " << text;
        }
    }
}

TEST(StringModel, Fast_pieces_go_on_from_the_last_one) {
    Random random(4);
    UtilsString piece;
    for (int round = 0; round < 60000; ++round) {
        std::string const separator = Letters(random, 3);
        StringModel model;
        model.Text() = Letters(random, 12);
        UtilsString string(model.Text());
        auto wanted = model.ParseFirstFast(separator);
        int more = string.ParseFirstStringFast(separator, piece);
        for (int i = 0; i < 15; ++i) {
            ASSERT_EQ(wanted.has_value(), more == 1) << separator << " in " << model.Text();
            ASSERT_EQ(wanted.value_or(""), TextOf(piece)) << separator << " in " << model.Text();
            if (!more)
                break;
            wanted = model.ParseNextFast(separator);
            more = string.ParseNextStringFast(separator, piece);
        }
    }
}

TEST(StringModel, Replacements_are_made_one_by_one_from_the_start) {
    Random random(5);
    int made = 0;
    for (int round = 0; round < 60000; ++round) {
        std::string const find = Letters(random, 4);
        std::string const with = Letters(random, 4);
        StringModel model;
        model.Text() = Letters(random, 14);
        std::string const text = model.Text();
        model.caseMode = Bool(random);
        auto const replaced = model.ReplaceAll(find, with);
        if (!replaced)
            continue; // it would grow without end
        made += *replaced;
        OpenString string(text);
        string.SetCase(model.caseMode);
        ASSERT_EQ(*replaced, string.ReplaceAll(find, with) == 1) << find << " in " << text;
        ASSERT_EQ(model.Text(), TextOf(string)) << find << " by " << with << " in " << text;
        ASSERT_EQ(model.lastReplaceIndex, string.lastReplaceIndex);
    }
    EXPECT_LT(15000, made);
}

TEST(StringModel, Splits_give_the_pieces_that_hold_something) {
    Random random(6);
    for (int round = 0; round < 40000; ++round) {
        std::string const separator = Letters(random, 3);
        std::string const text = Letters(random, 14);
        unsigned long const count = 1 + random() % 4;
        int const append = Bool(random);
        UtilsString source(text);
        OpenString string("x", count);
        StringModel model;
        model.strings.assign(count, "x");
        model.current = static_cast<unsigned long>(random() % count);
        string.SetCurrentString(model.current);
        string.SplitData(source, UtilsString(separator), append);
        model.SplitData(text, 1, separator, append == 1);
        ASSERT_EQ(model.strings, TextsOf(string)) << separator << " in " << text;
        ASSERT_EQ(model.current, string.currentString) << separator << " in " << text;
    }
}

// The wildcard matcher against its three-way definition.
#include "attached.h"
#include "mirror_search.h"
#include "searches.h"
#include "twin.h"

#include <gtest/gtest.h>

#include <chrono>

namespace {

std::string Word(Chance &dice, char const *letters, std::size_t count, std::size_t longest) {
    std::string word;
    for (std::size_t length = dice.Below(longest + 1); length > 0; --length)
        word += letters[dice.Below(count)];
    return word;
}

struct Entry {
    unsigned long id;
    std::string name;
};

std::vector<Entry> AddNames(Attached &db, Chance &dice, char const *letters, std::size_t count) {
    std::vector<Entry> entries;
    while (entries.size() < 250) {
        std::string const name = Word(dice, letters, count, 9);
        if (!name.empty())
            entries.push_back({db.Add(name.c_str(), OBJ_FILE)->GetUniqueID(), name});
    }
    return entries;
}

// The names that a round's patterns are tried on change from round to round.
std::size_t CompareRound(std::uint32_t seed, char const *nameLetters, std::size_t names,
                         char const *patternLetters, std::size_t patterns) {
    Attached db;
    Chance dice(seed);
    std::vector<Entry> const entries = AddNames(db, dice, nameLetters, names);
    std::size_t hits = 0;
    for (int round = 0; round < 250; ++round) {
        std::string const pattern = Word(dice, patternLetters, patterns, 8);
        Ids told;
        for (Entry const &entry : entries)
            if (mirror::NameFits(pattern, entry.name))
                told.push_back(entry.id);
        EXPECT_EQ(FindObjects(db.Get(), pattern, allTypes), told) << pattern;
        hits += told.size();
        if (testing::Test::HasFailure())
            break;
    }
    return hits;
}

TEST(Wildcards, Random_patterns_over_two_letters_match_as_the_three_ways_do) {
    std::size_t hits = 0;
    for (std::uint32_t seed = 1; seed <= 5; ++seed)
        hits += CompareRound(seed, "ab", 2, "ab*?", 4);
    EXPECT_GT(hits, 10000u);
}

TEST(Wildcards, Random_patterns_with_dots_and_case_match_as_the_three_ways_do) {
    std::size_t hits = 0;
    for (std::uint32_t seed = 11; seed <= 15; ++seed)
        hits += CompareRound(seed, "aAb.", 4, "aAb.**?", 7);
    EXPECT_GT(hits, 10000u);
}

TEST(Wildcards, Random_patterns_over_odd_characters_match_as_the_three_ways_do) {
    std::size_t hits = 0;
    for (std::uint32_t seed = 21; seed <= 23; ++seed)
        hits += CompareRound(seed, "*?\xc4\xe4[@", 6, "*?\xc4\xe4[@*?", 8);
    EXPECT_GT(hits, 5000u);
}

TEST(Wildcards, Patterns_that_begin_like_an_extension_match_as_told) {
    Attached db;
    Chance dice(31);
    std::vector<Entry> const entries = AddNames(db, dice, "abB.", 4);
    for (int round = 0; round < 400; ++round) {
        std::string const pattern = "*." + Word(dice, "abB.?*", 6, 4);
        Ids told;
        for (Entry const &entry : entries)
            if (mirror::NameFits(pattern, entry.name))
                told.push_back(entry.id);
        ASSERT_EQ(FindObjects(db.Get(), pattern, allTypes), told) << pattern;
    }
}

// Trying all ways would take longer than anyone lives.
TEST(Wildcards, Hostile_patterns_take_no_longer_than_pattern_times_name) {
    Attached db;
    std::string const name(250, 'a');
    for (int i = 0; i < 100; ++i)
        db.Add(name.c_str(), OBJ_FILE);
    auto const start = std::chrono::steady_clock::now();
    std::string pairs;
    for (int i = 0; i < 45; ++i)
        pairs += "a*";
    EXPECT_EQ(FindObjects(db.Get(), std::string(90, '*') + "b", allTypes), Ids{});
    EXPECT_EQ(FindObjects(db.Get(), pairs + "b", allTypes), Ids{});
    EXPECT_EQ(FindObjects(db.Get(), "*" + std::string(90, '?') + "*b", allTypes), Ids{});
    EXPECT_EQ(FindObjects(db.Get(), std::string(90, '*'), allTypes).size(), 100u);
    EXPECT_EQ(FindObjects(db.Get(), pairs, allTypes).size(), 100u);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

} // namespace

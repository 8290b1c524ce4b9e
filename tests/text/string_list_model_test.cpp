// Lists of strings against plain vectors: random operations, sorts, insertions, splits.
#include "open_string.h"

#include <algorithm>
#include <memory>
#include <random>

#include <gtest/gtest.h>

#include "sort_model.h"
#include "string_model.h"

using UTILS::NOT_FOUND_INDEX;
using UTILS::UtilsString;
using UTILS::UtilsStringList;
using Texts = std::vector<std::string>;

namespace {

using Random = std::mt19937;

std::string Letters(Random &random, std::size_t limit) {
    static char const letters[] = {'a', 'b', 'A', ';', '_'};
    std::string text(random() % limit, ' ');
    for (char &letter : text)
        letter = letters[random() % sizeof letters];
    return text;
}

int Order(std::string const &a, std::string const &b, int caseMode = 1) {
    return text_model::Compare(text_model::Kind::Text, a, b, caseMode, 0);
}

bool Less(std::string const &a, std::string const &b) { return Order(a, b) < 0; }

Texts RandomTexts(Random &random, std::size_t count, std::size_t length) {
    Texts texts(count);
    for (std::string &text : texts)
        text = Letters(random, length);
    return texts;
}

UtilsStringList Of(Texts const &texts, int caseMode = 1) {
    UtilsStringList list;
    for (auto text = texts.rbegin(); text != texts.rend(); ++text)
        list.AddString(*text);
    list.SetCase(caseMode);
    return list;
}

// Each text as its rank, marked with where it was.
Numbers Ranked(Texts const &texts, int caseMode) {
    Numbers numbers;
    for (std::string const &text : texts) {
        auto const below = std::count_if(texts.begin(), texts.end(), [&](auto const &other) {
            return Order(other, text, caseMode) < 0;
        });
        numbers.push_back({static_cast<int>(below), static_cast<int>(numbers.size())});
    }
    return numbers;
}

void ExpectSortedLike(Numbers (*model)(Numbers), unsigned algorithm, std::size_t count,
                      int rounds) {
    Random random(algorithm + 1);
    for (int round = 0; round < rounds; ++round) {
        Texts const texts = RandomTexts(random, 2 + random() % count, 4);
        int const caseMode = round % 2;
        UtilsStringList list = Of(texts, caseMode);
        list.Sort(algorithm);
        Texts wanted;
        for (Number const &number : model(Ranked(texts, caseMode)))
            wanted.push_back(texts[static_cast<std::size_t>(number.mark)]);
        ASSERT_EQ(wanted, TextsOf(list)) << "round " << round;
    }
}

// The strings that a split leaves.
Texts Split(Texts strings, StringModel text, std::string const &separator, bool append) {
    std::size_t const oldCount = strings.size();
    std::size_t slot = 0;
    bool stored = false;
    for (auto piece = text.ParseFirstFast(separator); piece;
         piece = text.ParseNextFast(separator)) {
        if (piece->empty())
            continue;
        stored = true;
        if (append || slot >= oldCount) {
            strings.insert(strings.begin(), *piece);
            slot = std::max<std::size_t>(slot, 1);
        } else {
            strings[slot++] = *piece;
        }
    }
    if (!append && stored && slot < oldCount)
        strings.resize(slot);
    return strings;
}

} // namespace

TEST(StringListModel, Sorts_exchange_as_told) {
    ExpectSortedLike(SelectionSorted, 1, 30, 400);
    ExpectSortedLike(ShellSorted, 2, 40, 400);
    ExpectSortedLike(QuickSorted, 3, 40, 400);
    ExpectSortedLike(QuickSorted, 4, 40, 400);
}

TEST(StringListModel, The_sort_is_picked_by_the_size) {
    Random random(7);
    struct Case {
        std::size_t size;
        Numbers (*model)(Numbers);
    };
    for (auto const &[size, model] : {Case{512, SelectionSorted},
                                      {513, QuickSorted},
                                      {1024, QuickSorted},
                                      {1025, QuickSorted}}) {
        Texts const texts = RandomTexts(random, size, 4);
        UtilsStringList list = Of(texts, 0);
        list.Sort(0);
        Texts wanted;
        for (Number const &number : model(Ranked(texts, 0)))
            wanted.push_back(texts[static_cast<std::size_t>(number.mark)]);
        EXPECT_EQ(wanted, TextsOf(list)) << size;
    }
}

TEST(StringListModel, Sorted_insertions_keep_the_order) {
    Random random(8);
    for (int round = 0; round < 100; ++round) {
        Texts texts = RandomTexts(random, random() % 60, 4);
        UtilsStringList list = Of(texts);
        for (int i = 0; i < 40; ++i) {
            texts.push_back(Letters(random, 4));
            list.AddStringSorted(texts.back());
            std::sort(texts.begin(), texts.end(), Less);
            ASSERT_EQ(texts, TextsOf(list)) << "round " << round;
        }
    }
}

TEST(StringListModel, Searches_find_the_first_and_those_behind_it) {
    Random random(9);
    for (int round = 0; round < 2000; ++round) {
        Texts texts = RandomTexts(random, 1 + random() % 80, 3);
        UtilsStringList list = Of(texts);
        std::string const item = Letters(random, 3);
        auto const find = [&] {
            auto const at = std::find(texts.begin(), texts.end(), item);
            return at == texts.end() ? NOT_FOUND_INDEX
                                     : static_cast<unsigned long>(at - texts.begin());
        };
        ASSERT_EQ(find(), list.SearchList(item, 0, random() % 3));
        std::sort(texts.begin(), texts.end(), Less);
        unsigned long const first = find();
        ASSERT_EQ(first, list.SearchList(item, 1, 0)) << "round " << round;
        unsigned long const second = first + 1;
        if (first == NOT_FOUND_INDEX || second == texts.size())
            continue;
        ASSERT_EQ(texts[second] == item ? second : NOT_FOUND_INDEX, list.SearchList(item, 1, 1));
    }
}

TEST(StringListModel, Splits_are_those_of_the_fast_pieces) {
    Random random(10);
    for (int round = 0; round < 15000; ++round) {
        Texts const texts = RandomTexts(random, random() % 5, 3);
        StringModel text;
        text.Text() = Letters(random, 12);
        text.caseMode = static_cast<int>(random() % 2);
        std::string const separator = Letters(random, 3);
        bool const append = random() % 2 != 0;
        UtilsStringList list = Of(texts);
        list.SplitData(text.Text(), separator, append, 0, text.caseMode);
        ASSERT_EQ(Split(texts, text, separator, append), TextsOf(list))
            << separator << " in " << text.Text();
    }
}

TEST(StringListModel, Operations_in_any_order_do_what_a_vector_does) {
    Random random(11);
    UtilsStringList list;
    Texts texts;
    for (int step = 0; step < 30000; ++step) {
        std::string const text = Letters(random, 4);
        auto const size = static_cast<unsigned long>(texts.size());
        unsigned long const index = size == 0 ? 0 : static_cast<unsigned long>(random() % size);
        switch (random() % 8) {
        case 0:
        case 1:
            list.AddString(text);
            texts.insert(texts.begin(), text);
            break;
        case 2:
            if (size > 90)
                list.RemoveAllStrings(), texts.clear();
            break;
        case 3:
            if (size != 0) {
                list.RemoveString(index);
                texts.erase(texts.begin() + static_cast<std::ptrdiff_t>(index));
            }
            break;
        case 4:
            if (size != 0) {
                list[index] += text;
                texts[index] += text;
            }
            break;
        case 5:
            if (size != 0) {
                list[index] = UtilsString(text);
                texts[index] = text;
            }
            break;
        case 6:
            ASSERT_EQ(size == 0, !list != 0);
            list.AddString(text);
            texts.insert(texts.begin(), text);
            if (step % 50 == 0) {
                list.Sort(0);
                std::sort(texts.begin(), texts.end(), Less);
            }
            break;
        default:
            if (size != 0) {
                ASSERT_EQ(texts[index], list.Retrieve(index));
            }
        }
        ASSERT_EQ(texts.size(), list.GetNumberOfStrings());
        if (step % 20 == 0) {
            ASSERT_EQ(texts, TextsOf(list)) << "step " << step;
        }
    }
}

// Copies of maps, and maps against a plain vector.
#include "open_map.h"

#include <random>
#include <type_traits>

using UTILS::MapObject;

namespace {

// What a map is to be: pairs and the anchor's index.
struct Model {
    Pairs pairs;
    int anchor = -1;

    void AddToTail(int key, std::string const &value) {
        if (pairs.empty())
            anchor = 0;
        else if (pairs.size() % 2 == 1 && anchor < static_cast<int>(pairs.size()))
            ++anchor;
        pairs.emplace_back(key, value);
    }
    void RemoveFromHead() {
        if (pairs.empty())
            return;
        int const last = static_cast<int>(pairs.size()) - 1;
        if (pairs.size() % 2 == 0 && anchor < last)
            ++anchor;
        // Indexes fall by one; an anchor on the node removed goes to the next.
        anchor = last == 0 ? -1 : anchor == 0 ? 0 : anchor - 1;
        pairs.erase(pairs.begin());
    }
};

} // namespace

TEST(MapCopy, Takes_pairs_and_settings) {
    OpenMap<char> source(1, 0), copy;
    source.smartThreshold = 9;
    source.searchDirection = 2;
    source.reserved[0] = 3;
    source.reserved[1] = 4;
    source.reserved[2] = 5;
    source.flag = 6;
    Fill(source, 5);
    Fill(copy, 3);
    MapObject<int, char> &target = copy;
    target = source;
    EXPECT_EQ(Contents(copy), Contents(source));
    EXPECT_EQ(copy.listSize, 5u);
    EXPECT_EQ(copy.Anchor(), 2);
    EXPECT_EQ(copy.smartThreshold, 9u);
    EXPECT_EQ(copy.searchDirection, 2);
    EXPECT_EQ(copy.reserved[0], 3u);
    EXPECT_EQ(copy.reserved[1], 4u);
    EXPECT_EQ(copy.reserved[2], 5u);
    EXPECT_EQ(copy.flag, 6);
    EXPECT_EQ(copy.caseMode, 0);
    EXPECT_EQ(copy.listAllocationScheme, 1);
}

TEST(MapCopy, Is_independent_of_its_source) {
    OpenMap<char> source, copy;
    Fill(source, 2);
    static_cast<MapObject<int, char> &>(copy) = source;
    source.listHead->RetrieveVal()[0] = 'X';
    source.RemoveAll();
    EXPECT_EQ(Contents(copy), (Pairs{{0, "0"}, {1, "1"}}));
}

TEST(MapCopy, Of_a_borrowing_map_borrows_too) {
    int key = 1;
    char value[] = "abc";
    OpenMap<char> source(0, 1), copy;
    source.AddToTail(&key, value, 0, 0);
    static_cast<MapObject<int, char> &>(copy) = source;
    EXPECT_EQ(copy.listAllocationScheme, 0);
    EXPECT_EQ(copy.listHead->RetrieveKey(), &key);
    EXPECT_EQ(copy.listHead->RetrieveVal(), value);
}

TEST(MapCopy, Keeps_the_sizes_of_its_source) {
    int keys[] = {1, 2};
    char value[] = "a\0b";
    OpenMap<char> source, copy;
    source.AddToTail(keys, value, 2, 3);
    static_cast<MapObject<int, char> &>(copy) = source;
    EXPECT_EQ(copy.listHead->GetSizeOfKeyData(), 2u);
    EXPECT_EQ(copy.listHead->GetSizeOfValData(), 3u);
    EXPECT_EQ(copy.listHead->RetrieveVal()[2], 'b');
}

TEST(MapCopy, Of_an_empty_map_is_empty) {
    OpenMap<char> source, copy;
    Fill(copy, 3);
    static_cast<MapObject<int, char> &>(copy) = source;
    EXPECT_EQ(copy.IsEmpty(), 1);
    EXPECT_EQ(copy.listSize, 0u);
}

TEST(MapCopy, Keeps_null_data) {
    OpenMap<char> source, copy;
    source.AddToTail(nullptr, nullptr, 0, 0);
    static_cast<MapObject<int, char> &>(copy) = source;
    ASSERT_EQ(copy.listSize, 1u);
    EXPECT_EQ(copy.listHead->RetrieveKey(), nullptr);
    EXPECT_EQ(copy.listHead->RetrieveVal(), nullptr);
}

TEST(MapCopy, Into_itself_changes_nothing) {
    OpenMap<char> map;
    Fill(map, 3);
    auto *const head = map.listHead;
    MapObject<int, char> const &same = map;
    static_cast<MapObject<int, char> &>(map) = same;
    EXPECT_EQ(map.listHead, head);
    EXPECT_EQ(Contents(map).size(), 3u);
}

TEST(MapCopy, Is_made_by_assignment_only) {
    EXPECT_FALSE((std::is_copy_constructible_v<MapObject<int, char>>));
}

TEST(MapCopy, Maps_tell_their_class) {
    MapObject<int, char> const text;
    MapObject<int, unsigned char> const bytes;
    EXPECT_STREQ(text.derived_class(), "class UTILS::MapObject<int, char>");
    EXPECT_STREQ(bytes.derived_class(), "class UTILS::MapObject<int, unsigned char>");
}

TEST(MapCopy, Maps_of_bytes_and_objects_are_filled_and_copied) {
    int key = 1;
    unsigned char bytes[] = {0, 1, 2};
    OpenMap<unsigned char> byteMap, byteCopy;
    byteMap.AddToTail(&key, bytes, 0, 3);
    static_cast<MapObject<int, unsigned char> &>(byteCopy) = byteMap;
    EXPECT_EQ(byteCopy.listHead->GetSizeOfValData(), 3u);
    EXPECT_EQ(byteCopy.listHead->RetrieveVal()[2], 2);
    Word word("a");
    OpenMap<Word> map, copy;
    map.AddToTail(&key, &word, 0, 0);
    static_cast<MapObject<int, Word> &>(copy) = map;
    EXPECT_EQ(copy.listHead->RetrieveVal()->text, "a");
    EXPECT_NE(copy.listHead->RetrieveVal(), map.listHead->RetrieveVal());
}

TEST(MapCopy, Random_operations_leave_a_map_like_a_vector) {
    std::mt19937 random(41);
    OpenMap<char> map;
    Model model;
    for (int step = 0; step < 30000 && !testing::Test::HasFailure(); ++step) {
        auto const choice = random() % 1000;
        bool const grow = step / 500 % 2 == 0;
        if (choice == 0) {
            map.RemoveAll();
            model = Model();
        } else if (choice < 5) {
            OpenMap<char> copy;
            static_cast<MapObject<int, char> &>(copy) = map;
            static_cast<MapObject<int, char> &>(map) = copy;
            Model again;
            for (auto const &pair : model.pairs)
                again.AddToTail(pair.first, pair.second);
            model = again;
        } else if (choice < (grow ? 650 : 350) && model.pairs.size() < 300) {
            int const key = static_cast<int>(random() % 10);
            Add(map, key, std::to_string(step));
            model.AddToTail(key, std::to_string(step));
        } else {
            map.RemoveFromHead();
            model.RemoveFromHead();
        }
        ASSERT_EQ(map.Anchor(), model.anchor) << "step " << step;
        ASSERT_EQ(Contents(map), model.pairs) << "step " << step;
    }
}

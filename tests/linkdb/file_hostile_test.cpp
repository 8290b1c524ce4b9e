// Files with something wrong in them: what must survive survives, and nothing breaks.
#include <gtest/gtest.h>

#include "graph_compare.h"
#include "session.h"

namespace {

// A small file with all that a record can have.
image::File SmallFile() {
    image::File file;
    file.stamp = OwnStamp();
    image::Object root;
    root.id = 1;
    root.type = PERSISTENT_BIT;
    image::Object first;
    first.id = 2;
    first.type = OBJ_FILE | PERSISTENT_BIT;
    first.flags = 0x10;
    first.name = "first";
    first.from = {1, 2 | LINK_ENTRY_TRANSIENT};
    first.fromBits = LINK_LIST_BLOCKED;
    image::Object second;
    second.id = 3;
    second.type = OBJ_FILE | PERSISTENT_BIT;
    second.name = "2nd";
    second.to = {1};
    second.data = {0xd0, 0xd1, 0xd2};
    image::Object third;
    third.id = 5;
    third.type = OBJ_VFILE;
    third.to = {2 | LINK_ENTRY_TRANSIENT};
    file.objects = {root, first, second, third};
    file.links = {{1, 2, 3, 8 | PERSISTENT_BIT}, {2, 2, 5, 8}};
    return file;
}

// Loads the bytes, compares with the model, works a little with the result, and lets go.
testing::AssertionResult LoadsAsTold(TempFolder const &folder, Bytes const &bytes) {
    WriteBytes(folder.DatabaseFile(), bytes);
    Session session(folder);
    session->SetSaveFlag(0);
    model::Graph graph = model::Graph::Load(bytes, OwnStamp());
    if (testing::AssertionResult const same = SameGraph(session.Get(), graph); !same)
        return same;
    CQVUObject *const added = session.Add("new", OBJ_FILE, persistent);
    std::uint32_t const id = graph.AddObject("new", OBJ_FILE, 0, {}, true);
    if ((added ? added->dwID : 0) != id)
        return testing::AssertionFailure() << "next id isn't " << id;
    if (added && session.Object(2)) {
        added->LinkTo(session.Object(2), 4);
        graph.LinkTo(id, 2, 4);
        session->DeleteObject(2);
        graph.DeleteObject(2);
    }
    return SameGraph(session.Get(), graph);
}

class Hostile : public testing::Test {
protected:
    TempFolder folder;
    Bytes const good = image::Write(SmallFile());

    Bytes Foreign() const {
        Bytes bytes = good;
        image::SetStamp(bytes, image::Foreign(OwnStamp()));
        return bytes;
    }
};

} // namespace

TEST_F(Hostile, The_small_file_itself_loads_whole_in_both_ways) {
    EXPECT_EQ(model::Graph::Load(good, OwnStamp()).objects.size(), 4u);
    EXPECT_EQ(model::Graph::Load(Foreign(), OwnStamp()).links.size(), 1u);
    EXPECT_TRUE(LoadsAsTold(folder, good));
    EXPECT_TRUE(LoadsAsTold(folder, Foreign()));
}

TEST_F(Hostile, Every_truncation_is_ignored_by_its_length_word) {
    for (std::size_t size = 0; size < good.size(); ++size) {
        Bytes const cut(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(size));
        WriteBytes(folder.DatabaseFile(), cut);
        Session session(folder);
        EXPECT_TRUE(SameGraph(session.Get(), model::Graph())) << "cut to " << size;
    }
}

TEST_F(Hostile, Every_truncation_with_a_true_length_word_keeps_the_records_before_it) {
    for (Bytes const &whole : {good, Foreign()})
        for (std::size_t size = 4; size < whole.size(); ++size) {
            Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
            image::FixLength(cut);
            EXPECT_TRUE(LoadsAsTold(folder, cut)) << "cut to " << size;
        }
}

TEST_F(Hostile, Every_flipped_bit_and_byte_loads_as_told) {
    for (Bytes const &whole : {good, Foreign()})
        for (std::size_t at = 0; at < whole.size(); ++at)
            for (unsigned const flip : {1u, 2u, 4u, 8u, 16u, 32u, 64u, 128u, 255u}) {
                Bytes flipped = whole;
                flipped[at] = static_cast<std::uint8_t>(flipped[at] ^ flip);
                EXPECT_TRUE(LoadsAsTold(folder, flipped)) << "byte " << at << " by " << flip;
            }
}

TEST_F(Hostile, Every_word_set_to_an_extreme_loads_as_told) {
    for (Bytes const &whole : {good, Foreign()})
        for (std::size_t at = 4; at + 4 <= whole.size(); ++at)
            for (std::uint32_t const extreme : {0x3fffffffu, 0x80000000u, 0xffffffffu}) {
                Bytes changed = whole;
                image::SetWord(changed, at, extreme);
                EXPECT_TRUE(LoadsAsTold(folder, changed))
                    << "word at " << at << " set to " << std::hex << extreme;
            }
}

TEST_F(Hostile, More_objects_told_than_there_are_keeps_the_objects_and_no_link) {
    Bytes bytes = good;
    bytes.resize(bytes.size() - 2 * 16); // no links
    image::SetWord(bytes, image::objectCountAt, 0xffffffff);
    image::FixLength(bytes);
    EXPECT_TRUE(LoadsAsTold(folder, bytes));
    WriteBytes(folder.DatabaseFile(), bytes);
    Session session(folder);
    EXPECT_NE(session->LookupObject(5), nullptr);
}

TEST_F(Hostile, More_links_told_than_there_are_keeps_those_that_are_there) {
    Bytes bytes = good;
    image::SetWord(bytes, image::linkCountAt, 0xffffffff);
    WriteBytes(folder.DatabaseFile(), bytes);
    Session session(folder);
    EXPECT_NE(session->LookupObject(5), nullptr);
    EXPECT_NE(session->LookupLink(1), nullptr);
    EXPECT_NE(session->LookupLink(2), nullptr);
}

TEST_F(Hostile, An_object_short_at_its_fixed_bytes_keeps_those_before_and_no_link) {
    for (std::size_t const size : {1u, 25u}) {
        image::File file = SmallFile();
        file.links.clear();
        Bytes bytes = image::Write(file);
        bytes.resize(bytes.size() + size);
        image::SetWord(bytes, image::objectCountAt, 5);
        image::SetWord(bytes, image::linkCountAt, 1);
        image::FixLength(bytes);
        WriteBytes(folder.DatabaseFile(), bytes);
        Session session(folder);
        EXPECT_NE(session->LookupObject(2), nullptr);
        EXPECT_NE(session->LookupObject(5), nullptr);
        EXPECT_EQ(session->LookupLink(0), nullptr);
        EXPECT_EQ(session->MakeNewLink(1, 1, 1, 0)->dwID, 1u);
    }
}

TEST_F(Hostile, A_hundred_thousand_records_of_one_id_load_in_good_time) {
    image::File file;
    file.stamp = OwnStamp();
    image::Object object;
    object.id = 7;
    object.type = OBJ_VFILE;
    object.name = "again";
    file.objects.assign(100000, object);
    WriteBytes(folder.DatabaseFile(), image::Write(file));
    Session session(folder);
    ASSERT_NE(session->LookupObject(7), nullptr);
    EXPECT_EQ(session.Add("next", OBJ_FILE, transient)->GetUniqueID(), 8u);
}

TEST_F(Hostile, Ids_scattered_over_the_whole_range_load_and_come_in_order) {
    image::File file;
    file.stamp = OwnStamp();
    std::uint32_t id = 1;
    for (int i = 0; i < 20000; ++i) {
        image::Object object;
        object.id = id;
        object.type = OBJ_FILE;
        object.name = "x";
        file.objects.push_back(object);
        file.links.push_back({id, id, id, 2});
        id = id * 1664525u + 1013904223u;
    }
    WriteBytes(folder.DatabaseFile(), image::Write(file));
    Session session(folder);
    for (image::Object const &object : file.objects)
        ASSERT_NE(session->LookupObject(object.id), nullptr);
    session->Flush();
    image::File const written = FileIn(folder);
    EXPECT_EQ(written.objects.size(), file.objects.size());
    for (std::size_t i = 1; i < written.objects.size(); ++i)
        ASSERT_LT(written.objects[i - 1].id, written.objects[i].id);
    for (std::size_t i = 1; i < written.links.size(); ++i)
        ASSERT_LT(written.links[i - 1].id, written.links[i].id);
}

TEST_F(Hostile, One_object_with_a_million_entries_that_name_nothing_is_walked_and_deleted) {
    image::File file = SmallFile();
    file.objects[1].from.assign(1000000, 77);
    WriteBytes(folder.DatabaseFile(), image::Write(file));
    Session session(folder);
    CQVULink *link = nullptr;
    EXPECT_EQ(session.Object(2)->FindFirstLinkFrom(0xffffffff, &link), 0u);
    EXPECT_EQ(session.Object(2)->Delete(), 1);
}

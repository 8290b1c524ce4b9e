// Files made by hand, as no database would write them.
#include <gtest/gtest.h>

#include "graph_compare.h"
#include "session.h"

namespace {

using Entries = std::vector<std::uint32_t>;
constexpr std::uint32_t persistentFile = OBJ_FILE | PERSISTENT_BIT;

class FileRead : public testing::Test {
protected:
    TempFolder folder;
    std::optional<Session> session;
    image::File file{OwnStamp(), {}, {}};

    void AddObject(std::uint32_t id, std::uint32_t type, char const *name, Entries from = {},
                   Entries to = {}) {
        image::Object object;
        object.id = id;
        object.type = type;
        object.name = name;
        object.from = std::move(from);
        object.to = std::move(to);
        file.objects.push_back(object);
    }
    void LoadBytes(Bytes const &bytes) {
        session.reset();
        WriteBytes(folder.DatabaseFile(), bytes);
        session.emplace(folder);
    }
    void Load() { LoadBytes(image::Write(file)); }
    void LoadAsOther() {
        file.stamp = image::Foreign(OwnStamp());
        Load();
    }
    DBObject *Object(unsigned long id) { return (*session)->LookupObject(id); }
    DBLink *Link(unsigned long id) { return (*session)->LookupLink(id); }
    // A database as one without a file.
    void ExpectFresh() {
        EXPECT_TRUE(SameGraph(session->Get(), model::Graph()));
        EXPECT_EQ(session->Add("next", OBJ_FILE, transient)->GetUniqueID(), 2u);
    }
};

} // namespace

TEST_F(FileRead, A_file_of_three_bytes_or_none_gives_an_empty_database) {
    for (std::size_t size = 0; size < 4; ++size) {
        LoadBytes(Bytes(size));
        ExpectFresh();
    }
}

TEST_F(FileRead, A_length_word_that_is_one_off_gives_an_empty_database) {
    AddObject(5, OBJ_FILE, "five");
    Bytes const good = image::Write(file);
    LoadBytes(good);
    EXPECT_NE(Object(5), nullptr);
    for (int const by : {-1, 1}) {
        Bytes bytes = good;
        image::SetWord(bytes, 0, image::WordAt(bytes, 0) + static_cast<std::uint32_t>(by));
        LoadBytes(bytes);
        ExpectFresh();
    }
}

TEST_F(FileRead, A_zero_length_word_as_a_broken_write_leaves_it_gives_an_empty_database) {
    AddObject(5, OBJ_FILE, "five");
    Bytes bytes = image::Write(file);
    image::SetWord(bytes, 0, 0);
    LoadBytes(bytes);
    ExpectFresh();
}

TEST_F(FileRead, A_byte_too_many_at_the_end_gives_an_empty_database) {
    AddObject(5, OBJ_FILE, "five");
    Bytes bytes = image::Write(file);
    bytes.push_back(0);
    LoadBytes(bytes);
    ExpectFresh();
}

TEST_F(FileRead, A_byte_too_many_that_the_length_word_knows_of_does_no_harm) {
    AddObject(5, OBJ_FILE, "five");
    Bytes bytes = image::Write(file);
    bytes.push_back(0);
    image::FixLength(bytes);
    LoadBytes(bytes);
    EXPECT_NE(Object(5), nullptr);
}

TEST_F(FileRead, A_short_header_gives_an_empty_database) {
    for (std::size_t size = 4; size < 28; ++size) {
        Bytes bytes = image::Write(file);
        bytes.resize(size);
        image::FixLength(bytes);
        LoadBytes(bytes);
        ExpectFresh();
    }
}

TEST_F(FileRead, Another_magic_gives_an_empty_database) {
    AddObject(5, OBJ_FILE, "five");
    Bytes const good = image::Write(file);
    for (std::uint32_t const magic : {0u, 4103u, 4105u, 4104u + 65536u}) {
        Bytes bytes = good;
        image::SetWord(bytes, image::magicAt, magic);
        LoadBytes(bytes);
        ExpectFresh();
    }
}

TEST_F(FileRead, A_file_without_records_gives_a_root_and_fresh_counters) {
    Load();
    ExpectFresh();
}

TEST_F(FileRead, A_missing_root_is_made_anew_below_the_kept_ids) {
    AddObject(9, OBJ_FILE, "nine");
    Load();
    ASSERT_NE(Object(1), nullptr);
    EXPECT_EQ(Object(1)->dwType, PERSISTENT_BIT);
    EXPECT_EQ(session->Add("next", OBJ_FILE, transient)->GetUniqueID(), 10u);
}

TEST_F(FileRead, Zero_entries_stay_for_the_writer_and_go_for_others) {
    AddObject(2, persistentFile, "two", {0, 7, LINK_ENTRY_TRANSIENT, 0}, {0});
    Load();
    EXPECT_EQ(LinksFrom(Object(2)), (Entries{0, 7, LINK_ENTRY_TRANSIENT, 0}));
    EXPECT_EQ(Object(2)->dwLinksFrom, 4u | LINK_LIST_BLOCKED);
    EXPECT_EQ(LinksTo(Object(2)), Entries{0});
    LoadAsOther();
    EXPECT_EQ(LinksFrom(Object(2)), Entries{7});
    EXPECT_EQ(Object(2)->dwLinksFrom, 1u);
    EXPECT_EQ(Object(2)->dwLinksTo, 0u);
    EXPECT_EQ(Object(2)->pdwLinksTo, nullptr);
}

TEST_F(FileRead, Top_bits_of_other_entries_stay_as_read) {
    AddObject(2, persistentFile, "two", {7, 0x40000008, 0x80000009, 0xc000000a});
    LoadAsOther();
    EXPECT_EQ(LinksFrom(Object(2)), (Entries{7, 0x40000008, 0x80000009, 0xc000000a}));
}

TEST_F(FileRead, Only_an_entry_free_of_both_top_bits_keeps_an_object_for_others) {
    AddObject(2, persistentFile, "two", {0x40000007}, {0x80000008});
    AddObject(3, persistentFile, "three", {0xc0000007}, {0});
    AddObject(4, persistentFile, "four", {0x40000007}, {0x40000008, 9});
    AddObject(5, OBJ_FILE, "five", {9});
    LoadAsOther();
    EXPECT_EQ(Object(2), nullptr);
    EXPECT_EQ(Object(3), nullptr);
    EXPECT_NE(Object(4), nullptr);
    EXPECT_EQ(Object(5), nullptr);
}

TEST_F(FileRead, Top_bits_of_the_count_words_mean_nothing) {
    AddObject(2, OBJ_FILE, "two", {7}, {8, 9});
    file.objects[0].fromBits = 0xc0000000;
    file.objects[0].toBits = 0x80000000;
    AddObject(3, OBJ_FILE, "three");
    file.objects[1].fromBits = 0xc0000000;
    Load();
    EXPECT_EQ(Object(2)->dwLinksFrom, 1u);
    EXPECT_EQ(Object(2)->dwLinksTo, 2u | LINK_LIST_BLOCKED);
    EXPECT_EQ(Object(3)->dwLinksFrom, 0u);
}

TEST_F(FileRead, A_loaded_list_has_room_up_to_its_next_multiple_of_ten) {
    for (std::size_t const count : {1u, 2u, 9u, 10u, 11u, 20u}) {
        file.objects.clear();
        AddObject(2, OBJ_FILE, "two", Entries(count, 7));
        Load();
        CQVUObject *const object = session->Object(2);
        std::uint32_t const *const before = object->pdwLinksFrom;
        object->LinkTo((*session)->GetRootObject(), 2);
        bool const inPlace = count > 1 && count % 10 != 0;
        if (inPlace) {
            EXPECT_EQ(object->pdwLinksFrom, before) << count;
        }
        EXPECT_EQ(object->dwLinksFrom & LINK_ENTRY_ID_MASK, count + 1);
        Entries expected(count, 7);
        expected.push_back(1 | LINK_ENTRY_TRANSIENT);
        EXPECT_EQ(LinksFrom(object), expected);
    }
}

TEST_F(FileRead, Transient_links_are_kept_for_the_writer_only) {
    file.links = {{3, 1, 1, 2}, {4, 1, 1, 2 | PERSISTENT_BIT}, {9, 1, 1, 2}};
    Load();
    EXPECT_TRUE(Link(3) && Link(4) && Link(9));
    EXPECT_EQ((*session)->MakeNewLink(1, 1, 1, 0)->dwID, 10u);
    LoadAsOther();
    EXPECT_TRUE(!Link(3) && Link(4) && !Link(9));
    EXPECT_EQ((*session)->MakeNewLink(1, 1, 1, 0)->dwID, 5u);
}

TEST_F(FileRead, Nothing_checks_that_a_link_s_ends_exist) {
    file.links = {{3, 100, 200, 2 | PERSISTENT_BIT}};
    LoadAsOther();
    ASSERT_NE(Link(3), nullptr);
    auto *const link = static_cast<CQVULink *>(Link(3));
    EXPECT_EQ(link->GetSource(), nullptr);
    EXPECT_EQ(link->GetTarget(), nullptr);
    EXPECT_EQ(link->Delete(), 1);
    EXPECT_EQ(Link(3), nullptr);
}

TEST_F(FileRead, A_later_record_replaces_an_earlier_one_of_the_same_id) {
    AddObject(5, OBJ_VFILE, "early.dll");
    AddObject(5, OBJ_VFILE, "late.dll");
    file.links = {{3, 1, 1, 2}, {3, 5, 5, 4}};
    Load();
    EXPECT_STREQ(Object(5)->pszName, "late.dll");
    EXPECT_EQ(Link(3)->dwSource, 5u);
    EXPECT_EQ(Link(3)->dwType, 4u);
    (*session)->Flush();
    image::File const written = FileIn(folder);
    EXPECT_EQ(written.objects.size(), 2u);
    EXPECT_EQ(written.links.size(), 1u);
}

TEST_F(FileRead, A_replaced_record_stays_in_the_name_index_and_can_be_held) {
    AddObject(5, OBJ_VFILE, "same.dll");
    AddObject(5, OBJ_VFILE, "SAME.DLL");
    Load();
    char name[] = "Same.dll";
    CQVUObject *const found = (*session)->LookupVFILE(name);
    ASSERT_NE(found, nullptr);
    EXPECT_STREQ(found->pszName, "same.dll");
    EXPECT_NE(found, Object(5));
    (*session)->DeleteObject(5);
    EXPECT_EQ((*session)->LookupVFILE(name), found);
    EXPECT_EQ((*session)->LookupObject(5), nullptr);
}

TEST_F(FileRead, Records_need_not_be_in_order) {
    AddObject(9, OBJ_FILE, "nine");
    AddObject(1, 0, "");
    AddObject(4, OBJ_FILE, "four");
    Load();
    EXPECT_TRUE(Object(9) && Object(1) && Object(4));
    EXPECT_EQ(Object(1)->dwType, 0u); // the file's own root, not one made anew
    EXPECT_EQ(session->Add("next", OBJ_FILE, transient)->GetUniqueID(), 10u);
}

TEST_F(FileRead, An_object_with_id_zero_is_kept_like_any_other) {
    AddObject(0, OBJ_FILE, "zero");
    Load();
    ASSERT_NE(Object(0), nullptr);
    EXPECT_EQ(session->Add("next", OBJ_FILE, transient)->GetUniqueID(), 2u);
}

TEST_F(FileRead, A_link_count_of_zero_stands_in_the_file_when_no_link_id_was_given) {
    file.links = {{0, 1, 1, 2}};
    AddObject(5, OBJ_FILE, "five");
    Load();
    ASSERT_NE(Link(0), nullptr);
    (*session)->Flush();
    Bytes const bytes = ReadBytes(folder.DatabaseFile());
    EXPECT_EQ(image::WordAt(bytes, image::linkCountAt), 0u);
    EXPECT_EQ(image::WordAt(bytes, image::objectCountAt), 2u);
    EXPECT_EQ(image::WordAt(bytes, 0), bytes.size());
}

TEST_F(FileRead, The_highest_ids_leave_no_further_ones) {
    AddObject(0xffffffff, OBJ_FILE, "last");
    file.links = {{0x3fffffff, 1, 1, 2}};
    Load();
    EXPECT_NE(Object(0xffffffff), nullptr);
    EXPECT_EQ(session->Add("none", OBJ_FILE, transient), nullptr);
    EXPECT_EQ((*session)->MakeNewLink(1, 1, 1, 0), nullptr);
    EXPECT_EQ((*session)->GetRootObject()->LinkTo((*session)->GetRootObject(), 2), 0);
    EXPECT_EQ(Object(1)->dwLinksFrom, 0u);
}

TEST_F(FileRead, The_ids_before_the_highest_are_still_given) {
    AddObject(0xfffffffe, OBJ_FILE, "last but one");
    file.links = {{0x3ffffffe, 1, 1, 2}};
    Load();
    EXPECT_EQ(session->Add("last", OBJ_FILE, transient)->GetUniqueID(), 0xffffffffu);
    EXPECT_EQ((*session)->MakeNewLink(1, 1, 1, 0)->dwID, 0x3fffffffu);
    EXPECT_EQ((*session)->MakeNewLink(1, 1, 1, 0), nullptr);
}

TEST_F(FileRead, A_name_with_a_terminator_inside_ends_there) {
    AddObject(5, OBJ_VFILE, "");
    file.objects[0].name = std::string("cut\0off", 7);
    Load();
    EXPECT_STREQ(Object(5)->pszName, "cut");
    char name[] = "cut";
    EXPECT_EQ((*session)->LookupVFILE(name), Object(5));
}

TEST_F(FileRead, Names_in_the_file_may_be_longer_than_250) {
    AddObject(5, OBJ_VFILE, "");
    file.objects[0].name = std::string(65535, 'n');
    Load();
    EXPECT_EQ(std::string(Object(5)->pszName), file.objects[0].name);
}

TEST_F(FileRead, An_empty_name_and_no_data_read_as_null) {
    AddObject(5, OBJ_FILE, "");
    Load();
    EXPECT_EQ(Object(5)->pszName, nullptr);
    EXPECT_EQ(Object(5)->pData, nullptr);
    EXPECT_EQ(Object(5)->pdwLinksFrom, nullptr);
}

TEST_F(FileRead, A_stale_entry_that_comes_to_name_a_new_link_makes_a_duplicate_in_LinkTo) {
    AddObject(2, persistentFile, "source", {5});
    AddObject(3, persistentFile, "target", {}, {1 | LINK_ENTRY_TRANSIENT, 5});
    file.links = {{1, 3, 3, 2}}; // dropped, its id to be given again
    LoadAsOther();
    CQVUObject *const source = session->Object(2), *const target = session->Object(3);
    ASSERT_TRUE(source && target);
    EXPECT_EQ(source->LinkTo(source, 8), 1); // takes id 1
    ASSERT_NE(Link(1), nullptr);
    EXPECT_EQ(source->LinkTo(target, 8), 1); // the target's first entry names that link
    EXPECT_EQ(Link(2), nullptr);
    EXPECT_EQ(target->dwLinksTo & LINK_ENTRY_ID_MASK, 2u);
}

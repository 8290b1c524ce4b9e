// What comes back from a file: in the process that wrote it, and in any other.
#include <gtest/gtest.h>

#include "session.h"

namespace {

// Makes a graph, and loads it again as the writer or as another process would.
class Reload : public testing::Test {
protected:
    TempFolder folder;
    std::optional<Session> session{std::in_place, folder};

    CQVUObject *Add(char const *name, int persistence) {
        return (*session)->AddObject(name, OBJ_FILE, 0, 0, nullptr, persistence);
    }
    CQVUObject *Object(unsigned long id) { return session->Object(id); }
    void Again(bool otherProcess) {
        (*session)->Flush();
        (*session)->SetSaveFlag(0);
        session.reset();
        if (otherProcess)
            GiveAway(folder);
        session.emplace(folder);
    }
    // As the other process of a given stamp.
    void AgainAs(image::Stamp writer) {
        Again(false);
        session.reset();
        Bytes bytes = ReadBytes(folder.DatabaseFile());
        image::SetStamp(bytes, writer);
        WriteBytes(folder.DatabaseFile(), bytes);
        session.emplace(folder);
    }
};

using Entries = std::vector<std::uint32_t>;

} // namespace

TEST_F(Reload, The_writer_gets_transient_objects_links_and_data_back) {
    unsigned char data[] = {1, 2, 3, 4, 5};
    (*session)->AddObject("passing", OBJ_VFILE, 0x1234, sizeof data, data, transient);
    Object(2)->LinkTo(Object(1), 0x10);
    Again(false);
    ASSERT_NE(Object(2), nullptr);
    EXPECT_EQ(NameOf(Object(2)), "passing");
    EXPECT_EQ(Object(2)->GetType(), OBJ_VFILE);
    EXPECT_EQ(Object(2)->IsPersistent(), 0);
    EXPECT_EQ(Object(2)->GetFlags(), 0x1234u);
    EXPECT_EQ(DataOf(Object(2)), Bytes(data, data + 5));
    EXPECT_EQ(LinksFrom(Object(2)), Entries{1 | LINK_ENTRY_TRANSIENT});
    EXPECT_EQ(LinksTo(Object(1)), Entries{1 | LINK_ENTRY_TRANSIENT});
    ASSERT_NE((*session)->LookupLink(1), nullptr);
    EXPECT_EQ((*session)->LookupLink(1)->dwType, 0x10u);
}

TEST_F(Reload, Another_process_lost_all_that_is_transient_or_has_no_persistent_link) {
    CQVUObject *const a = Add("a", persistent), *const b = Add("b", persistent);
    CQVUObject *const c = Add("c", transient);
    Add("lonely", persistent);
    a->LinkTo(b, 2);
    a->LinkTo(c, 2);
    Again(true);
    EXPECT_NE(Object(2), nullptr);
    EXPECT_NE(Object(3), nullptr);
    EXPECT_EQ(Object(4), nullptr);
    EXPECT_EQ(Object(5), nullptr);
    EXPECT_NE((*session)->LookupLink(1), nullptr);
    EXPECT_EQ((*session)->LookupLink(2), nullptr);
}

TEST_F(Reload, A_persistent_object_whose_links_all_lead_to_transient_ones_is_dropped) {
    CQVUObject *const a = Add("a", persistent);
    a->LinkTo(Add("b", transient), 2);
    Add("c", transient)->LinkTo(a, 2);
    Again(true);
    EXPECT_EQ(Object(2), nullptr);
}

TEST_F(Reload, An_incoming_persistent_link_keeps_an_object_as_well) {
    Add("a", persistent)->LinkTo(Add("b", persistent), 2);
    Again(true);
    EXPECT_EQ(Object(3)->dwLinksFrom, 0u);
    EXPECT_EQ(LinksTo(Object(3)), Entries{1});
}

TEST_F(Reload, Stale_entries_are_counted_and_skipped) {
    CQVUObject *const a = Add("a", persistent);
    a->LinkTo(Add("passing", transient), 2);
    a->LinkTo(Add("b", persistent), 2);
    Again(true);
    EXPECT_EQ(Object(2)->dwLinksFrom, 2u | LINK_LIST_BLOCKED);
    EXPECT_EQ(LinksFrom(Object(2)), (Entries{1 | LINK_ENTRY_TRANSIENT, 2}));
    CQVULink *link = nullptr;
    SearchHandle const handle = Object(2)->FindFirstLinkFrom(0xffffffff, &link);
    ASSERT_NE(handle, 0u);
    EXPECT_EQ(link->dwID, 2u);
    EXPECT_EQ(Object(2)->FindNextLinkFrom(handle, &link), 0);
    Object(2)->FindCloseLinkFrom(handle);
}

TEST_F(Reload, Deleting_an_object_with_stale_entries_is_harmless) {
    CQVUObject *const a = Add("a", persistent);
    a->LinkTo(Add("passing", transient), 2);
    a->LinkTo(Add("b", persistent), 2);
    Again(true);
    EXPECT_EQ((*session)->DeleteObject(2), 1);
    EXPECT_EQ((*session)->LookupLink(2), nullptr);
    EXPECT_EQ(Object(4)->dwLinksTo & LINK_ENTRY_ID_MASK, 0u);
}

TEST_F(Reload, In_another_process_the_next_ids_follow_the_highest_kept_ones) {
    CQVUObject *const a = Add("a", persistent), *const b = Add("b", persistent);
    a->LinkTo(b, 2);
    CQVUObject *const c = Add("c", transient);
    a->LinkTo(c, 2);
    Add("d", persistent);
    Again(true);
    EXPECT_EQ(Add("next", transient)->GetUniqueID(), 4u);
    Object(2)->LinkTo(Object(4), 2);
    EXPECT_NE((*session)->LookupLink(2), nullptr);
    EXPECT_EQ((*session)->LookupLink(3), nullptr);
}

TEST_F(Reload, In_the_same_process_the_next_ids_follow_the_highest_ones) {
    for (int i = 0; i < 3; ++i)
        Add("a", transient)->LinkTo(Object(1), 2);
    (*session)->DeleteObject(4); // the counter isn't stored
    Again(false);
    EXPECT_EQ(Add("next", transient)->GetUniqueID(), 4u);
    Object(4)->LinkTo(Object(1), 2);
    EXPECT_NE((*session)->LookupLink(3), nullptr);
}

TEST_F(Reload, A_dropped_root_is_made_anew_and_does_not_pull_the_counter_down) {
    Add("a", persistent)->LinkTo(Add("b", persistent), 2);
    Again(true);
    ASSERT_NE(Object(1), nullptr);
    EXPECT_EQ(Object(1)->dwType, PERSISTENT_BIT);
    EXPECT_EQ(Add("next", transient)->GetUniqueID(), 4u);
}

TEST_F(Reload, A_root_with_a_persistent_link_is_kept) {
    Object(1)->LinkTo(Add("a", persistent), 2);
    Object(1)->SetFlags(77);
    Again(true);
    EXPECT_EQ(Object(1)->GetFlags(), 77u);
    EXPECT_EQ(LinksFrom(Object(1)), Entries{1});
}

TEST_F(Reload, A_file_of_which_nothing_is_kept_starts_counting_afresh) {
    Add("a", persistent);
    Add("b", transient)->LinkTo(Object(1), 2);
    Again(true);
    EXPECT_EQ(Add("next", transient)->GetUniqueID(), 2u);
    Object(2)->LinkTo(Object(1), 2);
    EXPECT_NE((*session)->LookupLink(1), nullptr);
}

TEST_F(Reload, Bits_30_and_31_of_the_flags_read_back_clear_in_every_process) {
    Add("a", persistent)->LinkTo(Add("b", persistent), 2);
    for (bool const otherProcess : {false, true}) {
        Object(2)->SetFlags(0xffffffff);
        Again(otherProcess);
        EXPECT_EQ(Object(2)->GetFlags(), 0x3fffffffu);
    }
}

TEST_F(Reload, A_list_of_one_is_exact_and_longer_ones_are_blocked) {
    CQVUObject *const hub = Add("hub", transient);
    for (int i = 0; i < 4; ++i)
        hub->LinkTo(Add("leaf", transient), 2);
    (*session)->DeleteLink(1, 1, 1);
    (*session)->DeleteLink(2, 1, 1);
    Again(false);
    EXPECT_EQ(Object(2)->dwLinksFrom, 2u | LINK_LIST_BLOCKED);
    (*session)->DeleteLink(3, 1, 1);
    EXPECT_EQ(Object(2)->dwLinksFrom, 1u | LINK_LIST_BLOCKED);
    Again(false);
    EXPECT_EQ(Object(2)->dwLinksFrom, 1u);
    EXPECT_EQ(Object(3)->dwLinksTo, 0u);
    EXPECT_EQ(Object(3)->pdwLinksTo, nullptr);
}

TEST_F(Reload, A_difference_in_any_part_of_the_stamp_makes_another_process) {
    Add("passing", transient);
    image::Stamp const own = OwnStamp();
    AgainAs(own);
    EXPECT_NE(Object(2), nullptr);
    for (image::Stamp const other :
         {image::Stamp{own.created, own.process + 1}, image::Stamp{own.created + 1, own.process},
          image::Stamp{own.created ^ (1ull << 32), own.process}, image::Stamp{0, 0}}) {
        (*session)->DeleteObject(2);
        Add("passing", transient);
        AgainAs(other);
        EXPECT_EQ(Object(2), nullptr);
    }
}

TEST_F(Reload, A_flush_by_another_process_takes_the_file_over) {
    Add("a", persistent)->LinkTo(Add("b", persistent), 2);
    Again(true);
    (*session)->Flush();
    EXPECT_EQ(image::StampOf(ReadBytes(folder.DatabaseFile())).process, OwnStamp().process);
}

TEST_F(Reload, Names_beyond_250_characters_come_back_whole) {
    std::string const old(250, 'o');
    CQVUObject *const object = Add(old.c_str(), transient);
    std::string longName(65535, 'n');
    object->SetName(longName.data());
    Again(false);
    EXPECT_EQ(NameOf(Object(2)), longName);
}

TEST_F(Reload, A_name_of_65536_bytes_or_more_keeps_the_length_s_low_16_bits_and_no_other_harm) {
    std::string const old(250, 'o');
    CQVUObject *const object = Add(old.c_str(), transient);
    Add("after", transient)->LinkTo(object, 2);
    std::string longName(65536 + 5, 'n');
    object->SetName(longName.data());
    Again(false);
    EXPECT_EQ(NameOf(Object(2)), "nnnnn");
    EXPECT_EQ(LinksTo(Object(2)), Entries{1 | LINK_ENTRY_TRANSIENT});
    EXPECT_EQ(NameOf(Object(3)), "after");
}

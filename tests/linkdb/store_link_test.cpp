// Links: making them, and what becomes of them when an end turns persistent.
#include "store_fixture.h"

TEST_F(Store, LinkTo_between_persistent_objects_makes_one_link) {
    CQVUObject *const a = File("a", persistent), *const b = File("b", persistent);
    EXPECT_EQ(a->LinkTo(b, 8), 1);
    EXPECT_EQ(a->LinkTo(b, 8), 1);
    EXPECT_EQ(LinksFrom(a), Entries{1});
    EXPECT_EQ(LinksTo(b), Entries{1});
    EXPECT_EQ(Link(2), nullptr);
}

TEST_F(Store, LinkTo_with_a_transient_end_makes_a_link_each_time) {
    CQVUObject *const a = File("a", persistent), *const b = File("b", transient);
    EXPECT_EQ(a->LinkTo(b, 8), 1);
    EXPECT_EQ(a->LinkTo(b, 8), 1);
    EXPECT_EQ(LinksFrom(a), (Entries{1 | LINK_ENTRY_TRANSIENT, 2 | LINK_ENTRY_TRANSIENT}));
    EXPECT_EQ(LinksTo(b), LinksFrom(a));
    EXPECT_EQ(b->LinkTo(a, 8), 1);
    EXPECT_EQ(b->LinkTo(a, 8), 1);
    EXPECT_EQ(b->dwLinksFrom, 2u);
}

TEST_F(Store, The_other_direction_another_type_and_another_target_are_different_links) {
    CQVUObject *const a = File("a", persistent), *const b = File("b", persistent);
    CQVUObject *const c = File("c", persistent);
    a->LinkTo(b, 8);
    b->LinkTo(a, 8);
    a->LinkTo(b, 16);
    a->LinkTo(b, 8 | 16);
    a->LinkTo(c, 8);
    EXPECT_EQ(LinksFrom(a), (Entries{1, 3, 4, 5}));
    EXPECT_EQ(LinksFrom(b), Entries{2});
}

TEST_F(Store, A_duplicate_is_told_by_the_low_31_bits_of_the_type) {
    CQVUObject *const a = File("a", persistent), *const b = File("b", persistent);
    a->LinkTo(b, 8);
    EXPECT_EQ(a->LinkTo(b, 8 | PERSISTENT_BIT), 1);
    EXPECT_EQ(Link(2), nullptr);
    EXPECT_EQ(b->LinkTo(a, 8 | PERSISTENT_BIT), 1);
    EXPECT_EQ(b->LinkTo(a, 8), 1);
    EXPECT_EQ(Link(3), nullptr);
}

TEST_F(Store, A_deleted_link_can_be_made_again) {
    CQVUObject *const a = File("a", persistent), *const b = File("b", persistent);
    a->LinkTo(b, 8);
    Link(1)->Delete();
    a->LinkTo(b, 8);
    EXPECT_NE(Link(2), nullptr);
    EXPECT_EQ(LinksTo(b), Entries{2});
}

TEST_F(Store, A_link_whose_entry_left_the_target_is_no_duplicate) {
    CQVUObject *const a = File("a", persistent), *const b = File("b", persistent);
    session->MakeNewLink(2, 3, 8, 1); // in no list
    a->LinkTo(b, 8);
    EXPECT_NE(Link(2), nullptr);
}

TEST_F(Store, A_link_has_its_ends_type_and_persistence) {
    CQVUObject *const a = File("a", persistent), *const b = File("b", persistent);
    CQVUObject *const c = File("c", transient);
    a->LinkTo(b, 8);
    a->LinkTo(c, 0xffffffff);
    EXPECT_EQ(Link(1)->dwType, 8u | PERSISTENT_BIT);
    EXPECT_EQ(Link(1)->GetType(), 8u);
    EXPECT_EQ(Link(1)->GetSource(), a);
    EXPECT_EQ(Link(1)->GetTarget(), b);
    EXPECT_EQ(Link(2)->dwType, 0x7fffffffu);
    EXPECT_EQ(Link(2)->dwSource, 2u);
    EXPECT_EQ(Link(2)->dwTarget, 4u);
}

TEST_F(Store, An_object_may_link_to_itself) {
    CQVUObject *const a = File("a", persistent);
    EXPECT_EQ(a->LinkTo(a, 8), 1);
    EXPECT_EQ(a->LinkTo(a, 8), 1);
    EXPECT_EQ(LinksFrom(a), Entries{1});
    EXPECT_EQ(LinksTo(a), Entries{1});
}

TEST_F(Store, MakeNewLink_stands_in_no_list) {
    CQVUObject *const a = File("a", persistent);
    DBLink *const link = session->MakeNewLink(2, 1, 0x80000008, 0);
    ASSERT_NE(link, nullptr);
    EXPECT_EQ(link, session->LookupLink(1));
    EXPECT_EQ(link->dwID, 1u);
    EXPECT_EQ(link->dwSource, 2u);
    EXPECT_EQ(link->dwTarget, 1u);
    EXPECT_EQ(link->dwType, 8u);
    EXPECT_EQ(a->dwLinksFrom, 0u);
    EXPECT_EQ(session->GetRootObject()->dwLinksTo, 0u);
    EXPECT_EQ(session->MakeNewLink(2, 1, 8, -1)->dwType, 8u | PERSISTENT_BIT);
}

TEST_F(Store, Making_a_source_persistent_turns_its_links_to_persistent_targets) {
    CQVUObject *const source = File("source", transient);
    CQVUObject *const fixed = File("fixed", persistent), *const passing =
                                                             File("passing", transient);
    source->LinkTo(fixed, 8);
    source->LinkTo(passing, 8);
    source->LinkTo(fixed, 8);
    EXPECT_EQ(source->MakePersistent(), 1);
    EXPECT_EQ(source->IsPersistent(), 1);
    EXPECT_EQ(LinksFrom(source), (Entries{1, 2 | LINK_ENTRY_TRANSIENT, 3}));
    EXPECT_EQ(LinksTo(fixed), (Entries{1, 3}));
    EXPECT_EQ(LinksTo(passing), Entries{2 | LINK_ENTRY_TRANSIENT});
    EXPECT_EQ(Link(1)->dwType, 8u | PERSISTENT_BIT);
    EXPECT_EQ(Link(2)->dwType, 8u);
    EXPECT_EQ(Link(3)->dwType, 8u | PERSISTENT_BIT);
}

TEST_F(Store, Making_a_target_persistent_turns_its_links_from_persistent_sources) {
    CQVUObject *const target = File("target", transient);
    CQVUObject *const fixed = File("fixed", persistent), *const passing =
                                                             File("passing", transient);
    fixed->LinkTo(target, 8);
    passing->LinkTo(target, 8);
    target->MakePersistent();
    EXPECT_EQ(LinksTo(target), (Entries{1, 2 | LINK_ENTRY_TRANSIENT}));
    EXPECT_EQ(LinksFrom(fixed), Entries{1});
    EXPECT_EQ(LinksFrom(passing), Entries{2 | LINK_ENTRY_TRANSIENT});
    EXPECT_EQ(Link(1)->dwType, 8u | PERSISTENT_BIT);
    EXPECT_EQ(Link(2)->dwType, 8u);
}

TEST_F(Store, A_link_turns_persistent_with_its_last_transient_end) {
    CQVUObject *const a = File("a", transient), *const b = File("b", transient);
    a->LinkTo(b, 8);
    b->MakePersistent();
    EXPECT_EQ(Link(1)->dwType, 8u);
    EXPECT_EQ(LinksTo(b), Entries{1 | LINK_ENTRY_TRANSIENT});
    a->MakePersistent();
    EXPECT_EQ(Link(1)->dwType, 8u | PERSISTENT_BIT);
    EXPECT_EQ(LinksTo(b), Entries{1});
    EXPECT_EQ(LinksFrom(a), Entries{1});
}

TEST_F(Store, Making_a_self_linked_object_persistent_turns_both_entries) {
    CQVUObject *const a = File("a", transient);
    a->LinkTo(a, 8);
    a->MakePersistent();
    EXPECT_EQ(LinksFrom(a), Entries{1});
    EXPECT_EQ(LinksTo(a), Entries{1});
    EXPECT_EQ(Link(1)->dwType, 8u | PERSISTENT_BIT);
}

TEST_F(Store, MakePersistent_skips_entries_without_a_link_and_links_without_an_end) {
    CQVUObject *const a = File("a", transient), *const b = File("b", persistent);
    a->LinkTo(b, 8);
    a->LinkTo(b, 8);
    session->DeleteLink(1, 0, 1); // a keeps its entry
    EXPECT_EQ(a->MakePersistent(), 1);
    EXPECT_EQ(LinksFrom(a), (Entries{1 | LINK_ENTRY_TRANSIENT, 2}));
}

TEST_F(Store, MakePersistent_again_changes_nothing) {
    CQVUObject *const a = File("a", persistent);
    EXPECT_EQ(a->MakePersistent(), 1);
    EXPECT_EQ(a->MakePersistent(), 1);
    EXPECT_EQ(a->dwType, OBJ_FILE | PERSISTENT_BIT);
}

TEST_F(Store, Duplicates_made_while_transient_stay_and_no_further_one_is_made) {
    CQVUObject *const a = File("a", transient), *const b = File("b", persistent);
    a->LinkTo(b, 8);
    a->LinkTo(b, 8);
    a->MakePersistent();
    a->LinkTo(b, 8);
    EXPECT_EQ(LinksFrom(a), (Entries{1, 2}));
    Link(1)->Delete();
    a->LinkTo(b, 8); // the second still stands
    EXPECT_EQ(LinksFrom(a), Entries{2});
    Link(2)->Delete();
    a->LinkTo(b, 8);
    EXPECT_EQ(LinksFrom(a), Entries{3});
}

TEST_F(Store, Assigning_a_link_view_copies_all_fields) {
    CQVUObject *const a = File("a", transient);
    a->LinkTo(a, 8);
    a->LinkTo(a, 16);
    CQVULink *const first = Link(1), *const second = Link(2);
    *second = *first;
    EXPECT_EQ(second->dwID, 1u);
    EXPECT_EQ(second->dwType, 8u);
    static_cast<DBLink &>(*second) = DBLink{2, 2, 2, 16}; // the record is the database's again
}

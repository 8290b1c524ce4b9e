// Walks over one object's links, and the question by a linker's name.
#include "attached.h"
#include "searches.h"

#include <gtest/gtest.h>

namespace {

class Links : public testing::Test {
protected:
    unsigned long Link(CQVUObject *source, CQVUObject *target, unsigned long type) {
        EXPECT_EQ(source->LinkTo(target, type), 1);
        return source->pdwLinksFrom[(source->dwLinksFrom & LINK_ENTRY_ID_MASK) - 1] &
               LINK_ENTRY_ID_MASK;
    }

    Attached db;
    CQVUObject *one = db.Add("one", OBJ_FILE);
    CQVUObject *two = db.Add("two", OBJ_FILE);
    CQVUObject *three = db.Add("three", OBJ_KEY);
    CQVUObject *const none = nullptr;
};

TEST_F(Links, An_object_without_links_has_nothing_to_find_and_nothing_to_close) {
    CQVULink *out = nullptr;
    EXPECT_EQ(one->FindFirstLinkTo(allTypes, &out), 0u);
    EXPECT_EQ(one->FindFirstLinkFrom(allTypes, &out), 0u);
    EXPECT_EQ(out, nullptr);
}

TEST_F(Links, A_null_object_has_nothing_to_find) {
    CQVULink *out = nullptr;
    EXPECT_EQ(none->FindFirstLinkTo(allTypes, &out), 0u);
    EXPECT_EQ(none->FindFirstLinkFrom(allTypes, &out), 0u);
    EXPECT_EQ(out, nullptr);
}

TEST_F(Links, The_two_families_walk_the_two_lists_in_order) {
    unsigned long const a = Link(one, two, 2), b = Link(three, two, 4), c = Link(one, three, 8);
    EXPECT_EQ(FindLinksTo(two, allTypes), (Ids{a, b}));
    EXPECT_EQ(FindLinksFrom(one, allTypes), (Ids{a, c}));
    EXPECT_EQ(FindLinksTo(three, allTypes), Ids{c});
    EXPECT_EQ(FindLinksFrom(two, allTypes), Ids{});
}

TEST_F(Links, The_first_link_is_stored_and_leads_to_both_ends) {
    unsigned long const id = Link(one, two, 2);
    CQVULink *out = nullptr;
    SearchHandle const handle = two->FindFirstLinkTo(2, &out);
    ASSERT_NE(handle, 0u);
    EXPECT_EQ(out, static_cast<CQVULink *>(db->LookupLink(id)));
    EXPECT_EQ(out->GetSource(), one);
    EXPECT_EQ(out->GetTarget(), two);
    EXPECT_EQ(out->GetType(), 2u);
    two->FindCloseLinkTo(handle);
}

TEST_F(Links, A_mask_of_one_gives_exactly_the_parent_links) {
    unsigned long const parent = Link(one, two, LINK_PARENT);
    Link(three, two, 2);
    unsigned long const other = Link(three, two, LINK_PARENT);
    EXPECT_EQ(FindLinksTo(two, LINK_PARENT), (Ids{parent, other}));
}

TEST_F(Links, A_mask_gives_the_types_that_share_a_bit_with_it) {
    unsigned long const two2 = Link(one, two, 2), two4 = Link(one, two, 4),
                        two6 = Link(one, two, 6);
    EXPECT_EQ(FindLinksTo(two, 2), (Ids{two2, two6}));
    EXPECT_EQ(FindLinksTo(two, 4), (Ids{two4, two6}));
    EXPECT_EQ(FindLinksFrom(one, 6), (Ids{two2, two4, two6}));
    EXPECT_EQ(FindLinksFrom(one, 8), Ids{});
    EXPECT_EQ(FindLinksFrom(one, 0), Ids{});
}

TEST_F(Links, A_link_of_type_0_is_never_found) {
    Link(one, two, 0);
    EXPECT_EQ(FindLinksTo(two, allTypes), Ids{});
    EXPECT_EQ(FindLinksFrom(one, allTypes), Ids{});
}

TEST_F(Links, The_bit_of_persistence_is_no_type) {
    Link(one, two, 2);
    EXPECT_EQ(FindLinksFrom(one, PERSISTENT_BIT), Ids{});
}

TEST_F(Links, Transient_links_are_found_as_well) {
    CQVUObject *const transient = db.Add("t", OBJ_FILE, false);
    unsigned long const id = Link(one, transient, 2);
    EXPECT_EQ(FindLinksTo(transient, 2), Ids{id});
    EXPECT_EQ(FindLinksFrom(one, 2), Ids{id});
}

TEST_F(Links, A_link_to_itself_stands_in_both_lists) {
    unsigned long const id = Link(one, one, 2);
    EXPECT_EQ(FindLinksTo(one, 2), Ids{id});
    EXPECT_EQ(FindLinksFrom(one, 2), Ids{id});
}

TEST_F(Links, Out_is_untouched_where_nothing_is_found) {
    Link(one, two, 2);
    CQVULink *out = nullptr;
    EXPECT_EQ(one->FindFirstLinkFrom(4, &out), 0u);
    EXPECT_EQ(out, nullptr);
    SearchHandle const handle = one->FindFirstLinkFrom(2, &out);
    ASSERT_NE(handle, 0u);
    CQVULink *untouched = nullptr;
    EXPECT_EQ(one->FindNextLinkFrom(handle, &untouched), 0);
    EXPECT_EQ(untouched, nullptr);
    one->FindCloseLinkFrom(handle);
}

TEST_F(Links, The_end_can_be_asked_again) {
    Link(one, two, 2);
    CQVULink *out = nullptr;
    SearchHandle const handle = one->FindFirstLinkFrom(2, &out);
    EXPECT_EQ(one->FindNextLinkFrom(handle, &out), 0);
    EXPECT_EQ(one->FindNextLinkFrom(handle, &out), 0);
    unsigned long const added = Link(one, three, 2);
    EXPECT_EQ(one->FindNextLinkFrom(handle, &out), 1) << "the index stays where it was";
    EXPECT_EQ(out->dwID, added);
    one->FindCloseLinkFrom(handle);
}

// An object whose list holds, in turn: a stale entry, a link, another stale one, a link.
image::File WithStaleEntries() {
    image::File file;
    file.objects.resize(2);
    std::vector<std::uint32_t> const entries = {1007, 1, 1009 | LINK_ENTRY_TRANSIENT, 2};
    file.objects[0] = {2, 0, OBJ_FILE | PERSISTENT_BIT, "source", entries, {}, {}, 0, 0};
    file.objects[1] = {3, 0, OBJ_FILE | PERSISTENT_BIT, "target", {}, entries, {}, 0, 0};
    file.links = {{1, 2, 3, 2 | PERSISTENT_BIT}, {2, 2, 3, 4 | PERSISTENT_BIT}};
    return file;
}

TEST(LinksFromFiles, Stale_entries_are_skipped) {
    Attached db(WithStaleEntries());
    EXPECT_EQ(FindLinksFrom(db.Object(2), allTypes), (Ids{1, 2}));
    EXPECT_EQ(FindLinksTo(db.Object(3), allTypes), (Ids{1, 2}));
    EXPECT_EQ(db.Object(3)->dwLinksTo & LINK_ENTRY_ID_MASK, 4u);
}

// The index of a search is the list's, and not the number of results: a handle taken to
// another object's list goes on behind that place.
TEST(LinksFromFiles, The_index_counts_stale_entries) {
    Attached db(WithStaleEntries());
    CQVUObject *const many = db.Add("many", OBJ_FILE);
    CQVUObject *const target = db.Add("t", OBJ_FILE);
    for (unsigned long type = 1; type <= 16; type <<= 1)
        EXPECT_EQ(many->LinkTo(target, type), 1);
    CQVULink *out = nullptr;
    SearchHandle const handle = db.Object(2)->FindFirstLinkFrom(allTypes, &out);
    ASSERT_NE(handle, 0u);
    EXPECT_EQ(out->dwID, 1u);
    EXPECT_EQ(many->FindNextLinkFrom(handle, &out), 1);
    EXPECT_EQ(out->dwType & ~PERSISTENT_BIT, 4u) << "index 1 was the last, so index 2 is next";
    EXPECT_EQ(db.Object(2)->FindNextLinkFrom(handle, &out), 1);
    EXPECT_EQ(out->dwID, 2u);
    db.Object(2)->FindCloseLinkFrom(handle);
}

TEST_F(Links, A_handle_goes_on_in_the_other_list_of_an_object_too) {
    Link(two, one, 2);
    Link(one, two, 2);
    unsigned long const second = Link(one, three, 2);
    CQVULink *out = nullptr;
    SearchHandle const handle = one->FindFirstLinkTo(2, &out);
    ASSERT_NE(handle, 0u);
    EXPECT_EQ(one->FindNextLinkFrom(handle, &out), 1);
    EXPECT_EQ(out->dwID, second);
    one->FindCloseLinkFrom(handle);
}

TEST_F(Links, Entries_added_during_a_walk_are_seen) {
    Link(one, two, 2);
    CQVULink *out = nullptr;
    SearchHandle const handle = one->FindFirstLinkFrom(allTypes, &out);
    for (unsigned long type = 4; type <= 0x10000; type <<= 1) {
        unsigned long const added = Link(one, two, type);
        EXPECT_EQ(one->FindNextLinkFrom(handle, &out), 1);
        EXPECT_EQ(out->dwID, added);
    }
    EXPECT_EQ(one->FindNextLinkFrom(handle, &out), 0);
    one->FindCloseLinkFrom(handle);
}

TEST_F(Links, Deleting_the_link_last_returned_skips_the_one_behind_it) {
    Ids ids;
    for (unsigned long type = 1; type <= 16; type <<= 1)
        ids.push_back(Link(one, two, type));
    CQVULink *out = nullptr;
    SearchHandle const handle = one->FindFirstLinkFrom(allTypes, &out);
    EXPECT_EQ(out->Delete(), 1);
    EXPECT_EQ(one->FindNextLinkFrom(handle, &out), 1);
    EXPECT_EQ(out->dwID, ids[2]);
    EXPECT_EQ(one->FindNextLinkFrom(handle, &out), 1);
    EXPECT_EQ(out->dwID, ids[3]);
    one->FindCloseLinkFrom(handle);
}

TEST_F(Links, Deleting_all_links_ends_a_walk) {
    Ids ids;
    for (unsigned long type = 1; type <= 16; type <<= 1)
        ids.push_back(Link(one, two, type));
    CQVULink *out = nullptr;
    SearchHandle const handle = two->FindFirstLinkTo(allTypes, &out);
    EXPECT_EQ(two->FindNextLinkTo(handle, &out), 1);
    EXPECT_EQ(two->FindNextLinkTo(handle, &out), 1);
    for (unsigned long const id : ids)
        EXPECT_EQ(db->DeleteLink(id, 1, 1), 1);
    EXPECT_EQ(two->FindNextLinkTo(handle, &out), 0);
    EXPECT_EQ(one->Delete(), 1);
    EXPECT_EQ(two->FindNextLinkTo(handle, &out), 0);
    two->FindCloseLinkTo(handle);
}

TEST_F(Links, A_zero_handle_gives_nothing_and_closes_nothing) {
    Link(one, two, 2);
    CQVULink *out = nullptr;
    EXPECT_EQ(one->FindNextLinkFrom(0, &out), 0);
    EXPECT_EQ(two->FindNextLinkTo(0, &out), 0);
    EXPECT_EQ(out, nullptr);
    one->FindCloseLinkFrom(0);
    two->FindCloseLinkTo(0);
}

TEST_F(Links, A_null_object_ends_a_walk_and_closes_it) {
    Link(one, two, 2);
    Link(one, two, 4);
    CQVULink *out = nullptr;
    SearchHandle const handle = one->FindFirstLinkFrom(allTypes, &out);
    EXPECT_EQ(none->FindNextLinkFrom(handle, &out), 0);
    EXPECT_EQ(none->FindNextLinkTo(handle, &out), 0);
    EXPECT_EQ(none->FindNextLinkFrom(0, &out), 0);
    EXPECT_EQ(one->FindNextLinkFrom(handle, &out), 1);
    none->FindCloseLinkTo(handle);
}

class LinksByName : public Links {
protected:
    int LinksTo(CQVUObject *object, char const *name, unsigned long mask) {
        return object->DoesObjectLinkTo(Text(name), mask);
    }
};

TEST_F(LinksByName, A_linker_is_found_by_name_and_type_of_the_object) {
    Link(one, two, LINK_PARENT);
    Link(three, two, 8);
    EXPECT_EQ(LinksTo(two, "one", OBJ_FILE), 1);
    EXPECT_EQ(LinksTo(two, "ONE", allTypes), 1);
    EXPECT_EQ(LinksTo(two, "one", OBJ_KEY), 0);
    EXPECT_EQ(LinksTo(two, "three", OBJ_KEY), 1);
    EXPECT_EQ(LinksTo(two, "three", OBJ_FILE), 0);
    EXPECT_EQ(LinksTo(two, "thre", allTypes), 0);
    EXPECT_EQ(LinksTo(two, "*", allTypes), 0);
    EXPECT_EQ(LinksTo(two, "two", allTypes), 0);
}

TEST_F(LinksByName, The_link_s_own_type_is_not_looked_at) {
    Link(one, two, 0);
    Link(three, two, 0x4000);
    EXPECT_EQ(LinksTo(two, "one", OBJ_FILE), 1);
    EXPECT_EQ(LinksTo(two, "three", OBJ_KEY), 1);
    EXPECT_EQ(LinksTo(two, "one", 0x4000), 0);
}

TEST_F(LinksByName, Outgoing_links_do_not_count) {
    Link(two, one, LINK_PARENT);
    EXPECT_EQ(LinksTo(two, "one", allTypes), 0);
}

TEST_F(LinksByName, Linkers_without_a_name_or_a_type_are_passed_over) {
    Link(db.Add(nullptr, OBJ_FILE), two, 2);
    CQVUObject *const root = db->GetRootObject();
    Rename(root, "root");
    Link(root, two, 2);
    EXPECT_EQ(LinksTo(two, "", allTypes), 0);
    EXPECT_EQ(LinksTo(two, "root", allTypes), 0) << "no mask matches type 0";
    Link(one, two, 2);
    EXPECT_EQ(LinksTo(two, "one", allTypes), 1);
}

TEST_F(LinksByName, Null_and_unlinked_objects_answer_0) {
    EXPECT_EQ(none->DoesObjectLinkTo(Text("one"), allTypes), 0);
    EXPECT_EQ(LinksTo(one, "two", allTypes), 0);
    unsigned long const id = Link(one, two, 2);
    EXPECT_EQ(db->DeleteLink(id, 1, 0), 1);
    EXPECT_EQ(LinksTo(two, "one", allTypes), 0) << "the entry is stale";
}

TEST(LinksFromFiles, A_link_whose_source_is_gone_is_passed_over_by_name_and_found_by_walk) {
    image::File file;
    file.objects.resize(2);
    file.objects[0] = {2, 0, OBJ_FILE | PERSISTENT_BIT, "one", {2}, {}, {}, 0, 0};
    file.objects[1] = {3, 0, OBJ_FILE | PERSISTENT_BIT, "two", {}, {1, 2}, {}, 0, 0};
    file.links = {{1, 99, 3, 2 | PERSISTENT_BIT}, {2, 2, 3, 2 | PERSISTENT_BIT}};
    Attached db(file);
    EXPECT_EQ(db.Object(3)->DoesObjectLinkTo(Text("one"), allTypes), 1);
    EXPECT_EQ(FindLinksTo(db.Object(3), allTypes), (Ids{1, 2}));
}

} // namespace

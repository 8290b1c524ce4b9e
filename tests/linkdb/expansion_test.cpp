// What an object depends on.
#include "attached.h"
#include "searches.h"

#include <gtest/gtest.h>

namespace {

constexpr unsigned long needs = 2;

class Expansion : public testing::Test {
protected:
    CQVUObject *File(char const *name) { return db.AddBelow(app, name, OBJ_FILE); }
    static unsigned long Id(CQVUObject *object) { return object->GetUniqueID(); }
    static void Link(CQVUObject *source, CQVUObject *target, unsigned long type = needs) {
        EXPECT_EQ(source->LinkTo(target, type), 1);
    }

    Attached db;
    CQVUObject *drive = db.Add("C:", OBJ_DRIVE);
    CQVUObject *app = db.AddBelow(drive, "app", OBJ_FILE);
    CQVUObject *a = File("a");
    CQVUObject *b = File("b");
    CQVUObject *c = File("c");
    CQVUObject *out = nullptr;
};

TEST_F(Expansion, An_object_without_outgoing_links_yields_0) {
    double value = 7;
    EXPECT_EQ(a->FindFirstDependentObject(&out, &value), 0u);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(value, 7);
}

TEST_F(Expansion, A_null_object_yields_0) {
    CQVUObject *const none = nullptr;
    EXPECT_EQ(none->FindFirstDependentObject(&out, nullptr), 0u);
    EXPECT_EQ(none->FindFirstReferencingApp(&out, nullptr), 0u);
    FFDepObjResult *results = nullptr;
    db->ExpandObjectRef(nullptr, nullptr, &results);
    db->ExpandObjectRefBackwards(nullptr, nullptr, &results);
    EXPECT_EQ(results, nullptr);
}

TEST_F(Expansion, A_chain_comes_with_the_last_discovered_first) {
    Link(a, b);
    Link(b, c);
    EXPECT_EQ(FindDependents(a), (Ids{Id(c), Id(b)}));
    EXPECT_EQ(FindDependents(b), Ids{Id(c)});
    EXPECT_EQ(FindDependents(c), Ids{});
}

TEST_F(Expansion, Each_branch_is_followed_to_its_end_before_the_next) {
    CQVUObject *const d = File("d");
    Link(a, b);
    Link(a, c);
    Link(b, d);
    EXPECT_EQ(FindDependents(a), (Ids{Id(c), Id(d), Id(b)}));
}

TEST_F(Expansion, In_a_cycle_the_start_comes_as_its_own_dependent_once) {
    Link(a, b);
    Link(b, a);
    EXPECT_EQ(FindDependents(a), (Ids{Id(a), Id(b)}));
    EXPECT_EQ(FindDependents(b), (Ids{Id(b), Id(a)}));
}

TEST_F(Expansion, A_link_to_itself_gives_the_object) {
    Link(a, a);
    EXPECT_EQ(FindDependents(a), Ids{Id(a)});
}

TEST_F(Expansion, An_object_reached_by_two_paths_comes_once) {
    CQVUObject *const d = File("d");
    Link(a, b);
    Link(a, c);
    Link(b, d);
    Link(c, d);
    Link(a, d, 4);
    EXPECT_EQ(FindDependents(a), (Ids{Id(c), Id(d), Id(b)}));
}

TEST_F(Expansion, Links_of_every_type_are_followed_but_0) {
    CQVUObject *const d = File("d");
    Link(a, b, LINK_PARENT);
    Link(a, c, 0x40000000);
    Link(a, d, 0);
    EXPECT_EQ(FindDependents(a), (Ids{Id(c), Id(b)}));
}

TEST_F(Expansion, The_expansion_of_a_folder_takes_in_all_its_children) {
    EXPECT_EQ(FindDependents(app), (Ids{Id(c), Id(b), Id(a)}));
    EXPECT_EQ(FindDependents(drive), (Ids{Id(c), Id(b), Id(a), Id(app)}));
}

TEST_F(Expansion, Objects_without_a_path_are_results_but_no_starts) {
    CQVUObject *const lost = db.Add("lost", OBJ_FILE);
    CQVUObject *const odd = db.Add(nullptr, 64);
    Link(a, lost);
    Link(lost, odd);
    Link(odd, b);
    EXPECT_EQ(FindDependents(a), (Ids{Id(b), Id(odd), Id(lost)}));
    for (CQVUObject *const start : {lost, odd}) {
        EXPECT_EQ(start->FindFirstDependentObject(&out, nullptr), 0u);
        EXPECT_EQ(start->FindFirstReferencingApp(&out, nullptr), 0u);
    }
    CQVUObject *const root = db->GetRootObject();
    Link(root, a);
    EXPECT_EQ(root->FindFirstDependentObject(&out, nullptr), 0u);
    CQVUObject *const vfile = db.AddBelow(app, "v", OBJ_VFILE);
    Link(vfile, a);
    EXPECT_EQ(vfile->FindFirstDependentObject(&out, nullptr), 0u);
}

TEST_F(Expansion, The_value_reads_1_after_every_success_and_may_be_null) {
    Link(a, b);
    Link(b, c);
    double value = 0;
    SearchHandle const handle = a->FindFirstDependentObject(&out, &value);
    ASSERT_NE(handle, 0u);
    EXPECT_EQ(value, 1.0);
    value = 0;
    EXPECT_EQ(a->FindNextDependentObject(handle, &out, &value), 1);
    EXPECT_EQ(value, 1.0);
    a->FindCloseDependentObject(handle);
    SearchHandle const quiet = a->FindFirstDependentObject(&out, nullptr);
    EXPECT_EQ(a->FindNextDependentObject(quiet, &out, nullptr), 1);
    EXPECT_EQ(a->FindNextDependentObject(quiet, &out, nullptr), 0);
    a->FindCloseDependentObject(quiet);
}

TEST_F(Expansion, The_end_stays_the_end_and_out_is_left_alone) {
    Link(a, b);
    SearchHandle const handle = a->FindFirstDependentObject(&out, nullptr);
    CQVUObject *untouched = nullptr;
    double value = 7;
    EXPECT_EQ(a->FindNextDependentObject(handle, &untouched, &value), 0);
    EXPECT_EQ(a->FindNextDependentObject(handle, &untouched, &value), 0);
    EXPECT_EQ(untouched, nullptr);
    EXPECT_EQ(value, 7);
    a->FindCloseDependentObject(handle);
}

TEST_F(Expansion, The_object_of_next_and_close_does_not_matter) {
    Link(a, b);
    Link(b, c);
    CQVUObject *const none = nullptr;
    SearchHandle const handle = a->FindFirstDependentObject(&out, nullptr);
    EXPECT_EQ(none->FindNextReferencingApp(handle, &out, nullptr), 1);
    EXPECT_EQ(out, b);
    EXPECT_EQ(c->FindNextDependentObject(handle, &out, nullptr), 0);
    none->FindCloseReferencingApp(handle);
}

TEST_F(Expansion, No_mark_is_left_when_the_first_result_is_handed_out) {
    Link(a, b);
    Link(b, c);
    Link(c, a);
    EXPECT_EQ(b->SetFlags(0x80000005), 1);
    SearchHandle const handle = a->FindFirstDependentObject(&out, nullptr);
    EXPECT_EQ(a->GetFlags(), 0u);
    EXPECT_EQ(b->GetFlags(), 0x80000005u);
    EXPECT_EQ(c->GetFlags(), 0u);
    a->FindCloseDependentObject(handle);
}

TEST_F(Expansion, An_object_that_bears_the_mark_already_is_passed_over) {
    Link(a, b);
    Link(b, c);
    EXPECT_EQ(b->SetFlags(OBJ_FLAG_VISITED), 1);
    EXPECT_EQ(FindDependents(a), Ids{});
    EXPECT_EQ(b->GetFlags(), OBJ_FLAG_VISITED);
    Link(a, c, 4);
    EXPECT_EQ(FindDependents(a), Ids{Id(c)});
}

TEST_F(Expansion, A_mark_that_went_into_the_file_has_no_effect) {
    Link(a, b);
    EXPECT_EQ(b->SetFlags(OBJ_FLAG_VISITED | 3), 1);
    unsigned long const start = Id(a), found = Id(b);
    db.Reload(true);
    EXPECT_EQ(db.Object(found)->GetFlags(), 3u);
    EXPECT_EQ(FindDependents(db.Object(start)), Ids{found});
}

TEST_F(Expansion, An_object_deleted_after_the_first_is_skipped) {
    Link(a, b);
    Link(b, c);
    CQVUObject *const d = File("d");
    Link(c, d);
    SearchHandle const handle = a->FindFirstDependentObject(&out, nullptr);
    EXPECT_EQ(out, d);
    EXPECT_EQ(c->Delete(), 1);
    EXPECT_EQ(a->FindNextDependentObject(handle, &out, nullptr), 1);
    EXPECT_EQ(out, b);
    EXPECT_EQ(a->FindNextDependentObject(handle, &out, nullptr), 0);
    a->FindCloseDependentObject(handle);
}

TEST_F(Expansion, A_search_of_which_all_is_deleted_ends) {
    Link(a, b);
    Link(b, c);
    SearchHandle const handle = a->FindFirstDependentObject(&out, nullptr);
    EXPECT_EQ(b->Delete(), 1);
    EXPECT_EQ(c->Delete(), 1);
    EXPECT_EQ(a->Delete(), 1);
    CQVUObject *const none = nullptr;
    EXPECT_EQ(none->FindNextDependentObject(handle, &out, nullptr), 0);
    EXPECT_EQ(none->FindNextDependentObject(handle, &out, nullptr), 0);
    none->FindCloseDependentObject(handle);
}

TEST_F(Expansion, What_is_added_after_the_first_is_not_a_result) {
    Link(a, b);
    SearchHandle const handle = a->FindFirstDependentObject(&out, nullptr);
    Link(b, c);
    Link(a, File("d"));
    EXPECT_EQ(a->FindNextDependentObject(handle, &out, nullptr), 0);
    a->FindCloseDependentObject(handle);
}

TEST_F(Expansion, The_direct_call_prepends_and_leaves_the_marks) {
    Link(a, b);
    auto *const former = new FFDepObjResult{nullptr, 12345};
    FFDepObjResult *results = former;
    db->ExpandObjectRef(a, nullptr, &results);
    EXPECT_EQ(b->GetFlags(), OBJ_FLAG_VISITED);
    EXPECT_EQ(a->GetFlags(), 0u);
    EXPECT_EQ(Take(results), (Ids{Id(b), 12345}));
    FFDepObjResult *again = nullptr;
    db->ExpandObjectRef(a, nullptr, &again);
    EXPECT_EQ(again, nullptr) << "the mark is still there";
}

TEST_F(Expansion, Stale_entries_and_missing_targets_are_skipped) {
    unsigned long const start = Id(a), found = Id(c);
    CQVUObject *const transient = db.Add("t", OBJ_FILE, false);
    Link(a, transient);
    Link(a, b);
    EXPECT_EQ(db->DeleteLink(b->pdwLinksTo[1], 0, 1), 1);
    Link(a, c);
    EXPECT_EQ(a->dwLinksFrom & LINK_ENTRY_ID_MASK, 3u);
    EXPECT_EQ(FindDependents(a), (Ids{Id(c), Id(transient)}));
    db.Reload(false);
    EXPECT_EQ(db.Object(start)->dwLinksFrom & LINK_ENTRY_ID_MASK, 3u);
    EXPECT_EQ(FindDependents(db.Object(start)), Ids{found});
}

TEST_F(Expansion, A_search_left_open_does_not_hinder_another) {
    Link(a, b);
    SearchHandle const one = a->FindFirstDependentObject(&out, nullptr);
    SearchHandle const other = a->FindFirstDependentObject(&out, nullptr);
    EXPECT_EQ(out, b);
    EXPECT_EQ(a->FindNextDependentObject(one, &out, nullptr), 0);
    a->FindCloseDependentObject(other);
    a->FindCloseDependentObject(one);
}

} // namespace

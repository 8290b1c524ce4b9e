// What refers to an object: one step back, and from there on forward.
#include "attached.h"
#include "searches.h"

#include <gtest/gtest.h>

namespace {

constexpr unsigned long needs = 2;

class Referrers : public testing::Test {
protected:
    static unsigned long Id(CQVUObject *object) { return object->GetUniqueID(); }
    static void Link(CQVUObject *source, CQVUObject *target, unsigned long type = needs) {
        EXPECT_EQ(source->LinkTo(target, type), 1);
    }
    // An object that stands in no folder.
    CQVUObject *Loose(char const *name, unsigned long type = OBJ_FILE) {
        return db.Add(name, type);
    }

    Attached db;
    CQVUObject *drive = db.Add("C:", OBJ_DRIVE);
    CQVUObject *app = db.AddBelow(drive, "app", OBJ_FILE);
    CQVUObject *file = db.AddBelow(app, "file", OBJ_FILE);
    CQVUObject *out = nullptr;
};

TEST_F(Referrers, Of_a_file_its_folder_is_none) {
    EXPECT_EQ(file->FindFirstReferencingApp(&out, nullptr), 0u);
    EXPECT_EQ(out, nullptr);
    CQVUObject *const pinned = db.AddBelow(app, "pinned", OBJ_PINNED);
    EXPECT_EQ(FindReferrers(pinned), Ids{});
}

TEST_F(Referrers, Links_of_other_types_are_followed_back) {
    CQVUObject *const user = Loose("user");
    Link(user, file);
    EXPECT_EQ(FindReferrers(file), (Ids{Id(file), Id(user)}))
        << "the walk goes forward from the referrer, to the start among others";
}

TEST_F(Referrers, The_folder_s_own_link_of_another_type_is_followed) {
    Link(app, file, 4);
    EXPECT_EQ(FindReferrers(file), (Ids{Id(file), Id(app)}));
}

TEST_F(Referrers, A_link_type_with_more_bits_than_the_parent_s_is_another_type) {
    CQVUObject *const user = Loose("user");
    Link(user, file, LINK_PARENT | needs);
    EXPECT_EQ(FindReferrers(file), (Ids{Id(file), Id(user)}));
}

TEST_F(Referrers, Links_of_type_0_are_not_followed) {
    Link(Loose("user"), file, 0);
    EXPECT_EQ(FindReferrers(file), Ids{});
}

TEST_F(Referrers, The_walk_is_one_step_deep_backward_and_unbounded_forward) {
    CQVUObject *const user = Loose("user"), *const userOfUser = Loose("above");
    CQVUObject *const other = Loose("other"), *const further = Loose("further");
    Link(userOfUser, user);
    Link(user, other);
    Link(other, further);
    Link(user, file);
    EXPECT_EQ(FindReferrers(file), (Ids{Id(file), Id(further), Id(other), Id(user)}));
}

TEST_F(Referrers, Each_referrer_comes_once) {
    CQVUObject *const one = Loose("one"), *const two = Loose("two");
    Link(one, file, 2);
    Link(one, file, 4);
    Link(two, file, 2);
    EXPECT_EQ(FindReferrers(file), (Ids{Id(two), Id(file), Id(one)}));
}

TEST_F(Referrers, Of_a_key_the_parent_link_is_followed) {
    CQVUObject *const hive = db.Add("HKLM", OBJ_HIVE);
    CQVUObject *const key = db.AddBelow(hive, "key", OBJ_KEY);
    EXPECT_EQ(FindReferrers(key), (Ids{Id(key), Id(hive)}));
    CQVUObject *const value = db.AddBelow(key, "value", OBJ_VALUE);
    EXPECT_EQ(FindReferrers(value), (Ids{Id(value), Id(key)}));
}

// The test for a parent link looks at the last source examined, and at the start object
// only until there was one.
TEST_F(Referrers, After_a_source_of_another_type_a_parent_link_is_followed) {
    CQVUObject *const child = Loose("child");
    CQVUObject *const key = Loose("key", OBJ_KEY);
    CQVUObject *const folder = db.AddBelow(drive, "folder", OBJ_FILE);
    Link(app, child, LINK_PARENT);
    Link(key, child);
    Link(folder, child, LINK_PARENT);
    EXPECT_EQ(FindReferrers(child), (Ids{Id(folder), Id(child), Id(key)}));
}

TEST_F(Referrers, After_a_file_among_the_sources_a_parent_link_is_not_followed_again) {
    CQVUObject *const child = Loose("child");
    CQVUObject *const key = Loose("key", OBJ_KEY), *const user = Loose("user");
    CQVUObject *const folder = db.AddBelow(drive, "folder", OBJ_FILE);
    Link(app, child, LINK_PARENT);
    Link(key, child);
    Link(user, child);
    Link(folder, child, LINK_PARENT);
    EXPECT_EQ(FindReferrers(child), (Ids{Id(user), Id(child), Id(key)}));
}

TEST_F(Referrers, For_a_key_a_file_among_the_sources_stops_parent_links_behind_it) {
    CQVUObject *const hive = db.Add("HKLM", OBJ_HIVE);
    CQVUObject *const key = db.AddBelow(hive, "key", OBJ_KEY);
    CQVUObject *const user = Loose("user"), *const other = db.Add("HKCU", OBJ_HIVE);
    Link(user, key);
    Link(other, key, LINK_PARENT);
    EXPECT_EQ(FindReferrers(key), (Ids{Id(user), Id(key), Id(hive)}));
}

TEST_F(Referrers, A_source_that_was_gathered_before_does_not_carry_its_type) {
    CQVUObject *const child = Loose("child");
    CQVUObject *const key = Loose("key", OBJ_KEY), *const user = Loose("user");
    CQVUObject *const folder = db.AddBelow(drive, "folder", OBJ_FILE);
    Link(app, child, LINK_PARENT);
    Link(user, key);
    Link(user, child);
    Link(key, child);
    Link(folder, child, LINK_PARENT);
    EXPECT_EQ(FindReferrers(child), (Ids{Id(child), Id(key), Id(user)}))
        << "the key was gathered from the user, so that the last type seen is a file's";
}

TEST_F(Referrers, A_vfile_that_refers_to_a_located_object_gives_nothing) {
    CQVUObject *const name = Loose("file", OBJ_VFILE);
    Link(name, file);
    EXPECT_EQ(FindReferrers(file), Ids{});
}

TEST_F(Referrers, A_vfile_s_type_is_carried_although_it_gives_nothing) {
    CQVUObject *const child = Loose("child");
    Link(app, child, LINK_PARENT);
    Link(Loose("name", OBJ_VFILE), child);
    CQVUObject *const folder = db.AddBelow(drive, "folder", OBJ_FILE);
    Link(folder, child, LINK_PARENT);
    EXPECT_EQ(FindReferrers(child), (Ids{Id(child), Id(folder)}));
}

// Only the direct call can start at a bare name, since that has no path. What resolves is
// the start and not the referrer.
TEST_F(Referrers, Of_a_vfile_another_vfile_s_link_gives_the_located_start) {
    CQVUObject *const start = Loose("file", OBJ_VFILE), *const name = Loose("app", OBJ_VFILE);
    CQVUObject *const next = Loose("next");
    Link(name, start);
    Link(file, next);
    FFDepObjResult *results = nullptr;
    db->ExpandObjectRefBackwards(start, Text("C:\\app"), &results);
    EXPECT_EQ(Take(results), (Ids{Id(next), Id(file)}));
    EXPECT_EQ(file->GetFlags(), OBJ_FLAG_VISITED);
    results = nullptr;
    db->ExpandObjectRefBackwards(start, Text("C:\\app"), &results);
    EXPECT_EQ(results, nullptr) << "the located object bears the mark";
    EXPECT_EQ(file->SetFlags(0), 1);
    db->ExpandObjectRefBackwards(start, Text("C:\\elsewhere"), &results);
    EXPECT_EQ(results, nullptr);
}

TEST_F(Referrers, A_pinned_object_found_by_the_start_s_name_is_expanded) {
    CQVUObject *const pinned = db.AddBelow(app, "p", OBJ_PINNED), *const next = Loose("next");
    Link(pinned, next);
    CQVUObject *const start = Loose("p", OBJ_VFILE);
    Link(Loose("q", OBJ_VFILE), start);
    FFDepObjResult *results = nullptr;
    db->ExpandObjectRefBackwards(start, Text("C:\\app"), &results);
    EXPECT_EQ(Take(results), (Ids{Id(next), Id(pinned)}));
}

TEST_F(Referrers, A_marked_source_is_passed_over) {
    CQVUObject *const user = Loose("user");
    Link(user, file);
    EXPECT_EQ(user->SetFlags(OBJ_FLAG_VISITED), 1);
    EXPECT_EQ(FindReferrers(file), Ids{});
    EXPECT_EQ(user->GetFlags(), OBJ_FLAG_VISITED);
}

TEST_F(Referrers, No_mark_is_left_when_the_first_result_is_handed_out) {
    CQVUObject *const user = Loose("user");
    Link(user, file);
    SearchHandle const handle = file->FindFirstReferencingApp(&out, nullptr);
    ASSERT_NE(handle, 0u);
    EXPECT_EQ(file->GetFlags(), 0u);
    EXPECT_EQ(user->GetFlags(), 0u);
    file->FindCloseReferencingApp(handle);
}

TEST_F(Referrers, An_object_deleted_after_the_first_is_skipped) {
    CQVUObject *const user = Loose("user");
    Link(user, file);
    double value = 0;
    SearchHandle const handle = file->FindFirstReferencingApp(&out, &value);
    EXPECT_EQ(value, 1.0);
    EXPECT_EQ(user->Delete(), 1);
    EXPECT_EQ(file->FindNextReferencingApp(handle, &out, &value), 0);
    file->FindCloseReferencingApp(handle);
}

} // namespace

// The name index as lookups show it: hash, order of indexing, renames and deletions.
#include "attached.h"
#include "mirror.h"

#include <gtest/gtest.h>

namespace {

TEST(NameHash, Empty_text_gives_zero_and_case_of_ascii_letters_does_not_count) {
    EXPECT_EQ(mirror::NameHash(""), 0u);
    EXPECT_EQ(mirror::NameHash("A"), 65u);
    EXPECT_EQ(mirror::NameHash("a"), 65u);
    EXPECT_EQ(mirror::NameHash("Ab"), 65u * 4 ^ 66u);
    EXPECT_EQ(mirror::NameHash("\xff"), 0xffffffffu);
    EXPECT_EQ(mirror::NameHash("\x10@"), 0u);
}

class Names : public testing::Test {
protected:
    CQVUObject *VFile(char const *name) { return db->LookupVFILE(Text(name)); }

    Attached db;
};

TEST_F(Names, Lookup_is_blind_to_the_case_of_ascii_letters_only) {
    CQVUObject *const object = db.Add("Name.DLL", OBJ_VFILE);
    EXPECT_EQ(VFile("nAME.dll"), object);
    db.Add("\xc4", OBJ_VFILE);
    EXPECT_EQ(VFile("\xe4"), nullptr);
    EXPECT_NE(VFile("\xc4"), nullptr);
}

TEST_F(Names, A_vfile_is_found_by_exactly_its_type) {
    for (unsigned long const type : {OBJ_FILE, OBJ_PINNED, OBJ_DRIVE, OBJ_VFILE | OBJ_FILE})
        db.Add("x.dll", type);
    EXPECT_EQ(VFile("x.dll"), nullptr);
    CQVUObject *const object = db.Add("x.dll", OBJ_VFILE);
    EXPECT_EQ(VFile("x.dll"), object);
    EXPECT_EQ(VFile("y.dll"), nullptr);
    EXPECT_EQ(VFile(""), nullptr);
}

TEST_F(Names, The_object_indexed_first_is_found_first) {
    CQVUObject *const first = db.Add("x.dll", OBJ_VFILE);
    CQVUObject *const second = db.Add("X.DLL", OBJ_VFILE);
    EXPECT_EQ(VFile("x.dll"), first);
    EXPECT_EQ(first->Delete(), 1);
    EXPECT_EQ(VFile("x.dll"), second);
    db.Add("x.dll", OBJ_VFILE);
    EXPECT_EQ(VFile("x.dll"), second);
}

TEST_F(Names, Names_that_share_a_hash_are_told_apart) {
    std::string const tail = "0123456789abcdef";
    ASSERT_EQ(mirror::NameHash("one" + tail), mirror::NameHash("other" + tail));
    CQVUObject *const one = db.Add(("one" + tail).c_str(), OBJ_VFILE);
    CQVUObject *const other = db.Add(("other" + tail).c_str(), OBJ_VFILE);
    EXPECT_EQ(VFile(("ONE" + tail).c_str()), one);
    EXPECT_EQ(VFile(("OTHER" + tail).c_str()), other);
    EXPECT_EQ(VFile(("another" + tail).c_str()), nullptr);
    EXPECT_EQ(one->Delete(), 1);
    EXPECT_EQ(VFile(("one" + tail).c_str()), nullptr);
    EXPECT_EQ(VFile(("other" + tail).c_str()), other);
}

TEST_F(Names, A_renamed_object_is_not_found_by_its_new_name) {
    CQVUObject *const object = db.Add("old.dll", OBJ_VFILE);
    Rename(object, "new.dll");
    EXPECT_EQ(VFile("new.dll"), nullptr);
    EXPECT_EQ(VFile("old.dll"), nullptr) << "whole names are compared";
    Rename(object, "OLD.dll");
    EXPECT_EQ(VFile("old.dll"), object);
}

TEST_F(Names, A_renamed_object_is_found_where_new_and_old_name_share_a_hash) {
    std::string const tail = "0123456789abcdef";
    CQVUObject *const object = db.Add(("one" + tail).c_str(), OBJ_VFILE);
    Rename(object, "two" + tail);
    EXPECT_EQ(VFile(("two" + tail).c_str()), object);
    EXPECT_EQ(VFile(("one" + tail).c_str()), nullptr);
}

TEST_F(Names, A_rename_shows_in_the_paths_of_the_object_and_of_all_below) {
    CQVUObject *const drive = db.Add("C:", OBJ_DRIVE);
    CQVUObject *const folder = db.AddBelow(drive, "Folder", OBJ_FILE);
    CQVUObject *const file = db.AddBelow(folder, "file", OBJ_FILE);
    Rename(folder, "Moved");
    EXPECT_EQ(PathOf(file), "C:\\Moved\\file");
    EXPECT_EQ(db->GetObjectByPath("C:\\Moved\\file"), file) << "only the leaf is looked up by hash";
    EXPECT_EQ(db->GetObjectByPath("C:\\Folder\\file"), nullptr);
    EXPECT_EQ(db->GetObjectByPath("C:\\Moved"), nullptr);
    Rename(drive, "D:");
    EXPECT_EQ(PathOf(file), "D:\\Moved\\file");
    EXPECT_EQ(db->GetObjectByPath("D:\\Moved\\file"), file);
    EXPECT_EQ(db->GetObjectByPath("D:"), nullptr);
}

TEST_F(Names, An_object_named_after_it_was_made_is_not_indexed) {
    CQVUObject *const object = db.Add(nullptr, OBJ_VFILE);
    Rename(object, "late.dll");
    EXPECT_EQ(VFile("late.dll"), nullptr);
    EXPECT_EQ(object->Delete(), 1);
}

TEST_F(Names, A_reload_files_renamed_objects_under_their_present_names) {
    CQVUObject *const object = db.Add("old.dll", OBJ_VFILE);
    Rename(object, "new.dll");
    unsigned long const id = object->GetUniqueID();
    db.Reload(true);
    EXPECT_EQ(VFile("new.dll"), db.Object(id));
    EXPECT_EQ(VFile("old.dll"), nullptr);
}

TEST_F(Names, A_reload_orders_the_index_by_id) {
    CQVUObject *const first = db.Add("x.dll", OBJ_VFILE);
    unsigned long const id = first->GetUniqueID();
    db.Add("x.dll", OBJ_VFILE);
    Rename(first, "y.dll");
    db.Reload(true);
    Rename(db.Object(id), "x.dll");
    EXPECT_NE(VFile("x.dll"), db.Object(id));
    db.Reload(true);
    EXPECT_EQ(VFile("x.dll"), db.Object(id));
}

TEST_F(Names, A_renamed_object_that_is_deleted_leaves_the_index) {
    CQVUObject *const object = db.Add("old.dll", OBJ_VFILE);
    Rename(object, "new.dll");
    EXPECT_EQ(object->Delete(), 1);
    EXPECT_EQ(VFile("old.dll"), nullptr);
    EXPECT_EQ(VFile("new.dll"), nullptr);
    CQVUObject *const again = db.Add("old.dll", OBJ_VFILE);
    EXPECT_EQ(VFile("old.dll"), again);
}

TEST_F(Names, Renamed_files_that_are_deleted_leave_no_trace_in_path_lookups) {
    CQVUObject *const drive = db.Add("C:", OBJ_DRIVE);
    for (int round = 0; round < 50; ++round) {
        CQVUObject *const file = db.AddBelow(drive, "same", OBJ_FILE);
        Rename(file, "other" + std::to_string(round));
        EXPECT_EQ(file->Delete(), 1);
        EXPECT_EQ(db->GetObjectByPath("C:\\same"), nullptr);
    }
}

TEST_F(Names, An_object_renamed_to_nothing_under_the_hash_of_nothing_is_found_by_an_empty_leaf) {
    CQVUObject *const drive = db.Add("C:", OBJ_DRIVE);
    CQVUObject *const odd = db.AddBelow(drive, "\x10@", OBJ_FILE);
    EXPECT_EQ(db->GetObjectByPath("C:\\"), nullptr);
    Rename(odd, "");
    EXPECT_EQ(db->GetObjectByPath("C:\\"), odd);
    CQVUObject *const other = db.AddBelow(drive, "other", OBJ_FILE);
    Rename(other, "");
    EXPECT_EQ(odd->Delete(), 1);
    EXPECT_EQ(db->GetObjectByPath("C:\\"), nullptr) << "that one is filed under its old name";
}

TEST_F(Names, Objects_of_unnamed_types_are_not_indexed) {
    db.Add("x", 64);
    db.Add("C:", 128);
    EXPECT_EQ(db->GetObjectByPath("C:"), nullptr);
    CQVUObject *const drive = db.Add("C:", OBJ_DRIVE);
    EXPECT_EQ(db->GetObjectByPath("C:"), drive);
}

} // namespace

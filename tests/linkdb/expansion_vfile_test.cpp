// Bare names that become located objects during an expansion.
#include "attached.h"
#include "searches.h"
#include "system_folders.h"

#include <gtest/gtest.h>

namespace {

constexpr unsigned long needs = 2;

class VFiles : public testing::Test {
protected:
    static unsigned long Id(CQVUObject *object) { return object->GetUniqueID(); }

    Attached db;
    CQVUObject *app = db.Folder("C:\\app");
    CQVUObject *program = db.AddBelow(app, "program.exe", OBJ_FILE);
    CQVUObject *name = db.Add("x.dll", OBJ_VFILE);
};

TEST_F(VFiles, The_located_object_stands_for_the_name) {
    CQVUObject *const located = db.AddBelow(app, "x.dll", OBJ_FILE);
    program->LinkTo(name, needs);
    EXPECT_EQ(FindDependents(program), Ids{Id(located)});
    EXPECT_EQ(name->GetFlags(), 0u);
}

TEST_F(VFiles, A_name_that_nothing_bears_gives_nothing) {
    CQVUObject *const other = db.AddBelow(app, "y.dll", OBJ_FILE);
    program->LinkTo(name, needs);
    EXPECT_EQ(FindDependents(program), Ids{});
    program->LinkTo(other, needs);
    EXPECT_EQ(FindDependents(program), Ids{Id(other)});
}

TEST_F(VFiles, What_the_located_object_needs_is_followed_and_the_name_s_own_links_are_not) {
    CQVUObject *const located = db.AddBelow(app, "x.dll", OBJ_FILE);
    CQVUObject *const next = db.AddBelow(app, "y.dll", OBJ_FILE);
    CQVUObject *const notFollowed = db.AddBelow(app, "z.dll", OBJ_FILE);
    located->LinkTo(next, needs);
    name->LinkTo(notFollowed, needs);
    program->LinkTo(name, needs);
    EXPECT_EQ(FindDependents(program), (Ids{Id(next), Id(located)}));
}

TEST_F(VFiles, Names_further_on_are_looked_for_in_the_start_s_folder) {
    CQVUObject *const elsewhere = db.AddBelow(db.Folder("C:\\lib"), "l.dll", OBJ_FILE);
    db.AddBelow(db.Folder("C:\\lib"), "x.dll", OBJ_FILE);
    CQVUObject *const here = db.AddBelow(app, "x.dll", OBJ_FILE);
    program->LinkTo(elsewhere, needs);
    elsewhere->LinkTo(name, needs);
    EXPECT_EQ(FindDependents(program), (Ids{Id(here), Id(elsewhere)}));
}

TEST_F(VFiles, The_system_s_folders_are_asked_after_the_start_s) {
    CQVUObject *const system =
        db.AddBelow(db.Folder(CurrentSystemFolders().system), "x.dll", OBJ_FILE);
    program->LinkTo(name, needs);
    EXPECT_EQ(FindDependents(program), Ids{Id(system)});
    CQVUObject *const here = db.AddBelow(app, "x.dll", OBJ_FILE);
    EXPECT_EQ(FindDependents(program), Ids{Id(here)});
}

TEST_F(VFiles, A_located_object_comes_once_by_name_and_by_link) {
    CQVUObject *const located = db.AddBelow(app, "x.dll", OBJ_FILE);
    CQVUObject *const again = db.Add("X.DLL", OBJ_VFILE);
    program->LinkTo(name, needs);
    program->LinkTo(again, needs);
    program->LinkTo(located, needs);
    EXPECT_EQ(FindDependents(program), Ids{Id(located)});
}

TEST_F(VFiles, A_pinned_object_found_by_name_ends_the_walk_and_one_that_is_linked_does_not) {
    CQVUObject *const pinned = db.AddBelow(app, "x.dll", OBJ_PINNED);
    CQVUObject *const next = db.AddBelow(app, "y.dll", OBJ_FILE);
    pinned->LinkTo(next, needs);
    program->LinkTo(name, needs);
    EXPECT_EQ(FindDependents(program), Ids{Id(pinned)});
    EXPECT_EQ(pinned->GetFlags(), 0u);
    CQVUObject *const other = db.AddBelow(app, "other.exe", OBJ_FILE);
    other->LinkTo(pinned, needs);
    EXPECT_EQ(FindDependents(other), (Ids{Id(next), Id(pinned)}));
    other->LinkTo(name, needs);
    EXPECT_EQ(FindDependents(other), (Ids{Id(next), Id(pinned)}));
}

TEST_F(VFiles, A_pinned_object_found_by_name_first_is_not_expanded_by_a_later_link) {
    CQVUObject *const pinned = db.AddBelow(app, "x.dll", OBJ_PINNED);
    pinned->LinkTo(db.AddBelow(app, "y.dll", OBJ_FILE), needs);
    program->LinkTo(name, needs);
    program->LinkTo(pinned, needs);
    EXPECT_EQ(FindDependents(program), Ids{Id(pinned)});
}

TEST_F(VFiles, A_marked_name_and_a_marked_located_object_are_passed_over) {
    CQVUObject *const located = db.AddBelow(app, "x.dll", OBJ_FILE);
    program->LinkTo(name, needs);
    EXPECT_EQ(name->SetFlags(OBJ_FLAG_VISITED), 1);
    EXPECT_EQ(FindDependents(program), Ids{});
    EXPECT_EQ(name->SetFlags(0), 1);
    EXPECT_EQ(located->SetFlags(OBJ_FLAG_VISITED), 1);
    EXPECT_EQ(FindDependents(program), Ids{});
}

// For an object right below a drive the text isn't cut: the file's own path serves as folder.
TEST_F(VFiles, Right_below_a_drive_the_whole_path_is_the_folder) {
    CQVUObject *const drive = db->GetObjectByPath("C:");
    CQVUObject *const low = db.AddBelow(drive, "low.exe", OBJ_FILE);
    db.AddBelow(drive, "x.dll", OBJ_FILE);
    low->LinkTo(name, needs);
    EXPECT_EQ(FindDependents(low), Ids{});
    CQVUObject *const inside = db.AddBelow(low, "x.dll", OBJ_FILE);
    EXPECT_EQ(FindDependents(low), Ids{Id(inside)})
        << "its child by parent link comes by name first";
}

TEST_F(VFiles, A_drive_is_its_own_folder) {
    CQVUObject *const drive = db.Add("E:", OBJ_DRIVE);
    drive->LinkTo(name, needs);
    EXPECT_EQ(FindDependents(drive), Ids{});
    CQVUObject *const pinned = db.AddBelow(drive, "x.dll", OBJ_PINNED);
    pinned->LinkTo(program, needs);
    EXPECT_EQ(FindDependents(drive), Ids{Id(pinned)}) << "found by name, before the parent link";
}

TEST_F(VFiles, A_folder_s_base_is_the_folder_above_it) {
    CQVUObject *const sub = db.AddBelow(app, "sub", OBJ_FILE);
    CQVUObject *const beside = db.AddBelow(app, "x.dll", OBJ_FILE);
    db.AddBelow(db.AddBelow(app, "other", OBJ_FILE), "x.dll", OBJ_FILE);
    sub->LinkTo(name, needs);
    EXPECT_EQ(FindDependents(sub), Ids{Id(beside)});
}

TEST_F(VFiles, The_base_path_of_a_direct_call_may_be_any_folder_or_null) {
    CQVUObject *const elsewhere = db.AddBelow(db.Folder("D:\\elsewhere"), "x.dll", OBJ_FILE);
    program->LinkTo(name, needs);
    FFDepObjResult *results = nullptr;
    db->ExpandObjectRef(program, nullptr, &results);
    EXPECT_EQ(results, nullptr);
    db->ExpandObjectRef(program, Text("D:\\elsewhere"), &results);
    EXPECT_EQ(Take(results), Ids{Id(elsewhere)});
}

} // namespace

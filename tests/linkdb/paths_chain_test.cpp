// The chain test on its own, with the quirks that its results rest on.
#include "attached.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

class Chain : public testing::Test {
protected:
    int Holds(CQVUObject *object, std::string const &parentPath) {
        buffer.assign(parentPath.begin(), parentPath.end());
        buffer.resize(1000);
        return Protected::HasCorrectPath(db.Get(), object, buffer.data());
    }

    Attached db;
    CQVUObject *drive = db.Add("C:", OBJ_DRIVE);
    CQVUObject *folder = db.AddBelow(drive, "Folder", OBJ_FILE);
    CQVUObject *file = db.AddBelow(folder, "File.txt", OBJ_FILE);
    CQVUObject *hive = db.Add("HKLM", OBJ_HIVE);
    CQVUObject *key = db.AddBelow(hive, "Key", OBJ_KEY);
    std::vector<char> buffer;
};

TEST_F(Chain, A_parent_text_of_fewer_than_four_characters_is_a_root_s_name) {
    EXPECT_EQ(Holds(folder, "C:"), 1);
    EXPECT_EQ(Holds(folder, "c:"), 1);
    EXPECT_EQ(Holds(folder, "D:"), 0);
    EXPECT_EQ(Holds(file, "C:"), 0);
    EXPECT_EQ(Holds(folder, ""), 0);
}

TEST_F(Chain, One_trailing_backslash_is_stripped_from_a_root_s_name_in_place) {
    EXPECT_EQ(Holds(folder, "C:\\"), 1);
    EXPECT_STREQ(buffer.data(), "C:");
    EXPECT_EQ(Holds(folder, "D\\\\"), 0);
    EXPECT_STREQ(buffer.data(), "D\\");
}

TEST_F(Chain, A_longer_parent_text_is_left_as_it_stands) {
    EXPECT_EQ(Holds(file, "C:\\Folder"), 1);
    EXPECT_STREQ(buffer.data(), "C:\\Folder");
    EXPECT_EQ(Holds(file, "C:\\Folder\\"), 0);
    EXPECT_STREQ(buffer.data(), "C:\\Folder\\");
}

TEST_F(Chain, A_text_without_a_backslash_is_a_root_s_name_for_keys_and_hives) {
    EXPECT_EQ(Holds(key, "HKLM"), 1);
    EXPECT_EQ(Holds(key, "HKCU"), 0);
    CQVUObject *const inner = db.AddBelow(hive, "Inner", OBJ_HIVE);
    EXPECT_EQ(Holds(inner, "HKLM"), 1);
    for (unsigned long const type : {OBJ_VALUE, OBJ_FILE, OBJ_PINNED, OBJ_VFILE, OBJ_DRIVE})
        EXPECT_EQ(Holds(db.AddBelow(hive, "odd", type), "HKLM"), 0) << type;
}

TEST_F(Chain, A_root_s_name_is_looked_for_among_drives_and_hives_only) {
    CQVUObject *const notRoot = db.AddBelow(drive, "abc", OBJ_FILE);
    CQVUObject *const below = db.AddBelow(notRoot, "below", OBJ_FILE);
    EXPECT_EQ(Holds(below, "abc"), 0);
    EXPECT_EQ(Holds(below, "C:\\abc"), 1);
    CQVUObject *const root = db.Add("abc", OBJ_HIVE);
    root->LinkTo(below, LINK_PARENT);
    EXPECT_EQ(Holds(below, "ABC"), 1);
}

TEST_F(Chain, The_object_s_own_name_and_path_do_not_count) {
    CQVUObject *const unnamed = db.AddBelow(folder, nullptr, OBJ_FILE);
    EXPECT_EQ(Holds(unnamed, "C:\\Folder"), 1);
}

TEST_F(Chain, A_parent_without_a_name_is_skipped) {
    CQVUObject *const unnamed = db.AddBelow(drive, nullptr, OBJ_FILE);
    CQVUObject *const child = db.AddBelow(unnamed, "child", OBJ_FILE);
    EXPECT_EQ(Holds(child, "C:\\Folder"), 0);
    EXPECT_EQ(Holds(child, "C:\\\\"), 0);
    folder->LinkTo(child, LINK_PARENT);
    EXPECT_EQ(Holds(child, "C:\\Folder"), 1);
}

TEST_F(Chain, Parents_of_any_type_carry_a_chain) {
    for (unsigned long const type :
         {OBJ_ROOT, OBJ_VFILE, OBJ_VALUE, OBJ_DRIVE, std::uint32_t{64}}) {
        CQVUObject *const odd = db.AddBelow(folder, "odd", type);
        CQVUObject *const child = db.AddBelow(odd, "child", OBJ_FILE);
        EXPECT_EQ(Holds(child, "C:\\Folder\\odd"), 1) << type;
        EXPECT_EQ(db->GetObjectByPath("C:\\Folder\\odd\\child"), child) << type;
        EXPECT_EQ(child->Delete(), 1);
    }
}

TEST_F(Chain, Links_of_other_types_are_skipped) {
    CQVUObject *const child = db.Add("child", OBJ_FILE);
    folder->LinkTo(child, 2);
    drive->LinkTo(child, 3);
    EXPECT_EQ(Holds(child, "C:\\Folder"), 0);
    EXPECT_EQ(Holds(child, "C:"), 0);
}

// Two parents of the same name: the test of the first leaves the parent text behind where
// the leaf was, and the second is compared with that.
TEST_F(Chain, Only_the_first_of_several_parents_of_one_name_gets_a_real_test) {
    CQVUObject *const lost = db.Add("Folder", OBJ_FILE);
    CQVUObject *const child = db.AddBelow(lost, "child", OBJ_FILE);
    folder->LinkTo(child, LINK_PARENT);
    EXPECT_EQ(Holds(child, "C:\\Folder"), 0);
    EXPECT_EQ(db->GetObjectByPath("C:\\Folder\\child"), nullptr);
    EXPECT_EQ(PathOf(child), "C:\\Folder\\child");
    EXPECT_EQ(lost->Delete(), 1);
    EXPECT_EQ(db->GetObjectByPath("C:\\Folder\\child"), child);
}

TEST_F(Chain, Parents_of_other_names_do_not_spoil_the_test) {
    CQVUObject *const other = db.AddBelow(drive, "Other", OBJ_FILE);
    CQVUObject *const child = db.AddBelow(other, "child", OBJ_FILE);
    folder->LinkTo(child, LINK_PARENT);
    EXPECT_EQ(Holds(child, "C:\\Folder"), 1);
    EXPECT_EQ(db->GetObjectByPath("C:\\Folder\\child"), child);
    EXPECT_EQ(db->GetObjectByPath("C:\\Other\\child"), child);
}

TEST_F(Chain, After_a_failed_parent_one_named_like_the_parent_text_is_tested) {
    CQVUObject *const deep = db.AddBelow(folder, "Deep", OBJ_FILE);
    CQVUObject *const lost = db.Add("Deep", OBJ_FILE);
    CQVUObject *const odd = db.AddBelow(folder, "C:\\Folder", OBJ_FILE);
    CQVUObject *const child = db.AddBelow(lost, "child", OBJ_FILE);
    deep->LinkTo(child, LINK_PARENT);
    EXPECT_EQ(Holds(child, "C:\\Folder\\Deep"), 0);
    odd->LinkTo(child, LINK_PARENT);
    EXPECT_EQ(Holds(child, "C:\\Folder\\Deep"), 1) << "its own parent is C:\\Folder";
    EXPECT_EQ(db->GetObjectByPath("C:\\Folder\\Deep\\child"), child);
}

// The text that the failed parent was tested with has lost its backslash to that test.
TEST_F(Chain, The_text_left_behind_is_as_the_failed_test_left_it) {
    CQVUObject *const lost = db.Add("Folder", OBJ_FILE);
    CQVUObject *const odd = db.AddBelow(drive, "C:", OBJ_FILE);
    CQVUObject *const child = db.AddBelow(lost, "child", OBJ_FILE);
    EXPECT_EQ(Holds(child, "C:\\\\Folder"), 0);
    odd->LinkTo(child, LINK_PARENT);
    EXPECT_EQ(Holds(child, "C:\\\\Folder"), 1);
    EXPECT_EQ(Holds(child, "C:\\Folder"), 1);
}

TEST_F(Chain, Both_slashes_split_a_parent_text) {
    CQVUObject *const odd = db.AddBelow(drive, "a/b", OBJ_FILE);
    CQVUObject *const child = db.AddBelow(odd, "child", OBJ_FILE);
    EXPECT_EQ(Holds(child, "C:\\a/b"), 0);
    CQVUObject *const b = db.AddBelow(drive, "bb", OBJ_FILE);
    CQVUObject *const other = db.AddBelow(b, "other", OBJ_FILE);
    EXPECT_EQ(Holds(other, "C:/bb"), 0) << "only a backslash is stripped from the rest";
    EXPECT_EQ(Holds(other, "C:bb"), 1);
}

TEST_F(Chain, Names_with_backslashes_are_never_a_leaf) {
    CQVUObject *const odd = db.AddBelow(drive, "a\\b", OBJ_FILE);
    CQVUObject *const child = db.AddBelow(odd, "child", OBJ_FILE);
    EXPECT_EQ(PathOf(child), "C:\\a\\b\\child");
    EXPECT_EQ(db->GetObjectByPath("C:\\a\\b\\child"), nullptr);
    EXPECT_EQ(db->GetObjectByPath("C:\\a\\b"), nullptr);
}

TEST_F(Chain, A_cycle_of_parents_ends_with_the_text) {
    CQVUObject *const one = db.Add("one", OBJ_FILE);
    CQVUObject *const two = db.AddBelow(one, "two", OBJ_FILE);
    two->LinkTo(one, LINK_PARENT);
    EXPECT_EQ(db->GetObjectByPath("C:\\one\\two"), nullptr);
    std::string path = "C:";
    for (int i = 0; i < 100; ++i)
        path += "\\one\\two";
    EXPECT_EQ(db->GetObjectByPath(path.c_str()), nullptr);
    drive->LinkTo(one, LINK_PARENT);
    EXPECT_EQ(db->GetObjectByPath("C:\\one\\two"), two);
    EXPECT_EQ(db->GetObjectByPath(path.c_str()), two);
}

} // namespace

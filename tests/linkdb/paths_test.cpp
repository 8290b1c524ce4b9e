// From an object to its path and back.
#include "attached.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

class FileTree : public testing::Test {
protected:
    Attached db;
    CQVUObject *drive = db.Add("C:", OBJ_DRIVE);
    CQVUObject *folder = db.AddBelow(drive, "Folder", OBJ_FILE);
    CQVUObject *file = db.AddBelow(folder, "File.txt", OBJ_FILE);
};

class KeyTree : public testing::Test {
protected:
    Attached db;
    CQVUObject *hive = db.Add("HKLM", OBJ_HIVE);
    CQVUObject *key = db.AddBelow(hive, "Software", OBJ_KEY);
    CQVUObject *inner = db.AddBelow(key, "Vendor 1.2", OBJ_KEY);
    CQVUObject *value = db.AddBelow(inner, "Path", OBJ_VALUE);
};

TEST_F(FileTree, A_path_is_the_chain_of_names_from_the_root) {
    EXPECT_EQ(PathOf(drive), "C:");
    EXPECT_EQ(PathOf(folder), "C:\\Folder");
    EXPECT_EQ(PathOf(file), "C:\\Folder\\File.txt");
}

TEST_F(KeyTree, A_path_is_the_chain_of_names_from_the_root) {
    EXPECT_EQ(PathOf(hive), "HKLM");
    EXPECT_EQ(PathOf(key), "HKLM\\Software");
    EXPECT_EQ(PathOf(value), "HKLM\\Software\\Vendor 1.2\\Path");
}

TEST_F(FileTree, All_three_calls_for_the_path_give_the_same) {
    std::vector<char> buffer(1000);
    EXPECT_EQ(db->GetFullPath(file, buffer.data()), 1);
    EXPECT_STREQ(buffer.data(), "C:\\Folder\\File.txt");
    std::vector<char> other(1000);
    EXPECT_EQ(db->SafeGetFullPath(file, other.data(), 0), 1);
    EXPECT_EQ(buffer, other);
}

TEST_F(FileTree, A_null_object_has_no_path) {
    char buffer[1000] = "as it was";
    EXPECT_EQ(static_cast<CQVUObject *>(nullptr)->GetFullPath(buffer), 0);
    EXPECT_STREQ(buffer, "as it was");
}

TEST_F(FileTree, Pinned_objects_keys_and_values_have_paths_as_files_do) {
    for (unsigned long const type : {OBJ_PINNED, OBJ_FILE, OBJ_KEY, OBJ_VALUE})
        EXPECT_EQ(PathOf(db.AddBelow(folder, "x", type)), "C:\\Folder\\x") << type;
}

TEST_F(FileTree, Objects_of_other_types_have_no_path) {
    for (unsigned long const type : {OBJ_ROOT, OBJ_VFILE, OBJ_FILE | OBJ_PINNED,
                                     OBJ_KEY | OBJ_VALUE, std::uint32_t{64}, OBJ_VFILE | OBJ_FILE})
        EXPECT_EQ(PathOf(db.AddBelow(folder, "x", type)), std::nullopt) << type;
    EXPECT_EQ(PathOf(db->GetRootObject()), std::nullopt);
}

TEST_F(FileTree, Nothing_below_an_object_without_a_path_has_one) {
    CQVUObject *const vfile = db.AddBelow(folder, "v.dll", OBJ_VFILE);
    EXPECT_EQ(PathOf(db.AddBelow(vfile, "x", OBJ_FILE)), std::nullopt);
}

TEST_F(FileTree, A_drive_s_own_parents_are_not_asked) {
    CQVUObject *const inner = db.AddBelow(folder, "D:", OBJ_DRIVE);
    EXPECT_EQ(PathOf(inner), "D:");
    EXPECT_EQ(PathOf(db.AddBelow(inner, "x", OBJ_FILE)), "D:\\x");
}

TEST_F(FileTree, Roots_without_a_name_have_an_empty_path) {
    CQVUObject *const unnamed = db.Add(nullptr, OBJ_DRIVE);
    EXPECT_EQ(PathOf(unnamed), "");
    EXPECT_EQ(PathOf(db.Add(nullptr, OBJ_HIVE)), "");
    EXPECT_EQ(PathOf(db.AddBelow(unnamed, "x", OBJ_FILE)), "\\x");
}

TEST_F(FileTree, An_object_without_a_name_adds_just_the_backslash) {
    CQVUObject *const unnamed = db.AddBelow(folder, nullptr, OBJ_FILE);
    EXPECT_EQ(PathOf(unnamed), "C:\\Folder\\");
    EXPECT_EQ(PathOf(db.AddBelow(unnamed, "x", OBJ_FILE)), "C:\\Folder\\\\x");
}

TEST_F(FileTree, The_two_trees_share_the_mechanism) {
    CQVUObject *const hive = db.Add("HKLM", OBJ_HIVE);
    EXPECT_EQ(PathOf(db.AddBelow(hive, "x", OBJ_FILE)), "HKLM\\x");
    EXPECT_EQ(PathOf(db.AddBelow(folder, "k", OBJ_KEY)), "C:\\Folder\\k");
}

TEST_F(FileTree, Links_of_other_types_are_no_parents) {
    CQVUObject *const alone = db.Add("alone", OBJ_FILE);
    for (unsigned long const type : {0ul, 2ul, 3ul, 5ul, 0x40000000ul})
        folder->LinkTo(alone, type);
    EXPECT_EQ(PathOf(alone), std::nullopt);
    folder->LinkTo(alone, LINK_PARENT | 0x80000000ul);
    EXPECT_EQ(PathOf(alone), "C:\\Folder\\alone");
}

TEST_F(FileTree, The_first_parent_with_a_complete_chain_gives_the_path) {
    CQVUObject *const lost = db.Add("lost", OBJ_FILE);
    CQVUObject *const other = db.AddBelow(drive, "Other", OBJ_FILE);
    CQVUObject *const child = db.AddBelow(lost, "child", OBJ_FILE);
    EXPECT_EQ(PathOf(child), std::nullopt);
    other->LinkTo(child, LINK_PARENT);
    folder->LinkTo(child, LINK_PARENT);
    EXPECT_EQ(PathOf(child), "C:\\Other\\child");
    drive->LinkTo(lost, LINK_PARENT);
    EXPECT_EQ(PathOf(child), "C:\\lost\\child");
}

TEST_F(FileTree, An_object_that_has_lost_its_parent_link_has_no_path) {
    CQVULink *link = nullptr;
    SearchHandle const search = file->FindFirstLinkTo(LINK_PARENT, &link);
    ASSERT_NE(search, 0u);
    file->FindCloseLinkTo(search);
    EXPECT_EQ(link->Delete(), 1);
    EXPECT_EQ(PathOf(file), std::nullopt);
    EXPECT_EQ(db->GetObjectByPath("C:\\Folder\\File.txt"), nullptr);
}

TEST_F(FileTree, An_object_whose_parent_is_deleted_has_no_path) {
    EXPECT_EQ(folder->Delete(), 1);
    EXPECT_EQ(PathOf(file), std::nullopt);
    EXPECT_EQ(db->GetObjectByPath("C:\\Folder\\File.txt"), nullptr);
    EXPECT_EQ(db->GetObjectByPath("C:\\Folder"), nullptr);
}

TEST_F(FileTree, The_entry_of_a_link_that_is_gone_is_skipped) {
    CQVUObject *const child = db.AddBelow(folder, "child", OBJ_FILE);
    EXPECT_EQ(db->DeleteLink(child->pdwLinksTo[0], 1, 0), 1);
    EXPECT_EQ(child->dwLinksTo, 1u);
    EXPECT_EQ(PathOf(child), std::nullopt);
    EXPECT_EQ(db->GetObjectByPath("C:\\Folder\\child"), nullptr);
    drive->LinkTo(child, LINK_PARENT);
    EXPECT_EQ(PathOf(child), "C:\\child");
    EXPECT_EQ(db->GetObjectByPath("C:\\child"), child);
}

TEST_F(FileTree, A_drive_letter_with_its_colon_finds_the_drive) {
    EXPECT_EQ(db->GetObjectByPath("C:"), drive);
    EXPECT_EQ(db->GetObjectByPath("c:"), drive);
    EXPECT_EQ(db->GetObjectByPath("D:"), nullptr);
}

TEST_F(FileTree, A_drive_letter_with_a_backslash_finds_nothing) {
    EXPECT_EQ(db->GetObjectByPath("C:\\"), nullptr);
}

TEST_F(FileTree, Files_and_folders_are_found_by_their_paths_without_regard_to_case) {
    EXPECT_EQ(db->GetObjectByPath("C:\\Folder"), folder);
    EXPECT_EQ(db->GetObjectByPath("C:\\Folder\\File.txt"), file);
    EXPECT_EQ(db->GetObjectByPath("c:\\FOLDER\\fILE.TXT"), file);
}

TEST_F(FileTree, The_backslash_behind_a_drive_may_be_left_out) {
    EXPECT_EQ(db->GetObjectByPath("C:Folder"), folder);
    EXPECT_EQ(db->GetObjectByPath("C:Folder\\File.txt"), file);
}

TEST_F(FileTree, One_doubled_backslash_is_stripped_where_a_text_ends_in_it) {
    EXPECT_EQ(db->GetObjectByPath("C:\\Folder\\\\File.txt"), nullptr);
    EXPECT_EQ(db->GetObjectByPath("C:\\\\Folder"), folder) << "a root's text is stripped twice";
    EXPECT_EQ(db->GetObjectByPath("C:\\\\\\Folder"), nullptr);
}

TEST_F(FileTree, A_file_of_the_right_name_under_another_folder_is_not_returned) {
    CQVUObject *const other = db.AddBelow(drive, "Other", OBJ_FILE);
    EXPECT_EQ(db->GetObjectByPath("C:\\Other\\File.txt"), nullptr);
    CQVUObject *const twin = db.AddBelow(other, "file.TXT", OBJ_FILE);
    EXPECT_EQ(db->GetObjectByPath("C:\\Other\\File.txt"), twin);
    EXPECT_EQ(db->GetObjectByPath("C:\\Folder\\File.txt"), file);
    EXPECT_EQ(db->GetObjectByPath("C:\\File.txt"), nullptr);
    EXPECT_EQ(db->GetObjectByPath("D:\\Folder\\File.txt"), nullptr);
}

TEST_F(FileTree, The_first_of_two_objects_with_one_path_is_found) {
    CQVUObject *const twin = db.AddBelow(folder, "File.txt", OBJ_PINNED);
    EXPECT_EQ(db->GetObjectByPath("C:\\Folder\\File.txt"), file);
    EXPECT_EQ(file->Delete(), 1);
    EXPECT_EQ(db->GetObjectByPath("C:\\Folder\\File.txt"), twin);
}

TEST_F(FileTree, A_path_with_a_drive_finds_files_and_pinned_objects_only) {
    for (unsigned long const type : {OBJ_KEY, OBJ_VALUE, OBJ_VFILE, OBJ_HIVE, OBJ_DRIVE, OBJ_ROOT,
                                     OBJ_FILE | OBJ_PINNED, std::uint32_t{64}})
        db.AddBelow(folder, "odd", type);
    EXPECT_EQ(db->GetObjectByPath("C:\\Folder\\odd"), nullptr);
    CQVUObject *const pinned = db.AddBelow(folder, "odd", OBJ_PINNED);
    EXPECT_EQ(db->GetObjectByPath("C:\\Folder\\odd"), pinned);
}

TEST_F(FileTree, Names_with_several_dots_or_one_in_front_are_found) {
    for (char const *const name : {"a.b.c", ".hidden", "trailing.", "..", "no dot"}) {
        CQVUObject *const object = db.AddBelow(folder, name, OBJ_FILE);
        EXPECT_EQ(db->GetObjectByPath((std::string("C:\\Folder\\") + name).c_str()), object);
        CQVUObject *const below = db.AddBelow(object, "x", OBJ_FILE);
        EXPECT_EQ(db->GetObjectByPath((std::string("C:\\Folder\\") + name + "\\x").c_str()), below);
    }
}

TEST_F(FileTree, A_forward_slash_splits_but_is_no_part_of_a_chain) {
    EXPECT_EQ(db->GetObjectByPath("C:/Folder"), nullptr);
    EXPECT_EQ(db->GetObjectByPath("C:\\Folder/File.txt"), nullptr);
}

TEST_F(FileTree, Each_level_needs_its_drive_at_the_top) {
    CQVUObject *const hive = db.Add("E:", OBJ_HIVE);
    CQVUObject *const below = db.AddBelow(hive, "x", OBJ_FILE);
    EXPECT_EQ(db->GetObjectByPath("E:"), nullptr) << "a short text asks for drives";
    EXPECT_EQ(db->GetObjectByPath("E:\\x"), below) << "the chain test takes either root";
}

TEST_F(KeyTree, A_hive_is_found_by_its_name_of_three_or_four_characters) {
    EXPECT_EQ(db->GetObjectByPath("HKLM"), hive);
    EXPECT_EQ(db->GetObjectByPath("hklm"), hive);
    CQVUObject *const three = db.Add("HKU", OBJ_HIVE);
    EXPECT_EQ(db->GetObjectByPath("HKU"), three);
    db.Add("HK", OBJ_HIVE);
    EXPECT_EQ(db->GetObjectByPath("HK"), nullptr) << "a shorter text asks for drives";
    db.Add("HKEY_USERS", OBJ_HIVE);
    EXPECT_EQ(db->GetObjectByPath("HKEY_USERS"), nullptr) << "a longer one for keys";
}

TEST_F(KeyTree, Keys_and_values_are_found_by_their_paths_without_regard_to_case) {
    EXPECT_EQ(db->GetObjectByPath("HKLM\\Software"), key);
    EXPECT_EQ(db->GetObjectByPath("hklm\\SOFTWARE\\vendor 1.2"), inner);
    EXPECT_EQ(db->GetObjectByPath("HKLM\\Software\\Vendor 1.2\\Path"), value);
}

TEST_F(KeyTree, A_key_below_a_long_hive_name_is_found) {
    CQVUObject *const users = db.Add("HKEY_USERS", OBJ_HIVE);
    CQVUObject *const below = db.AddBelow(users, "x", OBJ_KEY);
    EXPECT_EQ(db->GetObjectByPath("HKEY_USERS\\x"), below);
    CQVUObject *const deeper = db.AddBelow(below, "y", OBJ_KEY);
    EXPECT_EQ(db->GetObjectByPath("HKEY_USERS\\x\\y"), deeper);
}

TEST_F(KeyTree, A_key_whose_name_holds_dots_is_found_and_passed) {
    CQVUObject *const below = db.AddBelow(inner, "v1.0.0", OBJ_KEY);
    EXPECT_EQ(db->GetObjectByPath("HKLM\\Software\\Vendor 1.2\\v1.0.0"), below);
}

TEST_F(KeyTree, A_value_may_not_stand_right_below_a_hive_with_a_long_name) {
    CQVUObject *const low = db.AddBelow(hive, "low", OBJ_VALUE);
    EXPECT_EQ(PathOf(low), "HKLM\\low");
    EXPECT_EQ(db->GetObjectByPath("HKLM\\low"), nullptr);
    CQVUObject *const users = db.Add("HKU", OBJ_HIVE);
    CQVUObject *const shortRoot = db.AddBelow(users, "low", OBJ_VALUE);
    EXPECT_EQ(db->GetObjectByPath("HKU\\low"), shortRoot)
        << "fewer than four characters are a root";
}

TEST_F(KeyTree, A_text_without_a_colon_finds_keys_and_values_only) {
    for (unsigned long const type : {OBJ_FILE, OBJ_PINNED, OBJ_VFILE, OBJ_HIVE, OBJ_DRIVE,
                                     OBJ_KEY | OBJ_VALUE, std::uint32_t{64}})
        db.AddBelow(key, "odd", type);
    EXPECT_EQ(db->GetObjectByPath("HKLM\\Software\\odd"), nullptr);
    CQVUObject *const found = db.AddBelow(key, "odd", OBJ_VALUE);
    EXPECT_EQ(db->GetObjectByPath("HKLM\\Software\\odd"), found);
}

TEST_F(KeyTree, A_text_with_no_backslash_and_no_colon_gives_nothing) {
    db.AddBelow(hive, "lonely", OBJ_KEY);
    EXPECT_EQ(db->GetObjectByPath("lonely"), nullptr);
    EXPECT_EQ(db->GetObjectByPath("Software"), nullptr);
}

TEST_F(KeyTree, A_trailing_backslash_leaves_an_empty_leaf) {
    EXPECT_EQ(db->GetObjectByPath("HKLM\\Software\\"), nullptr);
    EXPECT_EQ(db->GetObjectByPath("HKLM\\"), nullptr);
}

TEST_F(KeyTree, One_doubled_backslash_before_the_leaf_is_stripped) {
    EXPECT_EQ(db->GetObjectByPath("HKLM\\\\Software"), key);
    EXPECT_EQ(db->GetObjectByPath("HKLM\\Software\\\\Vendor 1.2"), inner);
    EXPECT_EQ(db->GetObjectByPath("HKLM\\\\Software\\Vendor 1.2"), nullptr);
    EXPECT_EQ(db->GetObjectByPath("HKLM\\\\\\Software"), nullptr);
}

TEST_F(KeyTree, Each_candidate_strips_one_more_backslash_from_the_parent_text) {
    CQVUObject *const second = db.AddBelow(hive, "Software", OBJ_KEY);
    EXPECT_EQ(db->GetObjectByPath("HKLM\\Software"), key);
    EXPECT_EQ(db->GetObjectByPath("HKLM\\\\\\Software"), second);
}

TEST(ObjectByPath, An_empty_database_finds_nothing) {
    Attached db;
    for (char const *const path : {"", "C", "C:", "C:\\", "C:\\x", "HKLM", "HKLM\\x", "\\", "\\\\",
                                   "\\\\\\\\\\", ":", "::", ":::::", "x"})
        EXPECT_EQ(db->GetObjectByPath(path), nullptr) << path;
}

TEST(ObjectByPath, Short_texts_find_drives_of_any_short_name) {
    Attached db;
    CQVUObject *const one = db.Add("Q", OBJ_DRIVE);
    CQVUObject *const two = db.Add("\\\\", OBJ_DRIVE);
    EXPECT_EQ(db->GetObjectByPath("q"), one);
    EXPECT_EQ(db->GetObjectByPath("\\\\"), two);
}

} // namespace

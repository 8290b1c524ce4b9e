// From a bare file name to the located object.
#include "attached.h"
#include "system_folders.h"

#include <gtest/gtest.h>

namespace {

class Resolve : public testing::Test {
protected:
    CQVUObject *Located(std::string const &folder, char const *name = "x.dll") {
        return db.AddBelow(db.Folder(folder), name, OBJ_FILE);
    }
    CQVUObject *From(std::string const &base) { return vfile->Resolve(Text(base)); }

    Attached db;
    SystemFolders folders = CurrentSystemFolders();
    CQVUObject *vfile = db.Add("x.dll", OBJ_VFILE);
};

TEST_F(Resolve, Nothing_is_found_where_nothing_is) {
    EXPECT_EQ(vfile->Resolve(nullptr), nullptr);
    EXPECT_EQ(From("C:\\app"), nullptr);
    EXPECT_EQ(From(""), nullptr);
}

TEST_F(Resolve, The_folders_are_asked_in_order_base_system_old_system_windows) {
    CQVUObject *const inWindows = Located(folders.windows);
    EXPECT_EQ(From("C:\\app"), inWindows);
    CQVUObject *const inOldSystem = Located(folders.windows + "\\SYSTEM");
    EXPECT_EQ(From("C:\\app"), inOldSystem);
    CQVUObject *const inSystem = Located(folders.system);
    EXPECT_EQ(From("C:\\app"), inSystem);
    CQVUObject *const inApp = Located("C:\\app");
    EXPECT_EQ(From("C:\\app"), inApp);
}

TEST_F(Resolve, A_null_base_path_starts_at_the_system_directory) {
    Located("C:\\app");
    CQVUObject *const inSystem = Located(folders.system);
    EXPECT_EQ(vfile->Resolve(nullptr), inSystem);
}

TEST_F(Resolve, A_base_path_may_end_in_a_backslash) {
    CQVUObject *const inApp = Located("C:\\app");
    EXPECT_EQ(From("C:\\app"), inApp);
    EXPECT_EQ(From("C:\\app\\"), inApp);
    EXPECT_EQ(From("c:\\APP\\"), inApp);
}

TEST_F(Resolve, The_base_path_is_left_as_it_is) {
    char base[16] = "C:\\app";
    vfile->Resolve(base);
    EXPECT_STREQ(base, "C:\\app");
}

TEST_F(Resolve, Names_are_compared_without_regard_to_case) {
    CQVUObject *const upper = Located("C:\\app", "X.DLL");
    EXPECT_EQ(From("C:\\app"), upper);
}

TEST_F(Resolve, Objects_of_other_types_and_null_give_nothing) {
    Located(folders.system);
    for (unsigned long const type : {OBJ_ROOT, OBJ_DRIVE, OBJ_PINNED, OBJ_FILE, OBJ_HIVE, OBJ_KEY,
                                     OBJ_VALUE, OBJ_VFILE | OBJ_FILE})
        EXPECT_EQ(db.Add("x.dll", type)->Resolve(Text("C:\\app")), nullptr) << type;
    EXPECT_EQ(static_cast<CQVUObject *>(nullptr)->Resolve(Text("C:\\app")), nullptr);
}

TEST_F(Resolve, A_vfile_without_a_name_gives_nothing) {
    Located(folders.system);
    EXPECT_EQ(db.Add(nullptr, OBJ_VFILE)->Resolve(Text("C:\\app")), nullptr);
}

TEST_F(Resolve, Pinned_objects_are_found_and_vfiles_are_not) {
    CQVUObject *const app = db.Folder("C:\\app");
    db.AddBelow(app, "x.dll", OBJ_VFILE);
    EXPECT_EQ(From("C:\\app"), nullptr);
    CQVUObject *const pinned = db.AddBelow(app, "x.dll", OBJ_PINNED);
    EXPECT_EQ(From("C:\\app"), pinned);
}

TEST_F(Resolve, The_name_that_counts_is_the_present_one) {
    CQVUObject *const other = Located("C:\\app", "y.dll");
    Located("C:\\app");
    Rename(vfile, "y.dll");
    EXPECT_EQ(From("C:\\app"), other);
}

TEST_F(Resolve, A_name_may_lead_into_folders_below) {
    CQVUObject *const deep = Located("C:\\app\\sub");
    EXPECT_EQ(db.Add("sub\\x.dll", OBJ_VFILE)->Resolve(Text("C:\\app")), deep);
}

TEST_F(Resolve, A_base_path_in_the_other_tree_finds_keys_and_values) {
    CQVUObject *const hive = db.Add("HKLM", OBJ_HIVE);
    CQVUObject *const key = db.AddBelow(hive, "Key", OBJ_KEY);
    CQVUObject *const value = db.AddBelow(key, "x.dll", OBJ_VALUE);
    EXPECT_EQ(From("HKLM\\Key"), value);
    CQVUObject *const low = db.AddBelow(hive, "x.dll", OBJ_KEY);
    EXPECT_EQ(From("HKLM"), low);
}

TEST_F(Resolve, A_base_path_that_does_not_fit_is_passed_over) {
    CQVUObject *const inSystem = Located(folders.system);
    for (std::size_t const length : {993u, 994u, 995u, 999u, 1000u, 1001u, 100000u})
        EXPECT_EQ(From("C:\\" + std::string(length - 3, 'b')), inSystem) << length;
}

TEST_F(Resolve, A_path_of_999_characters_is_found_and_a_longer_one_is_not) {
    std::string const folder(200, 'f');
    CQVUObject *const parent = db.AddChain(db.Folder("C:"), {folder, folder, folder, folder});
    std::string const base = *PathOf(parent) + '\\' + std::string(187, 'g');
    ASSERT_EQ(base.size() + std::string("\\x.dll").size(), 1000u);
    Located(base);
    EXPECT_EQ(From(base), nullptr);
    std::string const shorter = base.substr(0, base.size() - 1);
    CQVUObject *const found = db.AddBelow(
        db.AddBelow(parent, std::string(186, 'g').c_str(), OBJ_FILE), "x.dll", OBJ_FILE);
    EXPECT_EQ(From(shorter), found);
}

TEST(ResolveLongNames, A_name_from_a_file_that_fits_no_path_gives_nothing) {
    image::File file;
    file.objects.resize(2);
    file.objects[0] = {2, 0, OBJ_VFILE | PERSISTENT_BIT, std::string(60000, 'v'), {1}, {}, {},
                       0, 0};
    file.objects[1] = {3, 0, OBJ_VFILE | PERSISTENT_BIT, std::string(999, 'v'), {}, {1}, {}, 0, 0};
    file.links = {{1, 2, 3, 2 | PERSISTENT_BIT}};
    Attached db(file);
    db.Folder("C:\\app");
    for (unsigned long const id : {2ul, 3ul}) {
        EXPECT_EQ(db.Object(id)->Resolve(Text("C:\\app")), nullptr);
        EXPECT_EQ(db.Object(id)->Resolve(nullptr), nullptr);
    }
}

// Only some systems can be told other folders.
class ResolveElsewhere : public Resolve {
protected:
    void SetUp() override {
        if (!TellSystemFolders(folders))
            GTEST_SKIP() << "the folders of this system are its own";
    }
    void TearDown() override { TellSystemFolders(folders); }
};

TEST_F(ResolveElsewhere, System_folders_may_end_in_a_backslash) {
    CQVUObject *const inSystem = Located("D:");
    CQVUObject *const onDrive = Located("E:");
    ASSERT_TRUE(TellSystemFolders({"D:\\", "E:\\"}));
    EXPECT_EQ(vfile->Resolve(nullptr), inSystem);
    EXPECT_EQ(inSystem->Delete(), 1);
    EXPECT_EQ(vfile->Resolve(nullptr), onDrive);
    CQVUObject *const inOldSystem = Located("E:\\system");
    EXPECT_EQ(vfile->Resolve(nullptr), inOldSystem);
}

TEST_F(ResolveElsewhere, System_folders_that_do_not_fit_are_passed_over) {
    CQVUObject *const inWindows = Located("E:\\windows");
    ASSERT_TRUE(TellSystemFolders({"D:\\" + std::string(5000, 's'), "E:\\windows"}));
    EXPECT_EQ(vfile->Resolve(nullptr), inWindows);
    ASSERT_TRUE(TellSystemFolders({"D:\\" + std::string(5000, 's'), std::string(5000, 'w')}));
    EXPECT_EQ(vfile->Resolve(nullptr), nullptr);
    ASSERT_TRUE(TellSystemFolders({"D:\\" + std::string(990, 's'), "E:\\windows"}));
    EXPECT_EQ(vfile->Resolve(nullptr), inWindows);
}

} // namespace

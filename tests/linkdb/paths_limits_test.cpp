// What doesn't fit and what is hostile: 1000 bytes of path, 260 levels, cycles.
#include "attached.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstring>

namespace {

constexpr std::size_t pathBuffer = 1000;

// A path buffer with bytes behind it that nothing may touch.
class Guarded {
public:
    Guarded() : m_bytes(pathBuffer + 4096, canary) {}
    char *Buffer() { return m_bytes.data(); }
    bool IsWhole() const {
        return std::all_of(m_bytes.begin() + pathBuffer, m_bytes.end(),
                           [](char byte) { return byte == canary; });
    }

private:
    static constexpr char canary = '\x5a';
    std::vector<char> m_bytes;
};

class Limits : public testing::Test {
protected:
    // A file whose path has exactly so many characters.
    CQVUObject *FileWithPathOf(std::size_t length) {
        std::string const folder(200, 'f');
        CQVUObject *const last = db.AddChain(drive, {folder, folder, folder, folder});
        std::size_t const left = length - PathOf(last)->size() - 1;
        return db.AddBelow(last, std::string(left, 'n').c_str(), OBJ_FILE);
    }

    static std::string LongPath(std::size_t length) {
        std::string path = "C:";
        for (int i = 0; i < 4; ++i)
            path += '\\' + std::string(200, 'f');
        return path + '\\' + std::string(length - path.size() - 1, 'n');
    }

    Attached db;
    CQVUObject *drive = db.Add("C:", OBJ_DRIVE);
};

TEST_F(Limits, A_path_of_999_characters_fits) {
    CQVUObject *const file = FileWithPathOf(999);
    Guarded guarded;
    EXPECT_EQ(file->GetFullPath(guarded.Buffer()), 1);
    EXPECT_EQ(guarded.Buffer(), LongPath(999));
    EXPECT_TRUE(guarded.IsWhole());
    EXPECT_EQ(db->GetObjectByPath(LongPath(999).c_str()), file);
}

TEST_F(Limits, A_path_of_1000_characters_gives_0_and_nothing_past_the_buffer) {
    CQVUObject *const file = FileWithPathOf(1000);
    Guarded guarded;
    EXPECT_EQ(file->GetFullPath(guarded.Buffer()), 0);
    EXPECT_EQ(db->GetFullPath(file, guarded.Buffer()), 0);
    EXPECT_EQ(db->SafeGetFullPath(file, guarded.Buffer(), 0), 0);
    EXPECT_TRUE(guarded.IsWhole());
    EXPECT_EQ(db->GetObjectByPath(LongPath(1000).c_str()), nullptr);
}

TEST_F(Limits, Much_longer_paths_give_0_and_nothing_past_the_buffer) {
    CQVUObject *const file =
        db.AddChain(drive, std::vector<std::string>(200, std::string(250, 'f')));
    Guarded guarded;
    EXPECT_EQ(file->GetFullPath(guarded.Buffer()), 0);
    EXPECT_TRUE(guarded.IsWhole());
}

TEST_F(Limits, A_shorter_path_over_a_later_parent_is_not_taken_instead) {
    CQVUObject *const file = FileWithPathOf(1000);
    drive->LinkTo(file, LINK_PARENT);
    EXPECT_EQ(PathOf(file), std::nullopt);
}

TEST_F(Limits, A_path_that_does_not_fit_gives_no_expansion) {
    CQVUObject *const file = FileWithPathOf(1000);
    CQVUObject *const other = db.AddBelow(drive, "other", OBJ_FILE);
    file->LinkTo(other, 2);
    other->LinkTo(file, 2);
    CQVUObject *out = nullptr;
    EXPECT_EQ(file->FindFirstDependentObject(&out, nullptr), 0u);
    EXPECT_EQ(file->FindFirstReferencingApp(&out, nullptr), 0u);
    EXPECT_EQ(out, nullptr);
}

TEST(LimitsOfNames, A_root_s_name_from_a_file_may_be_too_long_for_any_path) {
    image::File file;
    file.objects.resize(3);
    file.objects[0] = {2, 0, OBJ_DRIVE | PERSISTENT_BIT, std::string(1000, 'd'), {1}, {}, {}, 0, 0};
    file.objects[1] = {3, 0, OBJ_FILE | PERSISTENT_BIT, "x", {}, {1}, {}, 0, 0};
    file.objects[2] = {4, 0, OBJ_DRIVE | PERSISTENT_BIT, std::string(999, 'e'), {2}, {}, {}, 0, 0};
    file.links = {{1, 2, 3, LINK_PARENT | PERSISTENT_BIT}, {2, 4, 3, 2 | PERSISTENT_BIT}};
    Attached db(file);
    Guarded guarded;
    EXPECT_EQ(db.Object(2)->GetFullPath(guarded.Buffer()), 0);
    EXPECT_EQ(db.Object(3)->GetFullPath(guarded.Buffer()), 0);
    EXPECT_EQ(db.Object(4)->GetFullPath(guarded.Buffer()), 1);
    EXPECT_EQ(guarded.Buffer(), std::string(999, 'e'));
    EXPECT_TRUE(guarded.IsWhole());
}

TEST_F(Limits, Path_texts_of_any_length_are_taken) {
    for (std::size_t const length : {999u, 1000u, 1001u, 5000u, 1000000u}) {
        EXPECT_EQ(db->GetObjectByPath(std::string(length, 'x').c_str()), nullptr);
        EXPECT_EQ(db->GetObjectByPath(std::string(length, '\\').c_str()), nullptr);
        EXPECT_EQ(db->GetObjectByPath(std::string(length, ':').c_str()), nullptr);
        EXPECT_EQ(db->GetObjectByPath(("C:\\" + std::string(length, 'x')).c_str()), nullptr);
        EXPECT_EQ(db->GetObjectByPath(("C:\\." + std::string(length, 'x')).c_str()), nullptr);
        EXPECT_EQ(db->GetObjectByPath(("HKLM\\x." + std::string(length, 'x')).c_str()), nullptr);
    }
}

// The parts of a path are cut into fields of 64 bytes for drive and extension. An extension
// beyond that isn't taken for a shorter one.
TEST_F(Limits, A_long_extension_never_finds_an_object_of_a_shorter_name) {
    for (std::size_t const length : {62u, 63u, 64u, 65u}) {
        db.AddBelow(drive, ("x." + std::string(length, 'e')).c_str(), OBJ_FILE);
        std::string const longer = "x." + std::string(100, 'e');
        EXPECT_EQ(db->GetObjectByPath(("C:\\" + longer).c_str()), nullptr) << length;
    }
}

TEST_F(Limits, The_depth_argument_counts_from_where_it_starts) {
    char buffer[pathBuffer];
    EXPECT_EQ(db->SafeGetFullPath(drive, buffer, 259), 1);
    EXPECT_EQ(db->SafeGetFullPath(drive, buffer, 260), 0);
    EXPECT_EQ(db->SafeGetFullPath(drive, buffer, 100000), 0);
    CQVUObject *const file = db.AddBelow(drive, "x", OBJ_FILE);
    EXPECT_EQ(db->SafeGetFullPath(file, buffer, 258), 1);
    EXPECT_STREQ(buffer, "C:\\x");
    EXPECT_EQ(db->SafeGetFullPath(file, buffer, 259), 0);
}

TEST_F(Limits, A_chain_of_259_levels_below_its_drive_has_a_path_and_one_of_260_has_none) {
    CQVUObject *const deepest = db.AddChain(drive, std::vector<std::string>(259, "x"));
    std::string path = "C:";
    for (int i = 0; i < 259; ++i)
        path += "\\x";
    EXPECT_EQ(PathOf(deepest), path);
    EXPECT_EQ(db->GetObjectByPath(path.c_str()), deepest);
    CQVUObject *const tooDeep = db.AddBelow(deepest, "x", OBJ_FILE);
    EXPECT_EQ(PathOf(tooDeep), std::nullopt);
    EXPECT_EQ(db->GetObjectByPath((path + "\\x").c_str()), tooDeep) << "that way has no limit";
}

TEST_F(Limits, A_shorter_chain_over_a_later_parent_is_found_when_the_first_is_too_deep) {
    CQVUObject *const deep = db.AddChain(drive, std::vector<std::string>(300, "x"));
    CQVUObject *const child = db.AddBelow(deep, "child", OBJ_FILE);
    EXPECT_EQ(PathOf(child), std::nullopt);
    drive->LinkTo(child, LINK_PARENT);
    EXPECT_EQ(PathOf(child), "C:\\child");
}

TEST_F(Limits, Cycles_of_parents_have_no_path) {
    CQVUObject *const self = db.Add("self", OBJ_FILE);
    self->LinkTo(self, LINK_PARENT);
    EXPECT_EQ(PathOf(self), std::nullopt);
    CQVUObject *const one = db.Add("one", OBJ_FILE);
    CQVUObject *const two = db.AddBelow(one, "two", OBJ_FILE);
    two->LinkTo(one, LINK_PARENT);
    EXPECT_EQ(PathOf(one), std::nullopt);
    EXPECT_EQ(PathOf(two), std::nullopt);
}

TEST_F(Limits, A_cycle_with_a_way_out_gives_the_longest_climb_that_the_limit_allows) {
    CQVUObject *const self = db.Add("s", OBJ_FILE);
    self->LinkTo(self, LINK_PARENT);
    drive->LinkTo(self, LINK_PARENT);
    std::string path = "C:";
    for (int i = 0; i < 259; ++i)
        path += "\\s";
    EXPECT_EQ(PathOf(self), path);
}

class Hostile : public Limits {
protected:
    void TearDown() override {
        auto const spent = std::chrono::steady_clock::now() - m_start;
        EXPECT_LT(spent, std::chrono::seconds(60));
    }

private:
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};

// Every object is a parent of every other: naive climbing would try 2^259 ways and more.
TEST_F(Hostile, A_full_mesh_of_parents_without_a_root_is_told_at_once) {
    std::vector<CQVUObject *> mesh;
    for (int i = 0; i < 30; ++i)
        mesh.push_back(db.Add("mesh", OBJ_FILE));
    for (CQVUObject *const parent : mesh)
        for (CQVUObject *const child : mesh)
            parent->LinkTo(child, LINK_PARENT);
    for (CQVUObject *const object : mesh)
        EXPECT_EQ(PathOf(object), std::nullopt);
    drive->LinkTo(mesh.back(), LINK_PARENT);
    EXPECT_EQ(PathOf(mesh.back()), std::nullopt) << "259 levels of five characters don't fit";
}

// Layers of two objects, each with both of the layer above as parents, and no root on top.
TEST_F(Hostile, Layers_of_double_parents_without_a_root_are_told_at_once) {
    std::vector<CQVUObject *> layer = {db.Add("a", OBJ_FILE), db.Add("b", OBJ_FILE)};
    for (int depth = 0; depth < 250; ++depth) {
        std::vector<CQVUObject *> const above = layer;
        layer = {db.Add("a", OBJ_FILE), db.Add("b", OBJ_FILE)};
        for (CQVUObject *const parent : above)
            for (CQVUObject *const child : layer)
                parent->LinkTo(child, LINK_PARENT);
    }
    EXPECT_EQ(PathOf(layer[0]), std::nullopt);
    EXPECT_EQ(PathOf(layer[1]), std::nullopt);
}

// On each level one parent bears the leaf and one the whole parent text, so that both get a
// real test, and both lead to the pair above.
TEST_F(Hostile, Chain_tests_that_fork_on_every_level_end_soon) {
    std::string path = "C:";
    std::vector<CQVUObject *> above;
    for (int depth = 0; depth < 100; ++depth) {
        CQVUObject *const leaf = db.Add("a", OBJ_FILE);
        CQVUObject *const whole = db.Add(path.c_str(), OBJ_FILE);
        for (CQVUObject *const parent : above) {
            parent->LinkTo(leaf, LINK_PARENT);
            parent->LinkTo(whole, LINK_PARENT);
        }
        above = {leaf, whole};
        path += "\\a";
    }
    CQVUObject *const child = db.Add("child", OBJ_FILE);
    for (CQVUObject *const parent : above)
        parent->LinkTo(child, LINK_PARENT);
    EXPECT_EQ(db->GetObjectByPath((path + "\\child").c_str()), nullptr);
}

// The text of a chain that ends in a slash never gets shorter.
TEST_F(Hostile, An_object_without_a_name_above_itself_ends_a_chain_test) {
    CQVUObject *const self = db.Add("self", OBJ_FILE);
    Rename(self, "");
    self->LinkTo(self, LINK_PARENT);
    CQVUObject *const child = db.AddBelow(self, "child", OBJ_FILE);
    EXPECT_EQ(db->GetObjectByPath("C:\\x/child"), nullptr);
    EXPECT_EQ(PathOf(child), std::nullopt);
}

TEST_F(Hostile, Thousands_of_files_of_one_name_in_thousands_of_folders_are_told_apart) {
    std::vector<CQVUObject *> files;
    for (int i = 0; i < 20000; ++i) {
        CQVUObject *const folder = db.AddBelow(drive, ("f" + std::to_string(i)).c_str(), OBJ_FILE);
        files.push_back(db.AddBelow(folder, "desktop.ini", OBJ_FILE));
    }
    for (int i = 0; i < 20000; ++i) {
        std::string const path = "c:\\F" + std::to_string(i) + "\\DESKTOP.INI";
        ASSERT_EQ(db->GetObjectByPath(path.c_str()), files[static_cast<std::size_t>(i)]);
    }
    EXPECT_EQ(db->GetObjectByPath("C:\\f20000\\desktop.ini"), nullptr);
}

} // namespace

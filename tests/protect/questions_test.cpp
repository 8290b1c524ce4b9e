// The questions that join the graph, the registry and the lists: on keys by their paths, and
// on objects of the database.
#include "attached.h"
#include "call_hook.h"
#include "linkdb_state.h"
#include "protect_load.h"
#include "protect_registry.h"
#include "roles.h"
#include "session.h"
#include "tree_nodes.h"

#include <atomic>
#include <thread>

#include <gtest/gtest.h>

namespace {

// Both trees with a few entries of the test's own, and none afterwards.
class Questions : public testing::Test {
protected:
    Questions() {
        // The empty line between the blocks of a list marks the root.
        for (char const *key : {"", "HKLM\\SYSTEM", "HKLM\\SYSTEM\\Setup\\Deep", "HKCU\\Console"})
            AddKey(key);
        ProtectAdd(ProtectedFileTree, "C:\\windows\\notepad.exe", 0);
    }
    ~Questions() override {
        ProtectClear(ProtectedRegTree);
        ProtectClear(ProtectedFileTree);
        ProtectedRegTree.marked = 0;
    }
    static void AddKey(std::string line) {
        LoadRegListCallback(line.data(), static_cast<unsigned long>(line.size()));
    }

    static bool Key(std::string const &path) { return IsProtectedRegistryPath(path.c_str()) == 1; }

    // The object of a path that begins with a root of this type.
    CQVUObject *Object(std::string const &path, unsigned long rootType, unsigned long type) {
        CQVUObject *last = nullptr;
        std::size_t begin = 0;
        while (begin <= path.size()) {
            std::size_t const end = std::min(path.find('\\', begin), path.size());
            std::string const name = path.substr(begin, end - begin);
            last = last ? m_database.AddBelow(last, name.c_str(), type)
                        : m_database.Add(name.c_str(), rootType);
            begin = end + 1;
        }
        EXPECT_EQ(PathOf(last), path);
        return last;
    }

    Attached m_database;
};

TEST_F(Questions, A_listed_key_is_protected_in_any_case_and_with_a_backslash_at_its_end) {
    EXPECT_TRUE(Key("HKLM\\SYSTEM"));
    EXPECT_TRUE(Key("hklm\\system\\"));
    EXPECT_TRUE(Key("HKCU\\CONSOLE"));
}

TEST_F(Questions, A_key_below_a_listed_one_isnt) {
    EXPECT_FALSE(Key("HKLM\\SYSTEM\\Other"));
    EXPECT_FALSE(Key("HKLM\\SYSTEM\\Setup\\Deep\\er"));
}

TEST_F(Questions, A_key_that_only_leads_to_listed_ones_is_false_once_and_then_true) {
    EXPECT_FALSE(Key("HKLM\\SYSTEM\\Setup"));
    EXPECT_TRUE(Key("HKLM\\SYSTEM\\Setup"));
    EXPECT_TRUE(Key("HKEY_LOCAL_MACHINE\\system\\setup"));
}

TEST_F(Questions, Long_roots_are_taken_for_short_ones_in_capitals_only) {
    EXPECT_TRUE(Key("HKEY_LOCAL_MACHINE\\SYSTEM"));
    EXPECT_TRUE(Key("HKEY_LOCAL_MACHINE\\system\\"));
    EXPECT_TRUE(Key("HKEY_CURRENT_USER\\Console"));
    EXPECT_FALSE(Key("hkey_local_machine\\SYSTEM"));
    EXPECT_FALSE(Key("HKEY_LOCAL_machine\\SYSTEM"));
    EXPECT_FALSE(Key("HKEY_CURRENT_USEr\\Console"));
}

// Whatever the lists hold: here they hold entries under these roots.
TEST_F(Questions, The_roots_of_the_configuration_and_of_classes_have_a_row_each) {
    AddKey("HKCC\\Software");
    AddKey("HKCR\\.txt");
    EXPECT_TRUE(Key("HKEY_CURRENT_CONFIG\\Software"));
    EXPECT_TRUE(Key("HKEY_CLASSES_ROOT\\.txt"));
    EXPECT_TRUE(Key("HKCC\\software"));
    EXPECT_FALSE(Key("HKEY_CURRENT_Config\\Software"));
    EXPECT_FALSE(Key("HKEY_CLASSES_root\\.txt"));
}

TEST_F(Questions, The_users_root_has_none) {
    AddKey("HKU\\.Default");
    EXPECT_TRUE(Key("HKU\\.Default"));
    EXPECT_FALSE(Key("HKEY_USERS\\.Default"));
}

TEST_F(Questions, Only_the_first_component_is_a_root) {
    AddKey("HKLM\\HKEY_CURRENT_USER");
    AddKey("HKLM\\HKEY_LOCAL_MACHINE\\x");
    EXPECT_TRUE(Key("HKLM\\HKEY_CURRENT_USER"));
    EXPECT_TRUE(Key("HKEY_LOCAL_MACHINE\\HKEY_LOCAL_MACHINE\\x"));
    EXPECT_FALSE(Key("Other\\HKEY_LOCAL_MACHINE\\SYSTEM"));
}

TEST_F(Questions, A_root_alone_leads_somewhere) {
    EXPECT_FALSE(Key("HKEY_CURRENT_USER"));
    EXPECT_TRUE(Key("HKCU"));
}

TEST_F(Questions, An_empty_path_is_0_before_the_tree_and_backslashes_alone_reach_its_marked_root) {
    EXPECT_EQ(IsProtectedRegistryPath(""), 0);
    EXPECT_EQ(IsProtectedRegistryPath(nullptr), 0);
    EXPECT_TRUE(Key("\\"));
    EXPECT_TRUE(Key("\\\\\\"));
}

TEST_F(Questions, Empty_trees_have_no_path_with_a_component) {
    ProtectClear(ProtectedRegTree);
    EXPECT_FALSE(Key("HKLM\\SYSTEM"));
    EXPECT_FALSE(Key("HKLM"));
}

TEST_F(Questions, Files_arent_looked_up_among_keys_nor_keys_among_files) {
    EXPECT_FALSE(Key("C:\\windows\\notepad.exe"));
    EXPECT_EQ(IsProtectedPath("HKLM\\SYSTEM"), 0);
}

// Objects

TEST_F(Questions, An_object_with_the_path_of_a_listed_file_is_protected) {
    EXPECT_EQ(Object("C:\\Windows\\Notepad.exe", OBJ_DRIVE, OBJ_FILE)->IsProtected(), 1);
    EXPECT_EQ(Object("D:\\Windows\\Notepad.exe", OBJ_DRIVE, OBJ_FILE)->IsProtected(), 0);
}

TEST_F(Questions, An_object_with_the_path_of_a_listed_key_is_protected) {
    CQVUObject *const key = Object("HKLM\\System", OBJ_HIVE, OBJ_KEY);
    EXPECT_EQ(key->IsProtected(), 1);
    EXPECT_EQ(m_database.AddBelow(key, "Other", OBJ_KEY)->IsProtected(), 0);
    EXPECT_EQ(Object("HKCU\\Console", OBJ_HIVE, OBJ_KEY)->IsProtected(), 1);
}

TEST_F(Questions, The_path_tells_a_key_from_a_file_and_the_type_doesnt) {
    ProtectAdd(ProtectedFileTree, "HKLM\\SYSTEM\\as a file", 0);
    CQVUObject *const key = Object("HKLM\\SYSTEM\\as a file", OBJ_DRIVE, OBJ_FILE);
    EXPECT_EQ(key->IsProtected(), 0);
    AddKey("HKLM\\SYSTEM\\as a file");
    EXPECT_EQ(key->IsProtected(), 1);
    AddKey("C:\\windows\\as a key");
    EXPECT_EQ(Object("C:\\windows\\as a key", OBJ_DRIVE, OBJ_FILE)->IsProtected(), 0);
}

// The root's name is compared exactly: this one is no root's.
TEST_F(Questions, A_root_in_small_letters_makes_the_path_a_files) {
    CQVUObject *const object = Object("hklm\\SYSTEM", OBJ_HIVE, OBJ_KEY);
    EXPECT_EQ(object->IsProtected(), 0);
    ProtectAdd(ProtectedFileTree, "hklm\\SYSTEM", 0);
    EXPECT_EQ(object->IsProtected(), 1);
}

TEST_F(Questions, A_long_root_is_normalised_for_an_object_too) {
    EXPECT_EQ(Object("HKEY_LOCAL_MACHINE\\SYSTEM", OBJ_HIVE, OBJ_KEY)->IsProtected(), 1);
}

TEST_F(Questions, Asking_for_an_object_marks_like_asking_for_its_path) {
    CQVUObject *const folder = Object("C:\\windows", OBJ_DRIVE, OBJ_FILE);
    EXPECT_EQ(folder->IsProtected(), 0);
    EXPECT_EQ(folder->IsProtected(), 1);
}

TEST_F(Questions, A_null_object_is_0) { EXPECT_EQ(noObject->IsProtected(), 0); }

TEST_F(Questions, An_object_without_a_path_is_0) {
    EXPECT_EQ(m_database.Add("orphan", OBJ_KEY)->IsProtected(), 0);
    EXPECT_EQ(m_database.Add(nullptr, OBJ_FILE)->IsProtected(), 0);
}

// The mutex is held for the path only: others get it while the trees are asked.
TEST_F(Questions, The_database_is_free_while_the_rest_is_asked) {
    CQVUObject *const key = Object("HKLM\\SYSTEM", OBJ_HIVE, OBJ_KEY);
    bool looked = false;
    bool wasFree = false;
    CallHook const hook([&](CallHook::Call const &call) {
        // The path object looks for the installer when it is made.
        if (Is(call, "LoadLibraryA") && call.moment == CallHook::Moment::Before && !looked) {
            looked = true;
            std::thread([&] {
                char path[1000];
                wasFree = key->GetFullPath(path) == 1;
            }).join();
        }
        return false;
    });
    EXPECT_EQ(key->IsProtected(), 1);
    EXPECT_TRUE(looked);
    EXPECT_TRUE(wasFree);
}

TEST_F(Questions, Can_be_asked_by_many_threads) {
    CQVUObject *const key = Object("HKLM\\SYSTEM", OBJ_HIVE, OBJ_KEY);
    CQVUObject *const file = Object("C:\\windows\\notepad.exe", OBJ_DRIVE, OBJ_FILE);
    CQVUObject *const other = Object("D:\\x", OBJ_DRIVE, OBJ_FILE);
    std::atomic<int> wrong{0};
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int thread = 0; thread < 4; ++thread)
        threads.emplace_back([&] {
            for (int i = 0; i < 200; ++i)
                wrong += key->IsProtected() != 1 || file->IsProtected() != 1 ||
                         other->IsProtected() != 0 ||
                         IsProtectedRegistryPath("HKEY_CURRENT_USER\\Console") != 1;
        });
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(wrong, 0);
}

constexpr int survived = 77;

// The object's path fits the database, and is longer than the tree allows.
Role const askObject("ask-object", [](Arguments const &arguments) -> int {
    Attached database;
    CQVUObject *last = database.Add(arguments.at(0).c_str(), OBJ_HIVE);
    std::size_t const length = std::stoul(arguments.at(1));
    std::size_t used = arguments[0].size();
    while (used != length) {
        std::size_t const name = std::min<std::size_t>(length - used - 1, 100);
        last = database.AddBelow(last, std::string(name, 'n').c_str(), OBJ_KEY);
        used += name + 1;
    }
    return last->IsProtected() ? 1 : survived;
});

TEST(QuestionsOnLongPaths, Of_260_characters_end_the_process) {
    for (char const *root : {"HKLM", "D:"}) {
        EXPECT_EQ(RunRole("ask-object", {root, "259"}), survived) << root;
        for (char const *length : {"260", "500", "990"}) {
            long const code = RunRole("ask-object", {root, length});
            EXPECT_NE(code, survived) << root << length;
            EXPECT_NE(code, 0) << root << length;
            EXPECT_NE(code, 1) << root << length;
        }
    }
}

// Normalised it is three times shorter, and fits.
Role const askKey("ask-key", [](Arguments const &arguments) -> int {
    std::string const &root = arguments.at(0);
    std::string const path =
        root + "\\" + std::string(std::stoul(arguments.at(1)) - root.size() - 1, 'n');
    return IsProtectedRegistryPath(path.c_str()) ? 1 : survived;
});

TEST(QuestionsOnLongPaths, Count_a_root_as_it_is_after_normalising) {
    EXPECT_EQ(RunRole("ask-key", {"HKLM", "259"}), survived);
    EXPECT_EQ(RunRole("ask-key", {"HKEY_LOCAL_MACHINE", "273"}), survived);
    EXPECT_NE(RunRole("ask-key", {"HKEY_LOCAL_MACHINE", "274"}), survived);
    EXPECT_NE(RunRole("ask-key", {"HKEY_USERS", "260"}), survived);
}

} // namespace

// Deletion of keys, alone and with all that is below them.
#include "call_hook.h"
#include "registry_test.h"

namespace {

// Has calls of a service for this path fail with 5.
class Refusing {
public:
    Refusing(char const *service, std::string const &path)
        : m_hook([=](CallHook::Call const &call) {
              if (!Is(call, service) || call.moment != CallHook::Moment::Before ||
                  call.path != path)
                  return false;
              win::SetLastError(ERROR_ACCESS_DENIED);
              return true;
          }) {}

private:
    CallHook m_hook;
};

class RegistryDeleteTest : public RegistryTest {
protected:
    OpenRegistry Open(std::string const &path) const { return {Full(path).c_str(), 0, 0}; }
    static std::string Place(OpenRegistry const &registry) {
        return Text(registry.GetRegistryPath(1));
    }
};

TEST_F(RegistryDeleteTest, A_key_without_subkeys_goes_and_the_object_is_on_its_parent) {
    MakeKey("a\\b");
    WriteNumber("a\\b", "n", 1);
    OpenRegistry registry = Open("a\\b");
    EXPECT_EQ(registry.RegDeleteKeyA(0), 1);
    EXPECT_FALSE(IsKey("a\\b"));
    EXPECT_EQ(Place(registry), Full("a") + "\\");
    EXPECT_EQ(registry.DeleteKey(0), 1);
    EXPECT_EQ(Place(registry), Full() + "\\");
    EXPECT_EQ(registry.RegSetValueA("here", 1UL), 1);
    EXPECT_TRUE(ValueOf("", "here").has_value());
}

TEST_F(RegistryDeleteTest, A_key_with_subkeys_is_refused_and_the_object_is_on_its_parent) {
    MakeKey("a\\b");
    OpenRegistry registry = Open("a");
    EXPECT_EQ(registry.RegDeleteKeyA(0), 0);
    EXPECT_EQ(registry.lastError, 5);
    EXPECT_EQ(Place(registry), Full() + "\\");
    EXPECT_TRUE(IsKey("a\\b"));
}

TEST_F(RegistryDeleteTest, A_root_is_never_deleted) {
    for (int recursive : {0, 1}) {
        OpenRegistry registry("HKCU", 0, 0);
        int calls = 0;
        CallHook const hook([&calls](CallHook::Call const &) {
            ++calls;
            return false;
        });
        EXPECT_EQ(registry.RegDeleteKeyA(recursive), 0);
        EXPECT_EQ(calls, 0);
        EXPECT_EQ(registry.currentKey, HKEY_CURRENT_USER);
    }
    EXPECT_TRUE(IsKey(""));
}

TEST_F(RegistryDeleteTest, A_key_directly_below_the_root_leaves_the_object_on_the_root) {
    HKEY key = nullptr;
    std::string const name = Below().substr(9); // of the test, but not below Software
    ASSERT_EQ(win::RegCreateKeyExA(HKEY_CURRENT_USER, name.c_str(), 0, nullptr, 0, KEY_READ,
                                   nullptr, &key, nullptr),
              ERROR_SUCCESS);
    win::RegCloseKey(key);
    OpenRegistry registry(("HKCU\\" + name).c_str(), 0, 0);
    EXPECT_EQ(registry.RegDeleteKeyA(1), 1);
    EXPECT_EQ(registry.currentKey, HKEY_CURRENT_USER);
    EXPECT_EQ(Place(registry), "HKCU\\");
    EXPECT_EQ(registry.RegOpenSubKey(name.c_str()), 0);
}

TEST_F(RegistryDeleteTest, A_leaf_goes_in_one_pass) {
    MakeKey("leaf");
    OpenRegistry registry = Open("leaf");
    std::vector<std::string> calls;
    {
        CallHook const hook([&calls](CallHook::Call const &call) {
            std::string const service = call.service;
            if (call.moment == CallHook::Moment::Before && service.compare(0, 3, "Reg") == 0)
                calls.push_back(service);
            return false;
        });
        EXPECT_EQ(registry.RegDeleteKeyA(1), 1);
    }
    EXPECT_EQ(calls, (std::vector<std::string>{"RegEnumKeyExA", "RegEnumValueA", "RegOpenKeyExA",
                                               "RegDeleteKeyA"}));
    EXPECT_EQ(Place(registry), Full() + "\\");
}

TEST_F(RegistryDeleteTest, A_tree_goes_from_the_bottom_up_and_always_from_its_first_subkey) {
    for (char const *path : {"t\\b\\y", "t\\b\\x", "t\\a", "t\\c\\z\\deep"})
        MakeKey(path);
    WriteNumber("t\\b", "n", 1);
    MakeKey("beside");
    OpenRegistry registry = Open("t");
    std::vector<std::string> gone;
    {
        CallHook const hook([&gone](CallHook::Call const &call) {
            if (Is(call, "RegDeleteKeyA") && call.moment == CallHook::Moment::Before)
                gone.emplace_back(call.path);
            return false;
        });
        EXPECT_EQ(registry.RegDeleteKeyA(1), 1);
    }
    EXPECT_EQ(gone, (std::vector<std::string>{"a", "x", "y", "b", "deep", "z", "c", "t"}));
    EXPECT_FALSE(IsKey("t"));
    EXPECT_TRUE(IsKey("beside"));
    EXPECT_EQ(Place(registry), Full() + "\\");
}

// The index goes up while the values move down.
TEST_F(RegistryDeleteTest, Of_the_values_every_second_one_is_passed_over) {
    MakeKey("v");
    for (char const *name : {"1", "2", "3", "4", "5"})
        WriteNumber("v", name, 1);
    OpenRegistry registry = Open("v");
    int deleted = 0;
    CallHook const hook([&deleted](CallHook::Call const &call) {
        deleted += Is(call, "RegDeleteValueA") && call.moment == CallHook::Moment::Before;
        return false;
    });
    EXPECT_EQ(registry.RegDeleteKeyA(1), 1);
    EXPECT_EQ(deleted, 3);
    EXPECT_FALSE(IsKey("v"));
}

TEST_F(RegistryDeleteTest, The_nameless_value_isnt_deleted_by_itself) {
    MakeKey("v");
    WriteValue("v", "", REG_SZ, "default");
    OpenRegistry registry = Open("v");
    int deleted = 0;
    CallHook const hook([&deleted](CallHook::Call const &call) {
        deleted += Is(call, "RegDeleteValueA") && call.moment == CallHook::Moment::Before;
        return false;
    });
    EXPECT_EQ(registry.RegDeleteKeyA(1), 1);
    EXPECT_EQ(deleted, 0);
}

TEST_F(RegistryDeleteTest, A_failure_part_way_goes_back_and_what_went_stays_gone) {
    for (char const *path : {"t\\a", "t\\b", "t\\c"})
        MakeKey(path);
    OpenRegistry registry = Open("t");
    Refusing const refusing("RegDeleteKeyA", "b");
    EXPECT_EQ(registry.RegDeleteKeyA(1), 0);
    EXPECT_EQ(Place(registry), Full("t") + "\\");
    EXPECT_FALSE(IsKey("t\\a"));
    EXPECT_TRUE(IsKey("t\\b"));
    EXPECT_TRUE(IsKey("t\\c"));
}

// The descent stops at the parent of such a key, and the parent can't go.
TEST_F(RegistryDeleteTest, A_subkey_that_cant_be_opened_makes_the_deletion_fail_at_its_parent) {
    for (char const *path : {"t\\a\\locked", "t\\b"})
        MakeKey(path);
    WriteNumber("t\\a", "n", 1);
    OpenRegistry registry = Open("t");
    Refusing const refusing("RegOpenKeyExA", "locked");
    EXPECT_EQ(registry.RegDeleteKeyA(1), 0);
    EXPECT_EQ(Place(registry), Full("t") + "\\");
    EXPECT_TRUE(IsKey("t\\a\\locked"));
    EXPECT_FALSE(ValueOf("t\\a", "n").has_value()); // its parent's values went
    EXPECT_TRUE(IsKey("t\\b"));
}

TEST_F(RegistryDeleteTest, A_parent_that_cant_be_opened_makes_it_fail) {
    MakeKey("a\\b");
    OpenRegistry registry = Open("a\\b");
    Refusing const refusing("RegOpenKeyExA", Below("a"));
    EXPECT_EQ(registry.RegDeleteKeyA(0), 0);
    EXPECT_EQ(registry.lastError, 5);
    EXPECT_EQ(Place(registry), Full("a\\b") + "\\");
}

TEST_F(RegistryDeleteTest, Another_key_is_deleted_by_its_path_from_the_root) {
    for (char const *path : {"here", "there\\x"})
        MakeKey(path);
    OpenRegistry registry = Open("here");
    EXPECT_EQ(registry.RegDeleteKeyA("there", 1), 0); // not from the current key
    EXPECT_EQ(registry.lastError, 2);
    EXPECT_EQ(registry.RegDeleteKeyA(Below("there").c_str(), 1), 1);
    EXPECT_FALSE(IsKey("there"));
    EXPECT_EQ(Place(registry), Full("here") + "\\");
    MakeKey("there");
    EXPECT_EQ(registry.DeleteKey(Full("there").c_str(), 0), 1);
    EXPECT_EQ(Place(registry), Full("here") + "\\");
    EXPECT_EQ(registry.RegDeleteKeyA("", 1), 0);
}

TEST_F(RegistryDeleteTest, A_deletion_by_path_that_fails_leaves_the_object_where_it_ended) {
    MakeKey("here");
    MakeKey("there\\x");
    OpenRegistry registry = Open("here");
    EXPECT_EQ(registry.RegDeleteKeyA(Below("there").c_str(), 0), 0);
    EXPECT_EQ(Place(registry), Full() + "\\");
}

TEST_F(RegistryDeleteTest, A_place_inside_the_deleted_tree_isnt_gone_back_to) {
    MakeKey("t\\a\\b");
    OpenRegistry registry = Open("t\\a\\b");
    EXPECT_EQ(registry.RegDeleteKeyA(Below("t").c_str(), 1), 1);
    EXPECT_FALSE(IsKey("t"));
    EXPECT_EQ(Place(registry), Full() + "\\");
}

TEST_F(RegistryDeleteTest, A_tree_of_many_keys_and_levels_goes) {
    std::string deep = "t";
    for (int level = 0; level < 40; ++level)
        deep += "\\k";
    MakeKey(deep);
    for (int i = 0; i < 300; ++i)
        MakeKey("t\\wide\\" + std::to_string(i));
    OpenRegistry registry = Open("t");
    EXPECT_EQ(registry.RegDeleteKeyA(1), 1);
    EXPECT_FALSE(IsKey("t"));
}

} // namespace

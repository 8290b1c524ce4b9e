// The registry in use: the system's own in a key of the tests', or that of a prefix.
#include "registration_text.h"

#include "platform/registry.h"
#include "platform/system_registry.h"
#include "temp_folder.h"

#include <algorithm>
#include <gtest/gtest.h>

using qvlink::RegistryValue;

namespace {

const std::string top = "HKCU\\Software\\QVLinkDB registry tests";

class SystemRegistry : public testing::Test {
protected:
    SystemRegistry() {
        TellRegistryDirectory(m_folder.Directory());
        m_registry = qvlink::OpenRegistry();
        m_registry->DeleteTree(top);
    }
    ~SystemRegistry() override { m_registry->DeleteTree(top); }

    std::vector<std::string> KeysOf(std::string const &key) {
        std::vector<std::string> names{"left"};
        EXPECT_EQ(0u, m_registry->ReadKeys(key, names)) << key;
        return names;
    }
    // In order of their names, as "name=type:data".
    Told ValuesOf(std::string const &key) {
        std::vector<RegistryValue> values(1);
        EXPECT_EQ(0u, m_registry->ReadValues(key, values)) << key;
        Told told;
        for (RegistryValue const &value : values) {
            told.push_back(value.name + '=' + std::to_string(value.type) + ':' + Hex(value.data));
        }
        std::sort(told.begin(), told.end());
        return told;
    }

    TempFolder m_folder;
    std::unique_ptr<qvlink::Registry> m_registry;
};

using Names = std::vector<std::string>;

} // namespace

TEST_F(SystemRegistry, A_key_is_made_with_those_above_it) {
    EXPECT_EQ(0u, m_registry->Create(top + "\\b\\c"));
    EXPECT_EQ(0u, m_registry->Create(top + "\\A"));
    EXPECT_EQ(0u, m_registry->Create(top + "\\B"));
    EXPECT_EQ((Names{"A", "b"}), KeysOf(top));
    EXPECT_EQ(Names{"c"}, KeysOf(top + "\\B"));
    EXPECT_EQ(Names{}, KeysOf(top + "\\b\\C"));
}

TEST_F(SystemRegistry, Roots_are_known_in_any_case_and_need_no_making) {
    EXPECT_EQ(0u, m_registry->Create("hkcu"));
    EXPECT_EQ(0u, m_registry->Create(top));
    Names const names = KeysOf("hkcu\\software");
    EXPECT_EQ(1, std::count(names.begin(), names.end(), "QVLinkDB registry tests"));
    for (const char *const root : {"HKLM", "HKCU", "HKCR", "HKU", "HKCC"}) {
        KeysOf(root);
    }
}

TEST_F(SystemRegistry, Data_of_every_type_stay_as_they_are) {
    ASSERT_EQ(0u, m_registry->Create(top));
    Told wanted;
    for (std::uint32_t const type : {0u, 1u, 2u, 3u, 4u, 5u, 6u, 7u, 8u, 11u, 0xffff0007u}) {
        std::string const name = std::to_string(type);
        std::string const data("\x61\0\0\xff", 4);
        ASSERT_EQ(0u, m_registry->SetValue(top, {name, type, data})) << type;
        wanted.push_back(std::string(name).append("=").append(name).append(":610000ff"));
    }
    std::sort(wanted.begin(), wanted.end());
    EXPECT_EQ(wanted, ValuesOf(top));
}

TEST_F(SystemRegistry, Sizes_are_whatever_they_are) {
    ASSERT_EQ(0u, m_registry->Create(top));
    std::string const longName(1000, 'n');
    std::string const bytes(100000, 'x');
    ASSERT_EQ(0u, m_registry->SetValue(top, {"", 3, ""}));
    ASSERT_EQ(0u, m_registry->SetValue(top, {longName, 3, bytes}));
    ASSERT_EQ(0u, m_registry->SetValue(top, {"odd", 1, "a"}));
    EXPECT_EQ((Told{"=3:", longName + "=3:" + Hex(bytes), "odd=1:61"}), ValuesOf(top));
}

TEST_F(SystemRegistry, Names_are_of_any_characters) {
    std::string const name = "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x8C\x8D";
    ASSERT_EQ(0u, m_registry->Create(top + '\\' + name));
    ASSERT_EQ(0u, m_registry->SetValue(top + '\\' + name, {name, 4, std::string(4, '\x01')}));
    EXPECT_EQ(Names{name}, KeysOf(top));
    EXPECT_EQ(Told{name + "=4:01010101"}, ValuesOf(top + '\\' + name));
}

TEST_F(SystemRegistry, A_value_is_replaced_and_removed_in_any_case) {
    ASSERT_EQ(0u, m_registry->Create(top));
    ASSERT_EQ(0u, m_registry->SetValue(top, {"x", 3, "a"}));
    ASSERT_EQ(0u, m_registry->SetValue(top, {"X", 4, "bbbb"}));
    EXPECT_EQ(Told{"x=4:62626262"}, ValuesOf(top));
    EXPECT_EQ(0u, m_registry->DeleteValue(top, "X"));
    EXPECT_EQ(Told{}, ValuesOf(top));
    EXPECT_EQ(2u, m_registry->DeleteValue(top, "x"));
}

TEST_F(SystemRegistry, A_tree_goes_whole) {
    for (const char *const key : {"\\a\\b\\c", "\\a\\d", "\\ab"}) {
        ASSERT_EQ(0u, m_registry->Create(top + key));
        ASSERT_EQ(0u, m_registry->SetValue(top + key, {"x", 3, "a"}));
    }
    EXPECT_EQ(0u, m_registry->DeleteTree(top + "\\A"));
    EXPECT_EQ(Names{"ab"}, KeysOf(top));
    EXPECT_EQ(2u, m_registry->DeleteTree(top + "\\a"));
    EXPECT_EQ(0u, m_registry->Create(top + "\\a"));
    EXPECT_EQ(Told{}, ValuesOf(top + "\\a"));
}

TEST_F(SystemRegistry, What_is_not_there_is_told_and_leaves_nothing) {
    Names names{"left"};
    std::vector<RegistryValue> values(1);
    EXPECT_EQ(2u, m_registry->ReadKeys(top, names));
    EXPECT_EQ(2u, m_registry->ReadValues(top, values));
    EXPECT_TRUE(names.empty() && values.empty());
    EXPECT_EQ(2u, m_registry->SetValue(top, {"x", 3, ""}));
    EXPECT_EQ(2u, m_registry->DeleteValue(top, "x"));
    EXPECT_EQ(2u, m_registry->DeleteTree(top));
}

TEST_F(SystemRegistry, What_begins_with_no_root_is_a_bad_parameter) {
    Names names;
    std::vector<RegistryValue> values;
    for (const char *const path : {"", "Software", "HKXX\\a"}) {
        EXPECT_EQ(87u, m_registry->ReadKeys(path, names));
        EXPECT_EQ(87u, m_registry->ReadValues(path, values));
        EXPECT_EQ(87u, m_registry->Create(path));
        EXPECT_EQ(87u, m_registry->SetValue(path, {"x", 3, ""}));
        EXPECT_EQ(87u, m_registry->DeleteValue(path, "x"));
    }
    EXPECT_EQ(87u, m_registry->DeleteTree("HKCU"));
}

TEST_F(SystemRegistry, Changes_are_there_for_others_once_they_are_committed) {
    ASSERT_EQ(0u, m_registry->Begin());
    ASSERT_EQ(0u, m_registry->Create(top + "\\a"));
    ASSERT_EQ(0u, m_registry->SetValue(top + "\\a", {"x", 3, "a"}));
    EXPECT_EQ(Told{"x=3:61"}, ValuesOf(top + "\\a"));
    ASSERT_EQ(0u, m_registry->Commit());
    Names names;
    EXPECT_EQ(0u, qvlink::OpenRegistry()->ReadKeys(top, names));
    EXPECT_EQ(Names{"a"}, names);
}

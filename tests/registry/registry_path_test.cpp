// The grammar of registry paths, and how the object tells its own.
#include "registry_test.h"

#include <array>

namespace {

using UTILS::UtilsString;

struct Row {
    char const *brief;
    char const *full;
    HKEY key;
    std::uint32_t value;
};

std::array<Row, 5> Rows() {
    return {{{"HKLM", "HKEY_LOCAL_MACHINE", HKEY_LOCAL_MACHINE, 0x80000002},
             {"HKCU", "HKEY_CURRENT_USER", HKEY_CURRENT_USER, 0x80000001},
             {"HKCR", "HKEY_CLASSES_ROOT", HKEY_CLASSES_ROOT, 0x80000000},
             {"HKU", "HKEY_USERS", HKEY_USERS, 0x80000003},
             {"HKCC", "HKEY_CURRENT_CONFIG", HKEY_CURRENT_CONFIG, 0x80000005}}};
}

class RegistryPathTest : public RegistryTest {};

std::string Parsed(OpenRegistry &registry, std::string const &text, int expected) {
    UtilsString path(text);
    EXPECT_EQ(registry.ParseOutPath(path), expected) << text;
    return Text(path);
}

std::string Lower(std::string text) {
    for (char &c : text)
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    return text;
}

TEST_F(RegistryPathTest, Each_root_has_its_value_and_both_its_names_in_any_case) {
    for (Row const &row : Rows()) {
        EXPECT_EQ(static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(row.key)), row.value);
        for (std::string const name : {row.brief, row.full}) {
            for (std::string const &spelled : {name, Lower(name)}) {
                OpenRegistry registry;
                registry.longForm = 7;
                EXPECT_EQ(Parsed(registry, spelled + "\\a\\b", 1), "a\\b\\");
                EXPECT_EQ(registry.rootKey, row.key) << spelled;
                EXPECT_EQ(registry.longForm, name == row.full ? 1 : 0) << spelled;
            }
        }
    }
}

TEST_F(RegistryPathTest, Root_names_are_compared_whole) {
    for (std::string const name : {"HKL", "HKLMX", "HKEY_LOCAL", "HKEY_LOCAL_MACHINES", "HKUX"}) {
        OpenRegistry registry;
        registry.rootKey = HKEY_USERS;
        EXPECT_EQ(Parsed(registry, name + "\\a", 0), name + "\\a\\");
        EXPECT_EQ(registry.rootKey, HKEY_USERS);
    }
}

TEST_F(RegistryPathTest, Parsing_an_empty_path_is_0_and_changes_nothing) {
    OpenRegistry registry;
    registry.longForm = 5;
    EXPECT_EQ(Parsed(registry, "", 0), "");
    EXPECT_EQ(registry.longForm, 5);
}

TEST_F(RegistryPathTest, A_root_alone_parses_to_an_empty_path) {
    OpenRegistry registry;
    EXPECT_EQ(Parsed(registry, "HKCU", 1), "");
    EXPECT_EQ(Parsed(registry, "HKCU\\", 1), "");
}

TEST_F(RegistryPathTest, A_parsed_path_ends_in_a_backslash_and_has_no_doubled_ones) {
    OpenRegistry registry;
    EXPECT_EQ(Parsed(registry, "HKLM\\Software\\", 1), "Software\\");
    EXPECT_EQ(Parsed(registry, "HKLM\\\\Software\\\\X", 1), "Software\\X\\");
    EXPECT_EQ(Parsed(registry, "HKLM\\Software\\\\", 1), "Software\\");
}

TEST_F(RegistryPathTest, A_path_without_a_root_keeps_its_text_and_gains_one_final_backslash) {
    OpenRegistry registry;
    registry.longForm = 1;
    EXPECT_EQ(Parsed(registry, "Software\\X", 0), "Software\\X\\");
    EXPECT_EQ(Parsed(registry, "Software\\X\\", 0), "Software\\X\\");
    EXPECT_EQ(Parsed(registry, "a\\\\b", 0), "a\\\\b\\");
    EXPECT_EQ(Parsed(registry, "\\", 0), "\\");
    EXPECT_EQ(registry.rootKey, HKEY_LOCAL_MACHINE);
    EXPECT_EQ(registry.longForm, 1);
}

TEST_F(RegistryPathTest, A_string_of_several_gives_the_selected_one) {
    OpenRegistry registry;
    UtilsString text("HKLM\\a");
    text.AddString("HKCU\\b");
    text.SetCurrentString(1);
    EXPECT_EQ(registry.ParseOutPath(text), 1);
    EXPECT_EQ(Text(text), "b\\");
    EXPECT_EQ(registry.rootKey, HKEY_CURRENT_USER);
}

TEST_F(RegistryPathTest, Case_and_a_final_backslash_make_no_difference_but_the_form_is_remembered) {
    MakeKey("x");
    OpenRegistry const brief(("hkcu\\" + Below("x") + "\\").c_str(), 0, 0);
    OpenRegistry const full(("HKEY_CURRENT_USER\\" + Below("x")).c_str(), 0, 0);
    EXPECT_EQ(Text(brief.path), Text(full.path));
    EXPECT_EQ(Text(brief.GetRootPath(0)), "HKCU");
    EXPECT_EQ(Text(full.GetRootPath(0)), "HKEY_CURRENT_USER");
}

TEST_F(RegistryPathTest, The_roots_name_comes_short_long_or_as_it_was_given) {
    for (Row const &row : Rows()) {
        for (int form : {0, 1}) {
            OpenRegistry registry;
            registry.rootKey = row.key;
            registry.longForm = form;
            EXPECT_EQ(Text(registry.GetRootPath(1)), row.brief);
            EXPECT_EQ(Text(registry.GetRootPath(2)), row.full);
            for (int other : {0, 3, -1})
                EXPECT_EQ(Text(registry.GetRootPath(other)), form ? row.full : row.brief);
        }
    }
}

TEST_F(RegistryPathTest, A_root_outside_the_table_has_no_name) {
    OpenRegistry registry;
    registry.rootKey = reinterpret_cast<HKEY>(std::intptr_t{0x1234});
    for (int form : {0, 1, 2})
        EXPECT_EQ(Text(registry.GetRootPath(form)), "");
    registry.path = "a\\";
    EXPECT_EQ(Text(registry.GetRegistryPath(1)), "\\a\\");
}

TEST_F(RegistryPathTest, The_registry_path_comes_with_or_without_its_root) {
    OpenRegistry registry(HKEY_CURRENT_USER, Below().c_str(), 0, 0);
    EXPECT_EQ(Text(registry.GetRegistryPath(0)), Below() + "\\");
    EXPECT_EQ(Text(registry.GetRegistryPath(1)), Full() + "\\");
    EXPECT_EQ(Text(registry.GetRegistryPath(2)), Full() + "\\");
    registry.longForm = 1;
    EXPECT_EQ(Text(registry.GetRegistryPath(1)), "HKEY_CURRENT_USER\\" + Below() + "\\");
}

} // namespace

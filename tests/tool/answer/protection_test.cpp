#include "answer/protection.h"

#include "answer/protected_files.h"

#include <algorithm>
#include <gtest/gtest.h>

using namespace qvlink;

namespace {

// A library in which asking marks: everything answers no at first and yes from then on.
std::vector<std::string> asked;
int MarkingQuestion(const char *path) {
    bool const wasAsked = std::find(asked.begin(), asked.end(), path) != asked.end();
    asked.emplace_back(path);
    return wasAsked ? 1 : 0;
}

constexpr char FileList[] = "%SystemDir%\\kernel32.dll\r\n"
                            "%SystemDir%\\drivers\\etc\\hosts\r\n"
                            "  %systemdir%\\drivers\\ntfs.sys \r\n"
                            "\r\n"
                            "%WindowsDir%\\win.ini\r\n"
                            "%SystemDir%\\KERNEL32.DLL\r\n"
                            "%whatever%\\\\\\taskman.exe\r\n"
                            "HKLM\\SYSTEM\r\n"
                            "%SystemDir%\\last.dll";

ProtectedFiles const Files(FileList, {"C:\\windows", "C:\\windows\\system32\\"});

std::string LineOf(std::string const &path) {
    std::string const *const line = Files.LineOf(path);
    return line ? *line : "none";
}

} // namespace

TEST(Protection, A_path_is_asked_about_once_however_it_is_spelt) {
    asked.clear();
    Protection protection(MarkingQuestion);
    for (std::string const path : {"C:\\windows\\drivers", "c:\\WINDOWS\\Drivers",
                                   "C:\\\\windows\\\\\\drivers\\", "\\C:\\windows\\drivers"}) {
        EXPECT_EQ(protection.Of(path), false) << path;
    }
    EXPECT_EQ(asked, std::vector<std::string>{"C:\\windows\\drivers"});
}

TEST(Protection, Other_paths_are_questions_of_their_own) {
    asked.clear();
    Protection protection(MarkingQuestion);
    protection.Of("C:\\a");
    protection.Of("C:\\a\\b");
    protection.Of("C:\\ab");
    EXPECT_EQ(asked.size(), 3U);
}

TEST(Protection, A_path_that_is_too_long_is_never_asked_about) {
    asked.clear();
    Protection protection(MarkingQuestion);
    EXPECT_EQ(protection.Of(std::string(260, 'x')), std::nullopt);
    EXPECT_TRUE(asked.empty());
    EXPECT_EQ(protection.Of(std::string(259, 'x')), false);
}

TEST(ProtectedFiles, A_line_names_a_file_below_its_folder) {
    EXPECT_EQ(LineOf("C:\\windows\\system32\\kernel32.dll"), "%SystemDir%\\kernel32.dll");
    EXPECT_EQ(LineOf("c:\\Windows\\WIN.INI"), "%WindowsDir%\\win.ini");
    EXPECT_EQ(LineOf("C:\\windows\\kernel32.dll"), "none");
}

TEST(ProtectedFiles, Blanks_around_a_line_and_the_case_of_its_tag_make_no_difference) {
    EXPECT_EQ(LineOf("C:\\windows\\system32\\drivers\\ntfs.sys"), "%systemdir%\\drivers\\ntfs.sys");
}

TEST(ProtectedFiles, One_letter_decides_which_folder_a_line_means) {
    // Thirteen characters are taken off, whatever they are.
    EXPECT_EQ(LineOf("C:\\windows\\taskman.exe"), "%whatever%\\\\\\taskman.exe");
}

TEST(ProtectedFiles, The_last_line_counts_only_with_a_line_end) {
    EXPECT_EQ(LineOf("C:\\windows\\system32\\last.dll"), "none");
}

TEST(ProtectedFiles, A_folder_is_no_line_but_tells_how_many_files_lie_below) {
    EXPECT_EQ(LineOf("C:\\windows\\system32\\drivers"), "none");
    EXPECT_EQ(Files.CountBelow("C:\\WINDOWS\\system32\\drivers\\"), 2U);
    EXPECT_EQ(Files.CountBelow("C:\\windows\\system32\\drivers\\etc"), 1U);
    EXPECT_EQ(Files.CountBelow("C:"), 5U); // kernel32.dll is listed twice
    EXPECT_EQ(Files.CountBelow("C:\\windows\\system32\\kernel32.dll"), 0U);
    EXPECT_EQ(Files.CountBelow("C:\\windows\\system32\\driver"), 0U);
}

TEST(ProtectedFiles, A_path_of_260_characters_or_more_is_passed_over) {
    std::string const folder = "C:\\windows\\system32\\"; // 20 characters
    std::string const longest(239, 'x');
    ProtectedFiles const files("%SystemDir%\\" + longest + "\n%SystemDir%\\" + longest + "y\n",
                               {"C:\\windows", "C:\\windows\\system32"});
    EXPECT_NE(files.LineOf(folder + longest), nullptr);
    EXPECT_EQ(files.LineOf(folder + longest + "y"), nullptr);
}

TEST(ProtectedFiles, Each_family_has_its_two_lists) {
    struct Row {
        ostype family;
        std::uint32_t files;
        std::uint32_t keys;
    };
    for (Row const row : {Row{OS_WIN95, 102, 111}, Row{OS_WIN98, 103, 112}, Row{OS_WINME, 105, 113},
                          Row{OS_NT3, 104, 114}, Row{OS_NT4, 104, 114}, Row{OS_WIN2000, 101, 110},
                          Row{OS_NT_LATER, 101, 110}}) {
        FamilyLists const *const lists = ListsOf(row.family);
        ASSERT_NE(lists, nullptr) << row.family;
        EXPECT_EQ(lists->files, row.files) << row.family;
        EXPECT_EQ(lists->keys, row.keys) << row.family;
    }
    EXPECT_EQ(ListsOf(OS_UNKNOWN), nullptr);
}

TEST(ProtectedFiles, The_librarys_own_list_is_read_from_its_file) {
    OwnList const list = ReadOwnList();
    ASSERT_NE(list.family, nullptr);
    EXPECT_EQ(list.problem, "");
    SystemDirectories const folders = FindSystemDirectories();
    std::string const *const line = list.files.LineOf(folders.system + "\\KERNEL32.dll");
    ASSERT_NE(line, nullptr);
    EXPECT_EQ(*line, "%SystemDir%\\kernel32.dll");
    EXPECT_GE(list.files.CountBelow(folders.system), 1U);
}

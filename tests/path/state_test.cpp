// How paths are made, copied, compared and told, and what they throw.
#include "open_path.h"

#include <type_traits>
#include <utility>

#include <gtest/gtest.h>

#include "std_exception.h"

using UTILS::CUtilsPath;
using UTILS::UtilsString;

static_assert(std::has_virtual_destructor_v<CUtilsPath>);

namespace {

void ExpectBare(OpenPath const &path) {
    EXPECT_EQ(0, path.automate);
    EXPECT_EQ(0, path.exceptionHandling);
    EXPECT_EQ(0, path.dirSize);
    EXPECT_EQ(0u, path.totalFiles);
    EXPECT_EQ(0u, path.totalSubDirs);
    EXPECT_EQ(0u, path.path.size());
    EXPECT_EQ(0u, path.pathUNC.size());
    EXPECT_EQ(0u, path.parentLevel);
    EXPECT_EQ(0u, path.filePosition);
    EXPECT_EQ(0u, path.dirPosition);
    EXPECT_EQ(0, path.fileFlag);
    EXPECT_EQ(0, path.regFlag);
    EXPECT_EQ(0, path.scanRO);
    EXPECT_EQ(0, path.uncFlag);
    EXPECT_EQ(nullptr, path.shellLink);
    EXPECT_EQ(nullptr, path.shellLinkDataList);
    EXPECT_EQ(nullptr, path.persistFile);
    EXPECT_EQ(1, !path);
    for (auto const *list : {&path.fileList, &path.dirList}) {
        EXPECT_EQ(0u, list->GetNumberOfStrings());
        EXPECT_EQ(0, list->GetCase());
        EXPECT_EQ(0, list->GetMatchStyle());
    }
}

// Something else in every field than a fresh path has.
void Fill(OpenPath &path) {
    path.SetDir("\\\\server\\share");
    path.automate = path.exceptionHandling = path.fileFlag = path.regFlag = path.scanRO = 1;
    path.dirSize = 0x123456789ab;
    path.totalFiles = 2;
    path.totalSubDirs = 3;
    path.parentLevel = 4;
    path.filePosition = 5;
    path.dirPosition = 6;
    path.fileList.AddString("file");
    path.fileList.AddString("other");
    path.dirList.AddString("folder");
    path.shellLink = reinterpret_cast<IShellLinkA *>(0x10);
    path.shellLinkDataList = reinterpret_cast<IShellLinkDataList *>(0x20);
    path.persistFile = reinterpret_cast<IPersistFile *>(0x30);
}

void ExpectFilled(OpenPath const &path) {
    EXPECT_EQ("\\\\server\\share", path.Text());
    EXPECT_EQ("\\\\server\\share", path.Network());
    EXPECT_EQ(0, path.path.GetCase());
    EXPECT_EQ(1, path.automate);
    EXPECT_EQ(1, path.exceptionHandling);
    EXPECT_EQ(0x123456789ab, path.dirSize);
    EXPECT_EQ(2u, path.totalFiles);
    EXPECT_EQ(3u, path.totalSubDirs);
    EXPECT_EQ(4u, path.parentLevel);
    EXPECT_EQ(5u, path.filePosition);
    EXPECT_EQ(6u, path.dirPosition);
    EXPECT_EQ(1, path.fileFlag);
    EXPECT_EQ(1, path.regFlag);
    EXPECT_EQ(1, path.scanRO);
    EXPECT_EQ(1, path.uncFlag);
    ASSERT_EQ(2u, path.fileList.GetNumberOfStrings());
    ASSERT_EQ(1u, path.dirList.GetNumberOfStrings());
    EXPECT_EQ(reinterpret_cast<IShellLinkA *>(0x10), path.shellLink);
    EXPECT_EQ(reinterpret_cast<IShellLinkDataList *>(0x20), path.shellLinkDataList);
    EXPECT_EQ(reinterpret_cast<IPersistFile *>(0x30), path.persistFile);
}

// What is thrown, with the last error's number and its description in it.
std::string Thrown(unsigned long line, unsigned long error) {
    UtilsString description;
    description.SetErrorMsg(error, 0);
    return "File:  CUtilsPath; Line Number:  " + std::to_string(line) +
           "; Exception Name:  class UTILS::std_exception; Type:  173; " +
           (error == 0 ? ""
                       : "Error Number: " + std::to_string(error) +
                             "; WinError Description: " + description.Retrieve() + "; ") +
           "Error Condition:  The input pathname is NULL";
}

unsigned long ErrorIn(std::string const &text) {
    std::size_t const at = text.find("Error Number: ");
    return at == std::string::npos ? 0 : std::stoul(text.substr(at + 14));
}

template <typename Work> std::string TextThrownBy(Work work) {
    try {
        work();
    } catch (UTILS::std_exception const &thrown) {
        return thrown.what();
    }
    return "nothing was thrown";
}

template <typename Work> void ExpectThrows(unsigned long line, Work work) {
    // To close a search that found nothing fails with 6.
    OpenPath("C:\\no folder\\no file").IsAFile();
    EXPECT_EQ(Thrown(line, 6), TextThrownBy(work));
}

} // namespace

// Making

TEST(Making, Without_more_is_empty_with_all_flags_off) { ExpectBare(OpenPath()); }

TEST(Making, With_an_empty_text_is_the_same) {
    ExpectBare(OpenPath(""));
    OpenPath const path(UtilsString(""), 5, -1, 0);
    EXPECT_EQ(1, path.automate);
    EXPECT_EQ(1, path.scanRO);
    EXPECT_EQ(1, !path);
}

TEST(Making, Takes_the_path_and_any_number_but_0_for_1) {
    OpenPath const none(UtilsString("C:\\a"), 0, 0, 0);
    EXPECT_EQ("C:\\a", none.Text());
    EXPECT_EQ(0, none.automate);
    EXPECT_EQ(0, none.scanRO);
    EXPECT_EQ(0, none.exceptionHandling);
    EXPECT_EQ(0, !none);
    OpenPath const first(UtilsString("HKLM\\no such key"), 2, 0, 0);
    EXPECT_EQ(1, first.automate);
    EXPECT_EQ(0, first.scanRO + first.exceptionHandling);
    OpenPath const second(UtilsString("C:\\a"), 0, -1, 0);
    EXPECT_EQ(1, second.scanRO);
    EXPECT_EQ(0, second.automate + second.exceptionHandling);
    OpenPath const third(UtilsString("C:\\a"), 0, 0, 256);
    EXPECT_EQ(1, third.exceptionHandling);
    EXPECT_EQ(0, third.automate + third.scanRO);
}

TEST(Making, Of_a_copy_takes_every_field) {
    OpenPath path;
    Fill(path);
    OpenPath const copy(path);
    ExpectFilled(copy);
    EXPECT_EQ(path.msiModule, copy.msiModule);
    EXPECT_EQ(path.msiAvailable, copy.msiAvailable);
    ExpectFilled(path);
}

TEST(Making, Of_a_copy_has_texts_and_lists_of_its_own) {
    OpenPath path;
    Fill(path);
    OpenPath copy(path);
    path.SetDir("C:\\other");
    path.fileList.RemoveAllStrings();
    ExpectFilled(copy);
    copy.SetDir("D:\\x");
    EXPECT_EQ("C:\\other", path.Text());
}

TEST(Assigning, Takes_every_field) {
    OpenPath path;
    OpenPath target("C:\\old\\path");
    target.fileList.AddString("old");
    Fill(path);
    OpenPath &result = target = path;
    EXPECT_EQ(&target, &result);
    ExpectFilled(target);
}

TEST(Assigning, Takes_the_cursors_of_the_lists) {
    OpenPath path;
    Fill(path);
    UtilsString text;
    OpenPath const copy(path);
    EXPECT_EQ(path.fileList.GetCase(), copy.fileList.GetCase());
    EXPECT_EQ(path.fileList.GetNumberOfStrings(), copy.fileList.GetNumberOfStrings());
}

TEST(Assigning, Of_a_path_to_itself_changes_nothing) {
    OpenPath path;
    Fill(path);
    OpenPath &same = path;
    path = same;
    ExpectFilled(path);
}

TEST(Clearing, In_part_forgets_searches_and_shortcuts_only) {
    OpenPath path;
    Fill(path);
    path.Clear(0);
    EXPECT_EQ(0, path.dirSize);
    EXPECT_EQ(0u, path.totalFiles);
    EXPECT_EQ(0u, path.totalSubDirs);
    EXPECT_EQ(0u, path.filePosition);
    EXPECT_EQ(0u, path.dirPosition);
    EXPECT_EQ(nullptr, path.shellLink);
    EXPECT_EQ(nullptr, path.shellLinkDataList);
    EXPECT_EQ(nullptr, path.persistFile);
    EXPECT_EQ("\\\\server\\share", path.Text());
    EXPECT_EQ("\\\\server\\share", path.Network());
    EXPECT_EQ(2u, path.fileList.GetNumberOfStrings());
    EXPECT_EQ(1u, path.dirList.GetNumberOfStrings());
    EXPECT_EQ(4u, path.parentLevel);
    EXPECT_EQ(6, path.automate + path.exceptionHandling + path.fileFlag + path.regFlag +
                     path.scanRO + path.uncFlag);
}

TEST(Clearing, In_full_makes_the_path_as_new) {
    OpenPath path;
    Fill(path);
    path.fileList.SetCase(1);
    path.dirList.SetMatchStyle(1);
    path.Clear(1);
    ExpectBare(path);
    Fill(path);
    path.Clear(-1);
    ExpectBare(path);
}

// Flags

TEST(Flags, Are_set_and_cleared_by_each_of_their_names) {
    OpenPath path;
    path.SetAutomate();
    EXPECT_EQ(1, path.automate);
    path.ClearAutomate();
    EXPECT_EQ(0, path.automate);
    path.SetAutomate();
    path.ResetAutomate();
    EXPECT_EQ(0, path.automate);
    path.SetExceptionHandling();
    EXPECT_EQ(1, path.exceptionHandling);
    path.ClearExceptionHandling();
    EXPECT_EQ(0, path.exceptionHandling);
    path.SetExceptionHandling();
    path.ResetExceptionHandling();
    EXPECT_EQ(0, path.exceptionHandling);
}

TEST(Flags, For_read_only_scans_have_four_names_to_clear_them) {
    OpenPath path;
    for (auto const set : {&CUtilsPath::SetScanRO, &CUtilsPath::SetScanROKO})
        for (auto const clear : {&CUtilsPath::ClearScanRO, &CUtilsPath::ClearScanROKO,
                                 &CUtilsPath::ReSetScanRO, &CUtilsPath::ReSetScanROKO}) {
            (path.*set)();
            EXPECT_EQ(1, path.scanRO);
            (path.*clear)();
            EXPECT_EQ(0, path.scanRO);
        }
}

TEST(Flags, Change_nothing_else) {
    OpenPath path;
    Fill(path);
    path.SetAutomate();
    path.SetScanRO();
    path.SetExceptionHandling();
    ExpectFilled(path);
}

// Telling

TEST(Telling, By_each_name_is_the_text_itself) {
    OpenPath path("C:\\a");
    char const *const text = path.path.Retrieve();
    EXPECT_EQ(text, path.GetDir());
    EXPECT_EQ(text, path.GetFullPath());
    EXPECT_EQ(text, path.GetPath());
    EXPECT_EQ(text, static_cast<char const *>(std::as_const(path)));
    EXPECT_EQ(text, static_cast<char *>(path));
    EXPECT_EQ(&path.path, &path.UGetDir());
    EXPECT_EQ(&path.path, &path.UGetFullPath());
    EXPECT_EQ(&path.path, &path.UGetPath());
    EXPECT_EQ(&path, static_cast<CUtilsPath *>(path));
}

TEST(Telling, As_a_string_is_a_copy) {
    OpenPath path("C:\\a");
    UtilsString const copy = path.operator UtilsString();
    path.SetDir("C:\\b");
    EXPECT_STREQ("C:\\a", copy);
}

TEST(Telling, Emptiness_is_1_or_0) {
    EXPECT_EQ(1, !OpenPath());
    EXPECT_EQ(0, !OpenPath("C:"));
}

// Comparing

TEST(Comparing, Paths_is_by_their_texts_without_regard_to_case) {
    OpenPath const low("C:\\abc");
    OpenPath const same("c:\\ABC");
    OpenPath const high("C:\\abd");
    EXPECT_EQ(1, low == same);
    EXPECT_EQ(0, low != same);
    EXPECT_EQ(0, low < same);
    EXPECT_EQ(0, low > same);
    EXPECT_EQ(1, low <= same);
    EXPECT_EQ(1, low >= same);
    EXPECT_EQ(0, low == high);
    EXPECT_EQ(1, low != high);
    EXPECT_EQ(1, low < high);
    EXPECT_EQ(0, low > high);
    EXPECT_EQ(1, low <= high);
    EXPECT_EQ(0, low >= high);
    EXPECT_EQ(0, high < low);
    EXPECT_EQ(1, high > low);
    EXPECT_EQ(0, high <= low);
    EXPECT_EQ(1, high >= low);
}

TEST(Comparing, Paths_is_by_the_settings_of_the_left_one) {
    OpenPath left("C:\\abc");
    OpenPath const right("c:\\ABC");
    left.path.SetCase(1);
    EXPECT_EQ(0, left == right);
    EXPECT_EQ(1, right == left);
    left.path.SetMatchStyle(1);
    EXPECT_EQ(1, left == OpenPath("C:"));
    EXPECT_EQ(0, OpenPath("C:") == left);
}

TEST(Comparing, Folds_signs_below_letters) {
    EXPECT_EQ(1, OpenPath("C:\\_") < OpenPath("C:\\a"));
    EXPECT_EQ(1, OpenPath("C:\\_") < OpenPath("C:\\A"));
}

TEST(Comparing, With_a_text_is_by_the_path) {
    OpenPath const path("C:\\abc");
    EXPECT_EQ(1, path == UtilsString("C:\\ABC"));
    EXPECT_EQ(1, path == "C:\\ABC");
    EXPECT_EQ(0, path == UtilsString("C:\\abcd"));
    EXPECT_EQ(0, path == UtilsString(""));
    EXPECT_EQ(0, path == UtilsString("\\"));
    EXPECT_EQ(1, OpenPath() == UtilsString(""));
}

TEST(Comparing, With_a_network_name_is_by_that_form_of_the_path) {
    OpenPath const path("C:\\abc");
    UtilsString network(path.GetDirUNC());
    EXPECT_EQ(1, path == network);
    EXPECT_EQ(0, path == UtilsString("\\\\"));
    EXPECT_EQ(0, path == UtilsString("\\\\abc"));
    OpenPath const server("\\\\server\\Share");
    EXPECT_EQ(1, server == UtilsString("\\\\server\\Share"));
    EXPECT_EQ(0, server == UtilsString("\\\\server\\share")); // letter by letter
}

// Failing

TEST(Empty_texts, Are_thrown_by_the_constructor) {
    std::string const text = TextThrownBy([] { OpenPath const path("", 1); });
    EXPECT_EQ(Thrown(1029, ErrorIn(text)), text);
}

TEST(Empty_texts, Are_thrown_by_whatever_sets) {
    OpenPath path("C:\\a", 1);
    ExpectThrows(1029, [&] { path.SetDir(""); });
    ExpectThrows(1029, [&] { path.SetKey(""); });
    ExpectThrows(1029, [&] { path.SetPath("", "C:\\b"); });
    ExpectThrows(1029, [&] { path = UtilsString(""); });
    EXPECT_EQ("C:\\a", path.Text());
}

TEST(Empty_texts, Are_thrown_by_whatever_adds) {
    OpenPath path("C:\\a", 1);
    OpenPath const empty;
    ExpectThrows(1394, [&] { path.AddToPath(""); });
    ExpectThrows(1394, [&] { path.AddDirToPath(""); });
    ExpectThrows(1394, [&] { path += UtilsString(""); });
    ExpectThrows(1394, [&] { path += empty; });
    EXPECT_EQ("C:\\a", path.Text());
    ExpectThrows(1029, [&] { path.AddToPath("D:\\"); }); // nothing is left behind the drive
}

TEST(Empty_texts, Are_no_failure_of_an_empty_path_that_gets_one) {
    OpenPath path;
    path.SetExceptionHandling();
    ExpectThrows(1394, [&] { path.AddToPath(""); });
    EXPECT_EQ(1, path.AddToPath("C:\\a"));
}

// Which lists serve which system: each row of the table in a process of its own.
#include "call_hook.h"
#include "CNTAdminObject.h"
#include "prefix.h"
#include "protect_load.h"
#include "roles.h"
#include "system_folders.h"
#include "temp_folder.h"
#include "told_lists.h"
#include "tree_nodes.h"

#include "platform/winapi.h"

#include <fstream>

#include <gtest/gtest.h>

namespace {

// Until a role tells another version there is no list for the system's, and nothing is loaded.
constexpr char noFamily[] = "version=1.4.20";

DWORD Number(std::string const &text) { return static_cast<DWORD>(std::stoul(text)); }

void TellVersion(DWORD platform, DWORD major, DWORD minor) {
    testing_hooks::SetVersion(platform, major, minor);
    g_NTAdminObject = CNTAdminObject();
}

// Every list there is, each with a line that names it.
void TellAllLists(ToldLists &told) {
    for (WORD id = 101; id <= 105; ++id)
        told.TellText("WIN_FILES", id, "%SystemDir%\\list" + std::to_string(id) + "\r\n");
    for (WORD id = 110; id <= 114; ++id)
        told.TellText("WIN_REGS", id, "HKLM\\list" + std::to_string(id) + "\r\n");
}

// The place of the one list that is in a tree: 0 for none, 9 for more than one.
int PlaceOf(ProtectNode &tree, std::string const &folder, int first) {
    int found = 0;
    for (int place = 1; place <= 5; ++place)
        if (Has(tree, folder + "\\list" + std::to_string(first + place - 1)))
            found = found == 0 ? place : 9;
    return found;
}

int Places() {
    return 10 * PlaceOf(ProtectedFileTree, CurrentSystemFolders().system, 101) +
           PlaceOf(ProtectedRegTree, "HKLM", 110);
}

Role const listsRole("lists-of-version", [](Arguments const &arguments) -> int {
    ToldLists told;
    TellAllLists(told);
    TellVersion(Number(arguments.at(0)), Number(arguments.at(1)), Number(arguments.at(2)));
    LoadProtectedFiles();
    LoadProtectedRegs();
    return Places();
});

// One of the two isn't there.
Role const withoutRole("lists-without-one", [](Arguments const &arguments) -> int {
    ToldLists told;
    TellAllLists(told);
    TellVersion(2, 5, 1);
    CallHook const hook([&](CallHook::Call const &call) {
        return Is(call, "FindResourceA") && call.path == arguments.at(0);
    });
    LoadProtectedFiles();
    LoadProtectedRegs();
    return Places();
});

// Counts how often the folders are asked for: by a load without a family, then by two with.
Role const foldersRole("ask-for-folders", [](Arguments const &) -> int {
    int windows = 0, system = 0;
    CallHook const hook([&](CallHook::Call const &call) {
        bool const before = call.moment == CallHook::Moment::Before;
        windows += before && Is(call, "GetWindowsDirectoryA");
        system += before && Is(call, "GetSystemDirectoryA");
        return false;
    });
    TellVersion(1, 4, 20);
    LoadProtectedFiles();
    LoadProtectedRegs();
    if (windows != 0 || system != 0)
        return 1;
    TellVersion(2, 5, 1);
    LoadProtectedRegs();
    if (windows != 0 || system != 0)
        return 2;
    LoadProtectedFiles();
    if (windows != 1 || system != 1)
        return 3;
    LoadProtectedFiles();
    CaptureSystemDirs();
    return windows == 1 && system == 1 ? 0 : 4;
});

// The folders aren't known: nothing comes of the files, and nothing else does either.
Role const noFoldersRole("without-folders", [](Arguments const &) -> int {
    ToldLists told;
    TellAllLists(told);
    TellVersion(2, 5, 1);
    CallHook const hook(
        [&](CallHook::Call const &call) { return Is(call, "GetSystemDirectoryA"); });
    LoadProtectedFiles();
    LoadProtectedRegs();
    return Places();
});

// A tail that just fits behind the folder with one backslash.
Role const rootRole("root-folder", [](Arguments const &arguments) -> int {
    ToldLists told;
    std::string const tail(259 - 3, 'x');
    told.TellText("WIN_FILES", 101, arguments.at(0) + tail + "\r\n");
    TellVersion(2, 5, 1);
    LoadProtectedFiles();
    return Has(ProtectedFileTree, "C:\\" + tail) ? 0 : 1;
});

struct Row {
    char const *platform, *major, *minor;
    int files, keys; // numbers of the lists, 0 for none
};

constexpr Row rows[] = {
    {"1", "4", "0", 102, 111},  {"1", "4", "10", 103, 112}, {"1", "4", "90", 105, 113},
    {"2", "3", "51", 104, 114}, {"2", "4", "0", 104, 114},  {"2", "5", "0", 101, 110},
    {"2", "5", "1", 101, 110},  {"2", "5", "2", 101, 110},  {"2", "6", "1", 101, 110},
    {"2", "10", "0", 101, 110}, {"1", "4", "20", 0, 0},     {"0", "5", "1", 0, 0},
    {"3", "5", "1", 0, 0},
};

int PlacesOf(int files, int keys) {
    return 10 * (files ? files - 100 : 0) + (keys ? keys - 109 : 0);
}

} // namespace

TEST(ListFamily, Has_the_lists_of_its_row) {
    Prefix const prefix(noFamily);
    for (Row const &row : rows)
        EXPECT_EQ(PlacesOf(row.files, row.keys),
                  RunRole("lists-of-version", {row.platform, row.major, row.minor}))
            << row.platform << '.' << row.major << '.' << row.minor;
}

TEST(ListFamily, Has_its_keys_without_its_files_and_its_files_without_its_keys) {
    Prefix const prefix(noFamily);
    EXPECT_EQ(PlacesOf(0, 110), RunRole("lists-without-one", {"WIN_FILES"}));
    EXPECT_EQ(PlacesOf(101, 0), RunRole("lists-without-one", {"WIN_REGS"}));
}

TEST(ListFamily, That_is_unknown_asks_for_no_folders_and_others_do_once) {
    Prefix const prefix(noFamily);
    EXPECT_EQ(0, RunRole("ask-for-folders", {}));
}

TEST(ListFolders, That_arent_told_leave_the_keys) {
    Prefix const prefix(noFamily);
    EXPECT_EQ(PlacesOf(0, 110), RunRole("without-folders", {}));
}

TEST(ListFolders, That_are_a_root_get_no_second_backslash) {
    if (!versionCanBeTold)
        GTEST_SKIP() << "Windows knows its own folders";
    Prefix const prefix(std::string(noFamily) + "\nwindowsDirectory=C:\\\nsystemDirectory=C:\\");
    EXPECT_EQ(0, RunRole("root-folder", {"%WindowsDir%\\"}));
    EXPECT_EQ(0, RunRole("root-folder", {"%SystemDir%\\"}));
}

TEST(ListFolders, Without_a_backslash_at_their_end_get_one) {
    if (!versionCanBeTold)
        GTEST_SKIP() << "Windows knows its own folders";
    Prefix const prefix(std::string(noFamily) + "\nwindowsDirectory=C:\nsystemDirectory=C:");
    EXPECT_EQ(0, RunRole("root-folder", {"%WindowsDir%\\"}));
    EXPECT_EQ(0, RunRole("root-folder", {"%SystemDir%\\"}));
}

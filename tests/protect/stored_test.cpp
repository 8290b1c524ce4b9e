// The stored lists of each family, as the build made them, in the trees of a process each.
#include "CNTAdminObject.h"
#include "protect_load.h"
#include "roles.h"
#include "shipped_lists.h"
#include "temp_folder.h"
#include "told_lists.h"
#include "tree_nodes.h"

#include <fstream>
#include <iostream>
#include <iterator>

#include <gtest/gtest.h>

#include "platform/system_version.h"

namespace {

std::string ReadStored(int id) {
    std::ifstream stream(QVLINKDB_STORED_LISTS "/" + std::to_string(id) + ".list",
                         std::ios::binary);
    return std::string((std::istreambuf_iterator<char>(stream)), {});
}

std::vector<std::string> KeyPaths(std::string const &text) {
    std::vector<std::string> paths;
    for (std::string const &line : ListLines(text))
        if (!line.empty())
            paths.push_back(line);
    return paths;
}

int Tell(int id, std::string const &wrong) {
    if (!wrong.empty())
        std::cerr << id << ": " << wrong << '\n';
    return wrong.empty() ? 0 : 1;
}

Role const askStored("ask-stored", [](Arguments const &arguments) -> int {
    testing_hooks::SetVersion(static_cast<DWORD>(std::stoul(arguments.at(0))),
                              static_cast<DWORD>(std::stoul(arguments.at(1))),
                              static_cast<DWORD>(std::stoul(arguments.at(2))));
    g_NTAdminObject = CNTAdminObject();
    FamilyLists const ids = ListsOfFamily(g_NTAdminObject.GetOS());
    ToldLists told;
    told.Tell("WIN_FILES", static_cast<WORD>(ids.files), ReadStored(ids.files));
    told.Tell("WIN_REGS", static_cast<WORD>(ids.keys), ReadStored(ids.keys));
    LoadProtectedFiles();
    LoadProtectedRegs();
    // The keys' empty line marked the root, and nothing marked that of the files.
    if (ProtectedRegTree.marked != 1 || ProtectedFileTree.marked != 0)
        return 2;
    int const files = Tell(
        ids.files, AskForAll(FilePaths(ReadListText(ids.files), CurrentSystemFolders()),
                             [](std::string const &path) { return Ask(ProtectedFileTree, path); }));
    int const keys =
        Tell(ids.keys, AskForAll(KeyPaths(ReadListText(ids.keys)), [](std::string const &path) {
                 return Ask(ProtectedRegTree, path);
             }));
    return files + keys;
});

// The line without an end is in no tree, under no spelling of its folder.
Role const askDropped("ask-dropped-line", [](Arguments const &) -> int {
    testing_hooks::SetVersion(1, 4, 90);
    g_NTAdminObject = CNTAdminObject();
    ToldLists told;
    told.Tell("WIN_FILES", 105, ReadStored(105));
    LoadProtectedFiles();
    std::string const text = ReadListText(105);
    SystemFolders const folders = CurrentSystemFolders();
    bool const others = Has(ProtectedFileTree, FilePath(ListLines(text).back(), folders));
    return others && !Has(ProtectedFileTree, FilePath(ListRest(text), folders)) ? 0 : 1;
});

class NoFamily {
public:
    NoFamily() {
        std::ofstream(m_prefix.Path() / "platform.ini") << "version=1.4.20\n";
        UsePrefixFromNowOn(m_prefix.Directory().c_str());
    }

private:
    TempFolder m_prefix;
};

} // namespace

TEST(StoredLists, Of_each_family_answer_for_every_line_and_its_neighbours) {
    NoFamily const untilTold;
    char const *const versions[][3] = {{"1", "4", "0"},  {"1", "4", "10"}, {"1", "4", "90"},
                                       {"2", "3", "51"}, {"2", "4", "0"},  {"2", "5", "0"},
                                       {"2", "5", "1"}};
    for (auto const &version : versions)
        EXPECT_EQ(0, RunRole("ask-stored", {version[0], version[1], version[2]}))
            << version[0] << '.' << version[1] << '.' << version[2];
}

TEST(StoredLists, Of_Windows_Me_lack_the_line_without_an_end) {
    NoFamily const untilTold;
    EXPECT_EQ(0, RunRole("ask-dropped-line", {}));
}

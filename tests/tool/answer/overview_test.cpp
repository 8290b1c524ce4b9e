#include "answer/overview.h"
#include "system_folders.h"
#include "test_graph.h"

#include <gtest/gtest.h>

using namespace qvlink;

namespace {

Texts Paths(TestGraph &graph, std::vector<CQVUObject *> const &objects) {
    Texts texts;
    for (CQVUObject *const object : objects) {
        texts.push_back(PathOf(graph.Database(), object));
    }
    return texts;
}

} // namespace

TEST(Missing, A_name_that_nothing_provides_is_told_with_all_who_ask) {
    TestGraph graph;
    graph.Asks(graph.Windows("C:\\b\\q.exe"), "gone.dll");
    graph.Asks(graph.Windows("C:\\a\\p.exe"), "gone.dll");
    graph.Asks(graph.Windows("C:\\a\\r.exe"), "there.dll");
    graph.Windows("C:\\a\\there.dll");
    std::vector<MissingName> const missing = FindMissing(graph.Database());
    ASSERT_EQ(missing.size(), 1U);
    EXPECT_EQ(missing[0].name, graph.Name("gone.dll"));
    EXPECT_EQ(Paths(graph, missing[0].askers), (Texts{"C:\\a\\p.exe", "C:\\b\\q.exe"}));
    EXPECT_TRUE(missing[0].elsewhere.empty());
    EXPECT_FALSE(missing[0].isDelayed);
}

TEST(Missing, Only_those_who_get_nothing_are_told_and_what_lies_elsewhere) {
    TestGraph graph;
    graph.Asks(graph.Windows("C:\\a\\p.exe"), "x.dll");
    graph.Asks(graph.Windows("C:\\b\\q.exe"), "x.dll", LINK_DELAYED);
    graph.Windows("C:\\a\\X.DLL");
    std::vector<MissingName> const missing = FindMissing(graph.Database());
    ASSERT_EQ(missing.size(), 1U);
    EXPECT_EQ(Paths(graph, missing[0].askers), (Texts{"C:\\b\\q.exe"}));
    EXPECT_EQ(Paths(graph, missing[0].elsewhere), (Texts{"C:\\a\\X.DLL"}));
    EXPECT_TRUE(missing[0].isDelayed);
}

TEST(Missing, What_a_system_folder_provides_is_not_missing) {
    TestGraph graph;
    graph.Asks(graph.Windows("C:\\a\\p.exe"), "x.dll");
    graph.Windows(CurrentSystemFolders().system + "\\x.dll");
    EXPECT_TRUE(FindMissing(graph.Database()).empty());
}

TEST(Missing, Names_come_in_order) {
    TestGraph graph;
    CQVUObject *const p = graph.Program("Z:\\p");
    for (const char *const name : {"libc", "liba", "libb"}) {
        graph.Asks(p, name, LINK_MISSING);
    }
    Texts names;
    for (MissingName const &missing : FindMissing(graph.Database())) {
        names.emplace_back(NameOf(*missing.name));
    }
    EXPECT_EQ(names, (Texts{"liba", "libb", "libc"}));
}

TEST(Statistics, Objects_links_and_files_are_counted_by_kind) {
    TestGraph graph;
    CQVUObject *const p = graph.Program("Z:\\bin\\p");
    CQVUObject *const x = graph.File("Z:\\lib\\x", FLAG_ELF, 1000);
    graph.Symlink("Z:\\lib\\y", x);
    graph.Found(p, x);
    graph.Asks(p, "gone", LINK_MISSING);
    graph.File("Z:\\text", 0, 24);
    Statistics const counted = FindStatistics(graph.Database(), 10);
    // Below the root: Z:, bin, p, lib, x, y and text.
    EXPECT_EQ(counted.objects, (std::map<std::uint32_t, std::uint64_t>{
                                   {OBJ_ROOT, 1}, {OBJ_DRIVE, 1}, {OBJ_FILE, 6}, {OBJ_VFILE, 1}}));
    EXPECT_EQ(counted.links, (std::map<std::uint32_t, std::uint64_t>{{LINK_PARENT, 7},
                                                                     {LINK_NEEDS, 1},
                                                                     {LINK_SYMLINK, 1},
                                                                     {LINK_MISSING, 1},
                                                                     {LINK_FOUND_CACHE, 1}}));
    EXPECT_EQ(counted.folders, 2U);
    EXPECT_EQ(counted.symlinks, 1U);
    EXPECT_EQ(counted.elf, 2U);
    EXPECT_EQ(counted.pe, 0U);
    EXPECT_EQ(counted.bytes, 1024U);
}

TEST(Statistics, The_most_needed_come_first_and_equals_in_order_of_path) {
    TestGraph graph;
    CQVUObject *const a = graph.Program("Z:\\lib\\a");
    CQVUObject *const b = graph.Program("Z:\\lib\\b");
    CQVUObject *const c = graph.Program("Z:\\lib\\c");
    for (const char *const path : {"Z:\\p", "Z:\\q"}) {
        CQVUObject *const program = graph.Program(path);
        graph.Found(program, c);
        graph.Found(program, b);
    }
    graph.Found(graph.Program("Z:\\r"), a);
    graph.Asks(graph.Windows("Z:\\lib\\w.exe"), "b");
    std::vector<NeededFile> const most = FindStatistics(graph.Database(), 3).mostNeeded;
    ASSERT_EQ(most.size(), 3U);
    EXPECT_EQ(most[0].file, b);
    EXPECT_EQ(most[0].askers, 3U);
    EXPECT_EQ(most[1].file, c);
    EXPECT_EQ(most[1].askers, 2U);
    EXPECT_EQ(most[2].file, a);
    EXPECT_EQ(FindStatistics(graph.Database(), 1).mostNeeded.size(), 1U);
}

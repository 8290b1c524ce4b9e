#include "answer/needs.h"
#include "system_folders.h"
#include "test_graph.h"

#include <gtest/gtest.h>

using namespace qvlink;

namespace {

std::vector<Need> NeedsFrom(TestGraph &graph, CQVUObject *object) {
    return Needs(graph.Database(), FolderOf(graph.Database(), *object)).Of(*object);
}

Rule RuleFor(std::uint32_t bit) {
    TestGraph graph;
    CQVUObject *const program = graph.Program("Z:\\bin\\p");
    graph.Found(program, graph.File("Z:\\lib\\l"), bit);
    return NeedsFrom(graph, program).at(0).rule;
}

} // namespace

TEST(Needs, Each_way_of_finding_an_ELF_library_is_told_as_its_rule) {
    EXPECT_EQ(RuleFor(LINK_FOUND_RPATH), Rule::rpath);
    EXPECT_EQ(RuleFor(LINK_FOUND_RUNPATH), Rule::runpath);
    EXPECT_EQ(RuleFor(LINK_FOUND_CACHE), Rule::cache);
    EXPECT_EQ(RuleFor(LINK_FOUND_DEFAULT), Rule::defaultFolder);
    EXPECT_EQ(RuleFor(LINK_FOUND_DIRECT), Rule::byPath);
}

TEST(Needs, A_need_without_a_rule_is_merely_linked) {
    TestGraph graph;
    CQVUObject *const program = graph.Program("Z:\\bin\\p");
    program->LinkTo(graph.File("Z:\\lib\\l"), LINK_NEEDS);
    EXPECT_EQ(NeedsFrom(graph, program).at(0).rule, Rule::linked);
}

TEST(Needs, A_file_is_no_need_of_its_folder) {
    TestGraph graph;
    graph.File("C:\\a\\b");
    EXPECT_TRUE(NeedsFrom(graph, graph.Folder("C:\\a")).empty());
}

TEST(Needs, A_name_comes_to_the_file_in_the_folder_of_the_start_first) {
    TestGraph graph;
    CQVUObject *const program = graph.Windows("C:\\app\\p.exe");
    CQVUObject *const beside = graph.Windows("C:\\app\\X.dll");
    graph.Windows(CurrentSystemFolders().system + "\\x.dll");
    graph.Asks(program, "x.dll");
    Need const need = NeedsFrom(graph, program).at(0);
    EXPECT_EQ(need.found, beside);
    EXPECT_EQ(need.asked, graph.Name("x.dll"));
    EXPECT_EQ(need.rule, Rule::startFolder);
}

TEST(Needs, A_name_comes_to_the_system_directory_next) {
    TestGraph graph;
    CQVUObject *const program = graph.Windows("C:\\app\\p.exe");
    CQVUObject *const inSystem = graph.Windows(CurrentSystemFolders().system + "\\x.dll");
    graph.Windows(CurrentSystemFolders().windows + "\\SYSTEM\\x.dll");
    graph.Windows(CurrentSystemFolders().windows + "\\x.dll");
    graph.Asks(program, "x.dll");
    Need const need = NeedsFrom(graph, program).at(0);
    EXPECT_EQ(need.found, inSystem);
    EXPECT_EQ(need.rule, Rule::systemFolder);
}

TEST(Needs, A_name_comes_to_the_SYSTEM_folder_before_the_windows_directory) {
    TestGraph graph;
    CQVUObject *const program = graph.Windows("C:\\app\\p.exe");
    CQVUObject *const inWindows = graph.Windows(CurrentSystemFolders().windows + "\\x.dll");
    graph.Asks(program, "x.dll");
    EXPECT_EQ(NeedsFrom(graph, program).at(0).found, inWindows);
    CQVUObject *const inSystem = graph.Windows(CurrentSystemFolders().windows + "\\SYSTEM\\x.dll");
    EXPECT_EQ(NeedsFrom(graph, program).at(0).found, inSystem);
}

TEST(Needs, A_name_in_any_other_folder_is_missing) {
    TestGraph graph;
    CQVUObject *const program = graph.Windows("C:\\app\\p.exe");
    graph.Windows("C:\\other\\x.dll");
    graph.Asks(program, "x.dll", LINK_DELAYED);
    Need const need = NeedsFrom(graph, program).at(0);
    EXPECT_EQ(need.found, nullptr);
    EXPECT_EQ(need.rule, Rule::missing);
    EXPECT_EQ(need.linkType, LINK_DELAYED);
}

TEST(Needs, What_the_ELF_search_did_not_find_stays_missing_beside_a_file_so_named) {
    TestGraph graph;
    CQVUObject *const program = graph.Program("Z:\\bin\\p");
    graph.Program("Z:\\bin\\libx.so");
    graph.Asks(program, "libx.so", LINK_MISSING);
    EXPECT_EQ(NeedsFrom(graph, program).at(0).found, nullptr);
}

TEST(Needs, A_target_comes_once_with_the_strongest_of_its_links) {
    TestGraph graph;
    CQVUObject *const program = graph.Program("Z:\\bin\\p");
    CQVUObject *const loader = graph.Program("Z:\\lib\\ld.so");
    program->LinkTo(loader, LINK_INTERPRETER);
    graph.Found(program, loader);
    std::vector<Need> const needs = NeedsFrom(graph, program);
    ASSERT_EQ(needs.size(), 1U);
    EXPECT_EQ(needs[0].linkType, LINK_NEEDS);
    EXPECT_EQ(needs[0].rule, Rule::cache);
}

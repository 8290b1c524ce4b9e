#include "answer/walks.h"
#include "system_folders.h"
#include "test_graph.h"

#include <gtest/gtest.h>

using namespace qvlink;

namespace {

// "C:\a\x.dll <- C:\a\p.exe", or "?name <- ..." for what nothing provides.
Texts Told(CQVUDatabase &database, std::vector<Dependency> const &dependencies) {
    Texts texts;
    for (Dependency const &dependency : dependencies) {
        Need const &need = dependency.need;
        texts.push_back(
            (need.found ? PathOf(database, need.found) : "?" + PathOf(database, need.asked)) +
            " <- " + PathOf(database, dependency.requester));
    }
    return texts;
}

Texts Deps(TestGraph &graph, CQVUObject *start, bool direct = false) {
    return Told(graph.Database(), FindDependencies(graph.Database(), *start, direct));
}

Texts Chain(TestGraph &graph, CQVUObject *start, CQVUObject *goal) {
    return Told(graph.Database(), FindChain(graph.Database(), *start, *goal));
}

// p needs a and b, a needs c, c needs a: a circle.
struct Circle : TestGraph {
    CQVUObject *p = Program("Z:\\p");
    CQVUObject *a = Program("Z:\\lib\\a");
    CQVUObject *b = Program("Z:\\lib\\b");
    CQVUObject *c = Program("Z:\\lib\\c");
    Circle() {
        Found(p, b);
        Found(p, a);
        Found(a, c);
        Found(c, a);
    }
};

} // namespace

TEST(Dependencies, All_that_is_needed_comes_once_in_order_of_path) {
    Circle graph;
    EXPECT_EQ(Deps(graph, graph.p),
              (Texts{"Z:\\lib\\a <- Z:\\p", "Z:\\lib\\b <- Z:\\p", "Z:\\lib\\c <- Z:\\lib\\a"}));
}

TEST(Dependencies, Direct_ones_are_those_of_the_object_itself) {
    Circle graph;
    EXPECT_EQ(Deps(graph, graph.p, true), (Texts{"Z:\\lib\\a <- Z:\\p", "Z:\\lib\\b <- Z:\\p"}));
}

TEST(Dependencies, A_library_that_is_loaded_before_it_is_missed_is_not_missing) {
    TestGraph graph;
    CQVUObject *const p = graph.Program("Z:\\p");
    CQVUObject *const a = graph.Program("Z:\\lib\\a");
    CQVUObject *const b = graph.Program("Z:\\private\\b");
    graph.Found(p, a);
    a->LinkTo(graph.Name("b"), LINK_MISSING);
    EXPECT_EQ(Deps(graph, p), (Texts{"Z:\\lib\\a <- Z:\\p", "?b <- Z:\\lib\\a"}));
    graph.Found(p, b, LINK_FOUND_RUNPATH);
    EXPECT_EQ(Deps(graph, p), (Texts{"Z:\\lib\\a <- Z:\\p", "Z:\\private\\b <- Z:\\p"}));
    EXPECT_EQ(Deps(graph, a), Texts{"?b <- Z:\\lib\\a"});

    std::vector<TreeLine> const tree = DependencyTree(graph.Database(), *p);
    ASSERT_EQ(tree.size(), 3u);
    EXPECT_EQ(tree[1].dependency.need.found, b);
    EXPECT_EQ(tree[1].dependency.need.rule, Rule::loaded);
}

TEST(Dependencies, A_library_that_is_loaded_after_it_is_missed_stays_missing) {
    TestGraph graph;
    CQVUObject *const p = graph.Program("Z:\\p");
    CQVUObject *const a = graph.Program("Z:\\lib\\a");
    CQVUObject *const c = graph.Program("Z:\\lib\\c");
    CQVUObject *const b = graph.Program("Z:\\private\\b");
    graph.Found(p, a);
    a->LinkTo(graph.Name("b"), LINK_MISSING);
    graph.Found(a, c);
    graph.Found(c, b, LINK_FOUND_RUNPATH);
    EXPECT_EQ(Deps(graph, p), (Texts{"Z:\\lib\\a <- Z:\\p", "Z:\\lib\\c <- Z:\\lib\\a",
                                     "Z:\\private\\b <- Z:\\lib\\c", "?b <- Z:\\lib\\a"}));
}

TEST(Dependencies, In_a_circle_the_start_is_not_told) {
    Circle graph;
    EXPECT_EQ(Deps(graph, graph.a), (Texts{"Z:\\lib\\c <- Z:\\lib\\a"}));
}

TEST(Dependencies, A_library_is_told_as_found_and_followed_to_its_file) {
    TestGraph graph;
    CQVUObject *const p = graph.Program("Z:\\p");
    CQVUObject *const file = graph.Program("Z:\\lib\\libx.so.1.2");
    graph.Found(p, graph.Symlink("Z:\\lib\\libx.so.1", file));
    graph.Found(file, graph.Program("Z:\\lib\\liby.so"));
    EXPECT_EQ(Deps(graph, p),
              (Texts{"Z:\\lib\\libx.so.1 <- Z:\\p", "Z:\\lib\\liby.so <- Z:\\lib\\libx.so.1.2"}));
}

TEST(Dependencies, A_start_that_is_a_link_stands_for_its_file) {
    TestGraph graph;
    CQVUObject *const p = graph.Program("Z:\\real\\p");
    graph.Found(p, graph.Program("Z:\\lib\\x"));
    EXPECT_EQ(Deps(graph, graph.Symlink("Z:\\bin\\p", p)), (Texts{"Z:\\lib\\x <- Z:\\real\\p"}));
}

TEST(Dependencies, Names_of_libraries_are_resolved_from_the_folder_of_the_start) {
    TestGraph graph;
    CQVUObject *const p = graph.Windows("C:\\app\\p.exe");
    CQVUObject *const a = graph.Windows(CurrentSystemFolders().system + "\\a.dll");
    graph.Windows("C:\\app\\b.dll");
    graph.Windows(CurrentSystemFolders().system + "\\b.dll");
    graph.Asks(p, "a.dll");
    graph.Asks(a, "b.dll");
    std::string const inSystem = PathOf(graph.Database(), a);
    EXPECT_EQ(Deps(graph, p),
              (Texts{"C:\\app\\b.dll <- " + inSystem, inSystem + " <- C:\\app\\p.exe"}));
    std::string const folder = inSystem.substr(0, inSystem.rfind('\\'));
    EXPECT_EQ(Deps(graph, a), (Texts{folder + "\\b.dll <- " + inSystem}));
}

TEST(Dependencies, A_program_straight_below_the_drive_sees_its_neighbours) {
    TestGraph graph;
    CQVUObject *const p = graph.Windows("C:\\p.exe");
    graph.Windows("C:\\a.dll");
    graph.Asks(p, "a.dll");
    EXPECT_EQ(Deps(graph, p), (Texts{"C:\\a.dll <- C:\\p.exe"}));
}

TEST(Dependencies, Names_that_nothing_provides_come_last) {
    TestGraph graph;
    CQVUObject *const p = graph.Windows("C:\\p.exe");
    graph.Asks(p, "b.dll");
    graph.Asks(p, "a.dll");
    graph.Asks(p, "z.dll");
    graph.Windows("C:\\z.dll");
    EXPECT_EQ(Deps(graph, p),
              (Texts{"C:\\z.dll <- C:\\p.exe", "?a.dll <- C:\\p.exe", "?b.dll <- C:\\p.exe"}));
}

TEST(Dependencies, A_walk_ends_at_a_pinned_file_that_a_name_came_to) {
    TestGraph graph;
    CQVUObject *const p = graph.Windows("C:\\p.exe");
    CQVUObject *const pinned = graph.Database().AddObject("a.dll", OBJ_PINNED, 0, 0, nullptr, 1);
    graph.Folder("C:")->LinkTo(pinned, LINK_PARENT);
    pinned->LinkTo(graph.Windows("C:\\b.dll"), LINK_NEEDS);
    graph.Asks(p, "a.dll");
    EXPECT_EQ(Deps(graph, p), (Texts{"C:\\a.dll <- C:\\p.exe"}));
    p->LinkTo(pinned, LINK_NEEDS);
    EXPECT_EQ(Deps(graph, p), (Texts{"C:\\a.dll <- C:\\p.exe", "C:\\b.dll <- C:\\a.dll"}));
}

TEST(Dependencies, Of_a_folder_are_those_of_its_programs_that_lie_outside) {
    TestGraph graph;
    CQVUObject *const p = graph.Program("Z:\\opt\\app\\bin\\p");
    CQVUObject *const own = graph.Program("Z:\\opt\\app\\lib\\own");
    graph.Found(p, own);
    graph.Found(own, graph.Program("Z:\\lib\\x"));
    CQVUObject *const w = graph.Windows("Z:\\opt\\app\\win\\w.exe");
    graph.Windows("Z:\\opt\\app\\win\\y.dll");
    graph.Asks(w, "y.dll");
    graph.Asks(w, "z.dll");
    std::vector<Dependency> const found =
        FindFolderDependencies(graph.Database(), *graph.Folder("Z:\\opt"), false);
    EXPECT_EQ(Told(graph.Database(), found), (Texts{"Z:\\lib\\x <- Z:\\opt\\app\\lib\\own",
                                                    "?z.dll <- Z:\\opt\\app\\win\\w.exe"}));
}

TEST(Dependencies, A_chain_of_many_libraries_is_followed_to_its_end) {
    TestGraph graph;
    CQVUObject *const start = graph.Program("Z:\\p");
    CQVUObject *last = start;
    for (int i = 0; i < 20000; ++i) {
        CQVUObject *const next = graph.Database().AddObject("l", OBJ_FILE, 0, 0, nullptr, 1);
        last->LinkTo(next, LINK_NEEDS);
        last = next;
    }
    EXPECT_EQ(FindDependencies(graph.Database(), *start, false).size(), 20000U);
    EXPECT_EQ(DependencyTree(graph.Database(), *start).back().depth, 19999U);
    EXPECT_EQ(FindChain(graph.Database(), *start, *last).size(), 20000U);
}

TEST(DependencyTree, Needs_stand_below_who_needs_them_and_are_written_once) {
    Circle graph;
    graph.Found(graph.b, graph.c);
    Texts told;
    for (TreeLine const &line : DependencyTree(graph.Database(), *graph.p)) {
        told.push_back(std::string(line.depth, '.') +
                       PathOf(graph.Database(), line.dependency.need.found) +
                       (line.isRepeated ? " again" : ""));
    }
    EXPECT_EQ(told, (Texts{"Z:\\lib\\a", ".Z:\\lib\\c", "..Z:\\lib\\a again", "Z:\\lib\\b",
                           ".Z:\\lib\\c again"}));
}

TEST(Chain, The_shortest_of_several_is_told) {
    Circle graph;
    CQVUObject *const d = graph.Program("Z:\\lib\\d");
    graph.Found(graph.c, d);
    graph.Found(graph.b, d);
    EXPECT_EQ(Chain(graph, graph.p, d), (Texts{"Z:\\lib\\b <- Z:\\p", "Z:\\lib\\d <- Z:\\lib\\b"}));
}

TEST(Chain, Symbolic_links_are_steps_of_it) {
    TestGraph graph;
    CQVUObject *const p = graph.Program("Z:\\p");
    CQVUObject *const file = graph.Program("Z:\\x.1.2");
    graph.Found(p, graph.Symlink("Z:\\x.1", file));
    EXPECT_EQ(Chain(graph, p, file), (Texts{"Z:\\x.1 <- Z:\\p", "Z:\\x.1.2 <- Z:\\x.1"}));
}

TEST(Chain, There_is_none_against_the_direction_of_needs) {
    Circle graph;
    EXPECT_EQ(Chain(graph, graph.a, graph.p), Texts{});
    EXPECT_EQ(Chain(graph, graph.b, graph.a), Texts{});
    EXPECT_EQ(Chain(graph, graph.p, graph.p), Texts{});
}

TEST(Chain, From_an_object_to_itself_it_leads_round_a_circle) {
    Circle graph;
    EXPECT_EQ(Chain(graph, graph.a, graph.a),
              (Texts{"Z:\\lib\\c <- Z:\\lib\\a", "Z:\\lib\\a <- Z:\\lib\\c"}));
}

TEST(Chain, It_leads_to_a_name_that_somebody_asks_for) {
    TestGraph graph;
    CQVUObject *const p = graph.Windows("C:\\p.exe");
    CQVUObject *const a = graph.Windows("C:\\a.dll");
    graph.Asks(p, "a.dll");
    graph.Asks(a, "gone.dll");
    EXPECT_EQ(Chain(graph, p, graph.Name("gone.dll")),
              (Texts{"C:\\a.dll <- C:\\p.exe", "?gone.dll <- C:\\a.dll"}));
}

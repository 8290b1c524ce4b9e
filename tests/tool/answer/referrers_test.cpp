#include "answer/referrers.h"
#include "answer/walks.h"
#include "system_folders.h"
#include "test_graph.h"

#include <gtest/gtest.h>

#include <random>
#include <set>

using namespace qvlink;

namespace {

Texts Refs(TestGraph &graph, std::vector<CQVUObject *> const &targets, bool direct = false) {
    Texts texts;
    for (Referrer const &referrer : FindReferrers(graph.Database(), targets, direct)) {
        texts.push_back(PathOf(graph.Database(), referrer.object));
    }
    return texts;
}

} // namespace

TEST(Referrers, They_come_through_others_unless_direct_ones_are_asked_for) {
    TestGraph graph;
    CQVUObject *const p = graph.Program("Z:\\p");
    CQVUObject *const a = graph.Program("Z:\\a");
    CQVUObject *const x = graph.Program("Z:\\x");
    graph.Program("Z:\\unrelated");
    graph.Found(p, a);
    graph.Found(a, x);
    EXPECT_EQ(Refs(graph, {x}), (Texts{"Z:\\a", "Z:\\p"}));
    EXPECT_EQ(Refs(graph, {x}, true), (Texts{"Z:\\a"}));
    EXPECT_EQ(Refs(graph, {p}), Texts{});
}

TEST(Referrers, A_file_is_reached_through_its_links_but_they_are_not_told) {
    TestGraph graph;
    CQVUObject *const p = graph.Program("Z:\\p");
    CQVUObject *const file = graph.Program("Z:\\x.1.2");
    CQVUObject *const link = graph.Symlink("Z:\\x.1", file);
    CQVUObject *const other = graph.Symlink("Z:\\x", link);
    CQVUObject *const q = graph.Program("Z:\\q");
    graph.Symlink("Z:\\alias-of-p", p);
    graph.Found(p, link);
    graph.Found(q, other);
    EXPECT_EQ(Refs(graph, {file}), (Texts{"Z:\\p", "Z:\\q"}));
    EXPECT_EQ(Refs(graph, {file}, true), (Texts{"Z:\\p", "Z:\\q"}));
    EXPECT_EQ(Refs(graph, {other}), (Texts{"Z:\\q"}));
}

TEST(Referrers, The_need_that_leads_to_the_target_is_told_with_its_rule) {
    TestGraph graph;
    CQVUObject *const p = graph.Program("Z:\\p");
    CQVUObject *const a = graph.Program("Z:\\a");
    graph.Found(p, a, LINK_FOUND_RUNPATH);
    std::vector<Referrer> const found = FindReferrers(graph.Database(), {a}, true);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].need.found, a);
    EXPECT_EQ(found[0].need.rule, Rule::runpath);
}

TEST(Referrers, A_circle_ends_and_leaves_the_target_out) {
    TestGraph graph;
    CQVUObject *const a = graph.Program("Z:\\a");
    CQVUObject *const b = graph.Program("Z:\\b");
    graph.Found(a, b);
    graph.Found(b, a);
    EXPECT_EQ(Refs(graph, {a}), (Texts{"Z:\\b"}));
}

TEST(Referrers, By_bare_name_only_those_come_that_would_get_this_file) {
    TestGraph graph;
    std::string const system = CurrentSystemFolders().system;
    CQVUObject *const inSystem = graph.Windows(system + "\\x.dll");
    CQVUObject *const own = graph.Windows("C:\\app\\x.dll");
    graph.Asks(graph.Windows("C:\\app\\p.exe"), "x.dll");
    graph.Asks(graph.Windows("C:\\other\\q.exe"), "x.dll");
    graph.Asks(graph.Windows("C:\\other\\r.exe"), "y.dll");
    EXPECT_EQ(Refs(graph, {inSystem}), (Texts{"C:\\other\\q.exe"}));
    EXPECT_EQ(Refs(graph, {inSystem}, true), (Texts{"C:\\other\\q.exe"}));
    EXPECT_EQ(Refs(graph, {own}), (Texts{"C:\\app\\p.exe"}));
    EXPECT_EQ(Refs(graph, {graph.Name("x.dll")}), (Texts{"C:\\app\\p.exe", "C:\\other\\q.exe"}));
}

TEST(Referrers, A_name_asked_for_by_a_library_is_seen_from_the_programs_folder) {
    // a.dll of the system asks for b.dll; p.exe has one of its own, q.exe hasn't.
    TestGraph graph;
    std::string const system = CurrentSystemFolders().system;
    CQVUObject *const a = graph.Windows(system + "\\a.dll");
    CQVUObject *const b = graph.Windows(system + "\\b.dll");
    CQVUObject *const own = graph.Windows("C:\\app\\b.dll");
    graph.Asks(a, "b.dll");
    graph.Asks(graph.Windows("C:\\app\\p.exe"), "a.dll");
    graph.Asks(graph.Windows("C:\\other\\q.exe"), "a.dll");
    std::string const pathOfA = PathOf(graph.Database(), a);
    std::set<std::string> const expected{"C:\\other\\q.exe", pathOfA};
    Texts const found = Refs(graph, {b});
    EXPECT_EQ(std::set<std::string>(found.begin(), found.end()), expected);
    EXPECT_EQ(Refs(graph, {own}), (Texts{"C:\\app\\p.exe"}));
}

TEST(Referrers, Those_of_a_missing_ELF_library_ask_for_its_name) {
    TestGraph graph;
    graph.Asks(graph.Program("Z:\\p"), "libgone.so", LINK_MISSING);
    EXPECT_EQ(Refs(graph, {graph.Name("libgone.so")}), (Texts{"Z:\\p"}));
}

// Two ways to the same answer: who needs X are those whose needs hold X.
TEST(Referrers, They_are_the_objects_whose_dependencies_hold_the_target) {
    std::mt19937 random(20260117);
    auto const below = [&](std::size_t n) { return random() % n; };
    for (int round = 0; round < 30; ++round) {
        TestGraph graph;
        std::string const system = CurrentSystemFolders().system;
        std::vector<CQVUObject *> files;
        for (std::string const &folder : {std::string("C:\\a"), std::string("C:\\b"), system}) {
            for (char const name : {'k', 'l', 'm', 'n'}) {
                if (below(4) != 0) {
                    files.push_back(graph.Windows(folder + "\\" + name + ".dll"));
                }
            }
        }
        std::vector<CQVUObject *> links;
        for (int i = 0; i < 3 && !files.empty(); ++i) {
            links.push_back(
                graph.Symlink("C:\\links\\" + std::to_string(i), files[below(files.size())]));
        }
        for (CQVUObject *const file : files) {
            for (int i = 0; i < 2; ++i) {
                if (below(2) == 0) {
                    graph.Asks(file, std::string(1, "klmn"[below(4)]) + ".dll");
                } else {
                    CQVUObject *const target =
                        below(3) == 0 ? links[below(links.size())] : files[below(files.size())];
                    graph.Found(file, target);
                }
            }
        }
        for (CQVUObject *const target : files) {
            std::set<std::string> expected;
            for (CQVUObject *const file : files) {
                for (Dependency const &dependency :
                     FindDependencies(graph.Database(), *file, false)) {
                    CQVUObject *const found = dependency.need.found;
                    if (file != target && found && FollowLinks(graph.Database(), found) == target) {
                        expected.insert(PathOf(graph.Database(), file));
                    }
                }
            }
            Texts const told = Refs(graph, {target});
            EXPECT_EQ(std::set<std::string>(told.begin(), told.end()), expected);
        }
    }
}

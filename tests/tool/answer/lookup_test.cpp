#include "answer/graph.h"
#include "test_graph.h"

#include <gtest/gtest.h>

using namespace qvlink;

namespace {

CQVUObject *At(TestGraph &graph, std::string const &path) {
    return FindAt(graph.Database(), *ParseDatabasePath(path));
}

} // namespace

TEST(Lookup, An_object_is_found_at_its_place) {
    TestGraph graph;
    CQVUObject *const file = graph.File("C:\\a\\b\\c.txt");
    EXPECT_EQ(At(graph, "C:\\a\\b\\c.txt"), file);
    EXPECT_EQ(PathOf(graph.Database(), file), "C:\\a\\b\\c.txt");
    EXPECT_EQ(At(graph, "C:"), graph.Folder("C:"));
    EXPECT_EQ(At(graph, "C:\\a\\c.txt"), nullptr);
    EXPECT_EQ(At(graph, "D:"), nullptr);
}

TEST(Lookup, Case_decides_only_between_names_that_differ_in_nothing_else) {
    TestGraph graph;
    CQVUObject *const parent = graph.Folder("C:\\a");
    std::vector<CQVUObject *> made;
    for (const char *const name : {"Readme", "README", "readme"}) {
        CQVUObject *const file = graph.Database().AddObject(name, OBJ_FILE, 0, 0, nullptr, 1);
        parent->LinkTo(file, LINK_PARENT);
        made.push_back(file);
    }
    EXPECT_EQ(At(graph, "C:\\a\\Readme"), made[0]);
    EXPECT_EQ(At(graph, "C:\\a\\README"), made[1]);
    EXPECT_EQ(At(graph, "C:\\a\\readme"), made[2]);
    EXPECT_NE(At(graph, "C:\\a\\ReadMe"), nullptr);
    EXPECT_EQ(At(graph, "C:\\A\\readme"), made[2]);
}

TEST(Lookup, Case_decides_between_folders_too) {
    TestGraph graph;
    CQVUObject *const drive = graph.Folder("C:");
    std::vector<CQVUObject *> files;
    for (const char *const name : {"Lib", "lib"}) {
        CQVUObject *const folder = graph.Database().AddObject(name, OBJ_FILE, 0, 0, nullptr, 1);
        CQVUObject *const file = graph.Database().AddObject("x", OBJ_FILE, 0, 0, nullptr, 1);
        drive->LinkTo(folder, LINK_PARENT);
        folder->LinkTo(file, LINK_PARENT);
        files.push_back(file);
    }
    EXPECT_EQ(At(graph, "C:\\Lib\\x"), files[0]);
    EXPECT_EQ(At(graph, "C:\\lib\\x"), files[1]);
}

TEST(Lookup, A_name_with_a_backslash_is_found_and_told_whole) {
    TestGraph graph;
    CQVUObject *const file = graph.Database().AddObject("a\\x2db", OBJ_FILE, 0, 0, nullptr, 1);
    graph.Folder("Z:\\etc")->LinkTo(file, LINK_PARENT);
    EXPECT_EQ(FindAt(graph.Database(), Place{"Z:", {"etc", "a\\x2db"}}), file);
    EXPECT_EQ(PlaceOf(graph.Database(), *file)->names, (Texts{"etc", "a\\x2db"}));
}

TEST(Lookup, A_symbolic_link_among_the_folders_is_followed) {
    TestGraph graph;
    CQVUObject *const file = graph.File("Z:\\usr\\lib\\x.so");
    CQVUObject *const link = graph.Symlink("Z:\\lib", graph.Folder("Z:\\usr\\lib"));
    EXPECT_EQ(At(graph, "Z:\\lib\\x.so"), file);
    EXPECT_EQ(At(graph, "Z:\\lib"), link);
}

TEST(Lookup, Following_links_ends_at_the_file_and_refuses_circles) {
    TestGraph graph;
    CQVUObject *const file = graph.File("Z:\\a");
    CQVUObject *const first = graph.Symlink("Z:\\b", file);
    CQVUObject *const second = graph.Symlink("Z:\\c", first);
    CQVUObject *const round = graph.Symlink("Z:\\d", nullptr);
    round->LinkTo(graph.Symlink("Z:\\e", round), LINK_SYMLINK);
    EXPECT_EQ(FollowLinks(graph.Database(), second), file);
    EXPECT_EQ(FollowLinks(graph.Database(), file), file);
    EXPECT_EQ(FollowLinks(graph.Database(), round), nullptr);
}

TEST(Lookup, Objects_without_a_way_to_a_drive_have_no_place) {
    TestGraph graph;
    CQVUObject *const lost = graph.Database().AddObject("lost", OBJ_FILE, 0, 0, nullptr, 1);
    CQVUObject *const a = graph.Database().AddObject("a", OBJ_FILE, 0, 0, nullptr, 1);
    CQVUObject *const b = graph.Database().AddObject("b", OBJ_FILE, 0, 0, nullptr, 1);
    a->LinkTo(b, LINK_PARENT);
    b->LinkTo(a, LINK_PARENT);
    for (CQVUObject *const object : {lost, a, b, graph.Name("x.dll")}) {
        EXPECT_EQ(PlaceOf(graph.Database(), *object), std::nullopt);
        EXPECT_EQ(FolderOf(graph.Database(), *object), "");
    }
    EXPECT_EQ(PlaceOf(graph.Database(), *graph.Database().GetRootObject()), std::nullopt);
}

TEST(Lookup, The_folder_of_a_file_below_the_drive_is_the_drive) {
    TestGraph graph;
    EXPECT_EQ(FolderOf(graph.Database(), *graph.File("C:\\x.exe")), "C:");
    EXPECT_EQ(FolderOf(graph.Database(), *graph.File("C:\\a\\x.exe")), "C:\\a");
}

TEST(Lookup, Links_are_told_in_list_order_and_by_type) {
    TestGraph graph;
    CQVUObject *const a = graph.File("C:\\a");
    CQVUObject *const b = graph.File("C:\\b");
    CQVUObject *const c = graph.File("C:\\c");
    graph.Found(a, c);
    graph.Found(a, b, LINK_FOUND_RUNPATH);
    std::vector<Edge> const needs = LinksFrom(graph.Database(), *a, LINK_NEEDS);
    ASSERT_EQ(needs.size(), 2U);
    EXPECT_EQ(needs[0].other, c);
    EXPECT_EQ(needs[1].other, b);
    EXPECT_EQ(LinksFrom(graph.Database(), *a, AnyLink).size(), 4U);
    EXPECT_EQ(LinksTo(graph.Database(), *b, LINK_FOUND_RUNPATH).size(), 1U);
    EXPECT_EQ(LinksTo(graph.Database(), *b, LINK_FOUND_CACHE).size(), 0U);
}

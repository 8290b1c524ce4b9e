// Symbolic links and special files, where the system lets a test make them.
#include "scan_fixture.h"

#include "model.h"
#include "system_acts.h"

using namespace qvlink;

namespace {

constexpr const char noLinks[] = "this system doesn't let a test make symbolic links";

}

TEST_F(ScanTest, A_symbolic_link_is_an_object_with_a_link_to_what_it_names) {
    Write("sub/file", "1");
    if (!Link("link", "sub/file")) {
        GTEST_SKIP() << noLinks;
    }
    ASSERT_TRUE(Link("to-folder", "sub"));
    ASSERT_TRUE(Link("sub/up", "../link"));
    ASSERT_TRUE(Link("absolute", Path("sub/file").string()));
    ScanSummary const summary = Scan();
    EXPECT_EQ(summary.symlinks, 4u);
    EXPECT_EQ(summary.files, 1u);
    GraphFile const graph = Graph();
    EXPECT_EQ(graph.links,
              (std::set<std::string>{"link -symlink-> sub/file", "to-folder -symlink-> sub",
                                     "sub/up -symlink-> link", "absolute -symlink-> sub/file"}));
    EXPECT_TRUE(image::WordAt(graph.objects.at("link").data, 16) & ATTRIBUTE_REPARSE_POINT);
}

TEST_F(ScanTest, Symbolic_links_are_not_followed_into_circles) {
    MakeFolder("a/b");
    if (!Link("a/b/top", "../..")) {
        GTEST_SKIP() << noLinks;
    }
    ASSERT_TRUE(Link("self", "self"));
    ASSERT_TRUE(Link("ping", "pong"));
    ASSERT_TRUE(Link("pong", "ping"));
    ScanSummary const summary = Scan();
    EXPECT_EQ(summary.folders, 3u);
    EXPECT_EQ(Graph().links,
              (std::set<std::string>{"a/b/top -symlink-> ", "self -symlink-> self",
                                     "ping -symlink-> pong", "pong -symlink-> ping"}));
}

TEST_F(ScanTest, A_link_to_what_the_graph_does_not_have_stands_alone_until_it_does) {
    if (!Link("link", "later")) {
        GTEST_SKIP() << noLinks;
    }
    ASSERT_TRUE(Link("outside", "/"));
    Scan();
    EXPECT_TRUE(Graph().Has("link"));
    EXPECT_TRUE(Graph().From("link").empty());
    Write("later", "1");
    EXPECT_EQ(Scan().added, 1u);
    EXPECT_TRUE(Graph().Linked("link -symlink-> later"));
    Remove("later");
    Scan();
    EXPECT_TRUE(Graph().From("link").empty());
}

TEST_F(ScanTest, A_link_that_names_something_else_now_is_linked_anew) {
    Write("one", "1");
    Write("two", "1");
    if (!Link("link", "one")) {
        GTEST_SKIP() << noLinks;
    }
    Scan();
    Remove("link");
    ASSERT_TRUE(Link("link", "two"));
    Scan();
    EXPECT_EQ(Graph().links, std::set<std::string>{"link -symlink-> two"});
}

TEST_F(ScanTest, A_link_given_as_a_path_is_scanned_with_what_it_leads_to) {
    Write("real/file", "1");
    if (!Link("link", "real")) {
        GTEST_SKIP() << noLinks;
    }
    Scan({"link"});
    EXPECT_TRUE(Graph().Has("real/file"));
    EXPECT_TRUE(Graph().Linked("link -symlink-> real"));
}

TEST_F(ScanTest, Special_files_are_objects_that_are_never_opened) {
    if (!MakePipe(Path("pipe"))) {
        GTEST_SKIP() << "this system has no named pipes among its files";
    }
    ScanSummary const summary = Scan();
    EXPECT_EQ(summary.specials, 1u);
    EXPECT_EQ(summary.read, 0u);
    EXPECT_TRUE(image::WordAt(Graph().objects.at("pipe").data, 16) & ATTRIBUTE_DEVICE);
}

TEST_F(ScanTest, A_name_with_a_backslash_is_told_and_left_out) {
    try {
        Write("back\\slash", "1");
    } catch (std::filesystem::filesystem_error const &) {
    }
    if (!std::filesystem::is_regular_file(Path("") / "back\\slash") ||
        std::filesystem::is_directory(Path("back"))) {
        GTEST_SKIP() << "a backslash separates names on this system";
    }
    Write("plain", "1");
    EXPECT_EQ(Scan().unrepresentable, 1u);
    EXPECT_TRUE(Graph().Has("plain"));
    for (auto const &[key, object] : Graph().objects) {
        EXPECT_EQ(object.name.find("back"), std::string::npos);
    }
}

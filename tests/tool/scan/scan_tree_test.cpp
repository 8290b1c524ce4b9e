// The file tree in the graph, on first and later scans.
#include "scan_fixture.h"

#include "model.h"

using namespace qvlink;

namespace {

std::uint32_t WordOf(image::Object const &object, unsigned index) {
    return image::WordAt(object.data, 4 * std::size_t{index});
}

} // namespace

TEST_F(ScanTest, Every_folder_and_file_becomes_an_object_with_its_data) {
    Write("a.txt", "hello");
    Write("sub/b.bin", std::string(70000, 'x'));
    MakeFolder("empty");
    ScanSummary const summary = Scan();
    EXPECT_EQ(summary.folders, 3u);
    EXPECT_EQ(summary.files, 2u);
    EXPECT_EQ(summary.unreadable + summary.malformed + summary.unrepresentable, 0u);
    EXPECT_TRUE(summary.saved);

    GraphFile const graph = Graph();
    ASSERT_TRUE(graph.Has("") && graph.Has("empty") && graph.Has("sub"));
    ASSERT_TRUE(graph.Has("a.txt") && graph.Has("sub/b.bin"));
    ASSERT_EQ(graph.objects.at("sub/b.bin").data.size(), sizeof(FileData));
    EXPECT_EQ(WordOf(graph.objects.at("sub/b.bin"), 0), 70000u);
    EXPECT_EQ(WordOf(graph.objects.at("sub/b.bin"), 1), 0u);
    EXPECT_FALSE(WordOf(graph.objects.at("a.txt"), 4) & ATTRIBUTE_DIRECTORY);
    EXPECT_TRUE(WordOf(graph.objects.at("sub"), 4) & ATTRIBUTE_DIRECTORY);
    EXPECT_EQ(summary.objects, graph.objects.size());
}

TEST_F(ScanTest, The_time_of_a_file_is_its_last_write_in_100_ns_since_1601) {
    Write("a", "x");
    // 2001-09-09 01:46:40 UTC is 1,000,000,000 s after 1970.
    auto const now = std::filesystem::file_time_type::clock::now();
    auto const wall = std::chrono::system_clock::now().time_since_epoch();
    std::filesystem::last_write_time(Path("a"), now - wall + std::chrono::seconds(1000000000));
    Scan();
    image::Object const object = Graph().objects.at("a");
    std::uint64_t const time = std::uint64_t{WordOf(object, 3)} << 32 | WordOf(object, 2);
    std::uint64_t const expected = (11644473600u + 1000000000u) * std::uint64_t{10000000};
    EXPECT_NEAR(static_cast<double>(time), static_cast<double>(expected), 1e7);
}

TEST_F(ScanTest, A_second_scan_of_the_same_tree_reads_nothing_and_writes_nothing) {
    Write("a.txt", "hello");
    Write("sub/tool.exe", programs::Write(programs::Pe{}));
    Scan();
    Bytes const before = File();
    ScanSummary const second = Scan();
    EXPECT_EQ(second.read, 0u);
    EXPECT_EQ(second.added + second.changed + second.removed, 0u);
    EXPECT_EQ(second.unchanged, 4u);
    EXPECT_EQ(second.pe, 1u);
    EXPECT_FALSE(second.saved);
    EXPECT_EQ(File(), before);
}

TEST_F(ScanTest, Two_fresh_scans_give_the_same_bytes_but_for_the_stamp) {
    for (int i = 0; i < 40; ++i) {
        programs::Pe pe;
        pe.imports = {"z" + std::to_string(i % 7) + ".dll", "a.dll"};
        Write("d" + std::to_string(i % 5) + "/f" + std::to_string(i), programs::Write(pe));
    }
    ScanInto("one");
    ScanInto("two");
    EXPECT_FALSE(File("one").empty());
    EXPECT_EQ(WithoutStamp(File("one")), WithoutStamp(File("two")));
}

TEST_F(ScanTest, Only_files_of_another_size_or_time_are_read_again) {
    Write("same", "12345");
    Write("grown", "12345");
    Write("touched", "12345");
    SetTime("grown", 1);
    Scan();
    Write("grown", "123456");
    SetTime("grown", 1);
    SetTime("touched", 2);
    ScanSummary const second = Scan();
    EXPECT_EQ(second.read, 2u);
    EXPECT_EQ(second.changed, 2u);
    EXPECT_TRUE(second.saved);
    EXPECT_EQ(WordOf(Graph().objects.at("grown"), 0), 6u);
}

TEST_F(ScanTest, Vanished_files_and_folders_leave_the_graph) {
    Write("keep", "1");
    Write("gone/deep/file", "1");
    Write("also-gone", "1");
    Scan();
    Remove("gone");
    Remove("also-gone");
    ScanSummary const second = Scan();
    EXPECT_EQ(second.removed, 4u);
    GraphFile const graph = Graph();
    EXPECT_TRUE(graph.Has("keep"));
    EXPECT_FALSE(graph.Has("gone") || graph.Has("gone/deep") || graph.Has("gone/deep/file") ||
                 graph.Has("also-gone"));
}

TEST_F(ScanTest, A_renamed_file_is_found_under_its_new_name_only) {
    Write("old", "1");
    Scan();
    std::filesystem::rename(Path("old"), Path("new"));
    Scan();
    EXPECT_TRUE(Graph().Has("new"));
    EXPECT_FALSE(Graph().Has("old"));
}

TEST_F(ScanTest, A_file_that_became_a_folder_and_the_other_way_round_are_told_anew) {
    Write("a", "1");
    Write("b/inner", "1");
    Scan();
    Remove("a");
    Remove("b");
    Write("a/inner", "1");
    Write("b", "1");
    Scan();
    GraphFile const graph = Graph();
    EXPECT_TRUE(graph.Has("a/inner"));
    EXPECT_FALSE(graph.Has("b/inner"));
    EXPECT_TRUE(WordOf(graph.objects.at("a"), 4) & ATTRIBUTE_DIRECTORY);
    EXPECT_FALSE(WordOf(graph.objects.at("b"), 4) & ATTRIBUTE_DIRECTORY);
}

TEST_F(ScanTest, A_scan_of_one_folder_leaves_what_lies_elsewhere) {
    Write("one/file", "1");
    Write("two/file", "1");
    Scan();
    Remove("two/file");
    Write("one/more", "1");
    Scan({"one"});
    EXPECT_TRUE(Graph().Has("one/more"));
    EXPECT_TRUE(Graph().Has("two/file"));
}

TEST_F(ScanTest, A_path_that_is_no_more_is_taken_out_of_the_graph) {
    Write("one/file", "1");
    Write("two", "1");
    Scan();
    Remove("one");
    EXPECT_EQ(Scan({"one"}).removed, 2u);
    EXPECT_FALSE(Graph().Has("one"));
    EXPECT_TRUE(Graph().Has("two"));
    EXPECT_NE(FailureOf([&] { Scan({"one"}); }), "");
}

TEST_F(ScanTest, A_single_file_can_be_scanned) {
    Write("sub/file", "12");
    Write("sub/other", "12");
    Scan({"sub/file"});
    GraphFile const graph = Graph();
    EXPECT_TRUE(graph.Has("sub/file"));
    EXPECT_FALSE(graph.Has("sub/other"));
    EXPECT_EQ(WordOf(graph.objects.at("sub/file"), 0), 2u);
}

TEST_F(ScanTest, Paths_that_hold_each_other_are_scanned_once) {
    Write("sub/file", "12");
    ScanSummary const summary = Scan({"sub", "sub/file", "", "sub"});
    EXPECT_EQ(summary.files, 1u);
    EXPECT_EQ(summary.folders, 2u);
}

TEST_F(ScanTest, Names_and_paths_up_to_the_limit_are_kept_and_longer_ones_told) {
    std::string const longest(250, 'n');
    Write(longest, "1");
    ScanSummary const first = Scan();
    EXPECT_EQ(first.unrepresentable, 0u);
    EXPECT_TRUE(Graph().Has(longest));

    Write(std::string(251, 'm'), "1");
    std::string deep;
    for (int i = 0; i < 5; ++i) {
        deep += std::string(200, 'd') + '/';
    }
    Write(deep + "file", "1");
    ScanSummary const second = Scan();
    EXPECT_EQ(second.unrepresentable, 2u);
    EXPECT_EQ(m_observer.problems.size(), 2u);
    GraphFile const graph = Graph();
    for (auto const &[key, object] : graph.objects) {
        EXPECT_LE(object.name.size(), 250u);
    }
}

TEST_F(ScanTest, Folders_as_deep_as_paths_can_tell_are_kept_and_deeper_ones_told) {
    std::string deep;
    for (int i = 0; i < 300; ++i) {
        deep += "d/";
    }
    MakeFolder(deep);
    ScanSummary const summary = Scan();
    EXPECT_EQ(summary.unrepresentable, 1u);
    EXPECT_LE(summary.folders, 260u);
    EXPECT_GE(summary.folders, 240u);
}

TEST_F(ScanTest, The_databases_own_files_are_left_out_of_its_graph) {
    Write("file", "1");
    ScanOptions options;
    options.paths = {Path("").string()};
    std::string const inside = Path("db").string();
    ScanSummary const first = qvlink::ScanInto(inside, options, m_observer);
    EXPECT_TRUE(first.saved);
    EXPECT_FALSE(qvlink::ScanInto(inside, options, m_observer).saved);
}

TEST_F(ScanTest, Progress_tells_each_folder_once) {
    Write("a/b/file", "1");
    MakeFolder("c");
    Scan();
    EXPECT_EQ(m_observer.folders.size(), 4u);
}

// What ELF files need, in the graph: found by the loader's rules, and found again on later
// scans without reading what needs it.
#include "made_up_registry.h"
#include "scan_fixture.h"

#include "answer/place.h"
#include "platform/host.h"

#include "model.h"

using namespace qvlink;

namespace {

std::string Needing(std::vector<std::string> needed, std::string runpath = "$ORIGIN/lib") {
    programs::Elf elf;
    elf.needed = std::move(needed);
    elf.runpath = std::move(runpath);
    return programs::Write(elf);
}

std::string Library() { return programs::Write(programs::Elf{}); }

} // namespace

TEST_F(ScanTest, A_needed_library_is_linked_by_the_name_the_loader_finds) {
    Write("app", Needing({"libone.so.1"}));
    Write("lib/libone.so.1.2.3", Library());
    ASSERT_TRUE(Link("lib/libone.so.1", "libone.so.1.2.3"));
    ScanSummary const summary = Scan();
    EXPECT_EQ(summary.elf, 2u);
    EXPECT_EQ(summary.needs, 1u);
    EXPECT_EQ(summary.missing, 0u);
    EXPECT_EQ(Graph().links,
              (std::set<std::string>{"app -needs-> lib/libone.so.1",
                                     "app -found-runpath-> lib/libone.so.1",
                                     "app -runpath-> runpath:$ORIGIN/lib",
                                     "lib/libone.so.1 -symlink-> lib/libone.so.1.2.3"}));
}

TEST_F(ScanTest, A_library_that_is_not_found_is_a_missing_name_until_it_comes) {
    Write("app", Needing({"libqvlink-test.so"}));
    EXPECT_EQ(Scan().missing, 1u);
    EXPECT_TRUE(Graph().Linked("app -missing-> name:libqvlink-test.so"));

    Write("lib/libqvlink-test.so", Library());
    ScanSummary const second = Scan();
    EXPECT_EQ(second.read, 1u);
    EXPECT_EQ(second.missing, 0u);
    EXPECT_TRUE(Graph().Linked("app -needs-> lib/libqvlink-test.so"));
    EXPECT_FALSE(Graph().Has("name:libqvlink-test.so"));

    Remove("lib");
    EXPECT_EQ(Scan().read, 0u);
    EXPECT_TRUE(Graph().Linked("app -missing-> name:libqvlink-test.so"));
}

TEST_F(ScanTest, A_library_that_appears_in_an_earlier_folder_takes_over) {
    Write("app", Needing({"libqvlink-test.so"}, "$ORIGIN/first:$ORIGIN/second"));
    Write("second/libqvlink-test.so", Library());
    Scan();
    EXPECT_TRUE(Graph().Linked("app -needs-> second/libqvlink-test.so"));
    Write("first/libqvlink-test.so", Library());
    EXPECT_EQ(Scan().read, 1u);
    EXPECT_TRUE(Graph().Linked("app -needs-> first/libqvlink-test.so"));
    EXPECT_FALSE(Graph().Linked("app -needs-> second/libqvlink-test.so"));
}

TEST_F(ScanTest, A_library_for_another_machine_is_passed_over) {
    programs::Elf other;
    other.machine = 183;
    programs::Elf narrow;
    narrow.wide = false;
    Write("app", Needing({"libqvlink-test.so"}, "$ORIGIN/a:${ORIGIN}/b:$ORIGIN/c:$ORIGIN/d"));
    Write("a/libqvlink-test.so", programs::Write(other));
    Write("b/libqvlink-test.so", programs::Write(narrow));
    Write("c/libqvlink-test.so", "no library");
    Write("d/libqvlink-test.so", Library());
    Scan();
    EXPECT_TRUE(Graph().Linked("app -needs-> d/libqvlink-test.so"));
}

TEST_F(ScanTest, The_older_run_path_is_searched_and_told_as_such) {
    programs::Elf elf;
    elf.needed = {"libqvlink-test.so"};
    elf.rpath = "$ORIGIN/lib";
    Write("app", programs::Write(elf));
    Write("lib/libqvlink-test.so", Library());
    Scan();
    EXPECT_EQ(Graph().From("app"), (std::set<std::string>{"-needs-> lib/libqvlink-test.so",
                                                          "-found-rpath-> lib/libqvlink-test.so",
                                                          "-rpath-> runpath:$ORIGIN/lib"}));
}

TEST_F(ScanTest, A_library_needed_by_a_path_is_found_there_on_later_scans_too) {
    std::string const path = Path("odd/libqvlink-test.so").string();
    Write("app", Needing({path}, ""));
    Write("odd/libqvlink-test.so", Library());
    Scan();
    std::set<std::string> const expected = {"-needs-> odd/libqvlink-test.so",
                                            "-found-direct-> odd/libqvlink-test.so"};
    EXPECT_EQ(Graph().From("app"), expected);
    Write("unrelated", "1");
    Scan();
    EXPECT_EQ(Graph().From("app"), expected);
    Remove("odd");
    Scan();
    EXPECT_EQ(Graph().From("app"), std::set<std::string>{"-missing-> name:" + path});
    Write("odd/libqvlink-test.so", Library());
    Scan();
    EXPECT_EQ(Graph().From("app"), expected);
}

TEST_F(ScanTest, The_interpreter_is_linked_or_told_as_missing) {
    std::string const path = Path("ld.so").string();
    programs::Elf elf;
    elf.interpreter = path;
    Write("app", programs::Write(elf));
    Write("ld.so", Library());
    Scan();
    EXPECT_EQ(Graph().From("app"), std::set<std::string>{"-interpreter-> ld.so"});
    Remove("ld.so");
    Scan();
    EXPECT_EQ(Graph().From("app"),
              (std::set<std::string>{"-interpreter-> name:" + path, "-missing-> name:" + path}));
    Write("ld.so", Library());
    Scan();
    EXPECT_EQ(Graph().From("app"), std::set<std::string>{"-interpreter-> ld.so"});
}

TEST_F(ScanTest, A_library_outside_the_scanned_paths_is_followed_with_all_it_needs) {
    Write("bin/app", Needing({"liba.so"}, "$ORIGIN/../lib"));
    Write("lib/liba.so.1", Needing({"libb.so"}, "$ORIGIN"));
    ASSERT_TRUE(Link("lib/liba.so", "liba.so.1"));
    Write("lib/libb.so", Library());
    Write("lib/unrelated.so", Library());
    ScanSummary const summary = Scan({"bin"});
    EXPECT_EQ(summary.files, 1u);
    EXPECT_EQ(summary.located, 3u);
    GraphFile const graph = Graph();
    EXPECT_TRUE(graph.Linked("bin/app -needs-> lib/liba.so"));
    EXPECT_TRUE(graph.Linked("lib/liba.so -symlink-> lib/liba.so.1"));
    EXPECT_TRUE(graph.Linked("lib/liba.so.1 -needs-> lib/libb.so"));
    EXPECT_FALSE(graph.Has("lib/unrelated.so"));

    Bytes const before = File();
    EXPECT_FALSE(Scan({"bin"}).saved);
    EXPECT_EQ(File(), before);
    Remove("lib");
    Scan({"bin"});
    EXPECT_TRUE(Graph().Linked("bin/app -missing-> name:liba.so"));
    EXPECT_FALSE(Graph().Has("lib/liba.so") || Graph().Has("lib/liba.so.1"));
}

TEST_F(ScanTest, A_library_that_is_gone_leaves_the_graph_though_a_value_names_it) {
    Write("bin/app", Needing({"libqvlink-test.so"}, "$ORIGIN/../lib"));
    Write("lib/libqvlink-test.so", Library());
    Scan({"bin"});
    MadeUpRegistry registry;
    registry.PutText("HKCU\\A", "v",
                     DatabasePath(*PlaceOfHostPath(Path("lib/libqvlink-test.so").string())));
    ScanKeys(registry, {"HKCU"});
    EXPECT_TRUE(Graph().Linked("HKCU\\A:v -refers-> lib/libqvlink-test.so"));
    Remove("lib/libqvlink-test.so");
    Scan({"bin"});
    EXPECT_FALSE(Graph().Has("lib/libqvlink-test.so"));
    EXPECT_TRUE(Graph().Has("HKCU\\A:v"));
}

TEST_F(ScanTest, Programs_elsewhere_learn_that_their_library_is_gone) {
    Write("bin/app", Needing({"libqvlink-test.so"}, "$ORIGIN/../lib:$ORIGIN/../more"));
    Write("lib/libqvlink-test.so", Library());
    Write("more/libqvlink-test.so", Library());
    Scan();
    Remove("lib/libqvlink-test.so");
    Scan({"lib"});
    EXPECT_TRUE(Graph().Linked("bin/app -needs-> more/libqvlink-test.so"));
    Remove("more/libqvlink-test.so");
    Scan({"more"});
    EXPECT_TRUE(Graph().Linked("bin/app -missing-> name:libqvlink-test.so"));
}

TEST_F(ScanTest, A_run_path_longer_than_a_name_is_kept_whole) {
    std::string path;
    for (int i = 0; i < 60; ++i) {
        path += "/nowhere/" + std::to_string(i) + ':';
    }
    path += "$ORIGIN/lib";
    Write("app", Needing({"libqvlink-test.so"}, path));
    Write("other", Needing({}, path));
    Scan();
    EXPECT_TRUE(Graph().Linked("app -runpath-> runpath:" + path));
    EXPECT_TRUE(Graph().Linked("other -runpath-> runpath:" + path));
    Write("lib/libqvlink-test.so", Library());
    EXPECT_EQ(Scan().read, 1u);
    EXPECT_TRUE(Graph().Linked("app -needs-> lib/libqvlink-test.so"));
    Remove("app");
    Remove("other");
    Scan();
    EXPECT_FALSE(Graph().Has("runpath:" + path));
}

TEST_F(ScanTest, Two_fresh_scans_of_ELF_files_give_the_same_bytes_but_for_the_stamp) {
    for (int i = 0; i < 30; ++i) {
        Write("bin/app" + std::to_string(i),
              Needing({"lib" + std::to_string(i % 7) + ".so", "libmissing.so"}, "$ORIGIN/../lib"));
        Write("lib/lib" + std::to_string(i % 7) + ".so", Needing({"lib0.so"}, "$ORIGIN"));
    }
    ScanInto("one");
    ScanInto("two");
    EXPECT_FALSE(File("one").empty());
    EXPECT_EQ(WithoutStamp(File("one")), WithoutStamp(File("two")));
}

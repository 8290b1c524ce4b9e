// What PE files need, in the graph.
#include "scan_fixture.h"

#include "model.h"

using namespace qvlink;

namespace {

std::string Importing(std::vector<std::string> imports, std::vector<std::string> delayed = {}) {
    programs::Pe pe;
    pe.imports = std::move(imports);
    pe.delayed = std::move(delayed);
    return programs::Write(pe);
}

} // namespace

TEST_F(ScanTest, Imports_become_links_to_one_name_each_without_regard_to_case) {
    Write("a.exe", Importing({"KERNEL32.dll", "user32.dll"}, {"ole32.dll"}));
    Write("b.dll", Importing({"Kernel32.DLL"}));
    ScanSummary const summary = Scan();
    EXPECT_EQ(summary.pe, 2u);
    EXPECT_EQ(summary.needs, 4u);
    GraphFile const graph = Graph();
    EXPECT_EQ(graph.links, (std::set<std::string>{"a.exe -needs-> name:kernel32.dll",
                                                  "a.exe -needs-> name:user32.dll",
                                                  "a.exe -delayed-> name:ole32.dll",
                                                  "b.dll -needs-> name:kernel32.dll"}));
    EXPECT_EQ(graph.objects.at("a.exe").flags,
              FLAG_PE | FLAG_64BIT | 0x8664u << FLAG_MACHINE_SHIFT);
}

TEST_F(ScanTest, A_library_needed_both_ways_has_both_links) {
    Write("a.exe", Importing({"x.dll"}, {"X.dll"}));
    Scan();
    EXPECT_TRUE(Graph().Linked("a.exe -needs-> name:x.dll"));
    EXPECT_TRUE(Graph().Linked("a.exe -delayed-> name:x.dll"));
}

TEST_F(ScanTest, Names_that_nobody_asks_for_any_more_go) {
    Write("a.exe", Importing({"x.dll", "y.dll"}));
    Write("b.exe", Importing({"y.dll"}));
    Scan();
    ASSERT_TRUE(Graph().Has("name:x.dll"));
    Remove("a.exe");
    Scan();
    EXPECT_FALSE(Graph().Has("name:x.dll"));
    EXPECT_TRUE(Graph().Has("name:y.dll"));
}

TEST_F(ScanTest, A_changed_program_has_the_links_of_its_new_content) {
    Write("a.exe", Importing({"x.dll", "y.dll"}));
    Scan();
    Write("a.exe", Importing({"y.dll", "long-name.dll"}));
    SetTime("a.exe", 1);
    Scan();
    EXPECT_EQ(Graph().links, (std::set<std::string>{"a.exe -needs-> name:y.dll",
                                                    "a.exe -needs-> name:long-name.dll"}));
    Write("a.exe", "no program any more");
    Scan();
    EXPECT_TRUE(Graph().links.empty());
    EXPECT_FALSE(Graph().Has("name:y.dll"));
    EXPECT_EQ(Graph().objects.at("a.exe").flags, 0u);
}

TEST_F(ScanTest, A_malformed_program_is_told_each_time_and_keeps_what_could_be_read) {
    std::string const whole = Importing({"x.dll", "y.dll"});
    Write("bad.exe", whole.substr(0, whole.size() - 3));
    ScanSummary const first = Scan();
    EXPECT_EQ(first.malformed, 1u);
    ASSERT_EQ(m_observer.problems.size(), 1u);
    EXPECT_NE(m_observer.problems[0].find("bad.exe"), std::string::npos);
    EXPECT_EQ(Graph().links, std::set<std::string>{"bad.exe -needs-> name:x.dll"});
    EXPECT_TRUE(Graph().objects.at("bad.exe").flags & FLAG_MALFORMED);
    ScanSummary const second = Scan();
    EXPECT_EQ(second.malformed, 1u);
    EXPECT_EQ(second.read, 0u);
}

TEST_F(ScanTest, A_needed_name_that_the_database_cannot_hold_is_told) {
    Write("a.exe", Importing({std::string(250, 'x'), std::string(251, 'y'), "z.dll"}));
    EXPECT_EQ(Scan().unrepresentable, 1u);
    EXPECT_TRUE(Graph().Has("name:" + std::string(250, 'x')));
    EXPECT_EQ(Graph().links.size(), 2u);
}

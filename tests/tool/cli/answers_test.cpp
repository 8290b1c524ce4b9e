#include "cli_graph.h"

#include <gtest/gtest.h>

using nlohmann::json;

namespace {

void ExpectAnswer(Outcome const &told, std::string const &text) {
    EXPECT_EQ(told.exitCode, 0) << told.err;
    EXPECT_EQ(told.out, text);
    EXPECT_EQ(told.err, "");
}

} // namespace

TEST(Cli, Deps_lists_what_a_program_needs_and_what_is_missing) {
    StoredGraph graph;
    ExpectAnswer(graph.Ask({"deps", "Z:\\opt\\app\\bin\\p"}),
                 "Z:\\opt\\lib\\liba\nZ:\\opt\\lib\\libb\nlibgone\tnot found\n");
    ExpectAnswer(graph.Ask({"deps", "--direct", "Z:\\opt\\app\\bin\\q"}),
                 "Z:\\opt\\lib\\liba\nlibgone\tnot found\n");
    ExpectAnswer(graph.Ask({"deps", "Z:\\win\\w.exe"}), "Z:\\win\\X.DLL\ngone.dll\tnot found\n");
}

TEST(Cli, Deps_says_why_with_v) {
    StoredGraph graph;
    ExpectAnswer(
        graph.Ask({"deps", "-v", "Z:\\opt\\app\\bin\\p"}),
        "Z:\\opt\\lib\\liba\tZ:\\opt\\lib: in the loader's cache\t"
        "needed by Z:\\opt\\app\\bin\\p\n"
        "Z:\\opt\\lib\\libb\tZ:\\opt\\lib: in the run path (DT_RUNPATH) of the file\t"
        "needed by Z:\\opt\\lib\\liba.1\n"
        "libgone\tthe loader's search found no such library\tneeded by Z:\\opt\\app\\bin\\p\n");
}

TEST(Cli, Deps_draws_a_tree) {
    StoredGraph graph;
    ExpectAnswer(graph.Ask({"deps", "--tree", "Z:\\opt\\app\\bin\\p"}),
                 "Z:\\opt\\app\\bin\\p\nZ:\\opt\\lib\\liba\n  Z:\\opt\\lib\\libb\n"
                 "libgone  not found\n");
}

TEST(Cli, Deps_of_a_folder_are_those_of_its_programs) {
    StoredGraph graph;
    ExpectAnswer(graph.Ask({"deps", "Z:\\opt\\app"}),
                 "Z:\\opt\\lib\\liba\nZ:\\opt\\lib\\libb\nlibgone\tnot found\n");
    Outcome const tree = graph.Ask({"deps", "--tree", "Z:\\opt\\app"});
    EXPECT_EQ(tree.exitCode, 2);
    EXPECT_NE(tree.err.find("is a folder"), std::string::npos) << tree.err;
}

TEST(Cli, Refs_lists_who_needs_a_file) {
    StoredGraph graph;
    ExpectAnswer(graph.Ask({"refs", "Z:\\opt\\lib\\libb"}),
                 "Z:\\opt\\app\\bin\\p\nZ:\\opt\\lib\\liba.1\n");
    ExpectAnswer(graph.Ask({"refs", "--direct", "Z:\\opt\\lib\\libb"}), "Z:\\opt\\lib\\liba.1\n");
    ExpectAnswer(graph.Ask({"refs", "Z:\\win\\X.DLL"}), "Z:\\win\\w.exe\n");
    ExpectAnswer(graph.Ask({"refs", "GONE.dll"}), "Z:\\win\\w.exe\n");
    ExpectAnswer(graph.Ask({"refs", "Z:\\opt\\lib"}), "Z:\\opt\\app\\bin\\p\n");
}

TEST(Cli, Find_lists_names_that_fit_a_pattern) {
    StoredGraph graph;
    ExpectAnswer(graph.Ask({"find", "LIB?"}), "Z:\\opt\\lib\\liba\nZ:\\opt\\lib\\libb\n");
    ExpectAnswer(graph.Ask({"find", "lib*", "--type", "file"}),
                 "Z:\\opt\\lib\nZ:\\opt\\lib\\liba\nZ:\\opt\\lib\\liba.1\nZ:\\opt\\lib\\libb\n");
    ExpectAnswer(graph.Ask({"find", "lib*", "--type", "symlink"}), "Z:\\opt\\lib\\liba\n");
    ExpectAnswer(graph.Ask({"find", "*", "--type", "name"}), "gone.dll\nlibgone\nx.dll\n");
    ExpectAnswer(graph.Ask({"find", "text", "-v"}), "Z:\\opt\\text\tfile\t24\n");
}

TEST(Cli, Why_shows_the_chain) {
    StoredGraph graph;
    ExpectAnswer(graph.Ask({"why", "Z:\\opt\\app\\bin\\p", "Z:\\opt\\lib\\libb"}),
                 "Z:\\opt\\app\\bin\\p\n  needs Z:\\opt\\lib\\liba\n"
                 "    is a link to Z:\\opt\\lib\\liba.1\n      needs Z:\\opt\\lib\\libb\n");
}

TEST(Cli, Missing_lists_names_and_who_asks) {
    StoredGraph graph;
    ExpectAnswer(graph.Ask({"missing"}), "gone.dll\tZ:\\win\\w.exe\tat first use\n"
                                         "libgone\tZ:\\opt\\app\\bin\\p\t\n");
}

TEST(Cli, Show_has_fields_and_links) {
    StoredGraph graph;
    Outcome const shown = graph.Ask({"show", "Z:\\opt\\lib\\liba"});
    EXPECT_EQ(shown.exitCode, 0);
    for (const char *const line :
         {"name\tliba\n", "path\tZ:\\opt\\lib\\liba\n", "type\tsymlink\n", "kept\tpersistent\n",
          "attributes\tsymbolic link\n", "links out (1)\nsymlink\tZ:\\opt\\lib\\liba.1\n",
          "links in (3)\nparent\tZ:\\opt\\lib\nneeds\tZ:\\opt\\app\\bin\\p\n"
          "found-cache\tZ:\\opt\\app\\bin\\p\n"}) {
        EXPECT_NE(shown.out.find(line), std::string::npos) << line << "in\n" << shown.out;
    }
}

TEST(Cli, Stats_counts_and_lists_the_most_needed) {
    StoredGraph graph;
    Outcome const told = graph.Ask({"stats", "--top", "1"});
    EXPECT_EQ(told.exitCode, 0);
    EXPECT_NE(told.out.find("objects: drive\t1\n"), std::string::npos) << told.out;
    EXPECT_NE(told.out.find("most needed\n1\tZ:\\opt\\lib\\liba\n"), std::string::npos) << told.out;
}

TEST(Cli, Paths_are_taken_and_shown_as_the_host_writes_them) {
    StoredGraph graph;
    TempFolder prefix;
    std::pair<std::string, std::string> const plain{"QVPREFIX", prefix.Directory()};
    ExpectAnswer(
        RunTool({"refs", HostForm("Z:\\opt\\lib\\libb"), "--db", graph.Directory()}, {plain}),
        HostForm("Z:\\opt\\app\\bin\\p") + "\n" + HostForm("Z:\\opt\\lib\\liba.1") + "\n");
}

TEST(Cli, Options_may_stand_before_and_behind_the_command) {
    StoredGraph graph;
    ExpectAnswer(RunTool({"--db", graph.Directory(), "--db-paths", "find", "text"}),
                 "Z:\\opt\\text\n");
    ExpectAnswer(RunTool({"find", "--db", graph.Directory(), "--db-paths", "text"}),
                 "Z:\\opt\\text\n");
}

TEST(Cli, Every_json_answer_fits_the_schema) {
    StoredGraph graph;
    TempFolder folder;
    json const schema = Schema();
    std::vector<std::vector<std::string>> const questions{
        {"deps", "Z:\\opt\\app\\bin\\p"},
        {"deps", "--tree", "Z:\\win\\w.exe"},
        {"refs", "Z:\\opt\\lib\\libb"},
        {"find", "*"},
        {"show", "Z:\\opt\\app\\bin\\p"},
        {"show", "x.dll"},
        {"missing"},
        {"why", "Z:\\opt\\app\\bin\\p", "Z:\\opt\\lib\\libb"},
        {"stats"},
        {"verify"},
        {"export", "--format", "csv", "-o", folder.Directory()}};
    for (std::vector<std::string> question : questions) {
        question.emplace_back("--json");
        Outcome const told = graph.Ask(question);
        EXPECT_EQ(told.exitCode, 0) << question[0] << told.err;
        ASSERT_TRUE(json::accept(told.out)) << question[0] << told.out;
        json const answer = json::parse(told.out);
        EXPECT_EQ(WhyInvalid(schema, answer), "") << question[0];
        EXPECT_EQ(answer["command"], question[0]);
    }
}

TEST(Cli, The_schema_refuses_what_is_no_answer) {
    StoredGraph graph;
    json const schema = Schema();
    json answer = json::parse(graph.Ask({"find", "text", "--json"}).out);
    ASSERT_EQ(WhyInvalid(schema, answer), "");
    json extra = answer;
    extra["objects"][0]["more"] = 1;
    EXPECT_NE(WhyInvalid(schema, extra), "");
    json lacking = answer;
    lacking["objects"][0].erase("id");
    EXPECT_NE(WhyInvalid(schema, lacking), "");
    json wrong = answer;
    wrong["objects"][0]["kind"] = "planet";
    EXPECT_NE(WhyInvalid(schema, wrong), "");
}

TEST(Cli, Json_says_what_the_text_says) {
    StoredGraph graph;
    json const answer = json::parse(graph.Ask({"deps", "Z:\\opt\\app\\bin\\p", "--json"}).out);
    ASSERT_EQ(answer["dependencies"].size(), 3U);
    json const &libb = answer["dependencies"][1];
    EXPECT_EQ(libb["object"]["path"], "Z:\\opt\\lib\\libb");
    EXPECT_EQ(libb["rule"], "runpath");
    EXPECT_EQ(libb["folder"], "Z:\\opt\\lib");
    EXPECT_EQ(libb["neededBy"]["path"], "Z:\\opt\\lib\\liba.1");
    json const &gone = answer["dependencies"][2];
    EXPECT_EQ(gone["name"], "libgone");
    EXPECT_EQ(gone["rule"], "missing");
    EXPECT_FALSE(gone.contains("object"));
}

TEST(Cli, Export_goes_to_standard_output_or_to_files) {
    StoredGraph graph;
    TempFolder folder;
    Outcome const told = graph.Ask({"export", "--format", "jsonl"});
    EXPECT_EQ(told.exitCode, 0);
    std::string const file = (folder.Path() / "graph.jsonl").string();
    ExpectAnswer(graph.Ask({"export", "--format", "jsonl", "-o", file}), file + "\n");
    Bytes const written = ReadBytes(file);
    EXPECT_EQ(std::string(written.begin(), written.end()), told.out);
    EXPECT_EQ(graph.Ask({"export", "--format", "csv", "-o", folder.Directory()}).exitCode, 0);
    EXPECT_FALSE(ReadBytes(folder.Path() / "nodes.csv").empty());
    EXPECT_FALSE(ReadBytes(folder.Path() / "edges.csv").empty());
}

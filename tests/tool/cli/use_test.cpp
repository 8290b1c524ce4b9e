#include "cli_graph.h"

#include <gtest/gtest.h>

namespace {

constexpr const char *Commands[] = {"scan",      "deps",    "refs",  "find",   "show",
                                    "why",       "missing", "stats", "verify", "export",
                                    "protected", "lists",   "reg"};

void ExpectTold(Outcome const &outcome, long exitCode, std::string const &piece) {
    EXPECT_EQ(outcome.exitCode, exitCode) << outcome.err;
    EXPECT_EQ(outcome.out, "");
    EXPECT_NE(outcome.err.find(piece), std::string::npos) << outcome.err;
}

} // namespace

TEST(CliUse, Help_and_version_go_to_standard_output) {
    Outcome const help = RunTool({"--help"});
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_EQ(help.err, "");
    for (const char *const command : Commands) {
        EXPECT_NE(help.out.find(command), std::string::npos) << command;
    }
    Outcome const version = RunTool({"--version"});
    EXPECT_EQ(version.exitCode, 0);
    EXPECT_EQ(version.out.substr(0, 7), "qvlink ");
}

TEST(CliUse, Every_command_has_help_with_examples) {
    for (std::string const command : Commands) {
        Outcome const help = RunTool({command, "--help"});
        EXPECT_EQ(help.exitCode, 0) << command;
        EXPECT_NE(help.out.find("qvlink " + command), std::string::npos) << command;
        EXPECT_NE(help.out.find("Examples:"), std::string::npos) << command;
        EXPECT_NE(help.out.find("--db"), std::string::npos) << command;
    }
}

TEST(CliUse, Bad_use_is_told_with_the_way_to_the_help) {
    ExpectTold(RunTool({}), 2, "--help");
    ExpectTold(RunTool({"frobnicate"}), 2, "frobnicate");
    ExpectTold(RunTool({"deps"}), 2, "qvlink deps --help");
    ExpectTold(RunTool({"deps", "a", "b"}), 2, "b");
    ExpectTold(RunTool({"deps", "--direct", "--tree", "a"}), 2, "--tree");
    ExpectTold(RunTool({"why", "a"}), 2, "qvlink why --help");
    ExpectTold(RunTool({"find", "a", "--type", "planet"}), 2, "planet");
    ExpectTold(RunTool({"export", "--format", "xml"}), 2, "xml");
    ExpectTold(RunTool({"stats", "--top", "many"}), 2, "many");
    ExpectTold(RunTool({"stats", "--top", "-1"}), 2, "--top");
    ExpectTold(RunTool({"stats", "--nonsense"}), 2, "--nonsense");
    ExpectTold(RunTool({"protected"}), 2, "qvlink protected --help");
}

TEST(CliUse, Without_a_database_the_way_to_one_is_told) {
    TempFolder folder;
    for (const char *const command : {"missing", "stats", "verify"}) {
        ExpectTold(RunTool({command, "--db", folder.Directory()}), 2, "qvlink scan");
    }
    ExpectTold(RunTool({"deps", "x", "--db", (folder.Path() / "none").string()}), 2, "qvlink scan");
    EXPECT_TRUE(std::filesystem::is_empty(folder.Path())) << "asking makes nothing";
}

TEST(CliUse, The_default_folder_is_in_the_users_data) {
    TempFolder home;
    Outcome const told = RunTool({"stats"}, {HomeVariable(home.Directory())});
    ExpectTold(told, 2, DefaultFolderFor(home.Directory()));
}

TEST(CliUse, A_damaged_database_is_no_empty_one) {
    StoredGraph graph;
    Bytes bytes = ReadBytes(graph.DatabaseFile());
    bytes.resize(bytes.size() / 2);
    TempFolder folder;
    WriteBytes(folder.DatabaseFile(), bytes);
    ExpectTold(RunTool({"stats", "--db", folder.Directory()}), 2, "is damaged");
    Outcome const verified = RunTool({"verify", "--db", folder.Directory()});
    EXPECT_EQ(verified.exitCode, 1);
    EXPECT_NE(verified.out.find("header\t"), std::string::npos) << verified.out;
}

TEST(CliUse, Verify_finds_a_lost_link) {
    StoredGraph graph;
    EXPECT_EQ(RunTool({"verify", "--db", graph.Directory()}).exitCode, 0);
    Bytes bytes = ReadBytes(graph.DatabaseFile());
    // The last record is a link: let it lead to an object that isn't there.
    bytes[bytes.size() - 8] = 0xff;
    bytes[bytes.size() - 7] = 0xff;
    TempFolder folder;
    WriteBytes(folder.DatabaseFile(), bytes);
    Outcome const verified = RunTool({"verify", "--db", folder.Directory()});
    EXPECT_EQ(verified.exitCode, 1);
    EXPECT_NE(verified.out.find("ends\t"), std::string::npos) << verified.out;
}

TEST(CliUse, Nothing_found_is_told_with_exit_code_1) {
    StoredGraph graph;
    ExpectTold(graph.Ask({"deps", "Z:\\opt\\text"}), 1, "no ELF or PE program");
    ExpectTold(graph.Ask({"deps", "Z:\\opt\\lib\\libb"}), 1, "needs nothing");
    ExpectTold(graph.Ask({"refs", "Z:\\win\\w.exe"}), 1, "nothing needs");
    ExpectTold(graph.Ask({"find", "nowhere*"}), 1, "nowhere*");
    ExpectTold(graph.Ask({"why", "Z:\\opt\\lib\\libb", "Z:\\opt\\text"}), 1, "does not depend");
    ExpectTold(graph.Ask({"show", "Z:\\nowhere"}), 1, "is not in the graph");
    ExpectTold(graph.Ask({"show", "Z:\\elsewhere\\libb"}), 1, "There is Z:\\opt\\lib\\libb");
    Outcome const json = graph.Ask({"find", "nowhere*", "--json"});
    EXPECT_EQ(json.exitCode, 1);
    EXPECT_EQ(WhyInvalid(Schema(), nlohmann::json::parse(json.out)), "");
}

TEST(CliUse, Patterns_that_can_not_match_are_bad_use) {
    StoredGraph graph;
    ExpectTold(graph.Ask({"find", std::string(100, 'x')}), 2, "99");
    ExpectTold(graph.Ask({"find", "opt/lib"}), 2, "slash");
}

TEST(CliUse, Asking_writes_nothing) {
    StoredGraph graph;
    Bytes const before = ReadBytes(graph.DatabaseFile());
    auto const time = std::filesystem::last_write_time(graph.DatabaseFile());
    for (const char *const command : {"missing", "stats", "verify"}) {
        graph.Ask({command});
    }
    graph.Ask({"deps", "Z:\\opt\\app\\bin\\p"});
    EXPECT_EQ(ReadBytes(graph.DatabaseFile()), before);
    EXPECT_EQ(std::filesystem::last_write_time(graph.DatabaseFile()), time);
}

TEST(CliUse, An_output_that_nobody_reads_is_no_failure) {
    StoredGraph graph;
    Outcome const told =
        RunToolWithoutReader({"export", "--format", "jsonl", "--db", graph.Directory()});
    EXPECT_EQ(told.exitCode, 0);
    EXPECT_EQ(told.err, "");
}

TEST(CliUse, A_long_output_that_nobody_reads_is_no_failure_either) {
    StoredGraph graph;
    for (int i = 0; i < 2000; ++i) {
        graph.File("Z:\\many\\file" + std::to_string(i));
    }
    graph.Flush();
    Outcome const told =
        RunToolWithoutReader({"export", "--format", "jsonl", "--db", graph.Directory()});
    EXPECT_EQ(told.exitCode, 0);
    EXPECT_EQ(told.err, "");
}

TEST(CliUse, A_file_that_can_not_be_written_is_a_failure) {
    StoredGraph graph;
    std::string const nowhere = (std::filesystem::path(graph.Directory()) / "no" / "file").string();
    ExpectTold(graph.Ask({"export", "--format", "dot", "-o", nowhere}), 2, "cannot write");
}

TEST(CliUse, A_scan_and_its_answers) {
    TempFolder tree;
    TempFolder database;
    std::filesystem::create_directory(tree.Path() / "folder");
    WriteBytes(tree.Path() / "folder" / "note.txt", BytesOf("hello"));
    Outcome const scanned =
        RunTool({"scan", "--json", tree.Directory(), "--db", database.Directory()});
    ASSERT_EQ(scanned.exitCode, 0) << scanned.err;
    EXPECT_EQ(scanned.err, "");
    nlohmann::json const answer = nlohmann::json::parse(scanned.out);
    EXPECT_EQ(WhyInvalid(Schema(), answer), "");
    EXPECT_EQ(answer["summary"]["files"], 1);
    Outcome const found = RunTool({"find", "note.*", "--db", database.Directory()});
    EXPECT_EQ(found.exitCode, 0) << found.err;
    EXPECT_NE(found.out.find("note.txt"), std::string::npos);
    EXPECT_EQ(RunTool({"verify", "--db", database.Directory()}).exitCode, 0);
}

TEST(CliUse, A_scan_of_nothing_is_a_failure) {
    TempFolder folder;
    Outcome const told = RunTool(
        {"scan", (folder.Path() / "none").string(), "--db", (folder.Path() / "db").string()});
    EXPECT_EQ(told.exitCode, 2);
    EXPECT_NE(told.err.find("none"), std::string::npos) << told.err;
}

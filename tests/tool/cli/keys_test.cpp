// Keys and values of the registry in the graph, and what the tool tells of them. The registry is
// that of a prefix of the test's own, or the system's, of which a key of the test's own is used.
#include "cli_graph.h"

#include "answer/place.h"
#include "platform/host.h"

#include <gtest/gtest.h>

using nlohmann::json;

namespace {

std::string const Top = "HKCU\\Software\\QVLinkDB tests of scans";
std::string const LongTop = "HKEY_CURRENT_USER\\Software\\QVLinkDB tests of scans";

std::string Escaped(std::string const &text) {
    std::string escaped;
    for (char const c : text) {
        escaped += c == '\\' ? std::string("\\\\") : std::string(1, c);
    }
    return escaped;
}

class CliKeys : public testing::Test {
protected:
    ~CliKeys() override { Import("[-" + LongTop + "]\n"); }

    Outcome Run(std::vector<std::string> arguments) {
        arguments.insert(arguments.end(), {"--db", m_database.Directory()});
        return RunTool(arguments, {{"QVPREFIX", m_prefix.Directory()}});
    }
    // Puts text of a registration file into the registry.
    void Import(std::string const &text) {
        WriteBytes(m_files.Path() / "a.reg", BytesOf("REGEDIT4\n\n" + text));
        Outcome const told = RunTool({"reg", "import", (m_files.Path() / "a.reg").string()},
                                     {{"QVPREFIX", m_prefix.Directory()}});
        EXPECT_EQ(told.exitCode, 0) << told.out << told.err;
    }
    // A file of the test's tree, in the database's form.
    std::string File(std::string const &name) {
        std::filesystem::create_directories(Tree());
        WriteBytes(Tree() / name, BytesOf("x"));
        return DatabasePath(*qvlink::PlaceOfHostPath((Tree() / name).string()));
    }
    std::filesystem::path Tree() const { return m_files.Path() / "tree"; }
    json Asked(std::vector<std::string> arguments) {
        arguments.emplace_back("--json");
        Outcome const told = Run(arguments);
        EXPECT_EQ(told.err, "");
        json answer = json::parse(told.out, nullptr, false);
        EXPECT_EQ(WhyInvalid(Schema(), answer), "") << told.out;
        return answer;
    }

    TempFolder m_prefix;
    TempFolder m_files;
    TempFolder m_database;
};

bool Has(std::string const &text, std::string const &piece) {
    return text.find(piece) != std::string::npos;
}

} // namespace

TEST_F(CliKeys, A_scan_puts_keys_and_values_into_the_graph_and_counts_them) {
    Import("[" + LongTop + "\\A]\n@=\"own\"\n\"n\"=dword:0000002a\n[" + LongTop + "\\B]\n");
    json const answer = Asked({"scan", "--registry", Top});
    EXPECT_EQ(answer["summary"]["keys"], 3);
    EXPECT_EQ(answer["summary"]["values"], 2);
    EXPECT_EQ(answer["summary"]["files"], 0);
    EXPECT_EQ(answer["summary"]["added"], 7) << "with the hive and HKCU\\Software";
    EXPECT_EQ(Run({"find", "*", "--type", "value"}).out, Top + "\\A\\@\n" + Top + "\\A\\n\n");
    EXPECT_EQ(Run({"find", "?", "--type", "key"}).out, Top + "\\A\n" + Top + "\\B\n");
    EXPECT_EQ(Run({"find", "*", "--type", "hive"}).out, "HKCU\n");
    EXPECT_EQ(Run({"verify"}).exitCode, 0);
    Outcome const text = Run({"scan", "--registry", LongTop});
    EXPECT_TRUE(Has(text.out, "keys\t3\t")) << text.out;
    EXPECT_TRUE(Has(text.out, "values\t2\t0 references to files")) << text.out;
    EXPECT_TRUE(Has(text.out, "nothing changed")) << text.out;
}

TEST_F(CliKeys, A_second_scan_follows_the_registry) {
    Import("[" + LongTop + "\\A]\n\"x\"=\"1\"\n\"y\"=\"1\"\n[" + LongTop + "\\B\\C]\n");
    Run({"scan", "--registry", Top});
    Import("[-" + LongTop + "\\B]\n[" + LongTop + "\\A]\n\"x\"=-\n\"y\"=\"2\"\n\"z\"=\"1\"\n");
    json const summary = Asked({"scan", "--registry", Top})["summary"];
    EXPECT_EQ(summary["removed"], 3);
    EXPECT_EQ(summary["changed"], 1);
    EXPECT_EQ(summary["added"], 1);
    EXPECT_EQ(Run({"find", "?"}).out, Top + "\\A\n" + Top + "\\A\\y\n" + Top + "\\A\\z\n");
    Import("[-" + LongTop + "]\n");
    EXPECT_EQ(Asked({"scan", "--registry", Top})["summary"]["removed"], 4);
    Outcome const gone = Run({"scan", "--registry", Top});
    EXPECT_EQ(gone.exitCode, 2);
    EXPECT_TRUE(Has(gone.err, "there is no " + Top)) << gone.err;
}

TEST_F(CliKeys, Show_tells_type_and_data_of_a_value) {
    Import("[" + LongTop + "]\n\"n\"=dword:0000002a\n\"t\"=\"text\"\n\"b\"=hex:01,ff\n");
    Run({"scan", "--registry", Top});
    EXPECT_TRUE(Has(Run({"show", Top + "\\n"}).out, "data\tREG_DWORD, 4 bytes\n\t0x2a (42)\n"));
    EXPECT_TRUE(Has(Run({"show", LongTop + "\\T"}).out, "\n\ttext\n"));
    EXPECT_TRUE(Has(Run({"show", Top + "\\b"}).out, "\n\t01 ff\n"));
    EXPECT_TRUE(Has(Run({"show", Top}).out, "links out (3)"));
    json const value = Asked({"show", Top + "\\t"})["object"];
    EXPECT_EQ(value["type"], "value");
    EXPECT_EQ(value["path"], Top + "\\t");
    EXPECT_EQ(value["value"]["typeName"], "REG_SZ");
    EXPECT_EQ(value["value"]["texts"], json({"text"}));
    EXPECT_EQ(value["value"]["data"], "74006500780074000000");
    EXPECT_EQ(Asked({"show", Top + "\\n"})["object"]["value"]["number"], 42);
}

TEST_F(CliKeys, A_value_that_names_a_file_of_the_graph_leads_there) {
    std::string const file = File("a b.exe");
    Import("[" + LongTop + "\\A]\n\"open\"=\"\\\"" + Escaped(file) +
           "\\\" %1\"\n\"none\"=\"a b.exe\"\n");
    json const summary = Asked({"scan", Tree().string(), "--registry", Top})["summary"];
    EXPECT_EQ(summary["files"], 1);
    EXPECT_EQ(summary["references"], 1);
    std::string const host = (Tree() / "a b.exe").string();
    std::string const value = Top + "\\A\\open";
    EXPECT_EQ(Run({"refs", host}).out, value + "\n");
    EXPECT_TRUE(Has(Run({"refs", "-v", host}).out, "named by the registry value"));
    EXPECT_EQ(Run({"deps", value}).out, host + "\n");
    EXPECT_EQ(Run({"deps", Top}).out, host + "\n");
    EXPECT_EQ(Run({"deps", "--tree", value}).out, value + "\n" + host + "\n");
    EXPECT_TRUE(Has(Run({"why", value, host}).out, "names " + host));
    EXPECT_EQ(Run({"refs", Tree().string()}).out, value + "\n");
    EXPECT_TRUE(Has(Run({"stats"}).out, "links: refers\t1\n"));
    for (std::string const command : {"refs", "deps"}) {
        json const answer = Asked({command, command == "refs" ? host : value});
        EXPECT_TRUE(Has(answer.dump(), R"("rule":"value")")) << answer;
    }
}

TEST_F(CliKeys, What_leads_nowhere_is_told) {
    Import("[" + LongTop + "]\n\"v\"=\"x\"\n");
    Run({"scan", "--registry", Top});
    Outcome const value = Run({"deps", Top + "\\v"});
    EXPECT_EQ(value.exitCode, 1);
    EXPECT_TRUE(Has(value.err, "names no file of the graph")) << value.err;
    Outcome const key = Run({"deps", Top});
    EXPECT_EQ(key.exitCode, 1);
    EXPECT_TRUE(Has(key.err, "no value below " + Top)) << key.err;
    EXPECT_EQ(Run({"deps", "--tree", Top}).exitCode, 2);
    EXPECT_EQ(Run({"refs", Top}).exitCode, 1);
    Outcome const missing = Run({"show", Top + "\\nothing"});
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_TRUE(Has(missing.err, "qvlink scan --registry")) << missing.err;
    Outcome const alike = Run({"show", "HKLM\\V"});
    EXPECT_TRUE(Has(alike.err, "There is " + Top + "\\v")) << alike.err;
}

TEST_F(CliKeys, Names_that_the_database_cannot_hold_are_told) {
    Import("[" + LongTop + "]\n\"C:\\\\x\"=\"1\"\n\"@\"=\"1\"\n");
    Outcome const told = Run({"scan", "-v", "--registry", Top});
    EXPECT_EQ(told.exitCode, 0) << told.err;
    EXPECT_TRUE(Has(told.out, "2 with impossible names")) << told.out;
    EXPECT_TRUE(Has(told.out, Top + "\\C:\\x\tthe name has a backslash")) << told.out;
    json const problems = Asked({"scan", "--registry", Top})["summary"]["problems"];
    ASSERT_EQ(problems.size(), 2U);
    EXPECT_EQ(problems[0]["problem"], "unrepresentable");
}

TEST_F(CliKeys, A_pattern_for_keys_or_values_may_hold_a_slash) {
    Import("[" + LongTop + "\\text/html]\n\"a/b\"=\"1\"\n");
    Run({"scan", "--registry", Top});
    EXPECT_EQ(Run({"find", "text/*", "--type", "key"}).out, Top + "\\text/html\n");
    EXPECT_EQ(Run({"find", "a/?", "--type", "value"}).out, Top + "\\text/html\\a/b\n");
    EXPECT_TRUE(Has(Run({"show", Top + "\\text/html\\a/b"}).out, "\n\t1\n"));
    EXPECT_EQ(Run({"find", "text/*"}).exitCode, 2);
    EXPECT_EQ(Run({"find", "a\\b", "--type", "key"}).exitCode, 2);
}

TEST_F(CliKeys, Exports_have_both_trees) {
    std::string const file = File("a");
    Import("[" + LongTop + "]\n\"v\"=\"" + Escaped(file) + "\"\n");
    Run({"scan", Tree().string(), "--registry", Top});
    std::string const lines = Run({"export", "--format", "jsonl"}).out;
    EXPECT_TRUE(Has(lines, R"("type":"hive","kind":"hive","name":"HKCU","path":"HKCU")")) << lines;
    EXPECT_TRUE(Has(lines, R"("type":"refers","typeBits":8192)")) << lines;
    EXPECT_TRUE(Has(Run({"export", "--format", "dot"}).out, R"([label="refers"])"));
    EXPECT_TRUE(Has(Run({"export", "--format", "graphml"}).out, "<data key=\"kind\">value</data>"));
}

TEST_F(CliKeys, A_scan_is_given_paths_or_keys) {
    Outcome const nothing = Run({"scan"});
    EXPECT_EQ(nothing.exitCode, 2);
    EXPECT_TRUE(Has(nothing.err, "PATH or --registry")) << nothing.err;
    Outcome const noKey = Run({"scan", "--registry", Tree().string()});
    EXPECT_EQ(noKey.exitCode, 2);
    EXPECT_TRUE(Has(noKey.err, "is no path of a key")) << noKey.err;
    EXPECT_FALSE(std::filesystem::exists(m_database.Path() / "linkdb.dat"));
}

TEST_F(CliKeys, Protected_answers_for_keys_by_the_list_of_keys) {
    Outcome const told = Run({"protected", "HKLM\\SYSTEM", "HKEY_LOCAL_MACHINE\\system\\",
                              "HKLM\\SYSTEM\\no such key", "HKEY_USERS\\.Default"});
    EXPECT_EQ(told.exitCode, 0) << told.err;
    std::string const list = "\tprotected\tWIN_REGS 110, Windows XP or later\n";
    EXPECT_EQ(told.out, "HKLM\\SYSTEM" + list + "HKLM\\system" + list +
                            "HKLM\\SYSTEM\\no such key\tnot protected\t\n" +
                            "HKU\\.Default\tnot protected\t\n");
    EXPECT_TRUE(Has(Run({"protected", "-v", "HKLM\\SYSTEM"}).out, "\tHKLM\\System\n"));
    EXPECT_EQ(Run({"protected", "HKLM\\no such key"}).exitCode, 1);
}

TEST_F(CliKeys, A_root_that_is_no_line_tells_what_lies_below_it_however_often_asked) {
    Outcome const told = Run({"protected", "HKLM", "HKLM\\", "HKEY_LOCAL_MACHINE"});
    EXPECT_EQ(told.exitCode, 1) << told.out;
    EXPECT_TRUE(Has(told.out, "HKLM\tnot protected\t")) << told.out;
    EXPECT_TRUE(Has(told.out, " protected keys lie below it\n")) << told.out;
    EXPECT_FALSE(Has(told.out, "\tprotected\t")) << told.out;
}

TEST_F(CliKeys, Protected_tells_keys_that_cannot_be_asked_about) {
    std::string const tooLong = "HKLM\\" + std::string(200, 'a') + "\\" + std::string(54, 'b');
    Outcome const told = Run({"protected", tooLong, "HKLM\\" + std::string(251, 'c'),
                              "HKLM\\" + std::string(200, 'a') + "\\" + std::string(53, 'b')});
    EXPECT_EQ(told.exitCode, 2);
    EXPECT_TRUE(Has(told.err, "it is 260 characters long")) << told.err;
    EXPECT_TRUE(Has(told.err, "longer than 250 characters")) << told.err;
    EXPECT_TRUE(Has(told.out, "bbb\tnot protected\t")) << told.out;
}

TEST_F(CliKeys, Protected_answers_for_files_and_keys_in_one_document) {
    Outcome const told = Run({"protected", "--json", "--db-paths", "HKLM\\SYSTEM",
                              qvlink::FindSystemDirectories().system + "\\kernel32.dll"});
    EXPECT_EQ(told.exitCode, 0) << told.err;
    json const answer = json::parse(told.out);
    EXPECT_EQ(WhyInvalid(Schema(), answer), "");
    EXPECT_EQ(answer["list"]["type"], "WIN_FILES");
    EXPECT_EQ(answer["keyList"]["type"], "WIN_REGS");
    EXPECT_EQ(answer["keyList"]["id"], 110);
    EXPECT_EQ(answer["paths"][0]["line"], "HKLM\\System");
    EXPECT_EQ(answer["paths"][0]["protected"], true);
    EXPECT_EQ(answer["paths"][1]["protected"], true);
    json const keys = json::parse(Run({"protected", "--json", "HKLM\\x"}).out);
    EXPECT_EQ(WhyInvalid(Schema(), keys), "");
    EXPECT_FALSE(keys.contains("list"));
}

TEST(CliFindProtectedKeys, Keys_of_the_graph_are_asked_about_by_their_paths) {
    TestGraph graph;
    CQVUDatabase &database = graph.Database();
    CQVUObject *const hive = database.AddObject("HKLM", OBJ_HIVE, 0, 0, nullptr, 1);
    database.GetRootObject()->LinkTo(hive, LINK_PARENT);
    for (const char *const name : {"SYSTEM", "no such key"}) {
        hive->LinkTo(database.AddObject(name, OBJ_KEY, 0, 0, nullptr, 1), LINK_PARENT);
    }
    graph.File("C:\\HKLM\\SYSTEM");
    graph.Flush();
    Outcome const told =
        RunTool({"find", "*", "--protected", "--db", graph.Directory(), "--db-paths"});
    EXPECT_EQ(told.exitCode, 0) << told.err;
    EXPECT_EQ(told.out, "HKLM\\SYSTEM\n");
}

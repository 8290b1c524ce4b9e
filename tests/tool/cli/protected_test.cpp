// Whether files are protected. The one file that these tests know of is kernel32.dll.
#include "cli_graph.h"

#include "platform/host.h"
#include "platform/process.h"

#include <gtest/gtest.h>

using nlohmann::json;

namespace {

std::string const System = qvlink::FindSystemDirectories().system;
std::string const Kernel = System + "\\kernel32.dll";

// The tool in a prefix that holds nothing.
class CliProtected : public testing::Test {
protected:
    Outcome Ask(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "protected");
        return RunTool(arguments, {{"QVPREFIX", m_prefix.Directory()}});
    }
    Outcome AskDatabase(std::vector<std::string> arguments) {
        arguments.emplace_back("--db-paths");
        return Ask(arguments);
    }
    TempFolder const &Prefix() const { return m_prefix; }

private:
    TempFolder m_prefix;
};

std::size_t CountOf(std::string const &piece, std::string const &text) {
    std::size_t count = 0;
    for (std::size_t at = text.find(piece); at != std::string::npos;
         at = text.find(piece, at + 1)) {
        ++count;
    }
    return count;
}

} // namespace

TEST_F(CliProtected, A_listed_file_is_protected_and_its_list_is_told) {
    Outcome const told = AskDatabase({Kernel});
    EXPECT_EQ(told.exitCode, 0) << told.err;
    EXPECT_EQ(told.out, Kernel + "\tprotected\tWIN_FILES 101, Windows XP or later\n");
    EXPECT_EQ(told.err, "");
}

TEST_F(CliProtected, The_line_of_the_list_is_told_with_v) {
    Outcome const told = AskDatabase({Kernel, "-v"});
    EXPECT_NE(told.out.find("\t%SystemDir%\\kernel32.dll\n"), std::string::npos) << told.out;
}

TEST_F(CliProtected, A_file_that_is_not_listed_is_not_protected) {
    Outcome const told = AskDatabase({"C:\\nowhere\\a.txt"});
    EXPECT_EQ(told.exitCode, 1);
    EXPECT_EQ(told.out, "C:\\nowhere\\a.txt\tnot protected\t\n");
    EXPECT_EQ(told.err, "");
}

TEST_F(CliProtected, One_protected_path_among_others_is_enough_for_exit_code_0) {
    Outcome const told = AskDatabase({"C:\\nowhere", Kernel, System + "\\no.such"});
    EXPECT_EQ(told.exitCode, 0);
    EXPECT_EQ(CountOf("\tnot protected\t", told.out), 2U) << told.out;
    EXPECT_EQ(CountOf("\tprotected\t", told.out), 1U) << told.out;
}

TEST_F(CliProtected, A_path_that_is_asked_about_twice_has_the_same_answer_twice) {
    Outcome const told = AskDatabase({Kernel, Kernel, "C:\\nowhere", "C:\\nowhere"});
    EXPECT_EQ(CountOf("\tprotected\t", told.out), 2U) << told.out;
    EXPECT_EQ(CountOf("\tnot protected\t", told.out), 2U) << told.out;
}

TEST_F(CliProtected, A_folder_that_leads_to_protected_files_is_not_protected_however_often_asked) {
    std::string upper = System;
    for (char &c : upper) {
        c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    }
    Outcome const told = AskDatabase({System, upper, System + "\\", "\\" + System, System});
    EXPECT_EQ(told.exitCode, 1) << told.out;
    EXPECT_EQ(CountOf("\tnot protected\t", told.out), 5U) << told.out;
    EXPECT_EQ(CountOf(" below it\n", told.out), 5U) << told.out;
}

TEST_F(CliProtected, Below_a_protected_file_nothing_is) {
    EXPECT_EQ(AskDatabase({Kernel + "\\a"}).exitCode, 1);
}

TEST_F(CliProtected, Paths_of_the_host_are_taken_to_the_databases_form) {
    std::string const file = HostFormIn(Prefix().Directory(), System + "\\KERNEL32.dll");
    Outcome const told = Ask({file, Prefix().Directory()});
    EXPECT_EQ(told.exitCode, 0) << told.err;
    EXPECT_EQ(told.out, file + "\tprotected\tWIN_FILES 101, Windows XP or later\n" +
                            Prefix().Directory() + "\tnot protected\t\n");
}

TEST_F(CliProtected, A_path_that_leads_through_a_link_is_followed) {
    TempFolder other;
    std::filesystem::path const folder =
        Prefix().Path() / "drive_c" / System.substr(3, System.find('\\', 3) - 3) / "system32";
    std::filesystem::create_directories(folder);
    WriteBytes(folder / "kernel32.dll", BytesOf("x"));
    std::error_code error;
    std::filesystem::create_directory_symlink(folder, other.Path() / "link", error);
    if (error) {
        GTEST_SKIP() << "symbolic links can't be made here: " << error.message();
    }
    Outcome const told = Ask({(other.Path() / "link" / "kernel32.dll").string()});
    EXPECT_EQ(told.exitCode, 0) << told.out << told.err;
}

TEST_F(CliProtected, A_path_that_is_too_long_for_the_library_is_an_error_of_its_own) {
    std::string const tooLong = "C:\\" + std::string(257, 'x');
    Outcome const told = AskDatabase({tooLong, Kernel, tooLong.substr(0, 259)});
    EXPECT_EQ(told.exitCode, 2);
    EXPECT_EQ(CountOf("\tprotected\t", told.out), 1U) << told.out;
    EXPECT_EQ(CountOf("\tnot protected\t", told.out), 1U) << told.out;
    EXPECT_NE(told.err.find(tooLong + ": it is 260 characters long"), std::string::npos)
        << told.err;
}

TEST_F(CliProtected, Json_says_the_same_and_fits_the_schema) {
    std::string const tooLong = "C:\\" + std::string(257, 'x');
    Outcome const told = AskDatabase({Kernel, System, tooLong, "--json"});
    EXPECT_EQ(told.exitCode, 2);
    ASSERT_TRUE(json::accept(told.out)) << told.out;
    json const answer = json::parse(told.out);
    EXPECT_EQ(WhyInvalid(Schema(), answer), "");
    EXPECT_EQ(answer["command"], "protected");
    EXPECT_EQ(answer["list"]["id"], 101);
    EXPECT_EQ(answer["list"]["ostype"], 7);
    json const &paths = answer["paths"];
    ASSERT_EQ(paths.size(), 3U);
    EXPECT_EQ(paths[0]["protected"], true);
    EXPECT_EQ(paths[0]["line"], "%SystemDir%\\kernel32.dll");
    EXPECT_EQ(paths[1]["protected"], false);
    EXPECT_GE(paths[1]["protectedBelow"], 1);
    EXPECT_TRUE(paths[2].contains("error"));
    EXPECT_FALSE(paths[2].contains("protected"));
}

TEST_F(CliProtected, The_family_of_a_prefix_says_which_list_answers) {
    if (qvlink::DecompressorFile == std::string("ziplib.dll")) {
        GTEST_SKIP() << "Windows is of one family";
    }
    WriteBytes(Prefix().Path() / "platform.ini", BytesOf("version=1.4.10\n"));
    json const old = json::parse(AskDatabase({"C:\\nowhere", "--json"}).out);
    EXPECT_EQ(old["list"],
              (json{{"type", "WIN_FILES"}, {"id", 103}, {"family", "Windows 98"}, {"ostype", 2}}));
    // No Windows has this version.
    WriteBytes(Prefix().Path() / "platform.ini", BytesOf("version=1.4.55\n"));
    Outcome const unknown = AskDatabase({Kernel, "--json"});
    EXPECT_EQ(unknown.exitCode, 1);
    EXPECT_NE(unknown.err.find("no list for this system's family"), std::string::npos)
        << unknown.err;
    json const answer = json::parse(unknown.out);
    EXPECT_EQ(WhyInvalid(Schema(), answer), "");
    EXPECT_FALSE(answer.contains("list"));
    EXPECT_EQ(answer["paths"][0]["protected"], false);
}

TEST_F(CliProtected, No_database_is_needed_and_none_is_made) {
    TempFolder home;
    Outcome const told =
        RunTool({"protected", "--db-paths", Kernel}, {HomeVariable(home.Directory())});
    EXPECT_EQ(told.exitCode, 0) << told.err;
    EXPECT_TRUE(std::filesystem::is_empty(home.Path()));
}

TEST_F(CliProtected, Without_the_decompressor_a_listed_file_is_told_as_such_but_not_as_protected) {
    TempFolder copy;
    std::filesystem::path const from =
        std::filesystem::path(FileBesideTest("qvlink")).parent_path();
    std::vector<std::filesystem::path> files{
        std::filesystem::path(ProgramPath()).extension() == ".exe" ? "qvlink.exe" : "qvlink",
        LibraryFileName()};
    for (auto const &entry : std::filesystem::directory_iterator(from)) {
        std::string const name = entry.path().filename().string();
        if (name.rfind("lib", 0) == 0 && entry.path().extension() == ".dll") {
            files.push_back(name);
        }
    }
    for (auto const &file : files) {
        std::filesystem::copy_file(from / file, copy.Path() / file);
    }
    std::string const tool = (copy.Path() / files[0]).string();
    EXPECT_EQ(RunProgram(tool, {"protected", "--db-paths", Kernel}), 1);
    std::string const module =
        LibraryFileName() == std::string("QVLinkDB.dll") ? "ziplib.dll" : "ziplib.dll.so";
    std::filesystem::copy_file(from / module, copy.Path() / module);
    EXPECT_EQ(RunProgram(tool, {"protected", "--db-paths", Kernel}), 0);
}

TEST(CliFindProtected, Only_objects_of_protected_paths_are_found) {
    TestGraph graph;
    graph.File(Kernel);
    graph.Asks(graph.Windows(System + "\\no.such"), "kernel32.dll");
    graph.File("C:\\elsewhere\\kernel32.dll");
    graph.Flush();
    auto const find = [&](std::vector<std::string> arguments) {
        arguments.insert(arguments.end(), {"--db", graph.Directory(), "--db-paths"});
        arguments.insert(arguments.begin(), "find");
        return RunTool(arguments);
    };
    Outcome const all = find({"kernel32.*"});
    EXPECT_EQ(CountOf("\n", all.out), 3U) << all.out;
    Outcome const found = find({"*", "--protected"});
    EXPECT_EQ(found.exitCode, 0) << found.err;
    EXPECT_EQ(found.out, Kernel + "\n") << "folders above aren't protected";
    Outcome const none = find({"no.*", "--protected"});
    EXPECT_EQ(none.exitCode, 1);
    EXPECT_NE(none.err.find("nothing protected is named no.*"), std::string::npos) << none.err;
    Outcome const answer = find({"kernel*", "--protected", "--json"});
    EXPECT_EQ(answer.exitCode, 0);
    json const parsed = json::parse(answer.out);
    EXPECT_EQ(WhyInvalid(Schema(), parsed), "");
    ASSERT_EQ(parsed["objects"].size(), 1U);
    EXPECT_EQ(parsed["objects"][0]["path"], Kernel);
}

// Checking and comparing lists.
#include "cli_graph.h"
#include "list_files.h"

#include "platform/process.h"

using nlohmann::json;

TEST_F(CliLists, A_sound_list_is_checked_in_silence_in_every_form) {
    ExpectAnswer(
        Lists({"check", Write("101.txt", FilesText), Write("110.txt", KeysText),
               Write("101.list", lists::Pack(FilesText)), WriteDll("a.dll"), WriteSo("a.so")}),
        0, "");
}

TEST_F(CliLists, A_check_tells_file_line_and_message) {
    std::string const text = Write("101.txt", std::string(FilesText) + "kernel32.dll\r\n");
    Outcome const told = Lists({"check", text});
    EXPECT_EQ(told.exitCode, 1);
    EXPECT_EQ(told.out.rfind(text + ":4: ", 0), 0U) << told.out;
    EXPECT_EQ(told.out.find("note: "), std::string::npos) << told.out;
}

TEST_F(CliLists, Notes_are_told_and_are_no_errors) {
    std::string const text = Write("105.txt", std::string(FilesText) + "%SystemDir%\\last.xml");
    Outcome const told = Lists({"check", text});
    EXPECT_EQ(told.exitCode, 0);
    EXPECT_EQ(told.out.rfind(text + ":4: note: ", 0), 0U) << told.out;
}

TEST_F(CliLists, With_v_a_check_tells_of_sound_lists_too) {
    std::string const text = Write("101.txt", FilesText);
    ExpectAnswer(Lists({"check", "-v", text}), 0, text + ": 3 lines, sound\n");
}

TEST_F(CliLists, A_list_of_a_library_is_told_with_its_id) {
    std::string const dll = WriteDll("a.dll", "%SystemDir%\\a\r\nbad\r\n");
    Outcome const told = Lists({"check", dll});
    EXPECT_EQ(told.exitCode, 1);
    EXPECT_EQ(told.out.rfind(dll + "(101):2: ", 0), 0U) << told.out;
    EXPECT_EQ(Lists({"check", dll, "--id", "110"}).exitCode, 0);
    EXPECT_EQ(Lists({"check", dll, "--id", "101"}).exitCode, 1);
}

TEST_F(CliLists, What_is_no_list_or_damaged_has_an_error) {
    std::string const other = Write("other.txt", "[section]\r\n");
    Outcome const told = Lists({"check", other});
    EXPECT_EQ(told.exitCode, 1);
    EXPECT_EQ(told.out.rfind(other + ":1: ", 0), 0U) << told.out;
    EXPECT_EQ(Lists({"check", Write("empty", "")}).exitCode, 1);
    std::string const damaged =
        Write("damaged.so", libraries::SharedLibrary({{"WIN_FILES", 101, "no stored list"}}));
    EXPECT_EQ(Lists({"check", damaged}).exitCode, 1);
}

TEST_F(CliLists, A_file_that_can_not_be_read_is_trouble_and_the_others_are_checked) {
    std::string const text = Write("101.txt", FilesText);
    Outcome const told = Lists({"check", "-v", Path("none"), text});
    EXPECT_EQ(told.exitCode, 2);
    EXPECT_EQ(told.out, text + ": 3 lines, sound\n");
    EXPECT_NE(told.err.find("cannot read " + Path("none")), std::string::npos) << told.err;
}

TEST_F(CliLists, A_library_without_that_list_is_trouble) {
    Outcome const told = Lists({"check", WriteSo("a.so"), "--id", "102"});
    ExpectTold(told, 2, "has no list 102");
    EXPECT_NE(told.err.find("WIN_FILES 101, WIN_REGS 110"), std::string::npos) << told.err;
    ExpectTold(Lists({"check", Write("b.dll", libraries::Dll({}))}), 2, "has no lists");
}

TEST_F(CliLists, A_check_in_json_fits_the_schema) {
    std::string const dll = WriteDll("a.dll", "%SystemDir%\\a\r\nbad\r\n");
    json const answer = Json({"check", dll, Write("t", KeysText)}, 1);
    EXPECT_EQ(WhyInvalid(Schema(), answer), "");
    EXPECT_EQ(answer["command"], "lists check");
    ASSERT_EQ(answer["lists"].size(), 3U);
    EXPECT_EQ(answer["lists"][0]["id"], 101);
    EXPECT_EQ(answer["lists"][0]["sound"], false);
    EXPECT_EQ(answer["lists"][0]["findings"][0]["line"], 2);
    EXPECT_EQ(answer["lists"][2]["kind"], "keys");
    EXPECT_EQ(answer["lists"][2]["sound"], true);
}

TEST_F(CliLists, Lists_of_all_forms_are_compared_by_their_entries) {
    std::string const text = Write("101.txt", FilesText);
    std::string const other = Write("other.txt", "%SYSTEMDIR%\\Kernel32.DLL\r\n"
                                                 "%WindowsDir%\\\\win.ini\r\n"
                                                 "%SystemDir%\\drivers\\etc\\hosts\r\n");
    for (std::string const &file :
         {other, Write("101.list", lists::Pack(FilesText)), WriteDll("a.dll"), WriteSo("a.so")}) {
        ExpectAnswer(Lists({"diff", text, file, "--id", "101"}), 0, "");
        ExpectAnswer(Lists({"diff", file, text, "--id", "101"}), 0, "");
    }
}

TEST_F(CliLists, Differences_are_told_with_minus_and_plus) {
    std::string const a = Write("a", FilesText);
    std::string const b = Write("b", "%SystemDir%\\kernel32.dll\r\n%SystemDir%\\user32.dll\r\n"
                                     "%WindowsDir%\\win.ini\r\n");
    ExpectAnswer(Lists({"diff", a, b}), 1,
                 "-%SystemDir%\\drivers\\etc\\hosts\n+%SystemDir%\\user32.dll\n");
}

TEST_F(CliLists, Two_libraries_are_compared_in_all_that_both_have) {
    std::string const dll = WriteDll("a.dll");
    ExpectAnswer(Lists({"diff", dll, WriteSo("a.so")}), 0, "");
    std::string const so =
        WriteSo("b.so", "%SystemDir%\\kernel32.dll\r\n%WindowsDir%\\win.ini\r\n");
    ExpectAnswer(Lists({"diff", dll, so}), 1, "WIN_FILES 101\n-%SystemDir%\\drivers\\etc\\hosts\n");
    ExpectAnswer(Lists({"diff", dll, so, "--id", "101"}), 1, "-%SystemDir%\\drivers\\etc\\hosts\n");
    ExpectAnswer(Lists({"diff", dll, so, "--id", "110"}), 0, "");
}

TEST_F(CliLists, A_list_that_only_one_library_has_is_told) {
    std::string const one =
        Write("one.dll", libraries::Dll({{"WIN_FILES", 101, lists::Pack(FilesText)}}));
    Outcome const told = Lists({"diff", one, WriteSo("a.so")});
    EXPECT_EQ(told.exitCode, 0);
    EXPECT_EQ(told.out, "");
    EXPECT_NE(told.err.find("a.so(110) has nothing to be compared with"), std::string::npos)
        << told.err;
    std::string const keys =
        Write("keys.so", libraries::SharedLibrary({{"WIN_REGS", 110, lists::Pack(KeysText)}}));
    ExpectTold(Lists({"diff", one, keys}), 2, "no list in common");
}

TEST_F(CliLists, What_can_not_be_compared_is_trouble) {
    std::string const text = Write("101.txt", FilesText);
    ExpectTold(Lists({"diff", text, WriteDll("a.dll")}), 2, "--id");
    ExpectTold(Lists({"diff", text, Path("none")}), 2, "cannot read");
    ExpectTold(Lists({"diff", text, Write("110.txt", KeysText)}), 2, "keys");
    ExpectTold(Lists({"diff", text, Write("other", "x\r\n")}), 2, "neither");
    ExpectTold(Lists({"diff", text, WriteDll("b.dll"), "--id", "102"}), 2, "has no list 102");
}

TEST_F(CliLists, A_comparison_in_json_fits_the_schema) {
    std::string const other = WriteSo("b.so", "%SystemDir%\\kernel32.dll\r\n");
    json const answer = Json({"diff", WriteDll("a.dll"), other}, 1);
    EXPECT_EQ(WhyInvalid(Schema(), answer), "");
    EXPECT_EQ(answer["command"], "lists diff");
    ASSERT_EQ(answer["lists"].size(), 2U);
    EXPECT_EQ(answer["lists"][0]["id"], 101);
    ASSERT_EQ(answer["lists"][0]["onlyInFirst"].size(), 2U);
    EXPECT_EQ(answer["lists"][0]["onlyInFirst"][1]["entry"], "%WindowsDir%\\win.ini");
    EXPECT_TRUE(answer["lists"][1]["onlyInFirst"].empty());
}

TEST_F(CliLists, The_built_library_has_ten_sound_lists) {
    std::string const library = FileBesideTest(LibraryFileName());
    json const answer = Json({"check", library}, 0);
    std::vector<int> ids;
    for (json const &list : answer["lists"]) {
        ids.push_back(list["id"]);
    }
    EXPECT_EQ(ids, (std::vector<int>{101, 102, 103, 104, 105, 110, 111, 112, 113, 114}));
    ExpectAnswer(Lists({"diff", library, library}), 0, "");
    Outcome const text = Lists({"unpack", library, "--id", "101"});
    EXPECT_EQ(text.exitCode, 0) << text.err;
    EXPECT_NE(text.out.find("%SystemDir%\\kernel32.dll\r\n"), std::string::npos);
}

// Making, packing and unpacking lists, and how the commands are called.
#include "cli_graph.h"
#include "list_files.h"

TEST_F(CliLists, A_text_that_is_packed_is_stored_as_the_library_reads_it) {
    std::string const text = Write("101.txt", FilesText);
    ExpectAnswer(Lists({"pack", text, "-o", Path("101.list")}), 0, "");
    EXPECT_EQ(lists::Unpack(Read("101.list")), FilesText);
    EXPECT_EQ(FileCount(), 2U);
}

TEST_F(CliLists, A_stored_list_is_unpacked_byte_by_byte) {
    std::string const stored = Write("110.list", lists::Pack(KeysText));
    ExpectAnswer(Lists({"unpack", stored}), 0, KeysText);
    ExpectAnswer(Lists({"unpack", stored, "-o", Path("110.txt")}), 0, "");
    EXPECT_EQ(Read("110.txt"), KeysText);
}

TEST_F(CliLists, A_list_is_unpacked_from_a_library_of_either_system) {
    for (std::string const &library : {WriteDll("a.dll"), WriteSo("a.so")}) {
        ExpectAnswer(Lists({"unpack", library, "--id", "101"}), 0, FilesText);
        ExpectAnswer(Lists({"unpack", library, "--id", "110"}), 0, KeysText);
        ExpectTold(Lists({"unpack", library}), 2, "WIN_FILES 101, WIN_REGS 110");
        ExpectTold(Lists({"unpack", library, "--id", "111"}), 2, "has no list 111");
    }
}

TEST_F(CliLists, A_library_that_has_one_list_needs_no_id) {
    std::string const library =
        Write("a.so", libraries::SharedLibrary({{"WIN_REGS", 110, lists::Pack(KeysText)}}));
    ExpectAnswer(Lists({"unpack", library}), 0, KeysText);
}

TEST_F(CliLists, What_can_not_be_unpacked_is_a_failure) {
    ExpectTold(Lists({"unpack", Write("text", FilesText)}), 2, "neither a stored list");
    ExpectTold(Lists({"unpack", Path("none")}), 2, "cannot read");
    std::string const damaged =
        Write("a.so", libraries::SharedLibrary({{"WIN_FILES", 101, "no stored list"}}));
    ExpectTold(Lists({"unpack", damaged, "--id", "101", "-o", Path("out")}), 2, "is damaged");
    EXPECT_EQ(FileCount(), 2U) << "nothing is written";
}

TEST_F(CliLists, A_text_that_the_library_would_read_wrongly_is_not_packed) {
    std::string const text = Write("101.txt", "%SystemDir%\\a\r\nbad\r\n");
    std::string const old = Write("101.list", "old");
    ExpectTold(Lists({"pack", text, "-o", old}), 2, text + ":2: ");
    ExpectTold(Lists({"pack", Write("other", "x\r\n"), "-o", old}), 2, "is no list");
    EXPECT_EQ(Read("101.list"), "old");
}

TEST_F(CliLists, Only_texts_are_packed) {
    ExpectTold(Lists({"pack", WriteDll("a.dll"), "-o", Path("b")}), 2, "is a library");
    ExpectTold(Lists({"pack", Write("a", lists::Pack(FilesText)), "-o", Path("b")}), 2,
               "is stored already");
    ExpectTold(Lists({"pack", Write("c", FilesText)}), 2, "--output");
}

TEST_F(CliLists, A_file_is_replaced_whole) {
    std::string const text = Write("text", FilesText);
    Write("out", std::string(100000, 'x'));
    ExpectAnswer(Lists({"pack", text, "-o", Path("out")}), 0, "");
    EXPECT_EQ(Read("out"), lists::Pack(FilesText));
    EXPECT_EQ(FileCount(), 2U);
}

TEST_F(CliLists, A_file_that_can_not_be_written_is_a_failure) {
    std::string const text = Write("text", FilesText);
    ExpectTold(Lists({"pack", text, "-o", Path("no/such/folder")}), 2, "cannot write");
    std::filesystem::create_directory(Path("folder"));
    ExpectTold(Lists({"pack", text, "-o", Path("folder")}), 2, "cannot write");
    EXPECT_EQ(FileCount(), 2U) << "nothing is left behind";
}

TEST_F(CliLists, Files_are_captured_from_a_prefix) {
    std::filesystem::path const windows = Path("prefix/drive_c/windows");
    std::filesystem::create_directories(windows / "system32" / "drivers");
    WriteBytes(windows / "win.ini", BytesOf("x"));
    WriteBytes(windows / "system32" / "a.dll", BytesOf("x"));
    WriteBytes(windows / "system32" / "drivers" / "b.sys", BytesOf("x"));
    std::vector<std::string> const capture{"capture", "files", "--from", Path("prefix")};
    ExpectAnswer(Lists(capture), 0,
                 "%SystemDir%\\a.dll\r\n%SystemDir%\\drivers\\b.sys\r\n%WindowsDir%\\win.ini\r\n");
    std::vector<std::string> without = capture;
    without.insert(without.end(), {"--without", "*\\DRIVERS", "--without", "%WindowsDir%\\?in.ini",
                                   "-o", Path("101.txt")});
    ExpectAnswer(Lists(without), 0, "");
    EXPECT_EQ(Read("101.txt"), "%SystemDir%\\a.dll\r\n");
    without.insert(without.end(), {"--without", "*"});
    ExpectTold(Lists(without), 1, "no files to list");
    EXPECT_EQ(Read("101.txt"), "%SystemDir%\\a.dll\r\n");
}

TEST_F(CliLists, A_folder_without_a_system_can_not_be_captured_from) {
    EXPECT_EQ(Lists({"capture", "files", "--from", Path("none")}).exitCode, 2);
}

TEST_F(CliLists, Bad_use_is_told_with_the_way_to_the_help) {
    ExpectTold(Lists({}), 2, "qvlink lists --help");
    ExpectTold(Lists({"frobnicate"}), 2, "there is no command frobnicate");
    ExpectTold(Lists({"check"}), 2, "qvlink lists check --help");
    ExpectTold(Lists({"diff", "a"}), 2, "qvlink lists diff --help");
    ExpectTold(Lists({"capture"}), 2, "KIND");
    ExpectTold(Lists({"capture", "folders"}), 2, "folders");
    ExpectTold(Lists({"unpack", "a", "--id", "x"}), 2, "x");
    ExpectTold(Lists({"unpack", "a", "--json"}), 2, "--json");
}

TEST_F(CliLists, Every_command_of_lists_has_help_with_examples) {
    for (std::string const command : {"capture", "pack", "unpack", "check", "diff"}) {
        Outcome const help = Lists({command, "--help"});
        EXPECT_EQ(help.exitCode, 0) << command;
        EXPECT_NE(help.out.find("qvlink lists " + command), std::string::npos) << help.out;
        EXPECT_NE(help.out.find("Examples:"), std::string::npos) << command;
    }
}

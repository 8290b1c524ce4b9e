// Registration files into the registry and out of it, by the real program.
#include "schema.h"
#include "tool.h"

#include "temp_folder.h"

#include <fstream>
#include <gtest/gtest.h>

using nlohmann::json;

namespace {

constexpr char Head[] = "Windows Registry Editor Version 5.00\r\n";
constexpr char Key[] = "HKEY_CURRENT_USER\\Software\\QVLinkDB tool tests";
constexpr char ShortKey[] = "HKCU\\Software\\QVLinkDB tool tests";

// A registry of the test's own on Linux; elsewhere a key of the user's that is removed again.
class CliReg : public testing::Test {
protected:
    CliReg() { Remove(); }
    ~CliReg() override { Remove(); }

    Outcome Reg(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), "reg");
        return RunTool(arguments, {{"QVPREFIX", Path("prefix")}});
    }
    json Json(std::vector<std::string> arguments, long exitCode) const {
        arguments.emplace_back("--json");
        Outcome const told = Reg(arguments);
        EXPECT_EQ(told.exitCode, exitCode) << told.err;
        EXPECT_TRUE(json::accept(told.out)) << told.out;
        json answer = json::parse(told.out, nullptr, false);
        std::ifstream schema(FileBesideTest("qvlink.schema.json"));
        EXPECT_EQ(WhyInvalid(json::parse(schema), answer), "");
        return answer;
    }
    std::string Path(std::string const &name) const { return (m_folder.Path() / name).string(); }
    std::string Write(std::string const &name, std::string const &bytes) const {
        std::filesystem::create_directories((m_folder.Path() / name).parent_path());
        WriteBytes(m_folder.Path() / name, BytesOf(bytes));
        return Path(name);
    }
    // A file of version 5.00 with these lines below the test's key.
    std::string WriteBelow(std::string const &name, std::string const &lines) const {
        return Write(name, Head + std::string("[") + Key + "]\r\n" + lines);
    }
    // What the export of the test's key says, in ASCII.
    std::string Exported(std::string const &form = "5") const {
        Outcome const told = Reg({"export", ShortKey, Path("out"), "--form", form});
        EXPECT_EQ(told.exitCode, 0) << told.err;
        Bytes const bytes = ReadBytes(m_folder.Path() / "out");
        bool const isWide = form == "5";
        std::string text;
        for (std::size_t i = isWide ? 2 : 0; i < bytes.size(); i += isWide ? 2 : 1) {
            text += static_cast<char>(bytes[i]);
        }
        return text;
    }

private:
    void Remove() const {
        Reg({"import", Write("remove.reg", std::string("REGEDIT4\r\n[-") + Key + "]\r\n")});
    }

    TempFolder m_folder;
};

bool Has(std::string const &text, std::string const &piece) {
    return text.find(piece) != std::string::npos;
}

} // namespace

TEST_F(CliReg, What_goes_in_comes_out) {
    std::string const values =
        "@=\"a \\\"b\\\"\"\r\n\"bytes\"=hex:01,02\r\n"
        "\"number\"=dword:1234abcd\r\n\"texts\"=hex(7):61,00,00,00,00,00\r\n";
    std::string const below = std::string("\r\n[") + Key + "\\below]\r\n\"x\"=\"\"\r\n";
    std::string const file = WriteBelow("in.reg", values + below);
    Outcome const told = Reg({"import", file});
    EXPECT_EQ(told.exitCode, 0) << told.err;
    EXPECT_EQ(told.out, file + ": 2 keys, 5 values\n");
    EXPECT_EQ(told.err, "");
    EXPECT_EQ(Exported(), Head + std::string("\r\n[") + Key + "]\r\n" + values + below);
    EXPECT_EQ(Exported("4"), std::string("REGEDIT4\r\n\r\n[") + Key +
                                 "]\r\n@=\"a \\\"b\\\"\"\r\n\"bytes\"=hex:01,02\r\n"
                                 "\"number\"=dword:1234abcd\r\n\"texts\"=hex(7):61,00,00\r\n" +
                                 below);
}

TEST_F(CliReg, Without_a_file_the_export_goes_to_standard_output) {
    Reg({"import", WriteBelow("in.reg", "\"x\"=\"a\"\r\n")});
    Outcome const told = Reg({"export", Key, "--form", "4"});
    EXPECT_EQ(told.exitCode, 0) << told.err;
    EXPECT_EQ(told.out, std::string("REGEDIT4\r\n\r\n[") + Key + "]\r\n\"x\"=\"a\"\r\n");
    Outcome const wide = Reg({"export", Key});
    EXPECT_EQ(wide.out.substr(0, 4), std::string("\xff\xfeW\0", 4));
}

TEST_F(CliReg, Removals_are_told) {
    Reg({"import", WriteBelow("in.reg", std::string("\"x\"=\"a\"\r\n[") + Key + "\\below]\r\n")});
    std::string const file =
        WriteBelow("out.reg", std::string("\"x\"=-\r\n[-") + Key + "\\below]\r\n");
    EXPECT_EQ(Reg({"import", file}).out, file + ": 1 key, 0 values; removed: 1 key, 1 value\n");
    EXPECT_EQ(Exported(), Head + std::string("\r\n[") + Key + "]\r\n");
}

TEST_F(CliReg, Bad_lines_are_told_with_their_numbers_and_the_rest_goes_in) {
    std::string const file = WriteBelow("in.reg", "rubbish\r\n\"x\"=\"a\"\r\n\"y\"=dword:z\r\n");
    Outcome const told = Reg({"import", file});
    EXPECT_EQ(told.exitCode, 1);
    EXPECT_EQ(told.out, file + ": 1 key, 1 value\n");
    EXPECT_TRUE(Has(told.err, file + ":3: ")) << told.err;
    EXPECT_TRUE(Has(told.err, file + ":5: ")) << told.err;
    EXPECT_TRUE(Has(Exported(), "\"x\"=\"a\"\r\n"));
}

TEST_F(CliReg, Of_many_bad_lines_twenty_are_told_unless_all_are_asked_for) {
    std::string lines;
    for (int i = 0; i < 30; ++i) {
        lines += "\"x\"=rubbish\r\n";
    }
    std::string const file = WriteBelow("in.reg", lines);
    Outcome const few = Reg({"import", file});
    EXPECT_TRUE(Has(few.err, file + ":22: ") && !Has(few.err, file + ":23: ")) << few.err;
    EXPECT_TRUE(Has(few.err, ": 10 more")) << few.err;
    Outcome const all = Reg({"import", "-v", file});
    EXPECT_TRUE(Has(all.err, file + ":32: ") && !Has(all.err, " more")) << all.err;
}

TEST_F(CliReg, A_file_that_is_none_is_trouble_and_the_others_go_in) {
    std::string const other = Write("other.reg", "[HKCU\\A]\r\n");
    std::string const file = WriteBelow("in.reg", "\"x\"=\"a\"\r\n");
    Outcome const told = Reg({"import", other, Path("none"), file});
    EXPECT_EQ(told.exitCode, 2);
    EXPECT_EQ(told.out, file + ": 1 key, 1 value\n");
    EXPECT_TRUE(Has(told.err, other + ": not a registration file")) << told.err;
    EXPECT_TRUE(Has(told.err, Path("none") + ": cannot read it")) << told.err;
}

TEST_F(CliReg, A_prefix_is_brought_in_whole) {
    std::string const head = "WINE REGISTRY Version 2\n;; All keys relative to REGISTRY\\\\";
    Write("wine/system.reg", head + "Machine\n\n[M] 1\n\"x\"=str(2):\"%a%\"\n");
    Write("wine/userdef.reg", head + "User\\\\.Default\n\n[D] 1\n");
    Write("wine/user.reg", head + "User\\\\S-1-5-21-0-0-0-1000\n\n[U\\\\V] 1\n@=\"\\x20ac\"\n");
    Outcome const told = Reg({"import", Path("wine"), "--into", ShortKey});
    EXPECT_EQ(told.exitCode, 0) << told.err;
    std::string const text = Exported();
    for (const char *const piece :
         {"\\M]\r\n\"x\"=hex(2):25,00,61,00,25,00,00,00\r\n", "\\D]\r\n", "\\U\\V]\r\n@=\""}) {
        EXPECT_TRUE(Has(text, Key + std::string(piece))) << piece;
    }
    json const answer = Json({"import", Path("wine"), "--into", ShortKey}, 0);
    ASSERT_EQ(answer["files"].size(), 3U);
    for (json const &file : answer["files"]) {
        EXPECT_EQ(file["form"], "wine");
        EXPECT_EQ(file["root"], ShortKey);
        EXPECT_EQ(file["keys"], 1);
    }
}

TEST_F(CliReg, Texts_of_REGEDIT4_are_of_the_page_that_is_named) {
    std::string const file =
        Write("in.reg", std::string("REGEDIT4\r\n[") + Key + "]\r\n\"x\"=\"\x80\"\r\n");
    EXPECT_EQ(Reg({"import", file, "--code-page", "1252"}).exitCode, 0);
    Outcome const told = Reg({"export", ShortKey, "--form", "4", "--code-page", "65001"});
    EXPECT_EQ(told.out, std::string("REGEDIT4\r\n\r\n[") + Key + "]\r\n\"x\"=\"\xE2\x82\xAC\"\r\n");
    Outcome const lacking = Reg({"export", ShortKey, "--form", "4", "--code-page", "932"});
    EXPECT_EQ(lacking.exitCode, 1);
    EXPECT_TRUE(Has(lacking.err, "left out: " + std::string(ShortKey) + ": x: ")) << lacking.err;
}

TEST_F(CliReg, Answers_in_json_fit_the_schema) {
    std::string const file =
        WriteBelow("in.reg", "\"x\"=\"a\"\r\nrubbish\r\n\"y\"=-\r\n[-HKEY_CURRENT_USER]\r\n");
    json const imported = Json({"import", file, Path("none")}, 2);
    EXPECT_EQ(imported["command"], "reg import");
    ASSERT_EQ(imported["files"].size(), 2U);
    EXPECT_EQ(imported["files"][0]["form"], "5");
    EXPECT_EQ(imported["files"][0]["values"], 1);
    EXPECT_EQ(imported["files"][0]["removedValues"], 0);
    ASSERT_EQ(imported["files"][0]["faults"].size(), 2U);
    EXPECT_EQ(imported["files"][0]["faults"][0]["line"], 4);
    EXPECT_EQ(imported["files"][0]["faults"][1]["refused"], false);
    EXPECT_TRUE(imported["files"][1].contains("error"));
    json const exported = Json({"export", ShortKey, Path("out"), "--form", "4"}, 0);
    EXPECT_EQ(exported["form"], "4");
    EXPECT_EQ(exported["keys"], 1);
    EXPECT_EQ(exported["values"], 1);
    EXPECT_EQ(exported["file"], Path("out"));
    EXPECT_TRUE(exported["leftOut"].empty());
}

TEST_F(CliReg, A_key_that_is_not_there_is_told_with_exit_code_1) {
    Outcome const told = Reg({"export", ShortKey, Path("out")});
    EXPECT_EQ(told.exitCode, 1);
    EXPECT_TRUE(Has(told.err, "there is no key " + std::string(ShortKey))) << told.err;
    EXPECT_FALSE(std::filesystem::exists(Path("out")));
}

TEST_F(CliReg, Bad_use_is_told) {
    std::string const file = WriteBelow("in.reg", "");
    for (auto const &arguments :
         std::vector<std::vector<std::string>>{{},
                                               {"import"},
                                               {"export"},
                                               {"export", "Software"},
                                               {"export", "HKCU\\a\\\\b"},
                                               {"export", ShortKey, "--form", "3"},
                                               {"export", ShortKey, "--json"},
                                               {"import", file, "--into", "Software"},
                                               {"import", file, "--code-page", "64999"},
                                               {"import", file, "--code-page", "x"}}) {
        Outcome const told = Reg(arguments);
        EXPECT_EQ(told.exitCode, 2) << told.out;
        EXPECT_EQ(told.out, "");
        EXPECT_NE(told.err, "");
    }
}

TEST_F(CliReg, Each_has_help_with_examples) {
    for (std::string const command : {"import", "export"}) {
        Outcome const told = Reg({command, "--help"});
        EXPECT_EQ(told.exitCode, 0);
        EXPECT_TRUE(Has(told.out, "qvlink reg " + command)) << told.out;
    }
}

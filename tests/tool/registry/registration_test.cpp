// The forms in which registries are exchanged: REGEDIT4 and version 5.00.
#include "registration_text.h"

#include <gtest/gtest.h>

using qvlink::RegistrationForm;

namespace {

RegistrationForm FormOf(std::string const &file) {
    TestPage const page;
    return qvlink::RegistrationReader(file, page).Form();
}

// What a single value with this data is read as: type and data.
std::string DataOf(std::string const &data) {
    Told const told = ReadBelow("\"x\"=" + data + "\r\n");
    return told.size() == 1 ? told[0] : std::to_string(told.size()) + " entries";
}

std::string AnsiDataOf(std::string const &data) {
    Told const told = Read(Ansi("[HKCU\\A]\r\n\"x\"=" + data + "\r\n"));
    return told.size() == 2 ? told[1] : std::to_string(told.size()) + " entries";
}

bool IsFault(std::string const &told, std::string const &line) {
    return told.rfind(line + " ! ", 0) == 0;
}

} // namespace

TEST(RegistrationForms, The_first_line_and_the_mark_tell_them) {
    EXPECT_EQ(RegistrationForm::ansi, FormOf("REGEDIT4\r\n"));
    EXPECT_EQ(RegistrationForm::ansi, FormOf("REGEDIT4"));
    EXPECT_EQ(RegistrationForm::ansi, FormOf("REGEDIT4  \n\n"));
    EXPECT_EQ(RegistrationForm::unicode, FormOf(Unicode("")));
    EXPECT_EQ(RegistrationForm::unicode, FormOf(Narrow("")));
    EXPECT_EQ(RegistrationForm::unicode, FormOf("\xef\xbb\xbf" + Narrow("")));
    EXPECT_EQ(RegistrationForm::ansi, FormOf("\xff\xfe" + Wide("REGEDIT4\n")));
    EXPECT_EQ(RegistrationForm::prefix, FormOf(OfPrefix("")));
}

TEST(RegistrationForms, Anything_else_is_none_and_nothing_is_read) {
    for (const char *const text :
         {"", "\n", "REGEDIT\n[HKEY_CURRENT_USER\\A]\n", "REGEDIT5\n[HKCU\\A]\n",
          "\nREGEDIT4\n[HKCU\\A]\n", "Windows Registry Editor Version 6.00\n[HKCU\\A]\n",
          "WINE REGISTRY Version 1\n[A]\n", "\xff\xfe", "\xff\xfeR", "[HKCU\\A]\n"}) {
        EXPECT_EQ(RegistrationForm::none, FormOf(text)) << text;
        EXPECT_EQ(Told{}, Read(text)) << text;
    }
}

TEST(RegistrationForms, Lines_end_with_either_end_or_with_the_file) {
    Told const wanted{"2 [HKCU\\A]", "3 x=1:61000000"};
    EXPECT_EQ(wanted, Read(Unicode("[HKCU\\A]\r\n\"x\"=\"a\"\r\n")));
    EXPECT_EQ(wanted, Read(Unicode("[HKCU\\A]\n\"x\"=\"a\"\n")));
    EXPECT_EQ(wanted, Read(Unicode("[HKCU\\A]\n\"x\"=\"a\"")));
    EXPECT_EQ(wanted, Read(Ansi("[HKCU\\A]\n\"x\"=\"a\"")));
    EXPECT_EQ(wanted, Read(Narrow("[HKCU\\A]\r\n\"x\"=\"a\"")));
}

TEST(RegistrationForms, A_unit_with_a_byte_of_a_line_end_is_none) {
    // U+0A0D, U+0D0A and U+010A.
    std::string const file = Unicode("[HKCU\\A]\n\"x\"=\"") +
                             std::string("\x0d\x0a\x0a\x0d\x0a\x01", 6) + Wide("\"\n\"y\"=\"b\"\n");
    EXPECT_EQ((Told{"2 [HKCU\\A]", "3 x=1:0d0a0a0d0a010000", "4 y=1:62000000"}), Read(file));
}

TEST(RegistrationForms, Version_5_without_a_mark_is_utf8_if_all_of_it_is) {
    EXPECT_EQ((Told{"2 [HKCU\\\xC3\xA4]", "3 x=1:e4000000"}),
              Read(Narrow("[HKCU\\\xC3\xA4]\n\"x\"=\"\xC3\xA4\"\n")));
    EXPECT_EQ((Told{"2 [HKCU\\\xC3\xA4]"}), Read(Narrow("[HKCU\\\xE4]\n")));
}

TEST(RegistrationForms, Version_5_has_its_bytes_in_units_however_it_is_written) {
    for (std::string const &file : {Unicode("[HKCU\\A]\n\"x\"=hex(2):61,00,00,00\n"),
                                    Narrow("[HKCU\\A]\n\"x\"=hex(2):61,00,00,00\n")}) {
        EXPECT_EQ((Told{"2 [HKCU\\A]", "3 x=2:61000000"}), Read(file));
    }
}

TEST(RegistrationForms, Half_a_unit_at_the_end_is_no_text) {
    Told const told = Read(Unicode("[HKCU\\A]\n\"x\"=\"a\"") + "b");
    ASSERT_EQ(2u, told.size());
    EXPECT_TRUE(IsFault(told[1], "3")) << told[1];
}

TEST(RegistrationKeys, Roots_are_known_by_both_names_in_any_case) {
    for (const char *const root : {"HKEY_LOCAL_MACHINE", "HKLM", "hklm", "Hkey_Local_Machine"}) {
        EXPECT_EQ(Told{"2 [HKLM\\A\\b c]"}, Read(Unicode("[" + std::string(root) + "\\A\\b c]\n")));
    }
    EXPECT_EQ((Told{"2 [HKCU\\A]", "3 [HKCR\\A]", "4 [HKU\\A]", "5 [HKCC\\A]", "6 [HKCU]"}),
              Read(Unicode("[HKEY_CURRENT_USER\\A]\n[HKEY_CLASSES_ROOT\\A]\n[HKEY_USERS\\A]\n"
                           "[HKEY_CURRENT_CONFIG\\A]\n[HKEY_CURRENT_USER]\n")));
}

TEST(RegistrationKeys, What_begins_with_no_root_is_a_fault_with_all_that_is_below_it) {
    for (const char *const key : {"Software", "", "HKXX\\A", "HKLMX\\A", " HKLM\\A", "\\HKLM\\A"}) {
        Told const told =
            Read(Unicode("[HKCU\\A]\n[" + std::string(key) +
                         "]\n\"x\"=\"1\"\n\"y\"=hex:01,\\\n  02\nrubbish\n[HKCU\\B]\n"));
        ASSERT_EQ(3u, told.size()) << key;
        EXPECT_EQ(0u, told[1].rfind("3 [! ", 0)) << told[1];
        EXPECT_EQ("8 [HKCU\\B]", told[2]);
    }
}

TEST(RegistrationKeys, A_key_ends_at_its_last_bracket_and_the_rest_is_nothing) {
    EXPECT_EQ(Told{"2 [HKCU\\a]b]"}, Read(Unicode("[HKCU\\a]b]\n")));
    EXPECT_EQ(Told{"2 [HKCU\\[a]]"}, Read(Unicode("[HKCU\\[a]] ; x\n")));
    EXPECT_EQ(Told{"2 [HKCU\\a]"}, Read(Unicode("  \t[HKCU\\a] 12345\n")));
    EXPECT_EQ(Told{"2 [HKCU\\a]"}, Read(Unicode("[HKCU\\a\\]\n")));
}

TEST(RegistrationKeys, Without_a_bracket_it_is_a_fault) {
    Told const told = Read(Unicode("[HKCU\\a\n\"x\"=\"1\"\n"));
    ASSERT_EQ(1u, told.size());
    EXPECT_EQ(0u, told[0].rfind("2 [! ", 0)) << told[0];
}

TEST(RegistrationKeys, A_minus_removes_the_key) {
    EXPECT_EQ((Told{"2 -[HKCU\\A]", "3 [HKCU\\-A]"}),
              Read(Unicode("[-HKEY_CURRENT_USER\\A]\n[HKCU\\-A]\n")));
}

TEST(RegistrationKeys, A_value_below_no_key_is_a_fault_once) {
    for (const char *const above : {"", "[-HKCU\\A]\n"}) {
        Told told = Read(Unicode(above + std::string("\"x\"=\"1\"\n@=dword:1\n[HKCU\\B]\n")));
        ASSERT_LE(2u, told.size());
        EXPECT_EQ("[HKCU\\B]", told.back().substr(2));
        EXPECT_TRUE(IsFault(told[told.size() - 2], *above ? "3" : "2")) << told[told.size() - 2];
        EXPECT_EQ(*above ? 3u : 2u, told.size());
    }
}

TEST(RegistrationKeys, A_name_of_half_a_pair_is_no_text) {
    std::string const file =
        Unicode("[HKCU\\") + std::string("\x3d\xd8", 2) + Wide("]\n[HKCU\\B]\n");
    Told const told = Read(file);
    ASSERT_EQ(2u, told.size());
    EXPECT_EQ(0u, told[0].rfind("2 [! ", 0)) << told[0];
}

TEST(RegistrationLines, Comments_and_empty_lines_say_nothing) {
    EXPECT_EQ((Told{"6 [HKCU\\A]", "9 x=1:61000000"}),
              Read(Unicode("\n; comment\n  ; [HKCU\\B]\n\t\n[HKCU\\A] ; a\n;\"y\"=\"1\"\n\n"
                           "\"x\"=\"a\" ; \"b\"\n")));
}

TEST(RegistrationLines, Other_lines_are_faults_and_the_rest_goes_on) {
    for (const char *const line : {"rubbish", "x=\"1\"", "'x'=\"1\"", "=", "]", "#link", "-"}) {
        Told const told = ReadBelow(std::string(line) + "\n\"x\"=\"a\"\n");
        ASSERT_EQ(2u, told.size()) << line;
        EXPECT_TRUE(IsFault(told[0], "3")) << told[0];
        EXPECT_EQ("4 x=1:61000000", told[1]);
    }
}

TEST(RegistrationNames, They_are_quoted_and_escaped) {
    EXPECT_EQ((Told{"3 a b=1:0000", "4 q\"u\\o=1:0000", "5 n\nr\r=1:0000", "6 =1:0000", "7 =1:0000",
                    "8 a=b;[c]=1:0000", "9 @=1:0000"}),
              ReadBelow("\"a b\"=\"\"\n\"q\\\"u\\\\o\"=\"\"\n\"n\\nr\\r\"=\"\"\n@=\"\"\n\"\"=\"\"\n"
                        "\"a=b;[c]\"=\"\"\n\"@\"=\"\"\n"));
}

TEST(RegistrationNames, Blanks_may_stand_around_the_equals_sign_and_ahead) {
    EXPECT_EQ((Told{"3 x=1:61000000", "4 =1:61000000"}),
              ReadBelow("  \"x\" \t=  \"a\"  \n\t@ = \"a\"\n"));
}

TEST(RegistrationNames, Bad_ones_are_faults) {
    for (const char *const line : {"\"x", "\"x\"", "\"x\" \"1\"", "\"x\\", "\"a\\tb\"=\"1\"", "@",
                                   "@x=\"1\"", "\"x\\\"=\"1\""}) {
        Told const told = ReadBelow(std::string(line) + "\n\"y\"=\"a\"\n");
        ASSERT_EQ(2u, told.size()) << line;
        EXPECT_TRUE(IsFault(told[0], "3")) << told[0];
        EXPECT_EQ("4 y=1:61000000", told[1]) << line;
    }
}

TEST(RegistrationTexts, They_get_a_NUL_and_may_be_empty) {
    EXPECT_EQ("3 x=1:61000000", DataOf("\"a\""));
    EXPECT_EQ("3 x=1:0000", DataOf("\"\""));
    EXPECT_EQ("3 x=1:" + Hex(Text("C:\\a \"b\"\r\n;[c]")),
              DataOf("\"C:\\\\a \\\"b\\\"\\r\\n;[c]\""));
}

TEST(RegistrationTexts, Any_unit_may_be_in_them) {
    std::string const file =
        Unicode("[HKCU\\A]\n\"x\"=\"") + std::string("\x3d\xd8\0\0\xe4\0", 6) + Wide("\"\n");
    EXPECT_EQ((Told{"2 [HKCU\\A]", "3 x=1:3dd80000e4000000"}), Read(file));
}

TEST(RegistrationTexts, A_backslash_that_stands_for_nothing_is_a_fault) {
    for (const char *const data : {"\"a\\tb\"", "\"C:\\Program Files\"", "\"\\0\"", "\"\\x41\""}) {
        EXPECT_TRUE(IsFault(DataOf(data), "3")) << data;
    }
}

TEST(RegistrationTexts, More_behind_the_closing_quote_is_a_fault) {
    EXPECT_TRUE(IsFault(DataOf("\"a\" b"), "3"));
    EXPECT_TRUE(IsFault(DataOf("\"a\"\"b\""), "3"));
    EXPECT_EQ("3 x=1:61000000", DataOf("\"a\" ; b"));
}

TEST(RegistrationTexts, Line_ends_in_them_stay_as_they_are) {
    EXPECT_EQ((Told{"3 x=1:" + Hex(Text("a\r\n\n[b]\r\nc")), "7 y=1:61000000"}),
              ReadBelow("\"x\"=\"a\r\n\n[b]\r\nc\"\r\n\"y\"=\"a\"\r\n"));
}

TEST(RegistrationTexts, One_that_the_next_value_would_close_was_never_closed) {
    for (const char *const next : {"\"y\"=\"a\"", "@=\"a\""}) {
        Told const told = ReadBelow("\"x\"=\"a\n\n" + std::string(next) + "\n[HKCU\\B]\n");
        ASSERT_EQ(3u, told.size()) << next;
        EXPECT_TRUE(IsFault(told[0], "3")) << told[0];
        EXPECT_EQ(0u, told[1].rfind("5 ", 0)) << told[1];
        EXPECT_EQ("6 [HKCU\\B]", told[2]);
    }
    Told const last = ReadBelow("\"x\"=\"a\n[HKCU\\B]\n");
    ASSERT_EQ(2u, last.size());
    EXPECT_TRUE(IsFault(last[0], "3")) << last[0];
    EXPECT_EQ("4 [HKCU\\B]", last[1]);
}

TEST(RegistrationNumbers, Up_to_eight_digits_in_any_case) {
    EXPECT_EQ("3 x=4:cdab3412", DataOf("dword:1234abcd"));
    EXPECT_EQ("3 x=4:cdab3412", DataOf("DWORD:1234ABCD ; x"));
    EXPECT_EQ("3 x=4:01000000", DataOf("dword: 1"));
    EXPECT_EQ("3 x=4:ffffffff", DataOf("dword:ffffffff"));
    for (const char *const data : {"dword:", "dword:123456789", "dword:g", "dword:1 2", "dword"}) {
        EXPECT_TRUE(IsFault(DataOf(data), "3")) << data;
    }
}

TEST(RegistrationBytes, Every_type_has_them) {
    EXPECT_EQ("3 x=3:0102ff", DataOf("hex:01,02,ff"));
    EXPECT_EQ("3 x=3:", DataOf("hex:"));
    for (unsigned type = 0; type <= 11; ++type) {
        std::string const digit(1, "0123456789ab"[type]);
        EXPECT_EQ("3 x=" + std::to_string(type) + ":6100", DataOf("hex(" + digit + "):61,00"));
        EXPECT_EQ("3 x=" + std::to_string(type) + ":", DataOf("hex(" + digit + "):"));
    }
    EXPECT_EQ("3 x=4294901767:01", DataOf("hex(FFFF0007):01"));
    EXPECT_EQ("3 x=4660:01", DataOf("hex(1234):01"));
}

TEST(RegistrationBytes, Digits_and_blanks_are_taken_as_people_write_them) {
    EXPECT_EQ("3 x=3:010b", DataOf("hex:1,B"));
    EXPECT_EQ("3 x=3:0102", DataOf("hex: 01 ,\t02 "));
    EXPECT_EQ("3 x=3:0102", DataOf("hex:01,02,"));
    EXPECT_EQ("3 x=3:0102", DataOf("HEX:01,02 ; x"));
}

TEST(RegistrationBytes, They_go_on_behind_a_backslash_past_comments) {
    EXPECT_EQ(
        (Told{"3 x=3:01020304", "8 y=1:61000000"}),
        ReadBelow("\"x\"=hex:01,02,\\\n  03,\\  \n\n ; comment\\\n\t04 ; x\\\n\"y\"=\"a\"\n"));
    EXPECT_EQ((Told{"3 x=3:0102"}), ReadBelow("\"x\"=hex:\\\r\n  01,\\ ; x\r\n  02\r\n"));
}

TEST(RegistrationBytes, Data_that_breaks_off_is_a_fault_and_the_next_line_counts) {
    for (const char *const next : {"\"y\"=\"a\"", "@=\"a\"", "[HKCU\\B]"}) {
        Told const told = ReadBelow("\"x\"=hex:01,\\\n\n  " + std::string(next) + "\n");
        ASSERT_EQ(2u, told.size()) << next;
        EXPECT_TRUE(IsFault(told[0], "3")) << told[0];
        EXPECT_EQ(0u, told[1].rfind("5 ", 0)) << told[1];
    }
    EXPECT_TRUE(IsFault(ReadBelow("\"x\"=hex:01,\\").at(0), "3"));
}

TEST(RegistrationBytes, Bad_ones_are_one_fault_with_all_their_lines) {
    for (const char *const data :
         {"hex:zz,\\\n  02", "hex:123,\\\n  02", "hex:01,,02", "hex:01 02", "hex(:01", "hex():01",
          "hex(123456789):01", "hex(g):01", "hex", "hex 01", "hex(2:01,\\\n  02"}) {
        Told const told = ReadBelow("\"x\"=" + std::string(data) + "\n\"y\"=\"a\"\n");
        ASSERT_EQ(2u, told.size()) << data;
        EXPECT_TRUE(IsFault(told[0], "3")) << told[0];
        EXPECT_EQ("y=1:61000000", told[1].substr(2)) << data;
    }
}

TEST(RegistrationBytes, A_backslash_in_a_comment_is_a_part_of_it) {
    Told const told = ReadBelow("\"x\"=hex:01 ; 02,\\\n  03\n");
    ASSERT_EQ(2u, told.size());
    EXPECT_EQ("3 x=3:01", told[0]);
    EXPECT_TRUE(IsFault(told[1], "4")) << told[1];
}

TEST(RegistrationValues, A_minus_removes_one) {
    EXPECT_EQ((Told{"3 -x", "4 -", "5 -y"}), ReadBelow("\"x\"=-\n@=-\n\"y\" = - ; x\n"));
    EXPECT_TRUE(IsFault(DataOf("-1"), "3"));
}

TEST(RegistrationValues, Other_forms_are_faults) {
    for (const char *const data : {"", "a", "qword:1", "str(2):\"a\"", "str:\"a\"", "{}"}) {
        EXPECT_TRUE(IsFault(DataOf(data), "3")) << data;
    }
}

TEST(RegistrationAnsi, Texts_are_of_the_code_page) {
    EXPECT_EQ("3 x=1:e4000000", AnsiDataOf("\"\xE4\""));
    EXPECT_EQ((Told{"2 [HKCU\\\xC3\xA4]", "3 \xC3\xA4=1:0000"}),
              Read(Ansi("[HKCU\\\xE4]\n\"\xE4\"=\"\"\n")));
}

TEST(RegistrationAnsi, A_second_byte_is_no_backslash_and_no_quote) {
    EXPECT_EQ("3 x=1:5c3061000000", AnsiDataOf("\"\x82\\a\""));
    EXPECT_EQ("3 x=1:2230"
              "61000000",
              AnsiDataOf("\"\x82\"a\""));
}

TEST(RegistrationAnsi, Bytes_of_texts_are_of_the_page_and_others_are_not) {
    for (unsigned type = 0; type <= 11; ++type) {
        bool const isText = type == 1 || type == 2 || type == 7;
        std::string const digit(1, "0123456789ab"[type]);
        EXPECT_EQ("3 x=" + std::to_string(type) + (isText ? ":e4005c300000" : ":e4825c00"),
                  AnsiDataOf("hex(" + digit + "):e4,82,5c,00"));
    }
}

TEST(RegistrationAnsi, Bytes_that_the_page_lacks_are_faults) {
    EXPECT_TRUE(IsFault(AnsiDataOf("\"\x81\""), "3"));
    EXPECT_TRUE(IsFault(AnsiDataOf("hex(2):81,00"), "3"));
    Told const told = Read(Ansi("[HKCU\\A]\n[HKCU\\\x81]\n\"x\"=\"a\"\n[HKCU\\B]\n"));
    ASSERT_EQ(3u, told.size());
    EXPECT_EQ(0u, told[1].rfind("3 [! ", 0)) << told[1];
    EXPECT_TRUE(IsFault(Read(Ansi("[HKCU\\A]\n\"\x81\"=\"a\"\n")).at(1), "3"));
}

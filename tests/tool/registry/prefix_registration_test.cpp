// The form in which a Wine prefix keeps its registry: values, and what isn't one.
#include "registration_text.h"

#include <gtest/gtest.h>

namespace {

std::string DataOf(std::string const &data) {
    Told const told = Read(OfPrefix("[A] 1\n\"x\"=" + data + "\n"));
    return told.size() == 2 ? told[1] : std::to_string(told.size()) + " entries";
}

bool IsFault(std::string const &told, std::string const &line) {
    return told.rfind(line + " ! ", 0) == 0;
}

} // namespace

TEST(PrefixRegistration, Values_of_every_form) {
    EXPECT_EQ(
        (Told{"4 [A\\B]", "6 =1:61000000", "7 x=4:01000000", "8 y=2:25000000",
              "9 z=7:61000000620000000000", "10 b=3:0102", "12 q=11:01", "13 e=1:0000", "14 [C]"}),
        Read(OfPrefix("\n#arch=win64\n[A\\\\B] 1700000000\n#time=1dd7a2b4de53388\n@=\"a\"\n"
                      "\"x\"=dword:00000001\n\"y\"=str(2):\"%\"\n\"z\"=str(7):\"a\\0b\\0\"\n"
                      "\"b\"=hex:01,\\\n  02\n\"q\"=hex(b):01\n\"e\"=\"\"\n[C]\n")));
}

TEST(PrefixRegistration, Any_unit_can_be_escaped_in_a_text) {
    EXPECT_EQ("3 x=1:e4000000", DataOf("\"\\xe4\""));
    EXPECT_EQ("3 x=1:e40031000000", DataOf("\"\\x00e41\""));
    EXPECT_EQ("3 x=1:3dd800de0000", DataOf("\"\\xd83d\\xde00\""));
    EXPECT_EQ("3 x=1:3dd80000", DataOf("\"\\xd83d\""));
    EXPECT_EQ("3 x=1:00000100410031000000", DataOf("\"\\0\\1\\1011\""));
    EXPECT_EQ("3 x=1:07000800"
              "1b000c000a000d0009000b000000",
              DataOf("\"\\a\\b\\e\\f\\n\\r\\t\\v\""));
    EXPECT_EQ("3 x=1:22005c00710000"
              "00",
              DataOf("\"\\\"\\\\\\q\""));
}

TEST(PrefixRegistration, A_byte_above_127_is_a_character_of_its_own) {
    EXPECT_EQ("3 x=1:c300a4000000", DataOf("\"\xC3\xA4\""));
    EXPECT_EQ((Told{"2 [A]", "3 \xC3\xA4=1:0000"}), Read(OfPrefix("[A] 1\n\"\xE4\"=\"\"\n")));
}

TEST(PrefixRegistration, Bytes_of_texts_are_units) {
    EXPECT_EQ("3 x=7:6100", DataOf("hex(7):61,00"));
    EXPECT_EQ("3 x=4294901767:ff", DataOf("hex(ffff0007):ff"));
}

TEST(PrefixRegistration, A_text_ends_in_its_line) {
    Told const told = Read(OfPrefix("[A] 1\n\"x\"=\"a\nb\"\n\"y\"=\"\"\n"));
    ASSERT_EQ(3u, told.size());
    EXPECT_TRUE(IsFault(told[1], "3")) << told[1];
    EXPECT_EQ("5 y=1:0000", told[2]);
}

TEST(PrefixRegistration, Bad_values_are_faults_and_the_rest_goes_on) {
    for (const char *const value :
         {"\"x\"", "\"x\"=", "\"x\"=zz", "\"x\"=str(2)\"a\"", "\"x\"=str(g):\"a\"",
          "\"x\"=str(2):a", "\"x\"=dword:", "\"x\"=hex:0g", "\"x\"=\"a\"b", "\"\\xd83d\"=\"a\"",
          "rubbish"}) {
        Told const told = Read(OfPrefix("[A] 1\n" + std::string(value) + "\n\"y\"=\"\"\n"));
        ASSERT_EQ(3u, told.size()) << value;
        EXPECT_TRUE(IsFault(told[1], "3")) << told[1];
        EXPECT_EQ("4 y=1:0000", told[2]) << value;
    }
}

TEST(PrefixRegistration, A_link_is_told_by_its_mark) {
    std::string const value = "\"SymbolicLinkValue\"=hex(6):5c,00,41,00\n";
    EXPECT_EQ((Told{"2 [K]", "4 -> \\A"}), Read(OfPrefix("[K] 1\n#link\n" + value)));
    EXPECT_EQ((Told{"2 [K]", "3 SymbolicLinkValue=6:5c004100"}), Read(OfPrefix("[K] 1\n" + value)));
    EXPECT_EQ((Told{"2 [K]", "4 SymbolicLinkValue=1:61000000"}),
              Read(OfPrefix("[K] 1\n#link\n\"SymbolicLinkValue\"=\"a\"\n")));
}

TEST(PrefixRegistration, Its_other_marks_say_nothing) {
    EXPECT_EQ((Told{"4 [A]", "8 x=1:0000"}),
              Read(OfPrefix(";; comment\n#arch=win32\n[A] 1\n#time=1\n#class=\"c\"\n#other\n"
                            "\"x\"=\"\"\n")));
}

TEST(PrefixRegistration, A_key_is_never_removed) {
    EXPECT_EQ(Told{"2 [-A]"}, Read(OfPrefix("[-A]\n")));
}

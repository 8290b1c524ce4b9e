// Registration files as they are written.
#include "flat_registry.h"
#include "registration_text.h"

#include "registry/export.h"
#include "registry/registration_writer.h"

#include <gtest/gtest.h>

using qvlink::RegistrationForm;
using qvlink::RegistrationWriter;

namespace {

constexpr std::size_t headSize = 2 + 2 * 38; // of version 5.00, in bytes

// The line of a value in version 5.00, its end aside.
std::string LineOf(qvlink::RegistryValue const &value) {
    TestPage const page;
    RegistrationWriter writer(RegistrationForm::unicode, page);
    EXPECT_EQ("", writer.Value(value));
    std::string line;
    for (std::size_t i = headSize; i + 1 < writer.Bytes().size(); i += 2) {
        line += writer.Bytes()[i + 1] == '\0' ? writer.Bytes()[i] : '?';
    }
    EXPECT_EQ("\r\n", line.substr(line.size() - 2));
    return line.substr(0, line.size() - 2);
}

std::string AnsiLineOf(qvlink::RegistryValue const &value) {
    TestPage const page;
    RegistrationWriter writer(RegistrationForm::ansi, page);
    std::string const why = writer.Value(value);
    return why.empty() ? writer.Bytes().substr(10) : "! " + why;
}

qvlink::Exported Export(FlatRegistry &registry, std::string const &key,
                        RegistrationForm form = RegistrationForm::unicode) {
    TestPage const page;
    return qvlink::ExportRegistration(registry, key, form, page);
}

} // namespace

TEST(RegistrationWriter, A_file_of_version_5_is_of_16_bit_units_with_a_mark) {
    TestPage const page;
    RegistrationWriter writer(RegistrationForm::unicode, page);
    EXPECT_EQ("", writer.Key("HKLM\\A b"));
    EXPECT_EQ("", writer.Value({"", 1, Text("a")}));
    EXPECT_EQ("\xff\xfe" + Wide("Windows Registry Editor Version 5.00\r\n\r\n"
                                "[HKEY_LOCAL_MACHINE\\A b]\r\n@=\"a\"\r\n"),
              writer.Bytes());
}

TEST(RegistrationWriter, A_file_of_REGEDIT4_is_of_the_code_page) {
    TestPage const page;
    RegistrationWriter writer(RegistrationForm::ansi, page);
    EXPECT_EQ("", writer.Key("HKCU\\\xC3\xA4"));
    EXPECT_EQ("", writer.Value({"\xC3\xA4", 1, std::string("\xe4\0\x5c\x30\0\0", 6)}));
    EXPECT_EQ("REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\\xE4]\r\n\"\xE4\"=\"\xE4\x82\\\"\r\n",
              writer.Bytes());
}

TEST(RegistrationWriter, Texts_are_quoted_where_that_gives_them_back) {
    EXPECT_EQ("\"x\"=\"\"", LineOf({"x", 1, Text("")}));
    EXPECT_EQ("\"x\"=\"a \\\"b\\\" C:\\\\c;\"", LineOf({"x", 1, Text("a \"b\" C:\\c;")}));
    EXPECT_EQ("\"q\\\"u\\\\o\\n\\r\"=\"\"", LineOf({"q\"u\\o\n\r", 1, Text("")}));
}

TEST(RegistrationWriter, Other_data_of_texts_come_as_bytes) {
    EXPECT_EQ("\"x\"=hex(1):", LineOf({"x", 1, ""}));
    EXPECT_EQ("\"x\"=hex(1):61,00", LineOf({"x", 1, Wide("a")}));
    EXPECT_EQ("\"x\"=hex(1):61", LineOf({"x", 1, "a"}));
    EXPECT_EQ("\"x\"=hex(1):61,00,00,00,00,00", LineOf({"x", 1, Text(std::string("a\0", 2))}));
    EXPECT_EQ("\"x\"=hex(1):61,00,00,00,00", LineOf({"x", 1, Text("a") + '\0'}));
    EXPECT_EQ("\"x\"=hex(1):0d,00,0a,00,00,00", LineOf({"x", 1, Text("\r\n")}));
    EXPECT_EQ("\"x\"=hex(1):3d,d8,00,00", LineOf({"x", 1, std::string("\x3d\xd8\0\0", 4)}));
}

TEST(RegistrationWriter, Types_have_their_numbers) {
    EXPECT_EQ("\"x\"=dword:1234abcd", LineOf({"x", 4, "\xcd\xab\x34\x12"}));
    EXPECT_EQ("\"x\"=hex(4):cd,ab", LineOf({"x", 4, "\xcd\xab"}));
    EXPECT_EQ("\"x\"=hex:01,ff", LineOf({"x", 3, "\x01\xff"}));
    EXPECT_EQ("\"x\"=hex:", LineOf({"x", 3, ""}));
    EXPECT_EQ("\"x\"=hex(0):", LineOf({"x", 0, ""}));
    EXPECT_EQ("\"x\"=hex(2):61,00,00,00", LineOf({"x", 2, Text("a")}));
    EXPECT_EQ("\"x\"=hex(7):00,00", LineOf({"x", 7, std::string(2, '\0')}));
    EXPECT_EQ("\"x\"=hex(b):01", LineOf({"x", 11, "\x01"}));
    EXPECT_EQ("\"x\"=hex(10):01", LineOf({"x", 16, "\x01"}));
    EXPECT_EQ("\"x\"=hex(ffff0007):01", LineOf({"x", 0xffff0007, "\x01"}));
}

TEST(RegistrationWriter, Long_data_goes_over_lines_of_at_most_80_characters) {
    std::string const line = LineOf({"bin", 3, std::string(60, '\x1a')});
    std::size_t count = 0;
    std::size_t start = 0;
    for (std::size_t end; (end = line.find("\\\r\n", start)) != std::string::npos;
         start = end + 3, ++count) {
        EXPECT_LE(end + 1 - start, 80u);
        EXPECT_GT(end + 1 - start, 76u);
        EXPECT_EQ("  1a,", line.substr(end + 3, 5));
    }
    EXPECT_EQ(2u, count);
    EXPECT_EQ("1a", line.substr(line.size() - 2));
}

TEST(RegistrationWriter, Texts_of_REGEDIT4_are_bytes_of_the_page) {
    EXPECT_EQ("\"x\"=hex(2):e4,82,5c,00\r\n",
              AnsiLineOf({"x", 2, std::string("\xe4\0\x5c\x30\0\0", 6)}));
    EXPECT_EQ("\"x\"=hex(1):61\r\n", AnsiLineOf({"x", 1, Wide("a")}));
    EXPECT_EQ("\"x\"=hex:e4,00\r\n", AnsiLineOf({"x", 3, std::string("\xe4\0", 2)}));
}

TEST(RegistrationWriter, What_the_page_lacks_is_told_and_left_out) {
    std::string const euro("\xac\x20\0\0", 4);
    for (qvlink::RegistryValue const &value :
         {qvlink::RegistryValue{"x", 1, euro}, qvlink::RegistryValue{"x", 2, euro},
          qvlink::RegistryValue{"x", 7, "a"}, qvlink::RegistryValue{"\xE2\x82\xAC", 3, ""}}) {
        EXPECT_EQ(0u, AnsiLineOf(value).rfind("! ", 0)) << AnsiLineOf(value);
    }
    TestPage const page;
    RegistrationWriter writer(RegistrationForm::ansi, page);
    EXPECT_NE("", writer.Key("HKCU\\\xE2\x82\xAC"));
    EXPECT_EQ("REGEDIT4\r\n", writer.Bytes());
}

TEST(RegistrationWriter, A_key_with_a_line_end_in_its_name_has_no_form) {
    TestPage const page;
    RegistrationWriter writer(RegistrationForm::unicode, page);
    EXPECT_NE("", writer.Key("HKCU\\a\nb"));
    EXPECT_NE("", writer.Key("HKCU\\a\rb"));
    EXPECT_NE("", writer.Key("HKCU\\\xff"));
    EXPECT_EQ(headSize, writer.Bytes().size());
}

TEST(RegistrationExport, A_key_is_written_with_all_below_it) {
    FlatRegistry registry;
    for (const char *const key : {"HKCU\\A", "HKCU\\A\\B\\C", "HKCU\\AB", "HKCU\\D"}) {
        registry.Create(key);
    }
    registry.SetValue("HKCU\\A", {"x", 1, Text("a")});
    registry.SetValue("HKCU\\A\\B\\C", {"y", 4, std::string(4, '\0')});
    qvlink::Exported const exported = Export(registry, "HKCU\\A");
    EXPECT_EQ(0u, exported.code);
    EXPECT_EQ(3u, exported.keys);
    EXPECT_EQ(2u, exported.values);
    EXPECT_TRUE(exported.leftOut.empty());
    EXPECT_EQ((Told{"3 [HKCU\\A]", "4 x=1:61000000", "6 [HKCU\\A\\B]", "8 [HKCU\\A\\B\\C]",
                    "9 y=4:00000000"}),
              Read(exported.bytes));
}

TEST(RegistrationExport, What_can_not_be_read_or_written_is_told_and_the_rest_is_there) {
    FlatRegistry registry;
    registry.Create("HKCU\\A\\B\\C");
    registry.Create("HKCU\\A\\\xE2\x82\xAC\\E");
    registry.SetValue("HKCU\\A", {"", 2, std::string("\xac\x20", 2)});
    registry.refused["HKCU\\A\\B"] = 5;
    qvlink::Exported const exported = Export(registry, "HKCU\\A", RegistrationForm::ansi);
    EXPECT_EQ(0u, exported.code);
    ASSERT_EQ(4u, exported.leftOut.size());
    EXPECT_EQ(0u, exported.leftOut[0].rfind("HKCU\\A: @: ", 0)) << exported.leftOut[0];
    EXPECT_EQ("HKCU\\A\\B: access is denied", exported.leftOut[1]);
    EXPECT_EQ(Told{"3 [HKCU\\A]"}, Read(exported.bytes));
}

TEST(RegistrationExport, A_key_that_can_not_be_read_is_a_failure) {
    FlatRegistry registry;
    EXPECT_EQ(2u, Export(registry, "HKCU\\A").code);
    registry.Create("HKCU\\A");
    registry.refused["HKCU\\A"] = 5;
    EXPECT_EQ(5u, Export(registry, "HKCU\\A").code);
}

// What is written is read again as it was, and no bytes do harm.
#include "flat_registry.h"
#include "registration_text.h"

#include "courses.h"
#include "registry/export.h"
#include "registry/import.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>

using qvlink::RegistrationForm;

namespace {

using Random = std::mt19937;

std::size_t Below(Random &random, std::size_t end) { return random() % end; }

// Characters that mean something to some form, and others.
std::string Name(Random &random, bool isKey, bool isAnsi) {
    static const std::vector<std::string> both{"a", "B", "[", "]",        "\"",
                                               "=", "@", ";", " ",        "-",
                                               ",", ":", "#", "\xC3\xA4", "\xE3\x81\x9C"}; // U+305C
    static const std::vector<std::string> wide{"\xE2\x82\xAC", "\xF0\x9F\x8C\x8D"};
    static const std::vector<std::string> valueOnly{"\\", "\n", "\r", "\\n"};
    std::vector<std::string> pieces = both;
    if (!isAnsi) {
        pieces.insert(pieces.end(), wide.begin(), wide.end());
    }
    if (!isKey) {
        pieces.insert(pieces.end(), valueOnly.begin(), valueOnly.end());
    }
    std::string name;
    for (std::size_t left = 1 + Below(random, 6); left > 0; --left) {
        name += pieces[Below(random, pieces.size())];
    }
    return name;
}

std::string Units(Random &random, bool isAnsi) {
    static const std::string any[] = {Wide("a"),
                                      Wide("\\"),
                                      Wide("\""),
                                      Wide("\r"),
                                      Wide("\n"),
                                      Wide("\t"),
                                      Wide(";"),
                                      Wide("["),
                                      std::string(2, '\0'),
                                      std::string("\x5c\x30", 2),
                                      std::string("\xe4\0", 2),
                                      std::string("\xac\x20", 2),
                                      std::string("\x3d\xd8", 2)};
    std::string data;
    for (std::size_t left = Below(random, 40); left > 0; --left) {
        data += any[Below(random, std::size(any) - (isAnsi ? 2 : 0))];
    }
    return Below(random, 3) > 0 ? data + std::string(2, '\0') : data;
}

qvlink::RegistryValue Value(Random &random, bool isAnsi) {
    std::uint32_t const types[] = {0, 1, 1, 2, 3, 4, 4, 5, 6, 7, 8, 11, 12, 0xffff0007, 0xffffffff};
    qvlink::RegistryValue value{"", types[Below(random, std::size(types))], ""};
    value.name = Below(random, 8) == 0 ? "" : Name(random, false, isAnsi);
    bool const isText = value.type == 1 || value.type == 2 || value.type == 7;
    if (isText) {
        value.data = Units(random, isAnsi);
        value.data += !isAnsi && Below(random, 9) == 0 ? "x" : "";
    } else {
        for (std::size_t left = value.type == 4 ? 4 : Below(random, 90); left > 0; --left) {
            value.data += static_cast<char>(random());
        }
    }
    return value;
}

void Fill(FlatRegistry &registry, Random &random, bool isAnsi) {
    std::vector<std::string> paths{"HKCU\\T"};
    registry.Create(paths[0]);
    for (std::size_t left = Below(random, 8); left > 0; --left) {
        paths.push_back(paths[Below(random, paths.size())] + '\\' + Name(random, true, isAnsi));
        registry.Create(paths.back());
    }
    for (std::size_t left = Below(random, 20); left > 0; --left) {
        registry.SetValue(paths[Below(random, paths.size())], Value(random, isAnsi));
    }
}

void RoundTrip(RegistrationForm form) {
    TestPage const page;
    for (std::uint32_t course = 0; course < Courses(4000); ++course) {
        Random random(course);
        FlatRegistry first, second;
        Fill(first, random, form == RegistrationForm::ansi);
        auto const exported = qvlink::ExportRegistration(first, "HKCU\\T", form, page);
        ASSERT_TRUE(exported.leftOut.empty()) << course << ' ' << exported.leftOut[0];
        auto const imported = qvlink::ImportRegistration(second, exported.bytes, page, "");
        ASSERT_TRUE(imported.faults.empty())
            << course << ' ' << imported.faults[0].line << ' ' << imported.faults[0].message;
        ASSERT_EQ(first.keys, second.keys) << course;
        EXPECT_EQ(imported.keys, exported.keys);
        EXPECT_EQ(imported.values, exported.values);
    }
}

} // namespace

TEST(RoundTrip, What_version_5_has_is_read_as_it_was) { RoundTrip(RegistrationForm::unicode); }

TEST(RoundTrip, What_REGEDIT4_has_is_read_as_it_was) { RoundTrip(RegistrationForm::ansi); }

TEST(RoundTrip, Text_made_of_pieces_of_all_forms_does_no_harm) {
    static const std::string pieces[] = {"[HKCU\\A]",
                                         "[-HKCU\\A]",
                                         "[A\\\\B] 1",
                                         "\"x\"=",
                                         "@=",
                                         "\"",
                                         "\\",
                                         "\n",
                                         "\r\n",
                                         "hex:",
                                         "hex(2):",
                                         "01,",
                                         "00",
                                         "\\\n",
                                         "dword:",
                                         "1",
                                         "str(7):\"",
                                         "-",
                                         ";",
                                         "#link\n",
                                         "]",
                                         "[",
                                         ";; All keys relative to REGISTRY\\\\Machine\n",
                                         "\"SymbolicLinkValue\"=hex(6):5c,00,52,00",
                                         std::string("\0", 1),
                                         "\x81",
                                         "\xff\xfe",
                                         "\\x41",
                                         "\\0",
                                         " ",
                                         "="};
    TestPage const page;
    for (std::uint32_t course = 0; course < Courses(8000); ++course) {
        Random random(course);
        std::string text;
        for (std::size_t left = Below(random, 60); left > 0; --left) {
            text += pieces[Below(random, std::size(pieces))];
        }
        std::string const files[] = {Unicode(text), Narrow(text), Ansi(text), OfPrefix(text)};
        std::string const &file = files[course % 4];
        auto const lines = static_cast<std::size_t>(std::count(file.begin(), file.end(), '\n')) + 1;
        std::size_t last = 0;
        qvlink::RegistrationReader reader(file, page);
        for (qvlink::RegistrationEntry entry; reader.Next(entry); last = entry.line) {
            ASSERT_GT(entry.line, last) << course;
            ASSERT_LE(entry.line, lines) << course;
        }
        FlatRegistry registry;
        qvlink::ImportRegistration(registry, file, page, "HKCU\\T");
    }
}

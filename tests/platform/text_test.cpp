// Text functions, on both systems by the documented results.
#include "services.h"

#include <clocale>
#include <cstring>

namespace {

constexpr std::size_t partSize = 256;

struct Split {
    std::string drive, directory, name, extension;
};

Split SplitPath(std::string const &path) {
    char drive[partSize], directory[partSize], name[partSize], extension[partSize];
    win::_splitpath(path.c_str(), drive, directory, name, extension);
    return {drive, directory, name, extension};
}

struct SplitCase {
    const char *path, *drive, *directory, *name, *extension;
};

constexpr SplitCase splitCases[] = {
    {R"(C:\windows\system32\a.dll)", "C:", R"(\windows\system32\)", "a", ".dll"},
    {"C:a.b.c", "C:", "", "a.b", ".c"},
    {"C:\\", "C:", "\\", "", ""},
    {"C:", "C:", "", "", ""},
    {"", "", "", "", ""},
    {"file", "", "", "file", ""},
    {".profile", "", "", "", ".profile"},
    {"file.", "", "", "file", "."},
    {"\\a.b\\c", "", "\\a.b\\", "c", ""},
    {"a/b\\c/d.e", "", "a/b\\c/", "d", ".e"},
    {"x:/y", "x:", "/", "y", ""},
    {"..", "", "", ".", "."},
    {R"(\\server\share\f.t)", "", R"(\\server\share\)", "f", ".t"},
};

} // namespace

TEST(SplitPath, gives_drive_directory_name_and_extension) {
    for (SplitCase const &expected : splitCases) {
        Split const split = SplitPath(expected.path);
        EXPECT_EQ(expected.drive, split.drive) << expected.path;
        EXPECT_EQ(expected.directory, split.directory) << expected.path;
        EXPECT_EQ(expected.name, split.name) << expected.path;
        EXPECT_EQ(expected.extension, split.extension) << expected.path;
    }
}

TEST(SplitPath, leaves_out_parts_that_arent_asked_for) {
    char name[partSize] = "";
    win::_splitpath("C:\\a\\b.c", nullptr, nullptr, name, nullptr);
    EXPECT_STREQ("b", name);
}

TEST(SplitPathSafely, splits_into_buffers_that_are_large_enough) {
    char drive[3], directory[4], name[2], extension[5];
    EXPECT_EQ(0, win::_splitpath_s("C:\\a\\b.ext", drive, 3, directory, 4, name, 2, extension, 5));
    EXPECT_STREQ("C:", drive);
    EXPECT_STREQ("\\a\\", directory);
    EXPECT_STREQ("b", name);
    EXPECT_STREQ(".ext", extension);
}

TEST(SplitPathSafely, gives_nothing_when_a_part_doesnt_fit) {
    char drive[3] = "x", directory[3] = "x", name[20] = "x", extension[20] = "x";
    EXPECT_EQ(34,
              win::_splitpath_s("C:\\a\\b.ext", drive, 3, directory, 3, name, 20, extension, 20));
    EXPECT_STREQ("", drive);
    EXPECT_STREQ("", directory);
    EXPECT_STREQ("", name);
    EXPECT_STREQ("", extension);
}

TEST(SplitPathSafely, takes_paths_of_any_length) {
    std::string const folder = "\\" + std::string(700, 'd') + "\\";
    char directory[1000], name[1000];
    EXPECT_EQ(0, win::_splitpath_s((folder + std::string(300, 'n')).c_str(), nullptr, 0, directory,
                                   sizeof directory, name, sizeof name, nullptr, 0));
    EXPECT_EQ(folder, directory);
    EXPECT_EQ(300u, std::strlen(name));
}

TEST(Compare, letters_are_the_same_in_both_cases) {
    EXPECT_EQ(0, win::_stricmp("Hello", "hELLO"));
    EXPECT_EQ(0, win::_stricmp("", ""));
    EXPECT_LT(win::_stricmp("abc", "ABD"), 0);
    EXPECT_GT(win::_stricmp("ABD", "abc"), 0);
    EXPECT_LT(win::_stricmp("ab", "abc"), 0);
    EXPECT_GT(win::_stricmp("abc", "ab"), 0);
}

TEST(Compare, letters_count_as_lower_case_ones) {
    EXPECT_LT(win::_stricmp("_", "A"), 0);
    EXPECT_LT(win::_stricmp("_", "a"), 0);
    EXPECT_LT(win::_stricmp("[", "Z"), 0);
}

TEST(Compare, only_ascii_letters_have_two_cases) {
    EXPECT_NE(0, win::_stricmp("\xc4", "\xe4"));
    EXPECT_NE(0, win::_stricmp("@", "`"));
    EXPECT_NE(0, win::_stricmp("[", "{"));
}

TEST(CompareBytes, letters_are_the_same_in_both_cases) {
    EXPECT_EQ(0, win::_memicmp("Hello", "hELLO", 5));
    EXPECT_EQ(0, win::_memicmp("abc", "ABX", 2));
    EXPECT_EQ(0, win::_memicmp("a", "b", 0));
    EXPECT_LT(win::_memicmp("abc", "ABD", 3), 0);
    EXPECT_GT(win::_memicmp("ABD", "abc", 3), 0);
    EXPECT_NE(0, win::_memicmp("@[", "`{", 2));
}

TEST(CompareBytes, a_terminator_is_a_byte_like_others) {
    EXPECT_LT(win::_memicmp("a\0b", "A\0C", 3), 0);
    EXPECT_EQ(0, win::_memicmp("a\0b", "A\0B", 3));
    EXPECT_LT(win::_memicmp("a\0", "A!", 2), 0);
}

TEST(CopyText, takes_what_fits_with_its_end) {
    char to[6] = "?????";
    EXPECT_EQ(0, win::strcpy_s(to, sizeof to, "abcde"));
    EXPECT_STREQ("abcde", to);
    EXPECT_EQ(0, win::strcpy_s(to, 1, ""));
    EXPECT_STREQ("", to);
}

TEST(LowerCase, is_made_in_place_of_ascii_letters) {
    char text[] = "MiXeD 123 \xc4[@`{Z";
    EXPECT_EQ(text, win::_strlwr(text));
    EXPECT_STREQ("mixed 123 \xc4[@`{z", text);
}

TEST(CharacterType, tells_upper_and_lower_case_by_one_bit_each) {
    EXPECT_EQ(1, win::iswctype('A', 1));
    EXPECT_EQ(0, win::iswctype('A', 2));
    EXPECT_EQ(0, win::iswctype('a', 1));
    EXPECT_EQ(2, win::iswctype('a', 2));
}

TEST(CharacterType, of_ascii_only_letters_have_a_case) {
    for (std::uint16_t character = 0; character < 0x80; ++character) {
        bool const upper = character >= 'A' && character <= 'Z';
        bool const lower = character >= 'a' && character <= 'z';
        EXPECT_EQ(upper, win::iswctype(character, 1) != 0) << character;
        EXPECT_EQ(lower, win::iswctype(character, 2) != 0) << character;
    }
}

TEST(CharacterType, of_other_alphabets_letters_have_a_case_too) {
    struct Pair {
        std::uint16_t upper, lower;
    };
    // Latin, Greek, Cyrillic, Armenian, Georgian, full width
    for (Pair const pair : {Pair{0xc4, 0xe4}, Pair{0x100, 0x101}, Pair{0x178, 0xff},
                            Pair{0x391, 0x3b1}, Pair{0x416, 0x436}, Pair{0x531, 0x561},
                            Pair{0x10a0, 0x2d00}, Pair{0x1e00, 0x1e01}, Pair{0xff21, 0xff41}}) {
        EXPECT_EQ(1, win::iswctype(pair.upper, 1)) << pair.upper;
        EXPECT_EQ(0, win::iswctype(pair.upper, 2)) << pair.upper;
        EXPECT_EQ(0, win::iswctype(pair.lower, 1)) << pair.lower;
        EXPECT_EQ(2, win::iswctype(pair.lower, 2)) << pair.lower;
    }
}

TEST(CharacterType, of_a_letter_with_one_form_is_its_forms) {
    EXPECT_EQ(2, win::iswctype(0xdf, 2));
    EXPECT_EQ(0, win::iswctype(0xdf, 1));
}

TEST(CharacterType, of_title_letters_is_both) {
    for (std::uint16_t const character : std::initializer_list<std::uint16_t>{
             0x1c5, 0x1c8, 0x1f2, 0x1f88, 0x1f9f, 0x1fac, 0x1ffc}) {
        EXPECT_EQ(1, win::iswctype(character, 1)) << character;
        EXPECT_EQ(2, win::iswctype(character, 2)) << character;
    }
}

TEST(CharacterType, of_signs_and_modifiers_made_of_letters_is_none) {
    for (std::uint16_t const character : std::initializer_list<std::uint16_t>{
             0xaa, 0xb5, 0xba, 0x2b0, 0x2c1, 0x345, 0x1d2c, 0x1d6a, 0x1dbf, 0x2090, 0x2160, 0x217f,
             0x24b6, 0x24e9, 0x2c7d, 0xa770, 0xab5f}) {
        EXPECT_EQ(0, win::iswctype(character, 1)) << character;
        EXPECT_EQ(0, win::iswctype(character, 2)) << character;
    }
}

TEST(CharacterType, of_what_is_no_letter_is_none) {
    // digits, signs, an ideograph, a Hebrew letter, half of a pair, a private one, no character
    for (std::uint16_t const character : std::initializer_list<std::uint16_t>{
             0x660, 0xd7, 0xf7, 0x20ac, 0x4e2d, 0x5d0, 0xd800, 0xdc00, 0xe000, 0xfffe, 0xffff}) {
        EXPECT_EQ(0, win::iswctype(character, 1)) << character;
        EXPECT_EQ(0, win::iswctype(character, 2)) << character;
    }
}

TEST(CharacterType, doesnt_follow_the_locale_of_the_process) {
    std::string const kept = std::setlocale(LC_ALL, nullptr);
    for (const char *const locale : {"C", ""}) {
        std::setlocale(LC_ALL, locale);
        EXPECT_EQ(1, win::iswctype(0xc4, 1)) << locale;
        EXPECT_EQ(2, win::iswctype(0x436, 2)) << locale;
    }
    std::setlocale(LC_ALL, kept.c_str());
}

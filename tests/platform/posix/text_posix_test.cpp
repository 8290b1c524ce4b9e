// Where the documented leaves text functions open: long parts and null texts.
#include "../services.h"

#include <climits>
#include <cstring>

TEST(SplitPathHere, cuts_each_part_to_its_documented_size) {
    std::string const folder = "\\" + std::string(400, 'd') + "\\";
    std::string const path = "C:" + folder + std::string(300, 'n') + "." + std::string(300, 'e');
    char drive[4], directory[300], name[300], extension[300];
    win::_splitpath(path.c_str(), drive, directory, name, extension);
    EXPECT_STREQ("C:", drive);
    EXPECT_EQ(255u, std::strlen(directory));
    EXPECT_EQ(255u, std::strlen(name));
    EXPECT_EQ(255u, std::strlen(extension));
}

TEST(SplitPathHere, refuses_a_buffer_without_size_and_a_null_path) {
    char part[10] = "x";
    EXPECT_EQ(22, win::_splitpath_s("a", part, 0, nullptr, 0, nullptr, 0, nullptr, 0));
    EXPECT_EQ(22, win::_splitpath_s("a", nullptr, 1, nullptr, 0, part, 10, nullptr, 0));
    EXPECT_STREQ("", part);
    std::strcpy(part, "x");
    EXPECT_EQ(22, win::_splitpath_s(nullptr, nullptr, 0, nullptr, 0, part, 10, nullptr, 0));
    EXPECT_STREQ("", part);
}

TEST(CompareHere, characters_above_127_come_last) {
    EXPECT_GT(win::_stricmp("\xc4", "z"), 0);
    EXPECT_LT(win::_stricmp("\xc4", "\xe4"), 0);
}

TEST(CompareHere, null_texts_are_told_by_the_largest_number) {
    EXPECT_EQ(INT_MAX, win::_stricmp(nullptr, "a"));
    EXPECT_EQ(INT_MAX, win::_stricmp("a", nullptr));
    EXPECT_EQ(nullptr, win::_strlwr(nullptr));
}

TEST(CharacterTypeHere, knows_the_two_masks_of_case_only) {
    for (unsigned mask = 0; mask < 0x10000; mask += 4)
        EXPECT_EQ(0, win::iswctype('A', static_cast<std::uint16_t>(mask))) << mask;
    EXPECT_EQ(1, win::iswctype('A', 0x101));
    EXPECT_EQ(3, win::iswctype(0x1c5, 3));
}

#include "lists/library_lists.h"

#include "library_images.h"
#include "stored_list.h"

#include <algorithm>
#include <gtest/gtest.h>

using namespace qvlink;
using libraries::Dll;
using libraries::Put;
using libraries::Resource;
using libraries::SharedLibrary;

namespace {

std::vector<Resource> const Three{
    {"WIN_FILES", 101, "one"}, {"WIN_FILES", 102, "two, longer"}, {"WIN_REGS", 110, "three"}};

using Found = std::vector<std::string>;

// "WIN_FILES 101: one", and what made no sense behind the lists.
Found Lists(std::string const &library) {
    LibraryLists const found = FindLists(library);
    Found texts;
    for (LibraryList const &list : found.lists) {
        texts.push_back(std::string(ResourceType(list.kind)) + ' ' + std::to_string(list.id) +
                        ": " + std::string(list.stored));
    }
    if (!found.malformed.empty()) {
        texts.push_back("malformed");
    }
    return texts;
}

Found const ThreeFound{"WIN_FILES 101: one", "WIN_FILES 102: two, longer", "WIN_REGS 110: three"};

using Write = std::string (*)(std::vector<Resource> const &);
struct Kind {
    const char *name;
    Write write;
};
void PrintTo(Kind const &kind, std::ostream *out) { *out << kind.name; }

class LibraryListsOf : public testing::TestWithParam<Kind> {};

INSTANTIATE_TEST_SUITE_P(
    All, LibraryListsOf,
    testing::Values(Kind{"Dll", [](auto const &lists) { return Dll(lists); }},
                    Kind{"Dll32", [](auto const &lists) { return Dll(lists, false); }},
                    Kind{"So", [](auto const &lists) { return SharedLibrary(lists); }},
                    Kind{"So32", [](auto const &lists) { return SharedLibrary(lists, false); }}),
    [](auto const &row) { return row.param.name; });

} // namespace

TEST_P(LibraryListsOf, All_lists_are_found_by_type_and_id) {
    EXPECT_EQ(Lists(GetParam().write(Three)), ThreeFound);
}

TEST_P(LibraryListsOf, Lists_come_in_order_of_type_and_id) {
    EXPECT_EQ(Lists(GetParam().write({Three[2], Three[1], Three[0]})), ThreeFound);
}

TEST_P(LibraryListsOf, The_case_of_a_type_makes_no_difference) {
    EXPECT_EQ(Lists(GetParam().write({{"Win_Files", 103, "x"}})), Found{"WIN_FILES 103: x"});
}

TEST_P(LibraryListsOf, Resources_of_other_types_are_no_lists) {
    EXPECT_EQ(Lists(GetParam().write({{"TEXT", 101, "x"}, {"WIN_FILES2", 102, "y"}})), Found{});
}

TEST_P(LibraryListsOf, Of_two_lists_of_one_id_the_first_counts) {
    EXPECT_EQ(Lists(GetParam().write({{"WIN_REGS", 111, "a"}, {"WIN_REGS", 111, "b"}})),
              Found{"WIN_REGS 111: a"});
}

TEST_P(LibraryListsOf, A_list_may_be_empty) {
    EXPECT_EQ(Lists(GetParam().write({{"WIN_FILES", 101, ""}, {"WIN_FILES", 102, "x"}})),
              (Found{"WIN_FILES 101: ", "WIN_FILES 102: x"}));
}

TEST_P(LibraryListsOf, A_library_without_lists_has_none) {
    EXPECT_EQ(Lists(GetParam().write({})), Found{});
}

TEST_P(LibraryListsOf, A_library_that_is_cut_anywhere_gives_no_false_list) {
    std::string const whole = GetParam().write(Three);
    for (std::size_t size = 0; size < whole.size(); ++size) {
        for (std::string const &list : Lists(whole.substr(0, size))) {
            bool const isTrue =
                std::find(ThreeFound.begin(), ThreeFound.end(), list) != ThreeFound.end();
            EXPECT_TRUE(isTrue || list == "malformed") << list << " of " << size;
        }
    }
    EXPECT_NE(Lists(whole.substr(0, whole.size() - 1)), ThreeFound);
}

TEST_P(LibraryListsOf, Any_byte_may_be_wrong) {
    std::string const whole = GetParam().write(Three);
    for (std::size_t at = 0; at < whole.size(); ++at) {
        for (char const value : {'\0', '\x7f', '\x80', '\xff'}) {
            std::string wrong = whole;
            wrong[at] = value;
            for (LibraryList const &list : FindLists(wrong).lists) {
                EXPECT_GE(list.stored.data(), wrong.data()) << at;
                EXPECT_LE(list.stored.data() + list.stored.size(), wrong.data() + wrong.size());
            }
        }
    }
}

TEST(LibraryLists, Of_several_languages_the_first_counts) {
    EXPECT_EQ(Lists(Dll(Three, true, 3)), ThreeFound);
}

TEST(LibraryLists, A_directory_that_holds_itself_ends) {
    std::string dll = Dll({Three[0]});
    // The one type's directory is the root again, and the root has names, no ids.
    Put(dll, libraries::dllResourcesAt + 20, 0x80000000, 4);
    EXPECT_EQ(Lists(dll), Found{});
}

TEST(LibraryLists, Directories_that_are_told_over_and_over_have_an_end) {
    std::string dll = Dll({});
    // A root of 60,000 types, all of one name that stands behind it, and the root is each
    // one's directory of ids.
    constexpr std::size_t types = 60000;
    constexpr std::size_t size = 16 + 8 * types;
    dll.resize(libraries::dllResourcesAt + size);
    Put(dll, libraries::dllResourcesAt + 12, types, 2);
    for (std::size_t i = 0; i < types; ++i) {
        std::size_t const entry = libraries::dllResourcesAt + 16 + 8 * i;
        Put(dll, entry, 0x80000000 + size, 4);
        Put(dll, entry + 4, 0x80000000, 4);
    }
    dll += std::string("\x09\0W\0I\0N\0_\0F\0I\0L\0E\0S\0", 20);
    std::size_t const section = 0x98 + 240;
    Put(dll, section + 8, dll.size() - libraries::dllResourcesAt, 4);
    Put(dll, section + 16, dll.size() - libraries::dllResourcesAt, 4);
    LibraryLists const found = FindLists(dll);
    EXPECT_TRUE(found.lists.empty());
    EXPECT_EQ(found.malformed, "it has too many resources");
}

TEST(LibraryLists, A_list_that_reaches_over_the_end_is_refused) {
    std::string library = SharedLibrary({Three[0]});
    // Behind the head of the note and its owner, which takes 12 bytes: id, size.
    Put(library, libraries::notesAt + 12 + 12 + 4, 4, 4);
    EXPECT_EQ(Lists(library), Found{"malformed"});
}

TEST(LibraryLists, A_note_of_another_owner_or_kind_is_passed_over) {
    std::string owner = SharedLibrary({Three[0]});
    owner[libraries::notesAt + 12] = 'X';
    EXPECT_EQ(Lists(owner), Found{});
    std::string kind = SharedLibrary({Three[0]});
    Put(kind, libraries::notesAt + 8, 1, 4);
    EXPECT_EQ(Lists(kind), Found{});
}

TEST(LibraryLists, Other_files_are_told_by_their_first_bytes) {
    EXPECT_TRUE(IsLibrary(Dll({})));
    EXPECT_TRUE(IsLibrary(SharedLibrary({})));
    EXPECT_FALSE(IsLibrary("%SystemDir%\\kernel32.dll\r\n"));
    EXPECT_FALSE(IsLibrary(""));
    EXPECT_FALSE(IsLibrary(lists::Pack("HKLM\\SYSTEM\r\n")));
    EXPECT_EQ(Lists(""), Found{"malformed"});
}

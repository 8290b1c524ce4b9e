#include "answer/file_check.h"
#include "linkdb.h"
#include "linkdb_image.h"
#include "test_graph.h"

#include <gtest/gtest.h>

using namespace qvlink;

namespace {

constexpr std::uint32_t Kept = PERSISTENT_BIT;

FileCheck Check(Bytes const &bytes) {
    return CheckFile({reinterpret_cast<const char *>(bytes.data()), bytes.size()});
}
FileCheck Check(image::File const &file) { return Check(image::Write(file)); }

std::set<std::string> ChecksOf(std::vector<Finding> const &findings) {
    std::set<std::string> checks;
    for (Finding const &finding : findings) {
        checks.insert(finding.check);
    }
    return checks;
}
using Checks = std::set<std::string>;

// root -> C: -> a, and C: -> b; all persistent.
image::File Sound() {
    image::File file;
    file.objects = {{1, 0, Kept | OBJ_ROOT, "", {1}, {}, {}, 0, 0},
                    {2, 0, Kept | OBJ_DRIVE, "C:", {2, 3}, {1}, {}, 0, 0},
                    {3, 0, Kept | OBJ_FILE, "a", {4}, {2}, {}, 0, 0},
                    {4, 0, Kept | OBJ_FILE, "b", {}, {3, 4}, {}, 0, 0}};
    file.links = {
        {1, 1, 2, Kept | 1}, {2, 2, 3, Kept | 1}, {3, 2, 4, Kept | 1}, {4, 3, 4, Kept | 2}};
    return file;
}

} // namespace

TEST(FileCheck, A_sound_file_has_no_findings) {
    FileCheck const check = Check(Sound());
    EXPECT_EQ(ChecksOf(check.problems), Checks{});
    EXPECT_EQ(ChecksOf(check.notes), Checks{});
    EXPECT_EQ(check.objects, 4U);
    EXPECT_EQ(check.links, 4U);
    EXPECT_EQ(check.droppedObjects + check.droppedLinks, 0U);
}

TEST(FileCheck, What_the_library_writes_is_sound) {
    TestGraph graph;
    CQVUObject *const p = graph.Program("Z:\\bin\\p");
    graph.Found(p, graph.Program("Z:\\lib\\x"));
    graph.Asks(graph.Windows("C:\\app\\q.exe"), "y.dll");
    graph.Flush();
    EXPECT_EQ(ChecksOf(Check(ReadBytes(graph.DatabaseFile())).problems), Checks{});
}

TEST(FileCheck, Length_and_magic_make_a_reader_ignore_the_file) {
    Bytes bytes = image::Write(Sound());
    EXPECT_EQ(ChecksOf(Check(Bytes(bytes.begin(), bytes.begin() + 3)).problems), Checks{"header"});
    Bytes longer = bytes;
    longer.push_back(0);
    EXPECT_EQ(ChecksOf(Check(longer).problems), Checks{"header"});
    Bytes other = bytes;
    image::SetWord(other, image::magicAt, 4105);
    EXPECT_EQ(ChecksOf(Check(other).problems), Checks{"header"});
    Bytes shortHead(bytes.begin(), bytes.begin() + 20);
    image::FixLength(shortHead);
    EXPECT_EQ(ChecksOf(Check(shortHead).problems), Checks{"header"});
}

TEST(FileCheck, Every_truncation_with_a_true_length_is_found) {
    Bytes const bytes = image::Write(Sound());
    for (std::size_t size = 28; size < bytes.size(); ++size) {
        Bytes cut(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size));
        image::FixLength(cut);
        EXPECT_EQ(ChecksOf(Check(cut).problems).count("short"), 1U) << size;
    }
}

TEST(FileCheck, Bytes_behind_the_last_record_are_found) {
    Bytes bytes = image::Write(Sound());
    bytes.push_back(0);
    image::FixLength(bytes);
    EXPECT_EQ(ChecksOf(Check(bytes).problems), Checks{"trailing"});
}

TEST(FileCheck, Hostile_counts_are_found_without_taking_their_memory) {
    Bytes bytes = image::Write(Sound());
    image::SetWord(bytes, image::objectCountAt, 0xffffffff);
    EXPECT_EQ(ChecksOf(Check(bytes).problems), Checks{"short"});
    bytes = image::Write(Sound());
    image::SetWord(bytes, image::linkCountAt, 0xffffffff);
    EXPECT_EQ(ChecksOf(Check(bytes).problems).count("short"), 1U);
    bytes = image::Write(Sound());
    image::SetWord(bytes, image::recordsAt + 16, 0x3fffffff);
    EXPECT_EQ(ChecksOf(Check(bytes).problems), Checks{"short"});
}

TEST(FileCheck, Any_flipped_bit_is_survived) {
    Bytes const bytes = image::Write(Sound());
    for (std::size_t i = 0; i < bytes.size() * 8; ++i) {
        Bytes flipped = bytes;
        flipped[i / 8] = static_cast<std::uint8_t>(flipped[i / 8] ^ (1U << (i % 8)));
        EXPECT_EQ(Check(flipped).bytes, bytes.size());
    }
}

TEST(FileCheck, Ids_are_unique_ascending_and_not_zero) {
    image::File file = Sound();
    file.objects[3].id = 3;
    EXPECT_EQ(ChecksOf(Check(file).problems).count("duplicate-id"), 1U);
    file = Sound();
    std::swap(file.objects[2], file.objects[3]);
    EXPECT_EQ(ChecksOf(Check(file).problems), Checks{"order"});
    file = Sound();
    file.links[0].id = 0;
    EXPECT_EQ(ChecksOf(Check(file).problems).count("id"), 1U);
}

TEST(FileCheck, The_root_alone_is_object_1_and_without_a_type) {
    image::File file = Sound();
    file.objects[0].type = Kept | OBJ_FILE;
    EXPECT_EQ(ChecksOf(Check(file).problems).count("root"), 1U);
    file = Sound();
    file.objects[3].type = Kept;
    EXPECT_EQ(ChecksOf(Check(file).problems).count("root"), 1U);
}

TEST(FileCheck, Names_are_of_at_most_250_characters_without_zero_bytes) {
    image::File file = Sound();
    file.objects[2].name = std::string(250, 'x');
    EXPECT_EQ(ChecksOf(Check(file).problems), Checks{});
    file.objects[2].name = std::string(251, 'x');
    EXPECT_EQ(ChecksOf(Check(file).problems), Checks{"name"});
    file.objects[2].name = std::string("a\0b", 3);
    EXPECT_EQ(ChecksOf(Check(file).problems), Checks{"name"});
}

TEST(FileCheck, Each_link_stands_once_in_the_lists_of_both_its_ends) {
    image::File file = Sound();
    file.objects[3].to = {3};
    EXPECT_EQ(ChecksOf(Check(file).problems), Checks{"entries"});
    file = Sound();
    file.objects[2].from = {};
    EXPECT_EQ(ChecksOf(Check(file).problems), Checks{"entries"});
    file = Sound();
    file.objects[2].from = {4, 4};
    EXPECT_EQ(ChecksOf(Check(file).problems), Checks{"entries"});
    file = Sound();
    file.objects[2].from = {4, 3};
    EXPECT_EQ(ChecksOf(Check(file).problems), Checks{"entries"});
    file = Sound();
    file.objects[2].from = {4, 77};
    EXPECT_EQ(ChecksOf(Check(file).problems), Checks{"entries"});
}

TEST(FileCheck, The_ends_of_a_link_exist) {
    image::File file = Sound();
    file.links[3].target = 99;
    EXPECT_EQ(ChecksOf(Check(file).problems), (Checks{"ends", "entries"}));
}

TEST(FileCheck, A_link_has_a_type) {
    image::File file = Sound();
    file.links[3].type = Kept;
    EXPECT_EQ(ChecksOf(Check(file).problems), Checks{"link-type"});
}

TEST(FileCheck, A_link_is_persistent_exactly_if_both_ends_are) {
    image::File file = Sound();
    file.links[3].type = 2;
    EXPECT_EQ(ChecksOf(Check(file).problems), Checks{"persistence"});
    file = Sound();
    file.objects[2].type = OBJ_FILE;
    EXPECT_EQ(ChecksOf(Check(file).problems), Checks{"persistence"});
}

TEST(FileCheck, An_entry_is_marked_as_its_link_is) {
    image::File file = Sound();
    file.objects[2].from = {4 | LINK_ENTRY_TRANSIENT};
    EXPECT_EQ(ChecksOf(Check(file).problems), Checks{"persistence"});
}

TEST(FileCheck, Two_links_that_say_the_same_are_found) {
    image::File file = Sound();
    file.links.push_back({5, 3, 4, Kept | 2});
    file.objects[2].from.push_back(5);
    file.objects[3].to.push_back(5);
    EXPECT_EQ(ChecksOf(Check(file).problems), Checks{"twin-links"});
    file.links.back().type = Kept | 4;
    EXPECT_EQ(ChecksOf(Check(file).problems), Checks{});
}

TEST(FileCheck, What_another_process_leaves_out_is_a_note) {
    image::File file = Sound();
    file.objects.push_back(
        {5, 0, OBJ_FILE, "t", {5 | LINK_ENTRY_TRANSIENT}, {6 | LINK_ENTRY_TRANSIENT}, {}, 0, 0});
    file.objects[3].to.push_back(5 | LINK_ENTRY_TRANSIENT);
    file.objects[1].from.push_back(6 | LINK_ENTRY_TRANSIENT);
    file.links.push_back({5, 5, 4, 2});
    file.links.push_back({6, 2, 5, 1});
    file.objects.push_back({6, 0, Kept | OBJ_VFILE, "alone", {}, {}, {}, 0, 0});
    FileCheck const check = Check(file);
    EXPECT_EQ(ChecksOf(check.problems), Checks{});
    EXPECT_EQ(ChecksOf(check.notes), Checks{"dropped"});
    EXPECT_EQ(check.droppedObjects, 2U);
    EXPECT_EQ(check.droppedLinks, 2U);
}

TEST(FileCheck, An_entry_that_a_transient_link_left_behind_is_a_note) {
    image::File file = Sound();
    file.objects[3].from = {9 | LINK_ENTRY_TRANSIENT};
    FileCheck const check = Check(file);
    EXPECT_EQ(ChecksOf(check.problems), Checks{});
    EXPECT_EQ(ChecksOf(check.notes), Checks{"stale"});
}

TEST(FileCheck, A_file_below_no_drive_is_found) {
    image::File file = Sound();
    file.links[1].type = Kept | 2; // C: no longer holds a
    EXPECT_EQ(ChecksOf(Check(file).problems), Checks{"parents"});
}

TEST(FileCheck, A_folder_below_itself_is_found) {
    image::File file = Sound();
    file.links[1] = {2, 4, 3, Kept | 1}; // b holds a
    file.links[2] = {3, 3, 4, Kept | 1}; // a holds b
    file.objects[1].from = {};
    file.objects[3].from = {2};
    file.objects[2].from = {4, 3};
    EXPECT_EQ(ChecksOf(Check(file).problems), Checks{"parents"});
}

TEST(FileCheck, Brothers_of_one_name_are_found_and_case_makes_a_difference) {
    image::File file = Sound();
    file.objects[3].name = "a";
    EXPECT_EQ(ChecksOf(Check(file).problems), Checks{"twin-names"});
    file.objects[3].name = "A";
    EXPECT_EQ(ChecksOf(Check(file).problems), Checks{});
}

TEST(FileCheck, Bare_names_are_unique_without_regard_to_case) {
    image::File file = Sound();
    file.objects.push_back({5, 0, Kept | OBJ_VFILE, "X.dll", {}, {5}, {}, 0, 0});
    file.objects.push_back({6, 0, Kept | OBJ_VFILE, "x.DLL", {}, {6}, {}, 0, 0});
    file.objects[2].from = {4, 5, 6};
    file.links.push_back({5, 3, 5, Kept | 2});
    file.links.push_back({6, 3, 6, Kept | 2});
    EXPECT_EQ(ChecksOf(Check(file).problems), Checks{"twin-names"});
}

TEST(FileCheck, A_path_of_more_levels_than_are_followed_is_found) {
    TestGraph graph;
    std::string path = "C:";
    for (int i = 0; i < 259; ++i) {
        path += "\\d";
    }
    graph.Folder(path);
    graph.Flush();
    EXPECT_EQ(ChecksOf(Check(ReadBytes(graph.DatabaseFile())).problems), Checks{});
    CQVUObject *const deep = graph.Folder(path);
    CQVUObject *const tooDeep = graph.Database().AddObject("e", OBJ_FILE, 0, 0, nullptr, 1);
    deep->LinkTo(tooDeep, LINK_PARENT);
    graph.Flush();
    EXPECT_EQ(ChecksOf(Check(ReadBytes(graph.DatabaseFile())).problems), Checks{"depth"});
    char buffer[1000];
    EXPECT_EQ(tooDeep->GetFullPath(buffer), 0);
    EXPECT_EQ(deep->GetFullPath(buffer), 1);
}

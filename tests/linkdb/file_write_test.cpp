// The bytes that Flush writes.
#include <gtest/gtest.h>

#include "platform/process.h"
#include "session.h"

namespace {

class FileWrite : public testing::Test {
protected:
    TempFolder folder;
    Session session{folder};

    Bytes Flushed() {
        session->Flush();
        return ReadBytes(folder.DatabaseFile());
    }
};

} // namespace

TEST_F(FileWrite, The_header_tells_length_writer_magic_and_counts) {
    CQVUObject *const object = session.Add("a", OBJ_FILE, persistent);
    object->LinkTo(session->GetRootObject(), 4);
    Bytes const bytes = Flushed();
    EXPECT_EQ(image::WordAt(bytes, 0), bytes.size());
    EXPECT_NE(image::StampOf(bytes).created, 0u);
    EXPECT_EQ(image::WordAt(bytes, 12), CurrentProcessId());
    EXPECT_EQ(image::WordAt(bytes, 16), 4104u);
    EXPECT_EQ(image::WordAt(bytes, 20), 2u);
    EXPECT_EQ(image::WordAt(bytes, 24), 1u);
    EXPECT_EQ(bytes.size(), 28u + (26 + 4) + (26 + 1 + 4) + 16);
}

TEST_F(FileWrite, Every_byte_of_a_small_file_is_as_told) {
    unsigned char data[] = {0xd1, 0xd2, 0xd3};
    CQVUObject *const first =
        session->AddObject("ab", OBJ_FILE, 0x01020304, sizeof data, data, persistent);
    CQVUObject *const second = session.Add(nullptr, OBJ_VFILE, transient);
    first->LinkTo(second, 0x20);
    Bytes const bytes = Flushed();
    Bytes const records{
        1, 0, 0, 0,    0,    0,    0,    0,   0, 0,    0, 0x80, 0,    0, 0, 0, 0, 0, 0, 0, // root
        0, 0, 0, 0,    0,    0,                                                            //
        2, 0, 0, 0,    4,    3,    2,    1,   4, 0,    0, 0x80, 3,    0, 0, 0, 1, 0, 0, 0, // first
        0, 0, 0, 0,    2,    0,    'a',  'b',                                              //
        1, 0, 0, 0x40, 0xd1, 0xd2, 0xd3,                                                   //
        3, 0, 0, 0,    0,    0,    0,    0,   0, 0x10, 0, 0,    0,    0, 0, 0, 0, 0, 0, 0, // second
        1, 0, 0, 0,    0,    0,                                                            //
        1, 0, 0, 0x40,                                                                     //
        1, 0, 0, 0,    2,    0,    0,    0,   3, 0,    0, 0,    0x20, 0, 0, 0};
    EXPECT_EQ(Bytes(bytes.begin() + 28, bytes.end()), records);
}

TEST_F(FileWrite, The_stamp_stays_the_same_for_the_life_of_the_process) {
    session.Add("a", OBJ_FILE, transient);
    image::Stamp const first = image::StampOf(Flushed());
    session.Add("b", OBJ_FILE, transient);
    image::Stamp const second = image::StampOf(Flushed());
    EXPECT_EQ(first.created, second.created);
    EXPECT_EQ(first.process, second.process);
}

TEST_F(FileWrite, Records_come_in_ascending_order_of_id) {
    for (char const *const name : {"z", "m", "a"})
        session.Add(name, OBJ_FILE, transient)->LinkTo(session->GetRootObject(), 2);
    session->DeleteObject(3);
    session.Add("k", OBJ_FILE, transient)->LinkTo(session->GetRootObject(), 2);
    Flushed();
    image::File const file = FileIn(folder);
    ASSERT_EQ(file.objects.size(), 4u);
    ASSERT_EQ(file.links.size(), 3u);
    for (std::size_t i = 1; i < file.objects.size(); ++i)
        EXPECT_LT(file.objects[i - 1].id, file.objects[i].id);
    for (std::size_t i = 1; i < file.links.size(); ++i)
        EXPECT_LT(file.links[i - 1].id, file.links[i].id);
}

TEST_F(FileWrite, Transient_and_persistent_records_are_written_alike) {
    CQVUObject *const a = session.Add("a", OBJ_FILE, transient);
    CQVUObject *const b = session.Add("b", OBJ_FILE, persistent);
    a->LinkTo(b, 2);
    b->LinkTo(session->GetRootObject(), 2);
    Flushed();
    image::File const file = FileIn(folder);
    ASSERT_EQ(file.objects.size(), 3u);
    EXPECT_EQ(file.objects[1].type, OBJ_FILE);
    EXPECT_EQ(file.objects[2].type, OBJ_FILE | PERSISTENT_BIT);
    ASSERT_EQ(file.links.size(), 2u);
    EXPECT_EQ(file.links[0].type, 2u);
    EXPECT_EQ(file.links[1].type, 2u | PERSISTENT_BIT);
}

TEST_F(FileWrite, The_count_word_is_written_as_it_stands_in_memory) {
    CQVUObject *const hub = session.Add("hub", OBJ_FILE, transient);
    for (int i = 0; i < 3; ++i)
        hub->LinkTo(session->GetRootObject(), 2);
    session->DeleteLink(1, 1, 1);
    session->DeleteLink(2, 1, 1);
    Flushed();
    image::File const file = FileIn(folder);
    EXPECT_EQ(file.objects[1].from.size(), 1u);
    EXPECT_EQ(file.objects[1].fromBits, LINK_LIST_BLOCKED);
}

TEST_F(FileWrite, All_32_bits_of_the_flags_are_written) {
    session.Add("a", OBJ_FILE, transient)->SetFlags(0xffffffff);
    Flushed();
    EXPECT_EQ(FileIn(folder).objects[1].flags, 0xffffffffu);
}

TEST_F(FileWrite, An_empty_name_has_length_zero_like_none) {
    char empty[] = "";
    session.Add("a", OBJ_FILE, transient)->SetName(empty);
    session.Add(nullptr, OBJ_FILE, transient);
    Bytes const bytes = Flushed();
    EXPECT_EQ(bytes.size(), 28u + 3 * 26);
}

TEST_F(FileWrite, A_bare_root_is_never_written) {
    session->Flush();
    EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
}

TEST_F(FileWrite, Deleting_all_but_the_root_leaves_the_previous_file_unchanged) {
    session.Add("survivor", OBJ_FILE, persistent);
    Bytes const before = Flushed();
    session->DeleteObject(2);
    EXPECT_EQ(Flushed(), before);
    session.Release(); // marked as changed, and still not written
    EXPECT_EQ(ReadBytes(folder.DatabaseFile()), before);
    Session again(folder);
    EXPECT_EQ(NameOf(again.Object(2)), "survivor");
}

TEST_F(FileWrite, An_empty_database_is_never_written) {
    session->DeleteObject(1);
    session->Flush();
    EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
}

TEST_F(FileWrite, A_root_with_a_link_to_itself_is_written) {
    session->GetRootObject()->LinkTo(session->GetRootObject(), 2);
    Flushed();
    image::File const file = FileIn(folder);
    ASSERT_EQ(file.objects.size(), 1u);
    EXPECT_EQ(file.objects[0].from, std::vector<std::uint32_t>{1});
    EXPECT_EQ(file.objects[0].to, std::vector<std::uint32_t>{1});
}

TEST_F(FileWrite, One_object_that_is_not_the_root_is_written) {
    session.Add("alone", OBJ_FILE, transient);
    session->DeleteObject(1);
    Flushed();
    EXPECT_EQ(FileIn(folder).objects.size(), 1u);
}

TEST_F(FileWrite, A_root_with_a_stale_entry_is_written) {
    session.Add("a", OBJ_FILE, transient);
    session->GetRootObject()->LinkTo(session.Object(2), 2);
    session->DeleteLink(1, 0, 1); // the root keeps its entry
    session->DeleteObject(2);
    Flushed();
    EXPECT_EQ(FileIn(folder).objects.size(), 1u);
}

TEST_F(FileWrite, A_flush_without_a_change_writes_all_the_same) {
    session.Add("a", OBJ_FILE, transient);
    PlaceMarker(folder);
    session->Flush();
    EXPECT_FALSE(MarkerStands(folder));
}

TEST_F(FileWrite, The_temporary_file_is_gone_afterwards) {
    session.Add("a", OBJ_FILE, transient);
    WriteBytes(folder.TemporaryFile(), BytesOf("left by a process that was killed"));
    session->Flush();
    EXPECT_FALSE(std::filesystem::exists(folder.TemporaryFile()));
    EXPECT_EQ(FileIn(folder).objects.size(), 2u);
}

TEST_F(FileWrite, A_read_only_file_is_replaced) {
    session.Add("a", OBJ_FILE, transient);
    PlaceMarker(folder);
    std::filesystem::permissions(folder.DatabaseFile(), std::filesystem::perms::owner_read);
    session->Flush();
    EXPECT_EQ(FileIn(folder).objects.size(), 2u);
}

TEST_F(FileWrite, The_old_file_stays_when_the_temporary_one_cannot_be_made) {
    session.Add("a", OBJ_FILE, transient);
    Bytes const before = Flushed();
    std::filesystem::create_directory(folder.TemporaryFile());
    session.Add("b", OBJ_FILE, transient);
    EXPECT_EQ(Flushed(), before);
    EXPECT_TRUE(std::filesystem::is_directory(folder.TemporaryFile()));
}

TEST_F(FileWrite, A_folder_in_the_file_s_place_stays_and_no_temporary_is_left) {
    session.Add("a", OBJ_FILE, transient);
    std::filesystem::create_directory(folder.DatabaseFile());
    WriteBytes(folder.DatabaseFile() / "inside", BytesOf("kept"));
    session->Flush();
    EXPECT_TRUE(std::filesystem::exists(folder.DatabaseFile() / "inside"));
    EXPECT_FALSE(std::filesystem::exists(folder.TemporaryFile()));
}

TEST_F(FileWrite, A_link_that_stands_in_no_list_is_written_too) {
    session->MakeNewLink(50, 60, 7, 1);
    session.Add("a", OBJ_FILE, transient);
    Flushed();
    image::File const file = FileIn(folder);
    ASSERT_EQ(file.links.size(), 1u);
    EXPECT_EQ(file.links[0].source, 50u);
    EXPECT_EQ(file.links[0].target, 60u);
    EXPECT_EQ(file.links[0].type, 7u | PERSISTENT_BIT);
}

TEST_F(FileWrite, A_long_path_is_written_or_refused_but_never_lost) {
    std::string deep = folder.Directory();
    std::filesystem::path made = folder.Path();
    while (deep.size() < 230) {
        deep += "\\0123456789";
        made /= "0123456789";
    }
    std::filesystem::create_directories(made);
    session.Release();
    Session there(deep);
    there.Add("a", OBJ_FILE, persistent);
    there->Flush();
    EXPECT_TRUE(image::Read(ReadBytes(made / "linkdb.dat")).has_value());
    EXPECT_FALSE(std::filesystem::exists(made / "linkdb.dat.tmp"));
}

TEST_F(FileWrite, A_path_beyond_260_characters_does_no_harm) {
    session.Release();
    Session nowhere(folder.Directory() + std::string(300, 'x'));
    nowhere.Add("a", OBJ_FILE, persistent);
    nowhere->Flush();
    nowhere.Release();
    EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
}

#include <type_traits>

#include <gtest/gtest.h>

#include "session.h"

TEST(Attach, A_second_attachment_with_another_directory_gives_the_same_instance_and_reads_nothing) {
    TempFolder first, second;
    {
        Session session(second);
        session.Add("only in the second", OBJ_VFILE, transient);
        session->Flush();
    }
    Session session(first);
    CQVUDatabase *const again = AttachDatabase(second.Directory().c_str());
    EXPECT_EQ(again, session.Get());
    EXPECT_EQ(session->LookupObject(2), nullptr);
    EXPECT_EQ(again->Release(), 1u);
}

TEST(Attach, The_first_directory_holds_for_the_whole_process) {
    TempFolder first, second;
    Session session(first);
    AttachDatabase(second.Directory().c_str());
    session.Add("any", OBJ_FILE, transient);
    session->Flush();
    EXPECT_EQ(session->Release(), 1u);
    EXPECT_TRUE(std::filesystem::exists(first.DatabaseFile()));
    EXPECT_FALSE(std::filesystem::exists(second.DatabaseFile()));
}

TEST(Attach, Counts_start_at_one_and_follow_AddRef_Release_and_further_attachments) {
    TempFolder folder;
    CQVUDatabase *const database = AttachDatabase(folder.Directory().c_str());
    ASSERT_NE(database, nullptr);
    EXPECT_EQ(database->AddRef(), 2u);
    EXPECT_EQ(AttachDatabase(folder.Directory().c_str()), database);
    EXPECT_EQ(database->AddRef(), 4u);
    EXPECT_EQ(database->Release(), 3u);
    EXPECT_EQ(database->Release(), 2u);
    EXPECT_EQ(database->Release(), 1u);
    EXPECT_EQ(database->Release(), 0u);
}

TEST(Attach, The_last_Release_destroys_and_writes_and_no_earlier_one_does) {
    TempFolder folder;
    CQVUDatabase *const database = AttachDatabase(folder.Directory().c_str());
    database->AddRef();
    database->AddObject("kept", OBJ_FILE, 0, 0, nullptr, persistent);
    EXPECT_EQ(database->Release(), 1u);
    EXPECT_FALSE(std::filesystem::exists(folder.DatabaseFile()));
    EXPECT_EQ(database->Release(), 0u);
    EXPECT_TRUE(std::filesystem::exists(folder.DatabaseFile()));
}

TEST(Attach, After_the_last_Release_another_directory_may_be_attached) {
    TempFolder first, second;
    {
        Session session(first);
        session.Add("in the first", OBJ_FILE, persistent);
    }
    {
        Session session(second);
        EXPECT_EQ(session->LookupObject(2), nullptr);
        session.Add("in the second", OBJ_FILE, persistent);
    }
    EXPECT_EQ(FileIn(first).objects.at(1).name, "in the first");
    EXPECT_EQ(FileIn(second).objects.at(1).name, "in the second");
}

TEST(Attach, A_directory_with_a_trailing_backslash_and_one_without_yield_the_same_file) {
    TempFolder folder;
    {
        Session session(folder.Directory() + "\\");
        session.Add("any", OBJ_FILE, persistent);
    }
    EXPECT_EQ(FileIn(folder).objects.size(), 2u);
    Session session(folder.Directory());
    ASSERT_NE(session.Object(2), nullptr);
    EXPECT_EQ(NameOf(session.Object(2)), "any");
}

TEST(Attach, A_directory_with_forward_slashes_is_attached_too) {
    TempFolder folder;
    {
        Session session(folder.Path().generic_string());
        session.Add("any", OBJ_FILE, persistent);
    }
    EXPECT_EQ(FileIn(folder).objects.size(), 2u);
}

TEST(Attach, A_missing_folder_gives_an_empty_database_with_a_root) {
    TempFolder folder;
    Session session(folder.Directory() + "\\not there");
    ASSERT_NE(session->GetRootObject(), nullptr);
    session.Add("lost", OBJ_FILE, persistent);
    session->Flush();
    session.Release();
    EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
}

TEST(Attach, The_root_of_a_fresh_database_is_persistent_nameless_and_zero_otherwise) {
    TempFolder folder;
    Session session(folder);
    CQVUObject *const root = session->GetRootObject();
    ASSERT_NE(root, nullptr);
    EXPECT_EQ(root->dwID, 1u);
    EXPECT_EQ(root->dwFlags, 0u);
    EXPECT_EQ(root->dwType, PERSISTENT_BIT);
    EXPECT_EQ(root->dwDataSize, 0u);
    EXPECT_EQ(root->dwLinksFrom, 0u);
    EXPECT_EQ(root->dwLinksTo, 0u);
    EXPECT_EQ(root->pszName, nullptr);
    EXPECT_EQ(root->pdwLinksFrom, nullptr);
    EXPECT_EQ(root->pdwLinksTo, nullptr);
    EXPECT_EQ(root->pData, nullptr);
}

TEST(Attach, A_database_nobody_changed_writes_nothing) {
    TempFolder folder;
    { Session session(folder); }
    EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
}

TEST(Attach, Loading_does_not_mark_a_change_even_when_records_are_dropped) {
    TempFolder folder;
    {
        Session session(folder);
        session.Add("transient", OBJ_FILE, transient);
        session.Add("persistent, no link", OBJ_FILE, persistent);
    }
    GiveAway(folder);
    Bytes const before = ReadBytes(folder.DatabaseFile());
    {
        Session session(folder);
        EXPECT_EQ(session->LookupObject(2), nullptr);
        EXPECT_EQ(session->LookupObject(3), nullptr);
    }
    EXPECT_EQ(ReadBytes(folder.DatabaseFile()), before);
}

TEST(Attach, With_the_save_flag_off_the_destructor_writes_nothing_and_Flush_still_writes) {
    TempFolder folder;
    Session session(folder);
    session.Add("flushed", OBJ_FILE, persistent);
    session->SetSaveFlag(0);
    session->Flush();
    EXPECT_EQ(FileIn(folder).objects.size(), 2u);
    session.Add("not saved", OBJ_FILE, persistent);
    session.Release();
    EXPECT_EQ(FileIn(folder).objects.size(), 2u);
}

TEST(Attach, The_save_flag_can_be_set_again_to_any_value_but_zero) {
    TempFolder folder;
    Session session(folder);
    session.Add("saved", OBJ_FILE, persistent);
    session->SetSaveFlag(0);
    session->SetSaveFlag(-7);
    session.Release();
    EXPECT_EQ(FileIn(folder).objects.size(), 2u);
}

TEST(Attach, A_new_instance_starts_with_saving_allowed_and_no_change) {
    TempFolder folder;
    {
        Session session(folder);
        session.Add("first", OBJ_FILE, persistent);
        session->SetSaveFlag(0);
    }
    EXPECT_FALSE(std::filesystem::exists(folder.DatabaseFile()));
    { Session session(folder); }
    EXPECT_FALSE(std::filesystem::exists(folder.DatabaseFile()));
    {
        Session session(folder);
        session.Add("second", OBJ_FILE, persistent);
    }
    EXPECT_TRUE(std::filesystem::exists(folder.DatabaseFile()));
}

TEST(Attach, Flush_does_not_clear_the_mark_of_a_change) {
    TempFolder folder;
    Session session(folder);
    session.Add("any", OBJ_FILE, persistent);
    session->Flush();
    PlaceMarker(folder);
    session.Release();
    EXPECT_FALSE(MarkerStands(folder));
}

TEST(Attach, Initialize_again_replaces_the_path_and_keeps_what_is_there) {
    TempFolder first, second;
    Session session(first);
    session.Add("in memory", OBJ_FILE, persistent);
    EXPECT_EQ(session->Initialize(second.Directory().c_str()), 1);
    ASSERT_NE(session.Object(2), nullptr);
    session.Release();
    EXPECT_FALSE(std::filesystem::exists(first.DatabaseFile()));
    EXPECT_EQ(FileIn(second).objects.at(1).name, "in memory");
}

TEST(Attach, Initialize_again_reads_the_file_into_the_same_maps_as_duplicates) {
    TempFolder folder;
    Session session(folder);
    CQVUObject *const before = session.Add("module.dll", OBJ_VFILE, persistent);
    session.Add("other", OBJ_FILE, persistent);
    before->LinkTo(session.Object(3), 8);
    session->Flush();
    EXPECT_EQ(session->Initialize(folder.Directory().c_str()), 1);
    CQVUObject *const after = session.Object(2);
    ASSERT_NE(after, nullptr);
    EXPECT_NE(after, before);
    EXPECT_EQ(NameOf(before), "module.dll"); // callers may still hold it
    EXPECT_EQ(NameOf(after), "module.dll");
    EXPECT_EQ(LinksFrom(after), std::vector<std::uint32_t>{1});
    char name[] = "MODULE.DLL";
    EXPECT_EQ(session->LookupVFILE(name), before); // indexed first
    EXPECT_EQ(session.Add("next", OBJ_FILE, transient)->GetUniqueID(), 4u);
}

TEST(Attach, Initialize_always_gives_one) {
    TempFolder folder;
    Session session(folder);
    EXPECT_EQ(session->Initialize((folder.Directory() + "\\missing").c_str()), 1);
    WriteBytes(folder.DatabaseFile(), BytesOf("rubbish"));
    EXPECT_EQ(session->Initialize(folder.Directory().c_str()), 1);
}

TEST(Attach, An_instance_of_its_own_works_for_its_owner) {
    static_assert(std::is_default_constructible_v<CQVUDatabase>);
    static_assert(!std::is_copy_constructible_v<CQVUDatabase>);
    static_assert(!std::is_copy_assignable_v<CQVUDatabase>);
    static_assert(!std::is_polymorphic_v<CQVUObject> && !std::is_polymorphic_v<CQVULink>);
    TempFolder folder;
    CQVUDatabase database;
    database.Flush(); // no file name yet: writes nothing
    EXPECT_EQ(database.GetRootObject(), nullptr);
    EXPECT_EQ(database.AddRef(), 2u);
}

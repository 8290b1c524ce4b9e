// What one process leaves for another, with real second processes.
#include <gtest/gtest.h>

#include "platform/process.h"
#include "roles.h"
#include "session.h"

namespace {

// A persistent pair with a link, a transient object linked with it, and one without links.
void MakeGraph(CQVUDatabase *database) {
    auto const add = [database](char const *name, int persistence) {
        return database->AddObject(name, OBJ_FILE, 0, 0, nullptr, persistence);
    };
    CQVUObject *const source = add("source", persistent);
    source->LinkTo(add("target", persistent), 8);
    source->LinkTo(add("passing", transient), 8);
    add("lonely", persistent);
}

Role const writer("write", [](Arguments const &arguments) {
    Session session(arguments.at(0));
    MakeGraph(session.Get());
    return 0;
});

// Attaches, changes and returns from main without a Release.
Role const leaver("leave", [](Arguments const &arguments) {
    CQVUDatabase *const database = AttachDatabase(arguments.at(0).c_str());
    database->AddRef();
    if (arguments.size() > 1)
        database->SetSaveFlag(0);
    MakeGraph(database);
    return 0;
});

Role const killed("be killed", [](Arguments const &arguments) -> int {
    MakeGraph(AttachDatabase(arguments.at(0).c_str()));
    KillThisProcess(7);
});

// Exit code: the count of objects that this process sees, root excluded.
Role const reader("count", [](Arguments const &arguments) {
    Session session(arguments.at(0));
    int count = 0;
    for (unsigned long id = 2; id < 100; ++id)
        count += session->LookupObject(id) != nullptr;
    return count;
});

} // namespace

TEST(Processes, Another_process_gets_what_was_made_persistent) {
    TempFolder folder;
    ASSERT_EQ(RunRole("write", {folder.Directory()}), 0);
    Session session(folder);
    EXPECT_EQ(NameOf(session.Object(2)), "source");
    EXPECT_EQ(NameOf(session.Object(3)), "target");
    EXPECT_EQ(session->LookupObject(4), nullptr);
    EXPECT_EQ(session->LookupObject(5), nullptr);
    EXPECT_NE(session->LookupLink(1), nullptr);
    EXPECT_EQ(session->LookupLink(2), nullptr);
    EXPECT_EQ(LinksFrom(session.Object(2)),
              (std::vector<std::uint32_t>{1, 2 | LINK_ENTRY_TRANSIENT}));
}

TEST(Processes, The_writer_itself_gets_everything_back_and_a_second_process_not) {
    TempFolder folder;
    {
        Session session(folder);
        MakeGraph(session.Get());
    }
    EXPECT_EQ(RunRole("count", {folder.Directory()}), 2);
    Session session(folder);
    EXPECT_NE(session->LookupObject(4), nullptr);
    EXPECT_NE(session->LookupObject(5), nullptr);
    EXPECT_NE(session->LookupLink(2), nullptr);
}

TEST(Processes, The_end_of_a_process_with_attachments_outstanding_still_writes) {
    TempFolder folder;
    ASSERT_EQ(RunRole("leave", {folder.Directory()}), 0);
    EXPECT_EQ(FileIn(folder).objects.size(), 5u);
}

TEST(Processes, The_end_of_a_process_respects_the_save_flag) {
    TempFolder folder;
    ASSERT_EQ(RunRole("leave", {folder.Directory(), "without saving"}), 0);
    EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
}

TEST(Processes, A_killed_process_leaves_the_file_as_it_was) {
    TempFolder folder;
    PlaceMarker(folder);
    ASSERT_EQ(RunRole("be killed", {folder.Directory()}), 7);
    EXPECT_TRUE(MarkerStands(folder));
}

TEST(Processes, The_last_one_to_flush_overwrites_the_file) {
    TempFolder folder;
    Session session(folder);
    session.Add("mine", OBJ_FILE, persistent);
    ASSERT_EQ(RunRole("write", {folder.Directory()}), 0);
    EXPECT_EQ(FileIn(folder).objects.size(), 5u);
    session.Release();
    EXPECT_EQ(FileIn(folder).objects.size(), 2u);
}

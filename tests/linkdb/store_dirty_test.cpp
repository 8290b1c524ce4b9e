// What marks the database as changed, seen in whether the last Release writes.
#include <functional>

#include "store_fixture.h"

namespace {

using Change = std::function<void(CQVUDatabase *)>;

// A database loaded from a file with: 2 and 3 persistent, linked by 1; 4 and 5 transient,
// linked by 2; link 3 from 2 to 4.
class StoreDirty : public testing::Test {
protected:
    TempFolder folder;
    std::optional<Session> session{std::in_place, folder};

    StoreDirty() {
        for (int const persistence : {persistent, persistent, transient, transient})
            session->Add("object", OBJ_FILE, persistence);
        Object(2)->LinkTo(Object(3), 8);
        Object(4)->LinkTo(Object(5), 8);
        Object(2)->LinkTo(Object(4), 8);
        session.reset();
        session.emplace(folder);
    }
    CQVUObject *Object(unsigned long id) { return session->Object(id); }
    CQVULink *Link(unsigned long id) { return static_cast<CQVULink *>((*session)->LookupLink(id)); }
    bool ReleaseWrites() {
        PlaceMarker(folder);
        session.reset();
        return !MarkerStands(folder);
    }
};

} // namespace

TEST_F(StoreDirty, Nothing_does_no_mark) { EXPECT_FALSE(ReleaseWrites()); }

TEST_F(StoreDirty, A_persistent_object_marks) {
    session->Add("new", OBJ_FILE, persistent);
    EXPECT_TRUE(ReleaseWrites());
}

TEST_F(StoreDirty, An_object_of_type_2_marks) {
    session->Add("new", OBJ_PINNED, transient);
    EXPECT_TRUE(ReleaseWrites());
}

TEST_F(StoreDirty, A_transient_object_does_not_mark) {
    session->Add("new", OBJ_FILE, transient);
    EXPECT_FALSE(ReleaseWrites());
}

TEST_F(StoreDirty, A_persistent_link_marks) {
    Object(3)->LinkTo(Object(2), 8);
    EXPECT_TRUE(ReleaseWrites());
}

TEST_F(StoreDirty, A_link_that_is_there_already_does_not_mark) {
    Object(2)->LinkTo(Object(3), 8);
    EXPECT_FALSE(ReleaseWrites());
}

TEST_F(StoreDirty, A_transient_link_does_not_mark) {
    Object(2)->LinkTo(Object(4), 8);
    EXPECT_FALSE(ReleaseWrites());
}

TEST_F(StoreDirty, MakeNewLink_marks_if_persistent) {
    (*session)->MakeNewLink(2, 3, 8, 0);
    EXPECT_FALSE(ReleaseWrites());
}

TEST_F(StoreDirty, MakeNewLink_of_a_persistent_link_marks) {
    (*session)->MakeNewLink(4, 5, 8, 1);
    EXPECT_TRUE(ReleaseWrites());
}

TEST_F(StoreDirty, MakePersistent_marks_when_it_changes_something) {
    Object(4)->MakePersistent();
    EXPECT_TRUE(ReleaseWrites());
}

TEST_F(StoreDirty, MakePersistent_of_a_persistent_object_does_not_mark) {
    Object(2)->MakePersistent();
    EXPECT_FALSE(ReleaseWrites());
}

TEST_F(StoreDirty, Deleting_a_persistent_object_marks) {
    Object(2)->Delete();
    EXPECT_TRUE(ReleaseWrites());
}

TEST_F(StoreDirty, Deleting_a_transient_object_does_not_mark) {
    Object(4)->Delete();
    EXPECT_FALSE(ReleaseWrites());
}

TEST_F(StoreDirty, Deleting_a_persistent_link_marks) {
    Link(1)->Delete();
    EXPECT_TRUE(ReleaseWrites());
}

TEST_F(StoreDirty, Deleting_a_persistent_link_from_no_list_marks) {
    (*session)->DeleteLink(1, 0, 0);
    EXPECT_TRUE(ReleaseWrites());
}

TEST_F(StoreDirty, Deleting_a_transient_link_does_not_mark) {
    Link(3)->Delete();
    EXPECT_FALSE(ReleaseWrites());
}

TEST_F(StoreDirty, Deleting_what_is_not_there_does_not_mark) {
    (*session)->DeleteObject(77);
    (*session)->DeleteLink(77, 1, 1);
    noObject->Delete();
    noLink->Delete();
    EXPECT_FALSE(ReleaseWrites());
}

TEST_F(StoreDirty, Names_data_and_flags_do_not_mark) {
    char name[] = "another and longer name";
    unsigned char data[] = {1, 2, 3};
    Object(2)->SetName(name);
    Object(2)->SetData(sizeof data, data);
    Object(2)->SetFlags(5);
    EXPECT_FALSE(ReleaseWrites());
}

TEST_F(StoreDirty, Names_data_and_flags_are_written_along_with_another_change) {
    char name[] = "another and longer name";
    unsigned char data[] = {1, 2, 3};
    Object(2)->SetName(name);
    Object(2)->SetData(sizeof data, data);
    Object(2)->SetFlags(5);
    session->Add("new", OBJ_FILE, persistent);
    EXPECT_TRUE(ReleaseWrites());
    image::Object const written = FileIn(folder).objects.at(1);
    EXPECT_EQ(written.name, name);
    EXPECT_EQ(written.data, Bytes(data, data + sizeof data));
    EXPECT_EQ(written.flags, 5u);
}

TEST_F(StoreDirty, Searches_and_expansions_do_not_mark) {
    CQVUObject *object = nullptr;
    CQVULink *link = nullptr;
    char star[] = "*", path[1000];
    (*session)->FindCloseObject((*session)->FindFirstObject(star, 0xffffffff, &object));
    Object(2)->FindCloseLinkFrom(Object(2)->FindFirstLinkFrom(0xffffffff, &link));
    Object(2)->FindFirstDependentObject(&object, nullptr);
    Object(2)->GetFullPath(path);
    EXPECT_FALSE(ReleaseWrites());
}

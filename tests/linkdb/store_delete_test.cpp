// Deleting links and objects.
#include "store_fixture.h"

#include "linkdb_image.h"

TEST_F(Store, DeleteLink_clears_both_lists_and_a_second_call_gives_0) {
    CQVUObject *const a = File("a", transient), *const b = File("b", transient);
    a->LinkTo(b, 8);
    a->LinkTo(b, 8);
    a->LinkTo(b, 8);
    EXPECT_EQ(session->DeleteLink(2, 1, 1), 1);
    EXPECT_EQ(LinksFrom(a), (Entries{1 | LINK_ENTRY_TRANSIENT, 3 | LINK_ENTRY_TRANSIENT}));
    EXPECT_EQ(LinksTo(b), LinksFrom(a));
    EXPECT_EQ(Link(2), nullptr);
    EXPECT_EQ(session->DeleteLink(2, 1, 1), 0);
    EXPECT_EQ(session->DeleteLink(0, 1, 1), 0);
    EXPECT_EQ(session->DeleteLink(99, 1, 1), 0);
}

TEST_F(Store, DeleteLink_leaves_the_lists_that_it_is_not_told_of) {
    CQVUObject *const a = File("a", transient), *const b = File("b", transient);
    for (int i = 0; i < 3; ++i)
        a->LinkTo(b, 8);
    constexpr std::uint32_t t = LINK_ENTRY_TRANSIENT;
    EXPECT_EQ(session->DeleteLink(1, 1, 0), 1);
    EXPECT_EQ(LinksFrom(a), (Entries{2 | t, 3 | t}));
    EXPECT_EQ(LinksTo(b), (Entries{1 | t, 2 | t, 3 | t}));
    EXPECT_EQ(session->DeleteLink(2, 0, 1), 1);
    EXPECT_EQ(LinksFrom(a), (Entries{2 | t, 3 | t}));
    EXPECT_EQ(LinksTo(b), (Entries{1 | t, 3 | t}));
    EXPECT_EQ(session->DeleteLink(3, 0, 0), 1);
    EXPECT_EQ(LinksFrom(a), (Entries{2 | t, 3 | t}));
    EXPECT_EQ(LinksTo(b), (Entries{1 | t, 3 | t}));
    EXPECT_EQ(Link(3), nullptr);
}

TEST_F(Store, DeleteLink_removes_every_entry_with_the_id_whatever_its_top_bits) {
    image::File file;
    file.stamp = OwnStamp();
    image::Object a, b;
    a.id = 2;
    b.id = 3;
    a.type = b.type = OBJ_FILE;
    a.from = {7, 5, 0x40000007, 0xc0000007, 6};
    b.to = {0x80000007, 7};
    file.objects = {a, b};
    file.links = {{7, 2, 3, 8}};
    session.Release();
    WriteBytes(folder.DatabaseFile(), image::Write(file));
    Session again(folder);
    EXPECT_EQ(again->DeleteLink(7, 1, 1), 1);
    EXPECT_EQ(LinksFrom(again.Object(2)), (Entries{5, 6}));
    EXPECT_EQ(again.Object(2)->dwLinksFrom, 2u | LINK_LIST_BLOCKED);
    EXPECT_EQ(again.Object(3)->dwLinksTo, LINK_LIST_BLOCKED);
}

TEST_F(Store, A_link_deletes_itself) {
    CQVUObject *const a = File("a", transient);
    a->LinkTo(session->GetRootObject(), 8);
    EXPECT_EQ(Link(1)->Delete(), 1);
    EXPECT_EQ(a->dwLinksFrom, 0u);
    EXPECT_EQ(session->GetRootObject()->dwLinksTo, 0u);
    EXPECT_EQ(Link(1), nullptr);
}

TEST_F(Store, Deleting_an_object_leaves_no_entry_for_its_links) {
    CQVUObject *const object = File("object", transient);
    CQVUObject *const before = File("before", transient), *const after = File("after", transient);
    before->LinkTo(after, 8);
    before->LinkTo(object, 8);
    object->LinkTo(after, 8);
    object->LinkTo(object, 8);
    before->LinkTo(after, 8);
    EXPECT_EQ(object->Delete(), 1);
    EXPECT_EQ(session->LookupObject(2), nullptr);
    Entries const left{1 | LINK_ENTRY_TRANSIENT, 5 | LINK_ENTRY_TRANSIENT};
    EXPECT_EQ(LinksFrom(before), left);
    EXPECT_EQ(LinksTo(after), left);
    for (unsigned long const id : {2ul, 3ul, 4ul})
        EXPECT_EQ(Link(id), nullptr);
}

TEST_F(Store, DeleteObject_gives_0_for_what_is_not_there) {
    File("a", transient);
    EXPECT_EQ(session->DeleteObject(0), 0);
    EXPECT_EQ(session->DeleteObject(3), 0);
    EXPECT_EQ(session->DeleteObject(2), 1);
    EXPECT_EQ(session->DeleteObject(2), 0);
}

TEST_F(Store, Ids_of_deleted_records_are_not_given_again) {
    File("a", transient)->LinkTo(session->GetRootObject(), 8);
    session->DeleteObject(2);
    CQVUObject *const next = File("b", transient);
    EXPECT_EQ(next->GetUniqueID(), 3u);
    next->LinkTo(next, 8);
    EXPECT_NE(Link(2), nullptr);
}

TEST_F(Store, The_root_can_be_deleted_and_is_made_anew_at_load) {
    File("a", transient)->LinkTo(session->GetRootObject(), 8);
    EXPECT_EQ(session->GetRootObject()->Delete(), 1);
    EXPECT_EQ(session.Object(2)->dwLinksFrom & LINK_ENTRY_ID_MASK, 0u);
    session->Flush();
    session.Release();
    Session again(folder);
    EXPECT_NE(again->GetRootObject(), nullptr);
    EXPECT_NE(again->LookupObject(2), nullptr);
}

TEST_F(Store, A_hub_of_many_links_is_linked_to_and_taken_apart_from_either_side) {
    constexpr std::uint32_t count = 200000; // leaf n + 2 has link n to the hub, 2
    image::File file;
    file.stamp = OwnStamp();
    file.objects.resize(count + 1);
    for (std::uint32_t id = 1; id <= count; ++id) {
        image::Object &leaf = file.objects[id];
        leaf.id = id + 2;
        leaf.type = OBJ_FILE | PERSISTENT_BIT;
        leaf.from = {id};
        file.objects[0].to.push_back(id);
        file.links.push_back({id, id + 2, 2, 8 | PERSISTENT_BIT});
    }
    file.objects[0].id = 2;
    file.objects[0].type = OBJ_FILE | PERSISTENT_BIT;
    session.Release();
    WriteBytes(folder.DatabaseFile(), image::Write(file));
    Session again(folder);
    CQVUObject *const hub = again.Object(2);
    for (unsigned long id = 3; id < 3000; ++id)
        EXPECT_EQ(again.Object(id)->LinkTo(hub, 8), 1); // all there already
    EXPECT_EQ(hub->dwLinksTo, count | LINK_LIST_BLOCKED);
    // One by one, from the middle and both ends; then the hub with all that is left.
    for (unsigned long id = 3; id < 3000; ++id)
        EXPECT_EQ(again->DeleteObject(id), 1);
    for (unsigned long id = 100000; id < 103000; ++id)
        EXPECT_EQ(again->DeleteLink(id, 1, 1), 1);
    for (unsigned long id = 199000; id <= 200002; ++id)
        EXPECT_EQ(again->DeleteObject(id), 1);
    EXPECT_EQ(hub->dwLinksTo, (count - 2997 - 3000 - 1003) | LINK_LIST_BLOCKED);
    std::uint32_t previous = 0;
    for (std::uint32_t const entry : LinksTo(hub)) {
        ASSERT_LT(previous, entry);
        previous = entry;
    }
    EXPECT_EQ(hub->Delete(), 1);
    EXPECT_EQ(again->LookupLink(50000), nullptr);
    EXPECT_EQ(again.Object(50000)->dwLinksFrom, 0u);
    again->SetSaveFlag(0);
}

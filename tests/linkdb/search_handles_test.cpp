// Handles: when they are good, when they are refused, and objects that come and go while a
// search is open.
#include "attached.h"
#include "searches.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

class Handles : public testing::Test {
protected:
    SearchHandle Open(CQVUObject **first) {
        SearchHandle const handle = db->FindFirstObject(Text("*"), allTypes, first);
        EXPECT_NE(handle, 0u);
        return handle;
    }

    Attached db;
    CQVUObject *a = db.Add("a", OBJ_FILE);
    CQVUObject *b = db.Add("b", OBJ_FILE);
    CQVUObject *c = db.Add("c", OBJ_FILE);
    CQVUObject *out = nullptr;
};

TEST_F(Handles, A_zero_handle_gives_nothing_and_closes_nothing) {
    EXPECT_EQ(db->FindNextObject(0, &out), 0);
    EXPECT_EQ(out, nullptr);
    db->FindCloseObject(0);
}

TEST_F(Handles, A_closed_search_is_refused_and_closing_it_again_does_nothing) {
    SearchHandle const handle = Open(&out);
    db->FindCloseObject(handle);
    EXPECT_EQ(db->FindNextObject(handle, &out), 0);
    EXPECT_EQ(out, a);
    db->FindCloseObject(handle);
    db->FindCloseObject(handle);
}

TEST_F(Handles, Closing_a_search_twice_leaves_another_open_one_alone) {
    SearchHandle const first = Open(&out), second = Open(&out), third = Open(&out);
    db->FindCloseObject(second);
    db->FindCloseObject(second);
    EXPECT_EQ(db->FindNextObject(first, &out), 1);
    EXPECT_EQ(out, b);
    EXPECT_EQ(db->FindNextObject(third, &out), 1);
    EXPECT_EQ(out, b);
    db->FindCloseObject(first);
    EXPECT_EQ(db->FindNextObject(third, &out), 1);
    EXPECT_EQ(out, c);
    db->FindCloseObject(third);
}

TEST_F(Handles, Handles_that_were_never_given_out_are_refused) {
    unsigned char ownMemory[256] = {};
    for (SearchHandle const wrong :
         {SearchHandle{1}, SearchHandle{0x1000}, ~SearchHandle{0},
          static_cast<SearchHandle>(reinterpret_cast<std::uintptr_t>(ownMemory)),
          static_cast<SearchHandle>(reinterpret_cast<std::uintptr_t>(a))}) {
        EXPECT_EQ(db->FindNextObject(wrong, &out), 0);
        db->FindCloseObject(wrong);
    }
    EXPECT_EQ(out, nullptr);
    EXPECT_TRUE(std::all_of(std::begin(ownMemory), std::end(ownMemory),
                            [](unsigned char byte) { return byte == 0; }));
}

TEST_F(Handles, Link_handles_that_are_closed_or_were_never_given_out_close_nothing) {
    a->LinkTo(b, 2);
    a->LinkTo(c, 2);
    CQVULink *link = nullptr;
    SearchHandle const handle = a->FindFirstLinkFrom(allTypes, &link);
    SearchHandle const other = a->FindFirstLinkFrom(allTypes, &link);
    a->FindCloseLinkFrom(handle);
    a->FindCloseLinkFrom(handle);
    b->FindCloseLinkTo(handle);
    a->FindCloseLinkTo(SearchHandle{0x1000});
    EXPECT_EQ(a->FindNextLinkFrom(handle, &link), 0);
    EXPECT_EQ(a->FindNextLinkFrom(SearchHandle{0x1000}, &link), 0);
    EXPECT_EQ(a->FindNextLinkFrom(other, &link), 1);
    a->FindCloseLinkFrom(other);
}

TEST_F(Handles, Expansion_handles_that_are_closed_or_were_never_given_out_close_nothing) {
    CQVUObject *const drive = db.Add("C:", OBJ_DRIVE);
    drive->LinkTo(a, LINK_PARENT);
    drive->LinkTo(b, LINK_PARENT);
    SearchHandle const handle = drive->FindFirstDependentObject(&out, nullptr);
    SearchHandle const other = drive->FindFirstDependentObject(&out, nullptr);
    ASSERT_NE(handle, 0u);
    drive->FindCloseDependentObject(handle);
    drive->FindCloseDependentObject(handle);
    drive->FindCloseReferencingApp(handle);
    drive->FindCloseDependentObject(0);
    drive->FindCloseReferencingApp(0);
    drive->FindCloseDependentObject(SearchHandle{0x1000});
    EXPECT_EQ(drive->FindNextDependentObject(handle, &out, nullptr), 0);
    EXPECT_EQ(drive->FindNextDependentObject(0, &out, nullptr), 0);
    EXPECT_EQ(drive->FindNextReferencingApp(SearchHandle{0x1000}, &out, nullptr), 0);
    EXPECT_EQ(drive->FindNextDependentObject(other, &out, nullptr), 1);
    drive->FindCloseDependentObject(other);
}

TEST_F(Handles, Each_family_refuses_the_others_handles) {
    CQVUObject *const drive = db.Add("C:", OBJ_DRIVE);
    drive->LinkTo(a, LINK_PARENT);
    drive->LinkTo(b, LINK_PARENT);
    CQVULink *link = nullptr;
    SearchHandle const objects = Open(&out);
    SearchHandle const links = drive->FindFirstLinkFrom(allTypes, &link);
    SearchHandle const results = drive->FindFirstDependentObject(&out, nullptr);
    db->FindCloseObject(links);
    db->FindCloseObject(results);
    drive->FindCloseLinkFrom(objects);
    drive->FindCloseLinkFrom(results);
    drive->FindCloseDependentObject(objects);
    drive->FindCloseDependentObject(links);
    EXPECT_EQ(db->FindNextObject(links, &out), 0);
    EXPECT_EQ(drive->FindNextLinkFrom(objects, &link), 0);
    EXPECT_EQ(drive->FindNextDependentObject(links, &out, nullptr), 0);
    EXPECT_EQ(db->FindNextObject(objects, &out), 1);
    EXPECT_EQ(drive->FindNextLinkFrom(links, &link), 1);
    EXPECT_EQ(drive->FindNextDependentObject(results, &out, nullptr), 1);
    db->FindCloseObject(objects);
    drive->FindCloseLinkFrom(links);
    drive->FindCloseDependentObject(results);
}

TEST_F(Handles, A_search_outlives_its_end_until_it_is_closed) {
    SearchHandle const handle = Open(&out);
    EXPECT_EQ(db->FindNextObject(handle, &out), 1);
    EXPECT_EQ(db->FindNextObject(handle, &out), 1);
    EXPECT_EQ(db->FindNextObject(handle, &out), 0);
    EXPECT_EQ(db->FindNextObject(handle, &out), 0);
    db.Add("late", OBJ_FILE);
    EXPECT_EQ(db->FindNextObject(handle, &out), 0) << "the end was told";
    db->FindCloseObject(handle);
}

TEST_F(Handles, An_object_added_during_a_search_is_seen) {
    SearchHandle const handle = Open(&out);
    CQVUObject *const d = db.Add("d", OBJ_FILE);
    EXPECT_EQ(db->FindNextObject(handle, &out), 1);
    EXPECT_EQ(db->FindNextObject(handle, &out), 1);
    EXPECT_EQ(db->FindNextObject(handle, &out), 1);
    EXPECT_EQ(out, d);
    CQVUObject *const e = db.Add("e", OBJ_FILE);
    EXPECT_EQ(db->FindNextObject(handle, &out), 1) << "added after the last one was returned";
    EXPECT_EQ(out, e);
    db->FindCloseObject(handle);
}

TEST_F(Handles, The_object_last_returned_may_be_deleted) {
    SearchHandle const handle = Open(&out);
    EXPECT_EQ(a->Delete(), 1);
    EXPECT_EQ(db->FindNextObject(handle, &out), 1);
    EXPECT_EQ(out, b);
    db->FindCloseObject(handle);
}

TEST_F(Handles, A_search_whose_next_object_is_deleted_goes_on_at_the_next_higher_id) {
    SearchHandle const handle = Open(&out);
    EXPECT_EQ(b->Delete(), 1);
    EXPECT_EQ(db->FindNextObject(handle, &out), 1);
    EXPECT_EQ(out, c);
    db->FindCloseObject(handle);
}

TEST_F(Handles, A_search_of_which_all_is_deleted_ends) {
    SearchHandle const handle = Open(&out);
    for (unsigned long id = 1; id <= 4; ++id)
        EXPECT_EQ(db->DeleteObject(id), 1);
    EXPECT_EQ(db->FindNextObject(handle, &out), 0);
    db->FindCloseObject(handle);
}

TEST(HandlesBeyondTheirDatabase, A_search_left_open_can_be_closed_on_the_next_database) {
    SearchHandle left = 0;
    {
        Attached db;
        db.Add("a", OBJ_FILE);
        CQVUObject *out = nullptr;
        left = db->FindFirstObject(Text("*"), allTypes, &out);
        ASSERT_NE(left, 0u);
    }
    Attached next;
    CQVUObject *const b = next.Add("b", OBJ_FILE);
    CQVUObject *out = nullptr;
    SearchHandle const own = next->FindFirstObject(Text("*"), allTypes, &out);
    EXPECT_EQ(out, b);
    next->FindCloseObject(left);
    next->FindCloseObject(left);
    next->FindCloseObject(own);
}

TEST(ManySearches, Thousands_of_open_searches_close_in_any_order) {
    Attached db;
    for (int i = 0; i < 10; ++i)
        db.Add("x", OBJ_FILE);
    CQVUObject *out = nullptr;
    std::vector<SearchHandle> handles;
    for (int i = 0; i < 3000; ++i)
        handles.push_back(db->FindFirstObject(Text("x"), allTypes, &out));
    std::vector<SearchHandle> sorted = handles;
    std::sort(sorted.begin(), sorted.end());
    EXPECT_EQ(std::unique(sorted.begin(), sorted.end()), sorted.end()) << "each has its own";
    for (std::size_t i = 0; i < handles.size(); i += 2)
        db->FindCloseObject(handles[i]);
    for (std::size_t i = 1; i < handles.size(); i += 2)
        EXPECT_EQ(db->FindNextObject(handles[i], &out), 1);
    for (std::size_t i = 1; i < handles.size(); i += 2)
        db->FindCloseObject(handles[i]);
}

} // namespace

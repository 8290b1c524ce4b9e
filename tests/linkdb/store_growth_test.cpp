// How the link lists grow, seen in their count words and arrays.
#include "store_fixture.h"

namespace {

class StoreGrowth : public Store {
protected:
    CQVUObject *const hub = File("hub", transient);
    CQVUObject *const leaf = File("leaf", transient);

    void Link(std::uint32_t count) {
        for (; count > 0; --count)
            ASSERT_EQ(hub->LinkTo(leaf, 2), 1);
    }
};

constexpr std::uint32_t blocked = LINK_LIST_BLOCKED;

} // namespace

TEST_F(StoreGrowth, One_and_two_entries_stand_exactly_and_the_third_makes_blocks) {
    for (std::uint32_t const expected : {1u, 2u, 3u | blocked, 4u | blocked, 5u | blocked}) {
        Link(1);
        EXPECT_EQ(hub->dwLinksFrom, expected);
        EXPECT_EQ(leaf->dwLinksTo, expected);
    }
    EXPECT_EQ(hub->dwLinksTo, 0u);
    EXPECT_EQ(leaf->dwLinksFrom, 0u);
}

TEST_F(StoreGrowth, From_the_third_entry_the_list_has_room_for_ten_then_twenty) {
    Link(3);
    std::uint32_t const *out = hub->pdwLinksFrom, *in = leaf->pdwLinksTo;
    for (std::uint32_t count = 4; count <= 40; ++count) {
        Link(1);
        EXPECT_EQ(hub->dwLinksFrom, count | blocked);
        if (count % 10 != 1) { // in place
            EXPECT_EQ(hub->pdwLinksFrom, out) << count;
            EXPECT_EQ(leaf->pdwLinksTo, in) << count;
        }
        out = hub->pdwLinksFrom;
        in = leaf->pdwLinksTo;
    }
}

TEST_F(StoreGrowth, Entries_keep_their_order_through_all_growth) {
    Link(1000);
    Entries expected;
    for (std::uint32_t id = 1; id <= 1000; ++id)
        expected.push_back(id | LINK_ENTRY_TRANSIENT);
    EXPECT_EQ(LinksFrom(hub), expected);
    EXPECT_EQ(LinksTo(leaf), expected);
}

TEST_F(StoreGrowth, Deletion_lowers_the_count_and_leaves_the_bit) {
    Link(3);
    for (std::uint32_t id = 1; id <= 3; ++id) {
        session->DeleteLink(id, 1, 1);
        EXPECT_EQ(hub->dwLinksFrom, (3 - id) | blocked);
        EXPECT_EQ(leaf->dwLinksTo, (3 - id) | blocked);
    }
}

TEST_F(StoreGrowth, A_list_below_three_keeps_the_bit_clear_through_deletion) {
    Link(2);
    session->DeleteLink(1, 1, 1);
    EXPECT_EQ(hub->dwLinksFrom, 1u);
    session->DeleteLink(2, 1, 1);
    EXPECT_EQ(hub->dwLinksFrom, 0u);
    Link(2);
    EXPECT_EQ(hub->dwLinksFrom, 2u);
    Link(1);
    EXPECT_EQ(hub->dwLinksFrom, 3u | blocked);
}

TEST_F(StoreGrowth, A_blocked_list_that_was_emptied_grows_blocked_from_its_first_entry) {
    Link(3);
    for (std::uint32_t id = 1; id <= 3; ++id)
        session->DeleteLink(id, 1, 1);
    Link(1);
    EXPECT_EQ(hub->dwLinksFrom, 1u | blocked);
    EXPECT_EQ(LinksFrom(hub), Entries{4 | LINK_ENTRY_TRANSIENT});
    std::uint32_t const *const array = hub->pdwLinksFrom;
    Link(9); // room for ten
    EXPECT_EQ(hub->pdwLinksFrom, array);
    EXPECT_EQ(hub->dwLinksFrom, 10u | blocked);
}

TEST_F(StoreGrowth, A_count_that_dropped_to_a_multiple_of_ten_grows_again) {
    Link(25);
    for (std::uint32_t id = 1; id <= 15; ++id)
        session->DeleteLink(id, 1, 1);
    EXPECT_EQ(hub->dwLinksFrom, 10u | blocked);
    Link(1);
    EXPECT_EQ(hub->dwLinksFrom, 11u | blocked);
    std::uint32_t const *const array = hub->pdwLinksFrom;
    Link(9);
    EXPECT_EQ(hub->pdwLinksFrom, array);
    Entries expected;
    for (std::uint32_t id = 16; id <= 35; ++id)
        expected.push_back(id | LINK_ENTRY_TRANSIENT);
    EXPECT_EQ(LinksFrom(hub), expected);
}

TEST_F(StoreGrowth, Both_lists_of_one_object_grow_on_their_own) {
    for (int i = 0; i < 12; ++i)
        hub->LinkTo(hub, 2);
    Link(1);
    EXPECT_EQ(hub->dwLinksFrom, 13u | blocked);
    EXPECT_EQ(hub->dwLinksTo, 12u | blocked);
}

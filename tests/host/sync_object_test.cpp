// The base of the locks: a name, a mark and a stack of states.
#include "open_sync.h"

#include <climits>
#include <cstring>
#include <type_traits>

#include <gtest/gtest.h>

using States = std::vector<int>;
using UTILS::CSyncObject;

namespace {

// The place of a virtual operation in its class's table: pointers to members tell it on both
// systems.
template <class Operation> std::ptrdiff_t PlaceOf(Operation operation) {
    std::ptrdiff_t words[2];
    static_assert(sizeof words == sizeof operation);
    std::memcpy(words, &operation, sizeof words);
    return (words[0] - 1) / static_cast<std::ptrdiff_t>(sizeof(void *));
}

template <class Field> std::ptrdiff_t OffsetIn(OpenSync const &object, Field const &field) {
    return reinterpret_cast<char const *>(&field) - reinterpret_cast<char const *>(&object);
}

} // namespace

TEST(SyncObject, is_there_to_be_derived_from_only) {
    EXPECT_FALSE((std::is_constructible_v<CSyncObject, std::string const &>));
    EXPECT_FALSE(std::is_copy_constructible_v<CSyncObject>);
    EXPECT_FALSE(std::is_copy_assignable_v<CSyncObject>);
    EXPECT_FALSE(std::is_destructible_v<CSyncObject>);
    EXPECT_TRUE(std::has_virtual_destructor_v<CSyncObject>);
}

TEST(SyncObject, has_its_fields_in_order) {
    OpenSync const object;
    EXPECT_LT(0, OffsetIn(object, object.states));
    EXPECT_LT(OffsetIn(object, object.states), OffsetIn(object, object.name));
    EXPECT_LT(OffsetIn(object, object.name), OffsetIn(object, object.attached));
}

TEST(SyncObject, has_its_virtual_operations_in_order_behind_the_destructor) {
    constexpr std::ptrdiff_t destructor = 2; // takes two places
    EXPECT_EQ(destructor + 0, PlaceOf(&OpenSync::Attach));
    EXPECT_EQ(destructor + 1, PlaceOf(&OpenSync::UnAttach));
    EXPECT_EQ(destructor + 2, PlaceOf(&OpenSync::Lock));
    EXPECT_EQ(destructor + 3, PlaceOf(&OpenSync::UnLock));
    EXPECT_EQ(destructor + 4, PlaceOf(&OpenSync::GetState));
    EXPECT_EQ(destructor + 5, PlaceOf(&OpenSync::IsObjectAttached));
    EXPECT_EQ(destructor + 6, PlaceOf(&OpenSync::GetObjName));
    EXPECT_EQ(destructor + 7, PlaceOf(&OpenSync::derived_class));
}

TEST(SyncObject, starts_with_its_name_one_state_and_unattached) {
    OpenSync const object("a name");
    EXPECT_EQ("a name", object.GetObjName());
    EXPECT_EQ(States{0}, object.states);
    EXPECT_EQ(0, object.GetState(-1));
    EXPECT_EQ(0, object.GetState(0));
    EXPECT_EQ(0, object.IsObjectAttached());
}

TEST(SyncObject, Lock_pushes_a_1_above_the_first_state) {
    OpenSync object;
    EXPECT_EQ(1, object.Lock());
    EXPECT_EQ(1, object.GetState(-1));
    EXPECT_EQ(0, object.GetState(0));
    EXPECT_EQ(1, object.Lock());
    EXPECT_EQ((States{0, 1, 1}), object.states);
}

TEST(SyncObject, UnLock_pops_down_to_the_first_state_and_answers_0_there) {
    OpenSync object;
    object.Lock();
    object.Lock();
    EXPECT_EQ(1, object.UnLock());
    EXPECT_EQ((States{0, 1}), object.states);
    EXPECT_EQ(1, object.UnLock());
    EXPECT_EQ(States{0}, object.states);
    EXPECT_EQ(0, object.UnLock());
    EXPECT_EQ(States{0}, object.states);
}

TEST(SyncObject, UnLock_on_a_fresh_one_answers_0_and_leaves_the_stack) {
    OpenSync object;
    EXPECT_EQ(0, object.UnLock());
    EXPECT_EQ(States{0}, object.states);
}

TEST(SyncObject, GetState_tells_the_top_for_minus_1_and_each_state_by_its_index) {
    OpenSync object;
    object.states = {0, 7, 8};
    EXPECT_EQ(8, object.GetState(-1));
    EXPECT_EQ(0, object.GetState(0));
    EXPECT_EQ(7, object.GetState(1));
    EXPECT_EQ(8, object.GetState(2));
}

TEST(SyncObject, GetState_outside_of_the_stack_is_0) {
    OpenSync object;
    object.states = {5, 7};
    for (int const index : {2, 3, INT_MAX, -2, INT_MIN})
        EXPECT_EQ(0, object.GetState(index)) << index;
}

TEST(SyncObject, Attach_and_UnAttach_set_and_take_the_mark) {
    OpenSync object;
    object.Attach();
    EXPECT_EQ(1, object.IsObjectAttached());
    object.Attach();
    EXPECT_EQ(1, object.IsObjectAttached());
    object.UnAttach();
    EXPECT_EQ(0, object.IsObjectAttached());
}

TEST(SyncObject, GetObjName_gives_a_copy) {
    OpenSync const object("a name");
    std::string name = object.GetObjName();
    name[0] = 'b';
    EXPECT_EQ("a name", object.GetObjName());
}

TEST(SyncObject, a_copy_has_the_name_the_stack_and_the_mark) {
    OpenSync object("a name");
    object.Lock();
    object.Attach();
    OpenSync copy(object);
    EXPECT_EQ("a name", copy.GetObjName());
    EXPECT_EQ((States{0, 1}), copy.states);
    EXPECT_EQ(1, copy.IsObjectAttached());
    copy.UnLock();
    copy.UnAttach();
    EXPECT_EQ((States{0, 1}), object.states);
    EXPECT_EQ(1, object.IsObjectAttached());
}

TEST(SyncObject, an_assignment_takes_the_name_the_stack_and_the_mark) {
    OpenSync object("a name");
    OpenSync other("another");
    object.Lock();
    object.Attach();
    other.states = {0, 3, 4};
    object = other;
    EXPECT_EQ("another", object.GetObjName());
    EXPECT_EQ((States{0, 3, 4}), object.states);
    EXPECT_EQ(0, object.IsObjectAttached());
    EXPECT_EQ("another", other.GetObjName());
    EXPECT_EQ((States{0, 3, 4}), other.states);
}

TEST(SyncObject, an_assignment_to_itself_does_nothing) {
    OpenSync object("a name");
    object.Lock();
    object.Attach();
    OpenSync const &same = object;
    object = same;
    EXPECT_EQ("a name", object.GetObjName());
    EXPECT_EQ((States{0, 1}), object.states);
    EXPECT_EQ(1, object.IsObjectAttached());
}

TEST(SyncObject, tells_the_class_it_really_is) {
    OpenSync const object;
    EXPECT_STREQ("class OpenSync", object.derived_class());
}

// What allocators refuse, with the texts that they tell it by.
#include "open_allocator.h"

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "fault_text.h"
#include "run_element.h"

using UTILS::UtilsAllocator;

namespace {

char outside[] = "abc";

std::string const ofMemory = "UtilsAllocator<T>::ReAllocateMemory";
std::string const ofMatrix = "UtilsAllocator<T>::ReAllocateMatrix";

class AllocatorRefusal : public testing::Test {
protected:
    OpenAllocator<char> empty;
    OpenAllocator<char> block{8};
    OpenAllocator<char> matrix{3, 2};
    OpenAllocator<char> view;

    AllocatorRefusal() { view.SetMemoryPointer(outside); }

    // Asks for the refusal of a call on an empty object and on a view, which it changes
    // nothing of.
    template <class Call> void ExpectOwnersOnly(Call const &call, std::string const &detail) {
        EXPECT_TRUE(AllocatorRefuses([&] { call(empty); }, wrongCall, detail));
        EXPECT_TRUE(AllocatorRefuses([&] { call(view); }, wrongCall, detail));
        EXPECT_EQ(0, empty.AllocationScheme());
        EXPECT_EQ(outside, view.GetMemoryBlock());
        EXPECT_STREQ("abc", outside);
    }
};

} // namespace

TEST_F(AllocatorRefusal, a_new_block_of_no_elements) {
    auto const ofHeap = [this] { empty.AllocateMemory(nullptr, 0); };
    EXPECT_TRUE(AllocatorRefuses(ofHeap, invalidArgument, "0"));
    auto const own = [this] { empty.AllocateMemory(0); };
    EXPECT_TRUE(AllocatorRefuses(own, invalidArgument, "0"));
    EXPECT_EQ(0, empty.AllocationScheme());
}

TEST_F(AllocatorRefusal, a_null_block_to_free) {
    char *const none = nullptr;
    EXPECT_TRUE(AllocatorRefuses([&] { block.FreeMemory(none); }, invalidArgument, "0"));
}

TEST_F(AllocatorRefusal, a_new_matrix_of_no_elements) {
    for (auto const &[length, height] : {std::pair{0ul, 2ul}, {2ul, 0ul}, {0ul, 0ul}}) {
        auto const ofHeap = [&, l = length, h = height] { empty.AllocateMatrix(nullptr, l, h); };
        EXPECT_TRUE(AllocatorRefuses(ofHeap, invalidArgument, "0"));
        auto const own = [&, l = length, h = height] { empty.AllocateMatrix(l, h); };
        EXPECT_TRUE(AllocatorRefuses(own, invalidArgument, "0"));
    }
    EXPECT_EQ(0, empty.isMatrix);
    EXPECT_EQ(0, empty.AllocationScheme());
}

TEST_F(AllocatorRefusal, a_null_matrix_or_one_without_rows_to_free) {
    EXPECT_TRUE(AllocatorRefuses([&] { block.FreeMatrix(nullptr, 3); }, invalidArgument, "0"));
    char **const given = block.AllocateMatrix(nullptr, 1, 1);
    EXPECT_TRUE(AllocatorRefuses([&] { block.FreeMatrix(given, 0); }, invalidArgument, "0"));
    block.FreeMatrix(given, 1);
}

TEST_F(AllocatorRefusal, zero_lengths_of_a_resize_in_the_callers_memory) {
    char *const given = block.AllocateMemory(nullptr, 2);
    auto const from = [&] { block.ReAllocateMemory(given, 0, 2); };
    EXPECT_TRUE(AllocatorRefuses(from, invalidArgument, "0"));
    auto const to = [&] { block.ReAllocateMemory(given, 2, 0); };
    EXPECT_TRUE(AllocatorRefuses(to, invalidArgument, "0"));
    auto const both = [&] { block.ReAllocateMemory(given, 0, 0); };
    EXPECT_TRUE(AllocatorRefuses(both, invalidArgument, "0"));
    block.FreeMemory(given);
}

TEST_F(AllocatorRefusal, each_zero_size_of_a_resize_of_the_callers_matrix) {
    char **const given = block.AllocateMatrix(nullptr, 1, 1);
    for (int zero = 0; zero < 4; ++zero) {
        auto const size = [zero](int position) { return zero == position ? 0ul : 1ul; };
        auto const resize = [&] {
            block.ReAllocateMatrix(given, size(0), size(1), size(2), size(3));
        };
        EXPECT_TRUE(AllocatorRefuses(resize, invalidArgument, "0")) << zero;
    }
    block.FreeMatrix(given, 1);
}

TEST_F(AllocatorRefusal, to_be_built_with_rows_of_no_length) {
    EXPECT_TRUE(AllocatorRefuses([] { UtilsAllocator<char>(0, 3); }, invalidArgument, "0"));
    EXPECT_TRUE(AllocatorRefuses([] { UtilsAllocator<Element>(0, 1); }, invalidArgument, "0"));
}

TEST_F(AllocatorRefusal, a_resize_to_nothing) {
    EXPECT_TRUE(AllocatorRefuses([&] { block.ReAllocateMemory(0); }, zeroSize, "0"));
    EXPECT_TRUE(AllocatorRefuses([&] { block.urealloc(0); }, zeroSize, "0"));
    EXPECT_EQ(8u, block.GetLength());
    EXPECT_TRUE(AllocatorRefuses([&] { matrix.ReAllocateMatrix(0, 2); }, zeroSize, "0"));
    EXPECT_TRUE(AllocatorRefuses([&] { matrix.ReAllocateMatrix(3, 0); }, zeroSize, "0"));
    EXPECT_EQ(3u, matrix.GetLength());
    EXPECT_EQ(2u, matrix.GetHeight());
}

TEST_F(AllocatorRefusal, a_resize_of_what_it_does_not_own) {
    ExpectOwnersOnly([](auto &object) { object.ReAllocateMemory(4); }, ofMemory);
    ExpectOwnersOnly([](auto &object) { object.urealloc(4); }, ofMemory);
    ExpectOwnersOnly([](auto &object) { object.ReAllocateMatrix(4, 4); }, ofMatrix);
}

TEST_F(AllocatorRefusal, a_resize_of_the_other_kind) {
    EXPECT_TRUE(AllocatorRefuses([&] { matrix.ReAllocateMemory(4); }, wrongCall, ofMemory));
    EXPECT_TRUE(AllocatorRefuses([&] { block.ReAllocateMatrix(4, 4); }, wrongCall, ofMatrix));
    EXPECT_EQ(3u, matrix.GetLength());
    EXPECT_EQ(8u, block.GetLength());
    EXPECT_EQ(0u, block.GetHeight());
}

TEST_F(AllocatorRefusal, names_the_ownership_first_then_the_size_then_the_kind) {
    ExpectOwnersOnly([](auto &object) { object.ReAllocateMemory(0); }, ofMemory);
    ExpectOwnersOnly([](auto &object) { object.ReAllocateMatrix(0, 0); }, ofMatrix);
    EXPECT_TRUE(AllocatorRefuses([&] { matrix.ReAllocateMemory(0); }, zeroSize, "0"));
    EXPECT_TRUE(AllocatorRefuses([&] { block.ReAllocateMatrix(0, 1); }, zeroSize, "0"));
}

TEST_F(AllocatorRefusal, to_fill_what_it_does_not_own) {
    ExpectOwnersOnly([](auto &object) { object.Zero(); }, notConstructed);
    ExpectOwnersOnly([](auto &object) { object.CopyMem("xyz", 3); }, notConstructed);
    ExpectOwnersOnly([](auto &object) { object.CheckAllocationScheme(); }, notConstructed);
}

TEST_F(AllocatorRefusal, a_pointer_for_one_that_owns_memory) {
    char const *const before = block.GetMemoryBlock();
    EXPECT_TRUE(
        AllocatorRefuses([&] { block.SetMemoryPointer(outside); }, wrongCall, notConstructed));
    EXPECT_EQ(before, block.GetMemoryBlock());
    EXPECT_TRUE(
        AllocatorRefuses([&] { matrix.SetMemoryPointer(outside); }, wrongCall, notConstructed));
}

TEST_F(AllocatorRefusal, an_index_from_the_length_on) {
    auto const at = [](auto &object, unsigned long index) {
        return [&object, index] { static_cast<void>(object[index]); };
    };
    EXPECT_NO_THROW(at(block, 7)());
    EXPECT_TRUE(IsOutOfRange(at(block, 8), "8:8", "UtilsAllocator"));
    EXPECT_TRUE(IsOutOfRange(at(block, 4294967295u), "4294967295:8", "UtilsAllocator"));
    EXPECT_TRUE(IsOutOfRange(at(empty, 0), "0:0", "UtilsAllocator"));
    EXPECT_TRUE(IsOutOfRange(at(view, 0), "0:0", "UtilsAllocator")); // it records no length
    EXPECT_TRUE(IsOutOfRange(at(matrix, 3), "3:3", "UtilsAllocator"));
    UtilsAllocator<char> const &fixed = block;
    EXPECT_TRUE(IsOutOfRange(at(fixed, 9), "9:8", "UtilsAllocator"));
    UtilsAllocator<Element> elements(2);
    auto const shorter = [&] { static_cast<void>(elements[2u]); };
    EXPECT_TRUE(IsOutOfRange(shorter, "2:2", "UtilsAllocator"));
}

TEST_F(AllocatorRefusal, an_index_into_the_block_that_a_matrix_does_not_have) {
    EXPECT_THROW(static_cast<void>(matrix[0ul]), std::out_of_range);
}

TEST(AllocatorError, keeps_its_text_when_it_is_copied) {
    UTILS::AllocationError const error("text");
    UTILS::AllocationError other("other");
    other = error;
    std::bad_alloc const &seen = UTILS::AllocationError(other);
    EXPECT_STREQ("text", seen.what());
}

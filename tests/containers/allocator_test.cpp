// Blocks: what an allocator holds, who owns it, and the heap that it lends.
#include "open_allocator.h"

#include <cstring>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "run_element.h"

using UTILS::UtilsAllocator;

namespace {

template <class T> std::string Text(UtilsAllocator<T> const &block) {
    return {block.GetMemoryBlock(), block.GetMemoryBlock() + block.GetLength()};
}

} // namespace

TEST(Allocator, without_sizes_holds_nothing) {
    OpenAllocator<char> const empty;
    EXPECT_EQ(0, empty.AllocationScheme());
    EXPECT_EQ(0u, empty.GetLength());
    EXPECT_EQ(0u, empty.GetHeight());
    EXPECT_EQ(0, empty.isMatrix);
    EXPECT_EQ(0u, empty.loopIndex);
}

TEST(Allocator, with_a_length_owns_a_block_of_it) {
    OpenAllocator<int> block(8);
    EXPECT_EQ(1, block.AllocationScheme());
    EXPECT_EQ(8u, block.GetLength());
    EXPECT_EQ(0u, block.GetHeight());
    EXPECT_EQ(0, block.isMatrix);
    ASSERT_NE(nullptr, block.GetMemoryBlock());
    for (unsigned long i = 0; i < 8; ++i)
        block[i] = static_cast<int>(i);
    EXPECT_EQ(7, block.GetMemoryBlock()[7]);
}

TEST(Allocator, tells_its_block_by_three_names) {
    UtilsAllocator<char> block(3);
    char *const converted = block;
    EXPECT_EQ(block.GetMemoryBlock(), converted);
    EXPECT_EQ(block.GetMemoryBlock(), block.ugetmem());
    EXPECT_EQ(block.GetMemoryBlock() + 2, &block[2]);
}

TEST(Allocator, without_memory_takes_a_pointer_and_does_not_free_it) {
    char outside[4] = "abc"; // freeing it would end the program
    {
        UtilsAllocator<char> view;
        view.SetMemoryPointer(outside);
        EXPECT_EQ(outside, view.GetMemoryBlock());
        EXPECT_EQ(0u, view.GetLength());
        EXPECT_EQ(0, view.AllocationScheme());
        view.SetMemoryPointer(outside + 1);
        EXPECT_EQ(outside + 1, view.GetMemoryBlock());
    }
    EXPECT_STREQ("abc", outside);
}

TEST(Allocator, constructs_and_destroys_elements_of_class_types) {
    int const alive = Element::Alive();
    {
        UtilsAllocator<Element> const block(5);
        EXPECT_EQ(alive + 5, Element::Alive());
        EXPECT_EQ("", block[4].text);
    }
    EXPECT_EQ(alive, Element::Alive());
}

TEST(Allocator, resized_keeps_what_fits_and_has_exactly_the_length_asked_for) {
    UtilsAllocator<char> block(4);
    block.CopyMem("abcd", 4);
    block.ReAllocateMemory(6);
    EXPECT_EQ(6u, block.GetLength());
    EXPECT_EQ("abcd", Text(block).substr(0, 4));
    block.urealloc(2);
    EXPECT_EQ(2u, block.GetLength());
    EXPECT_EQ("ab", Text(block));
    EXPECT_EQ(1, block.AllocationScheme());
}

TEST(Allocator, resized_to_the_same_length_stays_where_it_is) {
    UtilsAllocator<char> block(8);
    char const *const before = block.GetMemoryBlock();
    block.ReAllocateMemory(8);
    EXPECT_EQ(before, block.GetMemoryBlock());
    EXPECT_EQ(8u, block.GetLength());
}

TEST(Allocator, resized_copies_each_element_of_a_class_type_twice) {
    UtilsAllocator<Element> block(2);
    block[0ul].text = "one";
    block[1ul].text = "two";
    Element::Assignments() = 0;
    block.ReAllocateMemory(3);
    EXPECT_EQ(4, Element::Assignments());
    EXPECT_EQ("one", block[0ul].text);
    EXPECT_EQ("two", block[1ul].text);
    EXPECT_EQ("", block[2ul].text);
}

TEST(Allocator, copies_into_its_block_no_more_than_it_has) {
    UtilsAllocator<char> block(8);
    std::string const source(100, 'x');
    block.CopyMem(source.data(), 100);
    EXPECT_EQ(std::string(8, 'x'), Text(block));
    block.CopyMem("ab", 2);
    EXPECT_EQ("abxxxxxx", Text(block));
    block.CopyMem("zz", 0);
    EXPECT_EQ("abxxxxxx", Text(block));
}

TEST(Allocator, copies_nothing_from_null) {
    UtilsAllocator<char> block(2);
    block.CopyMem("ab", 2);
    block.CopyMem(nullptr, 2);
    EXPECT_EQ("ab", Text(block));
    char kept[] = "xy";
    block.CopyMem(kept, nullptr, 2);
    EXPECT_STREQ("xy", kept);
    block.CopyMem(nullptr, kept, 2);
    EXPECT_STREQ("xy", kept);
}

TEST(Allocator, zero_fills_the_whole_block) {
    UtilsAllocator<int> block(3);
    for (unsigned long i = 0; i < 3; ++i)
        block[i] = -1;
    block.Zero();
    for (unsigned long i = 0; i < 3; ++i)
        EXPECT_EQ(0, block[i]);
}

TEST(Allocator, zero_fills_elements_of_class_types_byte_by_byte) {
    struct Plain {
        int value = 5;
    };
    UtilsAllocator<Plain> block(2);
    EXPECT_EQ(5, block[1ul].value);
    block.Zero();
    EXPECT_EQ(0, block[0ul].value);
    EXPECT_EQ(0, block[1ul].value);
}

TEST(Allocator, indexes_with_both_integers_for_elements_of_class_types) {
    UtilsAllocator<Element> block(2);
    block[1u].text = "x";
    EXPECT_EQ("x", block[1ul].text);
    UtilsAllocator<Element> const &fixed = block;
    EXPECT_EQ("x", fixed[1ul].text);
}

// Memory of the caller's

TEST(AllocatorHeap, gives_a_block_and_leaves_the_ignored_one_and_itself_alone) {
    UtilsAllocator<int> heap;
    int mine = 5;
    int *const given = heap.AllocateMemory(&mine, 3);
    ASSERT_NE(nullptr, given);
    EXPECT_NE(&mine, given);
    EXPECT_EQ(5, mine);
    given[2] = 1;
    EXPECT_EQ(0, heap.AllocationScheme());
    EXPECT_EQ(0u, heap.GetLength());
    heap.FreeMemory(given);
}

TEST(AllocatorHeap, constructs_and_destroys_what_it_lends) {
    UtilsAllocator<Element> heap;
    int const alive = Element::Alive();
    Element *const given = heap.AllocateMemory(nullptr, 3);
    EXPECT_EQ(alive + 3, Element::Alive());
    heap.FreeMemory(given);
    EXPECT_EQ(alive, Element::Alive());
}

TEST(AllocatorHeap, resizes_a_block_of_the_callers) {
    UtilsAllocator<char> heap(1);
    char *block = heap.AllocateMemory(nullptr, 3);
    std::memcpy(block, "abc", 3);
    EXPECT_EQ(block, heap.ReAllocateMemory(block, 3, 3));
    block = heap.ReAllocateMemory(block, 3, 5);
    EXPECT_EQ("abc", std::string(block, 3));
    block[4] = 'e';
    block = heap.ReAllocateMemory(block, 5, 2);
    EXPECT_EQ("ab", std::string(block, 2));
    EXPECT_EQ(1u, heap.GetLength());
    heap.FreeMemory(block);
}

TEST(AllocatorHeap, frees_the_elements_of_a_block_that_it_resizes) {
    UtilsAllocator<Element> heap;
    int const alive = Element::Alive();
    Element *block = heap.AllocateMemory(nullptr, 2);
    block = heap.ReAllocateMemory(block, 2, 7);
    EXPECT_EQ(alive + 7, Element::Alive());
    heap.FreeMemory(block);
    EXPECT_EQ(alive, Element::Alive());
}

TEST(AllocatorHeap, copies_memory_of_the_callers_and_counts_the_elements) {
    OpenAllocator<int> heap;
    int const from[] = {1, 2, 3};
    int to[] = {0, 0, 9};
    heap.CopyMem(to, from, 2);
    EXPECT_EQ(1, to[0]);
    EXPECT_EQ(2, to[1]);
    EXPECT_EQ(9, to[2]);
    EXPECT_EQ(2u, heap.loopIndex);
}

TEST(AllocatorHeap, copies_upwards_where_ranges_overlap) {
    UtilsAllocator<char> heap;
    char down[] = "abcdef";
    heap.CopyMem(down, down + 2, 4);
    EXPECT_STREQ("cdefef", down);
    char up[] = "abcdef";
    heap.CopyMem(up + 1, up, 3); // what was copied is copied on
    EXPECT_STREQ("aaaaef", up);
}

TEST(AllocatorHeap, skips_an_element_of_a_class_type_that_is_its_own_source) {
    UtilsAllocator<Element> heap;
    Element elements[2];
    Element::SelfAssignments() = Element::Assignments() = 0;
    heap.CopyMem(elements, elements, 2);
    EXPECT_EQ(0, Element::SelfAssignments());
    EXPECT_EQ(0, Element::Assignments());
    Element other[2];
    heap.CopyMem(other, elements, 2);
    EXPECT_EQ(2, Element::Assignments());
}

TEST(AllocatorHeap, zero_fills_memory_of_the_callers) {
    UtilsAllocator<unsigned short> heap;
    unsigned short block[] = {1, 2, 3};
    heap.ZeroMem(block, 2);
    EXPECT_EQ(0, block[0]);
    EXPECT_EQ(0, block[1]);
    EXPECT_EQ(3, block[2]);
}

// What derived classes may do

TEST(AllocatorFields, free_with_reset_holds_nothing_afterwards) {
    OpenAllocator<char> block(4);
    block.FreeMemory(1);
    EXPECT_EQ(0u, block.blockLength);
    EXPECT_EQ(0u, block.blockHeight);
    EXPECT_EQ(0, block.isMatrix);
    EXPECT_EQ(0, block.allocationScheme);
    block.AllocateMemory(2);
    EXPECT_EQ(2u, block.blockLength);
    EXPECT_EQ(1, block.allocationScheme);
}

TEST(AllocatorFields, free_without_reset_keeps_the_numbers) {
    int const alive = Element::Alive();
    OpenAllocator<Element> block(4);
    block.FreeMemory(0);
    EXPECT_EQ(alive, Element::Alive());
    EXPECT_EQ(4u, block.blockLength);
    EXPECT_EQ(1, block.allocationScheme);
}

TEST(AllocatorFields, free_leaves_outside_memory_alone) {
    char outside[] = "x";
    OpenAllocator<char> view;
    view.SetMemoryPointer(outside);
    view.FreeMemory(1);
    EXPECT_STREQ("x", outside);
    EXPECT_EQ(0, view.allocationScheme);
}

TEST(AllocatorFields, a_second_allocation_does_not_free_the_first_block) {
    int const alive = Element::Alive();
    OpenAllocator<Element> block(2);
    std::unique_ptr<Element[]> const first(block.memoryBlock);
    block.AllocateMemory(3);
    EXPECT_EQ(alive + 5, Element::Alive());
    EXPECT_EQ(3u, block.blockLength);
    EXPECT_NE(first.get(), block.memoryBlock);
}

TEST(AllocatorFields, the_scheme_is_tested_for_nothing_but_ownership) {
    EXPECT_NO_THROW(OpenAllocator<char>(3).CheckAllocationScheme());
    EXPECT_NO_THROW(OpenAllocator<char>(3, 2).CheckAllocationScheme());
}

TEST(AllocatorName, is_that_of_the_class) {
    EXPECT_STREQ("class UTILS::UtilsAllocator<char>", UtilsAllocator<char>().derived_class());
    EXPECT_STREQ("class UTILS::UtilsAllocator<unsigned char>",
                 UtilsAllocator<unsigned char>().derived_class());
    EXPECT_STREQ("class UTILS::UtilsAllocator<unsigned short>",
                 UtilsAllocator<unsigned short>().derived_class());
    EXPECT_STREQ("class UTILS::UtilsAllocator<int>", UtilsAllocator<int>().derived_class());
    OpenAllocator<char> const derived;
    UtilsAllocator<char> const &base = derived;
    EXPECT_STREQ("class OpenAllocator<char>", base.derived_class());
}

// Copies of allocators: what is owned is copied, what is borrowed is borrowed again.
#include "open_allocator.h"

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "fault_text.h"
#include "run_element.h"

using UTILS::UtilsAllocator;

namespace {

enum Kind { Nothing, View, Block, OtherBlock, Matrix, OtherMatrix };

Element outside[2] = {Element("out"), Element("side")};

std::unique_ptr<OpenAllocator<Element>> Make(Kind kind) {
    unsigned long const length = kind == Block || kind == Matrix             ? 2
                                 : kind == OtherBlock || kind == OtherMatrix ? 3
                                                                             : 0;
    unsigned long const height = kind == Matrix ? 2 : kind == OtherMatrix ? 4 : 0;
    auto made = std::make_unique<OpenAllocator<Element>>(length, height);
    if (kind == View)
        made->SetMemoryPointer(outside);
    for (unsigned long row = 0; row < height; ++row)
        for (unsigned long i = 0; i < length; ++i)
            made->memoryMatrix[row][i].text = std::to_string(row) + "," + std::to_string(i);
    for (unsigned long i = 0; height == 0 && i < length; ++i)
        made->memoryBlock[i].text = std::to_string(i);
    return made;
}

void ExpectIs(OpenAllocator<Element> const &object, Kind kind) {
    auto const model = Make(kind);
    EXPECT_EQ(model->blockLength, object.blockLength);
    EXPECT_EQ(model->blockHeight, object.blockHeight);
    EXPECT_EQ(model->isMatrix, object.isMatrix);
    EXPECT_EQ(model->allocationScheme, object.allocationScheme);
    if (kind == View) {
        EXPECT_EQ(outside, object.GetMemoryBlock());
    }
    for (unsigned long row = 0; row < model->blockHeight; ++row)
        for (unsigned long i = 0; i < model->blockLength; ++i)
            EXPECT_EQ(model->memoryMatrix[row][i].text, object.memoryMatrix[row][i].text);
    for (unsigned long i = 0; model->blockHeight == 0 && i < model->blockLength; ++i)
        EXPECT_EQ(model->memoryBlock[i].text, object.memoryBlock[i].text);
}

constexpr Kind kinds[] = {Nothing, View, Block, OtherBlock, Matrix, OtherMatrix};

// Both kinds of an assignment, each with each.
class AllocatorAssignment : public testing::TestWithParam<std::tuple<Kind, Kind>> {};

} // namespace

TEST_P(AllocatorAssignment, makes_one_like_the_other_and_loses_nothing) {
    auto const [from, to] = GetParam();
    int const alive = Element::Alive();
    {
        auto const source = Make(from);
        auto const target = Make(to);
        EXPECT_EQ(target.get(), &(*target = *source));
        ExpectIs(*target, from);
        ExpectIs(*source, from);
        if (source->allocationScheme == 1) {
            EXPECT_NE(
                source->isMatrix ? static_cast<void *>(source->memoryMatrix) : source->memoryBlock,
                target->isMatrix ? static_cast<void *>(target->memoryMatrix) : target->memoryBlock);
        }
    }
    EXPECT_EQ(alive, Element::Alive());
    EXPECT_EQ("out", outside[0].text);
}

TEST_P(AllocatorAssignment, leaves_the_other_free_to_change) {
    auto const [from, to] = GetParam();
    auto const source = Make(from);
    auto const target = Make(to);
    *target = *source;
    if (source->allocationScheme == 1) {
        if (source->isMatrix) {
            source->memoryMatrix[0][0].text = "changed";
            source->FreeMatrix(1);
        } else {
            source->memoryBlock[0].text = "changed";
            source->FreeMemory(1);
        }
    }
    ExpectIs(*target, from);
}

INSTANTIATE_TEST_SUITE_P(EachToEach, AllocatorAssignment,
                         testing::Combine(testing::ValuesIn(kinds), testing::ValuesIn(kinds)));

TEST(AllocatorCopy, built_from_another_is_like_it) {
    for (Kind const kind : kinds) {
        int const alive = Element::Alive();
        {
            auto const source = Make(kind);
            OpenAllocator<Element> const copy(static_cast<UtilsAllocator<Element> &>(*source));
            ExpectIs(copy, kind);
        }
        EXPECT_EQ(alive, Element::Alive());
    }
}

TEST(AllocatorCopy, of_itself_has_no_effect) {
    for (Kind const kind : kinds) {
        auto const object = Make(kind);
        Element::Assignments() = 0;
        OpenAllocator<Element> const &same = *object;
        *object = same;
        ExpectIs(*object, kind);
        EXPECT_EQ(0, Element::Assignments());
    }
}

TEST(AllocatorCopy, of_a_view_sees_the_same_memory) {
    char text[] = "abc";
    UtilsAllocator<char> first;
    UtilsAllocator<char> second(5);
    first.SetMemoryPointer(text);
    second = first;
    text[0] = 'x';
    EXPECT_EQ(text, second.GetMemoryBlock());
    EXPECT_STREQ("xbc", second.GetMemoryBlock());
    EXPECT_TRUE(AllocatorRefuses([&] { second.Zero(); }, wrongCall, notConstructed));
}

TEST(AllocatorCopy, takes_over_the_counter_of_the_copy_loops) {
    OpenAllocator<int> from(4);
    from.Zero();
    from.loopIndex = 77;
    OpenAllocator<int> to(2);
    to = from;
    EXPECT_EQ(77u, to.loopIndex);
}

TEST(AllocatorCopy, of_a_block_of_the_same_length_keeps_the_block) {
    UtilsAllocator<char> from(3);
    UtilsAllocator<char> to(3);
    from.CopyMem("abc", 3);
    char const *const before = to.GetMemoryBlock();
    to = from;
    EXPECT_EQ(before, to.GetMemoryBlock());
    EXPECT_EQ("abc", std::string(to.GetMemoryBlock(), 3));
}

TEST(AllocatorCopy, of_an_empty_one_can_become_a_view) {
    UtilsAllocator<char> const empty;
    UtilsAllocator<char> block(4);
    block = empty;
    char text[] = "x";
    EXPECT_NO_THROW(block.SetMemoryPointer(text));
    EXPECT_EQ(text, block.GetMemoryBlock());
}

TEST(AllocatorCopy, of_nested_containers_copies_what_they_hold) {
    UtilsAllocator<UtilsAllocator<int>> from(2);
    UtilsAllocator<int> const numbers(3);
    from[0ul] = numbers;
    UtilsAllocator<UtilsAllocator<int>> to;
    to = from;
    EXPECT_EQ(3u, to[0ul].GetLength());
    EXPECT_NE(from[0ul].GetMemoryBlock(), to[0ul].GetMemoryBlock());
    EXPECT_EQ(0u, to[1ul].GetLength());
}

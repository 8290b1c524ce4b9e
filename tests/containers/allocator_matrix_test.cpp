// Matrices: rows of equal length under one table.
#include "open_allocator.h"

#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "run_element.h"

using UTILS::UtilsAllocator;

namespace {

// Gives row r and column c the value 10 r + c.
template <class T> void Number(T **rows, unsigned long length, unsigned long height) {
    for (unsigned long r = 0; r < height; ++r)
        for (unsigned long c = 0; c < length; ++c)
            rows[r][c] = static_cast<T>(10 * r + c);
}

template <class T>
std::vector<int> Cells(T const *const *rows, unsigned long length, unsigned long height) {
    std::vector<int> cells;
    for (unsigned long r = 0; r < height; ++r)
        cells.insert(cells.end(), rows[r], rows[r] + length);
    return cells;
}

using Numbers = std::vector<int>;

} // namespace

TEST(AllocatorMatrix, is_built_with_both_sizes) {
    OpenAllocator<int> matrix(3, 2);
    EXPECT_EQ(1, matrix.AllocationScheme());
    EXPECT_EQ(1, matrix.isMatrix);
    EXPECT_EQ(3u, matrix.GetLength());
    EXPECT_EQ(2u, matrix.GetHeight());
    Number(matrix.memoryMatrix, 3, 2);
    EXPECT_EQ((Numbers{0, 1, 2, 10, 11, 12}), Cells(matrix.memoryMatrix, 3, 2));
}

TEST(AllocatorMatrix, constructs_and_destroys_elements_of_class_types) {
    int const alive = Element::Alive();
    {
        UtilsAllocator<Element> const matrix(3, 4);
        EXPECT_EQ(alive + 12, Element::Alive());
    }
    EXPECT_EQ(alive, Element::Alive());
}

TEST(AllocatorMatrix, resized_keeps_what_fits_of_both_sizes) {
    OpenAllocator<int> matrix(3, 2);
    Number(matrix.memoryMatrix, 3, 2);
    matrix.ReAllocateMatrix(2, 3);
    EXPECT_EQ(2u, matrix.GetLength());
    EXPECT_EQ(3u, matrix.GetHeight());
    EXPECT_EQ((Numbers{0, 1, 10, 11}), Cells(matrix.memoryMatrix, 2, 2));
    matrix.memoryMatrix[2][1] = 5;
    matrix.ReAllocateMatrix(4, 1);
    EXPECT_EQ(4u, matrix.GetLength());
    EXPECT_EQ(1u, matrix.GetHeight());
    EXPECT_EQ((Numbers{0, 1}), Cells(matrix.memoryMatrix, 2, 1));
}

TEST(AllocatorMatrix, resized_to_the_same_sizes_stays_where_it_is) {
    OpenAllocator<char> matrix(3, 2);
    char **const before = matrix.memoryMatrix;
    matrix.ReAllocateMatrix(3, 2);
    EXPECT_EQ(before, matrix.memoryMatrix);
}

TEST(AllocatorMatrix, resized_in_one_size_only_is_resized) {
    OpenAllocator<int> matrix(2, 2);
    Number(matrix.memoryMatrix, 2, 2);
    matrix.ReAllocateMatrix(2, 3);
    EXPECT_EQ(3u, matrix.GetHeight());
    matrix.ReAllocateMatrix(3, 3);
    EXPECT_EQ(3u, matrix.GetLength());
    EXPECT_EQ((Numbers{0, 1, 10, 11}), Cells(matrix.memoryMatrix, 2, 2));
}

TEST(AllocatorMatrix, is_left_alone_by_zero_and_by_copies_into_a_block) {
    OpenAllocator<int> matrix(2, 2);
    Number(matrix.memoryMatrix, 2, 2);
    int const other[] = {7, 7, 7, 7};
    EXPECT_NO_THROW(matrix.Zero());
    EXPECT_NO_THROW(matrix.CopyMem(other, 4));
    EXPECT_EQ((Numbers{0, 1, 10, 11}), Cells(matrix.memoryMatrix, 2, 2));
}

TEST(AllocatorMatrix, freed_with_reset_holds_nothing_afterwards) {
    int const alive = Element::Alive();
    OpenAllocator<Element> matrix(2, 3);
    matrix.FreeMatrix(1);
    EXPECT_EQ(alive, Element::Alive());
    EXPECT_EQ(0u, matrix.blockLength);
    EXPECT_EQ(0u, matrix.blockHeight);
    EXPECT_EQ(0, matrix.isMatrix);
    EXPECT_EQ(0, matrix.allocationScheme);
    matrix.AllocateMatrix(1, 2);
    EXPECT_EQ(1, matrix.isMatrix);
    EXPECT_EQ(1, matrix.allocationScheme);
    EXPECT_EQ(2u, matrix.blockHeight);
}

TEST(AllocatorMatrix, freed_without_reset_keeps_the_numbers) {
    OpenAllocator<char> matrix(2, 3);
    matrix.FreeMatrix(0);
    EXPECT_EQ(2u, matrix.blockLength);
    EXPECT_EQ(3u, matrix.blockHeight);
    EXPECT_EQ(1, matrix.isMatrix);
    EXPECT_EQ(1, matrix.allocationScheme);
}

// Memory of the caller's

TEST(AllocatorHeap, gives_a_matrix_and_leaves_the_ignored_one_and_itself_alone) {
    OpenAllocator<int> heap;
    int **const ignored = nullptr;
    int **const matrix = heap.AllocateMatrix(ignored, 2, 3);
    Number(matrix, 2, 3);
    EXPECT_EQ((Numbers{0, 1, 10, 11, 20, 21}), Cells(matrix, 2, 3));
    EXPECT_EQ(0, heap.AllocationScheme());
    EXPECT_EQ(0, heap.isMatrix);
    heap.FreeMatrix(matrix, 3);
}

TEST(AllocatorHeap, frees_each_row_of_a_matrix) {
    UtilsAllocator<Element> heap;
    int const alive = Element::Alive();
    Element **const matrix = heap.AllocateMatrix(nullptr, 2, 3);
    EXPECT_EQ(alive + 6, Element::Alive());
    heap.FreeMatrix(matrix, 3);
    EXPECT_EQ(alive, Element::Alive());
}

TEST(AllocatorHeap, resizes_a_matrix_of_the_callers) {
    UtilsAllocator<int> heap;
    int **matrix = heap.AllocateMatrix(nullptr, 2, 2);
    Number(matrix, 2, 2);
    EXPECT_EQ(matrix, heap.ReAllocateMatrix(matrix, 2, 2, 2, 2));
    matrix = heap.ReAllocateMatrix(matrix, 2, 3, 2, 1);
    EXPECT_EQ((Numbers{0, 1}), Cells(matrix, 2, 1));
    matrix[0][2] = 2;
    matrix = heap.ReAllocateMatrix(matrix, 3, 3, 1, 2);
    EXPECT_EQ((Numbers{0, 1, 2}), Cells(matrix, 3, 1));
    heap.FreeMatrix(matrix, 2);
}

TEST(AllocatorHeap, frees_the_elements_of_a_matrix_that_it_resizes) {
    UtilsAllocator<Element> heap;
    int const alive = Element::Alive();
    Element **matrix = heap.AllocateMatrix(nullptr, 2, 2);
    matrix[1][1].text = "kept";
    matrix = heap.ReAllocateMatrix(matrix, 2, 3, 2, 3);
    EXPECT_EQ("kept", matrix[1][1].text);
    EXPECT_EQ(alive + 9, Element::Alive());
    heap.FreeMatrix(matrix, 3);
    EXPECT_EQ(alive, Element::Alive());
}

TEST(AllocatorHeap, copies_a_part_of_a_matrix) {
    OpenAllocator<int> from(3, 3);
    OpenAllocator<int> to(3, 3);
    Number(from.memoryMatrix, 3, 3);
    for (unsigned long row = 0; row < 3; ++row)
        std::fill_n(to.memoryMatrix[row], 3, 99);
    to.CopyMatrix(to.memoryMatrix, from.memoryMatrix, 2, 2);
    EXPECT_EQ((Numbers{0, 1, 99, 10, 11, 99, 99, 99, 99}), Cells(to.memoryMatrix, 3, 3));
}

TEST(AllocatorHeap, copies_no_matrix_from_or_to_null) {
    OpenAllocator<int> matrix(1, 1);
    matrix.memoryMatrix[0][0] = 5;
    matrix.CopyMatrix(matrix.memoryMatrix, nullptr, 1, 1);
    matrix.CopyMatrix(nullptr, matrix.memoryMatrix, 1, 1);
    EXPECT_EQ(5, matrix.memoryMatrix[0][0]);
}

TEST(AllocatorHeap, skips_elements_of_class_types_that_are_their_own_source_in_a_matrix) {
    OpenAllocator<Element> matrix(2, 2);
    Element::Assignments() = 0;
    matrix.CopyMatrix(matrix.memoryMatrix, matrix.memoryMatrix, 2, 2);
    EXPECT_EQ(0, Element::Assignments());
}

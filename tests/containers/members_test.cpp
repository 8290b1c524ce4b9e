// Which members the instantiations have.
#include "UtilsVector.h"

#include <type_traits>
#include <utility>

#include <gtest/gtest.h>

#include "run_element.h"

using UTILS::ListObject;
using UTILS::MapObject;
using UTILS::MemObject;
using UTILS::Utils;
using UTILS::UtilsAllocator;
using UTILS::UtilsBase;

namespace {

// Has<Expression, T>: whether the expression on a T is one that compiles.
template <template <class> class Expression, class T, class = void> struct HasIt : std::false_type {
};
template <template <class> class Expression, class T>
struct HasIt<Expression, T, std::void_t<Expression<T>>> : std::true_type {};
template <template <class> class Expression, class T> constexpr bool Has =
    HasIt<Expression, T>::value;

template <class T> T &A();
template <class T> T *Ptr();
template <class T> unsigned long &Number();

template <class T> using Allocator = UtilsAllocator<T>;
template <class T> using Height = decltype(A<Allocator<T>>().GetHeight());
template <class T> using Length = decltype(A<Allocator<T>>().GetLength());
template <class T> using CopyOfMatrix =
    decltype(A<Allocator<T>>().CopyMatrix(Ptr<T *>(), Ptr<T *>(), 1ul, 1ul));
template <class T> using OwnMatrix = decltype(A<Allocator<T>>().ReAllocateMatrix(1ul, 1ul));
template <class T> using LentMatrix =
    decltype(A<Allocator<T>>().ReAllocateMatrix(Ptr<T *>(), 1ul, 1ul, 1ul, 1ul));
template <class T> using NewMatrix =
    decltype(A<Allocator<T>>().AllocateMatrix(Ptr<T *>(), 1ul, 1ul));
template <class T> using FreeOfMatrix = decltype(A<Allocator<T>>().FreeMatrix(Ptr<T *>(), 1ul));
template <class T> using NewBlock = decltype(A<Allocator<T>>().AllocateMemory(Ptr<T>(), 1ul));
template <class T> using Resize = decltype(A<Allocator<T>>().ReAllocateMemory(1ul));
template <class T> using ShortIndex = decltype(A<Allocator<T>>()[1u]);
template <class T> using LongIndex = decltype(A<Allocator<T>>()[1ul]);

template <class T> using Search = decltype(A<UtilsBase<T>>().search(
    Ptr<T>(), Ptr<T>(), Ptr<T>(), Ptr<T>(), Number<T>(), 1, 0ul, nullptr));
template <class T> using Parse = decltype(A<UtilsBase<T>>().parse(
    Ptr<T>(), Ptr<T>(), Ptr<T>(), Ptr<T>(), Ptr<T>(), 0ul, 1, 0, nullptr, 0));
template <class T> using Compare =
    decltype(A<UtilsBase<T>>().compare(Ptr<T>(), Ptr<T>(), 1, 0, 1ul, 1ul));
template <class T> using DataCompare =
    decltype(A<UtilsBase<T>>().datacmp(Ptr<T>(), Ptr<T>(), 1ul, 1));
template <class T> using Sort = decltype(A<UtilsBase<T>>().selection_sort(Ptr<T>(), Ptr<T>()));
template <class T> using Size = decltype(A<UtilsBase<T>>().GetSizeOfData(Ptr<T>(), Ptr<T>()));
template <class T> using Terminator = decltype(A<UtilsBase<T>>().NullTerminate(Ptr<T>()));
template <class T> using CaseType = decltype(A<UtilsBase<T>>().IsCaseType());
template <class T> using BaseCopy = decltype(A<UtilsBase<T>>().UBaseCopy(A<UtilsBase<T>>()));

template <class T> using Bundle = Utils<T, int>;
template <class T> using BuildVector = decltype(A<Bundle<T>>().BuildVector(1ul, Ptr<T>(), 1ul));
template <class T> using AddVector = decltype(A<Bundle<T>>().AddVector(Ptr<T>(), 1ul));
template <class T> using RemoveItem = decltype(A<Bundle<T>>().RemoveVectorItem(1ul));
template <class T> using VectorItem = decltype(A<Bundle<T>>().RetrieveVectorItem(1ul));
template <class T> using VectorSize = decltype(A<Bundle<T>>().RetrieveVectorSize(1ul));
template <class T> using BuildList = decltype(A<Bundle<T>>().BuildList(1ul, 1));
template <class T> using ListItem = decltype(A<Bundle<T>>().RetrieveListItem(1ul));
template <class T> using ListSize = decltype(A<Bundle<T>>().RetrieveListSize(1ul));
template <class T> using SortList = decltype(A<Bundle<T>>().SortList(1ul, 1u));
template <class T> using RemoveVector = decltype(A<Bundle<T>>().RemoveVector());
template <class T> using RemoveList = decltype(A<Bundle<T>>().RemoveList());
template <class T> using RemoveMap = decltype(A<Bundle<T>>().RemoveMap());

template <class T> constexpr bool isCopied = std::is_copy_constructible_v<UtilsAllocator<T>>;
template <class T> constexpr bool isAssigned = std::is_copy_assignable_v<UtilsAllocator<T>>;
template <class T> constexpr bool hasMatrixMembers =
    Has<Height, T> &&Has<CopyOfMatrix, T> &&Has<OwnMatrix, T> &&Has<LentMatrix, T>;

} // namespace

TEST(AllocatorMembers, copies_are_constructed_for_class_types_only) {
    EXPECT_FALSE(isCopied<char>);
    EXPECT_FALSE(isCopied<int>);
    EXPECT_FALSE(isCopied<unsigned char>);
    EXPECT_FALSE(isCopied<unsigned short>);
    EXPECT_FALSE(isCopied<_TOKEN_GROUPS>);
    EXPECT_TRUE(isCopied<Element>);
    EXPECT_TRUE(isCopied<MemObject<char>>);
    EXPECT_TRUE(isCopied<MemObject<unsigned char>>);
    EXPECT_TRUE(isCopied<ListObject<char>>);
    EXPECT_TRUE(isCopied<ListObject<unsigned char>>);
    EXPECT_TRUE((isCopied<MapObject<int, char>>));
    EXPECT_TRUE((isCopied<MapObject<int, unsigned char>>));
}

TEST(AllocatorMembers, of_char_and_int_are_the_full_set) {
    EXPECT_TRUE(hasMatrixMembers<char> && isAssigned<char>);
    EXPECT_TRUE(hasMatrixMembers<int> && isAssigned<int>);
    EXPECT_TRUE((Has<NewMatrix, char> && Has<FreeOfMatrix, char> && Has<LongIndex, char>));
}

TEST(AllocatorMembers, of_unsigned_short_lack_matrices_and_assignment) {
    EXPECT_FALSE((Has<Height, unsigned short>));
    EXPECT_FALSE((Has<CopyOfMatrix, unsigned short>));
    EXPECT_FALSE((Has<OwnMatrix, unsigned short>));
    EXPECT_FALSE((Has<LentMatrix, unsigned short>));
    EXPECT_FALSE(isAssigned<unsigned short>);
    EXPECT_TRUE((Has<Length, unsigned short> && Has<Resize, unsigned short>));
    EXPECT_TRUE((Has<NewBlock, unsigned short> && Has<LongIndex, unsigned short>));
}

TEST(AllocatorMembers, of_token_groups_serve_a_buffer) {
    EXPECT_TRUE((Has<NewBlock, _TOKEN_GROUPS> && Has<NewMatrix, _TOKEN_GROUPS>));
    EXPECT_TRUE((Has<FreeOfMatrix, _TOKEN_GROUPS>));
    EXPECT_FALSE((Has<CopyOfMatrix, _TOKEN_GROUPS>));
    EXPECT_FALSE(isAssigned<_TOKEN_GROUPS>);
    UtilsAllocator<_TOKEN_GROUPS> buffer(2);
    EXPECT_EQ(1, buffer.AllocationScheme());
    EXPECT_NE(nullptr, buffer.GetMemoryBlock());
}

TEST(AllocatorMembers, of_class_types_index_by_both_integers) {
    EXPECT_TRUE((Has<ShortIndex, MemObject<char>> && Has<LongIndex, MemObject<char>>));
    EXPECT_TRUE((Has<ShortIndex, ListObject<char>> && Has<LongIndex, ListObject<char>>));
    EXPECT_TRUE((Has<ShortIndex, MapObject<int, char>> && Has<LongIndex, MapObject<int, char>>));
    UtilsAllocator<MemObject<char>> nested(2);
    EXPECT_EQ(&nested[1u], &nested[1ul]);
    EXPECT_THROW(static_cast<void>(nested[2u]), std::out_of_range);
}

TEST(BaseMembers, of_int_are_measures_and_terminators_only) {
    EXPECT_FALSE((Has<Search, int>));
    EXPECT_FALSE((Has<Parse, int>));
    EXPECT_FALSE((Has<Compare, int>));
    EXPECT_FALSE((Has<DataCompare, int>));
    EXPECT_FALSE((Has<Sort, int>));
    EXPECT_TRUE((Has<Size, int> && Has<Terminator, int> && Has<CaseType, int>));
    EXPECT_TRUE((Has<BaseCopy, int>));
}

TEST(BaseMembers, of_text_and_bytes_are_the_full_set) {
    EXPECT_TRUE((Has<Search, char> && Has<Parse, char> && Has<Compare, char>));
    EXPECT_TRUE((Has<DataCompare, char> && Has<Sort, char> && Has<Size, char>));
    EXPECT_TRUE((Has<Search, unsigned char> && Has<Parse, unsigned char>));
    EXPECT_TRUE((Has<Compare, unsigned char> && Has<DataCompare, unsigned char>));
    EXPECT_TRUE((Has<Sort, unsigned char> && Has<Size, unsigned char>));
}

TEST(BundleMembers, of_text_keep_a_vector) {
    EXPECT_TRUE((Has<BuildVector, char> && Has<AddVector, char> && Has<RemoveItem, char>));
    EXPECT_TRUE((Has<VectorItem, char> && Has<VectorSize, char>));
    EXPECT_FALSE((Has<BuildList, char>));
    EXPECT_FALSE((Has<ListItem, char>));
    EXPECT_FALSE((Has<ListSize, char>));
    EXPECT_FALSE((Has<SortList, char>));
}

TEST(BundleMembers, of_bytes_keep_a_vector_that_neither_grows_nor_shrinks) {
    EXPECT_TRUE((Has<BuildVector, unsigned char> && Has<VectorItem, unsigned char>));
    EXPECT_TRUE((Has<VectorSize, unsigned char>));
    EXPECT_FALSE((Has<AddVector, unsigned char>));
    EXPECT_FALSE((Has<RemoveItem, unsigned char>));
    EXPECT_FALSE((Has<BuildList, unsigned char>));
    EXPECT_FALSE((Has<ListItem, unsigned char>));
    EXPECT_FALSE((Has<ListSize, unsigned char>));
    EXPECT_FALSE((Has<SortList, unsigned char>));
}

TEST(BundleMembers, of_elements_of_class_types_keep_lists) {
    EXPECT_TRUE((Has<BuildList, Element> && Has<ListItem, Element>));
    EXPECT_TRUE((Has<ListSize, Element> && Has<SortList, Element>));
}

TEST(BundleMembers, of_all_remove_stores) {
    EXPECT_TRUE((Has<RemoveVector, char> && Has<RemoveList, char> && Has<RemoveMap, char>));
    EXPECT_TRUE((Has<RemoveVector, Element> && Has<RemoveList, Element>));
    EXPECT_TRUE((Has<RemoveMap, Element> && Has<RemoveMap, unsigned char>));
    EXPECT_TRUE((std::is_copy_constructible_v<Utils<char, int>>));
}

// The instantiations of the family whose element is UtilsString.
#pragma once

#include "../UtilsString.h"

namespace UTILS {

// What they don't have
template <> int UtilsBase<UtilsString>::parse(UtilsString const *, UtilsString const *,
                                              UtilsString *, UtilsString const *,
                                              UtilsString const *, unsigned long, int, int,
                                              unsigned long *, int) const = delete;
template <> bool UtilsBase<UtilsString>::FindPiece(UtilsString const *, UtilsString const *,
                                                   UtilsString const *, UtilsString const *,
                                                   unsigned long, int, int, unsigned long *, int,
                                                   unsigned long &, unsigned long &) const = delete;
template <> void UtilsBase<UtilsString>::reverse(UtilsString *, UtilsString const *) = delete;
template <> void UtilsBase<UtilsString>::selection_sort(UtilsString *, UtilsString *) = delete;
template <> void MemObject<UtilsString>::Append(UtilsString const *, unsigned long) = delete;
template <> void MemObject<UtilsString>::Insert(UtilsString const *, unsigned long, int,
                                                unsigned long) = delete;
template <> void MemObject<UtilsString>::Truncate(unsigned long) = delete;
template <> void MemObject<UtilsString>::TruncateAtPosition(unsigned long, unsigned long) = delete;
template <> void MemObject<UtilsString>::Resize(unsigned long) = delete;
template <> void MemObject<UtilsString>::Take(UtilsString const *, unsigned long) = delete;
template <> void MemObject<UtilsString>::Reverse() = delete;
template <> void Utils<UtilsString, int>::BuildVector(unsigned long, UtilsString const *,
                                                      unsigned long) = delete;
template <> void Utils<UtilsString, int>::AddVector(UtilsString const *, unsigned long) = delete;
template <> void Utils<UtilsString, int>::RemoveVectorItem(unsigned long) = delete;
template <>
MemObject<UtilsString> &Utils<UtilsString, int>::RetrieveVectorItem(unsigned long) const = delete;
template <> unsigned long Utils<UtilsString, int>::RetrieveVectorSize(unsigned long) const = delete;

extern template class UtilsAllocator<UtilsString>;
extern template class UtilsBase<UtilsString>;
extern template class MemObject<UtilsString>;
extern template class Node<UtilsString>;
extern template class ListObject<UtilsString>;
extern template class MapNode<int, UtilsString>;
extern template class MapObject<int, UtilsString>;
extern template class UtilsAllocator<MemObject<UtilsString>>;
extern template class UtilsAllocator<ListObject<UtilsString>>;
extern template class UtilsAllocator<MapObject<int, UtilsString>>;
extern template class Utils<UtilsString, int>;

} // namespace UTILS

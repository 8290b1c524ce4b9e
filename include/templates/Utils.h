// Bodies of Utils<T, H>.
#pragma once

#include <memory>
#include <utility>

#include "../UtilsVector.h"

namespace UTILS {

template <typename T, typename H> Utils<T, H>::Utils()
    : vectorStore(nullptr), listStore(nullptr), mapStore(nullptr) {}

template <typename T, typename H> Utils<T, H>::Utils(Utils const &other) : Utils() {
    VectorCopy(other.vectorStore);
    ListCopy(other.listStore);
    MapCopy(other.mapStore);
}

template <typename T, typename H> Utils<T, H>::~Utils() {
    RemoveVector();
    RemoveList();
    RemoveMap();
}

template <typename T, typename H> int Utils<T, H>::isupper(T const &) const { return 0; }

template <typename T, typename H> int Utils<T, H>::islower(T const &) const { return 0; }

template <typename T, typename H> const char *Utils<T, H>::derived_class() const {
    return ClassName(typeid(*this));
}

// Stores

// The item at an index; a store that was never built has none.
template <typename T, typename H> template <typename Item>
Item &Utils<T, H>::At(UtilsAllocator<Item> *store, unsigned long index) {
    if (!store) {
        UtilsAllocator<Item> none;
        return none[index];
    }
    return (*store)[index];
}

// Puts a store in the place of the one that is there.
template <typename T, typename H> template <typename Item> void
Utils<T, H>::Replace(UtilsAllocator<Item> *&store, std::unique_ptr<UtilsAllocator<Item>> fresh) {
    ScopedLock const held(syncLock);
    delete std::exchange(store, fresh.release());
}

template <typename T, typename H> template <typename Item>
void Utils<T, H>::CopyStore(UtilsAllocator<Item> *&store, UtilsAllocator<Item> const *other) {
    if (store != other || !other) {
        Replace(store, other ? std::make_unique<UtilsAllocator<Item>>(*other) : nullptr);
    }
}

template <typename T, typename H> void Utils<T, H>::RemoveVector() {
    Replace<MemObject<T>>(vectorStore, nullptr);
}

template <typename T, typename H> void Utils<T, H>::RemoveList() {
    Replace<ListObject<T>>(listStore, nullptr);
}

template <typename T, typename H> void Utils<T, H>::RemoveMap() {
    Replace<MapObject<H, T>>(mapStore, nullptr);
}

template <typename T, typename H> void Utils<T, H>::VectorCopy(Utils const &other) {
    VectorCopy(other.vectorStore);
}

template <typename T, typename H>
void Utils<T, H>::VectorCopy(UtilsAllocator<MemObject<T>> const *other) {
    CopyStore(vectorStore, other);
}

template <typename T, typename H> void Utils<T, H>::ListCopy(Utils const &other) {
    ListCopy(other.listStore);
}

template <typename T, typename H>
void Utils<T, H>::ListCopy(UtilsAllocator<ListObject<T>> const *other) {
    CopyStore(listStore, other);
}

template <typename T, typename H>
void Utils<T, H>::MapCopy(UtilsAllocator<MapObject<H, T>> const *other) {
    CopyStore(mapStore, other);
}

// The vector

template <typename T, typename H>
void Utils<T, H>::BuildVector(unsigned long count, T const *data, unsigned long size) {
    auto fresh = std::make_unique<UtilsAllocator<MemObject<T>>>(count);
    for (unsigned long i = 0; data && i < count; ++i) {
        (*fresh)[i].Append(data, size);
    }
    Replace(vectorStore, std::move(fresh));
}

// Into a new store: the data may be of a run of this very vector, and memory may end.
template <typename T, typename H> void Utils<T, H>::AddVector(T const *data, unsigned long size) {
    ScopedLock const held(syncLock);
    unsigned long const count = vectorStore ? vectorStore->GetLength() : 0;
    auto fresh = std::make_unique<UtilsAllocator<MemObject<T>>>(count + 1);
    if (count != 0) {
        fresh->CopyMem(vectorStore->GetMemoryBlock(), count);
    }
    (*fresh)[count].Append(data, size);
    Replace(vectorStore, std::move(fresh));
}

template <typename T, typename H> void Utils<T, H>::RemoveVectorItem(unsigned long index) {
    ScopedLock const held(syncLock);
    At(vectorStore, index);
    unsigned long const last = vectorStore->GetLength() - 1;
    if (last == 0) {
        (*vectorStore)[0ul].Empty();
        vectorStore->urealloc(last); // refused, and the caller is told so
        return;
    }
    auto fresh = std::make_unique<UtilsAllocator<MemObject<T>>>(last);
    MemObject<T> *const items = vectorStore->GetMemoryBlock();
    fresh->CopyMem(items, index);
    fresh->CopyMem(fresh->GetMemoryBlock() + index, items + index + 1, last - index);
    Replace(vectorStore, std::move(fresh));
}

template <typename T, typename H>
MemObject<T> &Utils<T, H>::RetrieveVectorItem(unsigned long index) const {
    return At(vectorStore, index);
}

template <typename T, typename H>
unsigned long Utils<T, H>::RetrieveVectorSize(unsigned long index) const {
    return At(vectorStore, index).RetrieveSize();
}

// Lists

template <typename T, typename H> void Utils<T, H>::BuildList(unsigned long count, int scheme) {
    auto fresh = std::make_unique<UtilsAllocator<ListObject<T>>>(count);
    for (unsigned long i = 0; i < count; ++i) {
        (*fresh)[i].SetListAllocationScheme(scheme);
    }
    Replace(listStore, std::move(fresh));
}

template <typename T, typename H>
ListObject<T> &Utils<T, H>::RetrieveListItem(unsigned long index) const {
    return At(listStore, index);
}

template <typename T, typename H>
unsigned long Utils<T, H>::RetrieveListSize(unsigned long index) const {
    return At(listStore, index).ListSize();
}

template <typename T, typename H>
void Utils<T, H>::SortList(unsigned long index, unsigned int algorithm) {
    At(listStore, index).Sort(algorithm);
}

// Bundles of text and bytes keep a vector, those of strings a list.
#define QVLINKDB_VECTOR_BUNDLE(T)                                                                  \
    template <> void Utils<T, int>::BuildList(unsigned long, int) = delete;                        \
    template <> ListObject<T> &Utils<T, int>::RetrieveListItem(unsigned long) const = delete;      \
    template <> unsigned long Utils<T, int>::RetrieveListSize(unsigned long) const = delete;       \
    template <> void Utils<T, int>::SortList(unsigned long, unsigned int) = delete;                \
    template <> void Utils<T, int>::ListCopy(Utils const &) = delete
QVLINKDB_VECTOR_BUNDLE(char);
QVLINKDB_VECTOR_BUNDLE(unsigned char);
#undef QVLINKDB_VECTOR_BUNDLE
template <>
void Utils<unsigned char, int>::AddVector(unsigned char const *, unsigned long) = delete;
template <> void Utils<unsigned char, int>::RemoveVectorItem(unsigned long) = delete;

extern template class Utils<char, int>;
extern template class Utils<unsigned char, int>;

} // namespace UTILS

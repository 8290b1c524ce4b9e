// MemObject<T>, a counted run of T, and Utils<T, H>, which bundles a vector of runs, lists
// and maps under one lock.
//
// A run of char ends in a NUL that its size doesn't count; a run of unsigned char has none.
// Each change gives the run a block of exactly the size it needs. A size of 0 is measured:
// up to the terminator for char, one element otherwise. Null data changes nothing.
//
// Faults: std::out_of_range for a bad count or index, std::bad_alloc from the allocators. An
// object is as it was after a fault, unless told otherwise.
//
// Locking: the locks cover the change of a block or store, no sequence of calls. Readers take
// none, and what they return isn't guarded afterwards.
#pragma once

#include <memory>

#include "UtilsList.h"

namespace UTILS {

template <typename T> class QVLINKDB_TEMPLATE MemObject : public virtual UtilsBase<T> {
public:
    // An empty run, with room for `size` elements, at least one.
    MemObject(unsigned long size = 1);
    MemObject(MemObject const &) = delete;

    using UtilsBase<T>::isupper;
    using UtilsBase<T>::islower;
    using UtilsBase<T>::utoupper;
    using UtilsBase<T>::utolower;
    // For char some of these override the hooks, for others none does: none says so.
    // NOLINTBEGIN(modernize-use-override)
    virtual int isupper(unsigned short const &value) const;
    virtual int isupper(char const &value) const;
    virtual int islower(unsigned short const &value) const;
    virtual int islower(char const &value) const;
    virtual unsigned short utoupper(unsigned short const &value) const;
    virtual char utoupper(char const &value) const;
    virtual unsigned short utolower(unsigned short const &value) const;
    virtual char utolower(char const &value) const;
    virtual const char *derived_class() const;
    virtual ~MemObject();
    // NOLINTEND(modernize-use-override)

    MemObject &operator=(MemObject const &other);

    void Append(T const *data, unsigned long size = 0);
    // Puts data in at `position`. With `overwrite` above 0 it takes the place of what is there
    // and is cut at the end of the run. Behind the end nothing enters; the run grows all the
    // same, by zeros.
    void Insert(T const *data, unsigned long position, int overwrite, unsigned long size = 0);
    // Remove the last `n` elements, or `n` from `position` on. More than there are is out of
    // range; all of them is Empty. What lies behind the end counts as removed.
    void Truncate(unsigned long n);
    void TruncateAtPosition(unsigned long n, unsigned long position);
    // An empty run with the room that it was made with.
    void Empty();
    // Fills the block with zeros and leaves the size.
    void Zero();
    void Reverse();
    // The block, borrowed; good until the next change.
    T *Retrieve() const;
    operator T const *() const;
    unsigned long RetrieveSize() const;

protected:
    using UtilsBase<T>::NullTerminate;
    void NullTerminate();

    CCriticalSection syncLock;  // guards changes of the run
    unsigned long initialSize;  // elements of the block that Empty returns to
    unsigned long dataSize;     // elements, without the terminator
    int growFlag;               // 1
    UtilsAllocator<T> *storage; // owned

private:
    static constexpr const char *SOURCE = "UtilsVector";

    void Resize(unsigned long size);
    void Take(T const *elements, unsigned long size);
};

// A derived class uses one of the three stores and leaves the others null. All are owned.
template <typename T, typename H> class QVLINKDB_TEMPLATE Utils : public virtual UtilsBase<T> {
public:
    Utils();
    Utils(Utils const &other);
    Utils &operator=(Utils const &) = delete;

    int isupper(T const &value) const override;
    int islower(T const &value) const override;
    const char *derived_class() const override;
    ~Utils() override;

    // A new vector of `count` runs, each with the same data, empty for null.
    void BuildVector(unsigned long count, T const *data, unsigned long size);
    // One more run; the first one builds the vector.
    void AddVector(T const *data, unsigned long size);
    // The last run stays, but is emptied: its removal is a fault of the allocator.
    void RemoveVectorItem(unsigned long index);
    MemObject<T> &RetrieveVectorItem(unsigned long index) const;
    unsigned long RetrieveVectorSize(unsigned long index) const;
    // New lists with the given allocation scheme.
    void BuildList(unsigned long count, int scheme);
    ListObject<T> &RetrieveListItem(unsigned long index) const;
    unsigned long RetrieveListSize(unsigned long index) const;
    void SortList(unsigned long index, unsigned int algorithm);
    void RemoveVector();
    void RemoveList();
    void RemoveMap();

protected:
    // Deep copies of a store, item by item.
    void VectorCopy(Utils const &other);
    void VectorCopy(UtilsAllocator<MemObject<T>> const *other);
    void ListCopy(Utils const &other);
    void ListCopy(UtilsAllocator<ListObject<T>> const *other);
    void MapCopy(UtilsAllocator<MapObject<H, T>> const *other);

    mutable CCriticalSection syncLock; // guards the replacement of the stores
    UtilsAllocator<MemObject<T>> *vectorStore;
    UtilsAllocator<ListObject<T>> *listStore;
    UtilsAllocator<MapObject<H, T>> *mapStore;

private:
    template <typename Item>
    void Replace(UtilsAllocator<Item> *&store, std::unique_ptr<UtilsAllocator<Item>> fresh);
    template <typename Item>
    void CopyStore(UtilsAllocator<Item> *&store, UtilsAllocator<Item> const *other);
    template <typename Item> static Item &At(UtilsAllocator<Item> *store, unsigned long index);
};

} // namespace UTILS

#include "templates/MemObject.h"
#include "templates/Utils.h"

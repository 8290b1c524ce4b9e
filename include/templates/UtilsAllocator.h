// Bodies of UtilsAllocator<T>.
#pragma once

#include <algorithm>
#include <cstring>
#include <functional>
#include <memory>
#include <utility>

#include "../UtilsAllocator.h"

namespace UTILS {

template <typename T>
UtilsAllocator<T>::UtilsAllocator(unsigned long length, unsigned long height) {
    Init();
    if (height != 0) {
        AllocateMatrix(length, height);
    } else if (length != 0) {
        AllocateMemory(length);
    }
}

template <typename T> UtilsAllocator<T>::UtilsAllocator(UtilsAllocator const &other) {
    Init();
    Copy(other);
}

template <typename T> const char *UtilsAllocator<T>::derived_class() const {
    return ClassName(typeid(*this));
}

template <typename T> UtilsAllocator<T>::~UtilsAllocator() { Free(); }

template <typename T> UtilsAllocator<T> &UtilsAllocator<T>::operator=(UtilsAllocator const &other) {
    if (this != &other) {
        Copy(other);
    }
    return *this;
}

template <typename T> void UtilsAllocator<T>::Init() {
    blockLength = blockHeight = loopIndex = 0;
    isMatrix = allocationScheme = 0;
}

// The object's own memory

template <typename T> void UtilsAllocator<T>::AllocateMemory(unsigned long n) {
    memoryBlock = AllocateMemory(nullptr, n);
    blockLength = n;
    allocationScheme = 1;
}

template <typename T>
void UtilsAllocator<T>::AllocateMatrix(unsigned long length, unsigned long height) {
    memoryMatrix = AllocateMatrix(nullptr, length, height);
    blockLength = length;
    blockHeight = height;
    isMatrix = allocationScheme = 1;
}

template <typename T> void UtilsAllocator<T>::ReAllocateMemory(unsigned long n) {
    constexpr const char *detail = "UtilsAllocator<T>::ReAllocateMemory";
    if (allocationScheme == 0) {
        ThrowAllocationError(messages::WRONG_CALL, detail, SOURCE, __LINE__);
    }
    if (n == 0) {
        ThrowAllocationError(messages::ZERO_SIZE, n, SOURCE, __LINE__);
    }
    if (isMatrix) {
        ThrowAllocationError(messages::WRONG_CALL, detail, SOURCE, __LINE__);
    }
    memoryBlock = ReAllocateMemory(memoryBlock, blockLength, n);
    blockLength = n;
}

template <typename T>
void UtilsAllocator<T>::ReAllocateMatrix(unsigned long length, unsigned long height) {
    constexpr const char *detail = "UtilsAllocator<T>::ReAllocateMatrix";
    if (allocationScheme == 0) {
        ThrowAllocationError(messages::WRONG_CALL, detail, SOURCE, __LINE__);
    }
    if (length == 0 || height == 0) {
        ThrowAllocationError(messages::ZERO_SIZE, 0UL, SOURCE, __LINE__);
    }
    if (!isMatrix) {
        ThrowAllocationError(messages::WRONG_CALL, detail, SOURCE, __LINE__);
    }
    memoryMatrix = ReAllocateMatrix(memoryMatrix, blockLength, length, blockHeight, height);
    blockLength = length;
    blockHeight = height;
}

template <typename T> void UtilsAllocator<T>::FreeMemory(int reset) {
    if (memoryBlock && allocationScheme == 1) {
        FreeMemory(memoryBlock);
        memoryBlock = nullptr;
    }
    if (reset) {
        Init();
    }
}

template <typename T> void UtilsAllocator<T>::FreeMatrix(int reset) {
    if (memoryMatrix && allocationScheme == 1) {
        FreeMatrix(memoryMatrix, blockHeight);
        memoryMatrix = nullptr;
    }
    if (reset) {
        Init();
    }
}

// Frees what the object owns and forgets what it holds.
template <typename T> void UtilsAllocator<T>::Free() {
    if (isMatrix) {
        FreeMatrix(1);
    } else {
        FreeMemory(1);
    }
    memoryBlock = nullptr;
    memoryMatrix = nullptr;
}

template <typename T> void UtilsAllocator<T>::CheckAllocationScheme() const {
    if (allocationScheme == 0) {
        ThrowAllocationError(messages::WRONG_CALL,
                             "Cannot Allocate Memory Internally Without Constructor Initialization",
                             SOURCE, __LINE__);
    }
}

template <typename T> void UtilsAllocator<T>::CopyMem(T const *source, unsigned long n) {
    CheckAllocationScheme();
    if (!isMatrix) {
        CopyMem(memoryBlock, source, (std::min)(n, blockLength));
    }
}

template <typename T> void UtilsAllocator<T>::Zero() {
    CheckAllocationScheme();
    if (!isMatrix) {
        ZeroMem(memoryBlock, blockLength);
    }
}

template <typename T> void UtilsAllocator<T>::SetMemoryPointer(T *pointer) {
    if (allocationScheme != 0) {
        ThrowAllocationError(messages::WRONG_CALL,
                             "Cannot Allocate Memory Internally Without Constructor Initialization",
                             SOURCE, __LINE__);
    }
    memoryBlock = pointer;
}

template <typename T> void UtilsAllocator<T>::urealloc(unsigned long n) { ReAllocateMemory(n); }

template <typename T> T *UtilsAllocator<T>::GetMemoryBlock() const { return memoryBlock; }

template <typename T> T *UtilsAllocator<T>::ugetmem() const { return memoryBlock; }

template <typename T> UtilsAllocator<T>::operator T *() const { return memoryBlock; }

template <typename T> int UtilsAllocator<T>::AllocationScheme() const { return allocationScheme; }

template <typename T> unsigned long UtilsAllocator<T>::GetLength() const { return blockLength; }

template <typename T> unsigned long UtilsAllocator<T>::GetHeight() const { return blockHeight; }

template <typename T> T const &UtilsAllocator<T>::operator[](unsigned long index) const {
    if (index >= blockLength || !memoryBlock) {
        ThrowOutOfRange(index, blockLength, SOURCE, __LINE__);
    }
    return memoryBlock[index];
}

template <typename T> T &UtilsAllocator<T>::operator[](unsigned long index) {
    return const_cast<T &>(std::as_const(*this)[index]);
}

template <typename T> void UtilsAllocator<T>::Copy(UtilsAllocator const &other) {
    if (other.allocationScheme == 1 && other.isMatrix) {
        CopyOwnedMatrix(other);
    } else if (other.allocationScheme == 1 && other.memoryBlock) {
        CopyBlock(other);
    } else {
        // What was owned goes, as nothing would free it later.
        Free();
        memoryBlock = other.memoryBlock;
        memoryMatrix = other.memoryMatrix;
        blockLength = other.blockLength;
        blockHeight = other.blockHeight;
    }
    allocationScheme = other.allocationScheme;
    isMatrix = other.isMatrix;
    loopIndex = other.loopIndex;
}

// A block of the right length stays where it is.
template <typename T> void UtilsAllocator<T>::CopyBlock(UtilsAllocator const &other) {
    if (allocationScheme == 1 && !isMatrix && memoryBlock && blockLength == other.blockLength) {
        CopyMem(memoryBlock, other.memoryBlock, blockLength);
        return;
    }
    UtilsAllocator fresh(other.blockLength);
    fresh.CopyMem(other.memoryBlock, other.blockLength);
    Free();
    std::swap(memoryBlock, fresh.memoryBlock);
    blockLength = other.blockLength;
    allocationScheme = 1;
}

template <typename T> void UtilsAllocator<T>::CopyOwnedMatrix(UtilsAllocator const &other) {
    if (allocationScheme == 1 && isMatrix && blockLength == other.blockLength &&
        blockHeight == other.blockHeight) {
        CopyMatrix(memoryMatrix, other.memoryMatrix, blockLength, blockHeight);
        return;
    }
    UtilsAllocator fresh(other.blockLength, other.blockHeight);
    fresh.CopyMatrix(fresh.memoryMatrix, other.memoryMatrix, other.blockLength, other.blockHeight);
    Free();
    std::swap(memoryMatrix, fresh.memoryMatrix);
    blockLength = other.blockLength;
    blockHeight = other.blockHeight;
    isMatrix = allocationScheme = 1;
}

// A heap with a lock

template <typename T> T *UtilsAllocator<T>::AllocateMemory(T *, unsigned long n) {
    if (n == 0) {
        ThrowAllocationError(messages::INVALID_ARGUMENT, n, SOURCE, __LINE__);
    }
    ScopedLock const held(syncLock);
    return new T[n];
}

template <typename T> void UtilsAllocator<T>::FreeMemory(T *pointer) {
    if (!pointer) {
        ThrowAllocationError(messages::INVALID_ARGUMENT, 0UL, SOURCE, __LINE__);
    }
    ScopedLock const held(syncLock);
    delete[] pointer;
}

template <typename T>
T **UtilsAllocator<T>::AllocateMatrix(T **, unsigned long length, unsigned long height) {
    if (length == 0 || height == 0) {
        ThrowAllocationError(messages::INVALID_ARGUMENT, 0UL, SOURCE, __LINE__);
    }
    ScopedLock const held(syncLock);
    T **const table = new T *[height]();
    try {
        for (unsigned long row = 0; row < height; ++row) {
            table[row] = new T[length];
        }
    } catch (...) {
        FreeRows(table, height);
        throw;
    }
    return table;
}

template <typename T> void UtilsAllocator<T>::FreeMatrix(T **pointer, unsigned long height) {
    if (!pointer || height == 0) {
        ThrowAllocationError(messages::INVALID_ARGUMENT, 0UL, SOURCE, __LINE__);
    }
    ScopedLock const held(syncLock);
    FreeRows(pointer, height);
}

template <typename T> void UtilsAllocator<T>::FreeRows(T **table, unsigned long height) {
    for (unsigned long row = 0; row < height; ++row) {
        delete[] table[row];
    }
    delete[] table;
}

// A resize copies twice, through a block of the old length; the old block goes last, so
// that a fault on the way costs nothing.
template <typename T> T *UtilsAllocator<T>::ReAllocateMemory(T *pointer, unsigned long oldLength,
                                                             unsigned long newLength) {
    if (oldLength == 0 || newLength == 0) {
        ThrowAllocationError(messages::INVALID_ARGUMENT, 0UL, SOURCE, __LINE__);
    }
    if (oldLength == newLength) {
        return pointer;
    }
    std::unique_ptr<T[]> kept(AllocateMemory(nullptr, oldLength));
    CopyMem(kept.get(), pointer, oldLength);
    std::unique_ptr<T[]> fresh(AllocateMemory(nullptr, newLength));
    CopyMem(fresh.get(), kept.get(), (std::min)(oldLength, newLength));
    FreeMemory(pointer);
    FreeMemory(kept.release());
    return fresh.release();
}

template <typename T> T **UtilsAllocator<T>::ReAllocateMatrix(T **pointer, unsigned long oldLength,
                                                              unsigned long newLength,
                                                              unsigned long oldHeight,
                                                              unsigned long newHeight) {
    if (oldLength == 0 || newLength == 0 || oldHeight == 0 || newHeight == 0) {
        ThrowAllocationError(messages::INVALID_ARGUMENT, 0UL, SOURCE, __LINE__);
    }
    if (oldLength == newLength && oldHeight == newHeight) {
        return pointer;
    }
    UtilsAllocator kept(oldLength, oldHeight);
    CopyMatrix(kept.memoryMatrix, pointer, oldLength, oldHeight);
    UtilsAllocator fresh(newLength, newHeight);
    CopyMatrix(fresh.memoryMatrix, kept.memoryMatrix, (std::min)(oldLength, newLength),
               (std::min)(oldHeight, newHeight));
    FreeMatrix(pointer, oldHeight);
    T **const table = fresh.memoryMatrix;
    fresh.memoryMatrix = nullptr;
    return table;
}

template <typename T>
void UtilsAllocator<T>::CopyMem(T *destination, T const *source, unsigned long n) {
    ScopedLock const held(syncLock);
    CopyElements(destination, source, n);
}

template <typename T> void UtilsAllocator<T>::CopyMatrix(T **destination, T *const *source,
                                                         unsigned long length,
                                                         unsigned long height) {
    if (!destination || !source) {
        return;
    }
    ScopedLock const held(syncLock);
    for (unsigned long row = 0; row < height; ++row) {
        CopyElements(destination[row], source[row], length);
    }
}

template <typename T>
void UtilsAllocator<T>::CopyElements(T *destination, T const *source, unsigned long n) {
    if (!destination || !source) {
        return;
    }
    if constexpr (std::is_trivially_copyable_v<T>) {
        std::less_equal<> const notAbove;
        if (notAbove(destination + n, source) || notAbove(source + n, destination)) {
            std::memcpy(static_cast<void *>(destination), source, std::size_t{n} * sizeof(T));
            loopIndex = n;
            return;
        }
    }
    for (loopIndex = 0; loopIndex < n; ++loopIndex) {
        if (!std::is_class_v<T> || destination != source) {
            destination[loopIndex] = source[loopIndex];
        }
    }
}

template <typename T> void UtilsAllocator<T>::ZeroMem(T *pointer, unsigned long n) {
    if (pointer) {
        MemorySet(pointer, 0, std::size_t{n} * sizeof(T));
    }
}

template <typename T> void UtilsAllocator<T>::MemorySet(T *pointer, int value, std::size_t bytes) {
    ScopedLock const held(syncLock);
    std::memset(static_cast<void *>(pointer), value, bytes);
}

// What the instantiations for plain elements don't have

template <> UtilsAllocator<char>::UtilsAllocator(UtilsAllocator const &) = delete;
template <> UtilsAllocator<int>::UtilsAllocator(UtilsAllocator const &) = delete;
template <> UtilsAllocator<unsigned char>::UtilsAllocator(UtilsAllocator const &) = delete;

#define QVLINKDB_BLOCKS_ONLY(T)                                                                    \
    template <> UtilsAllocator<T>::UtilsAllocator(UtilsAllocator const &) = delete;                \
    template <> UtilsAllocator<T> &UtilsAllocator<T>::operator=(UtilsAllocator const &) = delete;  \
    template <> void UtilsAllocator<T>::Copy(UtilsAllocator const &) = delete;                     \
    template <> void UtilsAllocator<T>::CopyBlock(UtilsAllocator const &) = delete;                \
    template <> void UtilsAllocator<T>::CopyOwnedMatrix(UtilsAllocator const &) = delete;          \
    template <>                                                                                    \
    void UtilsAllocator<T>::CopyMatrix(T **, T *const *, unsigned long, unsigned long) = delete;   \
    template <> unsigned long UtilsAllocator<T>::GetHeight() const = delete;                       \
    template <> void UtilsAllocator<T>::ReAllocateMatrix(unsigned long, unsigned long) = delete;   \
    template <> T **UtilsAllocator<T>::ReAllocateMatrix(T **, unsigned long, unsigned long,        \
                                                        unsigned long, unsigned long) = delete
QVLINKDB_BLOCKS_ONLY(unsigned short);
QVLINKDB_BLOCKS_ONLY(_TOKEN_GROUPS);
#undef QVLINKDB_BLOCKS_ONLY

extern template class UtilsAllocator<char>;
extern template class UtilsAllocator<unsigned char>;
extern template class UtilsAllocator<unsigned short>;
extern template class UtilsAllocator<int>;
extern template class UtilsAllocator<_TOKEN_GROUPS>;

} // namespace UTILS

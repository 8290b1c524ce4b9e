// Bodies of MemObject<T>.
#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <type_traits>

#include "../UtilsVector.h"

namespace UTILS {

template <typename T> MemObject<T>::MemObject(unsigned long size)
    : initialSize(size ? size : 1), dataSize(0), growFlag(1), storage(nullptr) {
    auto fresh = std::make_unique<UtilsAllocator<T>>(initialSize);
    storage = fresh.get();
    Zero();
    static_cast<void>(fresh.release());
}

template <typename T> MemObject<T>::~MemObject() { delete storage; }

template <typename T> int MemObject<T>::isupper(unsigned short const &value) const {
    return letters::IsUpper(value);
}
template <typename T> int MemObject<T>::isupper(char const &value) const {
    return letters::IsUpper(value);
}
template <typename T> int MemObject<T>::islower(unsigned short const &value) const {
    return letters::IsLower(value);
}
template <typename T> int MemObject<T>::islower(char const &value) const {
    return letters::IsLower(value);
}
template <typename T> unsigned short MemObject<T>::utoupper(unsigned short const &value) const {
    return letters::ToUpper(value);
}
template <typename T> char MemObject<T>::utoupper(char const &value) const {
    return letters::ToUpper(value);
}
template <typename T> unsigned short MemObject<T>::utolower(unsigned short const &value) const {
    return letters::ToLower(value);
}
template <typename T> char MemObject<T>::utolower(char const &value) const {
    return letters::ToLower(value);
}

template <typename T> const char *MemObject<T>::derived_class() const {
    return ClassName(typeid(*this));
}

template <typename T> T *MemObject<T>::Retrieve() const { return storage->GetMemoryBlock(); }

template <typename T> MemObject<T>::operator T const *() const { return storage->GetMemoryBlock(); }

template <typename T> unsigned long MemObject<T>::RetrieveSize() const { return dataSize; }

template <typename T> MemObject<T> &MemObject<T>::operator=(MemObject const &other) {
    if (this == &other) {
        return *this;
    }
    this->UBaseCopy(other);
    if (other.dataSize == 0) {
        storage->ReAllocateMemory(other.initialSize);
        Zero();
    } else {
        ScopedLock const held(syncLock);
        *storage = *other.storage;
    }
    initialSize = other.initialSize;
    dataSize = other.dataSize;
    growFlag = other.growFlag;
    NullTerminate();
    return *this;
}

// Gives the block room for exactly `size` elements and the terminator.
template <typename T> void MemObject<T>::Resize(unsigned long size) {
    storage->ReAllocateMemory(this->charSize + size);
    dataSize = size;
}

// Makes the run of elements that lie elsewhere.
template <typename T> void MemObject<T>::Take(T const *elements, unsigned long size) {
    Resize(size);
    storage->CopyMem(elements, size);
    NullTerminate();
}

template <typename T> void MemObject<T>::NullTerminate() {
    if (dataSize < storage->GetLength()) {
        UtilsBase<T>::NullTerminate(Retrieve() + dataSize);
    }
}

template <typename T> void MemObject<T>::Append(T const *data, unsigned long size) {
    if (!data) {
        return;
    }
    size = size ? size : this->GetSizeOfData(data, nullptr);
    // The data may lie in this very block, which goes.
    std::less<> const below;
    bool const own = !below(data, Retrieve()) && below(data, Retrieve() + storage->GetLength());
    std::unique_ptr<T[]> const kept(own && size ? storage->AllocateMemory(nullptr, size) : nullptr);
    std::copy(data, data + (kept ? size : 0), kept.get());
    unsigned long const oldSize = dataSize;
    ScopedLock const held(syncLock);
    Resize(oldSize + size);
    storage->CopyMem(Retrieve() + oldSize, kept ? kept.get() : data, size);
    NullTerminate();
}

template <typename T> void MemObject<T>::Insert(T const *data, unsigned long position,
                                                int overwrite, unsigned long size) {
    if (!data) {
        return;
    }
    size = size ? size : this->GetSizeOfData(data, nullptr);
    unsigned long const newSize = dataSize + (overwrite > 0 ? 0 : size);
    T const *const block = Retrieve();
    std::unique_ptr<T[]> const run(newSize ? storage->AllocateMemory(nullptr, newSize) : nullptr);
    unsigned long next = 0; // the old element that comes next
    unsigned long i = 0;
    for (; i < newSize && next < position && next < dataSize; ++i) {
        run[i] = block[next++];
    }
    if (next == position) {
        for (unsigned long k = 0; k < size && i < newSize; ++k) {
            run[i++] = data[k];
        }
        next += overwrite > 0 ? size : 0;
    }
    for (; i < newSize; ++i) {
        run[i] = next < dataSize ? (*storage)[next] : T();
        ++next;
    }
    ScopedLock const held(syncLock);
    Take(run.get(), newSize);
}

template <typename T> void MemObject<T>::Truncate(unsigned long n) {
    if (n > dataSize) {
        ThrowOutOfRange(n, dataSize, SOURCE, __LINE__);
    }
    if (n == dataSize) {
        Empty();
        return;
    }
    ScopedLock const held(syncLock);
    Resize(dataSize - n);
    NullTerminate();
}

template <typename T>
void MemObject<T>::TruncateAtPosition(unsigned long n, unsigned long position) {
    if (n > dataSize) {
        ThrowOutOfRange(n, dataSize, SOURCE, __LINE__);
    }
    if (n == dataSize) {
        Empty();
        return;
    }
    unsigned long const newSize = dataSize - n;
    T const *const block = Retrieve();
    std::unique_ptr<T[]> const run(storage->AllocateMemory(nullptr, newSize));
    unsigned long const front = (std::min)(position, newSize);
    std::copy(block, block + front, run.get());
    std::copy(block + front + n, block + dataSize, run.get() + front);
    ScopedLock const held(syncLock);
    Take(run.get(), newSize);
}

template <typename T> void MemObject<T>::Empty() {
    storage->ReAllocateMemory(initialSize);
    dataSize = 0;
    Zero();
}

// Objects of class types are alive and are left alone.
template <typename T> void MemObject<T>::Zero() {
    if constexpr (std::is_trivially_copyable_v<T>) {
        storage->Zero();
    }
}

template <typename T> void MemObject<T>::Reverse() {
    if (dataSize != 0 || this->caseCapable == 0) {
        this->reverse(Retrieve(), Retrieve() + dataSize);
    }
}

extern template class MemObject<char>;
extern template class MemObject<unsigned char>;
extern template class UtilsAllocator<MemObject<char>>;
extern template class UtilsAllocator<MemObject<unsigned char>>;

} // namespace UTILS

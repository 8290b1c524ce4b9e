// Memory for large things: from LargeLimit on it comes from the system by the page, which
// may then map it in large pages; below that from malloc.
#pragma once

#include "platform/winapi.h"

#include <cstddef>
#include <cstdlib>
#include <new>

constexpr std::size_t LargeLimit = std::size_t{2} << 20;

// Null without memory.
inline void *AllocateMemory(std::size_t bytes) {
    return bytes < LargeLimit
               ? std::malloc(bytes)
               : win::VirtualAlloc(nullptr, bytes, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
}

inline void FreeMemory(void *memory, std::size_t bytes) {
    if (bytes < LargeLimit)
        std::free(memory);
    else
        win::VirtualFree(memory, 0, MEM_RELEASE);
}

// The same for the standard containers.
template <class T> struct LargeAllocator {
    using value_type = T;

    LargeAllocator() = default;
    template <class U> LargeAllocator(LargeAllocator<U> const &) {}

    T *allocate(std::size_t count) {
        void *const memory =
            count > SIZE_MAX / sizeof(T) ? nullptr : AllocateMemory(count * sizeof(T));
        if (!memory)
            throw std::bad_alloc();
        return static_cast<T *>(memory);
    }
    void deallocate(T *memory, std::size_t count) { FreeMemory(memory, count * sizeof(T)); }

    template <class U> bool operator==(LargeAllocator<U> const &) const { return true; }
    template <class U> bool operator!=(LargeAllocator<U> const &) const { return false; }
};

// RecordHeap: the memory of one graph's records and their parts.
//
// A graph holds millions of blocks of a few dozen bytes that die together. They are
// cut from slabs and go back to a free list of their size; blocks above SmallLimit
// come from malloc one by one, slabs and blocks of LargeLimit and more from the system. Whatever is
// still held goes with the heap.
//
// Built with QVLINKDB_PLAIN_HEAP=1 every block is one of malloc's, so that memory
// checkers see each of them. No locks: the database's mutex guards it.
#pragma once

#include <cstddef>
#include <cstdint>

class RecordHeap {
public:
    static constexpr bool Plain = QVLINKDB_PLAIN_HEAP;
    static constexpr std::size_t CacheLine = 64; // blocks of this multiple start at one

    RecordHeap() = default;
    ~RecordHeap();
    RecordHeap(RecordHeap const &) = delete;
    RecordHeap &operator=(RecordHeap const &) = delete;

    // A block aligned for any record, or null without memory. Not cleared.
    void *Allocate(std::size_t bytes) noexcept;
    // Gives back a block (or null) together with the size it was asked for with.
    void Free(void *block, std::size_t bytes) noexcept;

    template <class T> T *AllocateArray(std::size_t count) noexcept {
        return count > SIZE_MAX / sizeof(T) ? nullptr
                                            : static_cast<T *>(Allocate(count * sizeof(T)));
    }
    template <class T> void FreeArray(T *array, std::size_t count) noexcept {
        Free(array, count * sizeof(T));
    }

private:
    struct FreeBlock {
        FreeBlock *next;
    };
    struct Slab {
        Slab *next;
        std::size_t size;
    };
    struct LargeBlock { // stands before each block of malloc's
        LargeBlock *next;
        LargeBlock *previous;
        std::size_t size;
        std::size_t unused; // keeps the block at a multiple of 16
    };

    static constexpr std::size_t Step = 8;
    static constexpr std::size_t SmallLimit = 8192;
    static constexpr std::size_t FirstSlab = 16384;
    static constexpr std::size_t LargestSlab = 1u << 24;

    static bool IsSmall(std::size_t bytes);
    void *AllocateLarge(std::size_t bytes) noexcept;
    void FreeLarge(void *memory) noexcept;
    bool AddSlab() noexcept;

    FreeBlock *m_free[SmallLimit / Step + 1] = {}; // by size in steps
    char *m_next = nullptr;                        // unused rest of the newest slab
    char *m_end = nullptr;
    std::size_t m_slabSize = FirstSlab;
    Slab *m_slabs = nullptr;
    LargeBlock *m_large = nullptr;
};

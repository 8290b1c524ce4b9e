#include "allocations.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <new>

extern "C" {
void *__real_malloc(std::size_t size);
void *__real_calloc(std::size_t count, std::size_t size);
void *__real_realloc(void *block, std::size_t size);
void __real_free(void *block);
}

namespace {

struct Block {
    void *address;
    std::size_t size;
};

constexpr std::size_t capacity = std::size_t{1} << 20; // a power of two

// Addresses with their sizes: an open table with linear probing, which allocates nothing.
class BlockTable {
public:
    void Put(void *address, std::size_t size) {
        if (m_count > capacity / 2)
            std::abort();
        std::size_t slot = Home(address);
        while (m_blocks[slot].address)
            slot = Next(slot);
        m_blocks[slot] = {address, size};
        ++m_count;
    }
    // The size of a block taken out, or -1 if it isn't there.
    std::size_t Take(void *address) {
        std::size_t slot = Home(address);
        while (m_blocks[slot].address != address) {
            if (!m_blocks[slot].address)
                return static_cast<std::size_t>(-1);
            slot = Next(slot);
        }
        std::size_t const size = m_blocks[slot].size;
        Close(slot);
        --m_count;
        return size;
    }
    std::size_t Count() const { return m_count; }

private:
    static Block m_blocks[capacity];
    std::size_t m_count = 0;

    static std::size_t Next(std::size_t slot) { return (slot + 1) & (capacity - 1); }
    static std::size_t Home(void *address) {
        return (reinterpret_cast<std::uintptr_t>(address) >> 4) * 0x9e3779b97f4a7c15u >> 44;
    }
    // Moves later blocks of the probe run down over an emptied slot.
    void Close(std::size_t hole) {
        for (std::size_t slot = Next(hole); m_blocks[slot].address; slot = Next(slot)) {
            std::size_t const distance = (slot - Home(m_blocks[slot].address)) & (capacity - 1);
            if (distance >= ((slot - hole) & (capacity - 1))) {
                m_blocks[hole] = m_blocks[slot];
                hole = slot;
            }
        }
        m_blocks[hole] = {nullptr, 0};
    }
};

Block BlockTable::m_blocks[capacity];

BlockTable table;

bool watching = false;
AllocationWatch::Fail failing;
std::uint64_t failNumber, asked;
std::size_t largest, held, peak;
bool failed;

bool MayAllocate(std::size_t size) {
    if (!watching)
        return true;
    ++asked;
    largest = std::max(largest, size);
    bool const fail = (failing == AllocationWatch::Fail::One && asked == failNumber) ||
                      (failing == AllocationWatch::Fail::Onwards && asked >= failNumber);
    failed = failed || fail;
    return !fail;
}

void *Note(void *block, std::size_t size) {
    if (watching && block) {
        table.Put(block, size);
        held += size;
        peak = std::max(peak, held);
    }
    return block;
}

void Forget(void *block) {
    if (!block)
        return;
    std::size_t const size = table.Take(block);
    if (size != static_cast<std::size_t>(-1))
        held -= std::min(held, size);
}

void *Allocate(std::size_t size) {
    if (!MayAllocate(size)) {
        errno = ENOMEM;
        return nullptr;
    }
    return Note(__real_malloc(size), size);
}

void *AllocateOrThrow(std::size_t size) {
    if (void *const block = Allocate(size ? size : 1))
        return block;
    throw std::bad_alloc();
}

} // namespace

AllocationWatch::AllocationWatch(Fail fail, std::uint64_t number) {
    failing = fail;
    failNumber = number;
    asked = 0;
    largest = held = peak = 0;
    failed = false;
    watching = true;
}

AllocationWatch::~AllocationWatch() { watching = false; }

std::uint64_t AllocationWatch::Count() const { return asked; }
bool AllocationWatch::Failed() const { return failed; }
std::size_t AllocationWatch::Largest() const { return largest; }
std::size_t AllocationWatch::PeakBytes() const { return peak; }

std::size_t AllocationWatch::LiveBlocks() { return table.Count(); }

extern "C" {

void *__wrap_malloc(std::size_t size) { return Allocate(size); }

void *__wrap_calloc(std::size_t count, std::size_t size) {
    if (!MayAllocate(count * size)) {
        errno = ENOMEM;
        return nullptr;
    }
    return Note(__real_calloc(count, size), count * size);
}

void *__wrap_realloc(void *block, std::size_t size) {
    if (!MayAllocate(size)) {
        errno = ENOMEM;
        return nullptr;
    }
    Forget(block);
    return Note(__real_realloc(block, size), size);
}

void __wrap_free(void *block) {
    Forget(block);
    __real_free(block);
}
}

void *operator new(std::size_t size) { return AllocateOrThrow(size); }
void *operator new[](std::size_t size) { return AllocateOrThrow(size); }
void *operator new(std::size_t size, std::nothrow_t const &) noexcept {
    return Allocate(size ? size : 1);
}
void *operator new[](std::size_t size, std::nothrow_t const &) noexcept {
    return Allocate(size ? size : 1);
}
void operator delete(void *block) noexcept { __wrap_free(block); }
void operator delete[](void *block) noexcept { __wrap_free(block); }
void operator delete(void *block, std::size_t) noexcept { __wrap_free(block); }
void operator delete[](void *block, std::size_t) noexcept { __wrap_free(block); }
void operator delete(void *block, std::nothrow_t const &) noexcept { __wrap_free(block); }
void operator delete[](void *block, std::nothrow_t const &) noexcept { __wrap_free(block); }

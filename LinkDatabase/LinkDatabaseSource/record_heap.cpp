#include "record_heap.h"

#include "large_memory.h"

#include <algorithm>
#include <cstdlib>
#include <new>

RecordHeap::~RecordHeap() {
    while (Slab *slab = m_slabs) {
        m_slabs = slab->next;
        FreeMemory(slab, slab->size);
    }
    while (LargeBlock *block = m_large) {
        m_large = block->next;
        FreeMemory(block, block->size);
    }
}

bool RecordHeap::IsSmall(std::size_t bytes) { return !Plain && bytes <= SmallLimit; }

void *RecordHeap::Allocate(std::size_t bytes) noexcept {
    if (!IsSmall(bytes))
        return AllocateLarge(bytes);
    std::size_t const steps = (std::max<std::size_t>(bytes, 1) + Step - 1) / Step;
    if (FreeBlock *block = m_free[steps]) {
        m_free[steps] = block->next;
        return block;
    }
    std::size_t const size = steps * Step;
    if (static_cast<std::size_t>(m_end - m_next) < size && !AddSlab())
        return nullptr;
    char *const block = m_next;
    m_next += size;
    return block;
}

void RecordHeap::Free(void *block, std::size_t bytes) noexcept {
    if (!block)
        return;
    if (!IsSmall(bytes)) {
        FreeLarge(block);
        return;
    }
    std::size_t const steps = (std::max<std::size_t>(bytes, 1) + Step - 1) / Step;
    m_free[steps] = new (block) FreeBlock{m_free[steps]};
}

// What is left of the former slab stays unused: less than one small block.
bool RecordHeap::AddSlab() noexcept {
    auto *const slab = static_cast<Slab *>(AllocateMemory(m_slabSize));
    if (!slab)
        return false;
    slab->next = m_slabs;
    slab->size = m_slabSize;
    m_slabs = slab;
    auto const first = reinterpret_cast<std::uintptr_t>(slab + 1);
    m_next = reinterpret_cast<char *>(slab + 1) + (CacheLine - first % CacheLine) % CacheLine;
    m_end = reinterpret_cast<char *>(slab) + m_slabSize;
    m_slabSize = std::min(2 * m_slabSize, LargestSlab);
    return true;
}

void *RecordHeap::AllocateLarge(std::size_t bytes) noexcept {
    if (bytes > SIZE_MAX - sizeof(LargeBlock))
        return nullptr;
    auto *const block = static_cast<LargeBlock *>(AllocateMemory(sizeof(LargeBlock) + bytes));
    if (!block)
        return nullptr;
    block->size = sizeof(LargeBlock) + bytes;
    block->next = m_large;
    block->previous = nullptr;
    if (m_large)
        m_large->previous = block;
    m_large = block;
    return block + 1;
}

void RecordHeap::FreeLarge(void *memory) noexcept {
    LargeBlock *const block = static_cast<LargeBlock *>(memory) - 1;
    (block->previous ? block->previous->next : m_large) = block->next;
    if (block->next)
        block->next->previous = block->previous;
    FreeMemory(block, block->size);
}

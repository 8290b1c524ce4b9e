// SearchPool: the records behind search handles that no list proves to be live.
//
// The memory of a record stays the pool's after its search was closed, so that a handle
// can be tested at any time: one that was never given out, or was closed and not given
// out again since, is told from a live one. Safe to use from several threads.
#pragma once

#include "linkdb.h"

#include <atomic>
#include <cstddef>
#include <new>

template <class Record> class SearchPool {
public:
    SearchPool() = default;
    ~SearchPool() {
        for (auto &slab : m_slabs)
            delete[] slab.load();
    }
    SearchPool(SearchPool const &) = delete;
    SearchPool &operator=(SearchPool const &) = delete;

    // A record with all fields zero, or null without memory.
    Record *Open() {
        if (!m_free && !AddSlab())
            return nullptr;
        Slot *const slot = m_free;
        m_free = slot->nextFree;
        slot->record = Record{};
        slot->live.store(true, std::memory_order_release);
        return &slot->record;
    }

    // Ends a search; does nothing with a handle that isn't live. True if it was.
    bool Close(SearchHandle handle) {
        Slot *const slot = SlotOf(handle);
        if (!slot || !slot->live.exchange(false))
            return false;
        slot->nextFree = m_free;
        m_free = slot;
        return true;
    }

    // The record behind a live handle, or null.
    Record *Get(SearchHandle handle) const {
        Slot *const slot = SlotOf(handle);
        return slot && slot->live.load(std::memory_order_acquire) ? &slot->record : nullptr;
    }

    static SearchHandle Handle(Record *record) { return reinterpret_cast<SearchHandle>(record); }

private:
    struct Slot {
        Record record; // first: the handle is its address and the slot's
        Slot *nextFree;
        std::atomic<bool> live{false};
    };

    static constexpr std::size_t FirstSlab = 64; // slots; each further slab doubles
    static constexpr std::size_t MostSlabs = 24;

    Slot *SlotOf(SearchHandle handle) const {
        for (std::size_t i = 0; i < MostSlabs; ++i) {
            Slot *const slab = m_slabs[i].load(std::memory_order_acquire);
            if (!slab)
                return nullptr;
            auto const first = reinterpret_cast<SearchHandle>(slab);
            if (handle >= first && handle - first < (FirstSlab << i) * sizeof(Slot))
                return (handle - first) % sizeof(Slot) ? nullptr
                                                       : slab + (handle - first) / sizeof(Slot);
        }
        return nullptr;
    }

    bool AddSlab() {
        std::size_t used = 0;
        while (used < MostSlabs && m_slabs[used].load(std::memory_order_relaxed))
            ++used;
        if (used == MostSlabs)
            return false;
        std::size_t const count = FirstSlab << used;
        auto *const slab = new (std::nothrow) Slot[count];
        if (!slab)
            return false;
        for (std::size_t i = count; i-- > 0;) {
            slab[i].nextFree = m_free;
            m_free = &slab[i];
        }
        m_slabs[used].store(slab, std::memory_order_release);
        return true;
    }

    Slot *m_free = nullptr;
    std::atomic<Slot *> m_slabs[MostSlabs] = {};
};

// IdMap: records by their 32-bit id, in ascending order, and the memory they lie in.
//
// Ids are handed out one after the other, so records lie in pages that are indexed by
// the id: a lookup costs the one access to the record itself, and records made together
// lie together. An id too far out for that, as a damaged file may hold, or one that is
// taken, gets memory of its own and an entry in an ordered map. Pages never take more
// than two slots an object and four a link, but for the first few.
//
// A record's address stays the same as long as it lives. No locks.
#pragma once

#include "record_heap.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <new>
#include <vector>

template <class Record> class IdMap {
public:
    IdMap() = default;
    IdMap(IdMap const &) = delete;
    IdMap &operator=(IdMap const &) = delete;

    Record *Find(std::uint64_t id) const {
        if (Record *slot = Slot(id); slot && Holds(*slot, id))
            return slot;
        return m_far.empty() || id > UINT32_MAX ? nullptr : FindFar(id);
    }

    // Has the record fetched from memory, if it lies in its slot, while other work goes on.
    void Prefetch(std::uint64_t id) const {
        if (Record const *slot = Slot(id))
            __builtin_prefetch(slot);
    }

    // The record with the lowest id that is `id` or above, or null.
    Record *AtOrAfter(std::uint64_t id) const {
        Record *const inPages = NearAtOrAfter(id);
        if (m_far.empty() || id > UINT32_MAX)
            return inPages;
        auto const apart = m_far.lower_bound(static_cast<std::uint32_t>(id));
        if (apart == m_far.end() || (inPages && inPages->dwID < apart->first))
            return inPages;
        return apart->second;
    }

    // Calls visit(record) for each in ascending order of id.
    template <class Visit> void ForEach(Visit &&visit) const {
        for (Record *record = AtOrAfter(0); record;
             record = AtOrAfter(std::uint64_t{record->dwID} + 1))
            visit(*record);
    }

    // Memory for a record of this id, which is set and all else zero; null without memory.
    // It isn't in the map yet.
    Record *Make(std::uint32_t id) {
        Record *record = id && OpenPage(id >> PageShift) ? Slot(id) : nullptr;
        if (record && record->dwID)
            record = nullptr; // taken
        if (record)
            ++m_used[id >> PageShift];
        else if (void *memory = m_heap.Allocate(sizeof(Record)))
            record = new (memory) Record{};
        if (record) {
            record->dwID = id;
            SetCurrent(*record, false, 0);
        }
        return record;
    }

    // Enters a record that Make gave and returns the one that had its id before, or null.
    // Throws std::bad_alloc and is then unchanged.
    Record *Enter(Record *record) {
        Record *former = Find(record->dwID);
        if (former == record)
            former = nullptr; // in its slot, and of a kind that can't say it isn't there yet
        if (Slot(record->dwID) != record)
            m_far[record->dwID] = record;
        else if (former)
            m_far.erase(record->dwID);
        if (former)
            SetCurrent(*former, false, 0);
        SetCurrent(*record, true, 0);
        m_size += former == nullptr;
        return former;
    }

    // Takes a record out of the map; its memory stays until Free.
    void Leave(Record &record) {
        if (Slot(record.dwID) != &record)
            m_far.erase(record.dwID);
        SetCurrent(record, false, 0);
        --m_size;
    }

    // Gives back the memory of a record that isn't in the map.
    void Free(Record *record) {
        std::uint32_t const page = record->dwID >> PageShift;
        if (Slot(record->dwID) != record) {
            m_heap.Free(record, sizeof *record);
        } else if (--m_used[page] == 0) {
            m_heap.Free(m_pages[page], PageBytes);
            m_pages[page] = nullptr;
            --m_pageCount;
        } else {
            *record = Record{};
        }
    }

    std::size_t Size() const { return m_size; }
    bool Empty() const { return m_size == 0; }

private:
    static constexpr unsigned PageShift = RecordHeap::Plain ? 0 : sizeof(Record) > 64 ? 6 : 9;
    static constexpr std::size_t PageSlots = std::size_t{1} << PageShift;
    static constexpr std::size_t PageBytes = PageSlots * sizeof(Record);
    static constexpr std::size_t SlotsPerRecord = sizeof(Record) > 64 ? 2 : 4;
    static constexpr std::size_t SlotsAtLeast = 4096;

    // Records that can be in memory without being in the map say so themselves.
    template <class T> static auto Current(T const &record, int) -> decltype(bool(record.current)) {
        return record.current;
    }
    template <class T> static bool Current(T const &, long) { return true; }
    template <class T> static auto SetCurrent(T &record, bool current, int)
        -> decltype(void(record.current)) {
        record.current = current;
    }
    template <class T> static void SetCurrent(T &, bool, long) {}

    static bool Holds(Record const &slot, std::uint64_t id) {
        return slot.dwID == id && id && Current(slot, 0);
    }

    Record *Slot(std::uint64_t id) const {
        std::uint64_t const page = id >> PageShift;
        if (page >= m_pages.size() || !m_pages[static_cast<std::size_t>(page)])
            return nullptr;
        return m_pages[static_cast<std::size_t>(page)] + (id & (PageSlots - 1));
    }

    Record *FindFar(std::uint64_t id) const {
        auto const at = m_far.find(static_cast<std::uint32_t>(id));
        return at == m_far.end() ? nullptr : at->second;
    }

    Record *NearAtOrAfter(std::uint64_t id) const {
        for (std::uint64_t page = id >> PageShift; page < m_pages.size(); ++page) {
            std::uint64_t const end = (page + 1) << PageShift;
            if (m_pages[static_cast<std::size_t>(page)])
                for (; id < end; ++id)
                    if (Record *slot = Slot(id); Holds(*slot, id))
                        return slot;
            id = end;
        }
        return nullptr;
    }

    // Whether the page is there, made now if the records are dense enough for it.
    bool OpenPage(std::size_t page) {
        if (page < m_pages.size() && m_pages[page])
            return true;
        if (page >= SlotsPerRecord * m_size + SlotsAtLeast / PageSlots ||
            m_pageCount * PageSlots >= SlotsPerRecord * m_size + SlotsAtLeast)
            return false;
        try {
            if (page >= m_pages.size()) {
                m_used.resize(page + 1);
                m_pages.resize(page + 1);
            }
        } catch (std::bad_alloc const &) {
            return false;
        }
        void *const memory = m_heap.Allocate(PageBytes);
        if (!memory)
            return false;
        m_pages[page] = static_cast<Record *>(memory);
        for (std::size_t i = 0; i < PageSlots; ++i)
            new (m_pages[page] + i) Record{};
        ++m_pageCount;
        return true;
    }

    RecordHeap m_heap;
    std::vector<Record *> m_pages;           // by id in pages; null where there is none
    std::vector<std::uint32_t> m_used;       // slots given out of each page
    std::map<std::uint32_t, Record *> m_far; // records that don't lie in their slot
    std::size_t m_pageCount = 0;
    std::size_t m_size = 0;
};

#include "platform/posix/handles.h"

#include "platform/winapi.h"

#include <mutex>
#include <new>
#include <unistd.h>

namespace platform {
namespace {

// Slab k holds firstSlab << k slots.
constexpr unsigned firstSlabBits = 6;
constexpr unsigned slabCount = indexBits - firstSlabBits;

std::atomic<Slot *> slabs[slabCount];
// Guards what follows; taken to open and to close a handle, never to use one.
std::mutex freeMutex;
Slot *firstFree = nullptr;
unsigned slabsMade = 0;

constexpr std::uint64_t SlabSize(unsigned slab) {
    return std::uint64_t{1} << (firstSlabBits + slab);
}
constexpr std::uint64_t SlabStart(unsigned slab) { return SlabSize(slab) - SlabSize(0); }

bool MakeSlab() {
    if (slabsMade == slabCount)
        return false;
    auto *const slots = new (std::nothrow) Slot[SlabSize(slabsMade)];
    if (!slots)
        return false;
    for (std::uint64_t i = SlabSize(slabsMade); i-- > 0;) {
        slots[i].index = SlabStart(slabsMade) + i;
        slots[i].state.store(Identity(Kind::Free, 1), std::memory_order_relaxed);
        slots[i].nextFree = firstFree;
        firstFree = &slots[i];
    }
    slabs[slabsMade].store(slots, std::memory_order_release);
    ++slabsMade;
    return true;
}

void CloseLeftOpen(Slot &slot, std::uint64_t) {
    if (KindOf(slot.state.load(std::memory_order_relaxed)) == Kind::File)
        close(slot.descriptor);
    else if (KindOf(slot.state.load(std::memory_order_relaxed)) == Kind::Search)
        DropSearch(slot);
    else if (KindOf(slot.state.load(std::memory_order_relaxed)) == Kind::Key)
        DropKey(slot);
}

void Finish(Slot *slot, std::uint64_t generation) {
    if (slot->key)
        DropKey(*slot);
    else
        close(slot->descriptor);
    slot->state.store(Identity(Kind::Free, generation), std::memory_order_release);
    GiveBack(slot);
}

void Leave(Slot *slot) {
    std::uint64_t const left =
        slot->state.fetch_sub(countOne, std::memory_order_acq_rel) - countOne;
    if (KindOf(left) == Kind::Draining && (left & countMask) == 0)
        Finish(slot, GenerationOf(left));
}

// Closes what calls may be under way on; the last of them does the rest.
bool CloseUsed(Slot *slot, Kind kind, std::uint64_t generation) {
    std::uint64_t const identity = Identity(kind, generation);
    std::uint64_t state = slot->state.load(std::memory_order_relaxed);
    std::uint64_t next = 0;
    do {
        if ((state & identityMask) != identity)
            return false;
        next = Identity(Kind::Draining, generation + 1) | (state & countMask);
    } while (!slot->state.compare_exchange_weak(state, next, std::memory_order_acq_rel));
    if ((next & countMask) == 0)
        Finish(slot, generation + 1);
    return true;
}

} // namespace

Slot *FindSlot(HANDLE handle) {
    auto const value = reinterpret_cast<std::uintptr_t>(handle);
    std::uint64_t const index = (value >> 2) & ((std::uint64_t{1} << indexBits) - 1);
    std::uint64_t const shifted = index + SlabSize(0);
    unsigned const slab = 63u - static_cast<unsigned>(__builtin_clzll(shifted)) - firstSlabBits;
    if ((value & 3) != 0 || (value >> (2 + indexBits)) > lastGeneration || slab >= slabCount)
        return nullptr;
    Slot *const slots = slabs[slab].load(std::memory_order_acquire);
    return slots ? slots + (shifted - SlabSize(slab)) : nullptr;
}

Slot *TakeSlot() {
    std::lock_guard<std::mutex> const lock(freeMutex);
    if (!firstFree && !MakeSlab())
        return nullptr;
    Slot *const slot = firstFree;
    firstFree = slot->nextFree;
    return slot;
}

HANDLE Publish(Slot *slot, Kind kind, std::uint64_t state) {
    std::uint64_t const generation = GenerationOf(slot->state.load(std::memory_order_relaxed));
    slot->state.store(Identity(kind, generation) | state, std::memory_order_release);
    return reinterpret_cast<HANDLE>(
        static_cast<std::uintptr_t>((generation << (2 + indexBits)) | (slot->index << 2)));
}

void GiveBack(Slot *slot) {
    // A slot that has had all its generations stays out of use: no handle comes twice.
    if (GenerationOf(slot->state.load(std::memory_order_relaxed)) == lastGeneration)
        return;
    std::lock_guard<std::mutex> const lock(freeMutex);
    slot->nextFree = firstFree;
    firstFree = slot;
}

void ForEachSlot(void (*visit)(Slot &, std::uint64_t), std::uint64_t argument) {
    for (unsigned slab = 0; slab < slabCount; ++slab) {
        Slot *const slots = slabs[slab].load(std::memory_order_acquire);
        for (std::uint64_t i = 0; slots && i < SlabSize(slab); ++i)
            visit(slots[i], argument);
    }
}

void ReleaseHandles() {
    std::lock_guard<std::mutex> const lock(freeMutex);
    ForEachSlot(CloseLeftOpen, 0);
    for (auto &slab : slabs)
        delete[] slab.exchange(nullptr);
    firstFree = nullptr;
    slabsMade = 0;
}

bool CloseFile(Slot *slot, std::uint64_t generation) {
    return CloseUsed(slot, Kind::File, generation);
}

bool CloseKey(Slot *slot, std::uint64_t generation) {
    return CloseUsed(slot, Kind::Key, generation);
}

bool IsOpen(HANDLE handle) {
    Slot const *const slot = FindSlot(handle);
    std::uint64_t const state = slot ? slot->state.load(std::memory_order_acquire) : 0;
    return KindOf(state) != Kind::Free && KindOf(state) != Kind::Draining &&
           GenerationOf(state) == GenerationOf(handle);
}

SlotUse::SlotUse(HANDLE handle, Kind kind) : m_slot(FindSlot(handle)) {
    std::uint64_t const identity = Identity(kind, GenerationOf(handle));
    std::uint64_t state = m_slot ? m_slot->state.load(std::memory_order_relaxed) : 0;
    do {
        if (!m_slot || (state & identityMask) != identity) {
            m_slot = nullptr;
            return;
        }
    } while (
        !m_slot->state.compare_exchange_weak(state, state + countOne, std::memory_order_acq_rel));
}

SlotUse::~SlotUse() {
    if (m_slot)
        Leave(m_slot);
}

FileUse::FileUse(HANDLE handle, DWORD access)
    : m_use(handle, Kind::File), m_granted(m_use && (m_use.Get()->access & access) == access) {
    if (!m_granted)
        win::SetLastError(m_use ? ERROR_ACCESS_DENIED : ERROR_INVALID_HANDLE);
}

} // namespace platform

namespace win::host {

BOOL CloseHandle(HANDLE handle) {
    // Closing the pseudo handles of the current process and thread does nothing, and that is
    // no error.
    if (handle == GetCurrentProcess() || handle == GetCurrentThread())
        return TRUE;
    platform::Slot *const slot = platform::FindSlot(handle);
    std::uint64_t const generation = platform::GenerationOf(handle);
    if (slot && (platform::CloseMutex(slot, generation) || platform::CloseFile(slot, generation) ||
                 platform::CloseToken(slot, generation) || platform::CloseKey(slot, generation)))
        return TRUE;
    SetLastError(ERROR_INVALID_HANDLE);
    return FALSE;
}

} // namespace win::host

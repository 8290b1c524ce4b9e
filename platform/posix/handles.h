// The table of handles.
//
// A handle names a slot and the generation of what lies in it, so that a handle that was
// closed, or never given out, is told from a good one without a lock: a slot's memory
// isn't given back while the library is loaded, and each closing ends a generation.
#pragma once

#include <atomic>
#include <cstdint>

#include "platform/wintypes.h"

namespace platform {

enum class Kind : std::uint64_t {
    Free,
    Mutex,
    File,
    Draining, // a file or key whose handle is closed while calls on it are under way
    Token,
    Search,
    Key
};

// One word tells all that may change while the handle is in use: from the low end the
// owner (18 bits: a mutex's owning thread), whether threads wait for the mutex, whether its
// owner died, the kind (4), the generation (18), and the count (22: how often the owner
// has a mutex, how many calls on a file or key are under way).
constexpr std::uint64_t ownerMask = (std::uint64_t{1} << 18) - 1;
constexpr std::uint64_t waitersBit = std::uint64_t{1} << 18;
constexpr std::uint64_t abandonedBit = std::uint64_t{1} << 19;
constexpr unsigned kindShift = 20;
constexpr std::uint64_t lastKind = 15;
constexpr unsigned generationShift = 24;
constexpr std::uint64_t lastGeneration = (std::uint64_t{1} << 18) - 1;
constexpr std::uint64_t identityMask =
    (lastKind << kindShift) | (lastGeneration << generationShift);
constexpr std::uint64_t countOne = std::uint64_t{1} << 42;
constexpr std::uint64_t countMask = ~(countOne - 1);

struct alignas(64) Slot {
    std::atomic<std::uint64_t> state{0};
    int descriptor = -1; // of a file
    DWORD access = 0;    // of a file: GENERIC_READ and GENERIC_WRITE as granted
    std::uint64_t index = 0;
    Slot *nextFree = nullptr;
    struct Search *search = nullptr;
    struct HeldKey *key = nullptr;
};

constexpr std::uint64_t Identity(Kind kind, std::uint64_t generation) {
    return (static_cast<std::uint64_t>(kind) << kindShift) | (generation << generationShift);
}

constexpr std::uint64_t GenerationOf(std::uint64_t state) {
    return (state >> generationShift) & lastGeneration;
}

constexpr Kind KindOf(std::uint64_t state) {
    return static_cast<Kind>((state >> kindShift) & lastKind);
}

// A handle's value: the index above two zero bits, and the generation above the index.
constexpr unsigned indexBits = 24;

inline std::uint64_t GenerationOf(HANDLE handle) {
    return reinterpret_cast<std::uintptr_t>(handle) >> (2 + indexBits);
}

// The slot that a handle may name, whatever lies in it, or null. No lock.
Slot *FindSlot(HANDLE handle);
// A slot for the caller to fill, or null without memory.
Slot *TakeSlot();
// Puts a filled slot into use; `state` holds the bits beside the identity.
HANDLE Publish(Slot *slot, Kind kind, std::uint64_t state);
// Gives back a slot whose state is Free.
void GiveBack(Slot *slot);
// Calls `visit` for every slot there is.
void ForEachSlot(void (*visit)(Slot &slot, std::uint64_t argument), std::uint64_t argument);
// Closes the files that were left open and frees the slots. For the time when the
// library is unloaded.
void ReleaseHandles();

// Each kind closes in its own way: false if the handle isn't of this kind or closed.
bool CloseMutex(Slot *slot, std::uint64_t generation);
bool CloseFile(Slot *slot, std::uint64_t generation);
bool CloseToken(Slot *slot, std::uint64_t generation);
bool CloseSearch(Slot *slot, std::uint64_t generation);
bool CloseKey(Slot *slot, std::uint64_t generation);
// Frees what a search holds, for the time when the library is unloaded.
void DropSearch(Slot &slot);

// Frees what a key holds, and leaves nothing in its place.
void DropKey(Slot &slot);
// Whether a handle is open, whatever it names.
bool IsOpen(HANDLE handle);

// Keeps a file or key open for the length of one call.
class SlotUse {
public:
    SlotUse(HANDLE handle, Kind kind);
    ~SlotUse();
    SlotUse(SlotUse const &) = delete;
    SlotUse &operator=(SlotUse const &) = delete;

    explicit operator bool() const { return m_slot != nullptr; }
    Slot *Get() const { return m_slot; }

private:
    Slot *m_slot;
};

class FileUse {
public:
    // Fails with ERROR_INVALID_HANDLE, or ERROR_ACCESS_DENIED if `access` wasn't granted.
    FileUse(HANDLE handle, DWORD access);

    explicit operator bool() const { return m_granted; }
    int Descriptor() const { return m_use.Get()->descriptor; }

private:
    SlotUse m_use;
    bool m_granted;
};

} // namespace platform

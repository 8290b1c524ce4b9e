#include "platform/posix/handles.h"
#include "platform/winapi.h"

#include "platform/posix/threads.h"

#include <cerrno>
#include <ctime>
#include <linux/futex.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace platform {
namespace {

constexpr std::uint64_t nobody = 0;
static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__,
              "the futex is the low half of a slot's word");

std::uint32_t *Futex(Slot &slot) { return reinterpret_cast<std::uint32_t *>(&slot.state); }

void Wake(Slot &slot, int threads) {
    syscall(SYS_futex, Futex(slot), FUTEX_WAKE_PRIVATE, threads, nullptr, nullptr, 0);
}

// A point in time to wait for; INFINITE never comes.
class Deadline {
public:
    explicit Deadline(DWORD milliseconds) : m_infinite(milliseconds == INFINITE) {
        if (!m_infinite)
            m_end = Now() + std::int64_t{milliseconds} * 1000000;
    }

    // Sleeps while the low half of the word is `seen`; false if the time was up before.
    bool Sleep(Slot &slot, std::uint64_t seen) const {
        timespec left{};
        if (!m_infinite) {
            std::int64_t const nanoseconds = m_end - Now();
            if (nanoseconds <= 0)
                return false;
            left = {nanoseconds / 1000000000, nanoseconds % 1000000000};
        }
        syscall(SYS_futex, Futex(slot), FUTEX_WAIT_PRIVATE, static_cast<std::uint32_t>(seen),
                m_infinite ? nullptr : &left, nullptr, 0);
        return true;
    }

private:
    static std::int64_t Now() {
        timespec now{};
        clock_gettime(CLOCK_MONOTONIC, &now);
        return std::int64_t{now.tv_sec} * 1000000000 + now.tv_nsec;
    }

    bool m_infinite;
    std::int64_t m_end = 0;
};

DWORD WaitFails(DWORD code) {
    win::SetLastError(code);
    return WAIT_FAILED;
}

// The wait when the mutex isn't simply free.
DWORD WaitForMutex(Slot &slot, std::uint64_t identity, std::uint64_t me, DWORD milliseconds) {
    Deadline const deadline(milliseconds);
    bool slept = false;
    std::uint64_t state = slot.state.load(std::memory_order_relaxed);
    while ((state & identityMask) == identity) {
        std::uint64_t const owner = state & ownerMask;
        if (owner == me) {
            if ((state & countMask) == countMask)
                return WaitFails(ERROR_MUTANT_LIMIT_EXCEEDED);
            if (slot.state.compare_exchange_weak(state, state + countOne))
                return WAIT_OBJECT_0;
        } else if (owner == nobody) {
            // Others may still sleep, so the next release has to wake one.
            std::uint64_t const taken = identity | countOne | me | (slept ? waitersBit : 0);
            if (slot.state.compare_exchange_weak(state, taken, std::memory_order_acquire))
                return state & abandonedBit ? WAIT_ABANDONED : WAIT_OBJECT_0;
        } else if (state & waitersBit ||
                   slot.state.compare_exchange_weak(state, state | waitersBit)) {
            if (!deadline.Sleep(slot, state | waitersBit))
                return WAIT_TIMEOUT;
            slept = true;
            state = slot.state.load(std::memory_order_relaxed);
        }
    }
    // The handle was closed. A waking may have been meant for a sleeper on what lies in
    // the slot now: hand it on.
    if (slept)
        Wake(slot, 1);
    return WaitFails(ERROR_INVALID_HANDLE);
}

void AbandonMutex(Slot &slot, std::uint64_t owner) {
    std::uint64_t state = slot.state.load(std::memory_order_relaxed);
    while (KindOf(state) == Kind::Mutex && (state & ownerMask) == owner) {
        std::uint64_t const left = (state & identityMask) | abandonedBit;
        if (!slot.state.compare_exchange_weak(state, left, std::memory_order_release))
            continue;
        if (state & waitersBit)
            Wake(slot, 1);
        return;
    }
}

} // namespace

void AbandonMutexesOf(std::uint64_t thread) { ForEachSlot(AbandonMutex, thread); }

bool CloseMutex(Slot *slot, std::uint64_t generation) {
    std::uint64_t const identity = Identity(Kind::Mutex, generation);
    std::uint64_t state = slot->state.load(std::memory_order_relaxed);
    do {
        if ((state & identityMask) != identity)
            return false;
    } while (!slot->state.compare_exchange_weak(state, Identity(Kind::Free, generation + 1),
                                                std::memory_order_acq_rel));
    if (state & waitersBit)
        Wake(*slot, 0x7fffffff);
    GiveBack(slot);
    return true;
}

} // namespace platform

namespace win::host {

HANDLE CreateMutexA(SECURITY_ATTRIBUTES *attributes, BOOL initiallyOwned, const char *name) {
    if (attributes || name) {
        SetLastError(ERROR_NOT_SUPPORTED);
        return nullptr;
    }
    std::uint64_t const owner = initiallyOwned ? platform::ThreadNumber() : platform::nobody;
    platform::Slot *const slot =
        initiallyOwned && owner == platform::nobody ? nullptr : platform::TakeSlot();
    if (!slot) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return nullptr;
    }
    SetLastError(ERROR_SUCCESS);
    return platform::Publish(slot, platform::Kind::Mutex,
                             initiallyOwned ? owner | platform::countOne : 0);
}

DWORD WaitForSingleObject(HANDLE handle, DWORD milliseconds) {
    platform::Slot *const slot = platform::FindSlot(handle);
    if (!slot)
        return platform::WaitFails(ERROR_INVALID_HANDLE);
    std::uint64_t const me = platform::ThreadNumber();
    if (me == platform::nobody)
        return platform::WaitFails(ERROR_NOT_ENOUGH_MEMORY);
    std::uint64_t const identity =
        platform::Identity(platform::Kind::Mutex, platform::GenerationOf(handle));
    std::uint64_t free = identity;
    if (slot->state.compare_exchange_strong(free, identity | platform::countOne | me,
                                            std::memory_order_acquire))
        return WAIT_OBJECT_0;
    return platform::WaitForMutex(*slot, identity, me, milliseconds);
}

BOOL ReleaseMutex(HANDLE handle) {
    platform::Slot *const slot = platform::FindSlot(handle);
    std::uint64_t const identity =
        platform::Identity(platform::Kind::Mutex, platform::GenerationOf(handle));
    std::uint64_t const me = platform::ThreadNumber();
    std::uint64_t state = slot ? slot->state.load(std::memory_order_relaxed) : 0;
    std::uint64_t next = 0;
    do {
        if (!slot || (state & platform::identityMask) != identity) {
            SetLastError(ERROR_INVALID_HANDLE);
            return FALSE;
        }
        if ((state & platform::ownerMask) != me || me == platform::nobody) {
            SetLastError(ERROR_NOT_OWNER);
            return FALSE;
        }
        bool const last = (state & platform::countMask) == platform::countOne;
        next = last ? identity : state - platform::countOne;
    } while (!slot->state.compare_exchange_weak(state, next, std::memory_order_release,
                                                std::memory_order_relaxed));
    if (next == identity && state & platform::waitersBit)
        platform::Wake(*slot, 1);
    return TRUE;
}

} // namespace win::host

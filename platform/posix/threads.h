// Small numbers for the threads that take mutexes, and what happens when one ends.
#pragma once

#include <cstdint>

namespace platform {

// The calling thread's number, from 1; 0 if there are more threads than numbers. A number
// is used again after its thread has ended; a forked child's thread keeps it.
std::uint64_t ThreadNumber();

// Marks the mutexes that a thread still owns as abandoned: the next owner gets
// WAIT_ABANDONED. Called when the thread ends.
void AbandonMutexesOf(std::uint64_t thread);

// Stops watching for the end of threads, before the library is unloaded.
void ReleaseThreads();

} // namespace platform

#include "platform/posix/threads.h"

#include "platform/posix/handles.h"

#include <mutex>
#include <pthread.h>

namespace platform {
namespace {

constexpr std::size_t wordCount = (ownerMask + 1) / 64;

std::mutex numbersMutex;
// A bit per number that is in use; number 0 stands for nobody.
std::uint64_t numbersInUse[wordCount] = {1};

// Its destructor runs in each thread that has a number. A thread_local object with a
// destructor would keep the library loaded until the last such thread ends.
pthread_key_t endKey;
bool endKeyMade = false;

thread_local std::uint64_t threadNumber = 0;

void EndThread(void *) {
    std::uint64_t const number = threadNumber;
    AbandonMutexesOf(number);
    threadNumber = 0;
    std::lock_guard<std::mutex> const lock(numbersMutex);
    numbersInUse[number / 64] &= ~(std::uint64_t{1} << (number % 64));
}

std::uint64_t TakeNumber() {
    for (std::size_t word = 0; word < wordCount; ++word) {
        if (~numbersInUse[word] == 0)
            continue;
        auto const bit = static_cast<unsigned>(__builtin_ctzll(~numbersInUse[word]));
        numbersInUse[word] |= std::uint64_t{1} << bit;
        return word * 64 + bit;
    }
    return 0;
}

std::uint64_t NumberThread() {
    std::lock_guard<std::mutex> const lock(numbersMutex);
    if (!endKeyMade)
        endKeyMade = pthread_key_create(&endKey, EndThread) == 0;
    threadNumber = TakeNumber();
    // Without a key the thread's end goes unnoticed: its number isn't used again, and its
    // mutexes aren't given up. They work all the same.
    if (threadNumber && endKeyMade)
        pthread_setspecific(endKey, &endKey);
    return threadNumber;
}

} // namespace

std::uint64_t ThreadNumber() {
    std::uint64_t const number = threadNumber;
    return number ? number : NumberThread();
}

void ReleaseThreads() {
    std::lock_guard<std::mutex> const lock(numbersMutex);
    if (endKeyMade)
        pthread_key_delete(endKey);
    endKeyMade = false;
}

} // namespace platform

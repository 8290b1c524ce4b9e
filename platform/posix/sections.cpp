#include "platform/winapi.h"

#include <new>
#include <pthread.h>

namespace win::host {
namespace {

static_assert(sizeof(pthread_mutex_t) <= sizeof(CRITICAL_SECTION::opaque) &&
              alignof(pthread_mutex_t) <= alignof(CRITICAL_SECTION));

pthread_mutex_t *Mutex(CRITICAL_SECTION *section) {
    return std::launder(reinterpret_cast<pthread_mutex_t *>(section->opaque));
}

} // namespace

void InitializeCriticalSection(CRITICAL_SECTION *section) {
    auto *const mutex = new (section->opaque) pthread_mutex_t;
    pthread_mutexattr_t recursive;
    pthread_mutexattr_init(&recursive);
    pthread_mutexattr_settype(&recursive, PTHREAD_MUTEX_RECURSIVE);
    pthread_mutex_init(mutex, &recursive);
    pthread_mutexattr_destroy(&recursive);
}

void EnterCriticalSection(CRITICAL_SECTION *section) { pthread_mutex_lock(Mutex(section)); }

// A recursive mutex knows its owner and refuses all others.
void LeaveCriticalSection(CRITICAL_SECTION *section) { pthread_mutex_unlock(Mutex(section)); }

void DeleteCriticalSection(CRITICAL_SECTION *section) { pthread_mutex_destroy(Mutex(section)); }

} // namespace win::host

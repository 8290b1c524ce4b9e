// MutexGuard: holds a mutex for a scope, or until Release. A null handle is never
// waited on or released, so that a database without a mutex runs unlocked.
#pragma once

#include "platform/winapi.h"

class MutexGuard {
public:
    explicit MutexGuard(void *mutex) : m_mutex(mutex) {
        if (m_mutex)
            win::WaitForSingleObject(m_mutex, INFINITE);
    }
    ~MutexGuard() { Release(); }
    MutexGuard(MutexGuard const &) = delete;
    MutexGuard &operator=(MutexGuard const &) = delete;

    void Release() {
        if (m_mutex)
            win::ReleaseMutex(m_mutex);
        m_mutex = nullptr;
    }

private:
    void *m_mutex;
};

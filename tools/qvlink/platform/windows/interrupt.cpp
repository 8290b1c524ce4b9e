#include "platform/interrupt.h"

#include <atomic>
#include <windows.h>

namespace qvlink {
namespace {

std::atomic<bool> requested{false};

// The system calls this on a thread of its own.
BOOL WINAPI Note(DWORD) { return requested.exchange(true) ? FALSE : TRUE; }

} // namespace

InterruptWatch::InterruptWatch() {
    requested = false;
    ::SetConsoleCtrlHandler(Note, TRUE);
}

InterruptWatch::~InterruptWatch() { ::SetConsoleCtrlHandler(Note, FALSE); }

bool InterruptWatch::Requested() { return requested; }

} // namespace qvlink

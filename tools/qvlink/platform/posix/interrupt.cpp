#include "platform/interrupt.h"

#include <csignal>

namespace qvlink {
namespace {

volatile std::sig_atomic_t requested = 0;

void Note(int) { requested = 1; }

void SetHandler(void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = static_cast<int>(SA_RESTART | SA_RESETHAND);
    sigemptyset(&action.sa_mask);
    ::sigaction(SIGINT, &action, nullptr);
    ::sigaction(SIGTERM, &action, nullptr);
    ::sigaction(SIGHUP, &action, nullptr);
}

} // namespace

InterruptWatch::InterruptWatch() {
    requested = 0;
    SetHandler(Note);
}

InterruptWatch::~InterruptWatch() { SetHandler(SIG_DFL); }

bool InterruptWatch::Requested() { return requested != 0; }

} // namespace qvlink

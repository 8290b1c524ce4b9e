#include "system_acts.h"

#include <csignal>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr uid_t nobody = 65534;

}

bool AskToStop() { return ::raise(SIGINT) == 0; }

struct Unreadable::State {
    std::filesystem::path file;
    uid_t user;
};

Unreadable::Unreadable(std::filesystem::path const &file, std::filesystem::path const &writable)
    : m_state(std::make_unique<State>(State{file, ::geteuid()})) {
    ::chmod(file.c_str(), 0);
    ::chmod(writable.c_str(), 0777);
    // No permission keeps a file from the superuser.
    if (m_state->user == 0 && ::seteuid(nobody) != 0) {
        m_state->user = nobody;
    }
}

Unreadable::~Unreadable() {
    if (::geteuid() != m_state->user && ::seteuid(m_state->user) != 0) {
        ::abort();
    }
    ::chmod(m_state->file.c_str(), 0644);
}

bool Unreadable::Works() const {
    int const descriptor = ::open(m_state->file.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor >= 0) {
        ::close(descriptor);
    }
    return descriptor < 0;
}

bool MakePipe(std::filesystem::path const &path) { return ::mkfifo(path.c_str(), 0600) == 0; }

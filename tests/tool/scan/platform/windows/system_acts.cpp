#include "system_acts.h"

#include <windows.h>

// A console's event goes to all programs on it, the test runner among them.
bool AskToStop() { return false; }

struct Unreadable::State {
    HANDLE file; // open, and shared with nobody
};

Unreadable::Unreadable(std::filesystem::path const &file, std::filesystem::path const &)
    : m_state(std::make_unique<State>(State{
          ::CreateFileW(file.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr)})) {}

Unreadable::~Unreadable() { ::CloseHandle(m_state->file); }

bool Unreadable::Works() const { return m_state->file != INVALID_HANDLE_VALUE; }

bool MakePipe(std::filesystem::path const &) { return false; }

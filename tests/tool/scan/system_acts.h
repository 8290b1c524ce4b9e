// Things that a test does to the system, each system in its own way.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

// Asks this process to stop, as Ctrl-C does. False if that isn't possible here.
bool AskToStop();

// While one exists, the file can't be read by this process, whoever runs it, while
// `writable` is a folder that it can go on writing in.
class Unreadable {
public:
    Unreadable(std::filesystem::path const &file, std::filesystem::path const &writable);
    ~Unreadable();
    Unreadable(Unreadable const &) = delete;
    Unreadable &operator=(Unreadable const &) = delete;

    bool Works() const; // whether that has been achieved

private:
    struct State;
    std::unique_ptr<State> m_state;
};

// Makes a pipe with a name. False if there are none here.
bool MakePipe(std::filesystem::path const &path);

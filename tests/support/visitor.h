// A thread that goes into a lock and out again, for tests of what keeps it out.
#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <thread>

class Visitor {
public:
    // `enter` and `leave` run on the thread.
    Visitor(std::function<void()> enter, std::function<void()> leave)
        : m_enter(std::move(enter)), m_leave(std::move(leave)), m_thread([this] {
              m_enter();
              m_inside = true;
              m_leave();
          }) {}
    ~Visitor() { m_thread.join(); }
    Visitor(Visitor const &) = delete;
    Visitor &operator=(Visitor const &) = delete;

    // Whether the thread is still outside after a while.
    bool KeptOut() const {
        std::this_thread::sleep_for(std::chrono::milliseconds(30));
        return !m_inside;
    }
    // Whether it gets in before a time that no test takes.
    bool GetsIn() const {
        auto const end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
        while (!m_inside && std::chrono::steady_clock::now() < end)
            std::this_thread::yield();
        return m_inside;
    }

private:
    std::function<void()> m_enter, m_leave;
    std::atomic<bool> m_inside{false};
    std::thread m_thread;
};

// A function that sees each call the library makes to the system, for as long as the
// object lives.
#pragma once

#include <functional>
#include <string>

#include "platform/testing.h"

class CallHook {
public:
    using Call = testing_hooks::Call;
    using Moment = testing_hooks::Moment;
    // Before a call: true makes it fail. After it the result is ignored.
    using Action = std::function<bool(Call const &)>;

    explicit CallHook(Action action) : m_action(std::move(action)) {
        testing_hooks::SetHook(
            [](Call const &call, void *context) {
                return static_cast<CallHook *>(context)->m_action(call);
            },
            this);
    }
    ~CallHook() { testing_hooks::SetHook(nullptr, nullptr); }
    CallHook(CallHook const &) = delete;
    CallHook &operator=(CallHook const &) = delete;

private:
    Action m_action;
};

inline bool Is(testing_hooks::Call const &call, char const *service) {
    return std::string(service) == call.service;
}

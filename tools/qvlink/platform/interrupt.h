// Being asked to stop: Ctrl-C and its like.
#pragma once

namespace qvlink {

// While one exists, the first request to stop is only noted; a second one ends the
// process at once, as usual. One at a time.
class InterruptWatch {
public:
    InterruptWatch();
    ~InterruptWatch();
    InterruptWatch(InterruptWatch const &) = delete;
    InterruptWatch &operator=(InterruptWatch const &) = delete;

    static bool Requested();
};

} // namespace qvlink

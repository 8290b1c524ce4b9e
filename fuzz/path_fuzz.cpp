// Any bytes as steps of a path, each followed by a model on plain strings.
#include "path_twin.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

class Steps {
public:
    Steps(const std::uint8_t *data, std::size_t size) : m_next(data), m_end(data + size) {}

    bool Left() const { return m_next != m_end; }
    unsigned Number(unsigned limit) { return (Left() ? *m_next++ : 0u) % limit; }

    // Up to the next zero, and not longer than what a model does quickly.
    std::string Text() {
        std::string text;
        while (Left() && *m_next != 0 && text.size() < 60)
            text += static_cast<char>(*m_next++);
        if (Left())
            ++m_next;
        return text;
    }

private:
    const std::uint8_t *m_next;
    const std::uint8_t *m_end;
};

void Take(Steps &steps, PathTwin &twin) {
    unsigned const step = steps.Number(8);
    if (step == 0) {
        std::string const base = steps.Text();
        twin.SetPath(steps.Text(), base);
    } else if (step == 1) {
        twin.SetPath(steps.Text(), "");
    } else if (step == 2) {
        twin.AddToPath(steps.Text());
    } else if (step == 3) {
        twin.ClimbOn();
    } else if (step == 4) {
        twin.ClimbBack();
    } else if (step == 5) {
        twin.MoveToParent();
    } else if (step == 6) {
        twin.CloseParentSearch();
    } else {
        bool const firstDot = steps.Number(2) == 1;
        twin.DivideName(steps.Text(), firstDot);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    Steps steps(data, size);
    PathTwin twin;
    while (steps.Left() && twin.Difference().empty())
        Take(steps, twin);
    if (!twin.Difference().empty()) {
        std::fprintf(stderr, "%s\n", twin.Difference().c_str());
        std::abort();
    }
    return 0;
}

#include "protect_tree.h"

#include "platform/winapi.h"

#include <cstdlib>
#include <cstring>

namespace {

const unsigned char *Bytes(const char *text) {
    return reinterpret_cast<const unsigned char *>(text);
}

// The components of a path, in a copy of it.
class Components {
public:
    explicit Components(const char *path) {
        // What doesn't fit is a mistake of the caller's that ends the process.
        if (win::strcpy_s(m_copy, ProtectPathRoom, path) != 0)
            std::abort();
        m_whole = std::strlen(m_copy);
        // Half a character at the end may take the terminator for its other half.
        m_copy[m_whole + 1] = '\0';
    }

    std::size_t Length() const { return m_whole; } // of the path

    // The next component, from an offset if it is the first. False if there is none.
    bool First(unsigned from = 0) { return Take(m_copy + from); }
    bool Next() { return Take(nullptr); }
    ComponentText Current() const { return ComponentText(m_text, m_length); }
    unsigned End() const {
        return static_cast<unsigned>(m_text - m_copy) + static_cast<unsigned>(m_length);
    }

private:
    bool Take(char *text) {
        m_text = reinterpret_cast<const char *>(
            win::_mbstok(reinterpret_cast<unsigned char *>(text), Bytes("\\")));
        m_length = m_text ? std::strlen(m_text) : 0;
        return m_text != nullptr;
    }

    char m_copy[ProtectPathRoom + 1];
    std::size_t m_whole = 0;
    const char *m_text = nullptr;
    std::size_t m_length = 0;
};

} // namespace

ProtectAdder::ProtectAdder(ProtectNode &root) : m_root(root) {}

// A step is shared if its component ends in this path as well. Half a character at the end of
// the last path may be a whole one here.
bool ProtectAdder::Shares(Step const &step, const char *path, std::size_t length) const {
    if (step.end > length || std::memcmp(path, m_path, step.end) != 0)
        return false;
    bool const wasLast = m_path[step.end] == '\0';
    bool const isHalf = wasLast && static_cast<unsigned char>(m_path[step.end - 1]) >= 0x80;
    return path[step.end] == '\0' || (path[step.end] == '\\' && !isHalf);
}

unsigned ProtectAdder::SharedSteps(const char *path, std::size_t length) const {
    unsigned shared = m_count;
    while (shared > 0 && !Shares(m_steps[shared - 1], path, length))
        --shared;
    return shared;
}

unsigned ProtectAdder::Add(const char *path, std::uint32_t data) {
    Components components(path);
    std::size_t const length = components.Length();
    m_count = SharedSteps(path, length);
    std::memcpy(m_path, path, length + 1);
    Step const from = m_count > 0 ? m_steps[m_count - 1] : Step{0, &m_root};
    ProtectNode *at = from.node;
    for (bool more = components.First(from.end); more; more = components.Next()) {
        at = &at->children.Get(components.Current(), data);
        m_steps[m_count++] = {components.End(), at};
    }
    bool const wasMarked = at->marked.load(std::memory_order_relaxed) != 0;
    at->marked.store(1, std::memory_order_relaxed);
    return wasMarked ? ERROR_ALREADY_EXISTS : ERROR_SUCCESS;
}

unsigned ProtectAdd(ProtectNode &node, const char *path, std::uint32_t data) {
    return ProtectAdder(node).Add(path, data);
}

bool ProtectFind(ProtectNode &node, const char *path, std::uint32_t *result) {
    Components components(path);
    ProtectNode *at = &node;
    bool found = true;
    for (bool more = components.First(); more && found; more = components.Next()) {
        ProtectNode *const child = at->children.Find(components.Current());
        found = child != nullptr;
        if (found)
            at = child;
    }
    if (result) {
        *result = found ? at->data : 0;
        return found;
    }
    if (!found)
        return false;
    if (at->marked.load(std::memory_order_relaxed))
        return true;
    at->marked.store(1, std::memory_order_relaxed); // asking marks; callers rely on it
    return false;
}

void ProtectClear(ProtectNode &node) { node.children.clear(); }

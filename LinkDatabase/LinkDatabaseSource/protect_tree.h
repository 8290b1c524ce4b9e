// A tree of path components: which paths count as the operating system's own.
//
// Order and equality of components are those of _mbsicmp: without regard to case, and
// by characters of the active code page.
#pragma once

#include <atomic>
#include <cstdint>
#include <map>
#include <memory>

// A component with what decides most comparisons in front.
class ComponentText {
public:
    explicit ComponentText(const char *text);

    const char *Text() const { return m_text; }
    bool operator<(ComponentText const &other) const;

protected:
    std::uint64_t m_head; // the first bytes in lower case, as far as they are ASCII
    const char *m_text;
};

// The same with a text of its own.
class ComponentKey : public ComponentText {
public:
    explicit ComponentKey(ComponentText const &component);
    ~ComponentKey();
    ComponentKey(ComponentKey const &) = delete;
    ComponentKey &operator=(ComponentKey const &) = delete;
};

struct ComponentOrder {
    using is_transparent = void;
    bool operator()(ComponentText const &a, ComponentText const &b) const { return a < b; }
};

// A node; a tree is its root, which stands for the empty path. Built by one thread; then
// any thread may ask.
struct ProtectNode {
    using Children = std::map<ComponentKey, ProtectNode, ComponentOrder>;

    ProtectNode() = default;
    ~ProtectNode();
    ProtectNode(ProtectNode const &) = delete;
    ProtectNode &operator=(ProtectNode const &) = delete;

    Children children;
    std::atomic<std::uint8_t> marked{0}; // this exact path counts as listed
    std::uint32_t data = 0;              // the caller's, from ProtectAdd
};

// Paths are split at backslashes, and empty components don't count: C:\\A\ is C:\A. A path
// of more characters ends the process.
constexpr unsigned ProtectPathRoom = 260; // with the terminator

// Puts a path in and marks it. 0, or 183 if it was marked before. Nodes that are made on
// the way get the data. Throws std::bad_alloc; the nodes made so far stay, unmarked.
unsigned ProtectAdd(ProtectNode &node, const char *path, std::uint32_t data);

// Whether a path is in the tree. With a result the answer tells just that, and the result
// is the last node's data, or 0. Without one the answer is whether the path is marked, and
// asking marks: the interior of longer paths answers false the first time, then true.
bool ProtectFind(ProtectNode &node, const char *path, std::uint32_t *result);

// Frees everything below a node.
void ProtectClear(ProtectNode &node);

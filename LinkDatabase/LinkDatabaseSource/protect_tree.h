// A tree of path components: which paths count as the operating system's own.
#pragma once

#include "protect_children.h"

#include <atomic>
#include <cstddef>
#include <cstdint>

// A node; a tree is its root, which stands for the empty path. Built by one thread; then
// any thread may ask.
struct ProtectNode {
    ProtectChildren children;
    std::atomic<std::uint8_t> marked{0}; // this exact path counts as listed
    std::uint32_t data = 0;              // the caller's, from ProtectAdd
};

// Paths are split at backslashes, and empty components don't count: C:\\A\ is C:\A. A path
// of more characters ends the process.
constexpr unsigned ProtectPathRoom = 260; // with the terminator

// Puts paths into a tree, one after the other. What a path has in common with the one
// before isn't looked up again, which makes sorted paths quick to add.
class ProtectAdder {
public:
    explicit ProtectAdder(ProtectNode &root);

    // See ProtectAdd.
    unsigned Add(const char *path, std::uint32_t data);

private:
    // A component ends before m_path[end], and leads to the node.
    struct Step {
        unsigned end;
        ProtectNode *node;
    };

    bool Shares(Step const &step, const char *path, std::size_t length) const;
    unsigned SharedSteps(const char *path, std::size_t length) const;

    ProtectNode &m_root;
    char m_path[ProtectPathRoom] = ""; // the last one
    Step m_steps[ProtectPathRoom / 2];
    unsigned m_count = 0;
};

// Puts a path in and marks it. 0, or 183 if it was marked before. Nodes that are made on
// the way get the data. Throws std::bad_alloc; the nodes made so far stay, unmarked.
unsigned ProtectAdd(ProtectNode &node, const char *path, std::uint32_t data);

// Whether a path is in the tree. With a result the answer tells just that, and the result
// is the last node's data, or 0. Without one the answer is whether the path is marked, and
// asking marks: the interior of longer paths answers false the first time, then true.
bool ProtectFind(ProtectNode &node, const char *path, std::uint32_t *result);

// Frees everything below a node.
void ProtectClear(ProtectNode &node);

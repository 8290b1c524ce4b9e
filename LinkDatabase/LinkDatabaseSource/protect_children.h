// The children of a node in a tree of path components: an ordered map from a component's
// text to the node that it leads to.
//
// Order and equality of components are those of _mbsicmp: without regard to case, and by
// characters of the active code page.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <vector>

struct ProtectNode;

// What decides most comparisons: the first 16 bytes of a component in lower case, as numbers,
// as far as they are ASCII.
struct ComponentHead {
    std::uint64_t first;
    std::uint64_t second;
};

// A component that is looked for; the text stays the caller's.
class ComponentText {
public:
    ComponentText(const char *text, std::size_t length);

    const char *Text() const { return m_text; }
    std::size_t Length() const { return m_length; }
    ComponentHead const &Head() const { return m_head; }
    // As _mbsicmp orders: below 0, 0 or above 0.
    int Compare(ComponentText const &other) const;

private:
    const char *m_text;
    std::size_t m_length;
    ComponentHead m_head;
};

// The map. It owns the nodes. Entries lie in blocks of a bounded size, so that adding is quick
// in any order.
class ProtectChildren {
public:
    struct Child {
        ComponentText first;
        ProtectNode &second;
    };
    class Iterator;

    ProtectChildren() = default;
    ~ProtectChildren();
    ProtectChildren(ProtectChildren const &) = delete;
    ProtectChildren &operator=(ProtectChildren const &) = delete;

    // Null if there is none.
    ProtectNode *Find(ComponentText const &component) const;
    // The one there is, or a new one with this data. Throws std::bad_alloc, and then nothing
    // has changed.
    ProtectNode &Get(ComponentText const &component, std::uint32_t data);
    // Frees all children and what is below them, in order.
    void clear();

    bool empty() const { return m_first.empty(); }
    std::size_t size() const;
    Iterator begin() const;
    Iterator end() const;

private:
    struct Entry {
        ComponentHead head;
        ProtectNode *node; // its text is behind it

        const char *Text() const;
        int Compare(ComponentText const &component) const;
    };
    using Block = std::vector<Entry>;

    struct Place {
        std::size_t block;
        std::size_t index;
        bool found;
    };

    std::size_t Blocks() const { return m_more ? m_more->size() + 1 : 1; }
    Block const &BlockAt(std::size_t i) const { return i == 0 ? m_first : (*m_more)[i - 1]; }
    Block &BlockAt(std::size_t i) { return i == 0 ? m_first : (*m_more)[i - 1]; }
    Place Search(ComponentText const &component) const;
    Place SearchTexts(std::size_t block, ComponentText const &component) const;
    Place MakeRoom(Place place);

    Block m_first;                              // empty if there are no children
    std::unique_ptr<std::vector<Block>> m_more; // never empty ones
};

// Goes through the children in order.
class ProtectChildren::Iterator {
public:
    Iterator(ProtectChildren const &children, std::size_t block)
        : m_children(&children), m_block(block) {}

    Child operator*() const {
        Entry const &entry = m_children->BlockAt(m_block)[m_index];
        return {ComponentText(entry.Text(), std::strlen(entry.Text())), *entry.node};
    }
    std::unique_ptr<Child> operator->() const { return std::make_unique<Child>(**this); }
    Iterator &operator++() {
        if (++m_index == m_children->BlockAt(m_block).size()) {
            ++m_block;
            m_index = 0;
        }
        return *this;
    }
    bool operator!=(Iterator const &other) const {
        return m_block != other.m_block || m_index != other.m_index;
    }

private:
    ProtectChildren const *m_children;
    std::size_t m_block;
    std::size_t m_index = 0;
};

#include "protect_tree.h"

#include "platform/winapi.h"

#include <cstdlib>
#include <cstring>
#include <utility>

namespace {

const unsigned char *Bytes(const char *text) {
    return reinterpret_cast<const unsigned char *>(text);
}

constexpr unsigned headSize = sizeof(std::uint64_t);
constexpr unsigned char notAscii = 0x80; // in a head: there the text has to be looked at

// Comes out as _mbsicmp orders: in every code page what isn't ASCII is behind what is.
std::uint64_t HeadOf(const char *text) {
    std::uint64_t head = 0;
    unsigned i = 0;
    for (; i < headSize && text[i]; ++i) {
        auto const c = static_cast<unsigned char>(text[i]);
        bool const isCapital = c >= 'A' && c <= 'Z';
        std::uint64_t const byte = c >= notAscii ? notAscii : isCapital ? c + ('a' - 'A') : c;
        head |= byte << (8 * (headSize - 1 - i));
        if (c >= notAscii)
            break;
    }
    return head;
}

// A head that holds its whole text ends in a zero byte, and has no other before it.
bool IsWhole(std::uint64_t head) { return (head & 0xff) == 0 && (head & 0x8080808080808080u) == 0; }

// The components of a path, in a copy of it.
class Components {
public:
    explicit Components(const char *path) {
        // What doesn't fit is a mistake of the caller's that ends the process.
        if (win::strcpy_s(m_copy, sizeof m_copy, path) != 0)
            std::abort();
    }

    const char *First() { return Token(m_copy); }
    const char *Next() { return Token(nullptr); }

private:
    static const char *Token(char *text) {
        return reinterpret_cast<const char *>(
            win::_mbstok(reinterpret_cast<unsigned char *>(text), Bytes("\\")));
    }

    char m_copy[ProtectPathRoom];
};

} // namespace

ComponentText::ComponentText(const char *text) : m_head(HeadOf(text)), m_text(text) {}

bool ComponentText::operator<(ComponentText const &other) const {
    if (m_head != other.m_head)
        return m_head < other.m_head;
    return !IsWhole(m_head) && win::_mbsicmp(Bytes(m_text), Bytes(other.m_text)) < 0;
}

ComponentKey::ComponentKey(ComponentText const &component) : ComponentText(component) {
    std::size_t const size = std::strlen(m_text) + 1;
    auto *const copy = new char[size];
    std::memcpy(copy, m_text, size);
    m_text = copy;
}

ComponentKey::~ComponentKey() { delete[] m_text; }

ProtectNode::~ProtectNode() { ProtectClear(*this); }

unsigned ProtectAdd(ProtectNode &node, const char *path, std::uint32_t data) {
    Components components(path);
    ProtectNode *at = &node;
    for (const char *text = components.First(); text; text = components.Next()) {
        ComponentText const component(text);
        auto child = at->children.lower_bound(component);
        if (child == at->children.end() || component < child->first) {
            child = at->children.emplace_hint(child, std::piecewise_construct,
                                              std::forward_as_tuple(component), std::tuple<>());
            child->second.data = data;
        }
        at = &child->second;
    }
    return at->marked.exchange(1, std::memory_order_relaxed) ? ERROR_ALREADY_EXISTS : ERROR_SUCCESS;
}

bool ProtectFind(ProtectNode &node, const char *path, std::uint32_t *result) {
    Components components(path);
    ProtectNode *at = &node;
    bool found = true;
    for (const char *text = components.First(); text && found;) {
        auto const child = at->children.find(ComponentText(text));
        found = child != at->children.end();
        if (found) {
            at = &child->second;
            text = components.Next();
        }
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

#include "protect_children.h"

#include "protect_tree.h"

#include "platform/winapi.h"

#include <cstring>
#include <new>

namespace {

constexpr std::size_t wordSize = sizeof(std::uint64_t);
constexpr std::size_t headSize = 2 * wordSize;
constexpr std::size_t blockSize = 512;
constexpr std::uint64_t ones = 0x0101010101010101u;
constexpr std::uint64_t highBits = 0x80 * ones; // a byte that has one isn't ASCII

// Eight bytes as a number, the first of them the most significant.
std::uint64_t WordAt(const char *bytes) {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes, wordSize);
    return __builtin_bswap64(word);
}

// All capitals at once: a capital's high bit is set by the one sum and not by the other.
std::uint64_t Lower(std::uint64_t word) {
    std::uint64_t const low = word & ~highBits;
    std::uint64_t const fromA = low + (0x80 - 'A') * ones;
    std::uint64_t const behindZ = low + (0x7f - 'Z') * ones;
    return word | ((fromA ^ behindZ) & ~word & highBits) >> 2;
}

// What isn't ASCII is behind what is in every code page, and ends the head with a byte of
// 0x80: there the text has to be looked at.
bool CutToAscii(std::uint64_t &word) {
    if ((word & highBits) == 0)
        return false;
    int const shift = __builtin_clzll(word & highBits);
    std::uint64_t const kept = shift == 0 ? 0 : ~std::uint64_t{0} << (64 - shift);
    word = (word & kept) | std::uint64_t{1} << (63 - shift);
    return true;
}

// The text lies behind the node, in the same block of memory.
struct NodeFreer {
    void operator()(ProtectNode *node) const {
        node->~ProtectNode();
        ::operator delete(node);
    }
};
using OwnedNode = std::unique_ptr<ProtectNode, NodeFreer>;

OwnedNode MakeNode(ComponentText const &component, std::uint32_t data) {
    std::size_t const size = component.Length() + 1;
    void *const memory = ::operator new(sizeof(ProtectNode) + size);
    std::memcpy(static_cast<char *>(memory) + sizeof(ProtectNode), component.Text(), size);
    OwnedNode node(new (memory) ProtectNode);
    node->data = data;
    return node;
}

// The order of the numbers is that of _mbsicmp.
ComponentHead HeadOf(const char *text, std::size_t length) {
    char bytes[headSize] = {};
    if (length >= headSize)
        std::memcpy(bytes, text, headSize); // of a known size, which is quicker
    else
        std::memcpy(bytes, text, length);
    ComponentHead head{Lower(WordAt(bytes)), 0};
    if (!CutToAscii(head.first)) {
        head.second = Lower(WordAt(bytes + wordSize));
        CutToAscii(head.second);
    }
    return head;
}

// A head that ends in a zero byte and is ASCII is the whole text.
bool IsWhole(ComponentHead const &head) {
    return (head.second & 0xff) == 0 && ((head.first | head.second) & highBits) == 0;
}

// Without a branch that the processor would have to guess.
bool IsLess(ComponentHead const &left, ComponentHead const &right) {
    return (left.first < right.first) |
           ((left.first == right.first) & (left.second < right.second));
}

bool IsEqual(ComponentHead const &left, ComponentHead const &right) {
    return left.first == right.first && left.second == right.second;
}

// For components with equal heads.
int CompareTexts(ComponentHead const &head, const char *left, const char *right) {
    if (IsWhole(head))
        return 0;
    bool const isAscii = ((head.first | head.second) & highBits) == 0;
    std::size_t const same = isAscii ? headSize : 0;
    return win::_mbsicmp(reinterpret_cast<const unsigned char *>(left + same),
                         reinterpret_cast<const unsigned char *>(right + same));
}

int CompareComponents(ComponentHead const &left, const char *leftText, ComponentHead const &right,
                      const char *rightText) {
    if (!IsEqual(left, right))
        return IsLess(left, right) ? -1 : 1;
    return CompareTexts(left, leftText, rightText);
}

// How many of the entries from the first on fulfil the condition; none behind them does.
template <class Entries, class Condition>
std::size_t CountFirst(Entries const &entries, Condition condition) {
    std::size_t count = 0;
    for (std::size_t left = entries.size(); left > 0;) {
        std::size_t const half = (left + 1) / 2;
        count += condition(entries[count + half - 1]) ? half : 0;
        left -= half;
    }
    return count;
}

} // namespace

ComponentText::ComponentText(const char *text, std::size_t length)
    : m_text(text), m_length(length), m_head(HeadOf(text, length)) {}

int ComponentText::Compare(ComponentText const &other) const {
    return CompareComponents(m_head, m_text, other.m_head, other.m_text);
}

const char *ProtectChildren::Entry::Text() const {
    return reinterpret_cast<const char *>(node + 1);
}

int ProtectChildren::Entry::Compare(ComponentText const &component) const {
    return CompareComponents(head, Text(), component.Head(), component.Text());
}

ProtectChildren::~ProtectChildren() { clear(); }

// The block is the last that begins at or before the component.
ProtectChildren::Place ProtectChildren::Search(ComponentText const &component) const {
    std::size_t block = 0;
    for (std::size_t end = Blocks(); end - block > 1;) {
        std::size_t const middle = block + (end - block) / 2;
        (BlockAt(middle).front().Compare(component) <= 0 ? block : end) = middle;
    }
    Block const &entries = BlockAt(block);
    ComponentHead const &head = component.Head();
    std::size_t const index =
        CountFirst(entries, [&](Entry const &entry) { return IsLess(entry.head, head); });
    if (index == entries.size() || !IsEqual(entries[index].head, head))
        return {block, index, false};
    if (IsWhole(head) || entries[index].Compare(component) == 0)
        return {block, index, true};
    return SearchTexts(block, component);
}

// Among several with the component's head it is the texts that differ.
ProtectChildren::Place ProtectChildren::SearchTexts(std::size_t block,
                                                    ComponentText const &component) const {
    Block const &entries = BlockAt(block);
    std::size_t const index =
        CountFirst(entries, [&](Entry const &entry) { return entry.Compare(component) < 0; });
    return {block, index, index < entries.size() && entries[index].Compare(component) == 0};
}

// Sorted children fill their blocks; in other orders a full block becomes two. Nothing has
// changed if there is no memory.
ProtectChildren::Place ProtectChildren::MakeRoom(Place place) {
    Block &full = BlockAt(place.block);
    if (full.size() < blockSize)
        return place;
    bool const isLast = place.block + 1 == Blocks() && place.index == blockSize;
    auto const kept = static_cast<std::ptrdiff_t>(isLast ? blockSize : blockSize / 2);
    Block added;
    added.reserve(blockSize);
    added.assign(full.begin() + kept, full.end());
    if (!m_more)
        m_more = std::make_unique<std::vector<Block>>();
    m_more->insert(m_more->begin() + static_cast<std::ptrdiff_t>(place.block), std::move(added));
    Block &left = BlockAt(place.block);
    left.erase(left.begin() + kept, left.end());
    std::size_t const first = left.size();
    return isLast || place.index > first ? Place{place.block + 1, place.index - first, false}
                                         : place;
}

ProtectNode *ProtectChildren::Find(ComponentText const &component) const {
    Place const place = Search(component);
    return place.found ? BlockAt(place.block)[place.index].node : nullptr;
}

ProtectNode &ProtectChildren::Get(ComponentText const &component, std::uint32_t data) {
    std::size_t const last = Blocks() - 1;
    Block const &end = BlockAt(last);
    bool const isNext = !end.empty() && end.back().Compare(component) < 0;
    Place const place = isNext ? Place{last, end.size(), false} : Search(component);
    if (place.found)
        return *BlockAt(place.block)[place.index].node;
    OwnedNode node = MakeNode(component, data);
    Place const room = MakeRoom(place);
    Block &block = BlockAt(room.block);
    block.insert(block.begin() + static_cast<std::ptrdiff_t>(room.index),
                 Entry{component.Head(), node.get()});
    return *node.release();
}

void ProtectChildren::clear() {
    for (std::size_t i = 0; i < Blocks(); ++i)
        for (Entry const &entry : BlockAt(i))
            NodeFreer()(entry.node);
    m_first = {};
    m_more.reset();
}

std::size_t ProtectChildren::size() const {
    std::size_t count = 0;
    for (std::size_t i = 0; i < Blocks(); ++i)
        count += BlockAt(i).size();
    return count;
}

ProtectChildren::Iterator ProtectChildren::begin() const { return {*this, 0}; }

ProtectChildren::Iterator ProtectChildren::end() const { return {*this, empty() ? 0 : Blocks()}; }

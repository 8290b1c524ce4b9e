// What the right answers are, told from the graph itself.
#pragma once

#include <cstddef>
#include <vector>

#include "Graph.h"
#include "Store.h"

namespace bench {

// The links of a graph grouped by one end.
class Adjacency {
public:
    enum class By { Source, Target };
    Adjacency(Graph const &graph, By by);

    struct Entry {
        std::uint32_t other; // id of the other end
        std::uint32_t type;
    };
    Entry const *Begin(std::uint32_t id) const { return m_entries.data() + m_starts[id]; }
    Entry const *End(std::uint32_t id) const { return m_entries.data() + m_starts[id + 1]; }
    std::size_t Count(std::uint32_t id) const { return m_starts[id + 1] - m_starts[id]; }

private:
    std::vector<std::size_t> m_starts; // by id, and one more
    std::vector<Entry> m_entries;
};

class Model {
public:
    explicit Model(Graph const &graph);

    Answer Closure(std::uint32_t start);
    Answer Links(std::uint32_t object) const;
    std::size_t MostIncoming() const;

private:
    std::uint32_t m_highestId;
    Adjacency m_out;
    Adjacency m_in;
    VisitedSet m_visited;
};

} // namespace bench

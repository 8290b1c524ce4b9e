#include "Model.h"

#include <algorithm>

namespace bench {

Adjacency::Adjacency(Graph const &graph, By by) : m_starts(graph.HighestId() + 2) {
    auto forEachLink = [&](auto use) {
        std::uint32_t id = DRIVE_ID;
        for (Object const &object : graph.objects)
            use(object.parent, id++, LINK_PARENT);
        for (Link const &link : graph.needs)
            use(link.source, link.target, link.type);
    };
    forEachLink([&](std::uint32_t source, std::uint32_t target, std::uint32_t) {
        ++m_starts[(by == By::Source ? source : target) + 1];
    });
    for (std::size_t i = 1; i < m_starts.size(); ++i)
        m_starts[i] += m_starts[i - 1];
    m_entries.resize(m_starts.back());
    std::vector<std::size_t> next(m_starts.begin(), m_starts.end() - 1);
    forEachLink([&](std::uint32_t source, std::uint32_t target, std::uint32_t type) {
        if (by == By::Target)
            std::swap(source, target);
        m_entries[next[source]++] = {target, type};
    });
}

Model::Model(Graph const &graph)
    : m_highestId(graph.HighestId()), m_out(graph, Adjacency::By::Source),
      m_in(graph, Adjacency::By::Target), m_visited(m_highestId) {}

Answer Model::Closure(std::uint32_t start) {
    std::vector<std::uint32_t> open;
    return WalkClosure(start, m_visited, open, [&](std::uint32_t id, auto found) {
        for (auto const *entry = m_out.Begin(id); entry != m_out.End(id); ++entry)
            found(entry->other);
    });
}

Answer Model::Links(std::uint32_t object) const {
    Answer answer;
    for (auto const *entry = m_out.Begin(object); entry != m_out.End(object); ++entry)
        answer.Add(LinkDigest(entry->other, entry->type, false));
    for (auto const *entry = m_in.Begin(object); entry != m_in.End(object); ++entry)
        answer.Add(LinkDigest(entry->other, entry->type, true));
    return answer;
}

std::size_t Model::MostIncoming() const {
    std::size_t most = 0;
    for (std::uint32_t id = ROOT_ID; id <= m_highestId; ++id)
        most = std::max(most, m_in.Count(id));
    return most;
}

} // namespace bench

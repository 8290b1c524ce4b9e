// How the model reads a file: any bytes at all, as a process with a given stamp.
#include "graph_model.h"

#include <algorithm>

namespace model {

namespace {
constexpr std::uint32_t persistentBit = 0x80000000, idMask = 0x3fffffff;
}

class Loader {
public:
    Loader(Bytes const &bytes, image::Stamp reader, Graph &graph) : m_bytes(bytes), m_graph(graph) {
        m_accepted = bytes.size() >= image::recordsAt &&
                     image::WordAt(bytes, image::lengthAt) == bytes.size() &&
                     image::WordAt(bytes, image::magicAt) == 4104;
        if (!m_accepted)
            return;
        image::Stamp const writer = image::StampOf(bytes);
        m_same = writer.created == reader.created && writer.process == reader.process;
        graph.lastObject = 0;
        for (std::uint64_t left = Count(image::objectCountAt); left > 0 && m_accepted; --left)
            m_accepted = LoadObject();
    }

    void LoadLinks() {
        if (!m_accepted)
            return;
        m_graph.lastLink = 0;
        for (std::uint64_t left = Count(image::linkCountAt); left > 0 && Has(16); --left) {
            std::uint32_t const id = Word(), source = Word(), target = Word(), type = Word();
            if (!m_same && !(type & persistentBit))
                continue;
            m_graph.lastLink = std::max(m_graph.lastLink, id);
            m_graph.links[id] = {source, target, type};
        }
    }

private:
    Bytes const &m_bytes;
    Graph &m_graph;
    std::size_t m_at = image::recordsAt;
    bool m_accepted = false, m_same = false;

    std::uint32_t Count(std::size_t offset) const { return image::WordAt(m_bytes, offset); }
    bool Has(std::uint64_t count) const { return m_bytes.size() - m_at >= count; }
    std::uint32_t Word() {
        m_at += 4;
        return image::WordAt(m_bytes, m_at - 4);
    }

    // False if the file ends within the record.
    bool LoadObject() {
        if (!Has(26))
            return false;
        auto const object = std::make_shared<Object>();
        object->id = Word();
        object->flags = Word() & idMask;
        object->type = Word();
        std::uint32_t const dataSize = Word(), from = Word(), to = Word();
        std::size_t const nameLength = m_bytes[m_at] | std::size_t{m_bytes[m_at + 1]} << 8;
        m_at += 2;
        if (!Has(nameLength))
            return false;
        if (nameLength > 0) {
            Bytes const name = Take(nameLength);
            object->name = std::string(name.begin(), std::find(name.begin(), name.end(), '\0'));
        }
        if (!LoadList(object->from, from) || !LoadList(object->to, to) || !Has(dataSize))
            return false;
        object->data = Take(dataSize);
        if (m_same || (object->Persistent() && HasPersistentLink(*object))) {
            m_graph.lastObject = std::max(m_graph.lastObject, object->id);
            m_graph.Index(object);
        }
        return true;
    }

    Bytes Take(std::size_t count) {
        auto const first = m_bytes.begin() + static_cast<std::ptrdiff_t>(m_at);
        m_at += count;
        return Bytes(first, first + static_cast<std::ptrdiff_t>(count));
    }

    bool LoadList(List &list, std::uint32_t countWord) {
        std::uint64_t const count = countWord & idMask;
        if (!Has(count * 4))
            return false;
        for (std::uint64_t i = 0; i < count; ++i) {
            std::uint32_t const entry = Word();
            if (m_same || entry & idMask)
                list.entries.push_back(entry);
        }
        list.blocked = list.entries.size() >= 2;
        return true;
    }

    static bool HasPersistentLink(Object const &object) {
        auto const persistent = [](std::uint32_t entry) { return entry <= idMask; };
        return std::any_of(object.from.entries.begin(), object.from.entries.end(), persistent) ||
               std::any_of(object.to.entries.begin(), object.to.entries.end(), persistent);
    }
};

Graph Graph::Load(Bytes const &bytes, image::Stamp reader) {
    Graph graph;
    graph.objects.clear();
    Loader loader(bytes, reader, graph);
    graph.MakeRootIfMissing();
    loader.LoadLinks();
    return graph;
}

} // namespace model

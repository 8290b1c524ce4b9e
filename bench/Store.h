// The questions that every contender answers.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace bench {

// An answer boiled down so that it can be compared: how much, and a sum over all of it.
struct Answer {
    std::uint64_t count = 0;
    std::uint64_t sum = 0;

    void Add(std::uint64_t value) {
        ++count;
        sum += value;
    }
    void Add(Answer const &other) {
        count += other.count;
        sum += other.sum;
    }
    bool operator==(Answer const &other) const { return count == other.count && sum == other.sum; }
};

// One link as told by Links: its type, its direction and its other end.
inline std::uint64_t LinkDigest(std::uint64_t other, std::uint64_t type, bool incoming) {
    return (other << 8) + (type << 1) + (incoming ? 1 : 0);
}

class Store {
public:
    Store() = default;
    Store(Store const &) = delete;
    Store &operator=(Store const &) = delete;
    virtual ~Store() = default;

    virtual std::uint32_t Locate(std::string const &path) = 0; // id of the object, or 0
    virtual Answer Closure(std::uint32_t start) = 0;           // ids of all it depends on
    virtual Answer Links(std::uint32_t object) = 0;            // LinkDigest of each link
};

// Ids seen by a walk; forgetting them all costs nothing.
class VisitedSet {
public:
    explicit VisitedSet(std::uint32_t highestId) : m_marks(highestId + 1) {}

    void Clear() { ++m_round; }
    bool Insert(std::uint32_t id) {
        if (m_marks[id] == m_round)
            return false;
        m_marks[id] = m_round;
        return true;
    }

private:
    std::vector<std::uint32_t> m_marks;
    std::uint32_t m_round = 0;
};

// A walk as an application does it over a store that knows single steps only.
// `visit(id, found)` calls `found` with every target of the object's links.
template <class Visit> Answer WalkClosure(std::uint32_t start, VisitedSet &visited,
                                          std::vector<std::uint32_t> &open, Visit visit) {
    Answer answer;
    visited.Clear();
    open.assign(1, start);
    while (!open.empty()) {
        std::uint32_t const id = open.back();
        open.pop_back();
        visit(id, [&](std::uint32_t target) {
            if (!visited.Insert(target))
                return;
            answer.Add(target);
            open.push_back(target);
        });
    }
    return answer;
}

// The parts of a path in order, as pointers into the text.
template <class Step> bool ForEachPart(std::string const &path, Step step) {
    std::size_t begin = 0;
    while (begin <= path.size()) {
        std::size_t end = path.find('\\', begin);
        if (end == std::string::npos)
            end = path.size();
        if (!step(path.data() + begin, end - begin))
            return false;
        begin = end + 1;
    }
    return true;
}

} // namespace bench

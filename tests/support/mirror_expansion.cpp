#include "mirror_expansion.h"

namespace mirror {
namespace {

constexpr std::uint32_t visited = 0x40000000;
constexpr std::uint32_t pinned = 2, file = 4, vfile = 4096;
constexpr std::uint32_t parentLink = 1;

} // namespace

Object *Expansion::Resolved(Id id) { return graph.Find(Paths(graph).Resolve(id, base, system)); }

// False for an object that was gathered before.
bool Expansion::Gather(Object &object) {
    if (object.flags & visited)
        return false;
    object.flags |= visited;
    gathered.push_back(object.id);
    return true;
}

void Expansion::Expand(Object const &object) {
    for (std::uint32_t const entry : object.from) {
        Link const *const link = graph.LinkOf(entry);
        if (!link || link->Type() == 0)
            continue;
        Object *const target = graph.Find(link->target);
        if (!target || (target->flags & visited))
            continue;
        if (target->Type() != vfile) {
            Gather(*target);
            Expand(*target);
            continue;
        }
        Object *const located = Resolved(target->id);
        if (located && Gather(*located) && located->Type() != pinned)
            Expand(*located);
    }
}

void Expansion::ExpandBackwards(Object const &object) {
    std::uint32_t lastType = object.Type();
    for (std::uint32_t const entry : object.to) {
        Link const *const link = graph.LinkOf(entry);
        if (!link || link->Type() == 0)
            continue;
        if (link->Type() == parentLink && (lastType == file || lastType == pinned))
            continue;
        Object *const source = graph.Find(link->source);
        if (!source || (source->flags & visited))
            continue;
        lastType = source->Type();
        Object *const found = lastType == vfile ? Resolved(object.id) : source;
        if (found && Gather(*found))
            Expand(*found);
    }
}

std::vector<Id> Expansion::TakeResults() {
    std::vector<Id> results(gathered.rbegin(), gathered.rend());
    gathered.clear();
    return results;
}

std::vector<Id> Expansion::Forward(Id start, std::optional<std::string> const &basePath) {
    base = basePath;
    Expand(*graph.Find(start));
    return TakeResults();
}

std::vector<Id> Expansion::Backward(Id start, std::optional<std::string> const &basePath) {
    base = basePath;
    ExpandBackwards(*graph.Find(start));
    return TakeResults();
}

// The path up to its last backslash, but not up to that of a drive's root.
std::optional<std::string> Expansion::FolderOf(Id start) const {
    std::optional<std::string> path = Paths(graph).FullPath(start);
    if (path) {
        std::size_t const separator = path->rfind('\\');
        if (separator != std::string::npos && separator >= 3)
            path->resize(separator);
    }
    return path;
}

void Expansion::ClearMarks(std::vector<Id> const &results) {
    for (Id const id : results)
        graph.Find(id)->flags &= ~visited;
}

std::vector<Id> Expansion::Dependents(Id start) {
    std::optional<std::string> const folder = FolderOf(start);
    std::vector<Id> results;
    if (folder)
        results = Forward(start, folder);
    ClearMarks(results);
    return results;
}

std::vector<Id> Expansion::Referrers(Id start) {
    std::optional<std::string> const folder = FolderOf(start);
    std::vector<Id> results;
    if (folder)
        results = Backward(start, folder);
    ClearMarks(results);
    return results;
}

} // namespace mirror

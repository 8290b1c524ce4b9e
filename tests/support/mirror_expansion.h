// Dependency expansion, told step by step over the plain graph. It recurses as deep as the
// graph does and sets its marks in the objects' flags.
#pragma once

#include "mirror.h"
#include "mirror_paths.h"

#include <optional>
#include <string>
#include <vector>

namespace mirror {

class Expansion {
public:
    Expansion(Graph &whole, System const &asked) : graph(whole), system(asked) {}

    // Ids in the order of the results: the last one gathered comes first. Marks stay set.
    std::vector<Id> Forward(Id start, std::optional<std::string> const &basePath);
    std::vector<Id> Backward(Id start, std::optional<std::string> const &basePath);
    // With the object's own folder as base path and the marks cleared; empty for none.
    std::vector<Id> Dependents(Id start);
    std::vector<Id> Referrers(Id start);

private:
    void Expand(Object const &object);
    void ExpandBackwards(Object const &object);
    bool Gather(Object &object);
    Object *Resolved(Id id);
    std::optional<std::string> FolderOf(Id start) const;
    std::vector<Id> TakeResults();
    void ClearMarks(std::vector<Id> const &results);

    Graph &graph;
    System system;
    std::optional<std::string> base;
    std::vector<Id> gathered;
};

} // namespace mirror

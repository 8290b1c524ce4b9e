#include "answer/value_walks.h"

#include "model.h"

#include <algorithm>
#include <functional>
#include <unordered_set>

namespace qvlink {
namespace {

Dependency NameOfFile(CQVUObject &value, CQVUObject &file) {
    return {&value, {&file, &file, LINK_REFERS, Rule::value}};
}

CQVUObject *ToldAs(Need const &need) { return need.found ? need.found : need.asked; }

// The object itself if it is a value.
std::vector<CQVUObject *> ValuesBelow(CQVUDatabase &database, CQVUObject &start) {
    std::vector<CQVUObject *> values;
    std::vector<CQVUObject *> waiting{&start};
    std::unordered_set<CQVUObject *> seen{&start};
    while (!waiting.empty()) {
        CQVUObject *const object = waiting.back();
        waiting.pop_back();
        if (TypeOf(*object) == OBJ_VALUE) {
            values.push_back(object);
        }
        for (Edge const &edge : LinksFrom(database, *object, LINK_PARENT)) {
            if (seen.insert(edge.other).second) {
                waiting.push_back(edge.other);
            }
        }
    }
    return values;
}

// Each file that is named once.
std::vector<Dependency> NamedBy(CQVUDatabase &database, std::vector<CQVUObject *> const &values) {
    std::vector<Dependency> named;
    std::unordered_set<CQVUObject *> seen;
    for (CQVUObject *const value : values) {
        for (Edge const &edge : LinksFrom(database, *value, LINK_REFERS)) {
            if (seen.insert(edge.other).second) {
                named.push_back(NameOfFile(*value, *edge.other));
            }
        }
    }
    return named;
}

void Sort(CQVUDatabase &database, std::vector<Dependency> &dependencies) {
    PathOrder order(database);
    std::sort(dependencies.begin(), dependencies.end(),
              [&](Dependency const &a, Dependency const &b) {
                  return order(ToldAs(a.need), ToldAs(b.need));
              });
}

} // namespace

std::vector<Dependency> FindValueDependencies(CQVUDatabase &database, CQVUObject &start,
                                              bool direct) {
    std::vector<CQVUObject *> values = ValuesBelow(database, start);
    PathOrder order(database);
    std::sort(values.begin(), values.end(), std::ref(order));
    std::vector<Dependency> found = NamedBy(database, values);
    std::unordered_set<CQVUObject *> told;
    for (Dependency const &dependency : found) {
        told.insert(dependency.need.found);
    }
    std::vector<Dependency> const named = direct ? std::vector<Dependency>() : found;
    for (Dependency const &file : named) {
        for (Dependency const &need : FindDependencies(database, *file.need.found, false)) {
            if (told.insert(ToldAs(need.need)).second) {
                found.push_back(need);
            }
        }
    }
    Sort(database, found);
    return found;
}

std::vector<TreeLine> ValueTree(CQVUDatabase &database, CQVUObject &value) {
    std::vector<Dependency> named = NamedBy(database, {&value});
    Sort(database, named);
    std::vector<TreeLine> lines;
    for (Dependency const &file : named) {
        lines.push_back({0, file, false});
        for (TreeLine line : DependencyTree(database, *file.need.found)) {
            ++line.depth;
            lines.push_back(line);
        }
    }
    return lines;
}

std::vector<Dependency> FindValueChain(CQVUDatabase &database, CQVUObject &value,
                                       CQVUObject &goal) {
    std::vector<Dependency> shortest;
    for (Dependency const &file : NamedBy(database, {&value})) {
        std::vector<Dependency> chain{file};
        if (file.need.found != &goal) {
            std::vector<Dependency> const rest = FindChain(database, *file.need.found, goal);
            chain.insert(chain.end(), rest.begin(), rest.end());
        }
        bool const isChain = file.need.found == &goal || chain.size() > 1;
        if (isChain && (shortest.empty() || chain.size() < shortest.size())) {
            shortest = std::move(chain);
        }
    }
    return shortest;
}

std::vector<Referrer> FindReferringValues(CQVUDatabase &database,
                                          std::vector<CQVUObject *> const &files) {
    std::vector<Referrer> referrers;
    std::unordered_set<CQVUObject *> seenValues;
    std::unordered_set<CQVUObject *> seen;
    std::vector<CQVUObject *> waiting = files;
    while (!waiting.empty()) {
        CQVUObject *const file = waiting.back();
        waiting.pop_back();
        if (!seen.insert(file).second) {
            continue;
        }
        for (Edge const &edge : LinksTo(database, *file, LINK_REFERS | LINK_SYMLINK)) {
            if (TypeOf(*edge.link) == LINK_SYMLINK) {
                waiting.push_back(edge.other);
            } else if (seenValues.insert(edge.other).second) {
                referrers.push_back({edge.other, NameOfFile(*edge.other, *file).need});
            }
        }
    }
    return referrers;
}

} // namespace qvlink

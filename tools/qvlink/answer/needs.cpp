#include "answer/needs.h"

#include "model.h"

#include <unordered_set>

namespace qvlink {
namespace {

constexpr std::uint32_t NeedMask = LINK_DEPENDENCY_MASK | LINK_MISSING;

Rule RuleOf(std::uint32_t foundBits, std::uint32_t linkType) {
    if (linkType == LINK_SYMLINK) {
        return Rule::symlink;
    }
    if (linkType == LINK_INTERPRETER) {
        return Rule::interpreter;
    }
    if (foundBits & LINK_FOUND_DIRECT) {
        return Rule::byPath;
    }
    if (foundBits & LINK_FOUND_RPATH) {
        return Rule::rpath;
    }
    if (foundBits & LINK_FOUND_RUNPATH) {
        return Rule::runpath;
    }
    if (foundBits & LINK_FOUND_CACHE) {
        return Rule::cache;
    }
    return foundBits & LINK_FOUND_DEFAULT ? Rule::defaultFolder : Rule::linked;
}

} // namespace

std::vector<Need> Needs::Of(CQVUObject const &object) {
    std::vector<Edge> const edges = LinksFrom(m_database, object, NeedMask | LINK_FOUND_MASK);
    std::unordered_map<std::uint32_t, std::uint32_t> rules;
    std::unordered_map<std::uint32_t, std::size_t> places;
    for (Edge const &edge : edges) {
        rules[edge.other->dwID] |= TypeOf(*edge.link) & LINK_FOUND_MASK;
    }
    std::vector<Need> needs;
    for (Edge const &edge : edges) {
        if (!(TypeOf(*edge.link) & NeedMask)) {
            continue;
        }
        Need const need = TypeOf(*edge.other) == OBJ_VFILE ? ByName(edge) : Located(edge, rules);
        auto const [place, isNew] = places.try_emplace(edge.other->dwID, needs.size());
        if (isNew) {
            needs.push_back(need);
        } else if (need.linkType < needs[place->second].linkType) {
            needs[place->second] = need;
        }
    }
    return needs;
}

Need Needs::Located(Edge const &edge,
                    std::unordered_map<std::uint32_t, std::uint32_t> const &rules) {
    std::uint32_t const type = TypeOf(*edge.link);
    return {edge.other, edge.other, type, RuleOf(rules.at(edge.other->dwID), type)};
}

Need Needs::ByName(Edge const &edge) {
    std::uint32_t const type = TypeOf(*edge.link);
    CQVUObject *const found = type == LINK_MISSING ? nullptr : Resolve(*edge.other);
    if (!found) {
        return {edge.other, nullptr, type, Rule::missing};
    }
    bool const isBeside = EqualNames(FolderOf(m_database, *found), m_startFolder);
    return {edge.other, found, type, isBeside ? Rule::startFolder : Rule::systemFolder};
}

CQVUObject *Needs::Resolve(CQVUObject &name) {
    auto const [place, isNew] = m_resolved.try_emplace(name.dwID, nullptr);
    if (isNew) {
        place->second = name.Resolve(m_startFolder.empty() ? nullptr : m_startFolder.data());
    }
    return place->second;
}

bool GoesOn(Need const &need) {
    return need.found && (need.found == need.asked || TypeOf(*need.found) != OBJ_PINNED);
}

PathOrder::Key const &PathOrder::KeyOf(CQVUObject *object) {
    auto const [place, isNew] = m_keys.try_emplace(object->dwID);
    if (isNew) {
        std::optional<Place> const path = PlaceOf(m_database, *object);
        place->second = {!path, path ? DatabasePath(*path) : std::string(NameOf(*object)),
                         object->dwID};
    }
    return place->second;
}

} // namespace qvlink

#include "answer/referrers.h"

#include "answer/value_walks.h"
#include "model.h"

#include <algorithm>
#include <deque>
#include <functional>
#include <map>
#include <set>
#include <unordered_set>

namespace qvlink {
namespace {

constexpr std::uint32_t FileMask = LINK_NEEDS | LINK_DELAYED | LINK_INTERPRETER;
constexpr std::uint32_t NameMask = LINK_NEEDS | LINK_DELAYED;

using Objects = std::vector<CQVUObject *>;
// The object of that id, and the file or name that it needs on its way to a target.
using Askers = std::map<std::uint32_t, std::pair<CQVUObject *, CQVUObject *>>;
// Whether `name` comes to `found` for `asker`.
using Reaches = std::function<bool(CQVUObject &name, CQVUObject &found, CQVUObject &asker)>;

// A walk against the direction of needs.
class BackwardWalk {
public:
    BackwardWalk(CQVUDatabase &database, bool direct, Reaches reaches)
        : m_database(database), m_direct(direct), m_reaches(std::move(reaches)) {}

    Askers Run(Objects const &targets) {
        for (CQVUObject *const target : targets) {
            Enqueue(target);
        }
        m_targetsLeft = m_queue.size();
        for (; !m_queue.empty(); m_queue.pop_front()) {
            Visit(*m_queue.front(), m_targetsLeft > 0);
            m_targetsLeft -= m_targetsLeft > 0;
        }
        return std::move(m_askers);
    }

private:
    void Enqueue(CQVUObject *object) {
        if (m_seen.insert(object->dwID).second) {
            m_queue.push_back(object);
        }
    }

    void Visit(CQVUObject &object, bool isTarget) {
        if (TypeOf(object) == OBJ_VFILE) {
            for (Edge const &edge : LinksTo(m_database, object, NameMask | LINK_MISSING)) {
                Ask(*edge.other, object);
            }
            return;
        }
        for (Edge const &edge : LinksTo(m_database, object, FileMask)) {
            Ask(*edge.other, object);
        }
        for (Edge const &edge : LinksTo(m_database, object, LINK_SYMLINK)) {
            Enqueue(edge.other);
        }
        // A walk forward ends at an OBJ_PINNED that a bare name came to.
        if (isTarget || TypeOf(object) != OBJ_PINNED) {
            VisitByName(object);
        }
    }

    void VisitByName(CQVUObject &object) {
        std::string text(NameOf(object));
        CQVUObject *const name = text.empty() ? nullptr : m_database.LookupVFILE(text.data());
        if (!name) {
            return;
        }
        for (Edge const &edge : LinksTo(m_database, *name, NameMask)) {
            if (m_reaches(*name, object, *edge.other)) {
                Ask(*edge.other, object);
            }
        }
    }

    void Ask(CQVUObject &asker, CQVUObject &needed) {
        if (m_seen.count(asker.dwID)) {
            return;
        }
        m_askers.try_emplace(asker.dwID, &asker, &needed);
        if (!m_direct) {
            Enqueue(&asker);
        }
    }

    CQVUDatabase &m_database;
    bool m_direct;
    Reaches m_reaches;
    Askers m_askers;
    std::deque<CQVUObject *> m_queue;
    std::unordered_set<std::uint32_t> m_seen;
    std::size_t m_targetsLeft = 0;
};

// What the needs of objects come to, a view for each folder to start from.
class Views {
public:
    explicit Views(CQVUDatabase &database) : m_database(database) {}

    Needs &From(std::string const &folder) {
        return m_views.try_emplace(folder, m_database, folder).first->second;
    }

private:
    CQVUDatabase &m_database;
    std::map<std::string, Needs> m_views;
};

// For each bare name the folders that hold a file so named, both in lower case.
using Holders = std::map<std::string, std::set<std::string>>;

Holders FindHolders(CQVUDatabase &database, Objects const &names) {
    Holders holders;
    for (CQVUObject *const name : names) {
        holders[FoldName(NameOf(*name))];
    }
    for (CQVUObject *const file : FindObjects(database, "*", OBJ_FILE | OBJ_PINNED)) {
        auto const holder = holders.find(FoldName(NameOf(*file)));
        if (holder != holders.end()) {
            holder->second.insert(FoldName(FolderOf(database, *file)));
        }
    }
    return holders;
}

// Which program gets what by a bare name depends on its folder, so the walk is done once
// for each set of folders that see all names alike, and tells of these folders' objects.
class ByFolder {
public:
    ByFolder(CQVUDatabase &database, Objects const &targets, Askers const &candidates,
             Objects const &names)
        : m_database(database), m_targets(targets), m_names(names),
          m_holders(FindHolders(database, names)), m_views(database) {
        std::map<std::string, Objects> folders;
        for (auto const &[id, asker] : candidates) {
            folders[FolderOf(database, *asker.first)].push_back(asker.first);
        }
        for (auto const &[folder, objects] : folders) {
            auto &group = m_groups[OwnNames(folder)];
            group.first = folder;
            group.second.insert(group.second.end(), objects.begin(), objects.end());
        }
    }

    Askers Run() {
        Askers result;
        for (auto const &[ownNames, group] : m_groups) {
            Needs &needs = m_views.From(group.first);
            Askers const askers =
                BackwardWalk(m_database, false,
                             [&](CQVUObject &name, CQVUObject &found, CQVUObject &) {
                                 return needs.Resolve(name) == &found;
                             })
                    .Run(m_targets);
            for (CQVUObject *const object : group.second) {
                auto const asker = askers.find(object->dwID);
                if (asker != askers.end()) {
                    result.insert(*asker);
                }
            }
        }
        return result;
    }

private:
    // What names come to in this folder that come to something else elsewhere.
    std::vector<std::pair<std::uint32_t, CQVUObject *>> OwnNames(std::string const &folder) {
        std::vector<std::pair<std::uint32_t, CQVUObject *>> own;
        std::string const folded = FoldName(folder);
        for (CQVUObject *const name : m_names) {
            if (m_holders.at(FoldName(NameOf(*name))).count(folded)) {
                own.emplace_back(name->dwID, m_views.From(folder).Resolve(*name));
            }
        }
        return own;
    }

    using Group = std::pair<std::string, Objects>; // one of its folders, and its objects

    CQVUDatabase &m_database;
    Objects const &m_targets;
    Objects const &m_names;
    Holders m_holders;
    Views m_views;
    std::map<std::vector<std::pair<std::uint32_t, CQVUObject *>>, Group> m_groups;
};

Askers FindDirectAskers(CQVUDatabase &database, Objects const &targets) {
    Views views(database);
    return BackwardWalk(database, true,
                        [&](CQVUObject &name, CQVUObject &found, CQVUObject &asker) {
                            return views.From(FolderOf(database, asker)).Resolve(name) == &found;
                        })
        .Run(targets);
}

Askers FindAllAskers(CQVUDatabase &database, Objects const &targets) {
    std::set<CQVUObject *> names;
    Askers const candidates =
        BackwardWalk(database, false, [&](CQVUObject &name, CQVUObject &, CQVUObject &) {
            names.insert(&name);
            return true;
        }).Run(targets);
    if (names.empty()) {
        return candidates;
    }
    return ByFolder(database, targets, candidates, {names.begin(), names.end()}).Run();
}

Need NeedFor(Needs &needs, CQVUObject &asker, CQVUObject &needed) {
    for (Need const &need : needs.Of(asker)) {
        if (need.found == &needed || need.asked == &needed) {
            return need;
        }
    }
    return {&needed, &needed, LINK_NEEDS, Rule::linked};
}

// Values that name a target, or a file that comes to need one.
void AddValues(CQVUDatabase &database, Objects const &targets, bool direct,
               std::vector<Referrer> &referrers) {
    Objects named = targets;
    for (std::size_t i = 0; !direct && i < referrers.size(); ++i) {
        named.push_back(referrers[i].object);
    }
    std::vector<Referrer> const values = FindReferringValues(database, named);
    referrers.insert(referrers.end(), values.begin(), values.end());
}

} // namespace

std::vector<Referrer> FindReferrers(CQVUDatabase &database, Objects const &targets, bool direct) {
    Askers const askers =
        direct ? FindDirectAskers(database, targets) : FindAllAskers(database, targets);
    Views views(database);
    std::vector<Referrer> referrers;
    for (auto const &[id, asker] : askers) {
        auto const [object, needed] = asker;
        Needs &needs = views.From(FolderOf(database, *object));
        referrers.push_back({object, NeedFor(needs, *object, *needed)});
    }
    AddValues(database, targets, direct, referrers);
    PathOrder order(database);
    std::sort(referrers.begin(), referrers.end(),
              [&](Referrer const &a, Referrer const &b) { return order(a.object, b.object); });
    return referrers;
}

} // namespace qvlink

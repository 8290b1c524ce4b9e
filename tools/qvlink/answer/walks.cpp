#include "answer/walks.h"

#include "model.h"

#include <algorithm>
#include <deque>
#include <map>
#include <unordered_map>

namespace qvlink {
namespace {

// What a need is told as: the file found, or the name that nothing provides.
CQVUObject *ToldAs(Need const &need) { return need.found ? need.found : need.asked; }

void Sort(CQVUDatabase &database, std::vector<Dependency> &dependencies) {
    PathOrder order(database);
    std::sort(dependencies.begin(), dependencies.end(),
              [&](Dependency const &a, Dependency const &b) {
                  return order(ToldAs(a.need), ToldAs(b.need));
              });
}

// A walk along needs from the programs of one folder.
class Walk {
public:
    enum Programs { one, many };
    Walk(CQVUDatabase &database, std::string startFolder, Programs programs)
        : m_database(database), m_needs(database, std::move(startFolder)), m_programs(programs) {}

    // False if there is no such file, only links to it.
    bool Start(CQVUObject &object) {
        CQVUObject *const program = FollowLinks(m_database, &object);
        if (program && m_expanded.insert(program->dwID).second) {
            m_told.insert({object.dwID, program->dwID});
            m_queue.push_back(program);
        }
        return program != nullptr;
    }

    void Run(bool direct) {
        std::size_t left = direct ? m_queue.size() : 0;
        while (!m_queue.empty()) {
            CQVUObject *const object = m_queue.front();
            m_queue.pop_front();
            Expand(*object);
            if (direct && --left == 0) {
                return;
            }
        }
    }

    std::vector<Dependency> &Found() { return m_found; }

    // The file that a name came to before it was missed by one that can't find it itself.
    // The loader goes breadth first too, and what it has loaded counts for its name.
    CQVUObject *LoadedFor(CQVUObject const &missingName) const {
        auto const loaded = m_loaded.find(NameOf(missingName));
        return loaded == m_loaded.end() || m_told.count(missingName.dwID) ? nullptr
                                                                          : loaded->second;
    }

private:
    void Expand(CQVUObject &object) {
        for (Need const &need : m_needs.Of(object)) {
            if (need.linkType == LINK_MISSING && m_loaded.count(NameOf(*need.asked))) {
                continue;
            }
            if (m_programs == one && need.linkType == LINK_NEEDS && need.found == need.asked) {
                m_loaded.try_emplace(NameOf(*need.found), need.found);
            }
            if (m_told.insert(ToldAs(need)->dwID).second) {
                m_found.push_back({&object, need});
            }
            CQVUObject *const file = GoesOn(need) ? FollowLinks(m_database, need.found) : nullptr;
            if (file && m_expanded.insert(file->dwID).second) {
                m_queue.push_back(file);
            }
        }
    }

    CQVUDatabase &m_database;
    Needs m_needs;
    Programs m_programs;
    std::deque<CQVUObject *> m_queue;
    std::unordered_set<std::uint32_t> m_expanded;
    std::unordered_set<std::uint32_t> m_told;
    std::map<std::string_view, CQVUObject *> m_loaded; // ELF libraries by name
    std::vector<Dependency> m_found;
};

// Depth first, with the lines still to be written on a stack of its own: a chain may be
// longer than the thread's stack is deep.
class TreeWriter {
public:
    TreeWriter(CQVUDatabase &database, std::string startFolder)
        : m_database(database), m_needs(database, std::move(startFolder)), m_order(database) {}

    std::vector<TreeLine> Write(CQVUObject &program) {
        m_expanded.insert(program.dwID);
        PushNeeds(program, 0);
        while (!m_waiting.empty()) {
            TreeLine line = m_waiting.back();
            m_waiting.pop_back();
            Need const &need = line.dependency.need;
            CQVUObject *const file = GoesOn(need) ? FollowLinks(m_database, need.found) : nullptr;
            bool const isNew = file && m_expanded.insert(file->dwID).second;
            line.isRepeated = file && !isNew && !m_needs.Of(*file).empty();
            m_lines.push_back(line);
            if (isNew) {
                PushNeeds(*file, line.depth + 1);
            }
        }
        return std::move(m_lines);
    }

private:
    void PushNeeds(CQVUObject &object, std::size_t depth) {
        std::vector<Need> needs = m_needs.Of(object);
        std::sort(needs.begin(), needs.end(),
                  [&](Need const &a, Need const &b) { return m_order(ToldAs(b), ToldAs(a)); });
        for (Need const &need : needs) {
            m_waiting.push_back({depth, {&object, need}, false});
        }
    }

    CQVUDatabase &m_database;
    Needs m_needs;
    PathOrder m_order;
    std::unordered_set<std::uint32_t> m_expanded;
    std::vector<TreeLine> m_waiting;
    std::vector<TreeLine> m_lines;
};

std::vector<Dependency> ChainBack(CQVUObject const &start, Dependency const &last,
                                  std::unordered_map<std::uint32_t, Dependency> const &reachedBy) {
    std::vector<Dependency> chain{last};
    while (chain.back().requester != &start) {
        chain.push_back(reachedBy.at(chain.back().requester->dwID));
    }
    std::reverse(chain.begin(), chain.end());
    return chain;
}

} // namespace

std::vector<Dependency> FindDependencies(CQVUDatabase &database, CQVUObject &start, bool direct) {
    Walk walk(database, FolderOf(database, start), Walk::one);
    walk.Start(start);
    walk.Run(direct);
    Sort(database, walk.Found());
    return std::move(walk.Found());
}

std::vector<TreeLine> DependencyTree(CQVUDatabase &database, CQVUObject &start) {
    CQVUObject *const program = FollowLinks(database, &start);
    if (!program) {
        return {};
    }
    std::vector<TreeLine> lines = TreeWriter(database, FolderOf(database, start)).Write(*program);
    Walk walk(database, FolderOf(database, start), Walk::one);
    walk.Start(start);
    walk.Run(false);
    for (TreeLine &line : lines) {
        Need &need = line.dependency.need;
        CQVUObject *const loaded =
            need.linkType == LINK_MISSING ? walk.LoadedFor(*need.asked) : nullptr;
        if (loaded) {
            need.found = loaded;
            need.rule = Rule::loaded;
            line.isRepeated = true;
        }
    }
    return lines;
}

std::vector<CQVUObject *> FilesBelow(CQVUDatabase &database, CQVUObject &folder) {
    std::vector<CQVUObject *> files;
    std::vector<CQVUObject *> waiting{&folder};
    std::unordered_set<std::uint32_t> seen{folder.dwID};
    while (!waiting.empty()) {
        CQVUObject *const object = waiting.back();
        waiting.pop_back();
        for (Edge const &edge : LinksFrom(database, *object, LINK_PARENT)) {
            if (seen.insert(edge.other->dwID).second) {
                (IsFolder(*edge.other) ? waiting : files).push_back(edge.other);
            }
        }
    }
    return files;
}

std::vector<Dependency> FindFolderDependencies(CQVUDatabase &database, CQVUObject &folder,
                                               bool direct) {
    std::map<std::string, std::vector<CQVUObject *>> programs;
    std::unordered_set<std::uint32_t> inside;
    for (CQVUObject *const file : FilesBelow(database, folder)) {
        inside.insert(file->dwID);
        if (KindOf(file) != FileKind::symlink) {
            programs[FolderOf(database, *file)].push_back(file);
        }
    }
    std::vector<Dependency> found;
    for (auto const &[path, files] : programs) {
        Walk walk(database, path, Walk::many);
        for (CQVUObject *const file : files) {
            walk.Start(*file);
        }
        walk.Run(direct);
        for (Dependency const &dependency : walk.Found()) {
            if (inside.insert(ToldAs(dependency.need)->dwID).second) {
                found.push_back(dependency);
            }
        }
    }
    Sort(database, found);
    return found;
}

std::vector<Dependency> FindChain(CQVUDatabase &database, CQVUObject &start, CQVUObject &goal) {
    Needs needs(database, FolderOf(database, start));
    std::unordered_map<std::uint32_t, Dependency> reachedBy;
    std::deque<CQVUObject *> queue{&start};
    for (; !queue.empty(); queue.pop_front()) {
        CQVUObject *const object = queue.front();
        for (Need const &need : needs.Of(*object)) {
            Dependency const step{object, need};
            if (need.found == &goal || need.asked == &goal) {
                return ChainBack(start, step, reachedBy);
            }
            if (GoesOn(need) && need.found != &start &&
                reachedBy.try_emplace(need.found->dwID, step).second) {
                queue.push_back(need.found);
            }
        }
    }
    return {};
}

} // namespace qvlink

#include "scan/program_links.h"

#include <algorithm>
#include <new>
#include <set>
#include <utility>

#include "model.h"
#include "platform/host.h"
#include "platform/walk.h"

namespace qvlink {
namespace {

constexpr std::uint32_t OWN_LINKS = LINK_NEEDS | LINK_DELAYED | LINK_INTERPRETER | LINK_MISSING |
                                    LINK_RPATH | LINK_RUNPATH | LINK_FOUND_MASK;

bool IsElf(CQVUObject &object) { return (object.GetFlags() & FLAG_ELF) != 0; }

std::uint32_t LinkTypeOf(CQVULink const &link) {
    return static_cast<std::uint32_t>(link.GetType());
}

} // namespace

std::string HostPathOf(CQVUDatabase &database, CQVUObject &object) {
    auto const place = PlaceOf(database, object);
    return place ? HostPath(*place) : std::string();
}

ProgramLinks::ProgramLinks(Session &session)
    : m_session(session), m_names(session.database, session.tree, OBJ_VFILE),
      m_runPaths(session.database, session.tree, OBJ_RUNPATH), m_search(SystemLoaderSettings()) {}

void ProgramLinks::Queue(CQVUObject &object) {
    if (m_queued.insert(object.dwID).second) {
        m_queue.push_back(object.dwID);
    }
}

void ProgramLinks::Read(CQVUObject &object, Program program) {
    m_programs[object.dwID] = std::move(program);
    Queue(object);
}

void ProgramLinks::Known(CQVUObject &object) { Queue(object); }

void ProgramLinks::BeforeRemoval(CQVUObject &object) {
    for (Edge const &edge : LinksTo(m_session.database, object, LINK_NEEDS | LINK_INTERPRETER)) {
        if (IsElf(*edge.other) && m_programs.count(edge.other->dwID) == 0) {
            m_programs[edge.other->dwID] = Recall(*edge.other);
            Queue(*edge.other);
        }
    }
}

// What an ELF file asks for, as its links tell it.
Program ProgramLinks::Recall(CQVUObject &object) const {
    CQVUDatabase &database = m_session.database;
    Program program;
    program.flags = static_cast<std::uint32_t>(object.GetFlags());
    std::set<CQVUObject *> byPath;
    for (Edge const &edge : LinksFrom(database, object, LINK_FOUND_DIRECT)) {
        byPath.insert(edge.other);
    }
    auto const textOf = [&](CQVUObject &target, bool isPath) {
        return isPath && TypeOf(target) != OBJ_VFILE ? HostPathOf(database, target)
                                                     : TextOf(target);
    };
    for (Edge const &edge : LinksFrom(database, object, LINK_NEEDS)) {
        program.needed.push_back(textOf(*edge.other, byPath.count(edge.other) != 0));
    }
    for (Edge const &edge : LinksFrom(database, object, LINK_INTERPRETER)) {
        program.interpreter = textOf(*edge.other, true);
    }
    for (Edge const &edge : LinksFrom(database, object, LINK_MISSING)) {
        std::string name = TextOf(*edge.other);
        if (name != program.interpreter) {
            program.needed.push_back(std::move(name));
        }
    }
    for (Edge const &edge : LinksFrom(database, object, LINK_RPATH)) {
        program.rpath = TextOf(*edge.other);
    }
    for (Edge const &edge : LinksFrom(database, object, LINK_RUNPATH)) {
        program.runpath = TextOf(*edge.other);
    }
    return program;
}

void ProgramLinks::LinkAll(Locate const &locate, std::vector<std::uint32_t> &lost) {
    // Locating a library may put it at the queue's end.
    while (!m_queue.empty()) {
        Session::StopIfAsked();
        auto *const object =
            static_cast<CQVUObject *>(m_session.database.LookupObject(m_queue.front()));
        m_queue.pop_front();
        if (!object) {
            continue;
        }
        auto const known = m_programs.find(object->dwID);
        bool const recalled = known == m_programs.end();
        if (recalled && !IsElf(*object)) {
            // The names of a PE file don't depend on what else there is.
            m_session.summary.needs +=
                LinksFrom(m_session.database, *object, LINK_NEEDS | LINK_DELAYED).size();
            continue;
        }
        Program const program = recalled ? Recall(*object) : known->second;
        Link(*object, Wishes(*object, program, locate), lost);
    }
}

void ProgramLinks::RemoveOrphans() {
    m_names.RemoveOrphans();
    m_runPaths.RemoveOrphans();
}

std::vector<ProgramLinks::Wish> ProgramLinks::Wishes(CQVUObject &object, Program const &program,
                                                     Locate const &locate) {
    std::vector<Wish> wishes;
    std::string const path = HostPathOf(m_session.database, object);
    if (program.flags & FLAG_PE) {
        WishNames(program.needed, LINK_NEEDS, path, wishes);
        WishNames(program.delayed, LINK_DELAYED, path, wishes);
        return wishes;
    }
    Needer const needer{program.flags, SplitLastName(path).folder, program.rpath, program.runpath};
    if (!program.interpreter.empty()) {
        WishInterpreter(needer, program.interpreter, locate, wishes);
    }
    for (std::string const &name : program.needed) {
        WishLibrary(needer, name, locate, path, wishes);
    }
    if (CQVUObject *const text = m_runPaths.Of(program.rpath)) {
        wishes.push_back({text, LINK_RPATH});
    }
    if (CQVUObject *const text = m_runPaths.Of(program.runpath)) {
        wishes.push_back({text, LINK_RUNPATH});
    }
    return wishes;
}

void ProgramLinks::WishNames(std::vector<std::string> const &names, std::uint32_t type,
                             std::string const &who, std::vector<Wish> &wishes) {
    for (std::string const &name : names) {
        ++m_session.summary.needs;
        if (CQVUObject *const object = m_names.Of(name)) {
            wishes.push_back({object, type});
        } else {
            m_session.Problem(ScanProblem::unrepresentable, who,
                              "the name of a needed library is longer than 250 bytes");
        }
    }
}

void ProgramLinks::WishLibrary(Needer const &needer, std::string const &name, Locate const &locate,
                               std::string const &who, std::vector<Wish> &wishes) {
    auto const located = m_search.Find(needer, name);
    if (CQVUObject *const library = located ? locate(located->path) : nullptr) {
        ++m_session.summary.needs;
        wishes.push_back({library, LINK_NEEDS});
        wishes.push_back({library, located->rule});
        return;
    }
    ++m_session.summary.missing;
    WishNames({name}, LINK_MISSING, who, wishes);
}

void ProgramLinks::WishInterpreter(Needer const &needer, std::string const &path,
                                   Locate const &locate, std::vector<Wish> &wishes) {
    auto const located = m_search.Find(needer, path);
    if (CQVUObject *const interpreter = located ? locate(located->path) : nullptr) {
        wishes.push_back({interpreter, LINK_INTERPRETER});
    } else if (CQVUObject *const name = m_names.Of(path)) {
        wishes.push_back({name, LINK_INTERPRETER});
        wishes.push_back({name, LINK_MISSING});
    }
}

void ProgramLinks::Link(CQVUObject &object, std::vector<Wish> const &wishes,
                        std::vector<std::uint32_t> &lost) {
    std::set<std::pair<CQVUObject *, std::uint32_t>> wanted;
    for (Wish const &wish : wishes) {
        wanted.insert({wish.target, wish.type});
    }
    for (Edge const &edge : LinksFrom(m_session.database, object, OWN_LINKS)) {
        // What stands already isn't made again; what nobody wants goes.
        if (wanted.erase({edge.other, LinkTypeOf(*edge.link)}) == 0) {
            lost.push_back(edge.other->dwID);
            edge.link->Delete();
            m_session.tree.NoteChange();
        }
    }
    for (Wish const &wish : wishes) {
        if (wanted.erase({wish.target, wish.type}) != 0) {
            if (!object.LinkTo(wish.target, wish.type)) {
                throw std::bad_alloc();
            }
            m_session.tree.NoteChange();
        }
    }
}

} // namespace qvlink

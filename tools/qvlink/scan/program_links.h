// From what programs ask for to links in the graph.
#pragma once

#include <deque>
#include <functional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "platform/elf_search.h"
#include "readers/program.h"
#include "scan/session.h"
#include "scan/shared_texts.h"

namespace qvlink {

// The needs of an ELF file that wasn't read again are taken from its own links: a found
// library's name is that of the link's target, a missing one's stands in the graph too,
// and so does the run path. So each scan puts all names to the loader's search anew, and
// a library that came, went or moved is noticed without opening what needs it.
class ProgramLinks {
public:
    explicit ProgramLinks(Session &session);

    // A file was read just now; `program` may be none, if it was one before.
    void Read(CQVUObject &object, Program program);
    // A program was found as it was.
    void Known(CQVUObject &object);
    // An object is about to go: those that need it have to look for another.
    void BeforeRemoval(CQVUObject &object);

    // Makes and removes links so that they tell what these programs need now. `locate`
    // gives the object of a file on the host, or null; it may call Read and Known.
    // `lost` gets the ids of the objects that a link was taken from.
    void LinkAll(std::function<CQVUObject *(std::string const &)> const &locate,
                 std::vector<std::uint32_t> &lost);
    // Deletes names and run paths that nobody asks for any more.
    void RemoveOrphans();

private:
    struct Wish {
        CQVUObject *target;
        std::uint32_t type;
    };
    using Locate = std::function<CQVUObject *(std::string const &)>;

    void Queue(CQVUObject &object);
    Program Recall(CQVUObject &object) const;
    std::vector<Wish> Wishes(CQVUObject &object, Program const &program, Locate const &locate);
    void WishNames(std::vector<std::string> const &names, std::uint32_t type,
                   std::string const &who, std::vector<Wish> &wishes);
    void WishLibrary(Needer const &needer, std::string const &name, Locate const &locate,
                     std::string const &who, std::vector<Wish> &wishes);
    void WishInterpreter(Needer const &needer, std::string const &path, Locate const &locate,
                         std::vector<Wish> &wishes);
    void Link(CQVUObject &object, std::vector<Wish> const &wishes,
              std::vector<std::uint32_t> &lost);

    Session &m_session;
    SharedTexts m_names;
    SharedTexts m_runPaths;
    ElfSearch m_search;
    std::deque<std::uint32_t> m_queue;
    std::unordered_set<std::uint32_t> m_queued;
    std::unordered_map<std::uint32_t, Program> m_programs; // by id, where they are known
};

} // namespace qvlink

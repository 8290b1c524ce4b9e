#include "commands/commands.h"

#include "answer/value_walks.h"
#include "answer/walks.h"
#include "commands/session.h"
#include "model.h"
#include "output/json.h"
#include "output/text.h"

#include <nlohmann/json.hpp>

namespace qvlink {
namespace {

// A bare name stands for the file that it comes to without a folder to start from.
CQVUObject &FindStart(CommandSession &session) {
    CQVUObject &object = session.Find(session.Asked().paths.front());
    CQVUObject *const file = TypeOf(object) == OBJ_VFILE ? object.Resolve(nullptr) : &object;
    if (!file) {
        throw NothingFound(session.Asked().paths.front() +
                           " is a name that no file in the system folders of the graph bears");
    }
    return *file;
}

std::string WhyNone(CommandSession &session, CQVUObject &start, CQVUObject const *program) {
    std::string const name = session.Names().Of(start);
    if (IsInRegistry(start)) {
        return TypeOf(start) == OBJ_VALUE ? name + " names no file of the graph"
                                          : "no value below " + name + " names a file of the graph";
    }
    if (!program) {
        return name + " is a symbolic link that runs in a circle";
    }
    if (KindOf(&start) == FileKind::symlink && program == &start) {
        return name + " is a symbolic link to something that is not in the graph";
    }
    if (IsFolder(start)) {
        return "no program below " + name + " needs anything from outside";
    }
    return name + (TypeOf(start) == OBJ_FILE && (start.dwFlags & FLAG_PROGRAM_MASK)
                       ? " needs nothing"
                       : " needs nothing: it is no ELF or PE program");
}

int PrintTreeOf(CommandSession &session, CQVUObject &start) {
    std::vector<TreeLine> const lines = IsInRegistry(start)
                                            ? ValueTree(session.Database(), start)
                                            : DependencyTree(session.Database(), start);
    if (session.Asked().json) {
        session.WriteJson({{"object", JsonOfObject(session.Names(), start)},
                           {"tree", JsonOfTree(session.Names(), lines)}});
    } else {
        session.Out().Line(session.Out().Safe(session.Names().Of(start)));
        PrintTree(session.Out(), session.Names(), lines, session.Asked().verbose);
    }
    return lines.empty() ? ExitNothing : ExitAnswered;
}

std::vector<Dependency> FindNeeds(CommandSession &session, CQVUObject &start, CQVUObject *program) {
    bool const direct = session.Asked().direct;
    if (IsInRegistry(start)) {
        return FindValueDependencies(session.Database(), start, direct);
    }
    return program && IsFolder(*program)
               ? FindFolderDependencies(session.Database(), *program, direct)
               : FindDependencies(session.Database(), start, direct);
}

} // namespace

int RunDeps(Request const &request) {
    CommandSession session(request);
    CQVUObject &start = FindStart(session);
    CQVUObject *const program = FollowLinks(session.Database(), &start);
    if (request.tree) {
        bool const isKey = (TypeOf(start) & (OBJ_HIVE | OBJ_KEY)) != 0;
        if (isKey || (program && IsFolder(*program))) {
            throw CommandError(request.paths.front() + " is a " + (isKey ? "key" : "folder") +
                               ", and --tree shows one program\nLeave --tree out to "
                               "see what all that lies below it needs.");
        }
        return PrintTreeOf(session, start);
    }
    std::vector<Dependency> const found = FindNeeds(session, start, program);
    if (request.json) {
        session.WriteJson({{"object", JsonOfObject(session.Names(), start)},
                           {"direct", request.direct},
                           {"dependencies", JsonOfDependencies(session.Names(), found)}});
        return found.empty() ? ExitNothing : ExitAnswered;
    }
    if (found.empty()) {
        throw NothingFound(WhyNone(session, start, program));
    }
    PrintDependencies(session.Out(), session.Names(), found, request.verbose);
    return ExitAnswered;
}

} // namespace qvlink

#include "commands/commands.h"

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
    std::vector<TreeLine> const lines = DependencyTree(session.Database(), start);
    if (session.Asked().json) {
        session.WriteJson({{"object", JsonOfObject(session.Names(), start)},
                           {"tree", JsonOfTree(session.Names(), lines)}});
    } else {
        session.Out().Line(session.Out().Safe(session.Names().Of(start)));
        PrintTree(session.Out(), session.Names(), lines, session.Asked().verbose);
    }
    return lines.empty() ? ExitNothing : ExitAnswered;
}

} // namespace

int RunDeps(Request const &request) {
    CommandSession session(request);
    CQVUObject &start = FindStart(session);
    CQVUObject *const program = FollowLinks(session.Database(), &start);
    bool const isFolder = program && IsFolder(*program);
    if (request.tree) {
        if (isFolder) {
            throw CommandError(request.paths.front() +
                               " is a folder, and --tree shows one program\nLeave --tree out to "
                               "see what all programs below the folder need.");
        }
        return PrintTreeOf(session, start);
    }
    std::vector<Dependency> const found =
        isFolder ? FindFolderDependencies(session.Database(), *program, request.direct)
                 : FindDependencies(session.Database(), start, request.direct);
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

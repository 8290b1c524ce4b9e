#include "commands/commands.h"

#include "answer/value_walks.h"
#include "answer/walks.h"
#include "commands/session.h"
#include "output/json.h"
#include "output/text.h"

#include <nlohmann/json.hpp>

namespace qvlink {

int RunWhy(Request const &request) {
    CommandSession session(request);
    CQVUObject &start = session.Find(request.paths[0]);
    CQVUObject &goal = session.Find(request.paths[1]);
    if (IsFolder(start) || IsFolder(goal)) {
        throw CommandError(request.paths[IsFolder(start) ? 0 : 1] +
                           " is a folder, and a chain leads from one program to one file\nUse "
                           "`qvlink deps` or `qvlink refs` for folders.");
    }
    std::vector<Dependency> const chain = TypeOf(start) == OBJ_VALUE
                                              ? FindValueChain(session.Database(), start, goal)
                                              : FindChain(session.Database(), start, goal);
    if (request.json) {
        session.WriteJson({{"from", JsonOfObject(session.Names(), start)},
                           {"to", JsonOfObject(session.Names(), goal)},
                           {"chain", JsonOfDependencies(session.Names(), chain)}});
        return chain.empty() ? ExitNothing : ExitAnswered;
    }
    if (chain.empty()) {
        throw NothingFound(session.Names().Of(start) + " does not depend on " +
                           session.Names().Of(goal));
    }
    PrintChain(session.Out(), session.Names(), start, chain, request.verbose);
    return ExitAnswered;
}

} // namespace qvlink

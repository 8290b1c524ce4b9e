#include "commands/commands.h"

#include "answer/referrers.h"
#include "answer/walks.h"
#include "commands/session.h"
#include "output/json.h"
#include "output/text.h"

#include <nlohmann/json.hpp>

namespace qvlink {

int RunRefs(Request const &request) {
    CommandSession session(request);
    CQVUObject &object = session.Find(request.paths.front());
    bool const isFolder = IsFolder(object);
    std::vector<CQVUObject *> const targets =
        isFolder ? FilesBelow(session.Database(), object) : std::vector<CQVUObject *>{&object};
    std::vector<Referrer> const found = FindReferrers(session.Database(), targets, request.direct);
    if (request.json) {
        session.WriteJson({{"object", JsonOfObject(session.Names(), object)},
                           {"direct", request.direct},
                           {"referrers", JsonOfReferrers(session.Names(), found)}});
        return found.empty() ? ExitNothing : ExitAnswered;
    }
    if (found.empty()) {
        throw NothingFound((isFolder ? "nothing outside needs anything below " : "nothing needs ") +
                           session.Names().Of(object));
    }
    PrintReferrers(session.Out(), session.Names(), found, request.verbose);
    return ExitAnswered;
}

} // namespace qvlink

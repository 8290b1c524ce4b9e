#include "commands/commands.h"

#include "commands/session.h"
#include "output/json.h"
#include "output/text.h"

#include <nlohmann/json.hpp>

namespace qvlink {

int RunShow(Request const &request) {
    CommandSession session(request);
    CQVUObject &object = session.Find(request.paths.front());
    Names const &names = session.Names();
    if (request.json) {
        CQVUDatabase &database = session.Database();
        session.WriteJson({{"object", JsonOfWholeObject(names, object)},
                           {"linksOut", JsonOfLinks(names, LinksFrom(database, object, AnyLink))},
                           {"linksIn", JsonOfLinks(names, LinksTo(database, object, AnyLink))}});
    } else {
        PrintObject(session.Out(), names, object);
    }
    return ExitAnswered;
}

} // namespace qvlink

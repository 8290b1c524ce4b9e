#include "commands/commands.h"

#include "commands/session.h"
#include "output/json.h"
#include "output/text.h"

#include <nlohmann/json.hpp>

namespace qvlink {

int RunMissing(Request const &request) {
    CommandSession session(request);
    std::vector<MissingName> const missing = FindMissing(session.Database());
    if (request.json) {
        session.WriteJson({{"missing", JsonOfMissing(session.Names(), missing)}});
        return missing.empty() ? ExitNothing : ExitAnswered;
    }
    if (missing.empty()) {
        throw NothingFound("nothing is missing");
    }
    PrintMissing(session.Out(), session.Names(), missing, request.verbose);
    return ExitAnswered;
}

} // namespace qvlink

#include "commands/commands.h"

#include "commands/session.h"
#include "output/json.h"
#include "output/text.h"
#include "platform/host.h"

#include <nlohmann/json.hpp>

namespace qvlink {

int RunStats(Request const &request) {
    CommandSession session(request);
    Statistics const statistics = FindStatistics(session.Database(), request.top);
    std::string const file = DatabaseFile(session.Directory());
    std::uint64_t const size = FileSize(file).value_or(0);
    if (request.json) {
        session.WriteJson(
            {{"fileSize", size}, {"statistics", JsonOfStatistics(session.Names(), statistics)}});
    } else {
        PrintStatistics(session.Out(), session.Names(), statistics, file, size);
    }
    return ExitAnswered;
}

} // namespace qvlink

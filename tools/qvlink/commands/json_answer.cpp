#include "commands/json_answer.h"

#include <nlohmann/json.hpp>

namespace qvlink {

const char *CommandWord(Command command) {
    switch (command) {
    case Command::scan:
        return "scan";
    case Command::deps:
        return "deps";
    case Command::refs:
        return "refs";
    case Command::find:
        return "find";
    case Command::show:
        return "show";
    case Command::missing:
        return "missing";
    case Command::why:
        return "why";
    case Command::stats:
        return "stats";
    case Command::verify:
        return "verify";
    case Command::protectedPaths:
        return "protected";
    case Command::listsCapture:
        return "lists capture";
    case Command::listsPack:
        return "lists pack";
    case Command::listsUnpack:
        return "lists unpack";
    case Command::listsCheck:
        return "lists check";
    case Command::listsDiff:
        return "lists diff";
    case Command::exportGraph:
        break;
    }
    return "export";
}

namespace {

Json BeginAnswer(Request const &request) {
    Json answer = Json::object();
    answer["qvlink"] = QVLINK_VERSION;
    answer["command"] = CommandWord(request.command);
    return answer;
}

} // namespace

Json JsonAnswer(Request const &request, Json const &fields) {
    Json answer = BeginAnswer(request);
    answer.update(fields);
    return answer;
}

Json JsonAnswer(Request const &request, std::string const &directory, Json const &fields) {
    Json answer = BeginAnswer(request);
    PutText(answer, "database", directory);
    answer.update(fields);
    return answer;
}

} // namespace qvlink

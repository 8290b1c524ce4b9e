#include "commands/json_answer.h"

#include "commands/commands.h"

#include <nlohmann/json.hpp>

namespace qvlink {

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

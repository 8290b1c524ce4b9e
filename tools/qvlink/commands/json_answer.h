// What all answers in JSON have in common.
#pragma once

#include "commands/request.h"
#include "output/json.h"

namespace qvlink {

// A document with the tool's version, the command and the database, and then `fields`.
Json JsonAnswer(Request const &request, std::string const &directory, Json const &fields);
// The same for a command that has no database.
Json JsonAnswer(Request const &request, Json const &fields);

} // namespace qvlink

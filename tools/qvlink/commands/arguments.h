// The command line: what may be said, and the help for it.
#pragma once

#include "commands/request.h"

#include <optional>

namespace qvlink {

// The request, or the exit code of a call that is done with: help and version are
// printed on standard output, bad use is told on standard error.
struct Arguments {
    std::optional<Request> request;
    int exitCode = ExitAnswered;
};
Arguments ParseArguments(int count, const char *const *values);

} // namespace qvlink

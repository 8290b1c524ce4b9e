#include "commands/arguments.h"
#include "commands/commands.h"
#include "commands/session.h"
#include "output/standard_output.h"
#include "platform/host.h"

#include <exception>
#include <iostream>
#include <new>

namespace {

using namespace qvlink;

int RunAndTell(Request const &request) {
    try {
        return RunCommand(request);
    } catch (NothingFound const &nothing) {
        Tell(request, nothing.what());
        return ExitNothing;
    } catch (std::bad_alloc const &) {
        Tell(request, "out of memory");
    } catch (std::exception const &error) {
        Tell(request, error.what());
    }
    return ExitFailure;
}

// An answer that nobody reads to its end is none of our business; one that can't be
// written is.
int FinishOutput(StandardOutput &output, Request const &request, int exitCode) {
    int const error = output.Finish();
    if (error == 0 || IsClosedPipe(error)) {
        return exitCode;
    }
    Tell(request, "cannot write the whole answer\nSee whether the disk is full.");
    return ExitFailure;
}

} // namespace

int main(int count, char **values) {
    PrepareStreams();
    StandardOutput output;
    Arguments const arguments = ParseArguments(count, values);
    if (!arguments.request) {
        output.Finish();
        return arguments.exitCode;
    }
    return FinishOutput(output, *arguments.request, RunAndTell(*arguments.request));
}

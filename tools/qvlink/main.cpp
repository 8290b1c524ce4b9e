#include "commands/arguments.h"
#include "commands/commands.h"
#include "commands/json_answer.h"
#include "commands/session.h"
#include "output/standard_output.h"
#include "platform/host.h"

#include <exception>
#include <iostream>
#include <new>

namespace {

using namespace qvlink;

int Run(Request const &request) {
    switch (request.command) {
    case Command::scan:
        return RunScan(request);
    case Command::deps:
        return RunDeps(request);
    case Command::refs:
        return RunRefs(request);
    case Command::find:
        return RunFind(request);
    case Command::show:
        return RunShow(request);
    case Command::missing:
        return RunMissing(request);
    case Command::why:
        return RunWhy(request);
    case Command::stats:
        return RunStats(request);
    case Command::verify:
        return RunVerify(request);
    case Command::protectedPaths:
        return RunProtected(request);
    case Command::listsCapture:
        return RunListsCapture(request);
    case Command::listsPack:
        return RunListsPack(request);
    case Command::listsUnpack:
        return RunListsUnpack(request);
    case Command::listsCheck:
        return RunListsCheck(request);
    case Command::listsDiff:
        return RunListsDiff(request);
    case Command::exportGraph:
        break;
    }
    return RunExport(request);
}

int RunAndTell(Request const &request) {
    try {
        return Run(request);
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

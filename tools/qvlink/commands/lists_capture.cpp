#include "lists/capture.h"

#include "commands/commands.h"
#include "commands/list_sources.h"
#include "commands/session.h"
#include "output/screen.h"

namespace qvlink {
namespace {

void TellSkipped(Request const &request, std::vector<std::string> const &skipped) {
    if (skipped.empty()) {
        return;
    }
    std::string message = ReadableCount(skipped.size()) + " left out";
    if (request.verbose) {
        for (std::string const &item : skipped) {
            message += '\n' + item;
        }
    } else {
        message += "; with -v they are listed";
    }
    Tell(request, message);
}

} // namespace

int RunListsCapture(Request const &request) {
    RequireNoJson(request);
    CaptureRequest wanted;
    wanted.kind = request.listKind == "files" ? lists::Kind::files : lists::Kind::keys;
    wanted.from = request.from;
    wanted.without = request.without;
    Capture const capture = CaptureList(wanted);
    TellSkipped(request, capture.skipped);
    if (capture.text.empty()) {
        throw NothingFound("there are no " + request.listKind + " to list");
    }
    WriteList(request.output, capture.text);
    return ExitAnswered;
}

} // namespace qvlink

// Lists between their text and the form they are stored in.
#include "commands/commands.h"
#include "commands/list_sources.h"
#include "commands/session.h"
#include "stored_list.h"

#include <algorithm>

namespace qvlink {
namespace {

// Throws CommandError for a text that the library would read wrongly.
void RequireSound(std::string const &path, std::string const &text) {
    std::optional<lists::Kind> const kind = lists::KindOf(text);
    if (!kind) {
        throw CommandError(path + " is no list: its first line begins with neither % nor HK");
    }
    std::vector<lists::Finding> const findings = lists::Check(text, *kind);
    auto const error = std::find_if(findings.begin(), findings.end(),
                                    [](lists::Finding const &finding) { return finding.isError; });
    if (error != findings.end()) {
        throw CommandError(path + ':' + std::to_string(error->line) + ": " + error->message +
                           "\n`qvlink lists check` tells all there is.");
    }
}

std::string Pack(std::string const &path, std::string const &text) {
    try {
        return lists::Pack(text);
    } catch (lists::ListError const &error) {
        throw CommandError(path + ": " + error.what());
    }
}

} // namespace

int RunListsPack(Request const &request) {
    RequireNoJson(request);
    std::string const &path = request.paths.front();
    ListFile const file(path);
    if (file.Is() != ListFile::Form::text) {
        throw CommandError(
            path + (file.Is() == ListFile::Form::stored ? " is stored already" : " is a library") +
            "\nName the text of a list.");
    }
    std::string const text = file.TheList(std::nullopt).text;
    RequireSound(path, text);
    WriteList(request.output, Pack(path, text));
    return ExitAnswered;
}

int RunListsUnpack(Request const &request) {
    RequireNoJson(request);
    ListFile const file(request.paths.front());
    if (file.Is() == ListFile::Form::text) {
        throw CommandError(request.paths.front() +
                           " is neither a stored list nor a library: " + file.WhyNotStored());
    }
    WriteList(request.output, file.TheList(request.id).text);
    return ExitAnswered;
}

} // namespace qvlink

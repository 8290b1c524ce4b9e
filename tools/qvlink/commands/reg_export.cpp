#include "commands/commands.h"

#include "commands/json_answer.h"
#include "commands/registry_arguments.h"
#include "commands/session.h"
#include "output/registration.h"
#include "platform/whole_file.h"
#include "registry/export.h"
#include "registry/reasons.h"

#include <iostream>
#include <nlohmann/json.hpp>

namespace qvlink {
namespace {

constexpr std::uint32_t notFound = 2;
constexpr std::size_t mostTold = 20; // unless --verbose

RegistrationForm FormArgument(Request const &request) {
    return request.form == "4" ? RegistrationForm::ansi : RegistrationForm::unicode;
}

Exported ExportKey(Request const &request) {
    std::string const key = KeyArgument(request.key);
    auto const page = PageArgument(request);
    auto const registry = OpenRegistry();
    Exported exported = ExportRegistration(*registry, key, FormArgument(request), *page);
    if (exported.code == notFound) {
        throw NothingFound("there is no key " + request.key);
    }
    if (exported.code != 0) {
        throw CommandError("cannot read " + request.key + ": " + ReasonOf(exported.code));
    }
    return exported;
}

void TellLeftOut(Request const &request, std::vector<std::string> const &leftOut) {
    std::size_t told = 0;
    for (std::string const &what : leftOut) {
        if (!request.verbose && told++ == mostTold) {
            Tell(request, ReadableCount(leftOut.size() - mostTold) +
                              " more left out; with -v all are listed");
            return;
        }
        Tell(request, "left out: " + HostText(what));
    }
}

void Write(std::string const &file, std::string const &bytes) {
    std::string why;
    if (file.empty()) {
        std::cout << bytes;
    } else if (!WriteWholeFile(file, bytes, why)) {
        throw CommandError("cannot write " + file + ": " + why);
    }
}

Json JsonOfExport(Request const &request, Exported const &exported) {
    Json fields = Json::object();
    PutText(fields, "key", request.key);
    PutText(fields, "file", request.output);
    fields["form"] = FormWord(FormArgument(request));
    fields["keys"] = exported.keys;
    fields["values"] = exported.values;
    fields["leftOut"] = exported.leftOut;
    return fields;
}

} // namespace

int RunRegExport(Request const &request) {
    if (request.json && request.output.empty()) {
        throw CommandError("--json says what was written, so the registration file needs a name\n"
                           "Put one behind the key.");
    }
    Exported const exported = ExportKey(request);
    TellLeftOut(request, exported.leftOut);
    Write(request.output, exported.bytes);
    if (request.json) {
        std::cout << Dump(JsonAnswer(request, JsonOfExport(request, exported)), true);
    } else if (!request.output.empty()) {
        Screen out = ScreenOf(std::cout, false);
        out.Line(out.Safe(request.output) + ": " + CountsOf(exported.keys, exported.values));
    }
    return exported.leftOut.empty() ? ExitAnswered : ExitNothing;
}

} // namespace qvlink

#include "commands/commands.h"

#include "commands/json_answer.h"
#include "commands/session.h"
#include "output/text.h"
#include "platform/host.h"

#include <fstream>
#include <iostream>
#include <iterator>
#include <nlohmann/json.hpp>

namespace qvlink {
namespace {

std::string ReadFile(std::string const &file) {
    std::optional<std::uint64_t> const size = FileSize(file);
    if (!size) {
        throw CommandError("there is no " + file +
                           "\nRun `qvlink scan PATH...` to make one, or name another folder with "
                           "--db.");
    }
    std::ifstream stream(file, std::ios::binary);
    std::string bytes(static_cast<std::size_t>(*size), '\0');
    stream.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!stream && !stream.eof()) {
        throw CommandError("cannot read " + file + "\nSee who may read it.");
    }
    bytes.resize(static_cast<std::size_t>(stream.gcount()));
    return bytes;
}

} // namespace

int RunVerify(Request const &request) {
    std::string const directory = DatabaseDirectory(request);
    std::string const bytes = ReadFile(DatabaseFile(directory));
    FileCheck const check = CheckFile(bytes);
    if (request.json) {
        std::cout << Dump(JsonAnswer(request, directory, {{"check", JsonOfCheck(check)}}), true);
    } else {
        Screen screen = ScreenOf(std::cout, false);
        PrintCheck(screen, check, request.verbose);
    }
    return check.problems.empty() ? ExitAnswered : ExitNothing;
}

} // namespace qvlink

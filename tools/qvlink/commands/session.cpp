#include "commands/session.h"

#include "answer/file_check.h"
#include "commands/commands.h"
#include "commands/json_answer.h"
#include "platform/host.h"

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <nlohmann/json.hpp>

namespace qvlink {
namespace {

void RequireUsableFile(std::string const &directory) {
    std::string const file = DatabaseFile(directory);
    std::optional<std::uint64_t> const size = FileSize(file);
    if (!size) {
        throw CommandError("there is no database in " + directory +
                           "\nRun `qvlink scan PATH...` to make one, or name another folder with "
                           "--db.");
    }
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        throw CommandError("cannot read " + file +
                           "\nSee who may read it, or name another folder "
                           "with --db.");
    }
    std::string head(FileHeadSize, '\0');
    stream.read(head.data(), static_cast<std::streamsize>(head.size()));
    head.resize(static_cast<std::size_t>(stream.gcount()));
    std::string const why = WhyUnusable(head, *size);
    if (!why.empty()) {
        throw CommandError(file + " is damaged: " + why +
                           "\nRun `qvlink scan PATH...` to make it anew.");
    }
}

CQVUDatabase *AttachForReading(std::string const &directory) {
    RequireUsableFile(directory);
    CQVUDatabase *const database = AttachDatabase(directory.c_str());
    if (!database) {
        throw CommandError("not enough memory to load " + DatabaseFile(directory));
    }
    database->SetSaveFlag(0);
    return database;
}

} // namespace

void Tell(Request const &request, std::string const &message) {
    std::cerr << "qvlink " << CommandWord(request.command) << ": "
              << ScreenOf(std::cerr, true).SafeLines(message) << '\n';
}

std::string DatabaseDirectory(Request const &request) {
    if (!request.databaseDirectory.empty()) {
        return AbsoluteDirectory(request.databaseDirectory);
    }
    std::string const directory = DefaultDatabaseDirectory();
    if (directory.empty()) {
        throw CommandError("the environment names no home for the database\nName a folder with "
                           "--db.");
    }
    return directory;
}

std::string DatabaseFile(std::string const &directory) {
    bool const isClosed = directory.back() == '/' || directory.back() == '\\';
    return directory + (isClosed ? "linkdb.dat" : "/linkdb.dat");
}

Screen ScreenOf(std::ostream &stream, bool isError) {
    const char *const noColour = std::getenv("NO_COLOR");
    const char *const terminal = std::getenv("TERM");
    bool const isDumb = terminal && std::string_view(terminal) == "dumb";
    return Screen(stream, IsTerminal(isError ? Stream::err : Stream::out),
                  !(noColour && *noColour) && !isDumb);
}

CommandSession::CommandSession(Request const &request)
    : m_request(request), m_directory(DatabaseDirectory(request)),
      m_database(AttachForReading(m_directory)), m_names(*m_database, request.databasePaths),
      m_out(ScreenOf(std::cout, false)) {}

CQVUObject &CommandSession::Find(std::string const &path) {
    if (CQVUObject *const object = m_names.Find(path)) {
        return *object;
    }
    std::string message = path + " is not in the graph";
    std::vector<std::string> const alike = m_names.Alike(path, 3);
    for (std::string const &other : alike) {
        message += "\nThere is " + other;
    }
    if (alike.empty()) {
        message += ParseKeyPath(path) ? "\nRun `qvlink scan --registry` on its key to put it there."
                                      : "\nRun `qvlink scan` on its folder to put it there.";
    }
    throw NothingFound(message);
}

void CommandSession::WriteJson(Json const &fields) {
    std::cout << Dump(JsonAnswer(m_request, m_directory, fields), true);
}

} // namespace qvlink

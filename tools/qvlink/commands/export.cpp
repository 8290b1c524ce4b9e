#include "commands/commands.h"

#include "commands/session.h"
#include "output/export.h"
#include "output/json.h"

#include <fstream>
#include <iostream>
#include <nlohmann/json.hpp>

namespace qvlink {
namespace {

std::ofstream Create(std::string const &file) {
    std::ofstream stream(file, std::ios::binary);
    if (!stream) {
        throw CommandError("cannot write " + file + "\nName another place with --output.");
    }
    return stream;
}

void Finish(std::ofstream &stream, std::string const &file) {
    stream.close();
    if (!stream) {
        throw CommandError("cannot write all of " + file + "\nSee whether the disk is full.");
    }
}

std::vector<std::string> WriteCsv(CommandSession &session) {
    std::string const folder = session.Asked().output.empty() ? "." : session.Asked().output;
    std::vector<std::string> const files{folder + "/nodes.csv", folder + "/edges.csv"};
    std::ofstream nodes = Create(files[0]);
    std::ofstream edges = Create(files[1]);
    ExportCsv(nodes, edges, session.Names());
    Finish(nodes, files[0]);
    Finish(edges, files[1]);
    return files;
}

void Write(std::ostream &out, CommandSession &session) {
    std::string const &format = session.Asked().format;
    if (format == "dot") {
        ExportDot(out, session.Names());
    } else if (format == "graphml") {
        ExportGraphml(out, session.Names());
    } else {
        ExportJsonl(out, session.Names());
    }
}

} // namespace

int RunExport(Request const &request) {
    bool const isToFiles = request.format == "csv" || !request.output.empty();
    if (request.json && !isToFiles) {
        throw CommandError("--json says what was written, so the graph itself needs a file\nName "
                           "one with --output.");
    }
    CommandSession session(request);
    if (!isToFiles) {
        Write(std::cout, session);
        return ExitAnswered;
    }
    std::vector<std::string> files{request.output};
    if (request.format == "csv") {
        files = WriteCsv(session);
    } else {
        std::ofstream stream = Create(request.output);
        Write(stream, session);
        Finish(stream, request.output);
    }
    if (request.json) {
        Json list = Json::array();
        for (std::string const &file : files) {
            Json item = Json::object();
            PutText(item, "path", file);
            list.push_back(item);
        }
        session.WriteJson({{"format", request.format}, {"files", list}});
    } else {
        for (std::string const &file : files) {
            session.Out().Line(session.Out().Safe(file));
        }
    }
    return ExitAnswered;
}

} // namespace qvlink

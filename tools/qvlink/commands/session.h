// What a command works with: the database, attached for reading, and the way out.
#pragma once

#include "commands/request.h"
#include "output/names.h"
#include "output/screen.h"

#include "linkdb.h"

#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <stdexcept>
#include <string>

namespace qvlink {

// Why a command can't be done, and what to do about it.
struct CommandError : std::runtime_error {
    using std::runtime_error::runtime_error;
};
// Why an answer is empty: not an error, told on standard error with exit code 1.
struct NothingFound : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// On standard error, with the command in front.
void Tell(Request const &request, std::string const &message);
// The folder of linkdb.dat. Throws CommandError if there is no home to put it in.
std::string DatabaseDirectory(Request const &request);
std::string DatabaseFile(std::string const &directory);
// The screen that goes with standard output or standard error.
Screen ScreenOf(std::ostream &stream, bool isError);

class CommandSession {
public:
    // Throws CommandError if there is no database, or none that can be used. The process must
    // have no database attached.
    explicit CommandSession(Request const &request);

    Request const &Asked() const { return m_request; }
    CQVUDatabase &Database() { return *m_database; }
    std::string const &Directory() const { return m_directory; }
    qvlink::Names const &Names() const { return m_names; }
    Screen &Out() { return m_out; }

    // The object that a path of the command line means. Throws NothingFound.
    CQVUObject &Find(std::string const &path);
    // Writes an answer as a JSON document with these fields.
    void WriteJson(nlohmann::ordered_json const &fields);

private:
    struct Releaser {
        void operator()(CQVUDatabase *database) const { database->Release(); }
    };

    Request const &m_request;
    std::string m_directory;
    std::unique_ptr<CQVUDatabase, Releaser> m_database;
    qvlink::Names m_names;
    Screen m_out;
};

} // namespace qvlink

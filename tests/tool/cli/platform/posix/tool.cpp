#include "tool.h"

#include "platform/process.h"
#include "temp_folder.h"

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

[[noreturn]] void BecomeTool(std::vector<std::string> const &arguments,
                             std::vector<std::pair<std::string, std::string>> const &environment,
                             int out, int err) {
    for (auto const &[name, value] : environment) {
        ::setenv(name.c_str(), value.c_str(), 1);
    }
    ::dup2(out, STDOUT_FILENO);
    ::dup2(err, STDERR_FILENO);
    std::string const program = FileBesideTest("qvlink");
    std::vector<char *> argv{const_cast<char *>(program.c_str())};
    for (std::string const &argument : arguments) {
        argv.push_back(const_cast<char *>(argument.c_str()));
    }
    argv.push_back(nullptr);
    ::execv(program.c_str(), argv.data());
    ::_exit(127);
}

long Run(std::vector<std::string> const &arguments,
         std::vector<std::pair<std::string, std::string>> const &environment, int out, int err) {
    pid_t const child = ::fork();
    if (child == 0) {
        BecomeTool(arguments, environment, out, err);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status);
}

std::string TextOf(std::filesystem::path const &file) {
    Bytes const bytes = ReadBytes(file);
    return {bytes.begin(), bytes.end()};
}

} // namespace

Outcome RunTool(std::vector<std::string> const &arguments,
                std::vector<std::pair<std::string, std::string>> const &environment) {
    TempFolder folder;
    std::filesystem::path const out = folder.Path() / "out";
    std::filesystem::path const err = folder.Path() / "err";
    int const outFile = ::open(out.c_str(), O_CREAT | O_WRONLY, 0600);
    int const errFile = ::open(err.c_str(), O_CREAT | O_WRONLY, 0600);
    Outcome outcome;
    outcome.exitCode = Run(arguments, environment, outFile, errFile);
    ::close(outFile);
    ::close(errFile);
    outcome.out = TextOf(out);
    outcome.err = TextOf(err);
    return outcome;
}

Outcome RunToolWithoutReader(std::vector<std::string> const &arguments) {
    TempFolder folder;
    std::filesystem::path const err = folder.Path() / "err";
    int const errFile = ::open(err.c_str(), O_CREAT | O_WRONLY, 0600);
    int pipe[2] = {-1, -1};
    if (::pipe(pipe) != 0) {
        return {};
    }
    ::close(pipe[0]);
    // As programs that ignore the signal start others, so that the write itself fails.
    auto const old = std::signal(SIGPIPE, SIG_IGN);
    Outcome outcome;
    outcome.exitCode = Run(arguments, {}, pipe[1], errFile);
    std::signal(SIGPIPE, old);
    ::close(pipe[1]);
    ::close(errFile);
    outcome.err = TextOf(err);
    return outcome;
}

std::string HostForm(std::string const &databasePath) {
    std::string path = databasePath.substr(2);
    for (char &c : path) {
        c = c == '\\' ? '/' : c;
    }
    return path.empty() ? "/" : path;
}

std::string HostFormIn(std::string const &prefix, std::string const &databasePath) {
    return prefix + "/drive_c" + HostForm(databasePath);
}

std::string DefaultFolderFor(std::string const &home) { return home + "/qvlinkdb"; }

std::pair<std::string, std::string> HomeVariable(std::string const &home) {
    return {"XDG_DATA_HOME", home};
}

std::string FileBesideTest(std::string const &name) {
    std::string const program = ProgramPath();
    return program.substr(0, program.rfind('/') + 1) + name;
}

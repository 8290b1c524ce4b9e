#include "tool.h"

#include "platform/process.h"
#include "temp_folder.h"

#include <windows.h>

namespace {

// As the C runtime takes a command line apart: backslashes count double before a
// quotation mark.
std::string Quoted(std::string const &argument) {
    std::string quoted = "\"";
    std::size_t backslashes = 0;
    for (char const c : argument) {
        backslashes = c == '\\' ? backslashes + 1 : 0;
        if (c == '"') {
            quoted += '\\';
        }
        quoted += c;
    }
    return quoted.append(backslashes, '\\') + '"';
}

HANDLE Create(std::filesystem::path const &file) {
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    return ::CreateFileA(file.string().c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherited,
                         CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
}

long Run(std::vector<std::string> const &arguments, HANDLE out, HANDLE err) {
    std::string line = Quoted(FileBesideTest("qvlink.exe"));
    for (std::string const &argument : arguments) {
        line += ' ' + Quoted(argument);
    }
    STARTUPINFOA start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdOutput = out;
    start.hStdError = err;
    PROCESS_INFORMATION process{};
    if (!::CreateProcessA(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start,
                          &process)) {
        return -1;
    }
    ::WaitForSingleObject(process.hProcess, INFINITE);
    DWORD code = 0;
    ::GetExitCodeProcess(process.hProcess, &code);
    ::CloseHandle(process.hProcess);
    ::CloseHandle(process.hThread);
    return static_cast<long>(code);
}

std::string TextOf(std::filesystem::path const &file) {
    Bytes const bytes = ReadBytes(file);
    return {bytes.begin(), bytes.end()};
}

} // namespace

Outcome RunTool(std::vector<std::string> const &arguments,
                std::vector<std::pair<std::string, std::string>> const &environment) {
    TempFolder folder;
    for (auto const &[name, value] : environment) {
        ::SetEnvironmentVariableA(name.c_str(), value.c_str());
    }
    HANDLE const out = Create(folder.Path() / "out");
    HANDLE const err = Create(folder.Path() / "err");
    Outcome outcome;
    outcome.exitCode = Run(arguments, out, err);
    ::CloseHandle(out);
    ::CloseHandle(err);
    outcome.out = TextOf(folder.Path() / "out");
    outcome.err = TextOf(folder.Path() / "err");
    for (std::size_t at = outcome.err.find('\r'); at != std::string::npos;
         at = outcome.err.find('\r')) {
        outcome.err.erase(at, 1);
    }
    return outcome;
}

Outcome RunToolWithoutReader(std::vector<std::string> const &arguments) {
    TempFolder folder;
    HANDLE const err = Create(folder.Path() / "err");
    HANDLE reader = nullptr;
    HANDLE writer = nullptr;
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    ::CreatePipe(&reader, &writer, &inherited, 0);
    ::CloseHandle(reader);
    Outcome outcome;
    outcome.exitCode = Run(arguments, writer, err);
    ::CloseHandle(writer);
    ::CloseHandle(err);
    outcome.err = TextOf(folder.Path() / "err");
    return outcome;
}

std::string HostForm(std::string const &databasePath) {
    return databasePath.size() == 2 ? databasePath + '\\' : databasePath;
}

std::string HostFormIn(std::string const &, std::string const &databasePath) {
    return databasePath;
}

std::string DefaultFolderFor(std::string const &home) { return home + "\\QVLinkDB"; }

std::pair<std::string, std::string> HomeVariable(std::string const &home) {
    return {"LOCALAPPDATA", home};
}

std::string FileBesideTest(std::string const &name) {
    std::string const program = ProgramPath();
    return program.substr(0, program.find_last_of("/\\") + 1) + name;
}

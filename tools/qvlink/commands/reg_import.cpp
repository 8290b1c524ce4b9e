#include "commands/commands.h"

#include "commands/json_answer.h"
#include "commands/registry_arguments.h"
#include "commands/session.h"
#include "lists/system_files.h"
#include "output/registration.h"
#include "platform/whole_file.h"

#include <algorithm>
#include <iostream>
#include <nlohmann/json.hpp>

namespace qvlink {
namespace {

constexpr std::size_t mostFaults = 20; // of a file, unless --verbose

// The registry's files of a prefix, or the path itself.
std::vector<std::string> FilesAt(std::string const &path) {
    std::vector<std::string> files;
    for (const char *const name : {"system.reg", "userdef.reg", "user.reg"}) {
        if (auto file = FindBelow(path, {name})) {
            files.push_back(std::move(*file));
        }
    }
    return files.empty() ? std::vector<std::string>{path} : files;
}

class Importing {
public:
    explicit Importing(Request const &request)
        : m_request(request), m_into(request.into.empty() ? "" : KeyArgument(request.into)),
          m_page(PageArgument(request)), m_registry(OpenRegistry()) {}

    void Import(std::string const &path);
    std::vector<ImportedFile> const &Files() const { return m_files; }
    int ExitCode() const { return m_exitCode; }

private:
    void TellFaults(ImportedFile const &file);
    void Worsen(int exitCode) { m_exitCode = std::max(m_exitCode, exitCode); }

    Request const &m_request;
    std::string m_into;
    std::unique_ptr<CodePage> m_page;
    std::unique_ptr<Registry> m_registry;
    std::vector<ImportedFile> m_files;
    int m_exitCode = ExitAnswered;
};

void Importing::TellFaults(ImportedFile const &file) {
    std::vector<ImportFault> const &faults = file.result.faults;
    std::size_t const count =
        m_request.verbose ? faults.size() : std::min(faults.size(), mostFaults);
    for (std::size_t i = 0; i < count; ++i) {
        Tell(m_request,
             file.file + ':' + std::to_string(faults[i].line) + ": " + HostText(faults[i].message));
    }
    if (count < faults.size()) {
        Tell(m_request, file.file + ": " + ReadableCount(faults.size() - count) +
                            " more; with -v all are listed");
    }
}

void Importing::Import(std::string const &path) {
    ImportedFile file;
    file.file = path;
    std::string why;
    if (auto const bytes = ReadWholeFile(path, why)) {
        file.result = ImportRegistration(*m_registry, *bytes, *m_page, m_into);
    } else {
        file.whyUnread = "cannot read it: " + why;
    }
    if (!file.Failure().empty()) {
        Tell(m_request, path + ": " + file.Failure());
        Worsen(ExitFailure);
    }
    TellFaults(file);
    for (ImportFault const &fault : file.result.faults) {
        Worsen(fault.isRefusal ? ExitFailure : ExitNothing);
    }
    m_files.push_back(std::move(file));
}

} // namespace

int RunRegImport(Request const &request) {
    Importing importing(request);
    for (std::string const &path : request.paths) {
        for (std::string const &file : FilesAt(path)) {
            importing.Import(file);
        }
    }
    if (request.json) {
        std::cout << Dump(JsonAnswer(request, {{"files", JsonOfImports(importing.Files())}}), true);
        return importing.ExitCode();
    }
    Screen out = ScreenOf(std::cout, false);
    for (ImportedFile const &file : importing.Files()) {
        if (file.Failure().empty()) {
            PrintImport(out, file);
        }
    }
    return importing.ExitCode();
}

} // namespace qvlink

#include "scan/scan.h"

#include "commands/commands.h"
#include "commands/json_answer.h"
#include "commands/session.h"
#include "output/text.h"
#include "platform/host.h"
#include "platform/system_registry.h"

#include <chrono>
#include <iostream>
#include <nlohmann/json.hpp>

namespace qvlink {
namespace {

using Clock = std::chrono::steady_clock;
constexpr auto TimeBetweenLines = std::chrono::milliseconds(100);

// One line on a terminal that is written over, and nothing elsewhere.
class ProgressLine {
public:
    ProgressLine() : m_screen(ScreenOf(std::cerr, true)) {}
    ~ProgressLine() { Clear(); }

    void Show(std::string const &folder, ScanSummary const &soFar) {
        Clock::time_point const now = Clock::now();
        if (!m_screen.IsForTerminal() || now - m_shown < TimeBetweenLines) {
            return;
        }
        m_shown = now;
        auto const seconds = std::chrono::duration<double>(now - m_start).count();
        std::uint64_t const count = soFar.keys ? soFar.keys : soFar.files;
        auto const rate = static_cast<std::uint64_t>(static_cast<double>(count) / seconds);
        std::string const line = ReadableCount(count) + (soFar.keys ? " keys, " : " files, ") +
                                 ReadableCount(rate) + " a second  " + m_screen.Safe(folder);
        std::cerr << '\r' << Fit(line) << "\x1b[K" << std::flush;
        m_isShown = true;
    }

    void Clear() {
        if (m_isShown) {
            std::cerr << "\r\x1b[K" << std::flush;
            m_isShown = false;
        }
    }

private:
    // What fits a line of the terminal, cut between characters.
    static std::string Fit(std::string line) {
        while (CharactersIn(line) >= TerminalColumns(Stream::err)) {
            line.pop_back();
        }
        return line;
    }

    Screen m_screen;
    Clock::time_point m_start = Clock::now();
    Clock::time_point m_shown = m_start;
    bool m_isShown = false;
};

class Reporter : public ScanObserver {
public:
    void Progress(std::string const &folder, ScanSummary const &soFar) override {
        m_line.Show(folder, soFar);
    }
    void Problem(ScanProblem problem, std::string const &path, std::string const &why) override {
        m_problems.push_back({problem, path, why});
    }
    std::vector<ReportedProblem> const &Finish() {
        m_line.Clear();
        return m_problems;
    }

private:
    ProgressLine m_line;
    std::vector<ReportedProblem> m_problems;
};

} // namespace

int RunScan(Request const &request) {
    if (request.databasePaths) {
        throw CommandError("--db-paths doesn't go with scan\nName the folders as the system "
                           "writes them.");
    }
    std::string const directory = DatabaseDirectory(request);
    Reporter reporter;
    ScanOptions options;
    options.paths = request.paths;
    options.keys = request.keys;
    auto const registry = request.keys.empty() ? nullptr : OpenRegistry();
    options.registry = registry.get();
    ScanSummary const summary = ScanInto(directory, options, reporter);
    std::vector<ReportedProblem> const &problems = reporter.Finish();
    if (request.json) {
        std::cout << Dump(
            JsonAnswer(request, directory, {{"summary", JsonOfScan(summary, problems)}}), true);
        return ExitAnswered;
    }
    Screen out = ScreenOf(std::cout, false);
    PrintScan(out, summary);
    if (request.verbose) {
        Table table(out);
        for (ReportedProblem const &problem : problems) {
            table.Row({{problem.path}, {problem.why, Colour::dim}});
        }
        table.Print();
    } else if (!problems.empty()) {
        out.Line("With -v the problems are listed.");
    }
    return ExitAnswered;
}

} // namespace qvlink

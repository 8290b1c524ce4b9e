// What the containers cost, by the side of what one would use instead.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>

#include "Contest.h"
#include "System.h"

namespace {

using bench::Contender;
using bench::Contest;
using Figures = std::map<std::string, double>; // seconds of one call, by benchmark

constexpr char const *USAGE = "Usage: qvlinkdb_containers [--quick] [--markdown] "
                              "[--benchmark_...]\n";
constexpr int RUNS = 3;

std::string NameOf(Contest const &contest, Contender const &contender) {
    return contest.workload + ", " + std::to_string(contest.size) + "/" +
           (&contender == contest.contenders.data() ? "QVLinkDB" : contender.name);
}

// Keeps the median of each benchmark's runs.
class Collector : public benchmark::BenchmarkReporter {
public:
    explicit Collector(Figures &figures) : m_figures(figures) {}
    bool ReportContext(Context const & /*context*/) override { return true; }
    void ReportRuns(std::vector<Run> const &runs) override {
        std::vector<double> times;
        for (Run const &run : runs)
            if (run.run_type == Run::RT_Iteration)
                times.push_back(1e-9 * (bench::CountsProcessorTime() ? run.GetAdjustedCPUTime()
                                                                     : run.GetAdjustedRealTime()));
        if (!times.empty())
            m_figures[runs[0].run_name.function_name] = bench::Median(times);
    }

private:
    Figures &m_figures;
};

void Register(std::vector<Contest> const &contests, double seconds) {
    for (Contest const &contest : contests)
        for (Contender const &contender : contest.contenders)
            benchmark::RegisterBenchmark(NameOf(contest, contender).c_str(), contender.work)
                ->MinTime(seconds)
                ->Repetitions(RUNS);
}

// A line for each contender that was measured.
void Print(std::vector<Contest> const &contests, Figures const &figures, char const *unit,
           bool markdown) {
    bench::Report report(markdown, unit);
    for (Contest const &contest : contests) {
        auto const ours = figures.find(NameOf(contest, contest.contenders[0]));
        for (std::size_t i = 1; i < contest.contenders.size() && ours != figures.end(); ++i) {
            Contender const &rival = contest.contenders[i];
            auto const theirs = figures.find(NameOf(contest, rival));
            if (theirs != figures.end())
                report.Add({contest.size, contest.workload, bench::Unit::Seconds, ours->second,
                            rival.against, rival.name, theirs->second, rival.target});
        }
    }
    report.PrintSummary();
}

void Run(bool quick, bool markdown) {
    char const *const folder = std::getenv("TMPDIR");
    std::vector<std::string> lines = bench::Describe(folder == nullptr ? "/tmp" : folder);
    lines.push_back("median of " + std::to_string(RUNS) + " runs, contenders in random turn");
    bench::PrintLines(lines, markdown);
    std::vector<Contest> const ranges = bench::RangeContests();
    std::vector<Contest> const lists = bench::ListContests(quick ? 1000 : 10000);
    Register(ranges, quick ? 0.005 : 0.1);
    Register(lists, quick ? 0.005 : 0.1);
    Figures figures;
    Collector collector(figures);
    benchmark::RunSpecifiedBenchmarks(&collector);
    Print(ranges, figures, "Bytes", markdown);
    Print(lists, figures, "Nodes", markdown);
}

} // namespace

int main(int argc, char **argv) try {
    bool markdown = false;
    bool quick = false;
    std::string inTurn = "--benchmark_enable_random_interleaving=true";
    std::vector<char *> options = {argv[0], inTurn.data()};
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--quick") == 0)
            quick = true;
        else if (std::strcmp(argv[i], "--markdown") == 0)
            markdown = true;
        else if (std::strncmp(argv[i], "--benchmark_", 12) == 0)
            options.push_back(argv[i]);
        else {
            std::fputs(USAGE, stderr);
            return 2;
        }
    }
    auto count = static_cast<int>(options.size());
    benchmark::Initialize(&count, options.data());
    Run(quick, markdown);
    return 0;
} catch (std::exception const &problem) {
    std::fprintf(stderr, "qvlinkdb_containers: %s\n", problem.what());
    return 2;
}

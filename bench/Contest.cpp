#include "Contest.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>

#include "System.h"

namespace bench {
namespace {

using Figures = std::map<std::string, double>; // seconds of one call, by benchmark

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
                times.push_back(1e-9 * (CountsProcessorTime() ? run.GetAdjustedCPUTime()
                                                              : run.GetAdjustedRealTime()));
        if (!times.empty())
            m_figures[runs[0].run_name.function_name] = Median(times);
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
void Print(Topic const &topic, Figures const &figures, bool markdown) {
    Report report(markdown, topic.sizes);
    for (Row const &row : topic.rows)
        report.Add(row);
    for (Contest const &contest : topic.contests) {
        auto const ours = figures.find(NameOf(contest, contest.contenders[0]));
        for (std::size_t i = 1; i < contest.contenders.size() && ours != figures.end(); ++i) {
            Contender const &rival = contest.contenders[i];
            auto const theirs = figures.find(NameOf(contest, rival));
            if (theirs != figures.end())
                report.Add({contest.size, contest.workload, Unit::Seconds, ours->second,
                            rival.against, rival.name, theirs->second, rival.target});
        }
    }
    report.PrintSummary();
    std::printf("\n");
}

void Run(std::vector<Topic> const &topics, bool quick, bool markdown) {
    char const *const folder = std::getenv("TMPDIR");
    std::vector<std::string> lines = Describe(folder == nullptr ? "/tmp" : folder);
    lines.push_back("median of " + std::to_string(RUNS) + " runs, contenders in random turn");
    PrintLines(lines, markdown);
    for (Topic const &topic : topics)
        Register(topic.contests, quick ? 0.005 : 0.1);
    Figures figures;
    Collector collector(figures);
    benchmark::RunSpecifiedBenchmarks(&collector);
    for (Topic const &topic : topics)
        Print(topic, figures, markdown);
}

} // namespace

int RunTopics(int argc, char **argv, char const *program, Topics const &topics) try {
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
            std::fprintf(stderr, "Usage: %s [--quick] [--markdown] [--benchmark_...]\n", program);
            return 2;
        }
    }
    auto count = static_cast<int>(options.size());
    benchmark::Initialize(&count, options.data());
    Run(topics(quick), quick, markdown);
    return 0;
} catch (std::exception const &problem) {
    std::fprintf(stderr, "%s: %s\n", program, problem.what());
    return 2;
}

} // namespace bench

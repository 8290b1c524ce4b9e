// What one operation costs at an object with few or very many links. The number of links
// is always the same, a million spread over hubs of k links each, so that only the size
// of the hubs differs and not how much memory the operations wander through.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <numeric>
#include <stdexcept>

#include <benchmark/benchmark.h>

#include "LinkDbStore.h"
#include "Random.h"
#include "Report.h"
#include "System.h"

namespace {

using bench::Random;

enum class Direction { IntoHub, OutOfHub };

std::uint32_t g_links = 1000000;
std::string g_folder;

[[noreturn]] void Fail(char const *what) { throw std::runtime_error(what); }

// One database at a time: `leaves` objects, each with one link to or from its hub.
class Hubs {
public:
    Hubs(std::uint32_t size, Direction direction)
        : m_folder(g_folder), m_database(AttachDatabase(m_folder.Path().c_str())), m_size(size),
          m_direction(direction), m_order(g_links) {
        m_database->SetSaveFlag(0);
        for (std::uint32_t i = 0; i < g_links; ++i)
            m_leaves.push_back(AddObject("leaf"));
        for (std::uint32_t i = 0; i < g_links; i += size)
            m_hubs.push_back(AddObject("hub"));
        std::iota(m_order.begin(), m_order.end(), 0);
        Random(size).Shuffle(m_order);
    }
    ~Hubs() { m_database->Release(); }
    Hubs(Hubs const &) = delete;
    Hubs &operator=(Hubs const &) = delete;

    // In an order that goes to and fro between the hubs; each call takes the next leaf.
    void Link(std::uint32_t at) {
        std::uint32_t const leaf = m_order[at];
        if (Source(leaf)->LinkTo(Target(leaf), 2) == 0)
            Fail("can't link");
    }
    void Unlink(std::uint32_t at) {
        CQVUObject *source = m_leaves[m_order[at]];
        CQVULink *link = nullptr;
        bool const into = m_direction == Direction::IntoHub;
        SearchHandle const handle =
            into ? source->FindFirstLinkFrom(2, &link) : source->FindFirstLinkTo(2, &link);
        if (handle == 0 || link->Delete() == 0)
            Fail("can't unlink");
        source->FindCloseLinkFrom(handle);
    }
    void DeleteLeaf(std::uint32_t at) {
        if (m_leaves[m_order[at]]->Delete() == 0)
            Fail("can't delete");
    }
    std::uint64_t LinksOfHubs() const {
        std::uint64_t count = 0;
        for (CQVUObject *hub : m_hubs)
            count +=
                (hub->dwLinksFrom & LINK_ENTRY_ID_MASK) + (hub->dwLinksTo & LINK_ENTRY_ID_MASK);
        return count;
    }

private:
    CQVUObject *AddObject(char const *name) {
        return m_database->AddObject(name, OBJ_FILE, 0, 0, nullptr, 1);
    }
    CQVUObject *Source(std::uint32_t leaf) {
        return m_direction == Direction::IntoHub ? m_leaves[leaf] : m_hubs[leaf / m_size];
    }
    CQVUObject *Target(std::uint32_t leaf) {
        return m_direction == Direction::IntoHub ? m_hubs[leaf / m_size] : m_leaves[leaf];
    }

    bench::TemporaryFolder m_folder;
    CQVUDatabase *m_database;
    std::uint32_t m_size;
    Direction m_direction;
    std::vector<CQVUObject *> m_leaves;
    std::vector<CQVUObject *> m_hubs;
    std::vector<std::uint32_t> m_order;
};

// The database that the benchmarks of one size share, and how far they have got in it.
std::unique_ptr<Hubs> g_current;
std::uint32_t g_next;

std::uint32_t Share(std::uint32_t percent) { return g_links / 100 * percent; }

void Expect(std::uint64_t links) {
    if (g_current->LinksOfHubs() != links)
        Fail("the hubs don't have the links that they should have");
}

// The last tenth of the links, at hubs that have nine tenths of theirs.
void MakeLinks(benchmark::State &state, Direction direction) {
    g_current.reset();
    g_current = std::make_unique<Hubs>(static_cast<std::uint32_t>(state.range(0)), direction);
    std::uint32_t at = 0;
    while (at < g_links - Share(10))
        g_current->Link(at++);
    while (state.KeepRunning())
        g_current->Link(at++);
    g_next = 0;
    Expect(g_links);
}

void MakeDuplicates(benchmark::State &state) {
    std::uint32_t at = 0;
    while (state.KeepRunning())
        g_current->Link(at++);
    Expect(g_links);
}

void Unlink(benchmark::State &state) {
    while (state.KeepRunning())
        g_current->Unlink(g_next++);
    Expect(g_links - g_next);
}

void DeleteLeaves(benchmark::State &state) {
    while (state.KeepRunning())
        g_current->DeleteLeaf(g_next++);
    Expect(g_links - g_next);
}

// A duplicate costs the same however many links there are: so much more is left to the caches.
constexpr double MOST_FOR_DUPLICATES = 2;

std::string RatioText(std::string const &title, double ratio) {
    char text[64];
    std::snprintf(text, sizeof text, "%.2f", ratio);
    if (title.find("duplicate") == std::string::npos)
        return text;
    return std::string(text) + (ratio <= MOST_FOR_DUPLICATES ? " (<= 2: met)" : " (<= 2: MISSED)");
}

// Median of each benchmark's repetitions, by title and hub size.
class Collector : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(Context const & /*context*/) override { return true; }
    void ReportRuns(std::vector<Run> const &runs) override {
        for (Run const &run : runs)
            if (run.error_occurred)
                Fail(run.error_message.c_str());
            else if (run.run_type == Run::RT_Iteration)
                Add(run.run_name.function_name, std::stoul(run.run_name.args),
                    run.GetAdjustedRealTime() * 1e-9);
    }
    void Print(bool markdown) const {
        std::vector<bench::Column> columns = {
            {"Cost of one operation by links of the hub", 46, true}};
        if (m_titles.empty())
            return;
        for (auto const &[size, times] : m_times.at(m_titles[0]))
            columns.push_back({bench::WithCommas(size), 10, false});
        columns.push_back({"Last / first", 20, true});
        bench::Table const table(columns, markdown);
        for (std::string const &title : m_titles) {
            auto const &bySize = m_times.at(title);
            std::vector<std::string> cells = {title};
            for (auto const &[size, times] : bySize)
                cells.push_back(bench::Format(bench::Median(times), bench::Unit::Seconds));
            cells.push_back(RatioText(title, bench::Median(bySize.rbegin()->second) /
                                                 bench::Median(bySize.begin()->second)));
            table.Add(cells);
        }
        std::printf("\n");
    }

private:
    void Add(std::string const &title, unsigned long size, double seconds) {
        if (m_times.count(title) == 0)
            m_titles.push_back(title);
        m_times[title][size].push_back(seconds);
    }

    std::vector<std::string> m_titles; // in the order of running
    std::map<std::string, std::map<unsigned long, std::vector<double>>> m_times;
};

template <class Function> void Register(std::string const &title, std::uint32_t size,
                                        std::uint32_t steps, Function function) {
    benchmark::RegisterBenchmark(title.c_str(), function)
        ->Arg(size)
        ->Iterations(steps)
        ->Repetitions(3);
}

void RegisterAll() {
    for (auto const direction : {Direction::IntoHub, Direction::OutOfHub}) {
        bool const into = direction == Direction::IntoHub;
        std::string const where = into ? ", links into the hub" : ", links out of the hub";
        for (std::uint32_t size = 10; size <= g_links; size *= size == 10 ? 100 : 10) {
            Register("LinkTo, a new link" + where, size, Share(10),
                     [=](benchmark::State &state) { MakeLinks(state, direction); });
            Register("LinkTo, a duplicate" + where, size, Share(10), MakeDuplicates);
            Register("CQVULink::Delete" + where, size, Share(1), Unlink);
            Register("CQVUObject::Delete" + where, size, Share(1), DeleteLeaves);
        }
    }
}

} // namespace

int main(int argc, char **argv) try {
    bool markdown = false;
    char const *const folder = std::getenv("TMPDIR");
    g_folder = folder == nullptr ? "/tmp" : folder;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--quick") == 0)
            g_links = 100000;
        else if (std::strcmp(argv[i], "--markdown") == 0)
            markdown = true;
        else if (std::strncmp(argv[i], "--benchmark_", 12) != 0) {
            std::fputs("Usage: qvlinkdb_hubs [--quick] [--markdown] [--benchmark_...]\n", stderr);
            return 2;
        }
    }
    benchmark::Initialize(&argc, argv);
    std::vector<std::string> lines = bench::Describe(g_folder);
    lines.push_back(bench::WithCommas(g_links) + " links spread over hubs, median of 3 runs");
    bench::PrintLines(lines, markdown);
    RegisterAll();
    Collector collector;
    benchmark::RunSpecifiedBenchmarks(&collector);
    g_current.reset();
    collector.Print(markdown);
    return 0;
} catch (std::exception const &problem) {
    std::fprintf(stderr, "qvlinkdb_hubs: %s\n", problem.what());
    return 2;
}

#include "Suite.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <stdexcept>

#include "Random.h"

namespace bench {
namespace {

constexpr std::size_t PATH_SAMPLES = 200000;
constexpr std::size_t CLOSURE_SAMPLES = 1000;
constexpr std::size_t LINK_SAMPLES = 100000;

std::vector<std::uint32_t> SampleIds(Graph const &graph, std::size_t count) {
    Random random(count);
    std::vector<std::uint32_t> ids(count);
    for (std::uint32_t &id : ids)
        id = DRIVE_ID + random.Below(graph.objects.size());
    return ids;
}

std::vector<std::uint32_t> SamplePrograms(Graph const &graph, std::size_t count) {
    Random random(count);
    std::vector<std::uint32_t> ids(count);
    for (std::uint32_t &id : ids)
        id = random.Pick(graph.programs);
    return ids;
}

} // namespace

Suite::Suite(std::uint32_t objects, std::string const &folder, Report &report, bool judge)
    : m_objects(objects), m_graph(MakeGraph(objects)), m_model(m_graph), m_report(report),
      m_judge(judge), m_folder(folder), m_linkDbFolder(m_folder.MakeEmpty("linkdb")),
      m_sqliteFolder(m_folder.MakeEmpty("sqlite")), m_lmdbFolder(m_folder.MakeEmpty("lmdb")) {}

void Suite::Run() {
    Build();
    Save();
    Load();
    MeasureMemory();
    OpenStores();
    Paths();
    Closures();
    ClosureOfAll();
    Links("Links out and in of an object", SampleIds(m_graph, LINK_SAMPLES));
    Links("Links out and in of a program", SamplePrograms(m_graph, LINK_SAMPLES));
}

std::string Suite::Shape() {
    std::array<std::size_t, 16> depths{};
    std::vector<std::size_t> depth(m_graph.HighestId() + 1);
    for (std::uint32_t id = DRIVE_ID; id <= m_graph.HighestId(); ++id) {
        depth[id] = depth[m_graph.ById(id).parent] + 1;
        ++depths[depth[id] - 1];
    }
    auto const common = std::max_element(depths.begin(), depths.end()) - depths.begin();
    auto const deepest = std::find(depths.begin() + 1, depths.end(), 0U) - depths.begin() - 1;
    Answer closures;
    auto const programs = SamplePrograms(m_graph, CLOSURE_SAMPLES);
    for (std::uint32_t const program : programs)
        closures.Add(m_model.Closure(program));
    return WithCommas(m_objects) + " objects, as many parent links, " +
           WithCommas(m_graph.needs.size()) + " needs; most lie " + std::to_string(common) +
           " deep, the deepest " + std::to_string(deepest) +
           "; most links into one object: " + WithCommas(m_model.MostIncoming()) +
           "; mean closure of the sampled programs: " +
           std::to_string(closures.count / programs.size());
}

void Suite::AddRow(std::string const &workload, Unit unit, double ours, std::string const &baseline,
                   double theirs, Against against, double target) {
    m_report.Add(
        {m_objects, workload, unit, ours, against, baseline, theirs, m_judge ? target : 0});
}

void Suite::Compare(std::string const &workload, std::vector<Target> const &targets,
                    std::vector<Contender> const &contenders) {
    std::vector<std::vector<double>> seconds(contenders.size());
    for (int run = 0; run < RUNS; ++run)
        for (std::size_t i = 0; i < contenders.size(); ++i)
            seconds[i].push_back(contenders[i].once());
    std::vector<double> medians;
    medians.reserve(seconds.size());
    for (auto const &times : seconds)
        medians.push_back(Median(times));

    for (std::size_t i = 1; i < contenders.size(); ++i) {
        Contender const &theirs = contenders[i];
        bool fastest = true;
        for (std::size_t j = 1; j < contenders.size(); ++j)
            if (contenders[j].product == theirs.product && medians[j] < medians[i])
                fastest = false;
        Target target{theirs.product, Against::Rival, 0};
        for (Target const &asked : targets)
            if (asked.product == theirs.product)
                target = {asked.product, asked.against, fastest ? asked.ratio : 0};
        AddRow(workload, Unit::Seconds, medians[0],
               theirs.form.empty() ? theirs.product : theirs.product + ", " + theirs.form,
               medians[i], target.against, target.ratio);
    }
}

void Suite::Build() {
    auto linkDb = [&] {
        m_linkDbFolder = m_folder.MakeEmpty("linkdb");
        SettleDisk();
        std::unique_ptr<LinkDbStore> store;
        return Seconds([&] {
            store = std::make_unique<LinkDbStore>(m_linkDbFolder);
            store->Add(m_graph);
            store->Save();
        });
    };
    auto sqliteFile = [&] {
        m_sqliteFolder = m_folder.MakeEmpty("sqlite");
        SettleDisk();
        std::unique_ptr<SqliteStore> store;
        double const seconds = Seconds([&] {
            store = std::make_unique<SqliteStore>(m_sqliteFolder + "/graph.db");
            store->Build(m_graph, false);
        });
        store->Checkpoint();
        return seconds;
    };
    auto sqliteMemory = [&] {
        std::unique_ptr<SqliteStore> store;
        return Seconds([&] {
            store = std::make_unique<SqliteStore>(":memory:");
            store->Build(m_graph, false);
        });
    };
    auto lmdb = [&](LmdbStore::LinksAs form) {
        return [this, form] {
            m_lmdbFolder = m_folder.MakeEmpty("lmdb");
            SettleDisk();
            std::unique_ptr<LmdbStore> store;
            return Seconds([&] {
                store = std::make_unique<LmdbStore>(m_lmdbFolder);
                store->Build(m_graph, form);
            });
        };
    };
    // The bulk load comes last: questions are asked of what it leaves behind.
    Compare("Build the graph and save it durably",
            {{"SQLite file", Against::Rival, 5}, {"LMDB", Against::Rival, 4}},
            {{"QVLinkDB", "", linkDb},
             {"SQLite file", "", sqliteFile},
             {"SQLite in memory", "not saved", sqliteMemory},
             {"LMDB", "links put as they come", lmdb(LmdbStore::LinksAs::Sorted)},
             {"LMDB bulk load", "grouped beforehand", lmdb(LmdbStore::LinksAs::Packed)}});
}

void Suite::Save() {
    LinkDbStore store(m_linkDbFolder);
    std::vector<unsigned char> const bytes = ReadWhole(LinkDbFile());
    std::string const copy = m_folder.MakeEmpty("copy") + "/file";
    Compare("Flush", {{"one buffer", Against::Limit, 2}},
            {{"QVLinkDB", "",
              [&] {
                  SettleDisk();
                  return Seconds([&] { store.Save(); });
              }},
             {"one buffer", "written, synced, renamed", [&] {
                  SettleDisk();
                  return Seconds([&] { ReplaceDurably(copy, bytes); });
              }}});
}

void Suite::Load() {
    std::string const path = m_graph.PathOf(m_graph.HighestId());
    std::vector<double> opened;
    std::vector<double> loaded;
    std::vector<double> located;
    std::vector<double> released;
    std::vector<double> readOnce;
    std::vector<double> sqlite;
    for (int run = 0; run < RUNS; ++run) {
        readOnce.push_back(SecondsToRead(LinkDbFile()));
        auto const figures = RunSelf({"--child", "load", m_linkDbFolder, path});
        opened.push_back(figures.at(0));
        located.push_back(figures.at(0) + figures.at(1));
        std::unique_ptr<LinkDbStore> store;
        loaded.push_back(Seconds([&] { store = std::make_unique<LinkDbStore>(m_linkDbFolder); }));
        released.push_back(Seconds([&] { store.reset(); }));
        sqlite.push_back(Seconds([&] {
            SqliteStore file(m_sqliteFolder + "/graph.db");
            file.BeginReading(0);
            file.Locate(path);
        }));
    }
    double const reading = Median(readOnce);
    std::string const baseline = "reading the file into memory";
    AddRow("Load, in another process", Unit::Seconds, Median(opened), baseline, reading,
           Against::Limit, 8);
    AddRow("Load, in the process that saved", Unit::Seconds, Median(loaded), baseline, reading,
           Against::Limit, 8);
    AddRow("Load and first path", Unit::Seconds, Median(located), baseline, reading, Against::Limit,
           0);
    AddRow("Load and first path", Unit::Seconds, Median(located), "SQLite file, opened and asked",
           Median(sqlite), Against::Rival, 0);
    AddRow("Release without saving", Unit::Seconds, Median(released), baseline, reading,
           Against::Limit, 0);
}

void Suite::MeasureMemory() {
    double const file = static_cast<double>(FileSize(LinkDbFile()));
    std::string const path = m_graph.PathOf(m_graph.HighestId());
    auto const load = RunSelf({"--child", "load", m_linkDbFolder, path});
    auto const build =
        RunSelf({"--child", "build", std::to_string(m_objects), m_folder.MakeEmpty("child")});
    auto add = [&](char const *workload, double bytes) {
        AddRow(workload, Unit::Bytes, bytes, "size of the file", file, Against::Limit, 5);
    };
    add("Memory after loading", load.at(2));
    add("Memory at most while loading", load.at(3));
    add("Memory after loading, paths and closures asked", load.at(4));
    add("Memory after building", build.at(0));
    add("Memory at most while building and saving", build.at(1));
}

void Suite::OpenStores() {
    m_linkDb = std::make_unique<LinkDbStore>(m_linkDbFolder);
    m_sqliteMemory = std::make_unique<SqliteStore>(":memory:");
    m_sqliteMemory->Build(m_graph, true);
    m_sqliteMemory->BeginReading(m_graph.HighestId());
    m_sqliteFile = std::make_unique<SqliteStore>(m_sqliteFolder + "/graph.db");
    m_sqliteFile->BeginReading(m_graph.HighestId());
    m_lmdb = std::make_unique<LmdbStore>(m_lmdbFolder);
    m_lmdb->BeginReading(m_graph.HighestId());
}

template <class Ask, class Sample> Contender Suite::Asking(std::string product, std::string form,
                                                           std::vector<Sample> const &samples,
                                                           Answer expected, Ask ask) {
    auto once = [&samples, expected, ask, product] {
        Answer total;
        double const seconds = Seconds([&] {
            for (Sample const &sample : samples)
                total.Add(ask(sample));
        });
        if (!(total == expected))
            throw std::runtime_error(product + " answers wrongly");
        return seconds / static_cast<double>(samples.size());
    };
    return {std::move(product), std::move(form), once};
}

void Suite::Paths() {
    std::vector<std::uint32_t> const ids = SampleIds(m_graph, PATH_SAMPLES);
    std::vector<std::string> paths;
    Answer expected;
    for (std::uint32_t const id : ids) {
        paths.push_back(m_graph.PathOf(id));
        expected.Add(id);
    }
    auto ask = [](Store &store) {
        return [&store](std::string const &path) { return store.Locate(path); };
    };
    auto sqlite = [&](SqliteStore &store, SqliteStore::PathBy by) {
        return [&store, by](std::string const &path) {
            store.Use(by);
            return store.Locate(path);
        };
    };
    m_linkDb->Locate(paths[0]);
    Compare("Object by path", {{"SQLite", Against::Rival, 2}},
            {Asking("QVLinkDB", "", paths, expected, ask(*m_linkDb)),
             Asking("SQLite", "memory, path column", paths, expected,
                    sqlite(*m_sqliteMemory, SqliteStore::PathBy::Column)),
             Asking("SQLite", "memory, by steps", paths, expected,
                    sqlite(*m_sqliteMemory, SqliteStore::PathBy::Steps)),
             Asking("LMDB", "by steps", paths, expected, ask(*m_lmdb))});
}

void Suite::Closures() {
    std::vector<std::uint32_t> const starts = SamplePrograms(m_graph, CLOSURE_SAMPLES);
    Answer expected;
    for (std::uint32_t const start : starts)
        expected.Add(m_model.Closure(start));
    auto ask = [](Store &store) {
        return [&store](std::uint32_t start) { return store.Closure(start); };
    };
    auto sqlite = [&](SqliteStore &store, SqliteStore::ClosureBy by) {
        return [&store, by](std::uint32_t start) {
            store.Use(by);
            return store.Closure(start);
        };
    };
    using By = SqliteStore::ClosureBy;
    Compare(
        "All that a program depends on",
        {{"SQLite", Against::Rival, 8}, {"LMDB", Against::Rival, 1}},
        {Asking("QVLinkDB", "", starts, expected, ask(*m_linkDb)),
         Asking("SQLite", "memory, recursive query", starts, expected,
                sqlite(*m_sqliteMemory, By::Recursion)),
         Asking("SQLite", "memory, query a node", starts, expected,
                sqlite(*m_sqliteMemory, By::Walk)),
         Asking("SQLite", "file, query a node", starts, expected, sqlite(*m_sqliteFile, By::Walk)),
         Asking("LMDB", "", starts, expected, ask(*m_lmdb))});
}

void Suite::ClosureOfAll() {
    std::vector<std::uint32_t> const starts = {DRIVE_ID};
    Answer const expected = m_model.Closure(DRIVE_ID);
    if (expected.count + 1 != m_graph.objects.size())
        throw std::runtime_error("the closure doesn't reach all objects");
    auto ask = [](Store &store) {
        return [&store](std::uint32_t start) { return store.Closure(start); };
    };
    auto sqlite = [&](SqliteStore &store, SqliteStore::ClosureBy by) {
        return [&store, by](std::uint32_t start) {
            store.Use(by);
            return store.Closure(start);
        };
    };
    using By = SqliteStore::ClosureBy;
    Compare("A closure that reaches all objects", {{"SQLite", Against::Rival, 6}},
            {Asking("QVLinkDB", "", starts, expected, ask(*m_linkDb)),
             Asking("SQLite", "memory, recursive query", starts, expected,
                    sqlite(*m_sqliteMemory, By::Recursion)),
             Asking("SQLite", "memory, query a node", starts, expected,
                    sqlite(*m_sqliteMemory, By::Walk)),
             Asking("LMDB", "", starts, expected, ask(*m_lmdb))});
}

void Suite::Links(std::string const &title, std::vector<std::uint32_t> const &objects) {
    Answer expected;
    for (std::uint32_t const object : objects)
        expected.Add(m_model.Links(object));
    auto ask = [](Store &store) {
        return [&store](std::uint32_t object) { return store.Links(object); };
    };
    Compare(title, {{"SQLite", Against::Rival, 3}},
            {Asking("QVLinkDB", "", objects, expected, ask(*m_linkDb)),
             Asking("SQLite", "memory", objects, expected, ask(*m_sqliteMemory)),
             Asking("SQLite", "file", objects, expected, ask(*m_sqliteFile)),
             Asking("LMDB", "", objects, expected, ask(*m_lmdb))});
}

} // namespace bench

// All workloads on one graph: every contender is run in turn, several times over, and the
// medians are compared.
#pragma once

#include <functional>
#include <memory>

#include "LinkDbStore.h"
#include "LmdbStore.h"
#include "Model.h"
#include "Report.h"
#include "SqliteStore.h"
#include "System.h"

namespace bench {

constexpr int RUNS = 3;

struct Contender {
    std::string product;
    std::string form;             // how it does it, if it has several ways
    std::function<double()> once; // seconds per operation of one run
};

struct Target {
    std::string product;
    Against against;
    double ratio;
};

class Suite {
public:
    // Targets are judged only where asked: they are meant for a graph of a million.
    Suite(std::uint32_t objects, std::string const &folder, Report &report, bool judge);

    void Run();
    std::string Shape(); // one line on the graph

private:
    void Build();
    void Save();
    void Load();
    void MeasureMemory();
    void OpenStores();
    void Paths();
    void Closures();
    void ClosureOfAll();
    void Links(std::string const &title, std::vector<std::uint32_t> const &objects);

    // The first contender is ours. A product's target counts against its fastest form.
    void Compare(std::string const &workload, std::vector<Target> const &targets,
                 std::vector<Contender> const &contenders);
    void AddRow(std::string const &workload, Unit unit, double ours, std::string const &baseline,
                double theirs, Against against, double target);
    // A contender that is asked the same question once per sample and has to be right.
    template <class Ask, class Sample> Contender Asking(std::string product, std::string form,
                                                        std::vector<Sample> const &samples,
                                                        Answer expected, Ask ask);

    std::string LinkDbFile() const { return m_linkDbFolder + "/linkdb.dat"; }

    std::uint32_t m_objects;
    Graph m_graph;
    Model m_model;
    Report &m_report;
    bool m_judge;
    TemporaryFolder m_folder;
    std::string m_linkDbFolder;
    std::string m_sqliteFolder;
    std::string m_lmdbFolder;
    std::unique_ptr<LinkDbStore> m_linkDb;
    std::unique_ptr<SqliteStore> m_sqliteMemory;
    std::unique_ptr<SqliteStore> m_sqliteFile;
    std::unique_ptr<LmdbStore> m_lmdb;
};

// What the program does when it runs itself to measure a process of its own.
void PrintLoadFigures(std::string const &folder, std::string const &path);
void PrintBuildFigures(std::uint32_t objects, std::string const &folder);

} // namespace bench

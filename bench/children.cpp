// The figures that a process of its own has to give: how long it takes to load what
// another process saved, and how much memory the database takes.
#include "Suite.h"

#include <cstdio>

namespace bench {

void PrintLoadFigures(std::string const &folder, std::string const &path) {
    ForgetPeak();
    Memory const before = ProcessMemory();
    std::unique_ptr<LinkDbStore> store;
    double const loading = Seconds([&] { store = std::make_unique<LinkDbStore>(folder); });
    Memory const loaded = ProcessMemory();
    std::uint32_t id = 0;
    double const locating = Seconds([&] { id = store->Locate(path); });
    store->Links(id);
    store->Closure(id);
    store->Closure(DRIVE_ID);
    Memory const used = ProcessMemory();
    std::printf("%.9f %.9f %zu %zu %zu\n", loading, locating, loaded.resident - before.resident,
                loaded.peak - before.resident, used.resident - before.resident);
}

void PrintBuildFigures(std::uint32_t objects, std::string const &folder) {
    Graph const graph = MakeGraph(objects);
    ForgetPeak();
    Memory const before = ProcessMemory();
    LinkDbStore store(folder);
    store.Add(graph);
    Memory const built = ProcessMemory();
    store.Save();
    Memory const saved = ProcessMemory();
    std::printf("%zu %zu\n", built.resident - before.resident, saved.peak - before.resident);
}

} // namespace bench

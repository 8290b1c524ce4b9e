// What the protected lists cost: the load, questions, and what loading the library adds to a
// program.
#include <cstdio>

#include "Contest.h"

int main(int argc, char **argv) {
    std::string const work = argc == 2 ? argv[1] : "";
    if (work == "--load" || work == "--inflate") {
        std::printf("%.9f\n", bench::SecondsOf(work));
        return 0;
    }
    return bench::RunTopics(argc, argv, "qvlinkdb_protected", [](bool quick) {
        // Memory first, as long as the heap is fresh.
        std::vector<bench::Row> rows = bench::ProtectMemory();
        rows.push_back(bench::ListLoad(quick ? 5 : 51));
        return std::vector<bench::Topic>{{"Lines", bench::ProtectContests(), rows},
                                         {"Starts", {}, bench::LoadTimes(quick ? 20 : 200)}};
    });
}

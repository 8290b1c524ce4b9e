// What strings and lists of strings cost, by the side of the standard library's.
#include "Contest.h"

int main(int argc, char **argv) {
    return bench::RunTopics(argc, argv, "qvlinkdb_strings", [](bool quick) {
        // Memory first, as long as the heap is fresh.
        std::vector<bench::Row> const memory = bench::StringMemory();
        std::uint32_t const strings = quick ? 5000 : 100000;
        return std::vector<bench::Topic>{{"Characters", bench::StringContests(), memory},
                                         {"Strings", bench::StringListContests(strings), {}}};
    });
}

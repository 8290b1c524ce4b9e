// What the containers cost, by the side of what one would use instead.
#include "Contest.h"

int main(int argc, char **argv) {
    return bench::RunTopics(argc, argv, "qvlinkdb_containers", [](bool quick) {
        return std::vector<bench::Topic>{{"Bytes", bench::RangeContests(), {}},
                                         {"Nodes", bench::ListContests(quick ? 1000 : 10000), {}}};
    });
}

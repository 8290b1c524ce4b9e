// What paths cost, by the side of the standard library's.
#include "Contest.h"

int main(int argc, char **argv) {
    return bench::RunTopics(argc, argv, "qvlinkdb_paths", [](bool) {
        return std::vector<bench::Topic>{{"Paths", bench::PathContests(), {}}};
    });
}

// What the registry costs, by the side of what it stands on.
#include "Contest.h"

int main(int argc, char **argv) {
    return bench::RunTopics(argc, argv, "qvlinkdb_registry_speed", [](bool quick) {
        // The mounted hive first: it makes the prefix that the process has.
        std::vector<bench::Contest> const hive = bench::HiveContests(quick ? 300 : 2000);
        std::uint32_t const keys = quick ? 3000 : 30000;
        return std::vector<bench::Topic>{{"Keys", bench::RegistryContests(keys), {}},
                                         {"Keys", hive, {}}};
    });
}

// What loading a hostile file allocates: nothing that the file's own size doesn't warrant.
#include "allocations.h"
#include "faults_fixture.h"

namespace {

struct Cost {
    std::size_t largest, peak;
};

class FaultsHostile : public testing::Test {
protected:
    TempFolder folder;
    std::string const directory = folder.Directory();
    Bytes const small = SmallGraph();

    Cost CostOf(Bytes const &bytes) {
        WriteBytes(folder.DatabaseFile(), bytes);
        CQVUDatabase *database = nullptr;
        Cost cost{};
        {
            AllocationWatch const watch;
            database = AttachDatabase(directory.c_str());
            cost = {watch.Largest(), watch.PeakBytes()};
        }
        EXPECT_NE(database, nullptr);
        database->Release();
        return cost;
    }
    // Compares with the cost of a load that finds no file to take, but for its buffers: the
    // rest may be a fixed multiple of the file, for records and their index.
    void ExpectWarranted(Bytes const &bytes, char const *what) {
        Cost const fixed = CostOf(Bytes(28, 0)), cost = CostOf(bytes);
        EXPECT_LE(cost.largest,
                  std::max(fixed.largest, std::max<std::size_t>(16 * bytes.size(), 8192)))
            << what;
        EXPECT_LE(cost.peak, fixed.peak + 16 * bytes.size() + 65536) << what;
    }
};

// Offsets in the small graph's file: the first object's record is the root's.
constexpr std::size_t dataSizeAt = 28 + 12, fromAt = 28 + 16, toAt = 28 + 20,
                      nameLengthAt = 28 + 24;

} // namespace

TEST_F(FaultsHostile, Counts_beyond_the_file_cost_nothing) {
    for (std::size_t const at :
         {image::objectCountAt, image::linkCountAt, dataSizeAt, fromAt, toAt, nameLengthAt - 2})
        for (std::uint32_t const count : {0x3fffffffu, 0x7fffffffu, 0xffffffffu, 0x10000000u}) {
            Bytes bytes = small;
            image::SetWord(bytes, at, count);
            ExpectWarranted(bytes, ("word at " + std::to_string(at)).c_str());
        }
}

TEST_F(FaultsHostile, Every_word_of_a_small_file_set_to_an_extreme_costs_nothing) {
    for (std::size_t at = 4; at + 4 <= small.size(); ++at) {
        Bytes bytes = small;
        image::SetWord(bytes, at, 0x3fffffff);
        ExpectWarranted(bytes, ("word at " + std::to_string(at)).c_str());
    }
}

TEST_F(FaultsHostile, Ids_scattered_over_the_whole_range_take_bounded_memory) {
    image::File file;
    file.stamp = OwnStamp();
    std::uint32_t id = 1;
    for (int i = 0; i < 20000; ++i) {
        image::Object object;
        object.id = id;
        file.objects.push_back(object);
        file.links.push_back({id, id, id, 2});
        id = id * 1664525u + 1013904223u;
    }
    ExpectWarranted(image::Write(file), "scattered ids");
}

TEST_F(FaultsHostile, Ids_at_even_distances_take_bounded_memory) {
    for (std::uint32_t const distance : {64u, 1024u, 4096u, 65536u}) {
        image::File file;
        file.stamp = OwnStamp();
        for (std::uint32_t i = 1; i < 20000; ++i) {
            image::Object object;
            object.id = i * distance;
            file.objects.push_back(object);
            file.links.push_back({i * distance, 1, 1, 2});
        }
        ExpectWarranted(image::Write(file), std::to_string(distance).c_str());
    }
}

TEST_F(FaultsHostile, Stale_entries_of_ids_all_over_take_bounded_memory) {
    image::File file;
    file.stamp = OwnStamp();
    image::Object object;
    object.id = 2;
    std::uint32_t id = 1;
    for (int i = 0; i < 100000; ++i) {
        object.to.push_back(id);
        id = id * 1664525u + 1013904223u;
    }
    file.objects = {object};
    ExpectWarranted(image::Write(file), "stale entries");
}

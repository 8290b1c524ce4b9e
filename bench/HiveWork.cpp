// A mounted hive by the registry class, and by hivex used directly.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include <hive_image.h>
#include <hivex.h>
#include <UtilsRegistry.h>

#include "Contest.h"
#include "System.h"

namespace bench {
namespace {

constexpr double MOST = 2;
constexpr char const *DIRECT = "hivex";

std::string Name(std::uint32_t number) { return "Key " + std::to_string(number); }

// A prefix in which a hive with so many keys is mounted; the process's own from now on.
class Mounted {
public:
    explicit Mounted(std::uint32_t keys) {
        HiveFile hive(Hive());
        for (std::uint32_t i = 0; i < keys; ++i)
            hive.Add(Name(i)).SetNumber(Name(i), "Value", i);
        hive.Write();
        std::ofstream(m_folder.Path() + "/platform.ini") << "hive.HKLM\\Mounted=" << Hive() << '\n';
        setenv("QVPREFIX", m_folder.Path().c_str(), 1);
    }
    std::string Hive() const { return m_folder.Path() + "/hive"; }

private:
    TemporaryFolder m_folder{std::filesystem::temp_directory_path().string()};
};

std::uint64_t ReadMounted(std::uint32_t keys) {
    UTILS::UtilsRegistry registry;
    std::uint64_t sum = 0;
    for (std::uint32_t i = 0; i < keys; ++i) {
        unsigned long number = 0;
        Expect(registry.RegOpenKeyA(("Mounted\\" + Name(i)).c_str()), "open");
        Expect(registry.RegQueryValueA("Value", number), "read");
        sum += number;
    }
    return sum;
}

// The file is open on both sides.
std::uint64_t ReadDirect(hive_h *hive, std::uint32_t keys) {
    hive_node_h const root = hivex_root(hive);
    std::uint64_t sum = 0;
    for (std::uint32_t i = 0; i < keys; ++i) {
        hive_node_h const key = hivex_node_get_child(hive, root, Name(i).c_str());
        hive_value_h const value = hivex_node_get_value(hive, key, "Value");
        sum += static_cast<std::uint32_t>(hivex_value_dword(hive, value));
    }
    return sum;
}

std::uint64_t EnumerateMounted() {
    UTILS::UtilsRegistry registry;
    UTILS::UtilsString name;
    std::uint64_t size = 0;
    Expect(registry.RegOpenKeyA("Mounted"), "open");
    for (unsigned long i = 0; registry.RegEnumKeyA(i, name, 0); ++i)
        size += name.size();
    return size;
}

std::uint64_t EnumerateDirect(hive_h *hive) {
    std::uint64_t size = 0;
    hive_node_h *const keys = hivex_node_children(hive, hivex_root(hive));
    for (hive_node_h *key = keys; *key; ++key) {
        char *const name = hivex_node_name(hive, *key);
        size += std::string(name).size();
        std::free(name);
    }
    std::free(keys);
    return size;
}

} // namespace

std::vector<Contest> HiveContests(std::uint32_t keys) {
    auto const mounted = std::make_shared<Mounted>(keys);
    std::shared_ptr<hive_h> const hive(hivex_open(mounted->Hive().c_str(), 0), hivex_close);
    Expect(hive != nullptr, "a hive");
    Contest read{"Read a value of each key", keys, {}};
    std::uint64_t const sum = std::uint64_t{keys} * (keys - 1) / 2;
    Add(
        read, "", [keys, mounted] { return ReadMounted(keys); }, sum);
    Add(
        read, DIRECT, [keys, hive] { return ReadDirect(hive.get(), keys); }, sum, Against::Limit,
        MOST);
    Contest names{"Enumerate the keys", keys, {}};
    std::uint64_t const size = EnumerateDirect(hive.get());
    Add(
        names, "", [mounted] { return EnumerateMounted(); }, size);
    Add(
        names, DIRECT, [hive] { return EnumerateDirect(hive.get()); }, size, Against::Limit, MOST);
    return {read, names};
}

} // namespace bench

#include "Graph.h"

#include <algorithm>
#include <array>

#include "Names.h"
#include "Random.h"

namespace bench {
namespace {

constexpr std::uint64_t SEED = 20040229;
constexpr std::uint32_t OBJECTS_PER_FOLDER = 12;

// Libraries come in families. A program takes most of what it needs from one family and
// the rest from the first, which everybody uses; a library needs only libraries that
// stand before it. Within a family the front ones are needed most. With these figures the
// closure of a program has about 180 objects whatever the size of the graph.
constexpr std::uint32_t FAMILY_SIZE = 400;
constexpr double LIBRARY_SHARE = 0.1;
constexpr double PROGRAM_SHARE = 0.18;
constexpr double OWN_FAMILY_SHARE = 0.7;
constexpr double SKEW = 2.4;

struct Folder {
    std::vector<std::uint32_t> folders;
    std::uint32_t files = 0;
};

// Shares of folders by depth below the drive; files lie one deeper.
std::uint32_t DrawDepth(Random &random) {
    constexpr std::array<double, 8> CUMULATED = {0.001, 0.01, 0.06, 0.24, 0.50, 0.74, 0.90, 1.0};
    double const share = random.Unit();
    return 1 +
           static_cast<std::uint32_t>(
               std::upper_bound(CUMULATED.begin(), CUMULATED.end() - 1, share) - CUMULATED.begin());
}

// Folder 0 is the drive. Some folders get many more folders and files than others.
std::vector<Folder> MakeFolders(std::uint32_t objects, Random &random) {
    std::uint32_t const count = std::max(objects / OBJECTS_PER_FOLDER, 2U);
    std::vector<Folder> folders(count);
    std::vector<std::vector<std::uint32_t>> byDepth(1, {0});
    for (std::uint32_t i = 1; i < count; ++i) {
        std::size_t const depth = std::min<std::size_t>(DrawDepth(random), byDepth.size());
        auto const &parents = byDepth[depth - 1];
        folders[parents[random.Skewed(parents.size(), 1.5)]].folders.push_back(i);
        byDepth.resize(std::max(byDepth.size(), depth + 1));
        byDepth[depth].push_back(i);
    }
    std::vector<std::uint32_t> order(count);
    for (std::uint32_t i = 0; i < count; ++i)
        order[i] = i;
    random.Shuffle(order);
    for (std::uint32_t file = count; file < objects; ++file)
        ++folders[order[random.Skewed(count, 1.7)]].files;
    return folders;
}

FileData DrawFileData(Random &random, bool folder) {
    FileData data{};
    data.dwSizeLow = folder ? 4096 : random.Skewed(std::size_t{1} << 22, 4);
    data.dwTimeLow = random.Below(std::size_t{1} << 32);
    data.dwTimeHigh = 30000000 + random.Below(1000000);
    data.dwAttributes = folder ? 0x10 : 0x20;
    return data;
}

Role DrawFileRole(Random &random) {
    double const share = random.Unit();
    if (share < LIBRARY_SHARE)
        return Role::Library;
    return share < LIBRARY_SHARE + PROGRAM_SHARE ? Role::Program : Role::Document;
}

class Maker {
public:
    explicit Maker(std::uint32_t objects) : m_random(SEED), m_names(m_random) {
        m_graph.objects.reserve(objects);
        m_graph.needs.reserve(std::size_t{2} * objects);
    }

    // Objects in the order of a walk: a folder, its files, then folder by folder.
    void MakeTree(std::uint32_t objects) {
        std::vector<Folder> const folders = MakeFolders(objects, m_random);
        std::vector<std::pair<std::uint32_t, std::uint32_t>> open; // folder and its object's id
        Add(ROOT_ID, OBJ_DRIVE, "C:", true);
        open.emplace_back(0, DRIVE_ID);
        while (!open.empty()) {
            auto const [folder, id] = open.back();
            open.pop_back();
            m_names.NextFolder();
            MakeFiles(id, folders[folder].files);
            for (std::uint32_t const below : folders[folder].folders)
                open.emplace_back(below, Add(id, OBJ_FILE, m_names.Next(Role::Folder), true));
        }
    }

    void MakeNeeds() {
        m_random.Shuffle(m_libraries);
        for (std::uint32_t i = 0; i < m_libraries.size(); ++i)
            MakeLibraryNeeds(i);
        std::size_t const wanted = 2 * m_graph.objects.size() - m_graph.needs.size();
        std::vector<std::uint32_t> counts = SpreadOverPrograms(wanted);
        for (std::size_t i = 0; i < counts.size(); ++i)
            MakeProgramNeeds(m_graph.programs[i], counts[i]);
    }

    Graph Take() { return std::move(m_graph); }

private:
    std::uint32_t Add(std::uint32_t parent, std::uint32_t type, std::string name, bool folder) {
        m_graph.objects.push_back({parent, type, std::move(name), DrawFileData(m_random, folder)});
        return m_graph.HighestId();
    }

    void MakeFiles(std::uint32_t folder, std::uint32_t count) {
        for (std::uint32_t i = 0; i < count; ++i) {
            Role const role = DrawFileRole(m_random);
            std::uint32_t const id = Add(folder, OBJ_FILE, m_names.Next(role), false);
            if (role == Role::Library)
                m_libraries.push_back(id);
            if (role == Role::Program)
                m_graph.programs.push_back(id);
        }
    }

    std::uint32_t Families() const {
        return std::max(static_cast<std::uint32_t>(m_libraries.size()) / FAMILY_SIZE, 1U);
    }
    std::uint32_t FamilyEnd(std::uint32_t family) const {
        return family + 1 == Families() ? static_cast<std::uint32_t>(m_libraries.size())
                                        : (family + 1) * FAMILY_SIZE;
    }

    // A library that stands before `end`, of the family or of the first one.
    std::uint32_t DrawLibrary(std::uint32_t family, std::uint32_t end) {
        std::uint32_t begin = family * FAMILY_SIZE;
        if (begin == end || !m_random.Chance(OWN_FAMILY_SHARE)) {
            end = family == 0 ? end : FamilyEnd(0);
            begin = 0;
        }
        return m_libraries[begin + m_random.Skewed(end - begin, SKEW)];
    }

    void LinkNeeds(std::uint32_t source, std::uint32_t family, std::uint32_t end,
                   std::uint32_t count) {
        std::vector<std::uint32_t> drawn;
        while (drawn.size() < count) {
            std::uint32_t const target = DrawLibrary(family, end);
            if (std::find(drawn.begin(), drawn.end(), target) != drawn.end())
                continue;
            drawn.push_back(target);
            m_graph.needs.push_back({source, target, LINK_NEEDS});
        }
    }

    void MakeLibraryNeeds(std::uint32_t index) {
        std::uint32_t const family = std::min(index / FAMILY_SIZE, Families() - 1);
        std::uint32_t const count = std::min(2 + m_random.Below(4), index);
        LinkNeeds(m_libraries[index], family, index, count);
    }

    void MakeProgramNeeds(std::uint32_t program, std::uint32_t count) {
        std::uint32_t const families = Families();
        std::uint32_t const family = families == 1 ? 0 : 1 + m_random.Below(families - 1);
        LinkNeeds(program, family, FamilyEnd(family), count);
    }

    std::vector<std::uint32_t> SpreadOverPrograms(std::size_t links) {
        std::vector<std::uint32_t> counts(m_graph.programs.size(), 1);
        for (std::size_t i = counts.size(); i < links; ++i)
            ++counts[m_random.Below(counts.size())];
        return counts;
    }

    Random m_random;
    NameMaker m_names;
    Graph m_graph;
    std::vector<std::uint32_t> m_libraries;
};

} // namespace

std::string Graph::PathOf(std::uint32_t id) const {
    Object const &object = ById(id);
    return id == DRIVE_ID ? object.name : PathOf(object.parent) + "\\" + object.name;
}

Graph MakeGraph(std::uint32_t objects) {
    Maker maker(objects);
    maker.MakeTree(objects);
    maker.MakeNeeds();
    return maker.Take();
}

} // namespace bench

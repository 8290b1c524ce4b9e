// Where the GNU loader of this machine finds the libraries that ELF files need.
//
// For one file by itself, with nothing loaded before it and no LD_LIBRARY_PATH: a name
// with a slash is a path. Else its DT_RPATH, if it has no DT_RUNPATH; its DT_RUNPATH; the
// loader's cache; the default folders. In each folder those below glibc-hwcaps that this
// processor is capable of come first. A file counts if it is ELF, for the same machine.
// Folders that aren't absolute paths are passed over, as they depend on who starts it.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace qvlink {

// A file that needs libraries.
struct Needer {
    std::uint32_t flags = 0; // FLAG_* of model.h: width, byte order, machine, default folders
    std::string folder;      // what $ORIGIN stands for
    std::string rpath;
    std::string runpath;
};

struct Located {
    std::string path;       // of the host, absolute; may lead through symbolic links
    std::uint32_t rule = 0; // LINK_FOUND_*
};

// What the loader itself would know.
struct LoaderSettings {
    std::string cacheFile;
    std::vector<std::string> capabilities; // folders below glibc-hwcaps, the best one first
    std::string platform;                  // what $PLATFORM stands for
    // By machine (the bits of the flags word that tell it) what $LIB stands for, and the
    // default folders.
    struct Machine {
        std::string lib;
        std::vector<std::string> folders;
    };
    std::map<std::uint32_t, Machine> machines;
};
LoaderSettings SystemLoaderSettings();

// Remembers what it has seen, so that it answers for one moment only.
class ElfSearch {
public:
    explicit ElfSearch(LoaderSettings settings);
    ~ElfSearch();
    ElfSearch(ElfSearch const &) = delete;
    ElfSearch &operator=(ElfSearch const &) = delete;

    std::optional<Located> Find(Needer const &needer, std::string const &name);

private:
    struct State;
    std::unique_ptr<State> m_state;
};

// The bits of a flags word that tell for which machines a file is.
constexpr std::uint32_t ELF_MACHINE_MASK = 0xffff30;

} // namespace qvlink

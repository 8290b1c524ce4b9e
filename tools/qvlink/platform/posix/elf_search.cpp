#include "platform/elf_search.h"

#include <algorithm>
#include <elf.h>
#include <fcntl.h>
#include <unordered_map>

#include "model.h"
#include "platform/posix/file.h"
#include "readers/loader_cache.h"

namespace qvlink {
namespace {

constexpr const char CAPABILITY_FOLDER[] = "/glibc-hwcaps/";

std::vector<std::string> Split(std::string const &text, char separator) {
    std::vector<std::string> parts;
    for (std::size_t at = 0;;) {
        std::size_t const end = text.find(separator, at);
        parts.push_back(text.substr(at, end == std::string::npos ? end : end - at));
        if (end == std::string::npos) {
            return parts;
        }
        at = end + 1;
    }
}

// Puts `value` in the place of $NAME and ${NAME}.
void Substitute(std::string &text, std::string const &name, std::string const &value) {
    for (std::string const &token : {"${" + name + "}", "$" + name}) {
        for (std::size_t at = 0; (at = text.find(token, at)) != std::string::npos;) {
            text.replace(at, token.size(), value);
            at += value.size();
        }
    }
}

} // namespace

struct ElfSearch::State {
    LoaderSettings settings;
    LoaderCache cache;
    // By path, what machine a library is for; nothing if it is no ELF library.
    std::unordered_map<std::string, std::optional<std::uint32_t>> machines;
    // By machine and name, what cache and default folders give.
    std::unordered_map<std::string, std::optional<Located>> common;

    explicit State(LoaderSettings given) : settings(std::move(given)) {
        DescriptorGuard const file(::open(settings.cacheFile.c_str(), O_RDONLY | O_CLOEXEC));
        if (file) {
            FileSource source(file.Get());
            cache = ReadLoaderCache(source);
        }
    }

    static std::optional<std::uint32_t> ReadMachine(std::string const &path) {
        DescriptorGuard const file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
        unsigned char header[20]; // e_ident, e_type, e_machine
        if (!file || ::pread(file.Get(), header, sizeof header, 0) != sizeof header ||
            std::memcmp(header, ELFMAG, SELFMAG) != 0) {
            return std::nullopt;
        }
        bool const swapped = header[EI_DATA] == ELFDATA2MSB;
        std::uint32_t const machine =
            swapped ? header[18] * 256u + header[19] : header[19] * 256u + header[18];
        return (header[EI_CLASS] == ELFCLASS64 ? FLAG_64BIT : 0) | (swapped ? FLAG_BIG_ENDIAN : 0) |
               machine << FLAG_MACHINE_SHIFT;
    }

    bool Fits(std::string const &path, std::uint32_t flags) {
        auto const [known, isNew] = machines.try_emplace(path);
        if (isNew) {
            known->second = ReadMachine(path);
        }
        return known->second == (flags & ELF_MACHINE_MASK);
    }

    std::optional<std::string> FindInFolder(std::string const &folder, std::string const &name,
                                            std::uint32_t flags) {
        for (std::string const &capability : settings.capabilities) {
            std::string path = folder;
            path.append(CAPABILITY_FOLDER).append(capability).append("/").append(name);
            if (Fits(path, flags)) {
                return path;
            }
        }
        std::string path = folder + '/' + name;
        return Fits(path, flags) ? std::optional(std::move(path)) : std::nullopt;
    }

    LoaderSettings::Machine const &MachineOf(std::uint32_t flags) const {
        static LoaderSettings::Machine const unknown;
        auto const found = settings.machines.find(flags & ELF_MACHINE_MASK);
        return found == settings.machines.end() ? unknown : found->second;
    }

    std::optional<Located> FindInRunPath(Needer const &needer, std::string const &runPath,
                                         std::string const &name, std::uint32_t rule) {
        if (runPath.empty()) {
            return std::nullopt;
        }
        for (std::string folder : Split(runPath, ':')) {
            Substitute(folder, "ORIGIN", needer.folder);
            Substitute(folder, "LIB", MachineOf(needer.flags).lib);
            Substitute(folder, "PLATFORM", settings.platform);
            if (folder.empty() || folder.front() != '/') {
                continue;
            }
            if (auto path = FindInFolder(folder, name, needer.flags)) {
                return Located{std::move(*path), rule};
            }
        }
        return std::nullopt;
    }

    bool IsDefaultFolder(std::string const &folder, std::uint32_t flags) const {
        auto const &folders = MachineOf(flags).folders;
        return std::find(folders.begin(), folders.end(), folder) != folders.end();
    }

    // Lower is better; nothing if this processor isn't capable of it.
    std::optional<std::size_t> Rank(std::string const &capability) const {
        auto const &all = settings.capabilities;
        auto const found = std::find(all.begin(), all.end(), capability);
        if (!capability.empty() && found == all.end()) {
            return std::nullopt;
        }
        return static_cast<std::size_t>(found - all.begin());
    }

    std::optional<std::string> FindInCache(std::string const &name, std::uint32_t flags) {
        auto const found = cache.find(name);
        if (found == cache.end()) {
            return std::nullopt;
        }
        std::optional<std::size_t> best;
        std::string path;
        for (CachedLibrary const &library : found->second) {
            auto const rank = Rank(library.capability);
            std::string const folder = library.path.substr(0, library.path.rfind('/'));
            bool const barred = (flags & FLAG_NODEFLIB) && IsDefaultFolder(folder, flags);
            if (rank && !barred && (!best || *rank < *best) && Fits(library.path, flags)) {
                best = rank;
                path = library.path;
            }
        }
        return best ? std::optional(path) : std::nullopt;
    }

    std::optional<Located> FindForAll(std::string const &name, std::uint32_t flags) {
        if (auto path = FindInCache(name, flags)) {
            return Located{std::move(*path), LINK_FOUND_CACHE};
        }
        if (!(flags & FLAG_NODEFLIB)) {
            for (std::string const &folder : MachineOf(flags).folders) {
                if (auto path = FindInFolder(folder, name, flags)) {
                    return Located{std::move(*path), LINK_FOUND_DEFAULT};
                }
            }
        }
        return std::nullopt;
    }
};

ElfSearch::ElfSearch(LoaderSettings settings)
    : m_state(std::make_unique<State>(std::move(settings))) {}
ElfSearch::~ElfSearch() = default;

std::optional<Located> ElfSearch::Find(Needer const &needer, std::string const &name) {
    if (name.find('/') != std::string::npos) {
        std::string path = name;
        Substitute(path, "ORIGIN", needer.folder);
        bool const found = path.front() == '/' && m_state->Fits(path, needer.flags);
        return found ? std::optional(Located{path, LINK_FOUND_DIRECT}) : std::nullopt;
    }
    auto located = m_state->FindInRunPath(needer, needer.rpath, name, LINK_FOUND_RPATH);
    if (!located) {
        located = m_state->FindInRunPath(needer, needer.runpath, name, LINK_FOUND_RUNPATH);
    }
    if (located) {
        return located;
    }
    std::uint32_t const flags = needer.flags & (ELF_MACHINE_MASK | FLAG_NODEFLIB);
    auto const [known, isNew] = m_state->common.try_emplace(std::to_string(flags) + '/' + name);
    if (isNew) {
        known->second = m_state->FindForAll(name, flags);
    }
    return known->second;
}

} // namespace qvlink

// Notes of ours in a loaded module: what the build put there for the library and its
// companions. The loader keeps them in memory, and they are found without a name.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <link.h>
#include <string_view>
#include <unistd.h>

namespace platform {

// The kinds of notes.
constexpr std::uint32_t stringTableNote = 1;
constexpr std::uint32_t resourceNote = 2;

// A module is named by the page that it begins at.
inline std::uintptr_t ModuleBase(dl_phdr_info const &module) {
    auto const page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    for (int i = 0; i < module.dlpi_phnum; ++i)
        if (module.dlpi_phdr[i].p_type == PT_LOAD)
            return (module.dlpi_addr + module.dlpi_phdr[i].p_vaddr) & ~(page - 1);
    return 0;
}

// Calls visit(contents) for each note of a kind in one segment of notes, which lie one
// behind the other, until it returns true. False if it never did.
template <class Visit> bool VisitNotesIn(std::string_view notes, std::uint32_t kind, Visit visit) {
    constexpr std::string_view owner("QVLinkDB\0", 9);
    auto const aligned = [](std::size_t size) { return (size + 3) & ~std::size_t{3}; };
    ElfW(Nhdr) header{};
    while (notes.size() >= sizeof header) {
        std::memcpy(&header, notes.data(), sizeof header);
        notes.remove_prefix(sizeof header);
        std::size_t const contents = aligned(header.n_namesz);
        std::size_t const end = contents + aligned(header.n_descsz);
        if (end > notes.size())
            return false;
        if (header.n_type == kind && notes.substr(0, header.n_namesz) == owner &&
            visit(notes.substr(contents, header.n_descsz)))
            return true;
        notes.remove_prefix(end);
    }
    return false;
}

// The same for a loaded module; null is the program, the first of all.
template <class Visit> bool VisitNotes(const void *handle, std::uint32_t kind, Visit visit) {
    struct Walk {
        std::uintptr_t base;
        std::uint32_t kind;
        Visit &visit;
        bool done;
    } walk{reinterpret_cast<std::uintptr_t>(handle), kind, visit, false};
    auto const look = [](dl_phdr_info *module, std::size_t, void *argument) {
        auto &asked = *static_cast<Walk *>(argument);
        if (asked.base != 0 && asked.base != ModuleBase(*module))
            return 0;
        for (int i = 0; i < module->dlpi_phnum && !asked.done; ++i) {
            ElfW(Phdr) const &part = module->dlpi_phdr[i];
            auto const *const start =
                reinterpret_cast<const char *>(module->dlpi_addr + part.p_vaddr);
            asked.done = part.p_type == PT_NOTE &&
                         VisitNotesIn({start, part.p_memsz}, asked.kind, asked.visit);
        }
        return 1;
    };
    dl_iterate_phdr(look, &walk);
    return walk.done;
}

} // namespace platform

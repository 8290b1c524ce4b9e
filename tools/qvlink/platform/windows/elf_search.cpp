#include "platform/elf_search.h"

namespace qvlink {

// No file is read as ELF here, so nothing is ever asked for.
struct ElfSearch::State {};

LoaderSettings SystemLoaderSettings() { return {}; }

ElfSearch::ElfSearch(LoaderSettings) {}
ElfSearch::~ElfSearch() = default;

std::optional<Located> ElfSearch::Find(Needer const &, std::string const &) { return std::nullopt; }

} // namespace qvlink

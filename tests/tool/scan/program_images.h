// Small PE and ELF files, put together from the formats' definitions.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace programs {

struct Pe {
    bool wide = true; // PE32+
    bool dll = false;
    std::uint16_t machine = 0x8664;
    std::vector<std::string> imports;
    std::vector<std::string> delayed;
    bool delayedByAddress = false; // the older form: addresses in memory
    std::uint64_t imageBase = 0x10000000;
};
std::string Write(Pe const &pe);

// Offsets in the files that Write makes.
constexpr std::size_t peHeaderAt = 0x80;
constexpr std::size_t peSectionAt = 0x400; // the one section, which is at 0x3000 in memory

struct Elf {
    bool wide = true; // ELFCLASS64
    bool bigEndian = false;
    std::uint16_t type = 3; // ET_DYN
    std::uint16_t machine = 62;
    std::string interpreter;
    std::vector<std::string> needed;
    std::string rpath;
    std::string runpath;
    bool noDefaultFolders = false;
};
std::string Write(Elf const &elf);

} // namespace programs

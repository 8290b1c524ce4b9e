// What reading a program or library gives.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace qvlink {

struct Program {
    std::uint32_t flags = 0;          // FLAG_* of model.h; 0 if the file is no program
    std::vector<std::string> needed;  // in the file's order, each once
    std::vector<std::string> delayed; // PE: those loaded at first use
    std::string interpreter;          // ELF: path of the program interpreter, or empty
    std::string rpath;                // ELF: DT_RPATH; empty where there is a run path
    std::string runpath;              // ELF: DT_RUNPATH, or empty
    std::string malformed;            // what made no sense; empty exactly if all did
};

// Longest name of a needed library that a reader takes as one.
constexpr std::size_t LONGEST_NEEDED_NAME = 4095;

} // namespace qvlink

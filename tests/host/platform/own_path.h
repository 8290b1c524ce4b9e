// What this system's diagnostics call the file of a program.
#pragma once

#include <algorithm>
#include <filesystem>
#include <string>

#ifdef _WIN32

inline bool IsWindows() { return true; }

inline std::string OwnPathOf(std::filesystem::path const &program) { return program.string(); }

#else

inline bool IsWindows() { return false; }

// No drive but Z: holds it, and that is the host's root.
inline std::string OwnPathOf(std::filesystem::path const &program) {
    std::string path = "Z:" + std::filesystem::canonical(program).string();
    std::replace(path.begin(), path.end(), '/', '\\');
    return path;
}

#endif

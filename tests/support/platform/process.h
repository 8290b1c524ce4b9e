// What tests ask of the system about processes and modules.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

std::uint32_t CurrentProcessId();
std::string ProgramPath(); // of the running program

// Runs a program to its end. Its exit code; a program that died of a signal or an
// exception gives a value outside of 0 to 255. -1 if it couldn't be started.
long RunProgram(std::string const &program, std::vector<std::string> const &arguments);

// Ends this process at once: no destructors, no exit handlers, no library teardown.
[[noreturn]] void KillThisProcess(int code);

// A library loaded by path, and what it exports. Null on failure.
void *LoadModule(std::string const &path);
void *FindSymbol(void *module, char const *name);
void UnloadModule(void *module);
bool IsModuleLoaded(std::string const &path);
// The library under test, as this system names its file.
char const *LibraryFileName();

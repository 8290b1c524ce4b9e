// Second processes for tests: the test program runs itself in a named role.
#pragma once

#include <string>
#include <vector>

using Arguments = std::vector<std::string>;
using RoleBody = int (*)(Arguments const &arguments); // the result is the exit code

// Registers a role; have one as a static object for each.
struct Role {
    Role(char const *name, RoleBody body);
};

// Runs this program in that role in a process of its own; its exit code, see RunProgram.
long RunRole(std::string const &name, Arguments const &arguments);
// The same, for a role of another program that lies in this program's folder.
long RunRoleOf(std::string const &program, std::string const &name, Arguments const &arguments);

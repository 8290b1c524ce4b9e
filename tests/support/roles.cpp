#include "roles.h"

#include <filesystem>
#include <map>

#include <gtest/gtest.h>

#include "platform/process.h"

namespace {

std::map<std::string, RoleBody> &Roles() {
    static std::map<std::string, RoleBody> roles;
    return roles;
}

constexpr char roleSwitch[] = "--role";
constexpr int unknownRole = 126;

long RunRoleAt(std::string const &program, std::string const &name, Arguments arguments) {
    arguments.insert(arguments.begin(), {roleSwitch, name});
    return RunProgram(program, arguments);
}

} // namespace

Role::Role(char const *name, RoleBody body) { Roles()[name] = body; }

long RunRole(std::string const &name, Arguments const &arguments) {
    return RunRoleAt(ProgramPath(), name, arguments);
}

long RunRoleOf(std::string const &program, std::string const &name, Arguments const &arguments) {
    std::filesystem::path path(ProgramPath());
    path.replace_filename(program + path.extension().string());
    return RunRoleAt(path.string(), name, arguments);
}

int main(int count, char **values) {
    if (count > 2 && values[1] == std::string(roleSwitch)) {
        auto const role = Roles().find(values[2]);
        return role == Roles().end() ? unknownRole
                                     : role->second(Arguments(values + 3, values + count));
    }
    testing::InitGoogleTest(&count, values);
    return RUN_ALL_TESTS();
}

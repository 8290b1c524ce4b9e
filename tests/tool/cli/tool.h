// Runs the real program.
#pragma once

#include <string>
#include <utility>
#include <vector>

struct Outcome {
    long exitCode = -1; // outside of 0 to 255 if it died
    std::string out;
    std::string err;
};

// Runs qvlink, which lies beside the running test, and reads what it writes. `environment`
// is set for it on top of the test's own.
Outcome RunTool(std::vector<std::string> const &arguments,
                std::vector<std::pair<std::string, std::string>> const &environment = {});
// The same with an output that is closed before the program starts to write.
Outcome RunToolWithoutReader(std::vector<std::string> const &arguments);

// A path of drive Z: as the host writes it.
std::string HostForm(std::string const &databasePath);
// A path of drive C: as the host writes it, if `prefix` is the prefix in use.
std::string HostFormIn(std::string const &prefix, std::string const &databasePath);
// The default folder of the database for a user whose home is `home`, and the variable of
// the environment that says so.
std::string DefaultFolderFor(std::string const &home);
std::pair<std::string, std::string> HomeVariable(std::string const &home);
std::string FileBesideTest(std::string const &name);

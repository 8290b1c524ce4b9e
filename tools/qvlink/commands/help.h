// The texts of the help.
#pragma once

#include <string>
#include <vector>

namespace qvlink {

struct CommandHelp {
    const char *name;
    const char *summary; // one sentence
    const char *footer;  // what there is to know, and examples
};
CommandHelp const &HelpOf(std::string const &command);

std::string AboutText();
std::string MainFooter();
std::string VersionText();
std::string DefaultDirectoryText();
std::vector<std::string> FindTypes();

} // namespace qvlink

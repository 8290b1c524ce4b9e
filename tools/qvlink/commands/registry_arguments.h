// What `qvlink reg` is told of keys and code pages.
#pragma once

#include "commands/request.h"
#include "registry/code_page.h"

#include <memory>
#include <string>

namespace qvlink {

// A key of the command line, with its root's short name and in UTF-8. Throws CommandError.
std::string KeyArgument(std::string const &text);
// A text of the registry as this system's messages have it.
std::string HostText(std::string const &utf8);
// The page of --code-page, or the one in use. Throws CommandError.
std::unique_ptr<CodePage> PageArgument(Request const &request);

} // namespace qvlink

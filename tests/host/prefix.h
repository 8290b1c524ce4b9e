// A prefix that settings come from, for the processes that are started from now on.
#pragma once

#include "temp_folder.h"

#include <fstream>
#include <string>

#include "platform/system_version.h"

// The text is that of its platform.ini.
class Prefix {
public:
    explicit Prefix(std::string const &text) {
        std::ofstream(m_folder.Path() / "platform.ini") << text << '\n';
        UsePrefixFromNowOn(m_folder.Directory().c_str());
    }

private:
    TempFolder m_folder;
};

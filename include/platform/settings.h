// What the library is told of the machine it works for, outside Windows. There the
// system itself knows these things, and this header doesn't exist for a program.
//
// Before anything runs they come from a prefix: the directory that QVPREFIX names, else
// `qvlinkdb` in the user's data directory. `dosdevices` in it holds a link per drive
// (`c:`, `d:`, ...); a missing `c:` is `drive_c` and a missing `z:` is `/`. A file
// `platform.ini` overrides the other fields, one `field=value` a line, with the names
// below and `version=platform.major.minor`; its lines `hive.HKLM\SOFTWARE=FILE` mount hive
// files in the registry, whatever settings are applied. Nothing is ever made there by reading.
#pragma once

#ifndef _WIN32

#include <map>
#include <string>

#include "linkdb_export.h"

namespace platform {

struct Settings {
    std::map<char, std::string> drives; // 'C' (upper case) -> directory of the host
    std::string windowsDirectory;       // "C:\\windows"
    std::string systemDirectory;        // "C:\\windows\\system32"
    std::string temporaryDirectory;     // "C:\\windows\\temp\\", as GetTempPathA gives it
    std::string computerName;           // the host's name, upper case
    std::string registryDirectory;      // directory of the host that holds the registry's store
    unsigned long platformId;           // as GetVersionExA reports them: 2, 5, 1
    unsigned long majorVersion;
    unsigned long minorVersion;
    unsigned codePage; // 65001
};

// A copy of what holds now. Any thread.
QVLINKDB_API Settings CurrentSettings();
// Takes the settings for every call made afterwards, by any thread; open handles keep
// what they have. Drives are taken by upper-case letter, directories without a closing
// slash; a drive of another name than a letter is dropped.
QVLINKDB_API void ApplySettings(Settings const &settings);

} // namespace platform

#endif

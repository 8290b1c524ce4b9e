// From paths as Windows writes them to the host's, and back.
#pragma once

#include <string>

#include "platform/wintypes.h"

namespace platform {

// The host's path for a path text: "C:\folder\file", "C:file", "\folder\file" and
// "folder\file", taken component by component without regard to case, or a path of the
// host, which begins with a forward slash and is taken as it stands but for backslashes,
// which separate too. What doesn't exist keeps the spelling of the text. FALSE, with the
// last error set, for a text that names nothing: an empty one, an unknown drive, a
// character that no name may have.
BOOL HostPath(const char *path, std::string &hostPath);

// The same place on the drive whose directory holds it, the longest if there are several;
// a path that no drive holds comes back as it is.
std::string DrivePath(std::string const &hostPath);

// The path of the entry of `folder` whose name is `name` without regard to case; the
// exact spelling goes first, then the first in the order of bytes. If there is none, the
// path that such an entry would have.
std::string FindEntry(std::string const &folder, std::string const &name);

// A name in a folder of the host.
std::string Joined(std::string const &folder, std::string const &name);

// The path without links and dots; empty if it leads nowhere.
std::string RealPath(std::string const &hostPath);

// Either slash.
bool IsSeparator(char c);
// Of ASCII, as drives have.
bool IsLetter(char c);

// The folder that holds a path of the host.
std::string ParentOf(std::string const &hostPath);

// True if ASCII letters apart the texts are the same, with case left aside.
bool SameName(std::string const &left, std::string const &right);

} // namespace platform

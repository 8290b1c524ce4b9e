// The protected lists: which files and registry keys belong to the operating system. They
// are resources of this library, one of files and one of keys for each family of systems.
#pragma once

#include "protect_tree.h"

// The trees of this process. The system's folders are the first components of files, and
// short root names (HKLM) those of keys.
extern ProtectNode ProtectedFileTree;
extern ProtectNode ProtectedRegTree;

// The library's attach puts the lists of the running system's family into the trees; no
// family, no list. Never fails: a list that can't be had leaves its tree empty. Throws
// std::bad_alloc if a tree has no room to grow.
void LoadProtectedFiles();
void LoadProtectedRegs();

// Fills in the system's folders, at the first call only.
void CaptureSystemDirs();

// Take a line of a list into the trees: the first a file behind its tag, the second a key.
// A line that isn't as it should be is reported, or passed over if it is too long.
void LoadFileListCallback(char *line, unsigned long length);
void LoadRegListCallback(char *line, unsigned long length);

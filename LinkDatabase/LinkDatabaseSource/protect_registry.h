// Which registry keys belong to the operating system.
#pragma once

// 1 or 0; null and empty are 0. A root's long name in upper case is taken for its short one,
// but for that of the users. A path of 260 characters or more ends the process.
int IsProtectedRegistryPath(const char *path);

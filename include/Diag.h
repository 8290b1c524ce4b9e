// Diagnostics: reports of conditions that should never happen, and the texts of
// thrown standard exceptions.
#pragma once

#include <cstdarg>
#include <string>

#include "linkdb_export.h"

// Reports to "OutputA" of the optional module "QVDebug.dll", and does nothing where
// that is absent. Never throws and never stops the caller. `file`, `function`, `line`
// and `timestamp` name the place; `format` and what follows are for the receiver.
QVLINKDB_API void Diag(int level, const char *file, const char *function, int line,
                       const char *timestamp, const char *format, ...);
QVLINKDB_API void DiagV(int level, const char *file, const char *function, int line,
                        const char *timestamp, const char *format, std::va_list arguments);

// Path of the module that this library lies in, in a static buffer of 260 bytes.
QVLINKDB_API const char *GetOwnModulePath();

// heading - detail; File:  file; Line:  line
QVLINKDB_API std::string FormatThrowText(const char *heading, const char *detail, const char *file,
                                         unsigned long line);

// A receiver of diagnostics for tests: the module QVDebug.dll that keeps what it is told.
// It is built into bin/receiver/; a test puts it beside the library that is to find it.
#pragma once

#include <cstdarg>

#include "linkdb_export.h"

// What a report said; a null text is kept as "(null)".
struct Report {
    int level;
    char modulePath[300];
    char file[100];
    char function[100];
    int line;
    char timestamp[100];
    char format[100];
    char text[500]; // the format with its arguments
};

extern "C" {
// The receiver's entry, as the library calls it.
QVLINKDB_API int OutputA(int level, const char *modulePath, const char *file, const char *function,
                         int line, const char *timestamp, const char *format,
                         std::va_list arguments);
QVLINKDB_API int ReportCount();
QVLINKDB_API void GetLastReport(Report *report);
// From now on reports are kept and then answered by an exception: 1 a standard one, 2 a
// number, 0 none.
QVLINKDB_API void ThrowWhenReported(int kind);
}

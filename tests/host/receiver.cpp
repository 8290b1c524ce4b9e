#include "receiver.h"

#include <cstdio>
#include <mutex>
#include <stdexcept>

namespace {

std::mutex reportsMutex;
int count = 0;
int throwing = 0;
Report last{};

template <std::size_t size> void Keep(char (&place)[size], const char *text) {
    std::snprintf(place, size, "%s", text ? text : "(null)");
}

} // namespace

int OutputA(int level, const char *modulePath, const char *file, const char *function, int line,
            const char *timestamp, const char *format, std::va_list arguments) {
    std::lock_guard<std::mutex> const lock(reportsMutex);
    ++count;
    last.level = level;
    last.line = line;
    Keep(last.modulePath, modulePath);
    Keep(last.file, file);
    Keep(last.function, function);
    Keep(last.timestamp, timestamp);
    Keep(last.format, format);
    if (format)
        std::vsnprintf(last.text, sizeof last.text, format, arguments);
    if (throwing == 1)
        throw std::runtime_error("the receiver can't go on");
    if (throwing == 2)
        throw 42;
    return 7;
}

int ReportCount() {
    std::lock_guard<std::mutex> const lock(reportsMutex);
    return count;
}

void GetLastReport(Report *report) {
    std::lock_guard<std::mutex> const lock(reportsMutex);
    *report = last;
}

void ThrowWhenReported(int kind) {
    std::lock_guard<std::mutex> const lock(reportsMutex);
    throwing = kind;
}

#include "Diag.h"

#include "platform/winapi.h"

#include <atomic>
#include <cstdio>
#include <mutex>

namespace {

constexpr const char *receiverName = "QVDebug.dll";

using OutputFunction = int (*)(int level, const char *modulePath, const char *file,
                               const char *function, int line, const char *timestamp,
                               const char *format, std::va_list arguments);

constexpr unsigned moduleTried = 1;
constexpr unsigned entryTried = 2;

// No lock guards these: a report that meets another thread's first one is lost.
std::atomic<HMODULE> receiver{nullptr};
std::atomic<FARPROC> output{nullptr};
std::atomic<unsigned> guard{0};

// True for the one caller that is to do what the bit stands for.
bool IsFirst(unsigned bit) {
    return (guard.load(std::memory_order_relaxed) & bit) == 0 && (guard.fetch_or(bit) & bit) == 0;
}

// The receiver's entry, or null. The load isn't tried again when it failed, nor when the
// module has gone.
OutputFunction FindOutput() {
    if (IsFirst(moduleTried))
        receiver = win::LoadLibraryA(receiverName);
    HMODULE const module = receiver;
    if (!module)
        return nullptr;
    if (!win::GetModuleHandleA(receiverName)) {
        receiver = nullptr;
        return nullptr;
    }
    if (IsFirst(entryTried))
        output = win::GetProcAddress(module, "OutputA");
    return reinterpret_cast<OutputFunction>(reinterpret_cast<void (*)()>(output.load()));
}

const char *OrEmpty(const char *text) { return text ? text : ""; }

} // namespace

void Diag(int level, const char *file, const char *function, int line, const char *timestamp,
          const char *format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    DiagV(level, file, function, line, timestamp, format, arguments);
    va_end(arguments);
}

void DiagV(int level, const char *file, const char *function, int line, const char *timestamp,
           const char *format, std::va_list arguments) {
    try {
        if (OutputFunction const receive = FindOutput())
            receive(level, GetOwnModulePath(), file, function, line, timestamp, format, arguments);
    } catch (...) {
        // What fails in a report is no concern of the code that reports.
    }
}

const char *GetOwnModulePath() {
    static std::mutex pathMutex;
    static char path[MAX_PATH];
    std::lock_guard<std::mutex> const lock(pathMutex);
    MEMORY_BASIC_INFORMATION information;
    if (!*path && win::VirtualQuery(path, &information, sizeof information))
        win::GetModuleFileNameA(static_cast<HMODULE>(information.AllocationBase), path, MAX_PATH);
    path[MAX_PATH - 1] = '\0'; // a path that was cut has no end on older systems
    return path;
}

std::string FormatThrowText(const char *heading, const char *detail, const char *file,
                            unsigned long line) {
    char number[25];
    std::snprintf(number, sizeof number, "%ld", static_cast<long>(line));
    return std::string(OrEmpty(heading)) + " - " + OrEmpty(detail) + "; File:  " + OrEmpty(file) +
           "; Line:  " + number;
}

#include "platform/process.h"

#include <windows.h>

std::uint32_t CurrentProcessId() { return GetCurrentProcessId(); }

std::string ProgramPath() {
    char path[MAX_PATH];
    DWORD const length = GetModuleFileNameA(nullptr, path, MAX_PATH);
    return std::string(path, length);
}

long RunProgram(std::string const &program, std::vector<std::string> const &arguments) {
    std::string command = '"' + program + '"';
    for (std::string const &argument : arguments)
        command += " \"" + argument + '"';
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION child{};
    if (!CreateProcessA(program.c_str(), command.data(), nullptr, nullptr, TRUE, 0, nullptr,
                        nullptr, &startup, &child))
        return -1;
    WaitForSingleObject(child.hProcess, INFINITE);
    DWORD code = 0;
    GetExitCodeProcess(child.hProcess, &code);
    CloseHandle(child.hThread);
    CloseHandle(child.hProcess);
    return static_cast<long>(code);
}

void KillThisProcess(int code) {
    TerminateProcess(GetCurrentProcess(), static_cast<UINT>(code));
    for (;;)
        Sleep(INFINITE);
}

void *LoadModule(std::string const &path) { return LoadLibraryA(path.c_str()); }

void *FindSymbol(void *module, char const *name) {
    return reinterpret_cast<void *>(GetProcAddress(static_cast<HMODULE>(module), name));
}

void UnloadModule(void *module) { FreeLibrary(static_cast<HMODULE>(module)); }

bool IsModuleLoaded(std::string const &path) { return GetModuleHandleA(path.c_str()); }

char const *LibraryFileName() { return "QVLinkDB.dll"; }

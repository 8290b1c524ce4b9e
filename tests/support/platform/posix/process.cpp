#include "platform/process.h"

#include <climits>

#include <dlfcn.h>
#include <sys/wait.h>
#include <unistd.h>

std::uint32_t CurrentProcessId() { return static_cast<std::uint32_t>(getpid()); }

std::string ProgramPath() {
    char path[PATH_MAX];
    ssize_t const length = readlink("/proc/self/exe", path, sizeof path);
    return length < 0 ? std::string() : std::string(path, static_cast<std::size_t>(length));
}

long RunProgram(std::string const &program, std::vector<std::string> const &arguments) {
    std::vector<char *> argv{const_cast<char *>(program.c_str())};
    for (std::string const &argument : arguments)
        argv.push_back(const_cast<char *>(argument.c_str()));
    argv.push_back(nullptr);
    pid_t const child = fork();
    if (child < 0)
        return -1;
    if (child == 0) {
        execv(program.c_str(), argv.data());
        _exit(127);
    }
    int status = 0;
    if (waitpid(child, &status, 0) != child)
        return -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status);
}

void KillThisProcess(int code) { _exit(code); }

void *LoadModule(std::string const &path) { return dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL); }

void *FindSymbol(void *module, char const *name) { return dlsym(module, name); }

void UnloadModule(void *module) { dlclose(module); }

bool IsModuleLoaded(std::string const &path) {
    void *const module = dlopen(path.c_str(), RTLD_NOW | RTLD_NOLOAD);
    if (module)
        dlclose(module);
    return module;
}

char const *LibraryFileName() { return "libQVLinkDB.so"; }

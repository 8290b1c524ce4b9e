#include "platform/posix/modules.h"

#include "platform/posix/errors.h"
#include "platform/posix/paths.h"

#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <elf.h>
#include <fcntl.h>
#include <link.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {
namespace {

struct Search {
    std::uintptr_t address;
    Module found;
};

std::uintptr_t PageSize() { return static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE)); }

std::uintptr_t PageOf(std::uintptr_t address) { return address & ~(PageSize() - 1); }

DWORD ProtectionOf(ElfW(Word) flags) {
    if (flags & PF_X)
        return PAGE_EXECUTE_READ;
    return flags & PF_W ? PAGE_READWRITE : PAGE_READONLY;
}

int LookIntoModule(dl_phdr_info *info, std::size_t, void *argument) {
    auto &search = *static_cast<Search *>(argument);
    std::uintptr_t base = UINTPTR_MAX;
    for (int i = 0; i < info->dlpi_phnum; ++i) {
        ElfW(Phdr) const &part = info->dlpi_phdr[i];
        std::uintptr_t const start = info->dlpi_addr + part.p_vaddr;
        if (part.p_type != PT_LOAD)
            continue;
        if (base == UINTPTR_MAX)
            base = PageOf(start);
        if (search.address < PageOf(start) || search.address >= start + part.p_memsz)
            continue;
        search.found = {reinterpret_cast<HMODULE>(base), info->dlpi_name,
                        ProtectionOf(part.p_flags), start + part.p_memsz - search.address};
        return 1;
    }
    return 0;
}

// Null for the program itself.
const char *LoaderName(Module const &module) { return *module.name ? module.name : nullptr; }

// Keeps a module that is loaded from going away while it is asked.
using Hold = std::unique_ptr<void, int (*)(void *)>;

Hold HoldLoaded(const char *loaderName) {
    return Hold(dlopen(loaderName, RTLD_NOLOAD | RTLD_LAZY | RTLD_LOCAL), dlclose);
}

HMODULE HandleOf(void *loaderHandle) {
    link_map *map = nullptr;
    if (!loaderHandle || dlinfo(loaderHandle, RTLD_DI_LINKMAP, &map) != 0)
        return nullptr;
    return ModuleAt(map->l_ld).handle;
}

// The module that a handle stands for: none if it is no handle or isn't loaded any more.
Module CheckedModule(HMODULE handle) {
    Module const module = ModuleAt(handle);
    return module.handle == handle ? module : Module{};
}

// Where a module of this name would be: a name with a path is taken as it stands, and for
// others it is this library's folder. The name has ".dll" at its end unless it has a dot.
std::string ModulePathFor(std::string const &name) {
    std::size_t const slash = name.find_last_of("\\/:");
    std::string file = name.substr(slash == std::string::npos ? 0 : slash + 1);
    if (file.empty())
        return {};
    if (file.find('.') == std::string::npos)
        file += ".dll";
    else if (file.back() == '.')
        file.pop_back();
    if (slash == std::string::npos)
        return FindEntry(ParentOf(OwnPath()), file + ".so");
    std::string path;
    return HostPath((name.substr(0, slash + 1) + file + ".so").c_str(), path) ? path
                                                                              : std::string();
}

// The host's file for a module name; empty if there is none.
std::string ModuleFile(const char *name) {
    std::string const path = name ? ModulePathFor(name) : std::string();
    struct stat entry {};
    return stat(path.c_str(), &entry) == 0 && S_ISREG(entry.st_mode) ? path : std::string();
}

bool IsModuleImage(std::string const &path) {
    ElfW(Ehdr) header{};
    int const file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    ssize_t const got = file >= 0 ? read(file, &header, sizeof header) : -1;
    if (file >= 0)
        close(file);
    constexpr unsigned char ownClass = sizeof(void *) == 8 ? ELFCLASS64 : ELFCLASS32;
    return got == sizeof header && std::memcmp(header.e_ident, ELFMAG, SELFMAG) == 0 &&
           header.e_ident[EI_CLASS] == ownClass && header.e_type == ET_DYN;
}

HMODULE Load(const char *name) {
    std::string const path = ModuleFile(name);
    if (path.empty()) {
        Fail(ERROR_MOD_NOT_FOUND);
        return nullptr;
    }
    HMODULE const module = HandleOf(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL));
    if (!module)
        Fail(IsModuleImage(path) ? ERROR_MOD_NOT_FOUND : ERROR_BAD_EXE_FORMAT);
    return module;
}

// The loader counts who holds a module: asking for it makes one more.
BOOL Unload(HMODULE handle) {
    Module const module = CheckedModule(handle);
    Hold const held = module && *module.name ? HoldLoaded(module.name) : Hold(nullptr, dlclose);
    if (!held)
        return Fail(ERROR_MOD_NOT_FOUND);
    dlclose(held.get());
    return TRUE;
}

// A module counts as there while it is loaded and its file is where it was loaded from.
HMODULE FindLoaded(const char *name) {
    std::string const path = name ? ModuleFile(name) : std::string();
    if (name && path.empty()) {
        Fail(ERROR_MOD_NOT_FOUND);
        return nullptr;
    }
    HMODULE const module = HandleOf(HoldLoaded(name ? path.c_str() : nullptr).get());
    if (!module)
        Fail(ERROR_MOD_NOT_FOUND);
    return module;
}

FARPROC FindFunction(HMODULE handle, const char *name) {
    Module const module = CheckedModule(handle);
    if (!module) {
        Fail(ERROR_MOD_NOT_FOUND);
        return nullptr;
    }
    // A small number in the place of a name would be an ordinal, and there are none here.
    bool const named = reinterpret_cast<std::uintptr_t>(name) > 0xffff;
    Hold const held = HoldLoaded(LoaderName(module));
    void *const function = named && held ? dlsym(held.get(), name) : nullptr;
    // The loader looks into what the module needs as well.
    if (!function || ModuleAt(function).handle != handle) {
        Fail(ERROR_PROC_NOT_FOUND);
        return nullptr;
    }
    return reinterpret_cast<FARPROC>(function);
}

DWORD TellPath(HMODULE handle, char *buffer, DWORD size) {
    Module const module = CheckedModule(handle ? handle : FindLoaded(nullptr));
    if (!module)
        Fail(ERROR_MOD_NOT_FOUND);
    if (!module || size == 0)
        return 0;
    std::string const path = DrivePath(handle == OwnModule() ? OwnPath() : ModulePath(module));
    bool const fits = path.size() < size;
    std::size_t const length = fits ? path.size() : size - 1;
    std::memcpy(buffer, path.data(), length);
    buffer[length] = '\0';
    if (!fits)
        Fail(ERROR_INSUFFICIENT_BUFFER);
    return fits ? static_cast<DWORD>(length) : size;
}

} // namespace

Module ModuleAt(const void *address) {
    Search search{reinterpret_cast<std::uintptr_t>(address), {}};
    dl_iterate_phdr(LookIntoModule, &search);
    return search.found;
}

std::string ModulePath(Module const &module) {
    const char *const file = *module.name ? module.name : "/proc/self/exe";
    std::unique_ptr<char, void (*)(void *)> const real(realpath(file, nullptr), std::free);
    return real ? std::string(real.get()) : std::string(module.name);
}

} // namespace platform

namespace win::host {

HMODULE LoadLibraryA(const char *name) {
    return platform::OutOfMemoryAs(HMODULE{}, [=] { return platform::Load(name); });
}

BOOL FreeLibrary(HMODULE module) { return platform::Unload(module); }

HMODULE GetModuleHandleA(const char *name) {
    return platform::OutOfMemoryAs(HMODULE{}, [=] { return platform::FindLoaded(name); });
}

FARPROC GetProcAddress(HMODULE module, const char *name) {
    return platform::FindFunction(module, name);
}

DWORD GetModuleFileNameA(HMODULE module, char *buffer, DWORD size) {
    return platform::OutOfMemoryAs(DWORD{0},
                                   [=] { return platform::TellPath(module, buffer, size); });
}

// There are no notifications of threads here to be switched off.
BOOL DisableThreadLibraryCalls(HMODULE module) {
    return platform::CheckedModule(module) ? TRUE : platform::Fail(ERROR_MOD_NOT_FOUND);
}

SIZE_T VirtualQuery(LPCVOID address, MEMORY_BASIC_INFORMATION *information, SIZE_T size) {
    platform::Module const module = platform::ModuleAt(address);
    if (!module || size < sizeof *information) {
        platform::Fail(module ? ERROR_BAD_LENGTH : ERROR_NOT_SUPPORTED);
        return 0;
    }
    auto const asked = reinterpret_cast<std::uintptr_t>(address);
    std::uintptr_t const end =
        platform::PageOf(asked + module.bytesBehind + platform::PageSize() - 1);
    *information = {};
    information->BaseAddress = reinterpret_cast<void *>(platform::PageOf(asked));
    information->AllocationBase = module.handle;
    information->AllocationProtect = PAGE_EXECUTE_WRITECOPY;
    information->RegionSize = end - platform::PageOf(asked);
    information->State = MEM_COMMIT;
    information->Protect = module.protection;
    information->Type = MEM_IMAGE;
    return sizeof *information;
}

} // namespace win::host

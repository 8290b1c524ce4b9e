#include <elf.h>
#include <sys/auxv.h>
#include <sys/stat.h>

#include "model.h"
#include "platform/elf_search.h"

namespace qvlink {
namespace {

// How a machine's folders are called where several machines' libraries lie side by side
// (folders named by machine), and where only two widths do.
struct KnownMachine {
    std::uint32_t number;
    bool wide;
    const char *folder;
    const char *shortFolder;
};
constexpr KnownMachine KNOWN_MACHINES[] = {
    {EM_X86_64, true, "x86_64-linux-gnu", "lib64"},
    {EM_X86_64, false, "x86_64-linux-gnux32", "libx32"},
    {EM_386, false, "i386-linux-gnu", "lib32"},
    {EM_AARCH64, true, "aarch64-linux-gnu", "lib64"},
    {EM_ARM, false, "arm-linux-gnueabihf", "lib32"},
    {EM_PPC64, true, "powerpc64le-linux-gnu", "lib64"},
    {EM_RISCV, true, "riscv64-linux-gnu", "lib64"},
    {EM_S390, true, "s390x-linux-gnu", "lib64"},
};

LoaderSettings::Machine Describe(KnownMachine const &machine) {
    std::string const byMachine = std::string("lib/") + machine.folder;
    std::string const byWidth = machine.shortFolder;
    struct stat status {};
    bool const sideBySide = ::stat(("/usr/" + byMachine).c_str(), &status) == 0;
    LoaderSettings::Machine result;
    result.lib = sideBySide ? byMachine : byWidth;
    for (std::string const &folder : {byMachine, byWidth, std::string("lib")}) {
        result.folders.push_back('/' + folder);
        result.folders.push_back("/usr/" + folder);
    }
    return result;
}

// The levels of this processor as the loader counts them, best first. Each is told by those
// of its features that all compilers can ask for; no processor has these and lacks the rest.
std::vector<std::string> Capabilities() {
    std::vector<std::string> capabilities;
#if defined(__x86_64__)
    bool const second = __builtin_cpu_supports("sse3") && __builtin_cpu_supports("ssse3") &&
                        __builtin_cpu_supports("sse4.1") && __builtin_cpu_supports("sse4.2") &&
                        __builtin_cpu_supports("popcnt");
    bool const third = second && __builtin_cpu_supports("avx") && __builtin_cpu_supports("avx2") &&
                       __builtin_cpu_supports("bmi") && __builtin_cpu_supports("bmi2") &&
                       __builtin_cpu_supports("fma");
    bool const fourth = third && __builtin_cpu_supports("avx512f") &&
                        __builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512cd") &&
                        __builtin_cpu_supports("avx512dq") && __builtin_cpu_supports("avx512vl");
    if (fourth) {
        capabilities.emplace_back("x86-64-v4");
    }
    if (third) {
        capabilities.emplace_back("x86-64-v3");
    }
    if (second) {
        capabilities.emplace_back("x86-64-v2");
    }
#endif
    return capabilities;
}

} // namespace

LoaderSettings SystemLoaderSettings() {
    LoaderSettings settings;
    settings.cacheFile = "/etc/ld.so.cache";
    settings.capabilities = Capabilities();
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the kernel hands addresses over as integers.
    const char *const platform = reinterpret_cast<const char *>(::getauxval(AT_PLATFORM));
    settings.platform = platform ? platform : "";
    for (KnownMachine const &machine : KNOWN_MACHINES) {
        std::uint32_t const key =
            machine.number << FLAG_MACHINE_SHIFT | (machine.wide ? FLAG_64BIT : 0);
        // s390x is the one among them with the most significant byte first.
        settings.machines[key | (machine.number == EM_S390 ? FLAG_BIG_ENDIAN : 0)] =
            Describe(machine);
    }
    return settings;
}

} // namespace qvlink

// Any bytes as a hive file that is mounted: whatever is in it, each operation ends with a code.
#include "platform/posix/registry/tree.h"

#include <cstdlib>
#include <cstring>
#include <sys/mman.h>
#include <unistd.h>

using namespace platform::registry;

namespace {

// The header's sum has to be right for anything else to be read.
void PutSum(std::string &bytes) {
    constexpr std::size_t place = 508;
    std::uint32_t sum = 0;
    for (std::size_t at = 0; at < place; at += sizeof sum) {
        std::uint32_t word = 0;
        std::memcpy(&word, &bytes[at], sizeof word);
        sum ^= word;
    }
    std::memcpy(&bytes[place], &sum, sizeof sum);
}

class MemoryFile {
public:
    explicit MemoryFile(std::string const &bytes) : m_file(memfd_create("hive", MFD_CLOEXEC)) {
        if (m_file < 0 || write(m_file, bytes.data(), bytes.size()) < 0)
            std::abort();
    }
    ~MemoryFile() { close(m_file); }
    MemoryFile(MemoryFile const &) = delete;
    MemoryFile &operator=(MemoryFile const &) = delete;

    std::string Name() const { return "/proc/self/fd/" + std::to_string(m_file); }

private:
    int m_file;
};

// A key's name that enumeration gives opens a key, unless that is damaged.
void ReadBelow(Tree &tree, Key &key, unsigned depth, unsigned &left) {
    Value value;
    for (std::uint32_t i = 0; left > 0 && tree.EnumerateValue(key, i, value) == 0; ++i) {
        --left;
        if (tree.ReadValue(key, value.name, value) == 2)
            std::abort();
    }
    std::u16string name;
    for (std::uint32_t i = 0; left > 0 && tree.EnumerateKey(key, i, name) == 0; ++i) {
        --left;
        OpenKey below;
        Code const code = tree.Open(key, name, below);
        if (code == 0 && depth > 0)
            ReadBelow(tree, *below, depth - 1, left);
        // A damaged name may hold a backslash, or be too long.
        if (code == 2 && name.find(u'\\') == std::u16string::npos)
            std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    std::string bytes(reinterpret_cast<const char *>(data), size);
    if (size >= 512)
        PutSum(bytes);
    MemoryFile const file(bytes);
    Tree tree("/nowhere", {{u"HKLM\\SYSTEM", file.Name()}});
    unsigned left = 300;
    ReadBelow(tree, *tree.RootKey(Root::LocalMachine), 20, left);
    OpenKey key;
    tree.Open(*tree.RootKey(Root::LocalMachine), u"System\\CurrentControlSet\\Services", key);
    return 0;
}

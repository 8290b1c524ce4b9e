// Any bytes as paths and names of the registry class: what it makes of a path beside a model, and
// keys that are made, found and deleted again below a key of the target's own.
#include "UtilsRegistry.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/process.h"
#include "platform/registry.h"

namespace {

using UTILS::UtilsRegistry;
using UTILS::UtilsString;

// A byte that is no text comes back as a character of three, and what then has more than 255
// can't be read, nor be found to be deleted.
constexpr std::size_t longestSafe = 84;
constexpr char const *ownKey = "Software\\QVLinkDB fuzz";

void Require(bool condition, char const *what, std::string const &text) {
    if (condition)
        return;
    std::fprintf(stderr, "%s: [%s]\n", what, text.c_str());
    std::abort();
}

class Parser : public UtilsRegistry {
public:
    using UtilsRegistry::ParseOutPath;
    using UtilsRegistry::UtilsRegistry;
};

std::vector<std::string> Split(std::string const &text) {
    std::vector<std::string> parts;
    std::string part;
    for (char const c : text + "\\") {
        if (c != '\\') {
            part += c;
        } else if (!part.empty()) {
            parts.push_back(part);
            part.clear();
        }
    }
    return parts;
}

std::string Upper(std::string text) {
    for (char &c : text)
        c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    return text;
}

bool IsRoot(std::string const &text) {
    constexpr std::array<char const *, 10> names = {
        "HKLM", "HKEY_LOCAL_MACHINE", "HKCU", "HKEY_CURRENT_USER",  "HKCR", "HKEY_CLASSES_ROOT",
        "HKU",  "HKEY_USERS",         "HKCC", "HKEY_CURRENT_CONFIG"};
    for (char const *const name : names)
        if (Upper(text) == name)
            return true;
    return false;
}

// What is left of a path below its root.
std::string Below(std::string const &text, bool &hasRoot) {
    std::vector<std::string> const parts = Split(text);
    hasRoot = !parts.empty() && IsRoot(parts.front());
    std::string below;
    for (std::size_t i = 1; hasRoot && i < parts.size(); ++i)
        below += parts[i] + "\\";
    if (hasRoot || text.empty())
        return below;
    return text.back() == '\\' ? text : text + "\\";
}

void CheckParse(Parser &registry, std::string const &text) {
    bool hasRoot = false;
    std::string const expected = Below(text, hasRoot);
    UtilsString path(text);
    int const parsed = registry.ParseOutPath(path);
    Require(parsed == (hasRoot ? 1 : 0), "root", text);
    Require(std::string(path.Retrieve(), path.size()) == expected, "parse", text);
    bool again = false;
    std::string const twice = Below(text, again);
    Require(twice == expected, "model", text);
}

// A key that was made is found, and one that was deleted isn't.
void MakeAndDelete(UtilsRegistry &registry, std::string const &text, int stepwise) {
    std::string const path = std::string("HKCU\\") + ownKey + "\\" + text;
    if (!registry.RegCreateKeyA(path, stepwise))
        return;
    Require(registry.RegOpenKeyA(path) == 1, "a key that was made", text);
    UtilsString value;
    if (registry.RegSetValueA(text, text) && text.size() <= longestSafe)
        Require(registry.RegQueryValueA(text, value) == 1, "a value that was set", text);
    bool const isOwn = Split(text).empty();
    int const deleted = registry.RegDeleteKeyA(0);
    if (deleted)
        Require(registry.RegOpenKeyA(path) == 0 && registry.GetLastRegistryError() == 2,
                "a key that was deleted", text);
    else
        Require(isOwn || registry.GetLastRegistryError() != 0, "a deletion that failed", text);
}

// Where the registry isn't the system's own, it is one that goes with this process.
class OwnRegistry {
public:
    OwnRegistry()
        : m_directory(std::filesystem::temp_directory_path() /
                      ("qvlinkdb-fuzz-" + std::to_string(CurrentProcessId()))) {
        TellRegistryDirectory(m_directory.string());
    }
    ~OwnRegistry() {
        std::error_code ignored;
        std::filesystem::remove_all(m_directory, ignored);
    }
    OwnRegistry(OwnRegistry const &) = delete;
    OwnRegistry &operator=(OwnRegistry const &) = delete;

private:
    std::filesystem::path m_directory;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    static OwnRegistry const own;
    std::string const all(reinterpret_cast<char const *>(data), size);
    Parser registry("HKCU", 0, 0);
    Require(registry.RegCreateKeyA(std::string("HKCU\\") + ownKey, 0) == 1, "the own key", "");
    for (std::size_t begin = 0; begin < all.size();) {
        std::size_t const end = std::min(all.find('\0', begin), all.size());
        std::string const text = all.substr(begin, std::min<std::size_t>(end - begin, 600));
        Parser parser("HKCU", 0, 0);
        CheckParse(parser, text);
        std::vector<std::string> const parts = Split(text);
        if (std::all_of(parts.begin(), parts.end(),
                        [](std::string const &part) { return part.size() <= longestSafe; }))
            MakeAndDelete(registry, text, static_cast<int>(begin % 2));
        begin = end + 1;
    }
    registry.RegOpenKeyA("HKCU");
    Require(registry.RegDeleteKeyA(ownKey, 1) == 1, "the own key goes", "");
    return 0;
}

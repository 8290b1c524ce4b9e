#include "registry/key_path.h"

#include "registry/text.h"

#include <algorithm>

namespace qvlink {
namespace {

constexpr std::size_t longestName = 255;        // of a key, in 16-bit units
constexpr std::size_t longestValueName = 16383; // likewise
constexpr std::size_t deepest = 512;

struct Root {
    std::string_view shortName;
    std::string_view longName;
};
constexpr Root roots[] = {
    {"HKLM", "HKEY_LOCAL_MACHINE"}, {"HKCU", "HKEY_CURRENT_USER"},   {"HKCR", "HKEY_CLASSES_ROOT"},
    {"HKU", "HKEY_USERS"},          {"HKCC", "HKEY_CURRENT_CONFIG"},
};

char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool IsSame(std::string_view a, std::string_view b) {
    return a.size() == b.size() &&
           std::equal(a.begin(), a.end(), b.begin(),
                      [](char left, char right) { return Lower(left) == Lower(right); });
}

// What is below `above`, with the backslash in front; nothing if the path is elsewhere.
std::optional<std::string_view> Below(std::string_view path, std::string_view above) {
    std::string_view const rest = path.substr(std::min(path.size(), above.size()));
    bool const isBelow =
        IsSame(path.substr(0, above.size()), above) && (rest.empty() || rest.front() == '\\');
    return isBelow ? std::optional(rest) : std::nullopt;
}

} // namespace

bool IsAtOrBelow(std::string_view path, std::string_view above) {
    return Below(path, above).has_value();
}

std::optional<std::string> WithShortRoot(std::string_view path) {
    std::size_t const last = path.find_last_not_of('\\');
    path = path.substr(0, last == std::string_view::npos ? 0 : last + 1);
    for (Root const &root : roots) {
        for (std::string_view const name : {root.shortName, root.longName}) {
            if (auto const rest = Below(path, name)) {
                return std::string(root.shortName) + std::string(*rest);
            }
        }
    }
    return std::nullopt;
}

std::string WithLongRoot(std::string_view path) {
    for (Root const &root : roots) {
        if (auto const rest = Below(path, root.shortName)) {
            return std::string(root.longName) + std::string(*rest);
        }
    }
    return std::string(path);
}

std::optional<std::string> RootOfPrefixFile(std::string_view relativeTo) {
    if (auto const rest = Below(relativeTo, "Machine")) {
        return "HKLM" + std::string(*rest);
    }
    if (auto const rest = Below(relativeTo, "User\\.Default")) {
        return "HKU\\.Default" + std::string(*rest);
    }
    constexpr std::string_view users = "User\\";
    bool const isUser = IsSame(relativeTo.substr(0, users.size()), users) &&
                        relativeTo.size() > users.size() &&
                        relativeTo.find('\\', users.size()) == std::string_view::npos;
    return isUser ? std::optional<std::string>("HKCU") : std::nullopt;
}

std::optional<std::string> KeyOfSystemPath(std::string_view path, std::string_view userRoot) {
    constexpr std::string_view top = "\\Registry\\";
    if (!IsSame(path.substr(0, top.size()), top)) {
        return std::nullopt;
    }
    path.remove_prefix(top.size());
    if (auto const rest = Below(path, "Machine")) {
        return "HKLM" + std::string(*rest);
    }
    auto const rest = userRoot.empty() ? std::nullopt : Below(path, userRoot);
    auto const root = rest ? RootOfPrefixFile(userRoot) : std::nullopt;
    return root ? std::optional(*root + std::string(*rest)) : std::nullopt;
}

std::string WhyNoKey(std::string_view path) {
    std::size_t count = 0;
    while (true) {
        std::size_t const end = path.find('\\');
        std::string_view const name = path.substr(0, end);
        auto const units = UnitsOf(name);
        if (name.empty()) {
            return "a key without a name";
        }
        if (!units || name.find('\0') != std::string_view::npos) {
            return "a key whose name has characters that no key has";
        }
        if (units->size() > longestName) {
            return "a key whose name is longer than 255 characters";
        }
        if (++count > deepest) {
            return "a key deeper than any system has them";
        }
        if (end == std::string_view::npos) {
            return {};
        }
        path.remove_prefix(end + 1);
    }
}

std::string WhyNoValueName(std::string_view name) {
    auto const units = UnitsOf(name);
    if (!units || name.find('\0') != std::string_view::npos) {
        return "a value whose name has characters that none has";
    }
    return units->size() > longestValueName ? "a value whose name is longer than 16383 characters"
                                            : "";
}

} // namespace qvlink

#include "answer/place.h"

#include <algorithm>

namespace qvlink {
namespace {

char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }
char Upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

void AppendComponents(std::vector<std::string> &names, std::string_view text,
                      std::string_view separators) {
    while (!text.empty()) {
        std::size_t const end = std::min(text.find_first_of(separators), text.size());
        std::string_view const name = text.substr(0, end);
        if (name == "..") {
            if (!names.empty()) {
                names.pop_back();
            }
        } else if (!name.empty() && name != ".") {
            names.emplace_back(name);
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
}

struct RootName {
    const char *brief;
    const char *whole;
};

constexpr RootName RootNames[] = {
    {"HKLM", "HKEY_LOCAL_MACHINE"}, {"HKCU", "HKEY_CURRENT_USER"},   {"HKCR", "HKEY_CLASSES_ROOT"},
    {"HKU", "HKEY_USERS"},          {"HKCC", "HKEY_CURRENT_CONFIG"},
};

bool IsDrive(std::string_view name) { return name.size() == 2 && name[1] == ':'; }

std::vector<std::string> RootedComponents(std::string_view path, std::string_view current) {
    std::vector<std::string> names;
    if (path.empty() || path.front() != '/') {
        AppendComponents(names, current, "/");
    }
    AppendComponents(names, path, "/");
    return names;
}

bool StartsWith(std::vector<std::string> const &names, std::vector<std::string> const &start) {
    return start.size() <= names.size() && std::equal(start.begin(), start.end(), names.begin());
}

std::string Join(std::string text, std::vector<std::string> const &names, char separator) {
    for (std::string const &name : names) {
        text += separator;
        text += name;
    }
    return text;
}

} // namespace

bool operator==(Place const &a, Place const &b) { return a.drive == b.drive && a.names == b.names; }

std::optional<Place> ParseDatabasePath(std::string_view text) {
    if (text.size() < 2 || text[1] != ':' || Lower(text[0]) < 'a' || Lower(text[0]) > 'z') {
        return std::nullopt;
    }
    Place place{{Upper(text[0]), ':'}, {}};
    AppendComponents(place.names, text.substr(2), "\\/");
    return place;
}

std::string DatabasePath(Place const &place) { return Join(place.drive, place.names, '\\'); }

bool IsKeyPlace(Place const &place) { return !IsDrive(place.drive); }

std::optional<Place> ParseKeyPath(std::string_view text, RootCase rootCase) {
    std::size_t const end = std::min(text.find('\\'), text.size());
    std::string_view const root = text.substr(0, end);
    for (RootName const &name : RootNames) {
        bool const isRoot = rootCase == RootCase::any
                                ? EqualNames(root, name.brief) || EqualNames(root, name.whole)
                                : root == name.brief || root == name.whole;
        if (isRoot) {
            Place place{name.brief, {}};
            for (text.remove_prefix(end); !text.empty();) {
                text.remove_prefix(1);
                std::string_view const key = text.substr(0, text.find('\\'));
                if (!key.empty()) {
                    place.names.emplace_back(key);
                }
                text.remove_prefix(key.size());
            }
            return place;
        }
    }
    return std::nullopt;
}

std::optional<Place> ParseRootedPath(std::string_view path, std::string_view current,
                                     Drives const &drives) {
    std::vector<std::string> const names = RootedComponents(path, current);
    std::optional<Place> best;
    for (auto const &[letter, directory] : drives) {
        std::vector<std::string> const start = RootedComponents(directory, "");
        std::size_t const left = names.size() - std::min(names.size(), start.size());
        if (StartsWith(names, start) && (!best || left < best->names.size())) {
            best = Place{{Upper(letter), ':'},
                         {names.end() - static_cast<std::ptrdiff_t>(left), names.end()}};
        }
    }
    return best;
}

std::optional<std::string> RootedPath(Place const &place, Drives const &drives) {
    auto const drive = drives.find(IsDrive(place.drive) ? place.drive.front() : '\0');
    if (drive == drives.end()) {
        return std::nullopt;
    }
    std::string const path =
        Join(Join("", RootedComponents(drive->second, ""), '/'), place.names, '/');
    return path.empty() ? "/" : path;
}

std::string NormaliseRootedPath(std::string_view path, std::string_view current) {
    std::string const text = Join("", RootedComponents(path, current), '/');
    return text.empty() ? "/" : text;
}

bool EqualNames(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return Lower(x) == Lower(y); });
}

std::string FoldName(std::string_view name) {
    std::string folded(name);
    std::transform(folded.begin(), folded.end(), folded.begin(), Lower);
    return folded;
}

} // namespace qvlink

#include "lists/key_tree.h"

#include "answer/place.h"

#include <algorithm>

namespace qvlink {
namespace {

constexpr std::size_t mostLines = 4000000; // links that lead across each other multiply

char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

// Takes the next name off the front of a path; empty at its end.
std::string_view TakeName(std::string_view &path) {
    path.remove_prefix(std::min(path.find_first_not_of('\\'), path.size()));
    std::string_view const name = path.substr(0, path.find('\\'));
    path.remove_prefix(name.size());
    return name;
}

class Lister {
public:
    Lister(KeyTree const &tree, LineFilter const &filter, std::vector<std::string> &skipped)
        : m_tree(tree), m_filter(filter), m_skipped(skipped) {}

    // The length of a line bounds the depth.
    void Below(Key const &key, std::string const &line);

    std::vector<std::string> lines;

private:
    bool Take(std::string const &name, std::string const &line);
    Key const *Target(Key const &key, std::string const &line);
    void Skip(std::string const &line, std::string const &why) {
        m_skipped.push_back(line + ": " + why);
    }

    KeyTree const &m_tree;
    LineFilter const &m_filter;
    std::vector<std::string> &m_skipped;
    std::vector<Key const *> m_open; // those that are being listed, by any name
};

void Lister::Below(Key const &key, std::string const &line) {
    m_open.push_back(&key);
    for (auto const &[name, child] : key.below) {
        std::string below = line + '\\';
        below += name;
        if (lines.size() >= mostLines) {
            break;
        }
        if (Take(name, below)) {
            if (Key const *const target = Target(*child, below)) {
                Below(*target, below);
            }
        }
    }
    m_open.pop_back();
}

// Whether to look below it.
bool Lister::Take(std::string const &name, std::string const &line) {
    if (m_filter.Matches(line)) {
        return false;
    }
    if (const char *const problem = NameProblem(name)) {
        Skip(line, problem);
        return false;
    }
    if (IsTooLong(line)) {
        Skip(line, tooLong);
        return false;
    }
    if (EndsBlank(name)) {
        Skip(line, "its name ends with a blank, which the library takes off a line");
    } else {
        lines.push_back(line);
        if (lines.size() == mostLines) {
            Skip(line, "there are too many keys; the list ends here");
        }
    }
    return true;
}

Key const *Lister::Target(Key const &key, std::string const &line) {
    if (key.link.empty()) {
        return &key;
    }
    Key const *const target = m_tree.Find(key.link);
    if (!target) {
        Skip(line, "a link to " + key.link + ", which isn't among the keys read");
        return nullptr;
    }
    if (std::find(m_open.begin(), m_open.end(), target) != m_open.end()) {
        Skip(line, "a link to " + key.link + ", which it lies below");
        return nullptr;
    }
    return target;
}

} // namespace

bool NameBefore::operator()(std::string_view a, std::string_view b) const {
    return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
        return static_cast<unsigned char>(Lower(x)) < static_cast<unsigned char>(Lower(y));
    });
}

Key &Key::At(std::string_view name) {
    auto found = below.find(name);
    if (found == below.end()) {
        found = below.emplace(name, std::make_unique<Key>()).first;
    }
    return *found->second;
}

Key *KeyTree::Make(Key &root, std::string_view path) {
    std::vector<std::string_view> names;
    for (std::string_view name = TakeName(path); !name.empty(); name = TakeName(path)) {
        names.push_back(name);
    }
    if (names.size() > deepestKey) {
        return nullptr;
    }
    Key *key = &root;
    for (std::string_view const name : names) {
        key = &key->At(name);
    }
    return key;
}

Key const *KeyTree::Find(std::string_view line, int chain) const {
    std::string_view const root = TakeName(line);
    Key const *key = EqualNames(root, "HKLM")   ? &machine
                     : EqualNames(root, "HKCU") ? &user
                                                : nullptr;
    for (std::string_view name = TakeName(line); key && !name.empty(); name = TakeName(line)) {
        auto const found = key->below.find(name);
        key = found == key->below.end() ? nullptr : found->second.get();
        if (key && !key->link.empty()) {
            key = chain > 0 ? Find(key->link, chain - 1) : nullptr;
        }
    }
    return key;
}

std::optional<std::string> LineOfSystemPath(std::string_view path, std::string_view userRoot) {
    if (!EqualNames(TakeName(path), "Registry")) {
        return std::nullopt;
    }
    std::string_view const root = TakeName(path);
    if (EqualNames(root, "Machine")) {
        return "HKLM" + std::string(path);
    }
    std::string_view const user = TakeName(path);
    if (userRoot.empty() || !EqualNames(std::string(root) + '\\' + std::string(user), userRoot)) {
        return std::nullopt;
    }
    return "HKCU" + std::string(path);
}

std::vector<std::string> LinesOf(KeyTree const &tree, LineFilter const &filter,
                                 std::vector<std::string> &skipped) {
    Lister lister(tree, filter, skipped);
    lister.Below(tree.machine, "HKLM");
    lister.lines.emplace_back();
    lister.Below(tree.user, "HKCU");
    if (lister.lines.size() == 1) {
        lister.lines.clear();
    }
    return std::move(lister.lines);
}

} // namespace qvlink

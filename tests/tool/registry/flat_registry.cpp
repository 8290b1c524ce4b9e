#include "flat_registry.h"

using qvlink::RegistryValue;

std::uint32_t FlatRegistry::CodeOf(std::string const &path) const {
    auto const code = refused.find(path);
    return code == refused.end() ? 0 : code->second;
}

std::uint32_t FlatRegistry::ReadKeys(std::string_view path, std::vector<std::string> &names) {
    names.clear();
    std::string const above(path);
    if (CodeOf(above) != 0 || keys.count(above) == 0) {
        return CodeOf(above) != 0 ? CodeOf(above) : 2;
    }
    std::string const start = above + '\\';
    for (auto key = keys.lower_bound(start);
         key != keys.end() && key->first.compare(0, start.size(), start) == 0; ++key) {
        if (key->first.find('\\', start.size()) == std::string::npos) {
            names.push_back(key->first.substr(start.size()));
        }
    }
    return 0;
}

std::uint32_t FlatRegistry::ReadValues(std::string_view path, std::vector<RegistryValue> &values) {
    values.clear();
    std::string const key(path);
    if (CodeOf(key) != 0 || keys.count(key) == 0) {
        return CodeOf(key) != 0 ? CodeOf(key) : 2;
    }
    for (auto const &[name, value] : keys[key]) {
        values.push_back({name, value.first, value.second});
    }
    return 0;
}

std::uint32_t FlatRegistry::Create(std::string_view path) {
    std::string const key(path);
    if (CodeOf(key) != 0) {
        return CodeOf(key);
    }
    for (std::size_t end = key.find('\\'); end != std::string::npos;
         end = key.find('\\', end + 1)) {
        keys[key.substr(0, end)];
    }
    keys[key];
    return 0;
}

std::uint32_t FlatRegistry::SetValue(std::string_view path, RegistryValue const &value) {
    std::string const key(path);
    if (keys.count(key) == 0) {
        return 2;
    }
    if (CodeOf(key + ": " + value.name) != 0) {
        return CodeOf(key + ": " + value.name);
    }
    keys[key][value.name] = {value.type, value.data};
    return 0;
}

std::uint32_t FlatRegistry::DeleteValue(std::string_view path, std::string_view name) {
    auto const key = keys.find(std::string(path));
    return key != keys.end() && key->second.erase(std::string(name)) > 0 ? 0 : 2;
}

std::uint32_t FlatRegistry::DeleteTree(std::string_view path) {
    std::string const top(path);
    if (CodeOf(top) != 0) {
        return CodeOf(top);
    }
    std::uint32_t code = 2;
    for (auto key = keys.begin(); key != keys.end();) {
        bool const isIn = key->first == top || key->first.rfind(top + '\\', 0) == 0;
        code = isIn ? 0 : code;
        key = isIn ? keys.erase(key) : std::next(key);
    }
    return code;
}

std::uint32_t FlatRegistry::Begin() {
    m_before = keys;
    return beginCode;
}

std::uint32_t FlatRegistry::Commit() {
    ++commits;
    return commitCode;
}

void FlatRegistry::Rollback() {
    ++rollbacks;
    keys = m_before;
}

#include "made_up_registry.h"

#include "answer/place.h"

#include <algorithm>

using namespace qvlink;

namespace {

constexpr std::uint32_t NoSuchKey = 2;

std::string NextName(std::string_view &path) {
    std::size_t const end = std::min(path.find('\\'), path.size());
    std::string name(path.substr(0, end));
    path.remove_prefix(std::min(end + 1, path.size()));
    return name;
}

} // namespace

MadeUpRegistry::Key &MadeUpRegistry::At(std::string const &path) {
    Key *key = &m_top;
    for (std::string_view rest = path; !rest.empty();) {
        std::string const name = NextName(rest);
        auto &below = key->keys[FoldName(name)];
        if (!below) {
            below = std::make_unique<Key>();
            below->name = name;
        }
        key = below.get();
    }
    return *key;
}

MadeUpRegistry::Key *MadeUpRegistry::Find(std::string_view path) {
    Key *key = &m_top;
    while (key && !path.empty()) {
        auto const below = key->keys.find(FoldName(NextName(path)));
        key = below == key->keys.end() ? nullptr : below->second.get();
    }
    return key;
}

void MadeUpRegistry::Put(std::string const &path, std::string const &name, std::string const &data,
                         std::uint32_t type) {
    SetValue(path, {name, type, data});
}

void MadeUpRegistry::PutText(std::string const &path, std::string const &name,
                             std::string const &text, std::uint32_t type) {
    Put(path, name, Stored(text), type);
}

void MadeUpRegistry::Remove(std::string const &path) { DeleteTree(path); }

std::uint32_t MadeUpRegistry::ReadKeys(std::string_view path, std::vector<std::string> &names) {
    ++m_reads;
    names.clear();
    Key *const key = Find(path);
    if (!key || key->code) {
        return key ? key->code : NoSuchKey;
    }
    for (auto const &[folded, below] : key->keys) {
        names.push_back(below->name);
    }
    return 0;
}

std::uint32_t MadeUpRegistry::ReadValues(std::string_view path,
                                         std::vector<RegistryValue> &values) {
    ++m_reads;
    values.clear();
    Key *const key = Find(path);
    if (!key || key->code) {
        return key ? key->code : NoSuchKey;
    }
    values = key->values;
    return 0;
}

std::uint32_t MadeUpRegistry::Create(std::string_view path) {
    At(std::string(path));
    return 0;
}

std::uint32_t MadeUpRegistry::SetValue(std::string_view path, RegistryValue const &value) {
    DeleteValue(path, value.name);
    At(std::string(path)).values.push_back(value);
    return 0;
}

std::uint32_t MadeUpRegistry::DeleteValue(std::string_view path, std::string_view name) {
    auto &values = At(std::string(path)).values;
    values.erase(
        std::remove_if(values.begin(), values.end(),
                       [&](RegistryValue const &value) { return EqualNames(value.name, name); }),
        values.end());
    return 0;
}

std::uint32_t MadeUpRegistry::DeleteTree(std::string_view path) {
    std::size_t const slash = path.rfind('\\');
    return At(std::string(path.substr(0, slash))).keys.erase(FoldName(path.substr(slash + 1))) > 0
               ? 0
               : NoSuchKey;
}

std::string Stored(std::string const &ascii) {
    std::string data;
    for (char const c : ascii + '\0') {
        data += c;
        data += '\0';
    }
    return data;
}

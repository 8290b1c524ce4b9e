#include "platform/posix/registry/hive.h"

#include "platform/posix/registry/names.h"
#include "platform/posix/utf8.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <sys/stat.h>

namespace platform::registry {
namespace {

// More entries than these aren't kept.
constexpr std::size_t mostCached = 200000;

struct Free {
    void operator()(void *memory) const { std::free(memory); }
};
template <class Item> using Held = std::unique_ptr<Item, Free>;

// A value's type as the file has it, which may be none that hivex's enumeration knows.
class AnyType {
public:
    hive_type *Place() { return reinterpret_cast<hive_type *>(&m_number); }
    std::uint32_t Number() const { return m_number; }

private:
    static_assert(sizeof(hive_type) == sizeof(std::uint32_t));
    std::uint32_t m_number = 0;
};

Code CodeOfHive(int error) { return error == ENOMEM ? noMemory : corrupt; }

std::u16string Wide(std::string_view name) {
    std::u16string wide(name.begin(), name.end());
    if (std::any_of(name.begin(), name.end(), [](char c) { return (c & 0x80) != 0; })) {
        wide.clear();
        DecodeUtf8(name, wide);
    }
    return wide;
}

HiveEntry KeyEntry(const char *name, hive_node_h node) {
    std::u16string wide = Wide(name);
    std::string folded = Folded(wide);
    return {std::move(folded), std::move(wide), node};
}

bool FoldedBefore(HiveEntry const &left, HiveEntry const &right) {
    return left.folded < right.folded;
}

} // namespace

Hive::~Hive() {
    if (m_hive)
        hivex_close(m_hive);
}

Code Hive::Open() {
    struct stat entry {};
    if (stat(m_file.c_str(), &entry) != 0 || !S_ISREG(entry.st_mode))
        return errno == EACCES ? accessDenied : cantOpen;
    // To write, so that the file is read into memory: in a mapping it could be cut short.
    m_hive = hivex_open(m_file.c_str(), HIVEX_OPEN_WRITE);
    if (!m_hive) {
        int const error = errno;
        return error == EACCES ? accessDenied : error == EIO ? inputOutput : CodeOfHive(error);
    }
    m_root = hivex_root(m_hive);
    if (m_root != 0)
        return success;
    Code const code = CodeOfHive(errno);
    hivex_close(m_hive);
    m_hive = nullptr;
    return code;
}

Code Hive::Root(hive_node_h &node) {
    Code const code = m_hive ? success : Open();
    if (code == success)
        node = m_root;
    return code;
}

// A system that runs has a key in its place that leads to the control set in use.
hive_node_h Hive::CurrentControlSet() {
    hive_node_h const select = hivex_node_get_child(m_hive, m_root, "Select");
    hive_value_h const value = select ? hivex_node_get_value(m_hive, select, "Current") : 0;
    AnyType type;
    std::size_t size = 0;
    if (!value || hivex_value_type(m_hive, value, type.Place(), &size) != 0 ||
        type.Number() != hive_t_REG_DWORD || size != 4)
        return 0;
    std::string number = std::to_string(static_cast<unsigned>(hivex_value_dword(m_hive, value)));
    number.insert(0, number.size() < 3 ? 3 - number.size() : 0, '0');
    return hivex_node_get_child(m_hive, m_root, ("ControlSet" + number).c_str());
}

Code Hive::ReadKeys(hive_node_h node, HiveEntries &keys) {
    Held<hive_node_h> const children(hivex_node_children(m_hive, node));
    if (!children)
        return CodeOfHive(errno);
    for (hive_node_h const *child = children.get(); *child != 0; ++child) {
        Held<char> const name(hivex_node_name(m_hive, *child));
        if (name && *name)
            keys.push_back(KeyEntry(name.get(), *child));
    }
    if (node == m_root)
        if (hive_node_h const current = CurrentControlSet())
            keys.push_back(KeyEntry("CurrentControlSet", current));
    // One of the hive's own goes before.
    std::stable_sort(keys.begin(), keys.end(), FoldedBefore);
    auto const same = [](HiveEntry const &left, HiveEntry const &right) {
        return left.folded == right.folded;
    };
    keys.erase(std::unique(keys.begin(), keys.end(), same), keys.end());
    return success;
}

Code Hive::ReadValues(hive_node_h node, HiveEntries &values) {
    Held<hive_value_h> const all(hivex_node_values(m_hive, node));
    if (!all)
        return CodeOfHive(errno);
    for (hive_value_h const *value = all.get(); *value != 0; ++value) {
        Held<char> const name(hivex_value_key(m_hive, *value));
        if (name)
            values.push_back({{}, Wide(name.get()), *value});
    }
    return success;
}

template <class Reader>
Code Hive::Cached(Cache &cache, hive_node_h node, SharedEntries &entries, Reader read) {
    auto const place = cache.find(node);
    if (place != cache.end()) {
        entries = place->second;
        return success;
    }
    auto made = std::make_shared<HiveEntries>();
    Code const code = read(*made);
    if (code != success)
        return code;
    entries = made;
    if (m_cached + made->size() + 1 > mostCached) {
        m_keys.clear();
        m_values.clear();
        m_cached = 0;
    }
    cache.emplace(node, std::move(made));
    m_cached += entries->size() + 1;
    return success;
}

Code Hive::Keys(hive_node_h node, SharedEntries &keys) {
    return Cached(m_keys, node, keys, [&](HiveEntries &to) { return ReadKeys(node, to); });
}

Code Hive::Values(hive_node_h node, SharedEntries &values) {
    return Cached(m_values, node, values, [&](HiveEntries &to) { return ReadValues(node, to); });
}

Code Hive::Find(hive_node_h node, std::u16string_view name, hive_node_h &found) {
    SharedEntries keys;
    Code const code = Keys(node, keys);
    if (code != success)
        return code;
    HiveEntry const wanted{Folded(name), {}, 0};
    auto const place = std::lower_bound(keys->begin(), keys->end(), wanted, FoldedBefore);
    if (place == keys->end() || place->folded != wanted.folded)
        return notFound;
    found = place->item;
    return success;
}

Code Hive::Read(hive_node_h node, std::u16string_view name, Value &value) {
    SharedEntries values;
    Code const code = Values(node, values);
    if (code != success)
        return code;
    std::string const folded = Folded(name);
    auto const place = std::find_if(values->begin(), values->end(), [&](HiveEntry const &entry) {
        return entry.name.size() == name.size() && Folded(entry.name) == folded;
    });
    return place == values->end() ? notFound : Read(*place, value);
}

Code Hive::Read(HiveEntry const &entry, Value &value) {
    AnyType type;
    std::size_t size = 0;
    errno = 0;
    Held<char> const data(hivex_value_value(m_hive, entry.item, type.Place(), &size));
    if (!data)
        return CodeOfHive(errno);
    value = {entry.name, type.Number(), std::string(data.get(), size)};
    return success;
}

} // namespace platform::registry

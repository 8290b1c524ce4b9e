// A hive file, read only. For one thread at a time.
#pragma once

#include "platform/posix/registry/codes.h"

#include <hivex.h>
#include <unordered_map>

namespace platform::registry {

// What a key of a hive holds: keys in the order of their folded names, values as they lie there.
struct HiveEntry {
    std::string folded; // of a key
    std::u16string name;
    std::size_t item; // a node or a value of the hive
};
using HiveEntries = std::vector<HiveEntry>;
using SharedEntries = std::shared_ptr<HiveEntries const>;

class Hive {
public:
    explicit Hive(std::string file) : m_file(std::move(file)) {}
    ~Hive();
    Hive(Hive const &) = delete;
    Hive &operator=(Hive const &) = delete;

    // Reads the file when it is first asked for, and again as long as that fails.
    Code Root(hive_node_h &node);
    // The damaged among them are passed over.
    Code Keys(hive_node_h node, SharedEntries &keys);
    Code Values(hive_node_h node, SharedEntries &values);
    Code Find(hive_node_h node, std::u16string_view name, hive_node_h &found);
    // 2 if it isn't there.
    Code Read(hive_node_h node, std::u16string_view name, Value &value);
    Code Read(HiveEntry const &entry, Value &value);

private:
    using Cache = std::unordered_map<hive_node_h, SharedEntries>;

    Code Open();
    Code ReadKeys(hive_node_h node, HiveEntries &keys);
    Code ReadValues(hive_node_h node, HiveEntries &values);
    hive_node_h CurrentControlSet();
    template <class Reader>
    Code Cached(Cache &cache, hive_node_h node, SharedEntries &entries, Reader read);

    std::string m_file;
    hive_h *m_hive = nullptr;
    hive_node_h m_root = 0;
    Cache m_keys;
    Cache m_values;
    std::size_t m_cached = 0; // entries in both
};

} // namespace platform::registry

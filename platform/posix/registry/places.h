// The keys that are there without being in the store: what roots lead to, the mounted hives,
// and what lies above those.
#pragma once

#include "platform/posix/registry/hive.h"

#include <map>

namespace platform::registry {

struct Place {
    std::u16string name;
    Place *above = nullptr;                              // null: HKLM or HKU
    std::map<std::string, std::unique_ptr<Place>> below; // by folded names
    std::unique_ptr<Hive> hive;
    bool shown = false; // a hive is here or below
};

class Places {
public:
    explicit Places(std::vector<Mount> const &mounts);

    Place const *Of(Root root) const { return m_roots[Number(root)]; }

    static std::size_t Number(Root root);

private:
    Place *At(Place *from, std::u16string_view path);

    Place m_machine;
    Place m_users;
    Place *m_roots[5] = {};
};

} // namespace platform::registry

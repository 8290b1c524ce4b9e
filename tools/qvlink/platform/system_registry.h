// The registry, whole: names in UTF-8 and data as the system stores them, which the
// library's own class for it doesn't give.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace qvlink {

struct RegistryValue {
    std::string name; // in UTF-8; empty: the key's own
    std::uint32_t type = 0;
    std::string data; // bytes as stored: texts in 16-bit units, little-endian, NULs included
};

// Paths begin with a root's short name in any case: "HKLM\Software\Name", in UTF-8. Results
// are the system's codes, 0 for success.
class Registry {
public:
    virtual ~Registry() = default;

    // The names below a key, in the system's order, and its values in theirs. What was in the
    // vectors goes; after a failure they are empty.
    virtual std::uint32_t ReadKeys(std::string_view path, std::vector<std::string> &names) = 0;
    virtual std::uint32_t ReadValues(std::string_view path, std::vector<RegistryValue> &values) = 0;

    // Makes the key and those above it.
    virtual std::uint32_t Create(std::string_view path) = 0;
    virtual std::uint32_t SetValue(std::string_view path, RegistryValue const &value) = 0;
    virtual std::uint32_t DeleteValue(std::string_view path, std::string_view name) = 0;
    // With all that is below it.
    virtual std::uint32_t DeleteTree(std::string_view path) = 0;

    // Changes made until Commit go together where the system can do that, and are undone if
    // the object goes before; where it can't, each is made at once.
    virtual std::uint32_t Begin() = 0;
    virtual std::uint32_t Commit() = 0;
    // Undoes what can be undone since Begin.
    virtual void Rollback() {}
};

// The registry in use: the system's own, or that of the prefix.
std::unique_ptr<Registry> OpenRegistry();

} // namespace qvlink

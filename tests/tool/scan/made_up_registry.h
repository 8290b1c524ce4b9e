// A registry that a test makes up.
#pragma once

#include "platform/system_registry.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

class MadeUpRegistry : public qvlink::Registry {
public:
    struct Key {
        std::string name;
        std::map<std::string, std::unique_ptr<Key>> keys; // by name in lower case
        std::vector<qvlink::RegistryValue> values;
        std::uint32_t code = 0; // what reading it answers, if not 0
    };

    // Makes the key and those above it; its path as in HKLM\a\b.
    Key &At(std::string const &path);
    // Sets a value of a key, which is made.
    void Put(std::string const &path, std::string const &name, std::string const &data,
             std::uint32_t type = 3);
    // The same with texts, stored as the registry stores them.
    void PutText(std::string const &path, std::string const &name, std::string const &text,
                 std::uint32_t type = 1);
    void Remove(std::string const &path); // a key

    std::uint32_t ReadKeys(std::string_view path, std::vector<std::string> &names) override;
    std::uint32_t ReadValues(std::string_view path,
                             std::vector<qvlink::RegistryValue> &values) override;
    std::uint32_t Create(std::string_view path) override;
    std::uint32_t SetValue(std::string_view path, qvlink::RegistryValue const &value) override;
    std::uint32_t DeleteValue(std::string_view path, std::string_view name) override;
    std::uint32_t DeleteTree(std::string_view path) override;
    std::uint32_t Begin() override { return 0; }
    std::uint32_t Commit() override { return 0; }

    std::size_t Reads() const { return m_reads; } // how often ReadKeys and ReadValues were called

private:
    Key *Find(std::string_view path);

    Key m_top;
    std::size_t m_reads = 0;
};

// A text as the registry stores it: in 16-bit units, with a zero behind it.
std::string Stored(std::string const &ascii);

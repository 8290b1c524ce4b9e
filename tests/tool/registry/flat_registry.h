// A registry in memory: keys by their paths in the case that they were made in.
#pragma once

#include "platform/system_registry.h"

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

class FlatRegistry : public qvlink::Registry {
public:
    using Values = std::map<std::string, std::pair<std::uint32_t, std::string>>;
    std::map<std::string, Values> keys;           // by path
    std::map<std::string, std::uint32_t> refused; // what operations on a key answer
    std::uint32_t beginCode = 0;
    std::uint32_t commitCode = 0;
    int commits = 0;
    int rollbacks = 0;

    std::uint32_t ReadKeys(std::string_view path, std::vector<std::string> &names) override;
    std::uint32_t ReadValues(std::string_view path,
                             std::vector<qvlink::RegistryValue> &values) override;
    std::uint32_t Create(std::string_view path) override;
    std::uint32_t SetValue(std::string_view path, qvlink::RegistryValue const &value) override;
    std::uint32_t DeleteValue(std::string_view path, std::string_view name) override;
    std::uint32_t DeleteTree(std::string_view path) override;
    std::uint32_t Begin() override;
    std::uint32_t Commit() override;
    void Rollback() override;

private:
    std::uint32_t CodeOf(std::string const &path) const;

    std::map<std::string, Values> m_before;
};

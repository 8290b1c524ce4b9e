// Registry hives that a test makes. What fails is thrown as std::runtime_error.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

using Bytes = std::vector<std::uint8_t>;

// A hive with an empty root, by the format's own fields.
Bytes EmptyHive();

// A hive that is filled by the hive library and written at the end.
class HiveFile {
public:
    explicit HiveFile(std::filesystem::path path);
    ~HiveFile();
    HiveFile(HiveFile const &) = delete;
    HiveFile &operator=(HiveFile const &) = delete;

    // Makes a key and those above it; names are separated by backslashes.
    HiveFile &Add(std::string const &key);
    HiveFile &SetNumber(std::string const &key, const char *value, unsigned number);
    HiveFile &SetLink(std::string const &key, std::string const &target);
    void Write();

private:
    struct State;
    std::unique_ptr<State> m_state;
};

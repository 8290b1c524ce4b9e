// Hive files with values of all kinds, made by hivex from an empty one.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include <hivex.h>

#include "platform/posix/hive_image.h"

class HiveMaker {
public:
    // Begins with an empty hive in this file.
    explicit HiveMaker(std::filesystem::path const &file);
    ~HiveMaker(); // writes the file
    HiveMaker(HiveMaker const &) = delete;
    HiveMaker &operator=(HiveMaker const &) = delete;

    struct Value {
        std::string name; // in UTF-8
        int type;
        std::string data;
    };

    // Makes a key, of names with backslashes between, and those above it.
    hive_node_h Key(std::string const &path);
    void Values(std::string const &path, std::vector<Value> const &values);

private:
    std::string m_file;
    hive_h *m_hive;
};

// Text as a hive has it: UTF-16LE, with its terminator.
std::string Utf16(std::u16string const &text);

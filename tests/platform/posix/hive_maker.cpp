#include "hive_maker.h"

#include "temp_folder.h"

#include <cstring>

#include <gtest/gtest.h>

HiveMaker::HiveMaker(std::filesystem::path const &file) : m_file(file.string()) {
    WriteBytes(file, EmptyHive());
    m_hive = hivex_open(m_file.c_str(), HIVEX_OPEN_WRITE);
    if (!m_hive)
        ADD_FAILURE() << m_file << ": " << std::strerror(errno);
}

HiveMaker::~HiveMaker() {
    EXPECT_EQ(0, hivex_commit(m_hive, nullptr, 0));
    hivex_close(m_hive);
}

hive_node_h HiveMaker::Key(std::string const &path) {
    hive_node_h node = hivex_root(m_hive);
    for (std::size_t start = 0; start < path.size();) {
        std::size_t const end = std::min(path.find('\\', start), path.size());
        std::string const name = path.substr(start, end - start);
        hive_node_h below = hivex_node_get_child(m_hive, node, name.c_str());
        if (below == 0)
            below = hivex_node_add_child(m_hive, node, name.c_str());
        EXPECT_NE(0u, below) << name;
        node = below;
        start = end + 1;
    }
    return node;
}

void HiveMaker::Values(std::string const &path, std::vector<Value> const &values) {
    std::vector<hive_set_value> given;
    given.reserve(values.size());
    for (Value const &value : values)
        given.push_back({const_cast<char *>(value.name.c_str()), static_cast<hive_type>(value.type),
                         value.data.size(), const_cast<char *>(value.data.data())});
    EXPECT_EQ(0, hivex_node_set_values(m_hive, Key(path), given.size(), given.data(), 0));
}

std::string Utf16(std::u16string const &text) {
    return std::string(reinterpret_cast<const char *>(text.c_str()), 2 * text.size() + 2);
}

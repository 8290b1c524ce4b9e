#include "hive_maker.h"

#include "temp_folder.h"

#include <cstring>

#include <gtest/gtest.h>

namespace {

constexpr std::size_t blockSize = 4096;
constexpr std::uint32_t none = 0xffffffff;

template <class Number> void Put(Bytes &bytes, std::size_t at, Number number) {
    std::memcpy(&bytes[at], &number, sizeof number);
}

void PutMark(Bytes &bytes, std::size_t at, const char *mark) {
    std::memcpy(&bytes[at], mark, std::strlen(mark));
}

} // namespace

// A header of one block and one bin, which holds the root's cell, its security and free room.
std::vector<std::uint8_t> EmptyHive() {
    Bytes bytes(2 * blockSize);
    constexpr std::int32_t binHead = 32;
    constexpr std::int32_t rootSize = 96;
    constexpr std::int32_t securitySize = 48;
    PutMark(bytes, 0, "regf");
    Put(bytes, 4, std::uint32_t{1}); // both numbers alike: it was closed in order
    Put(bytes, 8, std::uint32_t{1});
    Put(bytes, 20, std::uint32_t{1}); // version 1.3
    Put(bytes, 24, std::uint32_t{3});
    Put(bytes, 32, std::uint32_t{1});
    Put(bytes, 36, std::uint32_t{binHead});
    Put(bytes, 40, std::uint32_t{blockSize});
    Put(bytes, 44, std::uint32_t{1});
    std::uint32_t sum = 0;
    for (std::size_t at = 0; at < 508; at += 4) {
        std::uint32_t word = 0;
        std::memcpy(&word, &bytes[at], sizeof word);
        sum ^= word;
    }
    Put(bytes, 508, sum);

    std::size_t const bin = blockSize;
    PutMark(bytes, bin, "hbin");
    Put(bytes, bin + 8, std::uint32_t{blockSize});
    std::size_t const root = bin + binHead;
    Put(bytes, root, -rootSize);
    PutMark(bytes, root + 4, "nk");
    Put(bytes, root + 6, std::uint16_t{0x2c});
    Put(bytes, root + 20, none); // the parent
    for (std::size_t const list : {32u, 36u, 44u, 52u})
        Put(bytes, root + list, none);
    Put(bytes, root + 48, std::uint32_t{binHead + rootSize});
    Put(bytes, root + 76, std::uint16_t{4});
    PutMark(bytes, root + 80, "root");
    std::size_t const security = root + rootSize;
    Put(bytes, security, -securitySize);
    PutMark(bytes, security + 4, "sk");
    Put(bytes, security + 8, std::uint32_t{binHead + rootSize}); // before and after it: itself
    Put(bytes, security + 12, std::uint32_t{binHead + rootSize});
    Put(bytes, security + 16, std::uint32_t{1});
    Put(bytes, security + 20, std::uint32_t{20});
    Put(bytes, security + 24, std::uint32_t{0x80000001}); // a descriptor of nobody
    std::size_t const rest = security + securitySize;
    Put(bytes, rest, static_cast<std::int32_t>(2 * blockSize - rest));
    return bytes;
}

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

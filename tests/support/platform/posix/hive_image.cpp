#include "hive_image.h"

#include <fstream>
#include <stdexcept>

#include <hivex.h>

namespace {

constexpr std::size_t page = 4096;
constexpr std::size_t rootCell = 0x20;
constexpr std::size_t rootSize = 0x60;
constexpr std::size_t securityCell = rootCell + rootSize;
constexpr std::size_t securitySize = 0x30;
constexpr std::size_t freeCell = securityCell + securitySize;
constexpr std::uint32_t none = 0xffffffff;

void Put(Bytes &bytes, std::size_t at, std::uint32_t value, int size = 4) {
    for (int i = 0; i < size; ++i) {
        bytes[at++] = static_cast<std::uint8_t>(value >> (8 * i));
    }
}

void PutText(Bytes &bytes, std::size_t at, std::string const &text) {
    std::copy(text.begin(), text.end(), bytes.begin() + static_cast<std::ptrdiff_t>(at));
}

std::uint32_t Negative(std::size_t size) { return static_cast<std::uint32_t>(0 - size); }

void PutHeader(Bytes &bytes) {
    PutText(bytes, 0, "regf");
    Put(bytes, 4, 1); // both numbers are alike when the file is whole
    Put(bytes, 8, 1);
    Put(bytes, 20, 1); // version 1.3
    Put(bytes, 24, 3);
    Put(bytes, 32, 1);
    Put(bytes, 36, rootCell);
    Put(bytes, 40, page);
    Put(bytes, 44, 1);
    std::uint32_t sum = 0;
    for (std::size_t i = 0; i < 508; i += 4) {
        sum ^= static_cast<std::uint32_t>(bytes[i] | bytes[i + 1] << 8 | bytes[i + 2] << 16) |
               static_cast<std::uint32_t>(bytes[i + 3]) << 24;
    }
    Put(bytes, 508, sum);
}

void PutRoot(Bytes &bytes) {
    std::size_t const at = page + rootCell;
    Put(bytes, at, Negative(rootSize));
    std::size_t const node = at + 4;
    PutText(bytes, node, "nk");
    Put(bytes, node + 2, 0x2c, 2); // the root, its name in bytes
    for (std::size_t const link : {28, 32, 40, 48}) {
        Put(bytes, node + link, none); // no keys, no values, no class
    }
    Put(bytes, node + 44, securityCell);
    Put(bytes, node + 72, 4, 2);
    PutText(bytes, node + 76, "root");
}

void PutSecurity(Bytes &bytes) {
    std::size_t const at = page + securityCell;
    Put(bytes, at, Negative(securitySize));
    PutText(bytes, at + 4, "sk");
    Put(bytes, at + 8, securityCell); // its own neighbours
    Put(bytes, at + 12, securityCell);
    Put(bytes, at + 16, 1); // one key has it
    Put(bytes, at + 20, 20);
    Put(bytes, at + 24, 0x80000001); // an empty descriptor
}

void Expect(bool done, std::string const &otherwise) {
    if (!done)
        throw std::runtime_error("hive: " + otherwise);
}

} // namespace

Bytes EmptyHive() {
    Bytes bytes(2 * page);
    PutHeader(bytes);
    PutText(bytes, page, "hbin");
    Put(bytes, page + 8, page);
    PutRoot(bytes);
    PutSecurity(bytes);
    Put(bytes, page + freeCell, page - freeCell);
    return bytes;
}

struct HiveFile::State {
    std::filesystem::path path;
    std::unique_ptr<hive_h, int (*)(hive_h *)> hive{nullptr, hivex_close};

    hive_node_h Node(std::string const &key) const {
        hive_node_h node = hivex_root(hive.get());
        std::size_t start = 0;
        while (start < key.size()) {
            std::size_t const end = std::min(key.find('\\', start), key.size());
            std::string const name = key.substr(start, end - start);
            hive_node_h const child = hivex_node_get_child(hive.get(), node, name.c_str());
            node = child ? child : hivex_node_add_child(hive.get(), node, name.c_str());
            Expect(node != 0, "no key " + key);
            start = end + 1;
        }
        return node;
    }

    void Set(std::string const &key, const char *value, hive_type type, std::string bytes) const {
        std::string name = value;
        hive_set_value set{};
        set.key = name.data();
        set.t = type;
        set.len = bytes.size();
        set.value = bytes.data();
        Expect(hivex_node_set_value(hive.get(), Node(key), &set, 0) == 0, "no value in " + key);
    }
};

HiveFile::HiveFile(std::filesystem::path path) : m_state(std::make_unique<State>()) {
    std::filesystem::create_directories(path.parent_path());
    Bytes const bytes = EmptyHive();
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<char const *>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    m_state->path = std::move(path);
    m_state->hive.reset(hivex_open(m_state->path.c_str(), HIVEX_OPEN_WRITE));
    Expect(m_state->hive != nullptr, "no hive");
}

HiveFile::~HiveFile() = default;

HiveFile &HiveFile::Add(std::string const &key) {
    m_state->Node(key);
    return *this;
}

HiveFile &HiveFile::SetNumber(std::string const &key, const char *value, unsigned number) {
    std::string bytes;
    for (int i = 0; i < 4; ++i) {
        bytes += static_cast<char>(number >> (8 * i));
    }
    m_state->Set(key, value, hive_t_dword, bytes);
    return *this;
}

HiveFile &HiveFile::SetLink(std::string const &key, std::string const &target) {
    std::string bytes;
    for (char const c : target) {
        bytes += c;
        bytes += '\0';
    }
    m_state->Set(key, "SymbolicLinkValue", hive_t_link, bytes);
    return *this;
}

void HiveFile::Write() {
    Expect(hivex_commit(m_state->hive.get(), nullptr, 0) == 0, "not written");
}

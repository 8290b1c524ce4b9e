#include "platform/posix/hive.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <hivex.h>
#include <unordered_set>

#include "registry/text.h"

namespace qvlink {
namespace {

struct Free {
    void operator()(void *memory) const { std::free(memory); }
};
using Text = std::unique_ptr<char, Free>;
using Nodes = std::unique_ptr<hive_node_h, Free>;

class Reader {
public:
    Reader(hive_h *hive, std::vector<std::string> &skipped) : m_hive(hive), m_skipped(skipped) {}

    void Read(Key &to, std::string const &line);

private:
    struct Level {
        hive_node_h node;
        Key *key;
        std::string line;
        std::size_t depth;
    };

    void ReadBelow(Level const &level);
    void Take(Level const &level, hive_node_h node);
    std::string LinkOf(hive_node_h node) const;
    void Skip(std::string const &line, std::string const &why) {
        m_skipped.push_back(line + ": " + why);
    }

    hive_h *m_hive;
    std::vector<std::string> &m_skipped;
    std::vector<Level> m_pending;
    std::unordered_set<hive_node_h> m_seen; // a damaged hive may lead in circles
};

void Reader::Read(Key &to, std::string const &line) {
    hive_node_h const root = hivex_root(m_hive);
    if (root == 0) {
        Skip(line, std::string("its hive has no root: ") + std::strerror(errno));
        return;
    }
    m_seen.insert(root);
    m_pending.push_back({root, &to, line, 0});
    while (!m_pending.empty()) {
        Level const level = std::move(m_pending.back());
        m_pending.pop_back();
        ReadBelow(level);
    }
}

void Reader::ReadBelow(Level const &level) {
    Nodes const children(hivex_node_children(m_hive, level.node));
    if (!children) {
        Skip(level.line, std::string("what is below it can't be read: ") + std::strerror(errno));
        return;
    }
    if (*children == 0) {
        level.key->link = LinkOf(level.node);
    }
    for (const hive_node_h *node = children.get(); *node != 0; ++node) {
        Take(level, *node);
    }
}

void Reader::Take(Level const &level, hive_node_h node) {
    Text const name(hivex_node_name(m_hive, node));
    if (!name || !*name) {
        Skip(level.line, "a key below it has no name that can be read");
        return;
    }
    std::string line = level.line + '\\' + name.get();
    if (const char *const problem = NameProblem(name.get())) {
        Skip(line, problem);
    } else if (level.depth >= deepestKey || !m_seen.insert(node).second) {
        Skip(line, "the hive is damaged: the key lies in itself or too deep");
    } else {
        m_pending.push_back({node, &level.key->At(name.get()), std::move(line), level.depth + 1});
    }
}

// A value's type and size. The type may be any number, which the library's enumeration isn't made
// for; false if there is no such value.
struct TypeAndSize {
    std::uint32_t type = 0;
    std::size_t size = 0;
};
static_assert(sizeof(hive_type) == sizeof(std::uint32_t));

bool Ask(hive_h *hive, hive_value_h value, TypeAndSize &told) {
    return value != 0 && hivex_value_type(hive, value, reinterpret_cast<hive_type *>(&told.type),
                                          &told.size) == 0;
}

// In the list's form if its target is one of the machine's keys.
std::string Reader::LinkOf(hive_node_h node) const {
    hive_value_h const value = hivex_node_get_value(m_hive, node, "SymbolicLinkValue");
    TypeAndSize told;
    if (!Ask(m_hive, value, told) || told.type != hive_t_link) {
        return {};
    }
    hive_type type{}; // a link's
    Text const bytes(hivex_value_value(m_hive, value, &type, &told.size));
    std::u16string units;
    for (std::size_t i = 0; bytes && i + 1 < told.size; i += 2) {
        units += static_cast<char16_t>(static_cast<unsigned char>(bytes.get()[i]) |
                                       static_cast<unsigned char>(bytes.get()[i + 1]) << 8);
    }
    std::string const path = Utf8Of(units).value_or("?");
    return LineOfSystemPath(path, {}).value_or(path);
}

} // namespace

std::unique_ptr<Hive> Hive::Open(std::string const &path, std::string &why) {
    hive_h *const hive = hivex_open(path.c_str(), 0);
    if (!hive) {
        why = errno == ENOTSUP || errno == EINVAL ? "it is damaged, or no registry hive"
                                                  : std::strerror(errno);
        return nullptr;
    }
    return std::unique_ptr<Hive>(new Hive(hive));
}

Hive::~Hive() { hivex_close(m_hive); }

void Hive::Read(Key &to, std::string const &line, std::vector<std::string> &skipped) const {
    Reader(m_hive, skipped).Read(to, line);
}

std::optional<unsigned> Hive::Number(const char *key, const char *value) const {
    hive_node_h const root = hivex_root(m_hive);
    hive_node_h const node = root == 0 ? 0 : hivex_node_get_child(m_hive, root, key);
    hive_value_h const found = node == 0 ? 0 : hivex_node_get_value(m_hive, node, value);
    TypeAndSize told;
    if (!Ask(m_hive, found, told) || told.type != hive_t_dword || told.size != 4) {
        return std::nullopt;
    }
    return static_cast<unsigned>(hivex_value_dword(m_hive, found));
}

} // namespace qvlink

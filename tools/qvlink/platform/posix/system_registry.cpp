#include "platform/system_registry.h"

#include "platform/posix/registry/tree.h"
#include "platform/settings.h"
#include "registry/text.h"

namespace qvlink {
namespace {

using platform::registry::Code;
using platform::registry::OpenKey;
using platform::registry::Tree;
using platform::registry::Value;

constexpr Code success = 0;
constexpr Code notFound = 2;
constexpr Code badParameter = 87;
constexpr Code noMoreItems = 259;

// The tree has any names of 16-bit units.
std::string NameOf(std::u16string const &units) { return Utf8Of(units).value_or("\xef\xbf\xbd"); }

class PrefixRegistry : public Registry {
public:
    PrefixRegistry() : m_tree(platform::registry::OpenTree(platform::CurrentSettings())) {}
    ~PrefixRegistry() override { m_tree->Rollback(); }

    std::uint32_t ReadKeys(std::string_view path, std::vector<std::string> &names) override;
    std::uint32_t ReadValues(std::string_view path, std::vector<RegistryValue> &values) override;
    std::uint32_t Create(std::string_view path) override;
    std::uint32_t SetValue(std::string_view path, RegistryValue const &value) override;
    std::uint32_t DeleteValue(std::string_view path, std::string_view name) override;
    std::uint32_t DeleteTree(std::string_view path) override;
    std::uint32_t Begin() override { return m_tree->Begin(); }
    std::uint32_t Commit() override {
        m_last.reset();
        return m_tree->Commit();
    }
    void Rollback() override {
        m_last.reset();
        m_tree->Rollback();
    }

private:
    Code Open(std::string_view path, OpenKey &key);
    Code DeleteBelow(OpenKey const &key);

    std::shared_ptr<Tree> m_tree;
    // Values come key by key, so the last one is kept open.
    std::string m_lastPath;
    OpenKey m_last;
};

Code PrefixRegistry::Open(std::string_view path, OpenKey &key) {
    if (m_last && path == m_lastPath) {
        key = m_last;
        return success;
    }
    auto const units = UnitsOf(path);
    std::u16string_view rest = units ? std::u16string_view(*units) : std::u16string_view();
    auto const root = platform::registry::TakeRoot(rest);
    if (!root) {
        return badParameter;
    }
    Code const code = m_tree->Open(*m_tree->RootKey(*root), rest, key);
    if (code == success) {
        m_lastPath = path;
        m_last = key;
    }
    return code;
}

std::uint32_t PrefixRegistry::ReadKeys(std::string_view path, std::vector<std::string> &names) {
    names.clear();
    OpenKey key;
    Code code = Open(path, key);
    std::u16string name;
    for (std::uint32_t index = 0; code == success; ++index) {
        code = m_tree->EnumerateKey(*key, index, name);
        if (code == success) {
            names.push_back(NameOf(name));
        }
    }
    if (code != noMoreItems) {
        names.clear();
    }
    return code == noMoreItems ? success : code;
}

std::uint32_t PrefixRegistry::ReadValues(std::string_view path,
                                         std::vector<RegistryValue> &values) {
    values.clear();
    OpenKey key;
    Code code = Open(path, key);
    Value value;
    for (std::uint32_t index = 0; code == success; ++index) {
        code = m_tree->EnumerateValue(*key, index, value);
        if (code == success) {
            values.push_back({NameOf(value.name), value.type, std::move(value.data)});
        }
    }
    if (code != noMoreItems) {
        values.clear();
    }
    return code == noMoreItems ? success : code;
}

std::uint32_t PrefixRegistry::Create(std::string_view path) {
    auto const units = UnitsOf(path);
    std::u16string_view rest = units ? std::u16string_view(*units) : std::u16string_view();
    auto const root = platform::registry::TakeRoot(rest);
    if (!root) {
        return badParameter;
    }
    OpenKey key;
    bool made = false;
    Code const code = m_tree->Create(*m_tree->RootKey(*root), rest, key, made);
    if (code == success) {
        m_lastPath = path;
        m_last = key;
    }
    return code;
}

std::uint32_t PrefixRegistry::SetValue(std::string_view path, RegistryValue const &value) {
    OpenKey key;
    Code const code = Open(path, key);
    auto name = UnitsOf(value.name);
    if (code != success || !name) {
        return code != success ? code : badParameter;
    }
    return m_tree->SetValue(*key, {std::move(*name), value.type, value.data});
}

std::uint32_t PrefixRegistry::DeleteValue(std::string_view path, std::string_view name) {
    OpenKey key;
    Code const code = Open(path, key);
    auto const units = UnitsOf(name);
    if (code != success || !units) {
        return code != success ? code : badParameter;
    }
    return m_tree->DeleteValue(*key, *units);
}

Code PrefixRegistry::DeleteBelow(OpenKey const &key) {
    std::u16string name;
    Code code = m_tree->EnumerateKey(*key, 0, name);
    while (code == success) {
        OpenKey below;
        code = m_tree->Open(*key, name, below);
        if (code == success) {
            code = DeleteBelow(below);
        }
        if (code == success) {
            code = m_tree->Delete(*key, name);
        }
        if (code == success) {
            code = m_tree->EnumerateKey(*key, 0, name);
        }
    }
    return code == noMoreItems ? success : code;
}

std::uint32_t PrefixRegistry::DeleteTree(std::string_view path) {
    std::size_t const last = path.rfind('\\');
    if (last == std::string_view::npos) {
        return badParameter;
    }
    OpenKey above;
    OpenKey key;
    Code code = Open(path.substr(0, last), above);
    auto const name = UnitsOf(path.substr(last + 1));
    if (code != success || !name) {
        return code != success ? code : notFound;
    }
    m_last.reset();
    code = m_tree->Open(*above, *name, key);
    if (code == success) {
        code = DeleteBelow(key);
    }
    return code == success ? m_tree->Delete(*above, *name) : code;
}

} // namespace

std::unique_ptr<Registry> OpenRegistry() { return std::make_unique<PrefixRegistry>(); }

} // namespace qvlink

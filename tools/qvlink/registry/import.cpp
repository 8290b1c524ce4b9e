#include "registry/import.h"

#include "registry/key_path.h"
#include "registry/links.h"
#include "registry/reasons.h"

#include <algorithm>

namespace qvlink {
namespace {

using Kind = RegistrationEntry::Kind;

constexpr std::uint32_t notFound = 2;

class Importer {
public:
    Importer(Registry &registry, std::string_view bytes, CodePage const &page,
             std::string const &into)
        : m_registry(registry), m_reader(bytes, page), m_into(into) {}

    Imported Run();

private:
    void Take(RegistrationEntry &entry);
    void TakeKey(RegistrationEntry const &entry);
    void TakeValue(RegistrationEntry const &entry);
    void RemoveKey(RegistrationEntry const &entry);
    void Link(RegistrationEntry const &entry);
    void FollowLinks();
    // The key of the registry that a path of the file means; empty if that can't be told.
    std::string Place(std::string const &path) const;
    std::string Moved(std::string const &path) const;
    void Fault(std::size_t line, std::string message) {
        m_result.faults.push_back({line, std::move(message), false});
    }
    // Whether the registry did it.
    bool Check(std::size_t line, std::uint32_t code, std::string const &what);

    Registry &m_registry;
    RegistrationReader m_reader;
    std::string m_into;
    std::string m_key; // that values belong to; empty: they are passed over
    std::vector<KeyLink> m_links;
    Imported m_result;
};

// With the key of --into in place of its root.
std::string Importer::Moved(std::string const &path) const {
    std::size_t const end = path.find('\\');
    return m_into + (end == std::string::npos ? "" : path.substr(end));
}

std::string Importer::Place(std::string const &path) const {
    if (m_result.form != RegistrationForm::prefix) {
        return m_into.empty() ? path : Moved(path);
    }
    std::string const root =
        m_into.empty() ? RootOfPrefixFile(m_reader.Root()).value_or("") : m_into;
    return root.empty() ? "" : root + '\\' + path;
}

bool Importer::Check(std::size_t line, std::uint32_t code, std::string const &what) {
    if (code != 0) {
        m_result.faults.push_back({line, what + ": " + ReasonOf(code), true});
    }
    return code == 0;
}

void Importer::TakeKey(RegistrationEntry const &entry) {
    m_key = Place(entry.key);
    std::string const why = WhyNoKey(m_key);
    if (!why.empty()) {
        Fault(entry.line, why);
        m_key.clear();
    } else if (Check(entry.line, m_registry.Create(m_key), m_key)) {
        ++m_result.keys;
    } else {
        m_key.clear();
    }
}

void Importer::RemoveKey(RegistrationEntry const &entry) {
    m_key.clear();
    if (entry.key.find('\\') == std::string::npos) {
        Fault(entry.line, "a root can't be removed");
        return;
    }
    std::string const key = Place(entry.key);
    std::string const why = WhyNoKey(key);
    if (!why.empty()) {
        Fault(entry.line, why);
        return;
    }
    std::uint32_t const code = m_registry.DeleteTree(key);
    if (code != notFound && Check(entry.line, code, key)) {
        ++m_result.removedKeys;
    }
}

void Importer::TakeValue(RegistrationEntry const &entry) {
    std::string const why = WhyNoValueName(entry.value.name);
    if (!why.empty()) {
        Fault(entry.line, why);
        return;
    }
    std::string const what = m_key + ": " + (entry.value.name.empty() ? "@" : entry.value.name);
    if (entry.kind == Kind::value) {
        m_result.values += Check(entry.line, m_registry.SetValue(m_key, entry.value), what) ? 1 : 0;
        return;
    }
    std::uint32_t const code = m_registry.DeleteValue(m_key, entry.value.name);
    if (code != notFound && Check(entry.line, code, what)) {
        ++m_result.removedValues;
    }
}

void Importer::Link(RegistrationEntry const &entry) {
    auto target = KeyOfSystemPath(entry.text, m_reader.Root());
    auto const root = RootOfPrefixFile(m_reader.Root());
    if (target && !m_into.empty() && root && IsAtOrBelow(*target, *root)) {
        target = m_into + target->substr(root->size());
    }
    m_links.push_back({entry.line, m_key, target.value_or(""), false, {}});
}

void Importer::Take(RegistrationEntry &entry) {
    switch (entry.kind) {
    case Kind::key:
        TakeKey(entry);
        break;
    case Kind::removedKey:
        RemoveKey(entry);
        break;
    case Kind::value:
    case Kind::removedValue:
        if (!m_key.empty()) {
            TakeValue(entry);
        }
        break;
    case Kind::link:
        if (!m_key.empty()) {
            Link(entry);
        }
        break;
    case Kind::faultyKey:
        m_key.clear();
        Fault(entry.line, std::move(entry.text));
        break;
    case Kind::fault:
        Fault(entry.line, std::move(entry.text));
        break;
    }
}

void Importer::FollowLinks() {
    CopyLinks(m_registry, m_links);
    for (KeyLink const &link : m_links) {
        m_result.links += link.isCopied ? 1 : 0;
        if (!link.why.empty()) {
            Fault(link.line, link.key + ": " + link.why);
        }
    }
    std::stable_sort(m_result.faults.begin(), m_result.faults.end(),
                     [](ImportFault const &a, ImportFault const &b) { return a.line < b.line; });
}

Imported Importer::Run() {
    m_result.form = m_reader.Form();
    if (m_result.form == RegistrationForm::none) {
        m_result.failure = "not a registration file: its first line is neither that of REGEDIT4, "
                           "of version 5.00 nor of a Wine prefix";
        return m_result;
    }
    std::uint32_t code = m_registry.Begin();
    RegistrationEntry entry;
    while (code == 0 && m_result.failure.empty() && m_reader.Next(entry)) {
        if (entry.kind == Kind::key && Place(entry.key).empty()) {
            m_result.failure = "the file doesn't say below which root its keys belong; name a key "
                               "with --into";
        } else {
            Take(entry);
        }
    }
    if (m_result.failure.empty() && code == 0) {
        FollowLinks();
        code = m_registry.Commit();
    }
    if (code != 0) {
        m_result.failure = ReasonOf(code);
    }
    if (!m_result.failure.empty()) {
        m_registry.Rollback();
    }
    bool const isPrefix = m_result.form == RegistrationForm::prefix;
    m_result.root =
        !isPrefix || !m_into.empty() ? m_into : RootOfPrefixFile(m_reader.Root()).value_or("");
    return m_result;
}

} // namespace

Imported ImportRegistration(Registry &registry, std::string_view bytes, CodePage const &page,
                            std::string const &into) {
    return Importer(registry, bytes, page, into).Run();
}

} // namespace qvlink

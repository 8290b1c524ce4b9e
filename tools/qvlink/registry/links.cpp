#include "registry/links.h"

#include "registry/key_path.h"
#include "registry/reasons.h"

#include <algorithm>

namespace qvlink {
namespace {

// Links to links multiply keys: a whole prefix has some ten thousand.
constexpr std::size_t mostCopies = 100000;
constexpr std::size_t mostLinks = 500;
constexpr std::uint32_t notFound = 2;

class Copier {
public:
    explicit Copier(Registry &registry) : m_registry(registry) {}

    void Follow(KeyLink &link);

private:
    std::string Copy(std::string const &from, std::string const &to);
    std::uint32_t CopyValues(std::string const &from, std::string const &to);

    Registry &m_registry;
    std::size_t m_copies = 0;
};

std::uint32_t Copier::CopyValues(std::string const &from, std::string const &to) {
    std::vector<RegistryValue> values;
    std::uint32_t code = m_registry.ReadValues(from, values);
    for (auto value = values.begin(); code == 0 && value != values.end(); ++value) {
        code = m_registry.SetValue(to, *value);
    }
    return code;
}

std::string Copier::Copy(std::string const &from, std::string const &to) {
    if (!WhyNoKey(to).empty() || ++m_copies > mostCopies) {
        return "the link leads to too many keys";
    }
    std::vector<std::string> names;
    std::uint32_t code = m_registry.ReadKeys(from, names);
    if (code == 0) {
        code = m_registry.Create(to);
    }
    if (code == 0) {
        code = CopyValues(from, to);
    }
    if (code != 0) {
        return "the link to " + from + " wasn't followed: " + ReasonOf(code);
    }
    std::string why;
    for (auto name = names.begin(); why.empty() && name != names.end(); ++name) {
        why = Copy(from + '\\' + *name, to + '\\' + *name);
    }
    return why;
}

// A system that runs makes some keys anew each time, and has links to them in its files.
void Copier::Follow(KeyLink &link) {
    std::vector<std::string> names;
    if (m_registry.ReadKeys(link.target, names) == notFound) {
        return;
    }
    link.why = Copy(link.target, link.key);
    link.isCopied = link.why.empty();
}

// Whether what a link leads to has yet to get the keys of another.
bool IsAhead(KeyLink const &link, KeyLink const &of) {
    return IsAtOrBelow(link.key, of.target) || IsAtOrBelow(of.target, link.key);
}

} // namespace

void CopyLinks(Registry &registry, std::vector<KeyLink> &links) {
    std::vector<KeyLink *> waiting;
    for (KeyLink &link : links) {
        if (link.target.empty()) {
            link.why = "the link leads out of the registry";
        } else if (IsAtOrBelow(link.key, link.target) || IsAtOrBelow(link.target, link.key)) {
            link.why = "the link leads to a key that it lies below, or above";
        } else if (waiting.size() == mostLinks) {
            link.why = "the file has too many links";
        } else {
            waiting.push_back(&link);
        }
    }
    Copier copier(registry);
    for (bool any = true; any;) {
        auto const isReady = [&](KeyLink const *link) {
            return std::none_of(waiting.begin(), waiting.end(), [&](KeyLink const *other) {
                return other != link && IsAhead(*other, *link);
            });
        };
        auto const ready = std::find_if(waiting.begin(), waiting.end(), isReady);
        any = ready != waiting.end();
        if (any) {
            copier.Follow(**ready);
            waiting.erase(ready);
        }
    }
    for (KeyLink *const link : waiting) {
        link->why = "the link leads in a circle";
    }
}

} // namespace qvlink

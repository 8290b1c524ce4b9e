// Walks the registry and brings its tree in the graph in line with it.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "answer/place.h"
#include "platform/system_registry.h"
#include "scan/named_files.h"
#include "scan/session.h"

namespace qvlink {

class KeyWalker {
public:
    KeyWalker(Session &session, Registry &registry);

    // Looks for the keys of these paths. Throws ScanError for a text that is no path of a key,
    // and for a key that is neither in the registry nor in the graph.
    void Find(std::vector<std::string> const &paths);
    // Scans them with all that is below them; what is no more leaves the graph.
    void Scan();

private:
    // A key or hive whose object is there.
    struct Level {
        std::uint32_t id = 0;
        std::string path;       // as the registry takes it, in UTF-8
        std::size_t length = 0; // of the database's form
        std::size_t depth = 0;
    };
    // The keys or values in a key, by their names in lower case; null once they were seen.
    using Children = std::unordered_map<std::string, CQVUObject *>;

    bool IsThere(Place const &place);
    void Forget(Place const &place);
    void ScanBelow(Place const &root);
    bool Descend(Place const &root, Level &level);
    std::string Spelled(Level const &level, std::string const &name);
    void ScanKey(Level const &level, std::vector<Level> &next);
    // These give the registry's code; after a failure nothing is gone.
    std::uint32_t TakeKeys(Level const &level, std::vector<Level> &next,
                           std::vector<CQVUObject *> &gone);
    std::uint32_t TakeValues(Level const &level, std::vector<CQVUObject *> &gone);
    CQVUObject *TakeKey(Level const &level, Children &known, std::string const &name);
    void TakeValue(Level const &level, Children &known, RegistryValue const &value);
    CQVUObject &Add(Level const &level, std::string const &name, std::uint32_t type,
                    std::string block);
    bool Update(CQVUObject &object, std::string name, std::string block);
    void LinkFiles(CQVUObject &object, RegistryValue const &value);

    CQVUObject &ObjectOf(Level const &level);
    Children ChildrenOf(Level const &level, std::uint32_t type);
    // The name in the database's form, or empty, and a problem is told.
    std::string Hold(Level const &level, std::string const &name, Children const &known,
                     bool isValue);

    Session &m_session;
    Registry &m_registry;
    NamedFiles m_files;
    std::vector<Place> m_present;
    std::vector<Place> m_absent; // from the registry, but in the graph
};

} // namespace qvlink

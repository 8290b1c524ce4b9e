#include "parent_chain.h"

#include "fold.h"
#include "path_text.h"

namespace {

constexpr std::size_t LongTest = 4096;

std::uint32_t TypeOf(DBObject const &object) { return object.dwType & ~PERSISTENT_BIT; }

} // namespace

DBObject *ParentChain::Parent(std::uint32_t entry) const {
    DBLink const *link = m_links.Find(entry & LINK_ENTRY_ID_MASK);
    return link && (link->dwType & ~PERSISTENT_BIT) == LINK_PARENT ? m_objects.Find(link->dwSource)
                                                                   : nullptr;
}

bool ParentChain::Leads(DBObject &object, std::string &parentPath) {
    bool const key = TypeOf(object) == OBJ_KEY || TypeOf(object) == OBJ_HIVE;
    if (parentPath.size() < 4 || (key && parentPath.find('\\') == parentPath.npos))
        return IsBelowRoot(object, parentPath);
    std::pair<DBObject const *, std::size_t> const level(&object, parentPath.size());
    // Each level makes the text shorter, except one that ends in a slash: objects without a
    // name can stand above themselves there.
    bool const endless = parentPath.back() == '/';
    if (m_depth == PathBufferSize || (!m_failures.empty() && m_failures.count(level)))
        return false;
    if (endless || m_steps > LongTest)
        m_failures.insert(level); // a success ends the whole test, so this stays true
    ++m_depth;
    bool const leads = IsBelowParent(object, parentPath);
    --m_depth;
    return leads;
}

bool ParentChain::IsBelowRoot(DBObject const &object, std::string &rootName) const {
    StripOneBackslash(rootName);
    for (std::uint32_t i = 0, count = object.dwLinksTo & LINK_ENTRY_ID_MASK; i < count; ++i) {
        DBObject const *parent = Parent(object.pdwLinksTo[i]);
        if (parent && (TypeOf(*parent) == OBJ_DRIVE || TypeOf(*parent) == OBJ_HIVE) &&
            parent->pszName && EqualNoCase(parent->pszName, rootName.c_str()))
            return true;
    }
    return false;
}

bool ParentChain::IsBelowParent(DBObject const &object, std::string const &parentPath) {
    PathParts const parts(parentPath);
    std::string wanted(parts.leaf);
    for (std::uint32_t i = 0, count = object.dwLinksTo & LINK_ENTRY_ID_MASK; i < count; ++i) {
        DBObject *const parent = Parent(object.pdwLinksTo[i]);
        if (!parent || !parent->pszName || !EqualNoCase(parent->pszName, wanted.c_str()))
            continue;
        // The parent text takes the leaf's place for good: of several parents of one
        // name only the first is really tested, and later ones are compared with this.
        wanted.assign(parts.parent);
        StripOneBackslash(wanted);
        ++m_steps;
        if (Leads(*parent, wanted))
            return true;
    }
    return false;
}

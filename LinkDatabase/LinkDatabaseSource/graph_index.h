// GraphIndex: the private half of the database: the memory of its records' parts and
// what makes operations fast. Nothing here decides a result: each answer is the one that
// the records and their lists give.
#pragma once

#include "graph_maps.h"
#include "link_set.h"
#include "linkdb_node.h"
#include "record_heap.h"
#include "tree_index.h"

#include <unordered_set>
#include <vector>

class GraphIndex {
public:
    RecordHeap heap;
    TreeIndex tree;
    // Records that a later one of the same id has replaced. They stay in the name index,
    // and callers may hold them, so they live as long as the database.
    std::vector<ObjectNode *> retired;

    void FreeParts(ObjectNode &node); // name, lists, data

    // Whether the incoming list of `target` has an entry whose link has this type and comes
    // from `source`.
    bool HasLink(ObjectNode &source, ObjectNode &target, std::uint32_t type,
                 ObjectMap const &objects, LinkMap const &links);
    // An entry for this link was added to, or `removed` times taken from, the incoming list.
    void LinkEntered(ObjectNode &target, DBLink const &link);
    void LinkLeft(ObjectNode &target, DBLink const &link, std::uint32_t removed,
                  LinkMap const &links);

    // A load leaves entries whose link was dropped. Their ids are handed out again, and
    // such an entry then names the new link.
    void CollectStaleEntries(ObjectMap const &objects, std::uint32_t lastLinkID);
    void LinkIDHandedOut(std::uint32_t id);
    void Reloaded();      // everything known so far may be void
    void ListsDisagree(); // a list couldn't take an entry that its link's other list has

private:
    enum class Agreement { Unknown, Yes, No };

    bool ListsAgree(ObjectMap const &objects, LinkMap const &links);
    LinkSet *SetOf(ObjectNode &target, LinkMap const &links);
    void DropSet(ObjectNode &target);

    std::unordered_set<std::uint32_t> m_staleEntries; // above the last link id of the load
    bool m_allMayBeStale = false;
    std::uint32_t m_epoch = 0; // sets made under an earlier one are void
    // Whether each link stands once in the list of its source and once in its target's.
    Agreement m_agreement = Agreement::Unknown;
};

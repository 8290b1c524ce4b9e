#include "graph_compare.h"

#include <cstring>

using testing::AssertionFailure;
using testing::AssertionResult;
using testing::AssertionSuccess;

namespace {

AssertionResult SameList(char const *which, std::uint32_t word, std::uint32_t const *entries,
                         model::List const &expected) {
    if (word != expected.Word())
        return AssertionFailure() << which << ": count word " << std::hex << word << ", not "
                                  << expected.Word();
    for (std::size_t i = 0; i < expected.entries.size(); ++i)
        if (entries[i] != expected.entries[i])
            return AssertionFailure() << which << "[" << i << "]: " << std::hex << entries[i]
                                      << ", not " << expected.entries[i];
    return AssertionSuccess();
}

AssertionResult SameName(char const *name, std::optional<std::string> const &expected) {
    if (name == nullptr ? !expected.has_value() : expected == std::string(name))
        return AssertionSuccess();
    return AssertionFailure() << "name " << (name ? name : "(null)") << ", not "
                              << expected.value_or("(null)");
}

AssertionResult SameWords(DBObject const &object, model::Object const &expected) {
    if (object.dwID == expected.id && object.dwFlags == expected.flags &&
        object.dwType == expected.type && object.dwDataSize == expected.data.size())
        return AssertionSuccess();
    return AssertionFailure() << std::hex << "id, flags, type, data size " << object.dwID << " "
                              << object.dwFlags << " " << object.dwType << " " << object.dwDataSize
                              << ", not " << expected.id << " " << expected.flags << " "
                              << expected.type << " " << expected.data.size();
}

AssertionResult SameLink(DBLink const *link, std::uint32_t id, model::Link const *expected) {
    bool const same = link == nullptr || expected == nullptr
                          ? !link && !expected
                          : link->dwID == id && link->dwSource == expected->source &&
                                link->dwTarget == expected->target &&
                                link->dwType == expected->type;
    return same ? AssertionSuccess()
                : AssertionFailure()
                      << "link " << id << (link ? " there" : " missing") << ", "
                      << (expected ? "expected" : "not expected") << " or with other fields";
}

constexpr std::uint32_t scanLimit = 300;

} // namespace

AssertionResult SameObject(DBObject const *object, model::Object const *expected) {
    if (!object || !expected)
        return !object && !expected ? AssertionSuccess()
                                    : AssertionFailure() << (object ? "there" : "missing");
    if (AssertionResult const words = SameWords(*object, *expected); !words)
        return words;
    if (AssertionResult const name = SameName(object->pszName, expected->name); !name)
        return name;
    if (!expected->data.empty() &&
        (!object->pData ||
         std::memcmp(object->pData, expected->data.data(), expected->data.size()) != 0))
        return AssertionFailure() << "other data";
    if (AssertionResult const from =
            SameList("out", object->dwLinksFrom, object->pdwLinksFrom, expected->from);
        !from)
        return from;
    return SameList("in", object->dwLinksTo, object->pdwLinksTo, expected->to);
}

AssertionResult SameGraph(CQVUDatabase *database, model::Graph const &graph) {
    for (auto const &[id, expected] : graph.objects)
        if (AssertionResult const same = SameObject(database->LookupObject(id), expected.get());
            !same)
            return AssertionFailure() << "object " << id << ": " << same.message();
    for (auto const &[id, expected] : graph.links)
        if (AssertionResult const same = SameLink(database->LookupLink(id), id, &expected); !same)
            return same;
    if (graph.lastObject < scanLimit)
        for (std::uint32_t id = 0; id <= graph.lastObject + 2; ++id)
            if (database->LookupObject(id) && !graph.Find(id))
                return AssertionFailure() << "object " << id << " is there";
    if (graph.lastLink < scanLimit)
        for (std::uint32_t id = 0; id <= graph.lastLink + 2; ++id)
            if (database->LookupLink(id) && !graph.links.count(id))
                return AssertionFailure() << "link " << id << " is there";
    return AssertionSuccess();
}

#include "mirror_search.h"

namespace mirror {
namespace {

bool Matches(char const *pattern, char const *text) {
    for (;; ++pattern, ++text) {
        if (*pattern == 0)
            return *text == 0;
        if (*pattern == '*')
            return Matches(pattern + 1, text) || (*text && Matches(pattern, text + 1)) ||
                   (*text && Matches(pattern + 1, text + 1));
        if (*text == 0)
            return false;
        if (*pattern != '?' && *pattern != *text)
            return false;
    }
}

std::string Lower(std::string text) {
    for (char &character : text)
        if (character >= 'A' && character <= 'Z')
            character = static_cast<char>(character + 32);
    return text;
}

constexpr std::uint32_t typeBits = 0x7fffffff;

} // namespace

bool NameFits(std::string const &pattern, std::string const &name) {
    if (pattern.size() == 5 && pattern.compare(0, 2, "*.") == 0)
        return name.size() > 4 && SameText(name.substr(name.size() - 4), pattern.substr(1));
    return Matches(pattern == "*.*" ? "*" : Lower(pattern).c_str(), Lower(name).c_str());
}

Id ObjectSearch::Step(Graph const &graph) {
    auto place = graph.objects.lower_bound(static_cast<Id>(cursor));
    for (; !ended && place != graph.objects.end(); ++place) {
        mirror::Object const &object = place->second;
        cursor = std::uint64_t{object.id} + 1;
        if ((object.type & mask & typeBits) && object.name && NameFits(pattern, *object.name))
            return object.id;
    }
    ended = true;
    return 0;
}

Id LinkSearch::Step(Graph const &graph) {
    mirror::Object const &walked = *graph.Find(object);
    std::vector<std::uint32_t> const &list = isIncoming ? walked.to : walked.from;
    for (std::size_t index = next; index < list.size(); ++index) {
        Link const *const link = graph.LinkOf(list[index]);
        if (link && (link->type & mask & typeBits)) {
            next = index + 1;
            return link->id;
        }
    }
    return 0;
}

} // namespace mirror

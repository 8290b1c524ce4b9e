#include "list_text.h"

#include "list_lines.h"

#include <algorithm>
#include <iterator>

namespace lists {
namespace {

struct Entry {
    std::string folded;
    std::string_view spelling;
};

bool operator<(Entry const &a, Entry const &b) { return a.folded < b.folded; }

// Each once, in order.
std::vector<Entry> EntriesOf(std::string_view text) {
    std::vector<Entry> entries;
    while (!text.empty())
        if (std::string_view const line = Trim(TakeLine(text)); !line.empty())
            entries.push_back({Folded(line), line});
    std::stable_sort(entries.begin(), entries.end());
    entries.erase(std::unique(entries.begin(), entries.end(),
                              [](Entry const &a, Entry const &b) { return a.folded == b.folded; }),
                  entries.end());
    return entries;
}

std::vector<std::string> Without(std::vector<Entry> const &entries,
                                 std::vector<Entry> const &others) {
    std::vector<Entry> rest;
    std::set_difference(entries.begin(), entries.end(), others.begin(), others.end(),
                        std::back_inserter(rest));
    std::vector<std::string> spellings;
    spellings.reserve(rest.size());
    for (Entry const &entry : rest)
        spellings.emplace_back(entry.spelling);
    return spellings;
}

} // namespace

std::string_view Trim(std::string_view line) {
    while (!line.empty() && IsBlank(line.back()))
        line.remove_suffix(1);
    while (!line.empty() && IsBlank(line.front()))
        line.remove_prefix(1);
    return line;
}

std::string_view TakeLine(std::string_view &text) {
    std::size_t const end = text.find('\n');
    std::string_view const line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return line;
}

bool StartsWith(std::string_view line, std::string_view start) {
    return line.size() >= start.size() &&
           std::equal(start.begin(), start.end(), line.begin(),
                      [](char a, char b) { return Lower(a) == Lower(b); });
}

std::string Folded(std::string_view entry) {
    std::string folded;
    for (char const c : entry) {
        if (c != '\\')
            folded += Lower(c);
        else if (!folded.empty() && folded.back() != '\0')
            folded += '\0';
    }
    if (!folded.empty() && folded.back() == '\0')
        folded.pop_back();
    return folded;
}

std::optional<Kind> KindOf(std::string_view text) {
    while (!text.empty()) {
        std::string_view const line = Trim(TakeLine(text));
        if (StartsWith(line, "%"))
            return Kind::files;
        if (StartsWith(line, "HK"))
            return Kind::keys;
        if (!line.empty())
            break;
    }
    return std::nullopt;
}

Difference Compare(std::string_view first, std::string_view second) {
    auto const a = EntriesOf(first);
    auto const b = EntriesOf(second);
    return {Without(a, b), Without(b, a)};
}

bool EntryBefore(std::string_view a, std::string_view b) { return Folded(a) < Folded(b); }

} // namespace lists

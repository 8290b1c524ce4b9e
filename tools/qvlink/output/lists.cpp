#include "output/lists.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace qvlink {
namespace {

Json JsonOfEntries(std::vector<std::string> const &entries) {
    Json list = Json::array();
    for (std::string const &entry : entries) {
        Json item = Json::object();
        PutText(item, "entry", entry);
        list.push_back(std::move(item));
    }
    return list;
}

void PutList(Json &json, std::optional<lists::Kind> kind, std::optional<std::uint32_t> id) {
    if (kind) {
        json["kind"] = *kind == lists::Kind::files ? "files" : "keys";
    }
    if (id) {
        json["id"] = *id;
    }
}

} // namespace

bool CheckedList::IsSound() const {
    return std::none_of(findings.begin(), findings.end(),
                        [](lists::Finding const &finding) { return finding.isError; });
}

void PrintListCheck(Screen &screen, CheckedList const &list, bool verbose) {
    std::string const name = screen.Safe(list.name);
    for (lists::Finding const &finding : list.findings) {
        screen.Line(name + ':' + std::to_string(finding.line) + ": " +
                    screen.Painted(finding.isError ? "" : "note: ", Colour::dim) +
                    screen.Safe(finding.message));
    }
    if (verbose) {
        screen.Line(name + ": " + ReadableCount(list.lines) +
                    (list.lines == 1 ? " line, " : " lines, ") +
                    (list.IsSound() ? "sound" : "not sound"));
    }
}

Json JsonOfListChecks(std::vector<CheckedList> const &lists) {
    Json answer = Json::array();
    for (CheckedList const &list : lists) {
        Json json = Json::object();
        PutText(json, "file", list.name);
        PutList(json, list.kind, list.id);
        json["sound"] = list.IsSound();
        json["lines"] = list.lines;
        json["findings"] = Json::array();
        for (lists::Finding const &finding : list.findings) {
            Json item = Json::object();
            item["line"] = finding.line;
            item["error"] = finding.isError;
            PutText(item, "message", finding.message);
            json["findings"].push_back(std::move(item));
        }
        answer.push_back(std::move(json));
    }
    return answer;
}

void PrintListDifference(Screen &screen, ComparedList const &list) {
    auto first = list.difference.onlyInFirst.begin();
    auto second = list.difference.onlyInSecond.begin();
    auto const firstEnd = list.difference.onlyInFirst.end();
    auto const secondEnd = list.difference.onlyInSecond.end();
    while (first != firstEnd || second != secondEnd) {
        bool const isFirst =
            second == secondEnd || (first != firstEnd && lists::EntryBefore(*first, *second));
        std::string const &entry = isFirst ? *first++ : *second++;
        screen.Line(screen.Painted((isFirst ? '-' : '+') + screen.Safe(entry),
                                   isFirst ? Colour::bad : Colour::good));
    }
}

Json JsonOfListDifferences(std::vector<ComparedList> const &lists) {
    Json answer = Json::array();
    for (ComparedList const &list : lists) {
        Json json = Json::object();
        PutList(json, list.kind, list.id);
        json["onlyInFirst"] = JsonOfEntries(list.difference.onlyInFirst);
        json["onlyInSecond"] = JsonOfEntries(list.difference.onlyInSecond);
        answer.push_back(std::move(json));
    }
    return answer;
}

} // namespace qvlink

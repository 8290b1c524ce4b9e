// Lists checked against their form, and against one another.
#include "commands/commands.h"
#include "commands/json_answer.h"
#include "commands/list_sources.h"
#include "commands/session.h"
#include "output/lists.h"

#include <algorithm>
#include <iostream>
#include <nlohmann/json.hpp>

namespace qvlink {
namespace {

constexpr const char NoList[] = "it is neither a list of files nor one of keys: the first line "
                                "begins with neither % nor HK";

std::size_t CountLines(std::string const &text) {
    auto const ends = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
    return ends + (!text.empty() && text.back() != '\n' ? 1 : 0);
}

CheckedList Checked(ListSource const &source) {
    CheckedList checked{source.name, source.kind, source.id, CountLines(source.text), {}};
    if (!source.damage.empty()) {
        checked.findings.push_back({1, true, source.damage});
    } else if (!source.kind) {
        checked.findings.push_back({1, true, NoList});
    } else {
        checked.findings = lists::Check(source.text, *source.kind);
    }
    return checked;
}

ComparedList Compared(ListSource const &first, ListSource const &second) {
    for (ListSource const *const source : {&first, &second}) {
        if (!source->damage.empty()) {
            throw CommandError(source->name + " is damaged: " + source->damage);
        }
        if (!source->kind) {
            throw CommandError(source->name + ": " + NoList);
        }
    }
    if (first.kind != second.kind) {
        throw CommandError("one is a list of files, and the other one of keys");
    }
    return {first.kind, first.id == second.id ? first.id : std::nullopt,
            lists::Compare(first.text, second.text)};
}

// Those that both libraries have. Tells of those that only one has.
std::vector<ComparedList> CompareLibraries(Request const &request, ListFile const &a,
                                           ListFile const &b) {
    std::vector<ListSource> const first = a.Lists(std::nullopt);
    std::vector<ListSource> second = b.Lists(std::nullopt);
    std::vector<ComparedList> compared;
    std::vector<std::string> alone;
    for (ListSource const &list : first) {
        auto const same = std::find_if(second.begin(), second.end(), [&](ListSource const &other) {
            return other.id == list.id && other.kind == list.kind;
        });
        if (same == second.end()) {
            alone.push_back(list.name);
            continue;
        }
        compared.push_back(Compared(list, *same));
        second.erase(same);
    }
    for (ListSource const &list : second) {
        alone.push_back(list.name);
    }
    if (compared.empty()) {
        throw CommandError("the libraries have no list in common");
    }
    for (std::string const &name : alone) {
        Tell(request, name + " has nothing to be compared with");
    }
    return compared;
}

std::vector<ComparedList> Compare(Request const &request) {
    ListFile const first(request.paths[0]);
    ListFile const second(request.paths[1]);
    bool const areLibraries =
        first.Is() == ListFile::Form::library && second.Is() == ListFile::Form::library;
    if (areLibraries && !request.id) {
        return CompareLibraries(request, first, second);
    }
    return {Compared(first.TheList(request.id), second.TheList(request.id))};
}

Json JsonOfComparison(Request const &request, std::vector<ComparedList> const &compared) {
    Json fields = Json::object();
    PutText(fields, "first", request.paths[0]);
    PutText(fields, "second", request.paths[1]);
    fields["lists"] = JsonOfListDifferences(compared);
    return fields;
}

} // namespace

int RunListsCheck(Request const &request) {
    std::vector<CheckedList> checked;
    std::string failures;
    for (std::string const &path : request.paths) {
        try {
            for (ListSource const &source : ListFile(path).Lists(request.id)) {
                checked.push_back(Checked(source));
            }
        } catch (CommandError const &error) {
            failures += (failures.empty() ? "" : "\n") + std::string(error.what());
        }
    }
    if (request.json) {
        std::cout << Dump(JsonAnswer(request, {{"lists", JsonOfListChecks(checked)}}), true);
    } else {
        Screen screen = ScreenOf(std::cout, false);
        for (CheckedList const &list : checked) {
            PrintListCheck(screen, list, request.verbose);
        }
    }
    if (!failures.empty()) {
        throw CommandError(failures);
    }
    bool const areSound = std::all_of(checked.begin(), checked.end(),
                                      [](CheckedList const &list) { return list.IsSound(); });
    return areSound ? ExitAnswered : ExitNothing;
}

int RunListsDiff(Request const &request) {
    std::vector<ComparedList> const compared = Compare(request);
    if (request.json) {
        std::cout << Dump(JsonAnswer(request, JsonOfComparison(request, compared)), true);
    } else {
        Screen screen = ScreenOf(std::cout, false);
        for (ComparedList const &list : compared) {
            if (compared.size() > 1 && !list.IsAlike()) {
                screen.Line(screen.Painted(ListName(*list.kind, *list.id), Colour::strong));
            }
            PrintListDifference(screen, list);
        }
    }
    bool const areAlike = std::all_of(compared.begin(), compared.end(),
                                      [](ComparedList const &list) { return list.IsAlike(); });
    return areAlike ? ExitAnswered : ExitNothing;
}

} // namespace qvlink

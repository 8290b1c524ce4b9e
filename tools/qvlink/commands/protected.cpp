#include "commands/commands.h"

#include "answer/protection.h"
#include "commands/json_answer.h"
#include "commands/session.h"
#include "output/protection.h"

#include <algorithm>
#include <iostream>
#include <nlohmann/json.hpp>

namespace qvlink {
namespace {

class Asker {
public:
    explicit Asker(OwnList const &list) : m_list(list) {}

    PathProtection Ask(std::string const &shown, std::string const &path) {
        PathProtection answer;
        answer.shown = shown;
        answer.path = path;
        std::optional<bool> const isProtected = m_protection.Of(path);
        if (!isProtected) {
            answer.error = "it is " + std::to_string(path.size()) +
                           " characters long in the database's form, and the library takes 259";
            return answer;
        }
        answer.isProtected = *isProtected;
        std::string const *const line = m_list.files.LineOf(path);
        answer.line = line ? *line : "";
        answer.below = m_list.files.CountBelow(path);
        return answer;
    }

    // A path of the host, or the one that it leads to through links.
    PathProtection AskHost(std::string const &text) {
        PathProtection const direct = AskPlace(text, PlaceOfHostPath(text));
        if (direct.isProtected || !direct.line.empty() || direct.below > 0) {
            return direct;
        }
        std::optional<std::string> const real = PathThroughLinks(text);
        std::optional<Place> const place = real ? PlaceOfHostPath(*real) : std::nullopt;
        return place && DatabasePath(*place) != direct.path ? AskPlace(text, place) : direct;
    }

private:
    PathProtection AskPlace(std::string const &text, std::optional<Place> const &place) {
        PathProtection refused;
        refused.shown = text;
        if (!place) {
            refused.error = "it lies on no drive";
            return refused;
        }
        for (std::string const &name : place->names) {
            if (name.find('\\') != std::string::npos) {
                refused.error = "a name in it holds a backslash";
                return refused;
            }
        }
        return Ask(HostPath(*place), DatabasePath(*place));
    }

    OwnList const &m_list;
    Protection m_protection;
};

// What keeps the library from knowing its own list.
std::string WhyLost(OwnList const &list, std::vector<PathProtection> const &paths) {
    if (std::none_of(paths.begin(), paths.end(),
                     [](PathProtection const &path) { return path.IsLost(); })) {
        return "";
    }
    return "the library doesn't know what is in its list\n" + std::string(DecompressorFile) +
           " is missing or unusable beside " + list.library;
}

void TellOfList(Request const &request, OwnList const &list,
                std::vector<PathProtection> const &paths) {
    if (!list.family) {
        Tell(request, "there is no list for this system's family, and nothing is protected");
    } else if (!list.problem.empty()) {
        Tell(request, "cannot read list " + std::to_string(list.family->files) + " of " +
                          list.library + ": " + list.problem);
    }
    std::string const lost = WhyLost(list, paths);
    if (!lost.empty()) {
        Tell(request, lost);
    }
}

// Throws CommandError if there is a path that couldn't be asked about.
int ExitCodeOf(std::vector<PathProtection> const &paths) {
    std::string errors;
    bool isAnyProtected = false;
    for (PathProtection const &path : paths) {
        isAnyProtected |= path.isProtected;
        if (!path.error.empty()) {
            errors += (errors.empty() ? "" : "\n") + path.shown + ": " + path.error;
        }
    }
    if (!errors.empty()) {
        throw CommandError(errors);
    }
    return isAnyProtected ? ExitAnswered : ExitNothing;
}

} // namespace

int RunProtected(Request const &request) {
    OwnList const list = ReadOwnList();
    Asker asker(list);
    std::vector<PathProtection> answers;
    for (std::string const &path : request.paths) {
        answers.push_back(request.databasePaths ? asker.Ask(path, path) : asker.AskHost(path));
    }
    if (request.json) {
        std::cout << Dump(JsonAnswer(request, JsonOfProtection(list, answers)), true);
    } else {
        Screen screen = ScreenOf(std::cout, false);
        PrintProtection(screen, list, answers, request.verbose);
    }
    TellOfList(request, list, answers);
    return ExitCodeOf(answers);
}

} // namespace qvlink

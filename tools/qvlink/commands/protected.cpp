#include "commands/commands.h"

#include "answer/key_question.h"
#include "answer/protection.h"
#include "commands/json_answer.h"
#include "commands/session.h"
#include "output/protection.h"

#include <algorithm>
#include <iostream>
#include <nlohmann/json.hpp>

namespace qvlink {
namespace {

constexpr std::size_t LongestName = 250;

class Asker {
public:
    explicit Asker(bool databasePaths) : m_databasePaths(databasePaths) {}

    PathProtection Ask(std::string const &text) {
        if (std::optional<Place> const key = ParseKeyPath(text)) {
            return AskKey(*key);
        }
        Lists(false);
        return m_databasePaths ? AskFile(text, text) : AskHost(text);
    }

    // Those that the paths asked for.
    OwnLists const &Lists() const { return m_lists; }

private:
    // The list of keys or files, read when the first path asks for it.
    OwnList const &Lists(bool isKey) {
        std::optional<OwnList> &list = isKey ? m_lists.keys : m_lists.files;
        if (!list) {
            list = ReadOwnList(isKey ? lists::Kind::keys : lists::Kind::files);
        }
        return *list;
    }

    PathProtection AskKey(Place const &key) {
        OwnList const &list = Lists(true);
        PathProtection answer;
        answer.isKey = true;
        answer.shown = answer.path = DatabasePath(key);
        for (std::string const &name : key.names) {
            if (name.size() > LongestName) {
                answer.error = "a name in it is longer than 250 characters";
                return answer;
            }
        }
        Fill(answer, list, m_protection.Of(answer.path, [&] {
            if (!m_keys) {
                m_keys.emplace(list.library);
            }
            return (*m_keys)(key);
        }));
        return answer;
    }

    PathProtection AskFile(std::string const &shown, std::string const &path) {
        PathProtection answer;
        answer.shown = shown;
        answer.path = path;
        Fill(answer, *m_lists.files, m_protection.Of(path));
        return answer;
    }

    static void Fill(PathProtection &answer, OwnList const &list, std::optional<bool> isProtected) {
        if (!isProtected) {
            answer.error = "it is " + std::to_string(answer.path.size()) +
                           " characters long in the database's form, and the library takes 259";
            return;
        }
        answer.isProtected = *isProtected;
        std::string const *const line = list.files.LineOf(answer.path);
        answer.line = line ? *line : "";
        answer.below = list.files.CountBelow(answer.path);
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
        return AskFile(HostPath(*place), DatabasePath(*place));
    }

    bool m_databasePaths;
    OwnLists m_lists;
    Protection m_protection;
    std::optional<KeyQuestion> m_keys;
};

// Tells why a list can't answer, or what keeps the library from knowing its own.
void TellOfList(Request const &request, OwnList const &list, bool isLost) {
    if (!list.family) {
        Tell(request, "there is no list for this system's family, and nothing is protected");
    } else if (!list.problem.empty()) {
        Tell(request, "cannot read list " + std::to_string(list.Id()) + " of " + list.library +
                          ": " + list.problem);
    }
    if (isLost) {
        Tell(request, "the library doesn't know what is in its list\n" +
                          std::string(DecompressorFile) + " is missing or unusable beside " +
                          list.library);
    }
}

void TellOfLists(Request const &request, OwnLists const &lists,
                 std::vector<PathProtection> const &paths) {
    for (bool const isKey : {false, true}) {
        std::optional<OwnList> const &list = isKey ? lists.keys : lists.files;
        bool const isLost =
            std::any_of(paths.begin(), paths.end(), [&](PathProtection const &path) {
                return path.isKey == isKey && path.IsLost();
            });
        if (list) {
            TellOfList(request, *list, isLost);
        }
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
    Asker asker(request.databasePaths);
    std::vector<PathProtection> answers;
    for (std::string const &path : request.paths) {
        answers.push_back(asker.Ask(path));
    }
    if (request.json) {
        std::cout << Dump(JsonAnswer(request, JsonOfProtection(asker.Lists(), answers)), true);
    } else {
        Screen screen = ScreenOf(std::cout, false);
        PrintProtection(screen, asker.Lists(), answers, request.verbose);
    }
    TellOfLists(request, asker.Lists(), answers);
    return ExitCodeOf(answers);
}

} // namespace qvlink

#include "commands/commands.h"

#include "answer/needs.h"
#include "answer/protection.h"
#include "commands/session.h"
#include "model.h"
#include "output/json.h"
#include "output/text.h"

#include <algorithm>
#include <functional>
#include <nlohmann/json.hpp>

namespace qvlink {
namespace {

// All but run paths, whose names are lists of folders.
constexpr std::uint32_t UsualTypes = OBJ_NAMED_MASK;

bool IsOfKind(CQVUObject &object, std::string const &type) {
    return type.empty() || type == KindWord(object) || TypeMaskOf(type) == TypeOf(object);
}

std::uint32_t MaskFor(std::string const &type) {
    if (type.empty()) {
        return UsualTypes;
    }
    std::uint32_t const mask = TypeMaskOf(type);
    return mask ? mask : OBJ_FILE;
}

bool IsProtected(CQVUDatabase &database, CQVUObject &object, Protection &protection) {
    std::optional<Place> const place = PlaceOf(database, object);
    if (!place) {
        return false;
    }
    std::string const path = DatabasePath(*place);
    // For a file the plain question is the same, and much the cheaper one.
    auto const ask = [&] { return object.IsProtected() != 0; };
    return (IsKeyPlace(*place) ? protection.Of(path, ask) : protection.Of(path)).value_or(false);
}

std::vector<CQVUObject *> FindWanted(CommandSession &session) {
    Request const &request = session.Asked();
    Protection protection;
    std::vector<CQVUObject *> found =
        FindObjects(session.Database(), request.pattern, MaskFor(request.type));
    auto const isUnwanted = [&](CQVUObject *object) {
        return !IsOfKind(*object, request.type) ||
               (request.onlyProtected && !IsProtected(session.Database(), *object, protection));
    };
    found.erase(std::remove_if(found.begin(), found.end(), isUnwanted), found.end());
    return found;
}

std::string WhyNone(Request const &request) {
    return (request.onlyProtected ? "nothing protected is named " : "nothing is named ") +
           request.pattern + (request.type.empty() ? "" : " and of type " + request.type);
}

} // namespace

int RunFind(Request const &request) {
    if (request.pattern.size() >= sizeof(DBObjectSearch::szPattern)) {
        throw CommandError("the pattern is longer than 99 characters\nShorten it with *.");
    }
    // Names in the registry may hold slashes.
    bool const isForFiles = !(TypeMaskOf(request.type) & (OBJ_HIVE | OBJ_KEY | OBJ_VALUE));
    if (request.pattern.find_first_of(isForFiles ? "/\\" : "\\") != std::string::npos) {
        throw CommandError("the pattern holds a slash, and patterns are for names, not paths\nUse "
                           "`qvlink show PATH` for a path.");
    }
    CommandSession session(request);
    std::vector<CQVUObject *> found = FindWanted(session);
    PathOrder order(session.Database());
    std::sort(found.begin(), found.end(), std::ref(order));
    if (request.json) {
        Json fields = Json::object();
        PutText(fields, "pattern", request.pattern);
        fields["objects"] = JsonOfObjects(session.Names(), found);
        session.WriteJson(fields);
        return found.empty() ? ExitNothing : ExitAnswered;
    }
    if (found.empty()) {
        throw NothingFound(WhyNone(request));
    }
    PrintObjects(session.Out(), session.Names(), found, request.verbose);
    return ExitAnswered;
}

} // namespace qvlink

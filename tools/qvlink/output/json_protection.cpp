#include "output/protection.h"

#include <nlohmann/json.hpp>

namespace qvlink {
namespace {

Json JsonOfPath(PathProtection const &path) {
    Json json = Json::object();
    PutText(json, "path", path.shown);
    if (!path.path.empty()) {
        PutText(json, "databasePath", path.path);
    }
    if (!path.error.empty()) {
        PutText(json, "error", path.error);
        return json;
    }
    json["protected"] = path.isProtected;
    if (!path.line.empty()) {
        PutText(json, "line", path.line);
    }
    json["protectedBelow"] = path.below;
    return json;
}

void PutList(Json &json, OwnList const &list) {
    bool const isFiles = list.kind == lists::Kind::files;
    if (list.family) {
        json[isFiles ? "list" : "keyList"] = {{"type", isFiles ? "WIN_FILES" : "WIN_REGS"},
                                              {"id", list.Id()},
                                              {"family", list.family->name},
                                              {"ostype", static_cast<int>(list.family->family)}};
    }
    if (!list.problem.empty()) {
        PutText(json, isFiles ? "problem" : "keyProblem", list.problem);
    }
}

} // namespace

Json JsonOfProtection(OwnLists const &lists, std::vector<PathProtection> const &paths) {
    Json json = Json::object();
    PutText(json, "library", (lists.files ? lists.files : lists.keys)->library);
    for (auto const *const list : {&lists.files, &lists.keys}) {
        if (*list) {
            PutList(json, **list);
        }
    }
    json["paths"] = Json::array();
    for (PathProtection const &path : paths) {
        json["paths"].push_back(JsonOfPath(path));
    }
    return json;
}

} // namespace qvlink

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

} // namespace

Json JsonOfProtection(OwnList const &list, std::vector<PathProtection> const &paths) {
    Json json = Json::object();
    PutText(json, "library", list.library);
    if (list.family) {
        json["list"] = {{"type", "WIN_FILES"},
                        {"id", list.family->files},
                        {"family", list.family->name},
                        {"ostype", static_cast<int>(list.family->family)}};
    }
    if (!list.problem.empty()) {
        PutText(json, "problem", list.problem);
    }
    json["paths"] = Json::array();
    for (PathProtection const &path : paths) {
        json["paths"].push_back(JsonOfPath(path));
    }
    return json;
}

} // namespace qvlink

#include "output/registration.h"

#include <nlohmann/json.hpp>

namespace qvlink {
namespace {

std::string Counted(std::size_t count, const char *one) {
    return ReadableCount(count) + ' ' + one + (count == 1 ? "" : "s");
}

Json JsonOfImport(ImportedFile const &file) {
    Json json = Json::object();
    PutText(json, "file", file.file);
    if (!file.Failure().empty()) {
        PutText(json, "error", file.Failure());
        return json;
    }
    Imported const &result = file.result;
    json["form"] = FormWord(result.form);
    if (!result.root.empty()) {
        json["root"] = result.root;
    }
    json["keys"] = result.keys;
    json["values"] = result.values;
    json["removedKeys"] = result.removedKeys;
    json["removedValues"] = result.removedValues;
    json["links"] = result.links;
    json["faults"] = Json::array();
    for (ImportFault const &fault : result.faults) {
        Json item = Json::object();
        item["line"] = fault.line;
        item["refused"] = fault.isRefusal;
        item["message"] = fault.message;
        json["faults"].push_back(std::move(item));
    }
    return json;
}

} // namespace

const char *FormWord(RegistrationForm form) {
    switch (form) {
    case RegistrationForm::ansi:
        return "4";
    case RegistrationForm::unicode:
        return "5";
    case RegistrationForm::prefix:
        return "wine";
    case RegistrationForm::none:
        break;
    }
    return "none";
}

std::string CountsOf(std::size_t keys, std::size_t values) {
    return Counted(keys, "key") + ", " + Counted(values, "value");
}

void PrintImport(Screen &screen, ImportedFile const &file) {
    Imported const &result = file.result;
    std::string line = screen.Safe(file.file) + ": " + CountsOf(result.keys, result.values);
    if (result.removedKeys + result.removedValues > 0) {
        line += "; removed: " + CountsOf(result.removedKeys, result.removedValues);
    }
    if (result.links > 0) {
        line += "; " + Counted(result.links, "link") + " copied";
    }
    screen.Line(line);
}

Json JsonOfImports(std::vector<ImportedFile> const &files) {
    Json list = Json::array();
    for (ImportedFile const &file : files) {
        list.push_back(JsonOfImport(file));
    }
    return list;
}

} // namespace qvlink

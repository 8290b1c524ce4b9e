#include "output/json.h"

#include "answer/value_data.h"
#include "model.h"
#include "output/time.h"
#include "output/utf8.h"
#include "platform/host.h"

#include <nlohmann/json.hpp>

namespace qvlink {
namespace {

std::string Hexadecimal(std::string_view bytes) {
    static const char digits[] = "0123456789abcdef";
    std::string text;
    for (char const c : bytes) {
        auto const byte = static_cast<unsigned char>(c);
        text += digits[byte >> 4];
        text += digits[byte & 15];
    }
    return text;
}

Json WordsOf(std::uint32_t bits, std::vector<std::pair<std::uint32_t, const char *>> const &words) {
    Json list = Json::array();
    for (auto const &[bit, word] : words) {
        if (bits & bit) {
            list.push_back(word);
        }
    }
    return list;
}

void PutProgram(Json &json, std::uint32_t flags) {
    Json &program = json["program"];
    program["format"] = flags & FLAG_ELF ? "elf" : "pe";
    program["machine"] = (flags & FLAG_MACHINE_MASK) >> FLAG_MACHINE_SHIFT;
    program["traits"] = WordsOf(flags, {{FLAG_64BIT, "64-bit"},
                                        {FLAG_BIG_ENDIAN, "big-endian"},
                                        {FLAG_LIBRARY, "library"},
                                        {FLAG_NODEFLIB, "no-default-folders"},
                                        {FLAG_MALFORMED, "malformed"},
                                        {FLAG_UNREADABLE, "unreadable"}});
}

void PutFileData(Json &json, FileData const &data) {
    json["size"] = (std::uint64_t{data.dwSizeHigh} << 32) | data.dwSizeLow;
    json["modified"] = TimeText((std::uint64_t{data.dwTimeHigh} << 32) | data.dwTimeLow);
    json["attributes"] = WordsOf(data.dwAttributes, {{ATTRIBUTE_READONLY, "read-only"},
                                                     {ATTRIBUTE_DIRECTORY, "directory"},
                                                     {ATTRIBUTE_DEVICE, "device"},
                                                     {ATTRIBUTE_NORMAL, "normal"},
                                                     {ATTRIBUTE_REPARSE_POINT, "symlink"}});
    json["attributeBits"] = data.dwAttributes;
}

void PutValue(Json &json, ValueData const &value) {
    Json &put = json["value"];
    put["type"] = value.type;
    if (std::optional<std::string> const word = ValueTypeWord(value.type)) {
        put["typeName"] = *word;
    }
    put["size"] = value.size;
    std::vector<std::string> const texts = TextsOf(value.type, value.data);
    if (!texts.empty()) {
        put["texts"] = texts;
    }
    if (std::optional<std::uint64_t> const number = NumberOf(value.type, value.data)) {
        put["number"] = *number;
    }
    put["data"] = Hexadecimal(value.data);
}

void PutNeed(Json &json, Names const &names, Need const &need) {
    PutText(json, "name", NameOf(*need.asked));
    json["link"] = LinkWord(need.linkType);
    json["rule"] = RuleWord(need.rule);
    if (need.found) {
        json["object"] = JsonOfObject(names, *need.found);
        PutText(json, "folder", names.FolderPathOf(*need.found));
    }
}

Json JsonOfDependency(Names const &names, Dependency const &dependency) {
    Json json = Json::object();
    PutNeed(json, names, dependency.need);
    json["neededBy"] = JsonOfObject(names, *dependency.requester);
    return json;
}

const char *ProblemWord(ScanProblem problem) {
    switch (problem) {
    case ScanProblem::unreadable:
        return "unreadable";
    case ScanProblem::malformed:
        return "malformed";
    case ScanProblem::unrepresentable:
        break;
    }
    return "unrepresentable";
}

} // namespace

void PutText(Json &object, const char *key, std::string_view text) {
    std::string const utf8 = ToUtf8(text);
    bool const isWhole = IsUtf8(utf8);
    object[key] = isWhole ? utf8 : ReplaceNonUtf8(utf8);
    if (!isWhole) {
        object[std::string(key) + "Bytes"] = Hexadecimal(text);
    }
}

Json JsonOfObject(Names const &names, CQVUObject &object) {
    Json json = Json::object();
    json["id"] = object.dwID;
    json["type"] = TypeWord(TypeOf(object));
    json["kind"] = KindWord(object);
    PutText(json, "name", NameOf(object));
    if (std::optional<std::string> const path = names.PathOf(object)) {
        PutText(json, "path", *path);
    }
    return json;
}

Json JsonOfWholeObject(Names const &names, CQVUObject &object) {
    Json json = JsonOfObject(names, object);
    std::optional<Place> const place = PlaceOf(names.Database(), object);
    if (place) {
        PutText(json, "databasePath", DatabasePath(*place));
    }
    json["persistent"] = (object.dwType & PERSISTENT_BIT) != 0;
    json["typeBits"] = TypeOf(object);
    json["flags"] = object.dwFlags;
    json["dataSize"] = object.dwDataSize;
    std::optional<FileData> const data = FileDataOf(object);
    if (TypeOf(object) == OBJ_FILE && data) {
        PutFileData(json, *data);
    }
    if (TypeOf(object) == OBJ_FILE && (object.dwFlags & FLAG_PROGRAM_MASK)) {
        PutProgram(json, object.dwFlags);
    }
    if (TypeOf(object) == OBJ_RUNPATH && object.pData) {
        PutText(json, "text", {reinterpret_cast<const char *>(object.pData), object.dwDataSize});
    }
    if (std::optional<ValueData> const value = ValueDataOf(object)) {
        PutValue(json, *value);
    }
    return json;
}

Json JsonOfLink(CQVULink const &link) {
    Json json = Json::object();
    json["id"] = link.dwID;
    json["type"] = LinkWord(TypeOf(link));
    json["typeBits"] = TypeOf(link);
    json["from"] = link.dwSource;
    json["to"] = link.dwTarget;
    json["persistent"] = (link.dwType & PERSISTENT_BIT) != 0;
    return json;
}

Json JsonOfDependencies(Names const &names, std::vector<Dependency> const &dependencies) {
    Json list = Json::array();
    for (Dependency const &dependency : dependencies) {
        list.push_back(JsonOfDependency(names, dependency));
    }
    return list;
}

Json JsonOfTree(Names const &names, std::vector<TreeLine> const &lines) {
    Json list = Json::array();
    for (TreeLine const &line : lines) {
        Json json = JsonOfDependency(names, line.dependency);
        json["depth"] = line.depth;
        json["repeated"] = line.isRepeated;
        list.push_back(std::move(json));
    }
    return list;
}

Json JsonOfReferrers(Names const &names, std::vector<Referrer> const &referrers) {
    Json list = Json::array();
    for (Referrer const &referrer : referrers) {
        Json json = Json::object();
        json["object"] = JsonOfObject(names, *referrer.object);
        json["needs"] = Json::object();
        PutNeed(json["needs"], names, referrer.need);
        list.push_back(std::move(json));
    }
    return list;
}

Json JsonOfObjects(Names const &names, std::vector<CQVUObject *> const &objects) {
    Json list = Json::array();
    for (CQVUObject *const object : objects) {
        list.push_back(JsonOfObject(names, *object));
    }
    return list;
}

Json JsonOfLinks(Names const &names, std::vector<Edge> const &edges) {
    Json list = Json::array();
    for (Edge const &edge : edges) {
        Json json = JsonOfLink(*edge.link);
        json["object"] = JsonOfObject(names, *edge.other);
        list.push_back(std::move(json));
    }
    return list;
}

Json JsonOfMissing(Names const &names, std::vector<MissingName> const &missing) {
    Json list = Json::array();
    for (MissingName const &name : missing) {
        Json json = Json::object();
        PutText(json, "name", NameOf(*name.name));
        json["delayed"] = name.isDelayed;
        json["askedBy"] = JsonOfObjects(names, name.askers);
        json["elsewhere"] = JsonOfObjects(names, name.elsewhere);
        list.push_back(std::move(json));
    }
    return list;
}

Json JsonOfStatistics(Names const &names, Statistics const &statistics) {
    Json json = Json::object();
    json["objects"] = Json::object();
    for (auto const &[type, count] : statistics.objects) {
        json["objects"][TypeWord(type)] = count;
    }
    json["links"] = Json::object();
    for (auto const &[type, count] : statistics.links) {
        json["links"][LinkWord(type)] = count;
    }
    json["folders"] = statistics.folders;
    json["symlinks"] = statistics.symlinks;
    json["elf"] = statistics.elf;
    json["pe"] = statistics.pe;
    json["bytes"] = statistics.bytes;
    json["mostNeeded"] = Json::array();
    for (NeededFile const &file : statistics.mostNeeded) {
        Json needed = Json::object();
        needed["askers"] = file.askers;
        needed["object"] = JsonOfObject(names, *file.file);
        json["mostNeeded"].push_back(std::move(needed));
    }
    return json;
}

Json JsonOfCheck(FileCheck const &check) {
    auto const list = [](std::vector<Finding> const &findings) {
        Json array = Json::array();
        for (Finding const &finding : findings) {
            array.push_back(
                {{"check", finding.check}, {"text", ReplaceNonUtf8(ToUtf8(finding.text))}});
        }
        return array;
    };
    Json json = Json::object();
    json["sound"] = check.problems.empty();
    json["bytes"] = check.bytes;
    json["objects"] = check.objects;
    json["links"] = check.links;
    json["dropped"] = {{"objects", check.droppedObjects}, {"links", check.droppedLinks}};
    json["problems"] = list(check.problems);
    json["notes"] = list(check.notes);
    return json;
}

Json JsonOfScan(ScanSummary const &summary, std::vector<ReportedProblem> const &problems) {
    Json json = {{"folders", summary.folders},
                 {"files", summary.files},
                 {"symlinks", summary.symlinks},
                 {"specials", summary.specials},
                 {"elf", summary.elf},
                 {"pe", summary.pe},
                 {"located", summary.located},
                 {"needs", summary.needs},
                 {"missing", summary.missing},
                 {"keys", summary.keys},
                 {"values", summary.values},
                 {"references", summary.references},
                 {"added", summary.added},
                 {"changed", summary.changed},
                 {"unchanged", summary.unchanged},
                 {"removed", summary.removed},
                 {"read", summary.read},
                 {"unreadable", summary.unreadable},
                 {"malformed", summary.malformed},
                 {"unrepresentable", summary.unrepresentable},
                 {"objects", summary.objects},
                 {"links", summary.links},
                 {"saved", summary.saved},
                 {"seconds", summary.seconds}};
    json["problems"] = Json::array();
    for (ReportedProblem const &problem : problems) {
        Json item = Json::object();
        item["problem"] = ProblemWord(problem.problem);
        PutText(item, "path", problem.path);
        PutText(item, "why", problem.why);
        json["problems"].push_back(std::move(item));
    }
    return json;
}

std::string Dump(Json const &json, bool indented) { return json.dump(indented ? 2 : -1) + '\n'; }

} // namespace qvlink

#include "scan/named_files.h"

#include <algorithm>
#include <utility>

#include "answer/graph.h"
#include "answer/value_data.h"
#include "model.h"

namespace qvlink {
namespace {

constexpr std::size_t LONGEST_TEXT = 4000; // what is longer names no file
constexpr std::size_t LONGEST_PATH = 999;
constexpr int DEEPEST_VARIABLE = 4; // variables in variables

// Where the registry tells what a variable stands for.
struct Source {
    const char *key;
    const char *value;
    const char *variable;
};

constexpr const char *VERSION_KEY = "HKLM\\Software\\Microsoft\\Windows\\CurrentVersion";
constexpr const char *PROFILES_KEY =
    "HKLM\\Software\\Microsoft\\Windows NT\\CurrentVersion\\ProfileList";
constexpr const char *ENVIRONMENT_KEY =
    "HKLM\\System\\CurrentControlSet\\Control\\Session Manager\\Environment";

constexpr Source SOURCES[] = {
    {VERSION_KEY, "ProgramFilesDir", "programfiles"},
    {VERSION_KEY, "ProgramFilesDir (x86)", "programfiles(x86)"},
    {VERSION_KEY, "ProgramW6432Dir", "programw6432"},
    {VERSION_KEY, "CommonFilesDir", "commonprogramfiles"},
    {VERSION_KEY, "CommonFilesDir (x86)", "commonprogramfiles(x86)"},
    {VERSION_KEY, "CommonW6432Dir", "commonprogramw6432"},
    {PROFILES_KEY, "ProgramData", "programdata"},
    {PROFILES_KEY, "ProgramData", "allusersprofile"},
    {PROFILES_KEY, "Public", "public"},
};

bool StartsWith(std::string_view text, std::string_view start) {
    return EqualNames(text.substr(0, start.size()), start);
}

std::string_view Trim(std::string_view text) {
    auto const isBlank = [](char c) { return c == ' ' || c == '\t'; };
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

bool IsOnDrive(std::string_view text) {
    return text.size() > 3 && text[1] == ':' && (text[2] == '\\' || text[2] == '/');
}

} // namespace

Variables ReadVariables(Registry &registry, SystemDirectories const &folders) {
    Variables variables{{"systemroot", ToUtf8(folders.windows)},
                        {"windir", ToUtf8(folders.windows)},
                        {"systemdrive", ToUtf8(folders.windows.substr(0, 2))}};
    std::vector<RegistryValue> values;
    std::string key;
    auto const add = [&](std::string variable, RegistryValue const &value) {
        auto texts = TextsOf(value.type, value.data);
        if (texts.size() == 1 && texts[0].size() <= LONGEST_TEXT) {
            variables.try_emplace(std::move(variable), std::move(texts.front()));
        }
    };
    for (Source const &source : SOURCES) {
        if (key != source.key) {
            key = source.key;
            registry.ReadValues(key, values);
        }
        for (RegistryValue const &value : values) {
            if (EqualNames(value.name, source.value)) {
                add(source.variable, value);
            }
        }
    }
    registry.ReadValues(ENVIRONMENT_KEY, values);
    for (RegistryValue const &value : values) {
        add(FoldName(value.name), value);
    }
    return variables;
}

NamedFiles::NamedFiles(CQVUDatabase &database, Variables variables)
    : m_database(database), m_variables(std::move(variables)) {}

std::vector<CQVUObject *> NamedFiles::Of(RegistryValue const &value) {
    std::vector<CQVUObject *> files;
    bool const isDriver = EqualNames(value.name, "ImagePath");
    for (std::string const &text : TextsOf(value.type, value.data)) {
        CQVUObject *const file = text.size() > LONGEST_TEXT ? nullptr : FileOf(text, isDriver);
        if (file && std::find(files.begin(), files.end(), file) == files.end()) {
            files.push_back(file);
        }
    }
    return files;
}

// `isDriver`: the kernel takes the text, from the Windows folder on.
CQVUObject *NamedFiles::FileOf(std::string const &text, bool isDriver) {
    std::string const expanded = Expand(text);
    std::string_view rest = Trim(expanded);
    rest.remove_prefix(!rest.empty() && rest.front() == '@' ? 1 : 0);
    if (!rest.empty() && rest.front() == '"') {
        rest.remove_prefix(1);
        return FileAt(rest.substr(0, rest.find('"')));
    }
    std::string path(rest);
    if (StartsWith(path, "\\??\\") || StartsWith(path, "\\\\?\\")) {
        path.erase(0, 4);
    } else if (StartsWith(path, "\\SystemRoot\\")) {
        path.replace(0, sizeof "\\SystemRoot" - 1, m_variables["systemroot"]);
    } else if (isDriver && StartsWith(path, "system32\\")) {
        path.insert(0, m_variables["systemroot"] + '\\');
    }
    CQVUObject *file = FileAt(path);
    for (std::size_t end = 0; !file && (end = path.find_first_of(" \t,", end)) != std::string::npos;
         ++end) {
        file = FileAt(std::string_view(path).substr(0, end));
    }
    return file;
}

CQVUObject *NamedFiles::FileAt(std::string_view path) {
    bool lossless = true;
    bool const isPath = IsOnDrive(path) && path.size() <= LONGEST_PATH;
    auto const place = isPath ? ParseDatabasePath(FromUtf8(path, lossless)) : std::nullopt;
    CQVUObject *object =
        place && lossless ? m_database.GetObjectByPath(place->drive.c_str()) : nullptr;
    for (std::size_t i = 0; object && i < place->names.size(); ++i) {
        CQVUObject *const folder = FollowLinks(m_database, object);
        object = folder ? ChildOf(*folder, place->names[i]) : nullptr;
    }
    bool const isFile = object && (TypeOf(*object) & (OBJ_FILE | OBJ_PINNED)) && !IsFolder(*object);
    return isFile ? object : nullptr;
}

CQVUObject *NamedFiles::ChildOf(CQVUObject &folder, std::string const &name) {
    auto const [known, isNew] = m_children.try_emplace(folder.dwID);
    if (isNew) {
        for (Edge const &edge : LinksFrom(m_database, folder, LINK_PARENT)) {
            known->second[FoldName(NameOf(*edge.other))].push_back(edge.other);
        }
    }
    auto const alike = known->second.find(FoldName(name));
    if (alike == known->second.end()) {
        return nullptr;
    }
    auto const exact = std::find_if(alike->second.begin(), alike->second.end(),
                                    [&](CQVUObject *child) { return NameOf(*child) == name; });
    return exact == alike->second.end() ? alike->second.front() : *exact;
}

// Variables may stand in variables. A name without one stays as it is, percent signs and all.
std::string NamedFiles::Expand(std::string text) const {
    for (int depth = 0; depth < DEEPEST_VARIABLE && text.find('%') != std::string::npos; ++depth) {
        std::string expanded = ExpandOnce(text);
        if (expanded == text) {
            break;
        }
        text = std::move(expanded);
    }
    return text;
}

std::string NamedFiles::ExpandOnce(std::string_view text) const {
    std::string expanded;
    while (expanded.size() <= LONGEST_TEXT) {
        std::size_t const start = text.find('%');
        std::size_t const end = start == std::string_view::npos ? start : text.find('%', start + 1);
        if (end == std::string_view::npos) {
            return expanded.append(text);
        }
        auto const variable = m_variables.find(FoldName(text.substr(start + 1, end - start - 1)));
        bool const isKnown = variable != m_variables.end();
        expanded += text.substr(0, isKnown ? start : end);
        expanded += isKnown ? variable->second : "";
        text.remove_prefix(isKnown ? end + 1 : end);
    }
    return {};
}

} // namespace qvlink

#include "output/names.h"

#include "model.h"
#include "platform/host.h"

#include <cstdio>

namespace qvlink {
namespace {

bool IsBareName(std::string const &text) {
    return !text.empty() && text.find_first_of("/\\:") == std::string::npos;
}

} // namespace

std::string Names::Write(Place const &place) const {
    return m_databasePaths ? DatabasePath(place) : HostPath(place);
}

std::optional<std::string> Names::PathOf(CQVUObject &object) const {
    std::optional<Place> const place = PlaceOf(m_database, object);
    return place ? std::optional<std::string>(Write(*place)) : std::nullopt;
}

std::string Names::Of(CQVUObject &object) const {
    return PathOf(object).value_or(std::string(NameOf(object)));
}

std::string Names::FolderPathOf(CQVUObject &object) const {
    std::optional<Place> place = PlaceOf(m_database, object);
    if (!place) {
        return "";
    }
    if (!place->names.empty()) {
        place->names.pop_back();
    }
    return Write(*place);
}

CQVUObject *Names::FindPath(std::string const &text) const {
    if (std::optional<Place> const key = ParseKeyPath(text)) {
        return FindAt(m_database, *key);
    }
    std::optional<Place> const place =
        m_databasePaths ? ParseDatabasePath(text) : PlaceOfHostPath(text);
    CQVUObject *const object = place ? FindAt(m_database, *place) : nullptr;
    if (object || m_databasePaths) {
        return object;
    }
    std::optional<std::string> const real = PathThroughLinks(text);
    std::optional<Place> const realPlace = real ? PlaceOfHostPath(*real) : std::nullopt;
    return realPlace ? FindAt(m_database, *realPlace) : nullptr;
}

CQVUObject *Names::Find(std::string const &text) const {
    CQVUObject *const object = FindPath(text);
    if (object || !IsBareName(text)) {
        return object;
    }
    std::string name = text;
    return m_database.LookupVFILE(name.data());
}

std::vector<std::string> Names::Alike(std::string const &text, std::size_t most) const {
    std::string const name = text.substr(text.find_last_of("/\\") + 1);
    std::vector<std::string> alike;
    if (name.empty() || name.size() >= sizeof(DBObjectSearch::szPattern) ||
        name.find_first_of("*?") != std::string::npos) {
        return alike;
    }
    std::uint32_t const types = ParseKeyPath(text) ? OBJ_KEY | OBJ_VALUE : OBJ_FILE | OBJ_PINNED;
    for (CQVUObject *const object : FindObjects(m_database, name, types)) {
        if (alike.size() < most) {
            alike.push_back(Of(*object));
        }
    }
    return alike;
}

const char *TypeWord(std::uint32_t objectType) {
    if (objectType == OBJ_ROOT) {
        return "root";
    }
    for (TypeName const &type : OBJECT_TYPE_NAMES) {
        if (type.bit == objectType) {
            return type.name;
        }
    }
    return "other";
}

std::string LinkWord(std::uint32_t linkType) {
    for (TypeName const &type : LINK_TYPE_NAMES) {
        if (type.bit == linkType) {
            return type.name;
        }
    }
    char text[16];
    std::snprintf(text, sizeof text, "0x%x", linkType);
    return text;
}

const char *KindWord(CQVUObject &object) {
    switch (KindOf(&object)) {
    case FileKind::folder:
        return "folder";
    case FileKind::symlink:
        return "symlink";
    case FileKind::special:
        return "special";
    default:
        return TypeWord(TypeOf(object));
    }
}

const char *RuleWord(Rule rule) {
    switch (rule) {
    case Rule::rpath:
        return "rpath";
    case Rule::runpath:
        return "runpath";
    case Rule::cache:
        return "cache";
    case Rule::defaultFolder:
        return "default-folder";
    case Rule::byPath:
        return "path";
    case Rule::interpreter:
        return "interpreter";
    case Rule::startFolder:
        return "start-folder";
    case Rule::systemFolder:
        return "system-folder";
    case Rule::loaded:
        return "loaded";
    case Rule::symlink:
        return "symlink";
    case Rule::value:
        return "value";
    case Rule::missing:
        return "missing";
    case Rule::linked:
        break;
    }
    return "linked";
}

std::string RuleText(Need const &need) {
    switch (need.rule) {
    case Rule::rpath:
        return "in the run path (DT_RPATH) of the file";
    case Rule::runpath:
        return "in the run path (DT_RUNPATH) of the file";
    case Rule::cache:
        return "in the loader's cache";
    case Rule::defaultFolder:
        return "in a default folder of the loader";
    case Rule::byPath:
        return "asked for by its path";
    case Rule::interpreter:
        return "the loader that the program asks for";
    case Rule::startFolder:
        return "in the folder of the program that starts";
    case Rule::systemFolder:
        return "in a system folder";
    case Rule::loaded:
        return "loaded before, for another file of the program";
    case Rule::symlink:
        return "what the symbolic link names";
    case Rule::value:
        return "named by the registry value";
    case Rule::missing:
        return need.linkType == LINK_MISSING
                   ? "the loader's search found no such library"
                   : "neither in the folder of the program that starts nor in a system folder";
    case Rule::linked:
        break;
    }
    return "linked without a rule";
}

std::uint32_t TypeMaskOf(std::string const &typeWord) {
    for (TypeName const &type : OBJECT_TYPE_NAMES) {
        if (typeWord == type.name) {
            return type.bit;
        }
    }
    return 0;
}

} // namespace qvlink

// Resources of loaded modules: a note tells of each, and where it lies.
#include "platform/posix/errors.h"
#include "platform/posix/notes.h"

namespace platform {
namespace {

// What a note of a resource begins with; the type's text and a terminator follow.
struct ResourceNote {
    std::uint32_t id;
    std::uint32_t size;
    std::int32_t distance; // from this field to the resource's bytes
};

struct Wanted {
    const char *type;
    std::uintptr_t id;
    bool typeSeen;
    ResourceNote const *found;
};

bool Matches(std::string_view note, Wanted &wanted) {
    if (note.size() <= sizeof(ResourceNote))
        return false;
    auto const *const resource = reinterpret_cast<ResourceNote const *>(note.data());
    const char *const type = note.data() + sizeof(ResourceNote);
    if (note.back() != '\0' || win::host::_stricmp(type, wanted.type) != 0)
        return false;
    wanted.typeSeen = true;
    wanted.found = resource->id == wanted.id ? resource : nullptr;
    return wanted.found != nullptr;
}

// A number that is given in the place of a text.
bool IsNumber(const char *name) { return reinterpret_cast<std::uintptr_t>(name) <= 0xffff; }

ResourceNote const &NoteOf(HRSRC resource) {
    return *reinterpret_cast<ResourceNote const *>(resource);
}

} // namespace
} // namespace platform

namespace win::host {

HRSRC FindResourceA(HMODULE module, const char *name, const char *type) {
    bool any = false;
    platform::Wanted wanted{platform::IsNumber(type) ? "" : type,
                            reinterpret_cast<std::uintptr_t>(name), false, nullptr};
    platform::VisitNotes(module, platform::resourceNote, [&](std::string_view note) {
        any = true;
        return platform::Matches(note, wanted);
    });
    if (!wanted.found)
        platform::Fail(!any              ? ERROR_RESOURCE_DATA_NOT_FOUND
                       : wanted.typeSeen ? ERROR_RESOURCE_NAME_NOT_FOUND
                                         : ERROR_RESOURCE_TYPE_NOT_FOUND);
    return reinterpret_cast<HRSRC>(const_cast<platform::ResourceNote *>(wanted.found));
}

DWORD SizeofResource(HMODULE, HRSRC resource) {
    return resource ? platform::NoteOf(resource).size : DWORD{0};
}

HGLOBAL LoadResource(HMODULE, HRSRC resource) {
    if (!resource)
        return nullptr;
    std::int32_t const &field = platform::NoteOf(resource).distance;
    return const_cast<char *>(reinterpret_cast<const char *>(&field) + field);
}

LPVOID LockResource(HGLOBAL resource) { return resource; }

BOOL FreeResource(HGLOBAL) { return FALSE; }

} // namespace win::host

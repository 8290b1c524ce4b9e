#include "list_resource.h"

#include "linkdb_state.h"

#include "platform/winapi.h"

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <memory>

namespace {

constexpr DWORD modulePathRoom = 4096;
constexpr DWORD lengthSize = 4;
constexpr DWORD spareRoom = 10;
// Behind the room that the decompressor has: the text's end, also for half a character.
constexpr DWORD endRoom = 2;

using EtUnCompress = int (*)(const void *input, DWORD inputSize, void *output, DWORD capacity);

struct ResourceFreer {
    void operator()(void *resource) const { win::FreeResource(resource); }
};
using LoadedResource = std::unique_ptr<void, ResourceFreer>;

struct ModuleFreer {
    using pointer = HMODULE;
    void operator()(HMODULE module) const { win::FreeLibrary(module); }
};
using LoadedModule = std::unique_ptr<HMODULE, ModuleFreer>;

struct BufferFreer {
    void operator()(char *buffer) const { std::free(buffer); }
};
using Buffer = std::unique_ptr<char, BufferFreer>;

// What failed isn't to be undone: it would undo what the caller's program did.
class OleSession {
public:
    OleSession() : m_begun(SUCCEEDED(win::OleInitialize(nullptr))) {}
    ~OleSession() {
        if (m_begun)
            win::OleUninitialize();
    }
    OleSession(OleSession const &) = delete;
    OleSession &operator=(OleSession const &) = delete;

private:
    bool m_begun;
};

struct StoredList {
    const unsigned char *text;
    DWORD size;
    DWORD length; // of the text once decompressed
};

bool ReadStoredList(const void *bytes, DWORD size, StoredList &list) {
    auto const *const at = static_cast<const unsigned char *>(bytes);
    if (!at || size < lengthSize)
        return false;
    list.text = at + lengthSize;
    list.size = size - lengthSize;
    list.length = static_cast<DWORD>(at[0] | at[1] << 8 | at[2] << 16) | static_cast<DWORD>(at[3])
                                                                             << 24;
    return list.length <= MaxListText;
}

// Null if this library's path isn't known whole.
LoadedModule LoadDecompressor() {
    constexpr char name[] = "ziplib.dll";
    char own[modulePathRoom];
    char drive[3];
    char folder[modulePathRoom];
    char path[2 * modulePathRoom];
    DWORD const length = win::GetModuleFileNameA(g_hModule, own, sizeof own);
    if (length == 0 || length >= sizeof own ||
        win::_splitpath_s(own, drive, sizeof drive, folder, sizeof folder, nullptr, 0, nullptr,
                          0) != 0)
        return nullptr;
    std::snprintf(path, sizeof path, "%s%s%s", drive, folder, name);
    return LoadedModule(win::LoadLibraryA(path));
}

EtUnCompress FindEntry(HMODULE decompressor) {
    FARPROC const entry =
        decompressor ? win::GetProcAddress(decompressor, "EtUnCompress") : nullptr;
    return reinterpret_cast<EtUnCompress>(reinterpret_cast<void (*)()>(entry));
}

bool IsSpace(char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; }

void HandOut(char *start, char *end, LineCallback callback) {
    while (end > start && IsSpace(end[-1]))
        --end;
    *end = '\0';
    while (start < end && IsSpace(*start))
        ++start;
    callback(start, static_cast<unsigned long>(end - start));
}

char *FindLineFeed(char *text) {
    return reinterpret_cast<char *>(win::_mbschr(reinterpret_cast<unsigned char *>(text), '\n'));
}

// What follows the last line feed isn't a line.
void SplitLines(char *text, LineCallback callback) {
    for (char *end = FindLineFeed(text); end; end = FindLineFeed(text)) {
        HandOut(text, end, callback);
        text = end + 1;
    }
}

} // namespace

void LoadListResource(WORD id, const char *type, LineCallback callback) {
    HRSRC const found = win::FindResourceA(g_hModule, MAKEINTRESOURCEA(id), type);
    if (!found)
        return;
    DWORD const size = win::SizeofResource(g_hModule, found);
    if (size == 0)
        return;
    LoadedResource const resource(win::LoadResource(g_hModule, found));
    StoredList list{};
    if (!resource || !ReadStoredList(win::LockResource(resource.get()), size, list))
        return;
    OleSession const session;
    LoadedModule const decompressor = LoadDecompressor();
    EtUnCompress const unCompress = FindEntry(decompressor.get());
    if (!unCompress)
        return;
    DWORD const room = list.length + spareRoom;
    Buffer const text(static_cast<char *>(std::calloc(room + endRoom, 1)));
    if (text && unCompress(list.text, list.size, text.get(), room) > 0)
        SplitLines(text.get(), callback);
}

#include "protect_load.h"

#include "build_stamp.h"
#include "list_resource.h"

#include "CNTAdminObject.h"
#include "Diag.h"
#include "platform/winapi.h"

#include <cctype>
#include <cstring>

namespace {

constexpr int firstStatic = 101; // the first priority that isn't the compiler's own

constexpr char WINDIR_TAG[] = "%WindowsDir%\\";
constexpr char SYSDIR_TAG[] = "%SystemDir%\\";

template <std::size_t size> constexpr std::size_t LengthOf(const char (&)[size]) {
    return size - 1;
}

// The lists of a family. The numbers don't follow each other: it is the pairs that count.
struct ListPair {
    ostype family;
    WORD files;
    WORD keys;
};
constexpr ListPair lists[] = {{OS_WIN95, 102, 111},   {OS_WIN98, 103, 112}, {OS_WINME, 105, 113},
                              {OS_NT3, 104, 114},     {OS_NT4, 104, 114},   {OS_WIN2000, 101, 110},
                              {OS_NT_LATER, 101, 110}};

// Null for a family without lists.
ListPair const *ListsOf(ostype family) {
    for (ListPair const &pair : lists)
        if (pair.family == family)
            return &pair;
    return nullptr;
}

// A folder with a backslash at its end, and room to write the rest of a path behind it.
class Prefix {
public:
    using Folder = UINT (*)(char *buffer, UINT size);

    void Capture(Folder folder) {
        m_length = folder(m_path, sizeof m_path);
        if (m_length > 0 && m_length < sizeof m_path && m_path[m_length - 1] != '\\')
            m_path[m_length++] = '\\';
        if (m_length >= sizeof m_path)
            m_length = 0; // a folder that no path below fits in
        Cut();
    }

    // The whole path; null if it is too long.
    const char *With(const char *tail) {
        std::size_t const size = std::strlen(tail) + 1;
        if (size > sizeof m_path - m_length)
            return nullptr;
        std::memcpy(m_path + m_length, tail, size);
        return m_path;
    }

    void Cut() { m_path[m_length] = '\0'; }

private:
    char m_path[ProtectPathRoom] = "";
    UINT m_length = 0;
};

Prefix windowsPrefix;
Prefix systemPrefix;
bool dirsCaptured = false;

// The tree that a list is being read into; a list's lines are mostly in order.
ProtectAdder *reading = nullptr;

void Add(ProtectNode &tree, const char *path) {
    if (reading)
        reading->Add(path, 0);
    else
        ProtectAdd(tree, path, 0);
}

class Reading {
public:
    explicit Reading(ProtectNode &tree) : m_adder(tree) { reading = &m_adder; }
    ~Reading() { reading = nullptr; }
    Reading(Reading const &) = delete;
    Reading &operator=(Reading const &) = delete;

private:
    ProtectAdder m_adder;
};

void Report(int line, const char *expression) {
    Diag(1, "protect", "LoadFileListCallback", line, BuildStamp, "%s - %lu", expression,
         static_cast<unsigned long>(win::GetLastError()));
}

} // namespace

void LoadFileListCallback(char *line, unsigned long length) {
    if (win::_memicmp(line, WINDIR_TAG, LengthOf(WINDIR_TAG)) != 0 &&
        win::_memicmp(line, SYSDIR_TAG, LengthOf(SYSDIR_TAG)) != 0)
        Report(155, "memicmp(line, WINDIR_TAG, _countof(WINDIR_TAG) - 1) == 0 || memicmp(line, "
                    "SYSDIR_TAG, _countof(SYSDIR_TAG) - 1) == 0");
    if (*line != '%') {
        Report(159, "0");
        return;
    }
    // One letter decides, also for a line without a tag.
    bool const isWindows = std::toupper(static_cast<unsigned char>(line[1])) == 'W';
    std::size_t const tag = isWindows ? LengthOf(WINDIR_TAG) : LengthOf(SYSDIR_TAG);
    const char *const path =
        length < tag ? nullptr : (isWindows ? windowsPrefix : systemPrefix).With(line + tag);
    if (path)
        Add(ProtectedFileTree, path);
}

void LoadRegListCallback(char *line, unsigned long length) {
    if (length < ProtectPathRoom)
        Add(ProtectedRegTree, line);
}

// The library's entry fills them, so they come first.
__attribute__((init_priority(firstStatic))) ProtectNode ProtectedFileTree;
__attribute__((init_priority(firstStatic))) ProtectNode ProtectedRegTree;

void CaptureSystemDirs() {
    if (dirsCaptured)
        return;
    windowsPrefix.Capture(
        [](char *buffer, UINT size) { return win::GetWindowsDirectoryA(buffer, size); });
    systemPrefix.Capture(
        [](char *buffer, UINT size) { return win::GetSystemDirectoryA(buffer, size); });
    dirsCaptured = true;
}

void LoadProtectedFiles() {
    ListPair const *const pair = ListsOf(g_NTAdminObject.GetOS());
    if (!pair)
        return;
    CaptureSystemDirs();
    Reading const tree(ProtectedFileTree);
    LoadListResource(pair->files, "WIN_FILES", LoadFileListCallback);
    windowsPrefix.Cut();
    systemPrefix.Cut();
}

void LoadProtectedRegs() {
    ListPair const *const pair = ListsOf(g_NTAdminObject.GetOS());
    if (!pair)
        return;
    Reading const tree(ProtectedRegTree);
    LoadListResource(pair->keys, "WIN_REGS", LoadRegListCallback);
}

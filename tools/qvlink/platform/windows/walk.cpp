#include "platform/walk.h"

#include <windows.h>

#include "model.h"
#include "platform/windows/file_handle.h"
#include "platform/windows/text.h"
#include "readers/pe_reader.h"

namespace qvlink {
namespace {

constexpr std::uint64_t SHORTEST_PROGRAM = 4;

struct SearchClose {
    using pointer = HANDLE;
    void operator()(HANDLE search) const { ::FindClose(search); }
};

class FileSource final : public ByteSource {
public:
    explicit FileSource(HANDLE file) : m_file(file) {
        LARGE_INTEGER size;
        m_size = ::GetFileSizeEx(file, &size) ? static_cast<std::uint64_t>(size.QuadPart) : 0;
    }
    std::uint64_t Size() const override { return m_size; }
    bool Read(std::uint64_t offset, void *to, std::size_t size) override {
        if (offset > m_size || size > m_size - offset) {
            return false;
        }
        OVERLAPPED place{};
        place.Offset = static_cast<DWORD>(offset);
        place.OffsetHigh = static_cast<DWORD>(offset >> 32);
        DWORD count = 0;
        return ::ReadFile(m_file, to, static_cast<DWORD>(size), &count, &place) && count == size;
    }

private:
    HANDLE m_file;
    std::uint64_t m_size;
};

Entry Describe(WIN32_FIND_DATAW const &found) {
    constexpr std::uint32_t kept = 0xffff; // the attributes that are stored on a disk
    Entry entry;
    entry.name = FromWide(found.cFileName, entry.lossless);
    entry.data.dwTimeLow = found.ftLastWriteTime.dwLowDateTime;
    entry.data.dwTimeHigh = found.ftLastWriteTime.dwHighDateTime;
    entry.data.dwAttributes = found.dwFileAttributes & kept;
    if (!(found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)) {
        entry.data.dwSizeLow = found.nFileSizeLow;
        entry.data.dwSizeHigh = found.nFileSizeHigh;
    }
    // Placeholders of cloud storage and the like are files, not links.
    bool const link = (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) &&
                      IsReparseTagNameSurrogate(found.dwReserved0);
    if (!link) {
        entry.data.dwAttributes &= ~ATTRIBUTE_REPARSE_POINT;
    }
    return entry;
}

// Takes away the prefix of the form in which the system tells a handle's path.
std::string PlainPath(std::wstring path) {
    constexpr wchar_t prefix[] = L"\\\\?\\";
    if (path.rfind(prefix, 0) == 0) {
        path.erase(0, 4);
    }
    bool lossless = true;
    std::string text = FromWide(path, lossless);
    return lossless ? text : std::string();
}

} // namespace

struct Folder::State {
    std::string path;
    std::wstring Wide(std::string const &name) const { return LongPath(JoinPath(path, name)); }
};

Folder::Folder(std::unique_ptr<State> state) : m_state(std::move(state)) {}
Folder::~Folder() = default;

std::unique_ptr<Folder> Folder::Open(std::string const &path, std::string &why) {
    DWORD const attributes = ::GetFileAttributesW(LongPath(path).c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        why = LastErrorText();
        return nullptr;
    }
    if (!(attributes & FILE_ATTRIBUTE_DIRECTORY)) {
        why = "not a folder";
        return nullptr;
    }
    return std::unique_ptr<Folder>(new Folder(std::make_unique<State>(State{path})));
}

bool Folder::List(std::vector<Entry> &entries, std::string &why) const {
    WIN32_FIND_DATAW found;
    HANDLE const first = ::FindFirstFileExW(m_state->Wide("*").c_str(), FindExInfoBasic, &found,
                                            FindExSearchNameMatch, nullptr, 0);
    if (first == INVALID_HANDLE_VALUE) {
        why = LastErrorText();
        return ::GetLastError() == ERROR_FILE_NOT_FOUND;
    }
    std::unique_ptr<void, SearchClose> const search(first);
    do {
        std::wstring const name = found.cFileName;
        if (name != L"." && name != L"..") {
            entries.push_back(Describe(found));
        }
    } while (::FindNextFileW(search.get(), &found));
    why = LastErrorText();
    return ::GetLastError() == ERROR_NO_MORE_FILES;
}

Presence Folder::Look(std::string const &name, Entry &entry) const {
    WIN32_FIND_DATAW found;
    HANDLE const search = ::FindFirstFileW(m_state->Wide(name).c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) {
        return ::GetLastError() == ERROR_FILE_NOT_FOUND ? Presence::absent : Presence::unknown;
    }
    ::FindClose(search);
    entry = Describe(found);
    return Presence::present;
}

bool Folder::ReadProgram(std::string const &name, Program &program, std::string &why) const {
    FileHandle const file =
        OpenFile(m_state->Wide(name), GENERIC_READ, OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT);
    if (!file) {
        why = LastErrorText();
        return false;
    }
    FileSource source(file.get());
    char start[2];
    if (source.Size() >= SHORTEST_PROGRAM && !source.Read(0, start, sizeof start)) {
        why = LastErrorText();
        return false;
    }
    program = ReadPe(source);
    return true;
}

std::optional<std::string> Folder::ReadLink(std::string const &name) const {
    FileHandle const target =
        OpenFile(m_state->Wide(name), 0, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS);
    wchar_t path[32768];
    constexpr DWORD size = sizeof path / sizeof *path;
    DWORD const length = target ? ::GetFinalPathNameByHandleW(target.get(), path, size, 0) : 0;
    std::string text = length > 0 && length < size ? PlainPath({path, length}) : std::string();
    return text.empty() ? std::nullopt : std::optional<std::string>(std::move(text));
}

int CompareNames(const char *a, const char *b) {
    return ::CompareStringOrdinal(ToWide(a).c_str(), -1, ToWide(b).c_str(), -1, TRUE) - CSTR_EQUAL;
}

std::optional<std::string> CanonicalPath(std::string const &path, Presence &presence) {
    std::wstring const whole = LongPath(path);
    DWORD const attributes = ::GetFileAttributesW(whole.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        DWORD const error = ::GetLastError();
        presence = error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND
                       ? Presence::absent
                       : Presence::unknown;
        return std::nullopt;
    }
    presence = Presence::present;
    return PlainPath(whole);
}

SplitPath SplitLastName(std::string const &path) {
    std::size_t const separator = path.find_last_of("\\/");
    if (separator == std::string::npos) {
        return {".", path};
    }
    bool const root = separator == 2 && path[1] == ':';
    return {path.substr(0, separator + (root ? 1 : 0)), path.substr(separator + 1)};
}

std::string JoinPath(std::string const &folder, std::string const &name) {
    bool const closed = !folder.empty() && (folder.back() == '\\' || folder.back() == '/');
    return folder + (closed ? "" : "\\") + name;
}

bool IsAbsolutePath(std::string const &path) { return path.size() > 2 && path[1] == ':'; }

} // namespace qvlink

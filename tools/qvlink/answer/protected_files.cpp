#include "answer/protected_files.h"

#include "answer/protection.h"
#include "lists/library_lists.h"
#include "platform/whole_file.h"
#include "stored_list.h"

#include "Diag.h"

#include <algorithm>
#include <cctype>

namespace qvlink {
namespace {

constexpr FamilyLists Families[] = {
    {OS_WIN95, "Windows 95", 102, 111},
    {OS_WIN98, "Windows 98", 103, 112},
    {OS_WINME, "Windows Me", 105, 113},
    {OS_NT3, "Windows NT 3", 104, 114},
    {OS_NT4, "Windows NT 4", 104, 114},
    {OS_WIN2000, "Windows 2000", 101, 110},
    {OS_NT_LATER, "Windows XP or later", 101, 110},
};

bool IsSpace(char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; }

std::string_view Trim(std::string_view line) {
    while (!line.empty() && IsSpace(line.back())) {
        line.remove_suffix(1);
    }
    while (!line.empty() && IsSpace(line.front())) {
        line.remove_prefix(1);
    }
    return line;
}

// Lines end at a line feed: what follows the last one isn't read.
template <class Take> void ForEachLine(std::string_view text, Take const &take) {
    text = text.substr(0, text.find('\0'));
    for (std::size_t end = text.find('\n'); end != std::string_view::npos; end = text.find('\n')) {
        take(Trim(text.substr(0, end)));
        text.remove_prefix(end + 1);
    }
}

std::string HostFormOf(std::string const &modulePath) {
    std::optional<Place> const place = ParseDatabasePath(modulePath);
    return place ? HostPath(*place) : modulePath;
}

// Throws lists::ListError.
std::string TextOfList(std::string_view library, lists::Kind kind, std::uint32_t id) {
    LibraryLists const found = FindLists(library);
    for (LibraryList const &list : found.lists) {
        if (list.kind == kind && list.id == id) {
            return lists::Unpack(list.stored);
        }
    }
    throw lists::ListError(found.malformed.empty() ? "it isn't there" : found.malformed);
}

} // namespace

FamilyLists const *ListsOf(ostype family) {
    auto const *const found =
        std::find_if(std::begin(Families), std::end(Families),
                     [&](FamilyLists const &lists) { return lists.family == family; });
    return found == std::end(Families) ? nullptr : found;
}

ProtectedFiles::ProtectedFiles(std::string_view text, SystemDirectories const &folders) {
    ForEachLine(text, [&](std::string_view line) { Add(line, folders); });
}

// The empty line between the blocks of a list names no key.
ProtectedFiles ProtectedFiles::OfKeys(std::string_view text) {
    ProtectedFiles keys;
    ForEachLine(text, [&](std::string_view line) {
        if (!line.empty() && line.size() < ProtectedPathRoom) {
            keys.m_lines.emplace(PathKey(line), line);
        }
    });
    return keys;
}

// One letter decides which folder a line means.
void ProtectedFiles::Add(std::string_view line, SystemDirectories const &folders) {
    if (line.size() < lists::systemTag.size() || line[0] != '%') {
        return;
    }
    bool const isWindows = line[1] == 'W' || line[1] == 'w';
    std::size_t const tag = (isWindows ? lists::windowsTag : lists::systemTag).size();
    if (line.size() < tag) {
        return;
    }
    std::string path = isWindows ? folders.windows : folders.system;
    path += path.empty() || path.back() == '\\' ? "" : "\\";
    path += line.substr(tag);
    if (path.size() < ProtectedPathRoom) {
        m_lines.emplace(PathKey(path), line);
    }
}

std::string const *ProtectedFiles::LineOf(std::string_view path) const {
    auto const line = m_lines.find(PathKey(path));
    return line == m_lines.end() ? nullptr : &line->second;
}

std::size_t ProtectedFiles::CountBelow(std::string_view path) const {
    std::string const start = PathKey(path) + '\\';
    auto end = m_lines.lower_bound(start);
    auto const first = end;
    while (end != m_lines.end() && end->first.compare(0, start.size(), start) == 0) {
        ++end;
    }
    return static_cast<std::size_t>(std::distance(first, end));
}

std::uint32_t OwnList::Id() const {
    if (!family) {
        return 0;
    }
    return kind == lists::Kind::files ? family->files : family->keys;
}

OwnList ReadOwnList(lists::Kind kind) {
    OwnList list;
    list.kind = kind;
    list.library = HostFormOf(GetOwnModulePath());
    list.family = ListsOf(g_NTAdminObject.GetOS());
    if (!list.family) {
        return list;
    }
    std::optional<std::string> const library = ReadWholeFile(list.library, list.problem);
    if (!library) {
        return list;
    }
    try {
        std::string const text = TextOfList(*library, kind, list.Id());
        list.files = kind == lists::Kind::files ? ProtectedFiles(text, FindSystemDirectories())
                                                : ProtectedFiles::OfKeys(text);
    } catch (lists::ListError const &error) {
        list.problem = error.what();
    }
    return list;
}

} // namespace qvlink

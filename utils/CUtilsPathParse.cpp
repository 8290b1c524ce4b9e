// The rules of path texts: completion, the UNC form, parents, and the parts of a name.
#include "CUtilsPath.h"

#include "PathComponents.h"

#include "platform/winapi.h"

#include <algorithm>
#include <cstring>

namespace UTILS {
namespace {

constexpr const char *roots[] = {"HKLM", "HKEY_LOCAL_MACHINE", "HKCU", "HKEY_CURRENT_USER",
                                 "HKCR", "HKEY_CLASSES_ROOT",  "HKU",  "HKEY_USERS",
                                 "HKCC", "HKEY_CURRENT_CONFIG"};

bool EndsInSlash(UtilsString const &text) {
    return text.size() != 0 && text.RetrieveChar(text.size() - 1) == '\\';
}

// Blanks only: a tab stays.
void RemoveBlanks(UtilsString &text) {
    unsigned long end = text.size();
    while (end != 0 && text.RetrieveChar(end - 1) == ' ')
        --end;
    if (end != text.size())
        text.TruncateString(text.size() - end);
    unsigned long begin = 0;
    while (begin != text.size() && text.RetrieveChar(begin) == ' ')
        ++begin;
    if (begin != 0)
        text.TruncateStringAtPosition(begin, 0);
}

void CutSlash(UtilsString &text) {
    RemoveBlanks(text);
    if (EndsInSlash(text))
        text.TruncateString(1);
}

void RemoveLeading(UtilsString &text, char value) {
    unsigned long count = 0;
    while (count != text.size() && text.RetrieveChar(count) == value)
        ++count;
    if (count != 0)
        text.TruncateStringAtPosition(count, 0);
}

// Those from one to another, joined by a dot.
std::string Joined(std::vector<std::string> const &parts, std::size_t from, std::size_t to) {
    std::string text;
    for (std::size_t i = from; i < to; ++i)
        text += (i == from ? "" : ".") + parts[i];
    return text;
}

} // namespace

int CUtilsPath::PathIsRegistry(UtilsString const &text) {
    // The first string that a split would give. It would look for all of them from the start.
    UtilsString first;
    unsigned long piece = 0;
    while (text.ParseString("\\", first, piece, 0) && first.size() == 0)
        ++piece;
    if (first.size() == 0)
        first = Selected(text);
    first.SetCase(text.GetCase());
    return std::any_of(std::begin(roots), std::end(roots),
                       [&first](const char *root) { return first == root; })
               ? 1
               : 0;
}

int CUtilsPath::PathIsUNCA(UtilsString const &text) {
    return text.size() >= 2 && text.RetrieveChar(0) == '\\' && text.RetrieveChar(1) == '\\';
}

void CUtilsPath::RemoveAnyWhiteSpace() { RemoveBlanks(path); }
void CUtilsPath::CutEndingSlash() { CutSlash(path); }
void CUtilsPath::AddEndingSlash() { path.Append('\\'); }
void CUtilsPath::RemoveAnyWhiteSpaceUNC() { RemoveBlanks(pathUNC); }
void CUtilsPath::CutEndingSlashUNC() { CutSlash(pathUNC); }
void CUtilsPath::AddEndingSlashUNC() { pathUNC.Append('\\'); }

// Completion

void CUtilsPath::MakeFullPath(UtilsString const &base) {
    if (regFlag && base.size() == 0)
        return;
    unsigned long doubled = 0;
    unsigned long dots = 0;
    unsigned long colon = 0;
    bool const hasDoubled = path.FindFirst("\\\\", doubled) != 0;
    if (hasDoubled && doubled == 0) {
        uncFlag = 1;
        return;
    }
    bool const hasColon = path.FindFirst(":", colon) != 0;
    bool const hasDots = path.FindFirst("..", dots) != 0;
    // A text with doubled backslashes is taken as relative even if it begins with a drive.
    if (hasDoubled) {
        path.ReplaceAll("\\\\", "\\");
    } else if (hasColon) {
        uncFlag = 0;
        return;
    }
    UtilsString const folder = base.size() != 0 ? Selected(base) : UGetCurrentDir();
    if (!hasDoubled && hasDots && dots == 0) {
        WalkUp(folder);
        return;
    }
    uncFlag = 0;
    Strip();
    Join(folder);
}

void CUtilsPath::Strip() {
    RemoveLeading(path, '.');
    RemoveLeading(path, '\\');
}

void CUtilsPath::Join(UtilsString const &base) {
    UtilsString const relative = Selected(path);
    path = static_cast<char const *>(base);
    CutEndingSlash();
    AddEndingSlash();
    path.Append(relative);
    CutEndingSlash();
    parentLevel = 0;
}

// Each ".." climbs, also one behind a name, which stays in the text too.
void CUtilsPath::WalkUp(UtilsString const &base) {
    UtilsString relative = Selected(path);
    UtilsString parent;
    unsigned long index = 0;
    path = static_cast<char const *>(base);
    CutEndingSlash();
    GetParentDir(parent);
    relative.FindFirst("..", index);
    while (relative.FindNext("..", index)) {
        ++parentLevel;
        GetParentDir(parent);
    }
    path = static_cast<char const *>(relative);
    do {
        Strip();
    } while (path.size() != 0 && path.RetrieveChar(0) == '.');
    parent.Append('\\').Append(path);
    path = static_cast<char const *>(parent);
    CutEndingSlash();
    parentLevel = 0;
}

void CUtilsPath::MakeUNCName() {
    if (uncFlag) {
        pathUNC = path;
        return;
    }
    char name[512] = "";
    DWORD size = sizeof name;
    if (!win::GetComputerNameA(name, &size))
        *name = '\0';
    pathUNC = "\\\\";
    pathUNC.Append(name).Append('\\').Append(path);
    if (regFlag)
        return;
    // The drive with its backslash goes, wherever these three characters are.
    UtilsString const drive(std::string(path.Retrieve(), std::min(path.size(), 3UL)));
    if (drive.size() != 0 && pathUNC.ReplaceFirst(drive, "")) {
        while (pathUNC.ReplaceNext(drive, "")) {
        }
    }
    pathUNC.FindReset();
}

// Components and parents

UtilsString CUtilsPath::UGetDrive() const { return Components(ViewOf(path)).front(); }

char const *CUtilsPath::GetDrive() {
    firstComponent = UGetDrive();
    return firstComponent;
}

int CUtilsPath::UpperDirParse(UtilsString &out, int keepFront) const {
    UtilsString backwards(path);
    backwards.Reverse();
    if (!backwards.ParseString("\\", out, parentLevel, keepFront))
        return 0;
    out.Reverse();
    return 1;
}

int CUtilsPath::GetDirFolder(UtilsString &out) const {
    UtilsString part;
    if (!UpperDirParse(part, 0) || part.size() == 0)
        return 0;
    out = static_cast<char const *>(part);
    return 1;
}

int CUtilsPath::GetDirFolder(char *out) const {
    UtilsString part;
    if (!GetDirFolder(part))
        return 0;
    std::strcpy(out, part);
    return 1;
}

int CUtilsPath::GetParentDir(UtilsString &out) const {
    UtilsString part;
    if (!UpperDirParse(part, 1))
        return 0;
    UtilsString parent(path);
    parent.Reverse();
    part.Reverse();
    parent.ReplaceFirst(part, "");
    parent.Reverse();
    if (EndsInSlash(parent))
        parent.TruncateString(1);
    if (parent.size() == 0)
        return 0;
    out = static_cast<char const *>(parent);
    return 1;
}

int CUtilsPath::GetParentDir(char *out) const {
    UtilsString parent;
    if (!GetParentDir(parent))
        return 0;
    std::strcpy(out, parent);
    return 1;
}

int CUtilsPath::GetParentDir(CUtilsPath &out) const {
    UtilsString parent;
    if (!GetParentDir(parent))
        return 0;
    out = parent;
    return 1;
}

int CUtilsPath::SetPathToSubDir() {
    UtilsString parent;
    return GetParentDir(parent) ? SetDir(parent) : 0;
}

int CUtilsPath::GetFileNameFromPath(UtilsString const &fullPath, UtilsString &name,
                                    UtilsString &ext, int firstDot) {
    int const caseSetting = fullPath.GetCase();
    std::vector<std::string> const parts = Components(Components(ViewOf(fullPath)).back(), '.');
    std::size_t const count = parts.size();
    bool const divided = count >= 2;
    std::size_t const middle = firstDot ? 1 : count - 1;
    name = divided ? Joined(parts, 0, middle) : std::string();
    ext = divided ? Joined(parts, middle, count) : std::string();
    name.SetCase(caseSetting);
    ext.SetCase(caseSetting);
    return divided ? 1 : 0;
}

int CUtilsPath::GetFileNameFromPath(char const *fullPath, char *name, char *ext, int) {
    UtilsString nameText;
    UtilsString extText;
    int const divided = GetFileNameFromPath(UtilsString(fullPath), nameText, extText, 0);
    std::strcpy(name, nameText);
    std::strcpy(ext, extText);
    return divided;
}

} // namespace UTILS

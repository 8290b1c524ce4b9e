// The rules of path texts: completion, the UNC form, parents, and the parts of a name.
#include "CUtilsPath.h"

#include "PathComponents.h"

#include "platform/winapi.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace UTILS {
namespace {

constexpr const char *roots[] = {"HKLM", "HKEY_LOCAL_MACHINE", "HKCU", "HKEY_CURRENT_USER",
                                 "HKCR", "HKEY_CLASSES_ROOT",  "HKU",  "HKEY_USERS",
                                 "HKCC", "HKEY_CURRENT_CONFIG"};

// Strings of the class cost far more than what is done to them here, so that the rules work on
// plain ones and on views.
// Blanks only: a tab stays.
std::string_view WithoutBlanks(std::string_view text) {
    while (!text.empty() && text.back() == ' ')
        text.remove_suffix(1);
    while (!text.empty() && text.front() == ' ')
        text.remove_prefix(1);
    return text;
}

std::string_view WithoutSlash(std::string_view text) {
    if (!text.empty() && text.back() == '\\')
        text.remove_suffix(1);
    return text;
}

std::string_view WithoutLeading(std::string_view text, char value) {
    while (!text.empty() && text.front() == value)
        text.remove_prefix(1);
    return text;
}

// Makes the text a part of it.
void Keep(UtilsString &text, std::string_view part) {
    if (part.size() != text.size())
        text = std::string(part);
}

// The piece of a number that a parse of the text read backwards gives, or with `keepFront`
// all up to its end. Such a parse doesn't look at the character behind a separator that it
// counted, nor count one at its very start for the piece that follows.
bool PieceFromEnd(std::string_view text, unsigned long number, bool keepFront,
                  std::string_view &piece) {
    unsigned long count = 0;
    std::size_t previous = 0;
    std::size_t end = 0;
    for (; end < text.size(); ++end) {
        if (text[text.size() - 1 - end] != '\\')
            continue;
        if (count == number)
            break;
        ++count;
        previous = end++;
    }
    end = std::min(end, text.size());
    if (count != number || (end == text.size() && previous == 0))
        return false;
    std::size_t const begin = keepFront || previous == 0 ? 0 : previous + 1;
    piece = text.substr(text.size() - end, end - begin);
    return true;
}

// The first or the last component; empty ones don't count.
std::string_view FirstComponent(std::string_view text) {
    std::string_view const rest = WithoutLeading(text, '\\');
    return rest.empty() ? text : rest.substr(0, rest.find('\\'));
}

std::string_view LastComponent(std::string_view text) {
    std::size_t const end = text.find_last_not_of('\\') + 1;
    return end == 0 ? text : text.substr(0, end).substr(text.substr(0, end).rfind('\\') + 1);
}

// What lies between dots, but for what is empty.
std::vector<std::string_view> DottedParts(std::string_view text) {
    std::vector<std::string_view> parts;
    for (text = WithoutLeading(text, '.'); !text.empty(); text = WithoutLeading(text, '.')) {
        parts.push_back(text.substr(0, text.find('.')));
        text.remove_prefix(parts.back().size());
    }
    return parts;
}

// The room isn't known here: it is the caller's business.
void CopyOut(char *to, UtilsString const &text) {
    std::memcpy(to, text.Retrieve(), std::strlen(text.Retrieve()) + 1);
}

// Some of them, joined by a dot.
std::string Joined(std::vector<std::string_view> const &parts, std::size_t from, std::size_t to) {
    std::string text;
    for (std::size_t i = from; i < to; ++i)
        text.append(i == from ? "" : ".").append(parts[i]);
    return text;
}

bool IsSame(std::string_view text, std::string_view root, int caseMode) {
    return text.size() == root.size() &&
           (caseMode != 0 ? text == root
                          : win::_memicmp(text.data(), root.data(), root.size()) == 0);
}

// The drive with its backslash goes, wherever these three characters are, until they are found
// where they went last. The network's form says by its case setting what is the same.
void RemoveDrive(std::string &text, std::string_view drive, UtilsString const &settings) {
    unsigned long index = 0;
    auto last = static_cast<unsigned long>(text.size());
    char const *const begin = drive.data();
    while (!drive.empty() && text.size() > drive.size() &&
           settings.search(begin, begin + drive.size(), text.data(), text.data() + text.size(),
                           index, settings.GetCase(), 0, nullptr) &&
           index != last) {
        text.erase(index, drive.size());
        last = index;
    }
}

} // namespace

// One separator in front makes it no key, whatever follows.
int CUtilsPath::PathIsRegistry(UtilsString const &text) {
    std::string_view const whole = ViewOf(text);
    std::string_view const first = whole.substr(0, whole.find('\\'));
    return std::any_of(std::begin(roots), std::end(roots),
                       [&](const char *root) { return IsSame(first, root, text.GetCase()); })
               ? 1
               : 0;
}

int CUtilsPath::PathIsUNCA(UtilsString const &text) {
    return text.size() >= 2 && text.RetrieveChar(0) == '\\' && text.RetrieveChar(1) == '\\';
}

void CUtilsPath::RemoveAnyWhiteSpace() { Keep(path, WithoutBlanks(ViewOf(path))); }
void CUtilsPath::CutEndingSlash() { Keep(path, WithoutSlash(WithoutBlanks(ViewOf(path)))); }
void CUtilsPath::AddEndingSlash() { path.Append('\\'); }
void CUtilsPath::RemoveAnyWhiteSpaceUNC() { Keep(pathUNC, WithoutBlanks(ViewOf(pathUNC))); }
void CUtilsPath::CutEndingSlashUNC() {
    Keep(pathUNC, WithoutSlash(WithoutBlanks(ViewOf(pathUNC))));
}
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

void CUtilsPath::Strip() { Keep(path, WithoutLeading(WithoutLeading(ViewOf(path), '.'), '\\')); }

void CUtilsPath::Join(UtilsString const &base) {
    std::string joined(WithoutSlash(WithoutBlanks(ViewOf(base))));
    joined.append("\\").append(ViewOf(path));
    path = std::string(WithoutSlash(WithoutBlanks(joined)));
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
    std::string_view const whole = ViewOf(path);
    std::string text = std::string("\\\\") + name + '\\';
    text.append(whole);
    if (!regFlag)
        RemoveDrive(text, whole.substr(0, 3), pathUNC);
    pathUNC = text;
    if (!regFlag)
        pathUNC.FindReset();
}

// Components and parents

UtilsString CUtilsPath::UGetDrive() const { return std::string(FirstComponent(ViewOf(path))); }

char const *CUtilsPath::GetDrive() {
    firstComponent = UGetDrive();
    return firstComponent;
}

int CUtilsPath::UpperDirParse(UtilsString &out, int keepFront) const {
    std::string_view piece;
    bool const found = PieceFromEnd(ViewOf(path), parentLevel, keepFront != 0, piece);
    out = std::string(piece);
    return found ? 1 : 0;
}

int CUtilsPath::GetDirFolder(UtilsString &out) const {
    std::string_view piece;
    if (!PieceFromEnd(ViewOf(path), parentLevel, false, piece) || piece.empty())
        return 0;
    out = std::string(piece);
    return 1;
}

int CUtilsPath::GetDirFolder(char *out) const {
    UtilsString part;
    if (!GetDirFolder(part))
        return 0;
    CopyOut(out, part);
    return 1;
}

int CUtilsPath::GetParentDir(UtilsString &out) const {
    std::string_view const whole = ViewOf(path);
    std::string_view tail;
    if (!PieceFromEnd(whole, parentLevel, true, tail))
        return 0;
    std::string_view const parent = WithoutSlash(whole.substr(0, whole.size() - tail.size()));
    if (parent.empty())
        return 0;
    out = std::string(parent);
    return 1;
}

int CUtilsPath::GetParentDir(char *out) const {
    UtilsString parent;
    if (!GetParentDir(parent))
        return 0;
    CopyOut(out, parent);
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
    std::string const text(LastComponent(ViewOf(fullPath)));
    std::vector<std::string_view> const parts = DottedParts(text);
    bool const divided = parts.size() >= 2;
    std::size_t const middle = firstDot ? 1 : parts.size() - 1;
    name = divided ? Joined(parts, 0, middle) : std::string();
    ext = divided ? Joined(parts, middle, parts.size()) : std::string();
    name.SetCase(caseSetting);
    ext.SetCase(caseSetting);
    return divided ? 1 : 0;
}

int CUtilsPath::GetFileNameFromPath(char const *fullPath, char *name, char *ext, int) {
    UtilsString nameText;
    UtilsString extText;
    int const divided = GetFileNameFromPath(UtilsString(fullPath), nameText, extText, 0);
    CopyOut(name, nameText);
    CopyOut(ext, extText);
    return divided;
}

} // namespace UTILS

#include "path_model.h"

#include "string_model.h"

#include <algorithm>
#include <vector>

namespace {

using Texts = std::vector<std::string>;

std::string Reversed(std::string text) {
    std::reverse(text.begin(), text.end());
    return text;
}

std::string WithoutBlanks(std::string text) {
    while (!text.empty() && text.back() == ' ')
        text.pop_back();
    return text.substr(std::min(text.find_first_not_of(' '), text.size()));
}

std::string WithoutSlash(std::string text) {
    if (!text.empty() && text.back() == '\\')
        text.pop_back();
    return text;
}

std::string Cut(std::string const &text) { return WithoutSlash(WithoutBlanks(text)); }

std::string Stripped(std::string text) {
    for (char const leading : {'.', '\\'})
        text = text.substr(std::min(text.find_first_not_of(leading), text.size()));
    return text;
}

text_model::Hit Find(std::string const &pattern, std::string const &text, unsigned long number) {
    return text_model::Search(text_model::Kind::Text, pattern, text, 1, number);
}

// What lies between separators, but for what is empty; without anything the text itself.
Texts Split(std::string const &text, char separator) {
    Texts parts;
    std::string part;
    for (char const letter : text + separator) {
        if (letter != separator) {
            part += letter;
        } else if (!part.empty()) {
            parts.push_back(part);
            part.clear();
        }
    }
    return parts.empty() ? Texts{text} : parts;
}

std::string JoinedByDots(Texts const &parts, std::size_t from, std::size_t to) {
    std::string text;
    for (std::size_t i = from; i < to; ++i)
        text += (i == from ? "" : ".") + parts[i];
    return text;
}

} // namespace

bool PathModel::IsRegistry(std::string const &text) {
    StringModel parts;
    parts.strings = {text};
    parts.SplitData(text, 1, "\\", false);
    static Texts const roots = {"HKLM", "HKEY_LOCAL_MACHINE", "HKCU", "HKEY_CURRENT_USER",
                                "HKCR", "HKEY_CLASSES_ROOT",  "HKU",  "HKEY_USERS",
                                "HKCC", "HKEY_CURRENT_CONFIG"};
    return std::find(roots.begin(), roots.end(), parts.strings.front()) != roots.end();
}

bool PathModel::SetPath(std::string const &input, std::string const &base) {
    if (input.empty())
        return false;
    regFlag = IsRegistry(input);
    path = Cut(input);
    Complete(base);
    NameForNetwork();
    return true;
}

bool PathModel::AddToPath(std::string const &text) {
    if (text.empty())
        return false;
    if (path.empty())
        return SetPath(text, "");
    std::string const base = path;
    if (Find("..", text, 0).found)
        return SetPath(text, base);
    bool const hasDrive = text.size() > 2 && text[1] == ':' && text[2] == '\\';
    SetPath(hasDrive ? text.substr(3) : text, base);
    return true;
}

void PathModel::Complete(std::string const &base) {
    if (regFlag && base.empty())
        return;
    std::string const folder = base.empty() ? current : base;
    auto const doubled = Find("\\\\", path, 0);
    auto const dots = Find("..", path, 0);
    if (doubled.found && doubled.index == 0) {
        uncFlag = true;
    } else if (doubled.found) {
        uncFlag = false;
        StringModel text;
        text.Text() = path;
        text.ReplaceAll("\\\\", "\\");
        path = text.Text();
        Join(folder);
    } else if (path.find(':') != std::string::npos) {
        uncFlag = false;
    } else if (dots.found && dots.index == 0) {
        WalkUp(folder);
    } else {
        uncFlag = false;
        Join(folder);
    }
}

void PathModel::Join(std::string const &folder) {
    path = Cut(Cut(folder) + "\\" + Stripped(path));
    parentLevel = 0;
}

void PathModel::WalkUp(std::string const &folder) {
    std::string const relative = path;
    path = Cut(folder);
    std::string parent = Parent().value_or("");
    for (unsigned long number = 1; Find("..", relative, number).found; ++number) {
        ++parentLevel;
        parent = Parent().value_or(parent);
    }
    std::string rest = Stripped(relative);
    while (!rest.empty() && rest.front() == '.')
        rest = Stripped(rest);
    path = Cut(parent + "\\" + rest);
    parentLevel = 0;
}

void PathModel::NameForNetwork() {
    if (uncFlag) {
        pathUNC = path;
        return;
    }
    StringModel name;
    name.Text() = "\\\\" + host + "\\" + path;
    std::string const drive = path.substr(0, 3);
    if (!regFlag && !drive.empty() && name.ReplaceFirst(drive, ""))
        while (name.ReplaceNext(drive, "")) {
        }
    pathUNC = name.Text();
}

std::optional<std::string> PathModel::Upper(bool keepFront) const {
    StringModel backwards;
    backwards.Text() = Reversed(path);
    auto const piece = backwards.Parse("\\", parentLevel, keepFront);
    if (!piece)
        return {};
    return Reversed(*piece);
}

std::optional<std::string> PathModel::Folder() const {
    auto const part = Upper(false);
    return part && !part->empty() ? part : std::nullopt;
}

std::optional<std::string> PathModel::Parent() const {
    auto const tail = Upper(true);
    if (!tail)
        return {};
    StringModel backwards;
    backwards.Text() = Reversed(path);
    backwards.ReplaceFirst(Reversed(*tail), "");
    std::string const parent = WithoutSlash(Reversed(backwards.Text()));
    if (parent.empty())
        return {};
    return parent;
}

std::optional<std::string> PathModel::NextParent() {
    ++parentLevel;
    return Parent();
}

std::optional<std::string> PathModel::PreviousParent() {
    if (parentLevel == 0)
        return {};
    --parentLevel;
    return Parent();
}

bool PathModel::MoveToParent() {
    auto const parent = Parent();
    return parent && SetPath(*parent, "");
}

std::string PathModel::Drive() const { return Split(path, '\\').front(); }

std::pair<std::string, std::string> PathModel::NameParts(std::string const &fullPath,
                                                         bool firstDot) {
    Texts const parts = Split(Split(fullPath, '\\').back(), '.');
    if (parts.size() < 2)
        return {};
    std::size_t const middle = firstDot ? 1 : parts.size() - 1;
    return {JoinedByDots(parts, 0, middle), JoinedByDots(parts, middle, parts.size())};
}

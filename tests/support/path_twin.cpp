#include "path_twin.h"

using UTILS::UtilsString;

namespace {

std::string const untouched = "untouched";

} // namespace

PathTwin::PathTwin() {
    Open named;
    named.SetDir("C:\\name");
    std::string const name = named.GetDirUNC();
    m_model.host = name.substr(2, name.rfind('\\') - 2);
    m_model.current = UtilsString(UTILS::CUtilsPath::UGetCurrentDir()).Retrieve();
}

void PathTwin::SetPath(std::string const &text, std::string const &base) {
    m_step = "SetPath [" + text + "] [" + base + "]";
    Expect(m_model.SetPath(text, base) ? 1 : 0,
           static_cast<unsigned long>(m_path.SetPath(text, base)), "result");
    CompareState();
}

void PathTwin::AddToPath(std::string const &text) {
    m_step = "AddToPath [" + text + "]";
    Expect(m_model.AddToPath(text) ? 1 : 0, static_cast<unsigned long>(m_path.AddToPath(text)),
           "result");
    CompareState();
}

void PathTwin::ClimbOn() {
    UtilsString out(untouched);
    m_step = "GetNextParentDir";
    int const result = m_path.GetNextParentDir(out);
    Climbed(m_model.NextParent(), result, out);
}

void PathTwin::ClimbBack() {
    UtilsString out(untouched);
    m_step = "GetPrevParentDir";
    int const result = m_path.GetPrevParentDir(out);
    Climbed(m_model.PreviousParent(), result, out);
}

void PathTwin::Climbed(std::optional<std::string> const &wanted, int result,
                       UtilsString const &got) {
    Expect(wanted ? 1 : 0, static_cast<unsigned long>(result), "result");
    Expect(wanted.value_or(untouched), got.Retrieve(), "parent");
    CompareState();
}

void PathTwin::CloseParentSearch() {
    m_step = "CloseParentSearch";
    m_model.parentLevel = 0;
    m_path.CloseParentSearch();
    CompareState();
}

void PathTwin::MoveToParent() {
    m_step = "SetPathToSubDir";
    int const result = m_path.SetPathToSubDir();
    Expect(m_model.MoveToParent() ? 1 : 0, static_cast<unsigned long>(result), "result");
    CompareState();
}

void PathTwin::DivideName(std::string const &text, bool firstDot) {
    m_step = "GetFileNameFromPath [" + text + "]";
    UtilsString name(untouched);
    UtilsString ext(untouched);
    int const divided =
        UTILS::CUtilsPath::GetFileNameFromPath(UtilsString(text), name, ext, firstDot);
    auto const [wantedName, wantedExt] = PathModel::NameParts(text, firstDot);
    Expect(wantedExt.empty() ? 0 : 1, static_cast<unsigned long>(divided), "result");
    Expect(wantedName, name.Retrieve(), "name");
    Expect(wantedExt, ext.Retrieve(), "extension");
}

void PathTwin::CompareState() {
    Expect(m_model.path, m_path.GetDir(), "path");
    Expect(m_model.pathUNC, m_path.GetDirUNC(), "network's form");
    Expect(m_model.regFlag ? 1 : 0, static_cast<unsigned long>(m_path.GetRegFlag()), "key");
    Expect(m_model.uncFlag ? 1 : 0, static_cast<unsigned long>(m_path.uncFlag), "network");
    Expect(m_model.parentLevel, m_path.parentLevel, "level");
    UtilsString parent(untouched);
    m_path.GetParentDir(parent);
    Expect(m_model.Parent().value_or(untouched), parent.Retrieve(), "parent");
    UtilsString folder(untouched);
    m_path.GetDirFolder(folder);
    Expect(m_model.Folder().value_or(untouched), folder.Retrieve(), "folder");
    Expect(m_model.Drive(), m_path.GetDrive(), "drive");
}

void PathTwin::Expect(std::string const &wanted, std::string const &got, char const *what) {
    if (wanted != got && m_difference.empty())
        m_difference = m_step + ": " + what + " is [" + got + "] instead of [" + wanted + "]";
}

void PathTwin::Expect(unsigned long wanted, unsigned long got, char const *what) {
    Expect(std::to_string(wanted), std::to_string(got), what);
}

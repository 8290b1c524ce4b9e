#include "list_lines.h"
#include "list_text.h"

#include <algorithm>
#include <unordered_map>

namespace lists {
namespace {

std::string OnLine(std::size_t line) { return "line " + std::to_string(line); }

class Checker {
public:
    explicit Checker(Kind kind) : m_kind(kind) {}

    // A line without its line feed. False if the library doesn't read on.
    bool Take(std::string_view line, bool hasEnd);
    std::vector<Finding> Finish();

private:
    void Error(std::size_t line, std::string message) {
        m_findings.push_back({line, true, std::move(message)});
    }
    void Note(std::size_t line, std::string message) {
        m_findings.push_back({line, false, std::move(message)});
    }

    void CheckEnd(std::string_view line, bool hasEnd);
    void CheckEntry(std::string_view entry);
    void CheckComponents(std::string_view entry);
    void CheckFile(std::string_view entry);
    void CheckKey(std::string_view entry);
    void CheckParents();
    void CheckBlocks();

    struct Orphan {
        std::size_t line;
        std::string parent;
    };

    Kind m_kind;
    std::vector<Finding> m_findings;
    std::unordered_map<std::string, std::size_t> m_lines; // of entries, by their folded text
    std::vector<Orphan> m_orphans;
    std::vector<std::size_t> m_emptyLines;
    std::size_t m_line = 0;
    std::size_t m_lastMachineKey = 0; // ahead of the first user's key
    std::size_t m_firstUserKey = 0;
};

bool Checker::Take(std::string_view line, bool hasEnd) {
    ++m_line;
    if (line.find('\0') != std::string_view::npos) {
        Error(m_line, "a zero byte: neither this line nor any behind it is read");
        return false;
    }
    CheckEnd(line, hasEnd);
    if (!line.empty() && line.back() == '\r')
        line.remove_suffix(1);
    std::string_view const entry = Trim(line);
    if (entry.size() != line.size())
        Error(m_line, "blanks around the entry, which the library takes off");
    if (!entry.empty())
        CheckEntry(entry);
    else if (m_kind == Kind::keys)
        m_emptyLines.push_back(m_line);
    else
        Error(m_line, "an empty line, which the library reports as a fault");
    return true;
}

void Checker::CheckEnd(std::string_view line, bool hasEnd) {
    if (!hasEnd)
        Note(m_line, std::string(noLineEnd));
    else if (line.empty() || line.back() != '\r')
        Note(m_line, "a line feed without a carriage return");
}

void Checker::CheckEntry(std::string_view entry) {
    if (entry.size() >= lineRoom)
        Error(m_line, "the line has " + std::to_string(entry.size()) +
                          " characters, and the library passes over those of 260 and more");
    if (std::any_of(entry.begin(), entry.end(), [](char c) { return c >= 0 && c < ' '; }))
        Error(m_line, "a control character inside the entry");
    CheckComponents(entry);
    if (m_kind == Kind::files)
        CheckFile(entry);
    else
        CheckKey(entry);
    auto const [known, isNew] = m_lines.emplace(Folded(entry), m_line);
    if (!isNew)
        Note(m_line, "the entry is there already, on " + OnLine(known->second));
}

void Checker::CheckComponents(std::string_view entry) {
    bool const isTight = entry.find("\\\\") == std::string_view::npos && entry.front() != '\\';
    bool const isTag = Folded(entry).find('\0') == std::string::npos; // told elsewhere
    if (!isTight || (entry.back() == '\\' && !isTag))
        Note(m_line, "backslashes that separate nothing");
}

void Checker::CheckFile(std::string_view entry) {
    bool const isWindows = StartsWith(entry, windowsTag);
    if (!isWindows && !StartsWith(entry, systemTag)) {
        bool const taken = entry.front() == '%';
        Error(m_line, std::string("neither ") + std::string(windowsTag) + " nor " +
                          std::string(systemTag) +
                          (taken ? ": the library takes the line for another file"
                                 : ": the library passes over the line"));
        return;
    }
    std::string const tail =
        '\0' + Folded(entry.substr((isWindows ? windowsTag : systemTag).size())) + '\0';
    if (tail.size() == 2)
        Error(m_line, "no file is named behind the tag");
    using namespace std::string_view_literals;
    if (tail.find("\0.\0"sv) != std::string::npos || tail.find("\0..\0"sv) != std::string::npos)
        Error(m_line, "a component of dots, which no full path has");
    if (std::size_t const at = tail.find_first_of("<>:\"/|?*"); at != std::string::npos)
        Note(m_line, std::string("the character ") + tail[at] +
                         " is in no file's name; an entry is no pattern");
    constexpr std::string_view usual = "C:\\WINDOWS\\system32\\";
    if (!isWindows && entry.size() < lineRoom &&
        entry.size() - systemTag.size() + usual.size() >= lineRoom)
        Note(m_line, "below C:\\WINDOWS\\system32 the path has 260 characters or more, and the "
                     "library passes over it");
}

void Checker::CheckKey(std::string_view entry) {
    std::string const folded = Folded(entry);
    std::string const root = folded.substr(0, folded.find('\0'));
    if (root == "hklm") {
        if (m_firstUserKey)
            Error(m_line, "a key of HKLM behind those of HKCU");
        else
            m_lastMachineKey = m_line;
    } else if (root == "hkcu") {
        m_firstUserKey = m_firstUserKey ? m_firstUserKey : m_line;
    } else {
        Error(m_line, "neither HKLM nor HKCU");
        return;
    }
    if (folded == root) {
        Note(m_line, "a root itself");
        return;
    }
    std::string parent = folded.substr(0, folded.rfind('\0'));
    if (parent != root && !m_lines.count(parent))
        m_orphans.push_back({m_line, std::move(parent)});
}

void Checker::CheckParents() {
    for (Orphan const &orphan : m_orphans) {
        auto const found = m_lines.find(orphan.parent);
        if (found == m_lines.end())
            Note(orphan.line, "the key above isn't listed");
        else
            Error(orphan.line, "the key above is listed behind it, on " + OnLine(found->second));
    }
}

void Checker::CheckBlocks() {
    bool found = false;
    for (std::size_t const line : m_emptyLines) {
        if (line < m_lastMachineKey || (m_firstUserKey && line > m_firstUserKey))
            Error(line, "an empty line that isn't between the keys of HKLM and those of HKCU");
        else if (found)
            Error(line, "a second empty line between the keys of HKLM and those of HKCU");
        else
            found = true;
    }
    if (!found)
        Error(m_firstUserKey ? m_firstUserKey : m_line,
              "no empty line between the keys of HKLM and those of HKCU");
    if (!m_lastMachineKey)
        Note(1, "no keys of HKLM");
    if (!m_firstUserKey)
        Note(m_line, "no keys of HKCU");
}

std::vector<Finding> Checker::Finish() {
    if (m_lines.empty()) {
        Note(1, "there are no entries");
    } else if (m_kind == Kind::keys) {
        CheckParents();
        CheckBlocks();
    }
    std::stable_sort(m_findings.begin(), m_findings.end(),
                     [](Finding const &a, Finding const &b) { return a.line < b.line; });
    return std::move(m_findings);
}

} // namespace

std::vector<Finding> Check(std::string_view text, Kind kind) {
    Checker checker(kind);
    bool readsOn = true;
    while (readsOn && !text.empty()) {
        std::size_t const before = text.size();
        std::string_view const line = TakeLine(text);
        readsOn = checker.Take(line, before > line.size() + text.size());
    }
    return checker.Finish();
}

} // namespace lists

#include "shipped_lists.h"

#include <fstream>
#include <iterator>
#include <set>

#include <gtest/gtest.h>

namespace {

constexpr std::size_t windowsTag = 13; // characters of "%WindowsDir%\"
constexpr std::size_t systemTag = 12;  // and of "%SystemDir%\"

// Paths that are the same become the same text.
std::string Folded(std::string const &path) {
    std::string folded;
    for (char const c : path)
        if (c != '\\' || (!folded.empty() && folded.back() != '\\'))
            folded.push_back(c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c);
    return folded;
}

std::string Above(std::string const &path) {
    std::size_t const end = path.find_last_of('\\');
    return end == std::string::npos ? std::string() : path.substr(0, end);
}

std::string Swapped(std::string path) {
    for (char &c : path)
        if ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'))
            c = static_cast<char>(c ^ 0x20);
    return path;
}

class Questions {
public:
    Questions(std::vector<std::string> const &listed, Question const &ask) : m_ask(ask) {
        for (std::string const &path : listed)
            m_listed.insert(Folded(path));
        for (std::string const &path : m_listed)
            for (std::string at = Above(path); !at.empty(); at = Above(at))
                if (!m_listed.count(at))
                    m_interior.insert(at);
    }

    void AskForListed(std::string const &path) {
        Expect(path, true);
        Expect(Swapped(path), true);
    }
    // They are neither listed nor on the way to what is.
    void AskForNeighbours(std::string const &path) {
        for (std::string const &neighbour :
             {path + "\\child", path + "1", path.substr(0, path.size() - 1), "x" + path,
              Above(path) + "\\no such name", path + " "})
            for (int round = 0; !IsKnown(neighbour) && round < 2; ++round)
                Expect(neighbour, false);
    }
    void AskForInterior() {
        for (std::string const &path : m_interior) {
            Expect(path, false);
            Expect(path, true);
        }
    }

    std::string Wrong() const {
        return m_count == 0 ? "" : std::to_string(m_count) + " wrong answers, as for " + m_first;
    }

private:
    bool IsKnown(std::string const &path) const {
        std::string const folded = Folded(path);
        return m_listed.count(folded) || m_interior.count(folded) || folded.empty() ||
               folded.back() == '\\';
    }
    void Expect(std::string const &path, bool expected) {
        if (m_ask(path) != expected && m_count++ == 0)
            m_first = path;
    }

    Question const &m_ask;
    std::set<std::string> m_listed, m_interior;
    std::size_t m_count = 0;
    std::string m_first;
};

} // namespace

FamilyLists ListsOfFamily(int family) {
    constexpr FamilyLists lists[] = {{0, 0},     {102, 111}, {103, 112}, {105, 113},
                                     {104, 114}, {104, 114}, {101, 110}, {101, 110}};
    return lists[family];
}

std::string ReadListText(int id) {
    std::ifstream stream(QVLINKDB_LIST_TEXTS "/" + std::to_string(id) + ".txt", std::ios::binary);
    std::string text((std::istreambuf_iterator<char>(stream)), {});
    EXPECT_FALSE(text.empty()) << id;
    return text;
}

std::vector<std::string> ListLines(std::string const &text) {
    std::vector<std::string> lines;
    std::size_t start = 0;
    for (std::size_t end; (end = text.find("\r\n", start)) != std::string::npos; start = end + 2)
        lines.push_back(text.substr(start, end - start));
    return lines;
}

std::string ListRest(std::string const &text) {
    std::size_t const end = text.rfind("\r\n");
    return end == std::string::npos ? text : text.substr(end + 2);
}

std::string FilePath(std::string const &line, SystemFolders const &folders) {
    bool const isWindows = line[1] == 'W';
    return (isWindows ? folders.windows : folders.system) + "\\" +
           line.substr(isWindows ? windowsTag : systemTag);
}

std::vector<std::string> FilePaths(std::string const &text, SystemFolders const &folders) {
    std::vector<std::string> paths;
    for (std::string const &line : ListLines(text))
        paths.push_back(FilePath(line, folders));
    return paths;
}

std::string AskForAll(std::vector<std::string> const &listed, Question const &ask) {
    Questions questions(listed, ask);
    for (std::string const &path : listed)
        questions.AskForListed(path);
    for (std::string const &path : listed)
        questions.AskForNeighbours(path);
    questions.AskForInterior();
    return questions.Wrong();
}

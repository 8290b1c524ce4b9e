// What holds for the lists that are shipped, whatever stands in them; and what the library has
// of them in it.
#include "shipped_lists.h"
#include "stored_list.h"

#include "platform/winapi.h"

#include <algorithm>
#include <filesystem>
#include <map>

#include <gtest/gtest.h>

#include "platform/process.h"

namespace {

constexpr int fileLists[] = {101, 102, 103, 104, 105};
constexpr int keyLists[] = {110, 111, 112, 113, 114};
// A path of 260 characters isn't taken, and the tag is shorter than the folder that it stands for.
constexpr std::size_t longestLine = 249;
constexpr char windowsTag[] = "%WindowsDir%\\", systemTag[] = "%SystemDir%\\";
constexpr char lastLine[] = "%SystemDir%\\wmpscheme.xml";

bool BeginsWith(std::string const &text, std::string const &beginning) {
    return text.compare(0, beginning.size(), beginning) == 0;
}

std::string Lower(std::string text) {
    for (char &c : text)
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c;
    return text;
}

std::ptrdiff_t Backslashes(std::string const &text) {
    return std::count(text.begin(), text.end(), '\\');
}

std::string TailOf(std::string const &line) { return line.substr(line.find('\\') + 1); }

// With the last line of 105, which has no end.
std::vector<std::string> AllLines(int id) {
    std::string const text = ReadListText(id);
    std::vector<std::string> lines = ListLines(text);
    if (std::string const rest = ListRest(text); !rest.empty())
        lines.push_back(rest);
    return lines;
}

// What holds for a path in either kind of list.
void ExpectSound(int id, std::string const &line) {
    SCOPED_TRACE(std::to_string(id) + ": " + line);
    EXPECT_EQ(std::string::npos, line.find_first_of(std::string("\r\n\t\0", 4)));
    EXPECT_EQ(std::string::npos, line.find("\\\\"));
    EXPECT_NE('\\', line.back());
    EXPECT_NE(' ', line.front());
    EXPECT_NE(' ', line.back());
    EXPECT_GE(longestLine, line.size());
}

void ExpectNoDuplicates(int id) {
    std::map<std::string, int> counts;
    for (std::string const &line : AllLines(id))
        EXPECT_EQ(1, ++counts[Lower(line)]) << id << ": " << line;
}

// Resources of the shared library, by its module's handle.
class LibraryResources {
public:
    LibraryResources() {
        std::string const path =
            std::filesystem::path(ProgramPath()).replace_filename(LibraryFileName()).string();
        m_loaded = LoadModule(path);
        MEMORY_BASIC_INFORMATION information{};
        if (m_loaded && win::VirtualQuery(FindSymbol(m_loaded, "IsProtectedPath"), &information,
                                          sizeof information))
            m_module = static_cast<HMODULE>(information.AllocationBase);
    }
    ~LibraryResources() { UnloadModule(m_loaded); }
    LibraryResources(LibraryResources const &) = delete;
    LibraryResources &operator=(LibraryResources const &) = delete;

    HRSRC Find(char const *type, int id) const {
        return win::FindResourceA(m_module, MAKEINTRESOURCEA(static_cast<WORD>(id)), type);
    }
    // Empty if there is none.
    std::string Bytes(char const *type, int id) const {
        HRSRC const found = Find(type, id);
        HGLOBAL const loaded = found ? win::LoadResource(m_module, found) : nullptr;
        auto const *const bytes = static_cast<char const *>(win::LockResource(loaded));
        return bytes ? std::string(bytes, win::SizeofResource(m_module, found)) : std::string();
    }

private:
    void *m_loaded;
    HMODULE m_module = nullptr;
};

void ExpectStored(LibraryResources const &resources, char const *type, int id) {
    std::string const stored = resources.Bytes(type, id);
    std::string const text = ReadListText(id);
    ASSERT_LT(4u, stored.size()) << id;
    std::size_t length = 0;
    for (std::size_t i = 4; i > 0; --i)
        length = length << 8 | static_cast<unsigned char>(stored[i - 1]);
    EXPECT_EQ(text.size(), length) << id;
    EXPECT_EQ(text, lists::Unpack(stored)) << id;
}

} // namespace

TEST(FileLists, Have_a_tag_and_a_relative_path_in_each_line) {
    for (int const id : fileLists)
        for (std::string const &line : AllLines(id)) {
            EXPECT_TRUE(BeginsWith(line, windowsTag) || BeginsWith(line, systemTag)) << line;
            ExpectSound(id, line);
            EXPECT_EQ(std::string::npos, TailOf(line).find_first_of(":/*?\"<>|%")) << line;
        }
}

TEST(FileLists, Tell_each_file_once) {
    for (int const id : fileLists)
        ExpectNoDuplicates(id);
}

TEST(FileLists, End_in_a_line_end_but_for_that_of_Windows_Me) {
    for (int const id : fileLists)
        EXPECT_EQ(id == 105 ? lastLine : "", ListRest(ReadListText(id))) << id;
}

TEST(FileLists, Of_Windows_Me_holds_what_lies_directly_in_the_two_folders) {
    for (std::string const &line : AllLines(105))
        EXPECT_EQ(0, Backslashes(TailOf(line))) << line;
}

TEST(KeyLists, Have_a_path_with_a_short_root_in_each_line_but_one) {
    for (int const id : keyLists) {
        int empty = 0;
        for (std::string const &line : AllLines(id)) {
            empty += line.empty();
            if (line.empty())
                continue;
            std::string const root = line.substr(0, line.find('\\'));
            EXPECT_TRUE(root == "HKLM" || root == "HKCU") << id << ": " << line;
            ExpectSound(id, line);
        }
        EXPECT_EQ(1, empty) << id;
        EXPECT_EQ("", ListRest(ReadListText(id))) << id;
    }
}

TEST(KeyLists, Have_the_empty_line_between_the_two_roots) {
    for (int const id : keyLists) {
        char const *root = "HKLM";
        std::map<std::string, int> lines;
        for (std::string const &line : AllLines(id)) {
            if (line.empty())
                root = "HKCU";
            else
                EXPECT_TRUE(BeginsWith(line, root)) << id << ": " << line;
            ++lines[line.empty() ? "empty" : root];
        }
        EXPECT_LT(0, lines["HKLM"]) << id;
        EXPECT_LT(0, lines["HKCU"]) << id;
    }
}

TEST(KeyLists, Tell_each_key_once_and_none_behind_what_is_below_it) {
    for (int const id : keyLists) {
        ExpectNoDuplicates(id);
        std::map<std::string, bool> passed; // as the interior of a line
        for (std::string const &line : AllLines(id)) {
            std::string at = Lower(line);
            EXPECT_FALSE(!line.empty() && passed.count(at)) << id << ": " << line;
            for (std::size_t end; (end = at.find_last_of('\\')) != std::string::npos;)
                passed[at = at.substr(0, end)] = true;
        }
    }
}

TEST(StoredLists, Of_the_library_are_the_texts) {
    LibraryResources const resources;
    for (int const id : fileLists)
        ExpectStored(resources, "WIN_FILES", id);
    for (int const id : keyLists)
        ExpectStored(resources, "WIN_REGS", id);
}

TEST(StoredLists, Of_the_library_are_ten) {
    LibraryResources const resources;
    for (int id = 0; id < 1000; ++id) {
        bool const files = std::count(std::begin(fileLists), std::end(fileLists), id) != 0;
        bool const keys = std::count(std::begin(keyLists), std::end(keyLists), id) != 0;
        EXPECT_EQ(files, resources.Find("WIN_FILES", id) != nullptr) << id;
        EXPECT_EQ(keys, resources.Find("WIN_REGS", id) != nullptr) << id;
    }
}

// From values to the files that they name.
#include "made_up_registry.h"
#include "scan_fixture.h"
#include "test_graph.h"

#include "answer/file_check.h"
#include "answer/place.h"
#include "model.h"
#include "platform/host.h"
#include "scan/named_files.h"

#include <algorithm>
#include <random>

using namespace qvlink;

namespace {

constexpr std::uint32_t ListOfTexts = 7;
constexpr std::uint32_t TextToExpand = 2;

using Paths = std::vector<std::string>;

class NamedFilesTest : public ScanTest {
protected:
    // The path of a file of the tree in the database's form.
    std::string InDatabase(std::string const &name) {
        return DatabasePath(*PlaceOfHostPath(Path(name).string()));
    }
    // The files that a value of this text refers to after a scan of the tree and the registry.
    std::set<std::string> Named(std::string const &data, std::uint32_t type = 1,
                                std::string const &value = "v") {
        m_registry.Remove("HKCU\\A");
        m_registry.PutText("HKCU\\A", value, data, type);
        ScanKeys(m_registry, {"HKCU"}, {""});
        return Graph().From("HKCU\\A:" + value);
    }
    static std::set<std::string> To(std::string const &name) { return {"-refers-> " + name}; }

    MadeUpRegistry m_registry;
};

std::set<std::string> const Nothing;

} // namespace

TEST_F(NamedFilesTest, The_whole_text_may_be_a_path) {
    Write("a b.exe", "1");
    Write("a", "1");
    std::string const path = InDatabase("a b.exe");
    EXPECT_EQ(Named(path), To("a b.exe"));
    EXPECT_EQ(Named("  " + path + "\t"), To("a b.exe"));
    EXPECT_EQ(Named(path, TextToExpand), To("a b.exe"));
    EXPECT_EQ(Named(path, 3), Nothing) << "binary data are no text";
    EXPECT_EQ(Named(InDatabase("none.exe")), Nothing);
    EXPECT_EQ(Named("a b.exe"), Nothing) << "a name without a folder";
    EXPECT_EQ(Named(""), Nothing);
}

TEST_F(NamedFilesTest, Case_and_the_kind_of_slash_make_no_difference) {
    Write("Folder/File.exe", "1");
    std::string const path = InDatabase("Folder/File.exe");
    EXPECT_EQ(Named(path.substr(0, path.size() - 8) + "FILE.EXE"), To("Folder/File.exe"));
    std::string slashes = path;
    std::replace(slashes.begin(), slashes.end(), '\\', '/');
    EXPECT_EQ(Named(slashes), To("Folder/File.exe"));
    EXPECT_EQ(Named(std::string(1, static_cast<char>(path[0] + 32)) + path.substr(1)),
              To("Folder/File.exe"));
}

TEST_F(NamedFilesTest, Folders_are_not_named) {
    Write("folder/a", "1");
    EXPECT_EQ(Named(InDatabase("folder")), Nothing);
    EXPECT_EQ(Named(InDatabase("folder") + "\\"), Nothing);
    EXPECT_EQ(Named(InDatabase("folder") + " " + InDatabase("folder/a")), Nothing);
}

TEST_F(NamedFilesTest, What_stands_in_quotes_at_the_beginning_counts_alone) {
    Write("a b.exe", "1");
    Write("a", "1");
    std::string const path = InDatabase("a b.exe");
    EXPECT_EQ(Named('"' + path + "\" \"%1\""), To("a b.exe"));
    EXPECT_EQ(Named('"' + path), To("a b.exe"));
    EXPECT_EQ(Named('"' + InDatabase("a x.exe") + '"'), Nothing);
    EXPECT_EQ(Named("run \"" + path + '"'), Nothing) << "arguments aren't looked at";
}

TEST_F(NamedFilesTest, Arguments_may_stand_behind_a_blank_or_comma) {
    Write("my programs/a.exe", "1");
    std::string const path = InDatabase("my programs/a.exe");
    EXPECT_EQ(Named(path + " /q %1 " + InDatabase("x")), To("my programs/a.exe"));
    EXPECT_EQ(Named(path + ",-101"), To("my programs/a.exe"));
    EXPECT_EQ(Named('@' + path + ",-101"), To("my programs/a.exe"));
    EXPECT_EQ(Named(path + "x"), Nothing);
    Write("my", "1");
    EXPECT_EQ(Named(path + " /q"), To("my")) << "as the system starts programs";
    EXPECT_EQ(Named(path), To("my programs/a.exe"));
}

TEST_F(NamedFilesTest, Each_text_of_several_names_a_file) {
    Write("a", "1");
    Write("b", "1");
    std::string const texts = InDatabase("a") + '\0' + InDatabase("x") + '\0' + InDatabase("b") +
                              '\0' + InDatabase("a") + '\0';
    EXPECT_EQ(Named(texts, ListOfTexts), (std::set<std::string>{"-refers-> a", "-refers-> b"}));
    EXPECT_EQ(Named(InDatabase("a") + '\0' + InDatabase("b"), 1), To("a"));
}

TEST_F(NamedFilesTest, Variables_of_the_registry_are_expanded) {
    Write("pf/a.exe", "1");
    std::string const key = "HKLM\\Software\\Microsoft\\Windows\\CurrentVersion";
    m_registry.PutText(key, "ProgramFilesDir", InDatabase("pf"));
    m_registry.PutText(key, "ProgramFilesDir (x86)", "%OTHER%", TextToExpand);
    m_registry.PutText("HKLM\\System\\CurrentControlSet\\Control\\Session Manager\\Environment",
                       "Other", "%programfiles%", TextToExpand);
    EXPECT_EQ(Named("%ProgramFiles%\\a.exe", TextToExpand), To("pf/a.exe"));
    EXPECT_EQ(Named("%PROGRAMFILES%\\a.exe"), To("pf/a.exe"));
    EXPECT_EQ(Named("\"%ProgramFiles(x86)%\\a.exe\" %1"), To("pf/a.exe"));
    EXPECT_EQ(Named("%nosuch%" + InDatabase("pf/a.exe")), Nothing);
    EXPECT_EQ(Named("%ProgramFiles\\a.exe"), Nothing);
}

TEST_F(NamedFilesTest, Variables_in_a_circle_come_to_an_end) {
    std::string const key =
        "HKLM\\System\\CurrentControlSet\\Control\\Session Manager\\Environment";
    m_registry.PutText(key, "a", "%b%%b%%b%%b%%b%%b%%b%%b%%b%%b%%b%%b%%b%");
    m_registry.PutText(key, "b", "%a%%a%%a%%a%%a%%a%%a%%a%%a%%a%%a%%a%%a%");
    std::string text;
    for (int i = 0; i < 1000; ++i) {
        text += "%a%";
    }
    EXPECT_EQ(Named(text), Nothing);
}

TEST_F(NamedFilesTest, Whatever_texts_hold_the_graph_is_sound_and_a_second_scan_changes_nothing) {
    Write("a", "1");
    Write("b c/d.exe", "1");
    std::mt19937 random(11);
    Paths const pieces{InDatabase("a"),
                       InDatabase("b c/d.exe"),
                       "%windir%",
                       "%SystemRoot",
                       "%",
                       "\"",
                       " ",
                       ",",
                       "@",
                       "\\??\\",
                       "\\SystemRoot\\",
                       "C:",
                       "\\",
                       "/",
                       "..",
                       std::string(1, '\0'),
                       std::string(1, '\xff'),
                       std::string(300, 'x')};
    for (int i = 0; i < 3000; ++i) {
        std::string text;
        for (std::size_t count = random() % 7; count > 0; --count) {
            text += pieces[random() % pieces.size()];
        }
        std::string data = Stored(text);
        data.resize(random() % 8 == 0 ? random() % (data.size() + 1) : data.size());
        m_registry.Put("HKCU\\A", std::to_string(i), data,
                       static_cast<std::uint32_t>(1 + random() % 7));
    }
    ScanSummary const first = ScanKeys(m_registry, {"HKCU"}, {""});
    EXPECT_EQ(first.values, 3000U);
    EXPECT_GT(first.references, 20U) << "too few to say anything";
    Bytes const bytes = File();
    EXPECT_EQ(
        CheckFile({reinterpret_cast<const char *>(bytes.data()), bytes.size()}).problems.size(),
        0U);
    ScanSummary const second = ScanKeys(m_registry, {"HKCU"}, {""});
    EXPECT_FALSE(second.saved);
    EXPECT_EQ(second.references, first.references);
}

TEST_F(NamedFilesTest, A_link_goes_when_the_text_or_the_file_does_and_comes_back_with_a_scan) {
    Write("a", "1");
    EXPECT_EQ(Named(InDatabase("a")), To("a"));
    Remove("a");
    Scan();
    EXPECT_EQ(Graph().From("HKCU\\A:v"), Nothing);
    Write("a", "1");
    Scan();
    EXPECT_EQ(Graph().From("HKCU\\A:v"), Nothing);
    ScanSummary const summary = ScanKeys(m_registry, {"HKCU"});
    EXPECT_EQ(summary.references, 1U);
    EXPECT_TRUE(summary.saved);
    EXPECT_EQ(Graph().From("HKCU\\A:v"), To("a"));
    m_registry.PutText("HKCU\\A", "v", "nothing");
    ScanKeys(m_registry, {"HKCU"});
    EXPECT_EQ(Graph().From("HKCU\\A:v"), Nothing);
}

TEST_F(NamedFilesTest, A_second_scan_makes_no_second_link) {
    Write("a", "1");
    Named(InDatabase("a"));
    EXPECT_FALSE(ScanKeys(m_registry, {"HKCU"}).saved);
}

TEST_F(NamedFilesTest, Folders_may_be_symbolic_links_and_so_may_the_file) {
    Write("real/a", "1");
    if (!Link("folder", "real") || !Link("real/link", "a")) {
        GTEST_SKIP() << "symbolic links can't be made here";
    }
    EXPECT_EQ(Named(InDatabase("folder/a")), To("real/a"));
    EXPECT_EQ(Named(InDatabase("folder/link")), To("real/link"));
}

TEST_F(NamedFilesTest, Paths_of_the_kernel_begin_in_its_own_ways) {
    Write("a", "1");
    EXPECT_EQ(Named("\\??\\" + InDatabase("a")), To("a"));
    EXPECT_EQ(Named("\\\\?\\" + InDatabase("a")), To("a"));
    EXPECT_EQ(Named("\\" + InDatabase("a")), Nothing);
}

// On a graph of a system's own folder.
class NamedSystemFilesTest : public testing::Test {
protected:
    NamedSystemFilesTest() {
        m_graph.File("C:\\windows\\system32\\drivers\\x.sys");
        m_graph.File("C:\\windows\\system32\\a.dll");
    }

    Paths Named(std::string const &text, std::string const &value = "v") {
        NamedFiles files(m_graph.Database(),
                         ReadVariables(m_registry, {"C:\\windows", "C:\\windows\\system32"}));
        Paths paths;
        for (CQVUObject *const file : files.Of({value, 2, Stored(text)})) {
            paths.push_back(PathOf(m_graph.Database(), file));
        }
        return paths;
    }

    TestGraph m_graph;
    MadeUpRegistry m_registry;
};

TEST_F(NamedSystemFilesTest, The_system_tells_its_own_folders) {
    Paths const dll{"C:\\windows\\system32\\a.dll"};
    EXPECT_EQ(Named("%SystemRoot%\\System32\\a.dll"), dll);
    EXPECT_EQ(Named("%windir%\\system32\\A.DLL,-5"), dll);
    EXPECT_EQ(Named("%SystemDrive%\\windows\\system32\\a.dll"), dll);
    m_registry.PutText("HKLM\\System\\CurrentControlSet\\Control\\Session Manager\\Environment",
                       "windir", "D:\\other");
    EXPECT_EQ(Named("%windir%\\system32\\a.dll"), dll) << "what the system says of itself counts";
}

TEST_F(NamedSystemFilesTest, The_kernel_takes_paths_from_the_folder_of_the_system) {
    Paths const driver{"C:\\windows\\system32\\drivers\\x.sys"};
    EXPECT_EQ(Named("\\SystemRoot\\system32\\drivers\\x.sys"), driver);
    EXPECT_EQ(Named("system32\\drivers\\x.sys", "ImagePath"), driver);
    EXPECT_EQ(Named("System32\\DRIVERS\\x.sys", "imagepath"), driver);
    EXPECT_EQ(Named("system32\\drivers\\x.sys"), Paths());
    EXPECT_EQ(Named("\\SystemRootX\\system32\\drivers\\x.sys"), Paths());
}

TEST_F(NamedSystemFilesTest, A_bare_name_is_not_linked) {
    EXPECT_EQ(Named("a.dll"), Paths());
    EXPECT_EQ(Named("C:a.dll"), Paths());
    EXPECT_EQ(Named("C:\\"), Paths());
    EXPECT_EQ(Named("D:\\a.dll"), Paths());
}

TEST_F(NamedSystemFilesTest, The_exact_spelling_wins_among_names_that_differ_in_case_alone) {
    CQVUObject *const upper = m_graph.Database().AddObject("A.DLL", OBJ_FILE, 0, 0, nullptr, 1);
    m_graph.Folder("C:\\windows\\system32")->LinkTo(upper, LINK_PARENT);
    EXPECT_EQ(Named("C:\\windows\\system32\\A.DLL"), Paths{"C:\\windows\\system32\\A.DLL"});
    EXPECT_EQ(Named("C:\\windows\\system32\\a.dll"), Paths{"C:\\windows\\system32\\a.dll"});
    EXPECT_EQ(Named("C:\\windows\\system32\\a.Dll"), Paths{"C:\\windows\\system32\\a.dll"});
}

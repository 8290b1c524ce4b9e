// The library loaded from a folder with this or that in the place of the decompressor, and
// loaded again: this program isn't linked to it.
#include "roles.h"
#include "shipped_lists.h"
#include "temp_folder.h"

#include <cstdio>
#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "platform/module_file.h"
#include "platform/own_folders.h"
#include "platform/process.h"
#include "platform/system_version.h"

namespace fs = std::filesystem;

namespace {

constexpr int notLoaded = 99;
constexpr char decompressor[] = "ziplib" MODULE_ENDING;

fs::path BesideThisProgram(std::string const &name) {
    return fs::path(ProgramPath()).replace_filename(name);
}

// The library loaded by hand.
class Library {
public:
    explicit Library(fs::path path) : m_path(std::move(path)) {
        m_module = LoadModule(m_path.string());
        if (m_module)
            m_ask =
                reinterpret_cast<int (*)(char const *)>(FindSymbol(m_module, "IsProtectedPath"));
    }
    ~Library() {
        if (m_module)
            UnloadModule(m_module);
    }
    Library(Library const &) = delete;
    Library &operator=(Library const &) = delete;

    explicit operator bool() const { return m_ask != nullptr; }
    int Ask(std::string const &path) const { return m_ask(path.c_str()); }

private:
    fs::path m_path;
    void *m_module;
    int (*m_ask)(char const *) = nullptr;
};

// Loads a library with both outputs going to files, and asks twice for a path: 10 for the first
// answer and 1 for the second.
Role const askLibrary("ask-library", [](Arguments const &arguments) -> int {
    std::string const output = arguments.at(1);
    if (!std::freopen((output + ".out").c_str(), "w", stdout) ||
        !std::freopen((output + ".err").c_str(), "w", stderr))
        return notLoaded;
    Library const library(arguments.at(0));
    if (!library)
        return notLoaded;
    int const first = library.Ask(arguments.at(2));
    return 10 * first + library.Ask(arguments.at(2));
});

// Loads the library twice. The argument is a listed path, and the folder of it isn't listed.
Role const reload("reload", [](Arguments const &arguments) -> int {
    fs::path const path = BesideThisProgram(LibraryFileName());
    std::string const listed = arguments.at(0), folder = arguments.at(1);
    for (int round = 0; round < 3; ++round) {
        {
            Library const library(path);
            if (!library || library.Ask(listed) != 1 || library.Ask(folder) != 0 ||
                library.Ask(folder) != 1)
                return 1;
            if (IsModuleLoaded(BesideThisProgram(decompressor).string()))
                return 2;
        }
        if (IsModuleLoaded(path.string()))
            return 3;
    }
    return 0;
});

// A folder with a copy of the library.
class LibraryFolder {
public:
    LibraryFolder() {
        std::ofstream(m_prefix.Path() / "platform.ini") << "version=2.5.1\n";
        UsePrefixFromNowOn(m_prefix.Directory().c_str());
        fs::copy_file(BesideThisProgram(LibraryFileName()), m_folder.Path() / LibraryFileName());
    }

    void Place(std::string const &module) const {
        fs::copy_file(BesideThisProgram(module + MODULE_ENDING), m_folder.Path() / decompressor);
    }
    void PlaceText() const {
        WriteBytes(m_folder.Path() / decompressor,
                   BytesOf("This is a text, and long enough to be read as the start of a module, "
                           "which it isn't."));
    }
    void PlaceFolder() const { fs::create_directory(m_folder.Path() / decompressor); }

    // What a process gets that loads the library; it may say nothing.
    long Ask(std::string const &path) const {
        std::string const output = (m_prefix.Path() / "output").string();
        fs::path const start = fs::current_path();
        fs::current_path(fs::path(ProgramPath()).parent_path());
        long const answer =
            RunRole("ask-library", {(m_folder.Path() / LibraryFileName()).string(), output, path});
        fs::current_path(start);
        EXPECT_EQ(Bytes{}, ReadBytes(output + ".out"));
        EXPECT_EQ(Bytes{}, ReadBytes(output + ".err"));
        return answer;
    }

private:
    TempFolder m_prefix, m_folder;
};

std::string ListedPath() { return FilePath(ListLines(ReadListText(101)).front(), OwnFolders()); }

std::string StandInPath() { return OwnFolders().windows + "\\stand-in.txt"; }

} // namespace

TEST(LoadedLibrary, With_the_decompressor_beside_it_knows_its_lists) {
    LibraryFolder const folder;
    folder.Place("ziplib");
    EXPECT_EQ(11, folder.Ask(ListedPath()));
}

TEST(LoadedLibrary, Without_the_decompressor_knows_nothing_and_says_nothing) {
    LibraryFolder const folder;
    EXPECT_EQ(0, folder.Ask(ListedPath()));
    EXPECT_EQ(0, folder.Ask(OwnFolders().windows));
    EXPECT_EQ(1, folder.Ask("")); // asking marks the root all the same
}

TEST(LoadedLibrary, With_a_text_or_folder_for_a_decompressor_knows_nothing) {
    LibraryFolder const text, other;
    text.PlaceText();
    EXPECT_EQ(0, text.Ask(ListedPath()));
    other.PlaceFolder();
    EXPECT_EQ(0, other.Ask(ListedPath()));
}

TEST(LoadedLibrary, With_a_module_that_lacks_the_entry_knows_nothing) {
    LibraryFolder const folder;
    folder.Place("protect_other_entry");
    EXPECT_EQ(0, folder.Ask(ListedPath()));
    EXPECT_EQ(0, folder.Ask(StandInPath()));
}

TEST(LoadedLibrary, Takes_a_text_only_if_the_result_is_above_0) {
    for (char const *const module : {"protect_result_zero", "protect_result_minus"}) {
        LibraryFolder const folder;
        folder.Place(module);
        EXPECT_EQ(0, folder.Ask(StandInPath())) << module;
    }
    LibraryFolder const folder;
    folder.Place("protect_result_one");
    EXPECT_EQ(11, folder.Ask(StandInPath()));
}

TEST(LoadedLibrary, Comes_and_goes_with_its_trees_and_leaves_no_module) {
    LibraryFolder const folder; // for its settings
    EXPECT_EQ(0, RunRole("reload", {ListedPath(), OwnFolders().windows}));
}

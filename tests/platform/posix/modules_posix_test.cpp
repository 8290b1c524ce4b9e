// Modules here: files that come and go, and what looks like a module.
#include "../services.h"

#include "temp_folder.h"

#include <sys/stat.h>

#include "platform/process.h"

namespace fs = std::filesystem;

namespace {

fs::path BesideProgram(std::string const &name) {
    return fs::path(ProgramPath()).replace_filename(name);
}

// A copy of the small module, beside the program under another name.
class Copy {
public:
    explicit Copy(std::string const &name) : m_path(BesideProgram(name)) {
        fs::remove(m_path);
        fs::copy_file(BesideProgram("platform_first.dll.so"), m_path);
    }
    ~Copy() { fs::remove(m_path); }
    Copy(Copy const &) = delete;
    Copy &operator=(Copy const &) = delete;

    fs::path const &Path() const { return m_path; }

private:
    fs::path m_path;
};

} // namespace

TEST(ModulesHere, are_gone_when_their_file_is_deleted) {
    Copy const copy("platform_deleted.dll.so");
    HMODULE const module = win::LoadLibraryA("platform_deleted.dll");
    ASSERT_NE(nullptr, module);
    EXPECT_EQ(module, win::GetModuleHandleA("platform_deleted.dll"));
    fs::remove(copy.Path());
    EXPECT_FAILS_WITH(126, win::GetModuleHandleA("platform_deleted.dll"));
}

TEST(ModulesHere, are_gone_when_their_file_is_renamed) {
    Copy const copy("platform_renamed.dll.so");
    ASSERT_NE(nullptr, win::LoadLibraryA("platform_renamed.dll"));
    fs::path const other = BesideProgram("platform_renamed_away.so");
    fs::rename(copy.Path(), other);
    EXPECT_FAILS_WITH(126, win::GetModuleHandleA("platform_renamed.dll"));
    fs::rename(other, copy.Path());
    EXPECT_NE(nullptr, win::GetModuleHandleA("platform_renamed.dll"));
}

TEST(ModulesHere, are_found_by_files_in_any_case) {
    Copy const copy("Platform_CASE.Dll.So");
    EXPECT_NE(nullptr, win::LoadLibraryA("platform_case.dll"));
}

TEST(ModulesHere, a_dot_at_the_end_of_a_name_stands_for_no_ending) {
    Copy const copy("platform_plain.so");
    EXPECT_NE(nullptr, win::LoadLibraryA("platform_plain."));
    EXPECT_FAILS_WITH(126, win::LoadLibraryA("platform_plain"));
}

TEST(ModulesHere, a_pipe_or_folder_is_no_module) {
    fs::path const pipe = BesideProgram("platform_pipe.dll.so");
    fs::remove(pipe);
    ASSERT_EQ(0, mkfifo(pipe.c_str(), 0600));
    EXPECT_FAILS_WITH(126, win::LoadLibraryA("platform_pipe.dll"));
    fs::remove(pipe);
    fs::path const folder = BesideProgram("platform_folder.dll.so");
    fs::create_directory(folder);
    EXPECT_FAILS_WITH(126, win::LoadLibraryA("platform_folder.dll"));
    fs::remove(folder);
}

TEST(ModulesHere, an_entry_of_what_a_module_needs_isnt_its_own) {
    HMODULE const module = win::LoadLibraryA("platform_first.dll");
    ASSERT_NE(nullptr, module);
    EXPECT_FAILS_WITH(127, win::GetProcAddress(module, "__cxa_finalize"));
}

TEST(ModulesHere, a_cut_path_has_its_end) {
    char path[] = "!!!!!!!!";
    EXPECT_EQ(5u, win::GetModuleFileNameA(nullptr, path, 5));
    EXPECT_EQ('\0', path[4]);
    EXPECT_EQ('!', path[5]);
    EXPECT_EQ(0u, win::GetModuleFileNameA(nullptr, path, 0));
}

TEST(ModulesHere, ordinals_are_127) {
    HMODULE const module = win::LoadLibraryA("platform_first.dll");
    auto *const first = reinterpret_cast<const char *>(std::uintptr_t{1});
    EXPECT_FAILS_WITH(127, win::GetProcAddress(module, first));
    EXPECT_FAILS_WITH(127, win::GetProcAddress(module, nullptr));
}

TEST(ModulesHere, parts_of_a_module_have_their_protection) {
    static int const constant = 1;
    static int variable = 2;
    MEMORY_BASIC_INFORMATION information;
    ASSERT_TRUE(win::VirtualQuery(&variable, &information, sizeof information));
    EXPECT_EQ(4u, information.Protect);
    ASSERT_TRUE(win::VirtualQuery(&constant, &information, sizeof information));
    EXPECT_EQ(2u, information.Protect);
    EXPECT_EQ(0x80u, information.AllocationProtect);
    EXPECT_EQ(0u, reinterpret_cast<std::uintptr_t>(information.BaseAddress) % 4096);
    EXPECT_EQ(0u, information.RegionSize % 4096);
}

TEST(ModulesHere, are_found_by_paths_of_the_host_and_of_drives_in_any_case) {
    fs::path const folder = fs::path(ProgramPath()).parent_path();
    HMODULE const module = win::LoadLibraryA((folder / "platform_third.dll").c_str());
    ASSERT_NE(nullptr, module);
    std::string drive = "Z:" + folder.string() + "\\PLATFORM_Third";
    for (char &c : drive)
        c = c == '/' ? '\\' : c;
    EXPECT_EQ(module, win::LoadLibraryA(drive.c_str()));
    EXPECT_TRUE(win::FreeLibrary(module));
    EXPECT_TRUE(win::FreeLibrary(module));
    EXPECT_FAILS_WITH(126, win::LoadLibraryA((folder.string() + "/").c_str()));
    EXPECT_FAILS_WITH(126, win::LoadLibraryA("Q:\\platform_third.dll"));
}

TEST(ModulesHere, of_the_program_and_of_nobody_arent_freed) {
    EXPECT_FAILS_WITH(126, win::FreeLibrary(win::GetModuleHandleA(nullptr)));
    EXPECT_FAILS_WITH(126, win::FreeLibrary(nullptr));
}

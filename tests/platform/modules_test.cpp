// Modules, on both systems by the documented results and codes.
#include "services.h"

#include "temp_folder.h"

#include <cstring>

#include "module_names.h"
#include "platform/process.h"

namespace {

std::filesystem::path BesideProgram(std::string const &name) {
    return std::filesystem::path(ProgramPath()).replace_filename(name);
}

// A file beside the program that goes with the test.
class FileBeside {
public:
    FileBeside(std::string const &name, std::string const &text) : m_path(BesideProgram(name)) {
        WriteBytes(m_path, BytesOf(text));
    }
    ~FileBeside() { std::filesystem::remove(m_path); }
    FileBeside(FileBeside const &) = delete;
    FileBeside &operator=(FileBeside const &) = delete;

private:
    std::filesystem::path m_path;
};

// With the backslash at its end.
std::string FolderOf(HMODULE module) {
    char path[4096] = "";
    win::GetModuleFileNameA(module, path, sizeof path);
    return std::string(path).substr(0, std::string(path).find_last_of('\\') + 1);
}

int globalVariable = 1;

} // namespace

TEST(Modules, are_loaded_by_name_and_found_afterwards) {
    EXPECT_FAILS_WITH(126, win::GetModuleHandleA("platform_first.dll"));
    HMODULE const module = win::LoadLibraryA("platform_first.dll");
    ASSERT_NE(nullptr, module);
    EXPECT_EQ(module, win::GetModuleHandleA("platform_first.dll"));
    EXPECT_EQ(module, win::LoadLibraryA("platform_first.dll"));
    auto const answer = reinterpret_cast<int (*)()>(
        reinterpret_cast<void (*)()>(win::GetProcAddress(module, "Answer")));
    ASSERT_NE(nullptr, answer);
    EXPECT_EQ(42, answer());
}

TEST(Modules, names_have_no_case_and_need_no_ending) {
    HMODULE const module = win::LoadLibraryA("PLATFORM_Second");
    ASSERT_NE(nullptr, module);
    EXPECT_EQ(module, win::GetModuleHandleA("platform_second.DLL"));
    EXPECT_EQ(module, win::GetModuleHandleA("Platform_Second"));
}

TEST(Modules, a_missing_one_is_126) {
    EXPECT_FAILS_WITH(126, win::LoadLibraryA("platform_missing.dll"));
    EXPECT_FAILS_WITH(126, win::GetModuleHandleA("platform_missing.dll"));
}

TEST(Modules, a_file_that_isnt_one_is_193) {
    FileBeside const text("platform_text.dll" MODULE_ENDING, "This is a text, and long enough to "
                                                             "be read as the start of a program, "
                                                             "which it isn't.");
    EXPECT_FAILS_WITH(193, win::LoadLibraryA("platform_text.dll"));
    FileBeside const empty("platform_empty.dll" MODULE_ENDING, "");
    EXPECT_FAILS_WITH(193, win::LoadLibraryA("platform_empty.dll"));
}

TEST(Modules, a_missing_entry_is_127) {
    HMODULE const module = win::LoadLibraryA("platform_first.dll");
    ASSERT_NE(nullptr, module);
    EXPECT_FAILS_WITH(127, win::GetProcAddress(module, "Missing"));
    EXPECT_FAILS_WITH(127, win::GetProcAddress(module, "answer"));
    EXPECT_FAILS_WITH(127, win::GetProcAddress(module, "malloc"));
}

TEST(Modules, without_a_name_the_program_is_meant) {
    HMODULE const program = win::GetModuleHandleA(nullptr);
    ASSERT_NE(nullptr, program);
    MEMORY_BASIC_INFORMATION information;
    ASSERT_EQ(sizeof information,
              win::VirtualQuery(&globalVariable, &information, sizeof information));
    EXPECT_EQ(static_cast<void *>(program), information.AllocationBase);
    EXPECT_LE(static_cast<char *>(information.BaseAddress),
              reinterpret_cast<char *>(&globalVariable));
    EXPECT_GT(static_cast<char *>(information.BaseAddress) + information.RegionSize,
              reinterpret_cast<char *>(&globalVariable));
    EXPECT_EQ(0x1000u, information.State);
    EXPECT_EQ(0x1000000u, information.Type);
}

TEST(Modules, an_address_in_one_leads_to_its_handle) {
    HMODULE const module = win::LoadLibraryA("platform_first.dll");
    auto const answer = win::GetProcAddress(module, "Answer");
    MEMORY_BASIC_INFORMATION information;
    ASSERT_EQ(sizeof information, win::VirtualQuery(reinterpret_cast<void *>(answer), &information,
                                                    sizeof information));
    EXPECT_EQ(static_cast<void *>(module), information.AllocationBase);
    EXPECT_EQ(0x20u, information.Protect);
}

TEST(Modules, are_loaded_by_a_path) {
    HMODULE const program = win::GetModuleHandleA(nullptr);
    std::string const folder = FolderOf(program);
    HMODULE const module = win::LoadLibraryA((folder + "platform_third.dll").c_str());
    ASSERT_NE(nullptr, module);
    EXPECT_EQ(folder, FolderOf(module));
    EXPECT_NE(nullptr, win::GetProcAddress(module, "Answer"));
    EXPECT_EQ(module, win::GetModuleHandleA("platform_third.dll"));
    EXPECT_TRUE(win::FreeLibrary(module));
    EXPECT_FAILS_WITH(126, win::GetModuleHandleA("platform_third.dll"));
}

TEST(Modules, are_loaded_from_another_folder_by_a_path_only) {
    TempFolder const folder;
    std::filesystem::copy_file(BesideProgram("platform_third.dll" MODULE_ENDING),
                               folder.Path() / ("platform_moved.dll" MODULE_ENDING));
    EXPECT_FAILS_WITH(126, win::LoadLibraryA("platform_moved.dll"));
    std::string const path = folder.Directory() + "\\platform_moved.dll";
    HMODULE const module = win::LoadLibraryA(path.c_str());
    ASSERT_NE(nullptr, module);
    EXPECT_EQ(module, win::GetModuleHandleA(path.c_str()));
    EXPECT_TRUE(win::FreeLibrary(module));
}

TEST(Modules, a_path_leads_nowhere_else) {
    TempFolder const folder;
    EXPECT_FAILS_WITH(126,
                      win::LoadLibraryA((folder.Directory() + "\\platform_first.dll").c_str()));
    EXPECT_FAILS_WITH(
        126, win::LoadLibraryA((folder.Directory() + "\\none\\platform_first.dll").c_str()));
}

TEST(Modules, are_there_until_they_are_freed_as_often_as_they_were_loaded) {
    HMODULE const module = win::LoadLibraryA("platform_third.dll");
    ASSERT_NE(nullptr, module);
    EXPECT_EQ(module, win::LoadLibraryA("platform_third.dll"));
    EXPECT_TRUE(win::FreeLibrary(module));
    EXPECT_EQ(module, win::GetModuleHandleA("platform_third.dll"));
    EXPECT_TRUE(win::FreeLibrary(module));
    EXPECT_FAILS_WITH(126, win::GetModuleHandleA("platform_third.dll"));
    EXPECT_FAILS_WITH(126, win::FreeLibrary(module));
}

TEST(Modules, that_were_freed_can_be_loaded_again) {
    for (int round = 0; round < 3; ++round) {
        HMODULE const module = win::LoadLibraryA("platform_third.dll");
        ASSERT_NE(nullptr, module);
        EXPECT_NE(nullptr, win::GetProcAddress(module, "Answer"));
        EXPECT_TRUE(win::FreeLibrary(module));
    }
}

TEST(Modules, tell_the_path_of_their_file) {
    char path[260];
    HMODULE const module = win::LoadLibraryA("platform_first.dll");
    DWORD const length = win::GetModuleFileNameA(module, path, sizeof path);
    ASSERT_EQ(std::strlen(path), length);
    EXPECT_EQ(':', path[1]);
    EXPECT_EQ('\\', path[2]);
    EXPECT_EQ(0, win::_stricmp("platform_first.dll" MODULE_ENDING, std::strrchr(path, '\\') + 1));
    EXPECT_NE(INVALID_FILE_ATTRIBUTES, win::GetFileAttributesA(path));
}

TEST(Modules, cut_their_path_to_a_small_buffer_and_say_122) {
    char whole[260];
    DWORD const length = win::GetModuleFileNameA(nullptr, whole, sizeof whole);
    char path[260];
    std::memset(path, '!', sizeof path);
    win::SetLastError(0);
    EXPECT_EQ(5u, win::GetModuleFileNameA(nullptr, path, 5));
    EXPECT_EQ(122u, win::GetLastError());
    EXPECT_EQ(0, std::memcmp(whole, path, 4));
    EXPECT_EQ('!', path[5]);
    EXPECT_EQ(length, win::GetModuleFileNameA(nullptr, path, length + 1));
    win::SetLastError(0);
    EXPECT_EQ(length, win::GetModuleFileNameA(nullptr, path, length));
    EXPECT_EQ(122u, win::GetLastError());
}

TEST(Modules, what_isnt_loaded_has_no_path_and_no_entries) {
    auto const module = reinterpret_cast<HMODULE>(std::uintptr_t{0x10000});
    char path[260];
    EXPECT_FAILS_WITH(126, win::GetModuleFileNameA(module, path, sizeof path));
    EXPECT_FAILS_WITH(126, win::GetProcAddress(module, "Answer"));
    EXPECT_FAILS_WITH(126, win::DisableThreadLibraryCalls(module));
}

TEST(Modules, thread_notifications_can_be_switched_off) {
    HMODULE const module = win::LoadLibraryA(MODULE_WITHOUT_TLS);
    EXPECT_TRUE(win::DisableThreadLibraryCalls(module));
}

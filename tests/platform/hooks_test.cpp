// The hooks that let tests make services fail.
#include "sids.h"

#include "platform/testing.h"
#include "temp_folder.h"

#include <vector>

namespace {

using testing_hooks::Call;
using testing_hooks::Moment;

struct Seen {
    std::string service;
    Moment moment;
    std::string path;
};

struct Script {
    std::vector<Seen> seen;
    std::string failing; // this service fails
    DWORD code = 0;      // with this code
    DWORD most = ~DWORD{0};
};

bool Play(Call const &call, void *context) {
    auto &script = *static_cast<Script *>(context);
    script.seen.push_back({call.service, call.moment, call.path ? call.path : ""});
    if (call.moment == Moment::Before && call.size && *call.size > script.most)
        *call.size = script.most;
    if (call.moment == Moment::After)
        win::SetLastError(4711); // the caller isn't to see this
    if (call.moment == Moment::Before && call.service == script.failing) {
        win::SetLastError(script.code);
        return true;
    }
    return false;
}

class Hooks : public testing::Test {
protected:
    Hooks() { testing_hooks::SetHook(Play, &m_script); }
    ~Hooks() override {
        testing_hooks::SetHook(nullptr, nullptr);
        testing_hooks::SetVersion(0, 0, 0);
        testing_hooks::SetThreadGroups(nullptr);
        testing_hooks::SetProcessGroups(nullptr);
        testing_hooks::SetResources(nullptr, 0);
    }

    std::string At(std::string const &name) const { return m_folder.Directory() + "\\" + name; }

    TempFolder m_folder;
    Script m_script;
};

} // namespace

TEST_F(Hooks, see_a_call_before_and_after_it) {
    EXPECT_FALSE(win::DeleteFileA(At("x").c_str()));
    EXPECT_EQ(2u, win::GetLastError());
    ASSERT_EQ(2u, m_script.seen.size());
    EXPECT_EQ("DeleteFileA", m_script.seen[0].service);
    EXPECT_EQ(Moment::Before, m_script.seen[0].moment);
    EXPECT_EQ(At("x"), m_script.seen[0].path);
    EXPECT_EQ(Moment::After, m_script.seen[1].moment);
}

TEST_F(Hooks, make_a_call_fail_without_reaching_the_system) {
    m_script.failing = "CreateFileA";
    m_script.code = 112;
    EXPECT_EQ(INVALID_HANDLE_VALUE, OpenToWrite(At("x"), CREATE_ALWAYS));
    EXPECT_EQ(112u, win::GetLastError());
    EXPECT_FALSE(std::filesystem::exists(m_folder.Path() / "x"));
}

TEST_F(Hooks, make_every_service_fail_in_its_own_way) {
    m_script.code = 5;
    char buffer[10];
    unsigned short wide[1] = {'a'};
    DWORD count = 0;
    LARGE_INTEGER size;
    OSVERSIONINFOA version{};
    version.dwOSVersionInfoSize = sizeof version;
    ScopedHandle const file(OpenToWrite(At("x"), CREATE_ALWAYS));
    auto const failing = [&](const char *service) {
        m_script.failing = service;
        return true;
    };
    EXPECT_TRUE(failing("CreateMutexA") && !win::CreateMutexA(nullptr, FALSE, nullptr));
    EXPECT_TRUE(failing("CloseHandle") && !win::CloseHandle(file));
    EXPECT_TRUE(failing("ReadFile") && !win::ReadFile(file, buffer, 1, &count, nullptr));
    EXPECT_TRUE(failing("WriteFile") && !win::WriteFile(file, buffer, 1, &count, nullptr));
    EXPECT_TRUE(failing("SetFilePointerEx") &&
                !win::SetFilePointerEx(file, Offset(0), nullptr, FILE_BEGIN));
    EXPECT_TRUE(failing("GetFileSizeEx") && !win::GetFileSizeEx(file, &size));
    EXPECT_TRUE(failing("FlushFileBuffers") && !win::FlushFileBuffers(file));
    EXPECT_TRUE(failing("GetFileAttributesA") &&
                win::GetFileAttributesA(At("x").c_str()) == INVALID_FILE_ATTRIBUTES);
    EXPECT_TRUE(failing("SetFileAttributesA") &&
                !win::SetFileAttributesA(At("x").c_str(), FILE_ATTRIBUTE_NORMAL));
    EXPECT_TRUE(failing("DeleteFileA") && !win::DeleteFileA(At("x").c_str()));
    EXPECT_TRUE(failing("MoveFileExA") && !win::MoveFileExA(At("x").c_str(), At("y").c_str(), 0));
    WIN32_FIND_DATAA found;
    count = sizeof buffer;
    EXPECT_TRUE(failing("FindFirstFileA") &&
                win::FindFirstFileA(At("x").c_str(), &found) == INVALID_HANDLE_VALUE);
    EXPECT_EQ(At("x"), m_script.seen.back().path);
    EXPECT_TRUE(failing("FindClose") && !win::FindClose(nullptr));
    EXPECT_TRUE(failing("GetCurrentDirectoryA") && !win::GetCurrentDirectoryA(10, buffer));
    EXPECT_TRUE(failing("SetCurrentDirectoryA") && !win::SetCurrentDirectoryA("."));
    EXPECT_TRUE(failing("GetComputerNameA") && !win::GetComputerNameA(buffer, &count));
    EXPECT_EQ(sizeof buffer, count);
    EXPECT_TRUE(failing("GetSystemDirectoryA") && !win::GetSystemDirectoryA(buffer, 10));
    EXPECT_TRUE(failing("GetWindowsDirectoryA") && !win::GetWindowsDirectoryA(buffer, 10));
    EXPECT_TRUE(failing("GetVersionExA") && !win::GetVersionExA(&version));
    EXPECT_TRUE(failing("GetModuleHandleA") && !win::GetModuleHandleA(nullptr));
    EXPECT_TRUE(failing("LoadLibraryA") && !win::LoadLibraryA("x"));
    EXPECT_TRUE(failing("GetProcAddress") && !win::GetProcAddress(nullptr, "x"));
    EXPECT_TRUE(failing("WideCharToMultiByte") &&
                !win::WideCharToMultiByte(1252, 0, wide, 1, buffer, 10, nullptr, nullptr));
    EXPECT_TRUE(failing("MultiByteToWideChar") &&
                !win::MultiByteToWideChar(1252, 0, "a", 1, wide, 1));
    EXPECT_TRUE(failing("FormatMessageA") &&
                !win::FormatMessageA(4352, nullptr, 2, 1024, buffer, 0, nullptr));
    SID_IDENTIFIER_AUTHORITY authority{};
    HANDLE token = nullptr;
    PSID sid = nullptr;
    EXPECT_TRUE(failing("OpenProcessToken") &&
                !win::OpenProcessToken(win::GetCurrentProcess(), 8, &token));
    EXPECT_TRUE(failing("OpenThreadToken") &&
                !win::OpenThreadToken(win::GetCurrentThread(), 8, FALSE, &token));
    EXPECT_TRUE(failing("GetTokenInformation") &&
                !win::GetTokenInformation(token, TokenGroups, nullptr, 0, &count));
    EXPECT_TRUE(failing("AllocateAndInitializeSid") &&
                !win::AllocateAndInitializeSid(&authority, 1, 0, 0, 0, 0, 0, 0, 0, 0, &sid));
    EXPECT_EQ(5u, win::GetLastError());
    m_script.failing.clear();
}

TEST_F(Hooks, make_services_of_modules_and_resources_fail) {
    HMODULE const module = win::LoadLibraryA("platform_resources.dll");
    ASSERT_NE(nullptr, module);
    HRSRC const found = win::FindResourceA(module, MAKEINTRESOURCEA(7), "SOME_BYTES");
    HGLOBAL const loaded = win::LoadResource(module, found);
    ASSERT_NE(nullptr, loaded);
    char path[260];
    auto const failing = [&](const char *service) {
        m_script.failing = service;
        return true;
    };
    EXPECT_TRUE(failing("FindResourceA") &&
                !win::FindResourceA(module, MAKEINTRESOURCEA(7), "SOME_BYTES"));
    EXPECT_EQ("SOME_BYTES", m_script.seen.back().path);
    EXPECT_TRUE(failing("SizeofResource") && win::SizeofResource(module, found) == 0);
    EXPECT_TRUE(failing("LoadResource") && !win::LoadResource(module, found));
    EXPECT_TRUE(failing("LockResource") && !win::LockResource(loaded));
    EXPECT_TRUE(failing("FreeResource") && win::FreeResource(loaded));
    EXPECT_TRUE(failing("OleInitialize") && !SUCCEEDED(win::OleInitialize(nullptr)));
    EXPECT_TRUE(failing("GetModuleFileNameA") &&
                win::GetModuleFileNameA(module, path, sizeof path) == 0);
    EXPECT_TRUE(failing("FreeLibrary") && !win::FreeLibrary(module));
    m_script.failing = "OleUninitialize";
    std::size_t const before = m_script.seen.size();
    win::OleUninitialize();
    EXPECT_EQ(before + 1, m_script.seen.size()); // it didn't come to the system
    m_script.failing.clear();
    EXPECT_TRUE(win::FreeLibrary(module));
}

TEST_F(Hooks, make_services_of_the_registry_fail_with_their_code) {
    m_script.code = 1450;
    auto const failing = [&](const char *service) {
        m_script.failing = service;
        return true;
    };
    HKEY const root = HKEY_CURRENT_USER;
    HKEY opened = nullptr;
    HANDLE duplicate = nullptr;
    HANDLE const process = win::GetCurrentProcess();
    char name[4];
    DWORD size = sizeof name;
    EXPECT_TRUE(failing("RegOpenKeyExA") &&
                win::RegOpenKeyExA(root, "path", 0, KEY_READ, &opened) == 1450);
    EXPECT_EQ("path", m_script.seen.back().path);
    EXPECT_TRUE(failing("RegCreateKeyExA") &&
                win::RegCreateKeyExA(root, "made", 0, nullptr, 0, KEY_READ, nullptr, &opened,
                                     nullptr) == 1450);
    EXPECT_EQ("made", m_script.seen.back().path);
    EXPECT_TRUE(failing("RegCloseKey") && win::RegCloseKey(root) == 1450);
    EXPECT_TRUE(failing("RegQueryValueExA") &&
                win::RegQueryValueExA(root, "read", nullptr, nullptr, nullptr, nullptr) == 1450);
    EXPECT_EQ("read", m_script.seen.back().path);
    EXPECT_TRUE(failing("RegSetValueExA") &&
                win::RegSetValueExA(root, "written", 0, REG_SZ, nullptr, 0) == 1450);
    EXPECT_EQ("written", m_script.seen.back().path);
    EXPECT_TRUE(failing("RegDeleteValueA") && win::RegDeleteValueA(root, "value") == 1450);
    EXPECT_EQ("value", m_script.seen.back().path);
    EXPECT_TRUE(failing("RegDeleteKeyA") && win::RegDeleteKeyA(root, "key") == 1450);
    EXPECT_EQ("key", m_script.seen.back().path);
    EXPECT_TRUE(failing("RegEnumKeyExA") && win::RegEnumKeyExA(root, 0, name, &size, nullptr,
                                                               nullptr, nullptr, nullptr) == 1450);
    EXPECT_TRUE(failing("RegEnumValueA") && win::RegEnumValueA(root, 0, name, &size, nullptr,
                                                               nullptr, nullptr, nullptr) == 1450);
    EXPECT_TRUE(failing("DuplicateHandle") &&
                !win::DuplicateHandle(process, root, process, &duplicate, 0, TRUE, 2));
    EXPECT_EQ(1450u, win::GetLastError());
    EXPECT_EQ(nullptr, opened);
    m_script.failing.clear();
    // A call that is let through answers what the system does, and the last error is as it was.
    win::SetLastError(4712);
    EXPECT_EQ(6, win::RegCloseKey(nullptr));
    EXPECT_EQ(4712u, win::GetLastError());
}

TEST_F(Hooks, tell_resources_that_every_module_has) {
    testing_hooks::Resource const told[] = {{"SOME_BYTES", 7, "told", 4}, {"NEW", 65535, "", 0}};
    testing_hooks::SetResources(told, 2);
    HMODULE const module = win::LoadLibraryA("platform_resources.dll");
    for (HMODULE const of : {module, HMODULE{}}) {
        HRSRC const found = win::FindResourceA(of, MAKEINTRESOURCEA(7), "some_bytes");
        ASSERT_NE(nullptr, found);
        EXPECT_EQ(4u, win::SizeofResource(of, found));
        EXPECT_EQ(static_cast<const void *>(told[0].bytes),
                  win::LockResource(win::LoadResource(of, found)));
        EXPECT_NE(nullptr, win::FindResourceA(of, MAKEINTRESOURCEA(65535), "NEW"));
    }
    // Its own are still there.
    EXPECT_NE(nullptr, win::FindResourceA(module, MAKEINTRESOURCEA(65535), "SOME_BYTES"));
    testing_hooks::SetResources(nullptr, 0);
    HRSRC const own = win::FindResourceA(module, MAKEINTRESOURCEA(7), "SOME_BYTES");
    EXPECT_LT(100u, win::SizeofResource(module, own));
    EXPECT_FAILS_WITH(1813, win::FindResourceA(module, MAKEINTRESOURCEA(65535), "NEW"));
    win::FreeLibrary(module);
}

TEST_F(Hooks, cut_what_is_written_and_read) {
    ScopedHandle const file(OpenToWrite(At("x"), CREATE_ALWAYS));
    m_script.most = 3;
    char buffer[10] = "abcdef";
    DWORD count = 0;
    EXPECT_TRUE(win::WriteFile(file, buffer, 6, &count, nullptr));
    EXPECT_EQ(3u, count);
    EXPECT_TRUE(win::SetFilePointerEx(file, Offset(0), nullptr, FILE_BEGIN));
    m_script.most = 2;
    EXPECT_TRUE(win::ReadFile(file, buffer, 6, &count, nullptr));
    EXPECT_EQ(2u, count);
}

TEST_F(Hooks, tell_another_version) {
    OSVERSIONINFOA record{};
    record.dwOSVersionInfoSize = sizeof record;
    testing_hooks::SetVersion(1, 4, 10);
    EXPECT_TRUE(win::GetVersionExA(&record));
    EXPECT_EQ(1u, record.dwPlatformId);
    EXPECT_EQ(4u, record.dwMajorVersion);
    EXPECT_EQ(10u, record.dwMinorVersion);
    testing_hooks::SetVersion(0, 0, 0);
    EXPECT_TRUE(win::GetVersionExA(&record));
    EXPECT_EQ(2u, record.dwPlatformId);
}

TEST_F(Hooks, tell_other_groups_of_a_process) {
    ScopedSid const told(5, {32, 546});
    TOKEN_GROUPS groups{1, {{told.Get(), 16}}};
    testing_hooks::SetProcessGroups(&groups);
    {
        ScopedHandle const token(OpenOwnToken());
        GroupsOf const answer(token);
        ASSERT_EQ(1u, answer.Record().GroupCount);
        EXPECT_TRUE(win::EqualSid(told.Get(), answer.Record().Groups[0].Sid));
        EXPECT_EQ(16u, answer.Record().Groups[0].Attributes);
    }
    testing_hooks::SetProcessGroups(nullptr);
    ScopedHandle const token(OpenOwnToken());
    EXPECT_TRUE(GroupsOf(token).Has(ScopedSid(1, {0})));
}

TEST_F(Hooks, give_a_thread_a_token_with_groups_of_its_own) {
    ScopedSid const told(5, {32, 546});
    TOKEN_GROUPS groups{1, {{told.Get(), 7}}};
    testing_hooks::SetThreadGroups(&groups);
    HANDLE opened = nullptr;
    ASSERT_TRUE(win::OpenThreadToken(win::GetCurrentThread(), 8, FALSE, &opened));
    ScopedHandle const threads(opened);
    ScopedHandle const process(OpenOwnToken());
    EXPECT_TRUE(GroupsOf(threads).Has(told));
    EXPECT_FALSE(GroupsOf(threads).Has(ScopedSid(1, {0})));
    EXPECT_TRUE(GroupsOf(process).Has(ScopedSid(1, {0})));
    testing_hooks::SetThreadGroups(nullptr);
    EXPECT_FAILS_WITH(1008, win::OpenThreadToken(win::GetCurrentThread(), 8, FALSE, &opened));
}

// Lists of the machine itself.
#include "prefix.h"

#include <gtest/gtest.h>
#include <windows.h>

namespace {

bool HasLine(std::string const &text, std::string const &line) {
    auto const difference = lists::Compare(line + "\r\n", text);
    return difference.onlyInFirst.empty();
}

std::size_t Errors(std::string const &text, lists::Kind kind) {
    std::size_t errors = 0;
    for (lists::Finding const &finding : lists::Check(text, kind)) {
        errors += finding.isError ? 1 : 0;
    }
    return errors;
}

// A key of the user's that is a link; gone with the object.
class LinkKey {
public:
    LinkKey(const wchar_t *path, std::wstring const &target) : m_path(path) {
        HKEY key = nullptr;
        if (::RegCreateKeyExW(HKEY_CURRENT_USER, path, 0, nullptr,
                              REG_OPTION_CREATE_LINK | REG_OPTION_VOLATILE, KEY_ALL_ACCESS, nullptr,
                              &key, nullptr) == ERROR_SUCCESS) {
            m_works = ::RegSetValueExW(key, L"SymbolicLinkValue", 0, REG_LINK,
                                       reinterpret_cast<const BYTE *>(target.data()),
                                       static_cast<DWORD>(target.size() * sizeof(wchar_t))) ==
                      ERROR_SUCCESS;
            ::RegCloseKey(key);
        }
    }
    ~LinkKey() {
        // A link goes by the native call only; left alone, it goes with the session.
        HKEY key = nullptr;
        using Delete = LONG(WINAPI *)(HANDLE);
        auto const call = reinterpret_cast<Delete>(reinterpret_cast<void *>(
            ::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), "NtDeleteKey")));
        if (call && ::RegOpenKeyExW(HKEY_CURRENT_USER, m_path, REG_OPTION_OPEN_LINK, DELETE,
                                    &key) == ERROR_SUCCESS) {
            call(key);
            ::RegCloseKey(key);
        }
    }
    LinkKey(LinkKey const &) = delete;
    LinkKey &operator=(LinkKey const &) = delete;
    bool Works() const { return m_works; }

private:
    const wchar_t *m_path;
    bool m_works = false;
};

} // namespace

TEST(OwnLists, The_files_of_the_system_are_listed) {
    auto const capture = CaptureFiles("");
    EXPECT_TRUE(HasLine(capture.text, "%SystemDir%\\kernel32.dll"));
    EXPECT_TRUE(HasLine(capture.text, "%SystemDir%\\drivers\\etc\\hosts"));
    EXPECT_TRUE(HasLine(capture.text, "%WindowsDir%\\notepad.exe"));
    EXPECT_FALSE(HasLine(capture.text, "%WindowsDir%\\system32\\kernel32.dll"));
    EXPECT_EQ(0u, Errors(capture.text, lists::Kind::files));
}

TEST(OwnLists, The_keys_of_the_system_are_listed) {
    auto const capture = CaptureKeys("");
    EXPECT_TRUE(HasLine(capture.text, "HKLM\\Software\\Microsoft\\Windows\\CurrentVersion"));
    EXPECT_TRUE(HasLine(capture.text, "HKLM\\System\\CurrentControlSet\\Services"));
    EXPECT_TRUE(HasLine(capture.text, "HKLM\\System\\Select"));
    EXPECT_TRUE(HasLine(capture.text, "HKCU\\Control Panel\\Desktop"));
    EXPECT_EQ(0u, Errors(capture.text, lists::Kind::keys));
}

TEST(OwnLists, Patterns_take_out_keys) {
    auto const capture = CaptureKeys("", {"HKLM\\Software", "HKCU\\Control*"});
    EXPECT_FALSE(HasLine(capture.text, "HKLM\\Software"));
    EXPECT_FALSE(HasLine(capture.text, "HKLM\\Software\\Microsoft"));
    EXPECT_FALSE(HasLine(capture.text, "HKCU\\Control Panel"));
    EXPECT_TRUE(HasLine(capture.text, "HKLM\\System"));
}

TEST(OwnLists, A_link_to_a_key_of_the_machine_is_followed) {
    LinkKey const link(L"Software\\QVLinkDBLink",
                       L"\\Registry\\Machine\\System\\CurrentControlSet\\Control\\Nls");
    ASSERT_TRUE(link.Works());
    auto const capture = CaptureKeys("", {"HKLM\\Software"});
    EXPECT_TRUE(HasLine(capture.text, "HKCU\\Software\\QVLinkDBLink"));
    EXPECT_TRUE(HasLine(capture.text, "HKCU\\Software\\QVLinkDBLink\\Language"));
}

TEST(OwnLists, A_link_abroad_is_followed_once) {
    LinkKey const link(L"Software\\QVLinkDBLink", L"\\Registry\\User");
    ASSERT_TRUE(link.Works());
    auto const capture = CaptureKeys("", {"HKLM\\Software", "HKLM\\System"});
    EXPECT_TRUE(HasLine(capture.text, "HKCU\\Software\\QVLinkDBLink\\.Default"));
    EXPECT_TRUE(HasWords(capture.skipped, "a link to \\Registry\\User, which isn't among"));
}

TEST(OwnLists, Key_files_of_a_disk_are_refused) {
    Disk disk;
    disk.Put("Windows/System32/config/SYSTEM");
    std::string const why = Refusal(lists::Kind::keys, disk.Root());
    EXPECT_NE(std::string::npos, why.find("isn't read on Windows")) << why;
}

// The system's and the current folder, the computer's name and the version, on both systems
// by the documented results.
#include "services.h"

#include "temp_folder.h"

#include <cstring>

namespace {

using FolderCall = UINT (*)(char *, UINT);

class Folder : public testing::TestWithParam<FolderCall> {};

UINT SystemFolder(char *buffer, UINT size) { return win::GetSystemDirectoryA(buffer, size); }
UINT WindowsFolder(char *buffer, UINT size) { return win::GetWindowsDirectoryA(buffer, size); }

class CurrentFolder : public testing::Test {
protected:
    CurrentFolder() : m_start(std::filesystem::current_path()) {
        std::filesystem::create_directory(m_folder.Path() / "Sub");
        WriteBytes(m_folder.Path() / "file", {});
        std::filesystem::current_path(m_folder.Path());
    }
    ~CurrentFolder() override { std::filesystem::current_path(m_start); }

    static std::string Current() {
        char buffer[300] = "";
        DWORD const length = win::GetCurrentDirectoryA(sizeof buffer, buffer);
        EXPECT_EQ(std::strlen(buffer), length);
        return buffer;
    }

    TempFolder m_folder;
    std::filesystem::path m_start;
};

} // namespace

TEST_P(Folder, is_told_with_its_length) {
    char buffer[300];
    UINT const length = GetParam()(buffer, sizeof buffer);
    EXPECT_EQ(std::strlen(buffer), length);
    ASSERT_GT(length, 3u);
    EXPECT_EQ(':', buffer[1]);
    EXPECT_EQ('\\', buffer[2]);
    EXPECT_NE('\\', buffer[length - 1]);
}

TEST_P(Folder, needs_room_for_its_end) {
    char buffer[300];
    UINT const length = GetParam()(buffer, sizeof buffer);
    EXPECT_EQ(length, GetParam()(buffer, length + 1));
    buffer[0] = '!';
    EXPECT_EQ(length + 1, GetParam()(buffer, length));
    EXPECT_EQ(length + 1, GetParam()(buffer, 0));
    EXPECT_EQ('!', buffer[0]);
}

INSTANTIATE_TEST_SUITE_P(Both, Folder, testing::Values(SystemFolder, WindowsFolder));

TEST_F(CurrentFolder, is_told_on_a_drive_without_a_separator_at_its_end) {
    std::string const folder = Current();
    ASSERT_GT(folder.size(), 3u);
    EXPECT_EQ(":\\", folder.substr(1, 2));
    EXPECT_NE('\\', folder.back());
    EXPECT_EQ(m_folder.Path().filename().string(), folder.substr(folder.rfind('\\') + 1));
}

TEST_F(CurrentFolder, needs_room_for_its_end) {
    char buffer[300];
    auto const length = static_cast<DWORD>(Current().size());
    EXPECT_EQ(length, win::GetCurrentDirectoryA(length + 1, buffer));
    buffer[0] = '!';
    EXPECT_EQ(length + 1, win::GetCurrentDirectoryA(length, buffer));
    EXPECT_EQ('!', buffer[0]);
    EXPECT_EQ(length + 1, win::GetCurrentDirectoryA(0, nullptr));
}

TEST_F(CurrentFolder, changes_to_a_folder_and_back) {
    std::string const start = Current();
    for (const char *sub : {"Sub", "Sub\\", "Sub/", ".\\Sub", "Sub\\.\\..\\Sub"}) {
        EXPECT_TRUE(win::SetCurrentDirectoryA(sub)) << sub;
        EXPECT_EQ(start + "\\Sub", Current()) << sub;
        EXPECT_TRUE(win::SetCurrentDirectoryA(".."));
        EXPECT_EQ(start, Current());
    }
    EXPECT_TRUE(win::SetCurrentDirectoryA((start + "\\Sub").c_str()));
    EXPECT_EQ(start + "\\Sub", Current());
}

TEST_F(CurrentFolder, stays_where_there_is_no_other) {
    std::string const start = Current();
    EXPECT_FAILS_WITH(2, win::SetCurrentDirectoryA("nope"));
    EXPECT_FAILS_WITH(3, win::SetCurrentDirectoryA("nope\\nope"));
    EXPECT_FAILS_WITH(267, win::SetCurrentDirectoryA("file"));
    EXPECT_FAILS_WITH(3, win::SetCurrentDirectoryA("file\\x"));
    EXPECT_FAILS_WITH(3, win::SetCurrentDirectoryA("Q:\\"));
    EXPECT_FAILS_WITH(123, win::SetCurrentDirectoryA(""));
    EXPECT_FAILS_WITH(123, win::SetCurrentDirectoryA(nullptr));
    EXPECT_FAILS_WITH(123, win::SetCurrentDirectoryA("S*"));
    EXPECT_FAILS_WITH(123, win::SetCurrentDirectoryA("S?b"));
    EXPECT_FAILS_WITH(123, win::SetCurrentDirectoryA("a|b"));
    EXPECT_EQ(start, Current());
}

TEST(ComputerName, has_up_to_15_characters_and_is_told_with_their_count) {
    char buffer[16];
    DWORD size = sizeof buffer;
    EXPECT_TRUE(win::GetComputerNameA(buffer, &size));
    EXPECT_EQ(std::strlen(buffer), size);
    EXPECT_GT(size, 0u);
}

TEST(ComputerName, needs_room_for_its_end_and_tells_how_much) {
    char buffer[16];
    DWORD length = sizeof buffer;
    ASSERT_TRUE(win::GetComputerNameA(buffer, &length));
    DWORD size = length + 1;
    EXPECT_TRUE(win::GetComputerNameA(buffer, &size));
    EXPECT_EQ(length, size);
    buffer[0] = '!';
    for (DWORD const small : {DWORD{0}, DWORD{1}, length}) {
        size = small;
        EXPECT_FAILS_WITH(111, win::GetComputerNameA(buffer, &size));
        EXPECT_EQ(length + 1, size);
        EXPECT_EQ('!', buffer[0]);
    }
}

TEST(Version, is_told_to_a_record_of_148_bytes) {
    OSVERSIONINFOA record;
    std::memset(&record, 0x55, sizeof record);
    record.dwOSVersionInfoSize = 148;
    EXPECT_TRUE(win::GetVersionExA(&record));
    EXPECT_EQ(2u, record.dwPlatformId);
    EXPECT_GE(record.dwMajorVersion, 5u);
    EXPECT_LT(record.dwMajorVersion, 100u);
    EXPECT_EQ(148u, record.dwOSVersionInfoSize);
}

TEST(Version, a_record_of_another_size_is_refused_with_122) {
    OSVERSIONINFOA record{};
    for (DWORD const size : {0u, 147u, 149u}) {
        record.dwOSVersionInfoSize = size;
        EXPECT_FAILS_WITH(122, win::GetVersionExA(&record));
    }
}

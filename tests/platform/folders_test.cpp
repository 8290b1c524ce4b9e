// The system's folders and version, on both systems by the documented results.
#include "services.h"

#include <cstring>

namespace {

using FolderCall = UINT (*)(char *, UINT);

class Folder : public testing::TestWithParam<FolderCall> {};

UINT SystemFolder(char *buffer, UINT size) { return win::GetSystemDirectoryA(buffer, size); }
UINT WindowsFolder(char *buffer, UINT size) { return win::GetWindowsDirectoryA(buffer, size); }

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

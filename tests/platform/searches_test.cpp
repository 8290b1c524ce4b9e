// Searches for files, on both systems by the documented results.
#include "services.h"

#include "temp_folder.h"

#include <cstring>

namespace fs = std::filesystem;

namespace {

class Searches : public testing::Test {
protected:
    Searches() : m_start(fs::current_path()) {
        for (const char *name : {"alpha.TXT", "Beta.txt", "noext", "b.c.d", "_u", "Zed", "a[b"})
            WriteBytes(m_folder.Path() / name, BytesOf("12345"));
        fs::create_directory(m_folder.Path() / "Sub");
        WriteBytes(m_folder.Path() / "Sub" / "in.txt", {});
        fs::create_directory(m_folder.Path() / "Empty");
        fs::current_path(m_folder.Path());
    }
    ~Searches() override { fs::current_path(m_start); }

    // The name of the first entry, or the code in the place of it.
    static std::string First(std::string const &mask) {
        WIN32_FIND_DATAA data;
        std::memset(&data, 0x55, sizeof data);
        win::SetLastError(0);
        HANDLE const search = win::FindFirstFileA(mask.c_str(), &data);
        if (search == INVALID_HANDLE_VALUE)
            return std::to_string(win::GetLastError());
        EXPECT_TRUE(win::FindClose(search));
        return data.cFileName;
    }

    // That of the current drive.
    static std::string Root() {
        char buffer[300] = "";
        win::GetCurrentDirectoryA(sizeof buffer, buffer);
        return std::string(buffer, 3);
    }

    static WIN32_FIND_DATAA Record(const char *mask) {
        WIN32_FIND_DATAA data;
        std::memset(&data, 0x55, sizeof data);
        HANDLE const search = win::FindFirstFileA(mask, &data);
        EXPECT_NE(INVALID_HANDLE_VALUE, search);
        EXPECT_TRUE(win::FindClose(search));
        return data;
    }

    static ULONGLONG TimeOf(FILETIME const &time) {
        return ULONGLONG{time.dwHighDateTime} << 32 | time.dwLowDateTime;
    }

    TempFolder m_folder;
    fs::path m_start;
};

} // namespace

TEST_F(Searches, find_a_name_as_it_is_stored) {
    EXPECT_EQ("alpha.TXT", First("alpha.TXT"));
    EXPECT_EQ("alpha.TXT", First("ALPHA.txt"));
    EXPECT_EQ("Sub", First("sub"));
    EXPECT_EQ("in.txt", First("SUB\\IN.TXT"));
    EXPECT_EQ("in.txt", First("Sub/in.txt"));
    EXPECT_EQ("in.txt", First("Sub\\\\in.txt"));
    EXPECT_EQ("in.txt", First(".\\Sub\\..\\Sub\\in.txt"));
}

TEST_F(Searches, find_by_a_whole_path_as_well) {
    std::string const folder = m_folder.Directory();
    EXPECT_EQ("Beta.txt", First(folder + "\\Beta.txt"));
    EXPECT_EQ("in.txt", First(folder + "\\Sub\\i*"));
    EXPECT_EQ(m_folder.Path().filename().string(), First(folder));
}

TEST_F(Searches, tell_a_missing_name_with_2_and_a_missing_folder_with_3) {
    EXPECT_EQ("2", First("nope"));
    EXPECT_EQ("2", First("Sub\\nope"));
    EXPECT_EQ("2", First("nope*"));
    EXPECT_EQ("3", First("nope\\x"));
    EXPECT_EQ("3", First("nope\\*"));
    EXPECT_EQ("3", First("nope\\nope\\x"));
}

TEST_F(Searches, tell_an_empty_mask_and_none_with_3) {
    EXPECT_EQ("3", First(""));
    WIN32_FIND_DATAA data;
    win::SetLastError(0);
    EXPECT_EQ(INVALID_HANDLE_VALUE, win::FindFirstFileA(nullptr, &data));
    EXPECT_EQ(3u, win::GetLastError());
}

TEST_F(Searches, tell_a_mask_that_ends_in_a_separator_with_2) {
    for (const char *mask : {"Sub\\", "Sub/", "Sub\\\\", "\\", "Beta.txt\\", "*\\", "C:\\", "Q:\\"})
        EXPECT_EQ("2", First(mask)) << mask;
}

TEST_F(Searches, tell_a_drive_alone_with_2_and_what_is_on_an_unknown_one_with_3) {
    EXPECT_EQ("2", First("C:"));
    EXPECT_EQ("2", First("Q:"));
    EXPECT_EQ("3", First("Q:\\x"));
    EXPECT_EQ("3", First("Q:\\*"));
    EXPECT_EQ("3", First("Q:x"));
}

TEST_F(Searches, tell_wildcards_before_the_last_name_with_123) {
    for (const char *mask : {"S*\\in.txt", "S?b\\in.txt", "?\\x", "S*\\*"})
        EXPECT_EQ("123", First(mask)) << mask;
}

TEST_F(Searches, tell_signs_that_no_name_has_with_123) {
    if (UnderWine())
        GTEST_SKIP() << "Wine has 2 and 3";
    for (const char *mask : {"a|b", "Sub\\a|b", "*:", "ab:c", "a\x01*"})
        EXPECT_EQ("123", First(mask)) << mask;
}

TEST_F(Searches, tell_a_file_in_the_place_of_the_folder_with_267) {
    if (UnderWine())
        GTEST_SKIP() << "Wine has 123";
    EXPECT_EQ("267", First("Beta.txt\\x"));
    EXPECT_EQ("267", First("Beta.txt\\*"));
    EXPECT_EQ("3", First("Beta.txt\\x\\*"));
}

TEST_F(Searches, tell_dots_by_the_names_of_the_folders) {
    EXPECT_EQ(m_folder.Path().filename().string(), First("."));
    EXPECT_EQ(m_folder.Path().filename().string(), First("Sub\\.."));
    EXPECT_EQ("Sub", First("Sub\\."));
    fs::current_path(m_folder.Path() / "Sub");
    EXPECT_EQ("Sub", First("."));
    EXPECT_EQ(m_folder.Path().filename().string(), First(".."));
}

TEST_F(Searches, tell_dots_for_a_root_with_2) {
    EXPECT_EQ("2", First(Root() + "."));
    EXPECT_EQ("2", First(Root() + ".."));
}

TEST_F(Searches, find_the_folder_itself_first_but_not_in_a_root) {
    for (const char *mask : {"*", "*.*", "**", "?*", "*.*.*", "?", "*."})
        EXPECT_EQ(".", First(mask)) << mask;
    EXPECT_EQ(".", First("Empty\\*"));
    std::string const inRoot = First(Root() + "*");
    EXPECT_NE(".", inRoot);
    EXPECT_NE("..", inRoot);
    EXPECT_EQ(inRoot, First("\\*"));
    EXPECT_LT(2u, inRoot.size());
}

TEST_F(Searches, find_by_a_star) {
    EXPECT_EQ("Beta.txt", First("b*A.txt"));
    EXPECT_EQ("alpha.TXT", First("al*"));
    EXPECT_EQ("noext", First("noext*"));
    EXPECT_EQ("b.c.d", First("*.d"));
    EXPECT_EQ("b.c.d", First("*.c.*"));
    EXPECT_EQ("alpha.TXT", First("*.txt"));
    EXPECT_EQ("alpha.TXT", First("*txt*"));
    EXPECT_EQ("2", First("*.tx"));
    EXPECT_EQ("2", First("a*a"));
    EXPECT_EQ("2", First("Empty\\*.txt"));
}

TEST_F(Searches, find_by_a_question_mark) {
    EXPECT_EQ("Zed", First("Z?d"));
    EXPECT_EQ("alpha.TXT", First("a????.???"));
    EXPECT_EQ("alpha.TXT", First("*.t?t"));
    EXPECT_EQ("2", First("Z?"));
}

TEST_F(Searches, take_a_question_mark_at_the_end_for_nothing_too) {
    if (UnderWine())
        GTEST_SKIP() << "there a question mark is a character";
    EXPECT_EQ("noext", First("noext?"));
    EXPECT_EQ("Zed", First("Z????"));
    EXPECT_EQ("Beta.txt", First("Beta??.txt"));
    EXPECT_EQ("alpha.TXT", First("al*?"));
}

TEST_F(Searches, take_a_dot_before_a_wildcard_for_nothing_too) {
    EXPECT_EQ("noext", First("noext.*"));
    EXPECT_EQ("Sub", First("Sub.*"));
    if (!UnderWine()) {
        EXPECT_EQ("noext", First("noext.???"));
    }
}

TEST_F(Searches, take_a_dot_at_the_end_for_no_extension) {
    EXPECT_EQ("noext", First("n*."));
    if (!UnderWine()) {
        EXPECT_EQ("2", First("alp*."));
    }
}

TEST_F(Searches, come_in_the_order_of_capitals) {
    EXPECT_EQ("alpha.TXT", First("a*")); // 'L' before '['
    fs::remove(m_folder.Path() / "alpha.TXT");
    EXPECT_EQ("a[b", First("a*"));
    EXPECT_EQ("b.c.d", First("b*"));
    fs::create_directory(m_folder.Path() / "Order");
    for (const char *name : {"_b", "Zb", "yb"})
        WriteBytes(m_folder.Path() / "Order" / name, {});
    EXPECT_EQ("yb", First("Order\\*b"));
    fs::remove(m_folder.Path() / "Order" / "yb");
    EXPECT_EQ("Zb", First("Order\\*b")); // 'Z' before '_'
}

TEST_F(Searches, tell_what_an_entry_is) {
    WIN32_FIND_DATAA const file = Record("BETA.TXT");
    EXPECT_EQ(win::GetFileAttributesA("Beta.txt"), file.dwFileAttributes);
    EXPECT_EQ(0u, file.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY);
    EXPECT_EQ(5u, file.nFileSizeLow);
    EXPECT_EQ(0u, file.nFileSizeHigh);
    EXPECT_STREQ("", file.cAlternateFileName);
    WIN32_FIND_DATAA const folder = Record("Sub");
    EXPECT_EQ(DWORD{FILE_ATTRIBUTE_DIRECTORY}, folder.dwFileAttributes);
    EXPECT_EQ(0u, folder.nFileSizeLow);
    EXPECT_EQ(0u, folder.nFileSizeHigh);
}

TEST_F(Searches, tell_a_read_only_file) {
    ASSERT_TRUE(win::SetFileAttributesA("noext", FILE_ATTRIBUTE_READONLY));
    EXPECT_NE(0u, Record("noext").dwFileAttributes & FILE_ATTRIBUTE_READONLY);
    EXPECT_TRUE(win::SetFileAttributesA("noext", FILE_ATTRIBUTE_NORMAL));
    EXPECT_EQ(0u, Record("noext").dwFileAttributes & FILE_ATTRIBUTE_READONLY);
}

TEST_F(Searches, tell_sizes_of_more_than_32_bits) {
    constexpr std::uintmax_t size = 0x123456789;
    fs::resize_file(m_folder.Path() / "noext", size);
    WIN32_FIND_DATAA const file = Record("noext");
    EXPECT_EQ(1u, file.nFileSizeHigh);
    EXPECT_EQ(0x23456789u, file.nFileSizeLow);
}

TEST_F(Searches, tell_when_an_entry_was_written) {
    using namespace std::chrono;
    constexpr ULONGLONG unitsASecond = 10000000;
    fs::file_time_type const now = fs::last_write_time(m_folder.Path() / "noext");
    fs::last_write_time(m_folder.Path() / "noext", now - hours(1));
    ULONGLONG const written = TimeOf(Record("noext").ftLastWriteTime);
    fs::last_write_time(m_folder.Path() / "noext", now - hours(2));
    EXPECT_EQ(written - 3600 * unitsASecond, TimeOf(Record("noext").ftLastWriteTime));
    // Between 2020 and 2100.
    constexpr ULONGLONG secondsTo2020 = 13222310400, secondsTo2100 = 15746918400;
    for (FILETIME const &time : {Record("Sub").ftCreationTime, Record("Sub").ftLastWriteTime,
                                 Record("Sub").ftLastAccessTime}) {
        EXPECT_LT(secondsTo2020 * unitsASecond, TimeOf(time));
        EXPECT_GT(secondsTo2100 * unitsASecond, TimeOf(time));
    }
}

TEST_F(Searches, are_closed_once_and_by_their_own_call) {
    WIN32_FIND_DATAA data;
    HANDLE const search = win::FindFirstFileA("*", &data);
    ASSERT_NE(INVALID_HANDLE_VALUE, search);
    EXPECT_FAILS_WITH(6, win::CloseHandle(search));
    EXPECT_TRUE(win::FindClose(search));
}

TEST_F(Searches, that_are_none_arent_closed) {
    EXPECT_FAILS_WITH(6, win::FindClose(nullptr));
    EXPECT_FAILS_WITH(6, win::FindClose(INVALID_HANDLE_VALUE));
    EXPECT_FAILS_WITH(6, win::FindClose(reinterpret_cast<HANDLE>(std::intptr_t{4711})));
}

TEST_F(Searches, leave_last_errors_alone_when_they_find) {
    WIN32_FIND_DATAA data;
    win::SetLastError(4711);
    HANDLE const search = win::FindFirstFileA("Beta.txt", &data);
    EXPECT_EQ(4711u, win::GetLastError());
    win::FindClose(search);
}

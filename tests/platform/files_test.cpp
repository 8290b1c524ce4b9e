// Open files, on both systems by the documented results and codes.
#include "services.h"

#include "temp_folder.h"

#include <cstring>
#include <vector>

namespace {

class Files : public testing::Test {
protected:
    std::string At(std::string const &name) const { return m_folder.Directory() + "\\" + name; }

    void Make(std::string const &name, std::string const &text = "") const {
        WriteBytes(m_folder.Path() / name, BytesOf(text));
    }

    std::string Text(std::string const &name) const {
        Bytes const bytes = ReadBytes(m_folder.Path() / name);
        return std::string(bytes.begin(), bytes.end());
    }

    void ExpectOpenFails(DWORD code, std::string const &path, DWORD access = GENERIC_READ,
                         DWORD disposition = OPEN_EXISTING) const {
        win::SetLastError(0);
        HANDLE const file = win::CreateFileA(path.c_str(), access, shareAll, nullptr, disposition,
                                             FILE_ATTRIBUTE_NORMAL, nullptr);
        EXPECT_EQ(INVALID_HANDLE_VALUE, file) << path;
        EXPECT_EQ(code, win::GetLastError()) << path;
    }

    TempFolder m_folder;
};

std::string ReadAll(HANDLE file) {
    char buffer[100];
    DWORD count = 0;
    EXPECT_TRUE(win::ReadFile(file, buffer, sizeof buffer, &count, nullptr));
    return std::string(buffer, count);
}

void Put(HANDLE file, std::string const &text) {
    DWORD count = 0;
    EXPECT_TRUE(
        win::WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &count, nullptr));
    EXPECT_EQ(text.size(), count);
}

} // namespace

TEST_F(Files, a_missing_file_is_2_and_a_missing_folder_3) {
    ExpectOpenFails(2, At("missing"));
    ExpectOpenFails(3, At("missing\\file"));
    ExpectOpenFails(3, At("missing\\file"), GENERIC_WRITE, CREATE_ALWAYS);
}

TEST_F(Files, a_file_in_the_place_of_a_folder_is_3) {
    Make("file");
    ExpectOpenFails(3, At("file\\below"));
}

TEST_F(Files, a_folder_is_5) {
    ExpectOpenFails(5, m_folder.Directory());
    ExpectOpenFails(5, m_folder.Directory(), GENERIC_WRITE);
}

TEST_F(Files, no_text_is_3) { ExpectOpenFails(3, ""); }

TEST_F(Files, create_new_makes_a_file_once) {
    ScopedHandle file(OpenToWrite(At("new"), CREATE_NEW));
    EXPECT_TRUE(file.Valid());
    file.Close();
    ExpectOpenFails(80, At("new"), GENERIC_WRITE, CREATE_NEW);
}

TEST_F(Files, create_always_empties_a_file_and_says_183) {
    Make("old", "text");
    win::SetLastError(1);
    ScopedHandle file(OpenToWrite(At("old"), CREATE_ALWAYS));
    EXPECT_TRUE(file.Valid());
    EXPECT_EQ(183u, win::GetLastError());
    file.Close();
    EXPECT_EQ("", Text("old"));
}

TEST_F(Files, create_always_makes_a_missing_file_and_says_0) {
    win::SetLastError(1);
    ScopedHandle const file(OpenToWrite(At("new"), CREATE_ALWAYS));
    EXPECT_TRUE(file.Valid());
    EXPECT_EQ(0u, win::GetLastError());
}

TEST_F(Files, what_is_written_is_read_back) {
    ScopedHandle file(OpenToWrite(At("file"), CREATE_NEW));
    Put(file, "hello ");
    Put(file, "world");
    EXPECT_EQ("", ReadAll(file));
    EXPECT_TRUE(win::SetFilePointerEx(file, Offset(3), nullptr, FILE_BEGIN));
    EXPECT_EQ("lo world", ReadAll(file));
    file.Close();
    EXPECT_EQ("hello world", Text("file"));
}

TEST_F(Files, reading_at_the_end_succeeds_with_nothing) {
    Make("file", "abc");
    ScopedHandle const file(OpenToRead(At("file")));
    EXPECT_EQ("abc", ReadAll(file));
    char letter = 'x';
    DWORD count = 77;
    EXPECT_TRUE(win::ReadFile(file, &letter, 1, &count, nullptr));
    EXPECT_EQ(0u, count);
    EXPECT_EQ('x', letter);
}

TEST_F(Files, what_wasnt_asked_for_at_opening_is_5) {
    Make("file", "abc");
    char letter = 0;
    DWORD count = 0;
    ScopedHandle const reader(OpenToRead(At("file")));
    EXPECT_FAILS_WITH(5, win::WriteFile(reader, &letter, 1, &count, nullptr));
    EXPECT_FAILS_WITH(5, win::FlushFileBuffers(reader));
    ScopedHandle const writer(win::CreateFileA(At("file").c_str(), GENERIC_WRITE, shareAll, nullptr,
                                               OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    EXPECT_FAILS_WITH(5, win::ReadFile(writer, &letter, 1, &count, nullptr));
    EXPECT_TRUE(win::FlushFileBuffers(writer));
}

TEST_F(Files, the_position_is_told_from_each_origin) {
    Make("file", "0123456789");
    ScopedHandle const file(OpenToRead(At("file")));
    LARGE_INTEGER position;
    EXPECT_TRUE(win::SetFilePointerEx(file, Offset(4), &position, FILE_BEGIN));
    EXPECT_EQ(4, position.QuadPart);
    EXPECT_TRUE(win::SetFilePointerEx(file, Offset(-1), &position, FILE_CURRENT));
    EXPECT_EQ(3, position.QuadPart);
    EXPECT_TRUE(win::SetFilePointerEx(file, Offset(-2), &position, FILE_END));
    EXPECT_EQ(8, position.QuadPart);
    EXPECT_EQ("89", ReadAll(file));
}

TEST_F(Files, a_position_before_the_start_is_131_and_a_wrong_origin_87) {
    Make("file", "0123456789");
    ScopedHandle const file(OpenToRead(At("file")));
    EXPECT_FAILS_WITH(131, win::SetFilePointerEx(file, Offset(-1), nullptr, FILE_BEGIN));
    EXPECT_FAILS_WITH(131, win::SetFilePointerEx(file, Offset(-11), nullptr, FILE_END));
    EXPECT_FAILS_WITH(87, win::SetFilePointerEx(file, Offset(0), nullptr, 3));
    EXPECT_EQ("0123456789", ReadAll(file));
}

TEST_F(Files, a_position_behind_the_end_makes_the_file_longer_when_written) {
    ScopedHandle const file(OpenToWrite(At("file"), CREATE_NEW));
    LARGE_INTEGER size;
    EXPECT_TRUE(win::SetFilePointerEx(file, Offset(5), nullptr, FILE_BEGIN));
    EXPECT_TRUE(win::GetFileSizeEx(file, &size));
    EXPECT_EQ(0, size.QuadPart);
    Put(file, "x");
    EXPECT_TRUE(win::GetFileSizeEx(file, &size));
    EXPECT_EQ(6, size.QuadPart);
}

TEST_F(Files, positions_are_64_bits_wide) {
    ScopedHandle const file(OpenToWrite(At("file"), CREATE_NEW));
    LARGE_INTEGER position;
    EXPECT_TRUE(win::SetFilePointerEx(file, Offset(LONGLONG{5} << 32), &position, FILE_BEGIN));
    EXPECT_EQ(LONGLONG{5} << 32, position.QuadPart);
}

TEST_F(Files, a_read_only_file_is_5_to_a_writer) {
    if (UnderWine())
        GTEST_SKIP() << "Wine leaves this to the host's rights, which don't bind the superuser";
    Make("file", "abc");
    ASSERT_TRUE(win::SetFileAttributesA(At("file").c_str(), FILE_ATTRIBUTE_READONLY));
    ExpectOpenFails(5, At("file"), GENERIC_WRITE);
    ExpectOpenFails(5, At("file"), GENERIC_WRITE, CREATE_ALWAYS);
    ScopedHandle file(OpenToRead(At("file")));
    EXPECT_EQ("abc", ReadAll(file));
    file.Close();
    EXPECT_TRUE(win::SetFileAttributesA(At("file").c_str(), FILE_ATTRIBUTE_NORMAL));
}

TEST_F(Files, shared_with_nobody_a_file_is_32_to_others) {
    Make("file", "abc");
    ScopedHandle exclusive(OpenToRead(At("file"), 0));
    ASSERT_TRUE(exclusive.Valid());
    ExpectOpenFails(32, At("file"));
    ExpectOpenFails(32, At("file"), GENERIC_WRITE, CREATE_ALWAYS);
    EXPECT_FAILS_WITH(32, win::DeleteFileA(At("file").c_str()));
    EXPECT_FAILS_WITH(32, win::MoveFileExA(At("file").c_str(), At("other").c_str(), 0));
    exclusive.Close();
    EXPECT_EQ("abc", Text("file"));
    ScopedHandle const after(OpenToRead(At("file")));
    EXPECT_TRUE(after.Valid());
}

TEST_F(Files, in_use_it_is_32_to_who_wants_it_for_himself) {
    Make("file");
    ScopedHandle const shared(OpenToRead(At("file")));
    win::SetLastError(0);
    EXPECT_EQ(INVALID_HANDLE_VALUE, OpenToRead(At("file"), 0));
    EXPECT_EQ(32u, win::GetLastError());
}

TEST_F(Files, shared_with_all_it_can_be_opened_and_deleted_by_others) {
    Make("file", "abc");
    ScopedHandle const first(OpenToRead(At("file")));
    ScopedHandle second(OpenToWrite(At("file"), OPEN_EXISTING));
    EXPECT_TRUE(second.Valid());
    EXPECT_TRUE(win::DeleteFileA(At("file").c_str()));
    EXPECT_EQ("abc", ReadAll(first));
}

TEST_F(Files, a_closed_handle_is_6_to_every_call) {
    Make("file");
    HANDLE const file = OpenToWrite(At("file"), OPEN_EXISTING);
    EXPECT_TRUE(win::CloseHandle(file));
    char letter = 0;
    DWORD count = 0;
    LARGE_INTEGER size;
    EXPECT_FAILS_WITH(6, win::ReadFile(file, &letter, 1, &count, nullptr));
    EXPECT_FAILS_WITH(6, win::WriteFile(file, &letter, 1, &count, nullptr));
    EXPECT_FAILS_WITH(6, win::SetFilePointerEx(file, Offset(0), nullptr, FILE_BEGIN));
    EXPECT_FAILS_WITH(6, win::GetFileSizeEx(file, &size));
    EXPECT_FAILS_WITH(6, win::FlushFileBuffers(file));
    EXPECT_FAILS_WITH(6, win::CloseHandle(file));
}

TEST_F(Files, names_are_found_without_regard_to_case_and_by_both_slashes) {
    Make("MixedCase.Txt", "abc");
    for (const char *spelling : {"\\mixedcase.txt", "/MIXEDCASE.TXT", "\\MixedCase.Txt"}) {
        std::filesystem::path const place = m_folder.Path();
        std::filesystem::current_path(place.parent_path());
        std::string const relative = place.filename().string() + spelling;
        ScopedHandle const file(OpenToRead(relative));
        EXPECT_TRUE(file.Valid()) << relative;
    }
}

TEST_F(Files, characters_that_no_name_has_are_123) {
    std::filesystem::current_path(m_folder.Path());
    for (const char *name : {"a*b", "a?b", "a<b", "a>b", "a|b", "a\"b"})
        ExpectOpenFails(123, name, GENERIC_WRITE, CREATE_ALWAYS);
    std::filesystem::current_path(m_folder.Path().parent_path());
}

TEST_F(Files, a_large_transfer_is_done_whole) {
    ScopedHandle const file(OpenToWrite(At("file"), CREATE_NEW));
    std::vector<char> bytes(5000000);
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<char>(i * 7);
    DWORD count = 0;
    auto const size = static_cast<DWORD>(bytes.size());
    ASSERT_TRUE(win::WriteFile(file, bytes.data(), size, &count, nullptr));
    EXPECT_EQ(size, count);
    EXPECT_TRUE(win::FlushFileBuffers(file));
    EXPECT_TRUE(win::SetFilePointerEx(file, Offset(0), nullptr, FILE_BEGIN));
    std::vector<char> back(bytes.size());
    ASSERT_TRUE(win::ReadFile(file, back.data(), size, &count, nullptr));
    EXPECT_EQ(size, count);
    EXPECT_TRUE(bytes == back);
}

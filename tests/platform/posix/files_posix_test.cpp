// What files here do beyond the documented: other kinds of files, other processes, rights.
#include "../services.h"

#include "platform/settings.h"
#include "roles.h"
#include "temp_folder.h"

#include <atomic>
#include <fcntl.h>
#include <fstream>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

class FilesHere : public testing::Test {
protected:
    std::string At(std::string const &name) const { return m_folder.Directory() + "/" + name; }
    mode_t Rights(std::string const &name) const {
        struct stat entry {};
        stat(At(name).c_str(), &entry);
        return entry.st_mode & 07777;
    }

    TempFolder m_folder;
};

// Opens a file for itself alone and tells the code that it got.
int OpenExclusively(Arguments const &arguments) {
    ScopedHandle const file(OpenToRead(arguments.at(0), 0));
    return file.Valid() ? 0 : static_cast<int>(win::GetLastError());
}

Role const openExclusively("open-exclusively", OpenExclusively);

} // namespace

TEST_F(FilesHere, exclusive_use_holds_between_processes) {
    WriteBytes(m_folder.Path() / "file", {});
    EXPECT_EQ(0, RunRole("open-exclusively", {At("file")}));
    ScopedHandle file(OpenToRead(At("file")));
    EXPECT_EQ(32, RunRole("open-exclusively", {At("file")}));
    file.Close();
    EXPECT_EQ(0, RunRole("open-exclusively", {At("file")}));
}

TEST_F(FilesHere, a_file_that_another_process_has_for_itself_isnt_emptied) {
    WriteBytes(m_folder.Path() / "file", BytesOf("text"));
    int const other = open(At("file").c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(0, flock(other, LOCK_EX | LOCK_NB));
    EXPECT_EQ(INVALID_HANDLE_VALUE, OpenToWrite(At("file"), CREATE_ALWAYS, 0));
    EXPECT_EQ(32u, win::GetLastError());
    EXPECT_FAILS_WITH(32, win::MoveFileExA(At("file").c_str(), At("x").c_str(), 0));
    EXPECT_FAILS_WITH(32, win::DeleteFileA(At("file").c_str()));
    close(other);
    EXPECT_EQ(4u, fs::file_size(m_folder.Path() / "file"));
}

TEST_F(FilesHere, a_move_doesnt_replace_what_another_process_has_for_itself) {
    WriteBytes(m_folder.Path() / "file", {});
    WriteBytes(m_folder.Path() / "target", BytesOf("text"));
    ScopedHandle const exclusive(OpenToRead(At("target"), 0));
    EXPECT_FAILS_WITH(
        5, win::MoveFileExA(At("file").c_str(), At("target").c_str(), MOVEFILE_REPLACE_EXISTING));
    EXPECT_EQ(4u, fs::file_size(m_folder.Path() / "target"));
}

// Writers make the same temporary file and move it to one place, each for itself, as
// fast as they can: what lies there is whole at every moment.
TEST_F(FilesHere, writers_that_replace_one_file_leave_it_whole) {
    std::atomic<bool> stop{false};
    std::atomic<int> moved{0};
    auto const write = [&](char letter) {
        std::string const text(20000, letter);
        while (!stop) {
            ScopedHandle file(OpenToWrite(At("t.tmp"), CREATE_ALWAYS, 0));
            DWORD count = 0;
            if (!file.Valid())
                continue;
            for (DWORD done = 0; done < text.size(); done += 1000)
                EXPECT_TRUE(win::WriteFile(file, text.data() + done, 1000, &count, nullptr));
            file.Close();
            moved +=
                win::MoveFileExA(At("t.tmp").c_str(), At("t").c_str(), MOVEFILE_REPLACE_EXISTING);
        }
    };
    std::thread first(write, 'a');
    std::thread second(write, 'b');
    while (moved < 300) {
        Bytes const bytes = ReadBytes(m_folder.Path() / "t");
        if (bytes.empty())
            continue;
        EXPECT_EQ(20000u, bytes.size());
        EXPECT_TRUE(Bytes(bytes.size(), bytes[0]) == bytes);
    }
    stop = true;
    first.join();
    second.join();
}

TEST_F(FilesHere, a_pipe_in_the_place_of_a_file_holds_nobody_up) {
    ASSERT_EQ(0, mkfifo(At("pipe").c_str(), 0600));
    ScopedHandle const pipe(OpenToRead(At("pipe")));
    char byte = 0;
    DWORD count = 9;
    EXPECT_TRUE(win::ReadFile(pipe, &byte, 1, &count, nullptr));
    EXPECT_EQ(0u, count);
    EXPECT_FAILS_WITH(132, win::SetFilePointerEx(pipe, Offset(0), nullptr, FILE_BEGIN));
    EXPECT_TRUE(win::DeleteFileA(At("pipe").c_str()));
}

TEST_F(FilesHere, read_only_is_the_owners_missing_right_to_write) {
    WriteBytes(m_folder.Path() / "file", {});
    chmod(At("file").c_str(), 0664);
    EXPECT_TRUE(win::SetFileAttributesA(At("file").c_str(), FILE_ATTRIBUTE_READONLY));
    EXPECT_EQ(0444u, Rights("file"));
    EXPECT_TRUE(win::SetFileAttributesA(At("file").c_str(), FILE_ATTRIBUTE_NORMAL));
    EXPECT_EQ(0644u, Rights("file"));
    chmod(At("file").c_str(), 0466);
    EXPECT_EQ(1u, win::GetFileAttributesA(At("file").c_str()));
    chmod(At("file").c_str(), 0640);
    EXPECT_EQ(128u, win::GetFileAttributesA(At("file").c_str()));
    EXPECT_TRUE(win::SetFileAttributesA(At("file").c_str(), FILE_ATTRIBUTE_NORMAL));
    EXPECT_EQ(0640u, Rights("file"));
}

TEST_F(FilesHere, a_file_is_made_read_only_and_can_be_written_once) {
    ScopedHandle file(win::CreateFileA(At("file").c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                       FILE_ATTRIBUTE_READONLY, nullptr));
    DWORD count = 0;
    EXPECT_TRUE(win::WriteFile(file, "abc", 3, &count, nullptr));
    file.Close();
    EXPECT_EQ(1u, win::GetFileAttributesA(At("file").c_str()));
    EXPECT_EQ(INVALID_HANDLE_VALUE, OpenToWrite(At("file"), OPEN_EXISTING));
    EXPECT_EQ(5u, win::GetLastError());
}

TEST_F(FilesHere, links_lead_to_their_files_and_are_deleted_themselves) {
    WriteBytes(m_folder.Path() / "file", BytesOf("abc"));
    fs::create_symlink("file", m_folder.Path() / "link");
    ScopedHandle file(OpenToRead(At("link")));
    LARGE_INTEGER size;
    EXPECT_TRUE(win::GetFileSizeEx(file, &size));
    EXPECT_EQ(3, size.QuadPart);
    EXPECT_EQ(128u, win::GetFileAttributesA(At("link").c_str()));
    EXPECT_TRUE(win::DeleteFileA(At("link").c_str()));
    EXPECT_TRUE(fs::exists(m_folder.Path() / "file"));
}

TEST_F(FilesHere, a_link_to_nowhere_is_a_missing_file) {
    fs::create_symlink("nowhere", m_folder.Path() / "link");
    EXPECT_EQ(INVALID_HANDLE_VALUE, OpenToRead(At("link")));
    EXPECT_EQ(2u, win::GetLastError());
    EXPECT_EQ(0xffffffffu, win::GetFileAttributesA(At("link").c_str()));
    EXPECT_TRUE(win::DeleteFileA(At("link").c_str()));
}

TEST_F(FilesHere, handles_arent_inherited_by_programs_started) {
    ScopedHandle const file(OpenToWrite(At("file"), CREATE_NEW));
    for (auto const &entry : fs::directory_iterator("/proc/self/fd")) {
        std::error_code ignored;
        if (fs::read_symlink(entry.path(), ignored) != fs::canonical(At("file")))
            continue;
        int const descriptor = std::stoi(entry.path().filename().string());
        EXPECT_EQ(FD_CLOEXEC, fcntl(descriptor, F_GETFD) & FD_CLOEXEC);
    }
}

TEST_F(FilesHere, open_handles_keep_their_files_when_settings_change) {
    WriteBytes(m_folder.Path() / "file", BytesOf("abc"));
    ScopedHandle const file(OpenToRead(At("file")));
    platform::Settings const kept = platform::CurrentSettings();
    platform::Settings none = kept;
    none.drives.clear();
    platform::ApplySettings(none);
    char buffer[10];
    DWORD count = 0;
    EXPECT_TRUE(win::ReadFile(file, buffer, sizeof buffer, &count, nullptr));
    EXPECT_EQ(3u, count);
    platform::ApplySettings(kept);
}

// What lies at a path: real files and folders.
#include "open_path.h"

#include <cstring>

#include <gtest/gtest.h>

#include "temp_folder.h"

namespace fs = std::filesystem;
using UTILS::CUtilsPath;

namespace {

class System : public testing::Test {
protected:
    System() : m_start(fs::current_path()) {
        fs::create_directories(m_folder.Path() / "Sub" / "Inner");
        WriteBytes(m_folder.Path() / "file.txt", BytesOf("12345"));
        WriteBytes(m_folder.Path() / "Sub" / "inside", {});
        fs::current_path(m_folder.Path());
        m_current = CUtilsPath::UGetCurrentDir().Retrieve();
    }
    ~System() override { fs::current_path(m_start); }

    static WIN32_FIND_DATAA Garbage() {
        WIN32_FIND_DATAA record;
        std::memset(&record, 0x55, sizeof record);
        return record;
    }

    static void ExpectUntouched(WIN32_FIND_DATAA const &record, std::string const &of) {
        auto const *const bytes = reinterpret_cast<char const *>(&record);
        EXPECT_EQ(std::string(sizeof record, '\x55'), std::string(bytes, sizeof record)) << of;
    }

    fs::path m_start;
    TempFolder m_folder;
    std::string m_current;
};

} // namespace

TEST_F(System, Tells_its_current_directory_on_a_drive) {
    ASSERT_LT(3u, m_current.size());
    EXPECT_EQ(":\\", m_current.substr(1, 2));
    EXPECT_EQ(m_folder.Path().filename().string(), m_current.substr(m_current.rfind('\\') + 1));
}

TEST_F(System, Knows_files_from_folders) {
    OpenPath file("file.txt");
    EXPECT_EQ(m_current + "\\file.txt", file.Text());
    EXPECT_EQ(1, file.IsAFile());
    EXPECT_EQ(0, file.IsADir());
    EXPECT_EQ(0, file.DirExists());
    OpenPath folder("SUB");
    EXPECT_EQ(0, folder.IsAFile());
    EXPECT_EQ(1, folder.IsADir());
    EXPECT_EQ(1, folder.DirExists());
    OpenPath missing("missing");
    EXPECT_EQ(0, missing.IsAFile());
    EXPECT_EQ(0, missing.IsADir());
    EXPECT_EQ(0, missing.DirExists());
    OpenPath below("missing\\file");
    EXPECT_EQ(0, below.IsAFile());
    EXPECT_EQ(0, below.IsADir());
}

TEST_F(System, Knows_what_came_and_went_since_the_path_was_set) {
    OpenPath path("later");
    EXPECT_EQ(0, path.IsAFile());
    WriteBytes(m_folder.Path() / "later", {});
    EXPECT_EQ(1, path.IsAFile());
    fs::remove(m_folder.Path() / "later");
    fs::create_directory(m_folder.Path() / "later");
    EXPECT_EQ(0, path.IsAFile());
    EXPECT_EQ(1, path.IsADir());
}

TEST_F(System, Takes_a_drives_root_for_neither) {
    OpenPath root(m_current.substr(0, 2));
    EXPECT_EQ(0, root.IsAFile());
    EXPECT_EQ(0, root.IsADir());
}

TEST_F(System, Answers_for_the_first_match_of_wildcards) {
    EXPECT_EQ(1, OpenPath("f*").IsAFile());
    EXPECT_EQ(1, OpenPath("file.t?t").IsAFile());
    EXPECT_EQ(1, OpenPath("S*").IsADir());
    EXPECT_EQ(1, OpenPath("Sub\\i*").IsADir()); // Inner comes before inside
    EXPECT_EQ(0, OpenPath("Sub\\i*").IsAFile());
    EXPECT_EQ(1, OpenPath("*").IsADir()); // the folder itself
    EXPECT_EQ(0, OpenPath("x*").IsAFile());
    EXPECT_EQ(0, OpenPath("S*\\inside").IsAFile());
}

TEST_F(System, Notes_whether_the_path_was_a_file) {
    OpenPath path("file.txt");
    EXPECT_EQ(1, path.GetFileFlag()); // asked when it was set
    path.SetDir("Sub");
    EXPECT_EQ(0, path.GetFileFlag());
    path.fileFlag = 1;
    EXPECT_EQ(1, path.IsADir());
    EXPECT_EQ(0, path.GetFileFlag());
    path.SetDir("missing");
    path.fileFlag = 1;
    EXPECT_EQ(0, path.IsADir());
    EXPECT_EQ(1, path.GetFileFlag());
    EXPECT_EQ(0, path.IsAFile());
    EXPECT_EQ(0, path.GetFileFlag());
}

TEST_F(System, Tells_records_of_files) {
    OpenPath path("FILE.TXT");
    WIN32_FIND_DATAA record = Garbage();
    path.fileFlag = 0;
    EXPECT_EQ(1, path.IsAFile(record));
    EXPECT_STREQ("file.txt", record.cFileName);
    EXPECT_EQ(5u, record.nFileSizeLow);
    EXPECT_EQ(1, path.GetFileFlag());
}

TEST_F(System, Tells_a_record_of_what_is_no_file_too) {
    OpenPath path("sub");
    WIN32_FIND_DATAA record = Garbage();
    path.fileFlag = 1;
    EXPECT_EQ(0, path.IsAFile(record));
    EXPECT_STREQ("Sub", record.cFileName);
    EXPECT_NE(0u, record.dwFileAttributes & 16);
    EXPECT_EQ(0, path.GetFileFlag());
    path.SetDir("missing");
    record = Garbage();
    EXPECT_EQ(0, path.IsAFile(record));
    EXPECT_STREQ("", record.cFileName);
    EXPECT_EQ(0u, record.dwFileAttributes);
}

TEST_F(System, Tells_records_of_folders_on_success_only) {
    OpenPath path("sub");
    WIN32_FIND_DATAA record = Garbage();
    path.fileFlag = 1;
    EXPECT_EQ(1, path.IsADir(record));
    EXPECT_STREQ("Sub", record.cFileName);
    EXPECT_NE(0u, record.dwFileAttributes & 16);
    EXPECT_EQ(0, path.GetFileFlag());
    for (char const *text : {"file.txt", "missing"}) {
        path.SetDir(text);
        int const flag = path.GetFileFlag();
        record = Garbage();
        EXPECT_EQ(0, path.IsADir(record));
        ExpectUntouched(record, text);
        EXPECT_EQ(flag, path.GetFileFlag());
    }
}

TEST_F(System, Tells_sizes_of_files) {
    OpenPath path("file.txt");
    EXPECT_EQ(5u, path.GetFileSize());
    EXPECT_EQ(5, path.dirSize); // asked when it was set
    path.SetDir("Sub");
    EXPECT_EQ(0u, path.GetFileSize());
    EXPECT_EQ(0, path.dirSize);
    path.SetDir("missing");
    EXPECT_EQ(0u, path.GetFileSize());
}

TEST_F(System, Tells_sizes_modulo_4_GiB) {
    fs::resize_file(m_folder.Path() / "file.txt", 0x100000007);
    OpenPath path("file.txt");
    EXPECT_EQ(7u, path.GetFileSize());
    EXPECT_EQ(7, path.dirSize);
}

TEST_F(System, Changes_its_current_directory) {
    OpenPath path("Sub");
    EXPECT_NE(0, path.SetCurrentDir());
    EXPECT_STREQ((m_current + "\\Sub").c_str(), CUtilsPath::UGetCurrentDir());
    EXPECT_EQ(m_current + "\\Sub\\x", OpenPath("x").Text());
    path.SetDir(UTILS::UtilsString(m_current));
    EXPECT_NE(0, path.SetCurrentDirectoryA());
    EXPECT_STREQ(m_current.c_str(), CUtilsPath::UGetCurrentDir());
}

TEST_F(System, Stays_where_it_is_for_what_is_no_folder) {
    for (char const *text : {"file.txt", "missing", "missing\\x", "S*"})
        EXPECT_EQ(0, OpenPath(text).SetCurrentDir()) << text;
    EXPECT_EQ(0, OpenPath().SetCurrentDir());
    EXPECT_STREQ(m_current.c_str(), CUtilsPath::UGetCurrentDir());
}

TEST_F(System, Isnt_asked_for_keys) {
    fs::create_directory(m_folder.Path() / "HKLM");
    WriteBytes(m_folder.Path() / "HKCU", BytesOf("123"));
    OpenPath folder("HKLM");
    OpenPath file("HKCU");
    WIN32_FIND_DATAA record = Garbage();
    folder.fileFlag = file.fileFlag = 7;
    EXPECT_EQ(0, folder.IsADir());
    EXPECT_EQ(0, folder.DirExists());
    EXPECT_EQ(0, folder.IsADir(record));
    EXPECT_EQ(0, folder.SetCurrentDir());
    EXPECT_EQ(0, folder.SetCurrentDirectoryA());
    EXPECT_EQ(0, file.IsAFile());
    EXPECT_EQ(0, file.IsAFile(record));
    EXPECT_EQ(0u, file.GetFileSize());
    EXPECT_EQ(0, file.dirSize);
    EXPECT_EQ(7, folder.GetFileFlag());
    EXPECT_EQ(7, file.GetFileFlag());
    ExpectUntouched(record, "a key");
}

TEST_F(System, Is_asked_for_what_only_reads_as_a_key) {
    fs::create_directories(m_folder.Path() / "HKLM" / "x");
    OpenPath path("Sub");
    path.SetPath("HKLM", UTILS::UtilsString(m_current));
    EXPECT_EQ(1, path.GetRegFlag());
    EXPECT_EQ(0, path.IsADir());
    path.SetDir(path.UGetDir());
    EXPECT_EQ(1, path.IsADir());
    EXPECT_EQ(1, path.AddToPath("x"));
    EXPECT_EQ(1, path.IsADir());
}

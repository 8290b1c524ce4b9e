// What paths ask of the system, call by call, and what comes of it when a call fails.
#include "open_path.h"

#include <map>

#include <gtest/gtest.h>

#include "call_hook.h"
#include "std_exception.h"
#include "temp_folder.h"

#include "platform/winapi.h"

namespace fs = std::filesystem;
using Moment = CallHook::Moment;
using UTILS::UtilsString;

namespace {

// Counts the calls, and has one service fail with a number.
class Calls {
public:
    explicit Calls(std::string const &failing = "", DWORD code = 0)
        : m_hook([this, failing, code](CallHook::Call const &call) {
              if (call.moment != Moment::Before)
                  return false;
              ++m_counts[call.service];
              if (failing != call.service)
                  return false;
              win::SetLastError(code);
              return true;
          }) {}

    int Count(char const *service) const {
        auto const found = m_counts.find(service);
        return found == m_counts.end() ? 0 : found->second;
    }

private:
    std::map<std::string, int> m_counts;
    CallHook m_hook;
};

class PathCalls : public testing::Test {
protected:
    PathCalls() : m_start(fs::current_path()) {
        WriteBytes(m_folder.Path() / "file", BytesOf("123"));
        fs::create_directory(m_folder.Path() / "Sub");
        fs::current_path(m_folder.Path());
    }
    ~PathCalls() override { fs::current_path(m_start); }

    fs::path m_start;
    TempFolder m_folder;
};

std::string Machine() {
    char name[512] = "";
    DWORD size = sizeof name;
    EXPECT_TRUE(win::GetComputerNameA(name, &size));
    return name;
}

} // namespace

TEST_F(PathCalls, Close_the_search_for_a_file_or_folder_found_or_not) {
    for (char const *text : {"file", "Sub", "missing"}) {
        OpenPath path(text);
        for (int (OpenPath::*ask)() : {static_cast<int (OpenPath::*)()>(&OpenPath::IsAFile),
                                       static_cast<int (OpenPath::*)()>(&OpenPath::IsADir),
                                       static_cast<int (OpenPath::*)()>(&OpenPath::DirExists)}) {
            Calls const calls;
            (path.*ask)();
            EXPECT_EQ(1, calls.Count("FindFirstFileA")) << text;
            EXPECT_EQ(1, calls.Count("FindClose")) << text;
        }
        Calls const calls;
        path.GetFileSize();
        EXPECT_EQ(1, calls.Count("FindFirstFileA")) << text;
        EXPECT_EQ(1, calls.Count("FindClose")) << text;
    }
}

TEST_F(PathCalls, Leave_the_search_for_a_files_record_open) {
    WIN32_FIND_DATAA record;
    for (char const *text : {"file", "Sub", "missing"}) {
        OpenPath path(text);
        Calls const calls;
        path.IsAFile(record);
        EXPECT_EQ(1, calls.Count("FindFirstFileA")) << text;
        EXPECT_EQ(0, calls.Count("FindClose")) << text;
    }
}

TEST_F(PathCalls, Close_the_search_for_a_folders_record) {
    WIN32_FIND_DATAA record;
    for (char const *text : {"file", "Sub", "missing"}) {
        OpenPath path(text);
        Calls const calls;
        path.IsADir(record);
        EXPECT_EQ(1, calls.Count("FindClose")) << text;
    }
}

TEST_F(PathCalls, That_fail_make_nothing_a_file_or_a_folder) {
    OpenPath file("file");
    OpenPath folder("Sub");
    WIN32_FIND_DATAA record;
    Calls const calls("FindFirstFileA", 5);
    EXPECT_EQ(0, file.IsAFile());
    EXPECT_EQ(0, file.IsAFile(record));
    EXPECT_EQ(0u, record.nFileSizeLow);
    EXPECT_EQ(0u, file.GetFileSize());
    EXPECT_EQ(0, folder.IsADir());
    EXPECT_EQ(0, folder.IsADir(record));
    EXPECT_EQ(1, file.SetDir(file.UGetDir()));
    EXPECT_EQ(3, file.dirSize); // the same path keeps what is known
    EXPECT_EQ(1, file.SetDir("file"));
    EXPECT_EQ(0, file.dirSize);
}

TEST_F(PathCalls, For_keys_arent_made) {
    OpenPath path("HKLM\\x");
    Calls const calls;
    path.IsAFile();
    path.IsADir();
    path.GetFileSize();
    path.SetCurrentDir();
    path.SetKey("HKLM\\y");
    EXPECT_EQ(0, calls.Count("FindFirstFileA"));
    EXPECT_EQ(0, calls.Count("FindClose"));
    EXPECT_EQ(0, calls.Count("SetCurrentDirectoryA"));
    EXPECT_EQ(0, calls.Count("GetCurrentDirectoryA"));
    EXPECT_EQ(1, calls.Count("GetComputerNameA"));
}

TEST_F(PathCalls, For_a_file_and_its_size_are_one) {
    OpenPath path;
    {
        Calls const calls;
        path.SetDir("C:\\missing");
        EXPECT_EQ(1, calls.Count("FindFirstFileA"));
    }
    Calls const calls;
    path.SetDir("file");
    EXPECT_EQ(1, calls.Count("FindFirstFileA"));
    EXPECT_EQ(1, calls.Count("FindClose"));
    EXPECT_EQ(3, path.dirSize);
}

TEST_F(PathCalls, For_the_current_directory_are_made_only_without_a_base) {
    OpenPath path;
    Calls const calls;
    path.SetPath("x", "C:\\a");
    path.SetPath("C:\\x", "");
    path.SetPath("\\\\server\\x", "");
    EXPECT_EQ(0, calls.Count("GetCurrentDirectoryA"));
    path.SetPath("x", "");
    EXPECT_EQ(1, calls.Count("GetCurrentDirectoryA"));
}

TEST_F(PathCalls, For_the_machines_name_arent_made_for_network_names) {
    OpenPath path;
    Calls const calls;
    path.SetDir("\\\\server\\x");
    EXPECT_EQ(0, calls.Count("GetComputerNameA"));
    path.SetDir("C:\\x");
    EXPECT_EQ(1, calls.Count("GetComputerNameA"));
    EXPECT_EQ("\\\\" + Machine() + "\\x", path.Network());
}

TEST_F(PathCalls, That_dont_tell_the_machines_name_leave_it_empty) {
    Calls const calls("GetComputerNameA", 111);
    EXPECT_EQ("\\\\\\x", OpenPath("C:\\x").Network());
    EXPECT_EQ("\\\\\\HKLM\\x", OpenPath("HKLM\\x").Network());
    EXPECT_EQ("\\\\\\", OpenPath("C:").Network());
}

TEST_F(PathCalls, That_dont_tell_the_current_directory_leave_it_empty) {
    Calls const calls("GetCurrentDirectoryA", 5);
    EXPECT_STREQ("", OpenPath::UGetCurrentDir());
    EXPECT_EQ("\\x", OpenPath("x").Text());
    EXPECT_EQ("\\x", OpenPath("..\\x").Text());
    EXPECT_EQ("", OpenPath(".").Text());
    EXPECT_EQ(1, OpenPath().SetDir("x"));
}

TEST_F(PathCalls, That_fail_to_change_the_directory_answer_0) {
    Calls const calls("SetCurrentDirectoryA", 5);
    EXPECT_EQ(0, OpenPath("Sub").SetCurrentDir());
    EXPECT_EQ(1, calls.Count("SetCurrentDirectoryA"));
}

TEST_F(PathCalls, Leave_their_number_in_what_is_thrown) {
    OpenPath path("C:\\a", 1);
    UtilsString description;
    description.SetErrorMsg(5, 0);
    for (bool const adds : {false, true}) {
        win::SetLastError(5);
        try {
            adds ? path.AddToPath("") : path.SetDir("");
            ADD_FAILURE() << "nothing was thrown";
        } catch (UTILS::std_exception const &thrown) {
            EXPECT_EQ(std::string("File:  CUtilsPath; Line Number:  ") + (adds ? "1394" : "1029") +
                          "; Exception Name:  class UTILS::std_exception; Type:  173; Error "
                          "Number: 5; WinError Description: " +
                          description.Retrieve() + "; Error Condition:  The input pathname is NULL",
                      thrown.what());
        }
        win::SetLastError(0);
        try {
            adds ? path.AddToPath("") : path.SetDir("");
            ADD_FAILURE() << "nothing was thrown";
        } catch (UTILS::std_exception const &thrown) {
            EXPECT_EQ(std::string("File:  CUtilsPath; Line Number:  ") + (adds ? "1394" : "1029") +
                          "; Exception Name:  class UTILS::std_exception; Type:  173; Error "
                          "Condition:  The input pathname is NULL",
                      thrown.what());
        }
    }
}

TEST_F(PathCalls, Of_the_constructor_leave_their_number_in_what_it_throws) {
    Calls const calls("LoadLibraryA", 32);
    try {
        OpenPath const path("", 1);
        ADD_FAILURE() << "nothing was thrown";
    } catch (UTILS::std_exception const &thrown) {
        EXPECT_NE(std::string::npos, std::string(thrown.what()).find("Error Number: 32; "));
    }
    EXPECT_EQ(0, calls.Count("FreeLibrary")); // there was nothing to free
}

TEST_F(PathCalls, Free_the_installer_when_the_constructor_throws) {
    Calls const calls;
    HMODULE const held = OpenPath().msiModule;
    EXPECT_THROW(OpenPath("", 1), UTILS::std_exception);
    EXPECT_EQ(2, calls.Count("LoadLibraryA"));
    EXPECT_EQ(held ? 2 : 0, calls.Count("FreeLibrary"));
}

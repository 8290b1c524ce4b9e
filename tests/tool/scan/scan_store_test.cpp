// The stored database: one writer, nothing half done.
#include "scan_fixture.h"

#include "platform/store.h"
#include "system_acts.h"

using namespace qvlink;

TEST_F(ScanTest, The_folder_of_the_database_is_made) {
    Write("a", "1");
    ScanInto("new/folder");
    EXPECT_FALSE(File("new/folder").empty());
}

TEST_F(ScanTest, A_second_writer_is_refused_and_changes_nothing) {
    Write("a", "1");
    Scan();
    Bytes const before = File();
    Write("b", "1");
    {
        LockFailure failure;
        auto const lock = WriterLock::Take(Database(), failure);
        ASSERT_TRUE(lock);
        std::string const message = FailureOf([&] { Scan(); });
        EXPECT_NE(message.find("another process"), std::string::npos) << message;
        EXPECT_NE(message.find(Database()), std::string::npos) << message;
        EXPECT_EQ(File(), before);
    }
    Scan();
    EXPECT_NE(File(), before);
}

TEST_F(ScanTest, A_request_to_stop_leaves_the_stored_graph_as_it_was) {
    Write("a/file", "1");
    Write("b/file", "1");
    Scan();
    Bytes const before = File();
    Write("a/more", "1");
    Remove("b");
    bool asked = false;
    m_observer.onFolder = [&] { asked = asked || AskToStop(); };
    bool interrupted = false;
    try {
        Scan();
    } catch (ScanInterrupted const &) {
        interrupted = true;
    }
    if (!asked) {
        GTEST_SKIP() << "a program without a console can't be asked to stop on this system";
    }
    EXPECT_TRUE(interrupted);
    EXPECT_EQ(File(), before);
    m_observer.onFolder = nullptr;
    Scan();
    EXPECT_TRUE(Graph().Has("a/more"));
    EXPECT_FALSE(Graph().Has("b"));
}

TEST_F(ScanTest, A_file_that_cannot_be_written_is_told_and_the_old_one_stays) {
    Write("a", "1");
    Scan();
    Bytes const before = File();
    Write("b", "1");
    std::filesystem::create_directories(std::filesystem::path(Database()) / "linkdb.dat.tmp");
    std::string const message = FailureOf([&] { Scan(); });
    EXPECT_NE(message.find("could not be written"), std::string::npos) << message;
    EXPECT_EQ(File(), before);
    std::filesystem::remove(std::filesystem::path(Database()) / "linkdb.dat.tmp");
    Scan();
    EXPECT_TRUE(Graph().Has("b"));
}

TEST_F(ScanTest, A_damaged_file_is_not_scanned_over) {
    Write("a", "1");
    Scan();
    Bytes damaged = File();
    damaged.pop_back();
    auto const path = std::filesystem::path(Database()) / "linkdb.dat";
    WriteBytes(path, damaged);
    EXPECT_NE(FailureOf([&] { Scan(); }).find("damaged"), std::string::npos);
    EXPECT_EQ(File(), damaged);
    std::filesystem::remove(path);
    EXPECT_TRUE(Scan().saved);
}

TEST_F(ScanTest, A_path_that_never_was_is_refused_before_anything_is_done) {
    Write("a", "1");
    EXPECT_NE(FailureOf([&] { Scan({"", "nowhere"}); }), "");
    EXPECT_TRUE(File().empty());
}

TEST_F(ScanTest, What_cannot_be_read_is_told_kept_and_tried_again) {
    programs::Pe pe;
    pe.imports = {"x.dll"};
    Write("locked.exe", programs::Write(pe));
    Write("open", "1");
    std::filesystem::create_directories(Database());
    {
        Unreadable const unreadable(Path("locked.exe"), Database());
        if (!unreadable.Works()) {
            GTEST_SKIP() << "this system shows every file to this user";
        }
        ScanSummary const first = Scan();
        EXPECT_EQ(first.unreadable, 1u);
        ASSERT_EQ(m_observer.problems.size(), 1u);
    }
    EXPECT_TRUE(Graph().Has("locked.exe"));
    EXPECT_TRUE(Graph().links.empty());
    ScanSummary const second = Scan();
    EXPECT_EQ(second.unreadable, 0u);
    EXPECT_TRUE(Graph().Linked("locked.exe -needs-> name:x.dll"));
}

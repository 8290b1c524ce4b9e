// Files by names that only this host has.
#include "prefix.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace {

using Lines = std::vector<std::string>;
namespace fs = std::filesystem;

class LinksTest : public testing::Test {
protected:
    LinksTest() { m_disk.Put("windows/system32/kernel32.dll"); }

    void ExpectSystem(Lines names) {
        for (std::string &name : names) {
            name.insert(0, "%SystemDir%\\");
        }
        EXPECT_EQ(TextOf(names), Take().text);
    }
    void ExpectSkipped(std::string const &words) {
        Lines const skipped = Take().skipped;
        EXPECT_EQ(1u, skipped.size());
        EXPECT_TRUE(HasWords(skipped, words)) << testing::PrintToString(skipped);
    }
    qvlink::Capture Take() { return CaptureFiles(m_disk.Root()); }
    fs::path System(std::string const &name) const { return m_disk.At("windows/system32/" + name); }

    Disk m_disk;
};

} // namespace

TEST_F(LinksTest, A_link_to_a_file_counts_by_its_name) {
    m_disk.Put("elsewhere/real.dll");
    fs::create_symlink("../../elsewhere/real.dll", System("link.dll"));
    fs::create_symlink("link.dll", System("again.dll"));
    ExpectSystem({"again.dll", "kernel32.dll", "link.dll"});
    EXPECT_EQ(Lines{}, Take().skipped);
}

TEST_F(LinksTest, A_link_to_a_folder_is_told_and_not_followed) {
    m_disk.Put("elsewhere/real.dll");
    fs::create_symlink("../../elsewhere", System("folder"));
    fs::create_symlink("..", System("up"));
    ExpectSystem({"kernel32.dll"});
    EXPECT_EQ(2u, Take().skipped.size());
    EXPECT_TRUE(HasWords(Take().skipped, "a link to a folder"));
}

TEST_F(LinksTest, A_link_to_nothing_is_told) {
    fs::create_symlink("nowhere", System("lost"));
    ExpectSystem({"kernel32.dll"});
    ExpectSkipped("lost: a link to nothing");
}

TEST_F(LinksTest, A_pipe_is_told) {
    ASSERT_EQ(0, ::mkfifo(System("pipe").c_str(), 0600));
    ExpectSystem({"kernel32.dll"});
    ExpectSkipped("neither a file nor a folder");
}

TEST_F(LinksTest, Names_that_no_line_holds_are_told) {
    for (const char *const name : {"a\\b", "a\nb", "blank "}) {
        m_disk.Put(std::string("windows/system32/") + name);
        ExpectSystem({"kernel32.dll"});
        ExpectSkipped(std::string(name) + ": its name");
        fs::remove(System(name));
    }
}

TEST_F(LinksTest, A_line_of_260_characters_is_told) {
    std::string const folder(120, 'f');
    std::string const name(259 - 12 - 121, 'n'); // the tag has 12 characters, a folder 121
    m_disk.Put("windows/system32/" + folder + '/' + name);
    m_disk.Put("windows/system32/" + folder + '/' + name + 'x');
    ExpectSystem({folder + '\\' + name, "kernel32.dll"});
    ExpectSkipped("longer than the 259 characters");
}

TEST_F(LinksTest, Of_names_that_differ_by_case_the_first_is_listed) {
    m_disk.Put("windows/system32/KERNEL32.DLL");
    ExpectSystem({"KERNEL32.DLL"});
    ExpectSkipped("the same but for case as %SystemDir%\\KERNEL32.DLL");
}

TEST_F(LinksTest, What_a_pattern_takes_out_is_not_told) {
    fs::create_symlink("nowhere", System("lost"));
    EXPECT_EQ(Lines{}, CaptureFiles(m_disk.Root(), {"*\\lost"}).skipped);
}

TEST_F(LinksTest, A_prefix_has_its_drive_where_the_link_says) {
    Disk prefix;
    prefix.Put("drive_c/windows/system32/other.dll");
    fs::create_directories(prefix.At("dosdevices"));
    fs::create_symlink(m_disk.Root(), prefix.At("dosdevices/c:"));
    EXPECT_EQ("%SystemDir%\\kernel32.dll\r\n", CaptureFiles(prefix.Root()).text);
}

TEST_F(LinksTest, A_system_folder_that_is_a_link_keeps_its_tag) {
    Disk disk;
    fs::create_directories(disk.At("windows"));
    fs::create_symlink(m_disk.At("windows/system32"), disk.At("windows/system32"));
    EXPECT_EQ("%SystemDir%\\kernel32.dll\r\n", CaptureFiles(disk.Root()).text);
}

// Lists of files captured from folders.
#include "prefix.h"

#include <gtest/gtest.h>

namespace {

using Lines = std::vector<std::string>;

void ExpectLines(Lines const &lines, qvlink::Capture const &capture) {
    EXPECT_EQ(TextOf(lines), capture.text);
    EXPECT_EQ(Lines{}, capture.skipped);
}

} // namespace

TEST(CaptureFiles, A_prefix_gives_the_system_folder_and_then_the_Windows_folder) {
    Disk disk;
    disk.Put("drive_c/windows/system32/kernel32.dll");
    disk.Put("drive_c/windows/system32/drivers/etc/hosts");
    disk.Put("drive_c/windows/system32/drivers/b.sys");
    disk.Put("drive_c/windows/Notepad.exe");
    disk.Put("drive_c/windows/inf/a.inf");
    disk.Put("drive_c/windows/system/old.drv");
    disk.Put("drive_c/program.exe");
    disk.Put("system.reg");
    ExpectLines({"%SystemDir%\\drivers\\b.sys", "%SystemDir%\\drivers\\etc\\hosts",
                 "%SystemDir%\\kernel32.dll", "%WindowsDir%\\inf\\a.inf",
                 "%WindowsDir%\\Notepad.exe", "%WindowsDir%\\system\\old.drv"},
                CaptureFiles(disk.Root()));
}

TEST(CaptureFiles, The_text_has_no_findings) {
    Disk disk;
    for (const char *const name : {"b", "A", "c d", "a.b", "a\xC3\xA4"}) {
        disk.Put(std::string("windows/system32/") + name);
        disk.Put(std::string("windows/x y/") + name);
    }
    EXPECT_EQ(0u, lists::Check(CaptureFiles(disk.Root()).text, lists::Kind::files).size());
}

TEST(CaptureFiles, Order_goes_by_components_whatever_the_case) {
    Disk disk;
    for (const char *const name : {"b.dll", "A.dll", "a/z.dll", "a b.dll", "C.dll", "a_.dll"}) {
        disk.Put(std::string("windows/system32/") + name);
    }
    ExpectLines({"%SystemDir%\\a\\z.dll", "%SystemDir%\\a b.dll", "%SystemDir%\\A.dll",
                 "%SystemDir%\\a_.dll", "%SystemDir%\\b.dll", "%SystemDir%\\C.dll"},
                CaptureFiles(disk.Root()));
}

TEST(CaptureFiles, A_disk_may_spell_its_folders_as_it_likes) {
    for (const char *const folder : {"Windows/System32", "WINDOWS/SYSTEM32", "WINNT/system32"}) {
        Disk disk;
        disk.Put(std::string(folder) + "/KERNEL32.DLL");
        ExpectLines({"%SystemDir%\\KERNEL32.DLL"}, CaptureFiles(disk.Root()));
    }
}

TEST(CaptureFiles, Of_two_Windows_folders_the_one_with_a_kernel_counts) {
    Disk disk;
    disk.Put("Windows/system32/stray.txt");
    disk.Put("WINNT/system32/kernel32.dll");
    ExpectLines({"%SystemDir%\\kernel32.dll"}, CaptureFiles(disk.Root()));
}

TEST(CaptureFiles, Windows_95_has_its_kernel_in_System) {
    Disk disk;
    disk.Put("WINDOWS/SYSTEM/KERNEL32.DLL");
    disk.Put("WINDOWS/SYSTEM32/DRIVERS/A.SYS");
    ExpectLines({"%SystemDir%\\KERNEL32.DLL", "%WindowsDir%\\SYSTEM32\\DRIVERS\\A.SYS"},
                CaptureFiles(disk.Root()));
}

TEST(CaptureFiles, A_Windows_folder_may_be_named_itself) {
    Disk disk;
    disk.Put("copy/system32/a.dll");
    disk.Put("copy/b.exe");
    ExpectLines({"%SystemDir%\\a.dll", "%WindowsDir%\\b.exe"},
                CaptureFiles(disk.At("copy").string()));
}

TEST(CaptureFiles, Patterns_take_out_files_and_folders) {
    Disk disk;
    disk.Put("windows/system32/a.dll");
    disk.Put("windows/system32/a.pnf");
    disk.Put("windows/temp/x/y.tmp");
    disk.Put("windows/temporary");
    ExpectLines({"%SystemDir%\\a.dll", "%WindowsDir%\\temporary"},
                CaptureFiles(disk.Root(), {"*.PNF", "%windowsdir%\\temp"}));
}

TEST(CaptureFiles, Empty_folders_give_no_lines) {
    Disk disk;
    std::filesystem::create_directories(disk.At("windows/system32/empty"));
    ExpectLines({}, CaptureFiles(disk.Root()));
}

TEST(CaptureFiles, A_folder_of_another_kind_is_refused) {
    Disk disk;
    disk.Put("etc/passwd");
    std::string const why = Refusal(lists::Kind::files, disk.Root());
    EXPECT_NE(std::string::npos, why.find(disk.Root())) << why;
    EXPECT_NE(std::string::npos, why.find("name a folder that has drive_c")) << why;
}

TEST(CaptureFiles, A_prefix_without_Windows_is_refused) {
    Disk disk;
    disk.Put("drive_c/autoexec.bat");
    std::string const why = Refusal(lists::Kind::files, disk.Root());
    EXPECT_NE(std::string::npos, why.find("wineboot")) << why;
}

TEST(CaptureFiles, A_folder_that_is_missing_is_refused) {
    Disk const disk;
    std::string const why = Refusal(lists::Kind::files, disk.At("nowhere").string());
    EXPECT_NE(std::string::npos, why.find("no such folder")) << why;
}

// Which Windows code a host error gets, by number, and what isn't supported here.
#include "../services.h"

#include "platform/posix/errors.h"
#include "temp_folder.h"

#include <cerrno>
#include <sys/resource.h>
#include <sys/stat.h>

namespace {

using platform::Operation;

struct Expected {
    int hostError;
    DWORD code;
};

// For every operation but those that say otherwise below.
constexpr Expected common[] = {
    {ENOENT, 2},         {ENOTDIR, 3},  {EACCES, 5},   {EPERM, 5},   {EISDIR, 5},
    {EROFS, 19},         {EBUSY, 32},   {ETXTBSY, 32}, {EAGAIN, 32}, {ENOSPC, 112},
    {EDQUOT, 112},       {EFBIG, 223},  {EMFILE, 4},   {ENFILE, 4},  {ENOMEM, 8},
    {ENAMETOOLONG, 206}, {EILSEQ, 123}, {ELOOP, 1921}, {EXDEV, 17},  {ENOTEMPTY, 145},
    {EBADF, 6},          {EFAULT, 998}, {EIO, 1117},   {ENOSYS, 31}, {0, 31},
};
constexpr Operation operations[] = {Operation::Open, Operation::Attributes, Operation::Delete,
                                    Operation::Move, Operation::Transfer,   Operation::Seek};

class Unsupported : public testing::Test {
protected:
    Unsupported() { WriteBytes(m_folder.Path() / "file", BytesOf("abc")); }

    std::string At(std::string const &name) const { return m_folder.Directory() + "/" + name; }

    void ExpectRefused(DWORD access, DWORD disposition, DWORD flags) const {
        win::SetLastError(0);
        EXPECT_EQ(INVALID_HANDLE_VALUE, win::CreateFileA(At("file").c_str(), access, shareAll,
                                                         nullptr, disposition, flags, nullptr));
        EXPECT_EQ(50u, win::GetLastError());
    }

    TempFolder m_folder;
};

} // namespace

TEST(Errors, have_one_code_each_whatever_was_done) {
    for (Expected const &expected : common)
        for (Operation const operation : operations)
            EXPECT_EQ(expected.code, platform::CodeOf(expected.hostError, operation))
                << expected.hostError;
}

TEST(Errors, that_depend_on_what_was_done) {
    EXPECT_EQ(80u, platform::CodeOf(EEXIST, Operation::Open));
    EXPECT_EQ(183u, platform::CodeOf(EEXIST, Operation::Move));
    EXPECT_EQ(131u, platform::CodeOf(EINVAL, Operation::Seek));
    EXPECT_EQ(87u, platform::CodeOf(EINVAL, Operation::Move));
    EXPECT_EQ(132u, platform::CodeOf(ESPIPE, Operation::Seek));
}

TEST(Errors, a_missing_folder_is_told_from_a_missing_file) {
    TempFolder const folder;
    EXPECT_EQ(2u, platform::FailedOn(folder.Directory() + "/x", ENOENT, Operation::Open));
    EXPECT_EQ(3u, platform::FailedOn(folder.Directory() + "/x/y", ENOENT, Operation::Open));
    EXPECT_EQ(5u, platform::FailedOn(folder.Directory() + "/x/y", EACCES, Operation::Open));
}

TEST(Errors, names_that_are_too_long_are_206) {
    TempFolder const folder;
    std::string const longName = folder.Directory() + "/" + std::string(300, 'n');
    EXPECT_FAILS_WITH(206, win::DeleteFileA(longName.c_str()));
    EXPECT_FAILS_WITH(206, win::SetFileAttributesA(longName.c_str(), FILE_ATTRIBUTE_NORMAL));
    EXPECT_EQ(INVALID_HANDLE_VALUE, OpenToWrite(longName, CREATE_ALWAYS));
    EXPECT_EQ(206u, win::GetLastError());
    std::string const longPath = "/" + std::string(100000, 'n');
    EXPECT_EQ(INVALID_HANDLE_VALUE, OpenToRead(longPath));
    EXPECT_EQ(206u, win::GetLastError());
}

TEST(Errors, a_full_disk_is_112) {
    ScopedHandle const full(OpenToWrite("/dev/full", OPEN_EXISTING));
    if (!full.Valid())
        GTEST_SKIP() << "this machine has no /dev/full";
    DWORD count = 99;
    EXPECT_FAILS_WITH(112, win::WriteFile(full, "abc", 3, &count, nullptr));
    EXPECT_EQ(0u, count);
}

TEST(Errors, a_buffer_that_isnt_there_is_998) {
    ScopedHandle const file(OpenToRead("/dev/zero"));
    DWORD count = 99;
    EXPECT_FAILS_WITH(998, win::ReadFile(file, nullptr, 10, &count, nullptr));
    EXPECT_EQ(0u, count);
}

TEST(Errors, too_many_open_files_are_4) {
    rlimit old{};
    ASSERT_EQ(0, getrlimit(RLIMIT_NOFILE, &old));
    rlimit const none{0, old.rlim_max};
    ASSERT_EQ(0, setrlimit(RLIMIT_NOFILE, &none));
    HANDLE const file = OpenToRead("/dev/null");
    DWORD const code = win::GetLastError();
    ASSERT_EQ(0, setrlimit(RLIMIT_NOFILE, &old));
    EXPECT_EQ(INVALID_HANDLE_VALUE, file);
    EXPECT_EQ(4u, code);
}

TEST(Errors, links_in_a_circle_are_1921) {
    TempFolder const folder;
    std::filesystem::create_symlink("circle", folder.Path() / "circle");
    EXPECT_EQ(INVALID_HANDLE_VALUE, OpenToRead(folder.Directory() + "/circle"));
    EXPECT_EQ(1921u, win::GetLastError());
}

TEST(Errors, another_disk_is_17) {
    TempFolder const folder;
    struct stat here {};
    struct stat there {};
    if (stat(folder.Directory().c_str(), &here) != 0 || stat("/dev/shm", &there) != 0 ||
        here.st_dev == there.st_dev)
        GTEST_SKIP() << "this machine has no second file system at hand";
    WriteBytes(folder.Path() / "file", {});
    std::string const from = folder.Directory() + "/file";
    EXPECT_FAILS_WITH(17, win::MoveFileExA(from.c_str(), "/dev/shm/qvlinkdb-moved", 0));
}

TEST_F(Unsupported, accesses_are_50) {
    ExpectRefused(0, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL);
    ExpectRefused(0x10000000, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL);                // GENERIC_ALL
    ExpectRefused(GENERIC_READ | 0x00010000, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL); // DELETE
}

TEST_F(Unsupported, dispositions_are_50) {
    ExpectRefused(GENERIC_WRITE, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL);
    ExpectRefused(GENERIC_WRITE, TRUNCATE_EXISTING, FILE_ATTRIBUTE_NORMAL);
    ExpectRefused(GENERIC_WRITE, 0, FILE_ATTRIBUTE_NORMAL);
    EXPECT_EQ(3u, std::filesystem::file_size(m_folder.Path() / "file"));
}

TEST_F(Unsupported, flags_and_attributes_are_50) {
    for (DWORD const flags : {0x80000000u, 0x40000000u, 0x04000000u, 0x02000000u, 2u, 4u, 0x20u})
        ExpectRefused(GENERIC_READ, OPEN_EXISTING, flags);
    EXPECT_FAILS_WITH(50, win::SetFileAttributesA(At("file").c_str(), FILE_ATTRIBUTE_HIDDEN));
    EXPECT_FAILS_WITH(50, win::SetFileAttributesA(At("file").c_str(), FILE_ATTRIBUTE_ARCHIVE));
    EXPECT_FAILS_WITH(50, win::MoveFileExA(At("file").c_str(), At("x").c_str(), 2)); // copying
    EXPECT_FAILS_WITH(50, win::MoveFileExA(At("file").c_str(), At("x").c_str(), 4)); // at boot
}

TEST_F(Unsupported, records_that_lead_further_are_50) {
    int something = 0;
    auto *const security = reinterpret_cast<SECURITY_ATTRIBUTES *>(&something);
    EXPECT_EQ(INVALID_HANDLE_VALUE,
              win::CreateFileA(At("file").c_str(), GENERIC_READ, shareAll, security, OPEN_EXISTING,
                               FILE_ATTRIBUTE_NORMAL, nullptr));
    EXPECT_EQ(50u, win::GetLastError());
    ScopedHandle const file(OpenToWrite(At("file"), OPEN_EXISTING));
    auto *const overlapped = reinterpret_cast<OVERLAPPED *>(&something);
    char byte = 0;
    DWORD count = 0;
    EXPECT_FAILS_WITH(50, win::ReadFile(file, &byte, 1, &count, overlapped));
    EXPECT_FAILS_WITH(50, win::WriteFile(file, &byte, 1, &count, overlapped));
    EXPECT_FAILS_WITH(87, win::ReadFile(file, &byte, 1, nullptr, nullptr));
}

TEST_F(Unsupported, addresses_outside_of_modules_are_50) {
    auto const heap = std::make_unique<int>(1);
    MEMORY_BASIC_INFORMATION information;
    EXPECT_FAILS_WITH(50, win::VirtualQuery(heap.get(), &information, sizeof information));
    EXPECT_FAILS_WITH(24, win::VirtualQuery(reinterpret_cast<void *>(&getrlimit), &information, 8));
}

TEST_F(Unsupported, module_names_with_a_folder_are_126) {
    EXPECT_FAILS_WITH(126, win::LoadLibraryA("C:\\windows\\platform_first.dll"));
    EXPECT_FAILS_WITH(126, win::LoadLibraryA("./platform_first.dll"));
    EXPECT_FAILS_WITH(126, win::LoadLibraryA(""));
    EXPECT_FAILS_WITH(126, win::LoadLibraryA(nullptr));
}

// Services that need memory, when there is none: they fail with 8 and leave nothing behind.
#include "../services.h"

#include "allocations.h"

using Fail = AllocationWatch::Fail;

namespace {

// Text that is too long for any short form of a string.
const char longText[] = "a text that doesn't fit into an object of the text's own class";
unsigned short const wideText[] = {'a', ' ', 't', 'e', 'x', 't',  ' ', 't', 'h', 'a', 't', ' ',
                                   'd', 'o', 'e', 's', 'n', '\'', 't', ' ', 'f', 'i', 't', 0};

// Fails each of the work's allocations in turn. The work's result is 0 or null for a failure.
template <class Work> void ExpectEachFailsWith8(Work work) {
    work(); // what is made once for all is made here
    for (std::uint64_t number = 1; number < 2000; ++number) {
        std::size_t const before = AllocationWatch::LiveBlocks();
        AllocationWatch const watch(Fail::One, number);
        win::SetLastError(0);
        auto const result = work();
        if (!watch.Failed()) {
            EXPECT_NE(decltype(result){}, result);
            EXPECT_GT(number, 1u) << "nothing was allocated";
            return;
        }
        EXPECT_EQ(decltype(result){}, result) << number;
        EXPECT_EQ(8u, win::GetLastError()) << number;
        EXPECT_EQ(before, AllocationWatch::LiveBlocks()) << number;
    }
    FAIL() << "no end of allocations";
}

} // namespace

TEST(WithoutMemory, text_isnt_converted) {
    for (UINT const page : {1252u, 65001u}) {
        ExpectEachFailsWith8([page] {
            char buffer[100];
            return win::WideCharToMultiByte(page, 0, wideText, -1, buffer, sizeof buffer, nullptr,
                                            nullptr);
        });
        ExpectEachFailsWith8([page] {
            unsigned short buffer[100];
            return win::MultiByteToWideChar(page, 8, longText, -1, buffer, 100);
        });
    }
}

TEST(WithoutMemory, messages_arent_made) {
    ExpectEachFailsWith8([] {
        char *block = nullptr;
        DWORD const count = win::FormatMessageA(1280, longText, 0, 1024,
                                                reinterpret_cast<char *>(&block), 0, nullptr);
        win::LocalFree(block);
        return count;
    });
    ExpectEachFailsWith8([] {
        char *block = nullptr;
        DWORD const count = win::FormatMessageA(4352, nullptr, 32, 1024,
                                                reinterpret_cast<char *>(&block), 0, nullptr);
        win::LocalFree(block);
        return count;
    });
}

TEST(WithoutMemory, groups_arent_told_and_sids_arent_made) {
    HANDLE opened = nullptr;
    ASSERT_TRUE(win::OpenProcessToken(win::GetCurrentProcess(), 8, &opened));
    ScopedHandle const token(opened);
    ExpectEachFailsWith8([opened] {
        std::uint64_t buffer[20];
        DWORD size = 0;
        return win::GetTokenInformation(opened, TokenGroups, buffer, sizeof buffer, &size);
    });
    ExpectEachFailsWith8([] {
        SID_IDENTIFIER_AUTHORITY authority{};
        PSID sid = nullptr;
        BOOL const made =
            win::AllocateAndInitializeSid(&authority, 1, 0, 0, 0, 0, 0, 0, 0, 0, &sid);
        win::FreeSid(sid);
        return made;
    });
}

TEST(WithoutMemory, searches_find_nothing) {
    for (const char *mask : {"/proc/self/ns/u*", "/proc/self/status", "/proc/self/ns/."})
        ExpectEachFailsWith8([mask]() -> HANDLE {
            WIN32_FIND_DATAA found;
            HANDLE const search = win::FindFirstFileA(mask, &found);
            if (search == INVALID_HANDLE_VALUE)
                return nullptr;
            win::FindClose(search);
            return search;
        });
}

TEST(WithoutMemory, the_current_directory_isnt_told_and_stays) {
    ExpectEachFailsWith8([] {
        char buffer[300];
        return win::GetCurrentDirectoryA(sizeof buffer, buffer);
    });
    ExpectEachFailsWith8([] { return win::SetCurrentDirectoryA(".\\.\\.\\.\\.\\.\\.\\."); });
}

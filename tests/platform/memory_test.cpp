// Memory by the page.
#include "platform/winapi.h"

#include <cstdint>
#include <cstring>
#include <gtest/gtest.h>

namespace {

constexpr SIZE_T Large = SIZE_T{5} << 20;

class Memory : public testing::TestWithParam<SIZE_T> {};

} // namespace

TEST_P(Memory, A_block_is_zero_writable_and_starts_at_a_multiple_of_64_KiB) {
    auto *const block = static_cast<unsigned char *>(
        win::VirtualAlloc(nullptr, GetParam(), MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
    ASSERT_NE(nullptr, block);
    EXPECT_EQ(0u, reinterpret_cast<std::uintptr_t>(block) % 65536);
    for (SIZE_T i = 0; i < GetParam(); ++i)
        ASSERT_EQ(0, block[i]) << i;
    std::memset(block, 0x5a, GetParam());
    EXPECT_TRUE(win::VirtualFree(block, 0, MEM_RELEASE));
}

INSTANTIATE_TEST_SUITE_P(Sizes, Memory,
                         testing::Values(SIZE_T{1}, SIZE_T{65536}, Large, Large + 1));

TEST(MemoryFailures, A_size_of_0_is_refused_with_87) {
    win::SetLastError(0);
    EXPECT_EQ(nullptr, win::VirtualAlloc(nullptr, 0, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
    EXPECT_EQ(87u, win::GetLastError());
}

TEST(MemoryFailures, A_null_block_is_not_freed) {
    win::SetLastError(0);
    EXPECT_FALSE(win::VirtualFree(nullptr, 0, MEM_RELEASE));
    EXPECT_EQ(87u, win::GetLastError());
}

TEST(MemoryFailures, Releasing_takes_no_size) {
    void *const block = win::VirtualAlloc(nullptr, 4096, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
    ASSERT_NE(nullptr, block);
    win::SetLastError(0);
    EXPECT_FALSE(win::VirtualFree(block, 4096, MEM_RELEASE));
    EXPECT_EQ(87u, win::GetLastError());
    EXPECT_TRUE(win::VirtualFree(block, 0, MEM_RELEASE));
}

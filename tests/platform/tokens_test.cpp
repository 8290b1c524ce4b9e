// Tokens and SIDs, on both systems by the documented results and codes.
#include "sids.h"

#include <cstring>

namespace {

std::vector<BYTE> SidBytes(ScopedSid const &sid, std::size_t count) {
    std::vector<BYTE> bytes(count);
    std::memcpy(bytes.data(), sid.Get(), count);
    return bytes;
}

} // namespace

TEST(Sids, begin_with_revision_count_and_authority) {
    ScopedSid const administrators(5, {32, 544});
    EXPECT_EQ((std::vector<BYTE>{1, 2, 0, 0, 0, 0, 0, 5, 32, 0, 0, 0, 0x20, 2, 0, 0}),
              SidBytes(administrators, 16));
    ScopedSid const longest(3, {1, 2, 3, 4, 5, 6, 7, 0x01020304});
    EXPECT_EQ((std::vector<BYTE>{1, 8, 0, 0, 0, 0, 0, 3}), SidBytes(longest, 8));
    EXPECT_EQ((std::vector<BYTE>{4, 3, 2, 1}), [&] {
        auto const all = SidBytes(longest, 40);
        return std::vector<BYTE>(all.end() - 4, all.end());
    }());
}

TEST(Sids, are_equal_if_all_of_them_is) {
    ScopedSid const sid(5, {32, 544});
    EXPECT_TRUE(win::EqualSid(sid.Get(), sid.Get()));
    EXPECT_TRUE(win::EqualSid(sid.Get(), ScopedSid(5, {32, 544}).Get()));
    EXPECT_FALSE(win::EqualSid(sid.Get(), ScopedSid(4, {32, 544}).Get()));
    EXPECT_FALSE(win::EqualSid(sid.Get(), ScopedSid(5, {33, 544}).Get()));
    EXPECT_FALSE(win::EqualSid(sid.Get(), ScopedSid(5, {32, 545}).Get()));
    EXPECT_FALSE(win::EqualSid(sid.Get(), ScopedSid(5, {32}).Get()));
    EXPECT_FALSE(win::EqualSid(sid.Get(), ScopedSid(5, {32, 544, 0}).Get()));
}

TEST(Sids, have_no_more_than_eight_sub_authorities) {
    SID_IDENTIFIER_AUTHORITY authority = {{0, 0, 0, 0, 0, 5}};
    PSID sid = nullptr;
    EXPECT_FAILS_WITH(1337,
                      win::AllocateAndInitializeSid(&authority, 9, 1, 2, 3, 4, 5, 6, 7, 8, &sid));
}

TEST(Tokens, a_thread_that_doesnt_impersonate_has_none) {
    HANDLE token = nullptr;
    EXPECT_FAILS_WITH(1008, win::OpenThreadToken(win::GetCurrentThread(), 8, FALSE, &token));
    EXPECT_FAILS_WITH(1008, win::OpenThreadToken(win::GetCurrentThread(), 8, TRUE, &token));
}

TEST(Tokens, of_what_is_no_thread_or_process_are_refused_with_6) {
    auto const nothing = reinterpret_cast<HANDLE>(std::uintptr_t{0x1234});
    HANDLE token = nullptr;
    EXPECT_FAILS_WITH(6, win::OpenThreadToken(nothing, 8, FALSE, &token));
    EXPECT_FAILS_WITH(6, win::OpenProcessToken(nothing, 8, &token));
}

TEST(Tokens, tell_the_size_of_their_groups_with_122) {
    ScopedHandle const token(OpenOwnToken());
    DWORD size = 0;
    EXPECT_FAILS_WITH(122, win::GetTokenInformation(token, TokenGroups, nullptr, 0, &size));
    EXPECT_GE(size, sizeof(TOKEN_GROUPS) + 12); // one group and its SID
    std::vector<std::uint64_t> buffer(size / 8 + 1);
    DWORD again = 0;
    EXPECT_FAILS_WITH(
        122, win::GetTokenInformation(token, TokenGroups, buffer.data(), size - 1, &again));
    EXPECT_EQ(size, again);
    EXPECT_TRUE(win::GetTokenInformation(token, TokenGroups, buffer.data(), size, &again));
}

TEST(Tokens, tell_groups_whose_sids_lie_in_the_same_buffer) {
    ScopedHandle const token(OpenOwnToken());
    GroupsOf const groups(token);
    ASSERT_GE(groups.Record().GroupCount, 1u);
    auto const *const end =
        reinterpret_cast<BYTE const *>(groups.Record().Groups + groups.Record().GroupCount);
    for (DWORD i = 0; i < groups.Record().GroupCount; ++i) {
        auto const *const sid = static_cast<BYTE const *>(groups.Record().Groups[i].Sid);
        EXPECT_GE(sid, end);
        EXPECT_EQ(1, sid[0]);
    }
}

TEST(Tokens, have_everybody_among_their_groups) {
    ScopedHandle const token(OpenOwnToken());
    GroupsOf const groups(token);
    EXPECT_TRUE(groups.Has(ScopedSid(1, {0})));
    EXPECT_FALSE(groups.Has(ScopedSid(5, {32, 9999})));
}

TEST(Tokens, are_closed_once) {
    HANDLE const token = OpenOwnToken();
    DWORD size = 0;
    EXPECT_TRUE(win::CloseHandle(token));
    EXPECT_FAILS_WITH(6, win::GetTokenInformation(token, TokenGroups, nullptr, 0, &size));
    EXPECT_FAILS_WITH(6, win::CloseHandle(token));
}

TEST(Tokens, are_opened_anew_each_time) {
    ScopedHandle const first(OpenOwnToken());
    ScopedHandle second(OpenOwnToken());
    EXPECT_NE(static_cast<HANDLE>(first), static_cast<HANDLE>(second));
    second.Close();
    DWORD size = 0;
    EXPECT_FAILS_WITH(122, win::GetTokenInformation(first, TokenGroups, nullptr, 0, &size));
}

TEST(Tokens, the_threads_pseudo_handle_can_be_closed_and_stays) {
    EXPECT_TRUE(win::CloseHandle(win::GetCurrentThread()));
    HANDLE token = nullptr;
    EXPECT_FAILS_WITH(1008, win::OpenThreadToken(win::GetCurrentThread(), 8, FALSE, &token));
}

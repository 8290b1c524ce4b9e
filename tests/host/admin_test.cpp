// Whether the user belongs to the Administrators group: who is asked, in which order, and what
// each failure gives.
#include "CNTAdminObject.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "call_hook.h"
#include "platform/winapi.h"

namespace {

using Services = std::vector<std::string>;

constexpr DWORD denyOnly = 0x10; // SE_GROUP_USE_FOR_DENY_ONLY

// A SID of the system's own authority, by its sub-authorities.
std::vector<std::uint32_t> SidOf(std::vector<std::uint32_t> const &subAuthorities) {
    std::vector<std::uint32_t> words(2 + subAuthorities.size());
    BYTE const head[8] = {1, static_cast<BYTE>(subAuthorities.size()), 0, 0, 0, 0, 0, 5};
    std::memcpy(words.data(), head, sizeof head);
    std::copy(subAuthorities.begin(), subAuthorities.end(), words.begin() + 2);
    return words;
}

// A record of groups with the memory that it needs.
class Groups {
public:
    Groups(std::vector<std::vector<std::uint32_t>> sids, DWORD attributes)
        : m_sids(std::move(sids)) {
        m_memory.resize(1 + m_sids.size() * sizeof(SID_AND_ATTRIBUTES) / sizeof(std::uint64_t) + 2);
        auto *const record = reinterpret_cast<TOKEN_GROUPS *>(m_memory.data());
        record->GroupCount = static_cast<DWORD>(m_sids.size());
        SID_AND_ATTRIBUTES *entry = record->Groups;
        for (auto &sid : m_sids)
            *entry++ = {sid.data(), attributes};
    }
    TOKEN_GROUPS const *Record() const {
        return reinterpret_cast<TOKEN_GROUPS const *>(m_memory.data());
    }

private:
    std::vector<std::vector<std::uint32_t>> m_sids;
    std::vector<std::uint64_t> m_memory;
};

std::vector<std::uint32_t> const administrators = SidOf({32, 544});
std::vector<std::uint32_t> const users = SidOf({32, 545});
std::vector<std::uint32_t> const local = SidOf({4});

class Administrator : public testing::Test {
protected:
    void SetUp() override { testing_hooks::SetVersion(2, 5, 1); }
    void TearDown() override {
        testing_hooks::SetProcessGroups(nullptr);
        testing_hooks::SetThreadGroups(nullptr);
        testing_hooks::SetVersion(0, 0, 0);
    }

    // What the question gives, with one service made to fail with an error, at its call of
    // the given number.
    int WithFailure(std::string const &service, DWORD error, int number = 1) {
        CNTAdminObject object;
        int calls = 0;
        bool failed = false;
        int result = -1;
        {
            CallHook const hook([&](testing_hooks::Call const &call) {
                bool const now = call.moment == testing_hooks::Moment::Before &&
                                 service == call.service && ++calls == number;
                failed |= now;
                if (now)
                    win::SetLastError(error);
                return now;
            });
            result = object.IsAdmin();
        }
        EXPECT_TRUE(failed) << service;
        return result;
    }
};

TEST_F(Administrator, is_whose_token_holds_the_group) {
    Groups const groups({users, administrators, local}, 7);
    testing_hooks::SetProcessGroups(groups.Record());
    CNTAdminObject object;
    EXPECT_EQ(1, object.IsAdmin());
    EXPECT_EQ(1, object.RunningAsAdministrator());
}

TEST_F(Administrator, is_not_who_has_other_groups_only) {
    Groups const groups({users, local, SidOf({33, 544}), SidOf({32}), SidOf({32, 544, 1})}, 7);
    testing_hooks::SetProcessGroups(groups.Record());
    EXPECT_EQ(0, CNTAdminObject().IsAdmin());
}

TEST_F(Administrator, is_not_who_has_no_groups) {
    Groups const groups({}, 7);
    testing_hooks::SetProcessGroups(groups.Record());
    EXPECT_EQ(0, CNTAdminObject().IsAdmin());
}

TEST_F(Administrator, is_also_who_has_the_group_to_be_denied_by_it) {
    Groups const groups({administrators}, denyOnly);
    testing_hooks::SetProcessGroups(groups.Record());
    EXPECT_EQ(1, CNTAdminObject().IsAdmin());
}

TEST_F(Administrator, is_judged_by_the_thread_that_impersonates) {
    Groups const may({administrators}, 7);
    Groups const mayNot({users}, 7);
    testing_hooks::SetProcessGroups(may.Record());
    testing_hooks::SetThreadGroups(mayNot.Record());
    EXPECT_EQ(0, CNTAdminObject().IsAdmin());
    testing_hooks::SetProcessGroups(mayNot.Record());
    testing_hooks::SetThreadGroups(may.Record());
    EXPECT_EQ(1, CNTAdminObject().IsAdmin());
}

TEST_F(Administrator, is_nobody_before_NT_and_the_system_is_not_asked) {
    Groups const groups({administrators}, 7);
    testing_hooks::SetProcessGroups(groups.Record());
    struct {
        DWORD platform, major, minor;
    } const before[] = {{1, 4, 0}, {1, 4, 10}, {1, 4, 90}, {1, 4, 20}};
    for (auto const &version : before) {
        testing_hooks::SetVersion(version.platform, version.major, version.minor);
        CNTAdminObject object;
        int calls = 0;
        CallHook const hook([&](testing_hooks::Call const &) {
            ++calls;
            return false;
        });
        EXPECT_EQ(0, object.IsAdmin()) << version.minor;
        EXPECT_EQ(0, calls) << version.minor;
    }
    testing_hooks::SetVersion(2, 3, 51);
    EXPECT_EQ(1, CNTAdminObject().IsAdmin()); // the first that is NT
}

TEST_F(Administrator, is_asked_of_the_system_step_by_step_and_no_handle_is_closed) {
    Groups const groups({administrators}, 7);
    testing_hooks::SetProcessGroups(groups.Record());
    CNTAdminObject object;
    Services called;
    CallHook const hook([&](testing_hooks::Call const &call) {
        if (call.moment == testing_hooks::Moment::Before)
            called.emplace_back(call.service);
        return false;
    });
    EXPECT_EQ(1, object.IsAdmin());
    EXPECT_EQ((Services{"OpenThreadToken", "OpenProcessToken", "GetTokenInformation",
                        "GetTokenInformation", "AllocateAndInitializeSid"}),
              called);
}

TEST_F(Administrator, is_nobody_when_a_step_fails) {
    Groups const groups({administrators}, 7);
    testing_hooks::SetProcessGroups(groups.Record());
    EXPECT_EQ(1, CNTAdminObject().IsAdmin());
    EXPECT_EQ(0, WithFailure("OpenThreadToken", 5)); // any error but that there is no token
    EXPECT_EQ(1, WithFailure("OpenThreadToken", 1008));
    EXPECT_EQ(0, WithFailure("OpenProcessToken", 5));
    EXPECT_EQ(0, WithFailure("GetTokenInformation", 5)); // the size is told with 122 only
    EXPECT_EQ(0, WithFailure("GetTokenInformation", 5, 2));
    EXPECT_EQ(0, WithFailure("AllocateAndInitializeSid", 8));
}

// Nothing is allocated for it, and the second question fails.
TEST_F(Administrator, is_nobody_when_the_size_told_is_none) {
    Groups const groups({administrators}, 7);
    testing_hooks::SetProcessGroups(groups.Record());
    EXPECT_EQ(0, WithFailure("GetTokenInformation", 122));
}

TEST_F(Administrator, is_a_question_that_a_copy_answers_too) {
    Groups const groups({administrators}, 7);
    testing_hooks::SetProcessGroups(groups.Record());
    CNTAdminObject const object;
    CNTAdminObject copy(object);
    EXPECT_EQ(1, copy.IsAdmin());
}

} // namespace

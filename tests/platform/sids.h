// SIDs for tests.
#pragma once

#include "services.h"

#include <initializer_list>
#include <vector>

// A SID that goes with the scope.
class ScopedSid {
public:
    ScopedSid(BYTE authority, std::initializer_list<DWORD> subAuthorities) {
        SID_IDENTIFIER_AUTHORITY whole = {{0, 0, 0, 0, 0, authority}};
        std::vector<DWORD> all(subAuthorities);
        auto const count = static_cast<BYTE>(all.size());
        all.resize(8);
        EXPECT_TRUE(win::AllocateAndInitializeSid(&whole, count, all[0], all[1], all[2], all[3],
                                                  all[4], all[5], all[6], all[7], &m_sid));
    }
    ~ScopedSid() { EXPECT_EQ(nullptr, win::FreeSid(m_sid)); }
    ScopedSid(ScopedSid const &) = delete;
    ScopedSid &operator=(ScopedSid const &) = delete;

    PSID Get() const { return m_sid; }

private:
    PSID m_sid = nullptr;
};

// The groups of a token, in memory that goes with the object.
class GroupsOf {
public:
    explicit GroupsOf(HANDLE token) {
        DWORD size = 0;
        EXPECT_FALSE(win::GetTokenInformation(token, TokenGroups, nullptr, 0, &size));
        m_memory.resize(size / sizeof(std::uint64_t) + 1);
        EXPECT_TRUE(win::GetTokenInformation(token, TokenGroups, m_memory.data(), size, &size));
    }

    TOKEN_GROUPS const &Record() const {
        return *reinterpret_cast<TOKEN_GROUPS const *>(m_memory.data());
    }
    bool Has(ScopedSid const &sid) const {
        for (DWORD i = 0; i < Record().GroupCount; ++i)
            if (win::EqualSid(Record().Groups[i].Sid, sid.Get()))
                return true;
        return false;
    }

private:
    std::vector<std::uint64_t> m_memory;
};

inline HANDLE OpenOwnToken() {
    HANDLE token = nullptr;
    EXPECT_TRUE(win::OpenProcessToken(win::GetCurrentProcess(), 8, &token));
    return token;
}

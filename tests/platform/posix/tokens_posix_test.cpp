// Tokens: who counts as an administrator here, and what isn't supported.
#include "../sids.h"

#include <cstdio>
#include <fstream>
#include <grp.h>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// What `id` prints for its arguments.
std::string Id(std::string const &arguments) {
    FILE *const pipe = popen(("id " + arguments).c_str(), "r");
    char text[4096] = "";
    if (pipe) {
        std::size_t const got = fread(text, 1, sizeof text - 1, pipe);
        text[got] = '\0';
        pclose(pipe);
    }
    return text;
}

bool HasAdministrators() {
    ScopedHandle const token(OpenOwnToken());
    return GroupsOf(token).Has(ScopedSid(5, {32, 544}));
}

// The number of a group of this machine, 0 for none.
gid_t GroupNumber(std::string const &name) {
    std::ifstream file("/etc/group");
    for (std::string line; std::getline(file, line);)
        if (line.compare(0, name.size() + 1, name + ":") == 0)
            return static_cast<gid_t>(std::stoul(line.substr(line.find(':', name.size() + 1) + 1)));
    return 0;
}

// Whether a process of a plain user in these groups is an administrator's.
bool IsAdministratorIn(std::vector<gid_t> const &groups) {
    pid_t const child = fork();
    if (child == 0) {
        bool const dropped = setgroups(groups.size(), groups.data()) == 0 &&
                             setresgid(65534, 65534, 65534) == 0 &&
                             setresuid(65534, 65534, 65534) == 0;
        _exit(dropped ? HasAdministrators() : 99);
    }
    int status = 0;
    EXPECT_EQ(child, waitpid(child, &status, 0));
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) < 2);
    return WEXITSTATUS(status) == 1;
}

} // namespace

TEST(TokensHere, administrators_are_the_superuser_and_some_groups) {
    bool expected = Id("-u") == "0\n";
    std::istringstream names(Id("-Gn"));
    for (std::string name; names >> name;)
        expected = expected || name == "sudo" || name == "wheel" || name == "admin";
    EXPECT_EQ(expected, HasAdministrators());
}

TEST(TokensHere, a_user_is_an_administrator_by_a_group) {
    if (geteuid() != 0)
        GTEST_SKIP() << "only the superuser can become another";
    EXPECT_FALSE(IsAdministratorIn({}));
    EXPECT_FALSE(IsAdministratorIn({12345, 23456}));
    for (const char *const name : {"sudo", "wheel", "admin"}) {
        gid_t const number = GroupNumber(name);
        EXPECT_EQ(number != 0, IsAdministratorIn({12345, number ? number : 23456})) << name;
    }
}

TEST(TokensHere, groups_are_enabled_and_mandatory) {
    ScopedHandle const token(OpenOwnToken());
    GroupsOf const groups(token);
    for (DWORD i = 0; i < groups.Record().GroupCount; ++i)
        EXPECT_EQ(7u, groups.Record().Groups[i].Attributes);
}

TEST(TokensHere, the_size_is_that_of_the_record_and_its_sids) {
    ScopedHandle const token(OpenOwnToken());
    DWORD size = 0;
    EXPECT_FALSE(win::GetTokenInformation(token, TokenGroups, nullptr, 0, &size));
    EXPECT_EQ(HasAdministrators() ? 8u + 2 * 16 + 12 + 16 : 8u + 16 + 12, size);
}

TEST(TokensHere, other_rights_are_50) {
    HANDLE token = nullptr;
    for (DWORD const access : {0u, 1u, 10u, 0xf01ffu}) {
        EXPECT_FAILS_WITH(50, win::OpenProcessToken(win::GetCurrentProcess(), access, &token));
        EXPECT_FAILS_WITH(50, win::OpenThreadToken(win::GetCurrentThread(), access, FALSE, &token));
    }
}

TEST(TokensHere, other_kinds_of_information_are_87) {
    ScopedHandle const token(OpenOwnToken());
    DWORD size = 0;
    for (int const kind : {0, 1, 3, 20})
        EXPECT_FAILS_WITH(87, win::GetTokenInformation(token,
                                                       static_cast<TOKEN_INFORMATION_CLASS>(kind),
                                                       nullptr, 0, &size));
}

TEST(TokensHere, null_places_are_998) {
    ScopedHandle const token(OpenOwnToken());
    DWORD size = 0;
    EXPECT_FAILS_WITH(998, win::OpenProcessToken(win::GetCurrentProcess(), 8, nullptr));
    EXPECT_FAILS_WITH(998, win::OpenThreadToken(win::GetCurrentThread(), 8, FALSE, nullptr));
    EXPECT_FAILS_WITH(998, win::GetTokenInformation(token, TokenGroups, nullptr, 100, &size));
    EXPECT_FAILS_WITH(998, win::GetTokenInformation(token, TokenGroups, nullptr, 0, nullptr));
}

TEST(TokensHere, handles_of_other_kinds_are_6_and_tokens_are_nothing_else) {
    ScopedHandle const token(OpenOwnToken());
    ScopedHandle const mutex(win::CreateMutexA(nullptr, FALSE, nullptr));
    DWORD size = 0;
    char byte = 0;
    EXPECT_FAILS_WITH(6, win::GetTokenInformation(mutex, TokenGroups, nullptr, 0, &size));
    EXPECT_FAILS_WITH(6, win::GetTokenInformation(nullptr, TokenGroups, nullptr, 0, &size));
    EXPECT_FAILS_WITH(6, win::ReadFile(token, &byte, 1, &size, nullptr));
    EXPECT_FAILS_WITH(6, win::WaitForSingleObject(token, 0) == WAIT_OBJECT_0);
    EXPECT_FAILS_WITH(6, win::ReleaseMutex(token));
}

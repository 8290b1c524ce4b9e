// What Resolve asks of the system: its family, once a process, and its folders.
#include "attached.h"
#include "roles.h"
#include "system_folders.h"

#include "platform/testing.h"
#include "platform/winapi.h"

#include <gtest/gtest.h>

namespace {

enum Answer : int { foundNothing = 10, foundInOldSystem = 11, foundInWindows = 12 };

// Resolves a name that the SYSTEM folder has, and the Windows directory if told.
int ResolveOnce(CQVUObject *vfile, CQVUObject const *inOldSystem) {
    CQVUObject const *const found = vfile->Resolve(nullptr);
    if (!found)
        return foundNothing;
    return found == inOldSystem ? foundInOldSystem : foundInWindows;
}

struct Place {
    Place() {
        std::string const windows = CurrentSystemFolders().windows;
        inOldSystem = db.AddBelow(db.Folder(windows + "\\SYSTEM"), "x.dll", OBJ_FILE);
        vfile = db.Add("x.dll", OBJ_VFILE);
    }
    Attached db;
    CQVUObject *inOldSystem;
    CQVUObject *vfile;
};

void Tell(Arguments const &arguments, std::size_t first) {
    auto const number = [&](std::size_t index) {
        return static_cast<DWORD>(std::stoul(arguments.at(first + index)));
    };
    testing_hooks::SetVersion(number(0), number(1), number(2));
}

Role const resolveRole("resolve", [](Arguments const &arguments) -> int {
    Tell(arguments, 0);
    Place place;
    return ResolveOnce(place.vfile, place.inOldSystem);
});

// The first version holds although another is told before the second question.
Role const resolveTwiceRole("resolve-twice", [](Arguments const &arguments) -> int {
    Place place;
    Tell(arguments, 0);
    ResolveOnce(place.vfile, place.inOldSystem);
    Tell(arguments, 3);
    return ResolveOnce(place.vfile, place.inOldSystem);
});

bool FailVersion(testing_hooks::Call const &call, void *) {
    return call.moment == testing_hooks::Moment::Before &&
           std::string(call.service) == "GetVersionExA";
}

Role const failingRole("resolve-failing", [](Arguments const &) -> int {
    Place place;
    testing_hooks::SetHook(FailVersion, nullptr);
    int const first = ResolveOnce(place.vfile, place.inOldSystem);
    testing_hooks::SetHook(nullptr, nullptr);
    int const second = ResolveOnce(place.vfile, place.inOldSystem);
    return first == second ? first : 1;
});

struct VersionCase {
    char const *platform, *major, *minor;
    bool isNT;
};

class Family : public testing::TestWithParam<VersionCase> {};

TEST_P(Family, The_SYSTEM_folder_of_the_Windows_directory_is_asked_on_NT_only) {
    VersionCase const &version = GetParam();
    EXPECT_EQ(RunRole("resolve", {version.platform, version.major, version.minor}),
              version.isNT ? foundInOldSystem : foundNothing);
}

INSTANTIATE_TEST_SUITE_P(
    Versions, Family,
    testing::Values(VersionCase{"2", "4", "0", true}, VersionCase{"2", "5", "1", true},
                    VersionCase{"2", "10", "0", true}, VersionCase{"2", "3", "51", false},
                    VersionCase{"2", "0", "1", false}, VersionCase{"1", "4", "0", false},
                    VersionCase{"1", "4", "90", false}, VersionCase{"1", "3", "0", false},
                    VersionCase{"1", "5", "0", false}, VersionCase{"0", "5", "0", false},
                    VersionCase{"3", "5", "0", false}));

TEST(FamilyCache, The_first_answer_holds_for_the_life_of_the_process) {
    EXPECT_EQ(RunRole("resolve-twice", {"2", "5", "1", "1", "4", "0"}), foundInOldSystem);
    EXPECT_EQ(RunRole("resolve-twice", {"1", "4", "0", "2", "5", "1"}), foundNothing);
}

TEST(FamilyCache, A_version_that_cannot_be_asked_is_not_NT_and_is_not_asked_again) {
    EXPECT_EQ(RunRole("resolve-failing", {}), foundNothing);
}

bool FailNamed(testing_hooks::Call const &call, void *context) {
    return call.moment == testing_hooks::Moment::Before &&
           std::string(call.service) == static_cast<char const *>(context);
}

class FailingFolders : public testing::Test {
protected:
    void Fail(char const *service) {
        testing_hooks::SetHook(FailNamed, const_cast<char *>(service));
    }
    void TearDown() override { testing_hooks::SetHook(nullptr, nullptr); }

    Place place;
};

TEST_F(FailingFolders, Without_a_system_directory_the_others_are_asked) {
    Fail("GetSystemDirectoryA");
    EXPECT_EQ(place.vfile->Resolve(nullptr), place.inOldSystem);
}

TEST_F(FailingFolders, Without_a_windows_directory_the_system_directory_is_asked) {
    Fail("GetWindowsDirectoryA");
    EXPECT_EQ(place.vfile->Resolve(nullptr), nullptr);
    CQVUObject *const inSystem =
        place.db.AddBelow(place.db.Folder(CurrentSystemFolders().system), "x.dll", OBJ_FILE);
    EXPECT_EQ(place.vfile->Resolve(nullptr), inSystem);
}

} // namespace

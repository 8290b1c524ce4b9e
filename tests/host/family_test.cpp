// The family of the system: which version is of which, and when it is asked for.
#include "CNTAdminObject.h"

#include <fstream>
#include <type_traits>

#include <gtest/gtest.h>

#include "call_hook.h"
#include "platform/system_version.h"
#include "roles.h"
#include "temp_folder.h"

namespace {

struct VersionCase {
    unsigned platform, major, minor;
    int family, isNt;
};

constexpr VersionCase versionCases[] = {
    // Windows 95, 98 and Me: by the minor version alone
    {1, 4, 0, 1, 0},
    {1, 0, 0, 1, 0},
    {1, 5, 0, 1, 0},
    {1, 99, 0, 1, 0},
    {1, 4, 10, 2, 0},
    {1, 3, 10, 2, 0},
    {1, 4, 90, 3, 0},
    {1, 5, 90, 3, 0},
    {1, 4, 20, 0, 0},
    {1, 4, 1, 0, 0},
    {1, 4, 9, 0, 0},
    {1, 4, 11, 0, 0},
    {1, 4, 89, 0, 0},
    {1, 4, 91, 0, 0},
    {1, 5, 1, 0, 0},
    // Windows NT: by the major version, but for 5
    {2, 3, 0, 4, 1},
    {2, 3, 10, 4, 1},
    {2, 3, 51, 4, 1},
    {2, 4, 0, 5, 1},
    {2, 4, 90, 5, 1},
    {2, 5, 0, 6, 1},
    {2, 5, 1, 7, 1},
    {2, 5, 2, 7, 1},
    {2, 6, 0, 7, 1},
    {2, 6, 3, 7, 1},
    {2, 10, 0, 7, 1},
    {2, 0, 0, 7, 1},
    {2, 2, 0, 7, 1},
    // neither
    {0, 4, 0, 0, 0},
    {0, 5, 1, 0, 0},
    {3, 5, 0, 0, 0},
    {3, 4, 10, 0, 0},
};

std::ostream &operator<<(std::ostream &stream, VersionCase const &version) {
    return stream << version.platform << '.' << version.major << '.' << version.minor;
}

// What GetVersionExA reports until the end of the scope.
class HookedVersion {
public:
    HookedVersion(unsigned platform, unsigned major, unsigned minor) {
        testing_hooks::SetVersion(platform, major, minor);
    }
    ~HookedVersion() { testing_hooks::SetVersion(0, 0, 0); }
    HookedVersion(HookedVersion const &) = delete;
    HookedVersion &operator=(HookedVersion const &) = delete;
};

class OpenFamily : public CNTAdminObject {
public:
    using CNTAdminObject::Copy;
    using CNTAdminObject::DetermineOS;
    using CNTAdminObject::os;
    using CNTAdminObject::sid;
};

void ExpectFamily(VersionCase const &version) {
    CNTAdminObject const object;
    EXPECT_EQ(version.family, object.GetOS()) << version;
    EXPECT_EQ(version.isNt, object.IsNT()) << version;
}

// Made when the program starts, as objects of a client are.
CNTAdminObject const early(g_NTAdminObject);

int TellFamilies(Arguments const &) { return early.GetOS() * 10 + g_NTAdminObject.GetOS(); }

Role const tellFamilies("tell-families", TellFamilies);

} // namespace

TEST(Family, has_the_told_values) {
    EXPECT_EQ(0, OS_UNKNOWN);
    EXPECT_EQ(1, OS_WIN95);
    EXPECT_EQ(2, OS_WIN98);
    EXPECT_EQ(3, OS_WINME);
    EXPECT_EQ(4, OS_NT3);
    EXPECT_EQ(5, OS_NT4);
    EXPECT_EQ(6, OS_WIN2000);
    EXPECT_EQ(7, OS_NT_LATER);
}

TEST(Family, is_that_of_the_version_which_the_system_reports) {
    for (VersionCase const &version : versionCases) {
        HookedVersion const reported(version.platform, version.major, version.minor);
        ExpectFamily(version);
    }
}

TEST(Family, is_that_of_the_version_in_the_settings) {
    if (!versionCanBeTold)
        GTEST_SKIP() << "Windows knows its own version";
    for (VersionCase const &version : versionCases) {
        ToldVersion const told(version.platform, version.major, version.minor);
        ExpectFamily(version);
    }
}

TEST(Family, of_platform_2_is_never_unknown) {
    for (unsigned major = 0; major < 12; ++major)
        for (unsigned minor = 0; minor < 100; ++minor) {
            HookedVersion const reported(2, major, minor);
            CNTAdminObject const object;
            EXPECT_LE(OS_NT3, object.GetOS()) << major << '.' << minor;
            EXPECT_EQ(major == 5 && minor == 0, object.GetOS() == OS_WIN2000);
        }
}

TEST(Family, of_a_system_that_doesnt_answer_is_unknown) {
    HookedVersion const reported(2, 5, 1);
    CallHook const hook([](CallHook::Call const &call) { return Is(call, "GetVersionExA"); });
    CNTAdminObject const object;
    EXPECT_EQ(OS_UNKNOWN, object.GetOS());
    EXPECT_EQ(0, object.IsNT());
}

TEST(Family, is_asked_for_once_by_each_object_that_is_no_copy) {
    int calls = 0;
    CallHook const hook([&calls](CallHook::Call const &call) {
        calls += Is(call, "GetVersionExA") && call.moment == CallHook::Moment::Before;
        return false;
    });
    CNTAdminObject object;
    EXPECT_EQ(1, calls);
    CNTAdminObject const copy(object);
    object = copy;
    object.GetOS();
    object.IsNT();
    EXPECT_EQ(1, calls);
    CNTAdminObject const other;
    EXPECT_EQ(2, calls);
}

TEST(Family, is_determined_anew_where_a_version_matches_only) {
    OpenFamily object;
    object.os = OS_NT4;
    {
        HookedVersion const reported(1, 4, 20);
        object.DetermineOS();
        EXPECT_EQ(OS_NT4, object.os);
    }
    HookedVersion const reported(1, 4, 90);
    object.DetermineOS();
    EXPECT_EQ(OS_WINME, object.os);
}

TEST(AdminObject, starts_without_an_identifier) { EXPECT_EQ(nullptr, OpenFamily().sid); }

TEST(AdminObject, a_copy_takes_both_fields) {
    int place = 0;
    HookedVersion const first(1, 4, 10);
    OpenFamily object;
    object.sid = &place;
    HookedVersion const second(2, 5, 1);
    OpenFamily const copy(object);
    EXPECT_EQ(OS_WIN98, copy.GetOS());
    EXPECT_EQ(&place, copy.sid);
    OpenFamily assigned;
    EXPECT_EQ(OS_NT_LATER, assigned.GetOS());
    assigned = object;
    EXPECT_EQ(OS_WIN98, assigned.GetOS());
    EXPECT_EQ(&place, assigned.sid);
    object.DetermineOS();
    EXPECT_EQ(OS_NT_LATER, object.GetOS());
    EXPECT_EQ(OS_WIN98, copy.GetOS());
}

TEST(AdminObject, an_assignment_to_itself_does_nothing) {
    int place = 0;
    OpenFamily object;
    object.os = OS_NT3;
    object.sid = &place;
    OpenFamily const &same = object;
    object = same;
    EXPECT_EQ(OS_NT3, object.os);
    EXPECT_EQ(&place, object.sid);
}

TEST(AdminObject, has_a_virtual_destructor_and_two_fields) {
    EXPECT_TRUE(std::has_virtual_destructor_v<CNTAdminObject>);
    EXPECT_EQ(3 * sizeof(void *), sizeof(CNTAdminObject));
    OpenFamily const object;
    EXPECT_LT(static_cast<void const *>(&object.sid), static_cast<void const *>(&object.os));
}

TEST(ProcessWideFamily, was_told_once_when_the_process_started) {
    ostype const family = g_NTAdminObject.GetOS();
    EXPECT_EQ(CNTAdminObject().GetOS(), family);
    HookedVersion const reported(1, 4, family == OS_WIN98 ? 0 : 10);
    EXPECT_EQ(family, g_NTAdminObject.GetOS());
    EXPECT_NE(family, CNTAdminObject().GetOS());
}

TEST(ProcessWideFamily, is_there_for_objects_made_before_main) {
    if (!versionCanBeTold)
        GTEST_SKIP() << "Windows knows its own version";
    TempFolder const prefix;
    struct {
        const char *version;
        int families;
    } const cases[] = {{"1.4.10", 22}, {"2.5.0", 66}, {"2.5.1", 77}, {"1.4.20", 0}};
    for (auto const &expected : cases) {
        std::ofstream(prefix.Path() / "platform.ini") << "version=" << expected.version << '\n';
        UsePrefixFromNowOn(prefix.Path().string().c_str());
        EXPECT_EQ(expected.families, RunRole("tell-families", {})) << expected.version;
    }
}

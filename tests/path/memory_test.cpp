// Memory that fails at each point: nothing is lost, and a path can be used and destroyed.
#include "open_path.h"

#include <functional>
#include <memory>
#include <new>

#include <gtest/gtest.h>

#include "allocations.h"
#include "std_exception.h"

using Fail = AllocationWatch::Fail;
using UTILS::UtilsString;

namespace {

constexpr std::uint64_t manyAllocations = 20000;

// While one path lives the installer stays loaded, and doesn't come and go with each other one.
class PathsWithoutMemory : public testing::Test {
    OpenPath m_first;
};

// Runs the work with each of its allocations failing in turn, alone or with all behind it.
// The work makes all it needs and keeps nothing.
void ExpectNothingLost(std::function<void()> const &work) {
    work(); // what is made once for all is made here
    for (Fail const fail : {Fail::One, Fail::Onwards}) {
        for (std::uint64_t number = 1;; ++number) {
            ASSERT_LT(number, manyAllocations);
            std::size_t const before = AllocationWatch::LiveBlocks();
            bool failed = false;
            {
                AllocationWatch const watch(fail, number);
                try {
                    work();
                } catch (std::bad_alloc const &) {
                }
                failed = watch.Failed();
            }
            ASSERT_EQ(before, AllocationWatch::LiveBlocks()) << number;
            if (!failed)
                break;
        }
    }
}

// The same for one operation on a path that lives on, and is still good for something.
void ExpectUsableAfter(std::function<void(OpenPath &)> const &operation) {
    for (std::uint64_t number = 1;; ++number) {
        ASSERT_LT(number, manyAllocations);
        OpenPath path("HKCU\\a\\long\\path\\of\\several\\components");
        bool failed = false;
        {
            AllocationWatch const watch(Fail::One, number);
            try {
                operation(path);
            } catch (std::bad_alloc const &) {
            }
            failed = watch.Failed();
        }
        ASSERT_EQ(path.path.size(), path.Text().size()) << number;
        ASSERT_EQ(1, path.SetKey("HKCU\\another\\path")) << number; // no call to the system
        ASSERT_EQ("HKCU\\another\\path", path.Text()) << number;
        if (!failed)
            break;
    }
}

char const longText[] = "one\\two\\three\\four\\five\\six\\seven\\eight\\nine\\ten";

} // namespace

TEST_F(PathsWithoutMemory, Arent_made) {
    ExpectNothingLost([] { OpenPath const path; });
    ExpectNothingLost([] { OpenPath const path(std::string("C:\\a\\") + longText); });
    ExpectNothingLost([] { OpenPath const path(longText); });
    ExpectNothingLost([] { OpenPath const path(std::string("HKLM\\") + longText); });
}

TEST_F(PathsWithoutMemory, Arent_copied) {
    OpenPath const path(longText);
    ExpectNothingLost([&path] {
        OpenPath copy(path);
        copy.CloseParentSearch();
    });
    ExpectNothingLost([&path] {
        OpenPath target("C:\\x");
        target = path;
    });
}

TEST_F(PathsWithoutMemory, Throw_no_more_than_that) {
    ExpectNothingLost([] {
        try {
            OpenPath const path("", 1);
        } catch (UTILS::std_exception const &) {
        }
    });
}

TEST_F(PathsWithoutMemory, Can_be_set_again) {
    ExpectUsableAfter([](OpenPath &path) { path.SetDir(longText); });
    ExpectUsableAfter([](OpenPath &path) { path.SetKey("HKEY_CURRENT_USER\\Software\\x"); });
    ExpectUsableAfter([](OpenPath &path) { path.SetDir("..\\..\\one\\two\\three\\four\\five"); });
    ExpectUsableAfter([](OpenPath &path) { path.SetDir("\\\\a server with\\a long name"); });
    ExpectUsableAfter(
        [](OpenPath &path) { path.SetDir("C:\\\\twice\\\\separated\\\\components"); });
}

TEST_F(PathsWithoutMemory, Can_be_added_to_again) {
    ExpectUsableAfter([](OpenPath &path) { path.AddToPath(longText); });
    ExpectUsableAfter([](OpenPath &path) { path.AddToPath("D:\\one\\two\\three\\four\\five"); });
    ExpectUsableAfter([](OpenPath &path) { path.AddToPath("..\\one\\two\\three\\four\\five"); });
    ExpectUsableAfter([](OpenPath &path) { path += path; });
}

TEST_F(PathsWithoutMemory, Can_still_be_climbed) {
    ExpectUsableAfter([](OpenPath &path) {
        UtilsString parent;
        char text[100];
        OpenPath out;
        path.GetParentDir(parent);
        path.GetNextParentDir(text);
        path.GetNextParentDir(out);
        path.GetDirFolder(parent);
        path.GetDrive();
        path.SetPathToSubDir();
    });
}

TEST_F(PathsWithoutMemory, Keep_their_text_while_they_are_climbed) {
    OpenPath path("C:\\a\\long\\path\\of\\several\\components");
    for (std::uint64_t number = 1; number < manyAllocations; ++number) {
        AllocationWatch const watch(Fail::One, number);
        try {
            UtilsString parent;
            path.GetParentDir(parent);
        } catch (std::bad_alloc const &) {
        }
        ASSERT_STREQ("C:\\a\\long\\path\\of\\several\\components", path.GetDir());
        if (!watch.Failed())
            return;
    }
    FAIL() << "no end of allocations";
}

TEST_F(PathsWithoutMemory, Divide_no_names) {
    ExpectNothingLost([] {
        UtilsString name;
        UtilsString ext;
        OpenPath::GetFileNameFromPath(UtilsString("C:\\one\\two\\a name of some.length.and.dots"),
                                      name, ext, 1);
    });
}

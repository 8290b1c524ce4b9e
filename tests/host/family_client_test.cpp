// The process-wide family as a client of the shared library meets it.
#include "QVLinkDB.h"

#include <gtest/gtest.h>

namespace {

// Made before main, after what the library makes for itself.
CNTAdminObject const early(g_NTAdminObject);

} // namespace

TEST(FamilyOfAClient, is_known_to_its_static_objects) {
    CNTAdminObject const now;
    EXPECT_EQ(now.GetOS(), early.GetOS());
    EXPECT_EQ(now.IsNT(), early.IsNT());
    EXPECT_EQ(now.GetOS(), g_NTAdminObject.GetOS());
}

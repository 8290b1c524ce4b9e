// String resources: what stands for no module here.
#include "../services.h"

TEST(StringsHere, what_is_no_module_has_none) {
    HMODULE const common = win::LoadLibraryA("ZKCommon.dll");
    ASSERT_NE(nullptr, common);
    auto const load = reinterpret_cast<int (*)(HINSTANCE, unsigned, char *, int)>(
        reinterpret_cast<void (*)()>(win::GetProcAddress(common, "ZKLoadStringA")));
    ASSERT_NE(nullptr, load);
    char buffer[10] = "!";
    EXPECT_EQ(0, load(reinterpret_cast<HINSTANCE>(std::uintptr_t{0x10000}), 100, buffer, 10));
    EXPECT_STREQ("", buffer);
    EXPECT_EQ(0, load(common, 100, buffer, 10));
}

// Resources here: what has none, and what isn't there at all.
#include "../services.h"

TEST(ResourcesHere, of_the_program_arent_there_and_strings_are_none) {
    // The program has a table of strings, which is another kind of note.
    EXPECT_FAILS_WITH(1812, win::FindResourceA(nullptr, MAKEINTRESOURCEA(7), "SOME_BYTES"));
    HMODULE const strings = win::LoadLibraryA("platform_strings.dll");
    ASSERT_NE(nullptr, strings);
    EXPECT_FAILS_WITH(1812, win::FindResourceA(strings, MAKEINTRESOURCEA(7), "SOME_BYTES"));
}

TEST(ResourcesHere, of_what_is_no_module_are_1812) {
    auto const module = reinterpret_cast<HMODULE>(std::uintptr_t{0x10000});
    EXPECT_FAILS_WITH(1812, win::FindResourceA(module, MAKEINTRESOURCEA(7), "SOME_BYTES"));
}

TEST(ResourcesHere, have_types_of_text_and_names_of_numbers) {
    HMODULE const module = win::LoadLibraryA("platform_resources.dll");
    ASSERT_NE(nullptr, module);
    EXPECT_FAILS_WITH(1813, win::FindResourceA(module, MAKEINTRESOURCEA(7), MAKEINTRESOURCEA(10)));
    EXPECT_FAILS_WITH(1814, win::FindResourceA(module, "7", "SOME_BYTES"));
    win::FreeLibrary(module);
}

TEST(ObjectsOfOthersHere, are_not_implemented) {
    EXPECT_EQ(static_cast<HRESULT>(0x80004001), win::OleInitialize(nullptr));
    win::OleUninitialize();
}

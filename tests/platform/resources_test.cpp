// Resources of modules, on both systems by the documented results and codes.
#include "services.h"

#include <fstream>
#include <iterator>

#include "platform/process.h"

namespace {

class Resources : public testing::Test {
protected:
    void SetUp() override {
        m_module = win::LoadLibraryA("platform_resources.dll");
        ASSERT_NE(nullptr, m_module);
    }
    ~Resources() override { win::FreeLibrary(m_module); }

    HRSRC Find(WORD id, const char *type) const {
        return win::FindResourceA(m_module, MAKEINTRESOURCEA(id), type);
    }
    std::string Bytes(WORD id, const char *type) const {
        HRSRC const found = Find(id, type);
        if (!found)
            return "no such resource";
        auto const *const bytes =
            static_cast<const char *>(win::LockResource(win::LoadResource(m_module, found)));
        return std::string(bytes, win::SizeofResource(m_module, found));
    }

    HMODULE m_module = nullptr;
};

} // namespace

TEST_F(Resources, are_files_as_they_stood_when_the_module_was_built) {
    std::ifstream stream(PLATFORM_RESOURCE_FILE, std::ios::binary);
    std::string const file((std::istreambuf_iterator<char>(stream)), {});
    ASSERT_LT(100u, file.size());
    EXPECT_EQ(file, Bytes(7, "SOME_BYTES"));
}

TEST_F(Resources, are_told_by_type_and_number) {
    EXPECT_NE(Bytes(7, "SOME_BYTES"), Bytes(65535, "SOME_BYTES"));
    EXPECT_NE(Bytes(7, "SOME_BYTES"), Bytes(7, "OTHERS"));
    EXPECT_EQ(Bytes(65535, "SOME_BYTES"), Bytes(7, "OTHERS")); // one file in two places
}

TEST_F(Resources, have_types_without_case) {
    EXPECT_EQ(Find(7, "SOME_BYTES"), Find(7, "some_Bytes"));
    EXPECT_NE(nullptr, Find(7, "others"));
}

TEST_F(Resources, of_another_type_are_1813) {
    EXPECT_FAILS_WITH(1813, Find(7, "MISSING"));
    EXPECT_FAILS_WITH(1813, Find(7, "SOME_BYTE"));
    EXPECT_FAILS_WITH(1813, Find(7, ""));
}

TEST_F(Resources, of_another_number_are_1814) {
    EXPECT_FAILS_WITH(1814, Find(8, "SOME_BYTES"));
    EXPECT_FAILS_WITH(1814, Find(65535, "OTHERS"));
}

TEST_F(Resources, of_a_module_without_any_are_1812) {
    HMODULE const module = win::LoadLibraryA("platform_second.dll");
    ASSERT_NE(nullptr, module);
    EXPECT_FAILS_WITH(1812, win::FindResourceA(module, MAKEINTRESOURCEA(7), "SOME_BYTES"));
    win::FreeLibrary(module);
}

TEST_F(Resources, are_the_same_each_time) {
    HRSRC const found = Find(7, "SOME_BYTES");
    EXPECT_EQ(found, Find(7, "SOME_BYTES"));
    HGLOBAL const loaded = win::LoadResource(m_module, found);
    ASSERT_NE(nullptr, loaded);
    void *const bytes = win::LockResource(loaded);
    EXPECT_EQ(bytes, win::LockResource(win::LoadResource(m_module, found)));
}

// 0 is what this call gives for success, and there is nothing that it frees.
TEST_F(Resources, stay_when_they_are_freed) {
    HRSRC const found = Find(7, "SOME_BYTES");
    HGLOBAL const loaded = win::LoadResource(m_module, found);
    EXPECT_FALSE(win::FreeResource(loaded));
    EXPECT_FALSE(win::FreeResource(loaded));
    EXPECT_NE(nullptr, win::LockResource(loaded));
    EXPECT_LT(100u, Bytes(7, "SOME_BYTES").size());
}

TEST_F(Resources, that_werent_found_have_no_size_and_no_bytes) {
    EXPECT_EQ(0u, win::SizeofResource(m_module, nullptr));
    EXPECT_EQ(nullptr, win::LoadResource(m_module, nullptr));
    EXPECT_EQ(nullptr, win::LockResource(nullptr));
}

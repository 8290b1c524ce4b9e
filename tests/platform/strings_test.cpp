// String resources by the module that knows them, on both systems.
#include "services.h"

#include <cstring>

#include "module_names.h"

namespace {

using Loader = int (*)(HINSTANCE, unsigned, char *, int);

Loader Find(const char *name) {
    HMODULE const module = win::LoadLibraryA("ZKCommon.dll");
    EXPECT_NE(nullptr, module);
    return reinterpret_cast<Loader>(
        reinterpret_cast<void (*)()>(win::GetProcAddress(module, name)));
}

class Strings : public testing::Test {
protected:
    void SetUp() override {
        m_module = win::LoadLibraryA("platform_strings.dll");
        m_load = Find("ZKLoadStringA");
        ASSERT_NE(nullptr, m_module);
        ASSERT_NE(nullptr, m_load);
    }

    std::string Load(unsigned id) const {
        char buffer[100];
        std::memset(buffer, '!', sizeof buffer);
        int const length = m_load(m_module, id, buffer, sizeof buffer);
        EXPECT_EQ('\0', buffer[length]);
        return std::string(buffer, static_cast<std::size_t>(length));
    }

    HMODULE m_module = nullptr;
    Loader m_load = nullptr;
};

} // namespace

TEST_F(Strings, are_found_by_their_number) {
    EXPECT_EQ("Hello", Load(100));
    EXPECT_EQ("a low number", Load(7));
    EXPECT_EQ("the highest number", Load(65535));
}

TEST_F(Strings, may_hold_any_sign) {
    EXPECT_EQ("two\r\nlines\tand a tab", Load(101));
    EXPECT_EQ("a \"quoted\" word", Load(102));
    EXPECT_EQ("a;b [c] ${d} @e@ 100% 1=2 #f", Load(103));
    EXPECT_EQ("back\\slash", Load(104));
}

TEST_F(Strings, that_arent_there_or_are_empty_have_no_length) {
    for (unsigned const id : {0u, 1u, 10u, 99u, 105u, 106u, 1000u})
        EXPECT_EQ("", Load(id)) << id;
}

TEST_F(Strings, are_cut_to_the_capacity_less_one) {
    char buffer[10];
    std::memset(buffer, '!', sizeof buffer);
    EXPECT_EQ(3, m_load(m_module, 100, buffer, 4));
    EXPECT_EQ(std::string("Hel\0!", 5), std::string(buffer, 5));
    EXPECT_EQ(5, m_load(m_module, 100, buffer, 6));
    EXPECT_STREQ("Hello", buffer);
    EXPECT_EQ(4, m_load(m_module, 100, buffer, 5));
    EXPECT_EQ(0, m_load(m_module, 100, buffer, 1));
    EXPECT_STREQ("", buffer);
}

TEST_F(Strings, without_a_buffer_have_no_length) {
    char buffer[10] = "!";
    EXPECT_EQ(0, m_load(m_module, 100, nullptr, 10));
    EXPECT_EQ(0, m_load(m_module, 100, buffer, 0));
    EXPECT_EQ(0, m_load(m_module, 100, buffer, -1));
    EXPECT_STREQ("!", buffer);
}

TEST_F(Strings, are_each_modules_own) {
    char buffer[100] = "";
    EXPECT_EQ(17, m_load(win::GetModuleHandleA(nullptr), 100, buffer, sizeof buffer));
    EXPECT_STREQ("the program's own", buffer);
    EXPECT_EQ(17, m_load(nullptr, 100, buffer, sizeof buffer));
    EXPECT_EQ(0, m_load(win::GetModuleHandleA(nullptr), 7, buffer, sizeof buffer));
    EXPECT_EQ(0, m_load(win::LoadLibraryA("ZKCommon.dll"), 100, buffer, sizeof buffer));
}

TEST_F(Strings, are_loaded_by_the_modules_own_name_too) {
    Loader const load = Find(MODULE_LOAD_STRING);
    ASSERT_NE(nullptr, load);
    char buffer[100] = "";
    EXPECT_EQ(5, load(m_module, 100, buffer, sizeof buffer));
    EXPECT_STREQ("Hello", buffer);
}

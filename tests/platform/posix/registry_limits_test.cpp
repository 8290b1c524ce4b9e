// The registry's calls here: texts in code pages, and what is refused.
#include "registry_store.h"

#include "platform/code_page.h"

TEST_F(RegistryStore, has_texts_in_the_settings_code_page) {
    struct {
        unsigned page;
        std::string name, data;
    } const rows[] = {{1252, "\xc4\x80", "\x80 \xe4"},
                      {932, "\x83\x5c", "\x82\xa0\x83\x5c"}, // its second byte is a backslash
                      {65001, "\xc3\x84\xe2\x82\xac", "\xe3\x81\x82"}};
    for (auto const &row : rows) {
        CodePageNow const now(row.page);
        ScopedKey key, again;
        ASSERT_EQ(0, MakeKey(HKEY_CURRENT_USER, "page " + row.name, key)) << row.page;
        EXPECT_EQ(0, OpenKey(HKEY_CURRENT_USER, "PAGE " + row.name, again)) << row.page;
        EXPECT_EQ(0, SetBytes(key, row.name.c_str(), REG_SZ, row.data + '\0'));
        EXPECT_EQ((Answer{0, REG_SZ, row.data + '\0'}), Query(again, row.name.c_str()));
        EXPECT_EQ(std::vector<std::string>{row.name}, ValueNames(key));
        DWORD size = 0;
        EXPECT_EQ(0,
                  win::RegQueryValueExA(key, row.name.c_str(), nullptr, nullptr, nullptr, &size));
        EXPECT_EQ(row.data.size() + 1, size) << "in bytes of the page";
        EXPECT_EQ(0, win::RegDeleteValueA(key, row.name.c_str()));
        bool found = false;
        for (std::string const &name : Subkeys(HKEY_CURRENT_USER))
            found = found || name == "page " + row.name;
        EXPECT_TRUE(found) << row.page;
    }
}

TEST_F(RegistryStore, has_one_text_for_all_code_pages) {
    {
        CodePageNow const now(1252);
        ScopedKey key;
        ASSERT_EQ(0, MakeKey(HKEY_CURRENT_USER, "\xc4rger", key));
        ASSERT_EQ(0, SetBytes(key, "\x80", REG_SZ, std::string("\x80\0", 2)));
    }
    {
        CodePageNow const now(65001);
        ScopedKey key;
        ASSERT_EQ(0, OpenKey(HKEY_CURRENT_USER, "\xc3\xa4RGER", key));
        EXPECT_EQ((Answer{0, REG_SZ, std::string("\xe2\x82\xac\0", 4)}),
                  Query(key, "\xe2\x82\xac"));
    }
    CodePageNow const now(932);
    ScopedKey key;
    EXPECT_EQ(2, OpenKey(HKEY_CURRENT_USER, "\xc4rger", key));
}

TEST_F(RegistryStore, takes_only_ASCII_under_a_code_page_that_isnt_known) {
    CodePageNow const now(12345);
    ScopedKey key;
    ASSERT_EQ(0, MakeKey(HKEY_CURRENT_USER, "key", key));
    EXPECT_EQ(0, SetBytes(key, "value", REG_SZ, "text"));
    EXPECT_EQ(87, SetBytes(key, "\x80", REG_SZ, "text"));
    EXPECT_EQ(87, SetBytes(key, "value", REG_SZ, "\x80"));
    EXPECT_EQ(87, MakeKey(key, "\x80"));
    EXPECT_EQ((Answer{0, REG_SZ, "text"}), Query(key, "value"));
}

TEST_F(RegistryStore, tells_the_room_that_a_long_name_needs) {
    // 200 characters, 400 bytes of UTF-8.
    std::string name;
    for (int i = 0; i < 200; ++i)
        name += "\xc3\xa4";
    ScopedKey key;
    ASSERT_EQ(0, MakeKey(HKEY_CURRENT_USER, "long\\" + name));
    ASSERT_EQ(0, OpenKey(HKEY_CURRENT_USER, "long", key));
    ASSERT_EQ(0, SetBytes(key, name.c_str(), REG_SZ, std::string("x\0", 2)));
    std::vector<char> room(256);
    DWORD size = 256;
    EXPECT_EQ(234,
              win::RegEnumKeyExA(key, 0, room.data(), &size, nullptr, nullptr, nullptr, nullptr));
    EXPECT_EQ(401u, size);
    room.resize(size);
    EXPECT_EQ(0,
              win::RegEnumKeyExA(key, 0, room.data(), &size, nullptr, nullptr, nullptr, nullptr));
    EXPECT_EQ(400u, size);
    size = 256;
    DWORD dataSize = 0;
    EXPECT_EQ(234,
              win::RegEnumValueA(key, 0, room.data(), &size, nullptr, nullptr, nullptr, &dataSize));
    EXPECT_EQ(401u, size);
    EXPECT_EQ(2u, dataSize);
}

TEST_F(RegistryStore, refuses_what_isnt_supported) {
    ScopedKey key;
    ASSERT_EQ(0, MakeKey(HKEY_CURRENT_USER, "key", key));
    HKEY opened = nullptr;
    char classText[8] = "class";
    char name[20];
    DWORD size = sizeof name;
    DWORD classSize = sizeof classText;
    FILETIME time{};
    int security = 0;
    auto *const attributes = reinterpret_cast<SECURITY_ATTRIBUTES *>(&security);
    auto const create = [&](char *text, DWORD options, REGSAM access, SECURITY_ATTRIBUTES *given) {
        return win::RegCreateKeyExA(key, "new", 0, text, options, access, given, &opened, nullptr);
    };
    EXPECT_EQ(50, create(classText, 0, usualAccess, nullptr));
    EXPECT_EQ(50, create(nullptr, 1, usualAccess, nullptr)); // volatile
    EXPECT_EQ(50, create(nullptr, 0, 0xf003f, nullptr));     // all access
    EXPECT_EQ(50, create(nullptr, 0, usualAccess | 0x100, nullptr));
    EXPECT_EQ(50, create(nullptr, 0, usualAccess, attributes));
    EXPECT_EQ(50, win::RegOpenKeyExA(key, "", 8, usualAccess, &opened)); // the link itself
    EXPECT_EQ(50, win::RegOpenKeyExA(key, "", 0, 0xf003f, &opened));
    EXPECT_EQ(50, win::RegEnumKeyExA(key, 0, name, &size, nullptr, classText, &classSize, nullptr));
    EXPECT_EQ(50, win::RegEnumKeyExA(key, 0, name, &size, nullptr, nullptr, nullptr, &time));
    EXPECT_EQ(87, win::RegOpenKeyExA(key, "", 0, usualAccess, nullptr));
    EXPECT_EQ(
        87, win::RegCreateKeyExA(key, "x", 0, nullptr, 0, usualAccess, nullptr, nullptr, nullptr));
    EXPECT_EQ(87, win::RegCreateKeyExA(key, nullptr, 0, nullptr, 0, usualAccess, nullptr, &opened,
                                       nullptr));
    EXPECT_EQ(87, win::RegEnumKeyExA(key, 0, nullptr, &size, nullptr, nullptr, nullptr, nullptr));
    EXPECT_EQ(87, win::RegEnumKeyExA(key, 0, name, nullptr, nullptr, nullptr, nullptr, nullptr));
    EXPECT_EQ(87, win::RegEnumValueA(key, 0, nullptr, &size, nullptr, nullptr, nullptr, nullptr));
    EXPECT_EQ(87, win::RegEnumValueA(key, 0, name, nullptr, nullptr, nullptr, nullptr, nullptr));
    EXPECT_EQ(998, win::RegSetValueExA(key, "v", 0, REG_BINARY, nullptr, 5));
    EXPECT_EQ(nullptr, opened);
    EXPECT_EQ(std::nullopt, SubkeyAt(key, 0));
    EXPECT_EQ(std::vector<std::string>{}, ValueNames(key));
}

TEST_F(RegistryStore, duplicates_keys_of_this_process_only) {
    ScopedKey key;
    ASSERT_EQ(0, MakeKey(HKEY_CURRENT_USER, "key", key));
    HANDLE const process = win::GetCurrentProcess();
    HANDLE const other = key;
    HANDLE duplicate = nullptr;
    EXPECT_FAILS_WITH(6, win::DuplicateHandle(other, key, process, &duplicate, 0, TRUE, 2));
    EXPECT_FAILS_WITH(6, win::DuplicateHandle(process, key, other, &duplicate, 0, TRUE, 2));
    EXPECT_FAILS_WITH(87, win::DuplicateHandle(process, key, process, nullptr, 0, TRUE, 2));
    for (DWORD const options : {0u, 1u, 3u})
        EXPECT_FAILS_WITH(
            50, win::DuplicateHandle(process, key, process, &duplicate, 0, TRUE, options));
    ScopedHandle const mutex(win::CreateMutexA(nullptr, FALSE, nullptr));
    EXPECT_FAILS_WITH(50, win::DuplicateHandle(process, mutex, process, &duplicate, 0, TRUE, 2));
    EXPECT_EQ(6, win::RegCloseKey(static_cast<HKEY>(static_cast<HANDLE>(mutex))));
    EXPECT_EQ(nullptr, duplicate);
}

// Keys of the registry, on both systems by the documented results and codes.
#include "registry_keys.h"

#include <algorithm>
#include <thread>

namespace {

HKEY NumberAsKey(std::intptr_t number) { return reinterpret_cast<HKEY>(number); }

using Names = std::vector<std::string>;

} // namespace

TEST_F(RegistryCalls, making_a_key_tells_whether_it_was_there) {
    ScopedKey made;
    DWORD disposition = 77;
    EXPECT_EQ(0, MakeKey(key, "a", made, &disposition));
    EXPECT_EQ(1u, disposition);
    EXPECT_EQ(0, MakeKey(key, "a", made, &disposition));
    EXPECT_EQ(2u, disposition);
    EXPECT_EQ(0, MakeKey(key, "a")) << "without a place to tell of it";
}

TEST_F(RegistryCalls, making_a_key_makes_those_above_it) {
    DWORD disposition = 77;
    ScopedKey made;
    EXPECT_EQ(0, MakeKey(key, "a\\b\\c", made, &disposition));
    EXPECT_EQ(1u, disposition);
    EXPECT_EQ(Names{"a"}, Subkeys(key));
    EXPECT_EQ(0, OpenKey(key, "a", made));
    EXPECT_EQ(Names{"b"}, Subkeys(made));
    EXPECT_EQ(0, OpenKey(key, "a\\b", made));
    EXPECT_EQ(Names{"c"}, Subkeys(made));
    EXPECT_EQ(0, OpenKey(key, "a\\b\\c", made));
    EXPECT_EQ(Names{}, Subkeys(made));
}

TEST_F(RegistryCalls, a_missing_key_is_2_and_so_is_one_below_it) {
    ScopedKey opened;
    EXPECT_EQ(2, OpenKey(key, "missing", opened));
    EXPECT_EQ(2, OpenKey(key, "missing\\more", opened));
    EXPECT_EQ(2, win::RegDeleteKeyA(key, "missing"));
    EXPECT_EQ(2, win::RegDeleteKeyA(key, "missing\\more"));
}

TEST_F(RegistryCalls, a_failed_opening_of_an_empty_registry_makes_nothing) {
    ScopedKey opened;
    EXPECT_EQ(2, OpenKey(key, "a\\b", opened));
    EXPECT_EQ(Names{}, Subkeys(key));
}

TEST_F(RegistryCalls, names_of_keys_are_found_in_any_case_and_kept_in_the_first) {
    ScopedKey opened;
    EXPECT_EQ(0, MakeKey(key, "MixedCase"));
    DWORD disposition = 77;
    EXPECT_EQ(0, MakeKey(key, "mIXEDcASE", opened, &disposition));
    EXPECT_EQ(2u, disposition);
    EXPECT_EQ(0, OpenKey(key, "MIXEDCASE", opened));
    EXPECT_EQ(Names{"MixedCase"}, Subkeys(key));
    EXPECT_EQ(0, win::RegDeleteKeyA(key, "mixedcase"));
    EXPECT_EQ(Names{}, Subkeys(key));
}

TEST_F(RegistryCalls, subkeys_come_in_the_order_of_their_names_in_upper_case) {
    for (const char *const name : {"b", "C", "aZ", "ab", "A", "10", "9", "a b", "~"})
        ASSERT_EQ(0, MakeKey(key, name));
    EXPECT_EQ((Names{"10", "9", "A", "a b", "ab", "aZ", "b", "C", "~"}), Subkeys(key));
    if (UnderWine())
        GTEST_SKIP() << "Wine goes by lower case: an underscore comes before all letters";
    ASSERT_EQ(0, MakeKey(key, "a_"));
    ASSERT_EQ(0, MakeKey(key, "_"));
    EXPECT_EQ((Names{"10", "9", "A", "a b", "ab", "aZ", "a_", "b", "C", "_", "~"}), Subkeys(key));
}

TEST_F(RegistryCalls, a_subkey_comes_by_any_index_in_any_order) {
    for (const char *const name : {"d", "b", "a", "c"})
        ASSERT_EQ(0, MakeKey(key, name));
    for (DWORD const index : {3u, 0u, 2u, 2u, 1u, 0u, 3u})
        EXPECT_EQ(std::string(1, static_cast<char>('a' + index)), SubkeyAt(key, index));
    EXPECT_EQ(std::nullopt, SubkeyAt(key, 4));
    EXPECT_EQ(std::nullopt, SubkeyAt(key, 0xffffffff));
    EXPECT_EQ("a", SubkeyAt(key, 0));
}

TEST_F(RegistryCalls, an_enumeration_sees_keys_come_and_go) {
    for (const char *const name : {"b", "d", "f"})
        ASSERT_EQ(0, MakeKey(key, name));
    EXPECT_EQ("b", SubkeyAt(key, 0));
    EXPECT_EQ("d", SubkeyAt(key, 1));
    ASSERT_EQ(0, MakeKey(key, "a"));
    EXPECT_EQ("d", SubkeyAt(key, 2)) << "its index went up";
    ASSERT_EQ(0, win::RegDeleteKeyA(key, "b"));
    EXPECT_EQ(std::nullopt, SubkeyAt(key, 3));
    EXPECT_EQ("f", SubkeyAt(key, 2)) << "its index went down";
    ASSERT_EQ(0, MakeKey(key, "g"));
    EXPECT_EQ("g", SubkeyAt(key, 3));
}

TEST_F(RegistryCalls, two_openings_of_a_key_enumerate_apart) {
    for (const char *const name : {"a", "b", "c"})
        ASSERT_EQ(0, MakeKey(key, name));
    ScopedKey other;
    ASSERT_EQ(0, OpenKey(key, "", other));
    EXPECT_NE(static_cast<HKEY>(key), static_cast<HKEY>(other));
    EXPECT_EQ("a", SubkeyAt(key, 0));
    EXPECT_EQ("b", SubkeyAt(other, 1));
    EXPECT_EQ("b", SubkeyAt(key, 1));
    EXPECT_EQ("c", SubkeyAt(other, 2));
    ASSERT_EQ(0, win::RegDeleteKeyA(other, "a"));
    EXPECT_EQ("c", SubkeyAt(key, 1));
}

TEST_F(RegistryCalls, a_name_that_has_no_room_is_234) {
    ASSERT_EQ(0, MakeKey(key, "subkey"));
    char name[20] = "untouched";
    for (DWORD const room : {0u, 1u, 6u}) {
        DWORD size = room;
        EXPECT_EQ(234, win::RegEnumKeyExA(key, 0, name, &size, nullptr, nullptr, nullptr, nullptr));
        EXPECT_STREQ("untouched", name);
    }
    DWORD size = 7;
    EXPECT_EQ(0, win::RegEnumKeyExA(key, 0, name, &size, nullptr, nullptr, nullptr, nullptr));
    EXPECT_EQ(6u, size);
    EXPECT_STREQ("subkey", name);
}

TEST_F(RegistryCalls, deletion_of_a_key_with_subkeys_is_refused_and_values_go_with_their_key) {
    ASSERT_EQ(0, MakeKey(key, "a\\b"));
    ScopedKey below;
    ASSERT_EQ(0, OpenKey(key, "a\\b", below));
    ASSERT_EQ(0, SetBytes(below, "v", REG_SZ, std::string("text\0", 5)));
    EXPECT_EQ(5, win::RegDeleteKeyA(key, "a"));
    EXPECT_EQ(0, OpenKey(key, "a\\b", below));
    EXPECT_EQ(0, win::RegDeleteKeyA(key, "a\\b"));
    EXPECT_EQ(0, win::RegDeleteKeyA(key, "a"));
    ASSERT_EQ(0, MakeKey(key, "a\\b"));
    ASSERT_EQ(0, OpenKey(key, "a\\b", below));
    EXPECT_EQ(2, Query(below, "v").status);
}

TEST_F(RegistryCalls, an_empty_path_deletes_the_key_itself) {
    ScopedKey made;
    ASSERT_EQ(0, MakeKey(key, "a", made));
    EXPECT_EQ(0, win::RegDeleteKeyA(made, ""));
    EXPECT_EQ(Names{}, Subkeys(key));
}

TEST_F(RegistryCalls, a_deleted_key_that_is_open_is_1018_to_everything_but_closing) {
    ScopedKey gone, other;
    ASSERT_EQ(0, MakeKey(key, "a", gone));
    ASSERT_EQ(0, SetBytes(gone, "v", REG_SZ, std::string("text\0", 5)));
    ASSERT_EQ(0, win::RegDeleteKeyA(key, "a"));
    char name[20];
    DWORD size = sizeof name;
    EXPECT_EQ(1018, win::RegEnumKeyExA(gone, 0, name, &size, nullptr, nullptr, nullptr, nullptr));
    EXPECT_EQ(1018, win::RegEnumValueA(gone, 0, name, &size, nullptr, nullptr, nullptr, nullptr));
    EXPECT_EQ(1018, Query(gone, "v").status);
    EXPECT_EQ(1018, SetBytes(gone, "v", REG_SZ, "x"));
    EXPECT_EQ(1018, win::RegDeleteValueA(gone, "v"));
    EXPECT_EQ(1018, OpenKey(gone, "", other));
    EXPECT_EQ(1018, OpenKey(gone, "b", other));
    EXPECT_EQ(1018, MakeKey(gone, "b", other));
    EXPECT_EQ(1018, win::RegDeleteKeyA(gone, "b"));
    EXPECT_EQ(1018, win::RegDeleteKeyA(gone, ""));
    HANDLE const process = win::GetCurrentProcess();
    HANDLE duplicate = nullptr;
    EXPECT_TRUE(win::DuplicateHandle(process, gone, process, &duplicate, 0, TRUE, 2));
    EXPECT_EQ(0, win::RegCloseKey(static_cast<HKEY>(duplicate)));
}

TEST_F(RegistryCalls, a_key_made_anew_isnt_the_one_that_was_deleted) {
    ScopedKey gone, fresh;
    ASSERT_EQ(0, MakeKey(key, "a", gone));
    ASSERT_EQ(0, win::RegDeleteKeyA(key, "a"));
    ASSERT_EQ(0, MakeKey(key, "a", fresh));
    EXPECT_EQ(1018, SetBytes(gone, "v", REG_SZ, "x"));
    EXPECT_EQ(1018, Query(gone, "v").status);
    EXPECT_EQ(Names{}, ValueNames(fresh));
}

TEST_F(RegistryCalls, an_empty_path_opens_the_key_once_more) {
    ScopedKey again, created;
    ASSERT_EQ(0, OpenKey(key, "", again));
    EXPECT_NE(static_cast<HKEY>(key), static_cast<HKEY>(again));
    ASSERT_EQ(0, win::RegOpenKeyExA(key, nullptr, 0, usualAccess, again.Place()));
    EXPECT_NE(static_cast<HKEY>(key), static_cast<HKEY>(again));
    ASSERT_EQ(0, MakeKey(key, "", created));
    again.Close();
    created.Close();
    EXPECT_EQ(0, MakeKey(key, "a")) << "the first is open still";
}

TEST_F(RegistryCalls, an_empty_path_below_a_root_is_the_root) {
    for (HKEY const root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER, HKEY_CLASSES_ROOT, HKEY_USERS}) {
        HKEY opened = nullptr;
        EXPECT_EQ(0, win::RegOpenKeyExA(root, "", 0, usualAccess, &opened));
        EXPECT_EQ(root, opened);
        EXPECT_EQ(0, win::RegOpenKeyExA(root, nullptr, 0, usualAccess, &opened));
        EXPECT_EQ(root, opened);
    }
}

TEST_F(RegistryCalls, roots_are_open_always_and_closing_one_changes_nothing) {
    for (HKEY const root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER, HKEY_CLASSES_ROOT, HKEY_USERS,
                            HKEY_CURRENT_CONFIG}) {
        EXPECT_EQ(0, win::RegCloseKey(root));
        ScopedKey opened;
        EXPECT_EQ(2, OpenKey(root, "QVLinkDB has no such key", opened));
    }
    EXPECT_EQ(5, win::RegDeleteKeyA(HKEY_CURRENT_USER, ""));
}

TEST_F(RegistryCalls, what_is_no_key_is_6) {
    for (HKEY const none : {NumberAsKey(0), NumberAsKey(0x1234560), NumberAsKey(0x12345),
                            NumberAsKey(static_cast<std::int32_t>(0x80000009))}) {
        ScopedKey opened;
        char name[20];
        DWORD size = sizeof name;
        EXPECT_EQ(6, OpenKey(none, "a", opened));
        EXPECT_EQ(6, MakeKey(none, "a", opened));
        EXPECT_EQ(6, win::RegDeleteKeyA(none, "a"));
        EXPECT_EQ(6, Query(none, "a").status);
        EXPECT_EQ(6, SetBytes(none, "a", REG_SZ, "x"));
        EXPECT_EQ(6, win::RegDeleteValueA(none, "a"));
        EXPECT_EQ(6, win::RegEnumKeyExA(none, 0, name, &size, nullptr, nullptr, nullptr, nullptr));
        EXPECT_EQ(6, win::RegEnumValueA(none, 0, name, &size, nullptr, nullptr, nullptr, nullptr));
    }
    EXPECT_EQ(6, win::RegCloseKey(nullptr));
    EXPECT_EQ(6, win::RegCloseKey(NumberAsKey(0x1234560)));
}

TEST_F(RegistryCalls, a_closed_key_is_6_also_to_a_second_closing) {
    HKEY opened = nullptr;
    ASSERT_EQ(0, win::RegOpenKeyExA(key, "", 0, usualAccess, &opened));
    EXPECT_EQ(0, win::RegCloseKey(opened));
    EXPECT_EQ(6, win::RegCloseKey(opened));
    EXPECT_EQ(6, Query(opened, "a").status);
}

TEST_F(RegistryCalls, CloseHandle_closes_a_key) {
    HKEY opened = nullptr;
    ASSERT_EQ(0, win::RegOpenKeyExA(key, "", 0, usualAccess, &opened));
    EXPECT_TRUE(win::CloseHandle(opened));
    EXPECT_EQ(6, win::RegCloseKey(opened));
    EXPECT_FAILS_WITH(6, win::CloseHandle(opened));
    EXPECT_FAILS_WITH(6, win::CloseHandle(HKEY_LOCAL_MACHINE));
}

TEST_F(RegistryCalls, a_duplicate_lives_longer_than_its_key) {
    HKEY first = nullptr;
    ASSERT_EQ(0, win::RegOpenKeyExA(key, "", 0, usualAccess, &first));
    HANDLE duplicate = nullptr;
    HANDLE const process = win::GetCurrentProcess();
    ASSERT_TRUE(win::DuplicateHandle(process, first, process, &duplicate, 0, TRUE, 2));
    EXPECT_NE(static_cast<HANDLE>(first), duplicate);
    EXPECT_EQ(0, win::RegCloseKey(first));
    auto *const second = static_cast<HKEY>(duplicate);
    EXPECT_EQ(0, SetBytes(second, "v", REG_SZ, std::string("text\0", 5)));
    EXPECT_EQ((Answer{0, REG_SZ, std::string("text\0", 5)}), Query(key, "v"));
    EXPECT_TRUE(win::CloseHandle(duplicate));
    EXPECT_EQ(6, Query(second, "v").status);
}

TEST_F(RegistryCalls, a_duplicate_has_the_access_of_its_key) {
    ScopedKey reading;
    ASSERT_EQ(0, OpenKey(key, "", reading, KEY_READ));
    HANDLE duplicate = nullptr;
    HANDLE const process = win::GetCurrentProcess();
    ASSERT_TRUE(win::DuplicateHandle(process, reading, process, &duplicate, 0, FALSE, 2));
    EXPECT_EQ(5, SetBytes(static_cast<HKEY>(duplicate), "v", REG_SZ, "x"));
    EXPECT_TRUE(win::CloseHandle(duplicate));
}

TEST_F(RegistryCalls, roots_and_closed_keys_arent_duplicated) {
    HKEY closed = nullptr;
    ASSERT_EQ(0, win::RegOpenKeyExA(key, "", 0, usualAccess, &closed));
    win::RegCloseKey(closed);
    HANDLE const process = win::GetCurrentProcess();
    for (HKEY const none : {HKEY_LOCAL_MACHINE, closed, NumberAsKey(0)}) {
        HANDLE duplicate = nullptr;
        EXPECT_FAILS_WITH(6, win::DuplicateHandle(process, none, process, &duplicate, 0, TRUE, 2));
        EXPECT_EQ(nullptr, duplicate);
    }
}

TEST_F(RegistryCalls, a_right_that_wasnt_asked_for_is_5) {
    ASSERT_EQ(0, SetBytes(key, "v", REG_SZ, "x"));
    ASSERT_EQ(0, MakeKey(key, "a"));
    ScopedKey reading, writing, other;
    ASSERT_EQ(0, OpenKey(key, "", reading, KEY_READ));
    EXPECT_EQ(5, SetBytes(reading, "v", REG_SZ, "y"));
    EXPECT_EQ(5, win::RegDeleteValueA(reading, "v"));
    EXPECT_EQ(0, Query(reading, "v").status);
    EXPECT_EQ("a", SubkeyAt(reading, 0));
    ASSERT_EQ(0, OpenKey(key, "", writing, KEY_SET_VALUE));
    char name[20];
    DWORD size = sizeof name;
    EXPECT_EQ(5, Query(writing, "v").status);
    EXPECT_EQ(5, win::RegEnumKeyExA(writing, 0, name, &size, nullptr, nullptr, nullptr, nullptr));
    EXPECT_EQ(5, win::RegEnumValueA(writing, 0, name, &size, nullptr, nullptr, nullptr, nullptr));
    EXPECT_EQ(0, SetBytes(writing, "v", REG_SZ, "y"));
    EXPECT_EQ(0, OpenKey(writing, "a", other)) << "the rights are the new key's own";
}

TEST_F(RegistryCalls, a_backslash_at_the_end_counts_for_nothing_and_one_in_front_is_161) {
    ScopedKey opened;
    ASSERT_EQ(0, MakeKey(key, "a\\b\\"));
    EXPECT_EQ(0, OpenKey(key, "a\\", opened));
    EXPECT_EQ(0, OpenKey(key, "a\\b\\", opened));
    EXPECT_EQ(161, OpenKey(key, "\\a", opened));
    EXPECT_EQ(161, MakeKey(key, "\\c", opened));
    EXPECT_EQ(161, OpenKey(HKEY_LOCAL_MACHINE, "\\Software", opened));
    EXPECT_EQ(Names{"a"}, Subkeys(key));
}

TEST_F(RegistryCalls, the_classes_root_takes_a_backslash_in_front) {
    std::string const name = "QVLinkDB.test." + std::to_string(CurrentProcessId());
    ScopedKey made, opened;
    ASSERT_EQ(0, MakeKey(HKEY_CLASSES_ROOT, name, made));
    EXPECT_EQ(0, OpenKey(HKEY_CLASSES_ROOT, '\\' + name, opened));
    EXPECT_EQ(0, OpenKey(HKEY_LOCAL_MACHINE, "Software\\Classes\\" + name, opened));
    EXPECT_EQ(0, win::RegDeleteKeyA(HKEY_CLASSES_ROOT, name.c_str()));
}

TEST_F(RegistryCalls, a_name_of_255_characters_is_the_longest) {
    std::string const longest(255, 'n');
    ASSERT_EQ(0, MakeKey(key, longest));
    EXPECT_EQ(Names{longest}, Subkeys(key));
    ScopedKey opened;
    EXPECT_EQ(0, OpenKey(key, longest, opened));
    EXPECT_EQ(0, win::RegDeleteKeyA(key, longest.c_str()));
    if (UnderWine())
        GTEST_SKIP() << "Wine says 234 to a longer one, and takes 256";
    EXPECT_EQ(87, MakeKey(key, longest + 'n', opened));
    EXPECT_EQ(87, MakeKey(key, "a\\" + longest + 'n', opened));
    EXPECT_EQ(87, OpenKey(key, longest + 'n', opened));
    EXPECT_EQ(Names{}, Subkeys(key));
}

TEST_F(RegistryCalls, arguments_that_cant_be_are_87) {
    HKEY opened = nullptr;
    DWORD reserved = 0;
    char name[20];
    DWORD size = sizeof name;
    EXPECT_EQ(
        87, win::RegCreateKeyExA(key, "a", 5, nullptr, 0, usualAccess, nullptr, &opened, nullptr));
    EXPECT_EQ(87, win::RegEnumKeyExA(key, 0, name, &size, &reserved, nullptr, nullptr, nullptr));
    EXPECT_EQ(87, win::RegEnumValueA(key, 0, name, &size, &reserved, nullptr, nullptr, nullptr));
    EXPECT_EQ(87, win::RegDeleteKeyA(key, nullptr));
    EXPECT_EQ(nullptr, opened);
}

TEST_F(RegistryCalls, leave_the_last_error_alone) {
    win::SetLastError(4711);
    ScopedKey opened;
    EXPECT_EQ(2, OpenKey(key, "missing", opened));
    EXPECT_EQ(2, Query(key, "missing").status);
    EXPECT_EQ(6, win::RegCloseKey(nullptr));
    EXPECT_EQ(0, SetBytes(key, "v", REG_SZ, "x"));
    EXPECT_EQ(std::nullopt, SubkeyAt(key, 0));
    EXPECT_EQ(4711u, win::GetLastError());
}

TEST_F(RegistryCalls, of_many_threads_go_on_side_by_side) {
    constexpr int count = 30;
    auto const work = [this](int thread) {
        std::string const own = "thread " + std::to_string(thread);
        ScopedKey mine;
        ASSERT_EQ(0, MakeKey(key, own, mine));
        for (int i = 0; i < count; ++i) {
            std::string const text = own + '.' + std::to_string(i);
            ASSERT_EQ(0, MakeKey(mine, text));
            ASSERT_EQ(0, SetBytes(mine, text.c_str(), REG_BINARY, text));
            ASSERT_EQ((Answer{0, REG_BINARY, text}), Query(mine, text.c_str()));
            ASSERT_TRUE(SubkeyAt(key, 0));
        }
        EXPECT_EQ(std::size_t{count}, Subkeys(mine).size());
    };
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int i = 0; i < 4; ++i)
        threads.emplace_back(work, i);
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ((Names{"thread 0", "thread 1", "thread 2", "thread 3"}), Subkeys(key));
}

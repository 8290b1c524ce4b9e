// Values of the registry, on both systems by the documented results and codes.
#include "registry_keys.h"

#include <algorithm>

namespace {

std::string WithNul(std::string const &text) { return text + '\0'; }

struct Sizes {
    LSTATUS status;
    DWORD type, size;
    std::string buffer;
};

// What a query with a buffer of that size leaves; the buffer was full of '#'.
Sizes QueryInto(HKEY key, const char *name, DWORD capacity, bool buffer = true) {
    BYTE data[40];
    std::fill(std::begin(data), std::end(data), BYTE{'#'});
    Sizes sizes{0, 77, capacity, {}};
    sizes.status = win::RegQueryValueExA(key, name, nullptr, &sizes.type, buffer ? data : nullptr,
                                         &sizes.size);
    sizes.buffer.assign(std::begin(data), std::end(data));
    sizes.buffer.resize(8);
    return sizes;
}

struct Entry {
    LSTATUS status;
    DWORD nameSize, type, size;
    std::string name, data;
};

Entry EntryAt(HKEY key, DWORD index, DWORD nameRoom, DWORD dataRoom) {
    char name[40] = "########";
    char data[40] = "########";
    Entry entry{0, nameRoom, 77, dataRoom, {}, {}};
    entry.status = win::RegEnumValueA(key, index, name, &entry.nameSize, nullptr, &entry.type,
                                      reinterpret_cast<BYTE *>(data), &entry.size);
    entry.name.assign(name, 8);
    entry.data.assign(data, 8);
    return entry;
}

LSTATUS SetReserved(HKEY key, DWORD reserved) {
    return win::RegSetValueExA(key, "v", reserved, REG_SZ, reinterpret_cast<const BYTE *>("x"), 2);
}

} // namespace

TEST_F(RegistryCalls, each_type_comes_back_as_it_was_stored) {
    std::string const number("\x2c\x01\x00\x00", 4);
    std::string const manyTexts("one\0two\0\0", 9);
    struct {
        const char *name;
        DWORD type;
        std::string data;
    } const rows[] = {{"text", REG_SZ, WithNul("some text")},
                      {"open text", REG_EXPAND_SZ, WithNul("%windir%\\x")},
                      {"texts", REG_MULTI_SZ, manyTexts},
                      {"bytes", REG_BINARY, std::string("\x80\0\xff", 3)},
                      {"number", REG_DWORD, number},
                      {"other number", REG_DWORD_BIG_ENDIAN, number},
                      {"long number", REG_QWORD, number + number},
                      {"nothing", REG_NONE, "x"},
                      {"unknown", 4711, "\x80"},
                      {"empty bytes", REG_BINARY, ""}};
    for (auto const &row : rows)
        EXPECT_EQ(0, SetBytes(key, row.name, row.type, row.data)) << row.name;
    for (auto const &row : rows)
        EXPECT_EQ((Answer{0, row.type, row.data}), Query(key, row.name)) << row.name;
    EXPECT_EQ(std::size(rows), ValueNames(key).size());
}

TEST_F(RegistryCalls, a_value_is_replaced_with_its_type) {
    ASSERT_EQ(0, SetBytes(key, "v", REG_SZ, WithNul("a long text")));
    ASSERT_EQ(0, SetBytes(key, "v", REG_BINARY, "x"));
    EXPECT_EQ((Answer{0, REG_BINARY, "x"}), Query(key, "v"));
    EXPECT_EQ(std::vector<std::string>{"v"}, ValueNames(key));
}

TEST_F(RegistryCalls, names_of_values_are_found_in_any_case_and_kept_in_the_first) {
    ASSERT_EQ(0, SetBytes(key, "MixedCase", REG_SZ, WithNul("one")));
    ASSERT_EQ(0, SetBytes(key, "mixedcase", REG_SZ, WithNul("two")));
    EXPECT_EQ((Answer{0, REG_SZ, WithNul("two")}), Query(key, "MIXEDCASE"));
    EXPECT_EQ(std::vector<std::string>{"MixedCase"}, ValueNames(key));
    EXPECT_EQ(0, win::RegDeleteValueA(key, "mIXEDcASE"));
    EXPECT_EQ(2, Query(key, "MixedCase").status);
}

TEST_F(RegistryCalls, a_keys_own_value_has_no_name) {
    EXPECT_EQ(2, Query(key, "").status);
    ASSERT_EQ(0, SetBytes(key, nullptr, REG_SZ, WithNul("own")));
    EXPECT_EQ((Answer{0, REG_SZ, WithNul("own")}), Query(key, ""));
    EXPECT_EQ((Answer{0, REG_SZ, WithNul("own")}), Query(key, nullptr));
    EXPECT_EQ(std::vector<std::string>{""}, ValueNames(key));
    EXPECT_EQ(0, win::RegDeleteValueA(key, ""));
    EXPECT_EQ(2, win::RegDeleteValueA(key, nullptr));
}

TEST_F(RegistryCalls, a_backslash_is_a_letter_of_a_values_name) {
    ASSERT_EQ(0, SetBytes(key, "\\a\\b\\", REG_SZ, WithNul("x")));
    EXPECT_EQ(std::vector<std::string>{"\\a\\b\\"}, ValueNames(key));
    EXPECT_EQ(0, Query(key, "\\a\\b\\").status);
}

TEST_F(RegistryCalls, a_missing_value_is_2) {
    EXPECT_EQ(2, Query(key, "missing").status);
    EXPECT_EQ(2, win::RegDeleteValueA(key, "missing"));
    DWORD size = 4;
    EXPECT_EQ(2, win::RegQueryValueExA(key, "missing", nullptr, nullptr, nullptr, &size));
}

TEST_F(RegistryCalls, a_query_tells_the_size_it_needs) {
    ASSERT_EQ(0, SetBytes(key, "text", REG_SZ, WithNul("hello")));
    ASSERT_EQ(0, SetBytes(key, "number", REG_DWORD, std::string("\1\2\3\4", 4)));
    Sizes sizes = QueryInto(key, "text", 0, false);
    EXPECT_EQ(0, sizes.status);
    EXPECT_EQ(6u, sizes.size);
    EXPECT_EQ(1u, sizes.type);
    sizes = QueryInto(key, "text", 5);
    EXPECT_EQ(234, sizes.status);
    EXPECT_EQ(6u, sizes.size);
    EXPECT_EQ(1u, sizes.type);
    EXPECT_EQ("########", sizes.buffer) << "nothing is written";
    sizes = QueryInto(key, "text", 6);
    EXPECT_EQ(0, sizes.status);
    EXPECT_EQ(6u, sizes.size);
    EXPECT_EQ(WithNul("hello") + "##", sizes.buffer);
    sizes = QueryInto(key, "number", 3);
    EXPECT_EQ(234, sizes.status);
    EXPECT_EQ(4u, sizes.size);
    sizes = QueryInto(key, "number", 4);
    EXPECT_EQ(0, sizes.status);
    EXPECT_EQ("\1\2\3\4####", sizes.buffer);
}

TEST_F(RegistryCalls, a_text_without_its_terminator_gets_one_where_there_is_room) {
    // The byte behind the text is none of it.
    ASSERT_EQ(0, win::RegSetValueExA(key, "text", 0, REG_SZ,
                                     reinterpret_cast<const BYTE *>("helloX"), 5));
    Sizes sizes = QueryInto(key, "text", 8);
    EXPECT_EQ(0, sizes.status);
    EXPECT_EQ(5u, sizes.size);
    EXPECT_EQ(WithNul("hello") + "##", sizes.buffer);
    sizes = QueryInto(key, "text", 5);
    EXPECT_EQ(0, sizes.status);
    EXPECT_EQ(5u, sizes.size);
    EXPECT_EQ("hello###", sizes.buffer);
    sizes = QueryInto(key, "text", 4);
    EXPECT_EQ(234, sizes.status);
    EXPECT_EQ(5u, sizes.size);
}

TEST_F(RegistryCalls, a_query_may_ask_for_the_type_alone_or_for_nothing) {
    ASSERT_EQ(0, SetBytes(key, "v", REG_DWORD, std::string("\1\2\3\4", 4)));
    DWORD type = 77;
    EXPECT_EQ(0, win::RegQueryValueExA(key, "v", nullptr, &type, nullptr, nullptr));
    EXPECT_EQ(4u, type);
    EXPECT_EQ(0, win::RegQueryValueExA(key, "v", nullptr, nullptr, nullptr, nullptr));
    EXPECT_EQ(2, win::RegQueryValueExA(key, "missing", nullptr, nullptr, nullptr, nullptr));
}

TEST_F(RegistryCalls, a_query_with_a_buffer_of_no_size_is_87) {
    ASSERT_EQ(0, SetBytes(key, "v", REG_DWORD, std::string("\1\2\3\4", 4)));
    BYTE data[4];
    DWORD size = sizeof data;
    EXPECT_EQ(87, win::RegQueryValueExA(key, "v", nullptr, nullptr, data, nullptr));
    EXPECT_EQ(87, win::RegQueryValueExA(key, "v", &size, nullptr, data, &size));
    char name[4];
    EXPECT_EQ(87, win::RegEnumValueA(key, 0, name, &size, nullptr, nullptr, data, nullptr));
}

TEST_F(RegistryCalls, a_value_with_a_reserved_number_is_87) {
    if (UnderWine())
        GTEST_SKIP() << "Wine passes over the number";
    EXPECT_EQ(87, SetReserved(key, 7));
    EXPECT_EQ(2, Query(key, "v").status);
}

TEST_F(RegistryCalls, values_come_by_their_indices) {
    for (const char *const name : {"c", "a", "b"})
        ASSERT_EQ(0, SetBytes(key, name, REG_SZ, WithNul(name)));
    std::vector<std::string> const names = ValueNames(key);
    ASSERT_EQ(3u, names.size());
    for (DWORD const index : {2u, 0u, 1u, 1u, 2u})
        EXPECT_EQ(names[index], EntryAt(key, index, 40, 40).name.substr(0, 1)) << index;
    std::vector<std::string> sorted = names;
    std::sort(sorted.begin(), sorted.end());
    EXPECT_EQ((std::vector<std::string>{"a", "b", "c"}), sorted);
    Entry const behind = EntryAt(key, 3, 40, 40);
    EXPECT_EQ(259, behind.status);
    EXPECT_EQ(40u, behind.nameSize);
    EXPECT_EQ("########", behind.name);
    EXPECT_EQ(259, EntryAt(key, 0xffffffff, 40, 40).status);
}

TEST_F(RegistryCalls, a_value_that_goes_moves_the_later_ones_down) {
    for (const char *const name : {"a", "b", "c", "d", "e"})
        ASSERT_EQ(0, SetBytes(key, name, REG_SZ, WithNul(name)));
    std::vector<std::string> const before = ValueNames(key);
    ASSERT_EQ(5u, before.size());
    // Whoever deletes what each index gives passes over every second one.
    for (DWORD index = 0; index < 3; ++index) {
        std::string const name = EntryAt(key, index, 40, 40).name.substr(0, 1);
        EXPECT_EQ(before[2 * index], name);
        ASSERT_EQ(0, win::RegDeleteValueA(key, name.c_str()));
    }
    EXPECT_EQ((std::vector<std::string>{before[1], before[3]}), ValueNames(key));
}

TEST_F(RegistryCalls, an_entry_tells_the_room_its_data_need) {
    ASSERT_EQ(0, SetBytes(key, "name", REG_SZ, WithNul("data")));
    Entry entry = EntryAt(key, 0, 5, 5);
    EXPECT_EQ(0, entry.status);
    EXPECT_EQ(4u, entry.nameSize) << "without the terminator";
    EXPECT_EQ(5u, entry.size) << "with the terminator";
    EXPECT_EQ(1u, entry.type);
    EXPECT_EQ(WithNul("name") + "###", entry.name);
    EXPECT_EQ(WithNul("data") + "###", entry.data);
    entry = EntryAt(key, 0, 5, 4);
    EXPECT_EQ(234, entry.status);
    EXPECT_EQ(5u, entry.size);
    EXPECT_EQ(5u, entry.nameSize);
    EXPECT_EQ("########", entry.data);
    entry = EntryAt(key, 0, 4, 5);
    EXPECT_EQ(234, entry.status);
    EXPECT_EQ(5u, entry.size);
    EXPECT_EQ(234, EntryAt(key, 0, 0, 0).status);
}

TEST_F(RegistryCalls, an_entry_may_be_asked_for_its_name_alone) {
    ASSERT_EQ(0, SetBytes(key, "name", REG_SZ, WithNul("data")));
    char name[5];
    DWORD nameSize = sizeof name;
    EXPECT_EQ(0, win::RegEnumValueA(key, 0, name, &nameSize, nullptr, nullptr, nullptr, nullptr));
    EXPECT_STREQ("name", name);
    nameSize = sizeof name;
    DWORD size = 0;
    EXPECT_EQ(0, win::RegEnumValueA(key, 0, name, &nameSize, nullptr, nullptr, nullptr, &size));
    EXPECT_EQ(5u, size);
}

TEST_F(RegistryCalls, a_values_name_has_up_to_16383_characters) {
    std::string const longest(16383, 'n');
    EXPECT_EQ(0, SetBytes(key, longest.c_str(), REG_SZ, WithNul("x")));
    EXPECT_EQ(std::vector<std::string>{longest}, ValueNames(key));
    EXPECT_EQ(0, Query(key, longest.c_str()).status);
    EXPECT_EQ(87, SetBytes(key, (longest + 'n').c_str(), REG_SZ, WithNul("x")));
    EXPECT_EQ(2, win::RegDeleteValueA(key, (longest + 'n').c_str()));
    EXPECT_EQ(0, win::RegDeleteValueA(key, longest.c_str()));
}

TEST_F(RegistryCalls, large_data_come_back_whole) {
    std::string data(60000, '\0');
    for (std::size_t i = 0; i < data.size(); ++i)
        data[i] = static_cast<char>(i * i >> 5);
    ASSERT_EQ(0, SetBytes(key, "v", REG_BINARY, data));
    EXPECT_EQ((Answer{0, REG_BINARY, data}), Query(key, "v"));
}

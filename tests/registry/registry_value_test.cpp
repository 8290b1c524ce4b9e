// Values of the current key, and its keys and values by index.
#include "call_hook.h"
#include "registry_test.h"

#include <algorithm>

namespace {

using UTILS::UtilsString;

class RegistryValueTest : public RegistryTest {
protected:
    OpenRegistry m_registry{Full().c_str(), 0, 0};

    std::string Read(char const *name) {
        UtilsString text("before");
        EXPECT_EQ(m_registry.RegQueryValueA(name, text), 1) << name;
        EXPECT_EQ(m_registry.lastError, 0);
        return Text(text);
    }
};

std::string Bytes(DWORD number) { return {reinterpret_cast<char *>(&number), sizeof number}; }

// Numbers

TEST_F(RegistryValueTest, A_number_is_written_as_a_dword_and_read_back) {
    for (auto const set : {0, 1}) {
        EXPECT_EQ(set ? m_registry.SetValue("n", 0xfedcba98UL)
                      : m_registry.RegSetValueA("n", 0xfedcba98UL),
                  1);
        EXPECT_EQ(m_registry.valueSize, 4U);
        DWORD type = 0;
        EXPECT_EQ(ValueOf("", "n", &type), Bytes(0xfedcba98));
        EXPECT_EQ(type, 4U);
    }
    unsigned long number = 0;
    EXPECT_EQ(m_registry.RegQueryValueA("n", number), 1);
    EXPECT_EQ(number, 0xfedcba98UL);
    EXPECT_EQ(m_registry.nameSize, 4U);
    EXPECT_EQ(m_registry.valueType, 4U);
    number = 0;
    EXPECT_EQ(m_registry.GetValue("n", number), 1);
    EXPECT_EQ(m_registry.QueryValue("N", number), 1);
    EXPECT_EQ(number, 0xfedcba98UL);
}

TEST_F(RegistryValueTest, Any_value_of_up_to_four_bytes_reads_as_a_number) {
    WriteValue("", "three", REG_BINARY, std::string("\1\2\3", 3));
    WriteValue("", "big", REG_DWORD_BIG_ENDIAN, std::string("\0\0\1\2", 4));
    WriteValue("", "text", REG_SZ, std::string("abc\0", 4));
    unsigned long number = 0xff000000;
    EXPECT_EQ(m_registry.RegQueryValueA("three", number), 1);
    EXPECT_EQ(number, 0xff030201UL); // the byte that wasn't written stays
    EXPECT_EQ(m_registry.valueType, 3U);
    EXPECT_EQ(m_registry.RegQueryValueA("big", number), 1);
    EXPECT_EQ(number, 0x02010000UL);
    EXPECT_EQ(m_registry.RegQueryValueA("text", number), 1);
    EXPECT_EQ(number, 0x00636261UL);
    EXPECT_EQ(m_registry.valueType, 1U);
}

TEST_F(RegistryValueTest, A_longer_value_isnt_a_number) {
    WriteValue("", "five", REG_BINARY, "12345");
    unsigned long number = 9;
    EXPECT_EQ(m_registry.RegQueryValueA("five", number), 0);
    EXPECT_EQ(m_registry.lastError, 234);
    EXPECT_EQ(number, 9U);
}

TEST_F(RegistryValueTest, A_missing_value_is_error_2_and_the_target_stays) {
    unsigned long number = 9;
    UtilsString text("before");
    EXPECT_EQ(m_registry.RegQueryValueA("no", number), 0);
    EXPECT_EQ(m_registry.lastError, 2);
    EXPECT_EQ(m_registry.RegQueryValueA("no", text), 0);
    EXPECT_EQ(m_registry.lastError, 2);
    EXPECT_EQ(m_registry.RegDeleteValueA("no"), 0);
    EXPECT_EQ(m_registry.lastError, 2);
    EXPECT_EQ(number, 9U);
    EXPECT_EQ(Text(text), "before");
}

// Text

TEST_F(RegistryValueTest, A_text_is_written_with_its_NUL_and_read_back) {
    EXPECT_EQ(m_registry.RegSetValueA("t", "some text"), 1);
    EXPECT_EQ(m_registry.valueSize, 10U);
    DWORD type = 0;
    EXPECT_EQ(ValueOf("", "t", &type), std::string("some text\0", 10));
    EXPECT_EQ(type, 1U);
    EXPECT_EQ(Read("t"), "some text");
    EXPECT_EQ(m_registry.nameSize, 10U);
    EXPECT_EQ(m_registry.valueType, 1U);
    EXPECT_EQ(m_registry.SetValue("e", ""), 1);
    EXPECT_EQ(m_registry.valueSize, 1U);
    EXPECT_EQ(Read("e"), "");
    UtilsString text;
    EXPECT_EQ(m_registry.GetValue("t", text), 1);
    EXPECT_EQ(m_registry.QueryValue("t", text), 1);
    EXPECT_EQ(Text(text), "some text");
}

TEST_F(RegistryValueTest, A_text_without_a_NUL_ends_where_its_bytes_do) {
    WriteValue("", "bare", REG_SZ, "abc");
    WriteValue("", "none", REG_NONE, "xyz");
    EXPECT_EQ(Read("bare"), "abc");
    EXPECT_EQ(Read("none"), "xyz");
}

TEST_F(RegistryValueTest, Of_several_texts_the_first_is_read_and_variables_stay) {
    WriteValue("", "many", REG_MULTI_SZ, std::string("one\0two\0\0", 9));
    WriteValue("", "vars", REG_EXPAND_SZ, std::string("%a%\\b\0", 6));
    EXPECT_EQ(Read("many"), "one");
    EXPECT_EQ(Read("vars"), "%a%\\b");
}

TEST_F(RegistryValueTest, Numbers_and_bytes_read_as_the_decimal_of_their_first_byte) {
    WriteNumber("", "300", 300);
    WriteNumber("", "258", 258);
    WriteValue("", "binary", REG_BINARY, "\xff\x01");
    WriteValue("", "empty", REG_BINARY, "");
    WriteValue("", "big", REG_DWORD_BIG_ENDIAN, std::string("\7\0\0\1", 4));
    EXPECT_EQ(Read("300"), "44");
    EXPECT_EQ(Read("258"), "2");
    EXPECT_EQ(Read("binary"), "255");
    EXPECT_EQ(Read("big"), "7");
    EXPECT_EQ(Read("empty"), "0");
}

TEST_F(RegistryValueTest, A_text_of_255_bytes_reads_and_one_byte_more_doesnt) {
    std::string const fits(254, 'x');
    EXPECT_EQ(m_registry.RegSetValueA("t", fits.c_str()), 1);
    EXPECT_EQ(Read("t"), fits);
    EXPECT_EQ(m_registry.RegSetValueA("t", (fits + "y").c_str()), 1);
    UtilsString text("before");
    EXPECT_EQ(m_registry.RegQueryValueA("t", text), 0);
    EXPECT_EQ(m_registry.lastError, 0); // the second call succeeded
    EXPECT_EQ(m_registry.nameSize, 256U);
    EXPECT_EQ(Text(text), "before");
}

TEST_F(RegistryValueTest, Bytes_that_fill_the_255_read_too) {
    WriteValue("", "b", REG_BINARY, std::string(255, '\5'));
    WriteValue("", "t", REG_SZ, std::string(255, 't'));
    EXPECT_EQ(Read("b"), "5");
    // The system may add the NUL that is missing, and then it is a byte more.
    UtilsString text;
    if (m_registry.RegQueryValueA("t", text))
        EXPECT_EQ(Text(text), std::string(255, 't'));
    else
        EXPECT_EQ(m_registry.lastError, 0);
}

TEST_F(RegistryValueTest, A_second_call_that_fails_is_told) {
    EXPECT_EQ(m_registry.RegSetValueA("t", std::string(600, 'x').c_str()), 1);
    int calls = 0;
    CallHook const hook([&calls](CallHook::Call const &call) {
        if (!Is(call, "RegQueryValueExA") || call.moment != CallHook::Moment::Before ||
            ++calls != 2)
            return false;
        win::SetLastError(ERROR_ACCESS_DENIED);
        return true;
    });
    UtilsString text;
    EXPECT_EQ(m_registry.RegQueryValueA("t", text), 0);
    EXPECT_EQ(m_registry.lastError, 5);
    EXPECT_EQ(calls, 2);
}

TEST_F(RegistryValueTest, A_value_goes) {
    WriteNumber("", "n", 1);
    EXPECT_EQ(m_registry.RegDeleteValueA("N"), 1);
    EXPECT_EQ(ValueOf("", "n"), std::nullopt);
    WriteNumber("", "n", 1);
    EXPECT_EQ(m_registry.DeleteValue("n"), 1);
    EXPECT_EQ(m_registry.lastError, 0);
}

TEST_F(RegistryValueTest, No_value_is_without_a_name_or_without_a_key) {
    WriteValue("", "", REG_SZ, "default");
    unsigned long number = 0;
    UtilsString text;
    HKEY const key = m_registry.currentKey;
    m_registry.lastError = 77;
    for (char const *name : {"", "n"}) {
        m_registry.currentKey = *name ? nullptr : key;
        EXPECT_EQ(m_registry.RegQueryValueA(name, number), 0);
        EXPECT_EQ(m_registry.RegQueryValueA(name, text), 0);
        EXPECT_EQ(m_registry.RegSetValueA(name, 1UL), 0);
        EXPECT_EQ(m_registry.RegSetValueA(name, "x"), 0);
        EXPECT_EQ(m_registry.RegDeleteValueA(name), 0);
    }
    EXPECT_EQ(m_registry.RegEnumKeyA(0, text, 0), 0);
    EXPECT_EQ(m_registry.RegEnumValueA(0, text, text, 0), 0);
    EXPECT_EQ(m_registry.RegEnumValueA(0, text, number, 0), 0);
    EXPECT_EQ(m_registry.RegDeleteKeyA(0), 0);
    EXPECT_EQ(m_registry.RegDeleteKeyA(1), 0);
    EXPECT_EQ(m_registry.RegDeleteKeyA("HKCU", 0), 0);
    EXPECT_EQ(m_registry.lastError, 77);
    m_registry.currentKey = key;
}

// Keys by index

TEST_F(RegistryValueTest, Keys_come_in_the_order_of_their_names_without_regard_to_case) {
    for (char const *name : {"beta", "Alpha", "gamma", "ALPHA2", "Zeta"})
        MakeKey(name);
    std::vector<std::string> names;
    UtilsString name;
    for (unsigned long i = 0; m_registry.RegEnumKeyA(i, name, 0); ++i)
        names.push_back(Text(name));
    EXPECT_EQ(m_registry.lastError, 259);
    EXPECT_EQ(names, (std::vector<std::string>{"Alpha", "ALPHA2", "beta", "gamma", "Zeta"}));
}

TEST_F(RegistryValueTest, A_key_comes_bare_with_its_path_or_with_the_root_too) {
    MakeKey("sub");
    UtilsString name;
    EXPECT_EQ(m_registry.RegEnumKeyA(0, name, 0), 1);
    EXPECT_EQ(Text(name), "sub");
    EXPECT_EQ(m_registry.nameSize, 3U);
    EXPECT_EQ(m_registry.EnumKey(0, name, 1), 1);
    EXPECT_EQ(Text(name), Below("sub"));
    for (unsigned long form : {2UL, 3UL, 99UL}) {
        EXPECT_EQ(m_registry.RegEnumKeyA(0, name, form), 1);
        EXPECT_EQ(Text(name), Full("sub"));
    }
    EXPECT_EQ(m_registry.RegEnumKeyA(1, name, 0), 0);
    EXPECT_EQ(m_registry.lastError, 259);
    EXPECT_EQ(Text(name), Full("sub"));
}

TEST_F(RegistryValueTest, A_name_of_255_characters_is_delivered) {
    std::string const longest(255, 'k');
    EXPECT_EQ(m_registry.RegCreateSubKey(longest.c_str(), 0), 1);
    UtilsString name;
    EXPECT_EQ(m_registry.RegEnumKeyA(0, name, 0), 1);
    EXPECT_EQ(Text(name), longest);
}

// The system has longer names in bytes where a character has several.
TEST_F(RegistryValueTest, A_longer_name_is_a_failure_with_error_0) {
    MakeKey("sub");
    int calls = 0;
    CallHook const hook([&calls](CallHook::Call const &call) {
        if (!Is(call, "RegEnumKeyExA") || call.moment != CallHook::Moment::Before || ++calls != 1)
            return false;
        win::SetLastError(ERROR_MORE_DATA);
        return true;
    });
    UtilsString name("before");
    EXPECT_EQ(m_registry.RegEnumKeyA(0, name, 0), 0);
    EXPECT_EQ(m_registry.lastError, 0);
    EXPECT_EQ(calls, 2);
    EXPECT_EQ(Text(name), "before");
}

// Values by index

TEST_F(RegistryValueTest, Values_come_with_their_texts) {
    WriteValue("", "text", REG_SZ, std::string("abc\0", 4));
    WriteNumber("", "number", 300);
    WriteValue("", "bytes", REG_BINARY, "\x80");
    std::vector<std::pair<std::string, std::string>> seen;
    UtilsString name;
    UtilsString value;
    for (unsigned long i = 0; m_registry.RegEnumValueA(i, name, value, 0); ++i)
        seen.emplace_back(Text(name), Text(value));
    EXPECT_EQ(m_registry.lastError, 259);
    std::sort(seen.begin(), seen.end());
    EXPECT_EQ(seen, (std::vector<std::pair<std::string, std::string>>{
                        {"bytes", "128"}, {"number", "44"}, {"text", "abc"}}));
}

TEST_F(RegistryValueTest, A_values_name_has_the_forms_of_a_keys) {
    WriteNumber("", "v", 0x01020304);
    UtilsString name;
    UtilsString value;
    unsigned long number = 0;
    EXPECT_EQ(m_registry.EnumValue(0, name, value, 1), 1);
    EXPECT_EQ(Text(name), Below("v"));
    EXPECT_EQ(Text(value), "4");
    EXPECT_EQ(m_registry.valueType, 4U);
    EXPECT_EQ(m_registry.EnumValue(0, name, number, 2), 1);
    EXPECT_EQ(Text(name), Full("v"));
    EXPECT_EQ(number, 0x01020304UL);
    EXPECT_EQ(m_registry.RegEnumValueA(0, name, number, 0), 1);
    EXPECT_EQ(Text(name), "v");
    EXPECT_EQ(m_registry.nameSize, 1U);
    EXPECT_EQ(m_registry.RegEnumValueA(1, name, number, 0), 0);
    EXPECT_EQ(m_registry.lastError, 259);
}

TEST_F(RegistryValueTest, A_text_of_256_bytes_is_told_by_index_and_a_longer_one_isnt) {
    std::string const fits(255, 'x');
    WriteValue("", "v", REG_SZ, std::string(fits.c_str(), 256));
    UtilsString name;
    UtilsString value;
    EXPECT_EQ(m_registry.RegEnumValueA(0, name, value, 0), 1);
    EXPECT_EQ(Text(value), fits);
    WriteValue("", "v", REG_SZ, std::string((fits + "y").c_str(), 257));
    name = "before";
    EXPECT_EQ(m_registry.RegEnumValueA(0, name, value, 0), 0);
    EXPECT_EQ(m_registry.lastError, 0);
    EXPECT_EQ(Text(name), "before");
    EXPECT_EQ(Text(value), fits);
}

TEST_F(RegistryValueTest, By_index_a_number_has_at_most_four_bytes) {
    WriteValue("", "v", REG_BINARY, "12345");
    UtilsString name("before");
    unsigned long number = 9;
    EXPECT_EQ(m_registry.RegEnumValueA(0, name, number, 0), 0);
    EXPECT_EQ(m_registry.lastError, 234); // the second call has no more room for it
    EXPECT_EQ(number, 9U);
    EXPECT_EQ(Text(name), "before");
}

TEST_F(RegistryValueTest, A_long_name_of_a_value_isnt_delivered) {
    WriteNumber("", std::string(300, 'n'), 1);
    UtilsString name("before");
    UtilsString value;
    unsigned long number = 9;
    EXPECT_EQ(m_registry.RegEnumValueA(0, name, value, 0), 0);
    EXPECT_EQ(m_registry.RegEnumValueA(0, name, number, 0), 0);
    EXPECT_EQ(Text(name), "before");
    EXPECT_EQ(number, 9U);
}

// Every call of the system fails once, with a code of its own.
TEST_F(RegistryValueTest, A_call_that_fails_is_told_by_its_code) {
    MakeKey("sub");
    WriteNumber("", "n", 1);
    UtilsString name;
    UtilsString text;
    unsigned long number = 0;
    CallHook const hook([](CallHook::Call const &call) {
        if (call.moment != CallHook::Moment::Before)
            return false;
        win::SetLastError(1450);
        return true;
    });
    auto const expectFailure = [this](int result) {
        EXPECT_EQ(result, 0);
        EXPECT_EQ(m_registry.lastError, 1450);
        EXPECT_EQ(m_registry.GetLastRegistryError(), 1450);
        m_registry.lastError = 0;
    };
    expectFailure(m_registry.RegQueryValueA("n", number));
    expectFailure(m_registry.RegQueryValueA("n", text));
    expectFailure(m_registry.RegSetValueA("n", 2UL));
    expectFailure(m_registry.RegSetValueA("n", "x"));
    expectFailure(m_registry.RegDeleteValueA("n"));
    expectFailure(m_registry.RegEnumKeyA(0, name, 0));
    expectFailure(m_registry.RegEnumValueA(0, name, text, 0));
    expectFailure(m_registry.RegEnumValueA(0, name, number, 0));
    expectFailure(m_registry.RegOpenKeyA(Below().c_str()));
    expectFailure(m_registry.RegOpenSubKey("sub"));
    expectFailure(m_registry.RegCreateSubKey("sub", 1));
    expectFailure(m_registry.RegDeleteKeyA(0));
    expectFailure(m_registry.RegDeleteKeyA(1));
    expectFailure(m_registry.RegDeleteKeyA(Below().c_str(), 1));
}

} // namespace

// Keys that are opened and made, and the handles that stand for them, on both lines of systems.
#include "call_hook.h"
#include "registry_test.h"

#include <map>
#include <memory>
#include <stdexcept>

#include "std_exception.h"

namespace {

using UTILS::UtilsString;

// The constructors ask for the version: the Windows 95 line keeps handles as they come.
class RegistryKeyTest : public RegistryTest, public ::testing::WithParamInterface<bool> {
protected:
    RegistryKeyTest() {
        MakeKey("a\\b");
        MakeKey("c");
        if (!IsNT())
            testing_hooks::SetVersion(1, 4, 10);
    }
    ~RegistryKeyTest() override { testing_hooks::SetVersion(0, 0, 0); }
    static bool IsNT() { return GetParam(); }

    OpenRegistry Open(std::string const &path) const { return {Full(path).c_str(), 0, 0}; }
};
INSTANTIATE_TEST_SUITE_P(Lines, RegistryKeyTest, ::testing::Bool(),
                         [](auto const &line) { return line.param ? "NT" : "Windows95"; });

// Whether the object's key is open and is this one: a value written through it is there.
void ExpectStandsOn(OpenRegistry &registry, std::string const &path) {
    EXPECT_EQ(Text(registry.GetRegistryPath(1)), path + "\\");
    EXPECT_TRUE(registry.RegSetValueA("place", path.c_str()));
    HKEY key = nullptr;
    ASSERT_EQ(win::RegOpenKeyExA(HKEY_CURRENT_USER, path.substr(5).c_str(), 0, KEY_READ, &key),
              ERROR_SUCCESS);
    char text[300] = "";
    DWORD size = sizeof text;
    EXPECT_EQ(win::RegQueryValueExA(key, "place", nullptr, nullptr, reinterpret_cast<BYTE *>(text),
                                    &size),
              ERROR_SUCCESS);
    win::RegCloseKey(key);
    EXPECT_EQ(text, path);
}

TEST_P(RegistryKeyTest, A_fresh_object_stands_on_the_root_of_the_machine) {
    OpenRegistry const registry;
    EXPECT_EQ(registry.rootKey, HKEY_LOCAL_MACHINE);
    EXPECT_EQ(registry.currentKey, HKEY_LOCAL_MACHINE);
    EXPECT_EQ(Text(registry.GetRegistryPath(0)), "");
    EXPECT_EQ(registry.lastWrite, nullptr);
    EXPECT_EQ(registry.lastError, 0);
}

TEST_P(RegistryKeyTest, A_root_alone_has_the_root_for_its_current_key) {
    OpenRegistry const registry("HKCU", 0, 0);
    EXPECT_EQ(registry.rootKey, HKEY_CURRENT_USER);
    EXPECT_EQ(registry.currentKey, registry.rootKey);
}

TEST_P(RegistryKeyTest, A_key_is_opened_by_its_path_from_a_root) {
    OpenRegistry registry = Open("a\\b");
    ExpectStandsOn(registry, Full("a\\b"));
    EXPECT_EQ(registry.lastError, 0);
    OpenRegistry apart(HKEY_CURRENT_USER, Below("a").c_str(), 0, 0);
    ExpectStandsOn(apart, Full("a"));
}

TEST_P(RegistryKeyTest, A_root_given_apart_is_replaced_by_the_paths_own) {
    OpenRegistry registry(HKEY_LOCAL_MACHINE, Full("a").c_str(), 0, 0);
    EXPECT_EQ(registry.rootKey, HKEY_CURRENT_USER);
    ExpectStandsOn(registry, Full("a"));
}

TEST_P(RegistryKeyTest, A_root_given_apart_with_an_empty_path_is_opened_itself) {
    OpenRegistry const registry(HKEY_CURRENT_USER, "", 0, 0);
    EXPECT_EQ(registry.currentKey, HKEY_CURRENT_USER);
}

TEST_P(RegistryKeyTest, Opening_without_a_root_counts_from_the_root_not_from_the_current_key) {
    OpenRegistry registry = Open("a");
    EXPECT_EQ(registry.RegOpenKeyA("b"), 0);
    EXPECT_EQ(registry.lastError, 2);
    EXPECT_EQ(registry.RegOpenKeyA(Below("c").c_str()), 1);
    ExpectStandsOn(registry, Full("c"));
    EXPECT_EQ(registry.OpenKey((Below("a\\b") + "\\").c_str()), 1);
    ExpectStandsOn(registry, Full("a\\b"));
}

TEST_P(RegistryKeyTest, Opening_with_a_root_changes_the_root) {
    OpenRegistry registry;
    EXPECT_EQ(registry.RegOpenKeyA(Full("c").c_str()), 1);
    EXPECT_EQ(registry.rootKey, HKEY_CURRENT_USER);
    ExpectStandsOn(registry, Full("c"));
}

TEST_P(RegistryKeyTest, A_failed_open_leaves_root_key_and_path) {
    OpenRegistry registry = Open("a");
    HKEY const key = registry.currentKey;
    EXPECT_EQ(registry.RegOpenKeyA("HKLM\\no such key\\x"), 0);
    EXPECT_EQ(registry.lastError, 2);
    EXPECT_EQ(registry.rootKey, HKEY_CURRENT_USER);
    EXPECT_EQ(registry.currentKey, key);
    ExpectStandsOn(registry, Full("a"));
}

// What the text of a failed open doesn't take back: the form of the root's name.
TEST_P(RegistryKeyTest, A_failed_open_keeps_the_form_of_its_roots_name) {
    OpenRegistry registry = Open("a");
    EXPECT_EQ(registry.RegOpenKeyA("HKEY_CURRENT_USER\\no such key\\x"), 0);
    EXPECT_EQ(registry.longForm, 1);
}

TEST_P(RegistryKeyTest, An_empty_path_reopens_the_root) {
    OpenRegistry registry = Open("a");
    EXPECT_EQ(registry.RegOpenKeyA(""), 1);
    EXPECT_EQ(registry.currentKey, HKEY_CURRENT_USER);
    EXPECT_EQ(Text(registry.GetRegistryPath(0)), "");
    EXPECT_EQ(registry.RegOpenKeyA("HKLM"), 1);
    EXPECT_EQ(registry.currentKey, HKEY_LOCAL_MACHINE);
}

TEST_P(RegistryKeyTest, A_subkey_is_opened_below_the_current_key) {
    OpenRegistry registry = Open("a");
    EXPECT_EQ(registry.RegOpenSubKey("b"), 1);
    ExpectStandsOn(registry, Full("a\\b"));
    registry.RegOpenKeyA(Below().c_str());
    EXPECT_EQ(registry.OpenSubKey("a\\b"), 1);
    ExpectStandsOn(registry, Full("a\\b"));
}

TEST_P(RegistryKeyTest, A_subkey_that_is_missing_or_empty_or_below_nothing_isnt_opened) {
    OpenRegistry registry = Open("a");
    EXPECT_EQ(registry.RegOpenSubKey("no"), 0);
    EXPECT_EQ(registry.lastError, 2);
    registry.lastError = 77;
    EXPECT_EQ(registry.RegOpenSubKey(""), 0);
    HKEY const key = registry.currentKey;
    registry.currentKey = nullptr;
    EXPECT_EQ(registry.RegOpenSubKey("b"), 0);
    EXPECT_EQ(registry.RegCreateSubKey("n", 1), 0);
    EXPECT_EQ(registry.lastError, 77);
    registry.currentKey = key;
    ExpectStandsOn(registry, Full("a"));
}

TEST_P(RegistryKeyTest, A_key_is_made_in_one_call) {
    OpenRegistry registry(Full("new\\one\\two").c_str(), 1, 0);
    EXPECT_EQ(registry.disposition, 1U); // made
    ExpectStandsOn(registry, Full("new\\one\\two"));
    EXPECT_EQ(registry.CreateKey(Full("new").c_str(), 0), 1);
    EXPECT_EQ(registry.disposition, 2U); // was there
    ExpectStandsOn(registry, Full("new"));
}

TEST_P(RegistryKeyTest, A_key_is_made_step_by_step) {
    std::vector<std::string> made;
    OpenRegistry registry;
    {
        CallHook const hook([&made](CallHook::Call const &call) {
            if (Is(call, "RegCreateKeyExA") && call.moment == CallHook::Moment::Before)
                made.emplace_back(call.path);
            return false;
        });
        EXPECT_EQ(registry.RegCreateKeyA(Full("s\\t").c_str(), 1), 1);
    }
    EXPECT_EQ(made, (std::vector<std::string>{"Software", Below().substr(9), "s", "t"}));
    ExpectStandsOn(registry, Full("s\\t"));
    EXPECT_EQ(registry.rootKey, HKEY_CURRENT_USER);
}

TEST_P(RegistryKeyTest, An_empty_path_isnt_made) {
    OpenRegistry registry = Open("a");
    EXPECT_EQ(registry.RegCreateKeyA("", 0), 0);
    EXPECT_EQ(registry.RegCreateKeyA("", 1), 0);
    ExpectStandsOn(registry, Full("a"));
}

// A name longer than any key's.
TEST_P(RegistryKeyTest, After_a_failed_creation_in_one_call_no_key_is_open) {
    OpenRegistry registry = Open("a");
    std::string const tooLong(300, 'n');
    EXPECT_EQ(registry.RegCreateKeyA(("HKLM\\" + tooLong).c_str(), 0), 0);
    EXPECT_NE(registry.lastError, 0);
    EXPECT_EQ(registry.rootKey, HKEY_CURRENT_USER);
    EXPECT_EQ(registry.currentKey, nullptr);
    EXPECT_EQ(Text(registry.GetRegistryPath(1)), Full("a") + "\\");
    unsigned long number = 0;
    EXPECT_EQ(registry.RegQueryValueA("x", number), 0);
    EXPECT_EQ(registry.RegOpenKeyA(Below("c").c_str()), 1);
    ExpectStandsOn(registry, Full("c"));
}

TEST_P(RegistryKeyTest, A_failed_step_leaves_what_was_made_before_it) {
    OpenRegistry registry = Open("a");
    std::string const tooLong(300, 'n');
    EXPECT_EQ(registry.RegCreateKeyA((Full("made") + "\\" + tooLong + "\\x").c_str(), 1), 0);
    EXPECT_NE(registry.lastError, 0);
    EXPECT_TRUE(IsKey("made"));
    EXPECT_NE(registry.currentKey, nullptr);
    EXPECT_EQ(registry.RegCreateKeyA(("HKLM\\" + tooLong).c_str(), 1), 0);
    EXPECT_EQ(registry.rootKey, HKEY_CURRENT_USER);
}

TEST_P(RegistryKeyTest, A_subkey_is_made_with_and_without_moving_there) {
    OpenRegistry registry = Open("a");
    EXPECT_EQ(registry.RegCreateSubKey("stay", 0), 1);
    EXPECT_EQ(registry.disposition, 1U);
    ExpectStandsOn(registry, Full("a"));
    EXPECT_TRUE(IsKey("a\\stay"));
    EXPECT_EQ(registry.RegCreateSubKey("stay", 5), 1);
    EXPECT_EQ(registry.disposition, 2U);
    ExpectStandsOn(registry, Full("a\\stay"));
    EXPECT_EQ(registry.RegCreateSubKey("", 1), 0);
    EXPECT_EQ(registry.RegCreateSubKey(std::string(300, 'n').c_str(), 1), 0);
    EXPECT_NE(registry.lastError, 0);
    ExpectStandsOn(registry, Full("a\\stay"));
}

// The re-parse can't tell such a key from a root.
TEST_P(RegistryKeyTest, A_key_below_the_root_that_bears_a_roots_name_changes_the_root) {
    HKEY key = nullptr;
    ASSERT_EQ(win::RegCreateKeyExA(HKEY_CURRENT_USER, "HKLM", 0, nullptr, 0, KEY_READ, nullptr,
                                   &key, nullptr),
              ERROR_SUCCESS);
    win::RegCloseKey(key);
    OpenRegistry registry("HKCU", 0, 0);
    EXPECT_EQ(registry.RegOpenSubKey("HKLM"), 1);
    EXPECT_EQ(registry.rootKey, HKEY_LOCAL_MACHINE);
    EXPECT_EQ(Text(registry.GetRegistryPath(1)), "HKLM\\");
    EXPECT_EQ(registry.RegOpenKeyA("HKCU\\HKLM"), 1);
    EXPECT_EQ(Text(registry.GetRegistryPath(1)), "HKLM\\");
    EXPECT_NE(registry.currentKey, HKEY_LOCAL_MACHINE); // the key itself is the one meant
    EXPECT_EQ(win::RegDeleteKeyA(HKEY_CURRENT_USER, "HKLM"), ERROR_SUCCESS);
}

// Handles

// Those that are open, by the calls that give and take them.
class HandleCount {
public:
    HandleCount()
        : m_hook([this](CallHook::Call const &call) {
              if (call.moment == CallHook::Moment::Before)
                  ++m_calls[call.service];
              return false;
          }) {}
    int operator[](char const *service) { return m_calls[service]; }
    void Reset() { m_calls.clear(); }

private:
    std::map<std::string, int> m_calls;
    CallHook m_hook;
};

TEST_P(RegistryKeyTest, NT_keeps_a_duplicate_of_a_key_and_the_older_line_the_key_itself) {
    HandleCount count;
    OpenRegistry registry = Open("a");
    int const nt = IsNT() ? 1 : 0;
    EXPECT_EQ(count["RegOpenKeyExA"], 1);
    EXPECT_EQ(count["DuplicateHandle"], nt);
    EXPECT_EQ(count["CloseHandle"], nt); // the one that was duplicated
    count.Reset();
    EXPECT_EQ(registry.RegOpenSubKey("b"), 1);
    EXPECT_EQ(count["DuplicateHandle"], nt);
    EXPECT_EQ(count["CloseHandle"], 1 + nt); // and the key before
    count.Reset();
    EXPECT_EQ(registry.RegCreateSubKey("n", 0), 1);
    EXPECT_EQ(count["DuplicateHandle"], 0);
    EXPECT_EQ(count["CloseHandle"], 1);
    count.Reset();
    EXPECT_EQ(registry.RegCreateKeyA(Full("c").c_str(), 0), 1);
    EXPECT_EQ(count["CloseHandle"], 1 + nt);
    EXPECT_EQ(count["RegCloseKey"], 0);
}

TEST_P(RegistryKeyTest, The_destructor_closes_whatever_key_there_is) {
    HandleCount count;
    { OpenRegistry const registry = Open("a"); }
    EXPECT_EQ(count["RegCloseKey"], 1);
    { OpenRegistry const registry; }
    EXPECT_EQ(count["RegCloseKey"], 2);
}

TEST_P(RegistryKeyTest, A_root_is_neither_duplicated_nor_closed_by_a_move) {
    OpenRegistry registry("HKCU", 0, 0);
    HandleCount count;
    EXPECT_EQ(registry.RegOpenKeyA("HKLM"), 1);
    EXPECT_EQ(registry.RegOpenKeyA("HKCU"), 1);
    EXPECT_EQ(count["DuplicateHandle"], 0);
    EXPECT_EQ(count["CloseHandle"], 0);
}

TEST_P(RegistryKeyTest, A_copy_takes_every_field_and_on_NT_a_key_of_its_own) {
    OpenRegistry registry(("HKEY_CURRENT_USER\\" + Below("a")).c_str(), 0, 0);
    registry.disposition = 3;
    registry.nameSize = 4;
    registry.valueSize = 5;
    registry.lastError = 6;
    registry.valueType = 7;
    FILETIME time{};
    registry.lastWrite = &time;
    OpenRegistry copy(registry);
    EXPECT_EQ(copy.rootKey, registry.rootKey);
    EXPECT_EQ(copy.disposition, 3U);
    EXPECT_EQ(copy.nameSize, 4U);
    EXPECT_EQ(copy.valueSize, 5U);
    EXPECT_EQ(copy.lastError, 6);
    EXPECT_EQ(copy.valueType, 7U);
    EXPECT_EQ(copy.longForm, 1);
    EXPECT_EQ(copy.lastWrite, &time);
    EXPECT_EQ(Text(copy.path), Text(registry.path));
    EXPECT_EQ(copy.currentKey != registry.currentKey, IsNT());
    EXPECT_EQ(copy.RegSetValueA("copied", 1UL), 1);
    EXPECT_TRUE(ValueOf("a", "copied").has_value());
}

TEST_P(RegistryKeyTest, A_copy_on_NT_outlives_the_other) {
    auto first = std::make_unique<OpenRegistry>(Full("a").c_str(), 0, 0);
    OpenRegistry second;
    second = *first;
    EXPECT_EQ(Text(second.GetRegistryPath(1)), Full("a") + "\\");
    first.reset();
    EXPECT_EQ(second.RegSetValueA("later", 1UL), IsNT() ? 1 : 0);
    EXPECT_EQ(second.lastError, IsNT() ? 0 : 6); // the shared key is closed
}

TEST_P(RegistryKeyTest, A_copy_of_one_on_a_root_stands_on_that_root) {
    OpenRegistry const first("HKCU", 0, 0);
    OpenRegistry const second(first);
    EXPECT_EQ(second.currentKey, HKEY_CURRENT_USER);
}

TEST_P(RegistryKeyTest, An_assignment_to_itself_does_nothing) {
    OpenRegistry registry = Open("a");
    HandleCount count;
    HKEY const key = registry.currentKey;
    OpenRegistry const &same = registry;
    registry = same;
    EXPECT_EQ(registry.currentKey, key);
    EXPECT_EQ(count["DuplicateHandle"], 0);
}

TEST_P(RegistryKeyTest, An_assignment_doesnt_close_the_key_that_was_held) {
    OpenRegistry registry = Open("a");
    OpenRegistry const other = Open("c");
    HKEY const held = registry.currentKey;
    HandleCount count;
    registry = other;
    EXPECT_EQ(count["CloseHandle"] + count["RegCloseKey"], 0);
    EXPECT_EQ(win::RegCloseKey(held), ERROR_SUCCESS);
}

TEST_P(RegistryKeyTest, A_key_that_cant_be_duplicated_is_kept_itself) {
    CallHook const hook([](CallHook::Call const &call) {
        if (!Is(call, "DuplicateHandle") || call.moment != CallHook::Moment::Before)
            return false;
        win::SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return true;
    });
    OpenRegistry registry = Open("a");
    ExpectStandsOn(registry, Full("a"));
    OpenRegistry const copy(registry);
    EXPECT_EQ(copy.currentKey == nullptr, IsNT());
}

// Exceptions

std::string Composed(char const *line, std::string const &condition, DWORD error) {
    UtilsString system;
    system.SetErrorMsg(error, 0);
    return std::string("File:  UtilsRegistry; Line Number:  ") + line +
           "; Exception Name:  class UTILS::std_exception; Type:  204; Error Number: " +
           std::to_string(error) + "; WinError Description: " + Text(system) +
           "; Error Condition:  " + condition;
}

template <typename Make> std::string Thrown(DWORD error, Make make) {
    win::SetLastError(error);
    try {
        make();
    } catch (UTILS::std_exception const &failure) {
        return failure.what();
    }
    return "nothing";
}

// The system's calls may set the last error; what is told is what they leave.
class Failing {
public:
    Failing(char const *service, LSTATUS status)
        : m_hook([service, status](CallHook::Call const &call) {
              if (!Is(call, service) || call.moment != CallHook::Moment::Before)
                  return false;
              win::SetLastError(static_cast<DWORD>(status));
              return true;
          }) {}

private:
    CallHook m_hook;
};

TEST_P(RegistryKeyTest, An_empty_path_is_an_invalid_argument) {
    try {
        OpenRegistry const registry("", 0, 0);
        FAIL();
    } catch (std::invalid_argument const &failure) {
        EXPECT_STREQ(
            failure.what(),
            "Inavlid Argument Passed - Parameter 1 is NULL; File:  UtilsRegistry; Line:  294");
    }
}

TEST_P(RegistryKeyTest, A_path_without_a_root_is_thrown_as_it_was_parsed) {
    Failing const failing("RegOpenKeyExA", 5); // isn't reached
    EXPECT_EQ(Thrown(5, [] { OpenRegistry const registry("HKXX\\a", 0, 0); }),
              Composed("299",
                       "The registry path is invalid.  No Root Key designation; value:  HKXX\\a\\",
                       5));
}

TEST_P(RegistryKeyTest, A_key_that_cant_be_opened_is_thrown_with_its_path_below_the_root) {
    Failing const failing("RegOpenKeyExA", 5);
    EXPECT_EQ(Thrown(2, [] { OpenRegistry const registry("HKCU\\a\\b", 0, 0); }),
              Composed("315", "Cannot Open Registry Entry:  ; value:  a\\b\\", 5));
    EXPECT_EQ(Thrown(2, [] { OpenRegistry const registry(HKEY_CURRENT_USER, "a\\b", 0, 0); }),
              Composed("257", "Cannot Open Registry Entry:  ", 5));
}

TEST_P(RegistryKeyTest, A_key_that_cant_be_made_is_thrown_likewise) {
    Failing const failing("RegCreateKeyExA", 5);
    for (int stepwise : {0, 1}) {
        EXPECT_EQ(Thrown(2, [=] { OpenRegistry const registry("HKCU\\a\\b", 1, stepwise); }),
                  Composed("307", "Cannot Create Registry Entry:  ; value:  a\\b\\", 5));
        EXPECT_EQ(
            Thrown(2, [=] { OpenRegistry const registry(HKEY_CURRENT_USER, "a\\b", 1, stepwise); }),
            Composed("249", "Cannot Create Registry Entry:  ", 5));
    }
}

TEST_P(RegistryKeyTest, A_root_alone_cant_be_made) {
    EXPECT_EQ(Thrown(5, [] { OpenRegistry const registry("HKCU", 1, 0); }),
              Composed("307", "Cannot Create Registry Entry:  ; value:  ", 5));
}

// The last step fails: those before it have opened keys.
TEST_P(RegistryKeyTest, A_constructor_that_throws_leaves_no_key_open) {
    HandleCount count;
    EXPECT_THROW(OpenRegistry(Full(std::string(300, 'n')).c_str(), 1, 1), UTILS::std_exception);
    EXPECT_EQ(count["RegCloseKey"], 1);
}

} // namespace

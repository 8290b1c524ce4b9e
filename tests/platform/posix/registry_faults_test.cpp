// The registry's calls without memory: they fail with 8, lose nothing and go on afterwards.
#include "../registry_keys.h"

#include "allocations.h"
#include "settings_keeper.h"

#include <cstdlib>
#include <cstring>

#include <sqlite3.h>

using Fail = AllocationWatch::Fail;

namespace {

// SQLite's memory by functions of this program, so that it is watched as well.
struct alignas(std::max_align_t) Head {
    int size;
};

void *Allocate(int size) {
    auto *const head =
        static_cast<Head *>(std::malloc(sizeof(Head) + static_cast<std::size_t>(size)));
    if (!head)
        return nullptr;
    head->size = size;
    return head + 1;
}

void Release(void *block) { std::free(block ? static_cast<Head *>(block) - 1 : nullptr); }
int SizeOf(void *block) { return block ? (static_cast<Head *>(block) - 1)->size : 0; }

void *Resize(void *block, int size) {
    void *const moved = Allocate(size);
    if (moved && block) {
        std::memcpy(moved, block, static_cast<std::size_t>(std::min(size, SizeOf(block))));
        Release(block);
    }
    return moved;
}

int RoundUp(int size) { return (size + 7) & ~7; }
int Begin(void *) { return SQLITE_OK; }
void End(void *) {}

void WatchSqlite() {
    static sqlite3_mem_methods const methods{Allocate, Release, Resize, SizeOf,
                                             RoundUp,  Begin,   End,    nullptr};
    static bool const watched = sqlite3_config(SQLITE_CONFIG_MALLOC, &methods) == SQLITE_OK;
    EXPECT_TRUE(watched);
}

class RegistryWithoutMemory : public ::testing::Test {
protected:
    RegistryWithoutMemory() {
        WatchSqlite();
        TellRegistryDirectory(m_folder.Directory());
    }
    ~RegistryWithoutMemory() override {
        TellRegistryDirectory(m_folder.Directory() + "/none");
        char name[2];
        DWORD size = sizeof name;
        win::RegEnumKeyExA(HKEY_USERS, 0, name, &size, nullptr, nullptr, nullptr, nullptr);
    }

    std::string Directory() const { return m_folder.Directory(); }

private:
    SettingsKeeper m_keeper;
    TempFolder m_folder;
};

// Does the work with each of its allocations failing in turn, of which there are at least so
// many; it succeeds at last. `undo` puts back what a success has changed.
template <class Work, class Undo>
void ExpectEachFailsWith8(std::uint64_t least, Work work, Undo undo) {
    for (std::uint64_t number = 1; number < 2000; ++number) {
        LSTATUS status = 0;
        bool failed = false;
        {
            AllocationWatch const watch(Fail::One, number);
            status = work();
            failed = watch.Failed();
        }
        // SQLite does without some of its memory.
        if (status == 0) {
            undo();
            if (!failed) {
                EXPECT_GE(number, least);
                return;
            }
        } else {
            ASSERT_TRUE(failed);
            ASSERT_EQ(8, status) << number;
        }
    }
    FAIL() << "no end of allocations";
}

void Nothing() {}

const char longName[] = "a name that doesn't fit into an object of the text's own class";

} // namespace

TEST_F(RegistryWithoutMemory, a_key_is_made_whole_or_not_at_all) {
    HKEY made = nullptr;
    ExpectEachFailsWith8(
        20,
        [&] {
            return win::RegCreateKeyExA(HKEY_CURRENT_USER, "one\\two\\three", 0, nullptr, 0,
                                        usualAccess, nullptr, &made, nullptr);
        },
        [&] {
            win::RegCloseKey(made);
            made = nullptr;
            EXPECT_EQ(0, win::RegDeleteKeyA(HKEY_CURRENT_USER, "one\\two\\three"));
            EXPECT_EQ(0, win::RegDeleteKeyA(HKEY_CURRENT_USER, "one\\two"));
            EXPECT_EQ(0, win::RegDeleteKeyA(HKEY_CURRENT_USER, "one"));
        });
    EXPECT_EQ(std::nullopt, SubkeyAt(HKEY_CURRENT_USER, 0));
}

TEST_F(RegistryWithoutMemory, values_are_written_and_read_whole_or_not_at_all) {
    ScopedKey key;
    ASSERT_EQ(0, MakeKey(HKEY_CURRENT_USER, "key", key));
    std::string const text(300, 't');
    ExpectEachFailsWith8(
        4,
        [&] {
            return win::RegSetValueExA(key, longName, 0, REG_SZ,
                                       reinterpret_cast<const BYTE *>(text.c_str()), 301);
        },
        [&] { EXPECT_EQ(0, win::RegDeleteValueA(key, longName)); });
    EXPECT_EQ(2, Query(key, longName).status);
    ASSERT_EQ(0, SetBytes(key, longName, REG_SZ, text + '\0'));
    ExpectEachFailsWith8(
        4,
        [&] {
            BYTE data[400];
            DWORD size = sizeof data;
            return win::RegQueryValueExA(key, longName, nullptr, nullptr, data, &size);
        },
        Nothing);
    ExpectEachFailsWith8(
        4,
        [&] {
            char name[100];
            DWORD size = sizeof name;
            return win::RegEnumValueA(key, 0, name, &size, nullptr, nullptr, nullptr, nullptr);
        },
        Nothing);
    EXPECT_EQ((Answer{0, REG_SZ, text + '\0'}), Query(key, longName));
}

TEST_F(RegistryWithoutMemory, keys_are_opened_enumerated_and_duplicated_or_arent) {
    ScopedKey key;
    ASSERT_EQ(0, MakeKey(HKEY_CURRENT_USER, longName, key));
    HKEY opened = nullptr;
    ExpectEachFailsWith8(
        4, [&] { return win::RegOpenKeyExA(HKEY_CURRENT_USER, longName, 0, usualAccess, &opened); },
        [&] { EXPECT_EQ(0, win::RegCloseKey(opened)); });
    ExpectEachFailsWith8(
        2,
        [&] {
            char name[100];
            DWORD size = sizeof name;
            return win::RegEnumKeyExA(HKEY_CURRENT_USER, 0, name, &size, nullptr, nullptr, nullptr,
                                      nullptr);
        },
        Nothing);
    HANDLE duplicate = nullptr;
    HANDLE const process = win::GetCurrentProcess();
    ExpectEachFailsWith8(
        2,
        [&]() -> LSTATUS {
            bool const made =
                win::DuplicateHandle(process, key, process, &duplicate, 0, TRUE, 2) != FALSE;
            return made ? 0 : static_cast<LSTATUS>(win::GetLastError());
        },
        [&] { EXPECT_TRUE(win::CloseHandle(duplicate)); });
}

TEST_F(RegistryWithoutMemory, keys_and_values_are_deleted_or_stay) {
    ScopedKey key;
    ASSERT_EQ(0, MakeKey(HKEY_CURRENT_USER, "key", key));
    auto const make = [&] {
        ASSERT_EQ(0, SetBytes(key, longName, REG_BINARY, "x"));
        ASSERT_EQ(0, MakeKey(key, longName));
    };
    make();
    ExpectEachFailsWith8(
        2, [&] { return win::RegDeleteValueA(key, longName); }, make);
    ExpectEachFailsWith8(
        2, [&] { return win::RegDeleteKeyA(key, longName); }, make);
    EXPECT_EQ((Answer{0, REG_BINARY, "x"}), Query(key, longName));
    EXPECT_EQ(longName, SubkeyAt(key, 0));
}

TEST_F(RegistryWithoutMemory, nothing_is_lost_by_many_failures) {
    ScopedKey key;
    ASSERT_EQ(0, MakeKey(HKEY_CURRENT_USER, "key", key));
    auto const work = [&] {
        HKEY opened = nullptr;
        if (win::RegOpenKeyExA(key, "", 0, usualAccess, &opened) == 0)
            win::RegCloseKey(opened);
        DWORD size = 0;
        win::RegQueryValueExA(key, longName, nullptr, nullptr, nullptr, &size);
    };
    work();
    std::size_t before = 0;
    for (std::uint64_t number = 1; number < 60; ++number) {
        AllocationWatch const watch(Fail::One, number);
        work();
        // SQLite may have kept a little for itself at first.
        if (number == 30)
            before = AllocationWatch::LiveBlocks();
    }
    EXPECT_EQ(before, AllocationWatch::LiveBlocks());
}

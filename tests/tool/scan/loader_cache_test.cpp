#include "readers/loader_cache.h"

#include <algorithm>

#include <gtest/gtest.h>

using namespace qvlink;

namespace {

struct CacheEntry {
    std::uint32_t kind; // 0x0303: for x86-64
    std::string name;
    std::string path;
    std::uint64_t capabilities = 0;
};

constexpr std::uint64_t byFolder(unsigned number) { return (std::uint64_t{1} << 62) | number; }

void Put(std::string &text, std::uint64_t value, unsigned size) {
    for (unsigned i = 0; i < size; ++i) {
        text += static_cast<char>(value >> (8 * i) & 0xff);
    }
}

// Header, entries, texts, and the extension that names the folders of capabilities.
std::string WriteCache(std::vector<CacheEntry> const &entries,
                       std::vector<std::string> const &folders = {}) {
    std::string texts;
    std::size_t const textsAt = 48 + 24 * entries.size();
    auto const place = [&](std::string const &text) {
        std::size_t const at = textsAt + texts.size();
        texts.append(text.c_str(), text.size() + 1);
        return at;
    };
    std::string table;
    for (CacheEntry const &entry : entries) {
        Put(table, entry.kind, 4);
        Put(table, place(entry.name), 4);
        Put(table, place(entry.path), 4);
        Put(table, 0, 4);
        Put(table, entry.capabilities, 8);
    }
    std::string folderTable;
    for (std::string const &folder : folders) {
        Put(folderTable, place(folder), 4);
    }
    while (texts.size() % 4 != 0) {
        texts += '\0';
    }
    std::size_t const extensionAt = textsAt + texts.size();
    std::string extension;
    Put(extension, 0xeaa42174, 4);
    Put(extension, 1, 4);
    Put(extension, 1, 4);
    Put(extension, 0, 4);
    Put(extension, extensionAt + 24, 4);
    Put(extension, folderTable.size(), 4);

    std::string file = "glibc-ld.so.cache1.1";
    Put(file, entries.size(), 4);
    Put(file, texts.size(), 4);
    Put(file, 2, 4); // least significant byte first
    Put(file, folders.empty() ? 0 : extensionAt, 4);
    file.resize(48);
    return file + table + texts + (folders.empty() ? "" : extension + folderTable);
}

LoaderCache Read(std::string const &bytes) {
    MemorySource source(bytes);
    return ReadLoaderCache(source);
}

std::vector<CacheEntry> const twoEntries = {{0x0303, "libb.so.1", "/lib/libb.so.1"},
                                            {0x0303, "liba.so.1", "/lib/liba.so.1"}};

} // namespace

TEST(LoaderCache, Libraries_are_found_by_name) {
    LoaderCache const cache = Read(WriteCache(twoEntries));
    ASSERT_EQ(cache.size(), 2u);
    ASSERT_EQ(cache.at("liba.so.1").size(), 1u);
    EXPECT_EQ(cache.at("liba.so.1")[0].path, "/lib/liba.so.1");
    EXPECT_EQ(cache.at("liba.so.1")[0].capability, "");
}

TEST(LoaderCache, Several_libraries_of_a_name_keep_their_order) {
    LoaderCache const cache = Read(
        WriteCache({{0x0303, "liba.so", "/lib64/liba.so"}, {0x0003, "liba.so", "/lib32/liba.so"}}));
    ASSERT_EQ(cache.at("liba.so").size(), 2u);
    EXPECT_EQ(cache.at("liba.so")[0].path, "/lib64/liba.so");
    EXPECT_EQ(cache.at("liba.so")[1].path, "/lib32/liba.so");
}

TEST(LoaderCache, Entries_for_capabilities_bear_their_folder) {
    LoaderCache const cache =
        Read(WriteCache({{0x0303, "liba.so", "/lib/glibc-hwcaps/x86-64-v3/liba.so", byFolder(1)},
                         {0x0303, "liba.so", "/lib/liba.so"}},
                        {"x86-64-v2", "x86-64-v3"}));
    ASSERT_EQ(cache.at("liba.so").size(), 2u);
    EXPECT_EQ(cache.at("liba.so")[0].capability, "x86-64-v3");
    EXPECT_EQ(cache.at("liba.so")[1].capability, "");
}

TEST(LoaderCache, Entries_for_older_or_unknown_capabilities_are_left_out) {
    LoaderCache const cache =
        Read(WriteCache({{0x0303, "liba.so", "/lib/old/liba.so", 0x8000},
                         {0x0303, "libb.so", "/lib/new/libb.so", byFolder(7)}},
                        {"x86-64-v2"}));
    EXPECT_TRUE(cache.empty());
}

TEST(LoaderCache, Entries_of_another_kind_of_library_are_left_out) {
    EXPECT_TRUE(Read(WriteCache({{0x0000, "liba.so", "/lib/liba.so"}})).empty());
    EXPECT_EQ(Read(WriteCache({{0x0001, "liba.so", "/lib/liba.so"}})).size(), 1u);
}

TEST(LoaderCache, A_part_in_the_old_format_is_passed_over) {
    std::string old = "ld.so-1.7.0";
    old += '\0';
    Put(old, 1, 4);
    old.resize(16 + 12, 'x');
    old.resize(32, '\0');
    EXPECT_EQ(Read(old + WriteCache(twoEntries)).size(), 2u);
}

TEST(LoaderCache, Other_files_give_nothing) {
    EXPECT_TRUE(Read("").empty());
    EXPECT_TRUE(Read("no cache").empty());
    EXPECT_TRUE(Read(std::string(100, '\xff')).empty());
}

TEST(LoaderCache, Every_truncation_and_every_flipped_byte_gives_only_what_is_there) {
    std::string const whole =
        WriteCache({{0x0303, "liba.so", "/lib/liba.so", byFolder(0)}, twoEntries[0], twoEntries[1]},
                   {"x86-64-v2"});
    for (std::size_t at = 0; at < whole.size(); ++at) {
        EXPECT_LE(Read(whole.substr(0, at)).size(), 3u);
        std::string bytes = whole;
        bytes[at] = static_cast<char>(~bytes[at]);
        LoaderCache const cache = Read(bytes);
        for (auto const &[name, libraries] : cache) {
            EXPECT_LE(name.size(), 4095u);
            EXPECT_FALSE(libraries.empty());
        }
    }
}

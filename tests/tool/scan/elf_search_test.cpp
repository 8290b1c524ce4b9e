// The loader's rules, put to a search with folders and a cache of the test's own.
#include "platform/elf_search.h"

#include "model.h"
#include "program_images.h"
#include "temp_folder.h"

#include <gtest/gtest.h>

#include <cstring>

using namespace qvlink;

namespace {

constexpr std::uint32_t wide = FLAG_ELF | FLAG_64BIT | 62u << FLAG_MACHINE_SHIFT;

class ElfSearchTest : public testing::Test {
protected:
    ElfSearchTest() {
        m_settings.capabilities = {"best", "good"};
        m_settings.platform = "platform";
        m_settings.machines[wide & ELF_MACHINE_MASK] = {"lib/wide", {At("default"), At("late")}};
        m_settings.cacheFile = At("cache");
    }

    std::string At(std::string const &name) const { return (m_folder.Path() / name).string(); }

    void Put(std::string const &name, programs::Elf const &elf = {}) {
        std::filesystem::create_directories((m_folder.Path() / name).parent_path());
        WriteBytes(m_folder.Path() / name, BytesOf(programs::Write(elf)));
    }

    // A cache with these names and files, for no particular capabilities.
    void PutCache(std::vector<std::pair<std::string, std::string>> const &libraries) {
        std::string file = "glibc-ld.so.cache1.1";
        std::string table;
        std::string texts;
        auto const put = [](std::string &text, std::size_t value) {
            auto const word = static_cast<std::uint32_t>(value);
            char bytes[4];
            std::memcpy(bytes, &word, sizeof bytes);
            text.append(bytes, sizeof bytes);
        };
        std::size_t const textsAt = 48 + 24 * libraries.size();
        for (auto const &[name, path] : libraries) {
            put(table, 0x0303);
            put(table, textsAt + texts.size());
            texts += name + '\0';
            put(table, textsAt + texts.size());
            texts += At(path) + '\0';
            table.resize(table.size() + 12);
        }
        put(file, libraries.size());
        file.resize(48);
        WriteBytes(m_folder.Path() / "cache", BytesOf(file + table + texts));
    }

    // The file found, below the test's folder, and by which rule.
    std::pair<std::string, std::uint32_t> Find(Needer const &needer, std::string const &name) {
        ElfSearch search(m_settings);
        auto const located = search.Find(needer, name);
        return located
                   ? std::pair(located->path.substr(m_folder.Directory().size() + 1), located->rule)
                   : std::pair(std::string(), 0u);
    }

    Needer From(std::string const &folder) const { return {wide, At(folder), "", ""}; }
    static std::pair<std::string, std::uint32_t> By(std::uint32_t rule, std::string const &path) {
        return {path, rule};
    }

    TempFolder m_folder;
    LoaderSettings m_settings;
};

} // namespace

TEST_F(ElfSearchTest, Run_path_comes_before_cache_and_cache_before_default_folders) {
    Needer needer = From("bin");
    needer.runpath = At("run");
    Put("default/liba.so");
    EXPECT_EQ(Find(needer, "liba.so"), By(LINK_FOUND_DEFAULT, "default/liba.so"));
    Put("cached/liba.so");
    PutCache({{"liba.so", "cached/liba.so"}});
    EXPECT_EQ(Find(needer, "liba.so"), By(LINK_FOUND_CACHE, "cached/liba.so"));
    Put("run/liba.so");
    EXPECT_EQ(Find(needer, "liba.so"), By(LINK_FOUND_RUNPATH, "run/liba.so"));
    needer.rpath = At("older");
    Put("older/liba.so");
    EXPECT_EQ(Find(needer, "liba.so"), By(LINK_FOUND_RPATH, "older/liba.so"));
}

TEST_F(ElfSearchTest, What_the_cache_names_counts_only_if_it_is_there) {
    PutCache({{"liba.so", "gone/liba.so"}, {"liba.so", "there/liba.so"}});
    Put("there/liba.so");
    EXPECT_EQ(Find(From("bin"), "liba.so"), By(LINK_FOUND_CACHE, "there/liba.so"));
}

TEST_F(ElfSearchTest, Tokens_of_a_run_path_are_put_in) {
    Needer needer = From("bin");
    Put("bin/own/liba.so");
    Put("pre/lib/wide/liba.so");
    Put("pre/platform/liba.so");
    needer.runpath = "${ORIGIN}/own";
    EXPECT_EQ(Find(needer, "liba.so").first, "bin/own/liba.so");
    needer.runpath = At("pre") + "/$LIB";
    EXPECT_EQ(Find(needer, "liba.so").first, "pre/lib/wide/liba.so");
    needer.runpath = At("pre") + "/$PLATFORM";
    EXPECT_EQ(Find(needer, "liba.so").first, "pre/platform/liba.so");
}

TEST_F(ElfSearchTest, Folders_that_depend_on_who_starts_it_are_passed_over) {
    Needer needer = From("bin");
    needer.runpath = ":relative:" + At("run");
    Put("run/liba.so");
    EXPECT_EQ(Find(needer, "liba.so").first, "run/liba.so");
}

TEST_F(ElfSearchTest, Folders_of_better_capabilities_come_first) {
    Put("default/liba.so");
    Put("default/glibc-hwcaps/other/liba.so");
    EXPECT_EQ(Find(From("bin"), "liba.so").first, "default/liba.so");
    Put("default/glibc-hwcaps/good/liba.so");
    EXPECT_EQ(Find(From("bin"), "liba.so").first, "default/glibc-hwcaps/good/liba.so");
    Put("default/glibc-hwcaps/best/liba.so");
    EXPECT_EQ(Find(From("bin"), "liba.so").first, "default/glibc-hwcaps/best/liba.so");
}

TEST_F(ElfSearchTest, A_file_can_ask_to_be_spared_the_default_folders) {
    Needer needer = From("bin");
    needer.flags |= FLAG_NODEFLIB;
    Put("default/liba.so");
    PutCache({{"liba.so", "default/liba.so"}});
    EXPECT_EQ(Find(needer, "liba.so").first, "");
    Put("cached/liba.so");
    PutCache({{"liba.so", "default/liba.so"}, {"liba.so", "cached/liba.so"}});
    EXPECT_EQ(Find(needer, "liba.so"), By(LINK_FOUND_CACHE, "cached/liba.so"));
}

TEST_F(ElfSearchTest, Files_for_other_machines_do_not_count) {
    programs::Elf other;
    other.machine = 183;
    programs::Elf swapped;
    swapped.bigEndian = true;
    programs::Elf narrow;
    narrow.wide = false;
    Put("default/liba.so", other);
    Put("default/libb.so", swapped);
    Put("default/libc.so", narrow);
    for (std::string const name : {"liba.so", "libb.so", "libc.so"}) {
        EXPECT_EQ(Find(From("bin"), name).first, "") << name;
        Put("late/" + name);
        EXPECT_EQ(Find(From("bin"), name).first, "late/" + name);
    }
}

TEST_F(ElfSearchTest, A_name_with_a_slash_is_a_path) {
    Put("odd/liba.so");
    Put("default/odd/liba.so");
    EXPECT_EQ(Find(From("bin"), At("odd/liba.so")), By(LINK_FOUND_DIRECT, "odd/liba.so"));
    EXPECT_EQ(Find(From("bin"), "odd/liba.so").first, "");
    EXPECT_EQ(Find(From("bin"), At("odd/none.so")).first, "");
}

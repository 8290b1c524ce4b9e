#include "model.h"
#include "program_images.h"
#include "readers/elf_reader.h"

#include <algorithm>

#include <gtest/gtest.h>

using namespace qvlink;
using Names = std::vector<std::string>;

namespace {

programs::Elf Full(bool wide, bool bigEndian) {
    programs::Elf elf;
    elf.wide = wide;
    elf.bigEndian = bigEndian;
    elf.interpreter = "/lib/ld.so";
    elf.needed = {"libfirst.so.1", "libsecond.so"};
    elf.runpath = "$ORIGIN/lib:/opt/lib";
    return elf;
}

bool IsStartOf(Names const &part, Names const &whole) {
    return part.size() <= whole.size() && std::equal(part.begin(), part.end(), whole.begin());
}

void ExpectSound(Program const &program) {
    EXPECT_EQ(program.malformed.empty(), !(program.flags & FLAG_MALFORMED));
    EXPECT_TRUE(program.delayed.empty());
    for (std::string const &name : program.needed) {
        EXPECT_FALSE(name.empty());
        EXPECT_LE(name.size(), LONGEST_NEEDED_NAME);
    }
}

} // namespace

TEST(ElfReader, Needs_interpreter_and_run_path_are_read_for_every_width_and_byte_order) {
    for (bool const wide : {false, true}) {
        for (bool const bigEndian : {false, true}) {
            Program const program = ReadElfImage(Write(Full(wide, bigEndian)));
            EXPECT_EQ(program.needed, (Names{"libfirst.so.1", "libsecond.so"}));
            EXPECT_EQ(program.interpreter, "/lib/ld.so");
            EXPECT_EQ(program.runpath, "$ORIGIN/lib:/opt/lib");
            EXPECT_EQ(program.rpath, "");
            EXPECT_EQ(program.malformed, "");
            EXPECT_EQ(program.flags, FLAG_ELF | (wide ? FLAG_64BIT : 0) |
                                         (bigEndian ? FLAG_BIG_ENDIAN : 0) |
                                         62u << FLAG_MACHINE_SHIFT);
        }
    }
}

TEST(ElfReader, The_older_run_path_counts_only_without_the_newer) {
    programs::Elf elf;
    elf.rpath = "/old";
    EXPECT_EQ(ReadElfImage(Write(elf)).rpath, "/old");
    elf.runpath = "/new";
    EXPECT_EQ(ReadElfImage(Write(elf)).rpath, "");
    EXPECT_EQ(ReadElfImage(Write(elf)).runpath, "/new");
}

TEST(ElfReader, Flags_tell_a_library_and_one_that_wants_no_default_folders) {
    programs::Elf elf;
    elf.noDefaultFolders = true;
    std::uint32_t const flags = ReadElfImage(Write(elf)).flags;
    EXPECT_TRUE(flags & FLAG_LIBRARY);
    EXPECT_TRUE(flags & FLAG_NODEFLIB);
}

TEST(ElfReader, Relocatable_files_need_nothing) {
    programs::Elf elf = Full(true, false);
    elf.type = 1; // ET_REL
    Program const program = ReadElfImage(Write(elf));
    EXPECT_TRUE(program.flags & FLAG_ELF);
    EXPECT_TRUE(program.needed.empty());
    EXPECT_EQ(program.malformed, "");
}

TEST(ElfReader, A_name_that_comes_twice_is_given_once) {
    programs::Elf elf;
    elf.needed = {"a.so", "b.so", "a.so"};
    EXPECT_EQ(ReadElfImage(Write(elf)).needed, (Names{"a.so", "b.so"}));
}

TEST(ElfReader, Names_of_any_length_up_to_the_limit_are_read_whole) {
    programs::Elf elf;
    for (std::size_t const length : {1u, 127u, 128u, 129u, 1023u, 1024u, 1025u, 4095u}) {
        elf.needed.push_back(std::string(length, 'n') + "");
    }
    EXPECT_EQ(ReadElfImage(Write(elf)).needed, elf.needed);
    elf.needed = {"good.so", std::string(4096, 'n')};
    Program const program = ReadElfImage(Write(elf));
    EXPECT_TRUE(program.flags & FLAG_MALFORMED);
    EXPECT_EQ(program.needed, Names{"good.so"});
}

TEST(ElfReader, Files_without_the_signature_are_no_programs) {
    for (std::string const bytes : {"", "\x7f", "MZ", "#!/bin/sh"}) {
        EXPECT_EQ(ReadElfImage(bytes).flags, 0u);
    }
}

TEST(ElfReader, Every_truncation_gives_a_start_of_the_names_and_says_so) {
    for (bool const wide : {false, true}) {
        std::string const whole = Write(Full(wide, false));
        Program const expected = ReadElfImage(whole);
        for (std::size_t size = 0; size < whole.size(); ++size) {
            SCOPED_TRACE(size);
            Program const program = ReadElfImage(std::string_view(whole).substr(0, size));
            ExpectSound(program);
            EXPECT_TRUE(IsStartOf(program.needed, expected.needed));
            EXPECT_EQ((program.flags & FLAG_MALFORMED) != 0, size >= 4);
        }
    }
}

TEST(ElfReader, Every_flipped_byte_gives_something_sound) {
    for (bool const wide : {false, true}) {
        for (bool const bigEndian : {false, true}) {
            std::string const whole = Write(Full(wide, bigEndian));
            for (std::size_t at = 0; at < whole.size(); ++at) {
                for (int const change : {0x01, 0x80, 0xff}) {
                    SCOPED_TRACE(at);
                    std::string bytes = whole;
                    bytes[at] = static_cast<char>(bytes[at] ^ change);
                    ExpectSound(ReadElfImage(bytes));
                }
            }
        }
    }
}

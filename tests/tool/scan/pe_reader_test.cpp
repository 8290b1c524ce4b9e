#include "model.h"
#include "program_images.h"
#include "readers/pe_reader.h"

#include <gtest/gtest.h>

using namespace qvlink;
using Names = std::vector<std::string>;

namespace {

Program Read(std::string const &bytes) {
    MemorySource source(bytes);
    return ReadPe(source);
}

programs::Pe WithBoth(bool wide) {
    programs::Pe pe;
    pe.wide = wide;
    pe.imports = {"KERNEL32.dll", "user32.dll"};
    pe.delayed = {"OLE32.DLL"};
    return pe;
}

void Put32(std::string &bytes, std::size_t at, std::uint32_t value) {
    for (unsigned i = 0; i < 4; ++i) {
        bytes[at + i] = static_cast<char>(value >> (8 * i) & 0xff);
    }
}

// Where the optional header and its table directory are.
constexpr std::size_t optionalAt = programs::peHeaderAt + 24;
constexpr std::size_t directoryAt64 = optionalAt + 112;

bool IsStartOf(Names const &part, Names const &whole) {
    return part.size() <= whole.size() && std::equal(part.begin(), part.end(), whole.begin());
}

// What holds whatever the bytes are.
void ExpectSound(Program const &program) {
    EXPECT_EQ(program.malformed.empty(), !(program.flags & FLAG_MALFORMED));
    for (auto const &names : {program.needed, program.delayed}) {
        for (std::string const &name : names) {
            EXPECT_FALSE(name.empty());
            EXPECT_LE(name.size(), LONGEST_NEEDED_NAME);
        }
    }
    if (!(program.flags & FLAG_PE)) {
        EXPECT_EQ(program.flags, 0u);
        EXPECT_TRUE(program.needed.empty() && program.delayed.empty());
    }
}

} // namespace

TEST(PeReader, Imports_and_delayed_imports_are_read_in_their_order_and_in_lower_case) {
    for (bool const wide : {false, true}) {
        Program const program = Read(Write(WithBoth(wide)));
        EXPECT_EQ(program.needed, (Names{"kernel32.dll", "user32.dll"}));
        EXPECT_EQ(program.delayed, Names{"ole32.dll"});
        EXPECT_EQ(program.malformed, "");
    }
}

TEST(PeReader, Flags_tell_width_machine_and_kind) {
    programs::Pe pe;
    pe.dll = true;
    EXPECT_EQ(Read(Write(pe)).flags,
              FLAG_PE | FLAG_64BIT | FLAG_LIBRARY | 0x8664u << FLAG_MACHINE_SHIFT);
    pe.wide = pe.dll = false;
    pe.machine = 0x14c;
    EXPECT_EQ(Read(Write(pe)).flags, FLAG_PE | 0x14cu << FLAG_MACHINE_SHIFT);
}

TEST(PeReader, Delayed_imports_in_the_older_form_are_read_by_their_addresses_in_memory) {
    programs::Pe pe = WithBoth(false);
    pe.delayedByAddress = true;
    EXPECT_EQ(Read(Write(pe)).delayed, Names{"ole32.dll"});
}

TEST(PeReader, A_name_that_comes_twice_is_given_once) {
    programs::Pe pe;
    pe.imports = {"a.dll", "b.dll", "A.DLL"};
    EXPECT_EQ(Read(Write(pe)).needed, (Names{"a.dll", "b.dll"}));
}

TEST(PeReader, A_program_without_tables_needs_nothing) {
    Program const program = Read(Write(programs::Pe{}));
    EXPECT_TRUE(program.needed.empty() && program.delayed.empty());
    EXPECT_EQ(program.malformed, "");
}

TEST(PeReader, Files_without_both_signatures_are_no_programs) {
    std::string const elf = "\x7f" + std::string("ELF");
    for (std::string const &bytes : {std::string(), std::string("M"), std::string("MZ"), elf}) {
        EXPECT_EQ(Read(bytes).flags, 0u) << bytes;
    }
    std::string dos(0x200, '\0');
    dos[0] = 'M', dos[1] = 'Z';
    EXPECT_EQ(Read(dos).flags, 0u);
    Put32(dos, 0x3c, 0xfffffff0);
    EXPECT_EQ(Read(dos).flags, 0u);
}

TEST(PeReader, A_short_table_directory_means_no_table) {
    std::string bytes = Write(WithBoth(true));
    Put32(bytes, optionalAt + 108, 13); // entries: up to, and without, the delayed imports
    Program const program = Read(bytes);
    EXPECT_EQ(program.needed.size(), 2u);
    EXPECT_TRUE(program.delayed.empty());
    EXPECT_EQ(program.malformed, "");
}

TEST(PeReader, A_table_outside_the_file_is_malformed) {
    std::string bytes = Write(WithBoth(true));
    Put32(bytes, directoryAt64 + 8, 0x9000);
    Program const program = Read(bytes);
    EXPECT_TRUE(program.flags & FLAG_MALFORMED);
    EXPECT_TRUE(program.needed.empty());
}

TEST(PeReader, A_name_outside_the_file_is_malformed_and_earlier_names_are_kept) {
    std::string bytes = Write(WithBoth(true));
    Put32(bytes, programs::peSectionAt + 20 + 12, 0xfffffff0);
    Program const program = Read(bytes);
    EXPECT_TRUE(program.flags & FLAG_MALFORMED);
    EXPECT_EQ(program.needed, Names{"kernel32.dll"});
}

TEST(PeReader, An_import_without_an_address_table_ends_the_table) {
    std::string bytes = Write(WithBoth(true));
    Put32(bytes, programs::peSectionAt + 20 + 16, 0);
    EXPECT_EQ(Read(bytes).needed, Names{"kernel32.dll"});
}

TEST(PeReader, A_table_that_does_not_end_is_malformed) {
    programs::Pe pe;
    pe.imports.assign(5000, "a.dll");
    Program const program = Read(Write(pe));
    EXPECT_TRUE(program.flags & FLAG_MALFORMED);
    EXPECT_EQ(program.needed, Names{"a.dll"});
}

TEST(PeReader, Every_truncation_gives_a_start_of_the_names_and_says_so) {
    for (bool const wide : {false, true}) {
        std::string const whole = Write(WithBoth(wide));
        Program const expected = Read(whole);
        for (std::size_t size = 0; size < whole.size(); ++size) {
            SCOPED_TRACE(size);
            Program const program = Read(whole.substr(0, size));
            ExpectSound(program);
            EXPECT_TRUE(IsStartOf(program.needed, expected.needed));
            EXPECT_TRUE(IsStartOf(program.delayed, expected.delayed));
            EXPECT_EQ((program.flags & FLAG_MALFORMED) != 0, size >= programs::peHeaderAt + 4);
        }
    }
}

TEST(PeReader, Every_flipped_byte_gives_something_sound) {
    programs::Pe byAddress = WithBoth(false);
    byAddress.delayedByAddress = true;
    for (programs::Pe const &pe : {WithBoth(false), WithBoth(true), byAddress}) {
        std::string const whole = Write(pe);
        for (std::size_t at = 0; at < whole.size(); ++at) {
            for (int const change : {0x01, 0x80, 0xff}) {
                SCOPED_TRACE(at);
                std::string bytes = whole;
                bytes[at] = static_cast<char>(bytes[at] ^ change);
                ExpectSound(Read(bytes));
            }
        }
    }
}

// String resources in a shared object or program: notes, which the loader keeps in memory
// and which can be found there without a name. The build's qvlinkdb_string_table writes
// one from a file of strings.
//
// A note's contents are texts "id=string" one behind the other, each with a terminator. A
// string is in the code page that the settings have where it is loaded.
#pragma once

#include "platform/posix/notes.h"

namespace ZK {

constexpr char stringNoteName[] = "QVLinkDB";

// As ELF lays a note out.
template <std::size_t size> struct alignas(4) StringTable {
    std::uint32_t nameSize;
    std::uint32_t textSize;
    std::uint32_t type;
    char name[(sizeof stringNoteName + 3) / 4 * 4];
    char text[(size + 3) / 4 * 4];
};

} // namespace ZK

// Defines a table with these strings.
#define ZK_STRING_TABLE(strings)                                                                   \
    __attribute__((section(".note.qvlinkdb.strings"), aligned(4),                                  \
                   used)) static const ZK::StringTable<sizeof(strings)>                            \
        zkStringTable = {sizeof ZK::stringNoteName, sizeof(strings), platform::stringTableNote,    \
                         "QVLinkDB", strings}

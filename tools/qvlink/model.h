// What qvlink puts into the graph, and what it means.
//
//   root --LINK_PARENT--> OBJ_DRIVE "Z:" --LINK_PARENT--> OBJ_FILE (folders, files, links)
//        --LINK_PARENT--> OBJ_HIVE "HKLM" --LINK_PARENT--> OBJ_KEY --LINK_PARENT--> OBJ_VALUE
//
// Objects and links are all persistent. Every object but the root has at least one
// link, so that no reader drops it. OBJ_FILE objects carry a FileData block; their
// flags word tells what kind of program a file is (FLAG_* below).
//
// An ELF file has, for each library it needs, a LINK_NEEDS to the file that the
// loader's search found when it was scanned (the name as found, which may be a symbolic
// link), and beside it one LINK_FOUND_* to the same file that tells by which rule. A
// name that the search didn't find has a LINK_MISSING to an OBJ_VFILE of that name.
//
// A PE file has a LINK_NEEDS or LINK_DELAYED to an OBJ_VFILE for each name it imports
// from; which file that is depends on who asks, so CQVUObject::Resolve is for asking.
//
// Keys have no data. A value's block begins with a ValueHead, and what the registry stores for
// it follows, cut to LONGEST_VALUE_DATA bytes. A key's own value, which has no name in the
// registry, has the name OWN_VALUE here. A value has a LINK_REFERS to each file of the graph
// that its text names.
#pragma once

#include <cstdint>

#include "linkdb.h"

namespace qvlink {

// Link types: single bits, LINK_PARENT of the library being the first.
constexpr std::uint32_t LINK_NEEDS = 2;        // program -> library, or name of one (PE)
constexpr std::uint32_t LINK_DELAYED = 4;      // PE -> name of a library loaded at first use
constexpr std::uint32_t LINK_SYMLINK = 8;      // symbolic link -> what it names, one step
constexpr std::uint32_t LINK_INTERPRETER = 16; // ELF -> its program interpreter
constexpr std::uint32_t LINK_MISSING = 32;     // ELF -> name that the search didn't find
constexpr std::uint32_t LINK_RPATH = 64;       // ELF -> its OBJ_RUNPATH, in DT_RPATH
constexpr std::uint32_t LINK_RUNPATH = 128;    // ELF -> its OBJ_RUNPATH, in DT_RUNPATH
// Beside a LINK_NEEDS of an ELF file, to the same target: how it was found.
constexpr std::uint32_t LINK_FOUND_RPATH = 256;    // in a folder of its DT_RPATH
constexpr std::uint32_t LINK_FOUND_RUNPATH = 512;  // in a folder of its DT_RUNPATH
constexpr std::uint32_t LINK_FOUND_CACHE = 1024;   // in the loader's cache, /etc/ld.so.cache
constexpr std::uint32_t LINK_FOUND_DEFAULT = 2048; // in a default folder of the loader
constexpr std::uint32_t LINK_FOUND_DIRECT = 4096;  // needed by a path, not by a bare name
constexpr std::uint32_t LINK_FOUND_MASK = 0x1f00;
constexpr std::uint32_t LINK_REFERS = 8192; // registry value -> a file that its text names

// What it takes to run or load a file: the links that a dependency walk follows. A
// LINK_SYMLINK belongs to it, because libraries are mostly found under such names.
constexpr std::uint32_t LINK_DEPENDENCY_MASK =
    LINK_NEEDS | LINK_DELAYED | LINK_SYMLINK | LINK_INTERPRETER;

struct TypeName {
    std::uint32_t bit;
    const char *name;
    const char *meaning;
};

constexpr TypeName LINK_TYPE_NAMES[] = {
    {LINK_PARENT, "parent", "a folder holds this"},
    {LINK_NEEDS, "needs", "a program or library needs that library"},
    {LINK_DELAYED, "delayed", "needed, but loaded at first use only"},
    {LINK_SYMLINK, "symlink", "a symbolic link to that"},
    {LINK_INTERPRETER, "interpreter", "the loader that a program asks for"},
    {LINK_MISSING, "missing", "a library that the loader's search did not find"},
    {LINK_RPATH, "rpath", "the run path of a file, in DT_RPATH"},
    {LINK_RUNPATH, "runpath", "the run path of a file, in DT_RUNPATH"},
    {LINK_FOUND_RPATH, "found-rpath", "found in a folder of the file's DT_RPATH"},
    {LINK_FOUND_RUNPATH, "found-runpath", "found in a folder of the file's DT_RUNPATH"},
    {LINK_FOUND_CACHE, "found-cache", "found in the loader's cache"},
    {LINK_FOUND_DEFAULT, "found-default", "found in a default folder of the loader"},
    {LINK_FOUND_DIRECT, "found-direct", "needed by a path"},
    {LINK_REFERS, "refers", "a registry value names that file"},
};

// The one object type beyond the library's own: the text of an ELF run path, folders
// joined by colons, unexpanded; one object for each text. The name is the text, cut to
// 250 bytes; a longer text stands whole in the data block, and only then is there one.
constexpr std::uint32_t OBJ_RUNPATH = 0x10000;

constexpr TypeName OBJECT_TYPE_NAMES[] = {
    {OBJ_DRIVE, "drive", "the root of a file tree"},
    {OBJ_PINNED, "pinned", "a file that is always persistent"},
    {OBJ_FILE, "file", "a file, folder or symbolic link"},
    {OBJ_HIVE, "hive", "the root of a registry tree"},
    {OBJ_KEY, "key", "a registry key"},
    {OBJ_VALUE, "value", "a registry value"},
    {OBJ_VFILE, "name", "a library known by its bare name"},
    {OBJ_RUNPATH, "runpath", "the run path of ELF files"},
};

// FileData of an OBJ_FILE, as lstat or FindFirstFile tell it: size in bytes (of a symbolic
// link: the length of its text; of a folder: 0), last write in 100 ns since 1601 (UTC), and
// these attributes. Where the system has no such attributes: a file without any write
// permission is read-only, and a file that is nothing else is normal.
constexpr std::uint32_t ATTRIBUTE_READONLY = 0x1;
constexpr std::uint32_t ATTRIBUTE_DIRECTORY = 0x10;
constexpr std::uint32_t ATTRIBUTE_DEVICE = 0x40; // device, socket or pipe: never opened
constexpr std::uint32_t ATTRIBUTE_NORMAL = 0x80;
constexpr std::uint32_t ATTRIBUTE_REPARSE_POINT = 0x400; // symbolic link (or junction)

// Flags word of an OBJ_FILE: what reading the file gave. 0 for a file that is no program.
constexpr std::uint32_t FLAG_ELF = 0x1;
constexpr std::uint32_t FLAG_PE = 0x2;
constexpr std::uint32_t FLAG_MALFORMED = 0x4;   // a program, but its tables make no sense
constexpr std::uint32_t FLAG_UNREADABLE = 0x8;  // couldn't be read; the next scan tries again
constexpr std::uint32_t FLAG_64BIT = 0x10;      // ELFCLASS64, PE32+
constexpr std::uint32_t FLAG_BIG_ENDIAN = 0x20; // ELFDATA2MSB
constexpr std::uint32_t FLAG_LIBRARY = 0x40;    // PE: a DLL. ELF: shared, without interpreter
constexpr std::uint32_t FLAG_NODEFLIB = 0x80;   // ELF: no default folders (DF_1_NODEFLIB)
constexpr unsigned FLAG_MACHINE_SHIFT = 8;      // e_machine, or the machine of a COFF header
constexpr std::uint32_t FLAG_MACHINE_MASK = 0xffff00;
constexpr std::uint32_t FLAG_PROGRAM_MASK = FLAG_ELF | FLAG_PE;

// The data block of an OBJ_VALUE, in front of the data as the registry stores them.
struct ValueHead {
    std::uint32_t type; // as the registry numbers it: 1 a text, 4 a number ...
    std::uint32_t size; // of all the data in bytes
};
constexpr std::size_t LONGEST_VALUE_DATA = 1024;
constexpr const char *OWN_VALUE = "@"; // as registration files call it

enum class FileKind { none, folder, file, symlink, special };

inline FileKind KindOf(FileData const &data) {
    if (data.dwAttributes & ATTRIBUTE_REPARSE_POINT)
        return FileKind::symlink;
    if (data.dwAttributes & ATTRIBUTE_DIRECTORY)
        return FileKind::folder;
    return data.dwAttributes & ATTRIBUTE_DEVICE ? FileKind::special : FileKind::file;
}

// What an object stands for, by its FileData; FileKind::none unless it is an OBJ_FILE or
// OBJ_PINNED that has such a block. A reparse point that is a folder as well is a symlink.
inline FileKind KindOf(CQVUObject *object) {
    FileData data;
    if (!object || !(object->GetType() & (OBJ_FILE | OBJ_PINNED)) || !object->GetFileData(&data))
        return FileKind::none;
    return KindOf(data);
}

} // namespace qvlink

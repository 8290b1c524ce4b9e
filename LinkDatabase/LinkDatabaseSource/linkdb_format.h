// The format of linkdb.dat: fields, sizes and limits. docs/file-format.md tells the same
// in prose. All numbers are little-endian, without alignment.
#pragma once

#include "linkdb.h"

#include <cstddef>

constexpr char DatabaseFileBaseName[] = "linkdb.dat";

// Which process wrote the file: transient records live as long as it does.
struct ProcessStamp {
    std::uint32_t creationTimeLow;
    std::uint32_t creationTimeHigh;
    std::uint32_t processID;

    bool operator==(ProcessStamp const &other) const {
        return creationTimeLow == other.creationTimeLow &&
               creationTimeHigh == other.creationTimeHigh && processID == other.processID;
    }
};

// What follows the file's first word, its length.
struct FileHeader {
    ProcessStamp stamp;
    std::uint32_t magic; // LINKDB_MAGIC
    std::uint32_t objectCount;
    std::uint32_t linkCount;
};

// What an object record starts with: the first six fields of DBObject and the length of
// the name. The name, the outgoing and incoming entries and the data follow.
constexpr std::size_t ObjectFieldsSize = 24;
constexpr std::size_t NameLengthSize = 2;
constexpr std::size_t SmallestObjectRecord = ObjectFieldsSize + NameLengthSize;

// A link record is a DBLink as it stands.
constexpr std::size_t LinkRecordSize = sizeof(DBLink);

constexpr std::uint32_t LoadedFlagsMask = 0x3fffffff; // the bits of dwFlags that a load keeps
constexpr std::uint32_t BlockSize = 10; // entries by which a list of two or more grows

static_assert(sizeof(FileHeader) == 24);
static_assert(offsetof(DBObject, pszName) == ObjectFieldsSize);

bool GetProcessStamp(ProcessStamp &stamp); // of this process; false if the system won't tell

// The bytes of linkdb.dat, taken apart and put together without help of the library.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "temp_folder.h"

namespace image {

// Offsets of the fixed words.
constexpr std::size_t lengthAt = 0, createdAt = 4, processAt = 12, magicAt = 16, objectCountAt = 20,
                      linkCountAt = 24, recordsAt = 28;

struct Object {
    std::uint32_t id = 0, flags = 0, type = 0;
    std::string name;
    std::vector<std::uint32_t> from, to; // entries as they stand in the file
    Bytes data;
    std::uint32_t fromBits = 0, toBits = 0; // bits 30 and 31 of the count words
};

struct Link {
    std::uint32_t id = 0, source = 0, target = 0, type = 0;
};

// Who wrote a file.
struct Stamp {
    std::uint64_t created = 0;
    std::uint32_t process = 0;
};

struct File {
    Stamp stamp;
    std::vector<Object> objects;
    std::vector<Link> links;
};

Bytes Write(File const &file);
// Nothing if the bytes aren't exactly one well-formed file.
std::optional<File> Read(Bytes const &bytes);

std::uint32_t WordAt(Bytes const &bytes, std::size_t offset);
void SetWord(Bytes &bytes, std::size_t offset, std::uint32_t value);
void AddWord(Bytes &bytes, std::uint32_t value);
void FixLength(Bytes &bytes); // makes the length word true

Stamp StampOf(Bytes const &bytes);
void SetStamp(Bytes &bytes, Stamp stamp);
Stamp Foreign(Stamp stamp); // that of some other process

} // namespace image

// The records of linkdb.dat as they stand in the file.
#pragma once

#include "answer/file_check.h"

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace qvlink {

// A list of link entries in the file, read where it lies.
class EntryList {
public:
    EntryList() = default;
    explicit EntryList(std::string_view bytes) : m_bytes(bytes) {}
    std::size_t Size() const { return m_bytes.size() / 4; }
    std::uint32_t operator[](std::size_t index) const;

private:
    std::string_view m_bytes;
};

struct FileObject {
    std::uint32_t id;
    std::uint32_t flags;
    std::uint32_t type; // with PERSISTENT_BIT
    std::string_view name;
    EntryList from;
    EntryList to;
    std::string_view data;
};

struct FileLink {
    std::uint32_t id;
    std::uint32_t source;
    std::uint32_t target;
    std::uint32_t type; // with PERSISTENT_BIT
};

struct FileImage {
    std::vector<FileObject> objects; // in order of id, each id once
    std::vector<FileLink> links;     // likewise

    FileObject const *Object(std::uint32_t id) const; // null if there is none
    FileLink const *Link(std::uint32_t id) const;
};

// Reads the records behind a good head; what stands in the way is added to `check`.
// Nothing if the records can't be told apart.
std::optional<FileImage> ReadImage(std::string_view bytes, FileCheck &check);

std::uint32_t Word(std::string_view bytes, std::size_t offset); // little-endian

} // namespace qvlink

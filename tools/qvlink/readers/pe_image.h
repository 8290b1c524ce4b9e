// A PE file as an image: its header, its sections, and where in the file an address lies.
#pragma once

#include "readers/byte_source.h"

#include <vector>

namespace qvlink {

struct Malformed {
    const char *what;
};

class PeImage {
public:
    explicit PeImage(ByteSource &source) : m_source(source) {}

    // False if the file has no such header.
    bool FindHeader();
    // Reads header and sections. Throws Malformed; what was read until then stays.
    void Read();

    // A table of the optional header's directory, by its address relative to the image's
    // base; 0 if there is none. Throws Malformed.
    std::uint32_t DirectoryAddress(std::uint32_t index);
    // Throws Malformed with `what` for an address that doesn't come from the file.
    std::uint64_t FileOffset(std::uint64_t address, const char *what) const;

    // An unsigned integer of the file. Throws Malformed with `what` if it isn't there.
    template <class Integer> Integer Need(std::uint64_t offset, const char *what) {
        auto const value = m_source.Get<Integer>(offset);
        if (!value) {
            throw Malformed{what};
        }
        return *value;
    }

    std::uint16_t Machine() const { return m_machine; }
    std::uint16_t Characteristics() const { return m_characteristics; }
    std::uint64_t ImageBase() const { return m_imageBase; }
    bool IsWide() const { return m_wide; } // PE32+

private:
    struct Section {
        std::uint32_t address; // where it is in memory, relative to the image's base
        std::uint32_t size;    // bytes of it that come from the file
        std::uint32_t offset;  // where they are in the file
    };

    void ReadHeader();
    void ReadSections();

    ByteSource &m_source;
    std::vector<Section> m_sections;
    std::uint64_t m_header = 0;
    std::uint64_t m_optional = 0;
    std::uint64_t m_sectionTable = 0;
    std::uint64_t m_imageBase = 0;
    std::uint32_t m_alignment = 0;
    std::uint32_t m_headerSize = 0;
    std::uint32_t m_sectionCount = 0;
    std::uint16_t m_machine = 0;
    std::uint16_t m_characteristics = 0;
    bool m_wide = false;
};

} // namespace qvlink

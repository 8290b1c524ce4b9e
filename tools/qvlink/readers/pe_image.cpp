#include "readers/pe_image.h"

namespace qvlink {
namespace {

constexpr std::uint16_t DOS_SIGNATURE = 0x5a4d;    // "MZ"
constexpr std::uint32_t PE_SIGNATURE = 0x00004550; // "PE", 0, 0
constexpr std::uint16_t OPTIONAL_MAGIC_32 = 0x10b;
constexpr std::uint16_t OPTIONAL_MAGIC_64 = 0x20b;
constexpr std::uint32_t PAGE = 0x1000;
constexpr std::uint32_t SECTOR = 0x200;

} // namespace

bool PeImage::FindHeader() {
    auto const dos = m_source.Get<std::uint16_t>(0);
    auto const offset = m_source.Get<std::uint32_t>(0x3c);
    if (!dos || *dos != DOS_SIGNATURE || !offset) {
        return false;
    }
    m_header = *offset;
    return m_source.Get<std::uint32_t>(m_header) == PE_SIGNATURE;
}

void PeImage::Read() {
    ReadHeader();
    ReadSections();
}

void PeImage::ReadHeader() {
    constexpr const char *what = "the header is cut off";
    auto const machine = Need<std::uint16_t>(m_header + 4, what);
    m_sectionCount = Need<std::uint16_t>(m_header + 6, what);
    auto const optionalSize = Need<std::uint16_t>(m_header + 20, what);
    m_characteristics = Need<std::uint16_t>(m_header + 22, what);
    m_machine = machine;
    m_optional = m_header + 24;
    m_sectionTable = m_optional + optionalSize;
    auto const magic = Need<std::uint16_t>(m_optional, what);
    if (magic != OPTIONAL_MAGIC_32 && magic != OPTIONAL_MAGIC_64) {
        throw Malformed{"the header is of an unknown kind"};
    }
    m_wide = magic == OPTIONAL_MAGIC_64;
    m_imageBase = m_wide ? Need<std::uint64_t>(m_optional + 24, what)
                         : Need<std::uint32_t>(m_optional + 28, what);
    m_alignment = Need<std::uint32_t>(m_optional + 32, what);
    m_headerSize = Need<std::uint32_t>(m_optional + 60, what);
}

void PeImage::ReadSections() {
    for (std::uint32_t i = 0; i < m_sectionCount; ++i) {
        constexpr const char *what = "the section table is cut off";
        std::uint64_t const at = m_sectionTable + std::uint64_t{40} * i;
        auto const virtualSize = Need<std::uint32_t>(at + 8, what);
        auto const address = Need<std::uint32_t>(at + 12, what);
        auto const rawSize = Need<std::uint32_t>(at + 16, what);
        auto offset = Need<std::uint32_t>(at + 20, what);
        if (m_alignment >= PAGE) {
            offset -= offset % SECTOR; // as the system's loader takes it
        }
        std::uint64_t const pages = (std::uint64_t{virtualSize} + PAGE - 1) / PAGE * PAGE;
        bool const whole = virtualSize == 0 || pages > rawSize;
        m_sections.push_back(
            {address, whole ? rawSize : static_cast<std::uint32_t>(pages), offset});
    }
}

std::uint64_t PeImage::FileOffset(std::uint64_t address, const char *what) const {
    for (Section const &section : m_sections) {
        if (address >= section.address && address - section.address < section.size) {
            return section.offset + (address - section.address);
        }
    }
    if (address >= m_headerSize) {
        throw Malformed{what};
    }
    return address;
}

std::uint32_t PeImage::DirectoryAddress(std::uint32_t index) {
    std::uint64_t const count = m_optional + (m_wide ? 108 : 92);
    std::uint64_t const entry = count + 4 + std::uint64_t{8} * index;
    constexpr const char *what = "the table directory is cut off";
    if (entry + 8 > m_sectionTable || index >= Need<std::uint32_t>(count, what)) {
        return 0;
    }
    return Need<std::uint32_t>(entry, what);
}

} // namespace qvlink

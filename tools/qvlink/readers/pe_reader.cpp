#include "readers/pe_reader.h"

#include "model.h"

#include <unordered_set>

namespace qvlink {
namespace {

constexpr std::uint16_t DOS_SIGNATURE = 0x5a4d;    // "MZ"
constexpr std::uint32_t PE_SIGNATURE = 0x00004550; // "PE", 0, 0
constexpr std::uint16_t OPTIONAL_MAGIC_32 = 0x10b;
constexpr std::uint16_t OPTIONAL_MAGIC_64 = 0x20b;
constexpr std::uint16_t CHARACTERISTIC_DLL = 0x2000;
constexpr std::uint32_t PAGE = 0x1000;
constexpr std::uint32_t SECTOR = 0x200;

constexpr std::uint32_t IMPORT_DIRECTORY = 1;
constexpr std::uint32_t DELAY_DIRECTORY = 13;
constexpr std::uint32_t MOST_DESCRIPTORS = 4096;
constexpr std::uint32_t DELAY_BY_RVA = 1; // in the first word of a delay descriptor

struct Malformed {
    const char *what;
};

struct Section {
    std::uint32_t address; // where it is in memory, relative to the image's base
    std::uint32_t size;    // bytes of it that come from the file
    std::uint32_t offset;  // where they are in the file
};

// How the descriptors of one of the two tables look.
struct Table {
    std::uint32_t directory;
    std::uint32_t descriptorSize;
    std::uint32_t nameOffset; // of the name's address in a descriptor
    bool delayed;
};
constexpr Table IMPORTS = {IMPORT_DIRECTORY, 20, 12, false};
constexpr Table DELAY_IMPORTS = {DELAY_DIRECTORY, 32, 4, true};

class PeReader {
public:
    explicit PeReader(ByteSource &source) : m_source(source) {}

    Program Read() {
        if (!FindHeader()) {
            return m_program;
        }
        m_program.flags = FLAG_PE;
        try {
            ReadHeader();
            ReadSections();
            ReadTable(IMPORTS, m_program.needed);
            ReadTable(DELAY_IMPORTS, m_program.delayed);
        } catch (Malformed const &fault) {
            m_program.flags |= FLAG_MALFORMED;
            m_program.malformed = fault.what;
        }
        return m_program;
    }

private:
    template <class Integer> Integer Need(std::uint64_t offset, const char *what) {
        auto const value = m_source.Get<Integer>(offset);
        if (!value) {
            throw Malformed{what};
        }
        return *value;
    }

    bool FindHeader() {
        auto const dos = m_source.Get<std::uint16_t>(0);
        auto const offset = m_source.Get<std::uint32_t>(0x3c);
        if (!dos || *dos != DOS_SIGNATURE || !offset) {
            return false;
        }
        m_header = *offset;
        return m_source.Get<std::uint32_t>(m_header) == PE_SIGNATURE;
    }

    void ReadHeader() {
        constexpr const char *what = "the header is cut off";
        auto const machine = Need<std::uint16_t>(m_header + 4, what);
        m_sectionCount = Need<std::uint16_t>(m_header + 6, what);
        auto const optionalSize = Need<std::uint16_t>(m_header + 20, what);
        auto const characteristics = Need<std::uint16_t>(m_header + 22, what);
        m_program.flags |= std::uint32_t{machine} << FLAG_MACHINE_SHIFT;
        m_program.flags |= characteristics & CHARACTERISTIC_DLL ? FLAG_LIBRARY : 0;
        m_optional = m_header + 24;
        m_sectionTable = m_optional + optionalSize;
        auto const magic = Need<std::uint16_t>(m_optional, what);
        if (magic != OPTIONAL_MAGIC_32 && magic != OPTIONAL_MAGIC_64) {
            throw Malformed{"the header is of an unknown kind"};
        }
        m_wide = magic == OPTIONAL_MAGIC_64;
        m_program.flags |= m_wide ? FLAG_64BIT : 0;
        m_imageBase = m_wide ? Need<std::uint64_t>(m_optional + 24, what)
                             : Need<std::uint32_t>(m_optional + 28, what);
        m_alignment = Need<std::uint32_t>(m_optional + 32, what);
        m_headerSize = Need<std::uint32_t>(m_optional + 60, what);
    }

    void ReadSections() {
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

    std::uint64_t FileOffset(std::uint64_t address, const char *what) const {
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

    // The address of a table of the optional header's directory; 0 if it has none.
    std::uint32_t DirectoryAddress(std::uint32_t index) {
        std::uint64_t const count = m_optional + (m_wide ? 108 : 92);
        std::uint64_t const entry = count + 4 + std::uint64_t{8} * index;
        constexpr const char *what = "the table directory is cut off";
        if (entry + 8 > m_sectionTable || index >= Need<std::uint32_t>(count, what)) {
            return 0;
        }
        return Need<std::uint32_t>(entry, what);
    }

    void ReadTable(Table const &table, std::vector<std::string> &names) {
        std::uint32_t const address = DirectoryAddress(table.directory);
        if (address == 0) {
            return;
        }
        std::unordered_set<std::string> known;
        for (std::uint32_t i = 0; i < MOST_DESCRIPTORS; ++i) {
            std::uint64_t const descriptor =
                FileOffset(address + std::uint64_t{table.descriptorSize} * i,
                           "an import table is outside the file");
            auto const nameAddress = NameAddress(table, descriptor);
            if (nameAddress == 0 || IsLast(table, descriptor)) {
                return;
            }
            std::string name = Name(nameAddress);
            if (known.insert(name).second) {
                names.push_back(std::move(name));
            }
        }
        throw Malformed{"an import table has no end"};
    }

    // The system's loader takes an import without an address table for the end.
    bool IsLast(Table const &table, std::uint64_t descriptor) {
        return !table.delayed &&
               Need<std::uint32_t>(descriptor + 16, "an import table is cut off") == 0;
    }

    std::uint64_t NameAddress(Table const &table, std::uint64_t descriptor) {
        constexpr const char *what = "an import table is cut off";
        std::uint64_t const address = Need<std::uint32_t>(descriptor + table.nameOffset, what);
        bool const absolute = table.delayed && address != 0 &&
                              !(Need<std::uint32_t>(descriptor, what) & DELAY_BY_RVA);
        // Tables of the older form hold addresses in memory. They are 32 bits wide in a
        // 64-bit image too, and the difference wraps as it does for its own code.
        return absolute ? static_cast<std::uint32_t>(address - m_imageBase) : address;
    }

    std::string Name(std::uint64_t address) {
        auto name = m_source.Text(FileOffset(address, "an imported name is outside the file"),
                                  LONGEST_NEEDED_NAME);
        if (!name || name->empty()) {
            throw Malformed{"an imported name is empty, too long or cut off"};
        }
        for (char &c : *name) {
            c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
        }
        return *name;
    }

    ByteSource &m_source;
    Program m_program;
    std::vector<Section> m_sections;
    std::uint64_t m_header = 0;
    std::uint64_t m_optional = 0;
    std::uint64_t m_sectionTable = 0;
    std::uint64_t m_imageBase = 0;
    std::uint32_t m_alignment = 0;
    std::uint32_t m_headerSize = 0;
    std::uint32_t m_sectionCount = 0;
    bool m_wide = false;
};

} // namespace

Program ReadPe(ByteSource &source) { return PeReader(source).Read(); }

} // namespace qvlink

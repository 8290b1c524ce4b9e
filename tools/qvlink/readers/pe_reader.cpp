#include "readers/pe_reader.h"

#include "model.h"
#include "readers/pe_image.h"

#include <unordered_set>

namespace qvlink {
namespace {

constexpr std::uint16_t CHARACTERISTIC_DLL = 0x2000;
constexpr std::uint32_t IMPORT_DIRECTORY = 1;
constexpr std::uint32_t DELAY_DIRECTORY = 13;
constexpr std::uint32_t MOST_DESCRIPTORS = 4096;
constexpr std::uint32_t DELAY_BY_RVA = 1; // in the first word of a delay descriptor

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
    explicit PeReader(ByteSource &source) : m_source(source), m_image(source) {}

    Program Read() {
        if (!m_image.FindHeader()) {
            return m_program;
        }
        try {
            m_image.Read();
            ReadTable(IMPORTS, m_program.needed);
            ReadTable(DELAY_IMPORTS, m_program.delayed);
        } catch (Malformed const &fault) {
            m_program.flags |= FLAG_MALFORMED;
            m_program.malformed = fault.what;
        }
        TakeHeader();
        return m_program;
    }

private:
    void TakeHeader() {
        m_program.flags |= FLAG_PE;
        m_program.flags |= std::uint32_t{m_image.Machine()} << FLAG_MACHINE_SHIFT;
        m_program.flags |= m_image.Characteristics() & CHARACTERISTIC_DLL ? FLAG_LIBRARY : 0;
        m_program.flags |= m_image.IsWide() ? FLAG_64BIT : 0;
    }

    void ReadTable(Table const &table, std::vector<std::string> &names) {
        std::uint32_t const address = m_image.DirectoryAddress(table.directory);
        if (address == 0) {
            return;
        }
        std::unordered_set<std::string> known;
        for (std::uint32_t i = 0; i < MOST_DESCRIPTORS; ++i) {
            std::uint64_t const descriptor =
                m_image.FileOffset(address + std::uint64_t{table.descriptorSize} * i,
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
               m_image.Need<std::uint32_t>(descriptor + 16, "an import table is cut off") == 0;
    }

    std::uint64_t NameAddress(Table const &table, std::uint64_t descriptor) {
        constexpr const char *what = "an import table is cut off";
        std::uint64_t const address =
            m_image.Need<std::uint32_t>(descriptor + table.nameOffset, what);
        bool const absolute = table.delayed && address != 0 &&
                              !(m_image.Need<std::uint32_t>(descriptor, what) & DELAY_BY_RVA);
        // Tables of the older form hold addresses in memory. They are 32 bits wide in a
        // 64-bit image too, and the difference wraps as it does for its own code.
        return absolute ? static_cast<std::uint32_t>(address - m_image.ImageBase()) : address;
    }

    std::string Name(std::uint64_t address) {
        auto name =
            m_source.Text(m_image.FileOffset(address, "an imported name is outside the file"),
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
    PeImage m_image;
    Program m_program;
};

} // namespace

Program ReadPe(ByteSource &source) { return PeReader(source).Read(); }

} // namespace qvlink

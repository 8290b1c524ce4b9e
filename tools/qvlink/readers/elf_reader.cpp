#include "readers/elf_reader.h"

#include "model.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <optional>
#include <unordered_set>

#include <gelf.h>
#include <libelf.h>
#include <unistd.h>

namespace qvlink {
namespace {

constexpr std::size_t MOST_NEEDED = 4096;
constexpr std::size_t LONGEST_RUN_PATH = 65535;

struct Malformed {
    const char *what;
};

struct ElfEnd {
    void operator()(Elf *elf) const { elf_end(elf); }
};
using ElfHandle = std::unique_ptr<Elf, ElfEnd>;

struct Segment {
    std::uint64_t address;
    std::uint64_t size;
    std::uint64_t offset;
};

// The entries of the dynamic section that matter here. Texts are offsets into its table
// of texts.
struct Dynamic {
    std::vector<std::uint64_t> needed;
    std::optional<std::uint64_t> rpath;
    std::optional<std::uint64_t> runpath;
    std::uint64_t textAddress = 0;
    std::uint64_t textSize = 0;
};

class ElfReader {
public:
    explicit ElfReader(Elf *elf) : m_elf(elf) {}

    Program Read() {
        m_program.flags = FLAG_ELF;
        try {
            ReadHeader();
            if (m_type == ET_EXEC || m_type == ET_DYN) {
                ReadSegments();
                ReadDynamic();
                TakeTexts();
            }
        } catch (Malformed const &fault) {
            m_program.flags |= FLAG_MALFORMED;
            m_program.malformed = fault.what;
        }
        if (m_type == ET_DYN && m_program.interpreter.empty()) {
            m_program.flags |= FLAG_LIBRARY;
        }
        return m_program;
    }

private:
    void ReadHeader() {
        GElf_Ehdr header;
        if (elf_kind(m_elf) != ELF_K_ELF || !gelf_getehdr(m_elf, &header)) {
            throw Malformed{"the header is cut off or of an unknown kind"};
        }
        m_type = header.e_type;
        m_segmentCount = header.e_phnum;
        m_program.flags |= header.e_ident[EI_CLASS] == ELFCLASS64 ? FLAG_64BIT : 0;
        m_program.flags |= header.e_ident[EI_DATA] == ELFDATA2MSB ? FLAG_BIG_ENDIAN : 0;
        m_program.flags |= std::uint32_t{header.e_machine} << FLAG_MACHINE_SHIFT;
    }

    void ReadSegments() {
        std::size_t count = 0;
        // libelf counts those that are in the file, whatever the header says.
        if (elf_getphdrnum(m_elf, &count) != 0 ||
            (m_segmentCount != PN_XNUM && count != m_segmentCount)) {
            throw Malformed{"the program header is cut off"};
        }
        for (std::size_t i = 0; i < count; ++i) {
            GElf_Phdr segment;
            if (!gelf_getphdr(m_elf, static_cast<int>(i), &segment)) {
                throw Malformed{"the program header is cut off"};
            }
            if (segment.p_type == PT_LOAD) {
                m_loaded.push_back({segment.p_vaddr, segment.p_filesz, segment.p_offset});
            } else if (segment.p_type == PT_DYNAMIC) {
                m_dynamicSegment = segment;
            } else if (segment.p_type == PT_INTERP && segment.p_filesz > 0) {
                m_program.interpreter =
                    Text(segment.p_offset, segment.p_filesz, LONGEST_NEEDED_NAME,
                         "the interpreter's name is outside the file");
            }
        }
    }

    void ReadDynamic() {
        if (m_dynamicSegment.p_filesz == 0) {
            return;
        }
        Elf_Data *const data =
            elf_getdata_rawchunk(m_elf, static_cast<std::int64_t>(m_dynamicSegment.p_offset),
                                 m_dynamicSegment.p_filesz, ELF_T_DYN);
        if (!data) {
            throw Malformed{"the dynamic section is outside the file"};
        }
        std::size_t const size = gelf_fsize(m_elf, ELF_T_DYN, 1, EV_CURRENT);
        std::size_t const count = size ? data->d_size / size : 0;
        GElf_Dyn entry;
        for (std::size_t i = 0;
             i < count && gelf_getdyn(data, static_cast<int>(i), &entry) && entry.d_tag != DT_NULL;
             ++i) {
            TakeEntry(entry);
        }
    }

    void TakeEntry(GElf_Dyn const &entry) {
        switch (entry.d_tag) {
        case DT_NEEDED:
            m_dynamic.needed.push_back(entry.d_un.d_val);
            break;
        case DT_RPATH:
            m_dynamic.rpath = entry.d_un.d_val;
            break;
        case DT_RUNPATH:
            m_dynamic.runpath = entry.d_un.d_val;
            break;
        case DT_STRTAB:
            m_dynamic.textAddress = entry.d_un.d_ptr;
            break;
        case DT_STRSZ:
            m_dynamic.textSize = entry.d_un.d_val;
            break;
        case DT_FLAGS_1:
            m_program.flags |= entry.d_un.d_val & DF_1_NODEFLIB ? FLAG_NODEFLIB : 0;
            break;
        default:
            break;
        }
    }

    void TakeTexts() {
        if (m_dynamic.needed.size() > MOST_NEEDED) {
            throw Malformed{"it needs too many libraries"};
        }
        if (m_dynamic.runpath) {
            m_program.runpath = DynamicText(*m_dynamic.runpath, LONGEST_RUN_PATH);
        } else if (m_dynamic.rpath) {
            m_program.rpath = DynamicText(*m_dynamic.rpath, LONGEST_RUN_PATH);
        }
        std::unordered_set<std::string> known;
        for (std::uint64_t const offset : m_dynamic.needed) {
            std::string name = DynamicText(offset, LONGEST_NEEDED_NAME);
            if (name.empty()) {
                throw Malformed{"a needed library has no name"};
            }
            if (known.insert(name).second) {
                m_program.needed.push_back(std::move(name));
            }
        }
    }

    std::string DynamicText(std::uint64_t offset, std::size_t limit) {
        constexpr const char *what = "a text of the dynamic section is cut off";
        if (offset >= m_dynamic.textSize) {
            throw Malformed{"a text of the dynamic section is outside its table"};
        }
        std::uint64_t const address = m_dynamic.textAddress + offset;
        for (Segment const &segment : m_loaded) {
            if (address >= segment.address && address - segment.address < segment.size) {
                std::uint64_t const skipped = address - segment.address;
                std::uint64_t const left =
                    std::min(segment.size - skipped, m_dynamic.textSize - offset);
                return Text(segment.offset + skipped, left, limit, what);
            }
        }
        throw Malformed{"the texts of the dynamic section are outside the file"};
    }

    // The text of at most `limit` bytes at `offset`, whose zero byte is among the next
    // `size` bytes. Short pieces are tried first: most names are.
    std::string Text(std::uint64_t offset, std::uint64_t size, std::size_t limit,
                     const char *what) {
        for (std::uint64_t piece = 128;; piece *= 8) {
            auto const wanted = std::min<std::uint64_t>({piece, size, limit + 1});
            Elf_Data *const data =
                elf_getdata_rawchunk(m_elf, static_cast<std::int64_t>(offset), wanted, ELF_T_BYTE);
            if (!data || !data->d_buf) {
                break;
            }
            auto const *const text = static_cast<const char *>(data->d_buf);
            if (const void *const end = std::memchr(text, 0, wanted)) {
                return {text, static_cast<const char *>(end)};
            }
            if (wanted < piece) {
                break;
            }
        }
        throw Malformed{what};
    }

    Elf *m_elf;
    Program m_program;
    GElf_Half m_type = ET_NONE;
    std::size_t m_segmentCount = 0;
    std::vector<Segment> m_loaded;
    GElf_Phdr m_dynamicSegment{};
    Dynamic m_dynamic;
};

Program Read(ElfHandle const &elf) {
    if (elf) {
        return ElfReader(elf.get()).Read();
    }
    Program program;
    program.flags = FLAG_ELF | FLAG_MALFORMED;
    program.malformed = "the header is cut off or of an unknown kind";
    return program;
}

bool HasMagic(const char *bytes) { return std::memcmp(bytes, ELFMAG, SELFMAG) == 0; }

} // namespace

Program ReadElfImage(std::string_view bytes) {
    if (bytes.size() < SELFMAG || !HasMagic(bytes.data())) {
        return {};
    }
    elf_version(EV_CURRENT);
    std::string copy(bytes); // libelf asks for bytes that it may write to
    return Read(ElfHandle(elf_memory(copy.data(), copy.size())));
}

Program ReadElfFile(int descriptor) {
    char magic[SELFMAG];
    if (::pread(descriptor, magic, sizeof magic, 0) != SELFMAG || !HasMagic(magic)) {
        return {};
    }
    elf_version(EV_CURRENT);
    return Read(ElfHandle(elf_begin(descriptor, ELF_C_READ, nullptr)));
}

} // namespace qvlink

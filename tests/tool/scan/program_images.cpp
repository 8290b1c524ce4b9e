#include "program_images.h"

namespace programs {
namespace {

// Bytes that grow, with integers of either byte order.
class Bytes {
public:
    explicit Bytes(bool bigEndian = false) : m_bigEndian(bigEndian) {}

    void Put(std::uint64_t value, unsigned size) {
        for (unsigned i = 0; i < size; ++i) {
            unsigned const place = m_bigEndian ? size - 1 - i : i;
            m_text += static_cast<char>(value >> (8 * place) & 0xff);
        }
    }
    void Put16(std::uint64_t value) { Put(value, 2); }
    void Put32(std::uint64_t value) { Put(value, 4); }
    void Text(std::string const &text) { m_text.append(text.c_str(), text.size() + 1); }
    void Raw(std::string const &text) { m_text += text; }
    void PadTo(std::size_t size) { m_text.resize(size); }
    std::size_t Size() const { return m_text.size(); }
    std::string const &Get() const { return m_text; }

private:
    bool m_bigEndian;
    std::string m_text;
};

constexpr std::uint32_t sectionAddress = 0x3000;

// Tables first, names behind them.
struct Section {
    Bytes tables;
    Bytes names;
    std::size_t namesAt = 0;
    std::uint64_t Name(std::string const &text) {
        std::uint64_t const address = sectionAddress + namesAt + names.Size();
        names.Text(text);
        return address;
    }
};

std::string ImportSection(Pe const &pe, std::uint32_t &delayAt) {
    Section section;
    std::size_t const importSize = 20 * (pe.imports.size() + 1);
    delayAt = static_cast<std::uint32_t>(sectionAddress + importSize);
    section.namesAt = importSize + 32 * (pe.delayed.size() + 1);
    for (std::string const &name : pe.imports) {
        section.tables.Put32(0);
        section.tables.Put32(0);
        section.tables.Put32(0);
        section.tables.Put32(section.Name(name));
        section.tables.Put32(0x7000); // the address table, not looked at
    }
    section.tables.PadTo(importSize);
    for (std::string const &name : pe.delayed) {
        std::uint64_t const base = pe.delayedByAddress ? pe.imageBase : 0;
        section.tables.Put32(pe.delayedByAddress ? 0 : 1);
        section.tables.Put32(base + section.Name(name));
        section.tables.Put32(base + 0x7000);
        section.tables.Put32(base + 0x7100);
        section.tables.Put32(base + 0x7200);
        section.tables.Put32(0);
        section.tables.Put32(0);
        section.tables.Put32(0);
    }
    section.tables.PadTo(section.namesAt);
    return section.tables.Get() + section.names.Get();
}

void PutOptionalHeader(Bytes &file, Pe const &pe, std::uint32_t delayAt, std::size_t sectionSize) {
    file.Put16(pe.wide ? 0x20b : 0x10b);
    file.PadTo(file.Size() + (pe.wide ? 22 : 26));
    file.Put(pe.imageBase, pe.wide ? 8 : 4);
    file.Put32(0x1000); // alignment in memory
    file.Put32(0x200);  // alignment in the file
    file.PadTo(file.Size() + 16);
    file.Put32(sectionAddress + 0x1000); // size in memory
    file.Put32(0x400);                   // size of the headers
    file.Put32(0);
    file.Put16(3);
    file.Put16(0);
    file.PadTo(file.Size() + (pe.wide ? 32 : 16) + 4);
    file.Put32(16); // entries that follow
    for (unsigned i = 0; i < 16; ++i) {
        bool const imports = i == 1 && !pe.imports.empty();
        bool const delays = i == 13 && !pe.delayed.empty();
        file.Put32(imports ? sectionAddress : delays ? delayAt : 0);
        file.Put32(imports || delays ? sectionSize : 0);
    }
}

} // namespace

std::string Write(Pe const &pe) {
    std::uint32_t delayAt = 0;
    std::string const section = ImportSection(pe, delayAt);
    Bytes file;
    file.Raw("MZ");
    file.PadTo(0x3c);
    file.Put32(peHeaderAt);
    file.PadTo(peHeaderAt);
    file.Raw(std::string("PE\0\0", 4));
    file.Put16(pe.machine);
    file.Put16(1); // sections
    file.PadTo(file.Size() + 12);
    file.Put16((pe.wide ? 112 : 96) + 16 * 8);
    file.Put16(pe.dll ? 0x2002 : 0x0002);
    PutOptionalHeader(file, pe, delayAt, section.size());
    file.Raw(std::string(".idata\0\0", 8));
    file.Put32(section.size());
    file.Put32(sectionAddress);
    file.Put32(section.size());
    file.Put32(peSectionAt);
    file.PadTo(peSectionAt);
    file.Raw(section);
    return file.Get();
}

namespace {

struct ElfLayout {
    unsigned word; // size of an address
    std::size_t headerSize;
    std::size_t segmentSize;
    std::size_t segments;
    std::size_t dynamicAt;
    std::size_t dynamicSize;
    std::size_t textsAt;
};

constexpr std::uint64_t elfBase = 0x400000;

void PutSegment(Bytes &file, bool wide, std::uint32_t type, std::uint64_t at, std::uint64_t size) {
    unsigned const word = wide ? 8 : 4;
    file.Put32(type);
    if (wide) {
        file.Put32(4);
    }
    file.Put(at, word);
    file.Put(elfBase + at, word);
    file.Put(elfBase + at, word);
    file.Put(size, word);
    file.Put(size, word);
    if (!wide) {
        file.Put32(4);
    }
    file.Put(1, word);
}

void PutHeader(Bytes &file, Elf const &elf, ElfLayout const &layout) {
    file.Raw("\x7f"
             "ELF");
    file.Put(elf.wide ? 2 : 1, 1);
    file.Put(elf.bigEndian ? 2 : 1, 1);
    file.Put(1, 1);
    file.PadTo(16);
    file.Put16(elf.type);
    file.Put16(elf.machine);
    file.Put32(1);
    file.Put(0, layout.word);
    file.Put(layout.headerSize, layout.word); // segments follow the header
    file.Put(0, layout.word);                 // no sections
    file.Put32(0);
    file.Put16(layout.headerSize);
    file.Put16(layout.segmentSize);
    file.Put16(layout.segments);
    file.Put16(0);
    file.Put16(0);
    file.Put16(0);
}

} // namespace

std::string Write(Elf const &elf) {
    Bytes texts;
    texts.Text("");
    std::vector<std::pair<std::uint64_t, std::uint64_t>> entries;
    auto const add = [&](std::uint64_t tag, std::string const &text) {
        entries.emplace_back(tag, texts.Size());
        texts.Text(text);
    };
    for (std::string const &name : elf.needed) {
        add(1, name);
    }
    if (!elf.rpath.empty()) {
        add(15, elf.rpath);
    }
    if (!elf.runpath.empty()) {
        add(29, elf.runpath);
    }
    if (elf.noDefaultFolders) {
        entries.emplace_back(0x6ffffffb, 0x800);
    }
    std::size_t const interpreterAt = texts.Size();
    texts.Text(elf.interpreter);

    ElfLayout layout{};
    layout.word = elf.wide ? 8 : 4;
    layout.headerSize = elf.wide ? 64 : 52;
    layout.segmentSize = elf.wide ? 56 : 32;
    layout.segments = elf.interpreter.empty() ? 2 : 3;
    layout.dynamicAt = layout.headerSize + layout.segments * layout.segmentSize;
    layout.dynamicSize = (entries.size() + 3) * 2 * layout.word;
    layout.textsAt = layout.dynamicAt + layout.dynamicSize;
    entries.emplace_back(5, elfBase + layout.textsAt);
    entries.emplace_back(10, texts.Size());
    entries.emplace_back(0, 0);

    Bytes file(elf.bigEndian);
    PutHeader(file, elf, layout);
    PutSegment(file, elf.wide, 1, 0, layout.textsAt + texts.Size());
    PutSegment(file, elf.wide, 2, layout.dynamicAt, layout.dynamicSize);
    if (!elf.interpreter.empty()) {
        PutSegment(file, elf.wide, 3, layout.textsAt + interpreterAt, elf.interpreter.size() + 1);
    }
    for (auto const &[tag, value] : entries) {
        file.Put(tag, layout.word);
        file.Put(value, layout.word);
    }
    file.Raw(texts.Get());
    return file.Get();
}

} // namespace programs

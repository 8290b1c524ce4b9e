#include "library_images.h"

#include <algorithm>
#include <map>

namespace libraries {
namespace {

constexpr std::uint32_t flag = 0x80000000;
constexpr std::uint32_t resourceAddress = 0x3000; // in memory; the file has them elsewhere
constexpr std::uint64_t notesAddress = 0x400000;  // of the segment that the notes are in
constexpr std::uint64_t listsAddress = 0x900000;  // of the segment of the lists

void Append(std::string &bytes, std::uint64_t value, int width) {
    bytes.resize(bytes.size() + static_cast<std::size_t>(width));
    Put(bytes, bytes.size() - static_cast<std::size_t>(width), value, width);
}

// The directories of a DLL's resources. Directories and entries get their places first, the
// lists stand behind all of them.
class Tree {
public:
    Tree(std::vector<Resource> const &resources, int languages) : m_languages(languages) {
        for (Resource const &resource : resources) {
            m_types[resource.type].push_back(resource);
        }
        Directory(m_types.size(), 0);
        std::size_t entry = 16;
        for (auto const &[type, lists] : m_types) {
            Put(m_bytes, entry, flag | Name(type), 4);
            Put(m_bytes, entry + 4, flag | Ids(lists), 4);
            entry += 8;
        }
    }
    std::string const &Bytes() const { return m_bytes; }

private:
    std::uint32_t End() {
        m_bytes.resize((m_bytes.size() + 3) / 4 * 4);
        return static_cast<std::uint32_t>(m_bytes.size());
    }
    // Room for a directory; its place.
    std::uint32_t Directory(std::size_t named, std::size_t numbered) {
        std::uint32_t const at = End();
        m_bytes.resize(at + 16 + 8 * (named + numbered));
        Put(m_bytes, at + 12, named, 2);
        Put(m_bytes, at + 14, numbered, 2);
        return at;
    }
    std::uint32_t Name(std::string const &name) {
        std::uint32_t const at = End();
        Append(m_bytes, name.size(), 2);
        for (char const c : name) {
            Append(m_bytes, static_cast<unsigned char>(c), 2);
        }
        return at;
    }
    std::uint32_t Ids(std::vector<Resource> const &lists) {
        std::uint32_t const at = Directory(0, lists.size());
        for (std::size_t i = 0; i < lists.size(); ++i) {
            Put(m_bytes, at + 16 + 8 * i, lists[i].id, 4);
            std::uint32_t const languages = Languages(lists[i].bytes);
            Put(m_bytes, at + 20 + 8 * i, flag | languages, 4);
        }
        return at;
    }
    std::uint32_t Languages(std::string const &list) {
        auto const count = static_cast<std::size_t>(m_languages);
        std::uint32_t const at = Directory(0, count);
        for (std::size_t i = 0; i < count; ++i) {
            Put(m_bytes, at + 16 + 8 * i, 0x407 + i, 4);
            std::uint32_t const data = Data(i == 0 ? list : "another language");
            Put(m_bytes, at + 20 + 8 * i, data, 4);
        }
        return at;
    }
    std::uint32_t Data(std::string const &list) {
        std::uint32_t const at = End();
        m_bytes.resize(at + 16);
        Put(m_bytes, at, resourceAddress + m_bytes.size(), 4);
        Put(m_bytes, at + 4, list.size(), 4);
        m_bytes += list;
        return at;
    }

    int m_languages;
    std::map<std::string, std::vector<Resource>> m_types;
    std::string m_bytes;
};

struct Segment {
    std::uint32_t type;
    std::uint64_t offset;
    std::uint64_t address;
    std::uint64_t size;
};

void PutSegment(std::string &file, std::size_t at, Segment const &segment, bool wide) {
    Put(file, at, segment.type, 4);
    Put(file, at + (wide ? 8 : 4), segment.offset, wide ? 8 : 4);
    Put(file, at + (wide ? 16 : 8), segment.address, wide ? 8 : 4);
    Put(file, at + (wide ? 32 : 16), segment.size, wide ? 8 : 4);
}

std::string Padded(std::string text) {
    text.resize((text.size() + 3) / 4 * 4);
    return text;
}

// `place`: of the list among all lists; `start`: where the note begins among the notes.
std::string Note(Resource const &resource, std::size_t place, std::size_t start) {
    std::string const owner("QVLinkDB", 9);
    std::string contents;
    Append(contents, resource.id, 4);
    Append(contents, resource.bytes.size(), 4);
    std::uint64_t const field = notesAddress + start + 12 + Padded(owner).size() + 8;
    Append(contents, listsAddress + place - field, 4);
    contents += resource.type + '\0';
    std::string note;
    Append(note, owner.size(), 4);
    Append(note, contents.size(), 4);
    Append(note, 2, 4);
    return note + Padded(owner) + Padded(contents);
}

} // namespace

void Put(std::string &bytes, std::size_t at, std::uint64_t value, int width) {
    for (int i = 0; i < width; ++i) {
        bytes[at + static_cast<std::size_t>(i)] = static_cast<char>(value >> (8 * i) & 0xff);
    }
}

std::string Dll(std::vector<Resource> const &resources, bool wide, int languages) {
    std::string const tree = Tree(resources, languages).Bytes();
    std::string file(dllResourcesAt, '\0');
    file.replace(0, 2, "MZ");
    Put(file, 0x3c, 0x80, 4);
    file.replace(0x80, 4, std::string("PE\0\0", 4));
    Put(file, 0x84, wide ? 0x8664 : 0x14c, 2);
    Put(file, 0x86, 1, 2); // sections
    std::size_t const optionalSize = wide ? 240 : 224;
    Put(file, 0x94, optionalSize, 2);
    std::size_t const optional = 0x98;
    Put(file, optional, wide ? 0x20b : 0x10b, 2);
    Put(file, optional + 32, 0x1000, 4); // alignment of sections
    Put(file, optional + 60, dllResourcesAt, 4);
    Put(file, optional + (wide ? 108 : 92), 16, 4); // directories
    Put(file, optional + (wide ? 112 : 96) + 8 * 2, resourceAddress, 4);
    std::size_t const section = optional + optionalSize;
    Put(file, section + 8, tree.size(), 4);
    Put(file, section + 12, resourceAddress, 4);
    Put(file, section + 16, tree.size(), 4);
    Put(file, section + 20, dllResourcesAt, 4);
    return file + tree;
}

std::string SharedLibrary(std::vector<Resource> const &resources, bool wide) {
    std::string notes;
    std::string lists;
    for (Resource const &resource : resources) {
        notes += Note(resource, lists.size(), notes.size());
        lists += resource.bytes;
    }
    std::string file(notesAt, '\0');
    file.replace(0, 4,
                 "\x7f"
                 "ELF");
    file[4] = wide ? 2 : 1;
    file[5] = 1; // least significant byte first
    std::size_t const size = wide ? 56 : 32;
    Put(file, wide ? 32 : 28, 0x40, wide ? 8 : 4);
    Put(file, wide ? 54 : 42, size, 2);
    Put(file, wide ? 56 : 44, 3, 2);
    std::size_t const listsAt = notesAt + notes.size();
    PutSegment(file, 0x40, {1, notesAt, notesAddress, notes.size()}, wide);
    PutSegment(file, 0x40 + size, {1, listsAt, listsAddress, lists.size()}, wide);
    PutSegment(file, 0x40 + 2 * size, {4, notesAt, notesAddress, notes.size()}, wide);
    return file + notes + lists;
}

} // namespace libraries

// Lists in an ELF file: a note tells of each, and how far from the note its bytes lie.
#include "lists/found_lists.h"

namespace qvlink {
namespace {

constexpr unsigned char CLASS_64 = 2;
constexpr unsigned char LITTLE_ENDIAN_DATA = 1;
constexpr std::uint32_t SEGMENT_LOAD = 1;
constexpr std::uint32_t SEGMENT_NOTE = 4;
constexpr std::uint16_t MANY_SEGMENTS = 0xffff; // the count stands elsewhere

constexpr std::string_view Owner("QVLinkDB\0", 9);
constexpr std::uint32_t RESOURCE_NOTE = 2;
constexpr std::uint64_t NOTE_HEAD = 12; // sizes of owner and contents, kind
// The contents: id, size, distance from that field to the bytes, and the type's text.
constexpr std::uint64_t DISTANCE_AT = 8;
constexpr std::uint64_t TYPE_AT = 12;

struct Segment {
    std::uint64_t address;
    std::uint64_t offset;
    std::uint64_t size;
};

std::uint64_t Aligned(std::uint64_t size) { return (size + 3) & ~std::uint64_t{3}; }

class ElfLists {
public:
    ElfLists(ByteSource &source, std::string_view bytes, std::vector<LibraryList> &found)
        : m_source(source), m_bytes(bytes), m_found(found) {}

    void Find() {
        ReadSegments();
        for (Segment const &segment : m_notes) {
            ReadNotes(segment);
        }
    }

private:
    template <class Integer> Integer Need(std::uint64_t offset, const char *what) {
        auto const value = m_source.Get<Integer>(offset);
        if (!value) {
            throw Malformed{what};
        }
        return *value;
    }

    void ReadSegments() {
        constexpr const char *what = "the header is cut off";
        bool const wide = Need<std::uint8_t>(4, what) == CLASS_64;
        if (Need<std::uint8_t>(5, what) != LITTLE_ENDIAN_DATA) {
            throw Malformed{"it is for another kind of processor"};
        }
        std::uint64_t const table =
            wide ? Need<std::uint64_t>(32, what) : Need<std::uint32_t>(28, what);
        auto const size = Need<std::uint16_t>(wide ? 54 : 42, what);
        auto const count = Need<std::uint16_t>(wide ? 56 : 44, what);
        if (count == MANY_SEGMENTS || table > m_bytes.size()) {
            throw Malformed{"the program header is cut off"};
        }
        for (std::uint64_t i = 0; i < count; ++i) {
            ReadSegment(table + i * size, wide);
        }
    }

    void ReadSegment(std::uint64_t at, bool wide) {
        constexpr const char *what = "the program header is cut off";
        auto const word = [&](std::uint64_t wideAt, std::uint64_t narrowAt) -> std::uint64_t {
            return wide ? Need<std::uint64_t>(at + wideAt, what)
                        : Need<std::uint32_t>(at + narrowAt, what);
        };
        auto const type = Need<std::uint32_t>(at, what);
        Segment const segment{word(16, 8), word(8, 4), word(32, 16)};
        if (type != SEGMENT_LOAD && type != SEGMENT_NOTE) {
            return;
        }
        if (segment.offset > m_bytes.size() || segment.size > m_bytes.size() - segment.offset) {
            throw Malformed{"a segment is outside the file"};
        }
        (type == SEGMENT_LOAD ? m_loaded : m_notes).push_back(segment);
    }

    void ReadNotes(Segment const &segment) {
        std::uint64_t at = 0;
        while (segment.size - at >= NOTE_HEAD) {
            m_steps.Take();
            constexpr const char *what = "a note is cut off";
            std::uint64_t const head = segment.offset + at;
            auto const ownerSize = Need<std::uint32_t>(head, what);
            auto const size = Need<std::uint32_t>(head + 4, what);
            auto const kind = Need<std::uint32_t>(head + 8, what);
            std::uint64_t const contents = NOTE_HEAD + Aligned(ownerSize);
            std::uint64_t const end = contents + Aligned(size);
            if (end > segment.size - at) {
                return;
            }
            if (kind == RESOURCE_NOTE && m_bytes.substr(head + NOTE_HEAD, ownerSize) == Owner) {
                TakeNote(segment, at + contents, size);
            }
            at += end;
        }
    }

    void TakeNote(Segment const &segment, std::uint64_t place, std::uint64_t size) {
        std::uint64_t const at = segment.offset + place;
        if (size <= TYPE_AT || m_bytes[at + size - 1] != '\0') {
            return;
        }
        std::string_view const rest = m_bytes.substr(at + TYPE_AT, size - TYPE_AT);
        std::optional<lists::Kind> const kind = KindOfResource(rest.substr(0, rest.find('\0')));
        if (!kind) {
            return;
        }
        constexpr const char *what = "a note is cut off";
        auto const distance =
            static_cast<std::int32_t>(Need<std::uint32_t>(at + DISTANCE_AT, what));
        std::uint64_t const address = segment.address + place + DISTANCE_AT +
                                      static_cast<std::uint64_t>(std::int64_t{distance});
        m_found.push_back({*kind, Need<std::uint32_t>(at, what),
                           Loaded(address, Need<std::uint32_t>(at + 4, what))});
    }

    std::string_view Loaded(std::uint64_t address, std::uint64_t size) const {
        for (Segment const &segment : m_loaded) {
            std::uint64_t const skipped = address - segment.address;
            if (address >= segment.address && skipped <= segment.size &&
                size <= segment.size - skipped) {
                return m_bytes.substr(segment.offset + skipped, size);
            }
        }
        throw Malformed{"a list is outside the file"};
    }

    ByteSource &m_source;
    std::string_view m_bytes;
    std::vector<LibraryList> &m_found;
    std::vector<Segment> m_loaded;
    std::vector<Segment> m_notes;
    Steps m_steps;
};

} // namespace

void FindElfLists(ByteSource &source, std::string_view bytes, std::vector<LibraryList> &found) {
    ElfLists(source, bytes, found).Find();
}

} // namespace qvlink

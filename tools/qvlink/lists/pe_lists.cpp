// Lists among the resources of a PE file: directories of types, ids and languages.
#include "lists/found_lists.h"

namespace qvlink {
namespace {

constexpr std::uint32_t RESOURCE_DIRECTORY = 2;
constexpr std::uint32_t IS_NAME = 0x80000000;      // in an entry's first word
constexpr std::uint32_t IS_DIRECTORY = 0x80000000; // in its second
constexpr std::size_t HEAD_SIZE = 16;
constexpr std::size_t ENTRY_SIZE = 8;
constexpr std::size_t LONGEST_TYPE = 9; // WIN_FILES
constexpr const char CutOff[] = "the resource directory is cut off";

struct Entry {
    std::uint32_t name;
    std::uint32_t target;
};

class PeLists {
public:
    PeLists(ByteSource &source, std::string_view bytes, std::vector<LibraryList> &found)
        : m_image(source), m_bytes(bytes), m_found(found) {}

    void Find() {
        if (!m_image.FindHeader()) {
            throw Malformed{"it has no header of a Windows program"};
        }
        m_image.Read();
        m_root = m_image.DirectoryAddress(RESOURCE_DIRECTORY);
        if (m_root == 0) {
            return;
        }
        for (Entry const &type : Entries(0)) {
            std::optional<lists::Kind> const kind = KindOfType(type);
            if (kind && type.target & IS_DIRECTORY) {
                TakeType(*kind, type.target & ~IS_DIRECTORY);
            }
        }
    }

private:
    // Where in the file a part of the resources is.
    std::uint64_t At(std::uint64_t part) const { return m_image.FileOffset(m_root + part, CutOff); }

    std::vector<Entry> Entries(std::uint32_t directory) {
        std::uint64_t const head = At(directory);
        std::uint32_t const count = std::uint32_t{m_image.Need<std::uint16_t>(head + 12, CutOff)} +
                                    m_image.Need<std::uint16_t>(head + 14, CutOff);
        std::vector<Entry> entries;
        for (std::uint32_t i = 0; i < count; ++i) {
            m_steps.Take();
            std::uint64_t const at = At(directory + HEAD_SIZE + std::uint64_t{ENTRY_SIZE} * i);
            entries.push_back({m_image.Need<std::uint32_t>(at, CutOff),
                               m_image.Need<std::uint32_t>(at + 4, CutOff)});
        }
        return entries;
    }

    std::optional<lists::Kind> KindOfType(Entry const &type) {
        if (!(type.name & IS_NAME)) {
            return std::nullopt;
        }
        std::uint64_t const at = At(type.name & ~IS_NAME);
        auto const length = m_image.Need<std::uint16_t>(at, CutOff);
        std::string name;
        for (std::uint32_t i = 0; i < length && length <= LONGEST_TYPE; ++i) {
            auto const unit = m_image.Need<std::uint16_t>(at + 2 + std::uint64_t{2} * i, CutOff);
            name += unit < 0x80 ? static_cast<char>(unit) : '?';
        }
        return KindOfResource(name);
    }

    void TakeType(lists::Kind kind, std::uint32_t directory) {
        for (Entry const &id : Entries(directory)) {
            if (id.name & IS_NAME || !(id.target & IS_DIRECTORY)) {
                continue;
            }
            std::vector<Entry> const languages = Entries(id.target & ~IS_DIRECTORY);
            if (!languages.empty() && !(languages.front().target & IS_DIRECTORY)) {
                m_found.push_back({kind, id.name, Stored(languages.front().target)});
            }
        }
    }

    std::string_view Stored(std::uint32_t entry) {
        std::uint64_t const at = At(entry);
        std::uint64_t const address = m_image.Need<std::uint32_t>(at, CutOff);
        std::uint64_t const size = m_image.Need<std::uint32_t>(at + 4, CutOff);
        constexpr const char *outside = "a list is outside the file";
        if (size == 0) {
            return m_bytes.substr(0, 0);
        }
        std::uint64_t const first = m_image.FileOffset(address, outside);
        std::uint64_t const last = m_image.FileOffset(address + size - 1, outside);
        if (last != first + size - 1 || last >= m_bytes.size()) {
            throw Malformed{outside};
        }
        return m_bytes.substr(first, size);
    }

    PeImage m_image;
    std::string_view m_bytes;
    std::vector<LibraryList> &m_found;
    std::uint64_t m_root = 0;
    Steps m_steps;
};

} // namespace

void FindPeLists(ByteSource &source, std::string_view bytes, std::vector<LibraryList> &found) {
    PeLists(source, bytes, found).Find();
}

} // namespace qvlink

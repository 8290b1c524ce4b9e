#include "readers/loader_cache.h"

namespace qvlink {
namespace {

constexpr char OLD_MAGIC[] = "ld.so-1.7.0";
constexpr char NEW_MAGIC[] = "glibc-ld.so.cache1.1";
constexpr std::uint64_t HEADER_SIZE = 48;
constexpr std::uint64_t ENTRY_SIZE = 24;
constexpr std::uint32_t KIND_MASK = 0xff;
constexpr std::uint32_t KIND_ANY = 1;
constexpr std::uint32_t KIND_LIBC6 = 3;

constexpr std::uint32_t EXTENSION_MAGIC = 0xeaa42174;
constexpr std::uint32_t EXTENSION_CAPABILITIES = 1;
constexpr std::uint32_t MOST_EXTENSIONS = 64;
constexpr std::uint32_t EXTENSION_SIZE = 16;
constexpr std::uint32_t CAPABILITY_BIT = 1u << 30; // in the high half of an entry's capabilities

constexpr std::size_t LONGEST_PATH = 4095;

class CacheReader {
public:
    explicit CacheReader(ByteSource &source) : m_source(source) {}

    LoaderCache Read() {
        LoaderCache cache;
        m_start = Start();
        if (!HasText(m_start, NEW_MAGIC)) {
            return cache;
        }
        ReadCapabilities(Word(m_start + 32));
        std::uint32_t const count = Word(m_start + 20);
        for (std::uint64_t i = 0; i < count; ++i) {
            std::uint64_t const entry = m_start + HEADER_SIZE + ENTRY_SIZE * i;
            if (entry + ENTRY_SIZE > m_source.Size()) {
                break;
            }
            TakeEntry(entry, cache);
        }
        return cache;
    }

private:
    bool HasText(std::uint64_t offset, std::string_view text) {
        std::string found(text.size(), '\0');
        return m_source.Read(offset, found.data(), found.size()) && found == text;
    }

    std::uint32_t Word(std::uint64_t offset) {
        return m_source.Get<std::uint32_t>(offset).value_or(0);
    }

    // Where the part in the new format begins: behind one in the old format, if any.
    std::uint64_t Start() {
        if (!HasText(0, OLD_MAGIC)) {
            return 0;
        }
        constexpr std::uint64_t oldHeader = 16, oldEntry = 12, alignment = 8;
        std::uint64_t const end = oldHeader + oldEntry * Word(12);
        return (end + alignment - 1) / alignment * alignment;
    }

    // The names of capability folders, which entries give by their number.
    void ReadCapabilities(std::uint32_t extensionOffset) {
        std::uint64_t const directory = m_start + extensionOffset;
        if (extensionOffset == 0 || Word(directory) != EXTENSION_MAGIC) {
            return;
        }
        std::uint32_t const count = std::min(Word(directory + 4), MOST_EXTENSIONS);
        for (std::uint32_t i = 0; i < count; ++i) {
            std::uint64_t const section = directory + 8 + std::uint64_t{EXTENSION_SIZE} * i;
            if (Word(section) != EXTENSION_CAPABILITIES) {
                continue;
            }
            std::uint64_t const texts = m_start + Word(section + 8);
            std::uint32_t const size = Word(section + 12);
            for (std::uint64_t at = 0; at + 4 <= size && texts + at + 4 <= m_source.Size();
                 at += 4) {
                m_capabilities.push_back(
                    m_source.Text(m_start + Word(texts + at), LONGEST_PATH).value_or(""));
            }
        }
    }

    void TakeEntry(std::uint64_t entry, LoaderCache &cache) {
        CachedLibrary library;
        std::uint32_t const number = Word(entry + 16);
        std::uint32_t const kind = Word(entry + 20);
        if (kind & CAPABILITY_BIT) {
            if (number >= m_capabilities.size()) {
                return;
            }
            library.capability = m_capabilities[number];
        } else if (number != 0 || kind != 0) {
            return;
        }
        auto const name = m_source.Text(m_start + Word(entry + 4), LONGEST_PATH);
        auto const path = m_source.Text(m_start + Word(entry + 8), LONGEST_PATH);
        std::uint32_t const elfKind = Word(entry) & KIND_MASK;
        if ((elfKind != KIND_LIBC6 && elfKind != KIND_ANY) || !name || !path) {
            return;
        }
        library.path = *path;
        cache[*name].push_back(std::move(library));
    }

    ByteSource &m_source;
    std::uint64_t m_start = 0;
    std::vector<std::string> m_capabilities;
};

} // namespace

LoaderCache ReadLoaderCache(ByteSource &source) { return CacheReader(source).Read(); }

} // namespace qvlink

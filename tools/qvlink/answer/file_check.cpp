#include "answer/file_check.h"

#include "answer/file_image.h"
#include "answer/tree_check.h"

#include "linkdb.h"

#include <algorithm>
#include <tuple>
#include <unordered_map>

namespace qvlink {
namespace {

constexpr std::size_t LongestName = 250;

bool IsPersistent(std::uint32_t type) { return (type & PERSISTENT_BIT) != 0; }
std::uint32_t IdOf(std::uint32_t entry) { return entry & LINK_ENTRY_ID_MASK; }

class RecordCheck {
public:
    RecordCheck(FileImage const &image, FileCheck &check) : m_image(image), m_check(check) {}

    void Run() {
        for (FileObject const &object : m_image.objects) {
            CheckObject(object);
            CheckEntries(object, object.from, true);
            CheckEntries(object, object.to, false);
        }
        CheckLinks();
        CheckTwins();
        TellDropped();
    }

private:
    void Problem(const char *check, std::string text) {
        m_check.problems.push_back({check, std::move(text)});
    }

    static std::string Called(FileObject const &object) {
        std::string text = "object " + std::to_string(object.id);
        return object.name.empty() ? text : text + " (" + std::string(object.name) + ")";
    }
    static std::string Called(FileLink const &link) { return "link " + std::to_string(link.id); }

    void CheckObject(FileObject const &object) {
        if (object.name.size() > LongestName) {
            Problem("name", Called(object) + " has a name of more than 250 characters");
        }
        if (object.name.find('\0') != std::string_view::npos) {
            Problem("name", Called(object) + " has a name that holds a zero byte");
        }
        bool const isRoot = (object.type & ~PERSISTENT_BIT) == OBJ_ROOT;
        if (isRoot != (object.id == 1)) {
            Problem("root", isRoot
                                ? Called(object) + " has no type, and only object 1 may have none"
                                : "object 1 isn't the root: it has a type");
        }
        if ((object.type & ~PERSISTENT_BIT) == OBJ_PINNED && !IsPersistent(object.type)) {
            Problem("persistence", Called(object) + " is pinned and not persistent");
        }
    }

    // What the entries of one list name: this object's links, each once, and marked as
    // they are.
    void CheckEntries(FileObject const &object, EntryList const &entries, bool outgoing) {
        const char *const list = outgoing ? " in its outgoing list" : " in its incoming list";
        for (std::size_t i = 0; i < entries.Size(); ++i) {
            FileLink const *const link = m_image.Link(IdOf(entries[i]));
            if (!link) {
                StaleEntry(object, entries[i], list);
                continue;
            }
            if ((outgoing ? link->source : link->target) != object.id) {
                Problem("entries", Called(object) + " has " + Called(*link) + list +
                                       ", which belongs to another object");
                continue;
            }
            std::uint8_t const bit = outgoing ? 1 : 2;
            std::uint8_t &seen = m_seen[link->id];
            if (seen & bit) {
                Problem("entries", Called(object) + " has " + Called(*link) + list + " twice");
            }
            seen = static_cast<std::uint8_t>(seen | bit);
            bool const isMarked = (entries[i] & LINK_ENTRY_TRANSIENT) != 0;
            if (isMarked == IsPersistent(link->type)) {
                Problem("persistence", Called(object) + " has " + Called(*link) + list +
                                           (isMarked ? " as transient, and it is persistent"
                                                     : " as persistent, and it is transient"));
            }
        }
    }

    void StaleEntry(FileObject const &object, std::uint32_t entry, const char *list) {
        // What a load by another process leaves of a transient link.
        if (entry & LINK_ENTRY_TRANSIENT) {
            ++m_staleEntries;
        } else {
            Problem("entries", Called(object) + " has link " + std::to_string(IdOf(entry)) + list +
                                   ", and there is no such link");
        }
    }

    void CheckLinks() {
        for (FileLink const &link : m_image.links) {
            FileObject const *const source = m_image.Object(link.source);
            FileObject const *const target = m_image.Object(link.target);
            CheckEnd(link, source, link.source, 1, "source");
            CheckEnd(link, target, link.target, 2, "target");
            if ((link.type & ~PERSISTENT_BIT) == 0) {
                Problem("link-type", Called(link) + " has no type, and no search finds it");
            }
            if (source && target &&
                IsPersistent(link.type) !=
                    (IsPersistent(source->type) && IsPersistent(target->type))) {
                Problem("persistence",
                        Called(link) + (IsPersistent(link.type)
                                            ? " is persistent between ends that aren't both"
                                            : " is transient between persistent ends"));
            }
        }
    }

    void CheckEnd(FileLink const &link, FileObject const *end, std::uint32_t id, std::uint8_t bit,
                  const char *what) {
        if (!end) {
            Problem("ends", Called(link) + " has object " + std::to_string(id) + " as its " + what +
                                ", and there is no such object");
        } else if (!(SeenOf(link.id) & bit)) {
            Problem("entries",
                    Called(link) + " stands in no list of its " + what + ", " + Called(*end));
        }
    }

    std::uint8_t SeenOf(std::uint32_t id) const {
        auto const place = m_seen.find(id);
        return place == m_seen.end() ? 0 : place->second;
    }

    // Two persistent links of one type between the same objects in one direction.
    void CheckTwins() {
        std::vector<std::tuple<std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t>> links;
        for (FileLink const &link : m_image.links) {
            if (IsPersistent(link.type)) {
                links.emplace_back(link.source, link.target, link.type, link.id);
            }
        }
        std::sort(links.begin(), links.end());
        for (std::size_t i = 1; i < links.size(); ++i) {
            auto const &[source, target, type, id] = links[i];
            auto const &[source0, target0, type0, id0] = links[i - 1];
            if (source == source0 && target == target0 && type == type0) {
                Problem("twin-links", "links " + std::to_string(id0) + " and " +
                                          std::to_string(id) + " say the same");
            }
        }
    }

    // What a reader of another process does with each record.
    void TellDropped() {
        for (FileObject const &object : m_image.objects) {
            bool const isKept = IsPersistent(object.type) &&
                                (HasPersistentEntry(object.from) || HasPersistentEntry(object.to));
            m_check.droppedObjects += !isKept;
        }
        for (FileLink const &link : m_image.links) {
            m_check.droppedLinks += !IsPersistent(link.type);
        }
        if (m_check.droppedObjects + m_check.droppedLinks > 0) {
            m_check.notes.push_back(
                {"dropped", "another process leaves out " + std::to_string(m_check.droppedObjects) +
                                " objects and " + std::to_string(m_check.droppedLinks) +
                                " links, which are transient or hang on nothing persistent"});
        }
        if (m_staleEntries > 0) {
            m_check.notes.push_back({"stale", std::to_string(m_staleEntries) +
                                                  " entries name transient links that are gone"});
        }
    }

    static bool HasPersistentEntry(EntryList const &entries) {
        for (std::size_t i = 0; i < entries.Size(); ++i) {
            if ((entries[i] & ~LINK_ENTRY_ID_MASK) == 0) {
                return true;
            }
        }
        return false;
    }

    FileImage const &m_image;
    FileCheck &m_check;
    std::unordered_map<std::uint32_t, std::uint8_t> m_seen; // 1: from its source, 2: its target
    std::uint64_t m_staleEntries = 0;
};

} // namespace

std::string WhyUnusable(std::string_view head, std::uint64_t size) {
    if (size < 4) {
        return "it is shorter than the word that holds its length";
    }
    if (Word(head, 0) != size) {
        return "it says that it is " + std::to_string(Word(head, 0)) + " bytes long, and it is " +
               std::to_string(size);
    }
    if (size < FileHeadSize) {
        return "it ends within its header";
    }
    if (Word(head, 16) != LINKDB_MAGIC) {
        return "it has " + std::to_string(Word(head, 16)) + " where a database has " +
               std::to_string(LINKDB_MAGIC);
    }
    return "";
}

FileCheck CheckFile(std::string_view bytes) {
    FileCheck check;
    check.bytes = bytes.size();
    std::string const why = WhyUnusable(bytes.substr(0, FileHeadSize), bytes.size());
    if (!why.empty()) {
        check.problems.push_back({"header", "the file is ignored by every reader: " + why});
        return check;
    }
    if (std::optional<FileImage> const image = ReadImage(bytes, check)) {
        RecordCheck(*image, check).Run();
        CheckTree(*image, check);
    }
    return check;
}

} // namespace qvlink

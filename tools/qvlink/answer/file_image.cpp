#include "answer/file_image.h"

#include "linkdb.h"

#include <algorithm>

namespace qvlink {
namespace {

constexpr std::size_t ObjectHeadSize = 26; // six words and the length of the name
constexpr std::size_t LinkSize = 16;

std::string Numbered(const char *what, std::uint64_t number) {
    return what + (' ' + std::to_string(number));
}

// Takes pieces off the bytes from the front, never more than there are.
class Cursor {
public:
    explicit Cursor(std::string_view bytes) : m_left(bytes) {}

    std::optional<std::string_view> Take(std::uint64_t size) {
        if (size > m_left.size()) {
            return std::nullopt;
        }
        std::string_view const piece = m_left.substr(0, static_cast<std::size_t>(size));
        m_left.remove_prefix(piece.size());
        return piece;
    }
    std::size_t Left() const { return m_left.size(); }

private:
    std::string_view m_left;
};

std::optional<FileObject> ReadObject(Cursor &cursor) {
    auto const head = cursor.Take(ObjectHeadSize);
    if (!head) {
        return std::nullopt;
    }
    std::uint64_t const nameSize = Word(*head, 22) >> 16;
    auto const name = cursor.Take(nameSize);
    auto const from = cursor.Take(std::uint64_t{Word(*head, 16) & LINK_ENTRY_ID_MASK} * 4);
    auto const to = cursor.Take(std::uint64_t{Word(*head, 20) & LINK_ENTRY_ID_MASK} * 4);
    auto const data = cursor.Take(Word(*head, 12));
    if (!name || !from || !to || !data) {
        return std::nullopt;
    }
    return FileObject{Word(*head, 0),   Word(*head, 4), Word(*head, 8), *name,
                      EntryList(*from), EntryList(*to), *data};
}

// Puts records in order of id and takes out those whose id came before; says so.
template <class Record>
void OrderById(std::vector<Record> &records, const char *what, FileCheck &check) {
    auto const before = [](Record const &a, Record const &b) { return a.id < b.id; };
    if (!std::is_sorted(records.begin(), records.end(), before)) {
        check.problems.push_back(
            {"order", std::string("the ") + what + " records are not in ascending order of id"});
        std::stable_sort(records.begin(), records.end(), before);
    }
    for (std::size_t i = 1; i < records.size(); ++i) {
        if (records[i - 1].id == records[i].id) {
            check.problems.push_back({"duplicate-id", Numbered(what, records[i].id) +
                                                          " stands in the file more than once"});
        }
    }
    if (!records.empty() && records.front().id == 0) {
        check.problems.push_back({"id", std::string("a record of ") + what + " has the id 0"});
    }
    auto const same = [](Record const &a, Record const &b) { return a.id == b.id; };
    records.erase(std::unique(records.begin(), records.end(), same), records.end());
}

template <class Record>
Record const *FindById(std::vector<Record> const &records, std::uint32_t id) {
    // Ids are mostly dense, so that record n is near place n - 1.
    if (id != 0 && id <= records.size() && records[id - 1].id == id) {
        return &records[id - 1];
    }
    auto const place = std::lower_bound(records.begin(), records.end(), id,
                                        [](Record const &a, std::uint32_t b) { return a.id < b; });
    return place != records.end() && place->id == id ? &*place : nullptr;
}

} // namespace

std::uint32_t Word(std::string_view bytes, std::size_t offset) {
    auto const byte = [&](std::size_t i) -> std::uint32_t {
        return static_cast<unsigned char>(bytes[offset + i]);
    };
    return byte(0) | byte(1) << 8 | byte(2) << 16 | byte(3) << 24;
}

std::uint32_t EntryList::operator[](std::size_t index) const { return Word(m_bytes, index * 4); }

FileObject const *FileImage::Object(std::uint32_t id) const { return FindById(objects, id); }
FileLink const *FileImage::Link(std::uint32_t id) const { return FindById(links, id); }

std::optional<FileImage> ReadImage(std::string_view bytes, FileCheck &check) {
    FileImage image;
    std::uint32_t const objects = Word(bytes, 20);
    std::uint32_t const links = Word(bytes, 24);
    Cursor cursor(bytes.substr(FileHeadSize));
    while (image.objects.size() < objects) {
        std::optional<FileObject> const object = ReadObject(cursor);
        if (!object) {
            check.problems.push_back({"short", Numbered("object record", image.objects.size() + 1) +
                                                   " of " + std::to_string(objects) +
                                                   " runs over the end of the file"});
            return std::nullopt;
        }
        image.objects.push_back(*object);
    }
    while (image.links.size() < links) {
        auto const record = cursor.Take(LinkSize);
        if (!record) {
            check.problems.push_back({"short", Numbered("link record", image.links.size() + 1) +
                                                   " of " + std::to_string(links) +
                                                   " runs over the end of the file"});
            break;
        }
        image.links.push_back(
            {Word(*record, 0), Word(*record, 4), Word(*record, 8), Word(*record, 12)});
    }
    if (cursor.Left() > 0) {
        check.problems.push_back(
            {"trailing", Numbered("the last record is followed by", cursor.Left()) + " bytes"});
    }
    check.objects = image.objects.size();
    check.links = image.links.size();
    OrderById(image.objects, "object", check);
    OrderById(image.links, "link", check);
    return image;
}

} // namespace qvlink

#include "linkdb_image.h"

namespace image {

namespace {

constexpr std::uint32_t magic = 4104, countMask = 0x3fffffff;

void AddHalf(Bytes &bytes, std::size_t value) {
    bytes.push_back(static_cast<std::uint8_t>(value));
    bytes.push_back(static_cast<std::uint8_t>(value >> 8));
}

void AddWords(Bytes &bytes, std::vector<std::uint32_t> const &words) {
    for (std::uint32_t const word : words)
        AddWord(bytes, word);
}

void AddObject(Bytes &bytes, Object const &object) {
    AddWord(bytes, object.id);
    AddWord(bytes, object.flags);
    AddWord(bytes, object.type);
    AddWord(bytes, static_cast<std::uint32_t>(object.data.size()));
    AddWord(bytes, static_cast<std::uint32_t>(object.from.size()) | object.fromBits);
    AddWord(bytes, static_cast<std::uint32_t>(object.to.size()) | object.toBits);
    AddHalf(bytes, object.name.size());
    bytes.insert(bytes.end(), object.name.begin(), object.name.end());
    AddWords(bytes, object.from);
    AddWords(bytes, object.to);
    bytes.insert(bytes.end(), object.data.begin(), object.data.end());
}

// Takes bytes from the front; `good` falls when there are too few.
struct Cursor {
    Bytes const &bytes;
    std::size_t at;
    bool good = true;

    bool Has(std::size_t count) { return good = good && bytes.size() - at >= count; }
    std::uint32_t Word() {
        if (!Has(4))
            return 0;
        at += 4;
        return WordAt(bytes, at - 4);
    }
    std::uint32_t Half() {
        if (!Has(2))
            return 0;
        at += 2;
        return static_cast<std::uint32_t>(bytes[at - 2] | bytes[at - 1] << 8);
    }
    template <class Container> Container Run(std::size_t count) {
        if (!Has(count))
            return {};
        auto const first = bytes.begin() + static_cast<std::ptrdiff_t>(at);
        at += count;
        return Container(first, first + static_cast<std::ptrdiff_t>(count));
    }
    std::vector<std::uint32_t> Words(std::size_t count) {
        std::vector<std::uint32_t> words;
        if (Has(count * 4))
            for (; count > 0; --count)
                words.push_back(Word());
        return words;
    }
};

Object ReadObject(Cursor &cursor) {
    Object object;
    object.id = cursor.Word();
    object.flags = cursor.Word();
    object.type = cursor.Word();
    std::uint32_t const dataSize = cursor.Word(), from = cursor.Word(), to = cursor.Word();
    object.fromBits = from & ~countMask;
    object.toBits = to & ~countMask;
    object.name = cursor.Run<std::string>(cursor.Half());
    object.from = cursor.Words(from & countMask);
    object.to = cursor.Words(to & countMask);
    object.data = cursor.Run<Bytes>(dataSize);
    return object;
}

} // namespace

Bytes Write(File const &file) {
    Bytes bytes(recordsAt);
    SetStamp(bytes, file.stamp);
    SetWord(bytes, magicAt, magic);
    SetWord(bytes, objectCountAt, static_cast<std::uint32_t>(file.objects.size()));
    SetWord(bytes, linkCountAt, static_cast<std::uint32_t>(file.links.size()));
    for (Object const &object : file.objects)
        AddObject(bytes, object);
    for (Link const &link : file.links)
        AddWords(bytes, {link.id, link.source, link.target, link.type});
    FixLength(bytes);
    return bytes;
}

std::optional<File> Read(Bytes const &bytes) {
    if (bytes.size() < recordsAt || WordAt(bytes, lengthAt) != bytes.size() ||
        WordAt(bytes, magicAt) != magic)
        return std::nullopt;
    File file;
    file.stamp = StampOf(bytes);
    Cursor cursor{bytes, recordsAt};
    for (std::uint32_t left = WordAt(bytes, objectCountAt); left > 0 && cursor.good; --left)
        file.objects.push_back(ReadObject(cursor));
    for (std::uint32_t left = WordAt(bytes, linkCountAt); left > 0 && cursor.good; --left) {
        Link link;
        for (std::uint32_t *const field : {&link.id, &link.source, &link.target, &link.type})
            *field = cursor.Word();
        file.links.push_back(link);
    }
    if (!cursor.good || cursor.at != bytes.size())
        return std::nullopt;
    return file;
}

std::uint32_t WordAt(Bytes const &bytes, std::size_t offset) {
    std::uint32_t value = 0;
    for (std::size_t i = 4; i > 0; --i)
        value = value << 8 | bytes.at(offset + i - 1);
    return value;
}

void SetWord(Bytes &bytes, std::size_t offset, std::uint32_t value) {
    for (std::size_t i = 0; i < 4; ++i)
        bytes.at(offset + i) = static_cast<std::uint8_t>(value >> 8 * i);
}

void AddWord(Bytes &bytes, std::uint32_t value) {
    bytes.resize(bytes.size() + 4);
    SetWord(bytes, bytes.size() - 4, value);
}

void FixLength(Bytes &bytes) { SetWord(bytes, lengthAt, static_cast<std::uint32_t>(bytes.size())); }

Stamp StampOf(Bytes const &bytes) {
    return {WordAt(bytes, createdAt) | static_cast<std::uint64_t>(WordAt(bytes, createdAt + 4))
                                           << 32,
            WordAt(bytes, processAt)};
}

void SetStamp(Bytes &bytes, Stamp stamp) {
    SetWord(bytes, createdAt, static_cast<std::uint32_t>(stamp.created));
    SetWord(bytes, createdAt + 4, static_cast<std::uint32_t>(stamp.created >> 32));
    SetWord(bytes, processAt, stamp.process);
}

Stamp Foreign(Stamp stamp) { return {stamp.created, stamp.process + 1}; }

} // namespace image

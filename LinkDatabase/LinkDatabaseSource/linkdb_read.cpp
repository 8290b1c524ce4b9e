// Reading linkdb.dat.
#include "database_file.h"
#include "database_steps.h"

#include "link_list.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace {

constexpr std::size_t BufferSize = 1u << 18;

// At least one link of the object was persistent: an entry with both top bits clear.
bool HasPersistentLink(DBObject const &object) {
    auto const persistent = [](std::uint32_t entry) { return (entry & ~LINK_ENTRY_ID_MASK) == 0; };
    auto const any = [&](std::uint32_t const *entries, std::uint32_t countWord) {
        return std::any_of(entries, entries + (countWord & LINK_ENTRY_ID_MASK), persistent);
    };
    return any(object.pdwLinksFrom, object.dwLinksFrom) || any(object.pdwLinksTo, object.dwLinksTo);
}

bool IsUnsorted(std::vector<std::uint32_t> const &entries) {
    return std::adjacent_find(entries.begin(), entries.end(), [](std::uint32_t a, std::uint32_t b) {
               return (a & LINK_ENTRY_ID_MASK) >= (b & LINK_ENTRY_ID_MASK);
           }) != entries.end();
}

} // namespace

bool GetProcessStamp(ProcessStamp &stamp) {
    FILETIME creation{}, exit{}, kernel{}, user{};
    if (!win::GetProcessTimes(win::GetCurrentProcess(), &creation, &exit, &kernel, &user))
        return false;
    stamp = {creation.dwLowDateTime, creation.dwHighDateTime,
             static_cast<std::uint32_t>(win::GetCurrentProcessId())};
    return true;
}

char *DatabaseFileName(char const *directory) {
    if (!directory)
        return nullptr;
    std::size_t length = std::strlen(directory);
    char *const name = new (std::nothrow) char[length + 16];
    if (!name)
        return nullptr;
    std::memcpy(name, directory, length + 1);
    if (length && name[length - 1] != '\\')
        name[length++] = '\\';
    std::memcpy(name + length, DatabaseFileBaseName, sizeof DatabaseFileBaseName);
    return name;
}

FileReader::~FileReader() {
    if (m_file)
        win::CloseHandle(m_file);
}

bool FileReader::Open(char const *name) {
    HANDLE const file =
        win::CreateFileA(name, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                         nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return false;
    m_file = file;
    LARGE_INTEGER length{};
    if (!win::GetFileSizeEx(file, &length))
        return false;
    m_length = static_cast<std::uint64_t>(length.QuadPart);
    m_buffer.reset(new (std::nothrow) unsigned char[BufferSize]);
    return m_buffer != nullptr;
}

bool FileReader::Fill() {
    DWORD got = 0;
    m_next = m_filled = 0;
    if (!win::ReadFile(m_file, m_buffer.get(), BufferSize, &got, nullptr))
        return false;
    m_filled = got;
    return got != 0;
}

bool FileReader::Skip(std::size_t size) { return Read(nullptr, size); }

// A null target passes over the bytes.
bool FileReader::Read(void *target, std::size_t size) {
    if (size > Remaining())
        return false;
    auto *to = static_cast<unsigned char *>(target);
    while (size) {
        if (m_next == m_filled && !Fill())
            return false;
        std::size_t const part = std::min(size, m_filled - m_next);
        if (to) {
            std::memcpy(to, m_buffer.get() + m_next, part);
            to += part;
        }
        m_next += part;
        m_position += part;
        size -= part;
    }
    return true;
}

bool DatabaseReader::Open(char const *name) {
    std::uint32_t length;
    if (!m_file.Open(name) || !m_file.Read(&length, sizeof length) || length != m_file.Length())
        return false;
    if (!m_file.Read(&m_header, sizeof m_header) || m_header.magic != LINKDB_MAGIC)
        return false;
    ProcessStamp current;
    m_sameProcess = GetProcessStamp(current) && m_header.stamp == current;
    return true;
}

bool DatabaseReader::ReadObjects() {
    m_database.m_dwLastObjectID = 0;
    for (std::uint32_t i = 0; i < m_header.objectCount; ++i) {
        Outcome const outcome = ReadObject();
        if (outcome == Outcome::BrokenOff)
            return false;
        if (outcome == Outcome::NoMemory)
            return true; // the links still follow, from wherever the file stands
    }
    return true;
}

DatabaseReader::Outcome DatabaseReader::ReadObject() {
    unsigned char fixed[SmallestObjectRecord];
    if (!m_file.Read(fixed, sizeof fixed))
        return Outcome::BrokenOff;
    std::uint32_t id;
    std::uint16_t nameLength;
    std::memcpy(&id, fixed, sizeof id);
    std::memcpy(&nameLength, fixed + ObjectFieldsSize, sizeof nameLength);
    ObjectNode *const node = m_database.m_idmap->Make(id);
    if (!node)
        return Outcome::NoMemory;
    std::memcpy(static_cast<DBObject *>(node), fixed, ObjectFieldsSize);
    node->dwFlags &= LoadedFlagsMask;
    if (!ReadParts(*node, nameLength)) {
        DatabaseSteps::FreeObject(m_database, node);
        return Outcome::BrokenOff;
    }
    if (!m_sameProcess && (!(node->dwType & PERSISTENT_BIT) || !HasPersistentLink(*node))) {
        DatabaseSteps::FreeObject(m_database, node);
        return Outcome::Dropped;
    }
    m_database.m_dwLastObjectID = std::max(m_database.m_dwLastObjectID, node->dwID);
    return DatabaseSteps::IndexOrFree(m_database, node) ? Outcome::Kept : Outcome::NoMemory;
}

bool DatabaseReader::ReadParts(ObjectNode &node, std::uint32_t nameLength) {
    return ReadName(node, nameLength) && ReadEntries(node, true) && ReadEntries(node, false) &&
           ReadData(node);
}

bool DatabaseReader::ReadName(ObjectNode &node, std::uint32_t length) {
    if (length == 0)
        return true;
    if (length > m_file.Remaining())
        return false;
    node.pszName = m_database.m_index->heap.AllocateArray<char>(length + 1);
    if (!node.pszName)
        return m_file.Skip(length);
    node.nameRoom = length + 1;
    node.pszName[length] = '\0';
    return m_file.Read(node.pszName, length);
}

bool DatabaseReader::ReadEntries(ObjectNode &node, bool outgoing) {
    LinkList list(node, outgoing ? Direction::From : Direction::To);
    std::uint32_t count = list.Count();
    list.countWord = 0;
    if (count == 0)
        return true;
    if (count > m_file.Remaining() / sizeof(std::uint32_t))
        return false;
    try {
        m_entries.resize(count);
    } catch (std::bad_alloc const &) {
        return m_file.Skip(count * sizeof(std::uint32_t));
    }
    if (!m_file.Read(m_entries.data(), count * sizeof(std::uint32_t)))
        return false;
    if (!m_sameProcess)
        m_entries.erase(std::remove_if(m_entries.begin(), m_entries.end(),
                                       [](std::uint32_t e) { return !(e & LINK_ENTRY_ID_MASK); }),
                        m_entries.end());
    count = static_cast<std::uint32_t>(m_entries.size());
    if (count == 0)
        return true;
    // The same rooms that growing by LinkTo would have given.
    std::uint32_t const room = count == 1 ? 1 : (count + BlockSize - 1) / BlockSize * BlockSize;
    list.entries = m_database.m_index->heap.AllocateArray<std::uint32_t>(room);
    if (!list.entries)
        return true;
    std::memcpy(list.entries, m_entries.data(), count * sizeof(std::uint32_t));
    list.room = room;
    list.countWord = count == 1 ? 1 : count | LINK_LIST_BLOCKED;
    for (std::uint32_t const entry : m_entries)
        m_highestEntryID = std::max(m_highestEntryID, entry & LINK_ENTRY_ID_MASK);
    list.unsorted = IsUnsorted(m_entries);
    return true;
}

// Without memory the block is lost and its bytes stay unread, as they always did.
bool DatabaseReader::ReadData(ObjectNode &node) {
    if (node.dwDataSize == 0)
        return true;
    if (node.dwDataSize > m_file.Remaining())
        return false;
    node.pData = m_database.m_index->heap.AllocateArray<unsigned char>(node.dwDataSize);
    if (!node.pData)
        return true;
    node.dataRoom = node.dwDataSize;
    return m_file.Read(node.pData, node.dwDataSize);
}

void DatabaseReader::ReadLinks() {
    m_database.m_dwLastLinkID = 0;
    DBLink record;
    for (std::uint32_t i = 0; i < m_header.linkCount; ++i) {
        if (!m_file.Read(&record, LinkRecordSize))
            return;
        if (!m_sameProcess && !(record.dwType & PERSISTENT_BIT))
            continue;
        if (!DatabaseSteps::EnterLink(m_database, record))
            return;
        m_database.m_dwLastLinkID = std::max(m_database.m_dwLastLinkID, record.dwID);
    }
}

// Writing linkdb.dat.
#include "database_file.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace {

constexpr std::size_t BufferSize = 1u << 20;

} // namespace

void DatabaseWriter::Write() {
    char const *const name = m_database.m_pszFileName;
    std::size_t const length = std::strlen(name);
    std::unique_ptr<char[]> const temporary(new (std::nothrow) char[length + sizeof ".tmp"]);
    m_buffer.reset(new (std::nothrow) unsigned char[BufferSize]);
    // Without its stamp the file would take this process's transient records from it.
    if (!temporary || !m_buffer || !GetProcessStamp(m_stamp))
        return;
    std::memcpy(temporary.get(), name, length);
    std::memcpy(temporary.get() + length, ".tmp", sizeof ".tmp");
    if (!WriteTemporary(temporary.get()))
        return;
    if (win::GetFileAttributesA(name) != INVALID_FILE_ATTRIBUTES)
        win::SetFileAttributesA(name, FILE_ATTRIBUTE_NORMAL);
    if (!win::MoveFileExA(temporary.get(), name,
                          MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
        win::DeleteFileA(temporary.get());
}

// True if the file is whole, synced and closed; otherwise it is gone again.
bool DatabaseWriter::WriteTemporary(char const *name) {
    m_file = win::CreateFileA(name, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL,
                              nullptr);
    if (m_file == INVALID_HANDLE_VALUE)
        return false;
    std::uint32_t const noLength = 0;
    Put(&noLength, sizeof noLength);
    PutRecords();
    bool const written = Drain() && PutLength() && win::FlushFileBuffers(m_file);
    bool const closed = win::CloseHandle(m_file) != 0;
    if (!written || !closed)
        win::DeleteFileA(name);
    return written && closed;
}

void DatabaseWriter::PutRecords() {
    auto const count = [](auto const &map, std::uint32_t lastID) {
        return lastID ? static_cast<std::uint32_t>(map.Size()) : 0;
    };
    FileHeader const header{m_stamp, LINKDB_MAGIC,
                            count(*m_database.m_idmap, m_database.m_dwLastObjectID),
                            count(*m_database.m_linkmap, m_database.m_dwLastLinkID)};
    Put(&header, sizeof header);
    m_database.m_idmap->ForEach([this](DBObject const &object) { PutObject(object); });
    m_database.m_linkmap->ForEach([this](DBLink const &link) { Put(&link, LinkRecordSize); });
}

void DatabaseWriter::PutObject(DBObject const &object) {
    DBObject fields = object;
    if (!object.pData)
        fields.dwDataSize = 0; // lost for want of memory at load
    Put(&fields, ObjectFieldsSize);
    // The length word is 16 bits wide, and as much of the name is stored as it can tell.
    auto const nameLength =
        static_cast<std::uint16_t>(object.pszName ? std::strlen(object.pszName) : 0);
    Put(&nameLength, sizeof nameLength);
    Put(object.pszName, nameLength);
    Put(object.pdwLinksFrom, (object.dwLinksFrom & LINK_ENTRY_ID_MASK) * sizeof(std::uint32_t));
    Put(object.pdwLinksTo, (object.dwLinksTo & LINK_ENTRY_ID_MASK) * sizeof(std::uint32_t));
    Put(object.pData, fields.dwDataSize);
}

void DatabaseWriter::Put(void const *bytes, std::size_t size) {
    auto const *from = static_cast<unsigned char const *>(bytes);
    m_position += size;
    m_failed = m_failed || m_position > UINT32_MAX; // more than the length word can tell
    while (size && !m_failed) {
        std::size_t const part = std::min(size, BufferSize - m_used);
        std::memcpy(m_buffer.get() + m_used, from, part);
        m_used += part;
        from += part;
        size -= part;
        if (m_used == BufferSize)
            Drain();
    }
}

bool DatabaseWriter::Drain() {
    DWORD written = 0;
    if (m_used && !m_failed)
        m_failed = !win::WriteFile(m_file, m_buffer.get(), static_cast<DWORD>(m_used), &written,
                                   nullptr) ||
                   written != m_used;
    m_used = 0;
    return !m_failed;
}

// The length goes in last, so that a file that broke off is never taken for whole.
bool DatabaseWriter::PutLength() {
    LARGE_INTEGER start{};
    auto const length = static_cast<std::uint32_t>(m_position);
    if (!win::SetFilePointerEx(m_file, start, nullptr, FILE_BEGIN))
        return false;
    m_position = 0;
    Put(&length, sizeof length);
    return Drain();
}

// Reading and writing linkdb.dat. Both run under the database's mutex.
#pragma once

#include "graph_index.h"
#include "linkdb_format.h"

#include "platform/winapi.h"

#include <memory>
#include <string>
#include <vector>

// "<directory>\linkdb.dat", made with new[]; null for a null directory or without memory.
char *DatabaseFileName(char const *directory);

// A file read from front to end through a buffer; each read is whole or fails.
class FileReader {
public:
    ~FileReader();
    bool Open(char const *name); // and learns the length
    bool Read(void *target, std::size_t size);
    bool Skip(std::size_t size);
    std::uint64_t Length() const { return m_length; }
    std::uint64_t Remaining() const { return m_length - m_position; }

private:
    bool Fill();

    void *m_file = nullptr;
    std::uint64_t m_length = 0;
    std::uint64_t m_position = 0; // of the next byte to hand out
    std::unique_ptr<unsigned char[]> m_buffer;
    std::size_t m_next = 0;
    std::size_t m_filled = 0;
};

// Fills the maps of a database from its file.
class DatabaseReader {
public:
    explicit DatabaseReader(CQVUDatabase &database) : m_database(database) {}

    // Opens the file and checks its length word and header. False: there is no usable file.
    bool Open(char const *name);
    // False: the file broke off, and its links are not to be read.
    bool ReadObjects();
    void ReadLinks();
    // The highest link id that a list of a kept object names.
    std::uint32_t HighestEntryID() const { return m_highestEntryID; }

private:
    enum class Outcome { Kept, Dropped, BrokenOff, NoMemory };

    Outcome ReadObject();
    bool ReadParts(ObjectNode &node, std::uint32_t nameLength);
    bool ReadName(ObjectNode &node, std::uint32_t length);
    bool ReadEntries(ObjectNode &node, bool outgoing);
    bool ReadData(ObjectNode &node);

    CQVUDatabase &m_database;
    FileReader m_file;
    FileHeader m_header{};
    bool m_sameProcess = false;
    std::vector<std::uint32_t> m_entries; // of the list being read
    std::uint32_t m_highestEntryID = 0;
};

// Writes a database to its file: to a temporary file first, which then takes the place
// of the old one. The old file is untouched until the new one is whole and on the disk.
class DatabaseWriter {
public:
    explicit DatabaseWriter(CQVUDatabase &database) : m_database(database) {}
    void Write();

private:
    bool WriteTemporary(char const *name);
    void PutRecords();
    void PutObject(DBObject const &object);
    void Put(void const *bytes, std::size_t size);
    bool Drain();
    bool PutLength();

    CQVUDatabase &m_database;
    void *m_file = nullptr;
    std::unique_ptr<unsigned char[]> m_buffer;
    std::size_t m_used = 0;
    std::uint64_t m_position = 0; // in the file, of the next byte put
    ProcessStamp m_stamp{};
    bool m_failed = false;
};

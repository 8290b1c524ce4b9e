// A folder of its own for a test.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

using Bytes = std::vector<std::uint8_t>;

// An empty folder that goes, with all it holds, when the object does.
class TempFolder {
public:
    TempFolder();
    ~TempFolder();
    TempFolder(TempFolder const &) = delete;
    TempFolder &operator=(TempFolder const &) = delete;

    std::filesystem::path const &Path() const { return m_path; }
    std::string Directory() const { return m_path.string(); } // as AttachDatabase takes it
    std::filesystem::path DatabaseFile() const { return m_path / "linkdb.dat"; }
    std::filesystem::path TemporaryFile() const { return m_path / "linkdb.dat.tmp"; }

private:
    std::filesystem::path m_path;
};

// The whole of a file; empty if there is none.
Bytes ReadBytes(std::filesystem::path const &file);
// Replaces a file. Fails the running test if it can't.
void WriteBytes(std::filesystem::path const &file, Bytes const &bytes);
Bytes BytesOf(std::string const &text);

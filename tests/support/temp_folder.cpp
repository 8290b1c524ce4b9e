#include "temp_folder.h"

#include <atomic>
#include <fstream>
#include <iterator>

#include <gtest/gtest.h>

#include "platform/process.h"

namespace fs = std::filesystem;

TempFolder::TempFolder() {
    static std::atomic<unsigned> counter{0};
    do
        m_path = fs::temp_directory_path() / ("qvlinkdb-" + std::to_string(CurrentProcessId()) +
                                              "-" + std::to_string(counter++));
    while (!fs::create_directory(m_path));
}

TempFolder::~TempFolder() {
    std::error_code ignored;
    fs::remove_all(m_path, ignored);
}

Bytes ReadBytes(fs::path const &file) {
    std::ifstream stream(file, std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
}

void WriteBytes(fs::path const &file, Bytes const &bytes) {
    std::ofstream stream(file, std::ios::binary | std::ios::trunc);
    stream.write(reinterpret_cast<char const *>(bytes.data()),
                 static_cast<std::streamsize>(bytes.size()));
    stream.close();
    EXPECT_TRUE(stream.good()) << "can't write " << file;
}

Bytes BytesOf(std::string const &text) { return Bytes(text.begin(), text.end()); }

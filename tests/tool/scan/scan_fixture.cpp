#include "scan_fixture.h"

#include "platform/host.h"

#include <algorithm>

namespace fs = std::filesystem;

ScanTest::ScanTest() : m_tree(fs::canonical(m_folder.Path()) / "tree") {
    fs::create_directory(m_tree);
}

void ScanTest::Write(std::string const &name, std::string const &content) {
    fs::create_directories(Path(name).parent_path());
    WriteBytes(Path(name), BytesOf(content));
}

void ScanTest::MakeFolder(std::string const &name) { fs::create_directories(Path(name)); }

bool ScanTest::Link(std::string const &name, std::string const &target) {
    std::error_code error;
    fs::create_directories(Path(name).parent_path());
    fs::create_symlink(target, Path(name), error);
    return !error;
}

void ScanTest::Remove(std::string const &name) { fs::remove_all(Path(name)); }

void ScanTest::SetTime(std::string const &name, int hours) {
    static auto const fixed = fs::file_time_type::clock::now() - std::chrono::hours(24 * 365);
    fs::last_write_time(Path(name), fixed + std::chrono::hours(hours));
}

qvlink::ScanSummary ScanTest::Scan() { return Scan({""}); }

qvlink::ScanSummary ScanTest::Scan(std::vector<std::string> const &names) {
    qvlink::ScanOptions options;
    for (std::string const &name : names) {
        options.paths.push_back((name.empty() ? m_tree : Path(name)).string());
    }
    return qvlink::ScanInto(Database(), options, m_observer);
}

qvlink::ScanSummary ScanTest::ScanKeys(qvlink::Registry &registry,
                                       std::vector<std::string> const &keys,
                                       std::vector<std::string> const &names) {
    qvlink::ScanOptions options;
    for (std::string const &name : names) {
        options.paths.push_back((name.empty() ? m_tree : Path(name)).string());
    }
    options.keys = keys;
    options.registry = &registry;
    return qvlink::ScanInto(Database(), options, m_observer);
}

qvlink::ScanSummary ScanTest::ScanInto(std::string const &database) {
    qvlink::ScanOptions options;
    options.paths = {m_tree.string()};
    return qvlink::ScanInto(Database(database), options, m_observer);
}

std::string ScanTest::FailureOf(std::function<void()> const &scan) {
    try {
        scan();
    } catch (qvlink::ScanError const &error) {
        return error.what();
    }
    return "";
}

std::string ScanTest::Database(std::string const &name) const {
    return (m_folder.Path() / name).string();
}

Bytes ScanTest::File(std::string const &database) const {
    return ReadBytes(fs::path(Database(database)) / "linkdb.dat");
}

GraphFile ScanTest::Graph(std::string const &database) const {
    auto const top = qvlink::PlaceOfHostPath(m_tree.string());
    return ReadGraph(File(database), top ? DatabasePath(*top) : "");
}

Bytes WithoutStamp(Bytes bytes) {
    if (bytes.size() >= image::magicAt) {
        std::fill(bytes.begin() + image::createdAt, bytes.begin() + image::magicAt,
                  std::uint8_t{0});
    }
    return bytes;
}

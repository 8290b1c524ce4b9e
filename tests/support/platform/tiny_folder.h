// A folder on a file system of its own that is soon full.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

class TinyFolder {
public:
    explicit TinyFolder(std::size_t bytes);
    ~TinyFolder();
    TinyFolder(TinyFolder const &) = delete;
    TinyFolder &operator=(TinyFolder const &) = delete;

    bool Available() const { return m_whyNot.empty(); }
    std::string const &WhyNot() const { return m_whyNot; }
    std::filesystem::path const &Path() const { return m_path; }

private:
    std::filesystem::path m_path;
    std::string m_whyNot;
};

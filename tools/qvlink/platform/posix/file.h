// A descriptor that closes itself, and a file read through one.
#pragma once

#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "readers/byte_source.h"

namespace qvlink {

class DescriptorGuard {
public:
    explicit DescriptorGuard(int descriptor) : m_descriptor(descriptor) {}
    DescriptorGuard(DescriptorGuard &&other) noexcept
        : m_descriptor(std::exchange(other.m_descriptor, -1)) {}
    DescriptorGuard &operator=(DescriptorGuard &&) = delete;
    ~DescriptorGuard() {
        if (m_descriptor >= 0) {
            ::close(m_descriptor);
        }
    }
    explicit operator bool() const { return m_descriptor >= 0; }
    int Get() const { return m_descriptor; }

private:
    int m_descriptor;
};

// The bytes of an open file, read through a window, as tables lie close together.
class FileSource final : public ByteSource {
public:
    explicit FileSource(int descriptor) : m_descriptor(descriptor) {
        struct stat status {};
        m_size = ::fstat(descriptor, &status) == 0 ? static_cast<std::uint64_t>(status.st_size) : 0;
    }
    std::uint64_t Size() const override { return m_size; }
    bool Read(std::uint64_t offset, void *to, std::size_t size) override {
        if (offset > m_size || size > m_size - offset) {
            return false;
        }
        if (size > sizeof m_window) {
            return ::pread(m_descriptor, to, size, static_cast<off_t>(offset)) ==
                   static_cast<ssize_t>(size);
        }
        if (offset < m_windowStart || offset + size > m_windowStart + m_windowSize) {
            ssize_t const count =
                ::pread(m_descriptor, m_window, sizeof m_window, static_cast<off_t>(offset));
            m_windowStart = offset;
            m_windowSize = count > 0 ? static_cast<std::uint64_t>(count) : 0;
        }
        if (size > m_windowSize || offset + size > m_windowStart + m_windowSize) {
            return false;
        }
        std::memcpy(to, m_window + (offset - m_windowStart), size);
        return true;
    }

private:
    int m_descriptor;
    std::uint64_t m_size;
    std::uint64_t m_windowStart = 0;
    std::uint64_t m_windowSize = 0;
    char m_window[8192];
};

} // namespace qvlink

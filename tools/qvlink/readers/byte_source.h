// Bytes from outside, read by position and never past their end.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>

namespace qvlink {

class ByteSource {
public:
    virtual ~ByteSource() = default;
    virtual std::uint64_t Size() const = 0;
    // Copies `size` bytes from `offset`. False, and `to` is undefined, unless all of them
    // are there and could be read.
    virtual bool Read(std::uint64_t offset, void *to, std::size_t size) = 0;

    // An unsigned integer of the width of `Integer`, least significant byte first.
    template <class Integer> std::optional<Integer> Get(std::uint64_t offset) {
        unsigned char bytes[sizeof(Integer)];
        if (!Read(offset, bytes, sizeof bytes)) {
            return std::nullopt;
        }
        std::uint64_t value = 0;
        for (std::size_t i = sizeof bytes; i-- > 0;) {
            value = value << 8 | bytes[i];
        }
        return static_cast<Integer>(value);
    }

    // The text up to its zero byte, which is among the first `limit` + 1 bytes.
    std::optional<std::string> Text(std::uint64_t offset, std::size_t limit) {
        if (offset >= Size()) {
            return std::nullopt;
        }
        std::string text(
            static_cast<std::size_t>(std::min<std::uint64_t>(limit + 1, Size() - offset)), '\0');
        if (!Read(offset, text.data(), text.size())) {
            return std::nullopt;
        }
        std::size_t const end = text.find('\0');
        if (end == std::string::npos) {
            return std::nullopt;
        }
        text.resize(end);
        return text;
    }
};

// Bytes in memory, which stay the caller's.
class MemorySource final : public ByteSource {
public:
    explicit MemorySource(std::string_view bytes) : m_bytes(bytes) {}
    std::uint64_t Size() const override { return m_bytes.size(); }
    bool Read(std::uint64_t offset, void *to, std::size_t size) override {
        if (offset > m_bytes.size() || size > m_bytes.size() - offset) {
            return false;
        }
        std::memcpy(to, m_bytes.data() + offset, size);
        return true;
    }

private:
    std::string_view m_bytes;
};

} // namespace qvlink

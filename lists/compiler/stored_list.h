// The stored form of a protected list: 4 bytes that tell the length of the text
// (little-endian), then the text as a bare DEFLATE stream (RFC 1951).
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

namespace lists {

// The library reads no list whose text is longer.
constexpr std::size_t maxText = std::size_t{64} << 20;

struct ListError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Throws ListError for a text that is too long, std::bad_alloc.
std::string Pack(std::string_view text);

// Throws ListError, which says what is wrong, for what isn't a stored list, std::bad_alloc.
// The text has exactly the length that the list tells, and the stream ends with the list.
std::string Unpack(std::string_view stored);

} // namespace lists
